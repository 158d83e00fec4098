#pragma once

#include <array>
#include <cstdint>

#include "Calcul/cCalcul/Fiches.h"

namespace kv {

/// The progressive scale: five brackets.
using Bareme = std::array<TrancheBareme, 5>;

/// The scale of 2017, CGI art. 197 I-1. Each constant makes the formula continuous from one bracket to the next.
inline constexpr Bareme bareme2017 = {{
    {0, 9807, 0, 0},
    {9807, 27086, 1372.98, 1400},
    {27086, 72617, 5706.74, 3000},
    {72617, 153783, 13694.61, 4100},
    {153783, 0, 19845.93, 4500},
}};

/// Tax and marginal rate (hundredths of a percent) of an income.
struct ImpotBareme {
    std::int32_t impot;
    std::int32_t tauxMarginal;
};
/// Applies the scale to an income (euros) over a number of parts (hundredths), CGI art. 197 I-1 and 193.
ImpotBareme AppliqueBareme(const Bareme& bareme, std::int32_t revenu, std::int32_t parts);

}  // namespace kv
