#include <algorithm>

#include "Calcul/pCalculN/Calcul_N.h"

// Capital and property income: investment income (CGI art. 158-3, 125-0 A), property income (CGI art. 14 to 33, 156
// I-3), agricultural and global deficits (CGI art. 156 I), income taxed at flat rates, flat levies already paid.

namespace {

using kv::Passe;

constexpr std::int32_t nAbattementDividendes = 40;

// The deficits of six earlier years on investment income, the oldest first, and where each is carried.
struct DeficitMobilier {
    CaseEntree box;
    CaseSortie report;
};
constexpr DeficitMobilier deficitsMobiliers[] = {
    {"2AA", {}},
    {"2AL", "NP1_REV_MOB_Nm5"},
    {"2AM", "NP1_REV_MOB_Nm4"},
    {"2AN", "NP1_REV_MOB_Nm3"},
    {"2AQ", "NP1_REV_MOB_Nm2"},
    {"2AR", "NP1_REV_MOB_Nm1"},
};

}  // namespace

void CCalcul_N::RevenusMobiliers(Passe passe) {
    const kv::Etape etape(m_trace, u"8:RevenusMobiliers");

    const bool bareme = OptionBareme(), forfait = OptionForfait();
    const std::int32_t plafond = m_bCouple ? 9200 : 4600;  // life-insurance allowance
    const std::int32_t dividendes = E["2DC"], autres = E["2TR"], distribues = E["2FU"], majores = E["2GO"];
    const std::int32_t frais = E["2CA"], prets = E["2TT"], interets = E["2FA"];
    std::int32_t assurance = E["2TS"], assuranceVie = E["2CH"];
    if (bareme) {
        assurance = SommeE({"2TS1", "2TS2", "2EE2"});
        assuranceVie = SommeE({"2CH1", "2CH2", "2CH3", "2DH2", "2DH3"});
    }
    if (forfait) {
        assurance = E["2TS1"];
        assuranceVie = E["2CH1"];
    }
    const std::int32_t abattement = std::min(plafond, assuranceVie);

    // Expenses are shared out over the income they come from.
    std::int32_t fraisDividendes = 0, fraisAssurance = 0, fraisAutres = 0;
    const auto partage = [&](std::int32_t troisieme) {
        const std::int32_t total = dividendes + assurance + troisieme;
        fraisDividendes = nProrata(frais, dividendes, total);
        fraisAssurance = nProrata(frais, assurance, total);
        fraisAutres = nProrata(frais, troisieme, total);
    };
    if (SelonLaDeclaration()) {
        partage(autres);
    } else {
        if (E["BAR"] != 0) partage(autres + interets);
        if (E["PFU"] != 0) fraisDividendes = 0, fraisAssurance = frais, fraisAutres = 0;
    }

    S["RD_MOB_MONT"] = dividendes + assurance + autres + distribues + assuranceVie + majores + prets;
    if (bareme) S["RD_MOB_MONT"] += interets;
    if (forfait) S["RD_MOB_MONT"] = assurance + distribues + assuranceVie;
    m_travail.nBaseMobiliersSociale = S["RD_MOB_MONT"];
    S["RD_MOB_MAJO"] = forfait ? 0 : nPourcent(majores, 25);
    S["RD_MOB_DEMI_BASE_2DC"] = forfait ? 0 : nPourcent(dividendes, nAbattementDividendes);
    S["RD_MOB_DEMI_BASE_2FU"] = nPourcent(distribues, nAbattementDividendes);
    S["RD_MOB_DEMI_BASE"] = S["RD_MOB_DEMI_BASE_2DC"] + S["RD_MOB_DEMI_BASE_2FU"];

    auto& memoire = m_travail.passes;
    if (passe == Passe::TK) {
        S["RD_MOB_FRAIS"] = S["RD_MOB_ABAT"] = 0;
    } else {
        if (E["REM"] == 0 && E["RED"] == 0) S["RD_MOB_ABAT"] = abattement;
        const std::int32_t avantFrais = S["RD_MOB_MONT"] + S["RD_MOB_MAJO"] - S["RD_MOB_DEMI_BASE"] - S["RD_MOB_ABAT"];
        S["RD_MOB_FRAIS"] = std::min(frais, avantFrais);
        if (passe == Passe::Normale) {
            S["RD_MOB_FRAIS_2DC"] = fraisDividendes;
            S["RD_MOB_FRAIS_2TS"] = fraisAssurance;
            S["RD_MOB_FRAIS_2TR"] = fraisAutres;
            memoire.baseMobiliers = avantFrais - S["RD_MOB_FRAIS"];
        }
    }
    S["RD_MOB"] = S["RD_MOB_MONT"] + S["RD_MOB_MAJO"] - S["RD_MOB_DEMI_BASE"] - S["RD_MOB_ABAT"] - S["RD_MOB_FRAIS"];

    // Deficits of earlier years, the oldest first; the oldest year's is carried no further.
    std::int32_t anterieurs = 0;
    for (const DeficitMobilier& d : deficitsMobiliers) anterieurs += E[d.box];
    S["RD_MOB_DEFICIT_NM1"] = passe == Passe::TK ? nProrata(anterieurs, S["RD_MOB"], memoire.baseMobiliers)
                                                 : std::min(anterieurs, nPositif(S["RD_MOB"]));
    S["NP1_REV_MOB"] = 0;
    std::int32_t cumul = 0;
    for (const DeficitMobilier& d : deficitsMobiliers) {
        cumul += E[d.box];
        if (!d.report) continue;
        S[d.report] = std::min(E[d.box], nPositif(cumul - S["RD_MOB_DEFICIT_NM1"]));
        S["NP1_REV_MOB"] += S[d.report];
    }

    const std::int32_t distribuesNets = distribues - nPourcent(distribues, nAbattementDividendes);
    std::int32_t net = dividendes - nPourcent(dividendes, nAbattementDividendes) + assurance + autres + distribuesNets +
                       (assuranceVie - abattement) + nPourcent(majores, 125) + prets;
    if (bareme) net += interets;
    if (forfait) net = assurance + distribuesNets + (assuranceVie - abattement);
    S["NP1_REV_MOB_ANN"] = nPositif(frais - net);
    S["RD_MOB"] -= S["RD_MOB_DEFICIT_NM1"];
    S["RD_MOB_DEF"] = S["NP1_REV_MOB_ANN"];
    S["NP1_REV_MOB"] += S["NP1_REV_MOB_ANN"];

    if (passe == Passe::Normale) memoire.deficitMobilier = S["RD_MOB_DEF"];
    if (passe == Passe::Mondiale) MobiliersMondiaux();
    PrelevementLiberatoire(plafond, assuranceVie);
}

