#include <algorithm>
#include <array>

#include "Calcul/cCalcul/Transferts.h"
#include "Calcul/pCalculN/Calcul_N.h"
#include "Calcul/pCalculN/CreditsTable.h"

// Tax credits: those that are only imputed on the tax, those that are refunded, those that count in the global cap.

namespace {

using kv::Niche;

using kv::credits::Copie;
using kv::credits::copies;
using kv::credits::copiesProfessionnelles;
using kv::credits::creditsDuTotal;
using kv::credits::transitionEnergetique;
using kv::credits::travauxForestiers;

constexpr std::int32_t nTauxTransition = 30;

}  // namespace

void CCalcul_N::CreditDImpot() {
    const kv::Etape etape(m_trace, u"24:CreditDImpot");

    CSG_CRDS();
    TauxPAS();
    Contributions();
    CreditsImputes();

    for (const Copie& copie : copies) S[copie.credit] = E[copie.box];
    const bool option = OptionBareme() || OptionForfait();
    LigneCredit("D_PV_NON_RESIDENT", E["3VE"], E["3VE"], option ? 12.8 : 45);
    LigneCredit("D_SCR_NON_RESIDENT", E["3UV"], E["3UV"], option ? 12.8 : 30);

    EquipementDuLogement();
    const bool avantages = !m_imputation.SansAvantages();
    if (avantages) TransitionEnergetique();
    S["D_RESTI_TAXE_ADD_DROIT_BAIL"] = nProrata(E["4TQ"], 25, 1000);
    if (avantages) FraisDeGarde();
    CotisationsSyndicales();
    PretsEtudiants();
    CreditsForestiers();
    if (avantages) {
        InteretsHabitationPrincipale();
        ReportsForestiers();
    }
    for (const Copie& copie : copiesProfessionnelles) S[copie.credit] = E[copie.box];
    if (OptionCimr()) KV_CIMR();

    S["D_CREDIT"] = 0;
    for (const CaseSortie credit : creditsDuTotal) S["D_CREDIT"] += S[credit];
    for (const auto& travaux : travauxForestiers) S["D_CREDIT"] += S[travaux.credit];
    for (const auto& depense : transitionEnergetique) S["D_CREDIT"] += S[depense.credit];
    if (OptionForfait()) S["D_CREDIT"] += S["D_CREDIT_PFU2"];
    if (OptionCimr()) S["D_CREDIT"] += S["D_CREDIT_CIMR_IR"];
    if (S["CORRECTIONS"] + S["D_CREDIT"] != 0) S["SEPAR_MONT"] = 1;
}

// A credit that is a rate (percent) of an entry box: amount declared, amount retained, rate in hundredths of a percent.
void CCalcul_N::LigneCredit(CaseSortie credit, std::int32_t declare, std::int32_t retenu, double taux) {
    C1[credit] = declare;
    m_pData->BaseEtTaux(credit, retenu, nArrondi(dMul(taux, 100)));
    S[credit] = nPourcent(retenu, taux);
}

// The contribution on high incomes, less the share of the foreign income.
void CCalcul_N::Contributions() {
    const std::int32_t contribution = S["CONT_HAUT_REV"], revenu = S["REV_REF_C"];
    if (kv::IndicateurEtranger(*m_pData) > 0)
        S["CONT_HR_TAUX_EFFECTIF"] = nProrata(contribution, revenu - S["IMPOT_ETR_REV_NET_TI"], revenu);
    S["CONTRIBUTIONS"] = (S["CONT_HR_TAUX_EFFECTIF"] >= 1 ? S["CONT_HR_TAUX_EFFECTIF"] : contribution) + E["3WT"];
    if (E["8TK"] > 0)
        S["CONT_HR_CREDIT_IMPOT"] = std::min(
            contribution, nProrata(contribution, S["IMPOT_ETR_REV_NET_TK"] + S["IMPOT_ETR_PV_NET_TK"], revenu));
}

