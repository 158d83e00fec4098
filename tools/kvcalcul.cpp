#include <CLI/CLI.hpp>
#include <charconv>
#include <iostream>
#include <sstream>
#include <string_view>

#include "Boites.h"
#include "Effets.h"
#include "Explication.h"
#include "Lot.h"
#include "Population.h"
#include "Table.h"

// kvcalcul, a command-line host of the library.

namespace {

using outil::Entree;
using outil::ErreurEntree;
using outil::Forme;

enum Statut { Calcule = 0, Echec = 1, MauvaiseEntree = 2 };

// The law of the year, or with a reform laid over it.
outil::LoiNommee LisLoi(const std::string& fichier) {
    return fichier.empty() ? outil::LoiNommee() : outil::LisReforme(Entree::Contenu(fichier), fichier);
}

// A return of a file under the law of a call.
kv::Return LisRetour(const std::string& fichier, const outil::LoiNommee& loi) {
    kv::Return retour = outil::LisRetour(Entree::Contenu(fichier), fichier);
    retour.set_law(loi.loi);
    return retour;
}

// trace: the steps go to standard error.
int Run(const std::string& fichier, const outil::LoiNommee& loi, Forme forme, bool trace) {
    kv::Return retour = LisRetour(fichier, loi);
    if (trace)
        retour.compute_traced([](const char* ligne) { std::cerr << ligne << '\n'; });
    else
        retour.compute();
    outil::EcritResultat(std::cout, retour, loi, forme);
    outil::Sortie("").Vide();
    return Calcule;
}

int Compare(const std::string& fichier, const std::string& fichierLoi, bool json) {
    const outil::LoiNommee annee, reforme = LisLoi(fichierLoi);
    kv::Return avant = LisRetour(fichier, annee), apres = avant;
    outil::EcritComparaison(std::cout, avant.compute(), annee, apres.set_law(reforme.loi).compute(), reforme, json);
    outil::Sortie("").Vide();
    return Calcule;
}

// "2/5": the second of five parts.
void LisPart(std::string_view texte, outil::DemandeTable& demande) {
    const char* const fin = texte.data() + texte.size();
    const auto part = std::from_chars(texte.data(), fin, demande.part);
    if (part.ec == std::errc() && part.ptr != fin && *part.ptr == '/') {
        const auto parts = std::from_chars(part.ptr + 1, fin, demande.parts);
        if (parts.ec == std::errc() && parts.ptr == fin && 1 <= demande.part && demande.part <= demande.parts) return;
    }
    throw ErreurEntree("--shard: \"" + std::string(texte) + "\" is not i/n, with i from 1 to n");
}

int Courbe(const std::string& fichier, const outil::LoiNommee& loi, const outil::DemandeCourbe& demande,
           const std::string& image) {
    const kv::Return retour = LisRetour(fichier, loi);
    if (!image.empty()) {
        std::ostringstream dessin;
        outil::DessineCourbe(dessin, retour, demande);
        outil::Sortie vers(image);
        vers.Ecrit(std::move(dessin).str());
        vers.Vide();
        if (outil::EstStandard(image)) return Calcule;
    }
    outil::EcritCourbe(std::cout, retour, demande);
    outil::Sortie("").Vide();
    return Calcule;
}

// A whole number of an argument, not smaller than a minimum.
template <class Nombre>
Nombre LisNombre(std::string_view texte, const char* quoi, Nombre minimum) {
    Nombre nombre = 0;
    const char* const fin = texte.data() + texte.size();
    const auto lu = std::from_chars(texte.data(), fin, nombre);
    if (lu.ec == std::errc() && lu.ptr == fin && nombre >= minimum) return nombre;
    throw ErreurEntree(std::string(quoi) + ": \"" + std::string(texte) + "\" is not a whole number from " +
                       std::to_string(minimum) + " on");
}

int Table(outil::DemandeTable& demande, const std::string& lancement, const std::string& part,
          const std::string& fichierLoi) {
    if (!lancement.empty()) demande.lancement = outil::LancementDeNom(lancement);
    if (!part.empty()) LisPart(part, demande);
    if (demande.reprend && outil::EstStandard(demande.sortie))
        throw ErreurEntree("--resume needs a file to resume, -o");
    return outil::CalculeTable(demande, LisLoi(fichierLoi)) == 0 ? Calcule : Echec;
}

}  // namespace

