#pragma once

#include <span>

#include "interface/LigneLibelle.h"

// The meaning of the output boxes, by the step that writes them. N is the year of the income.

namespace kv::sens {

// ---- What columns hold, beyond the common cases.

inline constexpr Colonnes parDeclarant = {"déclarant 1", "déclarant 2", ""};
inline constexpr Colonnes gainsParDeclarant = {"gains du déclarant 1", "gains du déclarant 2", ""};
inline constexpr Colonnes revenusParPersonne = {"revenus propres du déclarant 1", "revenus propres du déclarant 2",
                                                "revenus propres des personnes à charge"};
inline constexpr Colonnes baseEtTauxOutreMer = {"", "base", "taux (centièmes de %), -1 sans base"};
inline constexpr Colonnes baseEtTauxEntier = {"", "base", "taux (%)"};
inline constexpr Colonnes versementsEtTaux = {"", "versements", "taux (%)"};
inline constexpr Colonnes fractionImposable = {"", "rente déclarée", "fraction imposable (%)"};
inline constexpr Colonnes baseSansTaux = {"", "base", "100 (fixe)"};
inline constexpr Colonnes sansBase = {"", "", "100 (fixe)"};
inline constexpr Colonnes enDeuxiemeColonne = {"", "montant", ""};
inline constexpr Colonnes revenuRetenu = {"revenu retenu", "", ""};
inline constexpr Colonnes revenusSoumis = {"revenus soumis", "revenus soumis", "taux (centièmes de %)"};
inline constexpr Colonnes declareEtRetenu = {"total déclaré", "total retenu", ""};
inline constexpr Colonnes declareEtRetenuNegatifs = {"somme des colonnes 1 des charges, en négatif",
                                                     "somme des colonnes 2, en négatif", ""};
inline constexpr Colonnes totalDesCharges = {"somme des colonnes 1 des charges",
                                             "somme des colonnes 2, avant limite au revenu",
                                             "somme des taux (centièmes de %)"};
inline constexpr Colonnes personnesEtMontant = {"nombre de personnes", "abattement par personne", ""};
inline constexpr Colonnes enfantsEtMontant = {"nombre d'enfants (dixièmes)", "abattement par enfant", ""};
inline constexpr Colonnes enfantsScolarises = {"nombre d'enfants", "montant", "taux (%)"};
inline constexpr Colonnes baremeRetenu = {"parts (centièmes), moins demi-parts à réduction complémentaire (dixièmes)",
                                          "revenu imposé", "taux marginal (centièmes de %)"};
inline constexpr Colonnes revenuEtTauxMarginal = {"", "revenu imposé", "taux marginal (centièmes de %)"};
inline constexpr Colonnes supplementDImpot = {"", "supplément d'impôt avant multiplication", ""};
inline constexpr Colonnes basesParPrelevement = {"base du prélèvement social", "base de la CSG", "base de la CRDS"};
inline constexpr Colonnes tauxParPrelevement = {"prélèvement social (centièmes de %)", "CSG (centièmes de %)",
                                                "CRDS (centièmes de %)"};
inline constexpr Colonnes csgSeule = {"", "CSG", ""};
inline constexpr Colonnes csgDeductible = {"", "CSG déductible", ""};
inline constexpr Colonnes crdsSeule = {"", "", "CRDS"};
inline constexpr Colonnes casaSeule = {"", "", "CASA"};

// clang-format off

// ---- The driver.

inline constexpr LigneSortie sortiesCalcul[] = {
    {"BAR", "Option appliquée : barème progressif", Genre::Coche},
    {"PFU", "Option appliquée : prélèvement forfaitaire unique", Genre::Coche},
    {"TAUX_PAS_IND1", "Taux individualisé du déclarant 1 (dixièmes de %)", Genre::Taux},
    {"TAUX_PAS_IND2", "Taux individualisé du déclarant 2 (dixièmes de %)", Genre::Taux},
    {"TOT_IMP_RED_INTERNE", "Impôt après réductions, conservé en fin de calcul"},
    {"REV_PV_TXPROP_BARPRO", "Gains nets de cession de valeurs mobilières, avant abattements"},
    {"REV_PV_AVEC_EXO", "Plus-values à taux proportionnel, professionnelles et exonérées"},
    {"FORFAIT_PF", "Total des revenus à taux proportionnel, hors gains taxés à 50 %"},
};

// ---- The household.

inline constexpr LigneSortie sortiesNombreParts[] = {
    {"F_NB_PARTS_ALL", "Nombre de parts du foyer (centièmes)", Genre::Nombre},
    {"F_NB_PARTS_ISO", "Parts de base, sans personne à charge (centièmes)", Genre::Nombre},
    {"F_NB_CHARGE", "Nombre de personnes à charge", Genre::Nombre},
    {"F_NB_ENFANTS", "Nombre d'enfants à charge, mineurs, majeurs ou mariés", Genre::Nombre},
    {"F_NB_ENFANTS_ALTERNE", "Nombre d'enfants en résidence alternée", Genre::Nombre},
};

// ---- Gross income.

inline constexpr LigneSortie sortiesRevenusBrut[] = {
    {"RNORMAL", "Traitements, salaires et pensions nets", Genre::Euros, &parPersonne},
    {"RREEL", "Bénéfices des professions non salariées", Genre::Euros, &parPersonne},
    {"RDIVERS", "Rentes, capitaux, foncier, gains et autres revenus", Genre::Euros, &gainsParDeclarant},
    {"TOT_R_BRUT", "Revenu brut global", Genre::Euros, &revenusParPersonne},
    {"SEPAR_REV", "Section des salaires, pensions et bénéfices", Genre::Marque},
    {"SEPAR_REV_DIV", "Section des autres revenus", Genre::Marque},
};

inline constexpr LigneSortie sortiesSalaires[] = {
    {"RN_SAL_SAIS", "Traitements et salaires déclarés"},
    {"RN_SAL_DED_10", "Frais professionnels déduits, forfait de 10 % ou frais réels"},
    {"RN_SAL_DED_10_SEULEMENT", "Déduction forfaitaire de 10 % avant choix des frais réels, en colonnes"},
    {"RN_SAL", "Traitements et salaires nets de frais"},
    {"RN_PEN_DECL", "Pensions et retraites déclarées"},
    {"RN_PEN_ABAT", "Abattement de 10 % sur les pensions et retraites"},
    {"RN_PEN", "Pensions et retraites nettes d'abattement"},
};
inline constexpr LigneSortie sortiesGainsSalaries[] = {
    {"RD_GAINS_2_Rev", "Gains sur titres imposés comme des salaires, montant déclaré"},
    {"RD_GAINS_2_Ded", "Gains sur titres imposés comme des salaires, frais déduits"},
    {"RD_GAINS", "Gains sur titres imposés comme des salaires, montant net"},
};
inline constexpr LigneSortie sortiesAutresGains[] = {
    {"RD_GAINS_1TZ", "Gains d'acquisition d'actions gratuites imposés au barème (1TZ)"},
    {"RQ_GAINS", "Remis à zéro avec les gains imposés comme des salaires"},
};

inline constexpr LigneSortie sortiesRentes[] = {
    {"RD_RENTES_M_50", "Rente viagère imposable, moins de 50 ans"},
    {"RD_RENTES_50_59", "Rente viagère imposable, de 50 à 59 ans"},
    {"RD_RENTES_60_69", "Rente viagère imposable, de 60 à 69 ans"},
    {"RD_RENTES_P_70", "Rente viagère imposable, à partir de 70 ans"},
};
inline constexpr LigneSortie sortiesTotalRentes[] = {
    {"RD_RENTES", "Total imposable des rentes viagères à titre onéreux"},
};

// ---- Business income.

inline constexpr LigneSortie sortiesAgricoles[] = {
    {"RR_BA_MICRO", "Micro-BA, recettes de l'année N"},
    {"RR_BA_MICRO_REEL_Nm1", "Micro-BA, montant de l'année N-1 entrant dans la moyenne"},
    {"RR_BA_MICRO_REEL_Nm2", "Micro-BA, montant de l'année N-2 entrant dans la moyenne"},
    {"RR_BA_MICRO_FORFAIT2015", "Micro-BA, bénéfice forfaitaire de 2015 entrant dans la moyenne"},
    {"RR_BA_MICRO_MOY", "Micro-BA, moyenne des années d'activité"},
    {"RR_BA_MICRO_ABAT", "Micro-BA, abattement"},
    {"RR_BA_MICRO_REV_IMP", "Micro-BA, bénéfice imposable"},
    {"RR_BA_FORF_PVCT", "Micro-BA, plus-values à court terme"},
    {"RR_BA_MICRO_MVCT", "Micro-BA, moins-values à court terme"},
    {"RR_BA_FORFAITBOIS", "Bénéfice forfaitaire des exploitants forestiers"},
    {"RR_BA_AVEC_CGA", "BA, régime réel, avec centre agréé"},
    {"RR_BA_SANS_CGA", "BA, régime réel, sans centre agréé"},
    {"RR_BA_MAJO", "BA, majoration de 25 % sans centre agréé"},
    {"RR_BAM_AVEC_CGA", "BA imposés au taux marginal, avec centre agréé"},
    {"RR_BAM_SANS_CGA", "BA imposés au taux marginal, sans centre agréé"},
    {"RR_BAM_MAJO", "BA imposés au taux marginal, majoration de 25 % sans centre agréé"},
    {"RR_BAM", "BA imposés au taux marginal, total majoré"},
    {"TM_BA", "Base de l'impôt au taux marginal, bénéfices agricoles"},
};
inline constexpr LigneSortie sortiesCommerciaux[] = {
    {"RR_BIC_P_MIC_DECL", "Micro-BIC professionnels, recettes déclarées"},
    {"RR_BIC_P_MIC_ABAT", "Micro-BIC professionnels, abattement"},
    {"RR_BIC_P_MIC", "Micro-BIC professionnels, bénéfice net d'abattement"},
    {"RR_BIC_P_MIC_PVCT", "Micro-BIC professionnels, plus-values à court terme"},
    {"RR_BIC_P_MIC_MVCT", "Micro-BIC professionnels, moins-values à court terme"},
    {"RR_BIC_P_AVEC_CGA", "BIC professionnels, régime réel, avec centre agréé"},
    {"RR_BIC_P_SANS_CGA", "BIC professionnels, régime réel, sans centre agréé"},
    {"RR_BIC_P_MAJO", "BIC professionnels, majoration de 25 % sans centre agréé"},
    {"RR_BIC_P", "BIC professionnels, résultat total"},
    {"RR_BIC_NP_MIC_DECL", "Micro-BIC non professionnels, recettes déclarées"},
    {"RR_BIC_NP_MIC_ABAT", "Micro-BIC non professionnels, abattement"},
    {"RR_BIC_NP_MIC", "Micro-BIC non professionnels, bénéfice net d'abattement"},
    {"RR_BIC_NP_MIC_PVCT", "Micro-BIC non professionnels, plus-values à court terme"},
    {"RR_BIC_NP_MIC_MVCT", "Micro-BIC non professionnels, moins-values à court terme"},
    {"RR_BIC_NP_AVEC_CGA", "BIC non professionnels, régime réel, avec centre agréé"},
    {"RR_BIC_NP_SANS_CGA", "BIC non professionnels, régime réel, sans centre agréé"},
    {"RR_BIC_NP_MAJO", "BIC non professionnels, majoration de 25 % sans centre agréé"},
    {"RR_BIC_NP_DEF_IMP", "BIC non professionnels, déficits antérieurs imputés"},
    {"RR_BIC_NP_DEF_REP", "BIC non professionnels, déficit de l'année à reporter"},
    {"RR_BIC_NP", "BIC non professionnels, résultat après déficits antérieurs"},
    {"RR_BIC_NP_LM_MIC_DECL", "Locations meublées non professionnelles, micro, recettes déclarées"},
    {"RR_BIC_NP_LM_MIC_ABAT", "Locations meublées non professionnelles, micro, abattement"},
    {"RR_BIC_NP_LM_MIC", "Locations meublées non professionnelles, micro, bénéfice net"},
    {"RR_BIC_NP_LM_AVEC_CGA", "Locations meublées non professionnelles, réel, avec centre agréé"},
    {"RR_BIC_NP_LM_SANS_CGA", "Locations meublées non professionnelles, réel, sans centre agréé"},
    {"RR_BIC_NP_LM_MAJO", "Locations meublées non professionnelles, majoration de 25 %"},
    {"RR_BIC_NP_LM_DEF_IMP", "Locations meublées non professionnelles, déficits antérieurs imputés"},
    {"RR_BIC_NP_LM_DEF_REP", "Locations meublées non professionnelles, déficit de l'année à reporter"},
    {"RR_BIC_NP_LM", "Locations meublées non professionnelles, résultat après déficits"},
    {"S_B_DEJA_SOUMIS", "Meublés de tourisme micro déjà soumis aux prélèvements, net d'abattement"},
};
inline constexpr LigneSortie sortiesNonCommerciaux[] = {
    {"RR_BNC_P_SPE_DECL", "Micro-BNC professionnels, recettes déclarées"},
    {"RR_BNC_P_SPE_ABAT", "Micro-BNC professionnels, abattement"},
    {"RR_BNC_P_SPE", "Micro-BNC professionnels, bénéfice net d'abattement"},
    {"RR_BNC_P_SPE_PVCT", "Micro-BNC professionnels, plus-values à court terme"},
    {"RR_BNC_P_SPE_MVCT", "Micro-BNC professionnels, moins-values à court terme"},
    {"RR_BNC_P_AVEC_CGA", "BNC professionnels, déclaration contrôlée, avec centre agréé"},
    {"RR_BNC_P_SANS_CGA", "BNC professionnels, déclaration contrôlée, sans centre agréé"},
    {"RR_BNC_P_MAJO", "BNC professionnels, majoration de 25 % sans centre agréé"},
    {"RR_BNC_P", "BNC professionnels, résultat total"},
    {"RR_BNC_NP_SPE_DECL", "Micro-BNC non professionnels, recettes déclarées"},
    {"RR_BNC_NP_SPE_ABAT", "Micro-BNC non professionnels, abattement"},
    {"RR_BNC_NP_SPE", "Micro-BNC non professionnels, bénéfice net d'abattement"},
    {"RR_BNC_NP_SPE_PVCT", "Micro-BNC non professionnels, plus-values à court terme"},
    {"RR_BNC_NP_SPE_MVCT", "Micro-BNC non professionnels, moins-values à court terme"},
    {"RR_BNC_NP_AVEC_AA", "BNC non professionnels, déclaration contrôlée, avec association agréée"},
    {"RR_BNC_NP_SANS_AA", "BNC non professionnels, déclaration contrôlée, sans association agréée"},
    {"RR_BNC_NP_CON_MAJ", "BNC non professionnels, majoration de 25 % sans association agréée"},
    {"RR_BNC_NP_DEF_IMP", "BNC non professionnels, déficits antérieurs imputés"},
    {"RR_BNC_NP_DEF_REP", "BNC non professionnels, déficit de l'année à reporter", Genre::Euros, &aucune},
    {"RR_BNC_NP", "BNC non professionnels, résultat après déficits antérieurs"},
};
inline constexpr LigneSortie sortiesPlusValuesProfessionnelles[] = {
    {"RF_PLUS_BA_MIC", "Plus-values à long terme, BA, régime micro"},
    {"RF_PLUS_BA_NOR", "Plus-values à long terme, BA, régime réel"},
    {"RF_PLUS_BA", "Plus-values à long terme, BA, total"},
    {"RF_PLUS_BIC_P_MIC", "Plus-values à long terme, BIC professionnels, régime micro"},
    {"RF_PLUS_BIC_P_NOR", "Plus-values à long terme, BIC professionnels, régime réel"},
    {"RF_PLUS_BIC_P", "Plus-values à long terme, BIC professionnels, total"},
    {"RF_PLUS_BIC_NP_MIC", "Plus-values à long terme, BIC non professionnels, régime micro"},
    {"RF_PLUS_BIC_NP_NOR", "Plus-values à long terme, BIC non professionnels, régime réel"},
    {"RF_PLUS_BIC_NP", "Plus-values à long terme, BIC non professionnels, total"},
    {"RF_PLUS_BNC_P_MIC", "Plus-values à long terme, BNC professionnels, régime micro"},
    {"RF_PLUS_BNC_P_NOR", "Plus-values à long terme, BNC professionnels, déclaration contrôlée"},
    {"RF_PLUS_BNC_P", "Plus-values à long terme, BNC professionnels, total"},
    {"RF_PLUS_BNC_NP_MIC", "Plus-values à long terme, BNC non professionnels, régime micro"},
    {"RF_PLUS_BNC_NP_NOR", "Plus-values à long terme, BNC non professionnels, déclaration contrôlée"},
    {"RF_PLUS_BNC_NP", "Plus-values à long terme, BNC non professionnels, total"},
    {"RF_PLUS", "Plus-values professionnelles à long terme, total"},
    {"RF_INVENTEURS", "Produits des inventeurs et auteurs de logiciels à taux proportionnel"},
    {"NP1_MV_LT", "Moins-values à long terme à reporter, régimes micro"},
};
inline constexpr LigneSortie sortiesDeficitsNonProfessionnels[] = {
    {"RR_BAM_AFF", "Remis à zéro après le calcul des bénéfices des non-salariés"},
    {"NP1_BICNP_ANT", "Déficits BIC non professionnels des années antérieures"},
    {"NP1_BICNP_IMP", "Déficits BIC non professionnels imputés"},
    {"NP1_BICNP_ANN", "Déficit BIC non professionnel de l'année"},
    {"NP1_BICNP_PER", "Déficits BIC non professionnels perdus"},
    {"NP1_BICNP", "Déficits BIC non professionnels à reporter"},
    {"NP1_BICNP_LM_ANT", "Déficits de locations meublées des années antérieures"},
    {"NP1_BICNP_LM_IMP", "Déficits de locations meublées imputés"},
    {"NP1_BICNP_LM_ANN", "Déficit de locations meublées de l'année"},
    {"NP1_BICNP_LM_PER", "Déficits de locations meublées perdus"},
    {"NP1_BICNP_LM", "Déficits de locations meublées à reporter"},
    {"NP1_BNCNP_ANT", "Déficits BNC non professionnels des années antérieures"},
    {"NP1_BNCNP_IMP", "Déficits BNC non professionnels imputés"},
    {"NP1_BNCNP_ANN", "Déficit BNC non professionnel de l'année"},
    {"NP1_BNCNP_PER", "Déficits BNC non professionnels perdus"},
    {"NP1_BNCNP", "Déficits BNC non professionnels à reporter"},
};

inline constexpr LigneSortie sortiesExoneres[] = {
    {"RE_FORFAIT", "BA exonérés, régime micro"},
    {"RE_BA", "BA exonérés, régime réel"},
    {"RE_MICRO_BIC_PROF", "BIC professionnels exonérés, régime micro"},
    {"RE_MICRO_BIC_NON_PROF", "BIC non professionnels exonérés, régime micro"},
    {"RE_BIC", "BIC professionnels exonérés, régime réel"},
    {"RE_BICNP", "BIC non professionnels exonérés, régime réel"},
    {"RE_SPE_BNC_PROF", "BNC professionnels exonérés, régime micro"},
    {"RE_BNC", "BNC professionnels exonérés, déclaration contrôlée"},
    {"RE_BNCNP", "BNC non professionnels exonérés, tous régimes"},
    {"REXONERE", "Bénéfices exonérés, total"},
};

// ---- Capital and property income.

inline constexpr LigneSortie sortiesMobiliers[] = {
    {"RD_MOB_MONT", "Revenus de capitaux mobiliers avant abattements et frais"},
    {"RD_MOB_MAJO", "Majoration de 25 % sur certains revenus distribués (2GO)"},
    {"RD_MOB_DEMI_BASE_2DC", "Abattement de 40 % sur les dividendes (2DC)"},
    {"RD_MOB_DEMI_BASE_2FU", "Abattement de 40 % sur les titres non cotés du PEA (2FU)"},
    {"RD_MOB_DEMI_BASE", "Abattement de 40 % sur les revenus distribués, total"},
    {"RD_MOB_ABAT", "Abattement sur les produits d'assurance-vie"},
    {"RD_MOB_FRAIS", "Frais déduits des revenus de capitaux mobiliers"},
    {"RD_MOB_FRAIS_2DC", "Part des frais revenant aux dividendes (2DC)"},
    {"RD_MOB_FRAIS_2TS", "Part des frais revenant aux revenus de la case 2TS"},
    {"RD_MOB_FRAIS_2TR", "Part des frais revenant aux intérêts (2TR)"},
    {"RD_MOB_DEFICIT_NM1", "Déficits mobiliers antérieurs imputés"},
    {"RD_MOB", "Revenus de capitaux mobiliers nets"},
    {"RD_MOB_DEF", "Déficit mobilier de l'année"},
    {"NP1_REV_MOB_ANN", "Déficit mobilier de l'année N à reporter"},
    {"NP1_REV_MOB_Nm1", "Déficit mobilier de l'année N-1 à reporter"},
    {"NP1_REV_MOB_Nm2", "Déficit mobilier de l'année N-2 à reporter"},
    {"NP1_REV_MOB_Nm3", "Déficit mobilier de l'année N-3 à reporter"},
    {"NP1_REV_MOB_Nm4", "Déficit mobilier de l'année N-4 à reporter"},
    {"NP1_REV_MOB_Nm5", "Déficit mobilier de l'année N-5 à reporter"},
    {"NP1_REV_MOB", "Déficits mobiliers à reporter, total"},
    {"D_LIB", "Crédit d'impôt sur l'assurance-vie au prélèvement libératoire"},
};

inline constexpr LigneSortie sortiesFonciers[] = {
    {"RD_FON_BA", "Résultat foncier du régime réel, année sans déficit reportable (4BA)"},
    {"RD_FON_BB", "Déficit imputé sur le revenu foncier, année sans déficit reportable (4BB)"},
    {"RD_FON_BC", "Déficit foncier imputable sur le revenu global (4BC)"},
    {"RD_FON_BD_IMPUT", "Déficits fonciers antérieurs imputés (4BD)"},
    {"RD_FON_BE", "Recettes du micro-foncier, année sans déficit reportable (4BE)"},
    {"RD_FON_BE_ABAT", "Abattement du micro-foncier, année sans déficit reportable"},
    {"RD_FON_DEF", "Déficits fonciers restant à reporter"},
    {"RD_FON", "Revenu foncier net"},
    {"NP1_FON_ANN_BA", "Résultat foncier du régime réel, année déficitaire (4BA)"},
    {"NP1_FON_ANN_BB", "Déficit imputable sur les revenus fonciers, année déficitaire (4BB)"},
    {"NP1_FON_ANN_BE", "Recettes du micro-foncier, année déficitaire (4BE)"},
    {"NP1_FON_ANN_BE_ABAT", "Abattement du micro-foncier, année déficitaire"},
    {"NP1_FON_ANT", "Déficits fonciers des années antérieures"},
    {"NP1_FON_IMP", "Déficits fonciers antérieurs imputés, suivi des reports"},
    {"NP1_FON_ANN", "Déficit foncier de l'année"},
    {"NP1_FON_PER", "Déficits fonciers perdus"},
    {"NP1_FON", "Déficits fonciers à reporter"},
};

inline constexpr LigneSortie sortiesAgricolesApresDeficits[] = {
    {"RR_BA", "BA, résultat total après déficits antérieurs"},
    {"RR_BA_DEF_ANT", "BA, déficits antérieurs imputés"},
    {"RR_BA_DEF", "BA, déficit non imputable sur le revenu global"},
};
inline constexpr LigneSortie sortiesDivers[] = {
    {"NP1_BA_ANT", "Déficits agricoles des années antérieures"},
    {"NP1_BA_IMP", "Déficits agricoles imputés"},
    {"NP1_BA_ANN", "Déficit agricole de l'année"},
    {"NP1_BA_PER", "Déficits agricoles perdus"},
    {"NP1_BA", "Déficits agricoles à reporter"},
    {"RD_AUTRE", "Sommes à ajouter au revenu imposable"},
    {"RD_PV_BAREME", "Plus-values et gains mobiliers imposés au barème"},
    {"RD_DEFICIT", "Déficits globaux antérieurs déduits du revenu brut"},
};

inline constexpr LigneSortie sortiesQuotient[] = {
    {"RQ_REV_QN_BA", "Revenus au quotient : bénéfices agricoles"},
    {"RQ_REV_QN_BIC_P", "Revenus au quotient : BIC professionnels"},
    {"RQ_REV_QN_BIC_NP", "Revenus au quotient : BIC non professionnels et locations meublées"},
    {"RQ_REV_QN_BNC_P", "Revenus au quotient : BNC professionnels"},
    {"RQ_REV_QN_BNC_NP", "Revenus au quotient : BNC non professionnels"},
    {"RQ_REV_QN_AUTRE", "Revenus au quotient : autres revenus"},
    {"RQ_REV_EXCEP", "Revenus au quotient : total net de frais et abattements"},
};

inline constexpr LigneSortie sortiesTauxForfaitaires[] = {
    {"RF_PENSIONS", "Pensions en capital à taux proportionnel, nettes d'abattement", Genre::Euros, &parDeclarant},
    {"RF_2FA", "Produits de placement à revenu fixe imposés sur option (2FA)"},
    {"RF_GAINS_18", "Gains d'options et d'actions gratuites imposés à 18 %"},
    {"RF_GAINS_30", "Gains d'options et d'actions gratuites imposés à 30 %"},
    {"RF_GAINS_40", "Gains d'options et d'actions gratuites imposés à 41 %"},
    {"RF_GAINS_22_5", "Gains de clôture de PEA avant deux ans, à 22,5 %"},
    {"RF_CESS_3VT", "Gains de clôture de PEA entre deux et cinq ans, à 19 %"},
    {"RF_GAINS_BSPCE_19", "Gains de cession de titres issus de BSPCE, à 19 %"},
    {"RF_GAINS_BSPCE_30", "Gains de cession de titres issus de BSPCE, à 30 %"},
    {"RF_PV_24", "Plus-values en report d'imposition, à 24 %"},
    {"RF_PV_19", "Plus-values en report d'imposition, à 19 %"},
    {"RF_PV1", "Gains à taux proportionnel de la case 3WP"},
    {"RF_3PI", "Gains imposés à 50 % (3PI)"},
    {"FORFAIT", "Total des revenus à taux proportionnel, porté en colonne", Genre::Euros, &enDeuxiemeColonne},
    {"SEPAR_QUOT", "Section des revenus à taux proportionnel ou au quotient", Genre::Marque},
};

// ---- Net and taxable income.

inline constexpr LigneSortie sortiesRevenuNet[] = {
    {"QUOTIENT", "Revenus à imposer selon le quotient"},
    {"TOT_R_NET", "Revenu net après charges déductibles"},
    {"TOT_R_NET_G", "Revenu net global, avant abattements"},
    {"CHARGES", "Charges déduites du revenu global", Genre::Euros, &declareEtRetenuNegatifs},
    {"C_REDUC", "Charges déductibles, total", Genre::Euros, &totalDesCharges},
    {"ABAT", "Abattements spéciaux, total"},
    {"A_AGEES", "Abattement pour personnes âgées ou invalides", Genre::Euros, &personnesEtMontant},
    {"A_ENFANTS", "Abattement pour enfants mariés rattachés", Genre::Euros, &enfantsEtMontant},
    {"QUOTIENT_A_DED", "Revenus au quotient à retirer du revenu imposable"},
    {"SEPAR_CHAR", "Section des charges déductibles", Genre::Marque},
    {"SEPAR_ABAT", "Section des abattements", Genre::Marque},
    {"NP1_CHARG_GROSSE_REP_N", "Grosses réparations des nus-propriétaires de N à reporter"},
    {"NP1_CHARG_GROSSE_REP_Nm1", "Grosses réparations des nus-propriétaires de N-1 à reporter"},
    {"NP1_CHARG_GROSSE_REP_Nm2", "Grosses réparations des nus-propriétaires de N-2 à reporter"},
    {"NP1_CHARG_GROSSE_REP_Nm3", "Grosses réparations des nus-propriétaires de N-3 à reporter"},
    {"NP1_CHARG_GROSSE_REP_Nm4", "Grosses réparations des nus-propriétaires de N-4 à reporter"},
    {"NP1_CHARG_GROSSE_REP_Nm5", "Grosses réparations des nus-propriétaires de N-5 à reporter"},
    {"NP1_CHARG_GROSSE_REP_Nm6", "Grosses réparations des nus-propriétaires de N-6 à reporter"},
    {"NP1_CHARG_GROSSE_REP_Nm7", "Grosses réparations des nus-propriétaires de N-7 à reporter"},
    {"NP1_CHARG_GROSSE_REP_Nm8", "Grosses réparations des nus-propriétaires de N-8 à reporter"},
    {"C_TM_BIS", "Charges du non-résident (8TMA), taux minimum de métropole"},
    {"C_TM_TER", "Charges du non-résident (8TMA), taux minimum d'outre-mer"},
};
inline constexpr LigneSortie sortiesCharges[] = {
    {"C_CSG", "CSG déductible déclarée"},
    {"C_CSG_MOB", "CSG déductible sur les revenus de capitaux mobiliers", Genre::Euros, &revenusSoumis},
    {"C_ENFANTS_1", "Pensions alimentaires versées à des enfants majeurs, sans majoration"},
    {"C_ENFANTS_2", "Pensions alimentaires versées à des enfants majeurs, majorées de 25 %"},
    {"C_JUSTICE", "Autres pensions alimentaires versées, majorées de 25 %"},
    {"C_AUTRE", "Autres pensions alimentaires versées, sans majoration"},
    {"C_FRAIS", "Frais d'accueil d'une personne de plus de 75 ans"},
    {"C_DEDUC", "Déductions diverses"},
    {"C_COT_PERP_V", "Cotisations d'épargne retraite, déclarant 1"},
    {"C_COT_PERP_C", "Cotisations d'épargne retraite, déclarant 2"},
    {"C_COT_PERP_E", "Cotisations d'épargne retraite, personnes à charge"},
    {"C_GROSSE_REP", "Grosses réparations des nus-propriétaires"},
};

inline constexpr LigneSortie sortiesImposables[] = {
    {"TOT_R_IMPOS", "Revenu net imposable, hors revenus au quotient"},
};

// ---- The scale.

inline constexpr LigneSortie sortiesBareme[] = {
    {"I_IMP_NORM", "Impôt au barème avec toutes les parts"},
    {"I_IMP_SIMP", "Impôt au barème avec les seules parts de base"},
    {"I_IMP_RETENU", "Impôt au barème retenu après plafonnement", Genre::Euros, &baremeRetenu},
    {"I_BAREME", "Impôt au barème, hors revenus au quotient", Genre::Euros, &revenuEtTauxMarginal},
    {"I2_IMP_NORM", "Impôt au barème avec toutes les parts, bases au quotient comprises"},
    {"I2_IMP_SIMP", "Impôt au barème avec les parts de base, bases au quotient comprises"},
    {"I_BQ_TOUS", "Impôt au barème retenu, bases au quotient comprises", Genre::Euros, &baremeRetenu},
};
inline constexpr LigneSortie sortiesImpotBrut[] = {
    {"I_PLAF_FAM", "Plafond de l'avantage du quotient familial"},
    {"I_NEUT_PLAF_FAM", "Réduction d'impôt complémentaire au plafonnement"},
    {"I_AJUST_PLAF_FAM", "Réduction d'impôt complémentaire des parents veufs"},
    {"I2_PLAF_FAM", "Plafond du quotient familial, bases au quotient comprises"},
    {"I2_NEUT_PLAF_FAM", "Réduction complémentaire, bases au quotient comprises"},
    {"I2_AJUST_PLAF_FAM", "Réduction complémentaire des veufs, bases au quotient comprises"},
    {"I_BAREME_REV", "Revenu au barème avant ajout des bases au quotient"},
    {"I_BASES_QN", "Revenus au quotient divisés par leur coefficient, somme"},
    {"I_BASES", "Bases au quotient ajoutées au revenu du barème"},
    {"I_PART_QN_APP", "Supplément d'impôt dû aux bases au quotient"},
    {"I_PART_QUO_N", "Suppléments d'impôt répartis par coefficient, somme"},
    {"I_QUO_N", "Suppléments d'impôt multipliés par leur coefficient, somme"},
    {"I_QUOT", "Impôt sur les revenus au quotient", Genre::Euros, &supplementDImpot},
    {"I_BAR_QUOT", "Impôt du barème et des revenus au quotient"},
    {"TOT_IMPOT", "Impôt brut"},
    {"DEF_A_REPORT", "Revenu brut global négatif, augmenté de la case 2FA, à reporter"},
    {"SEPAR_IMPOT", "Section de l'impôt au barème", Genre::Marque},
};
inline constexpr LigneSortie sortiesTauxMarginal[] = {
    {"TAUX_MARGINAL_2", "Taux marginal d'imposition des résidents", Genre::Taux},
    {"TAUX_MARGINAL_3", "Taux marginal d'imposition, résidents ou non", Genre::Taux},
};

// ---- Non-residents and foreign income.

inline constexpr LigneSortie sortiesTauxMoyen[] = {
    {"IMPOT_TM_RETENU", "Impôt du non-résident au taux retenu"},
    {"IMPOT_TM_FRANCAIS", "Impôt du non-résident sur les seuls revenus français"},
    {"IMPOT_TM_ETRANGER", "Impôt du non-résident sur les revenus mondiaux (8TM)"},
};
inline constexpr LigneSortie sortiesNonResidents[] = {
    {"IMPOT_TM", "Impôt du non-résident à recouvrer"},
    {"IMPOT_TM_N_RECOUV", "Impôt du non-résident non mis en recouvrement"},
    {"IMPOT_TX_MOYEN", "Impôt du non-résident à recouvrer, jamais négatif"},
};

inline constexpr LigneSortie sortiesEtrangers[] = {
    {"TOT_R_MONDIAL", "Revenu mondial imposable"},
    {"IMPOT_CALC", "Impôt au taux effectif, détail du calcul"},
    {"IMPOT_TX_EFFECTIF", "Impôt au taux effectif sur les revenus français"},
    {"IMPOT_TX_EFFECTIF_2", "Impôt au taux effectif sur les revenus français, copie"},
    {"IMPOT_ETRANGER", "Supplément d'impôt dû aux revenus étrangers au taux effectif"},
    {"IMPOT_ETRANGER_2", "Supplément d'impôt dû aux revenus étrangers au taux effectif, copie"},
    {"IMPOT_AUTO_ENTR", "Supplément d'impôt dû aux revenus d'auto-entrepreneur"},
    {"IMPOT_PROSPEC", "Supplément d'impôt dû aux revenus de prospection commerciale"},
    {"IMPOT_ETR_RMI", "Revenu mondial imposable, pour le crédit d'impôt étranger"},
    {"IMPOT_ETR_TK", "Impôt mondial servant au crédit égal à l'impôt français"},
    {"IMPOT_ETR_REV_TK", "Revenus étrangers à crédit égal à l'impôt français (8TK)"},
    {"IMPOT_ETR_REV_NET_TK", "Revenus étrangers 8TK, base de la part de contribution"},
    {"IMPOT_ETR_REV_NET_TI", "Revenu mondial net au-delà du revenu français"},
    {"IMPOT_ETR_PV_TK", "Impôt proportionnel sur les revenus étrangers 8TK"},
    {"IMPOT_ETR_PV_NET_TK", "Revenus étrangers 8TK à taux proportionnel"},
    {"REV_BRUT_TI_V", "Revenus étrangers bruts au taux effectif, déclarant 1"},
    {"REV_BRUT_TI_C", "Revenus étrangers bruts au taux effectif, déclarant 2"},
    {"REV_BRUT_TI_E", "Revenus étrangers bruts au taux effectif, personnes à charge"},
};
inline constexpr LigneSortie sortiesEtrangersParPersonne[] = {
    {"MOND_AUTO_ENTR_P", "Revenus nets d'auto-entrepreneur comptés dans le revenu mondial"},
    {"MOND_PROSPEC", "Revenus de prospection comptés dans le revenu mondial"},
    {"FP_TI_SAL", "Frais professionnels revenant aux revenus étrangers"},
    {"FP_TI_PENS", "Abattement sur pensions revenant aux revenus étrangers"},
};

// ---- Reductions.

inline constexpr LigneSortie sortiesAvantReductions[] = {
    {"U_DECOTE_DOM_GMR", "Abattement sur l'impôt brut, Antilles et Réunion"},
    {"U_DECOTE_DOM_GUY", "Abattement sur l'impôt brut, Guyane et Mayotte"},
    {"IMPOT_DU_DOM_GMR", "Abattement sur l'impôt au taux marginal, Antilles et Réunion"},
    {"IMPOT_DU_DOM_GUY", "Abattement sur l'impôt au taux marginal, Guyane et Mayotte"},
    {"IMPOT_DU_REVENUS", "Impôt au taux marginal, avant abattement outre-mer"},
    {"IMPOT_DU_TAUX_MARG", "Impôt au taux marginal, après abattement outre-mer"},
    {"IMPOT_TAUX_MARG", "Impôt au taux marginal, ajouté à l'impôt brut"},
    {"TOT_IMPOT_DOM", "Impôt brut après abattement outre-mer"},
    {"TOT_IMPOT_DOM_AFF", "Impôt brut après abattement outre-mer, pour l'affichage"},
    {"U_DECOTE", "Décote"},
    {"U_CLASSES_MOYENNES", "Réduction d'impôt sous condition de revenu"},
    {"REDUCTIONS", "Réductions d'impôt, total"},
    {"NICHE_A2013", "Avantages relevant des règles depuis 2013, plafond ordinaire"},
    {"NICHE_A2013S", "Avantages relevant des règles depuis 2013, plafond majoré"},
    {"NICHE_A2012", "Avantages relevant des règles de 2012"},
    {"NICHE_A2011", "Avantages relevant des règles de 2011"},
    {"NICHE_A2010", "Avantages relevant des règles de 2010"},
    {"NICHE_A2009", "Avantages relevant des règles de 2009"},
    {"SEPAR_REDUC", "Section des réductions d'impôt", Genre::Marque},
};
inline constexpr LigneSortie sortiesReductions[] = {
    {"D_ENFANTS_CESU", "Crédit d'impôt pour l'emploi d'un salarié à domicile"},
    {"U_ETR_REV_TK", "Crédit égal à l'impôt français sur les revenus étrangers 8TK"},
    {"U_ENFANTS_ACHARGE", "Enfants à charge poursuivant des études", Genre::Euros, &enfantsScolarises},
    {"U_ENFANTS_ALTERNE", "Enfants en résidence alternée poursuivant des études", Genre::Euros, &enfantsScolarises},
    {"U_HEBERGEMENT_V", "Dépenses d'accueil en établissement pour dépendance, première personne"},
    {"U_HEBERGEMENT_C", "Dépenses d'accueil en établissement pour dépendance, seconde personne"},
    {"U_RENTE_SURVIE", "Primes de rente survie et d'épargne handicap"},
    {"U_FRAIS_COMPTA", "Frais de comptabilité et d'adhésion à un organisme agréé"},
    {"U_DONS_PARTIS_N", "Dons et cotisations aux partis politiques"},
    {"U_DONS_OEUVRES_N", "Dons aux œuvres de l'année N"},
    {"U_DONS_AUTRES_N", "Dons aux organismes établis dans un autre État européen"},
    {"U_DONS_OEUVRES_Nm1", "Dons aux œuvres reportés de N-1"},
    {"U_DONS_OEUVRES_Nm2", "Dons aux œuvres reportés de N-2"},
    {"U_DONS_OEUVRES_Nm3", "Dons aux œuvres reportés de N-3"},
    {"U_DONS_OEUVRES_Nm4", "Dons aux œuvres reportés de N-4"},
    {"U_DONS_OEUVRES_Nm5", "Dons aux œuvres reportés de N-5"},
    {"U_CAPITAL_PE_N", "Souscriptions au capital de petites entreprises de l'année N"},
    {"U_CAPITAL_NOUV_7CX", "Souscriptions au capital de petites entreprises reportées de N-1"},
    {"U_CAPITAL_NOUV_7CV", "Souscriptions au capital de petites entreprises reportées de N-2"},
    {"U_CAPITAL_NOUV_7CR", "Souscriptions au capital de petites entreprises reportées de N-3"},
    {"U_CAPITAL_NOUV_7CQ", "Souscriptions au capital de petites entreprises reportées de N-4"},
    {"U_CAPITAL_NOUV_NM1", "Souscriptions au capital de PME reportées de N-1, plafond simple"},
    {"U_CAPITAL_NOUV_NM2", "Souscriptions au capital de PME reportées de N-2, plafond simple"},
    {"U_CAPITAL_NOUV_NM3", "Souscriptions au capital de PME reportées de N-3, plafond simple"},
    {"U_CAPITAL_NOUV_NM4", "Souscriptions au capital de PME reportées de N-4, plafond simple"},
    {"U_CAPITAL_NOUV_7FY", "Souscriptions PME, excédent du plafonnement global reporté de N-1"},
    {"U_CAPITAL_NOUV_7EY", "Souscriptions PME, excédent du plafonnement global reporté de N-2"},
    {"U_CAPITAL_NOUV_7DY", "Souscriptions PME, excédent du plafonnement global reporté de N-3"},
    {"U_CAPITAL_NOUV_7CY", "Souscriptions PME, excédent du plafonnement global reporté de N-4"},
    {"U_FOREST_ACQU", "Investissements forestiers, acquisition"},
    {"U_FOREST_ASSUR", "Investissements forestiers, assurance"},
    {"U_FOREST_TRAV_NM1", "Travaux forestiers reportés de 2013, hors sinistre"},
    {"U_FOREST_TRAV_NM1_8ans", "Travaux forestiers reportés de 2013, après sinistre"},
    {"U_FOREST_TRAV_NM2_8ans", "Travaux forestiers reportés de 2012, après sinistre"},
    {"U_FOREST_TRAV_NM3_8ans", "Travaux forestiers reportés de 2011, après sinistre"},
    {"U_FOREST_TRAV_NM4_8ans", "Travaux forestiers reportés de 2010, après sinistre"},
    {"U_FOREST_TRAV_NM5_8ans", "Travaux forestiers reportés de 2009, après sinistre"},
    {"U_PRESERV_PATRIM_NM1", "Protection du patrimoine naturel, report de 2013"},
    {"U_PRESERV_PATRIM_NM2", "Protection du patrimoine naturel, report de 2012"},
    {"U_PRESERV_PATRIM_NM3", "Protection du patrimoine naturel, report de 2011"},
};
inline constexpr LigneSortie sortiesReportsDeReductions[] = {
    {"NP1_PREST_COMP", "Prestation compensatoire, solde à verser l'année suivante"},
    {"NP1_DONS_N", "Dons de l'année N à reporter"},
    {"NP1_DONS_Nm1", "Dons de l'année N-1 à reporter"},
    {"NP1_DONS_Nm2", "Dons de l'année N-2 à reporter"},
    {"NP1_DONS_Nm3", "Dons de l'année N-3 à reporter"},
    {"NP1_DONS_Nm4", "Dons de l'année N-4 à reporter"},
    {"NP1_CAPITAL_PE_7CF", "Souscriptions au capital de petites entreprises de N à reporter"},
    {"NP1_CAPITAL_PE_7CX", "Souscriptions au capital de petites entreprises de N-1 à reporter"},
    {"NP1_CAPITAL_PE_7CV", "Souscriptions au capital de petites entreprises de N-2 à reporter"},
    {"NP1_CAPITAL_PE_7CR", "Souscriptions au capital de petites entreprises de N-3 à reporter"},
    {"NP1_CAPITAL_PE_N", "Souscriptions au capital de petites entreprises à reporter, total"},
    {"NP1_CAPITAL_NOUV_7CC", "Souscriptions au capital de PME de N-1 à reporter, plafond simple"},
    {"NP1_CAPITAL_NOUV_7CN", "Souscriptions au capital de PME de N-2 à reporter, plafond simple"},
    {"NP1_CAPITAL_NOUV_7CM", "Souscriptions au capital de PME de N-3 à reporter, plafond simple"},
    {"NP1_CAPITAL_NOUV_N", "Souscriptions au capital de PME à reporter, plafond simple, total"},
    {"NP1_CAPITAL_PE_NOUV_7R10", "Souscriptions PME, excédent du plafonnement global de N à reporter"},
    {"NP1_CAPITAL_PE_NOUV_7FY", "Souscriptions PME, excédent du plafonnement global de N-1 à reporter"},
    {"NP1_CAPITAL_PE_NOUV_7EY", "Souscriptions PME, excédent du plafonnement global de N-2 à reporter"},
    {"NP1_CAPITAL_PE_NOUV_7DY", "Souscriptions PME, excédent du plafonnement global de N-3 à reporter"},
    {"NP1_CAPITAL_PE_NOUV_7CY", "Souscriptions PME, excédent du plafonnement global de N-4 à reporter"},
    {"NP1_REPORT_7R11", "À reporter : restauration immobilière, plafond sur quatre ans"},
    {"NP1_FOREST_TRAV_7TF", "Travaux forestiers de 2010, après sinistre, à reporter"},
    {"NP1_FOREST_TRAV_7TG", "Travaux forestiers de 2011, après sinistre, à reporter"},
    {"NP1_FOREST_TRAV_7TH", "Travaux forestiers de 2012, après sinistre, à reporter"},
    {"NP1_FOREST_TRAV_7TI", "Travaux forestiers de 2013, après sinistre, à reporter"},
    {"NP1_PRESERV_PATRIM_7KD", "Protection du patrimoine naturel, report de 2012 à reporter encore"},
    {"NP1_PRESERV_PATRIM_7KE", "Protection du patrimoine naturel, report de 2013 à reporter encore"},
};

// ---- Reference income.

inline constexpr LigneSortie sortiesRevenuReference[] = {
    {"REVENU_REF", "Revenu fiscal de référence"},
    {"REV_REF_B", "Revenu fiscal de référence avant prorata, 0 sans prorata"},
    {"REV_REF_C", "Revenu de référence de la contribution sur les hauts revenus"},
    {"REV_REF_D", "Revenu de référence de la réduction sous condition de revenu"},
    {"REV_REF_1AT", "Revenu de référence : pensions en capital, nettes d'abattement"},
    {"REV_REF_EE", "Revenu de référence : produits au prélèvement libératoire (2EE)"},
    {"REV_REF_DH", "Revenu de référence : assurance-vie au prélèvement libératoire (2DH)"},
    {"REV_REF_FA", "Revenu de référence : intérêts imposés sur option (2FA)"},
    {"REV_REF_REV_EXO", "Revenu de référence : salaires exonérés, nets de frais"},
    {"REV_REF_IMPATRIES_EXO", "Revenu de référence : revenus exonérés des impatriés"},
    {"REV_REF_BA_EXO", "Revenu de référence : BA exonérés"},
    {"REV_REF_BIC_EXO", "Revenu de référence : BIC exonérés"},
    {"REV_REF_BNC_EXO", "Revenu de référence : BNC exonérés"},
};
inline constexpr LigneSortie sortiesPartsExonerees[] = {
    {"RN_PART_QA_QB", "Frais déduits des salaires exonérés 1AQ et 1BQ, en colonnes"},
    {"RN_PART_DY_EY", "Frais déduits des salaires des impatriés 1DY et 1EY, en colonnes"},
    {"RN_PART_SM_DN", "Frais déduits des sommes exonérées 1SM et 1DN, en colonnes"},
};

// ---- Taxes at proportional rates and contributions.

inline constexpr LigneSortie sortiesHautsRevenus[] = {
    {"CONT_HAUT_REV", "Contribution exceptionnelle sur les hauts revenus", Genre::Euros, &revenuRetenu},
    {"CONT_HR_3WT3WU", "Contribution sur les hauts revenus déclarée case 3WT"},
};

inline constexpr LigneSortie sortiesCorrections[] = {
    {"TOT_IMP_RED", "Impôt après réductions"},
    {"CORRECTIONS", "Impôts à taux proportionnel, reprises et taxes, total", Genre::Euros, &enDeuxiemeColonne},
    {"TOT_IMP_COR", "Impôt après réductions et corrections, avant crédits"},
    {"CO_3WR", "Montant ajouté à l'impôt, case 3WR", Genre::Euros, &baseSansTaux},
    {"CO_3WS", "Ligne ajoutée à l'impôt, sans base alimentée", Genre::Euros, &sansBase},
    {"CO_AGENTS_ASSUR", "Taxe sur les indemnités de cessation des agents d'assurances"},
    {"CO_INTERET", "Prélèvement sur les produits de placement à revenu fixe (2FA)"},
    {"CO_INVEST_CORSE", "Reprise du crédit d'impôt pour investissement en Corse"},
    {"CO_PENSIONS", "Prélèvement sur les pensions versées en capital"},
    {"CO_REPRISE", "Reprises de réductions ou crédits d'impôt"},
    {"CO_TAXELOYER", "Taxe sur les loyers élevés"},
    {"RF_PFU1", "Assurance-vie au forfait à taux réduit, base nette d'abattement"},
    {"RF_PFU2", "Capitaux et plus-values au forfait à taux normal, base"},
    {"CO_PFU1", "Prélèvement forfaitaire unique à taux réduit, assurance-vie"},
    {"CO_PFU2", "Prélèvement forfaitaire unique à taux normal"},
};
inline constexpr LigneSortie sortiesTauxProportionnels[] = {
    {"CO_18", "Impôt à 18 % : gains d'options et d'actions gratuites"},
    {"CO_19", "Impôt à 19 % : PEA, BSPCE et plus-values en report"},
    {"CO_22_5", "Impôt à 22,5 % : clôture de PEA avant deux ans"},
    {"CO_24", "Impôt à 24 % : plus-values en report"},
    {"CO_30", "Impôt à 30 % : options, actions gratuites et BSPCE"},
    {"CO_41", "Impôt à 41 % : gains d'options et d'actions gratuites"},
    {"CO_50", "Impôt à 50 % : gains de la case 3PI"},
    {"CO_TNS", "Impôt sur les plus-values professionnelles à long terme"},
    {"CO_TNS_MGR", "Impôt sur les plus-values professionnelles, Antilles et Réunion", Genre::Euros, &baseEtTauxOutreMer},
    {"CO_TNS_GUY", "Impôt sur les plus-values professionnelles, Guyane et Mayotte", Genre::Euros, &baseEtTauxOutreMer},
    {"CO_INV_AUTEUR", "Impôt sur les produits des inventeurs et auteurs de logiciels"},
};

// ---- Credits.

inline constexpr LigneSortie sortiesCredits[] = {
    {"CONTRIBUTIONS", "Contribution sur les hauts revenus due"},
    {"CONT_HR_TAUX_EFFECTIF", "Contribution sur les hauts revenus, hors part du revenu étranger"},
    {"CONT_HR_CREDIT_IMPOT", "Crédit d'impôt étranger imputé sur la contribution hauts revenus"},
    {"D_CREDIT", "Crédits d'impôt, total"},
    {"D_CREDIT_TOT", "Crédits seulement imputables, totaux portés en colonnes", Genre::Euros, &declareEtRetenu},
    {"D_CREDIT_1AT_1BT", "Crédit d'impôt étranger sur les pensions en capital"},
    {"D_AVOIR_FISC", "Crédits d'impôt sur valeurs étrangères (2AB)"},
    {"D_SOURCE_ETR", "Retenue à la source imputée (8TAB)"},
    {"D_IMPOT_ETR", "Crédit d'impôt égal à l'impôt étranger"},
    {"D_ETR_PV_TK", "Crédit égal à l'impôt proportionnel sur les revenus étrangers 8TK"},
    {"D_CREDIT_2FA", "Crédit d'impôt étranger sur les intérêts imposés sur option (2FA)"},
    {"D_CREDIT_PFU2", "Crédit d'impôt étranger sur les revenus au forfait"},
    {"D_PREVENTION", "Adhésion à un groupement de prévention agréé"},
    {"D_INVEST_CORSE", "Investissement en Corse, crédit de l'année et reports"},
    {"D_INVEST_CORSE_RESTITUTION", "Investissement en Corse, crédit restituable"},
    {"D_CREDIT_8TC", "Crédit d'impôt recherche non restituable"},
    {"D_RECHERCHE_RESTITUTION", "Crédit d'impôt recherche restituable"},
    {"D_CREDIT_COMP_EMPLOI", "Crédit compétitivité et emploi non restituable"},
    {"D_COMP_EMPL_RESTITUTION", "Crédit compétitivité et emploi restituable"},
    {"D_DIRECT_EPARGNE", "Crédit directive épargne et autres crédits restituables"},
    {"D_PRELEV_FORFAIT", "Prélèvement forfaitaire non libératoire déjà versé"},
    {"D_CREDIT_HJA", "Crédit d'impôt pour investissements outre-mer"},
    {"D_RESTI_TAXE_ADD_DROIT_BAIL", "Restitution de la taxe additionnelle au droit de bail"},
    {"D_CREDIT_7AC_7AE_7AG", "Cotisations syndicales"},
    {"D_CREDIT_FAMILLE", "Crédit d'impôt famille"},
    {"D_CREDIT_APPRENTIS", "Crédit d'impôt apprentissage"},
    {"D_CREDIT_AGRI_BIO", "Crédit d'impôt agriculture biologique"},
    {"D_CREDIT_PROSPEC", "Crédit d'impôt prospection commerciale"},
    {"D_CREDIT_PRETS_SS_INT", "Crédit d'impôt prêts sans intérêt"},
    {"D_CREDIT_FORM_ENTR", "Crédit d'impôt formation des chefs d'entreprise"},
    {"D_CREDIT_INTERESSEMENT", "Crédit d'impôt intéressement"},
    {"D_CREDIT_METIER_ART", "Crédit d'impôt métiers d'art"},
    {"D_CREDIT_CONGES_AGRI", "Crédit d'impôt remplacement pour congé des exploitants agricoles"},
    {"D_HOTEL_CAFE_RESTAU", "Crédit d'impôt maîtres-restaurateurs"},
    {"D_CREDIT_AUTO_ENTR", "Versements d'impôt libératoires de l'auto-entrepreneur à restituer"},
    {"NP1_FOREST_TRAV_7VP", "Travaux forestiers de 2014 à reporter, avec organisation, hors sinistre"},
    {"NP1_FOREST_TRAV_7TK", "Travaux forestiers de 2014 à reporter, avec organisation, après sinistre"},
    {"NP1_FOREST_TRAV_7UX", "Travaux forestiers de 2014 à reporter, sans organisation, hors sinistre"},
    {"NP1_FOREST_TRAV_7TJ", "Travaux forestiers de 2014 à reporter, sans organisation, après sinistre"},
    {"NP1_FOREST_TRAV_7VN", "Travaux forestiers de 2015 à reporter, avec organisation, hors sinistre"},
    {"NP1_FOREST_TRAV_7TO", "Travaux forestiers de 2015 à reporter, avec organisation, après sinistre"},
    {"NP1_FOREST_TRAV_7VM", "Travaux forestiers de 2015 à reporter, sans organisation, hors sinistre"},
    {"NP1_FOREST_TRAV_7TM", "Travaux forestiers de 2015 à reporter, sans organisation, après sinistre"},
    {"NP1_FOREST_TRAV_7VR", "Travaux forestiers de 2016 à reporter, avec organisation, hors sinistre"},
    {"NP1_FOREST_TRAV_7TQ", "Travaux forestiers de 2016 à reporter, avec organisation, après sinistre"},
    {"NP1_FOREST_TRAV_7VQ", "Travaux forestiers de 2016 à reporter, sans organisation, hors sinistre"},
    {"NP1_FOREST_TRAV_7TP", "Travaux forestiers de 2016 à reporter, sans organisation, après sinistre"},
    {"NP1_FOREST_TRAV_7UA4_7UA", "Travaux forestiers de 2017 à reporter, avec organisation, hors sinistre"},
    {"NP1_FOREST_TRAV_7UB8_7UB", "Travaux forestiers de 2017 à reporter, avec organisation, après sinistre"},
    {"NP1_FOREST_TRAV_7UP4_7UP", "Travaux forestiers de 2017 à reporter, sans organisation, hors sinistre"},
    {"NP1_FOREST_TRAV_7UT8_7UT", "Travaux forestiers de 2017 à reporter, sans organisation, après sinistre"},
    {"SEPAR_MONT", "Section des corrections et des crédits d'impôt", Genre::Marque},
};
inline constexpr LigneSortie sortiesCreditsAuTaux[] = {
    {"D_ACQ_BIENS_CULTURELS", "Acquisition de biens culturels par les entreprises"},
    {"D_MECENAT", "Mécénat d'entreprise"},
    {"D_PV_NON_RESIDENT", "Prélèvement sur les plus-values des non-résidents (3VE)"},
    {"D_SCR_NON_RESIDENT", "Retenue sur les distributions de SCR aux non-résidents (3UV)"},
    {"D_AIDE_PERS_AGEES", "Équipements du logement pour personnes âgées ou handicapées"},
    {"D_AIDE_RISQUE_TECHNO", "Travaux de prévention des risques technologiques, habitation principale"},
    {"D_PREV_RISQUE_TECH", "Travaux de prévention des risques technologiques, logement loué"},
    {"D_FRAIS_GARDE_ACHARGE", "Frais de garde hors du domicile, enfants à charge"},
    {"D_FRAIS_GARDE_ALTERNE", "Frais de garde hors du domicile, enfants en résidence alternée"},
    {"D_PRET_ETUDIANTS_1", "Intérêts des prêts étudiants, année N"},
    {"D_PRET_ETUDIANTS_2", "Intérêts des prêts étudiants, années antérieures"},
    {"D_CREDIT_HAB_PRIN_BBC", "Intérêts d'emprunt de l'habitation principale, logement neuf BBC"},
    {"D_CREDIT_HAB_PRIN_2010N", "Intérêts d'emprunt de l'habitation principale, neuf non BBC de 2010"},
    {"D_CREDIT_HAB_PRIN_2011N", "Intérêts d'emprunt de l'habitation principale, neuf non BBC de 2011"},
    {"D_CREDIT_7UI", "Contrat de gestion forestière, avec organisation de producteurs"},
    {"D_CREDIT_7UQ", "Contrat de gestion forestière, sans organisation de producteurs"},
    {"D_CREDIT_7VP", "Travaux forestiers reportés de 2014, avec organisation, hors sinistre"},
    {"D_CREDIT_7TK", "Travaux forestiers reportés de 2014, avec organisation, après sinistre"},
    {"D_CREDIT_7UX", "Travaux forestiers reportés de 2014, sans organisation, hors sinistre"},
    {"D_CREDIT_7TJ", "Travaux forestiers reportés de 2014, sans organisation, après sinistre"},
    {"D_CREDIT_7VN", "Travaux forestiers reportés de 2015, avec organisation, hors sinistre"},
    {"D_CREDIT_7TO", "Travaux forestiers reportés de 2015, avec organisation, après sinistre"},
    {"D_CREDIT_7VM", "Travaux forestiers reportés de 2015, sans organisation, hors sinistre"},
    {"D_CREDIT_7TM", "Travaux forestiers reportés de 2015, sans organisation, après sinistre"},
    {"D_CREDIT_7VR", "Travaux forestiers reportés de 2016, avec organisation, hors sinistre"},
    {"D_CREDIT_7TQ", "Travaux forestiers reportés de 2016, avec organisation, après sinistre"},
    {"D_CREDIT_7VQ", "Travaux forestiers reportés de 2016, sans organisation, hors sinistre"},
    {"D_CREDIT_7TP", "Travaux forestiers reportés de 2016, sans organisation, après sinistre"},
    {"D_CREDIT_7UA", "Travaux forestiers de 2017, avec organisation, hors sinistre"},
    {"D_CREDIT_7UB", "Travaux forestiers de 2017, avec organisation, après sinistre"},
    {"D_CREDIT_7UP", "Travaux forestiers de 2017, sans organisation, hors sinistre"},
    {"D_CREDIT_7UT", "Travaux forestiers de 2017, sans organisation, après sinistre"},
};

// ---- Social levies.

inline constexpr LigneSortie sortiesBasesSociales[] = {
    {"S_B_REV_FON", "Base sociale : revenus fonciers"},
    {"S_B_REV_MOB", "Base sociale : revenus de capitaux mobiliers"},
    {"S_B_RENTES", "Base sociale : rentes viagères"},
    {"S_B_BENEF", "Base sociale : bénéfices des non-salariés soumis au titre du patrimoine"},
    {"S_B_LM", "Base sociale : locations meublées non professionnelles"},
    {"S_B_PG_DIVERS", "Base sociale : plus-values et gains divers"},
    {"S_B_PLUS_VALUES", "Base sociale : plus-values professionnelles à long terme"},
    {"S_B_PV_RETRAITE", "Base sociale : plus-values exonérées de départ à la retraite"},
    {"S_B_CSG_CRDS", "Revenus de capitaux ayant déjà supporté les prélèvements"},
    {"S_B_REV_FON_Etranger", "Part étrangère exclue : revenus fonciers"},
    {"S_B_RCM_Etranger", "Part étrangère exclue : revenus de capitaux mobiliers"},
    {"S_B_RENTES_ETR", "Part étrangère exclue : rentes viagères"},
    {"S_B_LM_ETR", "Part étrangère exclue : locations meublées non professionnelles"},
    {"S_B_PG_DIVERS_ETR", "Part étrangère exclue : plus-values et gains divers"},
    {"S_B_PLUS_VALUES_ETR", "Part étrangère exclue : plus-values professionnelles à long terme"},
    {"S_BASES", "Base totale des prélèvements sociaux sur le capital"},
};
inline constexpr LigneSortie sortiesPrelevementsCapital[] = {
    {"S_TAUX", "Taux des prélèvements sociaux sur le capital", Genre::Taux, &tauxParPrelevement},
    {"S_CONTR_SOC", "Prélèvements sociaux sur le capital"},
    {"S_MONTANT", "Prélèvements sociaux sur le capital, montant par prélèvement"},
};
inline constexpr LigneSortie sortiesCsgSansRetenue[] = {
    {"S_E_CSG_1", "CSG au taux des revenus d'activité, case 8TQ"},
    {"S_E_CSG_5", "CSG au taux des revenus d'activité, case 8TR"},
    {"S_E_CSG_8", "CSG au taux des revenus d'activité, case 8SC"},
    {"S_E_CSG_2", "CSG au taux des pensions, case 8TV"},
    {"S_E_CSG_6", "CSG au taux des pensions, case 8SA"},
    {"S_E_CSG_3", "CSG au taux des revenus de remplacement, case 8TW"},
    {"S_E_CSG_9", "CSG au taux des revenus de remplacement, case 8SW"},
    {"S_E_CSG_4", "CSG au taux réduit, case 8TX"},
    {"S_E_CSG_7", "CSG au taux réduit, case 8SB"},
    {"S_E_CSG_10", "CSG au taux réduit, case 8SX"},
    {"S_E_CSG_11", "CSG au taux propre de la case 8PH"},
    {"S_CSG_SAL", "CSG sur les gains d'options et d'actions gratuites imposés en salaires"},
};
inline constexpr LigneSortie sortiesCsgDeductible[] = {
    {"S_DEDUC", "CSG déductible l'année suivante, revenus du capital"},
    {"S_DEDUC_CSG_SAL", "CSG déductible l'année suivante, gains imposés comme des salaires"},
    {"S_E_CSG_4_NP1", "CSG déductible l'année suivante, revenus sans précompte"},
};
inline constexpr LigneSortie sortiesCrdsSansRetenue[] = {
    {"S_E_CRDS", "CRDS sur les revenus sans précompte"},
    {"S_E_CASA", "Contribution de solidarité pour l'autonomie (CASA)", Genre::Euros, &casaSeule},
    {"S_CRDS_SAL", "CRDS sur les gains d'options et d'actions gratuites imposés en salaires"},
};
inline constexpr LigneSortie sortiesTotauxSociaux[] = {
    {"S_A_PAYER", "Prélèvements sociaux à payer"},
    {"S_CSG_CRDS_ETR", "CSG, CRDS et CASA sur les revenus sans précompte"},
    {"S_CSG_CRDS_SAL", "CSG et CRDS sur les gains imposés comme des salaires"},
    {"S_S_GAINS_3VN_1TT_1UT", "Contribution salariale sur les gains, ligne de calcul"},
    {"S_CONTR_SAL", "Contribution salariale sur les gains, total"},
    {"S_S_CARRIED", "Contribution sur le carried interest, ligne de calcul"},
    {"S_CONTR_CARRIED", "Contribution sur le carried interest, total"},
    {"SEPAR_CSG", "Section des prélèvements sociaux", Genre::Marque},
};

// ---- Amount payable.

inline constexpr LigneSortie sortiesImpotAPaye[] = {
    {"TOT_PAYER", "Impôt sur le revenu à payer"},
    {"TOT_REST", "Impôt sur le revenu restitué"},
    {"TOT_N_RECOUVRE", "Impôt sur le revenu non mis en recouvrement"},
    {"TOT_N_REST", "Impôt sur le revenu non restitué, sous le seuil"},
    {"INFO_NON_RESTITUE", "Restitution d'impôt inférieure au seuil", Genre::Coche},
    {"INFO_NON_RECOUVREMENT", "Impôt non recouvré, solde inférieur au seuil", Genre::Coche},
    {"INFO_NON_RECOUV_RES", "Impôt non recouvré, impôt avant crédits inférieur au seuil", Genre::Coche},
    {"S_NON_RECOUVRE", "Prélèvements sociaux non mis en recouvrement"},
    {"S_RESTITUE", "Prélèvements sociaux restitués, toujours zéro"},
    {"S_NON_RESTITUE", "Prélèvements sociaux non restitués, toujours zéro"},
    {"INFO_S_NON_RECOUVRE", "Prélèvements sociaux non recouvrés, sous le seuil", Genre::Coche},
    {"INFO_S_NON_RECOUVREMENT", "Prélèvements sociaux sous le seuil, après crédit de modernisation", Genre::Coche},
    {"INFO_S_NON_RESTITUE", "Prélèvements sociaux non restitués, jamais coché", Genre::Coche},
    {"S_NET_A_PAYER", "Net à payer, impôt et prélèvements sociaux"},
    {"S_NET_RESTITUE", "Net restitué, impôt et prélèvements sociaux"},
};

// ---- Retirement savings.

inline constexpr LigneSortie sortiesPlafondPERP[] = {
    {"NP1_PLAF_PERP_V", "Plafond d'épargne retraite pour N+1, déclarant 1, total"},
    {"NP1_PLAF_PERP_V_0", "Plafond d'épargne retraite, déclarant 1, non utilisé de N-2"},
    {"NP1_PLAF_PERP_V_A", "Plafond d'épargne retraite, déclarant 1, non utilisé de N-1"},
    {"NP1_PLAF_PERP_V_B", "Plafond d'épargne retraite, déclarant 1, non utilisé de N"},
    {"NP1_PLAF_PERP_V_C", "Plafond d'épargne retraite, déclarant 1, calculé sur les revenus de N"},
    {"NP1_PLAF_PERP_C", "Plafond d'épargne retraite pour N+1, déclarant 2, total"},
    {"NP1_PLAF_PERP_C_0", "Plafond d'épargne retraite, déclarant 2, non utilisé de N-2"},
    {"NP1_PLAF_PERP_C_A", "Plafond d'épargne retraite, déclarant 2, non utilisé de N-1"},
    {"NP1_PLAF_PERP_C_B", "Plafond d'épargne retraite, déclarant 2, non utilisé de N"},
    {"NP1_PLAF_PERP_C_C", "Plafond d'épargne retraite, déclarant 2, calculé sur les revenus de N"},
};

// ---- The global cap.

inline constexpr LigneSortie sortiesNiches[] = {
    {"NICHE_FISCALE", "Excédent du plafonnement global, ajouté à l'impôt"},
    {"NICHE_A", "Solde à payer avec les avantages, avant plafonnement"},
    {"NICHE_B", "Solde à payer sans les avantages soumis au plafonnement"},
    {"NICHE_A4BY", "Avantage procuré par la déduction foncière de la case 4BY"},
    {"NICHE_A5", "Avantage retenu aux règles depuis 2013, plafond ordinaire"},
    {"NICHE_A5S", "Avantage retenu aux règles depuis 2013, plafond majoré"},
    {"NICHE_A4", "Avantage retenu aux règles de 2012"},
    {"NICHE_A3", "Avantage retenu aux règles de 2011"},
    {"NICHE_A2", "Avantage retenu aux règles de 2010"},
    {"NICHE_A1", "Avantage retenu aux règles de 2009"},
    {"NICHE_AVANTAGE_N", "Avantage affiché aux règles depuis 2013, plafond ordinaire"},
    {"NICHE_AVANTAGE_N_S", "Avantage affiché aux règles depuis 2013, plafond majoré"},
    {"NICHE_AVANTAGE_NM1", "Avantage affiché aux règles de 2012"},
    {"NICHE_AVANTAGE_NM2", "Avantage affiché aux règles de 2011"},
    {"NICHE_AVANTAGE_NM3", "Avantage affiché aux règles de 2010"},
    {"NICHE_AVANTAGE_NM4", "Avantage affiché aux règles de 2009"},
    {"NICHE_PLAFOND_N", "Plafond aux règles depuis 2013, plafond ordinaire"},
    {"NICHE_PLAFOND_N_S", "Plafond aux règles depuis 2013, plafond majoré"},
    {"NICHE_PLAFOND_NM1", "Plafond aux règles de 2012"},
    {"NICHE_PLAFOND_NM2", "Plafond aux règles de 2011"},
    {"NICHE_PLAFOND_NM3", "Plafond aux règles de 2010"},
    {"NICHE_PLAFOND_NM4", "Plafond aux règles de 2009"},
};

// ---- Carry-forwards and indicators.

inline constexpr LigneSortie sortiesReports[] = {
    {"NP1_GLOBAL_ANT", "Déficits globaux des années antérieures"},
    {"NP1_GLOBAL_IMP", "Déficits globaux imputés"},
    {"NP1_GLOBAL_ANN", "Déficit global de l'année"},
    {"NP1_GLOBAL_PER", "Déficits globaux perdus"},
    {"NP1_GLOBAL", "Déficits globaux à reporter"},
};

inline constexpr LigneSortie sortiesPrelevementLiberatoire[] = {
    {"PL_PRELEV_LIB", "Prélèvements libératoires déjà versés, total"},
    {"SAUT_PAGE_LIB", "Saut de page avant les prélèvements libératoires", Genre::Marque},
    {"SEPAR_PRELEV_LIB", "Section des prélèvements libératoires", Genre::Marque},
};
inline constexpr LigneSortie sortiesPrelevementsVerses[] = {
    {"PL_DH", "Prélèvement libératoire sur l'assurance-vie (2DH)"},
    {"PL_EE", "Prélèvement libératoire sur les autres produits (2EE)"},
};

inline constexpr LigneSortie sortiesTauxImposMoyen[] = {
    {"TAUX_IMPOS_MOY", "Taux moyen d'imposition", Genre::Taux},
};
inline constexpr LigneSortie sortiesImposTxMarginal[] = {
    {"IMPOS_TAUX_MARGINAL", "Revenu imposé au taux marginal"},
};
inline constexpr LigneSortie sortiesImposTrancheSup[] = {
    {"IMPOS_TRANCHE_SUP", "Marge de revenu avant la tranche supérieure"},
};

// ---- The summary of income.

inline constexpr LigneSortie sortiesSynthese[] = {
    {"SALAIRES_RB", "Revenus bruts : salaires et gains assimilés"},
    {"SALAIRESEXO_RB", "Revenus bruts : salaires exonérés"},
    {"PENSIONS_RB", "Revenus bruts : pensions et retraites"},
    {"RENTES_RB", "Revenus bruts : fraction imposable des rentes viagères"},
    {"CAPMOB_RB", "Revenus bruts : capitaux mobiliers"},
    {"REVFONCIERS_RB", "Revenus bruts : revenus fonciers nets"},
    {"BENEFAGR_RB", "Revenus bruts : bénéfices agricoles"},
    {"BENEFAGREXO_RB", "Revenus bruts : bénéfices agricoles exonérés"},
    {"BENEFCOMM_RB", "Revenus bruts : bénéfices industriels et commerciaux"},
    {"BENEFCOMMEXO_RB", "Revenus bruts : bénéfices industriels et commerciaux exonérés"},
    {"BENEFNONCOMM_RB", "Revenus bruts : bénéfices non commerciaux"},
    {"BENEFNONCOMMEXO_RB", "Revenus bruts : bénéfices non commerciaux exonérés"},
    {"REVETRANGER_RB", "Revenus bruts : revenus étrangers et impatriés"},
    {"PRODPRELEVLIB_RB", "Revenus bruts : produits au prélèvement ou versement libératoire"},
    {"DEFIMPUTE_RB", "Revenus bruts : déficits globaux imputés, en négatif"},
    {"DEFAREPORTER_RB", "Revenus bruts : déficit global de l'année à reporter"},
    {"CAPMOB_FPRI", "Frais déduits des capitaux mobiliers, pour la synthèse"},
    {"GRAPH_SALAIRE", "Revenus nets de frais : salaires"},
    {"GRAPH_PENSIONS", "Revenus nets de frais : pensions et retraites"},
    {"GRAPH_RENTES", "Revenus nets de frais : rentes viagères"},
    {"GRAPH_CAP_MOB", "Revenus nets de frais : capitaux mobiliers"},
    {"GRAPH_FONCIER", "Revenus nets de frais : revenus fonciers"},
    {"GRAPH_NON_SAL", "Revenus nets de frais : bénéfices des non-salariés"},
    {"GRAPH_PV", "Revenus nets de frais : plus-values et gains"},
    {"GRAPH_ETRANGER", "Revenus nets de frais : revenus étrangers et impatriés"},
    {"GRAPH_PRELEV_LIB", "Revenus nets de frais : produits au prélèvement ou versement libératoire"},
    {"GRAPH_DEF_GLOBAL", "Revenus nets de frais : déficits globaux imputés, en négatif"},
    {"GRAPH_REV_NET_FRAIS", "Revenus nets de frais : total"},
    {"GRAPH_REV_PRELEV_LIB", "Prélèvements et versements libératoires sur les revenus"},
    {"GRAPH_REV_CONTRIB_SOC", "Prélèvements sociaux retenus à la source sur les capitaux"},
};

// ---- Wealth tax.

inline constexpr LigneSortie sortiesISF[] = {
    {"ISF_PATRIMOINE", "ISF, patrimoine net taxable"},
    {"ISF_AVANT_REDUC", "ISF, impôt avant réductions"},
    {"ISF_DECOTE", "ISF, décote"},
    {"ISF_REDUC", "ISF, réductions d'impôt"},
    {"ISF_AVANT_PLAF", "ISF, impôt avant plafonnement"},
    {"ISF_PLAF", "ISF, plafonnement"},
    {"ISF_APRES_PLAF", "ISF, impôt après plafonnement"},
    {"ISF_PAYE_ETRANGER", "ISF, impôt sur la fortune payé à l'étranger"},
    {"ISF_IMPOTSOLIDFORTUNE", "ISF, impôt de solidarité sur la fortune dû"},
    {"ISF_A_PAYER", "ISF, montant à payer"},
    {"SAUT_PAGE_ISF", "Saut de page avant l'impôt de solidarité sur la fortune", Genre::Marque},
    {"SEPAR_ISF", "Section de l'impôt de solidarité sur la fortune", Genre::Marque},
};
inline constexpr LigneSortie sortiesTranchesISF[] = {
    {"ISF_TRANCHE_1", "ISF, impôt de la première tranche du barème"},
    {"ISF_TRANCHE_2", "ISF, impôt de la deuxième tranche du barème"},
    {"ISF_TRANCHE_3", "ISF, impôt de la troisième tranche du barème"},
    {"ISF_TRANCHE_4", "ISF, impôt de la quatrième tranche du barème"},
    {"ISF_TRANCHE_5", "ISF, impôt de la cinquième tranche du barème"},
    {"ISF_TRANCHE_6", "ISF, impôt de la sixième tranche du barème"},
};
inline constexpr LigneSortie sortiesReductionsISF[] = {
    {"ISF_PME_DIRECT", "ISF, réduction pour souscription directe au capital de PME"},
    {"ISF_PME_STE", "ISF, réduction pour souscription par une société interposée"},
    {"ISF_PME_FIP", "ISF, réduction pour souscription de parts de FIP"},
    {"ISF_PME_FCPI", "ISF, réduction pour souscription de parts de FCPI"},
    {"ISF_DONS_FRANCE", "ISF, réduction pour dons à des organismes français"},
    {"ISF_DONS_ETRANGER", "ISF, réduction pour dons à des organismes étrangers"},
};

// ---- Withholding.

inline constexpr LigneSortie sortiesPrelevementSource[] = {
    {"TAUX_PAS", "Taux du prélèvement à la source du foyer (dixièmes de %)", Genre::Taux},
    {"NON_TAUX_PAS", "Aucun taux : situation de famille changée dans l'année", Genre::Coche},
    {"NON_TAUX_PAS1", "Aucun taux : situation de famille changée dans l'année, copie", Genre::Coche},
    {"INFO_TAUX_PAS", "Taux positif sans impôt à payer, revenu par part modeste", Genre::Coche},
    {"ASSIETTE_A_IR", "Assiette annuelle de l'acompte d'impôt sur le revenu"},
    {"ACOMPTE_CS", "Acompte annuel de prélèvements sociaux"},
};
inline constexpr LigneSortie sortiesModernisation[] = {
    {"D_CREDIT_CIMR_IR", "Crédit d'impôt de modernisation du recouvrement"},
};

// clang-format on

/// The outputs that one step writes, and what their columns hold.
struct FamilleSortie {
    Etape etape;  ///< Etape{}: the driver, "1:Calcul"
    const Colonnes& colonnes;
    std::span<const LigneSortie> lignes;
};
inline constexpr FamilleSortie famillesSortie[] = {
    {Etape{}, aucune, sortiesCalcul},
    {Etape::NombreParts, aucune, sortiesNombreParts},
    {Etape::RevenusBrut, aucune, sortiesRevenusBrut},
    {Etape::RevenusSalaires, parPersonne, sortiesSalaires},
    {Etape::RevenusSalaires, parDeclarant, sortiesGainsSalaries},
    {Etape::RevenusSalaires, aucune, sortiesAutresGains},
    {Etape::RentesViageres, fractionImposable, sortiesRentes},
    {Etape::RentesViageres, aucune, sortiesTotalRentes},
    {Etape::RevenusNonSalaries, parPersonne, sortiesAgricoles},
    {Etape::RevenusNonSalaries, parPersonne, sortiesCommerciaux},
    {Etape::RevenusNonSalaries, parPersonne, sortiesNonCommerciaux},
    {Etape::RevenusNonSalaries, parPersonne, sortiesPlusValuesProfessionnelles},
    {Etape::RevenusNonSalaries, aucune, sortiesDeficitsNonProfessionnels},
    {Etape::RevenusExoneres, parPersonne, sortiesExoneres},
    {Etape::RevenusMobiliers, aucune, sortiesMobiliers},
    {Etape::RevenusFonciers, aucune, sortiesFonciers},
    {Etape::RevenusDivers, parPersonne, sortiesAgricolesApresDeficits},
    {Etape::RevenusDivers, aucune, sortiesDivers},
    {Etape::RevenusBrutQuotient, aucune, sortiesQuotient},
    {Etape::RevenusTauxForf, aucune, sortiesTauxForfaitaires},
    {Etape::RevenusNet, aucune, sortiesRevenuNet},
    {Etape::RevenusNet, declareRetenuTaux, sortiesCharges},
    {Etape::RevenusImposables, aucune, sortiesImposables},
    {Etape::CalculImpot, bareme, sortiesBareme},
    {Etape::CalculImpot, aucune, sortiesImpotBrut},
    {Etape::TauxMarginal, aucune, sortiesTauxMarginal},
    {Etape::RevenusTM, baseEtTaux, sortiesTauxMoyen},
    {Etape::RevenusTM, aucune, sortiesNonResidents},
    {Etape::RevenusEtrangers, aucune, sortiesEtrangers},
    {Etape::RevenusEtrangers, parPersonne, sortiesEtrangersParPersonne},
    {Etape::ImpotApresReductions, aucune, sortiesAvantReductions},
    {Etape::ImpotApresReductions, reduction, sortiesReductions},
    {Etape::ImpotApresReductions, aucune, sortiesReportsDeReductions},
    {Etape::RevenuFiscalRef, aucune, sortiesRevenuReference},
    {Etape::RevenuFiscalRef, parDeclarant, sortiesPartsExonerees},
    {Etape::HautsSalaires, aucune, sortiesHautsRevenus},
    {Etape::ImpotApresCorrections, aucune, sortiesCorrections},
    {Etape::ImpotApresCorrections, baseEtTaux, sortiesTauxProportionnels},
    {Etape::CreditDImpot, aucune, sortiesCredits},
    {Etape::CreditDImpot, declareRetenuTaux, sortiesCreditsAuTaux},
    {Etape::CSG_CRDS, basesParPrelevement, sortiesBasesSociales},
    {Etape::CSG_CRDS, troisPrelevements, sortiesPrelevementsCapital},
    {Etape::CSG_CRDS, csgSeule, sortiesCsgSansRetenue},
    {Etape::CSG_CRDS, csgDeductible, sortiesCsgDeductible},
    {Etape::CSG_CRDS, crdsSeule, sortiesCrdsSansRetenue},
    {Etape::CSG_CRDS, aucune, sortiesTotauxSociaux},
    {Etape::ImpotAPaye, aucune, sortiesImpotAPaye},
    {Etape::PlafondPERP, aucune, sortiesPlafondPERP},
    {Etape::NichesFiscales, aucune, sortiesNiches},
    {Etape::Reports, aucune, sortiesReports},
    {Etape::PrelevLib, aucune, sortiesPrelevementLiberatoire},
    {Etape::PrelevLib, baseEtTaux, sortiesPrelevementsVerses},
    {Etape::TauxImposMoyen, aucune, sortiesTauxImposMoyen},
    {Etape::ImposTxMarginal, aucune, sortiesImposTxMarginal},
    {Etape::ImposTrancheSup, aucune, sortiesImposTrancheSup},
    {Etape::RevenusNetFrais, aucune, sortiesSynthese},
    {Etape::Calcul_ISF, aucune, sortiesISF},
    {Etape::Calcul_ISF, baseEtTaux, sortiesTranchesISF},
    {Etape::Calcul_ISF, versementsEtTaux, sortiesReductionsISF},
    {Etape::TauxPAS, aucune, sortiesPrelevementSource},
    {Etape::KV_CIMR, aucune, sortiesModernisation},
};

/// Outputs that no step writes.
inline constexpr const char* sortiesInutilisees[] = {
    "SAUT_BLOC_REPORTS",
    "SAUT_PAGE_CSG",
    "SEPAR_EMPLOI",
    "SEPAR_REPORTS",
    "SEPAR_TAUX",
    "TAUX_MARGINAL_1",
    "RR_ABAT_EXO",
    "REV_ABAT_TI",
    "RD_FON_DEF_BD",
    "RD_FON_DEF_ANNEE",
    "RD_FON_DEF_BB",
    "D_IR_DU",
    "I2_IMP_RETENU",
    "I_QUOT_DED",
    "RE_SPE_BNC_NON_PROF",
    "D_CREDIT_ASSURANCES",
    "TRESOR_3",
    "S_CONTR_CIMR_CS",
    "U_PRESERV_PATRIM_NM4",
    "RQ_RESTE_RNG",
    "D_CREDIT_HAB_PRIN_Suiv",
    "U_FOREST_TRAV_NM2",
    "RF_PV2",
    "KV_RACINE",
    "REPORTS",
    "D_SOURCE_LOC",
    "I_BQ_TOUS_REV_N",
    "I_BQ_TOUS_REV",
    "U_CAPITAL_NOUV_N",
};

}  // namespace kv::sens
