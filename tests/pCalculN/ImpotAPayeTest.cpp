#include "tests/Foyer.h"

namespace {

// Whole returns, from the salaries to the amount payable. The scale of one part: 14 % less 1372.98 above 9807, 30 %
// less 5706.74 above 27086. Low-tax relief: 1177 (couple 1939) less three quarters of the tax. Modest-income reduction:
// 20 % up to a reference income of 18685 per declarant and 7474 per further part, fading over 2020 per declarant.
TEST(ImpotAPaye, WholeReturns) {
    struct Cas {
        const char* boxes;
        std::int32_t revenu, impot, decote, reduction, aPayer;
    };
    for (const Cas& c : {
             // 22222 - 2222. 2800 - 1372.98 = 1427.02; 1177 - 1070.25 = 106.75; 1320 left, whose fifth is 264, of which
             // 705 / 2020 are left at 20000.
             Cas{"1AJ=22222", 20000, 1427, 107, 92, 1228},
             // 2520 - 1372.98 = 1147.02; 1177 - 860.25 = 316.75; a fifth of 830 is 166.
             {"1AJ=20000", 18000, 1147, 317, 166, 664},
             // 33333 - 3333. 9000 - 5706.74 = 3293.26, beyond both reliefs.
             {"1AJ=33333", 30000, 3293, 0, 0, 3293},
             // 20000 + 18000, two parts: 5320 - 2745.96 = 2574.04; 1939 - 1930.5 = 8.5; a fifth of 2565 is 513, of
             // which 3410 / 4040 are left: 433.002.
             {"M 1AJ=22222 1BJ=20000", 38000, 2574, 9, 433, 2132},
             // 36000 + 27000, three parts: 8820 - 4118.94 = 4701.06. Two parts: 18900 - 11413.48 = 7486.52, less 3054.
             {"M Fm=2 1AJ=40000 1BJ=30000", 63000, 4701, 0, 0, 4701},
             // 45000 + 36000, two parts: 24300 - 11413.48 = 12886.52, less 3054: more than 11340 - 4118.94 for three.
             {"M Fm=2 1AJ=50000 1BJ=40000", 81000, 9833, 0, 0, 9833},
             // Single parent, two parts: 5040 - 2745.96 = 2294.04. One part: 5093, less the cap of 3602.
             {"C T Fm=1 1AJ=40000", 36000, 2294, 0, 0, 2294},
             // One part: 16200 - 5706.74 = 10493.26, less 3602: more than 7560 - 2745.96 for two.
             {"C T Fm=1 1AJ=60000", 54000, 6891, 0, 0, 6891},
             // Single parent at 24300, two parts: 3402 - 2745.96 = 656.04; 1177 - 492 = 685, no more than the tax.
             {"C T Fm=1 1AJ=27000", 24300, 656, 656, 0, 0},
             // 27000, two parts: 3780 - 2745.96 = 1034.04; 1177 - 775.5 = 401.5; 632 left, a fifth is 126, of which
             // (20705 + 7474 - 27000) / 2020 are left: 73.54.
             {"C T Fm=1 1AJ=30000", 27000, 1034, 402, 74, 558},
         }) {
        const auto r = Foyer(c.boxes).Calcule();
        Attend(r,
               {{"TOT_R_IMPOS", c.revenu},
                {"TOT_IMPOT", c.impot},
                {"U_DECOTE", c.decote},
                {"U_CLASSES_MOYENNES", c.reduction},
                {"TOT_PAYER", c.aPayer},
                {"S_NET_A_PAYER", c.aPayer},
                {"TOT_REST", 0}},
               c.boxes);
    }
}

// Box 8TF is a tax to pay back, 2CK a credit that is refunded; neither changes anything else. 3VN bears 10 %.
// The amount goes to one output, and one flag at most says why it is not paid.
TEST(ImpotAPaye, ThresholdsOfTheTax) {
    struct Cas {
        std::int32_t impot, credit;
        CaseSortie sortie;
        std::int32_t montant;
        CaseSortie info;
    };
    static constexpr CaseSortie sorties[] = {"TOT_PAYER", "TOT_REST", "TOT_N_REST", "TOT_N_RECOUVRE"};
    static constexpr CaseSortie infos[] = {"INFO_NON_RESTITUE", "INFO_NON_RECOUVREMENT", "INFO_NON_RECOUV_RES"};
    static constexpr Cas cas[] = {{1000, 1008, "TOT_REST", 8, {}},
                                  {1000, 1007, "TOT_N_REST", 7, "INFO_NON_RESTITUE"},
                                  {1000, 1001, "TOT_N_REST", 1, "INFO_NON_RESTITUE"},
                                  {1000, 1000, "TOT_N_RECOUVRE", 0, "INFO_NON_RECOUVREMENT"},
                                  {1000, 989, "TOT_N_RECOUVRE", 11, "INFO_NON_RECOUVREMENT"},
                                  {1000, 988, "TOT_PAYER", 12, {}},
                                  {61, 49, "TOT_PAYER", 12, {}},
                                  {61, 50, "TOT_N_RECOUVRE", 11, "INFO_NON_RECOUVREMENT"},
                                  {61, 61, "TOT_N_RECOUVRE", 0, "INFO_NON_RECOUVREMENT"},
                                  {60, 0, "TOT_N_RECOUVRE", 60, "INFO_NON_RECOUV_RES"},
                                  {60, 20, "TOT_N_RECOUVRE", 40, "INFO_NON_RECOUV_RES"},
                                  {60, 55, "TOT_N_RECOUVRE", 5, "INFO_NON_RECOUV_RES"},
                                  {60, 67, "TOT_N_REST", 7, "INFO_NON_RESTITUE"},
                                  {60, 68, "TOT_REST", 8, {}},
                                  {0, 0, "TOT_N_RECOUVRE", 0, "INFO_NON_RECOUV_RES"}};
    for (const Cas& c : cas) {
        const auto r = Retour{{"8TF", c.impot}, {"2CK", c.credit}}.Calcule();
        const std::string quoi = std::to_string(c.impot) + " - " + std::to_string(c.credit);
        for (const CaseSortie sortie : sorties) EXPECT_EQ(r[sortie], sortie == c.sortie ? c.montant : 0) << quoi;
        for (const CaseSortie info : infos) EXPECT_EQ(r[info], info == c.info) << quoi;
    }
}

TEST(ImpotAPaye, TaxAndLeviesTogether) {
    struct Cas {
        std::int32_t impot, credit, gains, prelevements, nonRecouvres, netAPayer, netRestitue;
    };
    static constexpr Cas cas[] = {
        // A refund pays the levies, leaves some to pay, or just meets them; levies below 61 are not collected.
        {100, 200, 610, 61, 0, 0, 39},
        {100, 200, 2000, 200, 0, 100, 0},
        {100, 200, 1000, 100, 0, 0, 0},
        {100, 200, 1050, 105, 0, 5, 0},
        {100, 200, 600, 0, 60, 0, 100},
        {100, 200, 0, 0, 0, 0, 100},
        // A refund of 7 is not paid, a balance of 11 or a tax of 60 not collected; 60.5 of levies are 61.
        {100, 107, 605, 61, 0, 61, 0},
        {100, 107, 604, 0, 60, 0, 0},
        {100, 89, 610, 61, 0, 61, 0},
        {100, 89, 600, 0, 60, 0, 0},
        {60, 0, 610, 61, 0, 61, 0},
        {60, 0, 600, 0, 60, 0, 0},
        // Both to pay, or the tax alone.
        {100, 88, 610, 61, 0, 73, 0},
        {100, 88, 600, 0, 60, 12, 0},
        {1000, 0, 10000, 1000, 0, 2000, 0}};
    for (const Cas& c : cas) {
        const auto r = Retour{{"8TF", c.impot}, {"2CK", c.credit}, {"3VN", c.gains}}.Calcule();
        Attend(r,
               {{"S_A_PAYER", c.prelevements},
                {"S_NON_RECOUVRE", c.nonRecouvres},
                {"INFO_S_NON_RECOUVRE", c.nonRecouvres > 0},
                {"INFO_S_NON_RECOUVREMENT", 0},
                {"S_RESTITUE", 0},
                {"S_NON_RESTITUE", 0},
                {"S_NET_A_PAYER", c.netAPayer},
                {"S_NET_RESTITUE", c.netRestitue}},
               std::to_string(c.impot) + " - " + std::to_string(c.credit) + ", " + std::to_string(c.gains));
    }
}

// With the modernisation credit, levies below 61 keep their figure and have a flag of their own.
TEST(ImpotAPaye, SmallLeviesWithTheModernisationCredit) {
    for (const bool cimr : {false, true}) {
        const auto r = Retour{{"3VN", 600}, {"CIMR", cimr}}.CalculeOptions();
        Attend(r, {{"S_A_PAYER", cimr ? 60 : 0},
                   {"S_NON_RECOUVRE", 60},
                   {"INFO_S_NON_RECOUVREMENT", cimr},
                   {"INFO_S_NON_RECOUVRE", !cimr},
                   {"S_NET_A_PAYER", 0}});
    }
    Attend(Retour{{"3VN", 610}, {"CIMR", 1}}.CalculeOptions(),
           {{"S_A_PAYER", 61}, {"S_NON_RECOUVRE", 0}, {"INFO_S_NON_RECOUVREMENT", 0}, {"S_NET_A_PAYER", 61}});
}

}  // namespace
