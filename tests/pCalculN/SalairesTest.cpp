#include "tests/Foyer.h"

namespace {

using Colonnes = std::vector<std::int32_t>;

TEST(Salaires, FlatDeductionOrActualExpenses) {
    const struct {
        const char* boxes;
        std::int32_t deduction, net;
    } cas[] = {
        {"1AJ=30000", 3000, 27000},
        {"1AJ=4000", 430, 3570},        // floor
        {"1AJ=300", 300, 0},            // which takes the whole salary
        {"1AJ=300 1AK=100", 300, 0},    // expenses of less than the floor
        {"1AJ=200000", 12305, 187695},  // ceiling
        {"1AJ=5000 1AI", 947, 4053},    // raised floor
        {"1AJ=5000", 500, 4500},
        {"1AJ=30000 1AK=3000", 3000, 27000},
        {"1AJ=30000 1AK=3001", 3001, 26999},
        {"1AJ=30000 1AK=2000", 3000, 27000},
        {"1AJ=200000 1AK=20000", 20000, 180000},
        {"1AJ=30000 1AK=-2147483647", 3000, 27000},  // unset
    };
    for (const auto& c : cas) {
        const auto r = Foyer(c.boxes).Calcule();
        Attend(r, {{"RN_SAL_DED_10", c.deduction}, {"RN_SAL", c.net}}, c.boxes);
    }
    // At 2 %: the ceiling is 12551.10, the floor 438.60, the raised floor 965.94.
    const auto r = Foyer("M 1AJ=200000 1BJ=1000 1CJ=1000 1CI").Indexation(2.0).Calcule();
    EXPECT_EQ(r.Colonnes("RN_SAL_DED_10"), (Colonnes{12551, 439, 966}));
}

TEST(Salaires, DeclarantsAndDependantsHaveTheirColumns) {
    // Dependants: 5000 - 500 and, in the boxes of the ninth one, 1000 - 430.
    const auto r = Foyer("M 1AJ=20000 1BJ=10000 1BK=2000 1CJ=5000 1FJE=1000").Calcule();
    EXPECT_EQ(r.Colonnes("RN_SAL_SAIS"), (Colonnes{20000, 10000, 6000}));
    EXPECT_EQ(r.Colonnes("RN_SAL_DED_10"), (Colonnes{2000, 2000, 930}));
    EXPECT_EQ(r.Colonnes("RN_SAL"), (Colonnes{18000, 8000, 5070}));
    EXPECT_EQ(r.Colonnes("RN_SAL_DED_10_SEULEMENT"), (Colonnes{2000, 1000, 930}));  // before the choice
    Attend(r, {{"RN_SAL_DED_10_SEULEMENT", 0}, {"TOT_R_BRUT", 31070}, {"SEPAR_REV", 1}});
    // The detailed boxes count with their totals for the time of the launch.
    const auto s = Foyer("M 1AJ=10000 1AG=1000 1NX=200 1TP=30 1PM=4 1OX=500 1CG=700 1AS=3000 1AM=70 1FM=8").Calcule();
    EXPECT_EQ(s.Colonnes("RN_SAL_SAIS"), (Colonnes{11234, 500, 700}));
    EXPECT_EQ(s.Colonnes("RN_PEN_DECL"), (Colonnes{3070, 0, 8}));
    EXPECT_EQ(s.E("1AJ"), 10000);
    EXPECT_EQ(s.E("1CJ"), 0);
    EXPECT_EQ(s.E("1AS"), 3000);
}

TEST(Salaires, PensionAllowances) {
    const struct {
        const char* boxes;
        Colonnes abattements;
    } cas[] = {
        {"1AS=20000", {2000, 0, 0}},
        {"1AS=2000", {383, 0, 0}},                                // minimum
        {"1AS=300", {300, 0, 0}},                                 // which takes the whole pension
        {"1AS=40000", {3752, 0, 0}},                              // ceiling of the household
        {"M 1AS=30000 1BS=10000", {2814, 938, 0}},                // three quarters and one quarter of it
        {"M 1AS=20000 1BS=20000 1CS=20000", {1251, 1251, 1250}},  // 1250.67; the last one gives 1 back
        {"M 1AS=40000 1BS=1000", {3369, 383, 0}},                 // the minimum is served first
    };
    for (const auto& c : cas) {
        const auto r = Foyer(c.boxes).Calcule();
        EXPECT_EQ(r.Colonnes("RN_PEN_ABAT"), c.abattements) << c.boxes;
        EXPECT_EQ(r["RN_PEN"], r["RN_PEN_DECL"] - c.abattements[0] - c.abattements[1] - c.abattements[2]) << c.boxes;
        for (const std::size_t k : {1u, 2u, 3u})
            EXPECT_EQ(r.C(k, "RN_PEN"), r.C(k, "RN_PEN_DECL") - c.abattements[k - 1]) << c.boxes;
    }
    // At 2 %: ceiling 3827.04, minimum 390.66.
    const auto r = Foyer("M 1AS=50000 1BS=1000").Indexation(2.0).Calcule();
    EXPECT_EQ(r.Colonnes("RN_PEN_ABAT"), (Colonnes{3827 - 391, 391, 0}));
}

TEST(Salaires, ShareGainsTaxedAsSalaries) {
    // 10 % of 40000 = 4000, a quarter of it for the gains.
    const auto r = Foyer("1AJ=30000 1TT=10000").Calcule();
    EXPECT_EQ(r.C(1, "RN_SAL_SAIS"), 30000);
    EXPECT_EQ(r["RN_SAL_DED_10"], 3000);
    EXPECT_EQ(r.Colonnes("RD_GAINS_2_Rev"), (Colonnes{10000, 0, 0}));
    Attend(r, {{"RD_GAINS_2_Ded", 1000}, {"RD_GAINS", 9000}, {"TOT_R_BRUT", 36000}});
    // Actual expenses of 8000, a quarter of them for the gains; second declarant.
    const auto s = Foyer("M 1BJ=30000 3VK=10000 1BK=8000").Calcule();
    EXPECT_EQ(s.Colonnes("RN_SAL"), (Colonnes{0, 24000, 0}));
    EXPECT_EQ(s.Colonnes("RD_GAINS"), (Colonnes{0, 8000, 0}));
}

TEST(Salaires, AnnuitiesByAge) {
    const auto r = Foyer("1AW=1000 1AR=500 1BW=12000 1CR=1005 1DW=15").Calcule();
    EXPECT_EQ(r["RD_RENTES_M_50"], 1050);
    EXPECT_EQ(r.Colonnes("RD_RENTES_M_50"), (Colonnes{0, 1500, 70}));
    EXPECT_EQ(r["RD_RENTES_50_59"], 6000);
    EXPECT_EQ(r.Detail("RD_RENTES_50_59"), "12000 x 50%");
    EXPECT_EQ(r["RD_RENTES_60_69"], 402);
    EXPECT_EQ(r["RD_RENTES_P_70"], 5);  // 4.5
    Attend(r, {{"RD_RENTES", 7457}, {"SEPAR_REV_DIV", 1}});
}

}  // namespace
