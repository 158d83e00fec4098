#pragma once

#include <string>
#include <string_view>

#include "Calcul/pCalculN/ReductionsTable.h"
#include "interface/Sens.h"
#include "support/KVTarvel.h"

// What the composed labels are made of.

namespace kv::sens {

namespace r = reductions;
namespace om = outremer;

inline constexpr const char* inutilisee = "inutilisée";
inline const char* Nom(CaseEntree c) { return entree::lignes[c.numero].nom; }
inline const char* Nom(CaseSortie c) { return sortie::noms[c.numero]; }

template <class Fonction>
void PourChaqueMot(std::string_view mots, Fonction f) {
    while (!mots.empty()) {
        const std::size_t fin = std::min(mots.find(' '), mots.size());
        if (fin > 0) f(mots.substr(0, fin));
        mots.remove_prefix(std::min(fin + 1, mots.size()));
    }
}

inline CaseEntree EntreeDe(std::string_view nom) {
    return CaseEntree::Numero(CatalogueEntree::index.Cherche(Hache(nom)));
}

inline std::string Taux(Parametre taux) { return VersUtf8(FloatToStr(Valeur(loi2017, taux))) + " %"; }

// The year whose rules an advantage follows.
inline std::string Regles(Niche niche) {
    switch (niche) {
        case Niche::N2013:
            return " (depuis 2013)";
        case Niche::N2013S:
            return " (depuis 2013, plafond majoré)";
        case Niche::N2012:
            return " (règles de 2012)";
        case Niche::N2011:
            return " (règles de 2011)";
        case Niche::N2010:
            return " (règles de 2010)";
        case Niche::N2009:
            return " (règles de 2009)";
        default:
            return " (hors plafonnement)";
    }
}

// The rental schemes, by table: what their lines are reductions for.
template <class Fonction>
void PourChaqueRegimeLocatif(Fonction f) {
    f(r::fractionsDeLAnnee, "Locatif intermédiaire");
    f(r::investissementsDeLAnnee, "Locatif intermédiaire");
    f(r::meubleReporte, "Locatif, réduction reportée");
    f(r::locatifAncien, "Locatif neuf");
    f(r::locatifFractions, "Locatif neuf");
    f(r::locatifRecent, "Locatif neuf");
    f(r::meubleAncien, "Location meublée, réduction reportée");
    f(r::meuble2010, "Location meublée, investissement");
    f(r::meubleFractions, "Location meublée, investissement");
    f(r::meubleRecent, "Location meublée, investissement");
}
// A line under the ceiling of furnished letting is one, whatever the table that its place in the order puts it in.
inline std::string RegimeDe(const std::string& regime, const r::LigneFraction&) { return regime; }
inline std::string RegimeDe(const std::string& regime, const r::LigneEtalee& ligne) {
    return ligne.plafond == r::meuble ? "Location meublée, investissement" : regime;
}
inline std::string Libelle(const std::string& regime, const r::LigneFraction& ligne) {
    const bool dejaReporte = regime.ends_with("reportée");
    return regime + (dejaReporte ? "" : ", fraction annuelle") + Regles(ligne.niche);
}
inline std::string Libelle(const std::string& regime, const r::LigneEtalee& ligne) {
    return RegimeDe(regime, ligne) + " à " + Taux(ligne.taux) + " sur " + std::to_string(ligne.annees) + " ans" +
           Regles(ligne.niche);
}

}  // namespace kv::sens
