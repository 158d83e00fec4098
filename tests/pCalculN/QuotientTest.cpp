#include "tests/Figures.h"
#include "tests/Notation.h"

namespace {

// What an exceptional income changes, whatever the box it is entered for.
TEST(Quotient, EveryBox) {
    const kv::Return menage = Foyer(
        "M Fm 1AJ=30000 1BJ=20000 1CJ=9000 1AS=8000 1BO=5000 2DC=3000 2TS=200 2TR=700 2CA=90 4BA=5000 5HC=4000 5II=900 "
        "5NK=600 5SC=2500 5SN=300 6DE=800");
    const auto neutre = kv::Return(menage).compute();
    int boites = 0;
    for (std::int32_t box = 0; box < kv::count(KV_ENTRY); ++box) {
        const kv_box fiche = kv::describe(KV_ENTRY, box);
        if (fiche.quotient < 0) continue;
        ++boites;
        SCOPED_TRACE(fiche.name);
        const auto quotient = [&](std::int32_t coefficient, std::int32_t montant) {
            return kv::Return(menage).set_exceptional(box, coefficient, montant).compute();
        };
        EXPECT_EQ(test::Sorties(quotient(4, 0)), test::Sorties(neutre));

        const std::string nom = fiche.name, ou = nom == "AAQ"   ? "1AS"
                                                 : nom == "BAQ" ? "1BS"
                                                 : nom == "RAQ" ? "4BA"
                                                                : nom;
        const auto ordinaire = kv::Return(menage).set(ou, menage.get(ou) + 7000).compute();
        const auto entier = quotient(1, 7000);
        EXPECT_EQ(entier["TOT_R_BRUT"], ordinaire["TOT_R_BRUT"]);
        EXPECT_NEAR(entier["TOT_IMPOT"], ordinaire["TOT_IMPOT"], 2);

        // The scale is progressive: the quotient lowers the tax, to the rounding of each share.
        const auto quart = quotient(4, 7000);
        EXPECT_EQ(quart["TOT_R_IMPOS"] + quart["RQ_REV_EXCEP"], ordinaire["TOT_R_IMPOS"]);
        EXPECT_LE(quart["TOT_IMPOT"], ordinaire["TOT_IMPOT"] + 4);
        EXPECT_GT(quart["TOT_IMPOT"], neutre["TOT_IMPOT"]);
    }
    EXPECT_EQ(boites, 87);
}

}  // namespace
