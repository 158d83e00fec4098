#include <set>
#include <string_view>

#include "Calcul/cCalcul/Catalogues.h"
#include "tests/Hasard.h"

namespace {

constexpr int nDeclarations = 150;

Retour Copie(Retour& original) {
    Retour copie;
    copie.Data().CopieValeurs(original.Data());
    return copie;
}

// The household is the sum of its persons, and its gross income that of the three kinds of income.
TEST(ProprietesRevenus, TotalsOfTheHousehold) {
    Hasard hasard(2044);
    for (int i = 0; i < nDeclarations; ++i) {
        SCOPED_TRACE(i);
        const auto r = hasard.Declaration().Calcule();
        for (const CaseSortie ligne : std::initializer_list<CaseSortie>{
                 "RN_SAL_SAIS",       "RN_SAL_DED_10",  "RN_SAL",       "RN_PEN_DECL",
                 "RN_PEN_ABAT",       "RN_PEN",         "RD_GAINS",     "RR_BA_MICRO_REV_IMP",
                 "RR_BA_MAJO",        "RR_BIC_P",       "RR_BIC_P_MIC", "RR_BIC_NP_MIC",
                 "RR_BIC_NP_LM_MIC",  "RR_BIC_NP_MAJO", "RR_BNC_P",     "RR_BNC_NP_SPE",
                 "RR_BNC_NP_CON_MAJ", "RF_PLUS",        "RF_PENSIONS",  "RF_INVENTEURS",
                 "REXONERE",          "NP1_MV_LT",      "FP_TI_SAL",    "FP_TI_PENS",
                 "MOND_AUTO_ENTR_P",  "MOND_PROSPEC"})
            EXPECT_EQ(r[ligne], r.C(1, ligne) + r.C(2, ligne) + r.C(3, ligne)) << kv::sortie::noms[ligne.numero];
        EXPECT_EQ(r["TOT_R_BRUT"], r["RNORMAL"] + r["RDIVERS"] + r["RREEL"]);
        EXPECT_LE(r["C_REDUC"] - r["C_TM_BIS"] - r["C_TM_TER"], std::max(r["TOT_R_BRUT"], 0));
        EXPECT_GE(r["TOT_R_IMPOS"] + r["QUOTIENT"], 0);
        EXPECT_GE(r["REVENU_REF"], 0);
    }
}

// ---- Two declarants who change places.

struct Paire {
    CaseEntree premier, second;
};

// The first declarant's boxes with the second's: one letter on, but for those that the form names otherwise.
const std::vector<Paire>& Jumelles() {
    static const std::vector<Paire> paires = [] {
        std::vector<Paire> trouvees = {
            {"5JG", "5RF"}, {"5JJ", "5RG"}, {"5SN", "5NS"}, {"5SP", "5NU"}, {"5SO", "5NT"},
            {"5JU", "5LD"}, {"5IU", "5RZ"}, {"5HK", "5JK"}, {"5IK", "5KK"}, {"5SV", "5SW"},
            {"5XT", "5XU"}, {"5XV", "5XW"}, {"1SM", "1DN"}, {"3VJ", "3VK"}, {"AAQ", "BAQ"},
        };
        for (const CaseEntree box : Hasard::Boites()) {
            const auto& ligne = kv::entree::lignes[box.numero];
            if (ligne.personne != kv::entree::D1) continue;
            if (std::any_of(trouvees.begin(), trouvees.end(), [&](const Paire& p) { return p.premier == box; }))
                continue;
            std::string nom = ligne.nom;
            ++nom[nom[0] == '6' ? 2 : 1];
            const int second = kv::NumeroEntree(std::string_view(nom));
            if (second >= 0 && kv::entree::lignes[second].personne == kv::entree::D2)
                trouvees.push_back({box, CaseEntree::Numero(second)});
        }
        return trouvees;
    }();
    return paires;
}

// Swaps what two boxes hold: entry, companions, exceptional amounts.
void Echange(CDataCalcul& data, const Paire& p) {
    const auto& a = TableEntree[static_cast<std::size_t>(p.premier.numero)];
    const auto& b = TableEntree[static_cast<std::size_t>(p.second.numero)];
    const auto echange = [](auto& valeurs, std::int32_t i, std::int32_t j) {
        if (i >= 0) std::swap(valeurs[static_cast<std::size_t>(i)], valeurs[static_cast<std::size_t>(j)]);
    };
    std::swap(data.Entree[p.premier], data.Entree[p.second]);
    echange(data.TI.valeurs, a.nTI, b.nTI);
    echange(data.TIX.valeurs, a.nTIX, b.nTIX);
    echange(data.TIY.valeurs, a.nTIY, b.nTIY);
    echange(data.TK.valeurs, a.nTK, b.nTK);
    echange(data.TKZ.valeurs, a.nTKZ, b.nTKZ);
    echange(data.MapsQuotients, a.nQuotient, b.nQuotient);
}

TEST(ProprietesRevenus, EachDeclarantHasTheSameBoxes) {
    std::set<int> seconds;
    for (const Paire& p : Jumelles()) {
        const auto& a = kv::entree::lignes[p.premier.numero];
        const auto& b = kv::entree::lignes[p.second.numero];
        SCOPED_TRACE(a.nom + std::string(" ") + b.nom);
        EXPECT_EQ(a.personne, kv::entree::D1);
        EXPECT_EQ(b.personne, kv::entree::D2);
        EXPECT_EQ(a.marques, b.marques);
        EXPECT_TRUE(seconds.insert(p.second.numero).second);
    }
    EXPECT_GE(seconds.size(), 150u);
}

TEST(ProprietesRevenus, DeclarantsMayChangePlaces) {
    std::set<int> avecJumelle;
    for (const Paire& p : Jumelles()) avecJumelle.insert({p.premier.numero, p.second.numero});
    Hasard hasard(2045);
    for (int i = 0; i < nDeclarations; ++i) {
        SCOPED_TRACE(i);
        Retour retour = hasard.Declaration(40);
        CDataCalcul& data = retour.Data();
        data.Entree["M"] = 1, data.Entree["AAF1"] = 0;
        for (const CaseEntree box : Hasard::Boites()) {
            const auto personne = kv::entree::lignes[box.numero].personne;
            if (personne <= kv::entree::D2 && !avecJumelle.contains(box.numero)) data.Entree[box] = 0;
        }
        Retour echange = Copie(retour);
        for (const Paire& p : Jumelles()) Echange(echange.Data(), p);

        const auto a = retour.Calcule();
        const auto b = echange.Calcule();
        for (const CaseSortie sortie :
             std::initializer_list<CaseSortie>{"TOT_R_BRUT", "TOT_R_IMPOS", "TOT_IMPOT", "RQ_REV_EXCEP", "REVENU_REF",
                                               "IMPOT_TM", "IMPOT_TX_EFFECTIF", "TOT_R_MONDIAL", "IMPOT_ETR_REV_TK"})
            EXPECT_EQ(a[sortie], b[sortie]) << kv::sortie::noms[sortie.numero];
        for (const CaseSortie ligne : std::initializer_list<CaseSortie>{"RN_SAL", "RR_BA", "RR_BIC_P", "RR_BIC_NP_LM",
                                                                        "RR_BNC_P", "RR_BNC_NP", "RF_PLUS", "REXONERE"})
            EXPECT_EQ(a.Colonnes(ligne), (std::vector{b.C(2, ligne), b.C(1, ligne), b.C(3, ligne)}))
                << kv::sortie::noms[ligne.numero];
    }
}

}  // namespace
