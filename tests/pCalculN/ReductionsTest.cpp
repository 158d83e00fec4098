#include "tests/Foyer.h"

// Property income (4BA) is taxed as declared, so that a return with 4BA alone has that income as gross, net, taxable
// and reference income. A single person pays on it:
//     45000: 45000 x 30 % -  5706.74 =  7793.26 ->  7793
//     90000: 90000 x 41 % - 13694.61 = 23205.39 -> 23205
//    200000: 200000 x 45 % - 19845.93 = 70154.07 -> 70154

namespace {

// One line of a return that leaves it enough tax: declared base, retained base, amount.
struct Ligne {
    CaseEntree box;
    std::int32_t declare;
    CaseSortie sortie;
    std::int32_t retenu, montant;
};

// A return with all these lines: each is as said, and the tax goes down by their sum.
void Verifie(Retour retour, std::int32_t impot, const std::vector<Ligne>& lignes) {
    for (const Ligne& l : lignes) retour.Avec({{l.box, l.declare}});
    const auto r = retour.Calcule();
    std::int32_t somme = 0;
    for (const Ligne& l : lignes) {
        const char* nom = kv::sortie::noms[l.sortie.numero];
        EXPECT_EQ(r[l.sortie], l.montant) << nom;
        EXPECT_EQ(r.C(1, l.sortie), l.declare) << nom;
        EXPECT_EQ(r.C(2, l.sortie), l.retenu) << nom;
        somme += l.montant;
    }
    Attend(r, {{"TOT_IMPOT", impot}, {"REDUCTIONS", somme}, {"TOT_IMP_RED", impot - somme}});
}

TEST(Reductions, ReliefAndModestIncome) {
    // 16000: 867.02; relief 1177 - 650.25 = 526.75 -> 527; a full 20 % of 340 = 68.
    const auto plein = Retour{{"4BA", 16000}}.Calcule();
    EXPECT_EQ(plein["U_DECOTE"], 527);
    EXPECT_EQ(plein["U_CLASSES_MOYENNES"], 68);
    // At 20705 there is no reduction left; non-residents have neither.
    EXPECT_EQ((Retour{{"4BA", 20705}}.Calcule()["U_CLASSES_MOYENNES"]), 0);
    const auto nonResident = Retour{{"4BA", 16000}, {"REM", 1}}.Calcule();
    EXPECT_EQ(nonResident["U_DECOTE"], 0);
    EXPECT_EQ(nonResident["U_CLASSES_MOYENNES"], 0);
}

TEST(Reductions, OverseasResidents) {
    struct Cas {
        CaseEntree departement;
        std::int32_t revenu, agricole;
        CaseSortie abattement, abattementMarginal;
        std::int32_t attendu, attenduMarginal, impot;
    };
    static constexpr Cas cas[] = {
        // 30 % of 7793 = 2337.9; 40 % = 3117.2.
        {"GMR", 45000, 0, "U_DECOTE_DOM_GMR", "IMPOT_DU_DOM_GMR", 2338, 0, 5455},
        {"MAY", 45000, 0, "U_DECOTE_DOM_GUY", "IMPOT_DU_DOM_GUY", 3117, 0, 4676},
        {"GMR", 90000, 0, "U_DECOTE_DOM_GMR", "IMPOT_DU_DOM_GMR", 5100, 0, 18105},
        {"GUY", 90000, 0, "U_DECOTE_DOM_GUY", "IMPOT_DU_DOM_GUY", 6700, 0, 16505},
        // Farm income at the marginal rate of 30 %: 3000, of which 30 % fits in what is left of 5100.
        {"GMR", 45000, 10000, "U_DECOTE_DOM_GMR", "IMPOT_DU_DOM_GMR", 2338, 900, 5455 + 2100},
        // 60000: 18000 - 5706.74 = 12293. 30 %: 3688, leaving 1412 for 30 % of 6000 = 1800.
        {"GMR", 60000, 20000, "U_DECOTE_DOM_GMR", "IMPOT_DU_DOM_GMR", 3688, 1412, 8605 + 4588},
        // 40 %: 4917, leaving 1783 for 40 % of 6000 = 2400.
        {"GUY", 60000, 20000, "U_DECOTE_DOM_GUY", "IMPOT_DU_DOM_GUY", 4917, 1783, 7376 + 4217},
    };
    for (const Cas& c : cas) {
        const auto r = Retour{{c.departement, 1}, {"4BA", c.revenu}, {"5XT", c.agricole}}.Calcule();
        EXPECT_EQ(r[c.abattement], c.attendu) << c.revenu;
        EXPECT_EQ(r[c.abattementMarginal], c.attenduMarginal) << c.revenu;
        EXPECT_EQ(r["TOT_IMP_RED"], c.impot) << c.revenu;
    }
    // Reductions come off the tax at the scale only: the 8605, not the 4588 at the marginal rate.
    const auto r = Retour{{"GMR", 1}, {"4BA", 60000}, {"5XT", 20000}, {"HQB", 20000}}.Calcule();
    EXPECT_EQ(r["U_DT_HQB"], 8605);
    EXPECT_EQ(r["TOT_IMP_RED"], 4588);
}

TEST(Reductions, Donations) {
    // 20 % of 45000 = 9000, the oldest year first: 2000 + 3000 + 1000 + 1500 leave 1500 of last year's 2500.
    const auto r = Retour{{"4BA", 45000}, {"7XS", 2000}, {"7XT", 3000}, {"7XU", 1000},
                          {"7XW", 1500},  {"7XY", 2500}, {"7UH", 1000}, {"7UF", 800}}
                       .Calcule();
    Attend(r, {{"U_DONS_OEUVRES_Nm5", 1320},
               {"U_DONS_OEUVRES_Nm4", 1980},
               {"U_DONS_OEUVRES_Nm3", 660},
               {"U_DONS_OEUVRES_Nm2", 990}});
    EXPECT_EQ(r.Colonnes("U_DONS_OEUVRES_Nm1"), (std::vector{2500, 1500, 66}));
    EXPECT_EQ(r.Detail("U_DONS_OEUVRES_Nm1"), "66% x 1500");
    EXPECT_EQ(r["REDUCTIONS"], 5940);  // 66 % of 9000
    EXPECT_EQ(r["NP1_DONS_Nm1"], 1000);
    EXPECT_EQ(r["NP1_DONS_Nm2"] + r["NP1_DONS_Nm3"] + r["NP1_DONS_Nm4"], 0);
    EXPECT_EQ(r["NP1_DONS_N"], 1800);

    // What the oldest year can't use is lost.
    const auto perdu = Retour{{"4BA", 45000}, {"7XS", 10000}, {"7XT", 500}}.Calcule();
    Attend(perdu, {{"REDUCTIONS", 5940}, {"NP1_DONS_Nm4", 500}, {"NP1_DONS_N", 0}});

    // Political donations: 15000 at most. 40000 - 15000 = 25000 for the next line, nothing for the last.
    const auto partis = Retour{{"4BA", 200000}, {"7UH", 18000}, {"7UF", 25000}, {"7VC", 100}}.Calcule();
    Attend(
        partis,
        {{"U_DONS_PARTIS_N", 9900}, {"U_DONS_OEUVRES_N", 16500}, {"U_DONS_AUTRES_N", 0}, {"NP1_DONS_N", 3000 + 100}});
}

TEST(Reductions, SharedCeilings) {
    // Help to persons in difficulty: 531. Press: 5000. Film companies: 25 % of 45000 = 11250. Forest: 6250.
    Verifie({{"4BA", 45000}}, 7793,
            {{"7UD", 400, "U_REDUC_7UD", 400, 300},
             {"7VA", 300, "U_REDUC_7VA", 131, 98},
             {"7MY", 4000, "U_REDUC_7MY", 4000, 2000},
             {"7MX", 3000, "U_REDUC_7MX", 1000, 300}});
    Verifie({{"4BA", 45000}}, 7793,
            {{"7EN", 8000, "U_REDUC_7EN", 8000, 3840},
             {"7GN", 3000, "U_REDUC_7GN", 3000, 1080},
             {"7FN", 1000, "U_REDUC_7FN", 250, 75}});
    // 18000 when 25 % of the income is more.
    Verifie({{"4BA", 90000}}, 23205,
            {{"7EN", 10000, "U_REDUC_7EN", 10000, 4800}, {"7FN", 9000, "U_REDUC_7FN", 8000, 2400}});
    // 6250 - 1000 - 4000 leaves 1250: 312.5 goes up.
    Verifie({{"4BA", 45000}}, 7793,
            {{"7UL", 1000, "U_FOREST_ASSUR", 1000, 760},
             {"7TE", 4000, "U_FOREST_TRAV_NM5_8ans", 4000, 1000},
             {"7TF", 4000, "U_FOREST_TRAV_NM4_8ans", 1250, 313},
             {"7UN", 6000, "U_FOREST_ACQU", 5700, 1026}});
    // A couple has twice the ceilings marked per household. Two parts at 90000: 27000 - 11413.48 = 15587.
    Verifie({{"M", 1}, {"4BA", 90000}}, 15587,
            {{"7MY", 8000, "U_REDUC_7MY", 8000, 4000},
             {"7MX", 3000, "U_REDUC_7MX", 2000, 600},
             {"7UN", 12000, "U_FOREST_ACQU", 11400, 2052},
             {"7UM", 11000, "U_REDUC_7UM", 10000, 5000},
             {"7UC", 1500, "U_REDUC_7UC", 1000, 500},
             {"7FH", 10000, "U_REDUC_7FH", 10000, 2500}});
}

TEST(Reductions, ForestWorksCarriedToNextYear) {
    // 6250 - 4000 = 2250 of 4000; 562.5 goes up.
    const auto r = Retour{{"4BA", 45000}, {"7TE", 4000}, {"7TF", 4000}}.Calcule();
    EXPECT_EQ(r.C(2, "U_FOREST_TRAV_NM4_8ans"), 2250);
    EXPECT_EQ(r["U_FOREST_TRAV_NM4_8ans"], 563);
    EXPECT_EQ(r["NP1_FOREST_TRAV_7TF"], 1750);
    // 6250 is used up by 7UL to 7TG: 5000 leave 1250, then 250 of 7TG's 2000, nothing for 7TH and 7TI.
    const auto s =
        Retour{{"7UL", 1000}, {"7TE", 4000}, {"7TF", 1000}, {"7TG", 2000}, {"7TH", 70}, {"7TI", 60}}.Calcule();
    Attend(s, {{"NP1_FOREST_TRAV_7TF", 0},
               {"NP1_FOREST_TRAV_7TG", 1750},
               {"NP1_FOREST_TRAV_7TH", 70},
               {"NP1_FOREST_TRAV_7TI", 60}});
}

TEST(Reductions, CompensatoryPayment) {
    struct Cas {
        std::int32_t verse, capital, rente;
        std::int32_t base, reduction, aVerser;
    };
    constexpr Cas cas[] = {
        {8000, 20000, 0, 8000, 2000, 12000},      {20000, 30500, 0, 20000, 5000, 10500},
        {20000, 30501, 0, 19999, 5000, 10501},  // 20000 x 30500 / 30501 = 19999.3; 10501 / 30501 x 30500 = 10500.7
        {30000, 61000, 0, 15000, 3750, 15500},  // half
        {30000, 61000, 40000, 15000, 3750, 5000}, {12000, 20000, 10000, 12000, 3000, 0},
    };
    for (const Cas& c : cas) {
        const auto r = Retour{{"4BA", 45000}, {"7WN", c.verse}, {"7WO", c.capital}, {"7WM", c.rente}}.Calcule();
        EXPECT_EQ(r.C(2, "U_REDUC_7WN_7WM_7WO"), c.base) << c.capital;
        EXPECT_EQ(r["U_REDUC_7WN_7WM_7WO"], c.reduction) << c.capital;
        EXPECT_EQ(r["NP1_PREST_COMP"], c.aVerser) << c.capital;
    }
}

TEST(Reductions, SmallLinesOfTheHousehold) {
    // 61 x 2 + 153 + 183; (61 + 153) / 2; 915 for one activity; 1525 + 300 + 300 + 150 = 2275, 568.75; twice 25 %.
    const auto r =
        Retour{{"4BA", 200000}, {"Fm", 2},     {"Hm", 1},  {"7EA", 2},    {"7EC", 1},     {"7EF", 1},   {"7EB", 1},
               {"7ED", 1},      {"7FF", 2000}, {"7FG", 1}, {"7GZ", 3000}, {"7CD", 12000}, {"7CE", 8000}}
            .Calcule();
    EXPECT_EQ(r["U_ENFANTS_ACHARGE"], 458);
    EXPECT_EQ(r.C(1, "U_ENFANTS_ACHARGE"), 4);
    EXPECT_EQ(r["U_ENFANTS_ALTERNE"], 107);
    EXPECT_EQ(r.C(1, "U_ENFANTS_ALTERNE"), 2);
    Attend(r, {{"U_FRAIS_COMPTA", 915},
               {"U_RENTE_SURVIE", 569},
               {"U_HEBERGEMENT_V", 2500},
               {"U_HEBERGEMENT_C", 2000},
               {"REDUCTIONS", 458 + 107 + 915 + 569 + 2500 + 2000}});
}

TEST(Reductions, HomeEmployment) {
    struct Cas {
        std::vector<Retour::Valeur> foyer;
        std::int32_t depenses, credit;
    };
    const Cas cas[] = {
        {{}, 8000, 4000},
        {{}, 30000, 6000},                                        // 12000
        {{{"7DQ", 1}}, 30000, 7500},                              // first year: 15000
        {{{"7DG", 1}}, 30000, 10000},                             // invalidity: 20000
        {{{"7DG", 1}, {"7DQ", 1}, {"Fm", 2}}, 30000, 10000},      // whatever else
        {{{"7DL", 1}}, 30000, 6750},                              // + 1500
        {{{"7DL", 5}}, 30000, 7500},                              // at most 15000
        {{{"7DL", 5}, {"7DQ", 1}}, 30000, 9000},                  // at most 18000
        {{{"Fm", 1}, {"Hm", 1}}, 30000, 7125},                    // + 1500 + 750
        {{{"AAF1", 19521231}}, 30000, 6750},                      // 65 in 2017
        {{{"AAF1", 19530101}}, 30000, 6000},                      // 64
        {{{"AAF1", 19400101}, {"AAF2", 19400101}}, 30000, 6750},  // single: one declarant
        {{{"M", 1}, {"AAF1", 19400101}, {"AAF2", 19400101}}, 30000, 7500},
    };
    for (const Cas& c : cas) {
        Retour retour{{"7DB", c.depenses}};
        for (const auto& valeur : c.foyer) retour.Avec({valeur});
        const auto r = retour.Calcule();
        EXPECT_EQ(r["D_ENFANTS_CESU"], c.credit) << c.foyer.size();
        EXPECT_EQ(r["REDUCTIONS"], 0);  // a credit
    }
}

TEST(Reductions, RentalInvestmentsShareTheirGroupsCeiling) {
    // 200000 / 9 = 22222 at 29 %; 100000 of 150000 over 6 years: 16667 at 23 %; nothing is left for the third. The
    // second group starts again: 10000 at 29 %.
    const auto r = Retour{{"4BA", 90000}, {"7QP", 200000}, {"7QO", 150000}, {"7QN", 50000}, {"7QL", 90000}}.Calcule();
    EXPECT_EQ(r.Colonnes("U_REDUC_7QP"), (std::vector{200000, 22222, 29}));
    EXPECT_EQ(r["U_REDUC_7QP"], 6444);  // 6444.38
    EXPECT_EQ(r.Colonnes("U_REDUC_7QO"), (std::vector{150000, 16667, 23}));
    EXPECT_EQ(r["U_REDUC_7QO"], 3833);  // 3833.41
    Attend(r, {{"U_REDUC_7QN", 0},
               {"U_REDUC_7QL", 2900},
               {"NP1_7S23", 9344},
               {"NP8_7S23", 9344},
               {"NP1_7S24", 3833},
               {"NP5_7S24", 3833},
               {"NP1_7S21", 0},
               {"TOT_IMP_RED", 23205 - 6444 - 3833 - 2900}});

    // Furnished letting: 100000 / 9 = 11111 at 11 % = 1222 to 2025; 16667 at 11 % = 1833 to 2024; then 50000 of the
    // 100000 left: 5556 at 11 % = 611 to 2025.
    const auto s = Retour{{"4BA", 90000}, {"7JT", 100000}, {"7OU", 150000}}.Calcule();
    Attend(s, {{"NP1_7S18", 3055}, {"NP7_7S18", 3055}, {"NP8_7S18", 1222}});
    const auto t = Retour{{"4BA", 90000}, {"7JT", 100000}, {"7OU", 150000}, {"7OX", 100000}}.Calcule();
    Attend(t, {{"U_REDUC_7OX", 611}, {"NP8_7S18", 3666}, {"REDUCTIONS", 3666}});

    // 250000 / 9 = 27778 at 25 % = 6944.5; the next line finds 50000 of its 80000: 5556 at 25 %; the last one nothing.
    const auto u = Retour{{"4BA", 90000}, {"7IR", 250000}, {"7IQ", 80000}, {"7IP", 20000}}.Calcule();
    Attend(u, {{"U_REDUC_7IR", 6945}, {"U_REDUC_7IQ", 1389}, {"U_REDUC_7IP", 0}});
}

TEST(Reductions, WhatTheTaxCannotBearIsCarried) {
    // 60000 at 40 % = 24000 on 7793; then 10000 at 40 % on nothing.
    const auto r = Retour{{"4BA", 45000}, {"7NR", 300000}, {"7NS", 50000}, {"7YH", 900},
                          {"7YHA", 800},  {"7YHD", 500},   {"7FIA", 70}}
                       .Calcule();
    EXPECT_EQ(r["U_REDUC_7YH"], 900);  // carried fractions come first: 6893 left
    Attend(r, {{"U_REDUC_7NR", 6893},
               {"U_REDUC_7NS", 0},
               {"NP1_REPORT_7R7", 24000 - 6893 + 4000},
               {"NP1_7S12", 28000},
               {"NP4_7S12", 28000},
               {"NP1_7YH", 800},
               {"NP4_7YH", 500}});
    EXPECT_EQ(r["NP1_7FI"], 70);  // also without an amount of this year
    EXPECT_EQ(r["TOT_IMP_RED"], 0);

    // No tax at all.
    const auto s = Retour{{"7HF", 1000}, {"7GU", 200},  {"7LZ", 300},  {"7ZP", 400},  {"7LF", 50}, {"7IY", 60},
                          {"7OP", 70},   {"7KC", 5000}, {"7KD", 2500}, {"7KE", 1000}, {"7CY", 500}}
                       .Calcule();
    Attend(s, {{"REDUCTIONS", 0},
               {"NP1_REPORT_7R5", 1200},
               {"NP1_REPORT_7LZ", 300},
               {"NP1_7ZP", 400},
               {"NP1_REPORT_7IY", 60},
               {"NP1_REPORT_7R9", 70}});
    EXPECT_EQ(s["NP1_PRESERV_PATRIM_7KD"], 1800);  // within its ceiling
    EXPECT_EQ(s["NP1_PRESERV_PATRIM_7KE"], 1000);
    EXPECT_EQ(s.Colonnes("U_PRESERV_PATRIM_NM3"), (std::vector{5000, 2200, 100}));
    EXPECT_EQ(s.Colonnes("U_CAPITAL_NOUV_7CY"), (std::vector{500, 0, 100}));
    // With enough tax, nothing.
    const auto t = Retour{{"4BA", 45000}, {"7KC", 5000}, {"7KD", 2500}}.Calcule();
    EXPECT_EQ(t["REDUCTIONS"], 2200 + 1800);
    EXPECT_EQ(t["NP1_PRESERV_PATRIM_7KD"], 0);
}

TEST(Reductions, CapitalOfSmallCompanies) {
    // First ceiling 20000: 5000, 8000, 7000 of 10000, nothing. Second: 50000 - 20000 = 30000: 10000, 15000, 5000.
    const auto r = Retour{{"4BA", 200000}, {"7CL", 5000},  {"7CM", 8000},  {"7CN", 10000}, {"7CC", 3000},
                          {"7CR", 10000},  {"7CX", 15000}, {"7CF", 20000}, {"7FY", 8000}}
                       .Calcule();
    Attend(r, {{"U_CAPITAL_NOUV_NM4", 900},
               {"U_CAPITAL_NOUV_NM3", 1440},
               {"U_CAPITAL_NOUV_NM2", 1260},
               {"U_CAPITAL_NOUV_NM1", 0},
               {"U_CAPITAL_NOUV_7CR", 1800},
               {"U_CAPITAL_NOUV_7CX", 2700},
               {"U_CAPITAL_PE_N", 900},
               {"U_CAPITAL_NOUV_7FY", 8000},
               {"REDUCTIONS", 17000},
               // Beyond 10000, the most recent year first: 900; then 900 + 10700; + 1260; + 1800 + 1440; + 900.
               {"NP1_CAPITAL_PE_NOUV_7R10", 0},
               {"NP1_CAPITAL_PE_NOUV_7FY", 1600},
               {"NP1_CAPITAL_PE_NOUV_7EY", 1260},
               {"NP1_CAPITAL_PE_NOUV_7DY", 3240},
               {"NP1_CAPITAL_PE_NOUV_7CY", 900},
               {"NP1_CAPITAL_NOUV_7CM", 0},
               {"NP1_CAPITAL_NOUV_7CN", 3000},
               {"NP1_CAPITAL_NOUV_7CC", 3000},
               {"NP1_CAPITAL_NOUV_N", 6000},
               {"NP1_CAPITAL_PE_7CR", 0},
               {"NP1_CAPITAL_PE_7CF", 15000},
               {"NP1_CAPITAL_PE_N", 15000}});

    // A couple: 100000 at 18 %, of which 10000 this year.
    const auto couple = Retour{{"M", 1}, {"4BA", 200000}, {"7CF", 120000}}.Calcule();
    Attend(couple, {{"U_CAPITAL_PE_N", 18000}, {"NP1_CAPITAL_PE_NOUV_7R10", 8000}, {"NP1_CAPITAL_PE_7CF", 20000}});
}

TEST(Reductions, TouristResidences) {
    // At most the rate of a sixth of the ceiling: 8333 at 25 % = 2083.25, at 20 % = 1666.6.
    Verifie({{"4BA", 45000}}, 7793,
            {{"7XN", 60000, "U_INV_ZRR_XN", 50000, 2083},
             {"7UY", 4000, "U_INV_ZRR_UY", 4000, 1000},
             {"7XV", 50000, "U_INV_ZRR_XV", 50000, 1667}});
    // A couple: 16667 at 25 % = 4166.75.
    Verifie({{"M", 1}, {"4BA", 90000}}, 15587, {{"7UY", 60000, "U_INV_ZRR_UY", 60000, 4167}});
    EXPECT_EQ((Retour{{"7UYA", 30}, {"7UZA", 40}}.Calcule()["NP1_7UZ"]), 40);
}

TEST(Reductions, RestoredBuildings) {
    // 60000, then 40000 of 50000, then nothing of the ceiling of 100000; 300000, then 100000 of 200000 of the other.
    // 70154 - 18000 - 12000 = 40154 of the 90000; what is left of the second ceiling's reductions is carried.
    const auto r =
        Retour{{"4BA", 200000}, {"7SY", 60000}, {"7NX", 50000}, {"7SX", 1000}, {"7TX", 300000}, {"7TY", 200000}}
            .Calcule();
    EXPECT_EQ(r["U_REDUC_7SY"], 18000);
    EXPECT_EQ(r.Colonnes("U_REDUC_7NX"), (std::vector{50000, 40000, 30}));
    EXPECT_EQ(r.Colonnes("U_REDUC_7SX"), (std::vector{1000, 0, 22}));
    EXPECT_EQ(r["U_REDUC_7TX"], 40154);
    EXPECT_EQ(r.Colonnes("U_REDUC_7TY"), (std::vector{200000, 100000, 22}));
    EXPECT_EQ(r["NP1_REPORT_7R11"], 90000 - 40154 + 22000);
    EXPECT_EQ(r["TOT_IMP_RED"], 0);
}

TEST(Reductions, CeilingUnderTheRatesOfTheFollowingYear) {
    // 536 instead of 531: 136 at 75 %.
    EXPECT_EQ((Retour{{"4BA", 45000}, {"7UD", 400}, {"7VA", 300}}.CalculeOptions()["U_REDUC_7VA"]), 102);
}

}  // namespace
