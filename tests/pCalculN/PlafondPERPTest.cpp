#include "Calcul/pCalculN/Pilote.h"
#include "tests/Hote.h"

namespace {

// A new resident deducts within four times the ceiling that the outputs hold. They survive the resets: the first
// computation of a launch, the one without advantages, still reads the ceiling of the launch before.
TEST(PlafondPERP, ANewResidentReadsTheCeilingOfTheLaunchBefore) {
    const auto data = Hote("1AJ=100000 6RS=50000 6QW");
    const auto lance = [&] {
        EXPECT_TRUE(kv::Lance(*data, nullptr, true, -1.0));
        const auto& S = data->Sortie;
        return std::vector{S["NP1_PLAF_PERP_V_C"], S["C_COT_PERP_V"], S["NICHE_B"], S["NICHE_A"], S["TOT_PAYER"]};
    };
    // First nothing to deduct from 90000 (36900 - 13694.61); then 36000 (54000 x 30 % - 5706.74).
    EXPECT_EQ(lance(), (std::vector{9000, 36000, 23205, 10493, 10493}));
    data->Entree["1AJ"] = 50000;
    // 36000 of 45000 leave no tax; then 18000 (27000 x 14 % - 1372.98).
    EXPECT_EQ(lance(), (std::vector{4500, 18000, 0, 2407, 2407}));
    EXPECT_EQ(lance(), (std::vector{4500, 18000, 2407, 2407, 2407}));
}

}  // namespace
