#include "Calcul/pCalculN/Loi.h"

#include <limits>
#include <thread>

#include "interface/Retour.h"
#include "tests/Hasard.h"
#include "tests/Notation.h"

namespace {

// Every figure of a return, to compare at once.
std::vector<std::int32_t> Valeurs(const kv::Return& r) {
    std::vector<std::int32_t> valeurs(4 * kv::nSorties);
    for (std::int32_t k = 0; k < 4; ++k)
        r.outputs(std::span(valeurs).subspan(static_cast<std::size_t>(k) * kv::nSorties, kv::nSorties), k);
    return valeurs;
}

// Households that a random return is unlikely to be.
constexpr const char* foyersParticuliers[] = {
    // parts, allowances, charges
    "L 1AJ=55556",
    "C T Fm 1AJ=55556",
    "W 1AJ=30000",
    "M Fm Gm 1AJ=30000",
    "M Fm=2 1AJ=52000",
    "1AJ=30000 6EU=10000 6EV=1",
    "1AS=15000 AAF1=19400101",
    "1AS=22000 AAF1=19400101",
    "1AJ=100000 6QW 6RS=50000",
    // non-residents, high and special incomes
    "REM 1AJ=20000",
    "RED 1AJ=20000",
    "REM 1AJ=1500",
    "GUY 1AJ=60000",
    "1AJ=30000 5QM=300000",
    "1AJ=450000 CE15=200000 CE16=200000",
    // levies without withholding, amounts too small to be collected or refunded
    "8PH=9000 8SX=9000 8TR=9000 8TV=9000 8TW=9000",
    "2FA=200",
    "2FA=400 2CK=88",
    "2CK=7",
    // ceilings of reductions and credits
    "1AJ=100000 7FH=50000",
    "1AJ=100000 7FF=3000 7FG",
    "1AJ=100000 7UH=19000",
    "1AJ=100000 7XX=30000",
    "1AJ=300000 7EL=500000",
    "1AJ=900000 7TX=500000",
    "1AJ=60000 7DB=30000 7DG",
    "1AJ=60000 7DB=30000 7DQ",
    "1AJ=60000 7DB=30000 AAF1=19400101",
    "M 1AJ=60000 7DB=30000 Fm=3",
    "7WL=9000 7WLPC=20000",
    "7UK=1000 7VO=5",
    "P 1AJ=60000 7VX=9000",
    "M 1AJ=60000 7UN=20000",
    "1AJ=60000 7AC=900",
    "1AJ=60000 7KE=9000",
    "7TD=90000 7VO=9",
    "M Fm=2 1AJ=60000 7VX=90000",
    // overseas investments, by class of retrocession, and without
    "1AJ=2000000 HPN=200000",
    "1AJ=2000000 HSK=200000",
    "1AJ=2000000 HCC=200000",
    "1AJ=2000000 HPO=200000",
    "1AJ=2000000 HSL=200000",
    "1AJ=2000000 HQJ=200000",
    "1AJ=2000000 HCD=200000",
    "1AJ=2000000 HXK=200000",
    "1AJ=2000000 HPR=400000",
    "1AJ=2000000 HRI=400000",
    "1AJ=2000000 HRO=400000",
};

TEST(Loi, EveryParameterMovesAFigure) {
    std::vector<std::pair<kv::Return, std::vector<std::int32_t>>> corpus;
    const auto ajoute = [&](kv::Return r) {
        for (const kv_launch lancement : {KV_LAUNCH_NORMAL, KV_LAUNCH_OPTIONS, KV_LAUNCH_FORCED})
            corpus.emplace_back(r, Valeurs(r.set_launch(lancement).compute()));
    };
    for (const char* foyer : foyersParticuliers) ajoute(Foyer(foyer));
    Hasard hasard(13);
    for (int i = 0; i < 25; ++i) {
        ajoute(hasard.Declaration(60));
        kv::Return reductions = hasard.Simple();
        hasard.Depenses(reductions, 60);
        hasard.OutreMer(reductions, 40);
        ajoute(reductions);
    }
    const auto bouge = [&](int parametre) {
        const std::int32_t annee = kv::loi2017[kv::Parametre::Numero(parametre)];
        for (const std::int32_t valeur : {2 * annee + 1, annee / 2}) {
            for (auto& [r, valeurs] : corpus) {
                kv::Return essai = r;
                essai.handle()->demande.loi[kv::Parametre::Numero(parametre)] = valeur;
                if (Valeurs(essai.compute()) != valeurs) return true;
            }
        }
        return false;
    };
    for (int i = 0; i < static_cast<int>(kv::nParametres); ++i) EXPECT_TRUE(bouge(i)) << kv::lignesLoi[i].nom;
}

TEST(Loi, FiguresAreReadAndWrittenInTheirUnits) {
    kv::Loi loi = kv::loi2017;
    for (int i = 0; i < static_cast<int>(kv::nParametres); ++i) {
        const kv::Parametre p = kv::Parametre::Numero(i);
        EXPECT_EQ(kv::ChercheParametre(p.Ligne().nom), p);
        EXPECT_EQ(kv::Fixe(loi, p, kv::Valeur(kv::loi2017, p)), "") << p.Ligne().nom;
    }
    EXPECT_EQ(loi, kv::loi2017);
    EXPECT_EQ(kv::Defaut(loi), "");

    const struct {
        kv::Parametre p;
        double valeur;
        bool permise;
    } cas[] = {
        {"decote.plafond.seul", 1000000000, true},
        {"decote.plafond.seul", 1000000001, false},
        {"decote.plafond.seul", 0.5, false},
        {"decote.plafond.seul", -1, false},
        {"decote.part", 33.33, true},
        {"decote.part", 33.333, false},
        {"decote.part", 100.01, false},
        {"credits.7DB.age", 150, true},
        {"credits.7DB.age", 60.5, false},
        {"parts.enfant", 0.25, true},
        {"parts.enfant", 1000.5, false},
        {"decote.part", std::numeric_limits<double>::quiet_NaN(), false},
    };
    for (const auto& c : cas) {
        loi = kv::loi2017;
        EXPECT_EQ(kv::Fixe(loi, c.p, c.valeur).empty(), c.permise) << c.p.Ligne().nom << " " << c.valeur;
        if (c.permise)
            EXPECT_EQ(kv::Valeur(loi, c.p), c.valeur);
        else
            EXPECT_EQ(loi, kv::loi2017);
    }
    for (const kv::Parametre p :
         {kv::Parametre("bareme.tranche4.seuil"), kv::Parametre("hautsRevenus.tranche2.seuil")}) {
        loi = kv::loi2017;
        loi[p] = 1000;
        EXPECT_NE(kv::Defaut(loi), "") << p.Ligne().nom;
    }
}

TEST(Loi, TwoLawsOnTwoThreads) {
    const auto net = [](const kv::Law& loi) {
        std::vector<std::int32_t> nets;
        for (std::int32_t salaire = 10000; salaire < 200000; salaire += 1000)
            nets.push_back(Foyer("2DC=900").set("1AJ", salaire).set_law(loi).compute()["S_NET_A_PAYER"]);
        return nets;
    };
    const kv::Law annee, avant = kv::Law().set("bareme.tranche2.seuil", 9710).set("decote.plafond.seul", 1165);
    const std::vector<std::int32_t> de2017 = net(annee), de2016 = net(avant);
    EXPECT_NE(de2017, de2016);
    std::vector<std::int32_t> ensemble;
    std::thread autre([&] { ensemble = net(avant); });
    EXPECT_EQ(net(annee), de2017);
    autre.join();
    EXPECT_EQ(ensemble, de2016);
}

}  // namespace
