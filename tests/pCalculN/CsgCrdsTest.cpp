#include "tests/Foyer.h"

namespace {

// 10000 of each income that bore no levy at source: its CSG and the part deductible next year, before 2018 and since.
TEST(CsgCrds, IncomeWithoutLevyAtSource) {
    struct Cas {
        CaseEntree box;
        CaseSortie csg;
        std::int32_t avant, depuis, deductibleAvant, deductibleDepuis;
        bool casa;
    };
    for (const Cas& c : {
             Cas{"8TQ", "S_E_CSG_1", 750, 920, 510, 680, false},
             {"8SC", "S_E_CSG_8", 750, 920, 510, 680, true},
             {"8SW", "S_E_CSG_9", 620, 620, 380, 380, false},
             {"8SX", "S_E_CSG_10", 380, 380, 380, 380, false},
             {"8TV", "S_E_CSG_2", 660, 830, 420, 590, true},
             {"8TW", "S_E_CSG_3", 620, 620, 380, 380, false},
             {"8TX", "S_E_CSG_4", 380, 380, 380, 380, false},
             {"8TR", "S_E_CSG_5", 750, 920, 510, 680, false},
             {"8PH", "S_E_CSG_11", 920, 920, 680, 680, false},
             {"8SA", "S_E_CSG_6", 660, 830, 0, 0, true},
             {"8SB", "S_E_CSG_7", 380, 380, 0, 0, false},
         }) {
        const std::string quoi = "box " + std::to_string(c.box.numero);
        for (const bool options : {false, true}) {
            Retour retour{{c.box, 10000}};
            const auto r = options ? retour.CalculeOptions() : retour.Calcule();
            const std::int32_t csg = options ? c.depuis : c.avant, casa = c.casa ? 30 : 0;
            Attend(r,
                   {{c.csg, csg},
                    {"S_E_CSG_4_NP1", options ? c.deductibleDepuis : c.deductibleAvant},
                    {"S_E_CRDS", 50},
                    {"S_E_CASA", casa},
                    {"S_CSG_CRDS_ETR", csg + 50 + casa},
                    {"S_A_PAYER", csg + 50 + casa},
                    {"S_NET_A_PAYER", csg + 50 + casa},
                    {"SEPAR_CSG", 1}},
                   quoi);
            EXPECT_EQ(r.Colonnes(c.csg), (std::vector{0, csg, 0})) << quoi;
            EXPECT_EQ(r.Colonnes("S_E_CRDS"), (std::vector{0, 0, 50})) << quoi;
        }
    }
    Attend(Retour{{"8TR", 1000}}.Calcule(), {{"S_E_CSG_5", 75}, {"S_E_CSG_4_NP1", 51}});
    Attend(Retour{{"8TR", 1000}}.CalculeOptions(), {{"S_E_CSG_5", 92}, {"S_E_CSG_4_NP1", 68}});
}

TEST(CsgCrds, CapitalAndProperty) {
    struct Cas {
        const char* boxes;
        std::int32_t social, csg, crds, deductible;
    };
    for (const Cas& c : {
             // Property 10000, activity 300, interest 5000, annuity 70 % of 1000, gains 2000: 18000. Deductible: 6.8 %
             // of 16000, and of the gains.
             Cas{"4BA=10000 5HY=300 2TR=5000 1AW=1000 3VG=2000", 1224, 1782, 90, 1088 + 136},
             // A non-resident bears property and activity only: 10300; nothing is deductible, no other levy.
             {"REM 4BA=10000 5HY=300 2TR=5000 1AW=1000 3VG=2000 8TR=9000 1TT=9000", 700, 1020, 52, 0},
             {"RED 4BA=10000 5HY=300 2TR=5000 1AW=1000 3VG=2000 3WI=500 1NY=1000", 700, 1020, 52, 0},
             {"4BA=5000 4BB=9000 2TR=1000", 68, 99, 5, 68},         // a property deficit is no base
             {"3VG=1000 3VH=400 1TZ=500 3VD=200", 88, 129, 7, 75},  // 1300: 88.4, 128.7, 6.5; 6.8 % of 600 + 500
             {"3VG=1000 3VH=1500 1TZ=500", 34, 50, 3, 34},          // losses stop at 0: 500 bears 34, 49.5, 2.5
             {"5HX=1000 5XN=400 5IE=300 5JR=50 5JS=90 5HG=100", 68, 99, 5, 0},  // 600 + 300 + 0, retirement gain 100
             {"2TR=1000 2CG=300 2BH=200", 34, 50, 3, 34},                       // 500 already bore them
             {"2TR=1000 2BH=1500", 0, 0, 0, 0},                                 // no more than the base
             {"2FA=1000 2DM=200", 82, 119, 6, 82},                              // 1200: 81.6, 118.8, 6
         }) {
        const auto r = Foyer(c.boxes).Calcule();
        EXPECT_EQ(r.Colonnes("S_CONTR_SOC"), (std::vector{c.social, c.csg, c.crds})) << c.boxes;
        EXPECT_EQ(r.Colonnes("S_MONTANT"), r.Colonnes("S_CONTR_SOC")) << c.boxes;
        const std::int32_t total = c.social + c.csg + c.crds;
        Attend(r, {{"S_CONTR_SOC", total}, {"S_DEDUC", c.deductible}, {"S_TAUX", total > 0 ? 1720 : 0}}, c.boxes);
        if (r.E("REM") + r.E("RED") > 0) Attend(r, {{"S_A_PAYER", total}, {"S_CSG_CRDS_ETR", 0}}, c.boxes);
    }
}

// Deferred gains bear the lower CSG of 8.2 %; the two rates leave none to show, unless no other base is left.
TEST(CsgCrds, DeferredGains) {
    struct Cas {
        const char* boxes;
        std::int32_t social, csg, crds, tauxCsg, base;
    };
    for (const Cas& c : {
             Cas{"3WN=1000", 68, 82, 5, 0, 901},                       // 155 / 17.2 %
             {"3WI=400 3WJ=600 2TR=1000", 136, 99 + 82, 10, 0, 1901},  // 327 / 17.2 %
             {"3WN=1000 8TKD=1000", 0, 82, 0, 990, 477},               // all foreign: 82 / 17.2 %
             {"2TR=1000", 68, 99, 5, 990, 1000},
         }) {
        const auto r = Foyer(c.boxes).Calcule();
        EXPECT_EQ(r.Colonnes("S_CONTR_SOC"), (std::vector{c.social, c.csg, c.crds})) << c.boxes;
        EXPECT_EQ(r.C(2, "S_TAUX"), c.tauxCsg) << c.boxes;
        Attend(r, {{"S_BASES", c.base}, {"S_TAUX", 1720}}, c.boxes);
    }
}

// A foreign part leaves the base, and never takes more than the base.
TEST(CsgCrds, ForeignParts) {
    struct Cas {
        CaseEntree revenu;
        std::int32_t montant, base;
        CaseEntree etranger;
        CaseSortie part;
    };
    for (const Cas& c : {
             Cas{"2TR", 10000, 10000, "8TKA", "S_B_RCM_Etranger"},
             {"4BA", 10000, 10000, "8TKB", "S_B_REV_FON_Etranger"},
             {"1AW", 10000, 7000, "8TKC", "S_B_RENTES_ETR"},
             {"3VG", 10000, 10000, "8TKD", "S_B_PG_DIVERS_ETR"},
             {"5NA", 10000, 10000, "8TKE", "S_B_LM_ETR"},
             {"5HE", 10000, 10000, "8TKF", "S_B_PLUS_VALUES_ETR"},
         }) {
        for (const std::int32_t etranger : {0, 3000, c.base, c.base + 500}) {
            const auto r = Retour{{c.revenu, c.montant}, {c.etranger, etranger}}.Calcule();
            const std::int32_t part = std::min(etranger, c.base), reste = c.base - part;  // a multiple of 1000
            const std::string quoi = std::to_string(c.etranger.numero) + ": " + std::to_string(etranger);
            Attend(r, {{c.part, part}, {"S_CONTR_SOC", reste / 1000 * 172}}, quoi);
            EXPECT_EQ(r.Colonnes(c.part), (std::vector{part, part, part})) << quoi;
        }
    }
}

// Furnished letting: what already bore the levies comes off in proportion of each result.
TEST(CsgCrds, FurnishedLetting) {
    struct Cas {
        const char* boxes;
        std::int32_t base;
    };
    for (const Cas& c : {
             Cas{"5NA=6000 5NM=2000", 6000},
             {"5NA=6000 5NM=2000 5NY=4000", 3000},  // a quarter of 4000
             {"5NK=3000 5KM=1000", 3000},           // the surcharge of 1000 bears none
             {"5NA=6000 5NM=2000 5GJ=4000", 3000},  // a quarter of the deficit comes back: 4000 - 2000 + 1000
             {"5NA=1000 5NM=1000 5OA=3000 5OM=1000 5PK=500 5MM=1500", 4500},  // each person and kind its own share
             {"5ND=10000", 5000},                                             // half of it is an allowance
             {"5NW=10000", 0},
             {"5NG=10000 5NJ=10000", 2900},  // 29 % of the sales not yet submitted
             {"5NY=4000", 0},
         }) {
        const auto r = Foyer(c.boxes).Calcule();
        EXPECT_EQ(r["S_B_LM"], c.base) << c.boxes;
        EXPECT_EQ(r.Colonnes("S_B_LM"), (std::vector{c.base, c.base, c.base})) << c.boxes;
    }
}

// Option by option: 3000 of capital income, of which 2000 at the flat rate; the deductible part follows the scale.
TEST(CsgCrds, Options) {
    Attend(Foyer("PFU 2CH1=1000 2TR=2000 3VG=1000 1TZ=500").CalculeOptions(),
           {{"S_B_REV_MOB", 3000}, {"S_B_PG_DIVERS", 1500}, {"S_DEDUC", 68 + 34}});
    Attend(Foyer("BAR 2CH1=1000 2TR=2000 3VG=1000 1TZ=500 3SJ2=500").CalculeOptions(),
           {{"S_B_REV_MOB", 3000}, {"S_B_PG_DIVERS", 1500}, {"S_DEDUC", 204 + 136}});
    // Already submitted: all of it at the flat rate, within the base by the scale.
    Attend(Foyer("PFU 2TR=1000 2BH=900 2CG=600").CalculeOptions(), {{"S_B_CSG_CRDS", 1500}, {"S_CONTR_SOC", 0}});
    Attend(Foyer("BAR 2TR=1000 2BH=900 2CG=600").CalculeOptions(), {{"S_B_CSG_CRDS", 1000}, {"S_CONTR_SOC", 0}});
    // Interest paid in advance is in the base of the scale once, in that of the flat tax with the rest.
    // Deferred gains of 1000 less 5000: -272 + 82 - 20, which is 17.2 % of -1221; nothing is deductible of it.
    Attend(Foyer("PFU 2CG=5000 3WI=1000").CalculeOptions(),
           {{"S_CONTR_SOC", -210}, {"S_BASES", -1221}, {"S_DEDUC", 0}});
    Attend(Foyer("PFU 2FA=1000").CalculeOptions(), {{"S_B_REV_MOB", 1000}});
    Attend(Foyer("BAR 2FA=1000").CalculeOptions(), {{"S_B_REV_MOB", 1000}});
}

// Interest at the flat tax, 1 000, is no part of the base; income that already bore the levies comes off it, and leaves
// nothing below 0. With 800 of life insurance at the flat rate the base stands at 800 - 500.
TEST(CsgCrds, TheDeductibleLevyAtTheFlatTaxIsNeverNegative) {
    Attend(Foyer("C 1AJ=60000 2TR=1000 2BH=1000 AVA").CalculeOptions(), {{"PFU", 1}, {"S_DEDUC", 0}});
    Attend(Foyer("C 1AJ=60000 2TR=1000 2BH=500 2CH1=800 PFU").CalculeOptions(),
           {{"S_B_CSG_CRDS", 500}, {"S_DEDUC", 20}});  // 6.8 % of 300 is 20.4
}

TEST(CsgCrds, ShareGainsAndCarriedInterest) {
    // 10000 + 2000 of share gains: 60, 900, deductible 612; 10 % with the 500 of 3VN; 30 % of carried interest.
    const auto avant = Foyer("1TT=10000 1UT=2000 3VN=500 1NY=1000 1OY=600").Calcule();
    Attend(avant, {{"S_CRDS_SAL", 60},
                   {"S_CSG_SAL", 900},
                   {"S_DEDUC_CSG_SAL", 612},
                   {"S_CSG_CRDS_SAL", 960},
                   {"S_CONTR_SAL", 1250},
                   {"S_CONTR_CARRIED", 480},
                   {"S_A_PAYER", 2690}});
    Attend(Foyer("1TT=10000 1UT=2000").CalculeOptions(), {{"S_CSG_SAL", 1104}, {"S_DEDUC_CSG_SAL", 816}});
}

}  // namespace