// The worldwide pass adds the foreign investment income, and the deficit that the French income alone could not use.
void CCalcul_N::MobiliersMondiaux() {
    S["RD_MOB"] += nPositif(m_travail.passes.deficitMobilier - S["RD_MOB_DEF"]);
    S["RD_MOB"] += nPositif(TI["2TS"] - TIX["2TS"] - TIY["2TS"]);
    if (m_bOptionsForcees || (m_bOptionsSiSaisies && E["PFU"] != 0)) return;
    S["RD_MOB"] += nPositif(nPourcent(nPositif(TI["2DC"] - TIX["2DC"]), 100 - nAbattementDividendes) - TIY["2DC"]);
    S["RD_MOB"] += nPositif(TI["2TR"] - TIX["2TR"] - TIY["2TR"]);
}

// The credit for the flat levy on life insurance, within what the allowance leaves.
void CCalcul_N::PrelevementLiberatoire(std::int32_t plafond, std::int32_t assuranceVie) {
    if (E["REM"] != 0 || E["RED"] != 0 || E["2CH"] >= plafond) return;
    if (SelonLaDeclaration())
        S["D_LIB"] = nPositif(nPourcent(std::min(E["2DH"], plafond - E["2CH"]), 7.5));
    else if (E["BAR"] != 0 || E["PFU"] != 0)
        S["D_LIB"] = nPositif(nPourcent(std::min(E["2DH1"], nPositif(plafond - assuranceVie)), 7.5));
}

