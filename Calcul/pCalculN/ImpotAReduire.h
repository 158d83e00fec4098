#pragma once

#include <cstdint>

namespace kv {

class Contexte;

/// The tax that the reductions may take, in euros: the gross tax less the overseas abatement, the low-tax relief and
/// the reduction for modest incomes.
std::int32_t ImpotAReduire(Contexte& c);

}  // namespace kv
