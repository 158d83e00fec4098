#include <CLI/CLI.hpp>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <string_view>

#include "Boites.h"
#include "Resultat.h"
#include "Retour.h"

// kvcalcul, a command-line host of the library.

namespace {

using outil::ErreurEntree;
using outil::Forme;

const std::string sortieStandard = "standard output";

enum Statut { Calcule = 0, Echec = 1, MauvaiseEntree = 2 };

std::ifstream Ouvre(const std::string& fichier) {
    std::ifstream entree(fichier, std::ios::binary);
    if (!entree) throw ErreurEntree(fichier + ": cannot be read");
    return entree;
}

std::string Contenu(const std::string& fichier) {
    std::ifstream entree = Ouvre(fichier);
    try {
        return {std::istreambuf_iterator<char>(entree), {}};
    } catch (const std::ios_base::failure&) {
        throw ErreurEntree(fichier + ": cannot be read");
    }
}

void Vide(std::ostream& sortie, const std::string& nom) {
    if (!sortie.flush()) throw ErreurEntree(nom + ": cannot be written");
}

// The law of the year, or with a reform laid over it.
outil::LoiNommee LisLoi(const std::string& fichier) {
    return fichier.empty() ? outil::LoiNommee() : outil::LisReforme(Contenu(fichier), fichier);
}

int Run(const std::string& fichier, const std::string& fichierLoi, Forme forme) {
    const outil::LoiNommee loi = LisLoi(fichierLoi);
    kv::Return retour = outil::LisRetour(Contenu(fichier), fichier);
    outil::EcritResultat(std::cout, retour.set_law(loi.loi).compute(), loi, forme);
    Vide(std::cout, sortieStandard);
    return Calcule;
}

int Compare(const std::string& fichier, const std::string& fichierLoi, bool json) {
    const outil::LoiNommee annee, reforme = LisLoi(fichierLoi);
    kv::Return avant = outil::LisRetour(Contenu(fichier), fichier), apres = avant;
    outil::EcritComparaison(std::cout, avant.compute(), annee, apres.set_law(reforme.loi).compute(), reforme, json);
    Vide(std::cout, sortieStandard);
    return Calcule;
}

// One return per line in, one result per line out: memory does not grow with the number of lines.
int Batch(const std::string& fichier, const std::string& fichierSortie, const std::string& fichierLoi, Forme forme) {
    const outil::LoiNommee loi = LisLoi(fichierLoi);
    std::ifstream fichierEntree;
    std::ofstream versFichier;
    if (!fichier.empty()) fichierEntree = Ouvre(fichier);
    if (!fichierSortie.empty()) {
        std::error_code inconnu;  // of a file that does not exist yet
        if (std::filesystem::equivalent(fichier, fichierSortie, inconnu))
            throw ErreurEntree(fichierSortie + ": is read and written at once");
        versFichier.open(fichierSortie, std::ios::binary);
        if (!versFichier) throw ErreurEntree(fichierSortie + ": cannot be written");
    }
    std::istream& entree = fichier.empty() ? std::cin : fichierEntree;
    std::ostream& sortie = fichierSortie.empty() ? std::cout : versFichier;
    const std::string nom = fichier.empty() ? "standard input" : fichier;

    Statut statut = Calcule;
    std::string ligne;
    for (int numero = 1; std::getline(entree, ligne); ++numero) {
        try {
            kv::Return retour = outil::LisRetour(ligne, nom, numero);
            outil::EcritResultat(sortie, retour.set_law(loi.loi).compute(), loi, forme);
            for (const std::string& message : retour.warnings())
                std::cerr << nom << ':' << numero << ": warning: " << message << '\n';
        } catch (const std::runtime_error& e) {  // the line is no return, or its computation failed
            outil::EcritErreur(sortie, e.what());
            statut = Echec;
        }
    }
    if (entree.bad()) throw ErreurEntree(nom + ": cannot be read");
    Vide(sortie, fichierSortie.empty() ? sortieStandard : fichierSortie);
    return statut;
}

}  // namespace

int main(int argc, char** argv) {
    std::ios_base::sync_with_stdio(false);  // a read error of the standard input is one of the stream
    CLI::App app{"Computes French income-tax returns (form 2042, income of 2017)."};
    app.set_version_flag("--version", std::string("kvcalcul ") + kv_version());
    app.footer(
        "Exit status: 0 computed; 1 the computation failed, or a line of a batch could not be read or computed; 2 bad\n"
        "usage or input.");
    app.require_subcommand(1);
    std::string fichier, sortie, motif, loi;
    bool json = false, complet = false, reductions = false, compare = false, markdown = false;
    CLI::Option *drapeauComplet = nullptr, *optionLoi = nullptr;
    const auto formes = [&](CLI::App* commande) {
        auto* drapeauJson = commande->add_flag("--json", json, "print the non-zero outputs by name");
        drapeauComplet =
            commande
                ->add_flag("--full", complet, "print value, columns and text of every output, entries, carry-forwards")
                ->excludes(drapeauJson);
        optionLoi =
            commande->add_option("--law", loi, "a reform in JSON: figures of the law by name, over those of the year");
    };

    CLI::App* run = app.add_subcommand("run", "compute one return and print a summary");
    run->add_option("FILE", fichier, "a return in JSON")->required();
    formes(run);
    run->add_flag("--compare", compare, "print the figures of both laws where they differ")
        ->needs(optionLoi)
        ->excludes(drapeauComplet);
    CLI::App* batch = app.add_subcommand("batch", "compute one return per line, write one result per line");
    batch->add_option("IN", fichier, "returns, one per line (default: standard input)");
    batch->add_option("-o", sortie, "results (default: standard output)");
    formes(batch);
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
        if (*run) return Run(fichier, loi, complet ? Forme::Complet : json ? Forme::Json : Forme::Resume);
        if (*batch) return Batch(fichier, sortie, loi, complet ? Forme::Complet : Forme::Json);
        if (*parametres)
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
        Vide(std::cout, sortieStandard);
        return Calcule;
    } catch (const ErreurEntree& e) {
        std::cerr << e.what() << '\n';
        return MauvaiseEntree;
    } catch (const kv::Error& e) {
        std::cerr << "the computation failed: " << e.what() << '\n';
        return Echec;
    }
}