void CCalcul_N::RevenusFonciers(Passe passe) {
    const kv::Etape etape(m_trace, u"9:RevenusFonciers");

    const std::int32_t resultat = E["4BA"], deficitFoncier = E["4BB"], deficitGlobal = E["4BC"], anterieurs = E["4BD"];
    const std::int32_t micro = E["4BE"], abattement = micro > 0 ? nPourcent(micro, 30) : 0;

    std::int32_t net = resultat + micro - abattement;
    if (deficitFoncier > 0) net = nPositif(net - deficitFoncier);
    if (deficitGlobal > 0) net -= deficitGlobal;
    if (anterieurs > 0 && net > 0) net = nPositif(net - anterieurs);

    if (resultat + micro - abattement - deficitFoncier >= 0) {
        S["RD_FON_BA"] = resultat;
        S["RD_FON_BB"] = deficitFoncier;
        S["RD_FON_BE"] = micro;
        S["RD_FON_BE_ABAT"] = abattement;
    } else {
        S["NP1_FON_ANN_BA"] = resultat;
        S["NP1_FON_ANN_BB"] = deficitFoncier;
        S["NP1_FON_ANN_BE"] = micro;
        S["NP1_FON_ANN_BE_ABAT"] = abattement;
    }
    S["RD_FON_BC"] = deficitGlobal;
    S["RD_FON_BD_IMPUT"] =
        std::min(nPositif(resultat - deficitFoncier - deficitGlobal + micro - abattement), anterieurs);
    S["NP1_FON_ANT"] = anterieurs;
    S["NP1_FON_IMP"] = S["RD_FON_BD_IMPUT"];

    auto& memoire = m_travail.passes;
    if (passe == Passe::Normale) memoire.deficitFoncierPerdu = nPositif(E["4BDa"] - S["NP1_FON_IMP"]);
    if (passe != Passe::TK) S["NP1_FON_PER"] = memoire.deficitFoncierPerdu;

    S["NP1_FON_ANN"] =
        nPositif(S["NP1_FON_ANN_BB"] - S["NP1_FON_ANN_BA"] - S["NP1_FON_ANN_BE"] + S["NP1_FON_ANN_BE_ABAT"]);
    S["NP1_FON"] = nPositif(S["NP1_FON_ANT"] - S["NP1_FON_IMP"] - S["NP1_FON_PER"] + S["NP1_FON_ANN"]);
    if (S["NP1_FON"] == 0) S["NP1_FON_ANT"] = S["NP1_FON_IMP"] = S["NP1_FON_PER"] = S["NP1_FON_ANN"] = 0;
    S["RD_FON_DEF"] = S["NP1_FON"];

    if (passe == Passe::Normale) memoire.deficitFoncier = S["RD_FON_DEF"];
    if (passe == Passe::Mondiale) net += nPositif(memoire.deficitFoncier - S["RD_FON_DEF"]);
    S["RD_FON"] = net;
}

void CCalcul_N::RevenusDivers(Passe passe) {
    const kv::Etape etape(m_trace, u"10:RevenusDivers");
    const bool bareme = OptionBareme(), forfait = OptionForfait();

    // Agricultural deficits come off farm income, and off other income only when it is modest.
    const std::int32_t anterieurs = SommeE({"5QF", "5QG", "5QN", "5QO", "5QP", "5QQ"});
    if (S["RR_BA"] > 0) {
        if (anterieurs > 0)
            ImputeDeficit("RR_BA", "RR_BA_DEF_ANT", anterieurs);
        else
            S["RR_BA_DEF_ANT"] = 0;
    } else {
        std::int32_t autres =
            nPositif(S["RF_PLUS"] - S["RF_PLUS_BA"]) +
            SommeS({"RNORMAL", "RR_BIC_P", "RR_BIC_NP", "RR_BIC_NP_DEF_REP", "RR_BIC_NP_LM", "RR_BIC_NP_LM_DEF_REP",
                    "RR_BNC_NP_DEF_REP", "RR_BNC_P", "RR_BNC_NP", "RDIVERS", "RD_GAINS_1TZ", "RF_INVENTEURS"}) -
            S["RD_GAINS_2_Ded"] + SommeE({"3VG", "3UA", "3VE", "3VM", "3VT", "3PI", "3SB", "3SZ", "3UV", "3WI",
                                          "3WJ", "3WP", "3VD", "3VI", "3VF", "3VJ", "3VK", "3SK", "1TT", "1UT"});
        autres += bareme || forfait ? E["3SJ1"] + E["3SJ2"] : E["3SJ"] + E["2FA"];
        if (forfait) autres += S["RF_PFU1"] + S["RF_PFU2"];
        if (autres > IDX(108904)) {
            m_pData->Annule("RR_BA_DEF");
            m_pData->Soustrait("RR_BA_DEF", "RR_BA");
            S["NP1_BA_ANN"] = S["RR_BA_DEF"];
        }
    }
    S["NP1_BA_ANT"] = anterieurs;
    S["NP1_BA_IMP"] = S["RR_BA_DEF_ANT"];
    auto& memoire = m_travail.passes;
    if (passe == Passe::Normale)
        memoire.deficitAgricolePerdu = std::min(nPositif(E["5QF"] - S["NP1_BA_IMP"]), E["5QF"]);
    if (passe != Passe::TK) S["NP1_BA_PER"] = memoire.deficitAgricolePerdu;
    S["NP1_BA"] = S["NP1_BA_ANT"] - S["NP1_BA_IMP"] + S["NP1_BA_ANN"] - S["NP1_BA_PER"];
    if (S["NP1_BA"] == 0) S["NP1_BA_ANT"] = S["NP1_BA_IMP"] = S["NP1_BA_PER"] = 0;

    S["RD_AUTRE"] = E["6GH"];
    S["RD_PV_BAREME"] = SommeE({"3VG", "3UA", "3SB", "3VE", "3UV", "3SZ"});
    if (bareme) S["RD_PV_BAREME"] += E["3SJ2"];
    if (forfait) S["RD_PV_BAREME"] = 0;
    S["RD_DEFICIT"] = SommeE({"6FA", "6FB", "6FC", "6FD", "6FE", "6FL"});
}

