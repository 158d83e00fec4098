#include "tests/Hasard.h"
#include "tests/Retour.h"

namespace {

std::vector<std::int32_t> Coefficients(const CDataCalcul& data) {
    std::vector<std::int32_t> ids;
    for (const auto& quotient : data.ListeQuotients) ids.push_back(quotient->nId);
    return ids;
}

TEST(DataCalcul, QuotientStore) {
    CDataCalcul data;
    EXPECT_TRUE(data.ListeQuotients.empty());
    EXPECT_EQ(data.QuotientTotal.nId, 0);
    EXPECT_EQ(data.QuotientOrdinaire.nId, 1);

    const int salaires = kv::CaseQuotient("1AJ").numero, conjoint = kv::CaseQuotient("1BJ").numero;
    data.AjouteQuotient(salaires, 4, 1000);
    data.AjouteQuotient(salaires, 4, 2000);  // dropped: an amount is there
    data.AjouteQuotient(conjoint, 4, 300);   // the same coefficient: no new record
    data.AjouteQuotient(conjoint, 2, nNonSaisi);
    data.AjouteQuotient(salaires, 0, 50);
    EXPECT_EQ(data.Quotient(salaires, 4), 1000);
    EXPECT_EQ(data.Quotient(conjoint, 4), 300);
    EXPECT_EQ(data.Quotient(conjoint, 2), 0);  // unset
    EXPECT_EQ(data.Quotient(conjoint, 0), 0);  // other coefficients only
    EXPECT_EQ(data.Quotient("1AJ"), 1050);
    EXPECT_EQ(data.Quotient("1BJ"), 300);
    EXPECT_EQ(Coefficients(data), (std::vector{4, 2, 0}));  // in order of first appearance
}

TEST(DataCalcul, ResetsSpareWhatMustLast) {
    CDataCalcul data;
    const auto remplit = [&] {
        for (auto* zone : {&data.Sortie, &data.Colonne[0], &data.Colonne[1], &data.Colonne[2]}) zone->valeurs.fill(1);
        data.Detail.valeurs.fill(u"texte");
    };
    const auto pleine = [&](std::size_t j) {  // value, columns and text all stand, or none does
        const std::int32_t somme = data.Sortie.valeurs[j] + data.Colonne[0].valeurs[j] + data.Colonne[1].valeurs[j] +
                                   data.Colonne[2].valeurs[j];
        EXPECT_EQ(somme, data.Detail.valeurs[j].empty() ? 0 : 4) << j;
        return somme != 0;
    };

    remplit();
    data.RemetSortiesAZero(CDataCalcul::Raz::ToutSaufPlafondsPERP);
    for (std::size_t j = 0; j < kv::nSorties; ++j)  // the ten retirement-savings ceilings
        EXPECT_EQ(pleine(j), j == 1070 || j == 1071 || (j >= 1081 && j <= 1088)) << kv::sortie::noms[j];

    remplit();
    data.RemetSortiesAZero(CDataCalcul::Raz::Partielle);
    const auto gardee = [&](CaseSortie sortie) { return pleine(static_cast<std::size_t>(sortie.numero)); };
    EXPECT_FALSE(gardee("D_IR_DU"));
    EXPECT_FALSE(gardee("U_DECOTE_DOM_GUY"));
    for (const CaseSortie sortie : {CaseSortie("S_A_PAYER"), CaseSortie("NICHE_FISCALE"), CaseSortie("U_PR_HAA_R"),
                                    CaseSortie("U_DT_HCO"), CaseSortie("NP1_PLAF_PERP_C_C")})
        EXPECT_TRUE(gardee(sortie)) << kv::sortie::noms[sortie.numero];
}

TEST(DataCalcul, CopyAndClear) {
    std::mt19937 hasard(10);
    CDataCalcul source, copie;
    test::RemplitAuHasard(source, hasard);
    source.Report["F11_2AA"] = 7;
    source.Sortie["TOT_IMPOT"] = 1;
    source.ListeQuotients[0]->nValeur[119] = 5;
    source.QuotientTotal.nValeur[0] = 6;
    copie.AjouteQuotient(3, 9, 1);
    copie.Sortie["TOT_IMPOT"] = 2, copie.Detail["TOT_IMPOT"] = u"texte";
    copie.QuotientOrdinaire.nValeur[0] = 8;

    copie.CopieValeurs(source);
    EXPECT_TRUE(Donnees(copie) == Donnees(source));
    EXPECT_EQ(copie.Entree["8TI"], source.Entree["8TI"]);
    EXPECT_EQ(copie.Report["F11_2AA"], 7);
    EXPECT_EQ(copie.Sortie["TOT_IMPOT"], 2);  // outputs are not copied
    EXPECT_EQ(Coefficients(copie), Coefficients(source));
    EXPECT_EQ(copie.ListeQuotients[0]->nValeur[119], 5);
    EXPECT_NE(copie.ListeQuotients[0], source.ListeQuotients[0]);  // records of its own
    EXPECT_EQ(copie.QuotientTotal.nValeur[0] + copie.QuotientOrdinaire.nValeur[0], 0);
    EXPECT_EQ(copie.QuotientTotal.nId, 0);
    EXPECT_EQ(copie.QuotientOrdinaire.nId, 1);

    copie.Vide();
    Donnees vide{CDataCalcul()};
    vide.quotients = source.MapsQuotients;  // the quotient store stays
    EXPECT_TRUE(Donnees(copie) == vide);
    EXPECT_TRUE(test::MemesSorties(copie, CDataCalcul()));
    EXPECT_EQ(copie.Report["F11_2AA"], 0);
    EXPECT_EQ(Coefficients(copie), Coefficients(source));
}

}  // namespace
