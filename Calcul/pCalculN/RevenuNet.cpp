#include <algorithm>

#include "Calcul/pCalculN/Calcul_N.h"

// Net and taxable income: deductible charges (CGI art. 156 II and 163 quatervicies), allowances for elderly or disabled
// persons (CGI art. 157 bis) and for married children attached to the household (CGI art. 196 B).

namespace {

constexpr std::int32_t nTaux100 = 10000;  // 100 % in hundredths of a percent

// What is left of the income after a charge: a charge never exceeds it.
std::int32_t Impute(std::int32_t charge, std::int32_t& reste) {
    const std::int32_t retenue = reste <= 0 ? 0 : std::min(charge, reste);
    reste -= retenue;
    return retenue;
}

}  // namespace

void CCalcul_N::RevenusNet() {
    const kv::Etape etape(m_trace, u"13:RevenusNet");

    S["TOT_R_NET_G"] = S["TOT_R_NET"] = S["TOT_R_BRUT"];
    Charges();
    S["TOT_R_NET_G"] -= S["CHARGES"];
    Abattements();
    S["QUOTIENT_A_DED"] = S["QUOTIENT"] = S["RQ_REV_EXCEP"];
    if (S["QUOTIENT"] > 0) S["SEPAR_QUOT"] = 1;
}

// One charge: amount declared, amount retained, a rate of 100 %, the value cut to what is left of the income.
void CCalcul_N::Charge(CaseSortie ligne, std::int32_t declare, std::int32_t retenu, std::int32_t& reste) {
    C1[ligne] = declare;
    m_pData->BaseEtTaux(ligne, retenu, nTaux100);
    S[ligne] = Impute(retenu, reste);
}

void CCalcul_N::Charges() {
    std::int32_t reste = S["TOT_R_NET"] + S["RQ_GAINS"];

    if (E["6DE"] > 0) Charge("C_CSG", E["6DE"], E["6DE"], reste);

    // Deductible levy on capital income. The amounts that already bore it are kept for the social levies.
    m_travail.nRevenusDejaSoumis = std::min(E["2BH"], E["2CH1"] + E["2TS1"]);
    m_travail.nRevenusDejaSoumisReste = E["2CG"] + E["2BH"] - m_travail.nRevenusDejaSoumis;
    const std::int32_t tauxDeductible = NouveauxTaux() ? 680 : 510;
    const std::int32_t soumis = OptionForfait() ? m_travail.nRevenusDejaSoumis : E["2BH"];
    C1["C_CSG_MOB"] = soumis;
    m_pData->BaseEtTaux("C_CSG_MOB", soumis, tauxDeductible);
    S["C_CSG_MOB"] = Impute(nTronque(dArrondi(dMul(soumis, tauxDeductible) / 100 / 100)), reste);

    // Maintenance paid to adult children and to other persons, each within its own ceiling; the second kind is raised.
    const auto pensions = [&](CaseSortie ligne, const std::array<CaseEntree, 4>& boxes, std::int32_t majoration) {
        std::int32_t declare = 0, retenu = 0;
        for (const CaseEntree box : boxes) {
            std::int32_t pension = E[box] + nPourcent(E[box], majoration);
            nMaximise(&pension, IDX(5795));
            declare += E[box];
            retenu += pension;
        }
        if (declare > 0) Charge(ligne, declare, retenu, reste);
    };
    pensions("C_ENFANTS_1", {"6EL", "6EM", "6EN", "6EQ"}, 0);
    pensions("C_ENFANTS_2", {"6GI", "6GJ", "6GK", "6GL"}, 25);

    const std::int32_t pensionsJustice = nPourcent(E["6GP"], 125);
    if (pensionsJustice > 0) Charge("C_JUSTICE", pensionsJustice, pensionsJustice, reste);
    C1["C_JUSTICE"] = E["6GP"];
    if (E["6GU"] > 0) Charge("C_AUTRE", E["6GU"], E["6GU"], reste);
    if (E["6EU"] > 0) Charge("C_FRAIS", E["6EU"], std::min(E["6EU"], IDX(3445) * E["6EV"]), reste);
    if (E["6DD"] > 0) Charge("C_DEDUC", E["6DD"], E["6DD"], reste);
    if (E["REM"] != 0)
        S["C_TM_BIS"] = E["8TMA"];
    else if (E["RED"] != 0)
        S["C_TM_TER"] = E["8TMA"];
    ChargesEpargneRetraite(reste);
    ChargesGrossesReparations(reste);

    static constexpr CaseSortie charges[] = {
        "C_CSG",        "C_CSG_MOB", "C_DEDUC", "C_ENFANTS_1", "C_ENFANTS_2", "C_COT_PERP_V", "C_COT_PERP_C",
        "C_COT_PERP_E", "C_JUSTICE", "C_AUTRE", "C_FRAIS",     "C_TM_BIS",    "C_TM_TER",     "C_GROSSE_REP",
    };
    std::int32_t declarees = 0;
    for (const CaseSortie charge : charges) {
        m_pData->Ajoute("C_REDUC", charge);
        if (charge != "C_JUSTICE" && charge != "C_GROSSE_REP") declarees += C1[charge];
    }
    S["TOT_R_NET"] -= S["C_REDUC"];
    m_pData->Ajoute("CHARGES", "C_REDUC");
    C1["CHARGES"] = -C1["CHARGES"];
    C2["CHARGES"] = -C2["CHARGES"];
    C3["CHARGES"] = 0;
    if (C1["C_REDUC"] + declarees != 0) S["SEPAR_CHAR"] = 1;
}