void CCalcul_N::RevenusTauxForf() {
    const kv::Etape etape(m_trace, u"12:RevenusTauxForf");
    const bool option = OptionBareme() || OptionForfait();

    C1["RF_PENSIONS"] = nPourcent(E["1AT"], 90);
    C2["RF_PENSIONS"] = nPourcent(E["1BT"], 90);
    m_pData->Totalise("RF_PENSIONS");
    S["RF_2FA"] = option ? 0 : E["2FA"];
    S["RF_GAINS_BSPCE_19"] = option ? E["3SJ1"] : E["3SJ"];

    struct Gain {
        CaseSortie sortie;
        CaseEntree box;
    };
    static constexpr Gain gains[] = {
        {"RF_GAINS_40", "3VF"},   {"RF_GAINS_30", "3VI"},       {"RF_GAINS_18", "3VD"},
        {"RF_GAINS_22_5", "3VM"}, {"RF_GAINS_BSPCE_30", "3SK"}, {"RF_CESS_3VT", "3VT"},
        {"RF_PV_24", "3WI"},      {"RF_PV_19", "3WJ"},          {"RF_3PI", "3PI"},
        {"RF_PV1", "3WP"},
    };
    for (const Gain& gain : gains) S[gain.sortie] = E[gain.box];

    C2["CO_19"] = S["RF_CESS_3VT"] + S["RF_GAINS_BSPCE_19"] + S["RF_PV_19"];
    C2["CO_24"] = S["RF_PV_24"];
    C2["CO_18"] = S["RF_GAINS_18"];
    C2["CO_50"] = S["RF_3PI"];
    C2["CO_3WR"] = E["3WR"];
    // Long-term business gains: in the overseas departments they share the room of the abatement.
    if (E["GMR"] != 0)
        C2["CO_TNS_MGR"] = S["RF_PLUS"];
    else if (E["GUY"] != 0 || E["MAY"] != 0)
        C2["CO_TNS_GUY"] = S["RF_PLUS"];
    else
        C2["CO_TNS"] += S["RF_PLUS"];
    C2["CO_30"] = S["RF_GAINS_30"] + S["RF_GAINS_BSPCE_30"];
    C2["CO_41"] = S["RF_GAINS_40"];
    C2["CO_22_5"] = S["RF_GAINS_22_5"];

    std::int32_t bases = 0;
    for (const CaseSortie ligne :
         {CaseSortie("CO_TNS_GUY"), CaseSortie("CO_TNS_MGR"), CaseSortie("CO_TNS"), CaseSortie("CO_18"),
          CaseSortie("CO_19"), CaseSortie("CO_24"), CaseSortie("CO_30"), CaseSortie("CO_41"), CaseSortie("CO_22_5"),
          CaseSortie("CO_3WR"), CaseSortie("CO_50")})
        bases += C2[ligne];
    if (bases > 0) S["SEPAR_QUOT"] = 1;

    C2["FORFAIT"] = SommeS({"RF_INVENTEURS", "RF_2FA", "RF_PLUS", "RF_GAINS_18", "RF_GAINS_30", "RF_GAINS_40",
                            "RF_GAINS_22_5", "RF_CESS_3VT", "RF_3PI", "RF_GAINS_BSPCE_19", "RF_GAINS_BSPCE_30",
                            "RF_PENSIONS", "RF_PV_24", "RF_PV_19", "RF_PV1"});
    S["FORFAIT"] = 0;
}

void CCalcul_N::PrelevLib() {
    const kv::Etape etape(m_trace, u"30:PrelevLib");

    const auto prelevement = [&](CaseSortie ligne, CaseEntree box, std::int32_t taux) {
        m_pData->BaseEtTaux(ligne, E[box], taux);
        S[ligne] = nPourcent(E[box], taux / 100.0);
    };
    prelevement("PL_DH", "2DH", 750);
    prelevement("PL_EE", "2EE", 1500);
    S["PL_PRELEV_LIB"] = S["PL_DH"] + S["PL_EE"];
    if (S["PL_PRELEV_LIB"] > 0) S["SAUT_PAGE_LIB"] = S["SEPAR_PRELEV_LIB"] = 1;
}
