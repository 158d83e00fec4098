#include <limits>

#include "tests/Hasard.h"
#include "tests/Notation.h"

namespace {

TEST(Niches, TheExcessIsPartOfTheAdvantage) {
    Hasard hasard(2013);
    int avecExces = 0;
    for (int essai = 0; essai < 60; ++essai) {
        kv::Return r;
        r.set("M", essai % 2).set("Fm", hasard.Entre(0, 3)).set("1AJ", hasard.Entre(0, 200000));
        r.set("4BA", hasard.Entre(0, 30000)).set("2TR", hasard.Entre(0, 5000));
        hasard.Depenses(r, 12);
        r.compute();
        std::int32_t avantage = 0;
        for (const char* groupe : {"N", "N_S", "NM1", "NM2", "NM3", "NM4"})
            avantage += r[std::string("NICHE_AVANTAGE_") + groupe];
        EXPECT_GE(r["NICHE_FISCALE"], 0) << essai;
        EXPECT_LE(r["NICHE_FISCALE"], std::max(avantage, 0)) << essai;
        EXPECT_LE(avantage, std::max(r["NICHE_B"] - r["NICHE_A"], 0)) << essai;
        avecExces += r["NICHE_FISCALE"] > 0;
    }
    EXPECT_GT(avecExces, 5);  // the property says something
}

TEST(Niches, DeductionsNeverRaiseTheTaxableIncome) {
    Hasard hasard(156);
    for (int essai = 0; essai < 12; ++essai) {
        const std::int32_t salaire = hasard.Entre(5000, 95000), fraisMin = std::max(salaire / 10 + 1, 430);
        kv::Return r = Foyer("M Nm AAF1=19400101 6GI=3000 6RS=2000 6PSC=1500").set("1AJ", salaire);
        for (const std::string deduction : {"6DE", "6GU", "6DD", "1AK"}) {
            r.set("1BS", hasard.Entre(0, 20000)).set("4BA", hasard.Entre(0, 9000)).set("1TT", hasard.Entre(0, 3000));
            std::int32_t avant = std::numeric_limits<std::int32_t>::max();
            for (std::int32_t d = deduction == "1AK" ? fraisMin : 0; d < 60000; d += hasard.Entre(1, 15000)) {
                r.set(deduction, d).compute();
                EXPECT_LE(r["TOT_R_IMPOS"], avant) << deduction << ": " << d;
                avant = r["TOT_R_IMPOS"];
            }
            r.set(deduction, 0);
        }
    }
}

}  // namespace
