#include "Calcul/pCalculN/Loi.h"

#include <cmath>

#include "support/KVTarvel.h"

namespace kv {

namespace {

// What a unit allows, and how a reader is told.
struct ReglesUnite {
    const char* nom;
    double echelle;  // of the stored figure
    double maximum;
    const char* etendue;
};
constexpr ReglesUnite regles[] = {
    {"euros", 1, 1e9, "whole euros from 0 to 1000000000"},
    {"percent", 100, 100, "a percentage from 0 to 100 with at most two decimals"},
    {"years", 1, 150, "whole years from 0 to 150"},
    {"count", 100, 1000, "a number from 0 to 1000 with at most two decimals"},
};
const ReglesUnite& ReglesDe(Unite unite) { return regles[static_cast<std::size_t>(unite)]; }

}  // namespace

std::optional<Loi> Indexee(const Loi& loi, double taux) {
    if (taux == -1.0 || taux == 0.0) return {};
    const double coefficient = dDiv(dMul(taux, 100.0) + 10000.0, 10000.0);
    Loi indexee = loi;
    for (std::size_t i = 0; i < nParametres; ++i)
        if (lignesLoi[i].indexe) indexee.valeurs[i] = nArrondi(dMul(loi.valeurs[i], coefficient));
    return indexee;
}

Parametre ChercheParametre(std::string_view nom) {
    const Parametre p = Parametre::Numero(indexLoi.Cherche(Hache(nom)));
    return p && nom == p.Ligne().nom ? p : Parametre();
}

double Valeur(const Loi& loi, Parametre p) { return loi[p] / ReglesDe(p.Ligne().unite).echelle; }

std::string Fixe(Loi& loi, Parametre p, double valeur) {
    const ReglesUnite& r = ReglesDe(p.Ligne().unite);
    const std::int32_t figure = nArrondi(valeur * r.echelle);
    // The figure is the one written when it gives the same decimal number back.
    if (!(0 <= valeur && valeur <= r.maximum) || figure / r.echelle != valeur) return r.etendue;
    loi[p] = figure;
    return "";
}

std::string Defaut(const Loi& loi) {
    for (const auto& seuils : seuilsCroissants) {
        for (std::size_t i = 1; i < std::size(seuils) && seuils[i]; ++i) {
            if (loi[ChercheParametre(seuils[i - 1])] < loi[ChercheParametre(seuils[i])]) continue;
            return std::string(seuils[i]) + " is not above " + seuils[i - 1];
        }
    }
    return "";
}

const char* NomUnite(Unite unite) { return ReglesDe(unite).nom; }
Etendue EtendueDe(Unite unite) { return {ReglesDe(unite).maximum, ReglesDe(unite).echelle == 1 ? 0 : 2}; }

}  // namespace kv
