#include <algorithm>

#include "Calcul/pCalculN/Contexte.h"
#include "Calcul/pCalculN/Etapes.h"

// The ceiling on the deduction of retirement-savings contributions (CGI art. 163 quatervicies): what is left of the
// ceilings of earlier years, and the ceiling that this year's professional income gives. The step is also the normal
// computation of a return: every other one runs inside it.

namespace kv {

namespace {

// What one declarant has of ceilings, contributions and professional income.
struct Declarant {
    CaseEntree plafondN1, plafondA, plafondB, plafondC;  // left over from earlier years
    CaseEntree cotisations, autresCotisations;
    CaseEntree revenus[5];                              // professional income outside the totals
    CaseSortie reste0, resteA, resteB, nouveau, total;  // next year's ceilings
};
constexpr Declarant declarants[2] = {
    {"6PS1",
     "6PSA",
     "6PSB",
     "6PSC",
     "6RS",
     "6QS",
     {"5HM", "5HZ", "5QL", "5TF", "5TI"},
     "NP1_PLAF_PERP_V_0",
     "NP1_PLAF_PERP_V_A",
     "NP1_PLAF_PERP_V_B",
     "NP1_PLAF_PERP_V_C",
     "NP1_PLAF_PERP_V"},
    {"6PT1",
     "6PTA",
     "6PTB",
     "6PTC",
     "6RT",
     "6QT",
     {"5IM", "5IZ", "5RL", "5UF", "5UI"},
     "NP1_PLAF_PERP_C_0",
     "NP1_PLAF_PERP_C_A",
     "NP1_PLAF_PERP_C_B",
     "NP1_PLAF_PERP_C_C",
     "NP1_PLAF_PERP_C"},
};

// The professional income of a declarant, by column.
constexpr CaseSortie revenusProfessionnels[] = {
    "RR_BA_MICRO_REV_IMP",
    "RR_BA_FORF_PVCT",
    "RR_BA_AVEC_CGA",
    "RR_BA_SANS_CGA",
    "RR_BAM_AVEC_CGA",
    "RR_BAM_SANS_CGA",
    "RR_BIC_P_MIC",
    "RR_BIC_P_MIC_PVCT",
    "RR_BIC_P_AVEC_CGA",
    "RR_BIC_P_SANS_CGA",
    "RR_BA_FORFAITBOIS",
    "RR_BNC_P_SPE",
    "RR_BNC_P_SPE_PVCT",
    "RR_BNC_P_AVEC_CGA",
    "RR_BNC_P_SANS_CGA",
    "MOND_AUTO_ENTR_P",
    "RE_FORFAIT",
    "RE_MICRO_BIC_PROF",
    "RE_SPE_BNC_PROF",
    "RE_BA",
    "RE_BIC",
    "RE_BNC",
};

struct Plafonds {
    std::int32_t reste0 = 0, resteA = 0, resteB = 0, nouveau = 0;
};

class EpargneRetraite : Travail {
  public:
    explicit EpargneRetraite(Contexte& c) : Travail(c) {}
    void PlafondPERP();

