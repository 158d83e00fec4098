#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <functional>
#include <kv.hpp>
#include <nlohmann/json.hpp>

#include "tests/Hasard.h"

// Why a figure is what it is: every node of every tree is computed again from its terms.

namespace {

using Noeud = nlohmann::json;

Noeud Arbre(const kv::Return& r, const char* figure = nullptr, int32_t profondeur = -1) {
    return Noeud::parse(r.explain(figure, profondeur));
}

class Verification {
  public:
    explicit Verification(const kv::Return& r) : m_retour(r) { m_retour.compute(); }

    // ailleurs: within another run, whose figures are not those that the return shows.
    void Controle(const Noeud& noeud, bool ailleurs = false) {
        const std::string regle = noeud["rule"], boite = noeud.value("box", "");
        const auto valeur = noeud["value"].get<int64_t>();
        SCOPED_TRACE(regle + ' ' + boite + '.' + std::to_string(noeud.value("column", 0)) + ' ' +
                     noeud["label"].get<std::string>());
        ++noeuds;
        sansRegle += regle == "step" || regle == "run";
        ailleurs = ailleurs || noeud.contains("run");
        if (!ailleurs) Figure(noeud, boite, valeur);
        passages += noeud.contains("run");
        const Noeud termes = noeud.value("terms", Noeud::array());
        const auto operande = [&](const char* role) -> const Noeud* {
            for (const Noeud& terme : termes)
                if (terme.value("role", "") == role) return &terme;
            return nullptr;
        };
        const auto montant = [&](const char* role, double sinon) {
            const Noeud* o = operande(role);
            return o ? static_cast<double>((*o)["sign"].get<int>()) * static_cast<double>((*o)["value"].get<int64_t>())
                     : sinon;
        };
        const bool feuille = termes.empty();
        if ((regle == "sum" || regle == "scale") && !feuille) {
            int64_t somme = 0;
            for (const Noeud& terme : termes)
                if (!terme.contains("role")) somme += terme["sign"].get<int64_t>() * terme["value"].get<int64_t>();
            EXPECT_EQ(static_cast<int32_t>(somme), valeur);  // 32-bit amounts wrap
        } else if (regle == "choice" && !feuille) {
            EXPECT_EQ(montant("chosen", 0), static_cast<double>(valeur));
        } else if (regle == "rate") {
            EXPECT_NEAR(montant("base", 0) * montant("rate", 0) / 10000, static_cast<double>(valeur), 0.5000001);
        } else if (regle == "share") {
            EXPECT_NEAR(montant("amount", 0) * montant("numerator", 1) / montant("denominator", 1),
                        static_cast<double>(valeur), 0.99);
        } else if (regle == "min" || regle == "max") {
            std::vector<int64_t> parmi;
            for (const Noeud& terme : termes)
                if (terme.value("role", "") == "among") parmi.push_back(terme["value"]);
            if (!feuille) {
                EXPECT_EQ(regle == "min" ? std::ranges::min(parmi) : std::ranges::max(parmi), valeur);
            }
        } else if (regle == "box" || regle == "law" || regle == "part") {
            EXPECT_TRUE(feuille || regle == "part");
        }
        for (const Noeud& terme : termes) {
            EXPECT_TRUE(terme["value"] != 0 || terme.value("role", "") == "below");
            Controle(terme, ailleurs);
        }
    }

    int64_t noeuds = 0, sansRegle = 0, passages = 0;

  private:
    // A named figure is that of the computation, a leaf what the return sets.
    void Figure(const Noeud& noeud, const std::string& boite, int64_t valeur) const {
        if (boite.empty() || boite == "net" || noeud.value("role", "") == "effect") return;
        const std::string regle = noeud["rule"];
        if (regle == "box") {
            EXPECT_EQ(m_retour.get(boite), valeur);
        } else if (regle != "law" && (kv::find(KV_OUTPUT, boite) || kv::find(KV_CARRY, boite)) &&
                   !kv::find(KV_ENTRY, boite)) {
            const int colonne = noeud.value("column", 0);
            EXPECT_EQ(m_retour[colonne > 0 ? boite + ".c" + std::to_string(colonne) : boite], valeur);
        }
    }

