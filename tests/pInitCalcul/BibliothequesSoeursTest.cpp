#include <dlfcn.h>

#include <filesystem>

#include "Calcul/pInitCalcul/KVCalculMaps.h"
#include "tests/Hote.h"
#include "tests/Messages.h"

// Small sibling libraries are built beside the tests, in directories of their own.

namespace {

using test::Messages;

std::u16string Repertoire(const char* nom) { return (std::filesystem::path(KV_SOEURS) / nom).u16string(); }

bool EstChargee(const char* repertoire, const char* fichier) {
    void* poignee = dlopen((std::filesystem::path(KV_SOEURS) / repertoire / fichier).c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (poignee) dlclose(poignee);
    return poignee != nullptr;
}

class Soeurs : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(m_data = KV_Calcul_Debut()); }
    void TearDown() override { KV_Calcul_Fin(); }

    CDataCalcul* m_data = nullptr;
};

TEST_F(Soeurs, WhatIsMissingIsReportedAndNothingElseHappens) {
    m_data->Entree["CE16"] = 1234;
    m_data->Report["F11_CE16"] = 77;
    const auto messageDe = [](auto appel) {
        const Messages messages;
        appel();
        EXPECT_EQ(messages.Recus().size(), 1u);
        EXPECT_EQ(messages.Recus()[0].service, kv::Service::Erreur);
        return messages.Recus()[0].texte;
    };
    EXPECT_EQ(messageDe([] { KV_Calcul_Report(u"/nulle/part"); }), "Impossible de charger : KVCOMMUN");
    EXPECT_EQ(messageDe([] { KV_Calcul_Report(Repertoire("vides")); }),
              "Impossible de charger la fonction ObtenirPourcentageBareme");
    EXPECT_FALSE(EstChargee("vides", "KVCOMMUN.so"));
    EXPECT_EQ(messageDe([] { KV_Calcul_RemplirStructure(2017, u"/nulle/part/", 3); }),
              "Impossible de charger : KV2017_COMMUN.dll");
    EXPECT_EQ(messageDe([] { KV_Calcul_RemplirStructure(7, Repertoire("vides"), 3); }),
              "Impossible de charger la fonction GoCalcCasDeTest");
    EXPECT_FALSE(EstChargee("vides", "KV7_COMMUN.dll"));
    EXPECT_EQ(m_data->Report["F11_CE16"], 77);
}

TEST_F(Soeurs, TheDirectoryMayEndWithItsSeparator) {
    for (const std::u16string fin : {u"", u"/", u"\\"}) {
        m_data->Entree["CE16"] += 100;
        const Messages messages;
        KV_Calcul_Report(Repertoire("completes") + fin);
        EXPECT_TRUE(messages.Recus().empty());
        EXPECT_EQ(m_data->Report["F11_CE16"], m_data->Entree["CE16"]);  // the carry-forward computation ran
    }
    EXPECT_TRUE(EstChargee("completes", "KVCOMMUN.so"));  // it stays
}

TEST_F(Soeurs, TheTestCaseIsHandedTheReturn) {
    KV_Calcul_RemplirStructure(7, Repertoire("completes"), -12);
    void* soeur =
        dlopen((std::filesystem::path(KV_SOEURS) / "completes" / "KV7_COMMUN.dll").c_str(), RTLD_NOW | RTLD_NOLOAD);
    ASSERT_TRUE(soeur);
    const auto* recus = static_cast<const std::int32_t*>(dlsym(soeur, "recus"));
    const auto* retour = static_cast<const void* const*>(dlsym(soeur, "retourRecu"));
    ASSERT_TRUE(recus && retour);
    EXPECT_EQ(std::vector(recus, recus + 9), (std::vector{0, -12, 0, 0, 0, 0, 1, 0, 1}));
    EXPECT_EQ(*retour, m_data);
    dlclose(soeur);
}

TEST_F(Soeurs, AnExceptionOfTheirsIsReported) {
    const Messages messages;
    KV_Calcul_RemplirStructure(7, Repertoire("en_panne"), 0);
    ASSERT_EQ(messages.Recus().size(), 2u);
    EXPECT_TRUE(messages.Recus()[0].texte.ends_with(") : en panne"));
    EXPECT_TRUE(EstChargee("en_panne", "KV7_COMMUN.dll"));
}

TEST(Initialisation, OverseasCodesAndCarryForwards) {
    std::u16string codes[37];
    codes[36] = u"before";
    KV_InitDomTom(codes);
    EXPECT_EQ(codes[0], u"RSA");
    EXPECT_EQ(codes[7], u"RST");
    EXPECT_EQ(codes[8], u"ISA");
    EXPECT_EQ(codes[21], u"ISN");
    EXPECT_EQ(codes[22], u"ITA");
    EXPECT_EQ(codes[36], u"ITT");

    CDataCalcul* data = KV_Calcul_Debut();
    data->Report["F11_2AA"] = 5;
    const Donnees avant(*data);
    for (int i = 0; i < 3; ++i) KV_InitReport();
    EXPECT_TRUE(Donnees(*data) == avant);
    EXPECT_EQ(data->Report["F11_2AA"], 5);
    KV_Calcul_Fin();
}

}  // namespace
