#pragma once

#include "Calcul/cCalcul/Lignes.h"
#include "Calcul/cCalcul/Saisie.h"

namespace kv {

/// Fills the carry-forward boxes from the inputs and the outputs of a launch. The boxes of a deficit category without
/// deficits keep what they held.
void RemplitReports(const Saisie& saisie, const Lignes& lignes, ZoneReport& reports);

}  // namespace kv
