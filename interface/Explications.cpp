#include "interface/Explications.h"

#include <algorithm>
#include <array>

#include "Calcul/cCalcul/Transferts.h"
#include "interface/Effets.h"
#include "interface/Explicateur.h"
#include "interface/Sens.h"
#include "support/KVTarvel.h"

// The net amount, the boxes at the leaves, the way from a figure to what explains it.

namespace kv {

namespace {

std::string LibelleDe(CaseEntree box) {
    const std::string personne = sens::Personne(box);
    return sens::De(box).libelle + (personne == "foyer" ? "" : ", " + personne);
}

Noeud Saisi(const CleSaisie& cle, std::int32_t montant, const char* suite = "") {
    Noeud noeud = Part(LibelleDe(cle.box) + suite, montant);
    noeud.sorte = Sorte::Montant, noeud.nom = NomDe(cle), noeud.regle = "box";
    return noeud;
}

// The option under which the final run of a return is computed.
regles::Option OptionDe(const Demande& demande, const Resultats& resultats, const Saisie& saisie) {
    using regles::Option;
    if (resultats.options) return resultats.options->forfait ? Option::Forfait : Option::Bareme;
    const auto cochee = [&](CaseEntree box) { return saisie[box] != 0; };
    const bool uneOption = cochee("PFU") || cochee("BAR") || cochee("AVA") || cochee("CIMR");
    const Lancement lancement = LancementDe(demande);
    if (!lancement.optionsForcees && !(lancement.optionsSiSaisies && uneOption)) return Option::Aucune;
    return cochee("PFU") ? Option::Forfait : cochee("BAR") ? Option::Bareme : Option::Aucune;
}

// Figures of another return, or of another computation of this one, are parts where returns are compared.
void DUnAutreCalcul(Noeud& noeud) {
    noeud.sorte = Sorte::Partie;
    for (Noeud& terme : noeud.termes) DUnAutreCalcul(terme);
}

}  // namespace

Explicateur::Explicateur(const Demande& demande, const Resultats& resultats, const Passages& passages)
    : m_demande(demande),
      m_resultats(resultats),
      m_passages(passages),
      m_lignes(resultats.lignes),
      m_loi(demande.loi, demande.indexation),
      m_declaree(SansNonSaisis(demande.saisie)),
      m_option(OptionDe(demande, resultats, m_declaree)) {
    Saisie ordinaire = m_declaree;
    Replie(ordinaire);
    m_vues.push_back(ordinaire);
    const Exceptionnels exceptionnels = SansNonSaisis(demande.exceptionnels);
    if (exceptionnels.montants.empty()) return;
    DeplaceExceptionnels(ordinaire, exceptionnels);
    m_vues.push_back(ordinaire);
}

Explicateur::Explicateur(const Explicateur& autre, const Passages::Vu& vu, const Lignes& lignes)
    : m_demande(autre.m_demande),
      m_resultats(autre.m_resultats),
      m_passages(autre.m_passages),
      m_lignes(lignes),
      m_loi(autre.m_demande.loi, autre.m_demande.indexation),
      m_declaree(autre.m_declaree),
      m_vues{vu.saisie},
      m_option(autre.m_option),
      m_passage(vu.passage) {}

Noeud Explicateur::Racine(const FigureLue& figure, std::int32_t profondeur, bool pourComparer) {
    Noeud racine;
    if (figure.net) {
        racine = Net(profondeur, pourComparer);
    } else if (figure.cle.report) {
        racine = Report(figure.cle.report, profondeur);
    } else {
        racine = Ligne(figure.cle.sortie, static_cast<int>(figure.cle.colonne), profondeur, true);
    }
    Coupe(racine, profondeur);
    EcritEffets(racine);
    return racine;
}

std::optional<std::int32_t> Explicateur::Lit(const Noeud& noeud) const {
    if (std::string_view(noeud.role) == "effect") return {};
    switch (noeud.sorte) {
        case Sorte::Figure:
            return Valeur(LisCleFigure(noeud.nom).cle.sortie, noeud.colonne);
        case Sorte::Report:
            return m_resultats.reports[LisCleFigure(noeud.nom).cle.report];
        case Sorte::Boite:
            return m_vues.back()[LisCleSaisie(noeud.nom).cle.box];
        case Sorte::Montant: {
            const CleSaisie cle = LisCleSaisie(noeud.nom).cle;
            if (!cle.coefficient) return Montant(m_declaree, cle.aire, Place(cle.aire, cle.box));
            std::int32_t montant = 0;
            for (const auto& m : m_demande.exceptionnels.montants)
                if (m.box == cle.box && m.coefficient == *cle.coefficient && m.montant != nNonSaisi)
                    montant += m.montant;
            return montant;
        }
        case Sorte::Loi:
            return ValeurLoi(ChercheParametre(noeud.nom));
        case Sorte::Partie:
            break;
    }
    return {};
}

std::optional<Noeud> Explicateur::Explique(const Noeud& noeud, std::int32_t profondeur) {
    if (noeud.sorte != Sorte::Figure || std::string_view(noeud.role) == "effect") return {};
    Noeud figure = Ligne(LisCleFigure(noeud.nom).cle.sortie, noeud.colonne, profondeur, true);
    Coupe(figure, profondeur);
    if (std::string_view(figure.regle) == "step") figure.aEffets = {};
    figure.signe = noeud.signe, figure.role = noeud.role;
    return figure;
}

// What is paid less what is refunded. Where that is nothing, the first figure on the way that says why.
Noeud Explicateur::Net(std::int32_t profondeur, bool pourComparer) {
    const std::int32_t paye = Valeur("S_NET_A_PAYER"), rendu = Valeur("S_NET_RESTITUE");
    Noeud net = Total("Montant net à payer, négatif : restitution", paye - rendu);
    net.nom = "net";
    if (const auto& options = m_resultats.options) {
        const auto solde = [](const Comparaison::Net& n) { return n.aPayer - n.restitue; };
        const std::int32_t forfait = solde(options->nets.forfait), bareme = solde(options->nets.bareme);
        const auto option = [&](const char* libelle, CaseEntree box, std::int32_t montant, bool ecartee) {
            const char* const passage = !ecartee            ? "option comparée, celle qui est appliquée"
                                        : forfait == bareme ? "option comparée, même montant"
                                                            : "option comparée, la plus chère";
            Ajoute(net, Option(libelle, box, montant, passage, ecartee, profondeur), 1, "option");
        };
        option("prélèvement forfaitaire unique", "PFU", forfait, !options->forfait);
        option("barème progressif", "BAR", bareme, options->forfait);
    }
    if (profondeur == 0) return net;
    const auto terme = [&](CaseSortie sortie, int signe, bool entier = true) {
        Ajoute(net, Ligne(sortie, 0, entier ? profondeur - 1 : 0), signe);
    };
    if (pourComparer) {
        terme("TOT_IMP_COR", 1), terme("NICHE_FISCALE", 1), terme("CONTRIBUTIONS", 1), terme("D_CREDIT", -1);
        terme("TOT_N_RECOUVRE", -1, false), terme("TOT_N_REST", 1, false), terme("S_A_PAYER", 1);
        if (Valeur("S_A_PAYER") != 0) terme("S_NON_RECOUVRE", -1, false);
        Somme(net);
        return net;
    }
    terme("S_NET_A_PAYER", 1), terme("S_NET_RESTITUE", -1);
    const auto pourquoi = [&](CaseSortie etage) {
        Noeud noeud = Ligne(etage, 0, profondeur - 1, true);
        if (noeud.termes.empty() && noeud.valeur == 0) return false;
        net.termes.push_back(std::move(noeud));
        net.termes.back().role = "below";
        return true;
    };
    if (net.valeur == 0)
        for (const CaseSortie etage : {CaseSortie("TOT_PAYER"), CaseSortie("TOT_IMP_COR"), CaseSortie("TOT_IMP_RED"),
                                       CaseSortie("TOT_IMPOT_DOM"), CaseSortie("I_BAREME"), CaseSortie("TOT_R_IMPOS")})
            if (pourquoi(etage)) break;
    if (Valeur("S_NON_RECOUVRE") != 0 && Valeur("S_A_PAYER") == 0) pourquoi("S_A_PAYER");
    Somme(net);
    return net;
}

// An option on capital income. The return was computed under both: the one that was not applied has its own tree.
Noeud Explicateur::Option(const char* libelle, CaseEntree option, std::int32_t montant, const char* passage,
                          bool ecartee, std::int32_t profondeur) {
    Noeud noeud = Part(libelle, montant);
    noeud.regle = "run", noeud.passage = passage;
    if (!ecartee || profondeur == 0) return noeud;
    Demande demande = m_demande;
    for (const CaseEntree autre : {CaseEntree("AVA"), CaseEntree("PFU"), CaseEntree("BAR")}) demande.saisie[autre] = 0;
    demande.saisie[option] = 1;
    demande.lancement = KV_LAUNCH_OPTIONS;
    Passages passages;
    const auto resultats = CalculeRetour(demande, &passages);
    Noeud net = Explicateur(demande, *resultats, passages).Racine({.cle = {}, .net = true}, profondeur - 1);
    DUnAutreCalcul(net);
    if (net.valeur == montant) noeud.termes.push_back(std::move(net));
    return noeud;
}

// ---- Figures of the law.

Noeud Explicateur::FigureDeLaLoi(Parametre p) const {
    const LigneLoi& ligne = p.Ligne();
    Noeud noeud = Part("figure de la loi", ValeurLoi(p));
    noeud.sorte = Sorte::Loi, noeud.nom = ligne.nom, noeud.regle = "law", noeud.source = ligne.source;
    if (ligne.unite == Unite::Pourcent) noeud.formule = TexteTaux(noeud.valeur);
    return noeud;
}

Noeud Explicateur::FigureParFoyer(Parametre p) const {
    if (!m_couple) return FigureDeLaLoi(p);
    return Prorata("pour un couple", ParFoyer(ValeurLoi(p)), FigureDeLaLoi(p), Part("déclarants", 2), Part("", 1));
}

// ---- Boxes.

// A box; the detailed rows, the exceptional and the foreign amounts that were added to it are its leaves.
Noeud Explicateur::Boite(CaseEntree box, std::size_t vue, std::int32_t profondeur) {
    Noeud noeud = Saisi({box, Aire::Entrees, {}}, m_vues[vue][box]);
    if (noeud.valeur == m_declaree[box]) return noeud;
    noeud.sorte = Sorte::Boite, noeud.regle = "sum";
    if (profondeur == 0) return noeud;
    Ajoute(noeud, Saisi({box, Aire::Entrees, {}}, m_declaree[box]), 1);
    for (const auto& [total, details] : totauxDetailles)
        for (const CaseEntree detail : details)
            if (total == box && detail) Ajoute(noeud, Saisi({detail, Aire::Entrees, {}}, m_declaree[detail]), 1);
    if (vue > 0)
        for (const auto& m : m_demande.exceptionnels.montants)
            if (m.box == box && m.montant != nNonSaisi)
                Ajoute(noeud, Saisi({box, Aire::Entrees, m.coefficient}, m.montant, ", revenu exceptionnel"), 1);
    if (m_passage == Passage::Mondial) RevenusDeplaces(noeud, box);
    Complete(noeud, "montants d'autres cases");
    return noeud;
}

// What the worldwide run adds to a box: the foreign amounts that its companions or other boxes hold.
void Explicateur::RevenusDeplaces(Noeud& noeud, CaseEntree box) const {
    const auto ajoute = [&](CaseEntree de, Aire aire = Aire::Entrees, int signe = 1) {
        const std::int32_t place = Place(aire, de);
        if (place >= 0)
            Ajoute(noeud, Saisi({de, aire, {}}, Montant(m_declaree, aire, place), ", revenu étranger"), signe);
    };
    static constexpr struct {
        const RangeeSalaires &vers, &de;
    } rangees[] = {{rangeeJ, rangeeC}, {rangeeK, rangeeE}, {rangeeS, rangeeH}};
    for (const auto& [vers, de] : rangees)
        for (std::size_t p = 0; p < vers.size(); ++p)
            if (vers[p] == box) ajoute(de[p]);
    ajoute(box, Aire::TI);
    if (Place(Aire::TI, box) >= 0) {
        const int signe = entree::lignes[box.numero].marques & entree::NegatifTI ? 1 : -1;
        ajoute(box, Aire::TIX, signe), ajoute(box, Aire::TIY, signe);
    }
    const auto liees = [&](const auto& cases) {
        for (const CaseEntree de : cases)
            if (TableEntree[static_cast<std::size_t>(de.numero)].CaseLiee == box.numero && m_declaree[de] > 0)
                ajoute(de);
    };
    liees(casesMarquees<entree::AutoEntr>), liees(casesMarquees<entree::Prospection>);
}

// ---- A line: its value, or one of its columns.

// memeNul: also where it is 0.
Noeud Explicateur::Ligne(CaseSortie sortie, int colonne, std::int32_t profondeur, bool memeNul) {
    const sens::SensSortie& s = sens::De(sortie);
    Noeud noeud = Part(s.libelle, Valeur(sortie, colonne));
    noeud.sorte = m_passage ? Sorte::Partie : Sorte::Figure;
    noeud.nom = sortie::noms[sortie.numero], noeud.colonne = colonne, noeud.etape = s.etape;
    if (colonne > 0) {
        const char* const titre =
            std::array{s.colonnes.c1, s.colonnes.c2, s.colonnes.c3}[static_cast<std::size_t>(colonne - 1)];
        noeud.libelle += std::string(", ") + (*titre ? titre : "colonne " + Nombre(colonne));
    }
    if (colonne == 3 && std::string_view(s.colonnes.c3) == "taux (centièmes de %)") {
        noeud.regle = "law", noeud.formule = TexteTaux(noeud.valeur);
        return noeud;
    }
    noeud.regle = "deeper";
    if ((noeud.valeur == 0 && !memeNul) || profondeur == 0) return noeud;
    const std::pair cle(sortie.numero, colonne);
    if (std::find(m_chemin.begin(), m_chemin.end(), cle) != m_chemin.end()) return noeud;
    m_chemin.push_back(cle);
    // A rule that turns out not to give the figure may have begun to write.
    const auto par = [&](auto regle, auto... arguments) {
        Noeud essai = noeud;
        if (!(this->*regle)(essai, arguments...)) return false;
        noeud = std::move(essai);
        return true;
    };
    if (!(colonne == 0 && par(&Explicateur::ParRegleDeLImpot, sortie, profondeur)) &&
        !par(&Explicateur::ParRegleDuRevenu, sortie, colonne, profondeur) &&
        !par(&Explicateur::ParLigne, sortie, colonne, profondeur) &&
        !par(&Explicateur::ParTable, sortie, colonne, profondeur))
        ParEtape(noeud, sortie, colonne);
    m_chemin.pop_back();
    return noeud;
}

// What no rule gives: the step, the text, and what each amount of the return does to the figure.
void Explicateur::ParEtape(Noeud& noeud, CaseSortie sortie, int colonne) {
    noeud.regle = "step";
    if (colonne == 0) noeud.formule = VersUtf8(m_lignes.LitTexte(sortie));
    if (!m_passage) noeud.aEffets = {sortie, static_cast<std::size_t>(colonne)};
}

Noeud Explicateur::Report(CaseReport report, std::int32_t profondeur) {
    const sens::SensReport& s = sens::De(report);
    Noeud noeud = Part(s.libelle, m_resultats.reports[report]);
    noeud.sorte = Sorte::Report, noeud.nom = report::noms[report.numero], noeud.regle = "deeper";
    noeud.etape = "29:Reports";
    if (profondeur == 0) return noeud;
    if (const auto source = LisCleFigure(s.source); source.statut == KV_OK && source.cle.sortie) {
        const auto [sortie, colonne, aucun] = source.cle;
        if (Valeur(sortie, static_cast<int>(colonne)) == noeud.valeur) {
            noeud.regle = "choice";
            Ajoute(noeud, Ligne(sortie, static_cast<int>(colonne), profondeur - 1), 1, "chosen");
            return noeud;
        }
    }
    if (const auto source = LisCleSaisie(s.source);
        source.statut == KV_OK && m_vues[0][source.cle.box] == noeud.valeur) {
        noeud.regle = "choice";
        Ajoute(noeud, Boite(source.cle.box, 0, profondeur - 1), 1, "chosen");
        return noeud;
    }
    noeud.regle = "step";
    noeud.aEffets.report = report;
    return noeud;
}

// Each amount of the return is left out once, whatever the number of figures that ask for it.
void Explicateur::EcritEffets(Noeud& racine) {
    std::vector<Noeud*> demandes;
    const std::function<void(Noeud&)> cherche = [&](Noeud& noeud) {
        if (noeud.aEffets.sortie || noeud.aEffets.report) demandes.push_back(&noeud);
        for (Noeud& terme : noeud.termes) cherche(terme);
    };
    cherche(racine);
    if (demandes.empty()) return;
    Essais essais(m_demande);
    essais.PourChaqueMontant([&](const CleSaisie& cle, std::int32_t) {
        essais.Calcule(cle, 0);
        for (Noeud* noeud : demandes)
            Ajoute(*noeud, Saisi(cle, noeud->valeur - essais.Lit({noeud->aEffets})), 1, "effect");
    });
    for (Noeud* noeud : demandes) {
        noeud->aEffets = {};
        std::sort(noeud->termes.begin(), noeud->termes.end(), [](const Noeud& a, const Noeud& b) {
            const auto x = std::llabs(a.valeur), y = std::llabs(b.valeur);
            return x != y ? x > y : a.nom < b.nom;
        });
    }
}

// ---- The two texts.

namespace {

// A figure of a return and what it was found from.
struct Explication {
    Explication(const Demande& demande, const FigureLue& figure, std::int32_t profondeur, bool pourComparer = false)
        : resultats(CalculeRetour(demande, &passages)),
          explicateur(demande, *resultats, passages),
          racine(explicateur.Racine(figure, profondeur, pourComparer)) {}

    Passages passages;
    const std::shared_ptr<const Resultats> resultats;
    Explicateur explicateur;
    const Noeud racine;

    AutreRetour Autre() {
        return {
            [this](const Noeud& noeud) { return explicateur.Lit(noeud); },
            [this](const Noeud& noeud, std::int32_t profondeur) { return explicateur.Explique(noeud, profondeur); }};
    }
};

}  // namespace

std::string Explique(const Demande& demande, const FigureLue& figure, std::int32_t profondeur) {
    return JsonDe(Explication(demande, figure, profondeur).racine);
}

std::string ExpliqueDifference(const Demande& avant, const Demande& apres, const FigureLue& figure,
                               std::int32_t profondeur) {
    Explication a(avant, figure, profondeur, true), b(apres, figure, profondeur, true);
    return JsonDeDifference(a.racine, a.Autre(), b.racine, b.Autre(), profondeur);
}

}  // namespace kv
