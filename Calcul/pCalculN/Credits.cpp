#include <algorithm>
#include <array>

#include "Calcul/cCalcul/Transferts.h"
#include "Calcul/pCalculN/Contexte.h"
#include "Calcul/pCalculN/CreditsTable.h"
#include "Calcul/pCalculN/Etapes.h"
#include "Calcul/pCalculN/Imputation.h"

// Tax credits: those that are only imputed on the tax, those that are refunded, those that count in the global cap.

namespace kv {

using namespace credits;

namespace {

constexpr std::int32_t nTaux100 = 10000;  // 100 %, in hundredths of a percent as every rate here

class Credits : Travail {
  public:
    explicit Credits(Contexte& c) : Travail(c) {}
    void CreditDImpot();

  private:
    void LigneCredit(CaseSortie credit, std::int32_t declare, std::int32_t retenu, std::int32_t taux);
    void CreditCompte(CaseSortie credit, std::int32_t declare, std::int32_t retenu, std::int32_t taux);
    void Impute(CaseSortie credit, std::int32_t declare, std::int32_t limite);
    void ImputeAuTaux(CaseSortie credit, CaseEntree box, std::int32_t taux, std::int32_t limite);
    std::int32_t PlafondParFoyer(Parametre montant, Parametre parCharge) const;
    void Contributions();
    void CreditsImputes();
    void CreditsDImpotEtranger();
    void EquipementDuLogement();
    void TransitionEnergetique();
    void FraisDeGarde();
    void CotisationsSyndicales();
    void PretsEtudiants();
    void CreditsForestiers();
    void ReportsForestiers();
    void InteretsHabitationPrincipale();
    void Total();

