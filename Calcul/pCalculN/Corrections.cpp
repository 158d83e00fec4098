#include <algorithm>

#include "Calcul/pCalculN/Contexte.h"
#include "Calcul/pCalculN/Etapes.h"

// Taxes at proportional rates and the contribution on high incomes (CGI art. 223 sexies).

namespace kv {

namespace {

// A base that an income step left in column 2, and its rate.
struct LigneProportionnelle {
    CaseSortie ligne;
    Parametre taux;
    consteval LigneProportionnelle(const char* nom)
        : ligne(nom), taux(Parametre::Requis("corrections.", nom, ".taux")) {}
};
constexpr LigneProportionnelle proportionnelles[] = {
    "CO_TNS", "CO_18", "CO_19", "CO_22_5", "CO_24", "CO_30", "CO_41", "CO_50",
};
constexpr Parametre tauxPlusValues = "corrections.CO_TNS.taux";

// Long-term business gains of overseas residents: the rate less the abatement, within the room of the abatement.
struct Departement {
    CaseSortie ligne;
    Parametre plafond, abattement;
};
constexpr Departement departements[] = {
    {"CO_TNS_GUY", "outremer.guyaneMayotte.plafond", "outremer.guyaneMayotte.taux"},
    {"CO_TNS_MGR", "outremer.antillesReunion.plafond", "outremer.antillesReunion.taux"},
};

class Corrections : Travail {
  public:
    explicit Corrections(Contexte& c) : Travail(c) {}
    void HautsSalaires();
    void ImpotApresCorrections();