// Retirement-savings contributions, each within the ceilings left over from earlier years; a couple may pool them.
void CCalcul_N::ChargesEpargneRetraite(std::int32_t& reste) {
    const bool nouveauResident = E["6QW"] > 0;  // new resident: the ceilings of three more years
    const std::int32_t plafondV =
        nouveauResident ? nArrondi(dMul(S["NP1_PLAF_PERP_V_C"], 4.0)) : E["6PS1"] + E["6PSA"] + E["6PSB"] + E["6PSC"];
    const std::int32_t plafondC =
        nouveauResident ? nArrondi(dMul(S["NP1_PLAF_PERP_C_C"], 4.0)) : E["6PT1"] + E["6PTA"] + E["6PTB"] + E["6PTC"];
    const std::int32_t cotisationV = E["6RS"], cotisationC = E["6RT"];
    std::int32_t deductibleV = std::min(cotisationV, plafondV);
    std::int32_t deductibleC = std::min(cotisationC, plafondC);
    std::int32_t deductibleE = E["6RU"];
    if (E["6QR"] == 1) {
        if (cotisationV > plafondV && cotisationC < plafondC)
            deductibleV = std::min(cotisationV, plafondV + plafondC - cotisationC);
        if (cotisationV < plafondV && cotisationC > plafondC)
            deductibleC = std::min(cotisationC, plafondC + plafondV - cotisationV);
    }
    if (!nouveauResident) nMaximise(&deductibleE, E["6PU1"] + E["6PUA"] + E["6PUB"] + E["6PUC"]);

    if (cotisationV > 0) Charge("C_COT_PERP_V", cotisationV, deductibleV, reste);
    if (cotisationC > 0) Charge("C_COT_PERP_C", cotisationC, deductibleC, reste);
    if (E["6RU"] > 0) Charge("C_COT_PERP_E", E["6RU"], deductibleE, reste);
}

// Major repairs by bare owners, within a ceiling; what exceeds it is carried to the ten following years.
void CCalcul_N::ChargesGrossesReparations(std::int32_t& reste) {
    // Carried from the oldest year to the most recent one.
    struct Annee {
        CaseEntree depense;
        CaseSortie report;
    };
    static constexpr Annee annees[] = {
        {"6CB", "NP1_CHARG_GROSSE_REP_N"},   {"6HJ", "NP1_CHARG_GROSSE_REP_Nm8"}, {"6HK", "NP1_CHARG_GROSSE_REP_Nm7"},
        {"6HL", "NP1_CHARG_GROSSE_REP_Nm6"}, {"6HM", "NP1_CHARG_GROSSE_REP_Nm5"}, {"6HN", "NP1_CHARG_GROSSE_REP_Nm4"},
        {"6HO", "NP1_CHARG_GROSSE_REP_Nm3"}, {"6HP", "NP1_CHARG_GROSSE_REP_Nm2"}, {"6HQ", "NP1_CHARG_GROSSE_REP_Nm1"},
    };
    std::int32_t depenses = 0;
    for (const Annee& annee : annees) depenses += E[annee.depense];
    if (depenses > 0) Charge("C_GROSSE_REP", depenses, std::min(depenses, 25000), reste);

    std::int32_t cumul = 0;
    for (const Annee& annee : annees) {
        cumul += E[annee.depense];
        std::int32_t imputees = S["C_GROSSE_REP"];
        if (annee.depense != "6CB") imputees += S["NP1_CHARG_GROSSE_REP_N"];
        if (annee.depense == "6HQ") imputees += S["NP1_CHARG_GROSSE_REP_Nm2"];
        S[annee.report] = std::min(E[annee.depense], nPositif(cumul - imputees));
    }
}

void CCalcul_N::Abattements() {
    if (E["REM"] == 0 && E["RED"] == 0) {
        const auto aDroit = [&](CaseEntree naissance, CaseEntree invalide) {
            return E[naissance] > 0 && (E[invalide] == 1 || 2017 - AnneeOfDate(E[naissance]) >= 65);
        };
        const std::int32_t personnes = aDroit("AAF1", "P") + (m_bCouple && aDroit("AAF2", "Fp"));
        if (personnes > 0) {
            const std::int32_t revenu = S["TOT_R_NET_G"];
            C1["A_AGEES"] = personnes;
            C2["A_AGEES"] = revenu <= IDX(14900) ? IDX(2376) : revenu <= IDX(24000) ? IDX(1188) : 0;
            S["A_AGEES"] = personnes * C2["A_AGEES"];
            Detail["A_AGEES"] = IntToStr(personnes) + u" personne(s)";
        }
    }
    C1["A_ENFANTS"] = 10 * E["Nm"] - 5 * E["Pm"];  // tenths of persons: half for a child in alternating residence
    C2["A_ENFANTS"] = IDX(5795);
    S["A_ENFANTS"] = C1["A_ENFANTS"] * C2["A_ENFANTS"] / 10;
    Detail["A_ENFANTS"] = FloatToStr(C1["A_ENFANTS"] / 10.0) + u" enfant(s)";
    S["ABAT"] = S["A_AGEES"] + S["A_ENFANTS"];
    if (S["ABAT"] > 0) S["SEPAR_ABAT"] = 1;
}

void CCalcul_N::RevenusImposables() {
    const kv::Etape etape(m_trace, u"14:RevenusImposables");

    S["TOT_R_IMPOS"] = nPositif(m_bCalculPAS ? S["TOT_R_NET_G"] : S["TOT_R_NET_G"] - S["ABAT"]);
    S["TOT_R_IMPOS"] -= S["QUOTIENT_A_DED"];
    S["QUOTIENT"] = S["RQ_REV_EXCEP"];
}
