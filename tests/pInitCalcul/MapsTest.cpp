#include "Calcul/cCalcul/Catalogues.h"
#include "Calcul/pInitCalcul/KVCalculMaps.h"
#include "tests/Hasard.h"
#include "tests/Hote.h"

namespace {

class Maps : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(m_data = KV_Calcul_Debut()); }
    void TearDown() override { KV_Calcul_Fin(); }

    CDataCalcul* m_data = nullptr;
};

TEST_F(Maps, OnlyBoxesThatCarrySomethingAppear) {
    EXPECT_TRUE(KV_Calcul_RemplirMapEntree().empty());
    EXPECT_TRUE(KV_Calcul_RemplirMapSortie().empty());
    EXPECT_TRUE(KV_Calcul_RemplirMapReport().empty());
    EXPECT_TRUE(KV_Calcul_RemplirMapQuotient().empty());

    m_data->Entree["1AJ"] = 42000;
    m_data->Entree["5HF"] = -5;
    m_data->Entree["1BJ"] = nNonSaisi;
    m_data->TI["1AW"] = 700;
    m_data->TIX["2DC"] = nNonSaisi;
    m_data->TIY["4BA"] = 3;
    m_data->TK["4BK"] = 4;
    m_data->TKZ["1FF"] = 5;
    EXPECT_EQ(KV_Calcul_RemplirMapEntree(), (MapList{{u"1AJ", 42000}, {u"5HF", -5}}));
    EXPECT_EQ(KV_Calcul_RemplirMapEntreeTI(), (MapList{{u"1AW", 700}}));
    EXPECT_TRUE(KV_Calcul_RemplirMapEntreeTIX().empty());
    EXPECT_EQ(KV_Calcul_RemplirMapEntreeTIY(), (MapList{{u"4BA", 3}}));
    EXPECT_EQ(KV_Calcul_RemplirMapEntreeTK(), (MapList{{u"4BK", 4}}));
    EXPECT_EQ(KV_Calcul_RemplirMapEntreeTKZ(), (MapList{{u"1FF", 5}}));
    EXPECT_TRUE(KV_Calcul_RemplirMapEntreeDouble().empty());
}

TEST_F(Maps, LoadingNamesExactlyAndClearsNothing) {
    m_data->Entree["1BJ"] = 900;
    const MapList entrees = {{u"1aj", 1}, {u"1ZZ", 2}, {u"1AJ ", 3}, {u"M", 1}};
    KV_Calcul_RemplirStructureParMapEntree(entrees, {{u"1AJ", 2.5}}, {{u"1AJ", 50}, {u"1AW", 60}}, {{u"1AW", 7}}, {},
                                           {{u"1AW", 8}}, {});
    KV_Calcul_RemplirStructureParMapEntreeDouble({{u"1AJ", 2.5}});
    EXPECT_EQ(KV_Calcul_RemplirMapEntree(), (MapList{{u"1BJ", 900}, {u"M", 1}}));
    EXPECT_EQ(KV_Calcul_RemplirMapEntreeTI(), (MapList{{u"1AW", 60}}));  // 1AJ has no TI slot
    EXPECT_EQ(KV_Calcul_RemplirMapEntreeTIX(), (MapList{{u"1AW", 7}}));
    EXPECT_TRUE(KV_Calcul_RemplirMapEntreeTK().empty());  // 1AW has no TK slot
}

TEST_F(Maps, StoredQuotientsAreKept) {
    const std::int32_t map = 81, coefficient = 4, montant = 1000;
    AddValQuotient(m_data, &map, &coefficient, &montant);
    const MapQuotients quotients = {{0, {{0, 300}}}, {81, {{4, 9999}, {2, 50}}}};
    KV_Calcul_RemplirStructureParMapQuotient(quotients);
    EXPECT_EQ(KV_Calcul_RemplirMapQuotient(), (MapQuotients{{0, {{0, 300}}}, {81, {{4, 1000}, {2, 50}}}}));
}

// A return taken out as maps and put into a new session is the same return: same boxes, same figures.
TEST_F(Maps, ExportThenLoadReproducesTheReturn) {
    Hasard hasard(1);
    const auto tire = Hote(hasard.Declaration(400));
    m_data->CopieValeurs(*tire);
    const auto remplis = [](auto& zone) {  // an unset box carries nothing
        for (std::int32_t& v : zone.valeurs) v = v == nNonSaisi ? 0 : v;
    };
    remplis(m_data->Entree), remplis(m_data->TI), remplis(m_data->TK);
    m_data->AjouteQuotient(81, 3, 5000);
    m_data->AjouteQuotient(72, 3, 1200);
    const Donnees avant(*m_data);
    ASSERT_TRUE(KV_Calcul_Lancement());
    const MapList sorties = KV_Calcul_RemplirMapSortie();
    KV_CalculReports(m_data, nullptr, -1.0);
    const MapList reports = KV_Calcul_RemplirMapReport();

    const MapList entrees = KV_Calcul_RemplirMapEntree(), ti = KV_Calcul_RemplirMapEntreeTI(),
                  tix = KV_Calcul_RemplirMapEntreeTIX(), tiy = KV_Calcul_RemplirMapEntreeTIY(),
                  tk = KV_Calcul_RemplirMapEntreeTK(), tkz = KV_Calcul_RemplirMapEntreeTKZ();
    const MapQuotients quotients = KV_Calcul_RemplirMapQuotient();
    CDataCalcul* nouveau = KV_Calcul_InitEntree();
    ASSERT_TRUE(nouveau);
    KV_Calcul_RemplirStructureParMapEntree(entrees, {}, ti, tix, tiy, tk, tkz);
    KV_Calcul_RemplirStructureParMapQuotient(quotients);
    EXPECT_TRUE(Donnees(*nouveau) == avant);
    ASSERT_TRUE(KV_Calcul_Lancement());
    EXPECT_EQ(KV_Calcul_RemplirMapSortie(), sorties);
    KV_CalculReports(nouveau, nullptr, -1.0);
    EXPECT_EQ(KV_Calcul_RemplirMapReport(), reports);
}

TEST(MapsSansSession, AnswerEmptyAndLoadNothing) {
    KV_Calcul_Fin();
    EXPECT_TRUE(KV_Calcul_RemplirMapEntree().empty() && KV_Calcul_RemplirMapSortie().empty() &&
                KV_Calcul_RemplirMapEntreeTK().empty() && KV_Calcul_RemplirMapQuotient().empty());
    KV_Calcul_RemplirStructureParMapEntree({{u"1AJ", 1}}, {}, {}, {}, {}, {}, {});
    KV_Calcul_RemplirStructureParMapQuotient({{81, {{4, 1000}}}});
    EXPECT_FALSE(KV_Calcul_Lancement());
}

}  // namespace
