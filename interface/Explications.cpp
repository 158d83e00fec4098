#include "interface/Explications.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <numeric>

#include "Calcul/cCalcul/Transferts.h"
#include "Calcul/pCalculN/CreditsTable.h"
#include "Calcul/pCalculN/NombreParts.h"
#include "Calcul/pCalculN/NonSalariesTable.h"
#include "Calcul/pCalculN/ReductionsTable.h"
#include "Calcul/pCalculN/ReglesTable.h"
#include "interface/Effets.h"
#include "interface/LignesReductions.h"
#include "interface/Sens.h"

// A figure is explained from the figures that the computation left: by a row of the rules, by what the tables of
// reductions, credits and business income say of it, by its step and its text. A rule is shown only where its operands
// give the figure; what no rule gives is told by what each amount of the return does to it.

namespace kv {

namespace {

using regles::Genre;
using regles::Terme;

// A figure and what makes it.
struct Noeud {
    std::string nom;  // of its box, or of a figure of the law; "" for a part of a rule
    int colonne = 0;
    std::string libelle;
    std::int32_t valeur = 0;
    const char* regle = "";
    std::string formule, source, etape;
    int signe = 1;
    const char* role = "";
    const char* passage = "";  // the run that it comes from, when it is not the household's own
    std::vector<Noeud> termes = {};
    CleFigure aEffets = {};  // the figure that the effects of the amounts are still to be found of
};

Noeud Part(std::string libelle, std::int32_t valeur) {
    return {.nom = "",
            .libelle = std::move(libelle),
            .valeur = valeur,
            .regle = "part",
            .formule = "",
            .source = "",
            .etape = ""};
}

std::string Nombre(std::int64_t n) { return std::to_string(n); }
// "12.8 %", of hundredths of a percent.
std::string Taux(std::int32_t centiemes) {
    char texte[32];
    const auto fin = std::to_chars(texte, std::end(texte), centiemes / 100.0).ptr;
    return std::string(texte, fin) + " %";
}

Noeud PartTaux(std::int32_t centiemes) {
    Noeud noeud = Part("taux (centièmes de %)", centiemes);
    noeud.formule = Taux(centiemes);
    return noeud;
}

// What the runs beside the household's own left: their inputs and their lines.
class Passages final : public Observateur {
  public:
    struct Vu {
        Passage passage;
        Saisie saisie;
        Lignes::Conservees lignes{std::pmr::new_delete_resource()};
    };
    std::vector<std::unique_ptr<Vu>> vus;
    std::vector<ReductionImputee> imputees;

    void Impute(const ReductionImputee& reduction) override { imputees.push_back(reduction); }
    void Fin(Passage passage, const Contexte& c) override {
        auto vu = std::make_unique<Vu>(Vu{passage, c.Vue()});
        c.commun.lignes.Conserve(vu->lignes);
        vus.push_back(std::move(vu));
    }
};

class Explicateur {
  public:
    /// The household's own run; what it is made from lives as long.
    Explicateur(const Demande& demande, const Resultats& resultats, const Passages& passages)
        : m_demande(demande),
          m_resultats(resultats),
          m_passages(passages),
          m_lignes(resultats.lignes),
          m_loi(demande.loi, demande.indexation),
          m_declaree(SansNonSaisis(demande.saisie)) {
        Saisie ordinaire = m_declaree;
        Replie(ordinaire);
        m_vues.push_back(ordinaire);
        const Exceptionnels exceptionnels = SansNonSaisis(demande.exceptionnels);
        if (exceptionnels.montants.empty()) return;
        DeplaceExceptionnels(ordinaire, exceptionnels);
        m_vues.push_back(ordinaire);
    }
    /// Another run, over its own inputs and lines. Effects are those of the household's own: it tells none.
    Explicateur(const Explicateur& autre, const Saisie& saisie, const Lignes& lignes)
        : m_demande(autre.m_demande),
          m_resultats(autre.m_resultats),
          m_passages(autre.m_passages),
          m_lignes(lignes),
          m_loi(autre.m_demande.loi, autre.m_demande.indexation),
          m_declaree(autre.m_declaree),
          m_vues{saisie},
          m_principal(false) {}

    Noeud Racine(const FigureLue& figure, std::int32_t profondeur) {
        Noeud racine;
        if (figure.net) {
            racine = Net(profondeur);
        } else if (figure.cle.report) {
            racine = Report(figure.cle.report, profondeur);
        } else {
            racine = Ligne(figure.cle.sortie, static_cast<int>(figure.cle.colonne), profondeur, true);
        }
        Coupe(racine, profondeur);
        EcritEffets(racine);
        return racine;
    }

  private:
    // Leaves so many levels; a rule may have written more than one.
    static void Coupe(Noeud& noeud, std::int32_t profondeur) {
        if (profondeur < 0) return;
        if (profondeur == 0 && (!noeud.termes.empty() || noeud.aEffets.sortie || noeud.aEffets.report)) {
            noeud.termes.clear();
            noeud.aEffets = {};
            noeud.regle = "deeper";
        }
        for (Noeud& terme : noeud.termes) Coupe(terme, profondeur - 1);
    }

    // What is paid less what is refunded. Where that is nothing, the first figure on the way that says why.
    Noeud Net(std::int32_t profondeur) {
        const std::int32_t paye = Valeur("S_NET_A_PAYER"), rendu = Valeur("S_NET_RESTITUE");
        Noeud net = Part("Montant net à payer, négatif : restitution", paye - rendu);
        net.nom = "net", net.regle = "sum";
        if (const auto& options = m_resultats.options) {
            const bool forfait = options->forfait;
            Ajoute(net, Option("prélèvement forfaitaire unique", "PFU", options->nets.forfait, !forfait, profondeur), 1,
                   "option");
            Ajoute(net, Option("barème progressif", "BAR", options->nets.bareme, forfait, profondeur), 1, "option");
        }
        if (profondeur == 0) return net;
        Ajoute(net, Ligne("S_NET_A_PAYER", 0, profondeur - 1), 1);
        Ajoute(net, Ligne("S_NET_RESTITUE", 0, profondeur - 1), -1);
        if (paye - rendu == 0)
            for (const CaseSortie etage :
                 {CaseSortie("TOT_PAYER"), CaseSortie("TOT_IMP_COR"), CaseSortie("TOT_IMP_RED"),
                  CaseSortie("TOT_IMPOT_DOM"), CaseSortie("I_BAREME"), CaseSortie("TOT_R_IMPOS")})
                if (Noeud noeud = Ligne(etage, 0, profondeur - 1, true); !noeud.termes.empty() || noeud.valeur != 0) {
                    net.termes.push_back(std::move(noeud));
                    net.termes.back().role = "below";
                    break;
                }
        net.formule = Addition(net);
        return net;
    }

