#include <gtest/gtest.h>

#include <cmath>
#include <kv.hpp>

#include "tests/Hasard.h"

// What would change a figure: each answer is that of a computation of the changed return.

namespace {

// Plausible households with a bit of everything, and the net amount as a host finds it.
kv::Return Menage(unsigned graine) {
    Hasard hasard(graine);
    kv::Return r = hasard.Declaration(8);
    hasard.Depenses(r, 2);
    return r.set_launch(hasard.Entre(0, 3));
}
int32_t Net(kv::Return r) { return r.compute()["S_NET_A_PAYER"] - r["S_NET_RESTITUE"]; }

// A return without an exceptional amount: one to which everything else was set.
kv::Return Sans(const kv::Return& r, const std::string& nom) {
    kv::Return sans = r;
    if (!nom.starts_with("quotient.")) return sans.set(nom, 0);
    sans = kv::Return();
    for (int32_t i = 0, n = kv::count(KV_ENTRY); i < n; ++i)
        for (kv_area aire = KV_AREA_ENTRY; aire <= KV_AREA_TKZ; ++aire)
            if (int32_t v = 0; kv_get_box(r.handle(), aire, i, &v) == KV_OK && v != 0) sans.set(i, v, aire);
    for (const auto& [boite, coefficient, montant] : r.exceptional())
        if (nom != "quotient." + std::to_string(coefficient) + '.' + kv::describe(KV_ENTRY, boite).name)
            sans.set_exceptional(boite, coefficient, montant);
    return sans.set_launch(r.launch());
}

TEST(Effets, OfAHouseholdWorkedOutByHand) {
    // 30 000 less 10 %: 14 % above 9807 are 2407; gifts of 600 take off 66 %.
    kv::Return r;
    r.set("C", 1).set("1AJ", 30000).set("7UF", 600);
    const auto effets = r.effects();
    EXPECT_EQ(effets.value, 2011);
    const struct {
        const char* nom;
        int32_t montant, sans, ajout, avec;
    } attendus[] = {{"1AJ", 30000, 0, 100, 2420 - 396}, {"7UF", 600, 2407, 100, 2407 - 462}, {"C", 1, 2011, -1, 2011}};
    ASSERT_EQ(effets.amounts.size(), std::size(attendus));
    for (std::size_t i = 0; i < std::size(attendus); ++i) {
        const kv_effect& e = effets.amounts[i];
        EXPECT_STREQ(e.name, attendus[i].nom);
        EXPECT_EQ(e.entry, kv::find(KV_ENTRY, e.name));
        EXPECT_EQ(e.amount, attendus[i].montant);
        EXPECT_EQ(e.without, attendus[i].sans);
        EXPECT_EQ(e.change, attendus[i].ajout);
        EXPECT_EQ(e.changed, attendus[i].avec);
    }
    EXPECT_EQ(r.effects("F11_6PSS").value, r.compute()["F11_6PSS"]);
}

TEST(Effets, AreThoseOfTheChangedReturn) {
    std::size_t vus = 0;
    for (unsigned graine = 0; graine < 60; ++graine) {
        const kv::Return r = Menage(graine);
        const auto effets = r.effects();
        EXPECT_EQ(effets.value, Net(r));
        int64_t precedent = INT64_MAX;
        for (const kv_effect& e : effets.amounts) {
            SCOPED_TRACE(std::to_string(graine) + ' ' + e.name);
            EXPECT_EQ(r.get(e.name), e.amount);
            EXPECT_EQ(e.without, Net(Sans(r, e.name)));
            if (e.change != 0 && e.amount + e.change != 0) {
                EXPECT_EQ(e.changed, Net(kv::Return(r).set(e.name, e.amount + e.change)));
            }
            const int64_t ecart = std::llabs(int64_t{e.without} - effets.value);
            EXPECT_LE(ecart, precedent);
            precedent = ecart;
            ++vus;
        }
    }
    EXPECT_GT(vus, 300U);
}

TEST(Courbe, IsComputedAmountByAmount) {
    for (const char* montant : {"1AJ", "5KO", "ti.4BE", "quotient.4.1AJ"}) {
        const kv::Return r = Menage(7);
        kv_range range{};
        range.amount = montant, range.from = -500, range.to = 80200, range.step = 9000, range.threads = 2;
        const auto courbe = r.curve(range);
        ASSERT_EQ(courbe.amounts.size(), 9U);
        for (std::size_t i = 0; i < 9; ++i) {
            const int32_t x = -500 + 9000 * static_cast<int32_t>(i);
            const auto net = [&](int32_t v) { return static_cast<double>(Net(kv::Return(r).set(montant, v))); };
            EXPECT_EQ(courbe.amounts[i], x);
            EXPECT_EQ(courbe.values[i], net(x)) << montant << ' ' << x;
            EXPECT_DOUBLE_EQ(courbe.average[i], net(x) / x);
            EXPECT_DOUBLE_EQ(courbe.marginal[i], (net(x + 9000) - net(x)) / 9000);
        }
        range.from = range.to = 0;
        EXPECT_EQ(r.curve(range).average, std::vector<double>{0});
    }
}

// Every amount of a piece lies on its line, to one euro; the next amount lies on no line that holds the piece.
TEST(Morceaux, AreThoseOfAScanEuroByEuro) {
    for (unsigned graine = 0; graine < 12; ++graine) {
        const kv::Return r = Menage(graine);
        kv_range range{};
        range.amount = graine % 3 == 0 ? "5KO" : "1AJ", range.figure = graine % 2 == 0 ? "TOT_PAYER" : nullptr;
        range.from = static_cast<int32_t>(2000 * graine), range.to = range.from + 1200, range.step = 1;
        const std::vector<int32_t> figure = r.curve(range).values;
        const auto f = [&](int32_t x) { return int64_t{figure[static_cast<std::size_t>(x - range.from)]}; };
        int32_t debut = range.from;
        for (const kv_piece& p : r.breaks(range)) {
            ASSERT_EQ(p.from, debut);
            ASSERT_LE(p.to, range.to);
            ASSERT_EQ(p.value, f(p.from));
            ASSERT_EQ(p.rate * 1e9, std::round(p.rate * 1e9));
            long double min = -1e12L, max = 1e12L;
            for (int32_t x = p.from + 1; x <= std::min(p.to + 1, range.to); ++x) {
                const long double pas = x - p.from, ecart = static_cast<long double>(f(x) - p.value);
                min = std::max(min, (ecart - 1) / pas), max = std::min(max, (ecart + 1) / pas);
                if (x <= p.to) {
                    ASSERT_LE(std::abs(p.value + p.rate * (x - p.from) - static_cast<double>(f(x))), 1 + 1e-6) << x;
                }
            }
            if (p.to < range.to) {
                ASSERT_GT(std::ceil(min * 1e9L - 1e-6L), std::floor(max * 1e9L + 1e-6L)) << p.from;
            }
            debut = p.to + 1;
        }
        EXPECT_EQ(debut, range.to + 1);
    }
}

TEST(Morceaux, OfASalaryWorkedOutByHand) {
    // Above the relief and below the second bracket a euro of salary costs 14 % of 90 cents.
    kv::Return r;
    kv_range range{};
    range.amount = "1AJ", range.figure = "TOT_IMPOT", range.from = 25000, range.to = 28000;
    const auto morceaux = r.set("1AJ", 1).breaks((range.step = 1, range));
    ASSERT_FALSE(morceaux.empty());
    EXPECT_EQ(morceaux.back().to, 28000);
    EXPECT_NEAR(morceaux.back().rate, 0.126, 0.001);
    EXPECT_EQ(r.get("1AJ"), 1);
}

TEST(Explications, AreTextsThatLiveUntilTheNext) {
    kv::Return r;
    r.set("1AJ", 30000).set("7UF", 600);
    const char* texte = nullptr;
    ASSERT_EQ(kv_explain(r.handle(), "U_DONS_OEUVRES_N", -1, &texte), KV_OK);
    EXPECT_EQ(std::string(texte).find("{\"version\":1,\"box\":\"U_DONS_OEUVRES_N\",\"label\":\"Dons"), 0U);
    EXPECT_NE(
        std::string(texte).find("\"value\":396,\"rule\":\"rate\",\"formula\":\"66 % de 600\",\"law\":\"CGI art. 200\""),
        std::string::npos);
    EXPECT_EQ(r.explain(nullptr, 0).find("\"terms\""), std::string::npos);
    EXPECT_NE(r.explain("F11_6PSS").find("NP1_PLAF_PERP_V_C"), std::string::npos);
    EXPECT_EQ(kv_explain(r.handle(), "TOT_PAYRE", -1, &texte), KV_UNKNOWN);
    EXPECT_EQ(kv_explain(r.handle(), nullptr, -1, nullptr), KV_NULL);
    EXPECT_EQ(kv_explain(nullptr, nullptr, -1, &texte), KV_NULL);
    const kv::Return sans = kv::Return(r).set("7UF", 0);
    EXPECT_EQ(
        r.explain_difference(sans, "REDUCTIONS", 1),
        "{\"version\":1,\"box\":\"REDUCTIONS\",\"label\":\"Réductions d'impôt, "
        "total\",\"before\":0,\"after\":396,\"rule\":\"sum\","
        "\"terms\":[{\"box\":\"U_DONS_OEUVRES_N\",\"label\":\"Dons aux œuvres de l'année N\",\"sign\":1,\"before\":0,"
        "\"after\":396,\"rule\":\"deeper\"}]}");
    EXPECT_EQ(r.explain_difference(r).find("\"terms\""), std::string::npos);
    EXPECT_EQ(kv_explain_difference(nullptr, r.handle(), nullptr, -1, &texte), KV_NULL);
    EXPECT_EQ(kv_explain_difference(r.handle(), nullptr, nullptr, -1, &texte), KV_NULL);
    EXPECT_EQ(kv_explain_difference(r.handle(), sans.handle(), "TOT_PAYRE", -1, &texte), KV_UNKNOWN);
    int32_t valeur = 0;
    EXPECT_EQ(kv_read(r.handle(), "TOT_PAYER", &valeur), KV_NOT_COMPUTED);  // nothing of the return has changed
}

TEST(Effets, BadCallsAreStatuses) {
    const kv::Return r;
    int32_t valeur = -7, nombre = -7;
    EXPECT_EQ(kv_effects(r.handle(), "TOT_PAYRE", &valeur, &nombre), KV_UNKNOWN);
    EXPECT_NE(std::string(kv_message(r.handle())).find("TOT_PAYER"), std::string::npos);
    EXPECT_EQ(kv_effects(nullptr, nullptr, &valeur, &nombre), KV_NULL);
    EXPECT_EQ(kv_effects(r.handle(), nullptr, nullptr, &nombre), KV_NULL);
    EXPECT_EQ(kv_effects(r.handle(), nullptr, &valeur, nullptr), KV_NULL);
    EXPECT_EQ(valeur, -7);
    kv_effect effet{};
    effet.size = sizeof effet;
    EXPECT_EQ(kv_effect_at(r.handle(), 0, &effet), KV_UNKNOWN);
    ASSERT_EQ(kv_effects(kv::Return(r).set("1AJ", 1).handle(), nullptr, &valeur, &nombre), KV_OK);
    EXPECT_EQ(nombre, 1);

    kv_range bon{};
    bon.size = sizeof bon, bon.amount = "1AJ", bon.to = 10, bon.step = 5, bon.threads = 1;
    int32_t montants[3], valeurs[3];
    kv_piece morceau;
    const auto refuse = [&](kv_status attendu, auto change) {
        kv_range range = bon;
        change(range);
        EXPECT_EQ(kv_curve(r.handle(), &range, montants, valeurs, nullptr, nullptr, 3, &nombre), attendu);
        EXPECT_EQ(kv_breaks(r.handle(), &range, &morceau, 1, &nombre), attendu);
    };
    refuse(KV_OK, [](kv_range&) {});
    EXPECT_EQ(nombre, 1);
    EXPECT_EQ(montants[2], 10);
    EXPECT_TRUE(morceau.from == 0 && morceau.to == 10 && morceau.rate == 0 && morceau.value == 0);
    refuse(KV_BAD_SIZE, [](kv_range& g) { g.size = sizeof g - 1; });
    refuse(KV_NULL, [](kv_range& g) { g.amount = nullptr; });
    refuse(KV_UNKNOWN, [](kv_range& g) { g.amount = "1AJX"; });
    refuse(KV_UNKNOWN, [](kv_range& g) { g.figure = "1AJ"; });
    refuse(KV_NO_AMOUNT, [](kv_range& g) { g.amount = "ti.1AJ"; });
    refuse(KV_BAD_VALUE, [](kv_range& g) { g.to = -1; });
    refuse(KV_BAD_VALUE, [](kv_range& g) { g.to = 1'000'000'001; });
    refuse(KV_BAD_VALUE, [](kv_range& g) { g.from = INT32_MIN; });
    refuse(KV_BAD_VALUE, [](kv_range& g) { g.step = 0; });
    refuse(KV_BAD_VALUE, [](kv_range& g) { g.threads = -1; });
    refuse(KV_CANCELLED, [](kv_range& g) { g.progress = [](int64_t, int64_t, void*) { return int32_t{1}; }; });
    EXPECT_EQ(kv_curve(r.handle(), &bon, montants, valeurs, nullptr, nullptr, 2, &nombre), KV_TOO_SMALL);
    EXPECT_EQ(nombre, 3);
    EXPECT_EQ(kv_breaks(r.handle(), &bon, nullptr, 0, &nombre), KV_TOO_SMALL);
    EXPECT_EQ(nombre, 1);
    EXPECT_EQ(kv_breaks(r.handle(), &bon, nullptr, 1, &nombre), KV_NULL);
    EXPECT_EQ(kv_curve(r.handle(), nullptr, nullptr, nullptr, nullptr, nullptr, 0, &nombre), KV_NULL);
    EXPECT_EQ(kv_breaks(nullptr, &bon, nullptr, 0, &nombre), KV_NULL);

    // A host that answers once is heard, also after the last amount of a block.
    for (const int64_t quand : {0, 6400, 16384}) {
        kv_range arretee = bon;
        int64_t reste = quand;
        arretee.to = 60000, arretee.context = &reste;
        arretee.progress = [](int64_t n, int64_t, void* contexte) -> int32_t {
            int64_t& attendue = *static_cast<int64_t*>(contexte);
            return n >= attendue ? (attendue = INT64_MAX, 1) : 0;
        };
        EXPECT_EQ(kv_breaks(r.handle(), &arretee, &morceau, 1, &nombre), KV_CANCELLED) << quand;
    }

    // Blocks of amounts are told as one work.
    std::vector<int64_t> faites;
    kv_range longue = bon;
    longue.to = 40000, longue.context = &faites;
    longue.progress = [](int64_t n, int64_t lignes, void* contexte) -> int32_t {
        EXPECT_EQ(lignes, 40001);
        static_cast<std::vector<int64_t>*>(contexte)->push_back(n);
        return 0;
    };
    EXPECT_EQ(kv::Return().breaks(longue).front().from, 0);
    EXPECT_TRUE(std::is_sorted(faites.begin(), faites.end()));
    EXPECT_EQ(faites.back(), 40001);
}

TEST(Trace, TellsTheStepsAndFindsTheSame) {
    for (unsigned graine = 0; graine < 20; ++graine) {
        kv::Return r = Menage(graine), tracee = r;
        std::vector<std::string> lignes;
        tracee.compute_traced([&](const char* ligne) { lignes.emplace_back(ligne); });
        r.compute();
        for (int32_t j = 0, n = kv::count(KV_OUTPUT); j < n; ++j) {
            ASSERT_EQ(tracee.output(j), r.output(j)) << j;
            ASSERT_EQ(tracee.text(j), r.text(j)) << j;
        }
        ASSERT_FALSE(lignes.empty());
        EXPECT_NE(lignes.front().find("1:Calcul"), std::string::npos);
        for (const char* etape : {" 4:RevenusSalaires", " 26:ImpotAPaye", " 35:Calcul_ISF"})
            EXPECT_TRUE(std::any_of(lignes.begin(), lignes.end(), [&](const auto& l) { return l.ends_with(etape); }));
    }
    EXPECT_EQ(kv_compute_traced(kv::Return().handle(), nullptr, nullptr), KV_NULL);
    EXPECT_THROW(kv::Return().compute_traced([](const char*) { throw std::logic_error("a line"); }), std::logic_error);
}

}  // namespace
