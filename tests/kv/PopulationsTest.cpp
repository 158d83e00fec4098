#include <gtest/gtest.h>

#include <kv.hpp>
#include <set>
#include <tuple>

#include "tests/Hasard.h"

// Many returns in columns give what each of them gives alone.

namespace {

// Random amounts by name: plausible ones and a few absurd ones, most of them 0.
class Population {
  public:
    Population(unsigned graine, std::size_t lignes, const std::vector<std::string>& noms) : m_noms(noms) {
        Hasard hasard(graine);
        for (const std::string& nom : noms) {
            const bool coche = nom.size() < 3 || nom == "AVA" || nom == "6QW";
            for (int32_t& v : m_colonnes.emplace_back(lignes))
                v = hasard.UneFoisSur(2)    ? 0
                    : hasard.UneFoisSur(40) ? hasard.Arbitraire()
                    : hasard.UneFoisSur(10) ? KV_UNSET
                    : coche                 ? hasard.Entre(0, 1)
                                            : hasard.Montant();
        }
        for (std::size_t i = 0; i < noms.size(); ++i) entrees.push_back({m_noms[i].c_str(), m_colonnes[i].data()});
    }

    // One of its returns, over those that a model sets.
    kv::Return Ligne(const kv::Return& modele, std::size_t ligne) const {
        kv::Return r = modele;
        for (std::size_t i = 0; i < m_noms.size(); ++i) {
            const int32_t v = m_colonnes[i][ligne];
            if (!m_noms[i].starts_with("quotient.") || (v != 0 && v != KV_UNSET)) r.set(m_noms[i], v);
        }
        return r;
    }

    std::vector<kv_input_column> entrees;

