#include <algorithm>
#include <optional>

#include "Calcul/cCalcul/Transferts.h"
#include "Calcul/pCalculN/Calcul_N.h"

// Non-residents' minimum rate (CGI art. 197 A); the effective-rate method for foreign income (CGI art. 197 C).

namespace {

using kv::Passe;

}  // namespace

// Recomputes the income under other inputs, as far as the caller needs.
void CCalcul_N::Relance(const TPeriode& periode, Passe passe, Jusque jusque) {
    RemetSortiesAZero();
    NombreParts();
    RevenusBrut(passe);
    RevenusBrutQuotient(passe);
    RevenusTauxForf();
    RevenusNet();
    if (jusque == Jusque::RevenuNet) return;
    RevenusImposables();
    CalculImpot();
    TauxMarginal();
    if (jusque == Jusque::Impot) return;
    ImpotApresReductions(periode, passe);
    ImpotApresCorrections(passe);
}

std::int32_t CCalcul_N::RevenuNetDesAbattements() const { return S["TOT_R_NET"] - S["ABAT"] + S["RQ_GAINS"]; }

void CCalcul_N::RevenusTM(const TPeriode&) {
    const kv::Etape etape(m_trace, u"17:RevenusTM");
    if (E["REM"] == 0 && E["RED"] == 0) return;

    // Rates in hundredths of a percent. The tax is at least the minimum rate, unless the worldwide income shows less.
    const double minimum = E["RED"] != 0 ? 1440.0 : 2000.0;
    const std::int32_t revenu = nPositif(S["TOT_R_IMPOS"] + S["QUOTIENT"]);
    const std::int32_t impotFrancais = S["TOT_IMPOT"];
    const double tauxFrancais = dMul(10000.0, dDiv(impotFrancais, revenu));
    double tauxMondial = 0.0, retenu = dMax(tauxFrancais, minimum);
    std::int32_t impotMondial = 0;
    if (E["8TM"] != 0) {
        m_trace.Relance(u"=> on relance le calcul d'impôt en ajoutant la case 8TM");
        const kv::Change<bool> avec8TM(m_travail.bAvec8TM, true);
        CalculImpot();
        impotMondial = S["TOT_IMPOT"];
        tauxMondial = dMul(10000.0, dDiv(impotMondial, E["8TM"]));
        retenu = tauxFrancais > minimum ? tauxFrancais : dMin(tauxMondial, minimum);
    }
    const std::int32_t impot = nArrondi(dDiv(dMul(revenu, retenu), 10000.0));
    m_trace.Relance(u"=> on relance le calcul d'impôt sans la case 8TM");
    CalculImpot();
    TauxMarginal();

    if (impot < 305 && (retenu == 2000.0 || retenu == 1440.0)) S["IMPOT_TM_N_RECOUV"] = impot;
    S["IMPOT_TM"] = impot - S["IMPOT_TM_N_RECOUV"];
    const auto ligne = [&](CaseSortie sortie, std::int32_t base, double taux, std::int32_t valeur) {
        m_pData->BaseEtTaux(sortie, base, nArrondi(taux));
        S[sortie] = valeur;
    };
    ligne("IMPOT_TM_RETENU", revenu, retenu, impot);
    ligne("IMPOT_TM_FRANCAIS", revenu, tauxFrancais, impotFrancais);
    ligne("IMPOT_TM_ETRANGER", E["8TM"], tauxMondial, impotMondial);
    S["IMPOT_TX_MOYEN"] = nPositif(impot - S["IMPOT_TM_N_RECOUV"]);
}

