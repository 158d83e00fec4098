#pragma once

#include <array>
#include <span>

#include "Calcul/cCalcul/Saisie.h"
#include "Calcul/pCalculN/Loi.h"

// The tax credits that are lists of boxes.

namespace kv::credits {

/// Credits that an entry box holds as they are.
struct Copie {
    CaseSortie credit;
    CaseEntree box;
};
inline constexpr Copie copies[] = {
    {"D_DIRECT_EPARGNE", "2BG"},        {"D_PRELEV_FORFAIT", "2CK"},           {"D_RECHERCHE_RESTITUTION", "8TB"},
    {"D_COMP_EMPL_RESTITUTION", "8TL"}, {"D_INVEST_CORSE_RESTITUTION", "8TS"}, {"D_CREDIT_HJA", "HJA"},
};
inline constexpr Copie copiesProfessionnelles[] = {
    {"D_CREDIT_FAMILLE", "8UZ"},       {"D_CREDIT_APPRENTIS", "8TZ"},    {"D_CREDIT_AGRI_BIO", "8WA"},
    {"D_CREDIT_PROSPEC", "8WB"},       {"D_CREDIT_PRETS_SS_INT", "8WC"}, {"D_CREDIT_FORM_ENTR", "8WD"},
    {"D_CREDIT_INTERESSEMENT", "8WE"}, {"D_CREDIT_METIER_ART", "8WR"},   {"D_CREDIT_CONGES_AGRI", "8WT"},
    {"D_HOTEL_CAFE_RESTAU", "8WU"},    {"D_CREDIT_AUTO_ENTR", "8UY"},
};

/// Energy-transition expenses, under one ceiling (CGI art. 200 quater).
struct TransitionEnergetique {
    CaseSortie credit;
    CaseEntree depense;
    consteval TransitionEnergetique(const char* code) : credit(CaseSortie::Requise("D_CR_", code)), depense(code) {}
};
inline constexpr TransitionEnergetique transitionEnergetique[] = {
    "7CB", "7AD", "7AF", "7AH", "7AK", "7AL", "7AM", "7AN", "7AQ", "7AR", "7AV",
    "7AX", "7AY", "7AZ", "7BB", "7BC", "7BD", "7BE", "7BF", "7BH", "7BK", "7BL",
};

/// Forest works, under one ceiling that the declared amounts use up (CGI art. 200 quindecies).
enum class Adherent { Non, Oui };
struct TravauxForestiers {
    CaseSortie credit;
    CaseEntree depense;
    bool groupement;  ///< by a member of a producers' organisation: the higher rate
    CaseSortie report;
    consteval TravauxForestiers(const char* code, Adherent a, const char* suite = nullptr)
        : credit(CaseSortie::Requise("D_CREDIT_", code)),
          depense(code),
          groupement(a == Adherent::Oui),
          report(CaseSortie::Requise("NP1_FOREST_TRAV_", suite ? suite : code)) {}
};
inline constexpr TravauxForestiers travauxForestiers[] = {
    {"7VP", Adherent::Oui},
    {"7TK", Adherent::Oui},
    {"7UX", Adherent::Non},
    {"7TJ", Adherent::Non},
    {"7VN", Adherent::Oui},
    {"7TO", Adherent::Oui},
    {"7VM", Adherent::Non},
    {"7TM", Adherent::Non},
    {"7VR", Adherent::Oui},
    {"7TQ", Adherent::Oui},
    {"7VQ", Adherent::Non},
    {"7TP", Adherent::Non},
    {"7UA", Adherent::Oui, "7UA4_7UA"},
    {"7UB", Adherent::Oui, "7UB8_7UB"},
    {"7UP", Adherent::Non, "7UP4_7UP"},
    {"7UT", Adherent::Non, "7UT8_7UT"},
};

/// Childcare outside the home, by child: dependent, and in alternating residence (CGI art. 200 quater B).
using Enfants = std::array<CaseEntree, 4>;
inline constexpr Enfants enfantsACharge = {"7GA", "7GB", "7GC", "7GD"};
inline constexpr Enfants enfantsAlternes = {"7GE", "7GF", "7GG", "7GM"};

/// Union dues of each declarant, of the dependants together, and the income that bounds them (CGI art. 199 quater C).
struct Cotisant {
    CaseEntree cotisation;
    std::span<const CaseEntree> pensions, salaires, fraisReels;
};
inline constexpr CaseEntree pensions1[] = {"1AS", "1AO", "1AZ", "1AL"}, salaires1[] = {"1AJ", "1AP", "1AF"};
inline constexpr CaseEntree pensions2[] = {"1BS", "1BO", "1BZ", "1BL"}, salaires2[] = {"1BJ", "1BP", "1BF"};
inline constexpr CaseEntree pensionsACharge[] = {"1CS", "1CO", "1CZ", "1CL", "1DS", "1DO", "1DZ", "1DL",
                                                 "1ES", "1EO", "1EZ", "1EL", "1FS", "1FO", "1FZ", "1FL"};
inline constexpr CaseEntree salairesACharge[] = {"1CJ",  "1DJ",  "1EJ",  "1FJ",  "1FJA", "1FJB", "1FJC", "1FJD",
                                                 "1FJE", "1CF",  "1DF",  "1EF",  "1FF",  "1CP",  "1DP",  "1EP",
                                                 "1FP",  "1FPA", "1FPB", "1FPC", "1FPD", "1FPE"};
inline constexpr CaseEntree frais1[] = {"1AK"}, frais2[] = {"1BK"};
inline constexpr CaseEntree fraisACharge[] = {"1CK", "1DK", "1EK", "1FK", "1FKA", "1FKB", "1FKC", "1FKD", "1FKE"};
inline constexpr Cotisant cotisants[] = {
    {"7AC", pensions1, salaires1, frais1},
    {"7AE", pensions2, salaires2, frais2},
    {"7AG", pensionsACharge, salairesACharge, fraisACharge},
};
/// What the dues of one of them may be at most, euros: a part of pensions, and of salaries where no actual expenses are
/// deducted from them.
std::int32_t PlafondSyndical(const Cotisant& cotisant, const Saisie& saisie, const Loi& loi);

/// The boxes of every credit that counts in the global cap.
inline constexpr CasesEntree boitesComptees = [] {
    CasesEntree comptees;
    for (const auto& depense : transitionEnergetique) comptees.Ajoute(depense.depense);
    for (const auto& travaux : travauxForestiers) comptees.Ajoute(travaux.depense);
    for (const auto& enfants : {enfantsACharge, enfantsAlternes})
        for (const CaseEntree enfant : enfants) comptees.Ajoute(enfant);
    // Works against technological risks, forests bought and managed, interest on the loan for the main home.
    for (const CaseEntree box : {CaseEntree("7WR"), CaseEntree("7UI"), CaseEntree("7UQ"), CaseEntree("7VX"),
                                 CaseEntree("7VV"), CaseEntree("7VT")})
        comptees.Ajoute(box);
    return comptees;
}();

/// What the total of the credits adds up.
inline constexpr CaseSortie creditsDuTotal[] = {
    "D_SOURCE_ETR",
    "D_IMPOT_ETR",
    "D_CREDIT_1AT_1BT",
    "D_CREDIT_2FA",
    "D_ETR_PV_TK",
    "CONT_HR_CREDIT_IMPOT",
    "D_ACQ_BIENS_CULTURELS",
    "D_PREVENTION",
    "D_MECENAT",
    "D_INVEST_CORSE",
    "D_CREDIT_8TC",
    "D_CREDIT_COMP_EMPLOI",
    "D_AVOIR_FISC",
    "D_DIRECT_EPARGNE",
    "D_PRELEV_FORFAIT",
    "D_INVEST_CORSE_RESTITUTION",
    "D_RECHERCHE_RESTITUTION",
    "D_COMP_EMPL_RESTITUTION",
    "D_HOTEL_CAFE_RESTAU",
    "D_AIDE_PERS_AGEES",
    "D_AIDE_RISQUE_TECHNO",
    "D_CREDIT_HJA",
    "D_CREDIT_FAMILLE",
    "D_CREDIT_APPRENTIS",
    "D_CREDIT_AGRI_BIO",
    "D_CREDIT_PROSPEC",
    "D_RESTI_TAXE_ADD_DROIT_BAIL",
    "D_CREDIT_ASSURANCES",
    "D_PRET_ETUDIANTS_1",
    "D_PRET_ETUDIANTS_2",
    "D_LIB",
    "D_PV_NON_RESIDENT",
    "D_SCR_NON_RESIDENT",
    "D_FRAIS_GARDE_ACHARGE",
    "D_FRAIS_GARDE_ALTERNE",
    "D_CREDIT_FORM_ENTR",
    "D_CREDIT_INTERESSEMENT",
    "D_CREDIT_METIER_ART",
    "D_CREDIT_CONGES_AGRI",
    "D_ENFANTS_CESU",
    "D_CREDIT_HAB_PRIN_BBC",
    "D_PREV_RISQUE_TECH",
    "D_CREDIT_AUTO_ENTR",
    "D_CREDIT_HAB_PRIN_2010N",
    "D_CREDIT_HAB_PRIN_2011N",
    "D_CREDIT_7AC_7AE_7AG",
    "D_CREDIT_7UI",
    "D_CREDIT_7UQ",
    "D_CREDIT_PRETS_SS_INT",
};

}  // namespace kv::credits
