#include <set>

#include "tests/Figures.h"
#include "tests/Hasard.h"
#include "tests/Notation.h"

namespace {

constexpr int nDeclarations = 150;

// The household is the sum of its persons, and its gross income that of the three kinds of income.
TEST(ProprietesRevenus, TotalsOfTheHousehold) {
    Hasard hasard(2044);
    for (int i = 0; i < nDeclarations; ++i) {
        SCOPED_TRACE(i);
        const auto r = hasard.Declaration().compute();
        for (const std::string ligne : {"RN_SAL_SAIS",    "RN_SAL_DED_10",
                                        "RN_SAL",         "RN_PEN_DECL",
                                        "RN_PEN_ABAT",    "RN_PEN",
                                        "RD_GAINS",       "RR_BA_MAJO",
                                        "RR_BIC_P",       "RR_BIC_P_MIC",
                                        "RR_BIC_NP_MIC",  "RR_BIC_NP_LM_MIC",
                                        "RF_PENSIONS",    "RR_BNC_P",
                                        "RR_BIC_NP_MAJO", "RR_BNC_NP_SPE",
                                        "RF_PLUS",        "RR_BNC_NP_CON_MAJ",
                                        "RF_INVENTEURS",  "REXONERE",
                                        "NP1_MV_LT",      "FP_TI_SAL",
                                        "FP_TI_PENS",     "MOND_AUTO_ENTR_P",
                                        "MOND_PROSPEC",   "RR_BA_MICRO_REV_IMP"}) {
            const auto colonnes = Colonnes(r, ligne);
            EXPECT_EQ(r[ligne], colonnes[0] + colonnes[1] + colonnes[2]) << ligne;
        }
        EXPECT_EQ(r["TOT_R_BRUT"], r["RNORMAL"] + r["RDIVERS"] + r["RREEL"]);
        EXPECT_LE(r["C_REDUC"] - r["C_TM_BIS"] - r["C_TM_TER"], std::max(r["TOT_R_BRUT"], 0));
        EXPECT_GE(r["TOT_R_IMPOS"] + r["QUOTIENT"], 0);
        EXPECT_GE(r["REVENU_REF"], 0);
    }
}

// ---- Two declarants who change places.

struct Paire {
    std::int32_t premier, second;
};

// The first declarant's boxes with the second's: one letter on, but for those that the form names otherwise.
const std::vector<Paire>& Jumelles() {
    static const std::vector<Paire> paires = [] {
        std::vector<Paire> trouvees;
        std::set<std::int32_t> premiers;
        const auto ajoute = [&](const std::string& premier, const std::string& second) {
            const auto a = kv::find(KV_ENTRY, premier), b = kv::find(KV_ENTRY, second);
            if (!a || !b || kv::describe(KV_ENTRY, *b).person != 2 || !premiers.insert(*a).second) return;
            trouvees.push_back({*a, *b});
        };
        for (const auto& [premier, second] : {std::pair("5JG", "5RF"),
                                              {"5JJ", "5RG"},
                                              {"5SN", "5NS"},
                                              {"5SP", "5NU"},
                                              {"5SO", "5NT"},
                                              {"5JU", "5LD"},
                                              {"5IU", "5RZ"},
                                              {"5HK", "5JK"},
                                              {"5IK", "5KK"},
                                              {"5SV", "5SW"},
                                              {"5XT", "5XU"},
                                              {"5XV", "5XW"},
                                              {"1SM", "1DN"},
                                              {"3VJ", "3VK"},
                                              {"AAQ", "BAQ"}})
            ajoute(premier, second);
        for (const std::int32_t box : Hasard::Revenus()) {
            const kv_box fiche = kv::describe(KV_ENTRY, box);
            std::string second = fiche.name;
            ++second[second[0] == '6' ? 2 : 1];
            if (fiche.person == 1) ajoute(fiche.name, second);
        }
        return trouvees;
    }();
    return paires;
}

// The boxes of the first dependants: "1CJ" and "1DJ", "1DJ" and "1EJ"...
std::vector<Paire> DesACharge(std::int32_t rang) {
    std::vector<Paire> paires;
    for (const std::int32_t box : Hasard::Revenus()) {
        const kv_box fiche = kv::describe(KV_ENTRY, box);
        std::string autre = fiche.name;
        ++autre[1];
        const auto second = kv::find(KV_ENTRY, autre);
        if (fiche.person == rang && second && kv::describe(KV_ENTRY, *second).person == rang + 1)
            paires.push_back({box, *second});
    }
    return paires;
}

// The same return where two persons have changed places: entries, companions, exceptional amounts.
kv::Return Echange(const kv::Return& r, const std::vector<Paire>& paires) {
    kv::Return echange = r;
    const auto exceptionnels = r.exceptional();
    for (const auto& [box, coefficient, montant] : exceptionnels)
        for (const Paire& p : paires)
            if (box == p.premier || box == p.second) echange.set_exceptional(box, coefficient, 0);
    for (const Paire& p : paires) {
        for (kv_area aire = KV_AREA_ENTRY; aire <= KV_AREA_TKZ; ++aire) {
            std::int32_t a = 0, b = 0;
            if (kv_get_box(r.handle(), aire, p.premier, &a) != KV_OK) continue;
            if (kv_get_box(r.handle(), aire, p.second, &b) != KV_OK) continue;
            echange.set(p.premier, b, aire).set(p.second, a, aire);
        }
        for (const auto& [box, coefficient, montant] : exceptionnels) {
            if (box == p.premier) echange.set_exceptional(p.second, coefficient, montant);
            if (box == p.second) echange.set_exceptional(p.premier, coefficient, montant);
        }
    }
    return echange;
}

TEST(ProprietesRevenus, EachDeclarantHasTheSameBoxes) {
    std::set<std::int32_t> seconds;
    for (const Paire& p : Jumelles()) {
        const kv_box a = kv::describe(KV_ENTRY, p.premier), b = kv::describe(KV_ENTRY, p.second);
        SCOPED_TRACE(a.name + std::string(" ") + b.name);
        EXPECT_EQ(a.person, 1);
        EXPECT_EQ(a.ti >= 0, b.ti >= 0);
        EXPECT_EQ(a.tix >= 0, b.tix >= 0);
        EXPECT_EQ(a.tk >= 0, b.tk >= 0);
        EXPECT_EQ(a.quotient >= 0, b.quotient >= 0);
        EXPECT_TRUE(seconds.insert(p.second).second);
    }
    EXPECT_GE(seconds.size(), 150u);
}

// The same figure of the other declarant, for those that have one each.
std::int32_t Jumelle(std::int32_t sortie, const std::string& nom) {
    for (const auto& [un, deux] : {std::pair("NP1_PLAF_PERP_V", "NP1_PLAF_PERP_C"),
                                   {"C_COT_PERP_V", "C_COT_PERP_C"},
                                   {"REV_BRUT_TI_V", "REV_BRUT_TI_C"},
                                   {"TAUX_PAS_IND1", "TAUX_PAS_IND2"}})
        for (const auto& [de, a] : {std::pair<std::string, std::string>(un, deux), {deux, un}})
            if (nom.starts_with(de)) return *kv::find(KV_OUTPUT, a + nom.substr(de.size()));
    return sortie;
}

// All that is found is the same, in the columns and the figures of the other.
TEST(ProprietesRevenus, DeclarantsMayChangePlaces) {
    std::set<std::int32_t> avecJumelle;
    for (const Paire& p : Jumelles()) avecJumelle.insert({p.premier, p.second});
    Hasard hasard(2045);
    for (int i = 0; i < nDeclarations; ++i) {
        SCOPED_TRACE(i);
        kv::Return r = hasard.Declaration(40);
        r.set("M", 1).set("AAF1", 0);
        for (const std::int32_t box : Hasard::Revenus())
            if (kv::describe(KV_ENTRY, box).person <= 2 && !avecJumelle.contains(box)) r.set(box, 0);
        r.set_launch(hasard.Entre(0, 3));
        const auto a = kv::Return(r).compute(), b = Echange(r, Jumelles()).compute();
        for (std::int32_t j = 0; j < kv::count(KV_OUTPUT); ++j) {
            const kv_box fiche = kv::describe(KV_OUTPUT, j);
            const std::string nom = fiche.name;
            const bool parPersonne =
                fiche.columns[0] == std::string("déclarant 1") || nom == "TOT_R_BRUT" || nom == "RDIVERS";
            const std::int32_t jumelle = Jumelle(j, nom);
            for (const auto& [k, l] : {std::pair(0, 0), {1, parPersonne ? 2 : 1}, {2, parPersonne ? 1 : 2}, {3, 3}})
                EXPECT_EQ(a.output(j, k), b.output(jumelle, l)) << nom << ", column " << k;
        }
    }
}

TEST(ProprietesRevenus, DependantsMayChangePlaces) {
    Hasard hasard(2046);
    for (int i = 0; i < 60; ++i) {
        kv::Return r = hasard.Declaration(20);
        for (const std::int32_t rang : {3, 4, 5}) {
            const std::vector<Paire> paires = DesACharge(rang);
            EXPECT_GE(paires.size(), 8u);
            for (const Paire& p : paires) r.set(hasard.UneFoisSur(2) ? p.premier : p.second, hasard.Montant());
            EXPECT_EQ(test::Sorties(kv::Return(r).compute()), test::Sorties(Echange(r, paires).compute())) << i;
        }
    }
}

}  // namespace
