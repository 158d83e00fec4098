#include <algorithm>
#include <numeric>

#include "Calcul/pCalculN/CreditsTable.h"
#include "Calcul/pCalculN/NonSalariesTable.h"
#include "Calcul/pCalculN/ReductionsTable.h"
#include "interface/Explicateur.h"
#include "interface/LignesReductions.h"
#include "interface/Sens.h"
#include "support/KVTarvel.h"

// Rows of rules, and what the tables of reductions, credits and business income say of a figure.

namespace kv {

using regles::Genre;
using regles::Terme;

namespace {

Terme DeBoite(CaseEntree box, int signe = 1) { return {Terme::Sorte::Boite, box.numero, 0, signe}; }

CasesSortie Credits() {
    CasesSortie somme;
    for (const CaseSortie credit : credits::creditsDuTotal) somme.Ajoute(credit);
    for (const auto& travaux : credits::travauxForestiers) somme.Ajoute(travaux.credit);
    for (const auto& depense : credits::transitionEnergetique) somme.Ajoute(depense.credit);
    somme.Ajoute("D_CREDIT_PFU2");
    somme.Ajoute("D_CREDIT_CIMR_IR");
    return somme;
}

}  // namespace

// ---- Rows.

std::int32_t Explicateur::Valeur(const Terme& terme, int colonne, const Saisie& vue) const {
    switch (terme.sorte) {
        case Terme::Sorte::Sortie:
            return Valeur(CaseSortie::Numero(terme.numero), terme.colonne < 0 ? colonne : terme.colonne);
        case Terme::Sorte::Boite:
            return vue[CaseEntree::Numero(terme.numero)];
        case Terme::Sorte::Loi:
            return ValeurLoi(Parametre::Numero(terme.numero));
        case Terme::Sorte::ParFoyer:
            return ParFoyer(ValeurLoi(Parametre::Numero(terme.numero)));
        case Terme::Sorte::Nombre:
            break;
    }
    return terme.numero;
}

Noeud Explicateur::Operande(const Terme& terme, int colonne, std::size_t vue, std::int32_t profondeur) {
    switch (terme.sorte) {
        case Terme::Sorte::Sortie:
            return Ligne(CaseSortie::Numero(terme.numero), terme.colonne < 0 ? colonne : terme.colonne, profondeur);
        case Terme::Sorte::Boite:
            return Boite(CaseEntree::Numero(terme.numero), vue, profondeur);
        case Terme::Sorte::Loi:
            return FigureDeLaLoi(Parametre::Numero(terme.numero));
        case Terme::Sorte::ParFoyer:
            return FigureParFoyer(Parametre::Numero(terme.numero));
        case Terme::Sorte::Nombre:
            break;
    }
    return Part("nombre", terme.numero);
}

bool Explicateur::ParLigne(Noeud& noeud, CaseSortie sortie, int colonne, std::int32_t profondeur) {
    for (const regles::Regle& regle : regles::lignes) {
        Terme cible;
        regle.figure.Parcourt([&](const Terme& terme) { cible = terme; });
        if (!DeLOption(regle.option) || cible.numero != sortie.numero ||
            !(cible.colonne == colonne || (cible.colonne < 0 && colonne > 0)))
            continue;
        std::vector<Terme> termes;
        regle.operandes.Parcourt([&](const Terme& terme) { termes.push_back(terme); });
        if (!EssaieTermes(noeud, regle.genre, termes, regle.ecart, colonne, profondeur)) continue;
        if (*regle.mots) noeud.formule = std::string(regle.mots) + (noeud.formule.empty() ? "" : " : ") + noeud.formule;
        return true;
    }
    return false;
}

// The reference income, which the options and foreign income compose in four ways.
bool Explicateur::ParRevenuDeReference(Noeud& noeud, std::int32_t profondeur) {
    const regles::Formule& capitaux =
        m_option == regles::Option::Forfait ? regles::capitauxAuForfait : regles::capitauxAuBareme;
    std::int32_t gains = 0;
    for (const CaseEntree box : {CaseEntree("3VG"), CaseEntree("3SG"), CaseEntree("3UA"), CaseEntree("3SL"),
                                 CaseEntree("3VA"), CaseEntree("3VQ")})
        gains += m_vues.back()[box];
    const std::int32_t pertes = nPositif(m_vues.back()["3VH"] + m_vues.back()["3VR"] - gains);
    for (const regles::Formule& net : regles::revenuNet) {
        std::vector<Terme> termes;
        for (const regles::Formule& formule : {net, regles::horsRevenuNet, capitaux})
            formule.Parcourt([&](const Terme& terme) { termes.push_back(terme); });
        // Losses count within the gains; what comes off dividends is rounded together here, by kind in its lines.
        Noeud essai = noeud;
        if (!EssaieTermes(essai, Genre::Somme, termes, pertes > 0 ? "pertes au-delà des gains" : "arrondi", 0,
                          profondeur))
            continue;
        const bool complete = !essai.termes.empty() && essai.termes.back().nom.empty();
        if (std::abs((complete ? essai.termes.back().valeur : 0) - pertes) > 1) continue;
        noeud = std::move(essai);
        return true;
    }
    return false;
}

// Shows a rule whose operands give the figure, with the inputs as one of the runs saw them. ecart: what the difference
// is called where they do not give all of it; null: then the rule is not shown.
bool Explicateur::EssaieTermes(Noeud& noeud, Genre genre, const std::vector<Terme>& termes, const char* ecart,
                               int colonne, std::int32_t profondeur) {
    return DansUneVue([&](std::size_t vue) {
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
            case Genre::Plafonne:
                calcul = std::min(std::accumulate(v.begin(), v.end() - 1, 0), v.back());
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
        if (rien || (calcul != noeud.valeur && !ecart)) return false;
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
    });
}

void Explicateur::Montre(Noeud& noeud, Genre genre, const std::vector<Terme>& termes,
                         const std::vector<std::int32_t>& v, int colonne, std::size_t vue, std::int32_t profondeur) {
    const auto operande = [&](Noeud& vers, std::size_t i, const char* role) {
        if (profondeur == 0) return;
        Ajoute(vers, Operande(termes[i], colonne, vue, profondeur - 1), termes[i].signe, role);
        if (termes[i].sorte == Terme::Sorte::Loi || termes[i].sorte == Terme::Sorte::ParFoyer)
            noeud.source = Parametre::Numero(termes[i].numero).Ligne().source;
    };
    // What all operands but the last one add up.
    const auto base = [&] {
        if (v.size() == 2) return operande(noeud, 0, genre == Genre::Taux ? "base" : "among");
        Noeud somme = Total("base", std::accumulate(v.begin(), v.end() - 1, 0));
        for (std::size_t i = 0; i + 1 < v.size(); ++i) operande(somme, i, "");
        somme.formule = Addition(somme);
        if (profondeur != 0) Ajoute(noeud, std::move(somme), 1, genre == Genre::Taux ? "base" : "among");
    };
    switch (genre) {
        case Genre::Somme:
            for (std::size_t i = 0; i < v.size(); ++i) operande(noeud, i, "");
            Somme(noeud);
            break;
        case Genre::Choix:
            noeud.regle = "choice";
            operande(noeud, 0, "chosen");
            break;
        case Genre::Plafonne: {
            const std::int32_t montant = std::accumulate(v.begin(), v.end() - 1, 0);
            if (montant <= v.back()) {  // the bound is not met
                for (std::size_t i = 0; i + 1 < v.size(); ++i) operande(noeud, i, "");
                Somme(noeud);
                break;
            }
            noeud.regle = "min";
            base();
            operande(noeud, v.size() - 1, "among");
            noeud.formule = "plafond de " + Nombre(v.back());
            break;
        }
        case Genre::Taux:
            noeud.regle = "rate";
            base();
            operande(noeud, v.size() - 1, "rate");
            noeud.formule = TexteTaux(v.back()) + " de " + Nombre(std::accumulate(v.begin(), v.end() - 1, 0));
            break;
        case Genre::Part:
            noeud.regle = "share";
            for (std::size_t i = 0; i < 3; ++i) operande(noeud, i, std::array{"amount", "numerator", "denominator"}[i]);
            noeud.formule = Nombre(v[0]) + " x " + Nombre(v[1]) + (v[2] != 1 ? " / " + Nombre(v[2]) : "");
            break;
        case Genre::Produits:
            for (std::size_t i = 0; i + 1 < v.size(); i += 2) {
                if (profondeur == 0) continue;
                const std::int32_t nombre = termes[i].signe * v[i];
                Noeud compte = Operande(termes[i], colonne, vue, profondeur - 1);
                const std::string libelle = "montant pour : " + compte.libelle;
                Ajoute(noeud,
                       Prorata(libelle, nombre * v[i + 1], Operande(termes[i + 1], colonne, vue, profondeur - 1),
                               std::move(compte), Part("", 1)),
                       termes[i].signe);
            }
            Somme(noeud);
    }
}

bool Explicateur::ParSomme(Noeud& noeud, const CasesSortie& plus, const CasesSortie& moins, std::int32_t profondeur) {
    if (m_lignes.Somme(plus) - m_lignes.Somme(moins) != noeud.valeur) return false;
    const auto ajoute = [&](const CasesSortie& sorties, int signe) {
        sorties.Parcourt([&](std::size_t j) {
            Ajoute(noeud, Ligne(CaseSortie::Numero(static_cast<int>(j)), 0, profondeur - 1), signe);
        });
    };
    ajoute(plus, 1);
    ajoute(moins, -1);
    Somme(noeud);
    return true;
}

// ---- Tables.

bool Explicateur::ParTable(Noeud& noeud, CaseSortie sortie, int colonne, std::int32_t profondeur) {
    const sens::Colonnes& c = sens::De(sortie).colonnes;
    const std::string_view c1 = c.c1, c3 = c.c3;
    const auto deLigne = [&](int k) { return Terme{Terme::Sorte::Sortie, sortie.numero, k}; };
    const auto essaie = [&](Genre genre, std::vector<Terme> termes) {
        return EssaieTermes(noeud, genre, termes, nullptr, colonne, profondeur);
    };
    const auto copie = [&](CaseEntree box) { return box && essaie(Genre::Choix, {DeBoite(box)}); };
    if (colonne == 0) {
        if (sortie == CaseSortie("REDUCTIONS"))
            return ParSomme(noeud, reductions::sortiesReductions, reductions::sortiesRetrocessions, profondeur);
        if (sortie == CaseSortie("D_CREDIT")) return ParSomme(noeud, Credits(), {}, profondeur);
        if (sortie == CaseSortie("REVENU_REF") || sortie == CaseSortie("REV_REF_B"))
            return ParRevenuDeReference(noeud, profondeur);
        if (c3 == "taux (%)") return ParReduction(noeud, sortie, profondeur);
        if (c3 == "taux (centièmes de %)" && essaie(Genre::Taux, {deLigne(2), deLigne(3)})) return true;
        for (const auto& credit : credits::copies)
            if (credit.credit == sortie && copie(credit.box)) return true;
        for (const auto& credit : credits::copiesProfessionnelles)
            if (credit.credit == sortie && copie(credit.box)) return true;
        // A total of persons, or of three levies.
        const bool ventilee =
            c1.starts_with("déclarant") || c1.starts_with("gains du") || c1.starts_with("prélèvement");
        return ventilee && essaie(Genre::Somme, {deLigne(1), deLigne(2), deLigne(3)});
    }
    if (colonne == 2 && (c1 == "base déclarée" || c1 == "montant déclaré") && Valeur(sortie, 1) != 0)
        return ParBaseRetenue(noeud, sortie, profondeur);
    if (colonne == 1) {
        for (const LigneReduction& ligne : LignesReductions())
            if (ligne.sortie == sortie && copie(CaseEntree::Numero(CatalogueEntree::index.Cherche(Hache(ligne.base)))))
                return true;
        for (const auto& t : credits::transitionEnergetique)
            if (t.credit == sortie && copie(t.depense)) return true;
        for (const auto& t : credits::travauxForestiers)
            if (t.credit == sortie && copie(t.depense)) return true;
    }
    return ParActivite(noeud, sortie, colonne, profondeur);
}

// What the reduction met when it was imputed as its line shows it; null for a credit, or where the line was changed
// afterwards.
const ReductionImputee* Explicateur::Imputee(CaseSortie sortie) const {
    const auto& vues = m_passages.reductions;
    const auto trouvee = std::find_if(vues.rbegin(), vues.rend(), [&](const ReductionImputee& r) {
        return r.ligne == sortie && r.base == Valeur(sortie, 1) && std::min(r.due, r.reste) == Valeur(sortie);
    });
    return trouvee == vues.rend() ? nullptr : &*trouvee;
}

// The base of a reduction or a credit: what was declared, within a ceiling; one year's part of it where it is spread.
bool Explicateur::ParBaseRetenue(Noeud& noeud, CaseSortie sortie, std::int32_t profondeur) {
    const std::int32_t declaree = Valeur(sortie, 1);
    const ReductionImputee* const vue = Imputee(sortie);
    const std::int32_t plafond = vue ? vue->plafond : declaree;
    const bool partage = std::any_of(LignesReductions().begin(), LignesReductions().end(), [&](const auto& ligne) {
        return ligne.sortie == sortie &&
               (ligne.plafond.find("shared") != std::string::npos || ligne.plafond.find("left") != std::string::npos);
    });
    const auto dansLePlafond = [&](Noeud& vers) {
        Ajoute(vers, Ligne(sortie, 1, profondeur - 1), 1);
        Complete(vers, !vue             ? "non retenu"
                       : vue->reste < 1 ? "non retenu : il ne restait pas d'impôt"
                       : partage        ? "au-delà de ce qui restait du plafond, " + Nombre(plafond)
                                        : "au-delà du plafond de " + Nombre(plafond));
    };
    if (!vue || vue->annees == 1) {
        if (noeud.valeur > declaree) return false;
        dansLePlafond(noeud);
        return true;
    }
    Noeud base = Total("base à répartir", std::min(declaree, plafond));
    if (nArrondi(dDiv(base.valeur, vue->annees)) != noeud.valeur) return false;
    dansLePlafond(base);
    Reprend(noeud, Prorata("", noeud.valeur, std::move(base), Part("une année", 1), Part("années", vue->annees)));
    noeud.formule = "répartie sur " + Nombre(vue->annees) + " ans : " + noeud.formule;
    return true;
}

namespace {

Parametre ParametreDuTaux(const std::string& boite) {
    const std::string nom = "reductions." + boite + ".taux";
    const Parametre p = ChercheParametre(nom);
    return p ? p : ChercheParametre(RegleDe(nom));
}

}  // namespace

// A reduction or a credit: a rate of the base retained, within the tax that is left. The column of the rate is cut to
// whole percents: the parameter of the line has all of it.
bool Explicateur::ParReduction(Noeud& noeud, CaseSortie sortie, std::int32_t profondeur) {
    Noeud taux = PartTaux(100 * Valeur(sortie, 3));
    for (const LigneReduction& ligne : LignesReductions())
        if (ligne.sortie == sortie)
            if (const Parametre p = ParametreDuTaux(ligne.base);
                p && nDiv(ValeurLoi(p), 100) * 100 == 100 * Valeur(sortie, 3))
                taux = FigureDeLaLoi(p);
    Noeud calcul = Taxe("au taux", Ligne(sortie, 2, profondeur - 1), std::move(taux));
    if (calcul.valeur < noeud.valeur || calcul.valeur == 0) return false;
    if (calcul.valeur == noeud.valeur) return Reprend(noeud, std::move(calcul)), true;
    noeud.source = calcul.source;
    const std::int32_t entiere = calcul.valeur;
    Ajoute(noeud, std::move(calcul), 1);
    if (const ReductionImputee* const vue = Imputee(sortie)) {
        Ajoute(noeud, Part("au-delà de la limite de la réduction, " + Nombre(vue->due), entiere - vue->due), -1);
        Ajoute(noeud,
               Part("non imputé : il ne restait que " + Nombre(vue->reste) + " d'impôt", vue->due - noeud.valeur), -1);
        Somme(noeud);
    } else {
        Complete(noeud, "non imputé : l'impôt restant, ou un plafond, n'en laissait pas davantage");
    }
    return true;
}

// Business income: the boxes of a line, by person.
bool Explicateur::ParActivite(Noeud& noeud, CaseSortie sortie, int colonne, std::int32_t profondeur) {
    const auto k = static_cast<std::size_t>(colonne - 1);
    const auto cherche = [&](const auto& table) {
        for (const nonsalaries::LigneReelle& ligne : table) {
            if (!(ligne.sortie == sortie)) continue;
            std::vector<Terme> termes;
            for (const auto& [box, signe] : {std::pair{ligne.box[k], 1}, {ligne.moins[k], -1}, {ligne.plus[k], 1}})
                if (box) termes.push_back(DeBoite(box, signe));
            return EssaieTermes(noeud, Genre::Somme, termes, nullptr, colonne, profondeur);
        }
        return false;
    };
    return cherche(nonsalaries::lignesMicro) || cherche(nonsalaries::lignesReelles) ||
           cherche(nonsalaries::plusValuesReelles) || cherche(nonsalaries::plusValuesMicro) ||
           cherche(nonsalaries::lignesExonerees);
}

}  // namespace kv
