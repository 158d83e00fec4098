#include <cmath>

#include "tests/Foyer.h"

namespace {

// Rates in tenths of a percent: tax of the income withheld on, less foreign credits, over that income
// before deductions.
TEST(Prelevement, HouseholdRate) {
    struct Cas {
        const char* boxes;
        std::int32_t taux, acompte;
    };
    for (const Cas& c : {
             // 3293 of 33333: 9.879 %.
             Cas{"1AJ=33333", 99, 0},
             // 2423 of 30111: 8.0469 %, through 8.05 %.
             {"1AJ=30111", 81, 0},
             // 30000 + 10000 + 5000 not withheld on: 13500 - 5706.74 = 7793.26. 7793 x 40000 / 45000 of 43333:
             // 15.986 %.
             {"1AJ=33333 4BA=10000 2TR=5000", 160, 10000},
             // 500 less: 6427.1 of 43333: 14.832 %.
             {"1AJ=33333 4BA=10000 2TR=5000 8VM=200 8WM=100 8UM=200", 148, 10000},
             // Credits beyond the tax.
             {"1AJ=33333 8UM=4000", 0, 0},
             // 13333 paid by instalments count net: 11999 (30000 / 33333) + 20000; 3293 of 31999: 10.291 %.
             {"1AJ=20000 1AG=13333", 103, 11999},
             // Share options and foreign salaries are outside: 3293 x 18000 / 30000 of 20000.
             {"1AJ=20000 1AF=3333 1TP=10000", 99, 0},
             // A pension of 20000, 18000 net: 664 of 20000.
             {"1AS=20000", 33, 0},
             // Maintenance and foreign pensions count net and pay instalments: 664 of 8000 + 90 % of 12000.
             {"1AS=8000 1AO=10000 1AM=2000", 35, 10800},
             // An annuity: 7000 foreign of 14000 taxable; 20000 x 14 % - 1372.98, 1228 after relief and reduction. 1228
             // x 13000 / 20000 = 798.2 of 6667 + 7000.
             {"1AJ=6667 1AW=10000 1AR=10000", 58, 7000},
         }) {
        const auto r = Foyer(c.boxes).Calcule();
        Attend(r, {{"TAUX_PAS", c.taux}, {"ASSIETTE_A_IR", c.acompte}, {"NON_TAUX_PAS", 0}, {"NON_TAUX_PAS1", 0}},
               c.boxes);
    }
}

TEST(Prelevement, NoRateWhenTheSituationChanged) {
    for (const char* boxes : {"MEvt", "OEvt", "VpEvt", "CEvt", "DEvt", "VEvt", "M Z1=20170315", "B Z2=20171231",
                              "C Z1=20170101", "D Z2=20170601", "V Z1=20170601", "Vp Z1=20170601"})
        Attend(Foyer("1AJ=33333 " + std::string(boxes)).Calcule(),
               {{"TAUX_PAS", 0}, {"NON_TAUX_PAS", 1}, {"NON_TAUX_PAS1", 1}, {"ASSIETTE_A_IR", 0}}, boxes);
    for (const char* boxes : {"C Z1=20161231", "C Z2=20180101", "Z1=20170315", "O Z1=20170315", "C"})
        Attend(Foyer("1AJ=33333 1BJ=10 " + std::string(boxes)).Calcule(), {{"NON_TAUX_PAS", 0}, {"NON_TAUX_PAS1", 0}},
               boxes);
}

// A positive rate though nothing is payable is announced to modest households.
TEST(Prelevement, RateWithoutTax) {
    struct Cas {
        const char* boxes;
        bool info;
    };
    for (const Cas& c : {Cas{"1AJ=22222 2CK=2000", true},
                         {"1AJ=22222", false},                      // tax to pay
                         {"1AJ=33333 2CK=4000", false},             // 30000 for one part
                         {"M 1AJ=33333 1BJ=20000 2CK=9000", true},  // 48000 for two
                         {"1AJ=27777 2CK=4000", true},              // 24999
                         {"1AJ=27778 2CK=4000", false},             // 25000
                         {"1AJ=10000 2CK=100", false}})             // no rate
        Attend(Foyer(c.boxes).Calcule(), {{"INFO_TAUX_PAS", c.info}}, c.boxes);
}

TEST(Prelevement, IndividualRates) {
    // 45000 + 18000: 18900 - 11413.48 = 7486.52. The second declarant as half of the household: 664 of 20000, 3.3 %.
    // The first one has the rest: (7487 - 660) / 50000 = 13.654 %.
    auto r = Foyer("M 1AJ=50000 1BJ=20000").Calcule();
    Attend(r, {{"TAUX_PAS", 107}, {"TAUX_PAS_IND1", 137}, {"TAUX_PAS_IND2", 33}});
    EXPECT_EQ(r.Detail("TAUX_PAS_IND1"), "13.7%");
    EXPECT_EQ(r.Detail("TAUX_PAS_IND2"), "3.3%");
    Attend(Foyer("O 1AJ=20000 1BJ=50000").Calcule(), {{"TAUX_PAS_IND1", 33}, {"TAUX_PAS_IND2", 137}});

    // Property of 10000 in common: 73000 x 30 % - 11413.48 = 10486.52, 10487 of 80000: 13.1 %. Half of it each: 23000 x
    // 14 % - 1372.98 = 1847.02, of 25000: 7.4 %. The rest: (10487 - 1480 - 1310) / 50000 = 15.394 %.
    r = Foyer("M 1AJ=50000 1BJ=20000 4BA=10000").Calcule();
    Attend(r, {{"TAUX_PAS", 131}, {"TAUX_PAS_IND1", 154}, {"TAUX_PAS_IND2", 74}, {"TOT_IMPOT", 10487}});
    EXPECT_EQ(r.E("4BA"), 10000);

    // Two disabled children in alternating residence, a whole part, count half of it for each. Together 10080 - 4118.94
    // = 5961.06. The second declarant, 1.5 parts: 3780 - 2059.47 = 1720.53 of 30000: 5.7 %. The rest: 4251 of 50000.
    Attend(Foyer("M Hm=2 Im=2 1AJ=50000 1BJ=30000").Calcule(),
           {{"TOT_IMPOT", 5961}, {"TAUX_PAS", 75}, {"TAUX_PAS_IND1", 85}, {"TAUX_PAS_IND2", 57}});

    // The second declarant's 22500 less 3000: 1357.02, 1198 after the low-tax relief. A salary that is exempt runs the
    // chain of the declarant again, where the deduction counts whole: the reference income, 19500 and not 21000, gives
    // 240 x 1205 / 2020 for modest incomes. 1198 of 25000, or 1055.
    Attend(Foyer("M 1AJ=60000 1BJ=25000 6DD=6000").Calcule(), {{"TAUX_PAS_IND2", 48}});
    Attend(Foyer("M 1AJ=60000 1BJ=25000 6DD=6000 1BQ=1").Calcule(), {{"TAUX_PAS_IND2", 42}});

    for (const char* egaux : {"M 1AJ=30000 1BJ=30000", "M 1AJ=30000 1BJ=30000 4BA=9000 Fm=2", "M 1AS=25000 1BS=25000",
                              "1AJ=50000 1BJ=20000"})
        Attend(Foyer(egaux).Calcule(), {{"TAUX_PAS_IND1", 0}, {"TAUX_PAS_IND2", 0}}, egaux);
}

// What the two rates take from the declarants, and the household's rate from the rest, is the household's tax: only the
// rounding of the second rate to a tenth of a percent, and that of the rest to the euro, stand between them.
TEST(Prelevement, IndividualRatesShareTheHouseholdTax) {
    std::mt19937 hasard(7);
    const auto montant = [&](std::int32_t min, std::int32_t max) {
        return min + static_cast<std::int32_t>(hasard() % static_cast<std::uint32_t>(max - min));
    };
    for (int essai = 0; essai < 40; ++essai) {
        const std::int32_t s1 = montant(12000, 90000), s2 = montant(12000, 90000);
        const std::int32_t foncier = essai % 2 ? montant(0, 20000) : 0, enfants = essai % 4;
        const auto r = Retour{{"M", 1}, {"Fm", enfants}, {"1AJ", s1}, {"1BJ", s2}, {"4BA", foncier}}.Calcule();
        const double impot = r["TOT_IMPOT_DOM"] - r["U_DECOTE"] - r["U_CLASSES_MOYENNES"];
        const double preleve =
            s1 * r["TAUX_PAS_IND1"] / 1000.0 + s2 * r["TAUX_PAS_IND2"] / 1000.0 + foncier * r["TAUX_PAS"] / 1000.0;
        EXPECT_NEAR(preleve, impot, 0.0005 * std::max(s1, s2) + 0.51) << s1 << " " << s2 << " " << foncier;
    }
}

// Instalments of activities: brought to twelve months, nothing once the activity has ceased.
TEST(Prelevement, InstalmentsOfActivities) {
    struct Activite {
        CaseEntree benefice[3], mois[3], cesse[3];
    };
    static constexpr Activite activites[] = {
        {{"5HC", "5IC", "5JC"}, {"5AD", "5BD", "5ED"}, {"5AF", "5AI", "5AH"}},
        {{"5KC", "5LC", "5MC"}, {"5DB", "5EB", "5FB"}, {"5BF", "5BI", "5BH"}},
        {{"5NA", "5OA", "5PA"}, {"5CD", "5DD", "5FD"}, {"5CF", "5CI", "5CM"}},
        {{"5NC", "5OC", "5PC"}, {"5UP", "5VP", "5TP"}, {"5AN", "5BN", "5CN"}},
        {{"5QC", "5RC", "5SC"}, {"5XI", "5YI", "5ZI"}, {"5AO", "5BO", "5CQ"}},
        {{"5JG", "5RF", "5SF"}, {"5XR", "5YR", "5ZR"}, {"5AP", "5BP", "5CR"}},
    };
    for (const Activite& a : activites)
        for (std::size_t k = 0; k < 3; ++k) {
            const auto assiette = [&](std::int32_t mois, std::int32_t cesse) {
                Retour retour{{a.benefice[k], 20005}, {a.mois[k], mois}, {a.cesse[k], cesse}};
                return retour.Calcule()["ASSIETTE_A_IR"];
            };
            EXPECT_EQ(assiette(0, 0), 20005) << a.benefice[k].numero;
            EXPECT_EQ(assiette(12, 0), 20005) << a.benefice[k].numero;
            EXPECT_EQ(assiette(11, 0), 21824) << a.benefice[k].numero;  // 21823.6
            EXPECT_EQ(assiette(6, 1), 0) << a.benefice[k].numero;
        }
    // Each person's own; a loss of one does not come off the others. 4000 without a centre count 5000.
    Attend(Foyer("5HC=6000 5AD=6 5IL=5000 5NK=4000 5QC=3000 5AO 1AG=5000").Calcule(),
           {{"ASSIETTE_A_IR", 12000 + 5000 + 4500}});
    // Foreign profits and exceptional ones pay none.
    Retour exceptionnel = Foyer("5HC=12000 5AK=2000 4BA=5000");
    exceptionnel.Quotient("5HC", 4, 3000).Quotient("4BA", 4, 1000);
    Attend(exceptionnel.Calcule(), {{"ASSIETTE_A_IR", 10000 + 5000}});
    // Of 12000 with 2000 exceptional, instalments take 90 % of 8000.
    Retour gerance = Foyer("1GB=10000 1BO=10000");
    gerance.Quotient("1GB", 4, 2000).Quotient("1BO", 4, 2000);
    Attend(gerance.Calcule(), {{"ASSIETTE_A_IR", 7200 + 7200}});
}

TEST(Prelevement, SocialLevyInstalment) {
    struct Cas {
        const char* boxes;
        std::int32_t acompte;
    };
    for (const Cas& c : {
             Cas{"4BA=10000", 680 + 990 + 50},
             {"4BA=10000 1AW=1000 5HY=300", 748 + 1089 + 55},  // 11000
             {"1AR=1000", 0},                                  // withheld at source
             {"5NA=12000 5CD=6", 1632 + 2376 + 120},           // 24000
             {"5NA=20005 5CD=11", 1484 + 2160 + 109},          // 21823, what is beyond the euro lost
             {"5NA=6000 5NM=2000", 408 + 594 + 30},            // 2000 already bore the levies
             {"5NK=4000", 272 + 396 + 20},                     // without the surcharge
             {"5ND=10000 5OW=8000", 340 + 495 + 25},       // half of 10000; the second declarant's already bore them
             {"4BB=5000 4BA=2000 5NA=1000", 68 + 99 + 5},  // no less than 0 each
         })
        Attend(Foyer(c.boxes).Calcule(), {{"ACOMPTE_CS", c.acompte}}, c.boxes);
}

// The modernisation credit takes back the tax of the income that is not exceptional.
TEST(Prelevement, ModernisationCredit) {
    struct Cas {
        const char* boxes;
        std::int32_t credit, aPayer;
    };
    for (const Cas& c : {
             Cas{"CIMR 1AJ=33333", 3293, 0},
             {"CIMR 1AJ=22222", 1228, 0},
             {"CIMR 1AJ=33333 1AJCI=10000", 2305, 988},  // 23333 x 30000 / 33333 = 21000; 3293 x 21000 / 30000
             {"CIMR 1AJ=33333 8UM=300", 2993, 0},        // 300 are credited already
             {"CIMR M Fm=2 1AJ=40000 1BJ=30000", 4701, 0},
             {"CIMR 1AS=20000", 664, 0},
             {"CIMR BAR 1AJ=33333 2TR=10000", 4720, 1573},        // 12000 - 5706.74 = 6293, of which 30000 / 40000
             {"CIMR 1AJ=33333 4BA=10000 4BACI=4000", 5664, 629},  // 36000 of 40000: 5663.7
             {"1AJ=33333", 0, 3293},
         })
        Attend(Foyer(c.boxes).CalculeOptions(), {{"D_CREDIT_CIMR_IR", c.credit}, {"TOT_PAYER", c.aPayer}}, c.boxes);
    Attend(Foyer("CIMR 1AJ=33333").Calcule(), {{"D_CREDIT_CIMR_IR", 0}, {"TOT_PAYER", 3293}});
}

}  // namespace
