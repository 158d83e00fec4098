#include <algorithm>

#include "Calcul/pCalculN/Contexte.h"
#include "Calcul/pCalculN/Etapes.h"

// Net and taxable income: deductible charges (CGI art. 156 II and 163 quatervicies), allowances for elderly or disabled
// persons (CGI art. 157 bis) and for married children attached to the household (CGI art. 196 B).

namespace kv {

namespace {

constexpr std::int32_t nTaux100 = 10000;  // 100 % in hundredths of a percent

class RevenuNet : Travail {
  public:
    explicit RevenuNet(Contexte& c) : Travail(c) {}
    void RevenusNet();
    void RevenusImposables();

  private:
    std::int32_t Impute(std::int32_t charge);
    void Charge(CaseSortie ligne, std::int32_t declare, std::int32_t retenu);
    void Charges();
    void CsgDeductible();
    void PensionsVersees();
    void Pensions(CaseSortie ligne, const std::array<CaseEntree, 4>& boxes, std::int32_t majoration);
    void EpargneRetraite();
    void GrossesReparations();
    void TotaliseCharges();
    void Abattements();
    std::int32_t PersonnesAgees() const;

    std::int32_t m_reste = 0;  // what is left of the income after the charges so far
};

void RevenuNet::RevenusNet() {
    S["TOT_R_NET_G"] = S["TOT_R_NET"] = S["TOT_R_BRUT"];
    Charges();
    S["TOT_R_NET_G"] -= S["CHARGES"];
    Abattements();
    S["QUOTIENT_A_DED"] = S["QUOTIENT"] = S["RQ_REV_EXCEP"];
    if (S["QUOTIENT"] > 0) S["SEPAR_QUOT"] = 1;
}

// A charge never exceeds what is left of the income.
std::int32_t RevenuNet::Impute(std::int32_t charge) {
    const std::int32_t retenue = m_reste <= 0 ? 0 : std::min(charge, m_reste);
    m_reste -= retenue;
    return retenue;
}

// One charge: amount declared, amount retained, a rate of 100 %, the value cut to what is left of the income.
void RevenuNet::Charge(CaseSortie ligne, std::int32_t declare, std::int32_t retenu) {
    BaseRetenue(ligne, declare, retenu, nTaux100);
    S[ligne] = Impute(retenu);
}

void RevenuNet::Charges() {
    m_reste = S["TOT_R_NET"] + S["RQ_GAINS"];
    if (E["6DE"] > 0) Charge("C_CSG", E["6DE"], E["6DE"]);
    CsgDeductible();
    PensionsVersees();
    if (E["6GU"] > 0) Charge("C_AUTRE", E["6GU"], E["6GU"]);
    if (E["6EU"] > 0) Charge("C_FRAIS", E["6EU"], std::min(E["6EU"], loi["charges.accueil.plafond"] * E["6EV"]));
    if (E["6DD"] > 0) Charge("C_DEDUC", E["6DD"], E["6DD"]);
    if (E["REM"] != 0)
        S["C_TM_BIS"] = E["8TMA"];
    else if (E["RED"] != 0)
        S["C_TM_TER"] = E["8TMA"];
    EpargneRetraite();
    GrossesReparations();
    TotaliseCharges();
}

// The levy on capital income, deductible in part. The amounts that already bore it are kept for the social levies.
void RevenuNet::CsgDeductible() {
    memoire.revenusDejaSoumis = std::min(E["2BH"], E["2CH1"] + E["2TS1"]);
    memoire.revenusDejaSoumisReste = E["2CG"] + E["2BH"] - memoire.revenusDejaSoumis;
    const std::int32_t taux = EnVigueur("csg.capital.deductible");
    const std::int32_t soumis = faits.forfait ? memoire.revenusDejaSoumis : E["2BH"];
    BaseRetenue("C_CSG_MOB", soumis, soumis, taux);
    S["C_CSG_MOB"] = Impute(nArrondi(dDiv(dDiv(dMul(soumis, taux), 100), 100)));
}

// Maintenance paid to adult children and to other persons, each within its own ceiling; the second kind is raised.
void RevenuNet::PensionsVersees() {
    const std::int32_t majoration = loi["charges.pensions.majoration"];
    Pensions("C_ENFANTS_1", {"6EL", "6EM", "6EN", "6EQ"}, 0);
    Pensions("C_ENFANTS_2", {"6GI", "6GJ", "6GK", "6GL"}, majoration);

    const std::int32_t pensionsJustice = nAuTaux(E["6GP"], 10000 + majoration);
    if (pensionsJustice > 0) Charge("C_JUSTICE", pensionsJustice, pensionsJustice);
    C1["C_JUSTICE"] = E["6GP"];
}

void RevenuNet::Pensions(CaseSortie ligne, const std::array<CaseEntree, 4>& boxes, std::int32_t majoration) {
    std::int32_t declare = 0, retenu = 0;
    for (const CaseEntree box : boxes) {
        std::int32_t pension = E[box] + nAuTaux(E[box], majoration);
        nMaximise(&pension, loi["abattements.enfantMarie"]);
        declare += E[box];
        retenu += pension;
    }
    if (declare > 0) Charge(ligne, declare, retenu);
}

void RevenuNet::TotaliseCharges() {
    static constexpr CaseSortie charges[] = {
        "C_CSG",        "C_CSG_MOB", "C_DEDUC", "C_ENFANTS_1", "C_ENFANTS_2", "C_COT_PERP_V", "C_COT_PERP_C",
        "C_COT_PERP_E", "C_JUSTICE", "C_AUTRE", "C_FRAIS",     "C_TM_BIS",    "C_TM_TER",     "C_GROSSE_REP",
    };
    std::int32_t declarees = 0;
    for (const CaseSortie charge : charges) {
        lignes.Ajoute("C_REDUC", charge);
        if (charge != "C_JUSTICE" && charge != "C_GROSSE_REP") declarees += C1[charge];
    }
    S["TOT_R_NET"] -= S["C_REDUC"];
    lignes.Ajoute("CHARGES", "C_REDUC");
    C1["CHARGES"] = -C1["CHARGES"];
    C2["CHARGES"] = -C2["CHARGES"];
    C3["CHARGES"] = 0;
    if (C1["C_REDUC"] + declarees != 0) S["SEPAR_CHAR"] = 1;
}

// Retirement-savings contributions, each within the ceilings left over from earlier years; a couple may pool them.
void RevenuNet::EpargneRetraite() {
    const bool nouveauResident = E["6QW"] > 0;  // the ceilings of three more years
    const auto plafond = [&](CaseSortie nouveau, std::initializer_list<CaseEntree> anterieurs) {
        return nouveauResident ? nArrondi(dMul(S[nouveau], loi.Nombre("epargneRetraite.nouveauResident")))
                               : SommeE(anterieurs);
    };
    const std::int32_t plafondV = plafond("NP1_PLAF_PERP_V_C", {"6PS1", "6PSA", "6PSB", "6PSC"});
    const std::int32_t plafondC = plafond("NP1_PLAF_PERP_C_C", {"6PT1", "6PTA", "6PTB", "6PTC"});
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
    if (!nouveauResident) nMaximise(&deductibleE, SommeE({"6PU1", "6PUA", "6PUB", "6PUC"}));

    if (cotisationV > 0) Charge("C_COT_PERP_V", cotisationV, deductibleV);
    if (cotisationC > 0) Charge("C_COT_PERP_C", cotisationC, deductibleC);
    if (E["6RU"] > 0) Charge("C_COT_PERP_E", E["6RU"], deductibleE);
}

// Major repairs by bare owners, within a ceiling; what exceeds it is carried to the ten following years.
void RevenuNet::GrossesReparations() {
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
    if (depenses > 0) Charge("C_GROSSE_REP", depenses, std::min(depenses, loi["charges.grossesReparations.plafond"]));

    std::int32_t cumul = 0;
    for (const Annee& annee : annees) {
        cumul += E[annee.depense];
        std::int32_t imputees = S["C_GROSSE_REP"];
        if (annee.depense != "6CB") imputees += S["NP1_CHARG_GROSSE_REP_N"];
        if (annee.depense == "6HQ") imputees += S["NP1_CHARG_GROSSE_REP_Nm2"];
        S[annee.report] = std::min(E[annee.depense], nPositif(cumul - imputees));
    }
}

// The declarants of a certain age, or disabled.
std::int32_t RevenuNet::PersonnesAgees() const {
    const std::int32_t age = loi["abattements.personnesAgees.age"];
    const auto aDroit = [&](CaseEntree naissance, CaseEntree invalide) {
        return E[naissance] > 0 && (E[invalide] == 1 || anneeDesRevenus - AnneeOfDate(E[naissance]) >= age);
    };
    return aDroit("AAF1", "P") + (faits.couple && aDroit("AAF2", "Fp"));
}

void RevenuNet::Abattements() {
    if (const std::int32_t personnes = faits.resident ? PersonnesAgees() : 0; personnes > 0) {
        const std::int32_t revenu = S["TOT_R_NET_G"];
        C1["A_AGEES"] = personnes;
        C2["A_AGEES"] = revenu <= loi["abattements.personnesAgees.revenuPlein"]
                            ? loi["abattements.personnesAgees.montantPlein"]
                        : revenu <= loi["abattements.personnesAgees.revenu"] ? loi["abattements.personnesAgees.montant"]
                                                                             : 0;
        S["A_AGEES"] = personnes * C2["A_AGEES"];
        Detail["A_AGEES"] = Texte::Personnes(personnes);
    }
    C1["A_ENFANTS"] = 10 * E["Nm"] - 5 * E["Pm"];  // tenths of persons: half for a child in alternating residence
    C2["A_ENFANTS"] = loi["abattements.enfantMarie"];
    S["A_ENFANTS"] = nDiv(C1["A_ENFANTS"] * C2["A_ENFANTS"], 10);
    Detail["A_ENFANTS"] = Texte::Enfants(C1["A_ENFANTS"]);
    S["ABAT"] = S["A_AGEES"] + S["A_ENFANTS"];
    if (S["ABAT"] > 0) S["SEPAR_ABAT"] = 1;
}

void RevenuNet::RevenusImposables() {
    S["TOT_R_IMPOS"] = nPositif(faits.retenueALaSource ? S["TOT_R_NET_G"] : S["TOT_R_NET_G"] - S["ABAT"]);
    S["TOT_R_IMPOS"] -= S["QUOTIENT_A_DED"];
    S["QUOTIENT"] = S["RQ_REV_EXCEP"];
}

}  // namespace

void RevenusNet(Contexte& c) { RevenuNet(c).RevenusNet(); }
void RevenusImposables(Contexte& c) { RevenuNet(c).RevenusImposables(); }

}  // namespace kv
