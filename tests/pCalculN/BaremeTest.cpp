#include "Calcul/pCalculN/Bareme.h"

#include "tests/Foyer.h"

namespace {

using Colonnes = std::vector<std::int32_t>;

// Salaries and the taxable income that they leave: 33333 - 3333 = 30000, 55556 - 5556 = 50000, 66667 - 6667 = 60000,
// 111111 - 11111 = 100000.

TEST(Bareme, TaxOfASinglePerson) {
    // 30000 x 30 % - 5706.74 = 3293.26.
    const auto r = Foyer("1AJ=33333").Calcule();
    Attend(r, {{"TOT_R_IMPOS", 30000}, {"TOT_IMPOT", 3293}, {"I_QUOT", 0}, {"SEPAR_IMPOT", 1}});
    EXPECT_EQ(r.Colonnes("I_IMP_NORM"), (Colonnes{100, 30000, 3000}));
    EXPECT_EQ(r.Colonnes("I_IMP_RETENU"), (Colonnes{100, 30000, 3000}));
    EXPECT_EQ(r.Colonnes("I_BAREME"), (Colonnes{0, 30000, 3000}));
    Attend(r, {{"TAUX_MARGINAL_2", 3000}, {"TAUX_MARGINAL_3", 3000}});
    EXPECT_EQ(r.Detail("TAUX_MARGINAL_2"), "30%");
}

TEST(Bareme, AQuotientOnABoundStaysInTheLowerBracket) {
    const auto r = Foyer("1AJ=30096").Calcule();  // 30096 - 3010 = 27086
    EXPECT_EQ(r["TOT_IMPOT"], 2419);              // 3792.04 - 1372.98
    EXPECT_EQ(r["TAUX_MARGINAL_3"], 1400);

    const kv::Bareme& bareme = kv::bareme2017;
    const struct {
        std::int32_t revenu, parts, impot, taux;
    } cas[] = {
        {-100, 100, 0, 0},          {0, 100, 0, 0},
        {9807, 100, 0, 0},          {9811, 100, 1, 1400},        // 1373.54 - 1372.98
        {27086, 100, 2419, 1400},   {27087, 100, 2419, 3000},    // 8126.10 - 5706.74
        {72617, 100, 16078, 3000},  {72619, 100, 16079, 4100},   // 21785.10 - 5706.74; 29773.79 - 13694.61
        {153783, 100, 49356, 4100}, {153784, 100, 49357, 4500},  // 63051.03 - 13694.61; 69202.80 - 19845.93
        {54172, 200, 4838, 1400},   {54173, 200, 4838, 3000},    // 7584.08 - 2745.96; 16251.90 - 11413.48
        {1000000, 0, 0, 0},                                      // no parts: no quotient
    };
    for (const auto& c : cas) {
        const auto [impot, taux] = kv::AppliqueBareme(bareme, c.revenu, c.parts);
        EXPECT_EQ(impot, c.impot) << c.revenu;
        EXPECT_EQ(taux, c.taux) << c.revenu;
    }
    // One bracket begins where the other ends, and the tax goes on from there.
    for (std::size_t i = 1; i < bareme.size(); ++i) {
        EXPECT_EQ(bareme[i].Basse, bareme[i - 1].Haute);
        EXPECT_NEAR(bareme[i].Constante - bareme[i - 1].Constante,
                    bareme[i].Basse * (bareme[i].Taux - bareme[i - 1].Taux) / 10000, 0.001);
    }
}

TEST(Bareme, TheFamilyQuotientIsCapped) {
    // Simple tax on 50000: 15000 - 5706.74 = 9293; on 100000, 2 parts: 30000 - 11413.48 = 18587.
    const struct {
        const char* foyer;
        std::int32_t normal, simple, plafond, impot;
    } cas[] = {
        {"M Fm=2 1AJ=111111", 12880, 18587, 3054, 15533},  // 3 parts: 30000 - 17120.22
        {"M Fm=2 1AJ=66667", 4281, 6587, 3054, 4281},      // 8400 - 4118.94; 18000 - 11413.48; not capped
        {"C T Fm 1AJ=55556", 4254, 9293, 3602, 5691},      // 2 parts: 7000 - 2745.96
        {"D T Hm 1AJ=55556", 6440, 9293, 1801, 7492},      // 1.5 parts: 15000 - 8560.11; half of 3602
        {"C T Fm Hm 1AJ=55556", 3911, 9293, 4365, 4928},   // 2.25 parts: 7000 - 3089.21; 3602 + 1527 x 25 / 50
        {"T Fm 1AJ=55556", 4254, 9293, 3054, 6239},        // T without C, D or V: the ordinary cap
        {"L 1AJ=55556", 6440, 9293, 912, 8381},            // raised a child alone
    };
    for (const auto& c : cas) {
        const auto r = Foyer(c.foyer).Calcule();
        Attend(r, {{"I_IMP_NORM", c.normal}, {"I_IMP_SIMP", c.simple}, {"I_PLAF_FAM", c.plafond}}, c.foyer);
        EXPECT_EQ(r["I_NEUT_PLAF_FAM"] + r["I_AJUST_PLAF_FAM"], 0) << c.foyer;
        EXPECT_EQ(r["TOT_IMPOT"], c.impot) << c.foyer;
        EXPECT_NE(r.Detail("I_PLAF_FAM"), "") << c.foyer;
    }
    // The columns show the tax that was kept: 2 parts at 30 % where the cap bites, 3 parts at 14 % where it does not.
    const auto plafonne = Foyer("M Fm=2 1AJ=111111").Calcule(), libre = Foyer("M Fm=2 1AJ=66667").Calcule();
    EXPECT_EQ(plafonne.Colonnes("I_IMP_NORM"), (Colonnes{300, 100000, 3000}));
    EXPECT_EQ(plafonne.Colonnes("I_IMP_RETENU"), (Colonnes{200, 100000, 3000}));
    EXPECT_EQ(plafonne.Colonnes("I_BAREME"), (Colonnes{0, 100000, 3000}));
    EXPECT_EQ(libre.Colonnes("I_IMP_RETENU"), (Colonnes{300, 60000, 1400}));
}

TEST(Bareme, SomeHalfPartsAndWidowedParentsPayLess) {
    // Up to 3050 - 1527 = 1523 per half part, up to 1701 for a widowed parent, down to the tax on all parts.
    const struct {
        const char* foyer;
        std::int32_t reduction, ajustement, impot;
    } cas[] = {
        {"P 1AJ=111111", 1523, 0, 24255},          // 41000 - 13694.61 = 27305 - 1527; 1.5 parts: 21440
        {"W Gp 1AJ=111111", 1523, 0, 24255},       // two reasons, one half part
        {"P 1AJ=55556", 1326, 0, 6440},            // 9293 - 1527 = 7766; 1.5 parts: 6440
        {"M P Fp 1AJ=111111", 2653, 0, 12880},     // 18587 - 3054 = 15533; 3 parts: 12880; 3046 would be too much
        {"M Fm=2 Gm 1AJ=111111", 1523, 0, 12483},  // 18587 - 4581 = 14006; 3.5 parts: 30000 - 19973.59 = 10026
        {"M Hm Im 1AJ=111111", 761, 0, 16299},     // 18587 - 1527 = 17060; half of 1523, truncated
        {"C W Jm 1AJ=111111", 0, 0, 25778},        // 27305 - 1527; W is for people without dependants
        {"V Fm 1AJ=55556", 0, 1144, 3568},         // 9293 - 4581 = 4712; 2.5 parts: 7000 - 3432.45 = 3568
        {"V Fm 1AJ=111111", 0, 1701, 21023},       // 27305 - 4581 = 22724
    };
    for (const auto& c : cas) {
        const auto r = Foyer(c.foyer).Calcule();
        EXPECT_EQ(r["I_NEUT_PLAF_FAM"], c.reduction) << c.foyer;
        EXPECT_EQ(r.C(1, "I_NEUT_PLAF_FAM"), 0) << c.foyer;
        Attend(r, {{"I_AJUST_PLAF_FAM", c.ajustement}, {"TOT_IMPOT", c.impot}}, c.foyer);
    }
}

TEST(Bareme, IndexationRaisesTheThresholdsNotTheScale) {
    // At 2 %: 1527 becomes 1557.54, 3050 becomes 3111, 912 becomes 930.24, 3602 becomes 3674.04.
    EXPECT_EQ(Foyer("M Fm=2 1AJ=111111").Indexation(2.0).Calcule()["TOT_IMPOT"], 18587 - 3116);
    EXPECT_EQ(Foyer("P 1AJ=111111").Indexation(2.0).Calcule()["TOT_IMPOT"], 27305 - 3111);
    EXPECT_EQ(Foyer("L 1AJ=55556").Indexation(2.0).Calcule()["TOT_IMPOT"], 9293 - 930);
    EXPECT_EQ(Foyer("C T Fm 1AJ=55556").Indexation(2.0).Calcule()["TOT_IMPOT"], 9293 - 3674);
    EXPECT_EQ(Foyer("L 1AJ=55556").Indexation(0.0).Calcule()["TOT_IMPOT"], 9293 - 912);
}

}  // namespace
