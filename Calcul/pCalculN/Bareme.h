#pragma once

#include <array>
#include <cstdint>

#include "Calcul/cCalcul/Fiches.h"
#include "Calcul/pCalculN/Loi.h"

namespace kv {

/// The progressive scale: five brackets.
using Bareme = std::array<TrancheBareme, 5>;

/// The scale of a law, CGI art. 197 I-1. Each constant makes the formula continuous from one bracket to the next.
constexpr Bareme BaremeDe(const Loi& loi) {
    constexpr Parametre taux[] = {"bareme.tranche1.taux", "bareme.tranche2.taux", "bareme.tranche3.taux",
                                  "bareme.tranche4.taux", "bareme.tranche5.taux"};
    constexpr Parametre seuils[] = {
        {}, "bareme.tranche2.seuil", "bareme.tranche3.seuil", "bareme.tranche4.seuil", "bareme.tranche5.seuil"};
    Bareme bareme{};
    std::int64_t constante = 0;  // hundredths of a percent of a euro
    for (std::size_t i = 0; i < bareme.size(); ++i) {
        TrancheBareme& tranche = bareme[i];
        tranche.Taux = loi[taux[i]];
        if (i > 0) {
            const std::int32_t seuil = loi[seuils[i]];
            constante += std::int64_t{seuil} * (loi[taux[i]] - loi[taux[i - 1]]);
            bareme[i - 1].Haute = tranche.Basse = seuil;
        }
        tranche.Constante = static_cast<double>(constante) / 10000.0;
    }
    return bareme;
}

inline constexpr Bareme bareme2017 = BaremeDe(loi2017);

/// Tax and marginal rate (hundredths of a percent) of an income.
struct ImpotBareme {
    std::int32_t impot;
    std::int32_t tauxMarginal;
};
/// Applies the scale to an income (euros) over a number of parts (hundredths), CGI art. 197 I-1 and 193.
ImpotBareme AppliqueBareme(const Bareme& bareme, std::int32_t revenu, std::int32_t parts);

}  // namespace kv
