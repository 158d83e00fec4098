#include "tests/Foyer.h"

namespace {

Resultat LanceForce(Retour&& retour) {
    auto data = std::make_unique<CDataCalcul>();
    data->CopieValeurs(retour.Data());
    const bool reussi = kv::Lance(*data, nullptr, true, -1.0, true, false);
    return {std::move(data), reussi};
}

enum class Choix { ForfaitUnique, Bareme };

// The switches after a comparison, and the choice in the outputs.
void AttendChoix(const Resultat& r, Choix choix, std::int32_t avaSaisie, const std::string& quoi) {
    Attend(r, {{"PFU", choix == Choix::ForfaitUnique}, {"BAR", choix == Choix::Bareme}}, quoi);
    Attend(r.Data().Entree, {{"PFU", 0}, {"BAR", 0}, {"AVA", avaSaisie}}, quoi);
}

TEST(Options, TheCheaperOneIsRetained) {
    struct Cas {
        const char* boxes;
        Choix choix;
        std::int32_t netAPayer, netRestitue;
    };
    for (const Cas& c : {
             // 90000 at 41 %: 36900 - 13694.61 = 23205.39. Flat tax: 1280 on the interest; levies of 17.2 % in both.
             // Scale: 41000 - 13694.61 = 27305.39, 4100 more on the interest.
             Cas{"AVA 1AJ=100000 2TR=10000", Choix::ForfaitUnique, 23205 + 1280 + 1720, 0},
             // 9000 and 600 of dividends stay under 9807: no tax by the scale, 128 at the flat rate; levies of
             // 172.
             {"AVA 1AJ=10000 2DC=1000", Choix::Bareme, 172, 0},
             // Salaries alone cost the same: the flat tax stands.
             {"AVA 1AJ=22222", Choix::ForfaitUnique, 1228, 0},
             {"AVA", Choix::ForfaitUnique, 0, 0},
             // Nothing to pay in either; refunds compared: 500 - 172 by the scale, 128 less at the flat rate.
             {"AVA 1AJ=10000 2DC=1000 2CK=500", Choix::Bareme, 0, 328},
             // The same refund in both: 2000 - 1228.
             {"AVA 1AJ=22222 2CK=2000", Choix::ForfaitUnique, 0, 772},
             // A refund by the scale (172 - 250), something to pay at the flat rate (128 + 172 - 250).
             {"AVA 1AJ=10000 2DC=1000 2CK=250", Choix::Bareme, 0, 78},
         }) {
        const auto r = Foyer(c.boxes).CalculeOptions();
        EXPECT_TRUE(r.Reussi());
        AttendChoix(r, c.choix, 1, c.boxes);
        Attend(r, {{"S_NET_A_PAYER", c.netAPayer}, {"S_NET_RESTITUE", c.netRestitue}}, c.boxes);
    }
}

constexpr const char* retours[] = {
    "1AJ=100000 2TR=10000",
    "1AJ=10000 2DC=1000",
    "M Fm=2 1AJ=42000 1BJ=31000 2DC=3000 2CA=100 2BH=2000 2CH2=12000 2TS2=700 3VG=5000 4BA=6000 7FQ=2000",
    "C T Fm=1 1AS=30000 2FA=900 2DH1=500 2DH3=2500 2CH1=3000 2EE2=800 3SJ2=1500 3VG=900 8TR=3000 2CK=400",
};

// What the comparison shows is what a launch with that option alone shows, value by value.
TEST(Options, TheComparisonEndsOnTheRunOfItsChoice) {
    for (const std::string boxes : retours) {
        const auto compare = Foyer(boxes + " AVA").CalculeOptions();
        const bool forfait = compare["PFU"] != 0;
        const auto seul = Foyer(boxes + (forfait ? " PFU" : " BAR")).CalculeOptions();
        const auto autre = Foyer(boxes + (forfait ? " BAR" : " PFU")).CalculeOptions();
        EXPECT_TRUE(test::MemesSorties(compare.Data(), seul.Data())) << boxes;
        const auto cout = [](const Resultat& r) { return r["S_NET_A_PAYER"] - r["S_NET_RESTITUE"]; };
        EXPECT_LE(cout(seul), cout(autre)) << boxes;
        Attend(seul.Data().Entree, {{"PFU", forfait}, {"BAR", !forfait}, {"AVA", 0}}, boxes);
        Attend(autre, {{"PFU", !forfait}, {"BAR", forfait}}, boxes);
    }
}

TEST(Options, TheModernisationCreditAloneCompares) {
    for (const std::string boxes : retours) {
        const auto seule = Foyer(boxes + " CIMR").CalculeOptions();
        const auto avec = Foyer(boxes + " CIMR AVA").CalculeOptions();
        EXPECT_TRUE(test::MemesSorties(seule.Data(), avec.Data())) << boxes;
        AttendChoix(seule, seule["PFU"] ? Choix::ForfaitUnique : Choix::Bareme, 0, boxes);
        AttendChoix(avec, avec["PFU"] ? Choix::ForfaitUnique : Choix::Bareme, 1, boxes);
        Attend(Foyer(boxes + " CIMR BAR").CalculeOptions(), {{"PFU", 0}, {"BAR", 1}}, boxes);
    }
}

// A plain launch knows no options: interest bears the scale whatever the switches say, and they come back as given.
TEST(Options, APlainLaunchIgnoresTheSwitches) {
    for (const std::string options : {" PFU", " BAR", " AVA", " CIMR", " AVA PFU BAR"}) {
        auto saisie = Foyer("1AJ=100000 2TR=10000" + options);
        const auto r = Foyer("1AJ=100000 2TR=10000" + options).Calcule();
        Attend(r, {{"TOT_PAYER", 27305}, {"PFU", 0}, {"BAR", 0}, {"CORRECTIONS", 0}}, options);
        EXPECT_TRUE(Donnees(r.Data()) == Donnees(saisie.Data())) << options;
    }
}

// Forced options hold without a switch too, and then compare; the raised levies come with any switch.
TEST(Options, Forced) {
    struct Cas {
        const char* options;
        Choix choix;
        std::int32_t impot;
    };
    for (const Cas& c : {Cas{" PFU", Choix::ForfaitUnique, 24485},
                         {" BAR", Choix::Bareme, 27305},
                         {" AVA", Choix::ForfaitUnique, 24485},
                         {" CIMR BAR", Choix::Bareme, 27305 - 24575},  // the tax on 90000 of 100000 comes back
                         {"", Choix::ForfaitUnique, 24485}}) {
        const auto r = LanceForce(Foyer("1AJ=100000 2TR=10000 8TR=1000" + std::string(c.options)));
        EXPECT_TRUE(r.Reussi());
        Attend(r,
               {{"PFU", c.choix == Choix::ForfaitUnique},
                {"BAR", c.choix == Choix::Bareme},
                {"TOT_PAYER", c.impot},
                {"S_E_CSG_5", 92},
                {"S_CONTR_SOC", 1720}},
               c.options);
        EXPECT_EQ(r.E("AVA"), std::string(c.options) == " AVA") << c.options;
    }
}

// The credit for foreign tax on capital income follows what the launch taxes: 12.8 % of it when the flat tax is forced,
// 24 % of the interest paid in advance otherwise, within the tax that this interest bears.
TEST(Options, ForeignTaxOnCapitalIncome) {
    const auto retour = [](const char* options) {
        Retour r = Foyer("1AJ=100000 2FA=1000 2DC=2000 2TR=3000 3VG=4000 " + std::string(options));
        r.TK("2DC", 500).TK("2TR", 300).TKZ("2TR", 100).TK("2FA", 250).TKZ("2FA", 50).TK("3VG", 1000);
        return r;
    };
    // 12.8 % of 500 + 200 + 200 is 115.2; of 1000, 128.
    const auto force = LanceForce(retour("PFU"));
    Attend(force, {{"D_CREDIT_PFU2", 115 + 128}, {"D_CREDIT_2FA", 0}});
    EXPECT_GE(force["D_CREDIT"], 115 + 128);
    Attend(retour("").Calcule(), {{"D_CREDIT_PFU2", 0}, {"CO_INTERET", 240}, {"D_CREDIT_2FA", 48}});
    Attend(retour("PFU").CalculeOptions(), {{"D_CREDIT_PFU2", 0}, {"CO_INTERET", 0}, {"D_CREDIT_2FA", 0}});
}

}  // namespace
