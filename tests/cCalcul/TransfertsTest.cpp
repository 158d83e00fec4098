#include "Calcul/cCalcul/Transferts.h"

#include <algorithm>
#include <array>
#include <sstream>

#include "tests/Foyer.h"

namespace {

using Montants = std::array<std::int32_t, 3>;

TEST(Transferts, UnsetBoxesCountAsNothing) {
    Retour retour = Foyer("1AJ=-2147483647 1AK=-5 5XC=-2147483647 8TI=-2147483647");
    retour.TI("5HC", nNonSaisi).TK("5AK", nNonSaisi).TIX("5HC", 3);
    const kv::Saisie saisie = kv::LisSaisie(retour.Data());
    Attend(saisie.entrees, {{"1AJ", 0}, {"1AK", -5}, {"8TI", 0}});
    Attend(saisie.entrees, {{"5XC", nNonSaisi}});  // but the start years of the farms
    EXPECT_EQ(saisie.TI["5HC"] + saisie.TK["5AK"], 0);
    EXPECT_EQ(saisie.TIX["5HC"], 3);
}

TEST(Transferts, DetailedSalariesAndPensionsAreFolded) {
    Retour retour = Foyer("1AJ=1 1AG=20 1NX=300 1TP=4000 1PM=50000 1BG=7 1UP=80 1FJ=5 1FG=60 1AS=2 1AM=30 1FM=4");
    kv::Saisie saisie = kv::LisSaisie(retour.Data());
    kv::Replie(saisie);
    Attend(saisie.entrees, {{"1AJ", 54321}, {"1BJ", 87}, {"1FJ", 65}, {"1AS", 32}, {"1FS", 4}, {"1AG", 20}});
}

TEST(Transferts, ForeignIncomeAtTheEffectiveRate) {
    Retour retour = Foyer("5HC=200 5IF=10 5KC=40 2DC=9 5HL=60 1AW=500 1AC=5000 1AE=400 1AH=700 1BC=-50 1BH=30 1CC=300");
    retour.TI("5HC", 1000).TIX("5HC", 300).TIY("5HC", 100);  // 1000 - 300 - 100 = 600
    retour.TI("5IF", 50).TIX("5IF", 20);                     // counts negatively: 50 + 20 = 70
    retour.TI("5KC", 100).TIX("5KC", 300);                   // cut at 0
    retour.TI("2DC", 500).TI("2TR", 500).TI("2TS", 500);     // stay apart
    retour.TI("5HL", nNonSaisi).TI("1AW", 1000).TIX("1AW", nNonSaisi);
    kv::Saisie saisie = kv::LisSaisie(retour.Data());
    const kv::ParPersonne bruts = kv::DeplaceTI(saisie);
    {
        Attend(saisie.entrees, {{"5HC", 800}, {"5IF", 80}, {"5KC", 40}, {"5HL", 60}, {"1AW", 1500}});
        Attend(saisie.entrees, {{"2DC", 9}, {"2TR", 0}, {"2TS", 0}, {"1AJ", 5000}, {"1AK", 400}, {"1AS", 700}});
        // A negative exempt salary counts as none.
        Attend(saisie.entrees, {{"1BC", 0}, {"1BJ", 0}, {"1BS", 30}, {"1CJ", 300}});
        // 5000 + 700 + 600; 0 + 30 - 70; 300 + 1000.
        EXPECT_EQ(bruts.montant, (Montants{6300, -40, 1300}));
    }
}

TEST(Transferts, ForeignIncomeWithACreditEqualToTheTax) {
    // The flat deduction of 10 % exceeds the expenses of the first (2000, 1500) and third (2000.5 rounded to 2001,
    // 2000) members, not those of the second (2000, 2000): only the second one's TKZ is taken off the row F.
    Retour retour = Foyer("M 1AJ=20000 1AK=1500 1BJ=20000 1BK=2000 1CJ=20000 1CK=2000 1CF=5 1DJ=100 5HC=9000 2DC=300");
    retour.TK("1AF", 3000).TKZ("1AF", 500).TK("1BF", 3000).TKZ("1BF", 500).TK("1CF", 3000).TKZ("1CF", 500);
    retour.TK("1BL", 900).TKZ("1BL", 200).TK("1CL", 100).TKZ("1CL", 300).TK("1DF", nNonSaisi).TK("2DC", 1000);
    retour.TK("5AK", 400).TKZ("5AK", 100);
    kv::Saisie saisie = kv::LisSaisie(retour.Data());
    kv::DeplaceTK(saisie);
    {
        Attend(saisie.entrees,
               {{"M", 1}, {"1AJ", 0}, {"1BJ", 0}, {"1CJ", 0}, {"1AF", 3000}, {"1BF", 2500}, {"1CF", 3000}});
        Attend(saisie.entrees, {{"1BL", 700}, {"1CL", 0}, {"1DF", 0}, {"2DC", 0}});
        Attend(saisie.entrees, {{"5HC", 300}});  // the gains of 5AK
    }
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
        kv::Saisie saisie = kv::LisSaisie(retour.Data());
        kv::DeplaceTK(saisie);
        EXPECT_EQ(saisie[CaseEntree::Numero(kv::NumeroEntree(premiere))], 300) << premiere;
    }
}

