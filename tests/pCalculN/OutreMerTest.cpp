#include "Calcul/pCalculN/OutreMerTable.h"
#include "tests/Foyer.h"

// Overseas investments on property income (4BA), which is taxed as declared. A single person pays on it:
//     45000: 7793.26        200000: 200000 x 45 % - 19845.93 = 70154.07
//    600000: 250154.07     1200000: 520154.07

namespace {

TEST(OutreMer, RetrocessionInTheFixedOption) {
    // The investor keeps 35 % within 40000: 35000, then 5000. The operator gets 13/7 of that within 74286: 65000, then
    // 5000 / 7 x 13 = 9285.7, which exhausts it. The second line gives 100000 - 5000 - 9286 back.
    const auto r = Retour{{"4BA", 600000}, {"HQJ", 100000}, {"HQS", 100000}}.Calcule();
    EXPECT_EQ(r["U_DT_HQJ"], 100000);
    EXPECT_EQ(r["U_DT_HQS"], 100000);
    EXPECT_EQ(r.C(1, "U_PR_HQJ_NR"), 35000);
    EXPECT_EQ(r.C(2, "U_PR_HQJ_NR"), 35000);
    EXPECT_EQ(r.C(1, "U_PR_HQS_NR"), 35000);
    EXPECT_EQ(r.C(2, "U_PR_HQS_NR"), 5000);
    EXPECT_EQ(r.C(2, "U_PR_HQJ_R"), 65000);
    EXPECT_EQ(r.C(2, "U_PR_HQS_R"), 9286);
    EXPECT_EQ(r.Detail("U_PR_HQS_R"), "7/13");
    Attend(r, {{"U_PR_HQJ", 0},
               {"U_PR_HQS", 85714},
               {"REDUCTIONS", 114286},
               {"NICHE_A2009", 35000},
               {"NICHE_A2010", 5000},
               {"TOT_IMP_RED", 250154 - 114286}});

    // Rooms of 36000 and 30600 count what the lines before kept; each limit is shared by the lines that have it.
    // HPO: 40000 of 100000, then 60000. HSA (room 36000, of which 40000 are used) and HSK keep nothing: all is back.
    const auto s = Retour{{"4BA", 600000}, {"HPO", 100000}, {"HSA", 20000}, {"HSK", 10000}}.Calcule();
    Attend(s, {{"U_PR_HPO", 0}, {"U_PR_HSA", 20000}, {"U_PR_HSK", 10000}});
    // HSB: 37.5 % of 40000 = 15000, 5/3 of it = 25000. HAB: 37.5 % of 80000 = 30000 within
    // 36000 - 15000 = 21000, 5/3 of it = 35000, which is what is left of 60000.
    const auto t = Retour{{"4BA", 600000}, {"HSB", 40000}, {"HAB", 80000}}.Calcule();
    EXPECT_EQ(t.C(2, "U_PR_HSB_R"), 25000);
    EXPECT_EQ(t.C(2, "U_PR_HAB_NR"), 21000);
    EXPECT_EQ(t.C(2, "U_PR_HAB_R"), 35000);
    EXPECT_EQ(t["U_PR_HAB"], 80000 - 56000);
    // 14003, 14003 and the 11994 left of 40000 are retroceded as 26006, 26006 and 22275, one more than 74286 allows.
    const auto u = Retour{{"4BA", 600000}, {"HQJ", 40009}, {"HQS", 40009}, {"HQW", 40000}}.Calcule();
    EXPECT_EQ(u.C(2, "U_PR_HQW_NR"), 11994);
    EXPECT_EQ(u.C(1, "U_PR_HQW_R"), 22275);
    EXPECT_EQ(u.C(2, "U_PR_HQW_R"), 22274);
    EXPECT_EQ(u["U_PR_HQW"], 40000 - 11994 - 22274);
}

TEST(OutreMer, RetrocessionInTheProportionalOption) {
    // 15 % of 200000 = 30000. HQJ: 17500 kept, 32500 to retrocede within the 12500 left; then nothing for HPN. HQL was
    // imputed first, but finds no room either.
    const auto r = Retour{{"HQA", 1}, {"4BA", 200000}, {"HQL", 5000}, {"HQJ", 50000}, {"HPN", 10000}}.Calcule();
    EXPECT_EQ(r.C(2, "U_PR_HQJ_NR"), 17500);
    EXPECT_EQ(r.C(1, "U_PR_HQJ_R"), 32500);
    EXPECT_EQ(r.C(2, "U_PR_HQJ_R"), 12500);
    EXPECT_EQ(r["U_PR_HQJ"], 20000);
    EXPECT_EQ(r.C(1, "U_PR_HPN_NR"), 5000);
    Attend(r, {{"U_PR_HPN", 10000}, {"U_PR_HQL", 5000}, {"REDUCTIONS", 30000}, {"TOT_IMP_RED", 40154}});

    // Line by line: HQJ takes 3500 + 6500, HQS 7000 + 13000, of the 30000; HQW finds nothing.
    const auto s = Retour{{"HQA", 1}, {"4BA", 200000}, {"HQJ", 10000}, {"HQS", 20000}, {"HQW", 1000}}.Calcule();
    EXPECT_EQ(s["U_PR_HQJ"] + s["U_PR_HQS"], 0);
    EXPECT_EQ(s["U_PR_HQW"], 1000);

    // Only exceptional income, taxed by the quotient: tax to reduce, but no taxable income to take a room of.
    const auto vide =
        Retour{{"HQA", 1}, {"HQJ", 20000}, {"HQL", 7000}, {"HPR", 3000}}.Quotient("4BA", 4, 400000).Calcule();
    ASSERT_GT(vide["TOT_IMPOT"], 30000);
    Attend(vide, {{"TOT_R_IMPOS", 0},
                  {"U_DT_HQJ", 20000},
                  {"U_PR_HQJ", 20000},
                  {"U_PR_HQL", 7000},
                  {"U_PR_HPR", 3000},
                  {"TOT_IMP_RED", vide["TOT_IMPOT"]}});
}

TEST(OutreMer, HousingLinesShareTheRooms) {
    // 30000 of 40000; 6000 of 10000 (36000); nothing (30600); 4000 of 20000 (40000). The last lines have rooms of their
    // own: 200000 of 300000; 70000 of 100000 (270000); nothing (229500).
    const auto r = Retour{{"4BA", 1200000}, {"HQL", 30000},  {"HOI", 10000},  {"HOT", 5000},
                          {"HPP", 20000},   {"HPR", 200000}, {"HRI", 100000}, {"HRO", 5000}}
                       .Calcule();
    Attend(r, {{"U_PR_HQL", 0},
               {"U_PR_HOI", 4000},
               {"U_PR_HOT", 5000},
               {"U_PR_HPP", 16000},
               {"U_PR_HPR", 0},
               {"U_PR_HRI", 30000},
               {"U_PR_HRO", 5000}});
    EXPECT_EQ(r["REDUCTIONS"], 370000 - 60000);
    EXPECT_EQ(r["TOT_IMP_RED"], 520154 - 310000);

    // With the proportional option they share the same rooms: 15 % of 200000 = 30000.
    const auto s = Retour{{"HQA", 1}, {"4BA", 200000}, {"HQL", 20000}, {"HPR", 20000}}.Calcule();
    EXPECT_EQ(s["U_PR_HPR"], 10000);

    // What an investor keeps of a business investment takes room first: 40000 - 35000.
    const auto t = Retour{{"4BA", 600000}, {"HQL", 30000}, {"HQJ", 100000}}.Calcule();
    EXPECT_EQ(t["U_PR_HQL"], 25000);
    EXPECT_EQ(t["REDUCTIONS"], 105000);
}

TEST(OutreMer, WithoutTaxTheWholeBaseIsCarriedOrRefunded) {
    Retour retour;
    std::int32_t montant = 1000;
    for (const auto& ligne : kv::outremer::lignesReportees) retour.Data().Entree[ligne.entree] = ++montant;
    const auto r = retour.Calcule();
    montant = 1000;
    std::size_t recues = 0;
    for (const auto& ligne : kv::outremer::lignesReportees) {
        ++montant;
        EXPECT_EQ(r[ligne.sortie], 0);
        EXPECT_EQ(r.C(1, ligne.sortie), montant);
        if (!ligne.suite) continue;
        ++recues;
        EXPECT_EQ(r[ligne.suite], montant) << kv::sortie::noms[ligne.suite.numero];
    }
    EXPECT_EQ(recues, 149u - 45);  // 45 lines lose what the tax can't take, or are refunded within a ceiling
    EXPECT_EQ(r["REDUCTIONS"], 0);
}

TEST(OutreMer, RefundableLines) {
    // 229500 at most, less the 7793 that the tax took.
    const auto r = Retour{{"4BA", 45000}, {"HBM", 300000}}.Calcule();
    Attend(r, {{"U_DT_HBM", 7793}, {"CRE_DT_HBM", 221707}, {"U_PR_HBM", 0}});
    // The first line takes the tax; both are refunded the rest, only the second within a ceiling.
    const auto s = Retour{{"4BA", 45000}, {"HSE", 300000}, {"HDW", 229501}}.Calcule();
    EXPECT_EQ(s["CRE_DT_HSE"], 300000 - 7793);
    EXPECT_EQ(s["CRE_DT_HDW"], 229500);
}

TEST(OutreMer, SharesGivenBackLeaveTaxForLinesImputedBefore) {
    // 15 % of 45000 = 6750. HQL takes the whole tax of 7793 before anything else, then gives 1043 back.
    struct Cas {
        const char* pourquoi;
        std::int32_t hqa, hql, don, hpm;
        std::int32_t imputeDon, imputeHpm, rendu;
    };
    constexpr Cas cas[] = {
        {"the donation (66 % of 3000) finds the 1043", 1, 20000, 3000, 0, 1043, 0, 1043},
        {"donation 660, the rest to the line outside the cap", 1, 20000, 1000, 500, 660, 383, 1043},
        {"793 found at first, 250 given back", 1, 7000, 3000, 0, 1043, 0, 250},
        {"within the fixed rooms nothing is given back", 0, 20000, 3000, 500, 0, 0, 0},
    };
    for (const Cas& c : cas) {
        const auto r = Retour{{"4BA", 45000}, {"HQA", c.hqa}, {"HQL", c.hql}, {"7UF", c.don}, {"HPM", c.hpm}}.Calcule();
        EXPECT_EQ(r["U_PR_HQL"], c.rendu) << c.pourquoi;
        EXPECT_EQ(r["U_DONS_OEUVRES_N"], c.imputeDon) << c.pourquoi;
        EXPECT_EQ(r["U_DT_HPM"], c.imputeHpm) << c.pourquoi;
        EXPECT_EQ(r["TOT_IMP_RED"], 0) << c.pourquoi;
        EXPECT_EQ(r["REDUCTIONS"], 7793) << c.pourquoi;
    }

    // Nothing is counted twice: 660 to the donation, the remaining 383 to the forest works, whose ceiling is whole
    // again; the yearly amount of 7NR and what is carried of it stand once.
    const auto r =
        Retour{{"4BA", 45000}, {"HQA", 1}, {"HQL", 20000}, {"7UF", 1000}, {"7NR", 50000}, {"7TE", 4000}, {"7TF", 4000}}
            .Calcule();
    EXPECT_EQ(r["U_DONS_OEUVRES_N"], 660);
    EXPECT_EQ(r["U_FOREST_TRAV_NM5_8ans"], 383);
    EXPECT_EQ(r.C(2, "U_FOREST_TRAV_NM5_8ans"), 4000);
    EXPECT_EQ(r.C(2, "U_FOREST_TRAV_NM4_8ans"), 2250);
    Attend(r, {{"NP1_7S12", 4000}, {"NP1_REPORT_7R7", 4000}, {"TOT_IMP_RED", 0}, {"NICHE_A2009", 6750 + 383}});

    // The works find 793 at first, then all of their 1000: the year group counts them once.
    const auto t = Retour{{"4BA", 45000}, {"HQA", 1}, {"HQL", 7000}, {"7TE", 4000}}.Calcule();
    Attend(t, {{"U_FOREST_TRAV_NM5_8ans", 1000}, {"NICHE_A2009", 6750 + 1000}, {"TOT_IMP_RED", 43}});

    // 15 % of 200000 = 30000: HQJ keeps that of its 60000. HPM, imputed after it, had found 10154; with the 30000 given
    // back it takes 40154.
    const auto s = Retour{{"4BA", 200000}, {"HQA", 1}, {"HQJ", 60000}, {"HPM", 60000}}.Calcule();
    EXPECT_EQ(s["U_DT_HPM"], 40154);
    EXPECT_EQ(s["TOT_IMP_RED"], 0);
}

}  // namespace
