#include "tests/Cas.h"

namespace {

TEST(Capitaux, InvestmentIncome) {
    // clang-format off
    Cas cas[] = {
        {"life insurance, single", {{"2CH", 6000}}, {{"RD_MOB_ABAT", 4600}, {"RD_MOB", 1400}}},
        {"life insurance, couple", {{"M", 1}, {"2CH", 6000}}, {{"RD_MOB_ABAT", 6000}, {"RD_MOB", 0}}},
        {"no allowance for non-residents", {{"REM", 1}, {"2CH", 6000}}, {{"RD_MOB", 6000}}},
        {"dividends", {{"2DC", 1000}}, {{"RD_MOB_DEMI_BASE_2DC", 400}, {"RD_MOB", 600}}},
        {"deemed distributions", {{"2FU", 500}}, {{"RD_MOB_DEMI_BASE_2FU", 200}, {"RD_MOB", 300}}},
        {"raised by a quarter", {{"2GO", 1000}}, {{"RD_MOB_MAJO", 250}, {"RD_MOB", 1250}}},
        {"everything else", {{"2TT", 700}, {"2TS", 20}, {"2TR", 3}}, {{"RD_MOB_MONT", 723}, {"TOT_R_BRUT", 723}}},
        {"expenses above the interest", {{"2CA", 500}, {"2TR", 300}},
         {{"RD_MOB_FRAIS", 300}, {"RD_MOB", 0}, {"NP1_REV_MOB_ANN", 200}, {"NP1_REV_MOB", 200}, {"RD_MOB_DEF", 200}}},
        {"expenses above the net dividends", {{"2CA", 700}, {"2DC", 1000}},
         {{"RD_MOB_FRAIS", 600}, {"NP1_REV_MOB_ANN", 100}}},
        // 600 + 20 + 3 + 300 + (5000 - 4600) + 1250 + 700.
        {"expenses above income of every kind",
         {{"2CA", 20000}, {"2DC", 1000}, {"2TS", 20}, {"2TR", 3}, {"2FU", 500}, {"2CH", 5000}, {"2GO", 1000},
          {"2TT", 700}}, {{"RD_MOB_FRAIS", 3273}, {"RD_MOB", 0}, {"NP1_REV_MOB_ANN", 16727}}},
        {"expenses in proportion", {{"2CA", 100}, {"2DC", 1000}, {"2TS", 600}, {"2TR", 400}},
         {{"RD_MOB_FRAIS_2DC", 50}, {"RD_MOB_FRAIS_2TS", 30}, {"RD_MOB_FRAIS_2TR", 20}, {"RD_MOB", 1500}}},
        {"each share rounded on its own", {{"2CA", 100}, {"2DC", 500}, {"2TS", 500}, {"2TR", 500}},
         {{"RD_MOB_FRAIS_2DC", 33}, {"RD_MOB_FRAIS_2TR", 33}, {"RD_MOB", 1200}}},
        {"earlier deficits, the oldest first", {{"2AA", 100}, {"2AR", 500}, {"2TR", 300}},
         {{"RD_MOB_DEFICIT_NM1", 300}, {"RD_MOB", 0}, {"NP1_REV_MOB_Nm1", 300}, {"NP1_REV_MOB", 300}}},
        // 700 uses 100, 200, 300 and 100 of 400.
        {"six years of deficits",
         {{"2AA", 100}, {"2AL", 200}, {"2AM", 300}, {"2AN", 400}, {"2AQ", 500}, {"2AR", 600}, {"2TR", 700}},
         {{"NP1_REV_MOB_Nm5", 0}, {"NP1_REV_MOB_Nm4", 0}, {"NP1_REV_MOB_Nm3", 300}, {"NP1_REV_MOB_Nm2", 500},
          {"NP1_REV_MOB_Nm1", 600}, {"NP1_REV_MOB", 1400}}},
        {"the sixth year lapses unused", {{"2AA", 100}, {"2AL", 200}, {"2AR", 600}, {"2CA", 50}},
         {{"RD_MOB_DEFICIT_NM1", 0}, {"NP1_REV_MOB_Nm5", 200}, {"NP1_REV_MOB_Nm1", 600}, {"NP1_REV_MOB", 850}}},
        // 7.5 % of what the allowance leaves.
        {"levy credit, single", {{"2DH", 3000}, {"2CH", 2000}}, {{"D_LIB", 195}}},
        {"levy credit, couple", {{"O", 1}, {"2DH", 3000}, {"2CH", 2000}}, {{"D_LIB", 225}}},
        {"allowance used up", {{"2DH", 3000}, {"2CH", 4600}}, {{"D_LIB", 0}}},
        {"no levy credit for non-residents", {{"RED", 1}, {"2DH", 3000}}, {{"D_LIB", 0}}},
        {"levies already paid", {{"2DH", 1000}, {"2EE", 1000}},
         {{"PL_DH", 75}, {"PL_DH", 1000, 2}, {"PL_DH", 750, 3}, {"PL_EE", 150}, {"PL_PRELEV_LIB", 225}}},
    };
    // clang-format on
    VerifieCas(cas);
}

// CGI art. 156 I 3: a property deficit waits for property income, but for the part that comes off other income.
TEST(Capitaux, PropertyIncome) {
    // clang-format off
    Cas cas[] = {
        {"micro", {{"4BE", 10000}}, {{"RD_FON", 7000}, {"RD_FON_BE", 10000}, {"RD_FON_BE_ABAT", 3000}}},
        {"deficit of the year", {{"4BA", 5000}, {"4BB", 8000}},
         {{"RD_FON", 0}, {"RD_FON_BA", 0}, {"NP1_FON_ANN_BA", 5000}, {"NP1_FON_ANN_BB", 8000}, {"NP1_FON_ANN", 3000},
          {"NP1_FON", 3000}, {"RD_FON_DEF", 3000}}},
        {"as much deficit as income", {{"4BA", 3000}, {"4BB", 3000}}, {{"RD_FON_BA", 3000}, {"NP1_FON", 0}}},
        {"deficit against micro income", {{"4BE", 10000}, {"4BB", 8000}},
         {{"RD_FON", 0}, {"NP1_FON_ANN_BE", 10000}, {"NP1_FON_ANN_BE_ABAT", 3000}, {"NP1_FON_ANN", 1000}}},
        {"deficit on other income", {{"1AJ", 40000}, {"4BA", 1000}, {"4BB", 3000}, {"4BC", 500}, {"4BD", 50}},
         {{"RD_FON", -500}, {"RD_FON_BC", 500}, {"NP1_FON", 2050}, {"TOT_R_BRUT", 35500}}},
        {"earlier deficits after those of the year", {{"4BA", 5000}, {"4BC", 4000}, {"4BD", 3000}},
         {{"RD_FON", 0}, {"RD_FON_BD_IMPUT", 1000}, {"NP1_FON", 2000}}},
        {"earlier deficits in part", {{"4BA", 5000}, {"4BD", 7000}},
         {{"RD_FON", 0}, {"RD_FON_BD_IMPUT", 5000}, {"NP1_FON_ANT", 7000}, {"NP1_FON_IMP", 5000}, {"NP1_FON", 2000}}},
        {"of which the oldest lapse", {{"4BA", 5000}, {"4BD", 7000}, {"4BDa", 6000}},
         {{"NP1_FON_PER", 1000}, {"NP1_FON", 1000}}},
        {"all of them used: nothing to show",
         {{"4BA", 5000}, {"4BB", 1000}, {"4BC", 500}, {"4BD", 2000}, {"4BDa", 2500}},
         {{"RD_FON", 1500}, {"RD_FON_BB", 1000}, {"RD_FON_BD_IMPUT", 2000}, {"NP1_FON_ANT", 0}, {"NP1_FON_IMP", 0},
          {"NP1_FON_PER", 0}, {"NP1_FON", 0}}},
        {"earlier deficits on micro income", {{"4BE", 10000}, {"4BD", 9000}},
         {{"RD_FON", 0}, {"RD_FON_BD_IMPUT", 7000}, {"NP1_FON", 2000}}},
    };
    // clang-format on
    VerifieCas(cas);
}

// CGI art. 156 I 1: a farm deficit comes off other income up to a ceiling of that income.
TEST(Capitaux, FarmDeficits) {
    // clang-format off
    Cas cas[] = {
        {"earlier deficits",
         {{"5HC", 6000}, {"5JC", 3000}, {"5IF", 500}, {"5QF", 2000}, {"5QG", 100}, {"5QN", 200}, {"5QO", 300},
          {"5QP", 250}, {"5QQ", 150}},
         {{"RR_BA_DEF_ANT", 3000}, {"RR_BA_DEF_ANT", 2000, 1}, {"RR_BA_DEF_ANT", 0, 2}, {"RR_BA_DEF_ANT", 1000, 3},
          {"RR_BA", 5500}, {"NP1_BA", 0}, {"NP1_BA_ANT", 0}, {"NP1_BA_IMP", 0}}},
        {"nothing but lapsed ones", {{"5HF", 500}, {"5QF", 2000}},
         {{"NP1_BA", 0}, {"NP1_BA_ANT", 0}, {"NP1_BA_PER", 0}}},
        {"the oldest lapse", {{"5HC", 1000}, {"5QF", 2000}, {"5QG", 1000}},
         {{"NP1_BA_ANT", 3000}, {"NP1_BA_IMP", 1000}, {"NP1_BA_PER", 1000}, {"NP1_BA", 1000}}},
        {"a deficit of the year comes off other income", {{"1AJ", 100000}, {"5HF", 5000}, {"5QF", 2000}, {"5QN", 300}},
         {{"TOT_R_BRUT", 85000}, {"RR_BA", -5000}, {"NP1_BA_ANN", 0}, {"NP1_BA_PER", 2000}, {"NP1_BA", 300}}},
        // 133333 less the ceiling of 12305.
        {"too much other income", {{"1AJ", 133333}, {"5IF", 5000}, {"5QQ", 300}},
         {{"RR_BA_DEF", 5000}, {"RR_BA_DEF", 5000, 2}, {"TOT_R_BRUT", 121028}, {"NP1_BA_ANN", 5000},
          {"NP1_BA_ANT", 300}, {"NP1_BA", 5300}}},
        {"other income and global deficits",
         {{"1AJ", 40000}, {"6GH", 1000}, {"6FA", 500}, {"6FB", 10}, {"6FC", 20}, {"6FD", 30}, {"6FE", 40},
          {"6FL", 600}}, {{"RD_AUTRE", 1000}, {"RD_DEFICIT", 1200}, {"TOT_R_BRUT", 35800}}},
    };
    // clang-format on
    VerifieCas(cas);

    // What counts towards the ceiling, each euro once. Share gains: 121005 and 121006 less 10 % (12101).
    const auto reporte = [](CaseEntree box, std::int32_t montant, double indexation = -1.0) {
        Retour retour{{"5HF", 5000}};
        retour.Data().Entree[box] = montant;
        return retour.Indexation(indexation).Calcule()["NP1_BA_ANN"];
    };
    for (const CaseEntree box : std::initializer_list<CaseEntree>{
             "4BA", "2TR", "2FA", "1TZ", "3VG", "3UA", "3VE", "3VM", "3VT", "3PI", "3SB", "3SZ", "3UV", "3WI", "3WJ",
             "3WP", "3VD", "3VI", "3VF", "3SJ", "3SK", "5KE", "5OE", "5TC", "5QC", "5KC", "5NC", "5PA", "5JG"}) {
        SCOPED_TRACE(kv::entree::lignes[box.numero].nom);
        EXPECT_EQ(reporte(box, 108904), 0);
        EXPECT_EQ(reporte(box, 108905), 5000);
    }
    for (const CaseEntree box : std::initializer_list<CaseEntree>{"1AJ", "1TT", "1UT", "3VJ", "3VK"}) {
        SCOPED_TRACE(kv::entree::lignes[box.numero].nom);
        EXPECT_EQ(reporte(box, 121005), 0);
        EXPECT_EQ(reporte(box, 121006), 5000);
    }
    for (const CaseEntree box : std::initializer_list<CaseEntree>{"5HE", "5XT", "5HB", "1AT", "2EE", "6GH", "3WR"})
        EXPECT_EQ(reporte(box, 1000000), 0) << kv::entree::lignes[box.numero].nom;
    EXPECT_EQ(reporte("4BA", 109993, 1.0), 0);  // 108904 raised by 1 % is 109993.04
    EXPECT_EQ(reporte("4BA", 109994, 1.0), 5000);
}

// Each gain goes to the line of its rate, outside the scale.
TEST(Capitaux, FlatRateBases) {
    const auto gains = [] {
        return Retour{{"3VT", 1},    {"3SJ", 2},    {"3WJ", 4},    {"3WI", 8},     {"3VD", 16},   {"3PI", 32},
                      {"3WR", 64},   {"3VI", 128},  {"3SK", 256},  {"3VF", 512},   {"3VM", 1024}, {"3WP", 2048},
                      {"2FA", 4096}, {"5KE", 8192}, {"1AT", 1000}, {"1BT", 10000}, {"5UC", 16384}};
    };
    const Attendu bases[] = {
        {"CO_19", 7, 2},          {"CO_24", 8, 2},
        {"CO_18", 16, 2},         {"CO_50", 32, 2},
        {"CO_3WR", 64, 2},        {"CO_30", 384, 2},
        {"CO_41", 512, 2},        {"CO_22_5", 1024, 2},
        {"RF_PV1", 2048},         {"RF_2FA", 4096},
        {"RF_PENSIONS", 9900},    {"RF_PENSIONS", 900, 1},
        {"RF_PENSIONS", 9000, 2}, {"FORFAIT", 32767 - 64 + 9900, 2},  // all but 3WR, pensions less 10 %
        {"TOT_R_BRUT", 0},        {"TOT_IMPOT", 0},
    };
    const struct {
        CaseEntree territoire, aussi;
        CaseSortie ligne;
    } territoires[] = {
        {{}, {}, "CO_TNS"}, {"GUY", "GUY", "CO_TNS_GUY"}, {"MAY", "MAY", "CO_TNS_GUY"}, {"GMR", "GUY", "CO_TNS_MGR"}};
    for (const auto& t : territoires) {
        SCOPED_TRACE(kv::sortie::noms[t.ligne.numero]);
        Retour retour = gains();
        if (t.territoire) retour.Data().Entree[t.territoire] = retour.Data().Entree[t.aussi] = 1;
        const auto r = retour.Calcule();
        test::Verifie(r, bases);
        EXPECT_EQ(r.C(2, t.ligne), 8192);
        EXPECT_EQ(r.C(2, "CO_TNS") + r.C(2, "CO_TNS_GUY") + r.C(2, "CO_TNS_MGR"), 8192);
    }
}

// Investment income as declared, under the scale option and under the flat tax.
TEST(Capitaux, Options) {
    const auto retour = [](std::int32_t bar, std::int32_t pfu) {
        return Retour{{"2DC", 1000},  {"2TS", 200},  {"2TR", 300},  {"2FA", 400}, {"2FU", 500}, {"2CH", 6000},
                      {"2GO", 100},   {"2TT", 50},   {"2CA", 60},   {"2TS1", 20}, {"2TS2", 30}, {"2EE2", 40},
                      {"2CH1", 5000}, {"2CH2", 70},  {"2CH3", 80},  {"2DH2", 90}, {"2DH3", 10}, {"3VG", 1000},
                      {"3SJ", 500},   {"3SJ1", 110}, {"3SJ2", 120}, {"3VT", 7},   {"BAR", bar}, {"PFU", pfu}};
    };
    // 1000 + 200 + 300 + 500 + 6000 + 100 + 50 = 8150; + 25 - (400 + 200) - 4600 - 60. Expenses x 10/15, 2/15, 3/15.
    const Attendu declares[] = {{"RD_MOB_MONT", 8150}, {"RD_MOB_MAJO", 25},       {"RD_MOB_DEMI_BASE", 600},
                                {"RD_MOB", 2915},      {"RD_MOB_FRAIS_2DC", 40},  {"RD_MOB_FRAIS_2TS", 8},
                                {"RF_2FA", 400},       {"RD_MOB_FRAIS_2TR", 12},  {"RD_PV_BAREME", 1000},
                                {"CO_19", 507, 2},     {"RF_GAINS_BSPCE_19", 500}};
    test::Verifie(retour(0, 0).Calcule(), declares);
    test::Verifie(retour(1, 0).Calcule(), declares);
    test::Verifie(retour(0, 1).Calcule(), declares);
    test::Verifie(retour(0, 0).CalculeOptions(), declares);

    // Insurance 90, life insurance 5250, interest 400: 1000 + 90 + 300 + 500 + 5250 + 100 + 50 + 400 = 7690;
    // + 25 - 600 - 4600 - 60. Expenses x 1000/1390, 90/1390, 300/1390.
    const Attendu bareme[] = {{"RD_MOB_MONT", 7690}, {"RD_MOB", 2455},           {"RD_MOB_FRAIS_2DC", 43},
                              {"RF_2FA", 0},         {"RD_MOB_FRAIS_2TS", 4},    {"RD_MOB_FRAIS_2TR", 13},
                              {"CO_19", 117, 2},     {"RF_GAINS_BSPCE_19", 110}, {"RD_PV_BAREME", 1120}};
    test::Verifie(retour(1, 0).CalculeOptions(), bareme);

    // 20 + 500 + 5000 = 5520; - 200 - 4600 - 60. Dividends and gains leave the scale.
    const Attendu forfait[] = {{"RD_MOB_MONT", 5520}, {"RD_MOB_MAJO", 0},       {"RD_MOB_DEMI_BASE", 200},
                               {"RD_MOB", 660},       {"RD_MOB_FRAIS_2DC", 45}, {"RD_MOB_FRAIS_2TS", 1},
                               {"RF_2FA", 0},         {"RD_MOB_FRAIS_2TR", 14}, {"RD_PV_BAREME", 0},
                               {"CO_19", 117, 2},     {"TOT_R_BRUT", 660}};
    test::Verifie(retour(0, 1).CalculeOptions(), forfait);
    test::Verifie(retour(1, 1).CalculeOptions(), forfait);

    // Simulated for every return: interest bears its share of the expenses (90/1790, 700/1790), or insurance all.
    const auto simule = [](Retour r, std::initializer_list<Attendu> attendus) {
        CDataCalcul& data = r.Data();
        EXPECT_TRUE(kv::Lance(data, nullptr, true, -1.0, true, false));
        for (const Attendu& a : attendus)
            EXPECT_EQ(data.Sortie[a.sortie], a.valeur) << kv::sortie::noms[a.sortie.numero];
    };
    simule(retour(1, 0),
           {{"RD_MOB", 2455}, {"RD_MOB_FRAIS_2DC", 34}, {"RD_MOB_FRAIS_2TS", 3}, {"RD_MOB_FRAIS_2TR", 23}});
    simule(retour(0, 1), {{"RD_MOB", 660}, {"RD_MOB_FRAIS_2DC", 0}, {"RD_MOB_FRAIS_2TS", 60}, {"RD_MOB_FRAIS_2TR", 0}});
    simule({{"2CH1", 4000}, {"2DH1", 1000}, {"PFU", 1}}, {{"D_LIB", 45}});                // 7.5 % of 600
    simule({{"2CH1", 4000}, {"2CH2", 500}, {"2DH1", 1000}, {"BAR", 1}}, {{"D_LIB", 8}});  // 7.5 % of 100
    simule({{"2CH", 4600}, {"2DH1", 1000}, {"BAR", 1}}, {{"D_LIB", 0}});

    // The deficit of the year: insurance 100, 60 % of 100, life insurance 20; 300 and 100 of interest under the scale.
    const auto deficit = [](CaseEntree option) {
        Retour r{{"2CA", 1000}, {"2TR", 300}, {"2FA", 100}, {"2TS1", 100}, {"2FU", 100}, {"2CH1", 4620}};
        r.Data().Entree[option] = 1;
        return r.CalculeOptions()["NP1_REV_MOB_ANN"];
    };
    EXPECT_EQ(deficit("BAR"), 1000 - 580);
    EXPECT_EQ(deficit("PFU"), 1000 - 180);
}

// The income that a farm deficit is measured against follows the option.
TEST(Capitaux, FarmDeficitsUnderTheScaleOption) {
    const auto reporte = [](Retour retour) {
        return retour.Avec({{"BAR", 1}, {"5HF", 5000}}).CalculeOptions()["NP1_BA_ANN"];
    };
    EXPECT_EQ(reporte({{"3SJ", 200000}}), 0);
    EXPECT_EQ(reporte({{"3SJ1", 60000}, {"3SJ2", 48904}}), 0);
    EXPECT_EQ(reporte({{"3SJ1", 60000}, {"3SJ2", 48905}}), 5000);
    EXPECT_EQ(reporte({{"2FA", 108904}}), 0);
    EXPECT_EQ(reporte({{"2FA", 108905}}), 5000);
}

}  // namespace