void CCalcul_N::RevenusEtrangers(const TPeriode& periode) {
    const kv::Etape etape(m_trace, u"18:RevenusEtrangers");
    CDataCalcul& data = *m_pData;
    if (kv::TotalEtranger(data, false) == 0) return;
    const bool effectif = kv::TotalEtranger(data, true) != 0;

    const auto colonnes = [&](CaseSortie sortie) { return C1[sortie] + C2[sortie] + C3[sortie]; };
    const auto deductions = [&] { return colonnes("RN_SAL_DED_10") + colonnes("RD_GAINS_2_Ded"); };
    const std::int32_t deductionsFrancaises = deductions();
    const std::int32_t abattementsFrancais = colonnes("RN_PEN_ABAT");
    QuotientDansFr(false);

    // What each kind of income adds to the net income.
    using Lie = kv::TransfertLie;
    std::int32_t netAutoEntr = 0, netProspection = 0;
    std::optional<Lie> autoEntr(std::in_place, data, m_trace, Lie::Nature::AutoEntr);
    const bool avecAutoEntr = autoEntr->Total() > 0;
    if (avecAutoEntr) {
        const std::int32_t avant = RevenuNetDesAbattements();
        m_trace.Relance(u"=> on relance les calculs après avoir ajouté les revenus auto-entrepreneurs (5TA)");
        Relance(periode, Passe::Mondiale, Jusque::RevenuNet);
        QuotientDansFr(false);
        netAutoEntr = RevenuNetDesAbattements() - avant;
    }
    autoEntr.reset();

    const kv::ParPersonne prospections = kv::TotalProspection(data);
    const bool avecProspection = prospections.Total() > 0;
    if (avecProspection) {
        if (avecAutoEntr) {
            m_trace.Relance(u"=> on relance les calculs à cause des prospections (5TF) et auto-entrepreneurs");
            Relance(periode, Passe::Mondiale, Jusque::RevenuNet);
            QuotientDansFr(false);
        }
        const std::int32_t avant = RevenuNetDesAbattements();
        const Lie prospection(data, m_trace, Lie::Nature::Prospection);
        m_trace.Relance(u"=> on relance les calculs a cause des prospections (5TF)");
        Relance(periode, Passe::Mondiale, Jusque::RevenuNet);
        QuotientDansFr(false);
        netProspection = RevenuNetDesAbattements() - avant;
    }

    // Worldwide income.
    std::optional<kv::TransfertTI> ti(std::in_place, data, m_trace);
    std::optional<Lie> prospection;
    if (avecProspection) prospection.emplace(data, m_trace, Lie::Nature::Prospection);
    if (avecAutoEntr) autoEntr.emplace(data, m_trace, Lie::Nature::AutoEntr);
    m_trace.Relance(u"=> on relance les calculs après avoir ajouté les revenus TI");
    Relance(periode, Passe::Mondiale, Jusque::Corrections);
    QuotientDansFr(false);
    const std::int32_t deductionsEtrangeres = deductions() - deductionsFrancaises;
    const std::int32_t abattementsEtrangers = colonnes("RN_PEN_ABAT") - abattementsFrancais;
    const std::int32_t revenuMondial = nPositif(S["TOT_R_IMPOS"] + S["QUOTIENT"]);
    const std::int32_t impotMondial = S["TOT_IMPOT"];
    const std::int32_t impotMondialDom = S["TOT_IMPOT_DOM"];
    m_travail.nTauxMarginalFige = S["TAUX_MARGINAL_2"];
    const kv::ParPersonne bruts = ti->Montants();
    ti.reset();
    prospection.reset();
    autoEntr.reset();

    // The foreign income with a credit equal to the French tax, alone.
    std::int32_t revenuTK = 0, impotPlusValuesTK = 0, plusValuesTK = 0;
    if (E["8TK"] > 0) {
        const kv::TransfertTK tk(data, m_trace);
        const QuotientsRepris repris(*this);
        m_trace.Relance(u"=> on relance les calculs avec que les revenus TK, sans les normaux");
        Relance(periode, Passe::TK, Jusque::Corrections);
        revenuTK = S["TOT_R_BRUT"] + nPositif(TK["2TS"] - TKZ["2TS"]);
        if (!OptionForfait())
            revenuTK += nPositif(nPourcent(TK["2DC"], 60) - TKZ["2DC"]) + nPositif(TK["2TR"] - TKZ["2TR"]);
        impotPlusValuesTK = S["CORRECTIONS"] - S["CO_PENSIONS"] - S["CO_INTERET"];
        plusValuesTK = S["RF_PENSIONS"] + S["RF_PLUS"] + S["RF_2FA"];
    }

    m_trace.Relance(u"=> on relance les calculs pour revenir à la normale (=revenus français seuls)");
    Relance(periode, Passe::Normale, Jusque::Impot);
    const std::int32_t revenuFrancais = nPositif(S["TOT_R_IMPOS"] + S["QUOTIENT"]);
    const std::int32_t impotEffectif = nProrata(impotMondial, revenuFrancais, revenuMondial);

    // Auto-entrepreneur income: what the worldwide pass counted beyond the French income.
    for (std::size_t k = 0; k < kv::nPersonnes; ++k) {
        const auto& [ventes, services, ventesNonPro, servicesNonPro] = m_travail.passes.microBic[k];
        const auto& [bnc, bncNonPro] = m_travail.passes.microBnc[k];
        auto& c = C[k];
        c["MOND_AUTO_ENTR_P"] = (ventes.recettes + services.recettes - c["RR_BIC_P_MIC_DECL"]) -
                                (ventes.abattement + services.abattement - c["RR_BIC_P_MIC_ABAT"]) +
                                (bnc.recettes - c["RR_BNC_P_SPE_DECL"]) - (bnc.abattement - c["RR_BNC_P_SPE_ABAT"]);
        c["MOND_PROSPEC"] = prospections.montant[k];
    }
    data.Totalise("MOND_AUTO_ENTR_P");
    data.Totalise("MOND_PROSPEC");

    // The tax beyond the French one goes to each kind of income in proportion to what it adds.
    const std::int32_t impotSupplementaire = impotEffectif - S["TOT_IMPOT"];
    S["IMPOT_ETR_REV_NET_TI"] = revenuMondial - revenuFrancais;
    S["IMPOT_AUTO_ENTR"] = nProrata(impotSupplementaire, netAutoEntr, S["IMPOT_ETR_REV_NET_TI"]);
    S["IMPOT_PROSPEC"] = nProrata(impotSupplementaire, netProspection, S["IMPOT_ETR_REV_NET_TI"]);
    S["IMPOT_ETRANGER"] = impotSupplementaire - S["IMPOT_AUTO_ENTR"] - S["IMPOT_PROSPEC"];
    S["IMPOT_TX_EFFECTIF"] = S["IMPOT_CALC"] = impotEffectif;
    Detail["IMPOT_CALC"] = IntToStr(impotMondial) + u" sur " + IntToStr(revenuMondial) + u") proratisé (x " +
                           IntToStr(revenuFrancais) + u" / " + IntToStr(revenuMondial);
    S["IMPOT_ETR_TK"] = impotMondialDom;
    S["IMPOT_ETR_REV_TK"] = S["IMPOT_ETR_REV_NET_TK"] = revenuTK;
    S["IMPOT_ETR_PV_TK"] = OptionForfait() ? 0 : impotPlusValuesTK;
    S["IMPOT_ETR_PV_NET_TK"] = plusValuesTK;
    S["IMPOT_ETR_RMI"] = revenuMondial;
    if (effectif) S["TOT_R_MONDIAL"] = revenuMondial;
    if (!effectif || S["IMPOT_TX_EFFECTIF"] == S["TOT_IMPOT"])
        S["IMPOT_TX_EFFECTIF"] = S["IMPOT_AUTO_ENTR"] = S["IMPOT_ETRANGER"] = S["IMPOT_CALC"] = 0;
    S["IMPOT_ETRANGER_2"] = S["IMPOT_ETRANGER"];
    S["IMPOT_TX_EFFECTIF_2"] = S["IMPOT_TX_EFFECTIF"];
    S["REV_BRUT_TI_V"] = bruts.montant[0];
    S["REV_BRUT_TI_C"] = bruts.montant[1];
    S["REV_BRUT_TI_E"] = bruts.montant[2];
    for (std::size_t k = 0; k < kv::nPersonnes; ++k) {
        C[k]["FP_TI_SAL"] = nProrata(deductionsEtrangeres, bruts.montant[k], bruts.Total());
        C[k]["FP_TI_PENS"] = nProrata(abattementsEtrangers, bruts.montant[k], bruts.Total());
    }
    data.Totalise("FP_TI_SAL");
    data.Totalise("FP_TI_PENS");
}
