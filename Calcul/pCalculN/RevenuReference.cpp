#include <algorithm>

#include "Calcul/cCalcul/Transferts.h"
#include "Calcul/pCalculN/Calcul_N.h"

// Reference income (CGI art. 1417 IV) and the summary of income net of expenses.

namespace {

// Exempt salaries that the reference income counts net of the flat deduction, by declarant.
struct SalaireExonere {
    CaseSortie part;
    CaseEntree box[2];
};
constexpr SalaireExonere salairesExoneres[] = {
    {"RN_PART_QA_QB", {"1AQ", "1BQ"}},
    {"RN_PART_DY_EY", {"1DY", "1EY"}},
    {"RN_PART_SM_DN", {"1SM", "1DN"}},
};

}  // namespace

// What the quotient leaves out of the taxable income, less what it leaves out of the exceptional pensions and property
// income.
std::int32_t CCalcul_N::CorrectionQuotient() {
    std::int32_t correction = 0;
    for (auto& item : m_lstQuotients) {
        item.base = item.somme = item.montant1 + item.montant2;
        correction += item.somme - nPlancher(dDiv(item.somme, kv::Diviseur(item.coefficient)));
    }
    const auto partNette = [&](std::int32_t excedent, const kv::ZoneSortie& c) {
        const std::int32_t declarees = c["RN_PEN_DECL"];
        return excedent > 0 ? nProrata(excedent, declarees - c["RN_PEN_ABAT"], declarees) : 0;
    };
    return correction - kv::ExcedentQuotient(*m_pData, "RAQ") - partNette(kv::ExcedentQuotient(*m_pData, "AAQ"), C1) -
           partNette(kv::ExcedentQuotient(*m_pData, "BAQ"), C2);
}

void CCalcul_N::RevenuFiscalRef(const TPeriode& periode) {
    const kv::Etape etape(m_trace, u"20:RevenuFiscalRef");
    const bool bareme = OptionBareme(), forfait = OptionForfait();

    // The net shares of exempt salaries come from salaries that include them.
    std::array<std::array<std::int32_t, 2>, std::size(salairesExoneres)> parts{};
    const std::int32_t exoneresV = SommeE({"1AQ", "1DY", "1SM"}), exoneresC = SommeE({"1BQ", "1EY", "1DN"});
    if (exoneresV + exoneresC > 0) {
        m_trace.Relance(u"=> on relance les salaires après avoir ajouté les revenus de 1AQ");
        {
            const kv::Ajout avecExoneres(*m_pData, {{"1AJ", exoneresV}, {"1BJ", exoneresC}});
            RevenusSalaires(kv::Passe::Normale);
        }
        for (std::size_t i = 0; i < parts.size(); ++i)
            parts[i] = {C1[salairesExoneres[i].part], C2[salairesExoneres[i].part]};
        QuotientDansFr(false);
        m_trace.Relance(u"=> on relance les calculs en prenant en compte la demi-base");
        RemetSortiesAZero();
        ChaineNormale(periode);
    }
    const auto partTotale = [&](std::size_t i) { return parts[i][0] + parts[i][1]; };

    S["REV_REF_EE"] = E["2EE"];
    S["REV_REF_FA"] = E["2FA"];
    S["REV_REF_DH"] = E["2DH"];
    if (bareme) {
        S["REV_REF_EE"] = E["2EE1"];
        S["REV_REF_FA"] = 0;
        S["REV_REF_DH"] = E["2DH1"];
    }
    std::int32_t capitauxAuForfait = 0;
    if (forfait) {
        S["REV_REF_EE"] = E["2EE1"] + E["2EE2"];
        S["REV_REF_DH"] = SommeE({"2DH1", "2DH2", "2DH3"});
        capitauxAuForfait = SommeE({"2DC", "2CH2", "2CH3", "2TS2", "2TR", "2TT", "2GO"});
    }
    S["REV_REF_REV_EXO"] = partTotale(0) + partTotale(2);
    S["REV_REF_IMPATRIES_EXO"] = partTotale(1) + E["2DM"];
    S["REV_REF_BA_EXO"] = S["RE_FORFAIT"] + S["RE_BA"];
    S["REV_REF_BIC_EXO"] = SommeS({"RE_MICRO_BIC_PROF", "RE_BIC", "RE_MICRO_BIC_NON_PROF", "RE_BICNP"});
    S["REV_REF_BNC_EXO"] =
        SommeS({"RE_SPE_BNC_PROF", "RE_BNC", "RE_BNCNP"}) + SommeE({"5QL", "5RL", "5SL", "5SV", "5SW", "5SX"});

    const std::int32_t gains =
        nPositif(GainsMobiliersNets()) + SommeE({"3VD", "3VI", "3VF", "3SJ", "3SK", "3VM", "3VT", "3PI", "3VC", "3SE",
                                                 "3WE", "3WI", "3WJ", "3WN", "3TZ", "3VZ"});
    const std::int32_t abattement40 = nPourcent(forfait ? E["2FU"] : E["2FU"] + E["2DC"], 40);
    const std::int32_t correction = CorrectionQuotient();

    std::int32_t base = S["TOT_R_MONDIAL"] > 0
                            ? S["TOT_R_MONDIAL"] - S["RD_PV_BAREME"]
                            : nPositif(S["TOT_R_BRUT"]) - S["RD_PV_BAREME"] - S["CHARGES"] - S["ABAT"];
    S["REV_REF_1AT"] = nPourcent(E["1AT"] + E["1BT"], 90);
    base += nPourcent(TI["2DC"] - TIX["2DC"], 40) +
            SommeS({"RR_BAM", "REV_REF_EE", "REV_REF_DH", "REV_REF_FA", "REV_REF_REV_EXO", "REV_REF_BA_EXO",
                    "REV_REF_BIC_EXO", "REV_REF_BNC_EXO", "REV_REF_IMPATRIES_EXO", "C_COT_PERP_V", "C_COT_PERP_C",
                    "C_COT_PERP_E", "RF_PLUS", "RF_INVENTEURS", "REV_REF_1AT"}) -
            correction + E["1UZ"] + E["1VZ"] + gains + abattement40 + capitauxAuForfait;

    S["REV_REF_C"] = nPositif(base + correction - E["3WN"]);
    S["REV_REF_D"] = nPositif(base + E["3SA"]);
    S["REV_REF_B"] = nPositif(base);
    S["REVENU_REF"] = nArrondi(dMul(S["REV_REF_B"], periode.Fraction()));
    if (S["REVENU_REF"] == S["REV_REF_B"]) S["REV_REF_B"] = 0;
    for (const CaseSortie sortie : {CaseSortie("REVENU_REF"), CaseSortie("REV_REF_B"), CaseSortie("REV_REF_REV_EXO"),
                                    CaseSortie("REV_REF_BA_EXO"), CaseSortie("REV_REF_BIC_EXO"),
                                    CaseSortie("REV_REF_BNC_EXO"), CaseSortie("REV_REF_IMPATRIES_EXO"),
                                    CaseSortie("REV_REF_EE"), CaseSortie("REV_REF_DH"), CaseSortie("REV_REF_FA")})
        Detail[sortie].clear();
    for (std::size_t i = 0; i < parts.size(); ++i)
        for (std::size_t k = 0; k < 2; ++k)
            C[k][salairesExoneres[i].part] = E[salairesExoneres[i].box[k]] - parts[i][k];
}

