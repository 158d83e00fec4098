#include <kv.hpp>

#include "Calcul/cCalcul/Catalogues.h"
#include "Calcul/pInitCalcul/KVCalcul.h"
#include "tests/HasardReductions.h"

// The same returns through the imposed functions and through kv.h: every value, column and text, the entries and
// next year's return.

namespace {

template <class Zone>
void Copie(kv::Return& vers, kv_area aire, const Zone& zone, std::int32_t CaseEntreeDef::*place) {
    for (const CaseEntreeDef& fiche : TableEntree)
        if (fiche.*place >= 0)
            vers.set(static_cast<std::int32_t>(fiche.Index), zone.valeurs[static_cast<std::size_t>(fiche.*place)],
                     aire);
}

// The same return in kv.h.
kv::Return Copie(const CDataCalcul& data) {
    kv::Return r;
    for (std::int32_t i = 0; i < kv::nEntrees; ++i) r.set(i, data.Entree[CaseEntree::Numero(i)]);
    Copie(r, KV_AREA_TI, data.TI, &CaseEntreeDef::nTI);
    Copie(r, KV_AREA_TIX, data.TIX, &CaseEntreeDef::nTIX);
    Copie(r, KV_AREA_TIY, data.TIY, &CaseEntreeDef::nTIY);
    Copie(r, KV_AREA_TK, data.TK, &CaseEntreeDef::nTK);
    Copie(r, KV_AREA_TKZ, data.TKZ, &CaseEntreeDef::nTKZ);
    for (const auto& quotient : data.ListeQuotients)
        for (const CaseEntreeDef& fiche : TableEntree)
            if (fiche.nQuotient >= 0)
                if (const auto& montants = data.MapsQuotients[static_cast<std::size_t>(fiche.nQuotient)];
                    montants.contains(quotient->nId))
                    r.set_exceptional(static_cast<std::int32_t>(fiche.Index), quotient->nId,
                                      montants.at(quotient->nId));
    return r;
}

void Compare(CDataCalcul& data, kv_launch lancement, double indexation, const std::string& quoi) {
    kv::Return r = Copie(data);
    r.set_launch(lancement).set_indexation(indexation).compute();
    ASSERT_TRUE(
        KV_CalculPFUEtCIMR(&data, nullptr, true, indexation, lancement >= KV_LAUNCH_FORCED, lancement % 2 == 1));
    KV_CalculReports(&data, nullptr, indexation);
    std::vector<std::int32_t> valeurs(kv::nSorties);
    const auto memes = [&](const kv::ZoneSortie& zone, std::int32_t colonne) {
        r.outputs(valeurs, colonne);
        EXPECT_TRUE(std::equal(valeurs.begin(), valeurs.end(), zone.valeurs.begin())) << quoi << ", " << colonne;
    };
    memes(data.Sortie, 0), memes(data.Colonne[0], 1), memes(data.Colonne[1], 2), memes(data.Colonne[2], 3);
    for (std::int32_t j = 0; j < kv::nSorties; ++j)
        ASSERT_EQ(r.text(j), kv::VersUtf8(data.Detail[CaseSortie::Numero(j)])) << quoi << ", " << kv::sortie::noms[j];
    for (std::int32_t i = 0; i < kv::nEntrees; ++i)
        ASSERT_EQ(r.entry(i), data.Entree[CaseEntree::Numero(i)]) << quoi << ", " << kv::entree::lignes[i].nom;
    for (std::int32_t n = 0; n < kv::nReports; ++n)
        ASSERT_EQ(r.carry(n), data.Report[CaseReport::Numero(n)]) << quoi << ", " << kv::report::noms[n];
}

TEST(Conformite, TheTwoInterfacesGiveTheSameFigures) {
    test::HasardReductions hasard(15);
    std::mt19937 arbitraire(15);
    for (int i = 0; i < 240; ++i) {
        Retour retour = i % 4 == 0 ? Retour() : hasard.Declaration(hasard.Entre(1, 40));
        if (i % 4 == 0) test::RemplitAuHasard(retour.Data(), arbitraire);
        if (i % 4 == 1) hasard.Depenses(retour, 20), hasard.OutreMer(retour, 10);
        for (const CaseEntree option :
             {CaseEntree("6QW"), CaseEntree("AVA"), CaseEntree("PFU"), CaseEntree("BAR"), CaseEntree("CIMR")})
            if (hasard.UneFoisSur(5)) retour.Avec({{option, hasard.UneFoisSur(4) ? nNonSaisi : 1}});
        Compare(retour.Data(), i / 4 % 4, i % 3 == 0 ? 1.5 : -1.0, std::to_string(i));
    }
}

}  // namespace
