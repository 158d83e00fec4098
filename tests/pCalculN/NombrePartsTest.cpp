#include "tests/Foyer.h"

namespace {

TEST(NombreParts, PartsByHousehold) {
    const std::pair<const char*, std::int32_t> cas[] = {
        {"", 100},
        {"M", 200},
        {"O", 200},
        {"M Fm=3", 400},       // 200 + 3 x 50 + 50
        {"M Fm=2 Gm", 350},    // a disabled child: 50 more
        {"Rm", 200},           // invalid person taken in: 100 + 50 + 50
        {"M Fm=2 Hm=2", 400},  // 200 + 2 x 50 + 2 x 25 + 25 x min(2, 2)
        {"M Fm=3 Hm", 450},    // 200 + 3 x 50 + 50 + 25 + 25 x min(2, 1)
        {"Fm Hm=2", 225},      // 100 + 50 + 2 x 25 + 25 x min(1, 2)
        {"M Hm Im", 250},      // 200 + 25 + 25
        // Alone with dependants.
        {"T Hm", 150},     // 100 + 25 + 25
        {"T Hm=2", 200},   // 100 + 50 + 50
        {"T Fm Hm", 225},  // 100 + 50 + 25 + 50
        {"T", 100},
        {"V Fm", 250},     // 100 + 50 + 100
        {"VEvt Fm", 250},  // the same, widowed in the year and taxed alone
        {"V T Fm", 250},   // the half part of T does not add
        {"T P Fm", 250},   // 100 + 50 + 50 + 50
        // Alone without dependants: at most one half part.
        {"V", 100},
        {"L", 150},
        {"L N", 100},  // did not raise the child alone
        {"Gp", 150},
        {"W", 150},
        {"P Gp W L", 150},
        // Together.
        {"M P Fp S", 300},  // S adds nothing to the invalidities
        {"M S", 250},
        {"M W", 200},       // for people alone
        {"M P Fp=2", 350},  // a box counts with its value
        // Widowed during the year: taxed as a couple until the death.
        {"Vp Z2=20170630", 200},
        {"Vp Z1=20171231 W", 250},
        {"Vp Z1=20170101 W P", 250},
        {"Vp Z1=20161231 Z2=-2147483647", 100},
        {"M Fm=-2147483647 Hm=-2147483647 Gm=-2147483647", 200},  // unset
    };
    for (const auto& [foyer, parts] : cas) EXPECT_EQ(Foyer(foyer).Calcule()["F_NB_PARTS_ALL"], parts) << foyer;
}

TEST(NombreParts, CountsOfDependants) {
    const auto r = Foyer("M Fm=2 Jm Nm Rm Hm=3").Calcule();
    Attend(r, {{"F_NB_PARTS_ISO", 200}, {"F_NB_CHARGE", 5}, {"F_NB_ENFANTS", 4}, {"F_NB_ENFANTS_ALTERNE", 3}});
    EXPECT_EQ(Foyer("Fm").Calcule()["F_NB_PARTS_ISO"], 100);
}

}  // namespace
