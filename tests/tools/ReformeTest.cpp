#include "tools/Reforme.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "tools/Resultat.h"

namespace {

using nlohmann::json;

// The message for a reform that must not be accepted.
std::string Refus(const std::string& texte) {
    try {
        outil::LisReforme(texte, "reforme.json");
        return "accepted";
    } catch (const outil::ErreurEntree& e) {
        return e.what();
    }
}

TEST(Reforme, AnEmptyOneChangesNothing) {
    for (const char* texte : {"{}", R"({"decote.part": 75, "pfu.taux": 12.8})"}) {
        const outil::LoiNommee loi = outil::LisReforme(texte, "reforme.json");
        EXPECT_TRUE(loi.Changements().empty());
    }
}

TEST(Reforme, MessagesSayWhereAndWhatInstead) {
    const struct {
        const char *texte, *message;
    } cas[] = {
        {"{\n\"decote.plafond.coupel\": 1}",
         "reforme.json:2: unknown parameter \"decote.plafond.coupel\"; nearest: decote.plafond.couple, "
         "decote.plafond.seul"},
        {R"({"decote.couple": 1})",
         "reforme.json:1: unknown parameter \"decote.couple\"; nearest: decote.plafond.couple"},
        {R"({"reductions.7VC.taux": 1})",
         "reforme.json:1: unknown parameter \"reductions.7VC.taux\"; that line follows reductions.7UF.taux"},
        {"{\"decote.part\": 101\n}",
         "reforme.json:1: decote.part: 101 is not a percentage from 0 to 100 with at most two decimals"},
        {R"({"decote.plafond.seul": 0.5})",
         "reforme.json:1: decote.plafond.seul: 0.5 is not whole euros from 0 to 1000000000"},
        {R"({"decote.part": "75"})", "reforme.json:1: decote.part: \"75\" is not a number"},
        {R"({"decote.part": null})", "reforme.json:1: decote.part: null is not a number"},
        {R"({"decote.part": {}})", "reforme.json:1: decote.part: an object is not a number"},
        {R"({"decote.part": [1]})", "reforme.json:1: decote.part: a list does not belong here"},
        {"{\"decote.part\": 1,\n\"decote.part\": 1}", "reforme.json:2: key \"decote.part\" stands twice"},
        {"[1]", "reforme.json:1: a reform is an object: a list does not belong here"},
        {"12", "reforme.json:1: a reform is an object: 12 is not a number"},
        {R"({"bareme.tranche3.seuil": 9807})",
         "reforme.json: bareme.tranche3.seuil is not above bareme.tranche2.seuil"},
    };
    for (const auto& c : cas) EXPECT_EQ(Refus(c.texte), c.message);
    EXPECT_TRUE(Refus("{").starts_with("reforme.json:1: not valid JSON"));
}

// A salary of 33333: 30000 taxed, of which 2914 at 30 %: 3293; at 31 %, 3322. The relief is too far away to matter.
TEST(Reforme, ResultsSayTheirLawAndAComparisonWhatChanges) {
    const outil::LoiNommee annee,
        reforme = outil::LisReforme(R"({"bareme.tranche3.taux": 31, "decote.part": 70.5})", "reforme.json");
    kv::Return avant, apres;
    avant.set("1AJ", 33333).compute();
    apres.set("1AJ", 33333).set_law(reforme.loi).compute();

    std::ostringstream resume;
    outil::EcritResume(resume, apres, reforme);
    EXPECT_NE(resume.str().find("2017  2 figures changed by reforme.json"), std::string::npos) << resume.str();

    std::ostringstream texte;
    outil::EcritComparaison(texte, avant, annee, apres, reforme, true);
    const json objet = json::parse(texte.str());
    EXPECT_EQ(objet["laws"][1],
              json::parse(R"({"year": 2017, "changes": {"bareme.tranche3.taux": 31, "decote.part": 70.5}})"));
    EXPECT_EQ(objet["laws"][0], json::parse(R"({"year": 2017})"));
    EXPECT_EQ(objet["differences"]["TOT_PAYER"], json({3293, 3322}));
    EXPECT_EQ(objet["differences"]["I_BAREME.c3"], json({3000, 3100}));
    EXPECT_FALSE(objet["differences"].contains("TOT_R_IMPOS"));

    std::ostringstream tableau, memes;
    outil::EcritComparaison(tableau, avant, annee, apres, reforme, false);
    EXPECT_NE(tableau.str().find("TOT_PAYER                               3293          3322           +29\n"),
              std::string::npos)
        << tableau.str();
    outil::EcritComparaison(memes, avant, annee, avant, annee, false);
    EXPECT_TRUE(memes.str().ends_with("Every figure is the same.\n")) << memes.str();
}

TEST(Reforme, TheListingShowsEachParameterOnce) {
    std::ostringstream texte, decote, lignes;
    outil::EcritLoi(texte, "", true);
    const json liste = json::parse(texte.str());
    std::set<std::string> noms;
    for (const json& p : liste) noms.insert(p["name"]);
    EXPECT_EQ(noms.size(), kv::parameter_count());
    outil::EcritLoi(decote, "DECOTE.PLAFOND.C", true);
    EXPECT_EQ(json::parse(decote.str()), json::parse(R"([{"name": "decote.plafond.couple", "value": 1939,
        "unit": "euros", "indexed": true, "source": "CGI art. 197 I-4 a"}])"));
    outil::EcritLoi(lignes, "tauxminimumoutremer", false);
    EXPECT_EQ(lignes.str(),
              "nonResidents.tauxMinimumOutremer                          14.4  percent             CGI art. 197 A\n");
}

}  // namespace
