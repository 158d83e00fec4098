#include <algorithm>

#include "Calcul/pCalculN/Calcul_N.h"

// Gross income; salaries and pensions (CGI art. 83-3 and 158-5 a), life annuities (CGI art. 158-6).

namespace {

using kv::Passe;

// What one member of the household declares. A member beyond the form's columns has fewer boxes.
struct Membre {
    CaseEntree salaires[4];
    CaseEntree fraisReels;
    CaseEntree plancherMajore;  // long-term unemployed: the raised floor of the flat deduction
    CaseEntree pensions[4];
    CaseEntree gains[2];  // share gains taxed as salaries
};

constexpr Membre membres[kv::nMembres] = {
    {{"1AJ", "1AP", "1AF", "1GB"}, "1AK", "1AI", {"1AS", "1AO", "1AZ", "1AL"}, {"1TT", "3VJ"}},
    {{"1BJ", "1BP", "1BF", "1HB"}, "1BK", "1BI", {"1BS", "1BO", "1BZ", "1BL"}, {"1UT", "3VK"}},
    {{"1CJ", "1CP", "1CF", "1IB"}, "1CK", "1CI", {"1CS", "1CO", "1CZ", "1CL"}, {}},
    {{"1DJ", "1DP", "1DF", "1JB"}, "1DK", "1DI", {"1DS", "1DO", "1DZ", "1DL"}, {}},
    {{"1EJ", "1EP", "1EF", "1KB"}, "1EK", "1EI", {"1ES", "1EO", "1EZ", "1EL"}, {}},
    {{"1FJ", "1FP", "1FF", "1LB"}, "1FK", "1FI", {"1FS", "1FO", "1FZ", "1FL"}, {}},
    {{"1FJA", "1FPA"}, "1FKA", "1FIA", {"1FSA", "1FOA", "1FZA"}, {}},
    {{"1FJB", "1FPB"}, "1FKB", "1FIB", {"1FSB", "1FOB", "1FZB"}, {}},
    {{"1FJC", "1FPC"}, "1FKC", "1FIC", {"1FSC", "1FOC", "1FZC"}, {}},
    {{"1FJD", "1FPD"}, "1FKD", "1FID", {"1FSD", "1FOD", "1FZD"}, {}},
    {{"1FJE", "1FPE"}, "1FKE", "1FIE", {"1FSE", "1FOE", "1FZE"}, {}},
};

// The column of a member: the declarants each their own, the dependants together.
constexpr std::size_t ColonneDe(std::size_t membre) { return std::min<std::size_t>(membre, 2); }

// What the step finds for one member.
struct MembreCalcule {
    std::int32_t salaires = 0;  // gains included
    std::int32_t gains = 0;
    std::int32_t frais = 0;
    std::int32_t deduction = 0;
    std::int32_t deductionDesGains = 0;  // the gains' share of the flat deduction
    std::int32_t fraisDesGains = 0;      // the gains' share of the actual expenses
    std::int32_t pensions = 0;
    std::int32_t abattement = 0;
    bool auPlancher = false;  // the allowance is the minimum one
};
using MembresCalcules = std::array<MembreCalcule, kv::nMembres>;

template <std::size_t N>
std::int32_t Somme(const kv::ZoneEntree& E, const CaseEntree (&boxes)[N]) {
    std::int32_t somme = 0;
    for (const CaseEntree box : boxes)
        if (box) somme += E[box];
    return somme;
}

template <class Champ>
std::int32_t Total(const MembresCalcules& calcules, Champ champ) {
    std::int32_t total = 0;
    for (const MembreCalcule& t : calcules) total += t.*champ;
    return total;
}

struct Seuils {
    std::int32_t plancher, plancherMajore, plafond;
};

// The flat deduction of 10 % against the actual expenses of one member.
void Deduit(MembreCalcule& t, kv::MemoireSalaires& memoire, bool plancherMajore, bool declarant, const Seuils& seuils,
            Passe passe) {
    const std::int32_t plancher = plancherMajore ? seuils.plancherMajore : seuils.plancher;
    if (0 < t.frais && t.frais < plancher && t.frais < t.salaires && t.salaires < plancher) t.frais = t.salaires;
    if (t.salaires > 0) {
        t.deduction = nPourcent(t.salaires, 10);
        nMaximise(&t.deduction, seuils.plafond);
        t.deduction = std::min(std::max(t.deduction, plancher), t.salaires);
        if (passe == Passe::TK) {
            t.deduction = nProrata(memoire.deduction, t.salaires, memoire.salaires);
        } else if (declarant) {
            t.deductionDesGains = nProrata(t.deduction, t.gains, t.salaires);
        }
        if (passe == Passe::Normale) {
            memoire.salaires = t.salaires;
            memoire.deduction = t.deduction;
        }
    }
}

// Keeps the larger of the actual expenses and the flat deduction.
void ChoisitDeduction(MembreCalcule& t, kv::MemoireSalaires& memoire, bool declarant, Passe passe) {
    if (passe == Passe::TK) {
        (memoire.fraisRetenus != 0 ? t.deduction : t.frais) = 0;
    } else {
        if (bIsEntre(t.frais, 0, t.deduction)) t.frais = 0;
        if (passe == Passe::Normale) memoire.fraisRetenus = t.frais;
    }
    if (t.frais != 0) t.deduction = t.deductionDesGains = 0;
    if (declarant && t.gains > 0) t.fraisDesGains = nProrata(t.frais, t.gains - t.deductionDesGains, t.salaires);
}

// The pension allowance of 10 %: a minimum per pensioner, a ceiling per household.
void AbatPensions(MembresCalcules& calcules, std::array<kv::MemoireSalaires, kv::nMembres>& memoire,
                  std::int32_t minimum, std::int32_t plafond, Passe passe) {
    const std::int32_t pensions = Total(calcules, &MembreCalcule::pensions);
    if (pensions <= 0) return;

    std::int32_t pensionsAuPlancher = 0, abattementsAuPlancher = 0;
    for (MembreCalcule& t : calcules) {
        t.abattement = nPourcent(t.pensions, 10);
        if (minimum <= t.abattement || t.pensions <= 0) continue;
        t.abattement = std::min(minimum, t.pensions);
        t.auPlancher = true;
        pensionsAuPlancher += t.pensions;
        abattementsAuPlancher += t.abattement;
    }
    if (Total(calcules, &MembreCalcule::abattement) > plafond) {
        for (MembreCalcule& t : calcules)
            if (t.abattement > 0 && !t.auPlancher)
                t.abattement = nProrata(plafond - abattementsAuPlancher, t.pensions, pensions - pensionsAuPlancher);
        // What the roundings gave beyond the ceiling comes off the last allowance that reached it.
        std::int32_t reste = plafond;
        for (std::size_t i = 0; i < calcules.size(); ++i) {
            if (reste <= 0 && i > 0) {
                calcules[i - 1].abattement += reste;
                break;
            }
            reste -= calcules[i].abattement;
        }
    }
    for (std::size_t i = 0; i < calcules.size(); ++i) {
        MembreCalcule& t = calcules[i];
        if (passe == Passe::TK) t.abattement = nProrata(memoire[i].abattement, t.pensions, memoire[i].pensions);
        if (passe == Passe::Normale) {
            memoire[i].pensions = t.pensions;
            memoire[i].abattement = t.abattement;
        }
    }
}

}  // namespace

