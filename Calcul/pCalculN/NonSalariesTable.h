#pragma once

#include <array>
#include <cstdint>

#include "Calcul/cCalcul/Cases.h"
#include "Calcul/pCalculN/Memoire.h"

// The lines of business income: which boxes each sums, by person.

namespace kv::nonsalaries {

// A box for each person: first declarant, second declarant, dependants.
using BoxParPersonne = CaseEntree[nPersonnes];

// A line of the real regimes: boxes less boxes plus boxes, by person.
struct LigneReelle {
    CaseSortie sortie;
    BoxParPersonne box;
    BoxParPersonne moins = {};
    BoxParPersonne plus = {};
};

inline constexpr LigneReelle lignesMicro[] = {
    // short-term gains and losses
    {"RR_BIC_P_MIC_PVCT", {"5KX", "5LX", "5MX"}},
    {"RR_BIC_NP_MIC_PVCT", {"5NX", "5OX", "5PX"}},
    {"RR_BNC_P_SPE_PVCT", {"5HV", "5IV", "5JV"}},
    {"RR_BNC_NP_SPE_PVCT", {"5KY", "5LY", "5MY"}},
    {"RR_BIC_P_MIC_MVCT", {"5KJ", "5LJ", "5MJ"}},
    {"RR_BIC_NP_MIC_MVCT", {"5IU", "5RZ", "5SZ"}},
    {"RR_BNC_P_SPE_MVCT", {"5KZ", "5LZ", "5MZ"}},
    {"RR_BNC_NP_SPE_MVCT", {"5JU", "5LD", "5MD"}},
    // micro-farms: receipts of the year and results of the two years before
    {"RR_BA_MICRO", {"5XB", "5YB", "5ZB"}},
    {"RR_BA_MICRO_REEL_Nm1", {"5XE", "5YE", "5ZE"}},
    {"RR_BA_MICRO_REEL_Nm2", {"5XF", "5YF", "5ZF"}},
    {"RR_BA_MICRO_FORFAIT2015", {"5XD", "5YD", "5ZD"}},
    {"RR_BA_FORFAITBOIS", {"5HD", "5ID", "5JD"}},
};

// With an approved centre (AVEC) or without one (SANS): profit less deficit.
inline constexpr LigneReelle lignesReelles[] = {
    {"RR_BA_FORF_PVCT", {"5HW", "5IW", "5JW"}},
    {"RR_BA_AVEC_CGA", {"5HC", "5IC", "5JC"}, {"5HF", "5IF", "5JF"}},
    {"RR_BA_SANS_CGA", {"5HI", "5II", "5JI"}, {"5HL", "5IL", "5JL"}},
    {"RR_BA_MICRO_MVCT", {"5XO", "5YO", "5ZO"}},
    {"RR_BAM_AVEC_CGA", {"5XT", "5XU", "5JCM"}},
    {"RR_BAM_SANS_CGA", {"5XV", "5XW", "5JIM"}},
    {"RR_BIC_P_AVEC_CGA", {"5KC", "5LC", "5MC"}, {"5KF", "5LF", "5MF"}},
    {"RR_BIC_P_SANS_CGA", {"5KI", "5LI", "5MI"}, {"5KL", "5LL", "5ML"}},
    {"RR_BIC_NP_AVEC_CGA", {"5NC", "5OC", "5PC"}, {"5NF", "5OF", "5PF"}},
    {"RR_BIC_NP_SANS_CGA", {"5NI", "5OI", "5PI"}, {"5NL", "5OL", "5PL"}},
    {"RR_BIC_NP_LM_AVEC_CGA", {"5NA", "5OA", "5PA"}, {"5NY", "5OY", "5PY"}, {"5NM", "5OM", "5PM"}},
    {"RR_BIC_NP_LM_SANS_CGA", {"5NK", "5OK", "5PK"}, {"5NZ", "5OZ", "5PZ"}, {"5KM", "5LM", "5MM"}},
    {"RR_BNC_P_AVEC_CGA", {"5QC", "5RC", "5SC"}, {"5QE", "5RE", "5SE"}},
    {"RR_BNC_P_SANS_CGA", {"5QI", "5RI", "5SI"}, {"5QK", "5RK", "5SK"}},
    {"RR_BNC_NP_AVEC_AA", {"5JG", "5RF", "5SF"}, {"5JJ", "5RG", "5SG"}},
    {"RR_BNC_NP_SANS_AA", {"5SN", "5NS", "5OS"}, {"5SP", "5NU", "5OU"}},
};

// Long-term gains of the real regimes.
inline constexpr LigneReelle plusValuesReelles[] = {
    {"RF_PLUS_BA_NOR", {"5HE", "5IE", "5JE"}},     {"RF_PLUS_BIC_P_NOR", {"5KE", "5LE", "5ME"}},
    {"RF_PLUS_BIC_NP_NOR", {"5NE", "5OE", "5PE"}}, {"RF_PLUS_BNC_P_NOR", {"5QD", "5RD", "5SD"}},
    {"RF_PLUS_BNC_NP_NOR", {"5SO", "5NT", "5OT"}},
};

// Long-term gains of the micro regimes, with the losses that come off them.
inline constexpr LigneReelle plusValuesMicro[] = {
    {"RF_PLUS_BA_MIC", {"5HX", "5IX", "5JX"}, {"5XN", "5YN", "5ZN"}},
    {"RF_PLUS_BIC_P_MIC", {"5KQ", "5LQ", "5MQ"}, {"5KR", "5LR", "5MR"}},
    {"RF_PLUS_BIC_NP_MIC", {"5NQ", "5OQ", "5PQ"}, {"5NR", "5OR", "5PR"}},
    {"RF_PLUS_BNC_P_MIC", {"5HR", "5IR", "5JR"}, {"5HS", "5IS", "5JS"}},
    {"RF_PLUS_BNC_NP_MIC", {"5KV", "5LV", "5MV"}, {"5KW", "5LW", "5MW"}},
};

// Exempt results.
inline constexpr LigneReelle lignesExonerees[] = {
    {"RE_FORFAIT", {"5XA", "5YA", "5ZA"}},
    {"RE_MICRO_BIC_PROF", {"5KN", "5LN", "5MN"}},
    {"RE_MICRO_BIC_NON_PROF", {"5NN", "5ON", "5PN"}},
    {"RE_SPE_BNC_PROF", {"5HP", "5IP", "5JP"}},
    {"RE_BA", {"5HB", "5IB", "5JB"}, {}, {"5HH", "5IH", "5JH"}},
    {"RE_BIC", {"5KB", "5LB", "5MB"}, {}, {"5KH", "5LH", "5MH"}},
    {"RE_BICNP", {"5NB", "5OB", "5PB"}, {}, {"5NH", "5OH", "5PH"}},
    {"RE_BNC", {"5QB", "5RB", "5SB"}, {}, {"5QH", "5RH", "5SH"}},
};

// The receipts of the micro regimes, by kind.
inline constexpr BoxParPersonne ventesPro = {"5KO", "5LO", "5MO"};
inline constexpr BoxParPersonne servicesPro = {"5KP", "5LP", "5MP"};
inline constexpr BoxParPersonne ventesNonPro = {"5NO", "5OO", "5PO"};
inline constexpr BoxParPersonne servicesNonPro = {"5NP", "5OP", "5PP"};
inline constexpr BoxParPersonne meubleVentes = {"5NG", "5OG", "5PG"};
inline constexpr BoxParPersonne meubleVentesDejaSoumises = {"5NJ", "5OJ", "5PJ"};
inline constexpr BoxParPersonne meubleServices = {"5ND", "5OD", "5PD"};
inline constexpr BoxParPersonne meubleServicesDejaSoumis = {"5NW", "5OW", "5PW"};
inline constexpr BoxParPersonne bncPro = {"5HQ", "5IQ", "5JQ"};
inline constexpr BoxParPersonne bncNonPro = {"5KU", "5LU", "5MU"};
inline constexpr BoxParPersonne debutActivite = {"5XC", "5YC", "5ZC"};

// A category whose deficits come off its own profits only: its result, what is imputed on it, what is carried, CGI art.
// 156 I.
enum class NonPro { Bnc, Bic, Meuble };
struct CategorieDeficit {
    CaseSortie resultat, impute, deficit;
    CaseSortie anterieurs, imputes, annee, perdus, reste;
    std::array<CaseEntree, 10> boxes;  // deficits of earlier years, the oldest first
    NonPro categorie;
    bool deficitParPersonne;
    bool effaceSiNul;  // nothing left to carry: the detail is not shown
};
inline constexpr CategorieDeficit bncNonProfessionnels = {
    .resultat = "RR_BNC_NP",
    .impute = "RR_BNC_NP_DEF_IMP",
    .deficit = "RR_BNC_NP_DEF_REP",
    .anterieurs = "NP1_BNCNP_ANT",
    .imputes = "NP1_BNCNP_IMP",
    .annee = "NP1_BNCNP_ANN",
    .perdus = "NP1_BNCNP_PER",
    .reste = "NP1_BNCNP",
    .boxes = {"5HT", "5IT", "5JT", "5KT", "5LT", "5MT"},
    .categorie = NonPro::Bnc,
    .deficitParPersonne = false,
    .effaceSiNul = true,
};
inline constexpr CategorieDeficit bicNonProfessionnels = {
    .resultat = "RR_BIC_NP",
    .impute = "RR_BIC_NP_DEF_IMP",
    .deficit = "RR_BIC_NP_DEF_REP",
    .anterieurs = "NP1_BICNP_ANT",
    .imputes = "NP1_BICNP_IMP",
    .annee = "NP1_BICNP_ANN",
    .perdus = "NP1_BICNP_PER",
    .reste = "NP1_BICNP",
    .boxes = {"5RN", "5RO", "5RP", "5RQ", "5RR", "5RW"},
    .categorie = NonPro::Bic,
    .deficitParPersonne = true,
    .effaceSiNul = true,
};
inline constexpr CategorieDeficit locationsMeublees = {
    .resultat = "RR_BIC_NP_LM",
    .impute = "RR_BIC_NP_LM_DEF_IMP",
    .deficit = "RR_BIC_NP_LM_DEF_REP",
    .anterieurs = "NP1_BICNP_LM_ANT",
    .imputes = "NP1_BICNP_LM_IMP",
    .annee = "NP1_BICNP_LM_ANN",
    .perdus = "NP1_BICNP_LM_PER",
    .reste = "NP1_BICNP_LM",
    .boxes = {"5GA", "5GB", "5GC", "5GD", "5GE", "5GF", "5GG", "5GH", "5GI", "5GJ"},
    .categorie = NonPro::Meuble,
    .deficitParPersonne = true,
    .effaceSiNul = false,
};

inline constexpr LigneReelle inventeurs = {"RF_INVENTEURS", {"5TC", "5UC", "5VC"}};

/// Exempt non-professional non-commercial results, which share one line.
inline constexpr BoxParPersonne bncNonProExoneres[] = {
    {"5TH", "5UH", "5VH"}, {"5HK", "5JK", "5LK"}, {"5IK", "5KK", "5MK"}};

// ---- Every box of the step, and of the exempt results.

constexpr void AjouteBoites(CasesEntree& boites, const BoxParPersonne& personnes) {
    for (const CaseEntree box : personnes)
        if (box) boites.Ajoute(box);
}
template <std::size_t N>
constexpr void AjouteBoites(CasesEntree& boites, const LigneReelle (&lignes)[N]) {
    for (const LigneReelle& ligne : lignes)
        for (const auto* personnes : {&ligne.box, &ligne.moins, &ligne.plus}) AjouteBoites(boites, *personnes);
}
inline constexpr CasesEntree boites = [] {
    CasesEntree toutes;
    AjouteBoites(toutes, lignesMicro);
    AjouteBoites(toutes, lignesReelles);
    AjouteBoites(toutes, plusValuesReelles);
    AjouteBoites(toutes, plusValuesMicro);
    AjouteBoites(toutes, inventeurs.box);
    for (const auto* recettes :
         {&ventesPro, &servicesPro, &ventesNonPro, &servicesNonPro, &meubleVentes, &meubleVentesDejaSoumises,
          &meubleServices, &meubleServicesDejaSoumis, &bncPro, &bncNonPro})
        AjouteBoites(toutes, *recettes);
    for (const auto* categorie : {&bncNonProfessionnels, &bicNonProfessionnels, &locationsMeublees})
        for (const CaseEntree box : categorie->boxes)
            if (box) toutes.Ajoute(box);
    return toutes;
}();
inline constexpr CasesEntree boitesExonerees = [] {
    CasesEntree toutes;
    AjouteBoites(toutes, lignesExonerees);
    for (const auto& personnes : bncNonProExoneres) AjouteBoites(toutes, personnes);
    return toutes;
}();

}  // namespace kv::nonsalaries
