#pragma once

#include "Calcul/cCalcul/Cases.h"
#include "Calcul/pCalculN/Memoire.h"

// The business activities under a real regime, person by person: what the steps that treat them apart read.

namespace kv {

/// A box for each person: first declarant, second declarant, dependants.
using BoxParPersonne = CaseEntree[nPersonnes];

/// A profit box, and the box that says which part of it is exceptional for the modernisation credit.
struct Benefice {
    CaseEntree box, exceptionnel;
    constexpr Benefice() = default;
    consteval Benefice(const char* code) : box(code), exceptionnel(CaseEntree::Requise(code, "CI")) {}
};

struct Activite {
    Benefice avecCentre[nPersonnes][2];  ///< profits with an approved centre
    BoxParPersonne deficitAvec;
    Benefice sansCentre[nPersonnes][2];  ///< profits without one
    BoxParPersonne deficitSans;
    CaseSortie resultat, majoration, resultatSansCentre;
    CaseSortie plusValuesCourtTerme;            ///< short-term gains of the former flat regime, farm only
    BoxParPersonne etrangerAvec, etrangerSans;  ///< foreign profits, outside the withholding
    BoxParPersonne mois;                        ///< months of activity in the year
    BoxParPersonne cesse;                       ///< the activity has ceased
    CaseSortie auQuotient;                      ///< the income of the category taxed by the quotient
};

enum : std::size_t { Agricole, Commercial, AutreCommercial, Meuble, Liberal, AutreLiberal, nActivites };

inline constexpr Activite activites[nActivites] = {
    {.avecCentre = {{"5HC"}, {"5IC"}, {"5JC"}},
     .deficitAvec = {"5HF", "5IF", "5JF"},
     .sansCentre = {{"5HI"}, {"5II"}, {"5JI"}},
     .deficitSans = {"5HL", "5IL", "5JL"},
     .resultat = "RR_BA",
     .majoration = "RR_BA_MAJO",
     .resultatSansCentre = "RR_BA_SANS_CGA",
     .plusValuesCourtTerme = "RR_BA_FORF_PVCT",
     .etrangerAvec = {"5AK", "5BK", "5CK"},
     .etrangerSans = {"5AL", "5BL", "5CL"},
     .mois = {"5AD", "5BD", "5ED"},
     .cesse = {"5AF", "5AI", "5AH"},
     .auQuotient = "RQ_REV_QN_BA"},
    {.avecCentre = {{"5KC"}, {"5LC"}, {"5MC"}},
     .deficitAvec = {"5KF", "5LF", "5MF"},
     .sansCentre = {{"5KI"}, {"5LI"}, {"5MI"}},
     .deficitSans = {"5KL", "5LL", "5ML"},
     .resultat = "RR_BIC_P",
     .majoration = "RR_BIC_P_MAJO",
     .resultatSansCentre = "RR_BIC_P_SANS_CGA",
     .plusValuesCourtTerme = {},
     .etrangerAvec = {"5DF", "5EF", "5FF"},
     .etrangerSans = {"5DG", "5EG", "5FG"},
     .mois = {"5DB", "5EB", "5FB"},
     .cesse = {"5BF", "5BI", "5BH"},
     .auQuotient = "RQ_REV_QN_BIC_P"},
    {.avecCentre = {{"5NC"}, {"5OC"}, {"5PC"}},
     .deficitAvec = {"5NF", "5OF", "5PF"},
     .sansCentre = {{"5NI"}, {"5OI"}, {"5PI"}},
     .deficitSans = {"5NL", "5OL", "5PL"},
     .resultat = "RR_BIC_NP",
     .majoration = "RR_BIC_NP_MAJO",
     .resultatSansCentre = "RR_BIC_NP_SANS_CGA",
     .plusValuesCourtTerme = {},
     .etrangerAvec = {"5UR", "5VR", "5WR"},
     .etrangerSans = {"5US", "5VS", "5WS"},
     .mois = {"5UP", "5VP", "5TP"},
     .cesse = {"5AN", "5BN", "5CN"},
     .auQuotient = "RQ_REV_QN_BIC_NP"},
    {.avecCentre = {{"5NA", "5NM"}, {"5OA", "5OM"}, {"5PA", "5PM"}},
     .deficitAvec = {"5NY", "5OY", "5PY"},
     .sansCentre = {{"5NK", "5KM"}, {"5OK", "5LM"}, {"5PK", "5MM"}},
     .deficitSans = {"5NZ", "5OZ", "5PZ"},
     .resultat = "RR_BIC_NP_LM",
     .majoration = "RR_BIC_NP_LM_MAJO",
     .resultatSansCentre = "RR_BIC_NP_LM_SANS_CGA",
     .plusValuesCourtTerme = {},
     .etrangerAvec = {"5EY", "5FY", "5GY"},
     .etrangerSans = {"5EZ", "5FZ", "5GZ"},
     .mois = {"5CD", "5DD", "5FD"},
     .cesse = {"5CF", "5CI", "5CM"},
     .auQuotient = "RQ_REV_QN_BIC_NP"},
    {.avecCentre = {{"5QC"}, {"5RC"}, {"5SC"}},
     .deficitAvec = {"5QE", "5RE", "5SE"},
     .sansCentre = {{"5QI"}, {"5RI"}, {"5SI"}},
     .deficitSans = {"5QK", "5RK", "5SK"},
     .resultat = "RR_BNC_P",
     .majoration = "RR_BNC_P_MAJO",
     .resultatSansCentre = "RR_BNC_P_SANS_CGA",
     .plusValuesCourtTerme = {},
     .etrangerAvec = {"5XJ", "5YJ", "5ZJ"},
     .etrangerSans = {"5XK", "5YK", "5ZK"},
     .mois = {"5XI", "5YI", "5ZI"},
     .cesse = {"5AO", "5BO", "5CQ"},
     .auQuotient = "RQ_REV_QN_BNC_P"},
    {.avecCentre = {{"5JG"}, {"5RF"}, {"5SF"}},
     .deficitAvec = {"5JJ", "5RG", "5SG"},
     .sansCentre = {{"5SN"}, {"5NS"}, {"5OS"}},
     .deficitSans = {"5SP", "5NU", "5OU"},
     .resultat = "RR_BNC_NP",
     .majoration = "RR_BNC_NP_CON_MAJ",
     .resultatSansCentre = "RR_BNC_NP_SANS_AA",
     .plusValuesCourtTerme = {},
     .etrangerAvec = {"5XS", "5YS", "5ZS"},
     .etrangerSans = {"5XX", "5YX", "5ZX"},
     .mois = {"5XR", "5YR", "5ZR"},
     .cesse = {"5AP", "5BP", "5CR"},
     .auQuotient = "RQ_REV_QN_BNC_NP"},
};

/// Every box of the activities, exceptional and foreign parts included.
inline constexpr CasesEntree boitesActivites = [] {
    CasesEntree toutes;
    const auto ajoute = [&](CaseEntree box) {
        if (box) toutes.Ajoute(box);
    };
    for (const Activite& a : activites) {
        for (std::size_t k = 0; k < nPersonnes; ++k) {
            for (const auto* benefices : {&a.avecCentre[k], &a.sansCentre[k]})
                for (const Benefice& b : *benefices) ajoute(b.box), ajoute(b.exceptionnel);
            ajoute(a.deficitAvec[k]), ajoute(a.deficitSans[k]);
            ajoute(a.etrangerAvec[k]), ajoute(a.etrangerSans[k]);
        }
    }
    return toutes;
}();

}  // namespace kv
