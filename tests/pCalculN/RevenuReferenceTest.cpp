#include "tests/Cas.h"

namespace {

// CGI art. 1417 IV: what the reference income adds to the net income.
TEST(RevenuReference, WhatCounts) {
    // clang-format off
    Cas cas[] = {
        {"salary", {{"1AJ", 40000}}, {{"REVENU_REF", 36000}, {"REV_REF_B", 0}}},
        {"dividends before their allowance", {{"2DC", 1000}}, {{"TOT_R_BRUT", 600}, {"REVENU_REF", 1000}}},
        {"deemed distributions too", {{"2FU", 1000}}, {{"TOT_R_BRUT", 600}, {"REVENU_REF", 1000}}},
        {"income already taxed at flat rates, pensions less 10 %",
         {{"2EE", 500}, {"2DH", 70}, {"2FA", 3}, {"1AT", 1000}, {"1BT", 500}},
         {{"REV_REF_EE", 500}, {"REV_REF_DH", 70}, {"REV_REF_FA", 3}, {"REV_REF_1AT", 1350}, {"REVENU_REF", 1923}}},
        {"business gains, inventors, share awards", {{"5HE", 1000}, {"5UC", 200}, {"1UZ", 30}, {"1VZ", 4}},
         {{"REVENU_REF", 1234}}},
        {"farm profits at the marginal rate", {{"5XV", 1000}}, {{"TOT_R_BRUT", 0}, {"REVENU_REF", 1250}}},
        {"gains net of losses and allowances",
         {{"3VG", 1000}, {"3UA", 200}, {"3SG", 500}, {"3SL", 30}, {"3VA", 4}, {"3VQ", 80}, {"3VH", 300}, {"3VR", 14}},
         {{"TOT_R_BRUT", 1200}, {"REVENU_REF", 1500}}},
        {"never below 0", {{"3VH", 300}, {"4BC", 5000}, {"2EE", 500}}, {{"TOT_R_BRUT", -5000}, {"REVENU_REF", 500}}},
        {"gains at the scale that it leaves out", {{"3SB", 1}, {"3VE", 2}, {"3UV", 4}, {"3SZ", 8}},
         {{"TOT_R_BRUT", 15}, {"REVENU_REF", 0}}},
        {"exempt business income",
         {{"5XA", 1}, {"5HB", 2}, {"5JH", 4}, {"5KN", 8}, {"5LB", 16}, {"5NN", 32}, {"5PH", 64}, {"5HP", 128},
          {"5SH", 256}, {"5IK", 512}, {"5QL", 1024}, {"5RL", 2048}, {"5SL", 4096}, {"5SV", 8192}, {"5SW", 16384},
          {"5SX", 32768}},
         {{"REV_REF_BA_EXO", 7}, {"REV_REF_BIC_EXO", 120}, {"REV_REF_BNC_EXO", 65408}, {"REVENU_REF", 65535}}},
        {"levy on earlier income, maintenance: deducted", {{"1AJ", 40000}, {"6DE", 300}, {"6GU", 1000}},
         {{"REVENU_REF", 34700}}},
        {"deductible levy on capital", {{"2TR", 1000}, {"2BH", 1000}}, {{"REVENU_REF", 949}}},
        {"retirement savings: added back", {{"1AJ", 40000}, {"6RS", 1000}, {"6PS1", 4000}, {"6RU", 200}, {"6PU1", 500}},
         {{"TOT_R_IMPOS", 34800}, {"REVENU_REF", 36000}}},
        {"allowance of the elderly", {{"1AS", 14000}, {"AAF1", 19400301}}, {{"REVENU_REF", 12600 - 2376}}},
        {"married children", {{"1AJ", 40000}, {"Nm", 1}}, {{"REVENU_REF", 36000 - 5795}}},
        {"variants for the contribution on high incomes and for the reductions",
         {{"1AJ", 40000}, {"3WN", 100}, {"3SA", 20}},
         {{"REVENU_REF", 36100}, {"REV_REF_C", 36000}, {"REV_REF_D", 36120}}},
    };
    // clang-format on
    VerifieCas(cas);

    for (const CaseEntree box :
         std::initializer_list<CaseEntree>{"3VD", "3VI", "3VF", "3SJ", "3SK", "3VM", "3VT", "3PI", "3VC", "3SE",
                                           "3WE", "3WI", "3WJ", "3WN", "3TZ", "3VZ", "3VG", "3UA", "3SG", "2DM"}) {
        Retour retour{{"4BA", 10000}};
        retour.Data().Entree[box] = 777;
        EXPECT_EQ(retour.Calcule()["REVENU_REF"], 10777) << kv::entree::lignes[box.numero].nom;
    }
}

// Exempt salaries count less their share of the deduction, computed on all the salaries of the person.
TEST(RevenuReference, ExemptSalaries) {
    // 10000 x 36000 / 40000; 5000 x 22500 / 25000.
    const auto r = Retour{{"M", 1}, {"1AJ", 30000}, {"1AQ", 10000}, {"1BJ", 20000}, {"1BQ", 5000}}.Calcule();
    EXPECT_EQ(r["REV_REF_REV_EXO"], 13500);
    EXPECT_EQ(r.Colonnes("RN_PART_QA_QB"), (std::vector{1000, 500, 0}));
    EXPECT_EQ(r["TOT_R_IMPOS"], 45000);
    EXPECT_EQ(r["REVENU_REF"], 58500);
    EXPECT_EQ(r.E("1AJ"), 30000);
    EXPECT_EQ(r.E("1BJ"), 20000);

    // clang-format off
    Cas cas[] = {
        // 40000 in all for the first declarant: 9/10 of each kind.
        {"three kinds",
         {{"M", 1}, {"1AJ", 30000}, {"1AQ", 2000}, {"1DY", 5000}, {"1SM", 3000}, {"1EY", 10000}, {"1DN", 2000},
          {"2DM", 7}},
         {{"REV_REF_REV_EXO", 1800 + 2700 + 1800}, {"REV_REF_IMPATRIES_EXO", 4500 + 9000 + 7},
          {"RN_PART_DY_EY", 500, 1}, {"RN_PART_DY_EY", 1000, 2}, {"RN_PART_SM_DN", 300, 1}, {"RN_PART_SM_DN", 200, 2},
          {"REVENU_REF", 27000 + 6300 + 13507}}},
        {"no taxable salary", {{"1AQ", 10000}}, {{"TOT_R_BRUT", 0}, {"REVENU_REF", 9000}}},
        {"under the minimum deduction", {{"1AQ", 400}}, {{"REVENU_REF", 0}, {"RN_PART_QA_QB", 400, 1}}},
        // The ceiling of 12305 on 200000: 50000 x 187695 / 200000.
        {"deduction at its ceiling", {{"1AJ", 150000}, {"1AQ", 50000}},
         {{"REV_REF_REV_EXO", 46924}, {"TOT_R_IMPOS", 137695}, {"REVENU_REF", 184619}}},
        // Actual expenses stay with the taxable salaries.
        {"actual expenses", {{"1AJ", 30000}, {"1AK", 8000}, {"1AQ", 10000}},
         {{"REV_REF_REV_EXO", 10000}, {"TOT_R_IMPOS", 22000}, {"REVENU_REF", 32000}}},
        // The exceptional part counts for a quarter: 27000 + 9000 + 9000 / 4.
        {"with an exceptional salary", Retour{{"1AJ", 30000}, {"1AQ", 10000}}.Quotient("1AJ", 4, 10000),
         {{"RQ_REV_EXCEP", 9000}, {"TOT_R_IMPOS", 27000}, {"REVENU_REF", 38250}}},
    };
    // clang-format on
    VerifieCas(cas);
}

// Foreign dividends retained for the rate: 60 % in the worldwide income, the other 40 % here.
TEST(RevenuReference, ForeignIncome) {
    const auto dividendes = [](std::int32_t impot, std::int32_t frais) {
        return Retour{{"1AJ", 40000}, {"3SB", 100}}.TI("2DC", 1000).TIX("2DC", impot).TIY("2DC", frais).Calcule();
    };
    EXPECT_EQ(dividendes(0, 0)["TOT_R_MONDIAL"], 36000 + 100 + 600);
    EXPECT_EQ(dividendes(0, 0)["REVENU_REF"], 36000 + 1000);
    EXPECT_EQ(dividendes(200, 50)["TOT_R_MONDIAL"], 36100 + 430);  // 60 % of 800, less 50
    EXPECT_EQ(dividendes(200, 50)["REVENU_REF"], 36000 + 430 + 320);
}

// A return of part of the year: the reference income in proportion, in months of 30 days.
TEST(RevenuReference, PartOfTheYear) {
    const struct {
        std::int32_t mois, jour, reference;
    } fins[] = {{6, 30, 18000}, {6, 29, 17900}, {7, 31, 21000}, {12, 30, 36000}};
    for (const auto& f : fins) {
        TPeriode periode(2017);
        periode.Fin = kv::Date(2017, f.mois, f.jour);
        const auto r = Retour{{"1AJ", 40000}}.Periode(periode).Calcule();
        EXPECT_EQ(r["REVENU_REF"], f.reference);
        EXPECT_EQ(r["REV_REF_B"], f.reference == 36000 ? 0 : 36000);
        EXPECT_EQ(r["TOT_R_IMPOS"], 36000);
    }
}

// Under the options, what the scale no longer taxes still counts.
TEST(RevenuReference, Options) {
    const auto calcule = [](CaseEntree option) {
        Retour retour{{"2DC", 1000}, {"2TR", 300},  {"2TT", 5},    {"2GO", 8},   {"2FA", 7000},
                      {"2FU", 100},  {"2EE", 9000}, {"2DH", 9000}, {"2EE1", 50}, {"2DH1", 10},
                      {"2EE2", 60},  {"2DH2", 20},  {"2DH3", 30}};
        retour.Data().Entree[option] = 1;
        return retour.CalculeOptions();
    };
    // Scale: 60 % of dividends and distributions, interest, life insurance within its allowance; the 40 % added back.
    const auto bareme = calcule("BAR");
    EXPECT_EQ(bareme["TOT_R_BRUT"], 600 + 60 + 300 + 7000 + 60 + 5 + 10);
    EXPECT_EQ(bareme["REVENU_REF"], 8035 + 440 + 50 + 10);
    // Flat tax: distributions alone at the scale; 1313 of capital income, 7000 + 110 + 60 beside them.
    const auto forfait = calcule("PFU");
    EXPECT_EQ(forfait["TOT_R_BRUT"], 60);
    EXPECT_EQ(forfait["REVENU_REF"], 100 + 1313 + 7000 + 110 + 60);
}

}  // namespace
