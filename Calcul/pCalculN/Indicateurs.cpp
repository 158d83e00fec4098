#include <algorithm>

#include "Calcul/cCalcul/Transferts.h"
#include "Calcul/pCalculN/Calcul_N.h"

// Summary indicators, once the tax is known: the global deficit carried to later years, the average rate, the income
// taxed at the marginal rate, the margin before the next bracket; the wealth-tax figures that the host supplies.

void CCalcul_N::Reports() {
    const kv::Etape etape(m_trace, u"29:Reports");

    if (S["DEF_A_REPORT"] < 0) S["NP1_GLOBAL_ANN"] = nPositif(-S["DEF_A_REPORT"] - S["RD_DEFICIT"]);
    S["NP1_GLOBAL_ANT"] = SommeE({"6FA", "6FB", "6FC", "6FD", "6FE", "6FL"});
    S["NP1_GLOBAL_IMP"] =
        nPositif(std::min(S["NP1_GLOBAL_ANT"] + S["NP1_GLOBAL_ANN"], S["TOT_R_BRUT"] + S["RD_DEFICIT"]));
    // The oldest year's deficit lapses when it is not used.
    S["NP1_GLOBAL_PER"] = std::min(nPositif(E["6FA"] - S["NP1_GLOBAL_IMP"]), E["6FA"]);
    S["NP1_GLOBAL"] = S["NP1_GLOBAL_ANT"] + S["NP1_GLOBAL_ANN"] - S["NP1_GLOBAL_IMP"] - S["NP1_GLOBAL_PER"];
}

void CCalcul_N::TauxImposMoyen() {
    const kv::Etape etape(m_trace, u"31:TauxImposMoyen");
    if (S["TOT_PAYER"] <= 0 || E["REM"] != 0 || E["RED"] != 0) return;

    const double tauxDeductible = (NouveauxTaux() ? 680 : 510) / 100.0;
    const std::int32_t deductions = SommeS({"C_ENFANTS_1", "C_ENFANTS_2", "C_JUSTICE", "C_AUTRE", "C_CSG",
                                            "C_COT_PERP_V", "C_COT_PERP_C", "C_COT_PERP_E"});
    const std::int32_t commun =
        SommeS({"TOT_R_BRUT", "RR_BAM", "RD_MOB_ABAT", "RN_PEN_ABAT", "RF_PLUS", "RF_INVENTEURS", "RD_MOB_DEMI_BASE",
                "RF_PENSIONS", "RF_CESS_3VT", "RF_3PI", "RF_GAINS_18", "RF_GAINS_30", "RF_GAINS_40", "RF_GAINS_22_5",
                "RF_GAINS_BSPCE_19", "RF_GAINS_BSPCE_30", "RQ_GAINS"}) +
        SommeE({"3WI", "3WJ", "3WP", "5QM", "5RM"}) - deductions;
    const auto impotAvecPrelevement = [&](std::int32_t prelevement) {
        return nPositif(nPourcent(prelevement, 7.5) + S["TOT_PAYER"] + E["2CK"] - E["8TF"] - E["8TP"]);
    };
    std::int32_t revenu = 0, impot = 0;
    if (SelonLaDeclaration()) {
        revenu = commun + S["RF_2FA"] + E["2DH"] - nPourcent(E["2BH"], tauxDeductible);
        impot = impotAvecPrelevement(E["2DH"]);
    } else if (E["PFU"] != 0) {
        revenu = commun +
                 SommeE({"2FA", "2DH1", "2DH2", "2DH3", "2EE2", "2DC", "2CH2", "2CH3", "2TS2", "2TR", "2TT", "2GO",
                         "3SJ2", "3VG", "3UA", "3SB", "3SZ"}) -
                 nPourcent(m_travail.nRevenusDejaSoumis, tauxDeductible);
        impot = impotAvecPrelevement(E["2DH1"]);
    } else if (E["BAR"] != 0) {
        revenu = commun + E["2DH1"] - nPourcent(E["2BH"], tauxDeductible);
        impot = impotAvecPrelevement(E["2DH1"]);
    }
    S["TAUX_IMPOS_MOY"] = nPositif(nArrondi(dMul(dMul(dDiv(impot, revenu), 100.0), 100.0)));
    Detail["TAUX_IMPOS_MOY"] = FloatToStr(S["TAUX_IMPOS_MOY"] / 100.0) + u"%";
}

