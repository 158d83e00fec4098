#include "Calcul/pCalculN/Bareme.h"

#include <gtest/gtest.h>

namespace {

// One bracket begins where the other ends, and the tax goes on from there.
TEST(Bareme, BracketsFollowOneAnother) {
    const kv::Bareme& bareme = kv::bareme2017;
    for (std::size_t i = 1; i < bareme.size(); ++i) {
        EXPECT_EQ(bareme[i].Basse, bareme[i - 1].Haute);
        EXPECT_NEAR(bareme[i].Constante - bareme[i - 1].Constante,
                    bareme[i].Basse * (bareme[i].Taux - bareme[i - 1].Taux) / 10000, 0.001);
    }
    EXPECT_EQ(kv::AppliqueBareme(bareme, -100, 100).impot, 0);
    EXPECT_EQ(kv::AppliqueBareme(bareme, 1000000, 0).impot, 0);  // no parts: no quotient
}

}  // namespace
