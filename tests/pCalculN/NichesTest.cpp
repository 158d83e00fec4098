#include <cstring>

#include "tests/Foyer.h"

namespace {

struct Groupe {
    CaseSortie avantage, affiche, plafond;
};
constexpr Groupe groupes[] = {
    {"NICHE_A5", "NICHE_AVANTAGE_N", "NICHE_PLAFOND_N"},     {"NICHE_A5S", "NICHE_AVANTAGE_N_S", "NICHE_PLAFOND_N_S"},
    {"NICHE_A4", "NICHE_AVANTAGE_NM1", "NICHE_PLAFOND_NM1"}, {"NICHE_A3", "NICHE_AVANTAGE_NM2", "NICHE_PLAFOND_NM2"},
    {"NICHE_A2", "NICHE_AVANTAGE_NM3", "NICHE_PLAFOND_NM3"}, {"NICHE_A1", "NICHE_AVANTAGE_NM4", "NICHE_PLAFOND_NM4"},
};

TEST(Niches, NoCountedAdvantage) {
    // Donations, disabled-persons equipment and education of children do not count.
    for (const char* boxes : {"", "1AJ=33333", "1AJ=33333 7UF=1000 7WJ=2000 7EA=1", "M 1AJ=33333 4BA=5000 2TR=900"}) {
        const auto r = Foyer(boxes).Calcule();
        EXPECT_EQ(r["NICHE_A"], r["NICHE_B"]) << boxes;
        EXPECT_EQ(r["NICHE_A"], r["TOT_PAYER"] - r["TOT_REST"]) << boxes;
        EXPECT_EQ(r["NICHE_FISCALE"], 0) << boxes;
        for (const Groupe& g : groupes) Attend(r, {{g.avantage, 0}, {g.affiche, 0}, {g.plafond, 0}}, boxes);
    }
}

// The measure counts more than the counted boxes: the levy on life insurance is credited in the run with the advantages
// alone (2407 of 27000, less 7.5 %), and the last pass over the credits records the 300 of an energy expense once more.
TEST(Niches, WhatTheRunsLeaveBehind) {
    Attend(Foyer("C 1AJ=30000 2DH=1000").Calcule(), {{"NICHE_B", 2407}, {"NICHE_A", 2332}, {"D_LIB", 75}});
    Attend(Foyer("7AL=1000").Calcule(), {{"NICHE_A2013", 600}, {"NICHE_AVANTAGE_N", 300}, {"TOT_REST", 300}});
}

// A salary of 200000 less 12305 is 187695 net: 84462.75 - 19845.93 = 64616.82 of tax. The fractions carried from
// earlier years are reductions at 100 %, one year group each.
TEST(Niches, CeilingsInCascade) {
    constexpr std::int32_t impot = 64617;
    struct Cas {
        const char* boxes;
        std::int32_t avantages[6];  // from the most recent group
        std::int32_t exces;
    };
    for (const Cas& c : {
             Cas{"7FI=10000", {10000}, 0},
             {"7FI=12000", {12000}, 2000},
             // 38 % of 12000, twice, 30 % of 8000, half of 960: 4560 + 4560 + 2400 + 480.
             {"7FL=12000 7FM=12000 7CB=8000 7GA=960", {12000}, 2000},
             {"7FV=19000", {0, 19000}, 1000},
             {"7FI=9000 7FV=12000", {9000, 12000}, 3000},
             {"7FI=12000 7FV=8000", {12000, 8000}, 2000},  // 10000 kept, and 8000
             {"7FI=12000 7FV=9000", {12000, 9000}, 3000},
             {"7MG=30000", {0, 0, 30000}, 4492},                // 18000 + 4 %: 25508
             {"7LZ=30000", {0, 0, 0, 30000}, 738},              // 18000 + 6 %: 29262
             {"7LR=40000", {0, 0, 0, 0, 40000}, 4984},          // 20000 + 8 %: 35016
             {"7IX=50000", {0, 0, 0, 0, 0, 50000}, 6230},       // 25000 + 10 %: 43770
             {"7FI=12000 7MG=20000", {12000, 0, 20000}, 6492},  // 2000, then 30000 - 25508
             // 10000; 10000 + 6000; + 8000; + 4000; + 5000; + 12000: 1000 beyond 10000, 1230 beyond 43770.
             {"7FI=11000 7FV=6000 7MG=8000 7LZ=4000 7LR=5000 7IX=12000", {11000, 6000, 8000, 4000, 5000, 12000}, 2230},
         }) {
        const auto r = Foyer("1AJ=200000 " + std::string(c.boxes)).Calcule();
        constexpr std::int32_t plafonds[] = {10000, 18000, 25508, 29262, 35016, 43770};
        std::int32_t total = 0;
        for (std::size_t g = 0; g < 6; ++g) {
            const std::int32_t avantage = c.avantages[g];
            Attend(r,
                   {{groupes[g].avantage, avantage}, {groupes[g].affiche, avantage}, {groupes[g].plafond, plafonds[g]}},
                   c.boxes);
            total += avantage;
        }
        Attend(r,
               {{"NICHE_B", impot},
                {"NICHE_A", impot - total},
                {"NICHE_FISCALE", c.exces},
                {"TOT_PAYER", impot - total + c.exces}},
               c.boxes);
    }
}

// The advantage is what the household draws, not what the lines record: 3293 of tax cannot lose more.
TEST(Niches, TheAdvantageStopsAtTheTax) {
    Attend(Foyer("1AJ=33333 7FI=12000 7FV=5000").Calcule(), {{"NICHE_B", 3293},
                                                             {"NICHE_A", 0},
                                                             {"NICHE_AVANTAGE_N", 3293},
                                                             {"NICHE_AVANTAGE_N_S", 0},
                                                             {"NICHE_FISCALE", 0}});
    // Refunded credits go beyond: with four children, 30 % of 9600, half of 2300 four times, half of 12000.
    Attend(Foyer("1AJ=33333 Fm=4 C T 7CB=9600 7GA=3000 7GB=3000 7GC=3000 7GD=3000 7DB=12000").Calcule(),
           {{"NICHE_AVANTAGE_N", 2880 + 4600 + 6000}, {"NICHE_FISCALE", 3480}});
}

// The property deduction 4BY counts in the oldest group, for the tax that it saves: 30000 + 10000 bear 6293, with 4000
// more 7493.
TEST(Niches, PropertyDeduction) {
    const auto r = Foyer("1AJ=33333 4BA=10000 4BY=4000").Calcule();
    Attend(r, {{"NICHE_A", 6293},
               {"NICHE_B", 6293},
               {"NICHE_A4BY", 1200},
               {"NICHE_A1", 1200},
               {"NICHE_AVANTAGE_NM4", 1200},
               {"NICHE_PLAFOND_NM4", 29000},
               {"NICHE_AVANTAGE_N", 0},
               {"NICHE_FISCALE", 0},
               {"TOT_PAYER", 6293}});
    Attend(r.Data().Entree, {{"4BY", 4000}, {"4BA", 10000}});
    // 150000 more at 45 % above 187695: 67500 of advantage, within 43770. Each of a couple's runs measures it again.
    Attend(Foyer("1AJ=200000 4BY=150000").Calcule(),
           {{"NICHE_A1", 67500}, {"NICHE_FISCALE", 23730}, {"TOT_PAYER", 88347}});
    const auto couple = Foyer("M 1AJ=22222 1BJ=30000 4BY=10000").Calcule();  // 47000 and 57000, two parts
    Attend(couple, {{"NICHE_A4BY", 5687 - 3834}});  // 17100 - 11413.48 = 5686.52, 6580 - 2745.96 = 3834.04
    EXPECT_EQ(couple.E("4BY"), 10000);
}

TEST(Niches, TheExcessIsPartOfTheAdvantage) {
    std::vector<CaseEntree> avantages;
    for (int i = 0; i < kv::nEntrees; ++i)
        if (const char* nom = kv::entree::lignes[i].nom; nom[0] == '7' && std::strlen(nom) == 3)
            avantages.push_back(CaseEntree::Numero(i));
    ASSERT_GT(avantages.size(), 300u);
    std::mt19937 hasard(2013);
    const auto montant = [&](std::uint32_t max) { return static_cast<std::int32_t>(hasard() % max); };
    int avecExces = 0;
    for (int essai = 0; essai < 60; ++essai) {
        Retour retour{{"M", essai % 2},
                      {"Fm", montant(4)},
                      {"1AJ", montant(200000)},
                      {"4BA", montant(30000)},
                      {"2TR", montant(5000)}};
        for (int k = 0; k < 12; ++k) retour.Avec({{avantages[hasard() % avantages.size()], montant(20000)}});
        const auto r = retour.Calcule();
        std::int32_t avantage = 0;
        for (const Groupe& g : groupes) avantage += r[g.affiche];
        EXPECT_GE(r["NICHE_FISCALE"], 0) << essai;
        EXPECT_LE(r["NICHE_FISCALE"], std::max(avantage, 0)) << essai;
        EXPECT_LE(avantage, std::max(r["NICHE_B"] - r["NICHE_A"], 0)) << essai;
        avecExces += r["NICHE_FISCALE"] > 0;
    }
    EXPECT_GT(avecExces, 5);  // the property says something
}

// A deduction never raises the taxable income.
TEST(Niches, DeductionsNeverRaiseTheTaxableIncome) {
    std::mt19937 hasard(156);
    const auto montant = [&](std::uint32_t max) { return static_cast<std::int32_t>(hasard() % max); };
    for (int essai = 0; essai < 12; ++essai) {
        const std::int32_t salaire = 5000 + montant(90000), fraisMin = std::max(nPourcent(salaire, 10), 430);
        for (const CaseEntree deduction :
             {CaseEntree("6DE"), CaseEntree("6GU"), CaseEntree("6DD"), CaseEntree("1AK")}) {
            std::int32_t avant = std::numeric_limits<std::int32_t>::max();
            const std::int32_t pension = montant(20000), foncier = montant(9000), gains = montant(3000);
            for (std::int32_t d = deduction == "1AK" ? fraisMin : 0; d < 60000; d += 1 + montant(15000)) {
                const auto r = Retour{{"M", 1},         {"Nm", 1},      {"1AJ", salaire},   {"1BS", pension},
                                      {"4BA", foncier}, {"1TT", gains}, {"AAF1", 19400101}, {"6GI", 3000},
                                      {"6RS", 2000},    {"6PSC", 1500}, {deduction, d}}
                                   .Calcule();
                EXPECT_LE(r["TOT_R_IMPOS"], avant) << deduction.numero << ": " << d;
                avant = r["TOT_R_IMPOS"];
            }
        }
    }
}

}  // namespace