namespace {

// A rate of the scale in percent.
double Taux(const TrancheBareme& tranche) { return tranche.Taux / 100.0; }

}  // namespace

// The two steps below say nothing of a household whose tax does not come from the scale alone.
bool CCalcul_N::BaremeSeul() const {
    return E["REM"] == 0 && E["RED"] == 0 && E["8TK"] == 0 && kv::IndicateurEtranger(*m_pData) == 0;
}

// The first bracket with the marginal rate.
std::size_t CCalcul_N::TrancheMarginale() const {
    for (std::size_t i = 0; i < m_Bareme.size(); ++i)
        if (nArrondi(m_Bareme[i].Taux) == S["TAUX_MARGINAL_2"]) return i;
    return 0;
}

// What the cap on the family quotient takes off the tax of the base parts.
std::int32_t CCalcul_N::AvantagePlafonne() const {
    const bool demiParts =
        SommeE({"P", "Fp", "Gm", "Rm", "Im"}) > 0 || E["S"] > 0 || (S["F_NB_CHARGE"] == 0 && E["W"] != 0);
    const bool veuf = S["F_NB_PARTS_ISO"] == 100 && E["V"] == 1 && SommeE({"Fm", "Rm", "Jm", "Hm"}) >= 1;
    return (demiParts ? IDX(3050) - IDX(1527) : 0) + (veuf ? IDX(1701) : 0) +
           (S["I_BQ_TOUS_REV"] > 0 ? S["I2_PLAF_FAM"] : S["I_PLAF_FAM"]);
}

void CCalcul_N::ImposTxMarginal() {
    const kv::Etape etape(m_trace, u"32:ImposTxMarginal");
    if (!BaremeSeul()) return;

    const std::int32_t revenu = RevenuDuPlafond(), partsIso = S["F_NB_PARTS_ISO"], partsToutes = S["F_NB_PARTS_ALL"];
    const std::size_t k = TrancheMarginale();
    const TrancheBareme& tranche = m_Bareme[k];
    const bool toutesLesParts = partsToutes == partsIso ||
                                (S["I_BQ_TOUS_REV"] > 0 && S["I_BQ_TOUS"] == S["I2_IMP_NORM"]) ||
                                (S["I_BQ_TOUS_REV"] == 0 && S["I_IMP_RETENU"] == S["I_IMP_NORM"]);
    std::int32_t montant;
    if (toutesLesParts) {
        montant = nPositif(revenu - nArrondi(tranche.Basse * partsToutes * 0.01));
    } else {
        // The income where the capped tax in this bracket meets the tax of all parts in a lower one.
        const double iso = partsIso / 100.0, toutes = partsToutes / 100.0;
        montant = nPositif(revenu - nArrondi(tranche.Basse * partsIso * 0.01));
        for (std::size_t j = k; j-- > 1;) {
            const TrancheBareme& basse = m_Bareme[j];
            const double x =
                dDiv(tranche.Constante * iso + AvantagePlafonne() + Taux(tranche) / 100 - basse.Constante * toutes,
                     (Taux(tranche) - Taux(basse)) / 100);
            if (x <= basse.Basse * toutes || x <= tranche.Basse * iso || x >= tranche.Basse * toutes) continue;
            montant = nPositif(nArrondi(revenu - x));
            break;
        }
    }
    S["IMPOS_TAUX_MARGINAL"] = montant + S["TM_BA"];
    Detail["IMPOS_TAUX_MARGINAL"] = IntToStr(S["IMPOS_TAUX_MARGINAL"]);
}

