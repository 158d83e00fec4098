#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory_resource>
#include <vector>

#include "Calcul/cCalcul/DataCalcul.h"
#include "support/KVTarvel.h"

// What a run of the computation starts from: a value of its own. A run over other inputs takes a changed copy.

namespace kv {

/// The entry boxes and the companion amounts of a return. In a computation unset boxes are 0, but for the start years
/// of the farms.
struct Saisie {
    ZoneEntree entrees;
    Zone<CaseTI, nTI> TI;
    Zone<CaseTIX, nTIX> TIX, TIY;
    Zone<CaseTK, nTK> TK, TKZ;

    Saisie() = default;
    Saisie(const Saisie& autre) { *this = autre; }
    Saisie& operator=(const Saisie& autre);

    std::int32_t& operator[](CaseEntree c) { return entrees[c]; }
    std::int32_t operator[](CaseEntree c) const { return entrees[c]; }
    bool operator==(const Saisie&) const = default;
};

/// The areas of a return that hold amounts by entry box.
enum class Aire : std::uint8_t { Entrees, TI, TIX, TIY, TK, TKZ };

/// The place of a box's amount in an area, -1 when the box has none there.
std::int32_t Place(Aire aire, CaseEntree box);
/// The amount at a place of an area.
std::int32_t& Montant(Saisie& saisie, Aire aire, std::int32_t place);
inline std::int32_t Montant(const Saisie& saisie, Aire aire, std::int32_t place) {
    return Montant(const_cast<Saisie&>(saisie), aire, place);  // which is only read
}

/// The exceptional income of a return, taxed by the quotient: amounts by box and coefficient.
struct Exceptionnels {
    struct Montant {
        CaseEntree box;
        std::int32_t coefficient;
        std::int32_t montant;
        bool operator==(const Montant&) const = default;
    };
    std::pmr::vector<Montant> montants;           ///< by quotient map, then by coefficient
    std::pmr::vector<std::int32_t> coefficients;  ///< in order of first appearance

    Exceptionnels() = default;
    /// A copy whose memory comes from elsewhere.
    Exceptionnels(const Exceptionnels& autre, std::pmr::memory_resource* place)
        : montants(autre.montants, place), coefficients(autre.coefficients, place) {}

    /// Stores an amount, in place of one already stored for this coefficient.
    void Pose(CaseEntree box, std::int32_t coefficient, std::int32_t montant);
    /// The amount of a box for a coefficient, and over all coefficients; 0 for none.
    std::int32_t De(CaseEntree box, std::int32_t coefficient) const;
    std::int32_t De(CaseEntree box) const;
    /// What the quotient leaves out of the taxable amounts of a box: sum of a - a / d.
    std::int32_t Excedent(CaseEntree box) const;
    bool operator==(const Exceptionnels&) const = default;
};

/// What a coefficient divides and multiplies by.
constexpr std::int32_t Diviseur(std::int32_t coefficient) { return coefficient == 0 ? 4 : coefficient; }

/// What a launch starts from: the inputs of a return as the host filled them in, unset ones as 0.
Saisie LisSaisie(const CDataCalcul& data);
Exceptionnels LisExceptionnels(const CDataCalcul& data);
Saisie SansNonSaisis(const Saisie& saisie);
/// The same of one amount.
bool ResteNonSaisie(Aire aire, CaseEntree box);
inline std::int32_t SansNonSaisi(Aire aire, CaseEntree box, std::int32_t montant) {
    return montant != nNonSaisi || ResteNonSaisie(aire, box) ? montant : 0;
}
Exceptionnels SansNonSaisis(Exceptionnels exceptionnels);
/// The entry boxes that are not 0.
CasesEntree BoitesRemplies(const Saisie& saisie);
/// Whether n values are all 0; several are looked at together.
template <std::size_t n>
bool Vide(const std::int32_t* valeurs) {
    std::int32_t ensemble = 0;
    for (std::size_t i = 0; i < n; ++i) ensemble |= valeurs[i];
    return ensemble == 0;
}
template <std::size_t n>
bool Vide(const std::array<std::int32_t, n>& valeurs) {
    return Vide<n>(valeurs.data());
}
/// A box that detailed salary or pension rows are added to, and those rows.
struct TotalDetaille {
    CaseEntree total;
    CaseEntree details[4];
};
inline constexpr TotalDetaille totauxDetailles[] = {
    {"1AJ", {"1AG", "1NX", "1TP", "1PM"}},
    {"1BJ", {"1BG", "1OX", "1UP", "1QM"}},
    {"1CJ", {"1CG"}},
    {"1DJ", {"1DG"}},
    {"1EJ", {"1EG"}},
    {"1FJ", {"1FG"}},
    {"1AS", {"1AM"}},
    {"1BS", {"1BM"}},
    {"1CS", {"1CM"}},
    {"1DS", {"1DM"}},
    {"1ES", {"1EM"}},
    {"1FS", {"1FM"}},
};
/// Adds the detailed rows to their totals.
void Replie(Saisie& saisie);

}  // namespace kv
