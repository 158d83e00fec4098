#include "tests/Foyer.h"

namespace {

struct Credit {
    CaseSortie credit;
    std::int32_t declare, retenu, taux, montant;
};

void AttendCredits(const char* boxes, std::initializer_list<Credit> credits) {
    const auto r = Foyer(boxes).Calcule();
    std::int32_t total = 0;
    for (const Credit& c : credits) {
        EXPECT_EQ(r[c.credit], c.montant) << boxes << " " << c.credit.numero;
        EXPECT_EQ(r.Colonnes(c.credit), (std::vector{c.declare, c.retenu, c.taux})) << boxes << " " << c.credit.numero;
        total += c.montant;
    }
    EXPECT_EQ(r["D_CREDIT"], total) << boxes;
}

TEST(Credits, ChildcareByChild) {
    AttendCredits("7GA=3000", {{"D_FRAIS_GARDE_ACHARGE", 3000, 2300, 5000, 1150}});
    AttendCredits("7GE=3000", {{"D_FRAIS_GARDE_ALTERNE", 3000, 1150, 5000, 575}});
    AttendCredits("7GA=3000 7GD=1001 7GM=100 7GF=1200", {{"D_FRAIS_GARDE_ACHARGE", 4001, 3301, 5000, 1651},  // 1650.5
                                                         {"D_FRAIS_GARDE_ALTERNE", 1300, 1250, 5000, 625}});
}

// One ceiling in the order of the lines, raised for a couple and its dependants, less the expenses of earlier years.
TEST(Credits, EnergyTransition) {
    AttendCredits("7CB=5000 7AD=5000", {{"D_CR_7CB", 5000, 5000, 3000, 1500}, {"D_CR_7AD", 5000, 3000, 3000, 900}});
    AttendCredits("7BL=9000 7CB=1000", {{"D_CR_7CB", 1000, 1000, 3000, 300}, {"D_CR_7BL", 9000, 7000, 3000, 2100}});
    AttendCredits("M Fm=2 Hm=1 7WHA=10000 7WHD=6000 7AF=2000", {{"D_CR_7AF", 2000, 1000, 3000, 300}});  // 800 + 200
    AttendCredits("7WHB=8000 7WHC=1000 7AH=2000", {{"D_CR_7AH", 2000, 0, 3000, 0}});
    AttendCredits("7WR=1001", {{"D_PREV_RISQUE_TECH", 1001, 1001, 4000, 400}});
}

// An absurd expense takes the ceiling beyond 32 bits: it is gone, not negative.
TEST(Credits, ACeilingThatWrapsIsUsedUp) {
    AttendCredits("7CB=-2147483000 7AD=1000",
                  {{"D_CR_7CB", -2147483000, -2147483000, 3000, -644244900}, {"D_CR_7AD", 1000, 0, 3000, 0}});
    AttendCredits("7VX=-2147483000 7VV=1000", {{"D_CREDIT_HAB_PRIN_BBC", -2147483000, -2147483000, 4000, -858993200},
                                               {"D_CREDIT_HAB_PRIN_2010N", 1000, 0, 1500, 0}});
}

TEST(Credits, EquipmentOfTheDwelling) {
    AttendCredits("7WJ=6000", {{"D_AIDE_PERS_AGEES", 6000, 5000, 2500, 1250}});
    AttendCredits("M Fm=1 7WJ=12000 7WJA=1000 7WJD=400", {{"D_AIDE_PERS_AGEES", 12000, 9000, 2500, 2250}});
    AttendCredits("7WJ=6000 7WJB=3000 7WJC=2500", {{"D_AIDE_PERS_AGEES", 6000, 0, 2500, 0}});
    AttendCredits("7WL=3000 7WLPC=2000 7WLA=500", {{"D_AIDE_RISQUE_TECHNO", 3000, 1500, 4000, 600}});
    AttendCredits("7WL=3000 7WLPC=2000 7WLPS=2600 7WLB=500", {{"D_AIDE_RISQUE_TECHNO", 3000, 2100, 4000, 840}});
    AttendCredits("7WL=3000 7WLPC=2000 7WLPS=1 7WLA=500", {});
}

// The ceiling of the works falls by what is declared: a large first line leaves nothing, though its credit was cut.
TEST(Credits, Forest) {
    AttendCredits("7VP=6000 7TK=1000 7UX=1000", {{"D_CREDIT_7VP", 6000, 6000, 2500, 1500},
                                                 {"D_CREDIT_7TK", 1000, 250, 2500, 63},  // 62.5
                                                 {"D_CREDIT_7UX", 1000, 0, 1800, 0}});
    AttendCredits("M 7VP=10000 7UP=2000 7UT=5000", {{"D_CREDIT_7VP", 10000, 10000, 2500, 2500},
                                                    {"D_CREDIT_7UP", 2000, 2000, 1800, 360},
                                                    {"D_CREDIT_7UT", 5000, 500, 1800, 90}});
    AttendCredits("7UI=1500 7UQ=1000",
                  {{"D_CREDIT_7UI", 1500, 1500, 2500, 375}, {"D_CREDIT_7UQ", 1000, 500, 1800, 90}});
    AttendCredits("7UI=2000 7UQ=1000", {{"D_CREDIT_7UI", 2000, 2000, 2500, 500}});
    AttendCredits("M 7UI=3000 7UQ=1500",
                  {{"D_CREDIT_7UI", 3000, 3000, 2500, 750}, {"D_CREDIT_7UQ", 1500, 1000, 1800, 180}});

    Attend(Foyer("7VP=10000 7TK=1000 7UT=300").Calcule(), {{"D_CREDIT_7VP", 1563},  // 25 % of 6250 is 1562.5
                                                           {"D_CREDIT_7TK", 0},
                                                           {"NP1_FOREST_TRAV_7VP", 3750},
                                                           {"NP1_FOREST_TRAV_7TK", 1000},
                                                           {"NP1_FOREST_TRAV_7UT8_7UT", 300},
                                                           {"NP1_FOREST_TRAV_7UX", 0}});
    Attend(Foyer("7TJ=6000 7VN=1000").Calcule(), {{"NP1_FOREST_TRAV_7TJ", 0}, {"NP1_FOREST_TRAV_7VN", 750}});
}

// The order in which lines share a ceiling, and the rate of each.
TEST(Credits, LinesUnderOneCeiling) {
    struct Famille {
        std::string prefixe;
        std::int32_t plafond;
        std::vector<std::pair<std::string, std::int32_t>> lignes;
    };
    Famille energie = {"D_CR_", 8000, {}};
    for (const char* code : {"7CB", "7AD", "7AF", "7AH", "7AK", "7AL", "7AM", "7AN", "7AQ", "7AR", "7AV",
                             "7AX", "7AY", "7AZ", "7BB", "7BC", "7BD", "7BE", "7BF", "7BH", "7BK", "7BL"})
        energie.lignes.emplace_back(code, 30);
    Famille forets = {"D_CREDIT_", 6250, {}};
    const std::string a18 = "7UX 7TJ 7VM 7TM 7VQ 7TP 7UP 7UT";
    for (const char* code : {"7VP", "7TK", "7UX", "7TJ", "7VN", "7TO", "7VM", "7TM", "7VR", "7TQ", "7VQ", "7TP", "7UA",
                             "7UB", "7UP", "7UT"})
        forets.lignes.emplace_back(code, a18.find(code) != a18.npos ? 18 : 25);
    for (const Famille& f : {energie, forets}) {
        const auto credit = [&](const Resultat& r, const std::string& code) {
            return r[CaseSortie::Numero(kv::NumeroSortie(f.prefixe + code))];
        };
        for (std::size_t i = 0; i < f.lignes.size(); ++i) {
            const auto& [code, taux] = f.lignes[i];
            EXPECT_EQ(credit(Foyer(code + "=1000").Calcule(), code), 10 * taux) << code;
            if (i == 0) continue;
            const std::string& avant = f.lignes[i - 1].first;
            const auto r = Foyer(avant + "=" + std::to_string(f.plafond - 100) + " " + code + "=1000").Calcule();
            EXPECT_EQ(credit(r, code), taux) << code << " after " << avant;
            // The run without advantages keeps the forest credits: they are no advantage of the global cap.
            EXPECT_EQ(r["NICHE_A5"], taux == 30 ? r["D_CREDIT"] : 0) << code;
        }
    }
}

TEST(Credits, InterestOnTheHomeLoan) {
    AttendCredits("7VX=3000 7VV=1000 7VT=1000", {{"D_CREDIT_HAB_PRIN_BBC", 3000, 3000, 4000, 1200},
                                                 {"D_CREDIT_HAB_PRIN_2010N", 1000, 750, 1500, 113},  // 112.5
                                                 {"D_CREDIT_HAB_PRIN_2011N", 1000, 0, 1000, 0}});
    // A disabled person doubles the ceiling, each dependant adds 500, a child in alternating residence 250.
    for (const char* foyer : {"P 7VT=8000", "Fp 7VT=8000", "Gm=1 7VT=8000", "Im=1 7VT=8000"})
        Attend(Foyer(foyer).Calcule(), {{"D_CREDIT_HAB_PRIN_2011N", 750}}, foyer);
    Attend(Foyer("M Fm=1 Hm=1 7VV=9000").Calcule(), {{"D_CREDIT_HAB_PRIN_2010N", 1238}});  // 15 % of 8250 is 1237.5
    Attend(Foyer("Rm=1 7VT=9000").Calcule(), {{"D_CREDIT_HAB_PRIN_2011N", 800}});          // 7500 + 500
}

// 66 % of the dues, each person's within 1 % of the pensions, and of the salaries without actual expenses.
TEST(Credits, UnionDues) {
    struct Cas {
        const char* boxes;
        std::int32_t credit;
    };
    for (const Cas& c : {
             Cas{"7AC=300 1AJ=20000", 132},
             {"7AC=300 1AJ=20000 1AK=5000", 0},
             {"7AC=300 1AJ=20000 1AK=5000 1AS=10000", 66},
             {"M 7AC=100 7AE=300 1AJ=20000 1BJ=20000", 198},  // 100, and 200 of the 300
             {"Fm=1 7AG=90 1CJ=4000 1DS=2000", 40},           // 60: 39.6
             {"Fm=2 7AG=90 1CJ=4000 1DS=2000 1DK=10", 13},    // the expenses of one close the salaries of all: 20: 13.2
             {"7AC=50 1AP=1000 1AF=1000 1AO=1000 1AZ=1000 1AL=500", 30},  // 45: 29.7
         }) {
        const auto r = Foyer(c.boxes).Calcule();
        Attend(r, {{"D_CREDIT_7AC_7AE_7AG", c.credit}, {"D_CREDIT", c.credit}}, c.boxes);
        EXPECT_EQ(r.Colonnes("D_CREDIT_7AC_7AE_7AG"), (std::vector{0, 0, 0})) << c.boxes;
    }
}

TEST(Credits, StudentLoansAndLease) {
    AttendCredits("7UK=1500 7VO=5", {{"D_PRET_ETUDIANTS_1", 1500, 1000, 2500, 250}});
    AttendCredits("7UK=1500 7VO=6", {{"D_PRET_ETUDIANTS_1", 1500, 0, 2500, 0}});
    AttendCredits("7TD=5000 7VO=3", {{"D_PRET_ETUDIANTS_2", 5000, 3000, 2500, 750}});
    AttendCredits("7TD=7000 7VO=8", {{"D_PRET_ETUDIANTS_2", 7000, 6000, 2500, 1500}});
    AttendCredits("7TD=7000", {{"D_PRET_ETUDIANTS_2", 7000, 0, 2500, 0}});
    Attend(Foyer("4TQ=1020").Calcule(), {{"D_RESTI_TAXE_ADD_DROIT_BAIL", 26}});  // 25.5
    // Non-residents' levies on gains come back at their rate, which an option lowers.
    AttendCredits("3VE=1000 3UV=1000",
                  {{"D_PV_NON_RESIDENT", 1000, 1000, 4500, 450}, {"D_SCR_NON_RESIDENT", 1000, 1000, 3000, 300}});
    for (const char* option : {"PFU 3VE=1000 3UV=1000", "BAR 3VE=1000 3UV=1000"})
        Attend(Foyer(option).CalculeOptions(), {{"D_PV_NON_RESIDENT", 128}, {"D_SCR_NON_RESIDENT", 128}}, option);
}

// A credit that is only imputed stops at the tax left; the others are refunded in full.
TEST(Credits, ImputedCreditsStopAtTheTax) {
    Attend(Foyer("1AJ=22222 8TAB=1000 8VL=500 8TE=300 2CK=50").Calcule(),
           {{"D_SOURCE_ETR", 1000}, {"D_IMPOT_ETR", 228}, {"D_PREVENTION", 0}, {"D_CREDIT", 1278}, {"TOT_REST", 50}});
    // Each of cultural goods and patronage stops at the tax without what is paid back.
    Attend(Foyer("1AJ=22222 8TF=500 7UO=5000 7US=900").Calcule(),
           {{"D_ACQ_BIENS_CULTURELS", 1228}, {"D_MECENAT", 500}, {"TOT_PAYER", 0}});
    Attend(Foyer("1AJ=22222 8TP=600 8TG=1500 8TC=900").Calcule(), {{"D_INVEST_CORSE", 1228}, {"D_CREDIT_8TC", 600}});
    // The credit on foreign pensions stops at their own tax: 7.5 % of 90 % of 1000 is 67.5.
    Retour pension = Foyer("1AT=1000");
    pension.TK("1AT", 3000);
    Attend(pension.Calcule(), {{"CO_PENSIONS", 68}, {"D_CREDIT_1AT_1BT", 68}});
}

TEST(Credits, ImputedAndCopiedCreditsAtRandom) {
    struct Impute {
        CaseSortie credit;
        CaseEntree boxes[4];
        std::int32_t taux;
    };
    static constexpr Impute imputes[] = {
        {"D_AVOIR_FISC", {"2AB"}, 100},
        {"D_SOURCE_ETR", {"8TAB"}, 100},
        {"D_PREVENTION", {"8TE"}, 100},
        {"D_IMPOT_ETR", {"8VL", "8VM", "8WM", "8UM"}, 100},
        {"D_MECENAT", {"7US"}, 100},
        {"D_ACQ_BIENS_CULTURELS", {"7UO"}, 40},
        {"D_CREDIT_8TC", {"8TC"}, 100},
        {"D_INVEST_CORSE", {"8TG", "8TO"}, 100},
        {"D_CREDIT_COMP_EMPLOI", {"8UW"}, 100},
    };
    static constexpr struct {
        CaseSortie credit;
        CaseEntree box;
    } copies[] = {
        {"D_DIRECT_EPARGNE", "2BG"},        {"D_PRELEV_FORFAIT", "2CK"},           {"D_RECHERCHE_RESTITUTION", "8TB"},
        {"D_COMP_EMPL_RESTITUTION", "8TL"}, {"D_INVEST_CORSE_RESTITUTION", "8TS"}, {"D_CREDIT_HJA", "HJA"},
        {"D_CREDIT_FAMILLE", "8UZ"},        {"D_CREDIT_APPRENTIS", "8TZ"},         {"D_CREDIT_AGRI_BIO", "8WA"},
        {"D_CREDIT_PROSPEC", "8WB"},        {"D_CREDIT_PRETS_SS_INT", "8WC"},      {"D_CREDIT_FORM_ENTR", "8WD"},
        {"D_CREDIT_INTERESSEMENT", "8WE"},  {"D_CREDIT_METIER_ART", "8WR"},        {"D_CREDIT_CONGES_AGRI", "8WT"},
        {"D_HOTEL_CAFE_RESTAU", "8WU"},     {"D_CREDIT_AUTO_ENTR", "8UY"},
    };
    std::mt19937 hasard(42);
    const auto montant = [&](std::uint32_t max) {
        return hasard() % 3 == 0 ? static_cast<std::int32_t>(hasard() % max) : 0;
    };
    for (int essai = 0; essai < 60; ++essai) {
        Retour retour{{"1AJ", 15000 + montant(60000)}, {"8TF", montant(2000)}, {"8TP", montant(2000)}};
        for (const auto& credit : imputes)
            for (const CaseEntree box : credit.boxes)
                if (box) retour.Avec({{box, montant(3000)}});
        for (const auto& copie : copies) retour.Avec({{copie.box, montant(500)}});
        const auto r = retour.Calcule();

        std::int32_t declares = 0, retenus = 0, copiesEnsemble = 0;
        bool unCoupe = false;
        for (const auto& credit : imputes) {
            std::int32_t declare = 0;
            for (const CaseEntree box : credit.boxes) declare += box ? r.E(box) : 0;
            declare = nPourcent(declare, credit.taux);
            EXPECT_GE(r[credit.credit], 0);
            EXPECT_LE(r[credit.credit], declare);
            const bool limitePropre = credit.credit == "D_MECENAT" || credit.credit == "D_ACQ_BIENS_CULTURELS" ||
                                      credit.credit == "D_INVEST_CORSE";
            unCoupe = unCoupe || (!limitePropre && r[credit.credit] < declare);
            declares += declare;
            retenus += r[credit.credit];
        }
        for (const auto& copie : copies) {
            EXPECT_EQ(r[copie.credit], r.E(copie.box));
            copiesEnsemble += r.E(copie.box);
        }
        const std::int32_t impot = r["TOT_IMP_COR"];
        EXPECT_LE(retenus, impot);
        EXPECT_TRUE(!unCoupe || retenus == impot) << retenus;  // a credit is cut only where no tax is left
        EXPECT_LE(r["D_ACQ_BIENS_CULTURELS"], nPositif(impot - r.E("8TF") - r.E("8TP")));
        EXPECT_LE(r["D_MECENAT"], nPositif(impot - r.E("8TF") - r.E("8TP")));
        EXPECT_LE(r["D_INVEST_CORSE"], nPositif(impot - r.E("8TP")));
        EXPECT_EQ(r.C(1, "D_CREDIT_TOT"), declares);
        EXPECT_EQ(r.C(2, "D_CREDIT_TOT"), retenus);
        EXPECT_EQ(r["D_CREDIT"], retenus + copiesEnsemble);
    }
}

}  // namespace