    Imputation m_imputation{lignes, faits.sansAvantages, contexte.commun.observateur};
    std::int32_t m_reste = 0;  // what is left of the tax for the credits that are only imputed
};

void Credits::CreditDImpot() {
    Lance(Etape::CSG_CRDS);
    Lance(Etape::TauxPAS);
    Contributions();
    CreditsImputes();

    for (const Copie& copie : copies) S[copie.credit] = E[copie.box];
    const bool option = faits.bareme || faits.forfait;
    LigneCredit("D_PV_NON_RESIDENT", E["3VE"], E["3VE"],
                loi[option ? Parametre("credits.3VE.tauxOption") : "credits.3VE.taux"]);
    LigneCredit("D_SCR_NON_RESIDENT", E["3UV"], E["3UV"],
                loi[option ? Parametre("credits.3UV.tauxOption") : "credits.3UV.taux"]);

    EquipementDuLogement();
    const bool avantages = !faits.sansAvantages;
    if (avantages) TransitionEnergetique();
    S["D_RESTI_TAXE_ADD_DROIT_BAIL"] = nAuTaux(E["4TQ"], loi["credits.4TQ.taux"]);
    if (avantages) FraisDeGarde();
    CotisationsSyndicales();
    PretsEtudiants();
    CreditsForestiers();
    if (avantages) {
        InteretsHabitationPrincipale();
        ReportsForestiers();
    }
    for (const Copie& copie : copiesProfessionnelles) S[copie.credit] = E[copie.box];
    if (faits.cimr) Lance(Etape::KV_CIMR);
    Total();
}

void Credits::Total() {
    std::int32_t total = 0;
    const auto ajoute = [&](CaseSortie credit) { total += S[credit]; };
    for (const CaseSortie credit : creditsDuTotal) ajoute(credit);
    for (const auto& travaux : travauxForestiers) ajoute(travaux.credit);
    for (const auto& depense : transitionEnergetique) ajoute(depense.credit);
    if (faits.forfait) ajoute("D_CREDIT_PFU2");
    if (faits.cimr) ajoute("D_CREDIT_CIMR_IR");
    S["D_CREDIT"] = total;
    if (S["CORRECTIONS"] + S["D_CREDIT"] != 0) S["SEPAR_MONT"] = 1;
}

// A credit that is a rate of an entry box: amount declared, amount retained, rate in hundredths of a percent. A line
// without an amount shows its rate.
void Credits::LigneCredit(CaseSortie credit, std::int32_t declare, std::int32_t retenu, std::int32_t taux) {
    if (declare == 0 && retenu == 0)
        C3[credit] = taux;
    else
        lignes.Ecrit(credit) = {nAuTaux(retenu, taux), {declare, retenu, taux}};
}

// The same for a credit that counts in the global cap.
void Credits::CreditCompte(CaseSortie credit, std::int32_t declare, std::int32_t retenu, std::int32_t taux) {
    LigneCredit(credit, declare, retenu, taux);
    m_imputation.Note(Niche::N2013, credit, S[credit]);
}

// The contribution on high incomes, less the share of the foreign income.
void Credits::Contributions() {
    const std::int32_t contribution = S["CONT_HAUT_REV"], revenu = S["REV_REF_C"];
    if (IndicateurEtranger(E.Toutes()) > 0)
        S["CONT_HR_TAUX_EFFECTIF"] = nProrata(contribution, revenu - S["IMPOT_ETR_REV_NET_TI"], revenu);
    S["CONTRIBUTIONS"] = (S["CONT_HR_TAUX_EFFECTIF"] >= 1 ? S["CONT_HR_TAUX_EFFECTIF"] : contribution) + E["3WT"];
    if (E["8TK"] > 0)
        S["CONT_HR_CREDIT_IMPOT"] = std::min(
            contribution, nProrata(contribution, S["IMPOT_ETR_REV_NET_TK"] + S["IMPOT_ETR_PV_NET_TK"], revenu));
}

// ---- The credits that are only imputed: each takes what it may of the tax that is left, and no more.

void Credits::Impute(CaseSortie credit, std::int32_t declare, std::int32_t limite) {
    S[credit] = std::min(declare, nPositif(limite));
    C1["D_CREDIT_TOT"] += declare;
    C2["D_CREDIT_TOT"] += S[credit];
    m_reste = nPositif(m_reste - S[credit]);
}

void Credits::ImputeAuTaux(CaseSortie credit, CaseEntree box, std::int32_t taux, std::int32_t limite) {
    LigneCredit(credit, E[box], E[box], taux);
    Impute(credit, S[credit], std::min(m_reste, limite));
}

void Credits::CreditsImputes() {
    const std::int32_t impot = S["TOT_IMP_COR"];
    m_reste = nPositif(impot);
    C1["D_CREDIT_TOT"] = C2["D_CREDIT_TOT"] = 0;
    const auto nonNegatif = [&](CaseEntree box) { return nPositif(E[box]); };

    CreditsDImpotEtranger();
    const std::int32_t horsReprises = impot - S["CO_REPRISE"] - S["CO_INVEST_CORSE"];
    ImputeAuTaux("D_ACQ_BIENS_CULTURELS", "7UO", loi["credits.7UO.taux"], horsReprises);
    Impute("D_PREVENTION", nonNegatif("8TE"), m_reste);
    ImputeAuTaux("D_MECENAT", "7US", nTaux100, horsReprises);
    Impute("D_INVEST_CORSE", nPositif(E["8TG"] + E["8TO"]), std::min(m_reste, impot - S["CO_INVEST_CORSE"]));
    Impute("D_CREDIT_8TC", nonNegatif("8TC"), m_reste);
    Impute("D_CREDIT_COMP_EMPLOI", nonNegatif("8UW"), m_reste);
}

// Tax paid abroad or in advance, within the tax that the income bears here.
void Credits::CreditsDImpotEtranger() {
    std::int32_t pensions = 0;
    if (E["1AT"] > 0) pensions += ImpotPensionEnCapital(TK["1AT"] - TKZ["1AT"]);
    if (E["1BT"] > 0) pensions += ImpotPensionEnCapital(TK["1BT"] - TKZ["1BT"]);
    Impute("D_CREDIT_1AT_1BT", pensions, S["CO_PENSIONS"]);
    Impute("D_AVOIR_FISC", E["2AB"], m_reste);
    Impute("D_SOURCE_ETR", E["8TAB"], m_reste);
    Impute("D_IMPOT_ETR", SommeE({"8VL", "8VM", "8WM", "8UM"}), m_reste);
    const std::int32_t corrections = S["CORRECTIONS"] - SommeS({"CO_REPRISE", "CO_TAXELOYER", "CO_PENSIONS",
                                                                "CO_INTERET", "CO_INVEST_CORSE", "CO_AGENTS_ASSUR"});
    Impute("D_ETR_PV_TK", S["IMPOT_ETR_PV_TK"], std::min(m_reste, corrections));
    if (faits.selonLaDeclaration) {
        const std::int32_t interets = nPositif(TK["2FA"] - TKZ["2FA"]);
        Impute("D_CREDIT_2FA", nAuTaux(interets, loi["mobiliers.2FA.taux"]),
               std::min<std::int32_t>(m_reste, S["CO_INTERET"]));
    } else if (E["PFU"] != 0) {
        const std::int32_t capitaux = (TK["2FA"] - TKZ["2FA"]) + (TK["2DC"] - TKZ["2DC"]) + (TK["2TR"] - TKZ["2TR"]);
        const std::int32_t credit =
            nAuTaux(capitaux, loi["pfu.taux"]) + nAuTaux(TK["3VG"] - TKZ["3VG"], loi["pfu.taux"]);
        Impute("D_CREDIT_PFU2", credit, credit);
        S["D_CREDIT_PFU2"] = credit;
    }
}

// A ceiling per household, raised for dependants and for children in alternating residence.
std::int32_t Credits::PlafondParFoyer(Parametre montant, Parametre parCharge) const {
    return ParFoyer(loi[montant]) + loi[parCharge] * S["F_NB_CHARGE"] +
           nDiv(loi[parCharge] * S["F_NB_ENFANTS_ALTERNE"], 2);
}

// Equipment for elderly or disabled persons (CGI art. 200 quater A), works against technological risks.
void Credits::EquipementDuLogement() {
    if (E["7WJ"] > 0) {
        const std::int32_t plafond = nPositif(PlafondParFoyer("credits.7WJ.plafond", "credits.7WJ.parCharge") -
                                              SommeE({"7WJA", "7WJB", "7WJC", "7WJD"}));
        LigneCredit("D_AIDE_PERS_AGEES", E["7WJ"], std::min(E["7WJ"], plafond), loi["credits.7WJ.taux"]);
    }
    if (E["7WL"] > 0) {
        const std::int32_t plafond = (E["7WLPS"] >= 1 ? E["7WLPS"] : E["7WLPC"]) - E["7WLA"] - E["7WLB"];
        if (plafond > 0)
            LigneCredit("D_AIDE_RISQUE_TECHNO", E["7WL"], std::min(E["7WL"], plafond), loi["credits.7WL.taux"]);
    }
}

void Credits::TransitionEnergetique() {
    std::int32_t plafond =
        nPositif(PlafondParFoyer("credits.transitionEnergetique.plafond", "credits.transitionEnergetique.parCharge") -
                 SommeE({"7WHA", "7WHB", "7WHC", "7WHD"}));
    for (const auto& t : transitionEnergetique) {
        const std::int32_t retenu = std::min(E[t.depense], plafond);
        CreditCompte(t.credit, E[t.depense], retenu, loi["credits.transitionEnergetique.taux"]);
        plafond = nPositif(plafond - retenu);
    }
    CreditCompte("D_PREV_RISQUE_TECH", E["7WR"], E["7WR"], loi["credits.7WR.taux"]);
}

// Childcare outside the home (CGI art. 200 quater B): a ceiling per child, half for alternating residence.
void Credits::FraisDeGarde() {
    const auto aucun = [&](const Enfants& enfants) {
        return std::all_of(enfants.begin(), enfants.end(), [&](CaseEntree enfant) { return E[enfant] == 0; });
    };
    if (aucun(enfantsACharge) && aucun(enfantsAlternes)) return;
    const auto garde = [&](CaseSortie credit, const Enfants& enfants, std::int32_t plafond) {
        std::int32_t declare = 0, retenu = 0;
        for (const CaseEntree enfant : enfants) {
            declare += E[enfant];
            retenu += std::min(E[enfant], plafond);
        }
        CreditCompte(credit, declare, retenu, loi["credits.gardeEnfants.taux"]);
    };
    const std::int32_t plafond = loi["credits.gardeEnfants.plafond"];
    garde("D_FRAIS_GARDE_ACHARGE", enfantsACharge, plafond);
    garde("D_FRAIS_GARDE_ALTERNE", enfantsAlternes, nDiv(plafond, 2));
}

// Union dues (CGI art. 199 quater C): capped at a part of salaries and pensions, salaries counting only without actual
// expenses.
void Credits::CotisationsSyndicales() {
    const std::int32_t cotisations = SommeE({"7AC", "7AE", "7AG"});
    if (cotisations <= 0) return;
    std::int32_t retenues = 0;
    for (const Cotisant& cotisant : cotisants)
        retenues += std::min(E[cotisant.cotisation], PlafondSyndical(cotisant, E.Toutes(), loi));
    lignes.Annule("D_CREDIT_7AC_7AE_7AG");
    S["D_CREDIT_7AC_7AE_7AG"] = nAuTaux(std::min(cotisations, retenues), loi["credits.cotisationsSyndicales.taux"]);
}

// Interest on student loans (CGI art. 200 terdecies): this year's payments, then those of earlier years.
void Credits::PretsEtudiants() {
    const std::int32_t annees = E["7VO"], parAnnee = loi["credits.pretsEtudiants.plafond"];
    const std::int32_t taux = loi["credits.pretsEtudiants.taux"];
    const std::int32_t plafond = annees <= loi["credits.pretsEtudiants.annees"] ? parAnnee : 0;
    const std::int32_t plafondAnterieurs = std::min(annees * parAnnee, loi["credits.pretsEtudiants.plafondAnterieurs"]);
    LigneCredit("D_PRET_ETUDIANTS_1", E["7UK"], std::min(E["7UK"], plafond), taux);
    LigneCredit("D_PRET_ETUDIANTS_2", E["7TD"], std::min(E["7TD"], plafondAnterieurs), taux);
}

void Credits::CreditsForestiers() {
    const auto credit = [&](CaseSortie ligne, std::int32_t declare, std::int32_t plafond, std::int32_t taux) {
        CreditCompte(ligne, declare, std::min(declare, plafond), taux);
    };
    const std::int32_t taux = loi["credits.forets.taux"], tauxGroupement = loi["credits.forets.tauxGroupement"];
    std::int32_t plafond = ParFoyer(loi["credits.forets.plafondGestion"]);
    credit("D_CREDIT_7UI", E["7UI"], plafond, tauxGroupement);
    plafond -= E["7UI"];
    if (plafond > 0) credit("D_CREDIT_7UQ", E["7UQ"], plafond, taux);

    std::int32_t reste = ParFoyer(loi["credits.forets.plafondTravaux"]);
    for (const auto& t : travauxForestiers) {
        credit(t.credit, E[t.depense], nPositif(reste), t.groupement ? tauxGroupement : taux);
        reste -= E[t.depense];
    }
}

void Credits::ReportsForestiers() {
    std::int32_t reste = ParFoyer(loi["credits.forets.plafondTravaux"]);
    for (const auto& t : travauxForestiers) {
        S[t.report] = nPositif(E[t.depense] - nPositif(reste));
        reste -= E[t.depense];
    }
}

// Interest on the loan for the main home (CGI art. 200 quaterdecies), the best rate first.
void Credits::InteretsHabitationPrincipale() {
    if (SommeE({"7VX", "7VV", "7VT"}) == 0) return;
    const bool invalidite = E["P"] == 1 || E["Fp"] == 1 || E["Rm"] > 0 || E["Im"] > 0 || E["Gm"] > 0;
    std::int32_t plafond = PlafondParFoyer(
        invalidite ? Parametre("credits.7VX.plafondInvalide") : "credits.7VX.plafond", "credits.7VX.parCharge");
    const auto interets = [&](CaseSortie credit, CaseEntree box, std::int32_t taux) {
        const std::int32_t retenu = std::min(E[box], plafond);
        CreditCompte(credit, E[box], retenu, taux);
        plafond = nPositif(plafond - retenu);
    };
    interets("D_CREDIT_HAB_PRIN_BBC", "7VX", loi["credits.7VX.taux"]);
    interets("D_CREDIT_HAB_PRIN_2010N", "7VV", loi["credits.7VV.taux"]);
    interets("D_CREDIT_HAB_PRIN_2011N", "7VT", loi["credits.7VT.taux"]);
}

}  // namespace

std::int32_t credits::PlafondSyndical(const Cotisant& cotisant, const Saisie& saisie, const Loi& loi) {
    const auto somme = [&](std::span<const CaseEntree> boxes) {
        std::int32_t total = 0;
        for (const CaseEntree box : boxes) total += saisie[box];
        return total;
    };
    const bool fraisReels = std::any_of(cotisant.fraisReels.begin(), cotisant.fraisReels.end(),
                                        [&](CaseEntree box) { return saisie[box] != 0; });
    return nAuTaux(somme(cotisant.pensions) + (fraisReels ? 0 : somme(cotisant.salaires)),
                   loi["credits.cotisationsSyndicales.plafondRevenu"]);
}

void CreditDImpot(Contexte& c) { Credits(c).CreditDImpot(); }

}  // namespace kv