    // An option on capital income. The return was computed under both: the one that was not applied has its own tree.
    Noeud Option(const char* libelle, CaseEntree option, const Comparaison::Net& comparee, bool ecartee,
                 std::int32_t profondeur) {
        Noeud noeud = Part(libelle, comparee.aPayer - comparee.restitue);
        noeud.regle = "run";
        noeud.passage = ecartee ? "option comparée, la plus chère" : "option comparée, celle qui est appliquée";
        if (!ecartee || profondeur == 0) return noeud;
        Demande demande = m_demande;
        for (const CaseEntree autre : {CaseEntree("AVA"), CaseEntree("PFU"), CaseEntree("BAR")})
            demande.saisie[autre] = 0;
        demande.saisie[option] = 1;
        demande.lancement = KV_LAUNCH_OPTIONS;
        Passages passages;
        const auto resultats = CalculeRetour(demande, &passages);
        Noeud net = Explicateur(demande, *resultats, passages).Racine({.cle = {}, .net = true}, profondeur - 1);
        if (net.valeur == noeud.valeur) noeud.termes.push_back(std::move(net));
        return noeud;
    }

    // ---- Figures.

    std::int32_t Valeur(CaseSortie sortie, int colonne = 0) const {
        return Figure(m_lignes.Lit(sortie), static_cast<std::size_t>(colonne));
    }
    std::int32_t Valeur(const Terme& terme, int colonne, const Saisie& vue) const {
        switch (terme.sorte) {
            case Terme::Sorte::Sortie:
                return Valeur(CaseSortie::Numero(terme.numero), terme.colonne < 0 ? colonne : terme.colonne);
            case Terme::Sorte::Boite:
                return vue[CaseEntree::Numero(terme.numero)];
            case Terme::Sorte::Loi:
                return static_cast<const Loi&>(m_loi)[Parametre::Numero(terme.numero)];
            case Terme::Sorte::Nombre:
                break;
        }
        return terme.numero;
    }

    bool Couple() const { return m_declaree["M"] == 1 || m_declaree["O"] == 1; }

    static void Ajoute(Noeud& noeud, Noeud terme, int signe, const char* role = "") {
        if (terme.valeur == 0) return;
        terme.signe = signe, terme.role = role;
        noeud.termes.push_back(std::move(terme));
    }
    // "4847 - 1500"
    static std::string Addition(const Noeud& noeud) {
        std::string texte;
        const auto estTerme = [](const Noeud& terme) { return *terme.role == 0; };
        if (std::count_if(noeud.termes.begin(), noeud.termes.end(), estTerme) < 2) return texte;
        for (const Noeud& terme : noeud.termes) {
            if (!estTerme(terme)) continue;
            const bool moins = (terme.signe < 0) != (terme.valeur < 0);
            texte += texte.empty() ? (moins ? "-" : "") : moins ? " - " : " + ";
            texte += Nombre(std::llabs(terme.valeur));
        }
        return texte;
    }

    Noeud Operande(const Terme& terme, int colonne, std::size_t vue, std::int32_t profondeur) {
        const std::int32_t valeur = Valeur(terme, colonne, m_vues[vue]);
        switch (terme.sorte) {
            case Terme::Sorte::Sortie:
                return Ligne(CaseSortie::Numero(terme.numero), terme.colonne < 0 ? colonne : terme.colonne, profondeur);
            case Terme::Sorte::Boite:
                return Boite(CaseEntree::Numero(terme.numero), vue, profondeur);
            case Terme::Sorte::Loi: {
                const LigneLoi& ligne = Parametre::Numero(terme.numero).Ligne();
                Noeud noeud = Part("figure de la loi", valeur);
                noeud.nom = ligne.nom, noeud.regle = "law", noeud.source = ligne.source;
                if (ligne.unite == Unite::Pourcent) noeud.formule = Taux(valeur);
                return noeud;
            }
            case Terme::Sorte::Nombre:
                break;
        }
        return Part("nombre", valeur);
    }

    // A box; the detailed rows and the exceptional amounts that were added to it are its leaves.
    Noeud Boite(CaseEntree box, std::size_t vue, std::int32_t profondeur) {
        Noeud noeud = Part(LibelleDe(box), m_vues[vue][box]);
        noeud.nom = entree::lignes[box.numero].nom, noeud.regle = "box";
        if (noeud.valeur == m_declaree[box]) return noeud;
        noeud.regle = "sum";
        if (profondeur == 0) return noeud;
        const auto feuille = [&](std::string nom, CaseEntree de, std::int32_t montant, const char* suite) {
            Noeud f = Part(LibelleDe(de) + suite, montant);
            f.nom = std::move(nom), f.regle = "box";
            Ajoute(noeud, std::move(f), 1);
        };
        feuille(noeud.nom, box, m_declaree[box], "");
        for (const auto& [total, details] : totauxDetailles)
            for (const CaseEntree detail : details)
                if (total == box && detail) feuille(entree::lignes[detail.numero].nom, detail, m_declaree[detail], "");
        std::int32_t reste = noeud.valeur;
        for (const Noeud& terme : noeud.termes) reste -= terme.valeur;
        if (vue > 0)
            for (const auto& m : m_demande.exceptionnels.montants)
                if (m.box == box && m.montant != nNonSaisi) {
                    feuille("quotient." + Nombre(m.coefficient) + '.' + noeud.nom, box, m.montant,
                            ", revenu exceptionnel");
                    reste -= m.montant;
                }
        if (reste != 0) Ajoute(noeud, Part("montants d'autres cases", reste), 1);
        noeud.formule = Addition(noeud);
        return noeud;
    }
    static std::string LibelleDe(CaseEntree box) {
        const std::string personne = sens::Personne(box);
        return sens::De(box).libelle + (personne == "foyer" ? "" : ", " + personne);
    }

