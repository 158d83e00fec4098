#pragma once

#include <string>
#include <vector>

#include "Calcul/cCalcul/DataCalcul.h"

namespace kv {

/// What can't be true of the entry boxes of a return, in English, each line naming its boxes: two family situations, a
/// second declarant's income without a couple, more disabled dependants than dependants, impossible or future dates, a
/// tick that is neither 0 nor 1. The figures are computed all the same. Unset boxes count as 0.
std::vector<std::string> Avertissements(const ZoneEntree& entrees);

}  // namespace kv
