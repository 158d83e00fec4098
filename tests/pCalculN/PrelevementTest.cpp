#include "tests/Hasard.h"
#include "tests/Notation.h"

namespace {

// What the two rates take from the declarants, and the household's rate from the rest, is the household's tax: only the
// rounding of the second rate to a tenth of a percent, and that of the rest to the euro, stand between them.
TEST(Prelevement, IndividualRatesShareTheHouseholdTax) {
    Hasard hasard(7);
    for (int essai = 0; essai < 40; ++essai) {
        const std::int32_t s1 = hasard.Entre(12000, 90000), s2 = hasard.Entre(12000, 90000);
        const std::int32_t foncier = essai % 2 ? hasard.Entre(0, 20000) : 0, enfants = essai % 4;
        const auto r = Foyer("M").set("Fm", enfants).set("1AJ", s1).set("1BJ", s2).set("4BA", foncier).compute();
        const double impot = r["TOT_IMPOT_DOM"] - r["U_DECOTE"] - r["U_CLASSES_MOYENNES"];
        const double preleve =
            s1 * r["TAUX_PAS_IND1"] / 1000.0 + s2 * r["TAUX_PAS_IND2"] / 1000.0 + foncier * r["TAUX_PAS"] / 1000.0;
        EXPECT_NEAR(preleve, impot, 0.0005 * std::max(s1, s2) + 0.51) << s1 << " " << s2 << " " << foncier;
    }
}

// Instalments of activities: brought to twelve months, nothing once the activity has ceased.
TEST(Prelevement, InstalmentsOfActivities) {
    struct Activite {
        const char *benefice[3], *mois[3], *cesse[3];
    };
    static constexpr Activite activites[] = {
        {{"5HC", "5IC", "5JC"}, {"5AD", "5BD", "5ED"}, {"5AF", "5AI", "5AH"}},
        {{"5KC", "5LC", "5MC"}, {"5DB", "5EB", "5FB"}, {"5BF", "5BI", "5BH"}},
        {{"5NA", "5OA", "5PA"}, {"5CD", "5DD", "5FD"}, {"5CF", "5CI", "5CM"}},
        {{"5NC", "5OC", "5PC"}, {"5UP", "5VP", "5TP"}, {"5AN", "5BN", "5CN"}},
        {{"5QC", "5RC", "5SC"}, {"5XI", "5YI", "5ZI"}, {"5AO", "5BO", "5CQ"}},
        {{"5JG", "5RF", "5SF"}, {"5XR", "5YR", "5ZR"}, {"5AP", "5BP", "5CR"}},
    };
    for (const Activite& a : activites)
        for (std::size_t k = 0; k < 3; ++k) {
            const auto assiette = [&](std::int32_t mois, std::int32_t cesse) {
                kv::Return r;
                r.set(a.benefice[k], 20005).set(a.mois[k], mois).set(a.cesse[k], cesse);
                return r.compute()["ASSIETTE_A_IR"];
            };
            EXPECT_EQ(assiette(0, 0), 20005) << a.benefice[k];
            EXPECT_EQ(assiette(12, 0), 20005) << a.benefice[k];
            EXPECT_EQ(assiette(11, 0), 21824) << a.benefice[k];  // 21823.6
            EXPECT_EQ(assiette(6, 1), 0) << a.benefice[k];
        }
}

// Exceptional income pays no instalment, and its tax is not given back: alone, it leaves both at nothing.
TEST(Prelevement, ExceptionalIncomeIsInNoBase) {
    for (std::int32_t box = 0; box < kv::count(KV_ENTRY); ++box) {
        if (kv::describe(KV_ENTRY, box).quotient < 0) continue;
        for (const std::int32_t coefficient : {1, 4}) {
            kv::Return r = Foyer("M CIMR launch=options");
            r.set_exceptional(box, coefficient, 90000).compute();
            EXPECT_EQ(r["ASSIETTE_A_IR"], 0) << kv::describe(KV_ENTRY, box).name;
            EXPECT_EQ(r["D_CREDIT_CIMR_IR"], 0) << kv::describe(KV_ENTRY, box).name;
        }
    }
}

}  // namespace
