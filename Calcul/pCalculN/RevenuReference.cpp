#include <algorithm>

#include "Calcul/pCalculN/Contexte.h"
#include "Calcul/pCalculN/Etapes.h"

// Reference income (CGI art. 1417 IV) and the summary of income net of expenses.

namespace kv {

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

using PartsExonerees = std::array<std::array<std::int32_t, 2>, std::size(salairesExoneres)>;

class RevenuReference : Travail {
  public:
    explicit RevenuReference(Contexte& c) : Travail(c) {}
    void RevenuFiscalRef();
    void RevenusNetFrais();

  private:
    PartsExonerees PartsDesSalairesExoneres();
    void PrelevementsLiberatoires();
    void RevenusExoneres(const PartsExonerees& parts);
    std::int32_t Base(std::int32_t correction) const;
    std::int32_t CorrectionQuotient() const;
    void Synthese();
    void SyntheseProfessionnelle();
    void Graphiques();
    std::int32_t DeuxColonnes(CaseSortie sortie) const { return C1[sortie] + C2[sortie]; }
};

// What the quotient leaves out of the taxable income, less what it leaves out of the exceptional pensions and property
// income.
std::int32_t RevenuReference::CorrectionQuotient() const {
    std::int32_t correction = 0;
    for (const ItemQuotient& item : memoire.quotients)
        correction += item.montant - nPlancher(dDiv(item.montant, Diviseur(item.coefficient)));
    const auto partNette = [&](std::int32_t excedent, const Colonne& colonne) {
        const std::int32_t declarees = colonne["RN_PEN_DECL"];
        return excedent > 0 ? nProrata(excedent, declarees - colonne["RN_PEN_ABAT"], declarees) : 0;
    };
    const Exceptionnels& exceptionnels = contexte.exceptionnels;
    return correction - exceptionnels.Excedent("RAQ") - partNette(exceptionnels.Excedent("AAQ"), C1) -
           partNette(exceptionnels.Excedent("BAQ"), C2);
}

// The net shares of exempt salaries come from salaries that include them: step 4 finds them, and the chain is run
// again.
PartsExonerees RevenuReference::PartsDesSalairesExoneres() {
    PartsExonerees parts{};
    const std::int32_t exoneresV = SommeE({"1AQ", "1DY", "1SM"}), exoneresC = SommeE({"1BQ", "1EY", "1DN"});
    if (exoneresV + exoneresC <= 0) return parts;
    trace.Relance(u"=> on relance les salaires après avoir ajouté les revenus de 1AQ");
    Saisie avec = contexte.Vue();
    avec["1AJ"] += exoneresV;
    avec["1BJ"] += exoneresC;
    Contexte(contexte, avec).Lance(Etape::RevenusSalaires);
    for (std::size_t i = 0; i < parts.size(); ++i)
        parts[i] = {C1[salairesExoneres[i].part], C2[salairesExoneres[i].part]};
    contexte.RetireExceptionnels();
    trace.Relance(u"=> on relance les calculs en prenant en compte la demi-base");
    contexte.RelanceChaineNormale();
    return parts;
}

void RevenuReference::RevenuFiscalRef() {
    const PartsExonerees parts = PartsDesSalairesExoneres();
    PrelevementsLiberatoires();
    RevenusExoneres(parts);
    S["REV_REF_1AT"] = nAuTaux(E["1AT"] + E["1BT"], loi.Complement("pensions.capital.abattement"));
    const std::int32_t correction = CorrectionQuotient();
    const std::int32_t base = Base(correction);

    S["REV_REF_C"] = nPositif(base + correction - E["3WN"]);
    S["REV_REF_D"] = nPositif(base + E["3SA"]);
    S["REV_REF_B"] = nPositif(base);
    S["REVENU_REF"] = nArrondi(dMul(S["REV_REF_B"], lancement.periode->Fraction()));
    if (S["REVENU_REF"] == S["REV_REF_B"]) S["REV_REF_B"] = 0;
    for (std::size_t i = 0; i < parts.size(); ++i)
        for (std::size_t k = 0; k < 2; ++k)
            C[k][salairesExoneres[i].part] = E[salairesExoneres[i].box[k]] - parts[i][k];
}

// Income that bore a flat levy, as the option counts it.
void RevenuReference::PrelevementsLiberatoires() {
    S["REV_REF_EE"] = E["2EE"];
    S["REV_REF_FA"] = E["2FA"];
    S["REV_REF_DH"] = E["2DH"];
    if (faits.bareme) {
        S["REV_REF_EE"] = E["2EE1"];
        S["REV_REF_FA"] = 0;
        S["REV_REF_DH"] = E["2DH1"];
    }
    if (faits.forfait) {
        S["REV_REF_EE"] = E["2EE1"] + E["2EE2"];
        S["REV_REF_DH"] = SommeE({"2DH1", "2DH2", "2DH3"});
    }
}

void RevenuReference::RevenusExoneres(const PartsExonerees& parts) {
    const auto part = [&](std::size_t i) { return parts[i][0] + parts[i][1]; };
    S["REV_REF_REV_EXO"] = part(0) + part(2);
    S["REV_REF_IMPATRIES_EXO"] = part(1) + E["2DM"];
    S["REV_REF_BA_EXO"] = S["RE_FORFAIT"] + S["RE_BA"];
    S["REV_REF_BIC_EXO"] = SommeS({"RE_MICRO_BIC_PROF", "RE_BIC", "RE_MICRO_BIC_NON_PROF", "RE_BICNP"});
    S["REV_REF_BNC_EXO"] =
        SommeS({"RE_SPE_BNC_PROF", "RE_BNC", "RE_BNCNP"}) + SommeE({"5QL", "5RL", "5SL", "5SV", "5SW", "5SX"});
}

// The net income, with all that is exempt, taxed apart or deducted for savings, less what the quotient leaves out.
std::int32_t RevenuReference::Base(std::int32_t correction) const {
    const std::int32_t net = S["TOT_R_MONDIAL"] > 0
                                 ? S["TOT_R_MONDIAL"] - S["RD_PV_BAREME"]
                                 : nPositif(S["TOT_R_BRUT"]) - S["RD_PV_BAREME"] - S["CHARGES"] - S["ABAT"];
    const std::int32_t gains =
        nPositif(GainsMobiliersNets()) + SommeE({"3VD", "3VI", "3VF", "3SJ", "3SK", "3VM", "3VT", "3PI", "3VC", "3SE",
                                                 "3WE", "3WI", "3WJ", "3WN", "3TZ", "3VZ"});
    const std::int32_t tauxDividendes = loi["mobiliers.dividendes.abattement"];
    const std::int32_t abattus = nAuTaux(faits.forfait ? E["2FU"] : E["2FU"] + E["2DC"], tauxDividendes);
    const std::int32_t capitauxAuForfait =
        faits.forfait ? SommeE({"2DC", "2CH2", "2CH3", "2TS2", "2TR", "2TT", "2GO"}) : 0;
    return net + nAuTaux(TI["2DC"] - TIX["2DC"], tauxDividendes) +
           SommeS({"RR_BAM", "REV_REF_EE", "REV_REF_DH", "REV_REF_FA", "REV_REF_REV_EXO", "REV_REF_BA_EXO",
                   "REV_REF_BIC_EXO", "REV_REF_BNC_EXO", "REV_REF_IMPATRIES_EXO", "C_COT_PERP_V", "C_COT_PERP_C",
                   "C_COT_PERP_E", "RF_PLUS", "RF_INVENTEURS", "REV_REF_1AT"}) -
           correction + E["1UZ"] + E["1VZ"] + gains + abattus + capitauxAuForfait;
}

void RevenuReference::RevenusNetFrais() {
    Synthese();
    SyntheseProfessionnelle();
    S["REVETRANGER_RB"] = SommeS({"REV_BRUT_TI_V", "REV_BRUT_TI_C", "REV_BRUT_TI_E"}) + SommeE({"1DY", "1EY", "2DM"});
    S["PRODPRELEVLIB_RB"] = E["2EE"] + E["2DH"] + S["MOND_AUTO_ENTR_P"];
    S["DEFIMPUTE_RB"] = -S["NP1_GLOBAL_IMP"];
    S["DEFAREPORTER_RB"] = S["NP1_GLOBAL_ANN"];
    S["CAPMOB_FPRI"] = S["RD_MOB_FRAIS"];
    Graphiques();
}

// ---- The summary of the income by category, before its expenses.

void RevenuReference::Synthese() {
    S["SALAIRES_RB"] = S["RN_SAL_SAIS"] + S["RD_GAINS_2_Rev"];
    S["SALAIRESEXO_RB"] = SommeE({"1AQ", "1BQ", "1SM", "1DN"});
    S["PENSIONS_RB"] = S["RN_PEN_DECL"] + E["1AT"] + E["1BT"];
    S["RENTES_RB"] = S["RD_RENTES"];
    S["CAPMOB_RB"] = S["RD_MOB_MONT"] - S["RD_MOB_DEFICIT_NM1"] + E["2FA"];
    S["REVFONCIERS_RB"] = S["RD_FON"];
}

void RevenuReference::SyntheseProfessionnelle() {
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
}

// The same net of its expenses.
void RevenuReference::Graphiques() {
    S["GRAPH_SALAIRE"] = S["SALAIRES_RB"] - S["RN_SAL_DED_10"] - S["RD_GAINS_2_Ded"] + S["SALAIRESEXO_RB"] -
                         DeuxColonnes("RN_PART_QA_QB") - DeuxColonnes("RN_PART_SM_DN");
    S["GRAPH_PENSIONS"] = S["PENSIONS_RB"] - nAuTaux(E["1AT"], loi["pensions.capital.abattement"]) - S["RN_PEN_ABAT"] -
                          nAuTaux(E["1BT"], loi["pensions.capital.abattement"]);
    S["GRAPH_RENTES"] = S["RENTES_RB"];
    S["GRAPH_CAP_MOB"] = S["CAPMOB_RB"] - S["RD_MOB_FRAIS"];
    S["GRAPH_FONCIER"] = S["REVFONCIERS_RB"];
    S["GRAPH_NON_SAL"] = SommeS(
        {"BENEFAGR_RB", "BENEFAGREXO_RB", "BENEFCOMM_RB", "BENEFCOMMEXO_RB", "BENEFNONCOMM_RB", "BENEFNONCOMMEXO_RB"});
    S["GRAPH_PV"] = S["REV_PV_TXPROP_BARPRO"] + S["RD_GAINS_1TZ"] + E["1UZ"] + E["1VZ"] + S["REV_PV_AVEC_EXO"];
    S["GRAPH_ETRANGER"] =
        S["REVETRANGER_RB"] - S["RN_PART_DY_EY"] - S["FP_TI_SAL"] - S["FP_TI_PENS"] - DeuxColonnes("RN_PART_DY_EY");
    S["GRAPH_PRELEV_LIB"] = S["PRODPRELEVLIB_RB"];
    S["GRAPH_DEF_GLOBAL"] = S["DEFIMPUTE_RB"];
    S["GRAPH_REV_PRELEV_LIB"] = nAuTaux(E["2EE"], loi["mobiliers.2EE.taux"]) +
                                nAuTaux(E["2DH"], loi["assuranceVie.taux"]) +
                                nAuTaux(SommeE({"5TA", "5UA", "5VA"}), loi["autoEntrepreneur.ventes.taux"]) +
                                nAuTaux(SommeE({"5TB", "5UB", "5VB"}), loi["autoEntrepreneur.services.taux"]) +
                                nAuTaux(SommeE({"5TE", "5UE", "5VE"}), loi["autoEntrepreneur.nonCommercial.taux"]);
    // All levies on capital together.
    const std::int32_t tauxPrelevements = loi["prelevementsSociaux.prelevements"] +
                                          EnVigueur({"prelevementsSociaux.csgAnterieure", "prelevementsSociaux.csg"}) +
                                          loi["prelevementsSociaux.crds"];
    S["GRAPH_REV_CONTRIB_SOC"] = nAuTaux(SommeE({"2EE", "2DH", "2BH", "2CG"}), tauxPrelevements);
    S["GRAPH_REV_NET_FRAIS"] =
        SommeS({"GRAPH_SALAIRE", "GRAPH_PENSIONS", "GRAPH_RENTES", "GRAPH_CAP_MOB", "GRAPH_FONCIER", "GRAPH_NON_SAL",
                "GRAPH_PV", "GRAPH_ETRANGER", "GRAPH_PRELEV_LIB", "GRAPH_DEF_GLOBAL"});
}

}  // namespace

void RevenuFiscalRef(Contexte& c) { RevenuReference(c).RevenuFiscalRef(); }
void RevenusNetFrais(Contexte& c) { RevenuReference(c).RevenusNetFrais(); }

}  // namespace kv
