#include "tests/Cas.h"
#include "tests/Foyer.h"

namespace {

// CGI art. 197 A: a non-resident pays at least 20 % (14.4 % overseas), or the average rate of his worldwide income.
TEST(Etranger, NonResidents) {
    // clang-format off
    Cas cas[] = {
        // Scale on 10000: 27.02.
        {"minimum rate", {{"REM", 1}, {"1AJ", 11111}},
         {{"IMPOT_TM", 2000}, {"IMPOT_TM_RETENU", 2000}, {"IMPOT_TM_RETENU", 10000, 2}, {"IMPOT_TM_RETENU", 2000, 3},
          {"IMPOT_TM_FRANCAIS", 27}, {"IMPOT_TM_FRANCAIS", 27, 3}, {"IMPOT_TX_MOYEN", 2000}, {"TOT_IMPOT", 27}}},
        {"overseas", {{"RED", 1}, {"1AJ", 11111}}, {{"IMPOT_TM", 1440}, {"IMPOT_TM_RETENU", 1440, 3}}},
        {"both: overseas", {{"REM", 1}, {"RED", 1}, {"1AJ", 11111}}, {{"IMPOT_TM", 1440}}},
        // 50000: 9293, 18.586 %.
        {"worldwide income", {{"REM", 1}, {"1AJ", 11111}, {"8TM", 50000}},
         {{"IMPOT_TM", 1859}, {"IMPOT_TM_RETENU", 1859, 3}, {"IMPOT_TM_ETRANGER", 9293},
          {"IMPOT_TM_ETRANGER", 50000, 2}, {"IMPOT_TM_ETRANGER", 1859, 3}, {"TOT_IMPOT", 27}}},
        // 200000: 70154, 35 %.
        {"high worldwide income", {{"REM", 1}, {"1AJ", 11111}, {"8TM", 200000}}, {{"IMPOT_TM", 2000}}},
        // 187695: 64617, 34 %.
        {"high French income", {{"REM", 1}, {"1AJ", 200000}}, {{"IMPOT_TM", 64617}}},
        {"whatever the worldwide income", {{"REM", 1}, {"1AJ", 200000}, {"8TM", 10000}}, {{"IMPOT_TM", 64617}}},
        // 20 % of 1522.
        {"too little to collect", {{"REM", 1}, {"1AJ", 1952}},
         {{"IMPOT_TM_N_RECOUV", 304}, {"IMPOT_TM_RETENU", 304}, {"IMPOT_TM", 0}, {"IMPOT_TX_MOYEN", 0}}},
        {"305 is collected", {{"REM", 1}, {"1AJ", 1955}}, {{"IMPOT_TM_N_RECOUV", 0}, {"IMPOT_TM", 305}}},
        {"a lower rate is collected: 0.27 % of 1522", {{"REM", 1}, {"1AJ", 1952}, {"8TM", 10000}},
         {{"IMPOT_TM_N_RECOUV", 0}, {"IMPOT_TM", 4}}},
        {"maintenance paid: 20 % of 9000", {{"REM", 1}, {"1AJ", 11111}, {"8TMA", 1000}}, {{"IMPOT_TM", 1800}}},
        {"exceptional income counts whole", Retour{{"REM", 1}, {"4BA", 6000}}.Quotient("4BA", 4, 4000),
         {{"IMPOT_TM_RETENU", 10000, 2}, {"IMPOT_TM", 2000}}},
        {"residents", {{"1AJ", 11111}, {"8TM", 50000}}, {{"IMPOT_TM", 0}, {"IMPOT_TM_RETENU", 0, 2}}},
    };
    // clang-format on
    VerifieCas(cas);
}

// The marginal rate is that of the last worldwide pass: for a couple, the first declarant's alone. 16207 bears nothing
// for two parts, and 14 % for one.
TEST(Etranger, TheMarginalRateOfACouple) {
    Attend(Foyer("M 1AJ=18000").TI("1AW", 10).Calcule(), {{"TAUX_MARGINAL_2", 1400}, {"TOT_PAYER", 0}});
    Attend(Foyer("M 1AJ=18000").Calcule(), {{"TAUX_MARGINAL_2", 0}});
}

// CGI art. 197 C: French income taxed at the rate of the worldwide income. 40000 of salary: 36000, tax 5093.
TEST(Etranger, EffectiveRate) {
    // clang-format off
    Cas cas[] = {
        // 56000: 11093; x 36/56 = 7131.
        {"property", Retour{{"1AJ", 40000}}.TI("4BA", 20000),
         {{"TOT_IMPOT", 5093}, {"IMPOT_TX_EFFECTIF", 7131}, {"IMPOT_CALC", 7131}, {"IMPOT_ETRANGER", 2038},
          {"IMPOT_TX_EFFECTIF_2", 7131}, {"IMPOT_ETRANGER_2", 2038}, {"IMPOT_ETR_REV_NET_TI", 20000},
          {"TOT_R_MONDIAL", 56000}, {"TOT_R_IMPOS", 36000}, {"REVENU_REF", 56000}, {"REV_BRUT_TI_E", 20000}}},
        // Worldwide 48000 and 8000: 8693 + 4 x 600 = 11093; x 44/56 = 8715.93; French 5093 + 4 x 600.
        {"exceptional French income", Retour{{"1AJ", 40000}}.TI("4BA", 12000).Quotient("4BA", 4, 8000),
         {{"IMPOT_TX_EFFECTIF", 8716}, {"IMPOT_ETRANGER", 1223}, {"TOT_R_MONDIAL", 56000}, {"REVENU_REF", 50000}}},
        {"the marginal rate is the worldwide one", Retour{{"1AJ", 40000}}.TI("4BA", 100000), {{"TAUX_MARGINAL_2", 4100}}},
        // 20000 - 5000 - 1000: 50000: 9293; x 36/50 = 6691.
        {"less foreign tax and expenses", Retour{{"1AJ", 40000}}.TI("4BA", 20000).TIX("4BA", 5000).TIY("4BA", 1000),
         {{"IMPOT_TX_EFFECTIF", 6691}, {"REV_BRUT_TI_E", 14000}}},
        {"nothing left of it", Retour{{"1AJ", 40000}}.TI("4BA", 2000).TIX("4BA", 5000),
         {{"IMPOT_TX_EFFECTIF", 0}, {"IMPOT_CALC", 0}, {"IMPOT_ETRANGER", 0}, {"TOT_R_MONDIAL", 36000}}},
        // 43000: 7193; x 36/43 = 6022.05.
        {"micro property", Retour{{"1AJ", 40000}}.TI("4BE", 10000), {{"IMPOT_TX_EFFECTIF", 6022}}},
        // A loss of 2000 + 500: 33500: 4343; x 36/33.5 = 4667.1.
        {"farm deficit", Retour{{"1AJ", 40000}}.TI("5HF", 2000).TIX("5HF", 500),
         {{"TOT_R_MONDIAL", 33500}, {"IMPOT_TX_EFFECTIF", 4667}, {"IMPOT_ETRANGER", 4667 - 5093},
          {"IMPOT_ETR_REV_NET_TI", -2500}, {"REV_BRUT_TI_V", -2500}}},
        // 54000: 10493; x 36/54 = 6995.33. Deduction 6000 against 4000.
        {"exempt salary", {{"1AJ", 40000}, {"1AC", 20000}},
         {{"TOT_R_MONDIAL", 54000}, {"IMPOT_TX_EFFECTIF", 6995}, {"FP_TI_SAL", 2000, 1}, {"REV_BRUT_TI_V", 20000}}},
        // 52000: 9893; x 36/52 = 6849.
        {"with its actual expenses", {{"1AJ", 40000}, {"1AC", 20000}, {"1AE", 8000}},
         {{"TOT_R_MONDIAL", 52000}, {"IMPOT_TX_EFFECTIF", 6849}, {"FP_TI_SAL", 4000}, {"TOT_R_IMPOS", 36000}}},
        // Deduction 12000, then its ceiling of 12305, which the share gains bear in part.
        {"only what the deduction gains is foreign", {{"1AJ", 100000}, {"1TT", 20000}, {"1AC", 50000}},
         {{"FP_TI_SAL", 305}, {"TOT_R_MONDIAL", 157695}}},
        // 45000: 7793; x 36/45 = 6234.4.
        {"exempt pension", {{"1AJ", 30000}, {"1AS", 10000}, {"1AH", 10000}},
         {{"TOT_R_MONDIAL", 45000}, {"IMPOT_TX_EFFECTIF", 6234}, {"FP_TI_PENS", 1000}, {"FP_TI_SAL", 0}}},
        // Deductions 5000 + 2000 + 1000, 4000 of them foreign, by person. Couple: 72000: 10187; half of it 5094; 2294.
        {"a household", {{"M", 1}, {"1AJ", 40000}, {"1AC", 10000}, {"1BC", 20000}, {"1CC", 10000}},
         {{"FP_TI_SAL", 1000, 1}, {"FP_TI_SAL", 2000, 2}, {"FP_TI_SAL", 1000, 3}, {"REV_BRUT_TI_C", 20000},
          {"REV_BRUT_TI_E", 10000}, {"IMPOT_TX_EFFECTIF", 5094}, {"IMPOT_ETRANGER", 2800}}},
        {"investment income: 60 % of the dividends, the rest whole",
         Retour{{"1AJ", 40000}}.TI("2DC", 1000).TI("2TS", 300).TI("2TR", 250).TIX("2TR", 50),
         {{"TOT_R_MONDIAL", 37100}, {"RD_MOB", 0}}},
        // 60 % of 800, less 50; 300 - 20 - 10; nothing.
        {"less foreign tax and expenses of each", Retour{{"1AJ", 40000}}.TI("2DC", 1000).TIX("2DC", 200).TIY("2DC", 50)
             .TI("2TS", 300).TIX("2TS", 20).TIY("2TS", 10).TI("2TR", 250).TIX("2TR", 60).TIY("2TR", 200),
         {{"TOT_R_MONDIAL", 36700}}},
        {"never below 0",
         Retour{{"1AJ", 40000}}.TI("2DC", 100).TIX("2DC", 200).TIY("2DC", 9).TI("2TS", 30).TIY("2TS", 40),
         {{"TOT_R_MONDIAL", 36000}}},
    };
    // clang-format on
    VerifieCas(cas);

    const auto r = Retour{{"1AJ", 40000}}.TI("4BA", 20000).Calcule();
    EXPECT_EQ((Retour{{"1AJ", 40000}, {"BAR", 1}}.TI("2DC", 1000).TI("2TS", 300).CalculeOptions()["TOT_R_MONDIAL"]),
              36900);
    EXPECT_EQ((Retour{{"1AJ", 40000}, {"PFU", 1}}.TI("2DC", 1000).TI("2TS", 300).CalculeOptions()["TOT_R_MONDIAL"]),
              36300);
    EXPECT_EQ(r.Detail("IMPOT_CALC"), "11093 sur 56000) proratisé (x 36000 / 56000");
}

// Income taxed elsewhere counts for the rate: auto-entrepreneurs' receipts less the micro allowance, prospection income
// as a profit with an approved centre or without one.
TEST(Etranger, AutoEntrepreneursAndProspection) {
    const struct {
        CaseEntree box[3];
        CaseSortie brut, impot;
        std::int32_t montant, net, effectif;
    } cas[] = {
        {{"5TA", "5UA", "5VA"}, "MOND_AUTO_ENTR_P", "IMPOT_AUTO_ENTR", 2900, 2900, 5518},  // 38900: 5963; 5518.46
        {{"5TB", "5UB", "5VB"}, "MOND_AUTO_ENTR_P", "IMPOT_AUTO_ENTR", 5000, 5000, 5789},  // 41000: 6593; 5788.98
        {{"5TE", "5UE", "5VE"}, "MOND_AUTO_ENTR_P", "IMPOT_AUTO_ENTR", 6600, 6600, 5977},  // 42600: 7073; 5977.18
        {{"5TF", "5UF", "5VF"}, "MOND_PROSPEC", "IMPOT_PROSPEC", 10000, 10000, 6334},      // 46000: 8093; 6333.65
        {{"5TI", "5UI", "5VI"}, "MOND_PROSPEC", "IMPOT_PROSPEC", 10000, 12500, 6564},      // 48500: 8843; 6563.88
    };
    for (const auto& c : cas) {
        for (std::size_t k = 0; k < 3; ++k) {
            SCOPED_TRACE(kv::entree::lignes[c.box[k].numero].nom);
            Retour retour{{"1AJ", 40000}};
            retour.Data().Entree[c.box[k]] = 10000;
            const auto r = retour.Calcule();
            std::vector<std::int32_t> colonnes(3);
            colonnes[k] = c.montant;
            EXPECT_EQ(r.Colonnes(c.brut), colonnes);
            EXPECT_EQ(r["TOT_R_IMPOS"], 36000);
            EXPECT_EQ(r["TOT_R_MONDIAL"], 36000 + c.net);
            EXPECT_EQ(r["IMPOT_TX_EFFECTIF"], c.effectif);
            EXPECT_EQ(r[c.impot], c.effectif - 5093);
            EXPECT_EQ(r["IMPOT_ETRANGER"], 0);
        }
    }

    // clang-format off
    Cas melanges[] = {
        // 36000 + 2900 + 10000 + 7100 = 56000: the 2038 beyond the French tax x 2.9/20, x 10/20, the rest.
        {"each kind bears its share", Retour{{"1AJ", 40000}, {"5TA", 10000}, {"5TF", 10000}}.TI("4BA", 7100),
         {{"IMPOT_TX_EFFECTIF", 7131}, {"IMPOT_AUTO_ENTR", 296}, {"IMPOT_PROSPEC", 1019}, {"IMPOT_ETRANGER", 723}}},
        // 15000 less 10650, of which 5000 and 3550 are French.
        {"beside receipts taxed here", {{"1AJ", 40000}, {"5KO", 5000}, {"5TA", 10000}},
         {{"RR_BIC_P", 1450}, {"MOND_AUTO_ENTR_P", 2900}}},
        {"fees", {{"1AJ", 40000}, {"5HQ", 5000}, {"5TE", 10000}}, {{"RR_BNC_P", 3300}, {"MOND_AUTO_ENTR_P", 6600}}},
        // 12600 - 2376 and 17600 - 1188: 58 of tax on 10224, 925 on 16412, x 10224/16412 = 576.24.
        {"which lowers the allowance of the elderly", {{"AAF1", 19400301}, {"1AS", 14000}, {"5TB", 10000}},
         {{"TOT_R_MONDIAL", 16412}, {"IMPOT_AUTO_ENTR", 518}, {"IMPOT_ETRANGER", 0}}},
        // The minimum of 305 on 400: 76 for the 100 taxed here, which alone would have been exempted.
        {"under the minimum allowance", {{"1AJ", 40000}, {"5KO", 100}, {"5TA", 300}},
         {{"RR_BIC_P", 24}, {"TOT_R_IMPOS", 36024}, {"TOT_R_MONDIAL", 36095}}},
    };
    // clang-format on
    VerifieCas(melanges);
}

// A French property deficit is not used on foreign income: 36000 + 5000, 36000 + 1000.
TEST(Etranger, FrenchDeficitsStay) {
    EXPECT_EQ((Retour{{"1AJ", 40000}, {"4BD", 3000}}.TI("4BA", 1000).Calcule()["TOT_R_MONDIAL"]), 37000);
    const auto r = Retour{{"1AJ", 40000}, {"4BB", 3000}}.TI("4BA", 5000).Calcule();
    EXPECT_EQ(r["TOT_R_MONDIAL"], 41000);
    EXPECT_EQ(r["NP1_FON"], 3000);
    EXPECT_EQ(r["IMPOT_TX_EFFECTIF"], 5789);
}

// Income with a credit equal to the French tax is declared with the rest, and measured alone.
TEST(Etranger, CreditEqualToTheFrenchTax) {
    // clang-format off
    Cas cas[] = {
        // 50000 less 5000; a fifth of both.
        {"salary", Retour{{"1AJ", 40000}, {"1AF", 10000}}.TK("1AF", 10000).TKZ("1AF", 2000),
         {{"IMPOT_ETR_REV_TK", 9000}, {"IMPOT_ETR_REV_NET_TK", 9000}, {"IMPOT_ETR_RMI", 45000}, {"TOT_R_IMPOS", 45000},
          {"TOT_R_MONDIAL", 0}, {"IMPOT_TX_EFFECTIF", 0}}},
        {"with actual expenses, net of the foreign tax",
         Retour{{"1AJ", 40000}, {"1AF", 10000}, {"1AK", 6000}}.TK("1AF", 10000).TKZ("1AF", 2000),
         {{"IMPOT_ETR_REV_TK", 8000}, {"TOT_R_IMPOS", 44000}}},
        {"pension: a third of the allowance", Retour{{"1AS", 20000}, {"1AL", 10000}}.TK("1AL", 10000),
         {{"IMPOT_ETR_REV_TK", 9000}, {"IMPOT_ETR_RMI", 27000}}},
        {"farm, property",
         Retour{{"5HC", 9000}, {"4BA", 12000}, {"4BE", 1000}}.TK("5AK", 3000).TK("4BL", 5000).TKZ("4BL", 400),
         {{"IMPOT_ETR_REV_TK", 7600}, {"IMPOT_ETR_RMI", 21700}}},
        // 600 - 100, nothing, 200 - 30.
        {"investment income", Retour{{"1AJ", 40000}}.TK("2DC", 1000).TKZ("2DC", 100).TK("2TS", 300).TKZ("2TS", 350)
             .TK("2TR", 200).TKZ("2TR", 30), {{"IMPOT_ETR_REV_TK", 670}, {"IMPOT_ETR_RMI", 36000}}},
        {"income at flat rates", Retour{{"1AJ", 40000}}.TK("1AT", 1000).TK("5HE", 500).TK("2FA", 200),
         {{"IMPOT_ETR_REV_TK", 0}, {"IMPOT_ETR_PV_NET_TK", 1600}}},
        // 56000 worldwide, of which 36000 French.
        {"beside income at the effective rate",
         Retour{{"1AJ", 30000}, {"1AF", 10000}}.TK("1AF", 10000).TI("4BA", 20000),
         {{"IMPOT_ETR_REV_TK", 9000}, {"IMPOT_ETR_RMI", 56000}, {"IMPOT_TX_EFFECTIF", 7131}}},
    };
    // clang-format on
    VerifieCas(cas);
}

// Under the flat tax, of the investment income only the insurance income is left: 300 - 50.
TEST(Etranger, CreditEqualToTheFrenchTaxUnderTheOptions) {
    const auto revenuTK = [](CaseEntree option) {
        Retour retour{{"1AJ", 40000}};
        retour.Data().Entree[option] = 1;
        retour.TK("2DC", 1000).TK("2TS", 300).TKZ("2TS", 50).TK("2TR", 200);
        return retour.CalculeOptions()["IMPOT_ETR_REV_TK"];
    };
    EXPECT_EQ(revenuTK("BAR"), 1050);
    EXPECT_EQ(revenuTK("PFU"), 250);
}

TEST(Etranger, NothingWithoutForeignIncome) {
    // An unset companion, or amounts to take off nothing, are no foreign income.
    const auto r =
        Retour{{"1AJ", 40000}, {"4BA", 500}}.TI("4BA", nNonSaisi).TK("4BL", nNonSaisi).TIX("5HC", 70).Calcule();
    for (const CaseSortie sortie : std::initializer_list<CaseSortie>{
             "IMPOT_TX_EFFECTIF", "IMPOT_CALC", "IMPOT_ETRANGER", "IMPOT_AUTO_ENTR", "IMPOT_PROSPEC",
             "IMPOT_ETR_REV_NET_TI", "IMPOT_ETR_RMI", "IMPOT_ETR_REV_TK", "TOT_R_MONDIAL", "MOND_AUTO_ENTR_P",
             "MOND_PROSPEC", "FP_TI_SAL", "FP_TI_PENS", "REV_BRUT_TI_V", "IMPOT_TM", "IMPOT_TX_MOYEN"}) {
        EXPECT_EQ(r[sortie], 0) << kv::sortie::noms[sortie.numero];
        EXPECT_EQ(r.Colonnes(sortie), std::vector<std::int32_t>(3)) << kv::sortie::noms[sortie.numero];
    }
    EXPECT_EQ(r.Detail("IMPOT_CALC"), "");
    EXPECT_EQ(r["TOT_R_IMPOS"], 36500);
}

// Every move into the French boxes and out of them leaves the return as it was declared.
TEST(Etranger, EntriesComeBack) {
    Retour retour{{"M", 1},     {"1AJ", 40000}, {"1AC", -300}, {"1BC", 20000}, {"1AE", 500},  {"1BE", 8000},
                  {"1CH", 900}, {"5TA", 1000},  {"5UB", 2000}, {"5VE", 3000},  {"5TF", 4000}, {"5UI", 5000},
                  {"4BA", 700}, {"5HC", 60},    {"1AF", 3000}, {"1AK", 7000},  {"3VG", 50},   {"5KO", 10}};
    retour.TI("4BA", 1000).TIX("4BA", 3000).TI("5HF", 500).TIX("5HF", 70).TIY("5HF", 8).TI("2DC", 90).TIX("2DC", 20);
    retour.TK("1AF", 3000).TKZ("1AF", 4000).TK("5AK", 60).TK("4BL", 100).TK("3VG", 50).TKZ("3VG", 60);
    retour.Quotient("1AJ", 4, 2000).Quotient("5HC", 2, 40).Quotient("AAQ", 0, 30);
    const Donnees avant(retour.Data());
    const auto r = retour.Calcule();
    EXPECT_EQ(Donnees(r.Data()), avant);
    EXPECT_EQ(r.E("8TI"), 1590);
    EXPECT_EQ(r.E("8TK"), 3210);
    EXPECT_EQ(r["REV_BRUT_TI_V"], -578);  // 500 + 70 + 8 of deficit, the negative salary for nothing
    EXPECT_EQ(r["REV_BRUT_TI_C"], 20000);
    EXPECT_EQ(r["REV_BRUT_TI_E"], 900);  // the property income less more than itself
    EXPECT_EQ(r["MOND_PROSPEC"], 9000);
}

}  // namespace
