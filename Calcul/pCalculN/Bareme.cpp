#include "Calcul/pCalculN/Bareme.h"

#include <algorithm>

#include "Calcul/cCalcul/Transferts.h"
#include "Calcul/pCalculN/Calcul_N.h"

// The progressive scale, the cap on the family quotient, the tax on exceptional income (CGI art. 197 and 163-0 A).

namespace kv {

namespace {

// Each constant makes the formula continuous from one bracket to the next.
constexpr Bareme bareme2017 = {{
    {0, 9807, 0, 0},
    {9807, 27086, 1372.98, 1400},
    {27086, 72617, 5706.74, 3000},
    {72617, 153783, 13694.61, 4100},
    {153783, 0, 19845.93, 4500},
}};

}  // namespace

void RemplitBareme(Bareme& bareme, std::int32_t annee) {
    if (annee == 2017) bareme = bareme2017;
}

ImpotBareme AppliqueBareme(const Bareme& bareme, std::int32_t revenu, std::int32_t parts) {
    const double quotient = dDiv(revenu, dDiv(parts, 100.0));
    std::size_t i = 0;
    for (std::size_t k = 0; k < 4; ++k)
        if (bareme[k].Basse < quotient && quotient <= bareme[k].Haute) i = k;
    if (i == 0 && quotient > bareme[4].Basse) i = 4;
    const TrancheBareme& tranche = bareme[i];
    const double impot = dDiv(dMul(revenu, tranche.Taux), 10000.0) - dDiv(dMul(tranche.Constante, parts), 100.0);
    return {nArrondi(impot), nArrondi(tranche.Taux)};
}

}  // namespace kv

// The income that the scale is applied to.
std::int32_t CCalcul_N::RevenuAuBareme() const { return m_travail.bAvec8TM ? E["8TM"] : nPositif(S["TOT_R_IMPOS"]); }

// A tax line: parts, income taxed and marginal rate in the columns.
void CCalcul_N::AppliqueBareme(CaseSortie ligne, std::int32_t revenu, std::int32_t parts) {
    const kv::ImpotBareme resultat = kv::AppliqueBareme(m_Bareme, revenu, parts);
    S[ligne] = resultat.impot;
    C1[ligne] = parts;
    C2[ligne] = revenu;
    C3[ligne] = resultat.tauxMarginal;
}

void CCalcul_N::CalculeBareme() {
    const std::int32_t revenu = RevenuAuBareme();
    const std::int32_t base = S["F_NB_PARTS_ISO"], parts = S["F_NB_PARTS_ALL"];
    const bool partsEnPlus = (base == 100 && parts > 100) || (base == 200 && parts > 200);

    AppliqueBareme("I_IMP_NORM", revenu, parts);
    if (partsEnPlus) {
        AppliqueBareme("I_IMP_SIMP", revenu, base);
        PlafondQuotientFamilial(base, parts);
        m_pData->Copie("I_BAREME", "I_IMP_RETENU");
    } else {
        const bool avecQuotient = S["I2_IMP_NORM"] + S["I2_IMP_SIMP"] + S["I2_PLAF_FAM"] > 0;
        const CaseSortie modele = avecQuotient ? CaseSortie("I2_IMP_NORM") : CaseSortie("I_IMP_NORM");
        S["I_IMP_RETENU"] = S["I_IMP_NORM"];
        C1["I_IMP_RETENU"] = C1[modele];
        C2["I_IMP_RETENU"] = revenu;
        C3["I_IMP_RETENU"] = C3[modele];
        m_pData->Copie("I_BAREME", "I_IMP_NORM");
    }
    C1["I_BAREME"] = 0;
    C2["I_BAREME"] = revenu;
    if (S["I_BAREME"] > 0) S["SEPAR_IMPOT"] = 1;
}