int main(int argc, char** argv) {
    outil::OuvreFluxFermes();
    std::ios_base::sync_with_stdio(false);  // a read error of the standard input is one of the stream
    CLI::App app{"Computes French income-tax returns (form 2042, income of 2017)."};
    app.set_version_flag("--version", std::string("kvcalcul ") + kv_version());
    app.footer(
        "Exit status: 0 computed; 1 the computation failed, or a line of a batch or a row of a table could not be read "
        "or\n"
        "computed; 2 bad usage or input.");
    app.require_subcommand(1);
    std::string fichier, sortie, motif, loi, lancement, part, figure, image, autre, foyers, graine = "2017";
    outil::DemandeCourbe intervalle;
    std::int32_t threads = 0, profondeur = -1;
    outil::DemandeTable demande;
    auto bavardage = outil::Bavardage::Ordinaire;
    bool json = false, complet = false, reductions = false, compare = false, markdown = false, trace = false;
    CLI::Option* drapeauComplet = nullptr;
    const auto formes = [&](CLI::App* commande) {
        auto* drapeauJson = commande->add_flag("--json", json, "print the non-zero outputs by name");
        drapeauComplet =
            commande
                ->add_flag("--full", complet, "print value, columns and text of every output, entries, carry-forwards")
                ->excludes(drapeauJson);
    };
    // What an unset variable of a shell leaves is no answer.
    const CLI::Validator nonVide([](const std::string& texte) { return std::string(texte.empty() ? "is empty" : ""); },
                                 "");
    const auto avecLoi = [&](CLI::App* commande) {
        return commande
            ->add_option("--law", loi, "a reform in JSON: figures of the law by name, over those of the year")
            ->check(nonVide);
    };
    // Long works: from a file to a file, on many threads.
    const auto longTravail = [&](CLI::App* commande, const char* lu, const char* ecrit) {
        commande->add_option("IN", fichier, std::string(lu) + " (default: standard input)");
        commande->add_option("-o", sortie, std::string(ecrit) + " (default: standard output)");
        commande->add_option("--threads", threads, "how many threads compute (default: one a processor)")
            ->check(CLI::Range(1, 4096));
        CLI::Option* silence = commande->add_flag_callback(
            "--quiet", [&] { bavardage = outil::Bavardage::Silencieux; }, "print errors alone on standard error");
        commande
            ->add_flag_callback(
                "--progress", [&] { bavardage = outil::Bavardage::Constant; },
                "tell how far it is on standard error, even where it is no terminal")
            ->excludes(silence);
    };

    CLI::App* run = app.add_subcommand("run", "compute one return and print a summary");
    run->add_option("FILE", fichier, "a return in JSON")->required();
    formes(run);
    CLI::Option* optionLoi = avecLoi(run);
    run->add_flag("--compare", compare, "print the figures of both laws where they differ")
        ->needs(optionLoi)
        ->excludes(drapeauComplet);
    run->add_flag("--trace", trace, "tell each step, value and re-run on standard error")->excludes("--compare");
    CLI::App* explique = app.add_subcommand("explain", "why a figure is what it is: the tree of what makes it");
    explique->add_option("FILE", fichier, "a return in JSON")->required();
    explique->add_option("OUTPUT", figure, "TOT_PAYER, CO_19.c2, F11_6FL (default: the net amount)");
    explique->add_option("--depth", profondeur, "levels below the figure (default: everything)")
        ->check(CLI::Range(0, 1000));
    explique->add_option(
        "--diff", autre,
        "another return, or the same one, under the law of the year: the branches that differ from it");
    explique->add_flag("--json", json, "print a JSON object");
    avecLoi(explique);
    CLI::App* effets = app.add_subcommand("effects", "what each amount of a return does to a figure");
    effets->add_option("FILE", fichier, "a return in JSON")->required();
    effets->add_option("OUTPUT", figure, "TOT_PAYER, CO_19.c2, F11_6FL (default: the net amount)");
    effets->add_flag("--json", json, "print a JSON object");
    avecLoi(effets);
    const auto surUnIntervalle = [&](CLI::App* commande) {
        commande->add_option("FILE", fichier, "a return in JSON")->required();
        commande->add_option("--box", intervalle.montant, "the amount that grows: 1AJ, ti.4BE, quotient.4.1AJ")
            ->required();
        commande->add_option("--from", intervalle.de, "its first value")->capture_default_str();
        commande->add_option("--to", intervalle.a, "its last value")->required();
        commande->add_option("--output", intervalle.figure, "TOT_PAYER, CO_19.c2, F11_6FL (default: the net amount)");
        avecLoi(commande);
    };
    CLI::App* courbe =
        app.add_subcommand("curve", "a figure, its average and marginal rate as an amount grows, as CSV");
    surUnIntervalle(courbe);
    courbe->add_option("--step", intervalle.pas, "from one value to the next")->required();
    courbe->add_option("--svg", image, "draw both as a picture too (-: the picture alone)");
    CLI::App* morceaux =
        app.add_subcommand("breaks", "the straight pieces of a figure as an amount grows, to one euro, as CSV");
    surUnIntervalle(morceaux);
    CLI::App* batch = app.add_subcommand("batch", "compute one return per line, write one result per line");
    longTravail(batch, "returns, one per line", "results");
    formes(batch);
    avecLoi(batch);
    CLI::App* table =
        app.add_subcommand("table", "compute one return per row of a CSV, write one row of figures per row");
    longTravail(table, "CSV: columns named like boxes are entries, others pass through", "CSV");
    table
        ->add_option("--outputs", demande.figures,
                     "figures to write, such as TOT_PAYER,CO_19.c2: outputs, their columns, carry-forwards")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->required();
    avecLoi(table);
    table->add_option("--launch", lancement, "the launch of every return (default: normal)")->check(nonVide);
    table->add_option("--shard", part, "i/n: compute the i-th of n parts, every n-th row")->check(nonVide);
    table->add_flag("--resume", demande.reprend, "go on with a result that was cut short, instead of writing over it");
    CLI::App* population = app.add_subcommand(
        "population", "write a made-up population of plausible households, as a CSV for table; nobody's returns");
    population->add_option("N", foyers, "how many households")->required();
    population->add_option("--seed", graine, "the same seed gives the same households")->capture_default_str();
    population->add_option("-o", sortie, "CSV (default: standard output)");
    CLI::App* boxes = app.add_subcommand("boxes", "list the boxes, or find some with what they mean");
    CLI::Option* optionMotif =
        boxes->add_option("PATTERN", motif, "find the boxes whose name contains this text, or whose label its words");
    CLI::Option* boitesJson = boxes->add_flag("--json", json, "print a JSON array");
    CLI::Option* boitesMarkdown = boxes->add_flag("--markdown", markdown, "print docs/boxes.md")->excludes(boitesJson);
    boitesMarkdown->excludes(optionMotif);
    CLI::App* parametres = app.add_subcommand("law", "list the figures of the law: name, value, unit, indexed, source");
    parametres->add_option("PATTERN", motif, "keep the names and sources that contain this text");
    parametres->add_flag("--json", json, "print a JSON array");
    boxes->add_flag("--reductions", reductions, "list the reduction tables instead, in the order of imputation")
        ->excludes(optionMotif)
        ->excludes(boitesJson)
        ->excludes(boitesMarkdown);
    CLI::App* schema = app.add_subcommand("schema", "print the JSON Schema of a return");

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        return app.exit(e) == 0 ? Calcule : MauvaiseEntree;
    }
    try {
        if (*run && compare) return Compare(fichier, loi, json);
        if (*run) {
            const Forme forme = complet ? Forme::Complet : json ? Forme::Json : Forme::Resume;
            return Run(fichier, LisLoi(loi), forme, trace);
        }
        if (*courbe) return Courbe(fichier, LisLoi(loi), intervalle, image);
        if (*batch) {
            const Forme forme = complet ? Forme::Complet : Forme::Json;
            return outil::CalculeLot({fichier, sortie, forme, threads, bavardage}, LisLoi(loi)) ? Calcule : Echec;
        }
        if (*table) {
            demande.entree = fichier, demande.sortie = sortie, demande.threads = threads, demande.bavardage = bavardage;
            return Table(demande, lancement, part, loi);
        }
        if (*population) {
            const auto n = LisNombre<std::int64_t>(foyers, "N", 1);
            outil::EcritPopulation(sortie, n, LisNombre<std::uint64_t>(graine, "--seed", 0));
            std::cerr << n << " made-up households, seed " << graine << ": nobody's returns\n";
            return Calcule;
        }
        if (*explique && !autre.empty())
            outil::EcritDifferences(std::cout, LisRetour(autre, {}), LisRetour(fichier, LisLoi(loi)), figure,
                                    profondeur, json);
        else if (*explique)
            outil::EcritExplication(std::cout, LisRetour(fichier, LisLoi(loi)), figure, profondeur, json);
        else if (*effets)
            outil::EcritEffets(std::cout, LisRetour(fichier, LisLoi(loi)), figure, json);
        else if (*morceaux)
            outil::EcritMorceaux(std::cout, LisRetour(fichier, LisLoi(loi)), intervalle);
        else if (*parametres)
            outil::EcritLoi(std::cout, motif, json);
        else if (*schema)
            outil::EcritSchema(std::cout);
        else if (reductions)
            outil::EcritReductions(std::cout);
        else if (json)
            outil::EcritBoitesJson(std::cout, motif);
        else if (markdown)
            outil::EcritBoitesMarkdown(std::cout);
        else if (motif.empty())
            outil::EcritCatalogues(std::cout);
        else if (!outil::EcritBoites(std::cout, motif))
            throw ErreurEntree("no box has \"" + motif + "\" in its name or label" + outil::BoitesProches(motif));
        outil::Sortie("").Vide();
        return Calcule;
    } catch (const ErreurEntree& e) {
        std::cerr << e.what() << '\n';
        return MauvaiseEntree;
    } catch (const kv::Error& e) {
        std::cerr << "the computation failed: " << e.what() << '\n';
        return Echec;
    } catch (const std::exception& e) {  // for want of memory
        std::cerr << e.what() << '\n';
        return Echec;
    }
}
