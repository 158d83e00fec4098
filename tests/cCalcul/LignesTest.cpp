#include "Calcul/cCalcul/Lignes.h"

#include "support/KVTarvel.h"
#include "tests/Hote.h"

namespace {

// Every line written, with a text; then reset, and handed to a return that was full too.
struct Remplies {
    std::unique_ptr<kv::Lignes> lignes = std::make_unique<kv::Lignes>();
    CDataCalcul data;

    Remplies() {
        for (int j = 0; j < kv::nSorties; ++j) {
            lignes->Ecrit(CaseSortie::Numero(j)) = {1, {1, 1, 1}};
            lignes->EcritTexte(CaseSortie::Numero(j)) = kv::Texte::Nombre(12345678);
        }
        for (auto* zone : {&data.Sortie, &data.Colonne[0], &data.Colonne[1], &data.Colonne[2]}) zone->valeurs.fill(7);
        data.Detail.valeurs.fill(u"texte");
    }
    void Raz(kv::Lignes::Raz raz) {
        lignes->RemetAZero(raz);
        lignes->EcritDans(data);
    }
    // Value, columns and text all stand, or none does.
    bool Pleine(CaseSortie sortie) const {
        const std::int32_t somme =
            data.Sortie[sortie] + data.Colonne[0][sortie] + data.Colonne[1][sortie] + data.Colonne[2][sortie];
        EXPECT_EQ(somme, data.Detail[sortie].empty() ? 0 : 4) << kv::sortie::noms[sortie.numero];
        return somme != 0;
    }
};

TEST(Lignes, ResetsSpareWhatMustLast) {
    Remplies complete;
    complete.Raz(kv::Lignes::Raz::ToutSaufPlafondsPERP);
    for (int j = 0; j < kv::nSorties; ++j)  // the ten retirement-savings ceilings
        EXPECT_EQ(complete.Pleine(CaseSortie::Numero(j)), j == 1070 || j == 1071 || (j >= 1081 && j <= 1088)) << j;

    Remplies partielle;
    partielle.Raz(kv::Lignes::Raz::Partielle);
    EXPECT_FALSE(partielle.Pleine("D_IR_DU"));
    EXPECT_FALSE(partielle.Pleine("U_DECOTE_DOM_GUY"));
    for (const CaseSortie sortie : {CaseSortie("S_A_PAYER"), CaseSortie("NICHE_FISCALE"), CaseSortie("U_PR_HAA_R"),
                                    CaseSortie("U_DT_HCO"), CaseSortie("NP1_PLAF_PERP_C_C")})
        EXPECT_TRUE(partielle.Pleine(sortie)) << kv::sortie::noms[sortie.numero];
}

TEST(Lignes, Texts) {
    constexpr std::int32_t bas = -2147483647 - 1;
    const struct {
        kv::Texte texte;
        const char* attendu;
    } cas[] = {
        {kv::Texte::Nombre(bas), "-2147483648"},
        {kv::Texte::Taux(1250), "12.5%"},
        {kv::Texte::Taux(3), "0.03%"},
        {kv::Texte::Taux(-1), "-0.01%"},
        {kv::Texte::Taux(0), "0%"},
        {kv::Texte::TauxEnDixiemes(-143), "-14.3%"},
        {kv::Texte::TauxDeBase(4737, bas), "47.37% x -2147483648"},
        {kv::Texte::BaseAuTaux(12000, 7050), "12000 x 70.5%"},
        {kv::Texte::Fraction(100, 150), "1/1.5"},
        {kv::Texte::Personnes(2), "2 personne(s)"},
        {kv::Texte::Enfants(15), "1.5 enfant(s)"},
        {kv::Texte::Proratise(bas, bas, bas),
         "-2147483648 sur -2147483648) proratis\xC3\xA9 (x -2147483648 / -2147483648"},
    };
    for (const auto& c : cas) {
        std::u16string texte = u"ce qui s'y trouvait";
        c.texte.Ecrit(texte);
        EXPECT_EQ(kv::VersUtf8(texte), c.attendu);
    }
}

}  // namespace