void CCalcul_N::RevenusBrut(Passe passe) {
    const kv::Etape etape(m_trace, u"3:RevenusBrut");
    CDataCalcul& data = *m_pData;

    RevenusSalaires(passe);
    data.Ajoute("RNORMAL", "RN_SAL");
    data.Ajoute("RNORMAL", "RN_PEN");
    RentesViageres();
    data.Ajoute("RDIVERS", "RD_RENTES");
    RevenusNonSalaries(passe);
    RevenusExoneres();
    RevenusMobiliers(passe);
    data.Ajoute("RDIVERS", "RD_MOB");
    RevenusFonciers(passe);
    data.Ajoute("RDIVERS", "RD_FON");
    RevenusDivers(passe);
    data.AjouteTout("RDIVERS", {"RD_AUTRE", "RD_GAINS", "RD_GAINS_1TZ", "RD_PV_BAREME"});
    data.Soustrait("RDIVERS", "RD_DEFICIT");
    data.AjouteTout("RREEL", {"RR_BA", "RR_BA_DEF", "RR_BIC_P", "RR_BIC_NP", "RR_BIC_NP_DEF_REP", "RR_BIC_NP_LM",
                              "RR_BIC_NP_LM_DEF_REP", "RR_BNC_P", "RR_BNC_NP", "RR_BNC_NP_DEF_REP"});
    data.AjouteTout("TOT_R_BRUT", {"RNORMAL", "RDIVERS", "RREEL"});

    if (S["RNORMAL"] + S["RREEL"] != 0) S["SEPAR_REV"] = 1;
    if (SommeS({"RD_RENTES", "RD_MOB_MONT", "RD_MOB_MAJO", "RD_MOB_DEMI_BASE", "RD_MOB_FRAIS", "RD_FON", "RD_FON_DEF",
                "RD_AUTRE", "RD_GAINS_2_Rev", "RD_DEFICIT"}) != 0)
        S["SEPAR_REV_DIV"] = 1;
}