    kv::Return m_retour;
};

TEST(Explications, EveryNodeIsWhatItsTermsGive) {
    for (unsigned graine = 0; graine < 60; ++graine) {
        SCOPED_TRACE(graine);
        const kv::Return r = Hasard(graine).Variee();
        Verification(r).Controle(Arbre(r));
        if (HasFailure()) return;
    }
    // Any figure, whether a rule makes it or not.
    const kv::Return r = Hasard(4).Variee();
    Verification verification(r);
    for (const kv_catalogue catalogue : {KV_OUTPUT, KV_CARRY})
        for (int32_t i = 0; i < kv::count(catalogue); i += 29)
            verification.Controle(Arbre(r, kv::describe(catalogue, i).name));
}

// Ordinary households are explained to the boxes: hardly a node is left to its step.
TEST(Explications, OrdinaryHouseholdsReachTheirBoxes) {
    int64_t noeuds = 0, sansRegle = 0;
    for (const char* exemple :
         {"celibataire", "couple-deux-enfants", "couple-hauts-salaires", "couple-residence-alternee", "parent-isole",
          "retraites-plus-de-65-ans", "veuve-un-enfant"}) {
        std::ifstream fichier(std::string(KV_RACINE) + "/examples/" + exemple + ".json");
        kv::Return r;
        const Noeud entrees = Noeud::parse(fichier)["entries"];
        for (const auto& [nom, valeur] : entrees.items()) r.set(nom, valeur.get<int32_t>());
        r.set("2DC", 900).set("2TR", 300).set("7UF", 200).set("7DB", 1500).set("4BE", 4000).set("6RS", 400);
        Verification verification(r);
        const Noeud arbre = Arbre(r);
        verification.Controle(arbre);
        noeuds += verification.noeuds, sansRegle += verification.sansRegle;
        // What was set is found at the leaves.
        const std::string texte = arbre.dump();
        for (const char* boite : {"2DC", "7UF", "7DB", "4BE"})
            EXPECT_TRUE(texte.find("\"box\":\"" + std::string(boite) + '"') != std::string::npos ||
                        (boite == std::string("7UF") && r.compute()["U_DONS_OEUVRES_N"] == 0))  // no tax is left
                << exemple << ' ' << boite;
    }
    EXPECT_LT(100 * sansRegle, noeuds);
}

// What other runs found has its own tree: the advantages beyond the global cap, the tax on the worldwide income, the
// option that was not applied.
TEST(Explications, OfOtherRuns) {
    // Home help of 12 000 and childcare of 6 900 for three: 6 000 and 3 450; what exceeds 10 000 with works is due
    // again.
    kv::Return r;
    r.set("M", 1).set("Fm", 3).set("1AJ", 90000).set("1BJ", 80000).set("7DB", 12000).set("7GA", 2300).set("7GB", 2300);
    r.set("7GC", 2300).set("7AM", 8000);
    Noeud arbre = Arbre(r, "NICHE_FISCALE");
    EXPECT_EQ(arbre["value"], 6000 + 3450 + 2400 - 10000);
    Verification(r).Controle(arbre);
    const Noeud sans = arbre["terms"][0]["terms"][0];
    EXPECT_EQ(sans["box"], "NICHE_B");
    EXPECT_TRUE(sans.contains("run"));
    EXPECT_EQ(sans["terms"][0]["terms"][0]["box"], "TOT_IMP_COR");

    kv::Return monde;
    monde.set("1AJ", 30000).set("1AC", 20000);
    arbre = Arbre(monde, "IMPOT_TX_EFFECTIF");
    EXPECT_EQ(arbre["rule"], "share");
    EXPECT_EQ(arbre["terms"][0]["value"], 2419 + 5374);  // 45 000: 14 % of 17 279, 30 % of 17 914
    Verification(monde).Controle(arbre);

    kv::Return options;
    options.set("1AJ", 40000).set("2DC", 5000).set("AVA", 1).set_launch(KV_LAUNCH_OPTIONS);
    arbre = Arbre(options);
    ASSERT_EQ(arbre["terms"][1]["role"], "option");
    EXPECT_EQ(arbre["terms"][1]["value"], options.compute().options().scale);
    EXPECT_EQ(arbre["terms"][1]["terms"][0]["value"], options.options().scale);
    Verification(options).Controle(arbre);
}

// A couple with two children: 42 000 and 31 000 less a tenth are 65 700; two parts pay 8 297, the half parts of the
// children save no more than twice 1 527.
TEST(Explications, OfAHouseholdWorkedOutByHand) {
    kv::Return r;
    r.set("M", 1).set("Fm", 2).set("1AJ", 42000).set("1BJ", 31000);
    const Noeud arbre = Arbre(r, "I_IMP_RETENU");
    EXPECT_EQ(arbre["value"], 5243);
    EXPECT_EQ(arbre["terms"][0]["box"], "I_IMP_SIMP");
    EXPECT_EQ(arbre["terms"][0]["value"], 8297);
    EXPECT_EQ(arbre["terms"][0]["rule"], "scale");
    EXPECT_EQ(arbre["terms"][0]["terms"][0]["value"], 4838);  // 14 % of 34 558
    EXPECT_EQ(arbre["terms"][0]["terms"][1]["value"], 3458);  // 30 % of 11 528
    EXPECT_EQ(arbre["terms"][1]["box"], "I_PLAF_FAM");
    EXPECT_EQ(arbre["terms"][1]["value"], 3054);
    EXPECT_EQ(arbre["terms"][1]["sign"], -1);
    EXPECT_EQ(arbre["terms"][1]["law"], "CGI art. 197 I-2");
    EXPECT_EQ(Arbre(r, nullptr, 1)["terms"][0]["rule"], "deeper");
    const std::function<int(const Noeud&)> hauteur = [&](const Noeud& noeud) {
        int h = 0;
        for (const Noeud& terme : noeud.value("terms", Noeud::array())) h = std::max(h, 1 + hauteur(terme));
        return h;
    };
    for (unsigned graine = 0; graine < 40; ++graine)
        for (int profondeur = 0; profondeur < 6; ++profondeur)
            EXPECT_LE(hauteur(Arbre(Hasard(graine).Variee(), graine % 2 == 0 ? nullptr : "U_DECOTE", profondeur)),
                      profondeur);

    // Nothing to pay, and why: 93 euros above the first threshold bear 13, which the relief takes whole.
    kv::Return rien;
    rien.set("1AJ", 11000);
    EXPECT_EQ(Arbre(rien)["value"], 0);
    EXPECT_EQ(Arbre(rien)["terms"][0]["box"], "TOT_IMP_RED");
    EXPECT_EQ(Arbre(rien)["terms"][0]["terms"][1]["box"], "U_DECOTE");
    EXPECT_EQ(Arbre(rien)["terms"][0]["terms"][1]["value"], 13);
}

}  // namespace