  private:
    const std::vector<std::string> m_noms;
    std::vector<std::vector<int32_t>> m_colonnes;
};

// The figures asked for, each in a column of its own.
struct Figures {
    Figures(std::size_t lignes, const std::vector<std::string>& n) : noms(n), valeurs(n.size()), statuts(lignes, -7) {
        for (std::size_t i = 0; i < noms.size(); ++i) {
            valeurs[i].assign(lignes, -7);
            sorties.push_back({noms[i].c_str(), valeurs[i].data()});
        }
    }
    const std::vector<std::string> noms;
    std::vector<std::vector<int32_t>> valeurs;
    std::vector<int32_t> statuts;
    std::vector<kv_output_column> sorties;
};

const std::vector<std::string> boites = {"M",
                                         "Fm",
                                         "Hm",
                                         "1AJ",
                                         "1BJ",
                                         "1AK",
                                         "1AS",
                                         "2DC",
                                         "2TR",
                                         "3VG",
                                         "4BA",
                                         "4BE",
                                         "5KO",
                                         "5HC",
                                         "5XC",
                                         "6RS",
                                         "6QW",
                                         "7UF",
                                         "7DB",
                                         "AVA",
                                         "ti.4BE",
                                         "tix.5HC",
                                         "tiy.5HC",
                                         "ti.5HC",
                                         "tk.2DC",
                                         "tkz.2DC",
                                         "quotient.4.1AJ",
                                         "quotient.-3.5HC"};
const std::vector<std::string> demandees = {"TOT_PAYER",       "S_NET_A_PAYER", "RN_SAL.c2", "I_BAREME.c3",
                                            "NP1_PLAF_PERP_V", "F11_6PSS",      "F11_6FL",   "F_NB_PARTS_ALL"};

kv_columns Colonnes(const Population& population, Figures& figures, int32_t threads) {
    kv_columns c{};
    c.size = sizeof c;
    c.rows = static_cast<int64_t>(figures.statuts.size());
    c.inputs = population.entrees.data(), c.input_count = static_cast<int32_t>(population.entrees.size());
    c.outputs = figures.sorties.data(), c.output_count = static_cast<int32_t>(figures.sorties.size());
    c.statuses = figures.statuts.data();
    c.threads = threads;
    return c;
}

// The model sets what no column names, and what the rows have in common.
kv::Return Modele(kv_launch lancement, double indexation) {
    kv::Return modele;
    modele.set("1AP", 900).set("1AJ", 77).set("quotient.2.1AS", 500).set("quotient.4.1AJ", 10);
    modele.set_launch(lancement).set_indexation(indexation).set_period(20170201, 20171231);
    return modele.set_law(kv::Law().set("bareme.tranche3.taux", 31.5));
}

TEST(Populations, EachRowIsWhatItIsAlone) {
    for (const kv_launch lancement : {KV_LAUNCH_NORMAL, KV_LAUNCH_OPTIONS}) {
        const kv::Return modele = Modele(lancement, lancement == KV_LAUNCH_NORMAL ? 2.0 : -1.0);
        constexpr std::size_t lignes = 300;
        const Population population(16 + static_cast<unsigned>(lancement), lignes, boites);
        Figures reference(lignes, demandees);
        for (const int32_t threads : {1, 2, 7}) {
            Figures figures(lignes, demandees);
            modele.compute_columns(Colonnes(population, figures, threads));
            EXPECT_EQ(figures.statuts, std::vector<int32_t>(lignes, KV_OK));
            if (threads == 1) reference.valeurs = figures.valeurs;
            EXPECT_EQ(figures.valeurs, reference.valeurs) << threads;
        }
        for (std::size_t ligne = 0; ligne < lignes; ++ligne) {
            const kv::Return seule = population.Ligne(modele, ligne).compute();
            for (std::size_t i = 0; i < demandees.size(); ++i)
                ASSERT_EQ(reference.valeurs[i][ligne], seule[demandees[i]]) << demandees[i] << ", row " << ligne;
        }
        std::set<int32_t> nets(reference.valeurs[1].begin(), reference.valeurs[1].end());
        EXPECT_GT(nets.size(), lignes / 3);  // a population of different households
        EXPECT_EQ(modele.get("1AJ"), 77);
    }
}

TEST(Populations, ProgressIsToldAndMayCancel) {
    constexpr std::size_t lignes = 1000;
    const Population population(3, lignes, {"1AJ"});
    struct Suivi {
        std::vector<int64_t> faites;
        int64_t limite;
    };
    // Other threads may have done everything before this one sees that enough is done: it may always stop them first.
    for (const auto& [threads, limite, auPlus] : {std::tuple{1, 400, 999}, {3, 0, 0}, {3, 400, 1000}}) {
        Figures figures(lignes, {"TOT_R_IMPOS"});
        Suivi suivi{{}, limite};
        kv_columns colonnes = Colonnes(population, figures, threads);
        colonnes.context = &suivi;
        colonnes.progress = [](int64_t faites, int64_t rows, void* context) -> int32_t {
            Suivi& s = *static_cast<Suivi*>(context);
            EXPECT_EQ(rows, 1000);
            s.faites.push_back(faites);
            return faites >= s.limite;
        };
        const kv::Return vide;
        const kv_status statut = kv_compute_columns(vide.handle(), &colonnes);
        const auto faites = std::count(figures.statuts.begin(), figures.statuts.end(), KV_OK);
        EXPECT_GE(faites, limite);
        EXPECT_LE(faites, auPlus);
        EXPECT_EQ(statut, faites < 1000 ? KV_CANCELLED : KV_OK);
        EXPECT_STREQ(kv_message(vide.handle()), faites < 1000 ? "the computation was cancelled" : "");
        for (std::size_t i = 0; i < lignes; ++i) {
            const bool faite = i < static_cast<std::size_t>(faites);
            EXPECT_EQ(figures.statuts[i], faite ? KV_OK : KV_CANCELLED);
            EXPECT_TRUE(faite || figures.valeurs[0][i] == 0);
        }

        suivi = {{}, 5000};
        EXPECT_EQ(kv_compute_columns(vide.handle(), &colonnes), KV_OK);
        EXPECT_TRUE(std::is_sorted(suivi.faites.begin(), suivi.faites.end()));
        EXPECT_EQ(suivi.faites.front(), 0);
        EXPECT_EQ(suivi.faites.back(), 1000);
    }
}

TEST(Populations, BadCallsAreStatusesAndWriteNothing) {
    Population population(1, 3, {"1AJ", "1BJ"});
    Figures figures(3, {"TOT_PAYER"});
    const kv_columns bonnes = Colonnes(population, figures, 1);
    const kv::Return r;
    const auto refuse = [&](kv_status attendu, const std::string& mention, auto change) {
        kv_columns c = bonnes;
        std::vector<kv_input_column> entrees = population.entrees;
        std::vector<kv_output_column> sorties = figures.sorties;
        c.inputs = entrees.data(), c.outputs = sorties.data();
        change(c, entrees, sorties);
        EXPECT_EQ(kv_compute_columns(r.handle(), &c), attendu) << mention;
        EXPECT_NE(std::string(kv_message(r.handle())).find(mention), std::string::npos) << kv_message(r.handle());
        EXPECT_EQ(figures.statuts, std::vector<int32_t>(3, -7));
        EXPECT_EQ(figures.valeurs[0], std::vector<int32_t>(3, -7));
    };
    refuse(KV_UNKNOWN, "1AJX; nearest: 1AJ", [](auto&, auto& e, auto&) { e[1].name = "1AJX"; });
    refuse(KV_NO_AMOUNT, "box 1AJ has no amount in \"ti\"", [](auto&, auto& e, auto&) { e[1].name = "ti.1AJ"; });
    refuse(KV_UNKNOWN, "TOT_PAYRE; nearest: TOT_PAYER", [](auto&, auto&, auto& s) { s[0].name = "TOT_PAYRE"; });
    refuse(KV_BAD_VALUE, "1AJ stands in two columns", [](auto&, auto& e, auto&) { e[1].name = "1AJ"; });
    refuse(KV_BAD_VALUE, "negative", [](auto& c, auto&, auto&) { c.rows = -1; });
    refuse(KV_BAD_VALUE, "negative", [](auto& c, auto&, auto&) { c.input_count = -1; });
    refuse(KV_BAD_VALUE, "negative", [](auto& c, auto&, auto&) { c.output_count = -1; });
    refuse(KV_BAD_VALUE, "negative", [](auto& c, auto&, auto&) { c.threads = -1; });
    refuse(KV_BAD_SIZE, "size", [](auto& c, auto&, auto&) { c.size = sizeof c - 1; });
    refuse(KV_NULL, "null", [](auto& c, auto&, auto&) { c.inputs = nullptr; });
    refuse(KV_NULL, "null", [](auto& c, auto&, auto&) { c.outputs = nullptr; });
    refuse(KV_NULL, "null", [](auto&, auto& e, auto&) { e[0].name = nullptr; });
    refuse(KV_NULL, "null", [](auto&, auto& e, auto&) { e[0].values = nullptr; });
    refuse(KV_NULL, "null", [](auto&, auto&, auto& s) { s[0].name = nullptr; });
    refuse(KV_NULL, "null", [](auto&, auto&, auto& s) { s[0].values = nullptr; });
    EXPECT_EQ(kv_compute_columns(r.handle(), nullptr), KV_NULL);
    EXPECT_EQ(kv_compute_columns(nullptr, &bonnes), KV_NULL);

    // Nothing to compute is no failure; neither is one row on many threads, nor no status.
    kv_columns c = bonnes;
    c.rows = 0;
    EXPECT_EQ(kv_compute_columns(r.handle(), &c), KV_OK);
    c.rows = 1, c.statuses = nullptr, c.threads = 1000;
    EXPECT_EQ(kv_compute_columns(r.handle(), &c), KV_OK);
    EXPECT_EQ(figures.statuts[0], -7);
    EXPECT_EQ(figures.valeurs[0][1], -7);
}

}  // namespace