  private:
    std::int32_t ContributionHautsRevenus() const;
    void TexteDuTaux(CaseSortie ligne) { Detail[ligne] = Texte::Taux(C3[ligne]); }
    void AuxTauxProportionnels();
    void PlusValuesOutreMer();
    void PlusValuesOutreMerTK();
    void ContributionsParticulieres();
    void CapitauxAuForfait();
};

// A rate of the reference income above a first threshold, a higher one above a second.
std::int32_t Corrections::ContributionHautsRevenus() const {
    const std::int32_t revenu = C1["CONT_HAUT_REV"];
    if (revenu <= 0) return -1;
    const std::int32_t seuil1 = ParFoyer(loi["hautsRevenus.tranche1.seuil"]),
                       seuil2 = ParFoyer(loi["hautsRevenus.tranche2.seuil"]);
    return nAuTaux(nPositif(std::min(revenu, seuil2) - seuil1), loi["hautsRevenus.tranche1.taux"]) +
           nAuTaux(nPositif(revenu - seuil2), loi["hautsRevenus.tranche2.taux"]);
}

void Corrections::HautsSalaires() {
    const std::int32_t seuil = ParFoyer(loi["hautsRevenus.tranche1.seuil"]);
    const std::int32_t revenu = S["REV_REF_C"], n1 = E["CE16"], n2 = E["CE15"];
    S["CONT_HR_3WT3WU"] = E["3WT"];
    C1["CONT_HAUT_REV"] = 0;
    if (revenu <= seuil) return;

    // An exceptional year is smoothed over the two years before it.
    const double exceptionnel = loi.Nombre("hautsRevenus.lissage.seuil");
    const bool annuel =
        E["8TD"] != 0 || nArrondi(dDiv(dMul(exceptionnel, n2 + n1), 2)) > revenu || n2 > seuil || n1 > seuil;
    if (annuel) {
        C1["CONT_HAUT_REV"] = revenu;
        S["CONT_HAUT_REV"] = ContributionHautsRevenus();
        return;
    }
    const std::int32_t moyenne = nArrondi(dDiv(n2 + n1, 2));
    const double coefficient = loi.Nombre("hautsRevenus.lissage.coefficient");
    const std::int32_t lisse = nArrondi(dDiv(revenu - moyenne, coefficient)) + moyenne;
    if (lisse <= seuil) return;
    C1["CONT_HAUT_REV"] = lisse;
    S["CONT_HAUT_REV"] = std::min(nArrondi(dMul(coefficient, ContributionHautsRevenus())), revenu);
}

void Corrections::ImpotApresCorrections() {
    S["TOT_IMP_RED"] = nPositif(S["TOT_IMPOT_DOM"] + S["IMPOT_TAUX_MARG"] - S["U_DECOTE"] - S["REDUCTIONS"]);
    AuxTauxProportionnels();
    PlusValuesOutreMer();
    ContributionsParticulieres();
    if (faits.options) CapitauxAuForfait();

    S["CORRECTIONS"] = SommeS({"CO_TNS_GUY", "CO_TNS_MGR", "CO_TNS", "CO_18", "CO_19", "CO_24", "CO_3WR", "CO_3WS",
                               "CO_30", "CO_41", "CO_22_5", "CO_50", "CO_INV_AUTEUR", "CO_REPRISE", "CO_INVEST_CORSE",
                               "CO_AGENTS_ASSUR", "CO_PENSIONS", "CO_INTERET", "CO_TAXELOYER"});
    if (faits.forfait) S["CORRECTIONS"] += S["CO_PFU1"] + S["CO_PFU2"];
    C2["CORRECTIONS"] = S["CORRECTIONS"];
    S["TOT_IMP_COR"] = S["TOT_IMP_RED"] + S["CORRECTIONS"];
}

void Corrections::AuxTauxProportionnels() {
    for (const LigneProportionnelle& p : proportionnelles) {
        const std::int32_t taux = loi[p.taux];
        C3[p.ligne] = taux;
        S[p.ligne] = nAuTaux(C2[p.ligne], taux);
        TexteDuTaux(p.ligne);
    }
    for (const CaseSortie copie : {CaseSortie("CO_3WR"), CaseSortie("CO_3WS")}) {
        C3[copie] = 100;
        S[copie] = C2[copie];
        TexteDuTaux(copie);
    }
}

// A reduced rate, or what the abatement on the income tax left of its room, whichever costs more.
void Corrections::PlusValuesOutreMer() {
    for (const Departement& dom : departements) C3[dom.ligne] = -1;
    if (C2["CO_TNS_GUY"] + C2["CO_TNS_MGR"] <= 0) return;
    if (faits.passe == Passe::TK) return PlusValuesOutreMerTK();

    const std::int32_t abattements =
        SommeS({"U_DECOTE_DOM_GMR", "U_DECOTE_DOM_GUY", "IMPOT_DU_DOM_GMR", "IMPOT_DU_DOM_GUY"});
    std::int32_t base = 0, plafond = 0, taux = 0;
    for (const Departement& dom : departements)
        if (C2[dom.ligne] > 0) {
            base = C2[dom.ligne];
            plafond = loi[dom.plafond];
            taux = nAuTaux(loi[tauxPlusValues], loi.Complement(dom.abattement));
        }
    const std::int32_t plein = nAuTaux(base, loi[tauxPlusValues]);
    const std::int32_t place = plafond - abattements;
    const std::int32_t avantage = plein - nAuTaux(base, taux);
    for (const Departement& dom : departements) {
        if (C2[dom.ligne] <= 0) continue;
        S[dom.ligne] = plein - std::min(place, avantage);
        C3[dom.ligne] = place < avantage ? nProrata(S[dom.ligne], 10000, C2[dom.ligne]) : taux;
        TexteDuTaux(dom.ligne);
    }
    memoire.passes.baseOutreMer = base;
    memoire.passes.impotOutreMer = S["CO_TNS_GUY"] + S["CO_TNS_MGR"];
}

// The TK pass takes its share of what the pass before it found.
void Corrections::PlusValuesOutreMerTK() {
    const MemoirePasses& passes = memoire.passes;
    for (const Departement& dom : departements) {
        if (passes.baseOutreMer <= 0)
            S[dom.ligne] = 100000;
        else
            S[dom.ligne] = C2[dom.ligne] > 0 ? nProrata(C2[dom.ligne], passes.impotOutreMer, passes.baseOutreMer) : 0;
    }
}

void Corrections::ContributionsParticulieres() {
    lignes.BaseEtTaux("CO_INV_AUTEUR", SommeE({"5TC", "5UC", "5VC"}), loi[tauxPlusValues]);
    S["CO_INV_AUTEUR"] = nAuTaux(C2["CO_INV_AUTEUR"], loi[tauxPlusValues]);
    TexteDuTaux("CO_INV_AUTEUR");
    S["CO_REPRISE"] = E["8TF"];
    S["CO_INVEST_CORSE"] = E["8TP"];
    S["CO_AGENTS_ASSUR"] = 0;
    for (const std::int32_t indemnite : {E["5QM"], E["5RM"]}) {
        const std::int32_t seuil1 = loi["agentsAssurance.tranche1.seuil"],
                           seuil2 = loi["agentsAssurance.tranche2.seuil"],
                           seuil3 = loi["agentsAssurance.tranche3.seuil"];
        S["CO_AGENTS_ASSUR"] +=
            nAuTaux(nPositif(std::min(indemnite, seuil2) - seuil1), loi["agentsAssurance.tranche1.taux"]) +
            nAuTaux(nPositif(std::min(indemnite, seuil3) - seuil2), loi["agentsAssurance.tranche2.taux"]) +
            nAuTaux(nPositif(indemnite - seuil3), loi["agentsAssurance.tranche3.taux"]);
    }
    S["CO_PENSIONS"] = ImpotPensionEnCapital(E["1AT"]) + ImpotPensionEnCapital(E["1BT"]);
    S["CO_INTERET"] = nAuTaux(E["2FA"], loi["mobiliers.2FA.taux"]);
    S["CO_TAXELOYER"] = E["4BH"];
}

// With an option the tax on interest paid in advance is part of it; under the flat tax capital income bears its own
// rates.
void Corrections::CapitauxAuForfait() {
    if (E["BAR"] != 0) S["CO_INTERET"] = 0;
    if (E["PFU"] == 0) return;
    S["CO_INTERET"] = 0;
    const std::int32_t abattement = ParFoyer(loi["assuranceVie.abattement"]);
    const std::int32_t anciens = E["2CH1"] + E["2DH1"], recents = E["2DH2"] + E["2CH2"],
                       auForfait = E["2CH3"] + E["2DH3"];
    S["RF_PFU1"] = recents - std::min(recents, nPositif(abattement - anciens));
    S["RF_PFU2"] = SommeE({"3SJ2", "3VG", "3SG", "3UA", "3SL", "3VE", "3UV", "3SA", "3SZ", "2DH3", "2EE2", "2DC",
                           "2CH3", "2TS2", "2TR", "2TT", "2FA", "2GO"}) -
                   std::min(auForfait, nPositif(abattement - anciens - recents));
    S["CO_PFU1"] = nAuTaux(S["RF_PFU1"], loi["pfu.assuranceVie.taux"]);
    S["CO_PFU2"] = nAuTaux(S["RF_PFU2"], loi["pfu.taux"]);
}

}  // namespace

void HautsSalaires(Contexte& c) { Corrections(c).HautsSalaires(); }
void ImpotApresCorrections(Contexte& c) { Corrections(c).ImpotApresCorrections(); }

}  // namespace kv
