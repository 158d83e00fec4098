#include <algorithm>
#include <optional>

#include "Calcul/pCalculN/Calcul_N.h"

// The ceiling on the deduction of retirement-savings contributions (CGI art. 163 quatervicies): what is left of the
// ceilings of earlier years, and the ceiling that this year's professional income gives. The step is also the normal
// computation of a return: every other one runs inside it.

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

}  // namespace

void CCalcul_N::PlafondPERP(const TPeriode& periode) {
    const kv::Etape etape(m_trace, u"27:PlafondPERP");

    RemetSortiesAZero();
    ChaineNormale(periode);

    // Salaries with the exempt ones.
    const std::int32_t exoneres[2] = {E["1AQ"] + E["1AC"], E["1BQ"] + E["1BC"]};
    const bool variante = exoneres[0] + exoneres[1] >= 1;
    std::int32_t salaires[2];
    {
        std::optional<kv::Ajout> avecExoneres;
        if (variante) {
            m_trace.Relance(u"=> on relance les salaires après avoir ajouté les revenus des cases 1AQ");
            avecExoneres.emplace(*m_pData,
                                 std::initializer_list<kv::Ajout::Montant>{
                                     {"1AJ", exoneres[0]}, {"1BJ", exoneres[1]}, {"1AK", E["1AE"]}, {"1BK", E["1BE"]}});
            RevenusSalaires(kv::Passe::Normale);
        }
        for (std::size_t d = 0; d < 2; ++d) salaires[d] = C[d]["RN_SAL"] - C[d]["RD_GAINS_2_Ded"];
    }
    if (variante && E["1AC"] + E["1BC"] > 0) {
        m_trace.Relance(u"=> on relance les salaires après avoir retirée les revenus des cases 1AQ");
        QuotientDansFr(false);
        RemetSortiesAZero();
        ChaineNormale(periode);
    }

    const std::int32_t pass = NouveauxTaux() ? 39732 : 39228;  // annual social-security ceiling
    std::array<Plafonds, 2> plafonds;
    for (std::size_t d = 0; d < (m_bCouple ? 2 : 1); ++d) {
        const Declarant& x = declarants[d];
        const std::int32_t c = E[x.plafondC], n1 = E[x.plafondN1], a = E[x.plafondA], b = E[x.plafondB],
                           p = E[x.cotisations];
        // Contributions use up the ceilings in the order C, 1, A, B.
        plafonds[d].resteB = nPositif(c - p);
        plafonds[d].reste0 = nPositif(a - nPositif(p - c - n1));
        plafonds[d].resteA = nPositif(b - nPositif(p - c - a - n1));

        std::int32_t revenu = C[d]["RD_GAINS_2_Rev"] + salaires[d];
        for (const CaseSortie sortie : revenusProfessionnels) revenu += C[d][sortie];
        for (const CaseEntree box : x.revenus) revenu += E[box];
        const std::int32_t dixPourcent =
            std::max(nPourcent(std::min(revenu, nArrondi(dMul(pass, 8))), 10), nPourcent(pass, 10));
        plafonds[d].nouveau = nPositif(dixPourcent - E[x.autresCotisations]);
    }

    // A couple may pool its ceilings: what one paid beyond his own comes off what the other has left.
    if (m_bCouple && E["6QR"] == 1) {
        const auto total = [&](const Declarant& x) {
            return E[x.plafondN1] + E[x.plafondA] + E[x.plafondB] + E[x.plafondC];
        };
        for (std::size_t d = 0; d < 2; ++d) {
            const Declarant &depasse = declarants[d], &dispose = declarants[1 - d];
            const std::int32_t exces = E[depasse.cotisations] - total(depasse), p = E[dispose.cotisations];
            const std::int32_t place = total(dispose) - p;
            if (exces <= 0 || place <= 0) continue;
            const std::int32_t pris = std::min(exces, place);
            const std::int32_t c = E[dispose.plafondC], n1 = E[dispose.plafondN1], a = E[dispose.plafondA];
            Plafonds& reste = plafonds[1 - d];
            reste.resteB = nPositif(nPositif(c - p) - pris);
            reste.reste0 = nPositif(reste.reste0 - nPositif(pris - nPositif(c + n1 - p)));
            reste.resteA = nPositif(reste.resteA - nPositif(pris - nPositif(c + a + n1 - p)));
        }
    }

    m_trace.Relance(u"=> on relance les calculs normaux");
    ImpotApresReductions(periode, kv::Passe::Normale);
    ImpotApresCorrections(kv::Passe::Normale);
    CreditDImpot();
    ImpotAPaye();

    for (std::size_t d = 0; d < 2; ++d) {
        const Declarant& x = declarants[d];
        S[x.reste0] = plafonds[d].reste0;
        S[x.resteA] = plafonds[d].resteA;
        S[x.resteB] = plafonds[d].resteB;
        S[x.nouveau] = plafonds[d].nouveau;
        S[x.total] = S[x.reste0] + S[x.resteA] + S[x.resteB] + S[x.nouveau];
    }
}
