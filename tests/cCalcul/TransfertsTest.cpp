#include "Calcul/cCalcul/Transferts.h"

#include <algorithm>
#include <array>
#include <sstream>

#include "tests/Hote.h"

namespace {

using Montants = std::array<std::int32_t, 3>;

TEST(Transferts, UnsetBoxesCountAsNothing) {
    const auto data = Hote("1AJ=unset 1AK=-5 5XC=unset 8TI=unset ti.5HC=unset tk.5AK=unset tix.5HC=3");
    const kv::Saisie saisie = kv::LisSaisie(*data);
    Attend(saisie.entrees, "1AJ=0 1AK=-5 8TI=0");
    Attend(saisie.entrees, "5XC=unset");  // but the start years of the farms
    EXPECT_EQ(saisie.TI["5HC"] + saisie.TK["5AK"], 0);
    EXPECT_EQ(saisie.TIX["5HC"], 3);
}

TEST(Transferts, DetailedSalariesAndPensionsAreFolded) {
    const auto data = Hote("1AJ=1 1AG=20 1NX=300 1TP=4000 1PM=50000 1BG=7 1UP=80 1FJ=5 1FG=60 1AS=2 1AM=30 1FM=4");
    kv::Saisie saisie = kv::LisSaisie(*data);
    kv::Replie(saisie);
    Attend(saisie.entrees, "1AJ=54321 1BJ=87 1FJ=65 1AS=32 1FS=4 1AG=20");
}

TEST(Transferts, ForeignIncomeAtTheEffectiveRate) {
    const auto data = Hote(
        "5HC=200 5IF=10 5KC=40 2DC=9 5HL=60 1AW=500 1AC=5000 1AE=400 1AH=700 1BC=-50 1BH=30 1CC=300 "
        "ti.5HC=1000 tix.5HC=300 tiy.5HC=100 ti.5IF=50 tix.5IF=20 ti.5KC=100 tix.5KC=300 ti.2DC=500 "
        "ti.2TR=500 ti.2TS=500 ti.5HL=unset ti.1AW=1000 tix.1AW=unset");
    kv::Saisie saisie = kv::LisSaisie(*data);
    const kv::ParPersonne bruts = kv::DeplaceTI(saisie);
    // 1000 - 300 - 100 = 600; a deficit counts negatively, 50 + 20 = 70; cut at 0. Dividends and interest stay apart.
    Attend(saisie.entrees, "5HC=800 5IF=80 5KC=40 5HL=60 1AW=1500");
    Attend(saisie.entrees, "2DC=9 2TR=0 2TS=0 1AJ=5000 1AK=400 1AS=700");
    // A negative exempt salary counts as none.
    Attend(saisie.entrees, "1BC=0 1BJ=0 1BS=30 1CJ=300");
    // 5000 + 700 + 600; 0 + 30 - 70; 300 + 1000.
    EXPECT_EQ(bruts.montant, (Montants{6300, -40, 1300}));
}

TEST(Transferts, ForeignIncomeWithACreditEqualToTheTax) {
    // The flat deduction of 10 % exceeds the expenses of the first (2000, 1500) and third (2000.5 rounded to 2001,
    // 2000) members, not those of the second (2000, 2000): only the second one's TKZ is taken off the row F.
    const auto data = Hote(
        "M 1AJ=20000 1AK=1500 1BJ=20000 1BK=2000 1CJ=20000 1CK=2000 1CF=5 1DJ=100 5HC=9000 2DC=300 "
        "tk.1AF=3000 tkz.1AF=500 tk.1BF=3000 tkz.1BF=500 tk.1CF=3000 tkz.1CF=500 tk.1BL=900 tkz.1BL=200 "
        "tk.1CL=100 tkz.1CL=300 tk.1DF=unset tk.2DC=1000 tk.5AK=400 tkz.5AK=100");
    kv::Saisie saisie = kv::LisSaisie(*data);
    kv::DeplaceTK(saisie);
    Attend(saisie.entrees, "M=1 1AJ=0 1BJ=0 1CJ=0 1AF=3000 1BF=2500 1CF=3000");
    Attend(saisie.entrees, "1BL=700 1CL=0 1DF=0 2DC=0");
    Attend(saisie.entrees, "5HC=300");  // the gains of 5AK
}

TEST(Transferts, BusinessBoxesTakeTheGainsOfTheirOwnKindAndPerson) {
    std::istringstream paires(
        "5HC 5AK 5HI 5AL 5IC 5BK 5II 5BL 5JC 5CK 5JI 5CL 5KC 5DF 5KI 5DG 5LC 5EF 5LI 5EG 5MC 5FF 5MI 5FG 5NA 5EY 5NK "
        "5EZ 5OA 5FY 5OK 5FZ 5PA 5GY 5PK 5GZ 5NC 5UR 5NI 5US 5OC 5VR 5OI 5VS 5PC 5WR 5PI 5WS 5QC 5XJ 5QI 5XK 5RC 5YJ "
        "5RI 5YK 5SC 5ZJ 5SI 5ZK 5JG 5XS 5SN 5XX 5RF 5YS 5NS 5YX 5SF 5ZS 5OS 5ZX 4BA 4BL 4BE 4BK");
    for (std::string premiere, seconde; paires >> premiere >> seconde;) {
        kv::Saisie saisie = kv::LisSaisie(*Hote(premiere + "=5 " + seconde + "=7 tk." + seconde + "=300"));
        kv::DeplaceTK(saisie);
        EXPECT_EQ(saisie[CaseEntree::Numero(kv::NumeroEntree(premiere))], 300) << premiere;
    }
}

TEST(Transferts, AutoEntrepreneurAndProspection) {
    const auto data = Hote("5TB=800 5KP=1000 5UA=-100 5LO=5 5VE=unset 5JQ=6 5VI=70 5SI=30 5TF=10 5UI=-20");
    kv::Saisie saisie = kv::LisSaisie(*data);
    EXPECT_EQ(kv::DeplaceAutoEntr(saisie), 800);  // only positive amounts move
    Attend(saisie.entrees, "5KP=1800 5LO=5 5JQ=6 5SI=30");
    EXPECT_EQ(kv::DeplaceProspection(saisie), 80);
    Attend(saisie.entrees, "5SI=100 5QC=10 5RI=0");
    EXPECT_EQ(kv::TotalProspection(saisie).montant, (Montants{10, -20, 70}));
}

TEST(Transferts, ExceptionalIncomeGoesIntoItsBoxes) {
    const auto data = Hote(
        "1AJ=5 quotient.4.1AJ=1000 quotient.0.1AJ=10 quotient.3.1AJ=100 quotient.2.AAQ=20 quotient.4.BAQ=30 "
        "quotient.3.RAQ=-40 quotient.2.2TR=unset");
    kv::Saisie saisie = kv::LisSaisie(*data);
    const kv::Exceptionnels exceptionnels = kv::LisExceptionnels(*data);
    kv::DeplaceExceptionnels(saisie, exceptionnels);
    Attend(saisie.entrees, "1AJ=1115 1AS=20 1BS=30 4BA=-40");
    Attend(saisie.entrees, "AAQ=0 BAQ=0 RAQ=0 2TR=0");
    // 1000 - 250; 10 - 2.5 rounded to 3, the coefficient 0 standing for 4; 100 - 33.
    EXPECT_EQ(exceptionnels.Excedent("1AJ"), 750 + 7 + 67);
}

// A box of the household as it is, one of each declarant, one of a dependant, amounts that are halved away from zero.
TEST(Transferts, OneDeclarantAlone) {
    const auto data = Hote(
        "M Fm=3 1AJ=1001 1BJ=2001 1CJ=301 2DC=-7 5XC=unset 5ZC=unset ti.5HC=11 ti.5IC=13 tix.5JC=15 "
        "quotient.4.1AJ=101 quotient.4.1BJ=103 quotient.3.2DC=5");
    kv::Saisie saisie = kv::LisSaisie(*data);
    kv::Exceptionnels exceptionnels = kv::LisExceptionnels(*data);
    kv::CasesEntree remplies = kv::BoitesRemplies(saisie);
    kv::RetourDUnDeclarant(kv::entree::D2, saisie, remplies, exceptionnels);
    EXPECT_EQ(remplies.mots, kv::BoitesRemplies(saisie).mots);
    Attend(saisie.entrees, "M=1 Fm=3 1AJ=0 1BJ=2001 1CJ=151 2DC=-4");
    Attend(saisie.entrees, "5XC=0 5ZC=unset");
    EXPECT_EQ(saisie.TI["5HC"], 0);
    EXPECT_EQ(saisie.TI["5IC"], 13);
    EXPECT_EQ(saisie.TIX["5JC"], 8);
    EXPECT_EQ(exceptionnels.De("1AJ"), 0);
    EXPECT_EQ(exceptionnels.De("1BJ"), 103);
    EXPECT_EQ(exceptionnels.De("2DC", 3), 3);
}

TEST(Transferts, TotalsOfForeignIncome) {
    const auto data =
        Hote("5TA=10 5UF=20 1AC=5 1AE=6 1AH=7 1BC=9 1BE=unset ti.5HC=100 ti.5HI=unset tk.5AK=50 tk.5AL=unset");
    const kv::Saisie saisie = kv::LisSaisie(*data);
    EXPECT_EQ(kv::TotalTI(saisie), 100);
    EXPECT_EQ(kv::TotalTK(saisie), 50);
    EXPECT_EQ(kv::TotalEtranger(saisie, false), 207);  // 100 + 50 + 10 + 20 + 5 + 6 + 7 + 9
    EXPECT_EQ(kv::TotalEtranger(saisie, true), 157);
    EXPECT_EQ(kv::IndicateurEtranger(saisie), 116);  // 100 + 0 (5 - 6) + 7 + 9
}

}  // namespace