// The credits that are only imputed: each takes what it may of the tax that is left, and no more.
void CCalcul_N::CreditsImputes() {
    const std::int32_t impot = S["TOT_IMP_COR"];
    std::int32_t reste = nPositif(impot);
    C1["D_CREDIT_TOT"] = C2["D_CREDIT_TOT"] = 0;
    const auto impute = [&](CaseSortie credit, std::int32_t declare, std::int32_t limite) {
        S[credit] = std::min(declare, nPositif(limite));
        C1["D_CREDIT_TOT"] += declare;
        C2["D_CREDIT_TOT"] += S[credit];
        reste = nPositif(reste - S[credit]);
    };
    const auto limiteAuReste = [&](std::int32_t limite) { return std::min(reste, limite); };
    const auto nonNegatif = [&](CaseEntree box) { return nPositif(E[box]); };

    std::int32_t pensions = 0;
    if (E["1AT"] > 0) pensions += nPourcent(nPourcent(TK["1AT"] - TKZ["1AT"], 90), 7.5);
    if (E["1BT"] > 0) pensions += nPourcent(nPourcent(TK["1BT"] - TKZ["1BT"], 90), 7.5);
    impute("D_CREDIT_1AT_1BT", pensions, S["CO_PENSIONS"]);
    impute("D_AVOIR_FISC", E["2AB"], reste);
    impute("D_SOURCE_ETR", E["8TAB"], reste);
    impute("D_IMPOT_ETR", SommeE({"8VL", "8VM", "8WM", "8UM"}), reste);
    impute("D_ETR_PV_TK", S["IMPOT_ETR_PV_TK"],
           limiteAuReste(S["CORRECTIONS"] - SommeS({"CO_REPRISE", "CO_TAXELOYER", "CO_PENSIONS", "CO_INTERET",
                                                    "CO_INVEST_CORSE", "CO_AGENTS_ASSUR"})));
    if (SelonLaDeclaration()) {
        const std::int32_t interets = nPositif(TK["2FA"] - TKZ["2FA"]);
        impute("D_CREDIT_2FA", nPourcent(interets, 24), limiteAuReste(S["CO_INTERET"]));
    } else if (E["PFU"] != 0) {
        const std::int32_t capitaux = (TK["2FA"] - TKZ["2FA"]) + (TK["2DC"] - TKZ["2DC"]) + (TK["2TR"] - TKZ["2TR"]);
        const std::int32_t credit = nPourcent(capitaux, 12.8) + nPourcent(TK["3VG"] - TKZ["3VG"], 12.8);
        impute("D_CREDIT_PFU2", credit, credit);
        S["D_CREDIT_PFU2"] = credit;
    }

    const std::int32_t horsReprises = impot - S["CO_REPRISE"] - S["CO_INVEST_CORSE"];
    const auto imputeAuTaux = [&](CaseSortie credit, CaseEntree box, std::int32_t taux) {
        LigneCredit(credit, E[box], E[box], taux);
        impute(credit, S[credit], limiteAuReste(horsReprises));
    };
    imputeAuTaux("D_ACQ_BIENS_CULTURELS", "7UO", 40);
    impute("D_PREVENTION", nonNegatif("8TE"), reste);
    imputeAuTaux("D_MECENAT", "7US", 100);
    impute("D_INVEST_CORSE", nPositif(E["8TG"] + E["8TO"]), limiteAuReste(impot - S["CO_INVEST_CORSE"]));
    impute("D_CREDIT_8TC", nonNegatif("8TC"), reste);
    impute("D_CREDIT_COMP_EMPLOI", nonNegatif("8UW"), reste);
}

// A ceiling per household, raised for dependants and for children in alternating residence.
std::int32_t CCalcul_N::PlafondParFoyer(std::int32_t montant, std::int32_t parCharge) const {
    return (m_bCouple ? 2 : 1) * montant + parCharge * S["F_NB_CHARGE"] + parCharge * S["F_NB_ENFANTS_ALTERNE"] / 2;
}

