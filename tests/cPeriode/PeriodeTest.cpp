#include "KVCommun/cPeriode/Periode.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>

#include "Calcul/pCalculN/Pilote.h"
#include "tests/Hote.h"

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

// The calendar of the C++ library knows 16-bit years; beyond them a year has 365 days, or 366 when it is a leap year,
// and a date comes back as it was.
TEST(Periode, TheCalendarOfEveryYear) {
    using namespace std::chrono;
    for (sys_days jour = year(-32'000) / January / 1; jour < year(32'000) / January / 1; jour += days(97)) {
        const year_month_day date(jour);
        const auto mois = static_cast<std::int32_t>(unsigned(date.month()));
        const auto quantieme = static_cast<std::int32_t>(unsigned(date.day()));
        ASSERT_EQ(kv::Date(int(date.year()), mois, quantieme), (jour - sys_days(1899y / December / 30)).count());
    }
    for (const std::int32_t annee : {-2147483647 - 1, -400, -1, 0, 1900, 2016, 40'000, 2147483647}) {
        const TPeriode periode(annee);
        const bool bissextile = annee % 4 == 0 && (annee % 100 != 0 || annee % 400 == 0);
        EXPECT_EQ(periode.Fin - periode.Deb, bissextile ? 365 : 364) << annee;
        EXPECT_EQ(periode.Jours(), 360) << annee;
        char texte[32];
        std::snprintf(texte, sizeof texte, "31/12/%04d", annee);
        EXPECT_EQ(kv::VersUtf8(kv::TexteDate(periode.Fin)), texte);
    }
    EXPECT_EQ(Periode({2017, 1, 1}, {2017, 12, 31}).Jours(), 360);
    for (const double absurde : {std::nan(""), 1e300, -1e300, HUGE_VAL}) {  // a host's own: no undefined behaviour
        TPeriode periode(2017);
        periode.Fin = absurde;
        EXPECT_LE(periode.Jours(), 360);
    }
}

TEST(Periode, AYearAndItsDates) {
    const TPeriode periode(2017);
    EXPECT_EQ(periode.Deb, 42736.0);  // days since 30 December 1899
    EXPECT_EQ(periode.Fin, 43100.0);  // 364 days later
    EXPECT_TRUE(periode.Texte.empty());
    EXPECT_EQ(kv::TexteDate(kv::Date(2016, 2, 29)), u"29/02/2016");
    EXPECT_EQ(kv::TexteDate(kv::Date(1899, 12, 29) + 0.5), u"29/12/1899");  // before the origin

    kv::Lance(*Hote("1AJ=1"), nullptr, true, -1.0);
    EXPECT_EQ(TPeriode().Annee, 2017);  // the year of the last launch
}

}  // namespace