// Gains on securities, less losses and allowances for length of ownership.
std::int32_t CCalcul_N::GainsMobiliersNets() const {
    return SommeE({"3VG", "3SG", "3UA", "3SL", "3VA", "3VQ"}) - E["3VH"] - E["3VR"];
}

void CCalcul_N::RevenusNetFrais() {
    const kv::Etape etape(m_trace, u"34:RevenusNetFrais");

    S["SALAIRES_RB"] = S["RN_SAL_SAIS"] + S["RD_GAINS_2_Rev"];
    S["SALAIRESEXO_RB"] = SommeE({"1AQ", "1BQ", "1SM", "1DN"});
    S["PENSIONS_RB"] = S["RN_PEN_DECL"] + E["1AT"] + E["1BT"];
    S["RENTES_RB"] = S["RD_RENTES"];
    S["CAPMOB_RB"] = S["RD_MOB_MONT"] - S["RD_MOB_DEFICIT_NM1"] + E["2FA"];
    S["REVFONCIERS_RB"] = S["RD_FON"];
    S["BENEFAGR_RB"] = SommeS({"RR_BA_MICRO_REV_IMP", "RR_BA_FORFAITBOIS", "RR_BA_FORF_PVCT", "RR_BA_AVEC_CGA",
                               "RR_BA_SANS_CGA", "RR_BAM_AVEC_CGA", "RR_BAM_SANS_CGA", "RR_BA_DEF"}) -
                       S["RR_BA_MICRO_MVCT"] - S["RR_BA_DEF_ANT"];
    S["BENEFAGREXO_RB"] = SommeE(
        {"5XA", "5HB", "5HH", "5HM", "5HZ", "5YA", "5IB", "5IH", "5IM", "5IZ", "5ZA", "5JB", "5JH", "5JM", "5JZ"});
    S["BENEFCOMM_RB"] =
        SommeS({"RR_BIC_P_MIC", "RR_BIC_P_MIC_PVCT", "RR_BIC_P_AVEC_CGA", "RR_BIC_P_SANS_CGA", "RR_BIC_NP_LM_MIC",
                "RR_BIC_NP_LM_AVEC_CGA", "RR_BIC_NP_LM_SANS_CGA", "RR_BIC_NP_LM_DEF_REP", "RR_BIC_NP_MIC",
                "RR_BIC_NP_MIC_PVCT", "RR_BIC_NP_AVEC_CGA", "RR_BIC_NP_SANS_CGA", "RR_BIC_NP_DEF_REP"}) -
        SommeS({"RR_BIC_P_MIC_MVCT", "RR_BIC_NP_LM_DEF_IMP", "RR_BIC_NP_MIC_MVCT", "RR_BIC_NP_DEF_IMP"});
    S["BENEFCOMMEXO_RB"] = SommeE({"5KN", "5KB", "5KH", "5NN", "5NB", "5NH", "5LN", "5LB", "5LH", "5ON", "5OB", "5OH",
                                   "5MN", "5MB", "5MH", "5PN", "5PB", "5PH"});
    S["BENEFNONCOMM_RB"] =
        SommeS({"RR_BNC_P_SPE", "RR_BNC_P_SPE_PVCT", "RR_BNC_P_AVEC_CGA", "RR_BNC_P_SANS_CGA", "RR_BNC_NP_SPE",
                "RR_BNC_NP_SPE_PVCT", "RR_BNC_NP_DEF_REP", "RR_BNC_NP_AVEC_AA", "RR_BNC_NP_SANS_AA"}) -
        SommeS({"RR_BNC_P_SPE_MVCT", "RR_BNC_NP_SPE_MVCT", "RR_BNC_NP_DEF_IMP"});
    S["BENEFNONCOMMEXO_RB"] =
        SommeE({"5HP", "5QB", "5QH", "5IP", "5RB", "5RH", "5JP", "5SB", "5SH", "5QL", "5RL", "5SL",
                "5SV", "5SW", "5SX", "5TH", "5UH", "5VH", "5HK", "5JK", "5LK", "5IK", "5KK", "5MK"}) +
        S["MOND_PROSPEC"];
    S["REVETRANGER_RB"] = SommeS({"REV_BRUT_TI_V", "REV_BRUT_TI_C", "REV_BRUT_TI_E"}) + SommeE({"1DY", "1EY", "2DM"});
    S["PRODPRELEVLIB_RB"] = E["2EE"] + E["2DH"] + S["MOND_AUTO_ENTR_P"];
    S["DEFIMPUTE_RB"] = -S["NP1_GLOBAL_IMP"];
    S["DEFAREPORTER_RB"] = S["NP1_GLOBAL_ANN"];
    S["CAPMOB_FPRI"] = S["RD_MOB_FRAIS"];

    const auto deuxColonnes = [&](CaseSortie sortie) { return C1[sortie] + C2[sortie]; };
    S["GRAPH_SALAIRE"] = S["SALAIRES_RB"] - S["RN_SAL_DED_10"] - S["RD_GAINS_2_Ded"] + S["SALAIRESEXO_RB"] -
                         deuxColonnes("RN_PART_QA_QB") - deuxColonnes("RN_PART_SM_DN");
    S["GRAPH_PENSIONS"] = S["PENSIONS_RB"] - nPourcent(E["1AT"], 10) - S["RN_PEN_ABAT"] - nPourcent(E["1BT"], 10);
    S["GRAPH_RENTES"] = S["RENTES_RB"];
    S["GRAPH_CAP_MOB"] = S["CAPMOB_RB"] - S["RD_MOB_FRAIS"];
    S["GRAPH_FONCIER"] = S["REVFONCIERS_RB"];
    S["GRAPH_NON_SAL"] = SommeS(
        {"BENEFAGR_RB", "BENEFAGREXO_RB", "BENEFCOMM_RB", "BENEFCOMMEXO_RB", "BENEFNONCOMM_RB", "BENEFNONCOMMEXO_RB"});
    S["GRAPH_PV"] = S["REV_PV_TXPROP_BARPRO"] + S["RD_GAINS_1TZ"] + E["1UZ"] + E["1VZ"] + S["REV_PV_AVEC_EXO"];
    S["GRAPH_ETRANGER"] =
        S["REVETRANGER_RB"] - S["RN_PART_DY_EY"] - S["FP_TI_SAL"] - S["FP_TI_PENS"] - deuxColonnes("RN_PART_DY_EY");
    S["GRAPH_PRELEV_LIB"] = S["PRODPRELEVLIB_RB"];
    S["GRAPH_DEF_GLOBAL"] = S["DEFIMPUTE_RB"];
    S["GRAPH_REV_PRELEV_LIB"] = nPourcent(E["2EE"], 1500 / 100.0) + nPourcent(E["2DH"], 750 / 100.0) +
                                nPourcent(SommeE({"5TA", "5UA", "5VA"}), 100 / 100.0) +
                                nPourcent(SommeE({"5TB", "5UB", "5VB"}), 170 / 100.0) +
                                nPourcent(SommeE({"5TE", "5UE", "5VE"}), 220 / 100.0);
    S["GRAPH_REV_CONTRIB_SOC"] =
        nPourcent(SommeE({"2EE", "2DH", "2BH", "2CG"}), (NouveauxTaux() ? 1720 : 1550) / 100.0);
    S["GRAPH_REV_NET_FRAIS"] =
        SommeS({"GRAPH_SALAIRE", "GRAPH_PENSIONS", "GRAPH_RENTES", "GRAPH_CAP_MOB", "GRAPH_FONCIER", "GRAPH_NON_SAL",
                "GRAPH_PV", "GRAPH_ETRANGER", "GRAPH_PRELEV_LIB", "GRAPH_DEF_GLOBAL"});
}