// Equipment for elderly or disabled persons (CGI art. 200 quater A), works against technological risks.
void CCalcul_N::EquipementDuLogement() {
    if (E["7WJ"] > 0) {
        const std::int32_t plafond = nPositif(PlafondParFoyer(5000, 400) - SommeE({"7WJA", "7WJB", "7WJC", "7WJD"}));
        LigneCredit("D_AIDE_PERS_AGEES", E["7WJ"], std::min(E["7WJ"], plafond), 25);
    }
    if (E["7WL"] > 0) {
        const std::int32_t plafond = (E["7WLPS"] >= 1 ? E["7WLPS"] : E["7WLPC"]) - E["7WLA"] - E["7WLB"];
        if (plafond > 0) LigneCredit("D_AIDE_RISQUE_TECHNO", E["7WL"], std::min(E["7WL"], plafond), 40);
    }
}

void CCalcul_N::TransitionEnergetique() {
    std::int32_t plafond = nPositif(PlafondParFoyer(8000, 400) - SommeE({"7WHA", "7WHB", "7WHC", "7WHD"}));
    for (const auto& t : transitionEnergetique) {
        const std::int32_t retenu = std::min(E[t.depense], plafond);
        LigneCredit(t.credit, E[t.depense], retenu, nTauxTransition);
        plafond = nPositif(plafond - retenu);
        m_imputation.Note(Niche::N2013, t.credit, S[t.credit]);
    }
    LigneCredit("D_PREV_RISQUE_TECH", E["7WR"], E["7WR"], 40);
    m_imputation.Note(Niche::N2013, "D_PREV_RISQUE_TECH", S["D_PREV_RISQUE_TECH"]);
}

// Childcare outside the home (CGI art. 200 quater B): a ceiling per child, half for alternating residence.
void CCalcul_N::FraisDeGarde() {
    using Enfants = std::array<CaseEntree, 4>;
    static constexpr Enfants aCharge = {"7GA", "7GB", "7GC", "7GD"}, alternes = {"7GE", "7GF", "7GG", "7GM"};
    const auto aucun = [&](const Enfants& enfants) {
        return std::all_of(enfants.begin(), enfants.end(), [&](CaseEntree enfant) { return E[enfant] == 0; });
    };
    if (aucun(aCharge) && aucun(alternes)) return;
    const auto garde = [&](CaseSortie credit, const Enfants& enfants, std::int32_t plafond) {
        std::int32_t declare = 0, retenu = 0;
        for (const CaseEntree enfant : enfants) {
            declare += E[enfant];
            retenu += std::min(E[enfant], plafond);
        }
        LigneCredit(credit, declare, retenu, 50);
        m_imputation.Note(Niche::N2013, credit, S[credit]);
    };
    garde("D_FRAIS_GARDE_ACHARGE", aCharge, 2300);
    garde("D_FRAIS_GARDE_ALTERNE", alternes, 1150);
}

// Union dues (CGI art. 199 quater C): capped at 1 % of salaries and pensions, salaries counting only without actual
// expenses.
void CCalcul_N::CotisationsSyndicales() {
    const std::int32_t cotisations = SommeE({"7AC", "7AE", "7AG"});
    if (cotisations <= 0) return;
    const auto plafonnees = [&](CaseEntree box, std::int32_t pensions, std::int32_t salaires, bool fraisReels) {
        return std::min(E[box], nPourcent(pensions + (fraisReels ? 0 : salaires), 1));
    };
    static constexpr CaseEntree fraisCharges[] = {"1CK", "1DK", "1EK", "1FK", "1FKA", "1FKB", "1FKC", "1FKD", "1FKE"};
    const bool fraisDesCharges =
        std::any_of(std::begin(fraisCharges), std::end(fraisCharges), [&](CaseEntree box) { return E[box] != 0; });
    const std::int32_t retenues =
        plafonnees("7AC", SommeE({"1AS", "1AO", "1AZ", "1AL"}), SommeE({"1AJ", "1AP", "1AF"}), E["1AK"] != 0) +
        plafonnees("7AE", SommeE({"1BS", "1BO", "1BZ", "1BL"}), SommeE({"1BJ", "1BP", "1BF"}), E["1BK"] != 0) +
        plafonnees("7AG",
                   SommeE({"1CS", "1CO", "1CZ", "1CL", "1DS", "1DO", "1DZ", "1DL", "1ES", "1EO", "1EZ", "1EL", "1FS",
                           "1FO", "1FZ", "1FL"}),
                   SommeE({"1CJ", "1DJ", "1EJ", "1FJ", "1FJA", "1FJB", "1FJC", "1FJD", "1FJE", "1CF",  "1DF",
                           "1EF", "1FF", "1CP", "1DP", "1EP",  "1FP",  "1FPA", "1FPB", "1FPC", "1FPD", "1FPE"}),
                   fraisDesCharges);
    m_pData->Annule("D_CREDIT_7AC_7AE_7AG");
    S["D_CREDIT_7AC_7AE_7AG"] = nPourcent(std::min(cotisations, retenues), 66);
}

