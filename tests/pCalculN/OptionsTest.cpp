#include "tests/Figures.h"
#include "tests/Notation.h"

namespace {

constexpr const char* menages[] = {
    "1AJ=100000 2TR=10000",
    "1AJ=10000 2DC=1000",
    "M Fm=2 1AJ=42000 1BJ=31000 2DC=3000 2CA=100 2BH=2000 2CH2=12000 2TS2=700 3VG=5000 4BA=6000 7FQ=2000",
    "C T Fm=1 1AS=30000 2FA=900 2DH1=500 2DH3=2500 2CH1=3000 2EE2=800 3SJ2=1500 3VG=900 8TR=3000 2CK=400",
};

kv::Return Calcule(const std::string& boites, const char* options) {
    return Foyer(boites + options + " launch=options").compute();
}
std::int32_t Entree(const kv::Return& r, const char* nom) { return r.entry(*kv::find(KV_ENTRY, nom)); }

// What the comparison shows is what a launch with that option alone shows, value by value.
TEST(Options, TheComparisonEndsOnTheRunOfItsChoice) {
    for (const std::string boites : menages) {
        const auto compare = Calcule(boites, " AVA");
        const bool forfait = compare["PFU"] != 0;
        const auto seul = Calcule(boites, forfait ? " PFU" : " BAR"),
                   autre = Calcule(boites, forfait ? " BAR" : " PFU");
        EXPECT_EQ(test::Sorties(compare), test::Sorties(seul)) << boites;
        const auto cout = [](const kv::Return& r) { return r["S_NET_A_PAYER"] - r["S_NET_RESTITUE"]; };
        EXPECT_LE(cout(seul), cout(autre)) << boites;
        EXPECT_EQ(autre["PFU"], !forfait) << boites;
        EXPECT_EQ(autre["BAR"], forfait) << boites;
        EXPECT_EQ(Entree(seul, "PFU"), forfait) << boites;
        EXPECT_EQ(Entree(compare, "PFU") + Entree(compare, "BAR"), 0) << boites;

        // The modernisation credit alone compares.
        EXPECT_EQ(test::Sorties(Calcule(boites, " CIMR")), test::Sorties(Calcule(boites, " CIMR AVA"))) << boites;
        EXPECT_EQ(Calcule(boites, " CIMR BAR")["BAR"], 1) << boites;
    }
}

}  // namespace
