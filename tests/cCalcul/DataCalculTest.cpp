#include "Calcul/cCalcul/Saisie.h"
#include "tests/Hasard.h"
#include "tests/Hote.h"

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
    const kv::Exceptionnels exceptionnels = kv::LisExceptionnels(data);
    EXPECT_EQ(exceptionnels.De("1AJ"), 1050);
    EXPECT_EQ(exceptionnels.De("1AJ", 4) + exceptionnels.De("1BJ"), 1300);
    EXPECT_EQ(exceptionnels.coefficients, (std::pmr::vector<std::int32_t>{4, 2, 0}));
    EXPECT_EQ(Coefficients(data), (std::vector{4, 2, 0}));  // in order of first appearance
}

TEST(DataCalcul, ACopyTakesWhatTheHostGave) {
    Hasard hasard(10);
    const auto rempli = Hote(hasard.Tout());
    CDataCalcul &source = *rempli, copie;
    source.Report["F11_2AA"] = 7;
    source.Sortie["TOT_IMPOT"] = 1;
    copie.AjouteQuotient(3, 9, 1);
    copie.Sortie["TOT_IMPOT"] = 2, copie.Detail["TOT_IMPOT"] = u"texte";

    copie.CopieValeurs(source);
    EXPECT_TRUE(Donnees(copie) == Donnees(source));
    EXPECT_EQ(copie.Entree["8TI"], source.Entree["8TI"]);
    EXPECT_EQ(copie.Report["F11_2AA"], 7);
    EXPECT_EQ(copie.Sortie["TOT_IMPOT"], 2);  // outputs are not copied
    EXPECT_EQ(Coefficients(copie), Coefficients(source));
    EXPECT_NE(copie.ListeQuotients[0], source.ListeQuotients[0]);  // records of its own
    EXPECT_EQ(copie.QuotientTotal.nId, 0);
    EXPECT_EQ(copie.QuotientOrdinaire.nId, 1);
}

}  // namespace