    // ---- A line: its value, or one of its columns.

    // memeNul: also where it is 0.
    Noeud Ligne(CaseSortie sortie, int colonne, std::int32_t profondeur, bool memeNul = false) {
        const sens::SensSortie& s = sens::De(sortie);
        Noeud noeud = Part(s.libelle, Valeur(sortie, colonne));
        noeud.nom = sortie::noms[sortie.numero], noeud.colonne = colonne, noeud.etape = s.etape;
        if (colonne > 0) {
            const char* const titre =
                std::array{s.colonnes.c1, s.colonnes.c2, s.colonnes.c3}[static_cast<std::size_t>(colonne - 1)];
            noeud.libelle += std::string(", ") + (*titre ? titre : "colonne " + Nombre(colonne));
        }
        if (colonne == 3 && std::string_view(s.colonnes.c3) == "taux (centièmes de %)") {
            noeud.regle = "law", noeud.formule = Taux(noeud.valeur);
            return noeud;
        }
        noeud.regle = "deeper";
        if ((noeud.valeur == 0 && !memeNul) || profondeur == 0) return noeud;
        const std::pair cle(sortie.numero, colonne);
        if (std::find(m_chemin.begin(), m_chemin.end(), cle) != m_chemin.end()) return noeud;
        m_chemin.push_back(cle);
        if (!ParRegle(noeud, sortie, colonne, profondeur) && !ParTable(noeud, sortie, colonne, profondeur))
            ParEtape(noeud, sortie, colonne);
        m_chemin.pop_back();
        return noeud;
    }

    bool ParRegle(Noeud& noeud, CaseSortie sortie, int colonne, std::int32_t profondeur) {
        if (colonne == 0 && ParRegleNommee(noeud, sortie, profondeur)) return true;
        for (const regles::Regle& regle : regles::lignes) {
            Terme cible;
            regle.figure.Parcourt([&](const Terme& terme) { cible = terme; });
            const bool laSienne =
                cible.numero == sortie.numero && (cible.colonne == colonne || (cible.colonne < 0 && colonne > 0));
            if (laSienne && Essaie(noeud, regle, colonne, profondeur)) return true;
        }
        return false;
    }

    bool Essaie(Noeud& noeud, const regles::Regle& regle, int colonne, std::int32_t profondeur) {
        std::vector<Terme> termes;
        regle.operandes.Parcourt([&](const Terme& terme) { termes.push_back(terme); });
        if (!EssaieTermes(noeud, regle.genre, termes, regle.ecart, colonne, profondeur)) return false;
        if (*regle.mots) noeud.formule = std::string(regle.mots) + (noeud.formule.empty() ? "" : " : ") + noeud.formule;
        return true;
    }
    // Shows a rule whose operands give the figure, with the inputs as one of the runs saw them. ecart: what the
    // difference is called where they do not give all of it; null: then the rule is not shown.
    bool EssaieTermes(Noeud& noeud, Genre genre, const std::vector<Terme>& termes, const char* ecart, int colonne,
                      std::int32_t profondeur) {
        for (std::size_t vue = 0; vue < m_vues.size(); ++vue) {
            std::vector<std::int32_t> v;
            for (const Terme& terme : termes) v.push_back(terme.signe * Valeur(terme, colonne, m_vues[vue]));
            std::int32_t calcul = 0;
            switch (genre) {
                case Genre::Somme:
                    calcul = std::accumulate(v.begin(), v.end(), 0);
                    break;
                case Genre::Choix:
                    calcul = v[0];
                    break;
                case Genre::Taux:
                    calcul = nAuTaux(std::accumulate(v.begin(), v.end() - 1, 0), v.back());
                    break;
                case Genre::Part:
                    calcul = nProrata(v[0], v[1], v[2]);
                    break;
                case Genre::Produits:
                    for (std::size_t i = 0; i + 1 < v.size(); i += 2) calcul += v[i] * v[i + 1];
                    break;
            }
            const bool rien = std::all_of(v.begin(), v.end(), [](std::int32_t montant) { return montant == 0; });
            if (rien || (calcul != noeud.valeur && !ecart)) continue;
            if (calcul == noeud.valeur) {
                Montre(noeud, genre, termes, v, colonne, vue, profondeur);
            } else if (genre == Genre::Somme || genre == Genre::Produits) {
                Montre(noeud, genre, termes, v, colonne, vue, profondeur);
                Complete(noeud, ecart);
            } else {  // what a bound took off is a term beside the rule
                Noeud dedans = Part("avant limite", calcul);
                Montre(dedans, genre, termes, v, colonne, vue, profondeur - 1);
                Ajoute(noeud, std::move(dedans), 1);
                Complete(noeud, ecart);
            }
            return true;
        }
        return false;
    }

    void Montre(Noeud& noeud, Genre genre, const std::vector<Terme>& termes, const std::vector<std::int32_t>& v,
                int colonne, std::size_t vue, std::int32_t profondeur) {
        const auto operande = [&](Noeud& vers, std::size_t i, const char* role) {
            if (profondeur == 0) return;
            Ajoute(vers, Operande(termes[i], colonne, vue, profondeur - 1), termes[i].signe, role);
            if (termes[i].sorte == Terme::Sorte::Loi) noeud.source = Parametre::Numero(termes[i].numero).Ligne().source;
        };
        switch (genre) {
            case Genre::Somme:
                noeud.regle = "sum";
                for (std::size_t i = 0; i < v.size(); ++i) operande(noeud, i, "");
                noeud.formule = Addition(noeud);
                break;
            case Genre::Choix:
                noeud.regle = "choice";
                operande(noeud, 0, "chosen");
                break;
            case Genre::Taux: {
                noeud.regle = "rate";
                const std::int32_t base = std::accumulate(v.begin(), v.end() - 1, 0);
                if (v.size() > 2) {
                    Noeud somme = Part("base", base);
                    somme.regle = "sum";
                    for (std::size_t i = 0; i + 1 < v.size(); ++i) operande(somme, i, "");
                    somme.formule = Addition(somme);
                    if (profondeur != 0) Ajoute(noeud, std::move(somme), 1, "base");
                } else {
                    operande(noeud, 0, "base");
                }
                operande(noeud, v.size() - 1, "rate");
                noeud.formule = Taux(v.back()) + " de " + Nombre(base);
                break;
            }
            case Genre::Part:
                noeud.regle = "share";
                for (std::size_t i = 0; i < 3; ++i)
                    operande(noeud, i, std::array{"amount", "numerator", "denominator"}[i]);
                noeud.formule = Nombre(v[0]) + " x " + Nombre(v[1]) + (v[2] != 1 ? " / " + Nombre(v[2]) : "");
                break;
            case Genre::Produits:
                noeud.regle = "sum";
                for (std::size_t i = 0; i + 1 < v.size(); i += 2) {
                    Noeud produit = Part("nombre x montant", v[i] * v[i + 1]);
                    produit.regle = "share", produit.formule = Nombre(v[i]) + " x " + Nombre(v[i + 1]);
                    operande(produit, i, "numerator");
                    operande(produit, i + 1, "amount");
                    if (profondeur != 0) Ajoute(noeud, std::move(produit), 1);
                }
                noeud.formule = Addition(noeud);
        }
    }

