#pragma once

#include <array>
#include <cstdint>

#include "Calcul/cCalcul/Saisie.h"
#include "Calcul/pCalculN/Loi.h"

// Household parts, in hundredths (CGI art. 193 to 195).

namespace kv {

/// The parts of children and other dependants, in hundredths: a part for each, a larger one from the third on; half of
/// that in alternating residence (CGI art. 194).
std::int32_t PartsDesEnfants(const Saisie& saisie, const Loi& loi);

/// Declarants taxed together: a couple, or a person widowed in the year.
bool ImposesEnsemble(const Saisie& saisie);

/// Why a household has more parts than its declarants and dependants give it.
enum class Motif : std::uint8_t {
    Invalidite,        ///< of a declarant
    AncienCombattant,  ///< or the surviving spouse of one
    VeufAvecCharges,
    ParentIsole,
    Seul,  ///< who brought up a child that is no longer a dependant
    EnfantInvalide,
    EnfantInvalideAlterne,
};
inline constexpr std::size_t nMotifs = 7;
inline constexpr Parametre partsParMotif[nMotifs] = {
    "parts.invalide", "parts.ancienCombattant", "parts.veufAvecCharges", "parts.parentIsole",
    "parts.seul",     "parts.enfantInvalide",   "parts.enfantInvalide",
};
/// What each ground adds, in hundredths.
using PartsParMotif = std::array<std::int32_t, nMotifs>;
PartsParMotif PartsDesSituations(const Saisie& saisie, const Loi& loi);

}  // namespace kv