void CCalcul_N::RevenusSalaires(Passe passe) {
    const kv::Etape etape(m_trace, u"4:RevenusSalaires");
    CDataCalcul& data = *m_pData;
    auto& memoire = m_travail.salaires;

    MembresCalcules calcules;
    for (std::size_t i = 0; i < kv::nMembres; ++i) {
        calcules[i].gains = Somme(E, membres[i].gains);
        calcules[i].salaires = Somme(E, membres[i].salaires) + calcules[i].gains;
        calcules[i].frais = E[membres[i].fraisReels];
        calcules[i].pensions = Somme(E, membres[i].pensions);
    }

    data.Annule("RN_SAL_DED_10_SEULEMENT");
    if (Total(calcules, &MembreCalcule::salaires) + Total(calcules, &MembreCalcule::frais) > 0) {
        const Seuils seuils{IDX(430), IDX(947), IDX(12305)};
        for (std::size_t i = 0; i < kv::nMembres; ++i) {
            const bool declarant = i < 2;
            Deduit(calcules[i], memoire[i], E[membres[i].plancherMajore] != 0, declarant, seuils, passe);
            C[ColonneDe(i)]["RN_SAL_DED_10_SEULEMENT"] += calcules[i].deduction;
            ChoisitDeduction(calcules[i], memoire[i], declarant, passe);
        }
    }
    AbatPensions(calcules, memoire, IDX(383), IDX(3752), passe);

    for (const CaseSortie ligne : {CaseSortie("RN_SAL_SAIS"), CaseSortie("RN_PEN_DECL"), CaseSortie("RN_SAL_DED_10"),
                                   CaseSortie("RN_PEN_ABAT"), CaseSortie("RQ_GAINS"), CaseSortie("RD_GAINS")})
        data.Annule(ligne);
    for (std::size_t i = 0; i < kv::nMembres; ++i) {
        const MembreCalcule& t = calcules[i];
        auto& colonne = C[ColonneDe(i)];
        colonne["RN_SAL_SAIS"] += t.salaires - t.gains;
        colonne["RN_PEN_DECL"] += t.pensions;
        colonne["RN_SAL_DED_10"] += t.frais - t.fraisDesGains + t.deduction - t.deductionDesGains;
        colonne["RN_PEN_ABAT"] += t.abattement;
    }
    for (const CaseSortie ligne :
         {CaseSortie("RN_SAL_SAIS"), CaseSortie("RN_PEN_DECL"), CaseSortie("RN_SAL_DED_10"), CaseSortie("RN_PEN_ABAT")})
        data.Totalise(ligne);
    data.Copie("RN_SAL", "RN_SAL_SAIS");
    data.Soustrait("RN_SAL", "RN_SAL_DED_10");
    data.Copie("RN_PEN", "RN_PEN_DECL");
    data.Soustrait("RN_PEN", "RN_PEN_ABAT");

    if (calcules[0].gains + calcules[1].gains > 0) {
        for (std::size_t k = 0; k < 2; ++k) {
            const MembreCalcule& t = calcules[k];
            C[k]["RD_GAINS_2_Rev"] = t.gains;
            C[k]["RD_GAINS_2_Ded"] = nProrata(t.deductionDesGains + t.fraisDesGains, t.gains, t.gains);
        }
        data.Totalise("RD_GAINS_2_Rev");
        data.Totalise("RD_GAINS_2_Ded");
        data.Copie("RD_GAINS", "RD_GAINS_2_Rev");
        data.Soustrait("RD_GAINS", "RD_GAINS_2_Ded");
    }
    S["RD_GAINS_1TZ"] = E["1TZ"];

    // Income exempt but counted elsewhere, net of the member's flat deduction.
    struct PartNette {
        CaseEntree box[2];
        CaseSortie sortie;
    };
    static constexpr PartNette partsNettes[] = {
        {{"1AQ", "1BQ"}, "RN_PART_QA_QB"},
        {{"1DY", "1EY"}, "RN_PART_DY_EY"},
        {{"1SM", "1DN"}, "RN_PART_SM_DN"},
    };
    for (const PartNette& part : partsNettes) {
        if (E[part.box[0]] + E[part.box[1]] <= 0) continue;
        for (std::size_t k = 0; k < 2; ++k) {
            const MembreCalcule& t = calcules[k];
            C[k][part.sortie] = nProrata(E[part.box[k]], nPositif(t.salaires - t.deduction), t.salaires);
        }
    }
}

void CCalcul_N::RentesViageres() {
    const kv::Etape etape(m_trace, u"5:RentesViageres");

    // The taxable share falls with the age at the first payment.
    struct Tranche {
        CaseSortie sortie;
        CaseEntree francaise, etrangere;
        std::int32_t taux;
    };
    static constexpr Tranche tranches[] = {
        {"RD_RENTES_M_50", "1AW", "1AR", 70},
        {"RD_RENTES_50_59", "1BW", "1BR", 50},
        {"RD_RENTES_60_69", "1CW", "1CR", 40},
        {"RD_RENTES_P_70", "1DW", "1DR", 30},
    };
    S["RD_RENTES"] = 0;
    for (const Tranche& t : tranches) {
        const std::int32_t base = E[t.francaise] + E[t.etrangere];
        m_pData->BaseEtTaux(t.sortie, base, t.taux);
        S[t.sortie] = nPourcent(base, t.taux);
        Detail[t.sortie] = IntToStr(base) + u" x " + IntToStr(t.taux) + u"%";
        S["RD_RENTES"] += S[t.sortie];
    }
}