// Interest on student loans (CGI art. 200 terdecies): this year's payments, then those of earlier years.
void CCalcul_N::PretsEtudiants() {
    const std::int32_t annees = E["7VO"];
    LigneCredit("D_PRET_ETUDIANTS_1", E["7UK"], std::min(E["7UK"], annees < 6 ? 1000 : 0), 25);
    LigneCredit("D_PRET_ETUDIANTS_2", E["7TD"], std::min(E["7TD"], std::min(annees * 1000, 6000)), 25);
}

void CCalcul_N::CreditsForestiers() {
    const std::int32_t foyers = m_bCouple ? 2 : 1;
    const auto credit = [&](CaseSortie ligne, std::int32_t declare, std::int32_t plafond, std::int32_t taux) {
        LigneCredit(ligne, declare, std::min(declare, plafond), taux);
        m_imputation.Note(Niche::N2013, ligne, S[ligne]);
    };
    std::int32_t plafond = 2000 * foyers;
    credit("D_CREDIT_7UI", E["7UI"], plafond, 25);
    plafond -= E["7UI"];
    if (plafond > 0) credit("D_CREDIT_7UQ", E["7UQ"], plafond, 18);

    std::int32_t reste = 6250 * foyers;
    for (const auto& t : travauxForestiers) {
        credit(t.credit, E[t.depense], nPositif(reste), t.taux);
        reste -= E[t.depense];
    }
}

void CCalcul_N::ReportsForestiers() {
    std::int32_t reste = 6250 * (m_bCouple ? 2 : 1);
    for (const auto& t : travauxForestiers) {
        S[t.report] = nPositif(E[t.depense] - nPositif(reste));
        reste -= E[t.depense];
    }
}

// Interest on the loan for the main home (CGI art. 200 quaterdecies), the best rate first.
void CCalcul_N::InteretsHabitationPrincipale() {
    if (SommeE({"7VX", "7VV", "7VT"}) == 0) return;
    const bool double_ = E["P"] == 1 || E["Fp"] == 1 || E["Rm"] > 0 || E["Im"] > 0 || E["Gm"] > 0;
    std::int32_t plafond =
        (m_bCouple ? 7500 : 3750) * (double_ ? 2 : 1) + 500 * S["F_NB_CHARGE"] + 500 * S["F_NB_ENFANTS_ALTERNE"] / 2;
    const auto interets = [&](CaseSortie credit, CaseEntree box, std::int32_t taux) {
        const std::int32_t retenu = std::min(E[box], plafond);
        LigneCredit(credit, E[box], retenu, taux);
        plafond = nPositif(plafond - retenu);
        m_imputation.Note(Niche::N2013, credit, S[credit]);
    };
    interets("D_CREDIT_HAB_PRIN_BBC", "7VX", 40);
    interets("D_CREDIT_HAB_PRIN_2010N", "7VV", 15);
    interets("D_CREDIT_HAB_PRIN_2011N", "7VT", 10);
}