    // ---- The rules that are more than a row.

    bool ParRegleNommee(Noeud& noeud, CaseSortie sortie, std::int32_t profondeur) {
        for (const CaseSortie bareme : {CaseSortie("I_IMP_NORM"), CaseSortie("I_IMP_SIMP")})
            if (sortie == bareme) return ParBareme(noeud, sortie, profondeur);
        if (sortie == CaseSortie("I_PLAF_FAM")) return ParPlafondDesDemiParts(noeud, profondeur);
        if (sortie == CaseSortie("U_DECOTE")) return ParDecote(noeud, profondeur);
        if (sortie == CaseSortie("U_CLASSES_MOYENNES")) return ParRevenusModestes(noeud, profondeur);
        if (sortie == CaseSortie("NICHE_B")) return ParSoldeSansAvantages(noeud, profondeur);
        if (sortie == CaseSortie("IMPOT_TX_EFFECTIF")) return ParTauxEffectif(noeud, profondeur);
        if (sortie == CaseSortie("F_NB_PARTS_ALL")) return ParParts(noeud, profondeur);
        if (sortie == CaseSortie("F_NB_PARTS_ISO")) return ParDeclarants(noeud);
        if (sortie == CaseSortie("CONT_HAUT_REV")) return ParHautsRevenus(noeud, profondeur);
        if (sortie == CaseSortie("I_QUOT")) return ParQuotient(noeud, profondeur);
        if (sortie == CaseSortie("REDUCTIONS"))
            return ParSomme(noeud, reductions::sortiesReductions, reductions::sortiesRetrocessions, profondeur);
        if (sortie == CaseSortie("D_CREDIT")) return ParSomme(noeud, Credits(), {}, profondeur);
        return false;
    }

    static CasesSortie Credits() {
        CasesSortie somme;
        for (const CaseSortie credit : credits::creditsDuTotal) somme.Ajoute(credit);
        for (const auto& travaux : credits::travauxForestiers) somme.Ajoute(travaux.credit);
        for (const auto& depense : credits::transitionEnergetique) somme.Ajoute(depense.credit);
        somme.Ajoute("D_CREDIT_PFU2");
        somme.Ajoute("D_CREDIT_CIMR_IR");
        return somme;
    }

    bool ParSomme(Noeud& noeud, const CasesSortie& plus, const CasesSortie& moins, std::int32_t profondeur) {
        if (m_lignes.Somme(plus) - m_lignes.Somme(moins) != noeud.valeur) return false;
        noeud.regle = "sum";
        if (profondeur == 0) return true;
        const auto ajoute = [&](const CasesSortie& sorties, int signe) {
            sorties.Parcourt([&](std::size_t j) {
                Ajoute(noeud, Ligne(CaseSortie::Numero(static_cast<int>(j)), 0, profondeur - 1), signe);
            });
        };
        ajoute(plus, 1);
        ajoute(moins, -1);
        noeud.formule = Addition(noeud);
        return true;
    }

    // The tax in each bracket, of all parts together.
    bool ParBareme(Noeud& noeud, CaseSortie sortie, std::int32_t profondeur) {
        const std::int32_t revenu = Valeur(sortie, 2), parts = Valeur(sortie, 1);
        const Bareme bareme = BaremeDe(m_loi);
        if (AppliqueBareme(bareme, revenu, parts).impot != noeud.valeur) return false;
        noeud.regle = "scale", noeud.source = Parametre("bareme.tranche2.taux").Ligne().source;
        noeud.formule = Nombre(revenu) + " sur " + Decimal(parts) + (parts == 100 ? " part" : " parts");
        if (profondeur == 0) return true;
        const double parPart = dDiv(revenu, parts / 100.0);
        std::int32_t reste = noeud.valeur;
        for (std::size_t i = 0; i < bareme.size() && parPart > bareme[i].Basse; ++i) {
            const bool derniere = i + 1 == bareme.size();
            const double dedans =
                (derniere ? parPart : std::min(parPart, static_cast<double>(bareme[i].Haute))) - bareme[i].Basse;
            const auto montant = nArrondi(dedans * parts / 100.0), taux = nArrondi(bareme[i].Taux);
            Noeud tranche =
                Part("tranche au-dessus de " + Nombre(nArrondi(bareme[i].Basse)) + " par part", nAuTaux(montant, taux));
            tranche.regle = "rate", tranche.formule = Taux(taux) + " de " + Nombre(montant);
            Ajoute(tranche, Part("dans la tranche, toutes parts", montant), 1, "base");
            Ajoute(tranche, PartTaux(taux), 1, "rate");
            reste -= tranche.valeur;
            Ajoute(noeud, std::move(tranche), 1);
        }
        if (reste != 0) Ajoute(noeud, Part("arrondis", reste < 0 ? -reste : reste), reste < 0 ? -1 : 1);
        return RevenuEtParts(noeud, sortie, revenu, parts, profondeur), true;
    }
    // What the scale is applied to: operands, not terms.
    void RevenuEtParts(Noeud& noeud, CaseSortie sortie, std::int32_t revenu, std::int32_t parts,
                       std::int32_t profondeur) {
        Noeud base =
            revenu == Valeur("TOT_R_IMPOS") ? Ligne("TOT_R_IMPOS", 0, profondeur - 1) : Part("revenu imposé", revenu);
        Ajoute(noeud, std::move(base), 1, "income");
        const CaseSortie nombre =
            sortie == CaseSortie("I_IMP_SIMP") ? CaseSortie("F_NB_PARTS_ISO") : CaseSortie("F_NB_PARTS_ALL");
        Noeud n = parts == Valeur(nombre) ? Ligne(nombre, 0, profondeur - 1) : Part("parts (centièmes)", parts);
        Ajoute(noeud, std::move(n), 1, "parts");
    }