  private:
    std::array<std::int32_t, 2> Salaires();
    Plafonds PlafondsDe(const Declarant& x, std::size_t colonne, std::int32_t salaires) const;
    std::int32_t Total(const Declarant& x) const {
        return E[x.plafondN1] + E[x.plafondA] + E[x.plafondB] + E[x.plafondC];
    }
    void Mutualise(std::array<Plafonds, 2>& plafonds) const;
};

void EpargneRetraite::PlafondPERP() {
    contexte.RelanceChaineNormale();
    const std::array<std::int32_t, 2> salaires = Salaires();
    std::array<Plafonds, 2> plafonds;
    for (std::size_t d = 0; d < (faits.couple ? 2 : 1); ++d) plafonds[d] = PlafondsDe(declarants[d], d, salaires[d]);
    if (faits.couple && E["6QR"] == 1) Mutualise(plafonds);

    trace.Relance(u"=> on relance les calculs normaux");
    contexte.Lance(finDuCalcul);
    for (std::size_t d = 0; d < 2; ++d) {
        const Declarant& x = declarants[d];
        S[x.reste0] = plafonds[d].reste0;
        S[x.resteA] = plafonds[d].resteA;
        S[x.resteB] = plafonds[d].resteB;
        S[x.nouveau] = plafonds[d].nouveau;
        S[x.total] = S[x.reste0] + S[x.resteA] + S[x.resteB] + S[x.nouveau];
    }
}

// The salaries of each declarant, the exempt ones included: step 4 finds them, and leaves the chain to be run again.
std::array<std::int32_t, 2> EpargneRetraite::Salaires() {
    const std::int32_t exoneres[2] = {E["1AQ"] + E["1AC"], E["1BQ"] + E["1BC"]};
    const bool variante = exoneres[0] + exoneres[1] >= 1;
    if (variante) {
        trace.Relance(u"=> on relance les salaires après avoir ajouté les revenus des cases 1AQ");
        Saisie avec = contexte.Vue();
        avec["1AJ"] += exoneres[0];
        avec["1BJ"] += exoneres[1];
        avec["1AK"] += E["1AE"];
        avec["1BK"] += E["1BE"];
        Contexte(contexte, avec).Lance(Etape::RevenusSalaires);
    }
    std::array<std::int32_t, 2> salaires;
    for (std::size_t d = 0; d < 2; ++d) salaires[d] = C[d]["RN_SAL"] - C[d]["RD_GAINS_2_Ded"];
    if (variante && E["1AC"] + E["1BC"] > 0) {
        trace.Relance(u"=> on relance les salaires après avoir retirée les revenus des cases 1AQ");
        contexte.RetireExceptionnels();
        contexte.RelanceChaineNormale();
    }
    return salaires;
}

Plafonds EpargneRetraite::PlafondsDe(const Declarant& x, std::size_t colonne, std::int32_t salaires) const {
    const std::int32_t c = E[x.plafondC], n1 = E[x.plafondN1], a = E[x.plafondA], b = E[x.plafondB];
    const std::int32_t p = E[x.cotisations];
    // Contributions use up the ceilings in the order C, 1, A, B.
    Plafonds plafonds;
    plafonds.resteB = nPositif(c - p);
    plafonds.reste0 = nPositif(a - nPositif(p - c - n1));
    plafonds.resteA = nPositif(b - nPositif(p - c - a - n1));

    std::int32_t revenu = C[colonne]["RD_GAINS_2_Rev"] + salaires;
    for (const CaseSortie sortie : revenusProfessionnels) revenu += C[colonne][sortie];
    for (const CaseEntree box : x.revenus) revenu += E[box];
    const std::int32_t minimum = EnVigueur("plafondSecuriteSociale"), taux = loi["epargneRetraite.taux"];
    const std::int32_t maximum = nArrondi(dMul(minimum, loi.Nombre("epargneRetraite.plafonds")));
    const std::int32_t part = std::max(nAuTaux(std::min(revenu, maximum), taux), nAuTaux(minimum, taux));
    plafonds.nouveau = nPositif(part - E[x.autresCotisations]);
    return plafonds;
}

// A couple may pool its ceilings: what one paid beyond his own comes off what the other has left.
void EpargneRetraite::Mutualise(std::array<Plafonds, 2>& plafonds) const {
    for (std::size_t d = 0; d < 2; ++d) {
        const Declarant &depasse = declarants[d], &dispose = declarants[1 - d];
        const std::int32_t exces = E[depasse.cotisations] - Total(depasse), p = E[dispose.cotisations];
        const std::int32_t place = Total(dispose) - p;
        if (exces <= 0 || place <= 0) continue;
        const std::int32_t pris = std::min(exces, place);
        const std::int32_t c = E[dispose.plafondC], n1 = E[dispose.plafondN1], a = E[dispose.plafondA];
        Plafonds& reste = plafonds[1 - d];
        reste.resteB = nPositif(nPositif(c - p) - pris);
        reste.reste0 = nPositif(reste.reste0 - nPositif(pris - nPositif(c + n1 - p)));
        reste.resteA = nPositif(reste.resteA - nPositif(pris - nPositif(c + a + n1 - p)));
    }
}

}  // namespace

void PlafondPERP(Contexte& c) { EpargneRetraite(c).PlafondPERP(); }

}  // namespace kv
