#include "tests/Notation.h"

namespace {

// CGI art. 156 I 1: other income above 108904 closes a farm deficit, each euro counting once. Share gains and salaries
// count less 10 %: 121005 and 121006 less 12101.
TEST(Capitaux, WhatCountsTowardsTheCeilingOfFarmDeficits) {
    const auto reporte = [](const std::string& box, std::int32_t montant, double indexation = -1.0) {
        return Foyer("5HF=5000").set(box, montant).set_indexation(indexation).compute()["NP1_BA_ANN"];
    };
    for (const char* box :
         {"4BA", "2TR", "2FA", "1TZ", "3VG", "3UA", "3VE", "3VM", "3VT", "3PI", "3SB", "3SZ", "3UV", "3WI", "3WJ",
          "3WP", "3VD", "3VI", "3VF", "3SJ", "3SK", "5KE", "5OE", "5TC", "5QC", "5KC", "5NC", "5PA", "5JG"}) {
        EXPECT_EQ(reporte(box, 108904), 0) << box;
        EXPECT_EQ(reporte(box, 108905), 5000) << box;
    }
    for (const char* box : {"1AJ", "1TT", "1UT", "3VJ", "3VK"}) {
        EXPECT_EQ(reporte(box, 121005), 0) << box;
        EXPECT_EQ(reporte(box, 121006), 5000) << box;
    }
    for (const char* box : {"5HE", "5XT", "5HB", "1AT", "2EE", "6GH", "3WR"})
        EXPECT_EQ(reporte(box, 1000000), 0) << box;
    EXPECT_EQ(reporte("4BA", 109993, 1.0), 0);  // 108904 raised by 1 % is 109993.04
    EXPECT_EQ(reporte("4BA", 109994, 1.0), 5000);
}

}  // namespace