    // ---- What other runs found.

    // Calls f(run) for the runs of a kind until it answers true.
    template <class Fonction>
    bool DansUnPassage(Passage passage, Fonction f) {
        for (const auto& vu : m_passages.vus) {
            if (vu->passage != passage) continue;
            const auto lignes = std::make_unique<Lignes>();
            lignes->Reprend(vu->lignes);
            Explicateur dedans(*this, vu->saisie, *lignes);
            if (f(dedans)) return true;
        }
        return false;
    }

    bool ParSoldeSansAvantages(Noeud& noeud, std::int32_t profondeur) {
        return DansUnPassage(Passage::SansAvantages, [&](Explicateur& sans) {
            if (sans.Valeur("TOT_PAYER") - sans.Valeur("TOT_REST") != noeud.valeur) return false;
            noeud.regle = "sum", noeud.passage = "calcul sans les avantages que le plafonnement global compte";
            Ajoute(noeud, sans.Ligne("TOT_PAYER", 0, profondeur - 1), 1);
            Ajoute(noeud, sans.Ligne("TOT_REST", 0, profondeur - 1), -1);
            noeud.formule = Addition(noeud);
            return true;
        });
    }

    // The tax on the worldwide income, for the share of the French one in it.
    bool ParTauxEffectif(Noeud& noeud, std::int32_t profondeur) {
        const std::int32_t mondial = Valeur("IMPOT_ETR_RMI"), francais = mondial - Valeur("IMPOT_ETR_REV_NET_TI");
        return DansUnPassage(Passage::Mondial, [&](Explicateur& monde) {
            const std::int32_t impot = monde.Valeur("TOT_IMPOT");
            if (nProrata(impot, francais, mondial) != noeud.valeur) return false;
            noeud.regle = "share";
            noeud.formule = Nombre(impot) + " x " + Nombre(francais) + " / " + Nombre(mondial);
            if (profondeur == 0) return true;
            Noeud impotMondial = monde.Ligne("TOT_IMPOT", 0, profondeur - 1);
            impotMondial.passage = "calcul sur les revenus mondiaux";
            Ajoute(noeud, std::move(impotMondial), 1, "amount");
            Ajoute(noeud, Part("revenu net français", francais), 1, "numerator");
            Ajoute(noeud, Ligne("IMPOT_ETR_RMI", 0, 0), 1, "denominator");
            return true;
        });
    }

    // Parts, in hundredths.
    bool ParParts(Noeud& noeud, std::int32_t profondeur) {
        noeud.source = Parametre("parts.enfant").Ligne().source;
        Ajoute(noeud, Ligne("F_NB_PARTS_ISO", 0, profondeur - 1), 1);
        Noeud enfants = Part("enfants et autres personnes à charge (centièmes)", PartsDesEnfants(m_vues[0], m_loi));
        if (profondeur != 1)
            for (const CaseEntree box : {CaseEntree("Fm"), CaseEntree("Jm"), CaseEntree("Rm"), CaseEntree("Hm")})
                Ajoute(enfants, Boite(box, 0, profondeur - 2), 1, "count");
        Ajoute(noeud, std::move(enfants), 1);
        Complete(noeud, "invalidité, ancien combattant, personne seule ou parent isolé (centièmes)");
        return true;
    }
    bool ParDeclarants(Noeud& noeud) {
        noeud.regle = "choice";
        noeud.formule = noeud.valeur == 200 ? "un couple : 2 parts" : "une personne : 1 part";
        return noeud.valeur == 200 || noeud.valeur == 100;
    }

    // What exceeds each of the two thresholds of high incomes, at its rate.
    bool ParHautsRevenus(Noeud& noeud, std::int32_t profondeur) {
        const std::int32_t revenu = Valeur("CONT_HAUT_REV", 1), fois = Couple() ? 2 : 1;
        static constexpr struct {
            Parametre seuil, taux;
        } tranches[] = {{"hautsRevenus.tranche1.seuil", "hautsRevenus.tranche1.taux"},
                        {"hautsRevenus.tranche2.seuil", "hautsRevenus.tranche2.taux"}};
        const Loi& loi = m_loi;
        std::int32_t haut = revenu, calcul = 0;
        std::vector<Noeud> termes;
        for (std::size_t i = std::size(tranches); i-- > 0;) {
            const std::int32_t seuil = fois * loi[tranches[i].seuil];
            if (haut <= seuil) continue;
            Noeud base = Part("revenu de référence au-dessus de " + Nombre(seuil), haut - seuil);
            termes.insert(termes.begin(),
                          AuTaux("tranche au-dessus de " + Nombre(seuil), std::move(base), tranches[i].taux));
            calcul += termes.front().valeur;
            haut = seuil;
        }
        Noeud bareme = Part("contribution du revenu lissé", calcul);
        const bool lisse = calcul != noeud.valeur;  // an exceptional year is smoothed over the two before it
        const Parametre coefficient = "hautsRevenus.lissage.coefficient";
        if (lisse && nArrondi(dMul(loi.Nombre(coefficient), calcul)) != noeud.valeur) return false;
        Noeud& vers = lisse ? bareme : noeud;
        vers.regle = "scale", vers.source = tranches[0].taux.Ligne().source;
        vers.formule = Nombre(revenu) + " de revenu de référence";
        if (profondeur > 1 || profondeur < 0 || (profondeur == 1 && !lisse))
            for (Noeud& terme : termes) Ajoute(vers, std::move(terme), 1);
        if (!lisse) return true;
        noeud.regle = "share", noeud.source = coefficient.Ligne().source;
        noeud.formule = "année exceptionnelle : " + Decimal(loi[coefficient]) + " x " + Nombre(calcul);
        if (profondeur == 0) return true;
        Ajoute(noeud, std::move(bareme), 1, "amount");
        Ajoute(noeud, Operande({Terme::Sorte::Loi, coefficient.numero}, 0, 0, profondeur - 1), 1, "numerator");
        Ajoute(noeud, Part("centièmes", 100), 1, "denominator");
        return true;
    }

