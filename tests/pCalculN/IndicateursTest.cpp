#include "tests/Notation.h"

namespace {

// Box 6GH is income taxed as it is declared: the household's taxable income, to the euro.
kv::Return AvecRevenu(const std::string& foyer, std::int32_t revenu) {
    return Foyer(foyer).set("6GH", revenu).compute();
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

}  // namespace
