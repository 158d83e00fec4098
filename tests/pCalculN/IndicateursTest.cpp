#include "Calcul/pCalculN/Pilote.h"
#include "tests/Hote.h"

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
    const auto data = std::make_unique<CDataCalcul>();
    for (std::size_t i = 0; i < n; ++i) data->Entree[montants[i]] = 1000 + static_cast<std::int32_t>(i);
    for (std::size_t i = sansBase; i < n; ++i) data->Entree[bases[i - sansBase]] = 2000 + static_cast<std::int32_t>(i);
    const Donnees saisie(*data);
    ASSERT_TRUE(kv::Lance(*data, nullptr, true, -1.0));
    EXPECT_TRUE(Donnees(*data) == saisie);
    for (std::size_t i = 0; i < n; ++i) {
        EXPECT_EQ(data->Sortie[sorties[i]], data->Entree[montants[i]]) << i;
        EXPECT_EQ(data->Colonne[1][sorties[i]], i < sansBase ? 0 : data->Entree[bases[i - sansBase]]) << i;
        EXPECT_EQ(data->Colonne[2][sorties[i]], i < sansBase ? 0 : taux[i - sansBase]) << i;
    }
    EXPECT_EQ(data->Sortie["SEPAR_ISF"] + data->Sortie["SAUT_PAGE_ISF"], 2);
    Attend("HI=2000000", "ISF_PATRIMOINE=2000000 SEPAR_ISF=0 SAUT_PAGE_ISF=0");
}

}  // namespace
