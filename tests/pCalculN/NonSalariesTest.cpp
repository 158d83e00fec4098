#include "tests/Notation.h"

namespace {

// Amounts entered in the boxes of one person, and what the category makes of them.
struct Categorie {
    const char* nom;
    struct Montant {
        const char *premier, *second, *charges;
        std::int32_t montant;

        const char* Box(std::size_t personne) const {
            return personne == 0 ? premier : personne == 1 ? second : charges;
        }
    };
    struct Attendu {
        std::string sortie;
        std::int32_t valeur;
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
        kv::Return r = Foyer("M 2TR=60000");
        for (const auto& m : c.montants)
            for (const std::size_t k : personnes) r.set(m.Box(k), m.montant);
        return r.compute();
    };
    for (const Categorie& c : categories) {
        for (std::size_t k = 0; k < 3; ++k) {
            SCOPED_TRACE(c.nom + std::string(", person ") + std::to_string(k + 1));
            const auto r = calcule(c, {k});
            for (const Categorie::Attendu& a : c.lignes) {
                SCOPED_TRACE(a.sortie);
                std::vector<std::int32_t> colonnes(3);
                colonnes[k] = a.valeur;
                EXPECT_EQ(Colonnes(r, a.sortie), colonnes);
                EXPECT_EQ(r[a.sortie], a.valeur);
            }
            EXPECT_EQ(r["TOT_R_BRUT"], c.brut);
            EXPECT_EQ(r["TOT_IMPOT"], c.impot);
        }
        SCOPED_TRACE(c.nom + std::string(", everyone"));
        const auto r = calcule(c, {0, 1, 2});
        for (const Categorie::Attendu& a : c.lignes) EXPECT_EQ(r[a.sortie], 3 * a.valeur) << a.sortie;
        EXPECT_EQ(r["TOT_R_BRUT"], 60000 + 3 * (c.brut - 60000));
    }
}

}  // namespace
