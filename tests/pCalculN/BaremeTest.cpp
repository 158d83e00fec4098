#include "tests/Retour.h"

namespace {

TEST(Bareme, TaxOfASinglePerson) {
    // 33333 less 10 % = 30000 (33333 - 3333); 30000 x 30 % - 5706.74 = 3293.26.
    const auto r = Retour{{"1AJ", 33333}}.Calcule();
    EXPECT_EQ(r["TOT_R_IMPOS"], 30000);
    EXPECT_EQ(r["TOT_IMPOT"], 3293);
    EXPECT_EQ(r.Colonnes("I_IMP_NORM"), (std::vector{100, 30000, 3000}));
}

}  // namespace