    // Exceptional income of one coefficient: what its fraction adds to the tax, as many times.
    bool ParQuotient(Noeud& noeud, std::int32_t profondeur) {
        const auto& coefficients = m_demande.exceptionnels.coefficients;
        const std::int32_t supplement = Valeur("I_QUOT", 2);
        if (coefficients.size() != 1 || nArrondi(dMul(supplement, Diviseur(coefficients[0]))) != noeud.valeur)
            return false;
        noeud.regle = "share";
        noeud.formule = Nombre(supplement) + " x " + Nombre(Diviseur(coefficients[0]));
        if (profondeur == 0) return true;
        Ajoute(noeud, Ligne("I_QUOT", 2, profondeur - 1), 1, "amount");
        Ajoute(noeud, Part("coefficient", Diviseur(coefficients[0])), 1, "numerator");
        return true;
    }

    bool ParPlafondDesDemiParts(Noeud& noeud, std::int32_t profondeur) {
        const std::int32_t enPlus = Valeur("F_NB_PARTS_ALL") - Valeur("F_NB_PARTS_ISO");
        const Parametre demiPart = "quotientFamilial.plafond.demiPart";
        const std::int32_t plafond = static_cast<const Loi&>(m_loi)[demiPart];
        if (nTronque(dDiv(dMul(plafond, enPlus), 50)) != noeud.valeur) return false;
        noeud.regle = "share", noeud.source = demiPart.Ligne().source;
        noeud.formule = Nombre(plafond) + " par demi-part, " + Decimal(enPlus) + (enPlus <= 100 ? " part" : " parts") +
                        " au-delà de celles des déclarants";
        if (profondeur == 0) return true;
        Ajoute(noeud, Operande({Terme::Sorte::Loi, demiPart.numero}, 0, 0, profondeur - 1), 1, "amount");
        Ajoute(noeud, Part("parts au-delà de celles des déclarants (centièmes)", enPlus), 1, "numerator");
        Ajoute(noeud, Part("une demi-part (centièmes)", 50), 1, "denominator");
        return true;
    }

    // What the tax is before the relief, and after it.
    Noeud AvantDecote(std::int32_t profondeur) {
        Noeud impot = Part("impôt avant décote", Valeur("TOT_IMPOT_DOM") + Valeur("IMPOT_TAUX_MARG"));
        impot.regle = "sum";
        if (profondeur == 0) return impot;
        Ajoute(impot, Ligne("TOT_IMPOT_DOM", 0, profondeur - 1), 1);
        Ajoute(impot, Ligne("IMPOT_TAUX_MARG", 0, profondeur - 1), 1);
        impot.formule = Addition(impot);
        return impot;
    }
    Noeud AuTaux(std::string libelle, Noeud base, Parametre taux) {
        const std::int32_t t = static_cast<const Loi&>(m_loi)[taux];
        Noeud noeud = Part(std::move(libelle), nAuTaux(base.valeur, t));
        noeud.regle = "rate", noeud.source = taux.Ligne().source;
        noeud.formule = Taux(t) + " de " + Nombre(base.valeur);
        Ajoute(noeud, std::move(base), 1, "base");
        Ajoute(noeud, Operande({Terme::Sorte::Loi, taux.numero}, 0, 0, 0), 1, "rate");
        return noeud;
    }
    // Adds what makes the sum of the terms the figure.
    static void Complete(Noeud& noeud, const char* libelle) {
        std::int32_t reste = noeud.valeur;
        for (const Noeud& terme : noeud.termes) reste -= terme.signe * terme.valeur;
        if (reste != 0) Ajoute(noeud, Part(libelle, reste < 0 ? -reste : reste), reste < 0 ? -1 : 1);
        noeud.regle = "sum", noeud.formule = Addition(noeud);
    }

    bool ParDecote(Noeud& noeud, std::int32_t profondeur) {
        const Parametre plafond = Couple() ? Parametre("decote.plafond.couple") : "decote.plafond.seul";
        noeud.source = plafond.Ligne().source;
        Ajoute(noeud, Operande({Terme::Sorte::Loi, plafond.numero}, 0, 0, 0), 1);
        Ajoute(noeud, AuTaux("part de l'impôt", AvantDecote(profondeur - 1), "decote.part"), -1);
        Complete(noeud, noeud.valeur == Valeur("TOT_IMPOT_DOM") + Valeur("IMPOT_TAUX_MARG") ? "au-delà de l'impôt"
                                                                                            : "arrondi");
        return true;
    }
    bool ParRevenusModestes(Noeud& noeud, std::int32_t profondeur) {
        Noeud apres =
            Part("impôt après décote", Valeur("TOT_IMPOT_DOM") + Valeur("IMPOT_TAUX_MARG") - Valeur("U_DECOTE"));
        apres.regle = "sum";
        if (profondeur != 1) {
            Ajoute(apres, AvantDecote(profondeur - 2), 1);
            Ajoute(apres, Ligne("U_DECOTE", 0, profondeur - 2), -1);
            apres.formule = Addition(apres);
        }
        Noeud pleine = AuTaux("réduction entière", std::move(apres), "revenusModestes.taux");
        noeud.source = pleine.source;
        Ajoute(noeud, std::move(pleine), 1);
        Complete(noeud, "le revenu de référence approche du plafond");
        return true;
    }

    // ---- What the tables say.

