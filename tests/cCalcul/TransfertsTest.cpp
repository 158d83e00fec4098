#include "Calcul/cCalcul/Transferts.h"

#include <algorithm>
#include <array>
#include <optional>

#include "Calcul/cCalcul/Portees.h"
#include "tests/Foyer.h"
#include "tests/Hasard.h"

namespace {

using kv::TransfertLie;
using kv::TransfertTI;
using kv::TransfertTK;
using Montants = std::array<std::int32_t, 3>;

kv::Trace sansTrace;

TEST(Transferts, ForeignIncomeAtTheEffectiveRate) {
    Retour retour = Foyer("5HC=200 5IF=10 5KC=40 2DC=9 5HL=60 1AW=500 1AC=5000 1AE=400 1AH=700 1BC=-50 1BH=30 1CC=300");
    retour.TI("5HC", 1000).TIX("5HC", 300).TIY("5HC", 100);  // 1000 - 300 - 100 = 600
    retour.TI("5IF", 50).TIX("5IF", 20);                     // counts negatively: 50 + 20 = 70
    retour.TI("5KC", 100).TIX("5KC", 300);                   // cut at 0
    retour.TI("2DC", 500).TI("2TR", 500).TI("2TS", 500);     // stay apart
    retour.TI("5HL", nNonSaisi).TI("1AW", 1000).TIX("1AW", nNonSaisi);
    CDataCalcul& data = retour.Data();
    const Donnees avant(data);
    {
        const TransfertTI transfert(data, sansTrace);
        Attend(data.Entree, {{"5HC", 800}, {"5IF", 80}, {"5KC", 40}, {"5HL", 60}, {"1AW", 1500}});
        Attend(data.Entree, {{"2DC", 9}, {"2TR", 0}, {"2TS", 0}, {"1AJ", 5000}, {"1AK", 400}, {"1AS", 700}});
        // A negative exempt salary counts as none.
        Attend(data.Entree, {{"1BC", 0}, {"1BJ", 0}, {"1BS", 30}, {"1CJ", 300}});
        // 5000 + 700 + 600; 0 + 30 - 70; 300 + 1000.
        EXPECT_EQ(transfert.Montants().montant, (Montants{6300, -40, 1300}));
    }
    EXPECT_TRUE(Donnees(data) == avant);
}

TEST(Transferts, ForeignIncomeWithACreditEqualToTheTax) {
    // The flat deduction of 10 % exceeds the expenses of the first (2000, 1500) and third (2000.5 rounded to 2001,
    // 2000) members, not those of the second (2000, 2000): only the second one's TKZ is taken off the row F.
    Retour retour = Foyer("M 1AJ=20000 1AK=1500 1BJ=20000 1BK=2000 1CJ=20000 1CK=2000 1CF=5 1DJ=100 5HC=9000 2DC=300");
    retour.TK("1AF", 3000).TKZ("1AF", 500).TK("1BF", 3000).TKZ("1BF", 500).TK("1CF", 3000).TKZ("1CF", 500);
    retour.TK("1BL", 900).TKZ("1BL", 200).TK("1CL", 100).TKZ("1CL", 300).TK("1DF", nNonSaisi).TK("2DC", 1000);
    retour.TK("5AK", 400).TKZ("5AK", 100);
    CDataCalcul& data = retour.Data();
    const Donnees avant(data);
    {
        const TransfertTK transfert(data, sansTrace);
        Attend(data.Entree,
               {{"M", 1}, {"1AJ", 0}, {"1BJ", 0}, {"1CJ", 0}, {"1AF", 3000}, {"1BF", 2500}, {"1CF", 3000}});
        Attend(data.Entree, {{"1BL", 700}, {"1CL", 0}, {"1DF", 0}, {"2DC", 0}});
        Attend(data.Entree, {{"5HC", 300}});  // the gains of 5AK
    }
    EXPECT_TRUE(Donnees(data) == avant);
}

TEST(Transferts, BusinessBoxesTakeTheGainsOfTheirOwnKindAndPerson) {
    std::istringstream paires(
        "5HC 5AK 5HI 5AL 5IC 5BK 5II 5BL 5JC 5CK 5JI 5CL 5KC 5DF 5KI 5DG 5LC 5EF 5LI 5EG 5MC 5FF 5MI 5FG 5NA 5EY 5NK "
        "5EZ "
        "5OA 5FY 5OK 5FZ 5PA 5GY 5PK 5GZ 5NC 5UR 5NI 5US 5OC 5VR 5OI 5VS 5PC 5WR 5PI 5WS 5QC 5XJ 5QI 5XK 5RC 5YJ 5RI "
        "5YK "
        "5SC 5ZJ 5SI 5ZK 5JG 5XS 5SN 5XX 5RF 5YS 5NS 5YX 5SF 5ZS 5OS 5ZX 4BA 4BL 4BE 4BK");
    for (std::string premiere, seconde; paires >> premiere >> seconde;) {
        Retour retour = Foyer(premiere + "=5 " + seconde + "=7");
        const auto slot = TableEntree[static_cast<std::size_t>(kv::NumeroEntree(seconde))].nTK;
        retour.Data().TK.valeurs[static_cast<std::size_t>(slot)] = 300;
        const TransfertTK transfert(retour.Data(), sansTrace);
        EXPECT_EQ(retour.Data().Entree[CaseEntree::Numero(kv::NumeroEntree(premiere))], 300) << premiere;
    }
}

TEST(Transferts, AutoEntrepreneurAndProspection) {
    Retour retour = Foyer("5TB=800 5KP=1000 5UA=-100 5LO=5 5VE=-2147483647 5JQ=6 5VI=70 5SI=30 5TF=10 5UI=-20");
    CDataCalcul& data = retour.Data();
    const Donnees avant(data);
    {
        const TransfertLie autoEntr(data, sansTrace, TransfertLie::Nature::AutoEntr);
        EXPECT_EQ(autoEntr.Total(), 800);  // only positive amounts move
        Attend(data.Entree, {{"5KP", 1800}, {"5LO", 5}, {"5JQ", 6}, {"5SI", 30}});
        const TransfertLie prospection(data, sansTrace, TransfertLie::Nature::Prospection);
        EXPECT_EQ(prospection.Total(), 80);
        Attend(data.Entree, {{"5SI", 100}, {"5QC", 10}, {"5RI", 0}});
    }
    EXPECT_TRUE(Donnees(data) == avant);
    EXPECT_EQ(kv::TotalProspection(data).montant, (Montants{10, -20, 70}));
}

TEST(Transferts, ExceptionalIncomeGoesIntoItsBoxes) {
    Retour retour = Foyer("1AJ=5");
    retour.Quotient("1AJ", 4, 1000).Quotient("1AJ", 0, 10).Quotient("1AJ", 3, 100).Quotient("AAQ", 2, 20);
    retour.Quotient("BAQ", 4, 30).Quotient("RAQ", 3, -40).Quotient("2TR", 2, nNonSaisi);
    CDataCalcul& data = retour.Data();
    const Donnees avant(data);
    EXPECT_EQ(kv::QuotientDansFr(data, sansTrace, true), 1120);  // 1000 + 10 + 100 + 20 + 30 - 40
    Attend(data.Entree, {{"1AJ", 1115}, {"1AS", 20}, {"1BS", 30}, {"4BA", -40}});
    Attend(data.Entree, {{"AAQ", 0}, {"BAQ", 0}, {"RAQ", 0}, {"2TR", 0}});
    EXPECT_EQ(kv::QuotientDansFr(data, sansTrace, false), 1120);
    EXPECT_TRUE(Donnees(data) == avant);
    // 1000 - 250; 10 - 2.5 rounded to 3, the coefficient 0 standing for 4; 100 - 33.
    EXPECT_EQ(kv::ExcedentQuotient(data, "1AJ"), 750 + 7 + 67);
}

TEST(Transferts, TotalsOfForeignIncome) {
    Retour retour = Foyer("5TA=10 5UF=20 1AC=5 1AE=6 1AH=7 1BC=9 1BE=-2147483647");
    retour.TI("5HC", 100).TI("5HI", nNonSaisi).TK("5AK", 50).TK("5AL", nNonSaisi);
    const CDataCalcul& data = retour.Data();
    EXPECT_EQ(kv::TotalTI(data), 100);
    EXPECT_EQ(kv::TotalTK(data), 50);
    EXPECT_EQ(kv::TotalEtranger(data, false), 207);  // 100 + 50 + 10 + 20 + 5 + 6 + 7 + 9
    EXPECT_EQ(kv::TotalEtranger(data, true), 157);
    EXPECT_EQ(kv::IndicateurEtranger(data), 116);  // 100 + 0 (5 - 6) + 7 + 9
}

// The folded boxes, the foreign income and the linked boxes overlap during the worldwide pass, and end in any order.
TEST(Transferts, EveryBoxComesBackWhateverEndsFirst) {
    std::mt19937 hasard(1789);
    for (int essai = 0; essai < 20; ++essai) {
        CDataCalcul data;
        test::RemplitAuHasard(data, hasard);
        const Donnees avant(data);
        std::array<int, 4> ordre = {0, 1, 2, 3};
        do {
            std::optional<kv::Repliement> repliement(std::in_place, data);
            std::optional<TransfertTI> ti(std::in_place, data, sansTrace);
            std::optional<TransfertLie> prospection(std::in_place, data, sansTrace, TransfertLie::Nature::Prospection);
            std::optional<TransfertLie> autoEntr(std::in_place, data, sansTrace, TransfertLie::Nature::AutoEntr);
            for (const int fin : ordre) {
                if (fin == 0) ti.reset();
                if (fin == 1) prospection.reset();
                if (fin == 2) autoEntr.reset();
                if (fin == 3) repliement.reset();
            }
            ASSERT_TRUE(Donnees(data) == avant) << essai;
        } while (std::next_permutation(ordre.begin(), ordre.end()));
        {
            const kv::NonSaisiesAZero nonSaisies(data);
            EXPECT_EQ(std::count(data.TK.valeurs.begin(), data.TK.valeurs.end(), nNonSaisi), 0);
            const kv::Repliement repliement(data);
            const TransfertTK tk(data, sansTrace);
        }
        ASSERT_TRUE(Donnees(data) == avant) << essai;
    }
}

}  // namespace
