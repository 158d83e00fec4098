#include "Calcul/cCalcul/Catalogues.h"
#include "Calcul/pInitCalcul/KVCalculMaps.h"
#include "KVCommun/cPeriode/Periode.h"
#include "tests/Hote.h"
#include "tests/Messages.h"

namespace {

std::int32_t LitSortie(std::string_view nom) { return KV_Calcul_LireCaseSortie(kv::NumeroSortie(nom)); }

TEST(Session, FillsLaunchesAndReads) {
    EXPECT_EQ(KV_Calcul_LireTypeCaseEntree(1902), 1u);  // without a session
    EXPECT_EQ(KV_Calcul_LireTypeCaseEntree(1903), 2u);
    EXPECT_FALSE(KV_Calcul_Lancement());

    KV_Calcul_Debut();
    for (int i = 0; i < kv::nEntrees; ++i) ASSERT_EQ(KV_Calcul_LireCaseEntree(i), 0) << i;
    KV_Calcul_AffecteCaseEntree(1902, 750);
    EXPECT_EQ(KV_Calcul_LireCaseEntree(1902), 750);
    KV_Calcul_AffecteCaseEntree(1902, 33333);
    for (int fois = 0; fois < 2; ++fois) {
        ASSERT_TRUE(KV_Calcul_Lancement());
        EXPECT_EQ(LitSortie("TOT_IMPOT"), 3293);  // 9000 - 5706.74
    }
    KV_Calcul_AffecteCaseEntree(kv::NumeroEntree("L"), 1);  // a variant: 4200 - 1.5 x 1372.98 = 2141 is less
    ASSERT_TRUE(KV_Calcul_Lancement_OR());
    EXPECT_EQ(LitSortie("TOT_IMPOT"), 3293 - 912);
    EXPECT_EQ(KV_Calcul_LireCaseEntree(1902), 33333);

    for (CDataCalcul* (*recommence)() : {KV_Calcul_InitSortie, KV_Calcul_InitEntree}) {
        EXPECT_NE(recommence(), nullptr);  // entries and outputs alike
        EXPECT_EQ(KV_Calcul_LireCaseEntree(1902), 0);
        EXPECT_EQ(LitSortie("TOT_IMPOT"), 0);
        KV_Calcul_AffecteCaseEntree(1902, 33333);
        KV_Calcul_Lancement();
    }
    CDataCalcul* const ancienne = KV_Calcul_InitEntree();
    EXPECT_NE(KV_Calcul_Debut(), ancienne);
    ancienne->Entree["1AJ"] = 5;  // still alive: the caller's
    DetruitCalculGenere(ancienne);
    KV_Calcul_Fin();
    KV_Calcul_Fin();
    EXPECT_FALSE(KV_Calcul_Lancement_OR());
}

TEST(Session, ReturnsAndPeriodsOfTheHostsOwn) {
    EXPECT_FALSE(KV_Calcul(nullptr, nullptr, true, -1.0));
    EXPECT_FALSE(KV_CalculPFUEtCIMR(nullptr, nullptr, true, -1.0, true, true));
    DetruitCalculGenere(nullptr);
    TPeriodeDestructor(nullptr);

    CDataCalcul* const data = ConstruitCalculGenere();
    TPeriode* const periode = TPeriodeConstructor(2017);
    data->Entree["1AJ"] = 33333;
    EXPECT_TRUE(KV_Calcul(data, periode, true, -1.0));
    EXPECT_TRUE(KV_CalculPFUEtCIMR(data, nullptr, false, 2.0, false, false));
    EXPECT_EQ(data->Sortie["TOT_IMPOT"], 3293);       // the scale is not indexed
    EXPECT_EQ(periode->Fin, kv::Date(2017, 12, 31));  // still the host's
    TPeriodeDestructor(periode);

    const std::int32_t zero = 0;  // what a host forgets to give costs it nothing but the answer
    KV_RempliBareme(nullptr, 2017);
    CalculBareme(nullptr, nullptr, -1.0);
    KV_InitDomTom(nullptr);
    AddValQuotient(nullptr, &zero, &zero, &zero);
    AddValQuotient(data, &zero, nullptr, &zero);
    EXPECT_EQ(GetValQuotient(nullptr, &zero, &zero) + GetValQuotient(data, nullptr, &zero), 0);
    KV_CalculReports(nullptr, nullptr, -1.0);
    DetruitCalculGenere(data);

    EntreeBareme entree{};
    entree.M = entree.Hm = 1;
    SortieBareme sortie{};
    CalculBareme(&entree, &sortie, -1.0);
    EXPECT_EQ(sortie.F_NB_PARTS_ALL, 225);
}

TEST(Session, ExceptionalIncome) {
    CDataCalcul data;
    const auto ajoute = [&](std::int32_t map, std::int32_t coefficient, std::int32_t montant) {
        AddValQuotient(&data, &map, &coefficient, &montant);
    };
    const auto lit = [&](std::int32_t map, std::int32_t coef) { return GetValQuotient(&data, &map, &coef); };
    ajoute(81, 4, 1000), ajoute(81, 4, 2000), ajoute(86, 4, 50);
    EXPECT_EQ(lit(81, 4), 1000);  // the first one is kept
    EXPECT_EQ(lit(86, 4), 50);
    EXPECT_EQ(lit(81, 3) + lit(0, 4), 0);

    const Donnees avant(data);
    const test::Messages messages;
    ajoute(87, 4, 1), ajoute(-1, 4, 1);
    EXPECT_EQ(lit(87, 4) + lit(-1, 4), 0);
    EXPECT_TRUE(Donnees(data) == avant);
    EXPECT_EQ(data.ListeQuotients.size(), 1u);
    ASSERT_EQ(messages.Recus().size(), 4u);
    EXPECT_EQ(messages.Recus()[0].service, kv::Service::Erreur);
    EXPECT_NE(messages.Recus()[0].texte.find("87"), std::string::npos);
}

TEST(Session, CatalogueRecordsAndScale) {
    EXPECT_EQ(std::u16string(EntreeInit(nullptr, 1902).Nom), u"1AJ");
    EXPECT_EQ(std::u16string(SortieInit(nullptr, 0).Nom), u"SAUT_BLOC_REPORTS");
    EXPECT_EQ(std::u16string(ReportInit(nullptr, 0).Nom), u"F11_2AA");
    for (const std::int32_t hors : {-1, 2288}) {
        EXPECT_EQ(EntreeInit(nullptr, hors).Nom[0], 0);
        EXPECT_EQ(SortieInit(nullptr, hors).Nom[0] + ReportInit(nullptr, hors).Nom[0], 0);
    }
    TrancheBareme bareme[5]{};
    const test::Messages messages;
    KV_RempliBareme(bareme, 2016);
    EXPECT_EQ(bareme[1].Taux, 0.0);
    EXPECT_EQ(messages.Recus().size(), 1u);
    KV_RempliBareme(bareme, 2017);
    EXPECT_EQ(bareme[0].Haute, 9807.0);
    EXPECT_EQ(bareme[4].Taux, 4500.0);
}

}  // namespace
