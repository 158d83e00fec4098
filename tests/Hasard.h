#pragma once

#include <random>

#include "Calcul/cCalcul/DataCalcul.h"
#include "support/KVTarvel.h"

namespace test {

/// A value that a host may give: mostly nothing, ticks and amounts, but also unset, negative and absurd ones.
inline std::int32_t ValeurAuHasard(std::mt19937& hasard) {
    switch (hasard() % 16) {
        case 0:
            return nNonSaisi;
        case 1:
            return static_cast<std::int32_t>(hasard());
        case 2:
            return -static_cast<std::int32_t>(hasard() % 50'000);
        case 3:
        case 4:
            return 1;
        case 5:
        case 6:
        case 7:
            return static_cast<std::int32_t>(hasard() % 100'000);
        default:
            return 0;
    }
}

/// Fills everything that a host may fill: entries, companions, exceptional income.
inline void RemplitAuHasard(CDataCalcul& data, std::mt19937& hasard) {
    const auto remplit = [&](auto& zone) {
        for (std::int32_t& v : zone.valeurs) v = ValeurAuHasard(hasard);
    };
    remplit(data.Entree);
    remplit(data.TI), remplit(data.TIX), remplit(data.TIY), remplit(data.TK), remplit(data.TKZ);
    for (int k = 0; k < 30; ++k)
        data.AjouteQuotient(static_cast<int>(hasard() % kv::nQuotients), static_cast<std::int32_t>(hasard() % 5),
                            ValeurAuHasard(hasard));
}

}  // namespace test
