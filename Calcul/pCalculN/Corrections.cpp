#include <algorithm>

#include "Calcul/pCalculN/Calcul_N.h"

// Taxes at proportional rates and the contribution on high incomes (CGI art. 223 sexies).

// 3 % of the reference income above a first threshold, 4 % above a second one.
std::int32_t CCalcul_N::ContributionHautsRevenus() const {
    const std::int32_t revenu = C1["CONT_HAUT_REV"];
    if (revenu <= 0) return -1;
    const std::int32_t seuil3 = m_bCouple ? 500000 : 250000, seuil4 = m_bCouple ? 1000000 : 500000;
    return nPourcent(nPositif(std::min(revenu, seuil4) - seuil3), 3) + nPourcent(nPositif(revenu - seuil4), 4);
}

void CCalcul_N::HautsSalaires() {
    const kv::Etape etape(m_trace, u"21:HautsSalaires");

    const std::int32_t seuil = m_bCouple ? 500000 : 250000;
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

void CCalcul_N::ImpotApresCorrections(kv::Passe passe) {
    const kv::Etape etape(m_trace, u"22:ImpotApresCorrections");

    S["TOT_IMP_RED"] = nPositif(S["TOT_IMPOT_DOM"] + S["IMPOT_TAUX_MARG"] - S["U_DECOTE"] - S["REDUCTIONS"]);

    // Rates in hundredths of a percent; the income steps left the bases in column 2.
    const auto texteTaux = [&](CaseSortie ligne) { Detail[ligne] = FloatToStr(C3[ligne] / 100.0) + u"%"; };
    struct LigneProportionnelle {
        CaseSortie ligne;
        std::int32_t taux;
    };
    static constexpr LigneProportionnelle proportionnelles[] = {
        {"CO_TNS", 1280}, {"CO_18", 1800}, {"CO_19", 1900}, {"CO_22_5", 2250},
        {"CO_24", 2400},  {"CO_30", 3000}, {"CO_41", 4100}, {"CO_50", 5000},
    };
    for (const LigneProportionnelle& p : proportionnelles) {
        C3[p.ligne] = p.taux;
        S[p.ligne] = nPourcent(C2[p.ligne], p.taux / 100.0);
        texteTaux(p.ligne);
    }
    for (const CaseSortie copie : {CaseSortie("CO_3WR"), CaseSortie("CO_3WS")}) {
        C3[copie] = 100;
        S[copie] = C2[copie];
        texteTaux(copie);
    }
    PlusValuesOutreMer(passe);

    m_pData->BaseEtTaux("CO_INV_AUTEUR", SommeE({"5TC", "5UC", "5VC"}), 1280);
    S["CO_INV_AUTEUR"] = nPourcent(C2["CO_INV_AUTEUR"], 12.80);
    texteTaux("CO_INV_AUTEUR");
    S["CO_REPRISE"] = E["8TF"];
    S["CO_INVEST_CORSE"] = E["8TP"];
    S["CO_AGENTS_ASSUR"] = 0;
    for (const std::int32_t indemnite : {E["5QM"], E["5RM"]})  // CGI art. 151 septies A
        S["CO_AGENTS_ASSUR"] += nPourcent(nPositif(std::min(indemnite, 107000) - 23000), 2.0) +
                                nPourcent(nPositif(std::min(indemnite, 200000) - 107000), 0.6) +
                                nPourcent(nPositif(indemnite - 200000), 2.6);
    S["CO_PENSIONS"] = nPourcent(nPourcent(E["1AT"], 90), 7.50) + nPourcent(nPourcent(E["1BT"], 90), 7.50);
    S["CO_INTERET"] = nPourcent(E["2FA"], 24.00);
    if (Options()) CapitauxAuForfait();
    S["CO_TAXELOYER"] = E["4BH"];

    S["CORRECTIONS"] = SommeS({"CO_TNS_GUY", "CO_TNS_MGR", "CO_TNS", "CO_18", "CO_19", "CO_24", "CO_3WR", "CO_3WS",
                               "CO_30", "CO_41", "CO_22_5", "CO_50", "CO_INV_AUTEUR", "CO_REPRISE", "CO_INVEST_CORSE",
                               "CO_AGENTS_ASSUR", "CO_PENSIONS", "CO_INTERET", "CO_TAXELOYER"});
    if (OptionForfait()) S["CORRECTIONS"] += S["CO_PFU1"] + S["CO_PFU2"];
    C2["CORRECTIONS"] = S["CORRECTIONS"];
    S["TOT_IMP_COR"] = S["TOT_IMP_RED"] + S["CORRECTIONS"];
}

// Long-term business gains of overseas residents: a reduced rate, or what the abatement on the income tax left of its
// room, whichever costs more. The TK pass takes its share of what the pass before it found.
void CCalcul_N::PlusValuesOutreMer(kv::Passe passe) {
    struct Departement {
        CaseSortie ligne;
        std::int32_t plafond, taux;
    };
    static constexpr Departement departements[] = {{"CO_TNS_GUY", 6700, 768}, {"CO_TNS_MGR", 5100, 896}};
    for (const Departement& dom : departements) C3[dom.ligne] = -1;
    if (C2["CO_TNS_GUY"] + C2["CO_TNS_MGR"] <= 0) return;

    auto& memoire = m_travail.passes;
    if (passe == kv::Passe::TK) {
        for (const Departement& dom : departements) {
            if (memoire.baseOutreMer <= 0)
                S[dom.ligne] = 100000;
            else
                S[dom.ligne] =
                    C2[dom.ligne] > 0 ? nProrata(C2[dom.ligne], memoire.impotOutreMer, memoire.baseOutreMer) : 0;
        }
        return;
    }
    const std::int32_t abattements =
        SommeS({"U_DECOTE_DOM_GMR", "U_DECOTE_DOM_GUY", "IMPOT_DU_DOM_GMR", "IMPOT_DU_DOM_GUY"});
    std::int32_t base = 0, plafond = 0, taux = 0;
    for (const Departement& dom : departements)
        if (C2[dom.ligne] > 0) base = C2[dom.ligne], plafond = dom.plafond, taux = dom.taux;
    const std::int32_t plein = nPourcent(base, 12.80);
    const std::int32_t place = plafond - abattements;
    const std::int32_t avantage = plein - nPourcent(base, taux / 100.0);
    for (const Departement& dom : departements) {
        if (C2[dom.ligne] <= 0) continue;
        S[dom.ligne] = plein - std::min(place, avantage);
        C3[dom.ligne] = place < avantage ? nProrata(S[dom.ligne], 10000, C2[dom.ligne]) : taux;
        Detail[dom.ligne] = FloatToStr(dArrondn(C3[dom.ligne] / 100.0, 2)) + u"%";
    }
    memoire.baseOutreMer = base;
    memoire.impotOutreMer = S["CO_TNS_GUY"] + S["CO_TNS_MGR"];
}

// With an option the tax on interest paid in advance is part of it; under the flat tax capital income bears its own
// rates.
void CCalcul_N::CapitauxAuForfait() {
    if (E["BAR"] != 0) S["CO_INTERET"] = 0;
    if (E["PFU"] == 0) return;
    S["CO_INTERET"] = 0;
    const std::int32_t abattement = m_bCouple ? 9200 : 4600;  // life insurance
    const std::int32_t anciens = E["2CH1"] + E["2DH1"], recents = E["2DH2"] + E["2CH2"],
                       auForfait = E["2CH3"] + E["2DH3"];
    S["RF_PFU1"] = recents - std::min(recents, nPositif(abattement - anciens));
    S["RF_PFU2"] = SommeE({"3SJ2", "3VG", "3SG", "3UA", "3SL", "3VE", "3UV", "3SA", "3SZ", "2DH3", "2EE2", "2DC",
                           "2CH3", "2TS2", "2TR", "2TT", "2FA", "2GO"}) -
                   std::min(auForfait, nPositif(abattement - anciens - recents));
    S["CO_PFU1"] = nPourcent(S["RF_PFU1"], 7.50);
    S["CO_PFU2"] = nPourcent(S["RF_PFU2"], 12.80);
}
