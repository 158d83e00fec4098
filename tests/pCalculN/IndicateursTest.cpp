#include "tests/Foyer.h"

namespace {

TEST(Indicateurs, AverageRate) {
    struct Cas {
        const char* boxes;
        std::int32_t taux;  // hundredths of a percent
    };
    for (const Cas& c : {
             Cas{"1AJ=33333", 1098},                   // 3293 / 30000: 10.977 %
             {"1AJ=33333 6GU=5000", 851},              // 3500 - 1372.98 = 2127 of 25000: 8.508 %
             {"1AJ=33333 2CK=1000", 1098},             // the levy paid in advance is part of the tax
             {"1AJ=33333 8TF=1000", 1098},             // a tax to pay back is not
             {"1AJ=33333 2DH=1000", 1062},             // 3293 - 75 credited + 75 levied, of 31000
             {"1AJ=33333 2TR=10000 2BH=10000", 1555},  // 11847 - 5706.74 = 6140 of 40000 - 510
             {"1AJ=33333 2CK=4000", 0},                // nothing to pay
             {"1AJ=20000 2CK=653", 0},                 // 11 are not collected
             {"REM 1AJ=33333", 0},
             {"RED 1AJ=33333", 0},
         })
        EXPECT_EQ(Foyer(c.boxes).Calcule()["TAUX_IMPOS_MOY"], c.taux) << c.boxes;
    EXPECT_EQ(Foyer("1AJ=33333").Calcule().Detail("TAUX_IMPOS_MOY"), "10.98%");
    // Forced options count the income at the flat rate: 23205 + 2560 of 110000; without them it is left out.
    CDataCalcul force;
    force.CopieValeurs(Foyer("PFU 1AJ=100000 2TR=20000").Data());
    ASSERT_TRUE(kv::Lance(force, nullptr, true, -1.0, true, false));
    EXPECT_EQ(force.Sortie["TAUX_IMPOS_MOY"], 2342);
    EXPECT_EQ(Foyer("PFU 1AJ=100000 2TR=20000").CalculeOptions()["TAUX_IMPOS_MOY"], 2863);
}

// Box 6GH is income taxed as it is declared: the household's taxable income, to the euro.
Resultat AvecRevenu(const std::string& foyer, std::int32_t revenu) {
    return Foyer(foyer + " 6GH=" + std::to_string(revenu)).Calcule();
}

TEST(Indicateurs, MarginByHand) {
    struct Cas {
        const char* foyer;
        std::int32_t revenu, taux, auTaux, marge;
    };
    for (const Cas& c : {
             Cas{"", 9000, 0, 9000, 807},
             {"", 20000, 1400, 20000 - 9807, 27086 - 20000},
             {"", 30000, 3000, 2914, 42617},
             {"", 100000, 4100, 100000 - 72617, 53783},
             {"", 200000, 4500, 200000 - 153783, 0},
             {"M", 47000, 1400, 47000 - 19614, 7172},
             {"M", 60000, 3000, 60000 - 54172, 85234},
             // Two children: the tax of three parts at 14 % meets the capped one of two at 30 % where 0.16 of the
             // income is 11413.48 + 3054 + 0.3 - 4118.94: at 64680.25.
             {"M Fm=2", 60000, 1400, 60000 - 29421, 4680},
             {"M Fm=2", 70000, 3000, 5320, 145234 - 70000},
             // A single parent: 5706.74 + 3602 + 0.3 - 2745.96 = 6563.08: at 41019.25.
             {"C T Fm=1", 40000, 1400, 40000 - 19614, 1019},
             {"C T Fm=1", 50000, 3000, 8981, 72617 - 50000},
             // Disabled, 3.5 parts: 11413.48 + 4581 + 1523 + 0.3 - 4805.43: at 79452.19. A widowed parent, 2.5 parts:
             // 5706.74 + 4581 + 1701 + 0.3 - 3432.45: at 53478.69.
             {"M P Fm=2", 90000, 3000, 10548, 145234 - 90000},
             {"V Fm=1", 60000, 3000, 6521, 72617 - 60000},
         }) {
        const auto r = AvecRevenu(c.foyer, c.revenu);
        Attend(r, {{"TAUX_MARGINAL_2", c.taux}, {"IMPOS_TAUX_MARGINAL", c.auTaux}, {"IMPOS_TRANCHE_SUP", c.marge}},
               c.foyer + std::string(" ") + std::to_string(c.revenu));
        EXPECT_EQ(r.Detail("IMPOS_TAUX_MARGINAL"), std::to_string(c.auTaux));
        EXPECT_EQ(r.Detail("IMPOS_TRANCHE_SUP"), std::to_string(c.marge));
    }
    // Nothing is said of tax that does not come from the scale alone.
    for (const char* foyer : {"REM", "RED", "1AC=5000"})
        Attend(AvecRevenu(foyer, 30000), {{"IMPOS_TAUX_MARGINAL", 0}, {"IMPOS_TRANCHE_SUP", 0}}, foyer);
    Retour etranger = Foyer("6GH=30000");
    etranger.TI("1AW", 4000);
    Attend(etranger.Calcule(), {{"IMPOS_TAUX_MARGINAL", 0}, {"IMPOS_TRANCHE_SUP", 0}});
}

// What the two figures mean: the marginal rate stays within the margin and rises beyond it, stays down to the income at
// the marginal rate and falls below it. Where the cap on the family quotient moves the limit, two taxes cross whose
// rates differ by 0.11 or more: their roundings move the crossing by up to 1 / 0.11 euros, and the figures lie up to
// 0.41 / 0.11 beyond it.
TEST(Indicateurs, TheMarginalRateChangesAtTheMargins) {
    struct Cas {
        const char* foyer;
        std::vector<std::int32_t> revenus;
        std::int32_t tolerance;
    };
    for (const Cas& c : {
             Cas{"", {5000, 15000, 27086, 27087, 60000, 90000, 153783, 250000}, 1},
             {"M", {30000, 54172, 90000, 200000, 350000}, 1},
             {"M Fm=2", {35000, 50000, 60000, 64000, 65000, 70000, 140000, 150000, 300000}, 14},
             {"M Fm=1", {40000, 58000, 62000, 80000, 148000}, 14},
             {"C T Fm=1", {30000, 40000, 43000, 60000, 80000}, 14},
         }) {
        for (const std::int32_t revenu : c.revenus) {
            const auto r = AvecRevenu(c.foyer, revenu);
            const std::string quoi = c.foyer + std::string(" ") + std::to_string(revenu);
            const std::int32_t taux = r["TAUX_MARGINAL_2"], marge = r["IMPOS_TRANCHE_SUP"],
                               auTaux = r["IMPOS_TAUX_MARGINAL"];
            const auto tauxA = [&](std::int32_t ecart) {
                return AvecRevenu(c.foyer, revenu + ecart)["TAUX_MARGINAL_2"];
            };
            if (taux < 4500) {
                EXPECT_EQ(tauxA(std::max(marge - c.tolerance, 0)), taux) << quoi;
                EXPECT_GT(tauxA(marge + c.tolerance), taux) << quoi;
            } else {
                EXPECT_EQ(marge, 0) << quoi;
            }
            if (taux > 0) {
                EXPECT_EQ(tauxA(-std::max(auTaux - c.tolerance, 0)), taux) << quoi;
                EXPECT_LT(tauxA(-auTaux - c.tolerance), taux) << quoi;
            } else {
                EXPECT_EQ(auTaux, revenu) << quoi;
            }
        }
    }
}

// Deficits of earlier years come off the income, and the oldest one lapses; the year's own joins them.
TEST(Indicateurs, GlobalDeficit) {
    struct Cas {
        const char* boxes;
        std::int32_t anterieurs, annee, impute, perdu, reporte;
    };
    for (const Cas& c : {
             Cas{"", 0, 0, 0, 0, 0},
             {"6GH=5000", 0, 0, 0, 0, 0},
             {"6FA=1000 6GH=400", 1000, 0, 400, 600, 0},
             {"6FA=1000 6GH=1500", 1000, 0, 1000, 0, 0},
             {"6FA=1000 6FB=700 6GH=1500", 1700, 0, 1500, 0, 200},
             {"6FA=300 6FB=700 6FC=50 6FD=60 6FE=70 6FL=80 6GH=100", 1260, 0, 100, 200, 960},
             {"6FL=1000 6GH=400", 1000, 0, 400, 0, 600},
             {"4BC=3000 6GH=1000", 0, 2000, 0, 0, 2000},
             {"4BC=3000 6GH=1000 6FB=500", 500, 2000, 0, 0, 2500},
             {"4BC=3000 6GH=1000 6FA=500 6FL=100", 600, 2000, 0, 500, 2100},
         }) {
        Attend(Foyer(c.boxes).Calcule(),
               {{"NP1_GLOBAL_ANT", c.anterieurs},
                {"NP1_GLOBAL_ANN", c.annee},
                {"NP1_GLOBAL_IMP", c.impute},
                {"NP1_GLOBAL_PER", c.perdu},
                {"NP1_GLOBAL", c.reporte},
                {"SEPAR_REPORTS", 0}},
               c.boxes);
    }
}

// The host supplies the figures: amounts alone, then amounts with a base and a rate.
TEST(Indicateurs, WealthTax) {
    static constexpr CaseSortie sorties[] = {
        "ISF_PATRIMOINE",    "ISF_IMPOTSOLIDFORTUNE", "ISF_AVANT_REDUC", "ISF_DECOTE",
        "ISF_REDUC",         "ISF_AVANT_PLAF",        "ISF_PLAF",        "ISF_APRES_PLAF",
        "ISF_PAYE_ETRANGER", "ISF_A_PAYER",           "ISF_TRANCHE_1",   "ISF_TRANCHE_2",
        "ISF_TRANCHE_3",     "ISF_TRANCHE_4",         "ISF_TRANCHE_5",   "ISF_TRANCHE_6",
        "ISF_PME_DIRECT",    "ISF_PME_STE",           "ISF_PME_FIP",     "ISF_PME_FCPI",
        "ISF_DONS_FRANCE",   "ISF_DONS_ETRANGER"};
    static constexpr CaseEntree montants[] = {"HI",   "ST",   "LM",   "DECOT", "REDUC", "NP",  "PV", "QR",
                                              "RS",   "ST",   "M1",   "M2",    "M3",    "M4",  "M5", "M6",
                                              "CRNE", "CRNF", "CRMX", "CRNA",  "CRNC",  "CRNG"};
    static constexpr CaseEntree bases[] = {"T1", "T2", "T3", "T4", "T5", "T6", "NE", "NF", "MX", "NA", "NC", "NG"};
    static constexpr std::int32_t taux[] = {0, 50, 70, 100, 125, 150, 50, 50, 50, 50, 75, 75};
    constexpr std::size_t n = std::size(sorties), sansBase = n - std::size(bases);
    static_assert(std::size(montants) == n && std::size(taux) == std::size(bases));
    Retour retour;
    for (std::size_t i = 0; i < n; ++i) retour.Avec({{montants[i], 1000 + static_cast<std::int32_t>(i)}});
    for (std::size_t i = sansBase; i < n; ++i)
        retour.Avec({{bases[i - sansBase], 2000 + static_cast<std::int32_t>(i)}});
    const Donnees saisie(retour.Data());
    const auto r = retour.Calcule();
    EXPECT_TRUE(Donnees(r.Data()) == saisie);
    for (std::size_t i = 0; i < n; ++i) {
        EXPECT_EQ(r[sorties[i]], r.E(montants[i])) << i;
        EXPECT_EQ(r.C(2, sorties[i]), i < sansBase ? 0 : r.E(bases[i - sansBase])) << i;
        EXPECT_EQ(r.C(3, sorties[i]), i < sansBase ? 0 : taux[i - sansBase]) << i;
    }
    Attend(r, {{"SEPAR_ISF", 1}, {"SAUT_PAGE_ISF", 1}});
    Attend(Foyer("HI=2000000").Calcule(), {{"ISF_PATRIMOINE", 2000000}, {"SEPAR_ISF", 0}, {"SAUT_PAGE_ISF", 0}});
}

}  // namespace