// The advantage of the half parts beyond the base parts is capped (CGI art. 197 I-2), with a complementary reduction
// for some half parts and an adjustment for widowed parents.
void CCalcul_N::PlafondQuotientFamilial(std::int32_t base, std::int32_t parts) {
    const std::int32_t extra = parts - base;
    const bool parentIsole = (E["C"] == 1 || E["D"] == 1 || (E["V"] == 1 && E["Fm"] + E["Jm"] == 0)) &&
                             E["Fm"] + E["Jm"] + E["Hm"] > 0 && E["T"] == 1;
    std::int32_t& plafond = S["I_PLAF_FAM"];
    if (base == 100 && parts == 150 && E["L"] == 1 && E["P"] == 0 && E["Gp"] == 0 && E["W"] == 0)
        plafond = IDX(912);
    else if (parentIsole && extra < 100)
        plafond = nProrata(IDX(3602), extra, 100);
    else if (parentIsole)
        plafond = nTronque(IDX(3602) + dDiv(dMul(IDX(1527), extra - 100), 50));
    else
        plafond = nTronque(dDiv(dMul(IDX(1527), extra), 50));
    Detail["I_PLAF_FAM"] = IntToStr(plafond);

    // The half parts that give the complementary reduction, in tenths.
    std::int32_t demiParts = E["P"] + E["Fp"];
    if (demiParts == 0) {
        demiParts = E["S"];
        if (S["F_NB_CHARGE"] == 0) demiParts = std::min(demiParts + (E["W"] != 0 ? 1 : 0) + E["Gp"], 1);
    }
    demiParts += E["Gm"] + E["Rm"];
    C1["I_NEUT_PLAF_FAM"] = 10 * demiParts + 5 * E["Im"];

    const std::int32_t normal = S["I_IMP_NORM"];
    const std::int32_t plafonne = S["I_IMP_SIMP"] - plafond;
    const std::int32_t complement = (IDX(3050) - IDX(1527)) * C1["I_NEUT_PLAF_FAM"] / 10;
    std::int32_t& neutre = S["I_NEUT_PLAF_FAM"];
    neutre = plafonne - complement >= normal ? complement : plafonne > normal ? plafonne - normal : 0;

    std::int32_t& ajustement = S["I_AJUST_PLAF_FAM"];
    const bool veufAvecCharge = base == 100 && E["V"] == 1 && E["Fm"] + E["Rm"] + E["Jm"] + E["Hm"] >= 1;
    const std::int32_t marge = plafonne - neutre - normal;
    ajustement = veufAvecCharge && marge > 0 ? std::min(IDX(1701), marge) : 0;

    // With exceptional income, the figures that include it say which of the two taxes the columns show.
    const bool avecQuotient = S["I2_IMP_NORM"] + S["I2_IMP_SIMP"] + S["I2_PLAF_FAM"] + S["I2_NEUT_PLAF_FAM"] > 0;
    const bool simple =
        avecQuotient
            ? S["I2_IMP_SIMP"] - S["I2_PLAF_FAM"] - S["I2_NEUT_PLAF_FAM"] - S["I2_AJUST_PLAF_FAM"] >= S["I2_IMP_NORM"]
            : plafonne - neutre - ajustement >= normal;
    const CaseSortie modele = simple ? CaseSortie("I_IMP_SIMP") : CaseSortie("I_IMP_NORM");
    S["I_IMP_RETENU"] = std::max(plafonne, normal);
    C1["I_IMP_RETENU"] = C1[modele];
    C2["I_IMP_RETENU"] = C2["I_IMP_NORM"];
    C3["I_IMP_RETENU"] = C3[modele];
    m_pData->Soustrait("I_IMP_RETENU", "I_NEUT_PLAF_FAM");
    m_pData->Soustrait("I_IMP_RETENU", "I_AJUST_PLAF_FAM");
}

void CCalcul_N::CalculImpot() {
    const kv::Etape etape(m_trace, u"15:CalculImpot");

    S["I_QUOT"] = 0;
    CalculeBareme();
    if (S["QUOTIENT"] > 0) {
        const std::int32_t impotOrdinaire = S["I_BAREME"];
        S["I_BASES_QN"] = 0;
        for (auto& item : m_lstQuotients) {
            item.somme = item.montant1 + item.montant2;
            item.base = nPlancher(dDiv(item.somme, kv::Diviseur(item.coefficient)));
            S["I_BASES_QN"] += item.base;
        }
        S["I_BASES"] = S["I_BASES_QN"];
        S["I_BAREME_REV"] = RevenuAuBareme();

        std::int32_t& revenu = m_travail.bAvec8TM ? E["8TM"] : S["TOT_R_IMPOS"];
        {
            const kv::Change<std::int32_t> avecBases(revenu, revenu + S["I_BASES"]);
            CalculeBareme();
        }
        struct Copie {
            CaseSortie vers, de;
        };
        static constexpr Copie avecQuotient[] = {
            {"I2_IMP_NORM", "I_IMP_NORM"},           {"I2_IMP_SIMP", "I_IMP_SIMP"},
            {"I2_PLAF_FAM", "I_PLAF_FAM"},           {"I_BQ_TOUS", "I_IMP_RETENU"},
            {"I2_NEUT_PLAF_FAM", "I_NEUT_PLAF_FAM"}, {"I2_AJUST_PLAF_FAM", "I_AJUST_PLAF_FAM"},
        };
        for (const auto& [vers, de] : avecQuotient) m_pData->Copie(vers, de);
        C1["I2_NEUT_PLAF_FAM"] = 0;

        S["I_PART_QUO_N"] = S["I_QUO_N"] = 0;
        S["I_PART_QN_APP"] = S["I_BAREME"] - impotOrdinaire;
        for (auto& item : m_lstQuotients) {
            item.partImpot = nProrata(S["I_PART_QN_APP"], item.base, S["I_BASES"]);
            item.impot = nArrondi(dMul(item.partImpot, kv::Diviseur(item.coefficient)));
            S["I_PART_QUO_N"] += item.partImpot;
            S["I_QUO_N"] += item.impot;
        }
        C2["I_QUOT"] = S["I_PART_QN_APP"];
        S["I_QUOT"] = S["I_QUO_N"];
        CalculeBareme();  // the figures with the exceptional income now steer the columns of the retained tax
    }
    C1["I_NEUT_PLAF_FAM"] = 0;
    S["TOT_IMPOT"] = S["I_BAR_QUOT"] = S["I_BAREME"] + S["I_QUOT"];
    S["DEF_A_REPORT"] = S["TOT_R_BRUT"] < 0 ? S["TOT_R_BRUT"] + E["2FA"] : 0;
}

void CCalcul_N::TauxMarginal() {
    const kv::Etape etape(m_trace, u"16:TauxMarginal");

    const std::int32_t taux = C3["I_IMP_RETENU"] != 0 ? C3["I_IMP_RETENU"] : C3["I_BAREME"];
    const std::int32_t retenu = m_travail.nTauxMarginalFige > 0 ? m_travail.nTauxMarginalFige : taux;
    S["TAUX_MARGINAL_3"] = retenu;
    if (E["REM"] == 0 && E["RED"] == 0) {
        S["TAUX_MARGINAL_2"] = retenu;
        Detail["TAUX_MARGINAL_2"] = FloatToStr(retenu / 100.0) + u"%";
    }
}
