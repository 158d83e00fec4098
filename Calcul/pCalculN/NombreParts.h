#pragma once

#include <cstdint>

#include "Calcul/cCalcul/Saisie.h"
#include "Calcul/pCalculN/Loi.h"

namespace kv {

/// The parts of children and other dependants, in hundredths: a part for each, a larger one from the third on; half of
/// that in alternating residence (CGI art. 194).
std::int32_t PartsDesEnfants(const Saisie& saisie, const Loi& loi);

}  // namespace kv
