#include "tests/Foyer.h"

// Taxes at proportional rates, contribution on high incomes. Property income (4BA) is taxed as declared, so that a
// return with 4BA alone has that income as gross, taxable and reference income.

namespace {

TEST(Corrections, ContributionOnHighIncomes) {
    struct Cas {
        std::int32_t couple, revenu, annuel, n1, n2;
        std::int32_t base, contribution;
    };
    constexpr Cas cas[] = {
        // 3 % of 250000 + 4 % of 100000.
        {0, 600000, 1, 0, 0, 600000, 11500},
        // Thresholds are exceeded, not reached; twice as high for a couple.
        {0, 250000, 1, 0, 0, 0, 0},
        {1, 500000, 1, 0, 0, 0, 0},
        {1, 1200000, 1, 0, 0, 1200000, 15000 + 8000},
        // Mean 200000, half of the excess added: 300000; twice 3 % of 50000.
        {0, 400000, 0, 200000, 200000, 300000, 3000},
        // Mean 0: 300000 again, twice 3 % of 50000.
        {0, 600000, 0, 0, 0, 300000, 3000},
        // A year before was above the threshold: no smoothing; 3 % of 150000.
        {0, 400000, 0, 250001, 0, 400000, 4500},
        {0, 400000, 0, 0, 250001, 400000, 4500},
        {0, 400000, 0, 250000, 250000, 325000, 4500},
        // One and a half times the mean (240000 x 1.5 = 360000) exceeds the year: 3 % of 50000.
        {0, 300000, 0, 240000, 240000, 300000, 1500},
        // Smoothed to 180000, below the threshold.
        {0, 260000, 0, 100000, 100000, 0, 0},
    };
    for (const Cas& c : cas) {
        const auto r =
            Retour{{"M", c.couple}, {"4BA", c.revenu}, {"8TD", c.annuel}, {"CE15", c.n1}, {"CE16", c.n2}}.Calcule();
        EXPECT_EQ(r["REV_REF_C"], c.revenu);
        EXPECT_EQ(r.C(1, "CONT_HAUT_REV"), c.base) << c.revenu << ' ' << c.n1;
        EXPECT_EQ(r["CONT_HAUT_REV"], c.contribution) << c.revenu << ' ' << c.n1;
    }
}

TEST(Corrections, InsuranceAgentsPayByBands) {
    struct Cas {
        std::int32_t premier, second, attendu;
    };
    constexpr Cas cas[] = {
        {23000, 0, 0},
        {150000, 0, 1938},              // 2 % of 84000 + 0.6 % of 43000 = 1680 + 258
        {107000, 200000, 1680 + 2238},  // 1680; 1680 + 0.6 % of 93000
        {0, 300000, 2238 + 2600},       // + 2.6 % of 100000
    };
    for (const Cas& c : cas)
        EXPECT_EQ((Retour{{"5QM", c.premier}, {"5RM", c.second}}.Calcule()["CO_AGENTS_ASSUR"]), c.attendu);
}

TEST(Corrections, ProportionalLinesAddToTheTax) {
    // 4BA = 45000 gives 45000 x 30 % - 5706.74 = 7793 of tax at the scale.
    struct Cas {
        CaseEntree box;
        std::int32_t montant;
        CaseSortie ligne;
        std::int32_t attendu;
    };
    static constexpr Cas cas[] = {
        {"3VD", 10001, "CO_18", 1800},  // 1800.18
        {"3VT", 1000, "CO_19", 190},
        {"3VM", 1001, "CO_22_5", 225},  // 225.225
        {"3WI", 510, "CO_24", 122},     // 122.4
        {"3VI", 1000, "CO_30", 300},
        {"3VF", 1000, "CO_41", 410},
        {"3PI", 1001, "CO_50", 501},  // 500.5, the half goes up
        {"3WR", 55, "CO_3WR", 55},
        {"5HE", 1000, "CO_TNS", 128},
        {"5TC", 10000, "CO_INV_AUTEUR", 1280},
        {"8TF", 70, "CO_REPRISE", 70},
        {"8TP", 80, "CO_INVEST_CORSE", 80},
        {"1AT", 10001, "CO_PENSIONS", 675},  // 90 %: 9001 (9000.9); 7.5 % of it: 675.075
        {"2FA", 1000, "CO_INTERET", 240},
        {"4BH", 90, "CO_TAXELOYER", 90},
    };
    Retour tout{{"4BA", 45000}};
    std::int32_t somme = 0;
    for (const Cas& c : cas) {
        const auto seul = Retour{{c.box, c.montant}}.Calcule();
        EXPECT_EQ(seul[c.ligne], c.attendu) << kv::sortie::noms[c.ligne.numero];
        EXPECT_EQ(seul["CORRECTIONS"], c.attendu) << kv::sortie::noms[c.ligne.numero];
        tout.Avec({{c.box, c.montant}});
        somme += c.attendu;
    }
    const auto r = tout.Calcule();
    Attend(r, {{"TOT_IMP_RED", 7793}, {"CORRECTIONS", somme}, {"TOT_IMP_COR", 7793 + somme}});
    EXPECT_EQ(r.C(2, "CO_50"), 1001);
    EXPECT_EQ(r.C(3, "CO_50"), 5000);
}

TEST(Corrections, OverseasLongTermGainsShareTheRoomOfTheAbatement) {
    struct Cas {
        CaseEntree departement;
        std::int32_t revenu, gains;
        CaseSortie ligne;
        std::int32_t impot, taux;
    };
    static constexpr Cas cas[] = {
        // The reduced rate: 12800 less min(5100, 12800 - 8960).
        {"GMR", 0, 100000, "CO_TNS_MGR", 8960, 896},
        // The room binds: 25600 - 5100 = 20500, 10.25 %.
        {"GMR", 0, 200000, "CO_TNS_MGR", 20500, 1025},
        {"GUY", 0, 100000, "CO_TNS_GUY", 7680, 768},
        {"MAY", 0, 200000, "CO_TNS_GUY", 18900, 945},  // 25600 - 6700
        // The abatement on the income tax (30 % of 7793 = 2338) leaves 2762: 12800 - 2762 = 10038, 10.038 %.
        {"GMR", 45000, 100000, "CO_TNS_MGR", 10038, 1004},
    };
    for (const Cas& c : cas) {
        const auto r = Retour{{c.departement, 1}, {"4BA", c.revenu}, {"5HE", c.gains}}.Calcule();
        EXPECT_EQ(r[c.ligne], c.impot) << c.gains;
        EXPECT_EQ(r.C(2, c.ligne), c.gains);
        EXPECT_EQ(r.C(3, c.ligne), c.taux) << c.gains;
        EXPECT_EQ(r["CORRECTIONS"], c.impot);
        EXPECT_EQ(r["CO_TNS"], 0);
    }
}

TEST(Corrections, FlatTaxOption) {
    // Life insurance: 4600 of allowance, of which 1000 goes to the oldest products; 3600 come off the 6000 at 7.5 %,
    // nothing is left for the 500 at 12.8 %. 7.5 % of 2400 = 180; 12.8 % of 500 + 1000 + 2000 + 3000 = 832.
    const auto retour = [](std::int32_t couple) {
        return Retour{{"M", couple}, {"2CH1", 1000}, {"2DH2", 5000}, {"2CH2", 1000},
                      {"2CH3", 500}, {"2TR", 1000},  {"2DC", 2000},  {"3VG", 3000}};
    };
    const auto seul = retour(0).Avec({{"PFU", 1}}).CalculeOptions();
    Attend(seul,
           {{"RF_PFU1", 2400}, {"CO_PFU1", 180}, {"RF_PFU2", 6500}, {"CO_PFU2", 832}, {"CORRECTIONS", 180 + 832}});
    // A couple has 9200: 1000, 6000, then the 500; 12.8 % of 6000 = 768.
    const auto couple = retour(1).Avec({{"PFU", 1}}).CalculeOptions();
    EXPECT_EQ(couple["CO_PFU1"], 0);
    EXPECT_EQ(couple["CO_PFU2"], 768);
    // Without the option, none of it.
    EXPECT_EQ(retour(0).Calcule()["CORRECTIONS"], 0);
}

TEST(Corrections, InterestPaidInAdvanceIsPartOfTheOptions) {
    EXPECT_EQ((Retour{{"2FA", 1000}}.CalculeOptions()["CORRECTIONS"]), 240);
    EXPECT_EQ((Retour{{"2FA", 1000}, {"BAR", 1}}.CalculeOptions()["CORRECTIONS"]), 0);
    EXPECT_EQ((Retour{{"2FA", 1000}, {"PFU", 1}}.CalculeOptions()["CORRECTIONS"]), 128);
    // Without the option mode the switch alone changes nothing.
    EXPECT_EQ((Retour{{"2FA", 1000}, {"PFU", 1}}.Calcule()["CORRECTIONS"]), 240);
}

}  // namespace
