#include "Calcul/pInitCalcul/KVCalcul.h"
#include "interface/Retour.h"
#include "tests/Figures.h"
#include "tests/Hasard.h"
#include "tests/Hote.h"
#include "tools/Retour.h"

// The same returns through the imposed functions, kv.h and the documents of the command line: every value, column and
// text, the entries and next year's return. Python and the page compute them too (kv_corpus).

namespace {

// What a host of the imposed functions reads, written as test::Figures writes what kv.h gives.
std::string FiguresDeLHote(const CDataCalcul& data) {
    std::string figures;
    for (int j = 0; j < kv::nSorties; ++j) {
        const CaseSortie c = CaseSortie::Numero(j);
        const std::int32_t v[] = {data.Sortie[c], data.Colonne[0][c], data.Colonne[1][c], data.Colonne[2][c]};
        const std::string texte = kv::VersUtf8(data.Detail[c]);
        if (texte.empty() && v[0] == 0 && v[1] == 0 && v[2] == 0 && v[3] == 0) continue;
        figures += kv::sortie::noms[j];
        for (const std::int32_t figure : v) figures += ' ' + std::to_string(figure);
        figures += (texte.empty() ? "" : ' ' + texte) + '\n';
    }
    const auto ajoute = [&](const std::string& nom, std::int32_t v) {
        if (v != 0) figures += nom + ' ' + std::to_string(v) + '\n';
    };
    for (int i = 0; i < kv::nEntrees; ++i) ajoute(kv::entree::lignes[i].nom, data.Entree[CaseEntree::Numero(i)]);
    for (int n = 0; n < kv::nReports; ++n) ajoute(kv::report::noms[n], data.Report[CaseReport::Numero(n)]);
    return figures;
}

TEST(Conformite, TheInterfacesGiveTheSameFigures) {
    Hasard hasard(15);
    for (int i = 0; i < 240; ++i) {
        // The imposed functions know the law of the year and the period that their host gives.
        kv::Return r = hasard.Variee().set_law(kv::Law()).set_period(20170101, 20171231);
        const auto data = Hote(r);
        const kv_launch lancement = r.launch();
        ASSERT_TRUE(KV_CalculPFUEtCIMR(data.get(), nullptr, true, r.indexation(), lancement >= KV_LAUNCH_FORCED,
                                       lancement % 2 == 1));
        KV_CalculReports(data.get(), nullptr, r.indexation());
        kv::Return lu = outil::LisRetour(test::Document(r), "retour.json");
        const std::string figures = test::Figures(r.compute());
        EXPECT_EQ(FiguresDeLHote(*data), figures) << i << ": " << test::Boites(r);
        EXPECT_EQ(test::Figures(lu.compute()), figures) << i << ": " << test::Boites(r);
    }
}

}  // namespace
