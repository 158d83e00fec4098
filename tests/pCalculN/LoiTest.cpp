#include "Calcul/pCalculN/Loi.h"

#include <limits>
#include <thread>

#include "tests/Foyer.h"
#include "tests/HasardReductions.h"

namespace {

// A return of the corpus, and what it gives under the law of the year.
struct Declare {
    std::unique_ptr<CDataCalcul> data;
    bool optionsForcees, optionsSiSaisies;

    bool Lance(const kv::Loi& loi = kv::loi2017) {
        return kv::Lance(*data, nullptr, true, -1.0, optionsForcees, optionsSiSaisies, loi);
    }
};

std::unique_ptr<CDataCalcul> Copie(const CDataCalcul& data) {
    auto copie = std::make_unique<CDataCalcul>();
    copie->CopieValeurs(data);
    return copie;
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
    std::vector<Declare> corpus, calcules;
    const auto ajoute = [&](Retour& retour) {
        for (const auto& [forcees, siSaisies] :
             {std::pair(false, false), std::pair(false, true), std::pair(true, false)}) {
            corpus.push_back({Copie(retour.Data()), forcees, siSaisies});
            calcules.push_back({Copie(retour.Data()), forcees, siSaisies});
            ASSERT_TRUE(calcules.back().Lance());
        }
    };
    test::HasardReductions hasard(13);
    for (const char* foyer : foyersParticuliers) {
        Retour retour = Foyer(foyer);
        ajoute(retour);
    }
    for (int i = 0; i < 25; ++i) {
        Retour revenus = hasard.Declaration(60), reductions = hasard.Foyer();
        hasard.Depenses(reductions, 60);
        hasard.OutreMer(reductions, 40);
        ajoute(revenus), ajoute(reductions);
    }

    const auto bouge = [&](kv::Parametre p) {
        for (const std::int32_t valeur : {2 * kv::loi2017[p] + 1, kv::loi2017[p] / 2}) {
            kv::Loi loi = kv::loi2017;
            loi[p] = valeur;
            for (std::size_t i = 0; i < corpus.size(); ++i) {
                Declare essai{Copie(*corpus[i].data), corpus[i].optionsForcees, corpus[i].optionsSiSaisies};
                essai.Lance(loi);
                if (!test::MemesSorties(*essai.data, *calcules[i].data)) return true;
            }
        }
        return false;
    };
    for (int i = 0; i < static_cast<int>(kv::nParametres); ++i)
        EXPECT_TRUE(bouge(kv::Parametre::Numero(i))) << kv::lignesLoi[i].nom;
}

// The scale, the relief, the cap on the family quotient and the reduction for modest incomes of 2016.
kv::Loi Loi2016() {
    kv::Loi loi = kv::loi2017;
    loi["bareme.tranche2.seuil"] = 9710;
    loi["bareme.tranche3.seuil"] = 26818;
    loi["bareme.tranche4.seuil"] = 71898;
    loi["bareme.tranche5.seuil"] = 152260;
    loi["decote.plafond.seul"] = 1165;
    loi["decote.plafond.couple"] = 1920;
    loi["quotientFamilial.plafond.demiPart"] = 1512;
    loi["quotientFamilial.plafond.parentIsole"] = 3566;
    loi["revenusModestes.plafondPlein"] = 18500;
    loi["revenusModestes.plafond"] = 20500;
    loi["revenusModestes.degression"] = 2000;
    loi["revenusModestes.parPart"] = 7400;
    return loi;
}

TEST(Loi, TheLawOfTheYearBeforeGivesItsTax) {
    const struct {
        const char* foyer;
        std::int32_t impot, impot2016;
    } cas[] = {
        // Net 19800. Scale: 10090 x 14 % = 1413; relief 1165 - 1059.75 = 105; 20 % of 1308 = 262, of which 700 / 2000.
        // In 2017: 9993 x 14 % = 1399; relief 1177 - 1049.25 = 128; 20 % of 1271 = 254, of which 905 / 2020.
        {"1AJ=22000", 1157, 1308 - 92},
        // Net 29700 for two: 10280 x 14 % = 1439; relief 1920 - 1079.25 = 841; 598 less 20 %.
        // In 2017: 10086 x 14 % = 1412; relief 1939 - 1059 = 880; 532 less 20 %.
        {"M 1AJ=33000", 532 - 106, 598 - 120},
        // Net 90000. Two parts: 27000 - 2 x 5650.28 = 15699, less 2 x 1512; three parts would give 10049.
        // In 2017: 27000 - 2 x 5706.74 = 15587, less 2 x 1527.
        {"M Fm=2 1AJ=60000 1BJ=40000", 12533, 12675},
        // Net 54000. One part: 16200 - 5650.28 = 10550, less 3566; two parts would give 4899.
        // In 2017: 16200 - 5706.74 = 10493, less 3602.
        {"C T Fm 1AJ=60000", 6891, 6984},
        // Net 180000. 81000 - 152260 x 4 % - 71898 x 11 % - 26818 x 16 % - 9710 x 14 %; deduction of 10 % above its
        // ceiling of 12305: 192305 declared. In 2017: 81000 - 19845.93.
        {"1AJ=192305", 61154, 61351},
    };
    for (const auto& c : cas) {
        EXPECT_EQ(Foyer(c.foyer).Calcule()["TOT_PAYER"], c.impot) << c.foyer;
        EXPECT_EQ(Foyer(c.foyer).Loi(Loi2016()).Calcule()["TOT_PAYER"], c.impot2016) << c.foyer;
    }
}

TEST(Loi, IndexationRaisesWhatTheLawIndexes) {
    const struct {
        const char* foyer;
        CaseSortie sortie;
        std::int32_t valeur;  // at 10 %
    } cas[] = {
        {"1AJ=500", "RN_SAL_DED_10", 473},               // 430
        {"1AJ=2000 1AI", "RN_SAL_DED_10", 1042},         // 947: 1041.7
        {"1AJ=200000", "RN_SAL_DED_10", 13536},          // 12305: 13535.5
        {"1AS=1000", "RN_PEN_ABAT", 421},                // 383: 421.3
        {"1AS=60000", "RN_PEN_ABAT", 4127},              // 3752: 4127.2
        {"1AJ=60000 6EU=10000 6EV=1", "C_FRAIS", 3790},  // 3445: 3789.5
        {"1AJ=60000 6EL=9000", "C_ENFANTS_1", 6375},     // 5795: 6374.5
        {"1AS=18000 AAF1=19400101", "A_AGEES", 2614},    // 2376 up to 14900: 2613.6 up to 16390
        {"1AS=22000 AAF1=19400101", "A_AGEES", 1307},    // 1188 up to 24000: 1306.8
        {"1AJ=19000", "U_DECOTE", 529},                  // tax 1021: 1295 - 765.75
        {"1AJ=24000", "U_CLASSES_MOYENNES", 169},        // 20 % of 1594 = 319, x (22776 - 21600) / 2222
        {"1AJ=29000 2CK=3000", "INFO_TAUX_PAS", 1},      // 26100 is below 27500
        {"2CH=6000", "RD_MOB_ABAT", 4600},               // and what it does not index
        {"5KO=400", "RR_BIC_P_MIC_ABAT", 305},
        {"1AJ=60000 6CB=30000", "C_GROSSE_REP", 25000},
        {"", "NP1_PLAF_PERP_V_C", 3923},
        {"1AJ=60000 7UM=9000", "U_REDUC_7UM", 2500},
        {"GMR 1AJ=100000", "U_DECOTE_DOM_GMR", 5100},
    };
    for (const auto& c : cas)
        EXPECT_EQ(Foyer(c.foyer).Indexation(10).Calcule()[c.sortie], c.valeur)
            << c.foyer << ", " << kv::sortie::noms[c.sortie.numero];
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
    const auto net = [](const kv::Loi& loi) {
        std::vector<std::int32_t> nets;
        for (std::int32_t salaire = 10000; salaire < 200000; salaire += 1000)
            nets.push_back(Retour{{"1AJ", salaire}, {"2DC", 900}}.Loi(loi).Calcule()["S_NET_A_PAYER"]);
        return nets;
    };
    const std::vector<std::int32_t> de2017 = net(kv::loi2017), de2016 = net(Loi2016());
    EXPECT_NE(de2017, de2016);
    std::vector<std::int32_t> ensemble;
    std::thread autre([&] { ensemble = net(Loi2016()); });
    EXPECT_EQ(net(kv::loi2017), de2017);
    autre.join();
    EXPECT_EQ(ensemble, de2016);
}

}  // namespace
