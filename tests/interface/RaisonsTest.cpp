#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/Notation.h"

// The reasons that explanations give, in words: trees of households worked out by hand.

namespace {

using Noeud = nlohmann::json;

// A node on one line: "- 7870 part de l'impôt = 75 % de 10493 [CGI art. 197 I-4 a]", by its box where it has one.
void Ecrit(std::vector<std::string>& lignes, const Noeud& noeud) {
    const std::string role = noeud.value("role", ""), boite = noeud.value("box", ""),
                      formule = noeud.value("formula", "");
    std::ostringstream ligne;
    if (!role.empty()) ligne << role << ": ";
    if (role.empty() && noeud.contains("sign")) ligne << (noeud["sign"] == 1 ? "+ " : "- ");
    ligne << noeud["value"] << ' ' << (boite.empty() ? noeud["label"].get<std::string>() : boite);
    if (noeud.contains("column")) ligne << ".c" << noeud["column"];
    if (!formule.empty()) ligne << " = " << formule;
    for (const char* suite : {"law", "run"})
        if (noeud.contains(suite)) ligne << " [" << noeud[suite].get<std::string>() << ']';
    lignes.push_back(ligne.str());
    for (const Noeud& terme : noeud.value("terms", Noeud::array())) Ecrit(lignes, terme);
}

// Each expected line is in the tree, in this order.
void Controle(const kv::Return& r, const char* figure, const char* attendu) {
    std::vector<std::string> lignes;
    Ecrit(lignes, Noeud::parse(r.explain(figure, -1)));
    std::istringstream attendues(attendu);
    auto ici = lignes.begin();
    for (std::string ligne; std::getline(attendues, ligne);) {
        const auto trouvee = std::find(ici, lignes.end(), ligne);
        std::string reste;
        for (auto l = ici; l != lignes.end(); ++l) reste += *l + '\n';
        ASSERT_NE(trouvee, lignes.end()) << "no line  " << ligne << "\namong\n" << reste;
        ici = trouvee + 1;
    }
}

struct Raison {
    const char* titre;
    const char* boites;
    const char* figure;
    const char* attendu;
};

class Raisons : public testing::TestWithParam<Raison> {};

TEST_P(Raisons, AreThoseOfTheRule) {
    const Raison& raison = GetParam();
    Controle(Foyer(raison.boites), raison.figure, raison.attendu);
}

// clang-format off
const Raison foyer[] = {
    {"widow with a child", "V Fm", "F_NB_PARTS_ALL",
     "250 F_NB_PARTS_ALL = 100 + 50 + 100 [CGI art. 194 I]\n"
     "+ 50 enfants et autres personnes à charge (centièmes) = 0.5 part chacun [CGI art. 194 I]\n"
     "+ 100 veuf avec personnes à charge (centièmes) [CGI art. 194 I]"},
    {"disabled, alone, who brought up a child: one ground", "C P L", "F_NB_PARTS_ALL",
     "150 F_NB_PARTS_ALL = 100 + 50 [CGI art. 194 I]\n"
     "+ 50 invalidité d'un déclarant (centièmes) [CGI art. 195]"},
    {"three children, one of them disabled", "M Fm=3 Gm", "F_NB_PARTS_ALL",
     "450 F_NB_PARTS_ALL = 200 + 200 + 50 [CGI art. 194 I]\n"
     "+ 200 enfants et autres personnes à charge (centièmes) = 0.5 part chacun, 1 à partir du 3e [CGI art. 194 I]\n"
     "+ 50 enfants et personnes à charge invalides (centièmes) [CGI art. 195-2]"},
    {"alone with one child in alternating residence", "C T Hm 1AJ=90000", "I_IMP_RETENU",
     "17714 I_IMP_RETENU = impôt des parts des déclarants, moins l'avantage maximal des autres : 19515 - 1801\n"
     "- 1801 I_PLAF_FAM = parent isolé : 3602 x 50 / 100 [CGI art. 197 I-2]"},
    {"alone with two children", "C T Fm=2 1AJ=90000", "I_PLAF_FAM",
     "5129 I_PLAF_FAM = parent isolé, pour la première part : 3602 + 1527 [CGI art. 197 I-2]"},
    {"alone, who brought up a child", "D L 1AJ=90000", "I_PLAF_FAM",
     "912 I_PLAF_FAM = personne seule qui a élevé un enfant [CGI art. 197 I-2]"},
    {"disabled declarant of a couple", "M P Fm 1AJ=90000", "I_NEUT_PLAF_FAM",
     "1523 I_NEUT_PLAF_FAM = 1523 x 10 / 10\n"
     "amount: 1523 de plus par demi-part = 3050 - 1527"},
};

const Raison impot[] = {
    // 54 000: 14 % of 17 279 and 30 % of 26 914 are 10 493; 75 % of that is far above 1 177.
    {"tax too high for the relief", "1AJ=60000", "U_DECOTE",
     "0 U_DECOTE = 1177 - 7870 + 6693 [CGI art. 197 I-4 a]\n"
     "- 7870 part de l'impôt = 75 % de 10493 [CGI art. 197 I-4 a]\n"
     "+ 6693 pas en dessous de 0"},
    {"relief beyond the tax", "1AJ=11000", "U_DECOTE",
     "13 U_DECOTE = 1177 - 10 - 1154 [CGI art. 197 I-4 a]\n"
     "- 1154 au-delà de l'impôt"},
    {"relief abroad", "REM 1AJ=12000", "U_DECOTE",
     "0 U_DECOTE = réservée aux contribuables domiciliés en France"},
    {"minimum rate abroad", "REM 1AJ=12000", "IMPOT_TM",
     "+ 2160 IMPOT_TM_RETENU = taux minimum des non-résidents : 20 % de 10800 [CGI art. 197 A]"},
    // 14 % of 8 193 on 18 000 of worldwide income: 6.4 %.
    {"worldwide rate abroad", "REM 1AJ=20000 8TM=18000", "TOT_IMPOT_DOM",
     "+ 1147 IMPOT_TM_RETENU = taux moyen des revenus mondiaux, au-dessous du taux minimum : 1147 x 18000 / 18000 [CGI "
     "art. 197 A]"},
    {"French rate above the minimum", "REM 1AJ=200000", "IMPOT_TM",
     "+ 64617 IMPOT_TM_RETENU = taux moyen des revenus français, au-dessus du taux minimum [CGI art. 197 A]"},
    // 19 800 bear 1 399, less 128: 20 % of 1 271, for 905 of the 2 020 between the two incomes.
    {"modest income, in part", "1AJ=22000", "U_CLASSES_MOYENNES",
     "114 U_CLASSES_MOYENNES = 254 x 905 / 2020 [CGI art. 197 I-4 b]\n"
     "amount: 254 réduction entière = 20 % de 1271 [CGI art. 197 I-4 b]\n"
     "numerator: 905 ce qui manque au revenu de référence = 20705 - 19800"},
    {"income not modest", "1AJ=60000", "U_CLASSES_MOYENNES",
     "0 U_CLASSES_MOYENNES = 2099 - 2099 [CGI art. 197 I-4 b]\n"
     "- 2099 au-delà du plafond de revenu de 20705"},
    // 2 x 3 % of what (887 695 - 110 000) / 2 + 110 000 exceeds 250 000 by.
    {"exceptional year", "1AJ=900000 CE15=100000 CE16=120000", "CONT_HAUT_REV",
     "14930 CONT_HAUT_REV = année exceptionnelle : 2 x 7465 [CGI art. 223 sexies II]\n"
     "+ 7465 tranche au-dessus de 250000 = 3 % de 248848 [CGI art. 223 sexies I]\n"
     "income: 498848 revenu lissé = 110000 + 388848\n"
     "+ 100000 CE15\n+ 120000 CE16\n"
     "amount: 777695 revenu de l'année au-delà de cette moyenne = 887695 - 110000"},
    {"no high income", "1AJ=90000", "CONT_HAUT_REV",
     "0 CONT_HAUT_REV = revenu de référence de 81000, pas au-dessus de 250000 [CGI art. 223 sexies I]"},
    {"overseas abatement at its ceiling", "GMR 1AJ=90000", "TOT_IMPOT_DOM",
     "- 5100 U_DECOTE_DOM_GMR = plafond [CGI art. 197 I-3]"},
    {"overseas gains once the ceiling is used up", "GMR 1AJ=90000 5HE=50000", "CO_TNS_MGR",
     "6400 CO_TNS_MGR = l'abattement sur l'impôt a pris tout le plafond de 5100 [CGI art. 197 I-3]\n"
     "+ 6400 au taux entier = 12.8 % de 50000 [CGI art. 39 quindecies]"},
    {"pension in capital", "1AT=10000", "CO_PENSIONS",
     "+ 675 pension en capital = 7.5 % de 9000 [CGI art. 163 bis II]\n"
     "base: 9000 après abattement de 10 % = 90 % de 10000"},
    {"insurance agent", "5QM=150000", "CO_AGENTS_ASSUR",
     "1938 CO_AGENTS_ASSUR = 1680 + 258 [CGI art. 151 septies A]\n"
     "+ 1680 tranche au-dessus de 23000 = 2 % de 84000 [CGI art. 151 septies A]\n"
     "+ 258 tranche au-dessus de 107000 = 0.6 % de 43000 [CGI art. 151 septies A]"},
    // 45 000 bear 7 793, of which 27 / 45.
    {"foreign salaries", "1AJ=30000 1AC=20000", "IMPOT_TX_EFFECTIF",
     "4676 IMPOT_TX_EFFECTIF = 7793 x 27000 / 45000\n"
     "amount: 7793 TOT_IMPOT [calcul sur les revenus mondiaux]\n"
     "+ 50000 1AJ = 30000 + 20000\n+ 30000 1AJ\n+ 20000 1AC\n"
     "numerator: 27000 revenu net français = 45000 - 18000"},
};

const Raison revenus[] = {
    {"actual expenses of one dependant", "Fm=2 1CJ=20000 1CK=3000 1DJ=5000", "RN_SAL_DED_10",
     "+ 3500 RN_SAL_DED_10.c3 = 3000 + 500 [CGI art. 83-3°]\n"
     "+ 3000 1CK = frais réels, plus élevés que le forfait de 2000\n"
     "+ 500 déduction forfaitaire, personne à charge 2 = 10 % de 5000 [CGI art. 83-3°]"},
    {"actual expenses that equal the flat ones", "1AJ=50000 1AK=5000", "RN_SAL_DED_10.c1",
     "5000 RN_SAL_DED_10.c1 = 10 % de 50000 [CGI art. 83-3°]"},
    {"actual expenses that equal the ceiling", "1AJ=150000 1AK=12305", "RN_SAL_DED_10.c1",
     "12305 RN_SAL_DED_10.c1 = le moindre de 15000 et 12305 [CGI art. 83-3°]\n"
     "among: 15000 déduction forfaitaire, déclarant 1 = 10 % de 150000 [CGI art. 83-3°]\n"
     "among: 12305 salaires.deduction.plafond [CGI art. 83-3°]"},
    {"small salary", "1AJ=3000", "RN_SAL_DED_10.c1",
     "430 RN_SAL_DED_10.c1 = le plus élevé de 300 et 430 [CGI art. 83-3°]"},
    {"share gains", "1AJ=50000 1TT=10000", "RD_GAINS",
     "9000 RD_GAINS = 10000 - 1000\n"
     "+ 1000 RD_GAINS_2_Ded.c1 = 6000 x 10000 / 60000 [CGI art. 83-3°]"},
    {"pensions that share a ceiling, one at the minimum", "M 1AS=50000 1BS=2000", "RN_PEN_ABAT",
     "+ 3369 RN_PEN_ABAT.c1 = 3369 x 50000 / 50000 [CGI art. 158-5 a]\n"
     "amount: 3369 plafond du foyer, moins les abattements minimums = 3752 - 383 [CGI art. 158-5 a]\n"
     "+ 383 RN_PEN_ABAT.c2 = le plus élevé de 200 et 383 [CGI art. 158-5 a]"},
    {"property deficit", "1AJ=50000 4BE=2000 4BB=9000", "RD_FON",
     "0 RD_FON = le déficit foncier de l'année se reporte : 2000 - 600 - 9000 + 7600\n"
     "- 600 NP1_FON_ANN_BE_ABAT = 30 % de 2000 [CGI art. 32]"},
    {"life insurance beyond its allowance", "2CH=9000", "RD_MOB",
     "4400 RD_MOB = 9000 - 4600\n"
     "- 4600 RD_MOB_ABAT = plafond de 4600 [CGI art. 125-0 A]"},
    {"maintenance of several kinds", "1AJ=40000 6GP=3000 6GI=6000 6EL=9000", "C_REDUC",
     "+ 5795 C_ENFANTS_1 = 9000 - 3205 [CGI art. 156 II-2°]\n"
     "- 3205 au-delà du plafond de 5795 par enfant\n"
     "+ 5795 C_ENFANTS_2 = 6000 + 1500 - 1705 [CGI art. 156 II-2°]\n"
     "+ 3750 C_JUSTICE = 3000 + 750 [CGI art. 156 II-2°]"},
    {"charge beyond the income", "1AJ=3000 6DE=4000", "C_CSG",
     "2570 C_CSG = 4000 - 1430\n- 1430 au-delà du revenu"},
    {"micro-firm of two kinds", "5KO=10000 5KP=4000", "RR_BIC_P_MIC",
     "- 9100 RR_BIC_P_MIC_ABAT.c1 = 7100 + 2000\n"
     "+ 7100 abattement sur les ventes = 71 % de 10000 [CGI art. 50-0]\n"
     "+ 2000 abattement sur les prestations = 50 % de 4000 [CGI art. 50-0]"},
    // Furnished letting has two thirds of the allowance on 3 000.
    {"services and furnished letting", "5NP=1000 5ND=2000", "RR_BIC_NP_LM_MIC_ABAT.c1",
     "1000 RR_BIC_NP_LM_MIC_ABAT.c1 = 1500 x 2000 / 3000 [CGI art. 50-0]"},
    {"micro-farm", "5XB=30000 5XE=20000 5XF=10000 5XC=2010", "RR_BA_MICRO_REV_IMP",
     "+ 20000 RR_BA_MICRO_MOY.c1 = 60000 / 3 [CGI art. 64 bis]\n"
     "- 17400 RR_BA_MICRO_ABAT.c1 = 87 % de 20000 [CGI art. 64 bis]"},
    {"elderly, and disabled", "M AAF1=19400101 AAF2=19700101 Fp 1AS=16000", "A_AGEES",
     "4752 A_AGEES = 2376 x 2\n"
     "+ 1 déclarant 1 : 65 ans ou plus, étant né en 1940\n"
     "+ 1 déclarant 2 : invalide"},
};

const Raison avantages[] = {
    {"union dues beyond 1 % of the salary", "1AJ=20000 7AC=500", "D_CREDIT",
     "+ 132 D_CREDIT_7AC_7AE_7AG = 66 % de 200 [CGI art. 199 quater C]\n"
     "base: 200 cotisations retenues = 500 - 300\n"
     "- 300 au-delà de 1 % des salaires et pensions, 7AC"},
    {"union dues beside actual expenses", "1AJ=30000 1AS=20000 1AK=6000 7AC=400", "D_CREDIT",
     "base: 200 cotisations retenues = 400 - 200\n"
     "- 200 au-delà de 1 % des pensions, des frais réels étant déduits, 7AC"},
    {"childcare beyond the ceiling of one child", "M 1AJ=60000 Fm=2 7GA=3000 7GB=1000",
     "D_FRAIS_GARDE_ACHARGE",
     "base: 3300 D_FRAIS_GARDE_ACHARGE.c2 = 3000 + 1000 - 700 [CGI art. 200 quater B]\n"
     "- 700 au-delà du plafond de 2300 par enfant"},
    {"energy works beyond what is left of their ceiling", "M 1AJ=60000 7CB=12000 7AD=9000",
     "D_CR_7AD", "base: 4000 D_CR_7AD.c2 = 9000 - 5000\n- 5000 non retenu"},
    {"gains of which the taxation was deferred", "1AJ=85000 3WI=20000 3VG=1000", "S_CONTR_SOC.c2",
     "+ 99 CSG de l'année = 9.9 % de 1000 [CSS art. L136-8]\n"
     "+ 1640 CSG de l'année des gains = 8.2 % de 20000 [CSS art. L136-8]"},
    {"rental investment over nine years", "1AJ=60000 7QD=100000", "REDUCTIONS",
     "+ 3222 U_REDUC_7QD = 29 % de 11111 [CGI art. 199 novovicies]\n"
     "base: 11111 U_REDUC_7QD.c2 = répartie sur 9 ans : 100000 / 9"},
    {"rental investment beyond its ceiling", "1AJ=90000 7QD=400000", "U_REDUC_7QD",
     "base: 33333 U_REDUC_7QD.c2 = répartie sur 9 ans : 300000 / 9\n"
     "amount: 300000 base à répartir = 400000 - 100000\n"
     "- 100000 au-delà du plafond de 300000"},
    {"donations beyond a part of the income", "1AJ=40000 7UF=9000", "U_DONS_OEUVRES_N",
     "4752 U_DONS_OEUVRES_N = 66 % de 7200 [CGI art. 200]\n"
     "- 1800 au-delà de ce qui restait du plafond, 7200"},
    // 1 271 of tax after the relief, 114 of them for the modest income.
    {"donations beyond the tax", "1AJ=22000 7UF=3000", "REDUCTIONS",
     "+ 1157 U_DONS_OEUVRES_N = 1980 - 823 [CGI art. 200]\n"
     "- 823 non imputé : il ne restait que 1157 d'impôt"},
    {"flat levy on life insurance", "1AJ=30000 2DH=6000", "D_LIB",
     "345 D_LIB = 7.5 % de 4600 [CGI art. 125-0 A]\n"
     "- 1400 au-delà de ce qui restait de l'abattement de 4600"},
    // 695 less 656 and a fifth of the rest.
    {"small tax", "1AJ=16412", nullptr,
     "below: 0 TOT_PAYER = 31 - 31\n"
     "- 31 TOT_N_RECOUVRE = moins de 61 avant crédits d'impôt [CGI art. 1657-1 bis]\n"
     "threshold: 61 recouvrement.impot [CGI art. 1657-1 bis]"},
    {"small refund, small levies", "1AJ=12000 2CK=5 2TR=100", nullptr,
     "+ 5 TOT_N_REST = moins de 8 [CGI art. 1965 L]\n"
     "below: 0 S_A_PAYER = 18 - 18\n"
     "- 18 S_NON_RECOUVRE = moins de 61 [CGI art. 1657-1 bis]"},
};
// clang-format on

std::string Titre(const testing::TestParamInfo<Raison>& info) {
    std::string titre = info.param.titre;
    for (char& c : titre)
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
    return titre;
}
INSTANTIATE_TEST_SUITE_P(Household, Raisons, testing::ValuesIn(foyer), Titre);
INSTANTIATE_TEST_SUITE_P(Tax, Raisons, testing::ValuesIn(impot), Titre);
INSTANTIATE_TEST_SUITE_P(Income, Raisons, testing::ValuesIn(revenus), Titre);
INSTANTIATE_TEST_SUITE_P(Advantages, Raisons, testing::ValuesIn(avantages), Titre);

TEST(RaisonsDesOptions, SayWhichOneIsDearer) {
    // Salaries alone: both options cost the same.
    Controle(Foyer("1AJ=40000 AVA launch=options"), nullptr,
             "option: 5093 prélèvement forfaitaire unique [option comparée, celle qui est appliquée]\n"
             "option: 5093 barème progressif [option comparée, même montant]");
    // Each option reads its own boxes, whatever stands in the others.
    const std::string deuxFois = "1AJ=50000 2CH=5000 2CH1=5000 BAR";
    Controle(Foyer(deuxFois + " launch=options"), "RD_MOB",
             "+ 5000 2CH1\n- 4600 RD_MOB_ABAT = plafond de 4600 [CGI art. 125-0 A]\namong: 5000 base\n+ 5000 2CH1");
    Controle(Foyer(deuxFois), "RD_MOB",
             "+ 5000 2CH\n- 4600 RD_MOB_ABAT = plafond de 4600 [CGI art. 125-0 A]\namong: 5000 2CH");
}

// ---- Differences.

Noeud Difference(const kv::Return& avant, const kv::Return& apres) {
    return Noeud::parse(apres.explain_difference(avant, nullptr, -1));
}

void ControleDifference(const Noeud& noeud) {
    SCOPED_TRACE(noeud.value("box", noeud["label"].get<std::string>()));
    const Noeud termes = noeud.value("terms", Noeud::array());
    const std::string regle = noeud.value("rule", "");
    if ((regle == "sum" || regle == "scale") && !termes.empty()) {
        int64_t somme = 0;
        for (const Noeud& terme : termes) {
            if (terme.contains("role")) continue;
            const std::string seul = terme.value("in", "");
            const int64_t avant = seul == "after" ? 0 : terme.at("before").get<int64_t>();
            const int64_t apres = seul == "before" ? 0 : terme.at("after").get<int64_t>();
            somme += terme["sign"].get<int64_t>() * (apres - avant);
        }
        EXPECT_EQ(static_cast<int32_t>(somme),
                  static_cast<int32_t>(noeud["after"].get<int64_t>() - noeud["before"].get<int64_t>()));
    }
    for (const Noeud& terme : termes) ControleDifference(terme);
}

// What the two returns have in common is not said to change, whatever the way to the net amount: to be paid or
// refunded, capped or not, at the effective rate or not.
TEST(RaisonsDesDifferences, AreWhatChanges) {
    const kv::Return simple = Foyer("C 1AJ=20000"), aide = Foyer("C 1AJ=20000 7DB=3000");
    Noeud d = Difference(simple, aide);
    EXPECT_EQ(d["before"], 664);  // 1 147, less 317 and a fifth of the rest
    EXPECT_EQ(d["after"], 664 - 1500);
    ASSERT_EQ(d["terms"].size(), 1U);
    EXPECT_EQ(d["terms"][0]["box"], "D_CREDIT");
    EXPECT_EQ(d.dump().find("1AJ"), std::string::npos);

    // The box that changes is there though one of the two pays nothing, or pays in another way.
    const auto nomme = [&](const char* a, const char* b, const char* boite) {
        const Noeud difference = Difference(Foyer(a), Foyer(b));
        ControleDifference(difference);
        EXPECT_NE(difference.dump().find(std::string("\"box\":\"") + boite + '"'), std::string::npos) << boite;
    };
    nomme("C 1AJ=25000 6GU=12000", "C 1AJ=25000", "6GU");
    nomme("M 1AJ=60000 7CF=40000", "M 1AJ=60000", "7CF");
    nomme("M 1AJ=30000 4BC=5000", "M 1AJ=30000 4BA=5000", "4BC");
    nomme("M 1AJ=50000 1AC=20000", "M 1AJ=50000", "1AC");
    nomme("REM 1AJ=20000 8TM=60000", "REM 1AJ=20000 8TM=18000", "8TM");
    nomme("2CK=300 7DB=400", "2CK=500", "7DB");  // 500 euros refunded both times

    const std::string couple = "M Fm=2 1AJ=42000";
    kv::Return plafonne = Foyer(couple), libre = Foyer(couple);
    plafonne.set("1BJ", 31000), libre.set("1BJ", 16000);
    d = Difference(plafonne, libre);
    ControleDifference(d);
    while (d["box"] != "I_BAREME") d = Noeud(d["terms"][0]);
    EXPECT_EQ(d["terms"][0]["box"], "I_IMP_RETENU");
    EXPECT_EQ(d["terms"][0]["in"], "before");
    EXPECT_EQ(d["terms"][0]["after"], 3189);  // 14 % of 52 200 less three times 9 807
    EXPECT_EQ(d["terms"][1]["box"], "I_IMP_NORM");
    EXPECT_EQ(d["terms"][1]["before"], 5079);  // 14 % of 65 700 less as much

    const char* const etapes[] = {"1AC=20000", "1AK=9000",  "2TR=600", "7DB=9000",           "REM",
                                  "GMR",       "4BB=30000", "8TF=50",  "quotient.4.1AJ=8000"};
    for (const std::string plus : etapes) {
        SCOPED_TRACE(plus);
        const std::string boites = couple + ' ' + plus;
        ControleDifference(Difference(Foyer(couple), Foyer(boites)));
        ControleDifference(Difference(Foyer(boites), Foyer(couple)));
    }
}

}  // namespace
