#include "support/KVTarvel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "support/Tarvel.h"

namespace {

constexpr std::int32_t nPlusGrand = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t nPlusPetit = std::numeric_limits<std::int32_t>::min();

TEST(KVTarvel, HalvesGoAwayFromZeroAndConversionsSaturate) {
    const struct {
        double x;
        std::int32_t arrondi, tronque, plancher;
    } cas[] = {{0.5, 1, 0, 0},
               {-0.5, -1, 0, -1},
               {2.5, 3, 2, 2},
               {-2.5, -3, -2, -3},
               {0.49999999999999994, 0, 0, 0},  // adding a half first would give 1
               {2147483646.5, nPlusGrand, 2147483646, 2147483646},
               {-2147483647.5, nPlusPetit, -2147483647, nPlusPetit},
               {1e300, nPlusGrand, nPlusGrand, nPlusGrand},
               {-HUGE_VAL, nPlusPetit, nPlusPetit, nPlusPetit},
               {std::nan(""), 0, 0, 0}};
    for (const auto& c : cas) {
        EXPECT_EQ(nArrondi(c.x), c.arrondi) << c.x;
        EXPECT_EQ(nTronque(c.x), c.tronque) << c.x;
        EXPECT_EQ(nPlancher(c.x), c.plancher) << c.x;
    }
    EXPECT_EQ(dArrondi(-1.5), -2.0);
    EXPECT_EQ(dArrond(1.5), 2.0);
    EXPECT_EQ(dArrondn(0.125, 2), 0.13);  // an eighth and its hundredfold are exact
    EXPECT_EQ(dArrondn(-0.125, 2), -0.13);
}

TEST(KVTarvel, PercentagesBoundsAndEmptyDivisors) {
    EXPECT_EQ(nPourcent(5, 10), 1);  // 0.5
    EXPECT_EQ(nPourcent(-5, 10), -1);
    EXPECT_EQ(nPourcent(1000, 22.5), 225);
    EXPECT_EQ(nPourcent(nPlusGrand, 100), nPlusGrand);  // the product does not wrap
    EXPECT_EQ(nPourcent(nPlusGrand, 125), nPlusGrand);
    EXPECT_EQ(dPourcent(5, 10.0), 0.5);
    EXPECT_EQ(dDiv(1.0, -0.0), 0.0);
    EXPECT_EQ(nDiv(7, 0), 0);
    EXPECT_EQ(nDiv(-7, 2), -3);
    EXPECT_EQ(nDiv(nPlusPetit, -1), nPlusPetit);  // wraps, without a trap
    EXPECT_EQ(nProrata(10, 1, 4), 3);             // 2.5
    EXPECT_EQ(nProrata(10, 1, 0), 0);
    EXPECT_EQ(nMax(0.5, -3), 1);
    EXPECT_EQ(nMin(-0.5, 3), -1);
    std::int32_t plafonne = 10;
    nMaximise(&plafonne, 12);
    EXPECT_EQ(plafonne, 10);
    nMaximise(&plafonne, -1);
    EXPECT_EQ(plafonne, -1);
    EXPECT_EQ(nValForc(nNonSaisi, 0), 0);
    EXPECT_EQ(nValForc(nPlusPetit, 0), nPlusPetit);  // only the unset value itself is replaced
    EXPECT_TRUE(bIsEntre(3, 3, 5) && bIsEntre(5, 3, 5) && !bIsEntre(2, 3, 5) && !bIsEntre(6, 3, 5));
}

TEST(KVTarvel, DatesAndNumbersAsTexts) {
    EXPECT_EQ(DateToInt(u"15/03/2017", false), 20170315);
    EXPECT_EQ(DateToInt(u"2017-03-15", false), 20170315);
    for (const char16_t* autre :
         {u"", u"2017/03/15", u"15-03-2017", u"1/3/2017", u"15/03/2O17", u"15/13/2017", u"00/03/2017", u"15/03/2017 "})
        EXPECT_EQ(DateToInt(autre, false), 0) << kv::VersUtf8(autre);
    EXPECT_EQ(AnneeOfDate(20170315), 2017);
    EXPECT_EQ(AnneeOfDate(-20170315), 0);
    const std::pair<double, const char16_t*> decimaux[] = {{12.5, u"12.5"}, {10, u"10"},          {0.3, u"0.3"},
                                                           {-1.5, u"-1.5"}, {1e9, u"1000000000"}, {1e-4, u"0.0001"}};
    for (const auto& [x, texte] : decimaux) EXPECT_EQ(FloatToStr(x), texte);
    EXPECT_EQ(IntToStr(nPlusPetit), u"-2147483648");
    EXPECT_EQ(EspacesNiveau(3), u"      ");
}

TEST(KVTarvel, TextsKeepWhatIsValidAndShowWhatIsNot) {
    const std::string utf8 = "A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";  // one to four bytes
    EXPECT_EQ(kv::VersUtf16(utf8), u"A\u00E9\u20AC\U0001F600");
    EXPECT_EQ(kv::VersUtf8(u"A\u00E9\u20AC\U0001F600"), utf8);
    const char16_t moities[] = {0xD83D, u'A', 0xDE00, 0xD83D, 0};  // halves of a pair, alone
    EXPECT_EQ(kv::VersUtf16(kv::VersUtf8(moities)), u"\uFFFDA\uFFFD\uFFFD");

    // A continuation alone, forms longer than needed, half of a pair, beyond the last character, a form cut short.
    for (const std::string octets : {"\x80", "\xC0\x80", "\xE0\x80\x80", "\xF0\x80\x80\x80", "\xED\xA0\x80",
                                     "\xF4\x90\x80\x80", "\xFF", "\xE2\x82"}) {
        const std::u16string lu = kv::VersUtf16(octets + "A");
        EXPECT_TRUE(lu.size() >= 2 && lu.back() == u'A') << testing::PrintToString(octets);
        EXPECT_EQ(std::count(lu.begin(), lu.end() - 1, 0xFFFD), lu.end() - 1 - lu.begin())
            << testing::PrintToString(octets);
    }
}

}  // namespace
