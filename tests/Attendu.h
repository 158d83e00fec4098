#pragma once

#include <source_location>

#include "tests/Retour.h"

namespace test {

struct Montant {
    CaseSortie sortie;
    std::int32_t montant;
};

/// Several outputs of a return at once.
inline void Attend(const Resultat& r, std::initializer_list<Montant> attendus,
                   std::source_location ici = std::source_location::current()) {
    const testing::ScopedTrace trace(ici.file_name(), static_cast<int>(ici.line()), "expected here");
    for (const Montant& m : attendus) EXPECT_EQ(r[m.sortie], m.montant) << kv::sortie::noms[m.sortie.numero];
}

}  // namespace test

using test::Attend;
using test::Montant;