TEST(Transferts, AutoEntrepreneurAndProspection) {
    Retour retour = Foyer("5TB=800 5KP=1000 5UA=-100 5LO=5 5VE=-2147483647 5JQ=6 5VI=70 5SI=30 5TF=10 5UI=-20");
    kv::Saisie saisie = kv::LisSaisie(retour.Data());
    {
        EXPECT_EQ(kv::DeplaceAutoEntr(saisie), 800);  // only positive amounts move
        Attend(saisie.entrees, {{"5KP", 1800}, {"5LO", 5}, {"5JQ", 6}, {"5SI", 30}});
        EXPECT_EQ(kv::DeplaceProspection(saisie), 80);
        Attend(saisie.entrees, {{"5SI", 100}, {"5QC", 10}, {"5RI", 0}});
    }
    EXPECT_EQ(kv::TotalProspection(saisie).montant, (Montants{10, -20, 70}));
}

TEST(Transferts, ExceptionalIncomeGoesIntoItsBoxes) {
    Retour retour = Foyer("1AJ=5");
    retour.Quotient("1AJ", 4, 1000).Quotient("1AJ", 0, 10).Quotient("1AJ", 3, 100).Quotient("AAQ", 2, 20);
    retour.Quotient("BAQ", 4, 30).Quotient("RAQ", 3, -40).Quotient("2TR", 2, nNonSaisi);
    kv::Saisie saisie = kv::LisSaisie(retour.Data());
    const kv::Exceptionnels exceptionnels = kv::LisExceptionnels(retour.Data());
    kv::DeplaceExceptionnels(saisie, exceptionnels);
    Attend(saisie.entrees, {{"1AJ", 1115}, {"1AS", 20}, {"1BS", 30}, {"4BA", -40}});
    Attend(saisie.entrees, {{"AAQ", 0}, {"BAQ", 0}, {"RAQ", 0}, {"2TR", 0}});
    // 1000 - 250; 10 - 2.5 rounded to 3, the coefficient 0 standing for 4; 100 - 33.
    EXPECT_EQ(exceptionnels.Excedent("1AJ"), 750 + 7 + 67);
}

// A box of the household as it is, one of each declarant, one of a dependant, amounts that are halved away from zero.
TEST(Transferts, OneDeclarantAlone) {
    Retour retour = Foyer("M Fm=3 1AJ=1001 1BJ=2001 1CJ=301 2DC=-7 5XC=-2147483647 5ZC=-2147483647");
    retour.TI("5HC", 11)
        .TI("5IC", 13)
        .TIX("5JC", 15)
        .Quotient("1AJ", 4, 101)
        .Quotient("1BJ", 4, 103)
        .Quotient("2DC", 3, 5);
    kv::Saisie saisie = kv::LisSaisie(retour.Data());
    kv::Exceptionnels exceptionnels = kv::LisExceptionnels(retour.Data());
    kv::CasesEntree remplies = kv::BoitesRemplies(saisie);
    kv::RetourDUnDeclarant(kv::entree::D2, saisie, remplies, exceptionnels);
    EXPECT_EQ(remplies.mots, kv::BoitesRemplies(saisie).mots);
    Attend(saisie.entrees, {{"M", 1}, {"Fm", 3}, {"1AJ", 0}, {"1BJ", 2001}, {"1CJ", 151}, {"2DC", -4}});
    Attend(saisie.entrees, {{"5XC", 0}, {"5ZC", nNonSaisi}});
    EXPECT_EQ(saisie.TI["5HC"], 0);
    EXPECT_EQ(saisie.TI["5IC"], 13);
    EXPECT_EQ(saisie.TIX["5JC"], 8);
    EXPECT_EQ(exceptionnels.De("1AJ"), 0);
    EXPECT_EQ(exceptionnels.De("1BJ"), 103);
    EXPECT_EQ(exceptionnels.De("2DC", 3), 3);
}

TEST(Transferts, TotalsOfForeignIncome) {
    Retour retour = Foyer("5TA=10 5UF=20 1AC=5 1AE=6 1AH=7 1BC=9 1BE=-2147483647");
    retour.TI("5HC", 100).TI("5HI", nNonSaisi).TK("5AK", 50).TK("5AL", nNonSaisi);
    const kv::Saisie saisie = kv::LisSaisie(retour.Data());
    EXPECT_EQ(kv::TotalTI(saisie), 100);
    EXPECT_EQ(kv::TotalTK(saisie), 50);
    EXPECT_EQ(kv::TotalEtranger(saisie, false), 207);  // 100 + 50 + 10 + 20 + 5 + 6 + 7 + 9
    EXPECT_EQ(kv::TotalEtranger(saisie, true), 157);
    EXPECT_EQ(kv::IndicateurEtranger(saisie), 116);  // 100 + 0 (5 - 6) + 7 + 9
}

}  // namespace