    bool ParTable(Noeud& noeud, CaseSortie sortie, int colonne, std::int32_t profondeur) {
        const sens::Colonnes& c = sens::De(sortie).colonnes;
        const std::string_view c1 = c.c1, c3 = c.c3;
        const int n = sortie.numero;
        const auto deLigne = [n](int k) { return Terme{Terme::Sorte::Sortie, n, k}; };
        const auto essaie = [&](Genre genre, std::vector<Terme> termes, const char* ecart) {
            return EssaieTermes(noeud, genre, termes, ecart, colonne, profondeur);
        };
        if (colonne == 0 && c3 == "taux (%)") return ParTauxEntier(noeud, sortie, profondeur);
        if (colonne == 0 && c3 == "taux (centièmes de %)" && essaie(Genre::Taux, {deLigne(2), deLigne(3)}, nullptr))
            return true;
        if (colonne == 2 && (c1 == "base déclarée" || c1 == "montant déclaré") && Valeur(sortie, 1) != 0)
            return essaie(Genre::Somme, {deLigne(1)}, regles::auDelaDuPlafond);
        if (colonne == 1) {
            for (const LigneReduction& ligne : LignesReductions())
                if (ligne.sortie == sortie)
                    if (const CaseEntree box = CaseEntree::Numero(CatalogueEntree::index.Cherche(Hache(ligne.base))))
                        if (essaie(Genre::Choix, {{Terme::Sorte::Boite, box.numero}}, nullptr)) return true;
            for (const auto& t : credits::transitionEnergetique)
                if (t.credit == sortie && essaie(Genre::Choix, {{Terme::Sorte::Boite, t.depense.numero}}, nullptr))
                    return true;
            for (const auto& t : credits::travauxForestiers)
                if (t.credit == sortie && essaie(Genre::Choix, {{Terme::Sorte::Boite, t.depense.numero}}, nullptr))
                    return true;
        }
        if (colonne == 0) {
            for (const auto& copie : credits::copies)
                if (copie.credit == sortie && essaie(Genre::Choix, {{Terme::Sorte::Boite, copie.box.numero}}, nullptr))
                    return true;
            for (const auto& copie : credits::copiesProfessionnelles)
                if (copie.credit == sortie && essaie(Genre::Choix, {{Terme::Sorte::Boite, copie.box.numero}}, nullptr))
                    return true;
        }
        if (colonne > 0 && ParLigneReelle(noeud, sortie, colonne, profondeur)) return true;
        // A total of persons, or of three levies.
        const bool ventilee =
            c1.starts_with("déclarant") || c1.starts_with("gains du") || c1.starts_with("prélèvement");
        return colonne == 0 && ventilee && essaie(Genre::Somme, {deLigne(1), deLigne(2), deLigne(3)}, nullptr);
    }

    // A reduction or a credit: a rate of the base retained, within the tax that is left. The column of the rate is cut
    // to whole percents: the parameter of the line has all of it.
    bool ParTauxEntier(Noeud& noeud, CaseSortie sortie, std::int32_t profondeur) {
        const std::int32_t base = Valeur(sortie, 2);
        std::int32_t taux = 100 * Valeur(sortie, 3);
        for (const LigneReduction& ligne : LignesReductions())
            if (ligne.sortie == sortie)
                if (const Parametre p = ParametreDuTaux(ligne.base);
                    p && nDiv(static_cast<const Loi&>(m_loi)[p], 100) * 100 == taux) {
                    taux = static_cast<const Loi&>(m_loi)[p];
                    noeud.source = p.Ligne().source;
                }
        Noeud calcul = Part("au taux", nAuTaux(base, taux));
        if (calcul.valeur < noeud.valeur || calcul.valeur == 0) return noeud.source.clear(), false;
        const bool entier = calcul.valeur == noeud.valeur;
        Noeud& vers = entier ? noeud : calcul;
        const std::int32_t dessous = entier ? profondeur : profondeur - 1;
        vers.regle = "rate", vers.formule = Taux(taux) + " de " + Nombre(base);
        if (dessous != 0) {
            Ajoute(vers, Ligne(sortie, 2, dessous - 1), 1, "base");
            Ajoute(vers, PartTaux(taux), 1, "rate");
        }
        if (entier) return true;
        Ajoute(noeud, std::move(calcul), 1);
        Complete(noeud, "non imputé : l'impôt restant, ou un plafond, n'en laissait pas davantage");
        return true;
    }
    static Parametre ParametreDuTaux(const std::string& boite) {
        const std::string nom = "reductions." + boite + ".taux";
        const Parametre p = ChercheParametre(nom);
        return p ? p : ChercheParametre(RegleDe(nom));
    }

    bool ParLigneReelle(Noeud& noeud, CaseSortie sortie, int colonne, std::int32_t profondeur) {
        const auto k = static_cast<std::size_t>(colonne - 1);
        const auto cherche = [&](const auto& table) {
            for (const nonsalaries::LigneReelle& ligne : table) {
                if (!(ligne.sortie == sortie)) continue;
                std::vector<Terme> termes;
                for (const auto& [box, signe] : {std::pair{ligne.box[k], 1}, {ligne.moins[k], -1}, {ligne.plus[k], 1}})
                    if (box) termes.push_back({Terme::Sorte::Boite, box.numero, 0, signe});
                return EssaieTermes(noeud, Genre::Somme, termes, nullptr, colonne, profondeur);
            }
            return false;
        };
        return cherche(nonsalaries::lignesMicro) || cherche(nonsalaries::lignesReelles) ||
               cherche(nonsalaries::plusValuesReelles) || cherche(nonsalaries::plusValuesMicro) ||
               cherche(nonsalaries::lignesExonerees);
    }

    // ---- What no rule gives: the step, the text, and what each amount of the return does to the figure.

    void ParEtape(Noeud& noeud, CaseSortie sortie, int colonne) {
        noeud.regle = "step";
        if (colonne == 0) noeud.formule = VersUtf8(m_lignes.LitTexte(sortie));
        if (m_principal) noeud.aEffets = {sortie, static_cast<std::size_t>(colonne)};
    }

    Noeud Report(CaseReport report, std::int32_t profondeur) {
        const sens::SensReport& s = sens::De(report);
        Noeud noeud = Part(s.libelle, m_resultats.reports[report]);
        noeud.nom = report::noms[report.numero], noeud.regle = "deeper", noeud.etape = "29:Reports";
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
    void EcritEffets(Noeud& racine) {
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
            for (Noeud* noeud : demandes) {
                Noeud effet = Part(LibelleDe(cle.box), noeud->valeur - essais.Lit({noeud->aEffets}));
                effet.nom = NomDe(cle), effet.regle = "box";
                Ajoute(*noeud, std::move(effet), 1, "effect");
            }
        });
        for (Noeud* noeud : demandes) {
            noeud->aEffets = {};
            std::sort(noeud->termes.begin(), noeud->termes.end(), [](const Noeud& a, const Noeud& b) {
                const auto x = std::llabs(a.valeur), y = std::llabs(b.valeur);
                return x != y ? x > y : a.nom < b.nom;
            });
        }
    }

