#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "tools/Retour.h"

namespace {

// The example returns, computed by hand.
TEST(Exemples, PartsTaxableIncomeAndGrossTax) {
    const struct {
        const char* fichier;
        std::int32_t parts, imposable, impot, tauxMarginal;
    } cas[] = {
        // 28000 - 2800 = 25200; x 14 % = 3528 - 1372.98.
        {"celibataire.json", 100, 25200, 2155, 1400},
        // 42000 - 4200 + 31000 - 3100 = 65700. 3 parts: 9198 - 4118.94 = 5079. 2 parts: 19710 - 11413.48 = 8297,
        // less 2 x 1527 = 5243, which is more.
        {"couple-deux-enfants.json", 300, 65700, 5243, 3000},
        // Parts 200 + 2 x 50 for the children in full charge, the third one alternating: 25 + 25.
        // 60000 - 6000 + 45000 - 4500 = 94500. 3.5 parts: 13230 - 4805.43 = 8425. 2 parts: 28350 - 11413.48 = 16937,
        // less 3 x 1527 = 4581.
        {"couple-residence-alternee.json", 350, 94500, 12356, 3000},
        // Salaries 48000 - 7200 of actual expenses (10 % is 4800) + 26000 - 2600 = 64200. Charges: 6500 cut to 5795,
        // 1800. 2.5 parts: 7924.70 - 3432.45 = 4492. 2 parts: 16981.50 - 11413.48 = 5568, less 1527 = 4041, which is
        // less.
        {"couple-pensions-versees-frais-reels.json", 250, 56605, 4492, 1400},
        // 52000 - 5200 + 38000 - 3800 + 6000 - 600 = 86400. A married child attached: 2 x 5795 = 11590, no part.
        // 22443 - 11413.48 = 11029.52.
        {"couple-enfant-marie-rattache.json", 200, 74810, 11030, 3000},
        // 250000 - 12305 + 90000 - 9000 = 318695; 159347.50 for a part: 143412.75 - 39691.86 = 103720.89.
        {"couple-hauts-salaires.json", 200, 318695, 103721, 4500},
        // Parts 100 + 2 x 50 + 50. 45000 - 4500 = 40500. 2.5 parts: 5670 - 3432.45 = 2238. 1 part: 12150 - 5706.74 =
        // 6443, less 3602 + 1527 = 5129, is less.
        {"parent-isole.json", 250, 40500, 2238, 1400},
        // Parts 100 + 50 + 100. 62000 - 6200 = 55800. 2.5 parts: 7812 - 3432.45 = 4380. 1 part: 16740 - 5706.74 =
        // 11033, less 3 x 1527 = 6452, less 1701 of the 2072 down to 4380.
        {"veuve-un-enfant.json", 250, 55800, 4751, 3000},
        // Pensions 14000 - 1400 + 11000 - 1100 = 22500, at most 24000: 1188 for each, aged 69 and 67.
        // 20124: 2817.36 - 2745.96 = 71.40.
        {"retraites-plus-de-65-ans.json", 200, 20124, 71, 1400},
        // Pension 18000 - 1800, annuity 30 % of 3000: 17100, less 1188. 1.5 parts for the invalidity:
        // 2227.68 - 2059.47 = 168.21; 1 part less 1527 would be less.
        {"retraitee-invalide-rente-viagere.json", 150, 15912, 168, 1400},
    };
    for (const auto& c : cas) {
        std::ifstream entree(KV_RACINE "/examples/" + std::string(c.fichier), std::ios::binary);
        const std::string texte(std::istreambuf_iterator<char>(entree), {});
        kv::Return retour = outil::LisRetour(texte, c.fichier);
        retour.compute();
        EXPECT_EQ(retour["F_NB_PARTS_ALL"], c.parts) << c.fichier;
        EXPECT_EQ(retour["TOT_R_IMPOS"], c.imposable) << c.fichier;
        EXPECT_EQ(retour["TOT_IMPOT"], c.impot) << c.fichier;
        EXPECT_EQ(retour["TAUX_MARGINAL_3"], c.tauxMarginal) << c.fichier;
    }
}

}  // namespace
