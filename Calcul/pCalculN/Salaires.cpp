#include <algorithm>

#include "Calcul/pCalculN/Contexte.h"
#include "Calcul/pCalculN/Etapes.h"
#include "Calcul/pCalculN/SalairesTable.h"

// Gross income; salaries and pensions (CGI art. 83-3 and 158-5 a), life annuities (CGI art. 158-6).

namespace kv {

using namespace salaires;

namespace {

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
using MembresCalcules = std::array<MembreCalcule, nMembres>;

template <std::size_t N>
std::int32_t Somme(const Entrees& E, const CaseEntree (&boxes)[N]) {
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

// The flat deduction of a part of the salary, within its bounds for this member.
struct DeductionForfaitaire {
    std::int32_t taux, plancher, plafond;
};

// The flat deduction against the actual expenses of one member, between a floor and a ceiling.
void Deduit(MembreCalcule& t, MemoireSalaires& memoire, const DeductionForfaitaire& forfait, Passe passe) {
    const std::int32_t plancher = forfait.plancher;
    if (0 < t.frais && t.frais < plancher && t.frais < t.salaires && t.salaires < plancher) t.frais = t.salaires;
    if (t.salaires <= 0) return;
    t.deduction = nAuTaux(t.salaires, forfait.taux);
    nMaximise(&t.deduction, forfait.plafond);
    t.deduction = std::min(std::max(t.deduction, plancher), t.salaires);
    if (passe == Passe::TK) t.deduction = nProrata(memoire.deduction, t.salaires, memoire.salaires);
    if (passe == Passe::Normale) {
        memoire.salaires = t.salaires;
        memoire.deduction = t.deduction;
    }
}

// Keeps the larger of the actual expenses and the flat deduction.
void ChoisitDeduction(MembreCalcule& t, MemoireSalaires& memoire, bool declarant, Passe passe) {
    if (passe == Passe::TK) {
        (memoire.fraisRetenus != 0 ? t.deduction : t.frais) = 0;
    } else {
        if (bIsEntre(t.frais, 0, t.deduction)) t.frais = 0;
        if (passe == Passe::Normale) memoire.fraisRetenus = t.frais;
    }
    if (t.frais != 0) t.deduction = t.deductionDesGains = 0;
    if (declarant && t.gains > 0) t.fraisDesGains = nProrata(t.frais, t.gains - t.deductionDesGains, t.salaires);
}

// The pension allowance, a part of the pension: a minimum per pensioner, a ceiling per household.
void AbatPensions(MembresCalcules& calcules, std::array<MemoireSalaires, nMembres>& memoire, const Loi& loi,
                  Passe passe) {
    const std::int32_t minimum = loi["pensions.abattement.plancher"], plafond = loi["pensions.abattement.plafond"];
    const std::int32_t pensions = Total(calcules, &MembreCalcule::pensions);
    if (pensions <= 0) return;

    std::int32_t pensionsAuPlancher = 0, abattementsAuPlancher = 0;
    for (MembreCalcule& t : calcules) {
        t.abattement = nAuTaux(t.pensions, loi["pensions.abattement.taux"]);
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

class Salaires : Travail {
  public:
    explicit Salaires(Contexte& c) : Travail(c) {}
    void RevenusBrut();
    void RevenusSalaires();
    void RentesViageres();

  private:
    MembresCalcules Membres() const;
    void DeduitFrais(MembresCalcules& calcules);
    void EcritSalairesEtPensions(const MembresCalcules& calcules);
    void EcritGains(const MembresCalcules& calcules);
    void EcritPartsNettes(const MembresCalcules& calcules);
};

void Salaires::RevenusBrut() {
    Lance(Etape::RevenusSalaires);
    lignes.AjouteTout("RNORMAL", {"RN_SAL", "RN_PEN"});
    Lance(Etape::RentesViageres);
    lignes.Ajoute("RDIVERS", "RD_RENTES");
    Lance(Etape::RevenusNonSalaries);
    Lance(Etape::RevenusExoneres);
    Lance(Etape::RevenusMobiliers);
    lignes.Ajoute("RDIVERS", "RD_MOB");
    Lance(Etape::RevenusFonciers);
    lignes.Ajoute("RDIVERS", "RD_FON");
    Lance(Etape::RevenusDivers);
    lignes.AjouteTout("RDIVERS", {"RD_AUTRE", "RD_GAINS", "RD_GAINS_1TZ", "RD_PV_BAREME"});
    lignes.Soustrait("RDIVERS", "RD_DEFICIT");
    lignes.AjouteTout("RREEL", {"RR_BA", "RR_BA_DEF", "RR_BIC_P", "RR_BIC_NP", "RR_BIC_NP_DEF_REP", "RR_BIC_NP_LM",
                                "RR_BIC_NP_LM_DEF_REP", "RR_BNC_P", "RR_BNC_NP", "RR_BNC_NP_DEF_REP"});
    lignes.AjouteTout("TOT_R_BRUT", {"RNORMAL", "RDIVERS", "RREEL"});

    if (SommeS({"RNORMAL", "RREEL"}) != 0) S["SEPAR_REV"] = 1;
    if (SommeS({"RD_RENTES", "RD_MOB_MONT", "RD_MOB_MAJO", "RD_MOB_DEMI_BASE", "RD_MOB_FRAIS", "RD_FON", "RD_FON_DEF",
                "RD_AUTRE", "RD_GAINS_2_Rev", "RD_DEFICIT"}) != 0)
        S["SEPAR_REV_DIV"] = 1;
}

MembresCalcules Salaires::Membres() const {
    MembresCalcules calcules;
    for (std::size_t i = 0; i < nMembres; ++i) {
        calcules[i].gains = Somme(E, membres[i].gains);
        calcules[i].salaires = Somme(E, membres[i].salaires) + calcules[i].gains;
        calcules[i].frais = E[membres[i].fraisReels];
        calcules[i].pensions = Somme(E, membres[i].pensions);
    }
    return calcules;
}

void Salaires::DeduitFrais(MembresCalcules& calcules) {
    lignes.Annule("RN_SAL_DED_10_SEULEMENT");
    if (Total(calcules, &MembreCalcule::salaires) + Total(calcules, &MembreCalcule::frais) <= 0) return;
    const std::int32_t taux = loi["salaires.deduction.taux"], plafond = loi["salaires.deduction.plafond"];
    const std::int32_t planchers[] = {loi["salaires.deduction.plancher"], loi["salaires.deduction.plancherMajore"]};
    for (std::size_t i = 0; i < nMembres; ++i) {
        MembreCalcule& t = calcules[i];
        const bool declarant = i < 2;
        const std::int32_t plancher = planchers[E[membres[i].plancherMajore] != 0 ? 1 : 0];
        Deduit(t, memoire.salaires[i], {taux, plancher, plafond}, faits.passe);
        if (declarant && t.salaires > 0 && faits.passe != Passe::TK)
            t.deductionDesGains = nProrata(t.deduction, t.gains, t.salaires);
        C[ColonneDe(i)]["RN_SAL_DED_10_SEULEMENT"] += t.deduction;
        ChoisitDeduction(t, memoire.salaires[i], declarant, faits.passe);
    }
}

void Salaires::RevenusSalaires() {
    MembresCalcules calcules = Membres();
    DeduitFrais(calcules);
    AbatPensions(calcules, memoire.salaires, loi, faits.passe);
    EcritSalairesEtPensions(calcules);
    EcritGains(calcules);
    EcritPartsNettes(calcules);
}

void Salaires::EcritSalairesEtPensions(const MembresCalcules& calcules) {
    for (const CaseSortie ligne : {CaseSortie("RN_SAL_SAIS"), CaseSortie("RN_PEN_DECL"), CaseSortie("RN_SAL_DED_10"),
                                   CaseSortie("RN_PEN_ABAT"), CaseSortie("RQ_GAINS"), CaseSortie("RD_GAINS")})
        lignes.Annule(ligne);
    for (std::size_t i = 0; i < nMembres; ++i) {
        const MembreCalcule& t = calcules[i];
        Colonne& colonne = C[ColonneDe(i)];
        colonne["RN_SAL_SAIS"] += t.salaires - t.gains;
        colonne["RN_PEN_DECL"] += t.pensions;
        colonne["RN_SAL_DED_10"] += t.frais - t.fraisDesGains + t.deduction - t.deductionDesGains;
        colonne["RN_PEN_ABAT"] += t.abattement;
    }
    for (const CaseSortie ligne :
         {CaseSortie("RN_SAL_SAIS"), CaseSortie("RN_PEN_DECL"), CaseSortie("RN_SAL_DED_10"), CaseSortie("RN_PEN_ABAT")})
        lignes.Totalise(ligne);
    lignes.Copie("RN_SAL", "RN_SAL_SAIS");
    lignes.Soustrait("RN_SAL", "RN_SAL_DED_10");
    lignes.Copie("RN_PEN", "RN_PEN_DECL");
    lignes.Soustrait("RN_PEN", "RN_PEN_ABAT");
}

// Share gains taxed as salaries, each declarant's less their part of the deduction.
void Salaires::EcritGains(const MembresCalcules& calcules) {
    S["RD_GAINS_1TZ"] = E["1TZ"];
    if (calcules[0].gains + calcules[1].gains <= 0) return;
    for (std::size_t k = 0; k < 2; ++k) {
        const MembreCalcule& t = calcules[k];
        C[k]["RD_GAINS_2_Rev"] = t.gains;
        C[k]["RD_GAINS_2_Ded"] = nProrata(t.deductionDesGains + t.fraisDesGains, t.gains, t.gains);
    }
    lignes.Totalise("RD_GAINS_2_Rev");
    lignes.Totalise("RD_GAINS_2_Ded");
    lignes.Copie("RD_GAINS", "RD_GAINS_2_Rev");
    lignes.Soustrait("RD_GAINS", "RD_GAINS_2_Ded");
}

// Income exempt but counted elsewhere, net of the member's flat deduction.
void Salaires::EcritPartsNettes(const MembresCalcules& calcules) {
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

void Salaires::RentesViageres() {
    // The taxable share falls with the age at the first payment.
    struct Tranche {
        CaseSortie sortie;
        CaseEntree francaise, etrangere;
        Parametre part;
    };
    static constexpr Tranche tranches[] = {
        {"RD_RENTES_M_50", "1AW", "1AR", "rentes.moinsDe50ans"},
        {"RD_RENTES_50_59", "1BW", "1BR", "rentes.de50a59ans"},
        {"RD_RENTES_60_69", "1CW", "1CR", "rentes.de60a69ans"},
        {"RD_RENTES_P_70", "1DW", "1DR", "rentes.plusDe69ans"},
    };
    S["RD_RENTES"] = 0;
    for (const Tranche& t : tranches) {
        const std::int32_t base = E[t.francaise] + E[t.etrangere], taux = loi[t.part];
        lignes.BaseEtTaux(t.sortie, base, nDiv(taux, 100));  // the column shows a whole percent
        S[t.sortie] = nAuTaux(base, taux);
        Detail[t.sortie] = Texte::BaseAuTaux(base, taux);
        S["RD_RENTES"] += S[t.sortie];
    }
}

}  // namespace

void RevenusBrut(Contexte& c) { Salaires(c).RevenusBrut(); }
void RevenusSalaires(Contexte& c) { Salaires(c).RevenusSalaires(); }
void RentesViageres(Contexte& c) { Salaires(c).RentesViageres(); }

}  // namespace kv
