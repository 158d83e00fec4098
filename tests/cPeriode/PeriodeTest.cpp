#include "KVCommun/cPeriode/Periode.h"

#include <gtest/gtest.h>

#include "tests/Retour.h"

namespace {

struct Jour {
    std::int32_t annee, mois, jour;
};

TPeriode Periode(Jour debut, Jour fin) {
    TPeriode periode(2017);
    periode.Deb = kv::Date(debut.annee, debut.mois, debut.jour);
    periode.Fin = kv::Date(fin.annee, fin.mois, fin.jour) + 0.75;  // in the evening
    return periode;
}

TEST(Periode, DaysInMonthsOfThirty) {
    const struct {
        Jour debut, fin;
        std::int32_t jours;
        double coefficient;
    } cas[] = {
        {{2017, 1, 1}, {2017, 12, 31}, 360, 1.0},       // 30 + 330 - 1 + 1
        {{2017, 7, 1}, {2017, 12, 31}, 180, 2.0},       // 30 + 150 - 1 + 1
        {{2017, 2, 1}, {2017, 2, 28}, 28, 360.0 / 28},  // 28 - 1 + 1
        {{2017, 3, 15}, {2017, 3, 31}, 16, 22.5},       // 30 - 15 + 1
        {{2017, 1, 31}, {2017, 1, 31}, 1, 360.0},       // 30 - 30 + 1
        {{2016, 1, 1}, {2017, 12, 31}, 360, 1.0},       // the years are not looked at
        {{2017, 3, 2}, {2017, 3, 1}, 0, 0.0},           // an empty period has no coefficient
    };
    for (const auto& c : cas) {
        const TPeriode periode = Periode(c.debut, c.fin);
        EXPECT_EQ(periode.Jours(), c.jours) << kv::VersUtf8(kv::TexteDate(periode.Deb));
        EXPECT_DOUBLE_EQ(periode.CoefficientAnnuel(), c.coefficient);
        EXPECT_DOUBLE_EQ(periode.Annualise(1000.0), 1000.0 * c.coefficient);
        EXPECT_DOUBLE_EQ(periode.Fraction(), c.jours / 360.0);
    }
}

TEST(Periode, AYearAndItsDates) {
    const TPeriode periode(2017);
    EXPECT_EQ(periode.Deb, 42736.0);  // days since 30 December 1899
    EXPECT_EQ(periode.Fin, 43100.0);  // 364 days later
    EXPECT_TRUE(periode.Texte.empty());
    EXPECT_EQ(kv::TexteDate(kv::Date(2016, 2, 29)), u"29/02/2016");
    EXPECT_EQ(kv::TexteDate(kv::Date(1899, 12, 29) + 0.5), u"29/12/1899");  // before the origin

    Retour{{"1AJ", 1}}.Calcule();
    EXPECT_EQ(TPeriode().Annee, 2017);  // the year of the last launch
}

}  // namespace
