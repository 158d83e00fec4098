#pragma once

#include <array>
#include <cstdint>

#include "Calcul/cCalcul/Saisie.h"

// Amounts moved into the ordinary boxes of a copy of the inputs, for a run over them.

namespace kv {

/// The first letters of the six salary columns: the declarants and the first four dependants.
inline constexpr int nColonnesSalaires = 6;

/// A row of six salary boxes, such as `1AJ` .. `1FJ`.
using RangeeSalaires = std::array<CaseEntree, nColonnesSalaires>;
inline constexpr RangeeSalaires rangeeC = {"1AC", "1BC", "1CC", "1DC", "1EC", "1FC"};
inline constexpr RangeeSalaires rangeeE = {"1AE", "1BE", "1CE", "1DE", "1EE", "1FE"};
inline constexpr RangeeSalaires rangeeF = {"1AF", "1BF", "1CF", "1DF", "1EF", "1FF"};
inline constexpr RangeeSalaires rangeeH = {"1AH", "1BH", "1CH", "1DH", "1EH", "1FH"};
inline constexpr RangeeSalaires rangeeJ = {"1AJ", "1BJ", "1CJ", "1DJ", "1EJ", "1FJ"};
inline constexpr RangeeSalaires rangeeK = {"1AK", "1BK", "1CK", "1DK", "1EK", "1FK"};
inline constexpr RangeeSalaires rangeeS = {"1AS", "1BS", "1CS", "1DS", "1ES", "1FS"};

/// An amount by person: first declarant, second declarant, everyone else.
struct ParPersonne {
    std::array<std::int32_t, 3> montant{};

    std::int32_t Total() const { return montant[0] + montant[1] + montant[2]; }
};

/// Foreign income retained for the effective rate (companions TI, less TIX and TIY; exempt salaries and pensions of the
/// rows C, E and H) becomes French income. The gross amounts moved, by person.
ParPersonne DeplaceTI(Saisie& saisie);

/// Foreign income with a credit equal to the French tax (companions TK, less TKZ) stands alone in the boxes.
void DeplaceTK(Saisie& saisie);

/// Auto-entrepreneur or prospection amounts go into the boxes they are linked to, where they are positive; the total.
std::int32_t DeplaceAutoEntr(Saisie& saisie);
std::int32_t DeplaceProspection(Saisie& saisie);

/// The exceptional amounts go into their entry boxes.
void DeplaceExceptionnels(Saisie& saisie, const Exceptionnels& exceptionnels);

/// The return of one declarant of a couple, as half of the household: the declarant's boxes stay, the other one's are
/// emptied, the rest is halved; what describes the household stays. remplies: the boxes of saisie that are not 0.
void RetourDUnDeclarant(entree::Personne declarant, Saisie& saisie, CasesEntree& remplies,
                        Exceptionnels& exceptionnels);

/// The prospection income declared, by person.
ParPersonne TotalProspection(const Saisie& saisie);
/// Sum of the TI companions, of the TK companions.
std::int32_t TotalTI(const Saisie& saisie);
std::int32_t TotalTK(const Saisie& saisie);
/// All foreign, auto-entrepreneur and prospection income; without the TK companions when sansTK is set.
std::int32_t TotalEtranger(const Saisie& saisie, bool sansTK);
/// Foreign income at the effective rate: TI companions, exempt salaries less their expenses, exempt pensions.
std::int32_t IndicateurEtranger(const Saisie& saisie);

}  // namespace kv