    // "2.5", of hundredths.
    static std::string Decimal(std::int32_t centiemes) {
        char texte[32];
        return {texte, std::to_chars(texte, std::end(texte), centiemes / 100.0).ptr};
    }

    const Demande& m_demande;
    const Resultats& m_resultats;
    const Passages& m_passages;
    const Lignes& m_lignes;
    const LoiAppliquee m_loi;
    const Saisie m_declaree;        // unset amounts as 0
    std::vector<Saisie> m_vues;     // as the runs saw it: detailed rows folded in, then exceptional amounts too
    const bool m_principal = true;  // the household's own run
    std::vector<std::pair<int, int>> m_chemin;  // the figures under explanation
};

// ---- JSON.

void EcritTexte(std::string& vers, std::string_view texte) {
    vers += '"';
    for (const char c : texte) {
        if (c == '"' || c == '\\') vers += '\\';
        vers += c;
    }
    vers += '"';
}

// An object, member by member; what is "" or 0 is left out where it says nothing.
class Objet {
  public:
    explicit Objet(std::string& vers) : m_vers(vers) {}

    void Nombre(const char* nom, std::int64_t valeur) { Cle(nom), m_vers += std::to_string(valeur); }
    void Texte(const char* nom, std::string_view texte) {
        if (!texte.empty()) Cle(nom), EcritTexte(m_vers, texte);
    }
    template <class Liste, class Fonction>
    void Termes(const Liste& termes, Fonction ecrit) {
        if (termes.empty()) return;
        Cle("terms");
        const char* entre = "[";
        for (const auto& terme : termes) m_vers += std::exchange(entre, ","), ecrit(terme);
        m_vers += ']';
    }
    void Ferme() { m_vers += '}'; }

  private:
    void Cle(const char* nom) { (((m_vers += std::exchange(m_separateur, ",")) += '"') += nom) += "\":"; }

    std::string& m_vers;
    const char* m_separateur = "{";
};

// What names a node: the same in a tree and in a difference.
void EcritNom(Objet& objet, const Noeud& noeud, bool racine) {
    if (racine) objet.Nombre("version", 1);
    objet.Texte("box", noeud.nom);
    if (noeud.colonne > 0) objet.Nombre("column", noeud.colonne);
    objet.Texte("label", noeud.libelle);
    if (!racine) objet.Nombre("sign", noeud.signe);
    objet.Texte("role", noeud.role);
}

void Ecrit(std::string& vers, const Noeud& noeud, bool racine) {
    Objet objet(vers);
    EcritNom(objet, noeud, racine);
    objet.Nombre("value", noeud.valeur);
    objet.Texte("rule", noeud.regle);
    objet.Texte("formula", noeud.formule);
    objet.Texte("law", noeud.source);
    objet.Texte("step", noeud.etape);
    objet.Texte("run", noeud.passage);
    objet.Termes(noeud.termes, [&](const Noeud& terme) { Ecrit(vers, terme, false); });
    objet.Ferme();
}

// ---- Differences.

// Whether two terms are the same one in two trees.
bool Memes(const Noeud& a, const Noeud& b) {
    return a.nom == b.nom && a.colonne == b.colonne && std::string_view(a.role) == b.role &&
           (!a.nom.empty() || a.libelle == b.libelle);
}

// A branch of both trees, or of one of them, the other being null.
struct Branche {
    const Noeud *avant, *apres;
};

std::vector<Branche> BranchesDifferentes(const Branche& branche) {
    std::vector<Branche> differentes;
    const auto cherche = [](const Noeud* parmi, const Noeud& terme) -> const Noeud* {
        if (!parmi) return nullptr;
        const auto meme = std::find_if(parmi->termes.begin(), parmi->termes.end(),
                                       [&](const Noeud& autre) { return Memes(autre, terme); });
        return meme == parmi->termes.end() ? nullptr : &*meme;
    };
    if (branche.avant)
        for (const Noeud& terme : branche.avant->termes)
            if (const Noeud* const autre = cherche(branche.apres, terme); !autre || autre->valeur != terme.valeur)
                differentes.push_back({&terme, autre});
    if (branche.apres)
        for (const Noeud& terme : branche.apres->termes)
            if (!cherche(branche.avant, terme)) differentes.push_back({nullptr, &terme});
    return differentes;
}

void EcritDifference(std::string& vers, const Branche& branche, bool racine) {
    const auto& [avant, apres] = branche;
    Objet objet(vers);
    EcritNom(objet, apres ? *apres : *avant, racine);
    objet.Nombre("before", avant ? avant->valeur : 0);
    objet.Nombre("after", apres ? apres->valeur : 0);
    if (avant) objet.Texte("formulaBefore", avant->formule);
    if (apres) objet.Texte("formulaAfter", apres->formule);
    objet.Termes(BranchesDifferentes(branche), [&](const Branche& terme) { EcritDifference(vers, terme, false); });
    objet.Ferme();
}

Noeud Arbre(const Demande& demande, const FigureLue& figure, std::int32_t profondeur) {
    Passages passages;
    const auto resultats = CalculeRetour(demande, &passages);
    return Explicateur(demande, *resultats, passages).Racine(figure, profondeur);
}

}  // namespace

std::string Explique(const Demande& demande, const FigureLue& figure, std::int32_t profondeur) {
    std::string json;
    Ecrit(json, Arbre(demande, figure, profondeur), true);
    return json;
}

std::string ExpliqueDifference(const Demande& avant, const Demande& apres, const FigureLue& figure,
                               std::int32_t profondeur) {
    const Noeud a = Arbre(avant, figure, profondeur), b = Arbre(apres, figure, profondeur);
    std::string json;
    EcritDifference(json, {&a, &b}, true);
    return json;
}

}  // namespace kv
