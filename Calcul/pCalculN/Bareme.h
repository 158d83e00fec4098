#pragma once

#include <array>
#include <cstdint>

#include "Calcul/cCalcul/Fiches.h"

namespace kv {

/// The progressive scale: five brackets.
using Bareme = std::array<TrancheBareme, 5>;

/// The scale of an income year; 2017 is the only one built in.
void RemplitBareme(Bareme& bareme, std::int32_t annee);

/// Tax and marginal rate (hundredths of a percent) of an income.
struct ImpotBareme {
    std::int32_t impot;
    std::int32_t tauxMarginal;
};
/// Applies the scale to an income (euros) over a number of parts (hundredths), CGI art. 197 I-1 and 193.
ImpotBareme AppliqueBareme(const Bareme& bareme, std::int32_t revenu, std::int32_t parts);

}  // namespace kv