void CCalcul_N::ImposTrancheSup() {
    const kv::Etape etape(m_trace, u"33:ImposTrancheSup");
    if (!BaremeSeul()) return;

    const std::int32_t revenu = RevenuDuPlafond(), partsIso = S["F_NB_PARTS_ISO"], partsToutes = S["F_NB_PARTS_ALL"];
    const std::size_t k = TrancheMarginale();
    const TrancheBareme& tranche = m_Bareme[k];
    const bool partsDeBase = partsToutes == partsIso ||
                             (S["I_BQ_TOUS_REV"] > 0 && S["I_BQ_TOUS"] != S["I2_IMP_NORM"]) ||
                             (S["I_BQ_TOUS_REV"] == 0 && S["I_IMP_RETENU"] != S["I_IMP_NORM"]);
    std::int32_t marge;
    if (partsDeBase) {
        marge = nPositif(nArrondi(tranche.Haute * partsIso * 0.01) - revenu);
    } else {
        // The income where the tax of all parts meets the capped tax in a higher bracket.
        const double iso = partsIso / 100.0, toutes = partsToutes / 100.0;
        marge = nPositif(nArrondi(tranche.Haute * partsToutes * 0.01) - revenu);
        for (std::size_t j = k + 1; j < m_Bareme.size(); ++j) {
            const TrancheBareme& haute = m_Bareme[j];
            const double x =
                dDiv(haute.Constante * iso + AvantagePlafonne() + Taux(haute) / 100 - tranche.Constante * toutes,
                     (Taux(haute) - Taux(tranche)) / 100);
            if (x <= tranche.Haute * iso || x >= tranche.Haute * toutes) continue;
            if (j < 4 && x >= haute.Haute * iso) continue;  // the last bracket has no upper bound
            marge = nPositif(nArrondi(x - revenu));
            break;
        }
    }
    S["IMPOS_TRANCHE_SUP"] = marge;
    Detail["IMPOS_TRANCHE_SUP"] = IntToStr(marge);
}

void CCalcul_N::CopieISF() {
    const kv::Etape etape(m_trace, u"35:Calcul_ISF");

    struct Ligne {
        CaseSortie sortie;
        CaseEntree valeur;
        CaseEntree base = {};
        std::int32_t taux = -1;  // column 3 is left alone below 0
    };
    static constexpr Ligne lignes[] = {
        {"ISF_PATRIMOINE", "HI"},
        {"ISF_IMPOTSOLIDFORTUNE", "ST"},
        {"ISF_AVANT_REDUC", "LM"},
        {"ISF_TRANCHE_1", "M1", "T1", 0},
        {"ISF_TRANCHE_2", "M2", "T2", 50},
        {"ISF_TRANCHE_3", "M3", "T3", 70},
        {"ISF_TRANCHE_4", "M4", "T4", 100},
        {"ISF_TRANCHE_5", "M5", "T5", 125},
        {"ISF_TRANCHE_6", "M6", "T6", 150},
        {"ISF_DECOTE", "DECOT"},
        {"ISF_REDUC", "REDUC"},
        {"ISF_PME_DIRECT", "CRNE", "NE", 50},
        {"ISF_PME_STE", "CRNF", "NF", 50},
        {"ISF_PME_FIP", "CRMX", "MX", 50},
        {"ISF_PME_FCPI", "CRNA", "NA", 50},
        {"ISF_DONS_FRANCE", "CRNC", "NC", 75},
        {"ISF_DONS_ETRANGER", "CRNG", "NG", 75},
        {"ISF_AVANT_PLAF", "NP"},
        {"ISF_PLAF", "PV"},
        {"ISF_APRES_PLAF", "QR"},
        {"ISF_PAYE_ETRANGER", "RS"},
        {"ISF_A_PAYER", "ST"},
    };
    std::int32_t total = 0;
    for (const Ligne& ligne : lignes) {
        S[ligne.sortie] = E[ligne.valeur];
        if (ligne.base) m_pData->BaseEtTaux(ligne.sortie, E[ligne.base], ligne.taux);
        if (ligne.sortie != "ISF_PATRIMOINE") total += S[ligne.sortie];
    }
    if (total > 0) S["SEPAR_ISF"] = S["SAUT_PAGE_ISF"] = 1;
}
