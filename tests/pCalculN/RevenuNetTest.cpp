#include "tests/Foyer.h"

namespace {

using Colonnes = std::vector<std::int32_t>;

// Salaries and what the deduction of 10 % leaves of them: 11111 - 1111 = 10000, 111111 - 11111 = 100000.

TEST(RevenuNet, ChargesStopWhenTheIncomeIsUsedUp) {
    const auto r = Foyer("1AJ=11111 6DE=300 6GU=20000 6DD=500").Calcule();
    Attend(r, {{"C_CSG", 300}, {"C_AUTRE", 9700}});
    EXPECT_EQ(r.Colonnes("C_AUTRE"), (Colonnes{20000, 20000, 10000}));
    Attend(r, {{"C_DEDUC", 0}, {"CHARGES", 10000}});
    EXPECT_EQ(r.Colonnes("CHARGES"), (Colonnes{-20800, -20800, 0}));
    Attend(r, {{"TOT_R_NET", 0}, {"TOT_R_IMPOS", 0}, {"SEPAR_CHAR", 1}});
}

TEST(RevenuNet, EachChargeHasItsCeiling) {
    const struct {
        const char* boxes;
        CaseSortie ligne;
        Colonnes colonnes;
        std::int32_t valeur;
    } cas[] = {
        {"6EL=8000 6EM=1000", "C_ENFANTS_1", {9000, 6795, 10000}, 6795},    // 5795 each
        {"6GI=5000 6GJ=4000", "C_ENFANTS_2", {9000, 10795, 10000}, 10795},  // 6250 cut to 5795; 5000
        {"6GP=1001", "C_JUSTICE", {1001, 1251, 10000}, 1251},               // 1251.25
        {"6EU=5000 6EV", "C_FRAIS", {5000, 3445, 10000}, 3445},             // 3445 for each person
        {"6EU=5000 6EV=2", "C_FRAIS", {5000, 5000, 10000}, 5000},
        {"2BH=1010", "C_CSG_MOB", {1010, 1010, 510}, 52},  // 51.51
        {"6RS=3000 6PS1=1000 6PSA=500", "C_COT_PERP_V", {3000, 1500, 10000}, 1500},
        {"M 6QR 6RS=3000 6PS1=1500 6RT=200 6PT1=1000", "C_COT_PERP_V", {3000, 2300, 10000}, 2300},  // 1500 + 800
        {"M 6QR 6RT=3000 6PT1=1000 6RS=200 6PSC=1500", "C_COT_PERP_C", {3000, 2300, 10000}, 2300},  // 1000 + 1300
        {"6RU=700 6PUB=600", "C_COT_PERP_E", {700, 600, 10000}, 600},
        {"6CB=20000 6HJ=10000", "C_GROSSE_REP", {30000, 25000, 10000}, 25000},
    };
    for (const auto& c : cas) {
        const auto r = Foyer(c.boxes + std::string(" 1AJ=111111")).Calcule();
        EXPECT_EQ(r[c.ligne], c.valeur) << c.boxes;
        EXPECT_EQ(r.Colonnes(c.ligne), c.colonnes) << c.boxes;
        EXPECT_EQ(r["TOT_R_NET"], 100000 - r["C_REDUC"]) << c.boxes;
    }
    // With the options of the following year: 6.8 % of 1010 = 68.68.
    EXPECT_EQ(Foyer("1AJ=11111 2BH=1010").CalculeOptions()["C_CSG_MOB"], 69);
    // At 2 %: 5795 becomes 5910.90, 3445 becomes 3513.90.
    const auto r = Foyer("1AJ=111111 6EL=8000 6EU=5000 6EV").Indexation(2.0).Calcule();
    EXPECT_EQ(r["TOT_R_NET"], 100000 - 5911 - 3514);
}

TEST(RevenuNet, MajorRepairsAreCarriedForward) {
    const struct {
        const char* boxes;
        std::int32_t deduites, n, nMoins8, nMoins2, nMoins1;
    } cas[] = {
        {"1AJ=111111 6CB=30000", 25000, 5000, 0, 0, 0},
        {"1AJ=111111 6CB=20000 6HJ=10000", 25000, 0, 5000, 0, 0},
        {"1AJ=11111 6CB=12000", 10000, 2000, 0, 0, 0},                        // an income of 10000
        {"1AJ=111111 6HJ=22000 6HP=6000 6HQ=4000", 25000, 0, 0, 3000, 4000},  // 28000 - 25000, 32000 - 25000 - 3000
    };
    for (const auto& c : cas) {
        const auto r = Foyer(c.boxes).Calcule();
        Attend(r,
               {{"C_GROSSE_REP", c.deduites},
                {"NP1_CHARG_GROSSE_REP_N", c.n},
                {"NP1_CHARG_GROSSE_REP_Nm8", c.nMoins8},
                {"NP1_CHARG_GROSSE_REP_Nm2", c.nMoins2},
                {"NP1_CHARG_GROSSE_REP_Nm1", c.nMoins1}},
               c.boxes);
    }
}

TEST(RevenuNet, ElderlyAndDisabledPersons) {
    const struct {
        const char* boxes;
        std::int32_t personnes, abattement;
    } cas[] = {
        {"1AJ=15556 AAF1=19470615", 1, 2376},  // 14000
        {"1AJ=16556 AAF1=19470615", 1, 2376},  // 14900
        {"1AJ=16557 AAF1=19470615", 1, 1188},  // 14901
        {"1AJ=26667 AAF1=19470615", 1, 1188},  // 24000
        {"1AJ=26668 AAF1=19470615", 1, 0},     // 24001
        {"1AJ=15556 AAF1=19521231", 1, 2376},  // 65 in the year
        {"1AJ=15556 AAF1=19530101", 0, 0},     // 64
        {"1AJ=15556 AAF1=19770101 P", 1, 2376},
        {"1AJ=15556 P", 0, 0},  // no date of birth
        {"M 1AJ=15556 AAF1=19470615 AAF2=19500101", 2, 4752},
        {"O 1AJ=15556 AAF2=19800101 Fp", 1, 2376},
        {"1AJ=15556 AAF2=19470615", 0, 0},  // no second declarant
    };
    for (const auto& c : cas) {
        const auto r = Foyer(c.boxes).Calcule();
        EXPECT_EQ(r.C(1, "A_AGEES"), c.personnes) << c.boxes;
        Attend(r, {{"A_AGEES", c.abattement}, {"TOT_R_IMPOS", r["TOT_R_NET_G"] - c.abattement}}, c.boxes);
    }
    EXPECT_EQ(Foyer("1AJ=15556 AAF1=19470615").Calcule().Detail("A_AGEES"), "1 personne(s)");
}

TEST(RevenuNet, MarriedChildrenAttached) {
    const auto r = Foyer("1AJ=11111 Nm=2 Pm").Calcule();  // 1.5 x 5795 = 8692.5, truncated
    EXPECT_EQ(r["A_ENFANTS"], 8692);
    EXPECT_EQ(r.Colonnes("A_ENFANTS"), (Colonnes{15, 5795, 0}));
    EXPECT_EQ(r.Detail("A_ENFANTS"), "1.5 enfant(s)");
    EXPECT_EQ(r["TOT_R_IMPOS"], 1308);
    const auto s = Foyer("1AJ=11111 Nm=4").Calcule();
    EXPECT_EQ(s["ABAT"], 23180);
    EXPECT_EQ(s["TOT_R_IMPOS"], 0);  // never negative
    EXPECT_EQ(s["SEPAR_ABAT"], 1);
}

}  // namespace
