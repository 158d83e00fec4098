#include <algorithm>

#include "Calcul/pCalculN/Contexte.h"
#include "Calcul/pCalculN/Etapes.h"

// Taxes at proportional rates and the contribution on high incomes (CGI art. 223 sexies).

namespace kv {

namespace {

// A base that an income step left in column 2, and its rate in hundredths of a percent.
struct LigneProportionnelle {
    CaseSortie ligne;
    std::int32_t taux;
};
constexpr LigneProportionnelle proportionnelles[] = {
    {"CO_TNS", 1280}, {"CO_18", 1800}, {"CO_19", 1900}, {"CO_22_5", 2250},
    {"CO_24", 2400},  {"CO_30", 3000}, {"CO_41", 4100}, {"CO_50", 5000},
};

// Long-term business gains of overseas residents: a reduced rate, within the room of the abatement.
struct Departement {
    CaseSortie ligne;
    std::int32_t plafond, taux;
};
constexpr Departement departements[] = {{"CO_TNS_GUY", 6700, 768}, {"CO_TNS_MGR", 5100, 896}};
constexpr std::int32_t nTauxPlusValues = 1280;

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

// 3 % of the reference income above a first threshold, 4 % above a second one.
std::int32_t Corrections::ContributionHautsRevenus() const {
    const std::int32_t revenu = C1["CONT_HAUT_REV"];
    if (revenu <= 0) return -1;
    const std::int32_t seuil3 = ParFoyer(250000), seuil4 = ParFoyer(500000);
    return nPourcent(nPositif(std::min(revenu, seuil4) - seuil3), 3) + nPourcent(nPositif(revenu - seuil4), 4);
}

void Corrections::HautsSalaires() {
    const std::int32_t seuil = ParFoyer(250000);
    const std::int32_t revenu = S["REV_REF_C"], n1 = E["CE16"], n2 = E["CE15"];
    S["CONT_HR_3WT3WU"] = E["3WT"];
    C1["CONT_HAUT_REV"] = 0;
    if (revenu <= seuil) return;

    // An exceptional year is smoothed over the two years before it.
    const bool annuel = E["8TD"] != 0 || nArrondi(dDiv(dMul(1.5, n2 + n1), 2)) > revenu || n2 > seuil || n1 > seuil;
    if (annuel) {
        C1["CONT_HAUT_REV"] = revenu;
        S["CONT_HAUT_REV"] = ContributionHautsRevenus();
        return;
    }
    const std::int32_t moyenne = nArrondi(dDiv(n2 + n1, 2));
    const std::int32_t lisse = nArrondi(dDiv(revenu - moyenne, 2)) + moyenne;
    if (lisse <= seuil) return;
    C1["CONT_HAUT_REV"] = lisse;
    S["CONT_HAUT_REV"] = std::min(nArrondi(dMul(2.0, ContributionHautsRevenus())), revenu);
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
        C3[p.ligne] = p.taux;
        S[p.ligne] = nAuTaux(C2[p.ligne], p.taux);
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
        if (C2[dom.ligne] > 0) base = C2[dom.ligne], plafond = dom.plafond, taux = dom.taux;
    const std::int32_t plein = nAuTaux(base, nTauxPlusValues);
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
    lignes.BaseEtTaux("CO_INV_AUTEUR", SommeE({"5TC", "5UC", "5VC"}), nTauxPlusValues);
    S["CO_INV_AUTEUR"] = nAuTaux(C2["CO_INV_AUTEUR"], nTauxPlusValues);
    TexteDuTaux("CO_INV_AUTEUR");
    S["CO_REPRISE"] = E["8TF"];
    S["CO_INVEST_CORSE"] = E["8TP"];
    S["CO_AGENTS_ASSUR"] = 0;
    for (const std::int32_t indemnite : {E["5QM"], E["5RM"]})  // CGI art. 151 septies A
        S["CO_AGENTS_ASSUR"] += nPourcent(nPositif(std::min(indemnite, 107000) - 23000), 2.0) +
                                nPourcent(nPositif(std::min(indemnite, 200000) - 107000), 0.6) +
                                nPourcent(nPositif(indemnite - 200000), 2.6);
    S["CO_PENSIONS"] = nPourcent(nPourcent(E["1AT"], 90), 7.50) + nPourcent(nPourcent(E["1BT"], 90), 7.50);
    S["CO_INTERET"] = nPourcent(E["2FA"], 24.00);
    S["CO_TAXELOYER"] = E["4BH"];
}

// With an option the tax on interest paid in advance is part of it; under the flat tax capital income bears its own
// rates.
void Corrections::CapitauxAuForfait() {
    if (E["BAR"] != 0) S["CO_INTERET"] = 0;
    if (E["PFU"] == 0) return;
    S["CO_INTERET"] = 0;
    const std::int32_t abattement = ParFoyer(4600);  // life insurance
    const std::int32_t anciens = E["2CH1"] + E["2DH1"], recents = E["2DH2"] + E["2CH2"],
                       auForfait = E["2CH3"] + E["2DH3"];
    S["RF_PFU1"] = recents - std::min(recents, nPositif(abattement - anciens));
    S["RF_PFU2"] = SommeE({"3SJ2", "3VG", "3SG", "3UA", "3SL", "3VE", "3UV", "3SA", "3SZ", "2DH3", "2EE2", "2DC",
                           "2CH3", "2TS2", "2TR", "2TT", "2FA", "2GO"}) -
                   std::min(auForfait, nPositif(abattement - anciens - recents));
    S["CO_PFU1"] = nPourcent(S["RF_PFU1"], 7.50);
    S["CO_PFU2"] = nPourcent(S["RF_PFU2"], 12.80);
}

}  // namespace

void HautsSalaires(Contexte& c) { Corrections(c).HautsSalaires(); }
void ImpotApresCorrections(Contexte& c) { Corrections(c).ImpotApresCorrections(); }

}  // namespace kv
