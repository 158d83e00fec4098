#include "tests/Cas.h"

namespace {

// Amounts entered in the boxes of one person, and what the category makes of them.
struct Categorie {
    const char* nom;
    struct Montant {
        CaseEntree premier, second, charges;
        std::int32_t montant;

        CaseEntree Box(std::size_t personne) const {
            return personne == 0 ? premier : personne == 1 ? second : charges;
        }
    };
    std::vector<Montant> montants;
    std::vector<Attendu> lignes;
    std::int32_t brut, impot;  // with 60 000 of interest, for a couple
};

// clang-format off
const Categorie categories[] = {
    // Average (12000 + 6000 + 3000) / 2 = 10500, allowances (10440 + 5220) / 2 = 7830.
    {"farm",
     {{"5HC", "5IC", "5JC", 10000}, {"5HF", "5IF", "5JF", 2000}, {"5HI", "5II", "5JI", 4000},
      {"5HL", "5IL", "5JL", 1000}, {"5HW", "5IW", "5JW", 500}, {"5HD", "5ID", "5JD", 300}, {"5XO", "5YO", "5ZO", 200},
      {"5XB", "5YB", "5ZB", 12000}, {"5XE", "5YE", "5ZE", 6000}, {"5XD", "5YD", "5ZD", 3000},
      {"5XC", "5YC", "5ZC", 2016}},
     {{"RR_BA_AVEC_CGA", 8000}, {"RR_BA_SANS_CGA", 3000}, {"RR_BA_MAJO", 750}, {"RR_BA_MICRO_REV_IMP", 2670},
      {"RR_BA", 15020}}, 75020, 11093},
    {"farm profits at the marginal rate: outside the gross income",
     {{"5XT", "5XU", "5JCM", 1000}, {"5XV", "5XW", "5JIM", 600}},
     {{"RR_BAM_AVEC_CGA", 1000}, {"RR_BAM_SANS_CGA", 600}, {"RR_BAM_MAJO", 150}, {"RR_BAM", 1750}, {"TM_BA", 1750}},
     60000, 6587},
    // Micro: 2900 + 2000; 4900 + 150 - 50 + 4300 + 500 + 125.
    {"commercial, professional",
     {{"5KO", "5LO", "5MO", 10000}, {"5KP", "5LP", "5MP", 4000}, {"5KX", "5LX", "5MX", 150}, {"5KJ", "5LJ", "5MJ", 50},
      {"5KC", "5LC", "5MC", 5000}, {"5KF", "5LF", "5MF", 700}, {"5KI", "5LI", "5MI", 800}, {"5KL", "5LL", "5ML", 300}},
     {{"RR_BIC_P_MIC_ABAT", 9100}, {"RR_BIC_P_MIC", 4900}, {"RR_BIC_P_MAJO", 125}, {"RR_BIC_P", 9925}}, 69925, 9564},
    {"commercial, non-professional",
     {{"5NO", "5OO", "5PO", 10000}, {"5NP", "5OP", "5PP", 4000}, {"5NX", "5OX", "5PX", 150}, {"5IU", "5RZ", "5SZ", 50},
      {"5NC", "5OC", "5PC", 5000}, {"5NF", "5OF", "5PF", 700}, {"5NI", "5OI", "5PI", 800}, {"5NL", "5OL", "5PL", 300}},
     {{"RR_BIC_NP_MIC_ABAT", 9100}, {"RR_BIC_NP_MIC", 4900}, {"RR_BIC_NP_MAJO", 125}, {"RR_BIC_NP", 9925}}, 69925,
     9564},
    // Sales 6000 - 4260, services 1600 - 800; 2540 + 2700 + 800 + 200.
    {"furnished letting",
     {{"5NG", "5OG", "5PG", 4000}, {"5NJ", "5OJ", "5PJ", 2000}, {"5ND", "5OD", "5PD", 1000}, {"5NW", "5OW", "5PW", 600},
      {"5NA", "5OA", "5PA", 3000}, {"5NY", "5OY", "5PY", 500}, {"5NM", "5OM", "5PM", 200}, {"5NK", "5OK", "5PK", 1000},
      {"5NZ", "5OZ", "5PZ", 300}, {"5KM", "5LM", "5MM", 100}},
     {{"RR_BIC_NP_LM_MIC", 2540}, {"RR_BIC_NP_MIC", 0}, {"RR_BIC_NP_LM_AVEC_CGA", 2700}, {"RR_BIC_NP_LM_SANS_CGA", 800},
      {"RR_BIC_NP_LM_MAJO", 200}, {"RR_BIC_NP_LM", 6240}}, 66240, 8459},
    // 6600 + 150 - 50 + 4300 + 500 + 125.
    {"non-commercial, professional",
     {{"5HQ", "5IQ", "5JQ", 10000}, {"5HV", "5IV", "5JV", 150}, {"5KZ", "5LZ", "5MZ", 50}, {"5QC", "5RC", "5SC", 5000},
      {"5QE", "5RE", "5SE", 700}, {"5QI", "5RI", "5SI", 800}, {"5QK", "5RK", "5SK", 300}},
     {{"RR_BNC_P_SPE", 6600}, {"RR_BNC_P_MAJO", 125}, {"RR_BNC_P", 11625}}, 71625, 10074},
    {"non-commercial, non-professional",
     {{"5KU", "5LU", "5MU", 10000}, {"5KY", "5LY", "5MY", 150}, {"5JU", "5LD", "5MD", 50}, {"5JG", "5RF", "5SF", 5000},
      {"5JJ", "5RG", "5SG", 700}, {"5SN", "5NS", "5OS", 800}, {"5SP", "5NU", "5OU", 300}},
     {{"RR_BNC_NP_SPE", 6600}, {"RR_BNC_NP_CON_MAJ", 125}, {"RR_BNC_NP", 11625}}, 71625, 10074},
    // Gains less losses by kind: 600, 200, 100, 0, 50; losses in excess: 300 + 30.
    {"long-term gains: at flat rates",
     {{"5HE", "5IE", "5JE", 101}, {"5KE", "5LE", "5ME", 202}, {"5NE", "5OE", "5PE", 303}, {"5QD", "5RD", "5SD", 404},
      {"5SO", "5NT", "5OT", 505}, {"5HX", "5IX", "5JX", 1000}, {"5XN", "5YN", "5ZN", 400}, {"5KQ", "5LQ", "5MQ", 500},
      {"5KR", "5LR", "5MR", 300}, {"5NQ", "5OQ", "5PQ", 100}, {"5NR", "5OR", "5PR", 400}, {"5HR", "5IR", "5JR", 50},
      {"5HS", "5IS", "5JS", 80}, {"5KV", "5LV", "5MV", 70}, {"5KW", "5LW", "5MW", 20}, {"5TC", "5UC", "5VC", 90}},
     {{"RF_PLUS_BA", 701}, {"RF_PLUS_BIC_P", 402}, {"RF_PLUS_BIC_NP", 303}, {"RF_PLUS_BNC_P", 404},
      {"RF_PLUS_BNC_NP", 555}, {"RF_PLUS", 2365}, {"NP1_MV_LT", 330}, {"RF_INVENTEURS", 90}}, 60000, 6587},
    {"exempt income",
     {{"5XA", "5YA", "5ZA", 1}, {"5KN", "5LN", "5MN", 2}, {"5NN", "5ON", "5PN", 4}, {"5HP", "5IP", "5JP", 8},
      {"5HB", "5IB", "5JB", 16}, {"5HH", "5IH", "5JH", 32}, {"5KB", "5LB", "5MB", 64}, {"5KH", "5LH", "5MH", 128},
      {"5NB", "5OB", "5PB", 256}, {"5NH", "5OH", "5PH", 512}, {"5QB", "5RB", "5SB", 1024}, {"5QH", "5RH", "5SH", 2048},
      {"5TH", "5UH", "5VH", 4096}, {"5HK", "5JK", "5LK", 8192}, {"5IK", "5KK", "5MK", 16384}},
     {{"RE_FORFAIT", 1}, {"RE_MICRO_BIC_PROF", 2}, {"RE_MICRO_BIC_NON_PROF", 4}, {"RE_SPE_BNC_PROF", 8}, {"RE_BA", 48},
      {"RE_BIC", 192}, {"RE_BICNP", 768}, {"RE_BNC", 3072}, {"RE_BNCNP", 28672}, {"REXONERE", 32767}}, 60000, 6587},
};
// clang-format on

// The same activity gives the same income and the same tax whoever carries it on; only the column moves.
TEST(NonSalaries, EachCategoryForEachPerson) {
    const auto calcule = [](const Categorie& c, std::initializer_list<std::size_t> personnes) {
        Retour retour{{"M", 1}, {"2TR", 60000}};
        for (const auto& m : c.montants)
            for (const std::size_t k : personnes) retour.Data().Entree[m.Box(k)] = m.montant;
        return retour.Calcule();
    };
    for (const Categorie& c : categories) {
        for (std::size_t k = 0; k < 3; ++k) {
            SCOPED_TRACE(c.nom + std::string(", person ") + std::to_string(k + 1));
            const auto r = calcule(c, {k});
            for (const Attendu& a : c.lignes) {
                SCOPED_TRACE(kv::sortie::noms[a.sortie.numero]);
                std::vector<std::int32_t> colonnes(3);
                colonnes[k] = a.valeur;
                EXPECT_EQ(r.Colonnes(a.sortie), colonnes);
                EXPECT_EQ(r[a.sortie], a.valeur);
            }
            EXPECT_EQ(r["TOT_R_BRUT"], c.brut);
            EXPECT_EQ(r["TOT_IMPOT"], c.impot);
        }
        SCOPED_TRACE(c.nom + std::string(", everyone"));
        const auto r = calcule(c, {0, 1, 2});
        for (const Attendu& a : c.lignes) EXPECT_EQ(r[a.sortie], 3 * a.valeur) << kv::sortie::noms[a.sortie.numero];
        EXPECT_EQ(r["TOT_R_BRUT"], 60000 + 3 * (c.brut - 60000));
    }
}

// CGI art. 50-0, 102 ter: the percentage, or the minimum of 305 shared between the two kinds of activity of a person.
TEST(NonSalaries, MicroAllowances) {
    // clang-format off
    Cas cas[] = {
        {"sales under the minimum", {{"5KO", 300}}, {{"RR_BIC_P_MIC_ABAT", 300}, {"RR_BIC_P_MIC", 0}}},
        // 400: 284 against 244. 100: 71 against 61.
        {"the percentage wins", {{"5KO", 400}, {"5NO", 100}}, {{"RR_BIC_P_MIC", 116}, {"RR_BIC_NP_MIC", 29}}},
        // Shares 183 and 122, each within its receipts.
        {"services, both exempted", {{"5KP", 120}, {"5NP", 80}}, {{"RR_BIC_P_MIC", 0}, {"RR_BIC_NP_MIC", 0}}},
        // 254.17 against 250, 50.83 against 50.
        {"services, shared minimum", {{"5KP", 500}, {"5NP", 100}}, {{"RR_BIC_P_MIC", 246}, {"RR_BIC_NP_MIC", 49}}},
        {"sales and services do not share", {{"5KO", 300}, {"5KP", 300}}, {{"RR_BIC_P_MIC", 0}}},
        // 203.33 against 204, 101.67 against 102.
        {"non-commercial", {{"5HQ", 600}, {"5KU", 300}}, {{"RR_BNC_P_SPE", 396}, {"RR_BNC_NP_SPE", 198}}},
        {"non-commercial, exempted", {{"5HQ", 200}, {"5KU", 100}}, {{"RR_BNC_P_SPE", 0}, {"RR_BNC_NP_SPE", 0}}},
        {"persons do not share", {{"5KO", 300}, {"5LO", 10000}},
         {{"RR_BIC_P_MIC_ABAT", 300, 1}, {"RR_BIC_P_MIC_ABAT", 7100, 2}, {"RR_BIC_P_MIC", 2900}}},
        // Sales 10000 - 7100, services 2200 - 1100. Letting: 9500 - 7100 x 8/10 - 1100 x 15/22 = 9500 - 5680 - 750.
        // Part that already bore the levies: 3000 - 7100 x 3/10.
        {"furnished letting among other sales",
         {{"5NO", 2000}, {"5NG", 5000}, {"5NJ", 3000}, {"5NP", 700}, {"5ND", 1000}, {"5NW", 500}},
         {{"RR_BIC_NP_LM_MIC_DECL", 9500}, {"RR_BIC_NP_LM_MIC_ABAT", 6430}, {"RR_BIC_NP_LM", 3070},
          {"RR_BIC_NP_MIC_DECL", 2700}, {"RR_BIC_NP_MIC_ABAT", 1770}, {"RR_BIC_NP", 930}, {"S_B_DEJA_SOUMIS", 870, 1}}},
    };
    // clang-format on
    VerifieCas(cas);
}

// CGI art. 64 bis: the average of three years, or of the years since the start, less 87 %.
TEST(NonSalaries, MicroFarms) {
    const struct {
        std::int32_t debut, n, nMoins1, nMoins2, forfait2015, moyenne, abattement;
    } cas[] = {
        {2010, 30000, 27000, 33000, 0, 30000, 26100},
        {0, 30000, 27000, 33000, 0, 30000, 26100},
        {2015, 30000, 0, 0, 6000, 12000, 8700},  // 36000 / 3; 26100 / 3
        {2016, 20000, 10000, 0, 0, 15000, 13050},
        {2017, 10000, 0, 0, 0, 10000, 8700},
        {2017, 340, 0, 0, 0, 340, 305},  // 87 % of 340 is 296
        {2017, 200, 0, 0, 0, 200, 200},
        {2010, 100, 200, 600, 0, 300, 300},  // 261 for the average, under the minimum
        {2010, 0, 600, 200, 0, 267, 241},    // (522 + 200) / 3
        {2018, 10000, 10000, 10000, 0, 0, 0},
        {nNonSaisi, 10000, 10000, 10000, 0, 0, 0},
    };
    static constexpr CaseEntree boxes[3][5] = {
        {"5XC", "5XB", "5XE", "5XF", "5XD"}, {"5YC", "5YB", "5YE", "5YF", "5YD"}, {"5ZC", "5ZB", "5ZE", "5ZF", "5ZD"}};
    for (const auto& c : cas) {
        for (std::size_t k = 0; k < 3; ++k) {
            SCOPED_TRACE(testing::Message() << c.debut << ": " << c.n << " " << c.nMoins1 << " " << c.nMoins2);
            Retour retour;
            const std::int32_t montants[] = {c.debut, c.n, c.nMoins1, c.nMoins2, c.forfait2015};
            for (std::size_t i = 0; i < 5; ++i) retour.Data().Entree[boxes[k][i]] = montants[i];
            const auto r = retour.Calcule();
            EXPECT_EQ(r.C(k + 1, "RR_BA_MICRO_MOY"), c.moyenne);
            EXPECT_EQ(r["RR_BA_MICRO_ABAT"], c.abattement);
            EXPECT_EQ(r["RR_BA"], c.moyenne - c.abattement);
        }
    }
}

// CGI art. 158-7: profits without an approved centre count for 125 %, deficits as they are.
TEST(NonSalaries, Surcharges) {
    // clang-format off
    Cas cas[] = {
        {"a professional loss comes off the non-professional base", {{"5KL", 1000}, {"5NI", 5000}},
         {{"RR_BIC_P_MAJO", 0}, {"RR_BIC_NP_MAJO", 1000}, {"RR_BIC_P", -1000}, {"RR_BIC_NP", 6000}, {"RREEL", 5000}}},
        {"of the same person only", {{"5LL", 1000}, {"5NI", 5000}},
         {{"RR_BIC_NP_MAJO", 1250}, {"RR_BIC_P", -1000}, {"RREEL", 5250}}},
        {"a larger loss leaves nothing to raise", {{"5KL", 6000}, {"5NI", 5000}},
         {{"RR_BIC_P_MAJO", 0}, {"RR_BIC_NP_MAJO", 0}, {"RREEL", -1000}}},
        {"both profits are raised", {{"5KI", 1000}, {"5NI", 2000}}, {{"RR_BIC_P_MAJO", 250}, {"RR_BIC_NP_MAJO", 500}}},
        {"deficits are not raised", {{"5HL", 400}, {"5QK", 400}, {"5NZ", 400}},
         {{"RR_BA", -400}, {"RR_BNC_P", -400}, {"RR_BIC_NP_LM", -400}}},
        {"non-professional, person by person", {{"5SN", 3000}, {"5SP", 1000}, {"5NS", 1000}, {"5NU", 2500}},
         {{"RR_BNC_NP_CON_MAJ", 500, 1}, {"RR_BNC_NP_CON_MAJ", 0, 2}, {"RR_BNC_NP", 1000}}},
    };
    // clang-format on
    VerifieCas(cas);
}

// CGI art. 156 I 1 bis, 1 ter, 2: the deficits of a non-professional category wait for its own profits.
TEST(NonSalaries, DeficitsOfNonProfessionalCategories) {
    // clang-format off
    const struct {
        CaseEntree benefice, perte;
        std::vector<CaseEntree> annees;  // of the deficits, the oldest first
        CaseSortie resultat, impute, deficit, anterieurs, imputes, annee, perdus, reste;
        bool efface;  // nothing left to carry: the detail is cleared
    } activites[] = {
        {"5JG", "5JJ", {"5HT", "5IT", "5JT", "5KT", "5LT", "5MT"}, "RR_BNC_NP", "RR_BNC_NP_DEF_IMP",
         "RR_BNC_NP_DEF_REP", "NP1_BNCNP_ANT", "NP1_BNCNP_IMP", "NP1_BNCNP_ANN", "NP1_BNCNP_PER", "NP1_BNCNP", true},
        {"5NC", "5NF", {"5RN", "5RO", "5RP", "5RQ", "5RR", "5RW"}, "RR_BIC_NP", "RR_BIC_NP_DEF_IMP",
         "RR_BIC_NP_DEF_REP", "NP1_BICNP_ANT", "NP1_BICNP_IMP", "NP1_BICNP_ANN", "NP1_BICNP_PER", "NP1_BICNP", true},
        {"5NA", "5NY", {"5GA", "5GB", "5GC", "5GD", "5GE", "5GF", "5GG", "5GH", "5GI", "5GJ"}, "RR_BIC_NP_LM",
         "RR_BIC_NP_LM_DEF_IMP", "RR_BIC_NP_LM_DEF_REP", "NP1_BICNP_LM_ANT", "NP1_BICNP_LM_IMP", "NP1_BICNP_LM_ANN",
         "NP1_BICNP_LM_PER", "NP1_BICNP_LM", false},
    };
    // clang-format on
    const struct {
        std::int32_t benefice, perte, plusAncien, suivantes;
        std::int32_t resultat, impute, deficit;
        std::vector<std::int32_t> reports;  // earlier, imputed, of the year, lapsed, left
    } cas[] = {
        {8500, 0, 3000, 4500, 1000, 7500, 0, {7500, 7500, 0, 0, 0}},
        {2000, 0, 3000, 4500, 0, 2000, 0, {7500, 2000, 0, 1000, 4500}},
        {0, 2000, 3000, 4500, -2000, 0, 2000, {7500, 0, 2000, 3000, 6500}},
        {0, 0, 3000, 4500, 0, 0, 0, {7500, 0, 0, 3000, 4500}},
        {5000, 0, 0, 0, 5000, 0, 0, {0, 0, 0, 0, 0}},
        {1000, 0, 3000, 0, 0, 1000, 0, {3000, 1000, 0, 2000, 0}},
    };
    for (const auto& a : activites) {
        for (const auto& c : cas) {
            SCOPED_TRACE(testing::Message() << kv::sortie::noms[a.resultat.numero] << " " << c.benefice - c.perte);
            Retour retour;
            auto& E = retour.Data().Entree;
            E[a.benefice] = c.benefice, E[a.perte] = c.perte, E[a.annees[0]] = c.plusAncien;
            const auto suivantes = static_cast<std::int32_t>(a.annees.size()) - 1;
            for (const CaseEntree box : std::span(a.annees).subspan(1)) E[box] = c.suivantes / suivantes;
            const auto r = retour.Calcule();
            EXPECT_EQ(r[a.resultat], c.resultat);
            EXPECT_EQ(r[a.impute], c.impute);
            EXPECT_EQ(r[a.deficit], c.deficit);
            EXPECT_EQ(r["TOT_R_BRUT"], std::max(c.resultat, 0));
            const bool efface = a.efface && c.reports[4] == 0;
            EXPECT_EQ((std::vector{r[a.anterieurs], r[a.imputes], r[a.annee], r[a.perdus], r[a.reste]}),
                      efface ? std::vector<std::int32_t>(5) : c.reports);
        }
    }
}

// Earlier deficits come off the persons in proportion to their profits; a loss of the year shows by person.
TEST(NonSalaries, DeficitsByPerson) {
    const auto partage = Retour{{"5NC", 6000}, {"5OC", 3000}, {"5PF", 1000}, {"5RN", 3000}}.Calcule();
    EXPECT_EQ(partage.Colonnes("RR_BIC_NP_DEF_IMP"), (std::vector{2000, 1000, 0}));
    EXPECT_EQ(partage.Colonnes("RR_BIC_NP"), (std::vector{4000, 2000, -1000}));
    EXPECT_EQ(partage["TOT_R_BRUT"], 5000);

    const auto perte = Retour{{"5NF", 600}, {"5OC", 200}, {"5NY", 50}, {"5OY", 70}}.Calcule();
    EXPECT_EQ(perte.Colonnes("RR_BIC_NP_DEF_REP"), (std::vector{600, -200, 0}));
    EXPECT_EQ(perte.Colonnes("RR_BIC_NP_LM_DEF_REP"), (std::vector{50, 70, 0}));
    EXPECT_EQ(perte.Colonnes("RREEL"), (std::vector{0, 0, 0}));
}

}  // namespace
