#include "tests/Foyer.h"

namespace {

// What is left of the ceilings of earlier years, and the new one, by declarant.
struct Plafonds {
    std::int32_t annee0, anneeA, anneeB, nouveau;
};

void AttendPlafonds(const Resultat& r, const Plafonds& v, const Plafonds& c, const std::string& quoi) {
    Attend(r,
           {{"NP1_PLAF_PERP_V_0", v.annee0},
            {"NP1_PLAF_PERP_V_A", v.anneeA},
            {"NP1_PLAF_PERP_V_B", v.anneeB},
            {"NP1_PLAF_PERP_V_C", v.nouveau},
            {"NP1_PLAF_PERP_V", v.annee0 + v.anneeA + v.anneeB + v.nouveau},
            {"NP1_PLAF_PERP_C_0", c.annee0},
            {"NP1_PLAF_PERP_C_A", c.anneeA},
            {"NP1_PLAF_PERP_C_B", c.anneeB},
            {"NP1_PLAF_PERP_C_C", c.nouveau},
            {"NP1_PLAF_PERP_C", c.annee0 + c.anneeA + c.anneeB + c.nouveau}},
           quoi);
}

// Ten percent of the professional income, at least of one annual ceiling of social security (39228), at most of eight.
TEST(PlafondPERP, NewCeiling) {
    struct Cas {
        const char* boxes;
        std::int32_t nouveau;
    };
    for (const Cas& c : {
             Cas{"", 3923},
             {"6QS=1000", 2923},
             {"6QS=5000", 0},
             {"1AJ=43586", 3923},                      // 39227 net
             {"1AJ=100000", 9000},                     //
             {"1AJ=100000 6QS=2500", 6500},            //
             {"1AJ=500000", 31382},                    // 313824
             {"1AJ=348698", 31382},                    // less the flat deduction of 12305: 336393
             {"1AJ=326129 6QS=1", 31381},              // 313824 exactly
             {"1AJ=50000 1TT=10000", 5400},            // share gains count net
             {"1AJ=50000 1AK=20000", 3923},            // 30000 net of the actual expenses
             {"1AS=100000 4BA=100000", 3923},          // not professional
             {"5HC=60000 5KI=20000 5NC=90000", 8000},  // farm and commercial, without the surcharge or the rest
             {"5HB=30000 5QC=20000 5HM=1000 5HZ=2000 5QL=3000", 5600},  // exempt profits too
             {"1AJ=50000 1AQ=10000", 5400},                             // exempt salaries too
             {"1AJ=50000 1AC=10000", 5400},                             //
             {"1AJ=50000 1AC=10000 1AK=8000 1AE=4000", 4800},           // with their expenses
         })
        AttendPlafonds(Foyer(c.boxes).Calcule(), {0, 0, 0, c.nouveau}, {0, 0, 0, 0}, c.boxes);
    // The ceiling of social security of the following year: 39732.
    AttendPlafonds(Foyer("").CalculeOptions(), {0, 0, 0, 3973}, {0, 0, 0, 0}, "options");
    AttendPlafonds(Foyer("1AJ=500000").CalculeOptions(), {0, 0, 0, 31786}, {0, 0, 0, 0}, "options");
    AttendPlafonds(Foyer("M 1AJ=100000 1BJ=80000 6QT=200").Calcule(), {0, 0, 0, 9000}, {0, 0, 0, 7000}, "couple");
}

// The salaries of the new ceiling include exempt ones; the tax does not.
TEST(PlafondPERP, ExemptSalariesOnlyRaiseTheCeiling) {
    for (const char* boxes : {"1AJ=33333 1AC=10000 1AE=500", "1AJ=33333 1AQ=10000"}) {
        auto saisie = Foyer(boxes);
        const auto r = Foyer(boxes).Calcule();
        EXPECT_TRUE(Donnees(r.Data()) == Donnees(saisie.Data())) << boxes;
        Attend(r, {{"RN_SAL", 30000}, {"TOT_R_IMPOS", 30000}, {"TOT_IMPOT", 3293}}, boxes);
    }
}

// Contributions use up the ceiling of the last year, then the one that lapses, then the others.
TEST(PlafondPERP, ContributionsUseUpTheCeilings) {
    const std::string plafonds = "6PS1=1000 6PSA=2000 6PSB=3000 6PSC=4000 ";
    struct Cas {
        std::int32_t cotisations;
        Plafonds restes;
    };
    for (const Cas& c : {
             Cas{0, {2000, 3000, 4000, 3923}},
             {3999, {2000, 3000, 1, 3923}},
             {4000, {2000, 3000, 0, 3923}},
             {5000, {2000, 3000, 0, 3923}},
             {6000, {1000, 3000, 0, 3923}},
             {8000, {0, 2000, 0, 3923}},
             {10000, {0, 0, 0, 3923}},
             {20000, {0, 0, 0, 3923}},
         }) {
        const std::string cotisations = std::to_string(c.cotisations);
        AttendPlafonds(Foyer(plafonds + "6RS=" + cotisations).Calcule(), c.restes, {0, 0, 0, 0}, cotisations);
        // The second declarant's by the same rule, but only in a couple.
        const std::string autre = "6PT1=1000 6PTA=2000 6PTB=3000 6PTC=4000 6RT=" + cotisations;
        AttendPlafonds(Foyer("M " + autre).Calcule(), {0, 0, 0, 3923}, c.restes, autre);
        AttendPlafonds(Foyer("6QR " + autre).Calcule(), {0, 0, 0, 3923}, {0, 0, 0, 0}, autre);
    }
}

// A couple that pools: what one paid beyond all his ceilings comes off what the other has left, in the same order.
TEST(PlafondPERP, Pooling) {
    struct Cas {
        std::int32_t cotisations, autresCotisations;  // against ceilings of 1000, and of 500 + 800 + 700 + 1000
        Plafonds restes;
    };
    for (const Cas& c : {
             Cas{1000, 200, {800, 700, 800, 3923}},  // nothing beyond
             {1500, 200, {800, 700, 300, 3923}},     // 500 of the last year's 800
             {3000, 200, {100, 700, 0, 3923}},       // 2000: 800 + 500 that lapse + 700
             {3500, 200, {0, 300, 0, 3923}},         // 2500: all 800, and 400 of the 700
             {9000, 200, {0, 0, 0, 3923}},           // no more than there is
             {2300, 1600, {0, 100, 0, 3923}},        // 1600 took 1000 + 500 + 100; 1300 of the 1400 left
             {9000, 1600, {0, 0, 0, 3923}},
             {3000, 3000, {0, 0, 0, 3923}},  // nothing left to pool
         }) {
        const std::string un = std::to_string(c.cotisations), autre = std::to_string(c.autresCotisations);
        const std::string v = "M 6QR 6PSC=1000 6RS=" + un + " 6PT1=500 6PTA=800 6PTB=700 6PTC=1000 6RT=" + autre;
        AttendPlafonds(Foyer(v).Calcule(), {0, 0, 0, 3923}, c.restes, v);
        const std::string m = "M 6QR 6PTC=1000 6RT=" + un + " 6PS1=500 6PSA=800 6PSB=700 6PSC=1000 6RS=" + autre;
        AttendPlafonds(Foyer(m).Calcule(), c.restes, {0, 0, 0, 3923}, m);
    }
    AttendPlafonds(Foyer("M 6PSC=1000 6RS=3000 6PT1=500 6PTA=800 6PTB=700 6PTC=1000 6RT=200").Calcule(),
                   {0, 0, 0, 3923}, {800, 700, 800, 3923}, "without pooling");
    AttendPlafonds(Foyer("6QR 6PTC=1000 6RT=3000 6PS1=500 6PSA=800 6PSB=700 6PSC=1000 6RS=200").Calcule(),
                   {800, 700, 800, 3923}, {0, 0, 0, 0}, "alone");
}

// A new resident deducts within four times the ceiling that the outputs hold. They survive the resets: the first
// computation of a launch, the one without advantages, still reads the ceiling of the launch before.
TEST(PlafondPERP, ANewResidentReadsTheCeilingOfTheLaunchBefore) {
    // Of 90000 + 50000: 57400 - 13694.61, then 104000.
    Attend(Foyer("C 1AJ=100000 6GH=50000 6RS=60000 6QW").Calcule(),
           {{"C_COT_PERP_V", 36000}, {"NICHE_B", 43705}, {"NICHE_A", 28945}});
    auto r = Foyer("1AJ=100000 6RS=50000 6QW").Calcule();
    // First nothing to deduct from 90000 (36900 - 13694.61); then 36000 (54000 x 30 % - 5706.74).
    Attend(r, {{"NP1_PLAF_PERP_V_C", 9000}, {"C_COT_PERP_V", 36000}, {"NICHE_B", 23205}, {"NICHE_A", 10493}});
    r.Data().Entree["1AJ"] = 50000;
    ASSERT_TRUE(kv::Lance(r.Data(), nullptr, true, -1.0));
    // 36000 of 45000 leave no tax; then 18000 (27000 x 14 % - 1372.98).
    Attend(r, {{"NP1_PLAF_PERP_V_C", 4500},
               {"C_COT_PERP_V", 18000},
               {"NICHE_B", 0},
               {"NICHE_A", 2407},
               {"NICHE_FISCALE", 0}});
    ASSERT_TRUE(kv::Lance(r.Data(), nullptr, true, -1.0));
    Attend(r, {{"NICHE_B", 2407}, {"NICHE_A", 2407}, {"TOT_PAYER", 2407}});
}

}  // namespace
