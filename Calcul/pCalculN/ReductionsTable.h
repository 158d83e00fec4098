#pragma once

#include <algorithm>
#include <array>
#include <string_view>

#include "Calcul/pCalculN/Contexte.h"
#include "Calcul/pCalculN/Imputation.h"
#include "Calcul/pCalculN/OutreMerTable.h"

// The reduction lines of the return, but for the overseas investments, and the order in which all of them are imputed.

namespace kv::reductions {

using enum Niche;

/// Ceilings that several lines share: each line's retained base comes off it.
enum class Commun {
    Aucun,
    TravauxForestiers,          ///< CGI art. 199 decies H
    AidePersonnesEnDifficulte,  ///< CGI art. 200-1 ter
    Presse,                     ///< CGI art. 199 terdecies-0 C
    Sofica,                     ///< CGI art. 199 unvicies
    RenteSurvie,                ///< CGI art. 199 septies
    Dons,                       ///< CGI art. 200
    Capital,                    ///< CGI art. 199 terdecies-0 A, subscriptions before 2012; within the next one
    CapitalPME,                 ///< the same, later subscriptions and those above: one ceiling
    ImmeublesRestaures,         ///< CGI art. 199 tervicies
    ImmeublesRestauresQuatreAns,
    Nombre,
};

/// The ceiling of a line's base.
struct Plafond {
    Parametre montant;      ///< none: no ceiling of its own
    bool parFoyer = false;  ///< doubled for a couple
    Commun commun = Commun::Aucun;
    CaseEntree fois = {};  ///< so many times the amount
    bool siImpot = false;  ///< nothing is retained once no tax is left

    constexpr Plafond() = default;
    consteval Plafond(const char* parametre) : montant(parametre) {}
    constexpr Plafond(Parametre m, bool f = false) : montant(m), parFoyer(f) {}
    constexpr Plafond(Commun c, Parametre m = {}) : montant(m), commun(c) {}
};
consteval Plafond ParFoyer(Parametre montant) { return {montant, true}; }
consteval Plafond Fois(Parametre montant, CaseEntree nombre) {
    Plafond plafond(montant);
    plafond.fois = nombre;
    return plafond;
}
consteval Plafond SiImpot() {
    Plafond plafond;
    plafond.siImpot = true;
    return plafond;
}

/// A base that is not an entry box, found from the inputs and the outputs so far.
using Base = std::int32_t (*)(const Entrees& E, const Valeurs& S, const Loi& loi);

inline constexpr std::int32_t nTaux100 = 10000;  ///< 100 %, in hundredths of a percent
/// The rate of a row: that of the law, or 100 %.
inline constexpr Parametre auTaux100 = {};
constexpr std::int32_t TauxDe(const Loi& loi, Parametre taux) { return taux ? loi[taux] : nTaux100; }

/// A rate of an entry box, within a ceiling.
struct LigneTaux {
    CaseSortie sortie;
    CaseEntree entree;
    Parametre taux;
    Plafond plafond;
    Niche niche;
    CaseSortie report = {};  ///< what the tax can't bear is added here
    Base base = nullptr;     ///< the base, when it is not the entry box itself
};

/// What a compensatory payment in capital gives of its ceiling, CGI art. 199 octodecies.
inline std::int32_t PrestationCompensatoire(const Entrees& E, const Valeurs&, const Loi& loi) {
    const std::int32_t plafond = loi["reductions.7WN.plafond"];
    return E["7WO"] <= plafond ? E["7WN"] : nProrata(E["7WN"], plafond, E["7WO"]);
}
/// The share of the worldwide tax that the foreign income with a credit equal to the French tax bears.
inline std::int32_t CreditEgalALImpot(const Entrees&, const Valeurs& S, const Loi&) {
    return nProrata(S["IMPOT_ETR_TK"], S["IMPOT_ETR_REV_TK"], S["IMPOT_ETR_RMI"]);
}

inline constexpr LigneTaux premieresLignes[] = {
    {"U_FOREST_ASSUR", "7UL", "reductions.7UL.taux", Commun::TravauxForestiers, N2013},
    {"U_REDUC_7UD", "7UD", "reductions.7UD.taux", Commun::AidePersonnesEnDifficulte, HorsPlafond},
    {"U_REDUC_7VA", "7VA", "reductions.7UD.taux", Commun::AidePersonnesEnDifficulte, HorsPlafond},
    {"U_REDUC_7UM", "7UM", "reductions.7UM.taux", ParFoyer("reductions.7UM.plafond"), HorsPlafond},
    {"U_REDUC_7MY", "7MY", "reductions.7MY.taux", Commun::Presse, N2013},
    {"U_REDUC_7MX", "7MX", "reductions.7MX.taux", Commun::Presse, N2013},
    {"U_REDUC_7UC", "7UC", "reductions.7UC.taux", "reductions.7UC.plafond", HorsPlafond},
    {"U_REDUC_7EN", "7EN", "reductions.7EN.taux", Commun::Sofica, N2013S},
    {"U_REDUC_7GN", "7GN", "reductions.7GN.taux", Commun::Sofica, N2013S},
    {"U_REDUC_7FN", "7FN", "reductions.7FN.taux", Commun::Sofica, N2013S},
    {"U_REDUC_7FL", "7FL", "reductions.7FL.taux", ParFoyer("reductions.7FL.plafond"), N2013},
    {"U_REDUC_7FM", "7FM", "reductions.7FM.taux", ParFoyer("reductions.7FM.plafond"), N2013},
    {"U_REDUC_7FH", "7FH", "reductions.7FH.taux", ParFoyer("reductions.7FH.plafond"), HorsPlafond},
    {"U_REDUC_7WP", "7WP", "reductions.7WN.taux", "reductions.7WN.plafond", HorsPlafond},
    {.sortie = "U_REDUC_7WN_7WM_7WO",
     .entree = "7WN",
     .taux = "reductions.7WN.taux",
     .plafond = {},
     .niche = HorsPlafond,
     .base = PrestationCompensatoire},
    {"U_HEBERGEMENT_V", "7CD", "reductions.7CD.taux", "reductions.7CD.plafond", HorsPlafond},
    {"U_HEBERGEMENT_C", "7CE", "reductions.7CD.taux", "reductions.7CD.plafond", HorsPlafond},
    {"U_RENTE_SURVIE", "7GZ", "reductions.7GZ.taux", Commun::RenteSurvie, HorsPlafond},
    {"U_REDUC_7GQ", "7GQ", "reductions.7GQ.taux", ParFoyer("reductions.7GQ.plafond"), N2013},
    {"U_REDUC_7FQ", "7FQ", "reductions.7FQ.taux", ParFoyer("reductions.7FQ.plafond"), N2013},
    {"U_REDUC_7NZ", "7NZ", "reductions.7NZ.taux", "reductions.7NZ.plafond", N2013},
};

/// Accounting expenses of small businesses, within an amount for each.
inline constexpr LigneTaux fraisDeComptabilite[] = {
    {"U_FRAIS_COMPTA", "7FF", auTaux100, Fois("reductions.7FF.plafond", "7FG"), HorsPlafond}};

/// Children in education, so much for each by level (CGI art. 199 quater F); half in alternating residence.
struct LigneEnfants {
    CaseSortie sortie;
    CaseEntree college, lycee, superieur;
    std::int32_t diviseur;
    Niche niche = HorsPlafond;
};
inline constexpr LigneEnfants enfantsScolarises[] = {
    {"U_ENFANTS_ACHARGE", "7EA", "7EC", "7EF", 1},
    {"U_ENFANTS_ALTERNE", "7EB", "7ED", "7EG", 2},
};

/// Donations, the carried ones first, the oldest first; what exceeds the shared ceiling goes to next year's return.
struct LigneDon {
    LigneTaux ligne;
    CaseSortie report;
};
inline constexpr LigneDon lignesDons[] = {
    {{"U_DONS_OEUVRES_Nm5", "7XS", "reductions.7UF.taux", Commun::Dons, HorsPlafond}, {}},
    {{"U_DONS_OEUVRES_Nm4", "7XT", "reductions.7UF.taux", Commun::Dons, HorsPlafond}, "NP1_DONS_Nm4"},
    {{"U_DONS_OEUVRES_Nm3", "7XU", "reductions.7UF.taux", Commun::Dons, HorsPlafond}, "NP1_DONS_Nm3"},
    {{"U_DONS_OEUVRES_Nm2", "7XW", "reductions.7UF.taux", Commun::Dons, HorsPlafond}, "NP1_DONS_Nm2"},
    {{"U_DONS_OEUVRES_Nm1", "7XY", "reductions.7UF.taux", Commun::Dons, HorsPlafond}, "NP1_DONS_Nm1"},
    {{"U_DONS_PARTIS_N", "7UH", "reductions.7UF.taux", {Commun::Dons, "reductions.7UH.plafond"}, HorsPlafond},
     "NP1_DONS_N"},
    {{"U_DONS_OEUVRES_N", "7UF", "reductions.7UF.taux", Commun::Dons, HorsPlafond}, "NP1_DONS_N"},
    {{"U_DONS_AUTRES_N", "7VC", "reductions.7UF.taux", Commun::Dons, HorsPlafond}, "NP1_DONS_N"},
};

/// The fractions of later years that a return declares beside a line (code + "A", ...) and the boxes of next year's
/// return that they are copied into (NP1_ + code, ...).
struct FractionsSuivantes {
    static constexpr std::size_t nMax = 7;
    struct Copie {
        CaseSortie vers;
        CaseEntree de;
    };
    std::array<Copie, nMax> copies{};

    consteval explicit FractionsSuivantes(const char* code) {
        constexpr const char* lettres[nMax] = {"A", "B", "C", "D", "E", "F", "G"};
        constexpr const char* annees[nMax] = {"NP1_", "NP2_", "NP3_", "NP4_", "NP5_", "NP6_", "NP7_"};
        for (std::size_t i = 0; i < nMax; ++i) {
            const Copie copie{CaseSortie::De(annees[i], code), CaseEntree::De(code, lettres[i])};
            if (!copie.vers || !copie.de) break;
            copies[i] = copie;
        }
    }
};

/// A carried fraction of an earlier rental investment, imputed at 100 %.
struct LigneFraction {
    CaseSortie sortie;
    CaseEntree entree;
    Niche niche;
    CaseSortie report;  ///< what is left of it is added here
    FractionsSuivantes suivantes;
    consteval LigneFraction(const char* code, Niche n, CaseSortie r = {})
        : sortie(CaseSortie::Requise("U_REDUC_", code)), entree(code), niche(n), report(r), suivantes(code) {}
};

/// The credit equal to the French tax on foreign income.
inline constexpr LigneTaux creditEtranger[] = {
    {.sortie = "U_ETR_REV_TK",
     .entree = {},
     .taux = auTaux100,
     .plafond = {},
     .niche = HorsPlafond,
     .base = CreditEgalALImpot},
};

inline constexpr LigneFraction fractionsDeLAnnee[] = {
    {"7FI", N2013},  {"7FK", N2013},  {"7FR", N2013},  {"7FV", N2013S}, {"7AI", N2013},  {"7BI", N2013},
    {"7CI", N2013S}, {"7DI", N2013S}, {"7BZ", N2013},  {"7CZ", N2013},  {"7DZ", N2013S}, {"7EZ", N2013S},
    {"7QZ", N2013},  {"7RZ", N2013},  {"7SZ", N2013S}, {"7TZ", N2013S},
};

/// The ceilings of the rental schemes.
inline constexpr Parametre intermediaire = "reductions.locatifIntermediaire.plafond";
inline constexpr Parametre locatifNeuf = "reductions.locatifNeuf.plafond";
inline constexpr Parametre meuble = "reductions.meuble.plafond";
/// The ceiling of a line: a fresh one, or what another line left of its own.
enum class Enveloppe { Neuve, LigneDAvant, Ligne7IR };
inline constexpr Enveloppe MemeEnveloppe = Enveloppe::LigneDAvant;

/// A reduction spread over several years.
struct LigneEtalee {
    Parametre plafond;
    CaseSortie sortie;
    CaseEntree entree;
    Parametre taux;
    int annees;  ///< years it is spread over
    int fin;     ///< last year
    Niche niche;
    CaseSortie premiere;  ///< the box of next year's return that receives the yearly amount, and the years after it
    CaseSortie report;    ///< what the tax can't bear is added here
    Enveloppe enveloppe;
    FractionsSuivantes suivantes;
    consteval LigneEtalee(Parametre pl, const char* code, Parametre t, int a, int f, Niche n, CaseSortie p,
                          CaseSortie r, Enveloppe e = Enveloppe::Neuve)
        : plafond(pl),
          sortie(CaseSortie::Requise("U_REDUC_", code)),
          entree(code),
          taux(t),
          annees(a),
          fin(f),
          niche(n),
          premiere(p),
          report(r),
          enveloppe(e),
          suivantes(code) {}
};

/// Rental investments of the year: each group of lines shares a ceiling.
inline constexpr LigneEtalee investissementsDeLAnnee[] = {
    {intermediaire, "7EL", "reductions.7EL.taux", 9, 2025, N2013, "NP1_7S19", {}},
    {intermediaire, "7EK", "reductions.7EK.taux", 9, 2025, N2013, "NP1_7S19", {}, MemeEnveloppe},
    {intermediaire, "7GI", "reductions.7EL.taux", 9, 2025, N2013, "NP1_7S19", {}},
    {intermediaire, "7GH", "reductions.7EK.taux", 9, 2025, N2013, "NP1_7S19", {}, MemeEnveloppe},
    {intermediaire, "7QP", "reductions.7QP.taux", 9, 2025, N2013S, "NP1_7S23", {}},
    {intermediaire, "7QO", "reductions.7QO.taux", 6, 2022, N2013S, "NP1_7S24", {}, MemeEnveloppe},
    {intermediaire, "7QN", "reductions.7QN.taux", 9, 2025, N2013, "NP1_7S21", {}, MemeEnveloppe},
    {intermediaire, "7QM", "reductions.7QM.taux", 6, 2022, N2013, "NP1_7S22", {}, MemeEnveloppe},
    {intermediaire, "7QL", "reductions.7QP.taux", 9, 2025, N2013S, "NP1_7S23", {}},
    {intermediaire, "7QK", "reductions.7QO.taux", 6, 2022, N2013S, "NP1_7S24", {}, MemeEnveloppe},
    {intermediaire, "7QJ", "reductions.7QN.taux", 9, 2025, N2013, "NP1_7S21", {}, MemeEnveloppe},
    {intermediaire, "7QI", "reductions.7QM.taux", 6, 2022, N2013, "NP1_7S22", {}, MemeEnveloppe},
    {intermediaire, "7QH", "reductions.7QP.taux", 9, 2025, N2013S, "NP1_7S23", {}},
    {intermediaire, "7QG", "reductions.7QO.taux", 6, 2022, N2013S, "NP1_7S24", {}, MemeEnveloppe},
    {intermediaire, "7QF", "reductions.7QN.taux", 9, 2025, N2013, "NP1_7S21", {}, MemeEnveloppe},
    {intermediaire, "7QE", "reductions.7QM.taux", 6, 2022, N2013, "NP1_7S22", {}, MemeEnveloppe},
    {intermediaire, "7QD", "reductions.7QP.taux", 9, 2025, N2013S, "NP1_7S23", {}},
    {intermediaire, "7QC", "reductions.7QO.taux", 6, 2022, N2013S, "NP1_7S24", {}, MemeEnveloppe},
    {intermediaire, "7QB", "reductions.7QN.taux", 9, 2025, N2013, "NP1_7S21", {}, MemeEnveloppe},
    {intermediaire, "7QA", "reductions.7QM.taux", 6, 2022, N2013, "NP1_7S22", {}, MemeEnveloppe},
};

/// Subscriptions to the capital of small companies.
inline constexpr LigneTaux souscriptions[] = {
    {"U_CAPITAL_NOUV_NM4", "7CL", "reductions.7CF.taux", Commun::Capital, N2013},
    {"U_CAPITAL_NOUV_NM3", "7CM", "reductions.7CF.taux", Commun::Capital, N2013},
    {"U_CAPITAL_NOUV_NM2", "7CN", "reductions.7CF.taux", Commun::Capital, N2013},
    {"U_CAPITAL_NOUV_NM1", "7CC", "reductions.7CF.taux", Commun::Capital, N2013},
};
inline constexpr LigneTaux souscriptionsPME[] = {
    {"U_CAPITAL_NOUV_7CQ", "7CQ", "reductions.7CF.taux", Commun::CapitalPME, N2013},
    {"U_CAPITAL_NOUV_7CR", "7CR", "reductions.7CF.taux", Commun::CapitalPME, N2013},
    {"U_CAPITAL_NOUV_7CV", "7CV", "reductions.7CF.taux", Commun::CapitalPME, N2013},
    {"U_CAPITAL_NOUV_7CX", "7CX", "reductions.7CF.taux", Commun::CapitalPME, N2013},
    {"U_CAPITAL_PE_N", "7CF", "reductions.7CF.taux", Commun::CapitalPME, N2013},
};
/// Reductions in excess of the global cap in earlier years.
inline constexpr LigneTaux reductionsExcedentaires[] = {
    {"U_CAPITAL_NOUV_7CY", "7CY", auTaux100, SiImpot(), N2013},
    {"U_CAPITAL_NOUV_7DY", "7DY", auTaux100, SiImpot(), N2013},
    {"U_CAPITAL_NOUV_7EY", "7EY", auTaux100, SiImpot(), N2013},
    {"U_CAPITAL_NOUV_7FY", "7FY", auTaux100, SiImpot(), N2013},
};

/// Forests bought.
inline constexpr LigneTaux acquisitionsForestieres[] = {
    {"U_FOREST_ACQU", "7UN", "reductions.7UN.taux", ParFoyer("reductions.7UN.plafond"), N2013}};

/// Forest works of earlier years, under the ceiling that the forest insurance left.
inline constexpr LigneTaux travauxForestiers[] = {
    {"U_FOREST_TRAV_NM5_8ans", "7TE", "reductions.7TE.taux", Commun::TravauxForestiers, N2009},
    {"U_FOREST_TRAV_NM4_8ans", "7TF", "reductions.7TF.taux", Commun::TravauxForestiers, N2010},
    {"U_FOREST_TRAV_NM3_8ans", "7TG", "reductions.7TG.taux", Commun::TravauxForestiers, N2011},
    {"U_FOREST_TRAV_NM2_8ans", "7TH", "reductions.7TH.taux", Commun::TravauxForestiers, N2012},
    {"U_FOREST_TRAV_NM1", "7UU", "reductions.7TI.taux", Commun::TravauxForestiers, N2013},
    {"U_FOREST_TRAV_NM1_8ans", "7TI", "reductions.7TI.taux", Commun::TravauxForestiers, N2013},
};

/// Tourist residences in rural zones: a rate of the base, but no more than of a sixth of the ceiling.
struct LigneResidence {
    CaseSortie sortie;
    CaseEntree entree;
    Parametre taux;
    Niche niche;
    FractionsSuivantes suivantes;
    consteval LigneResidence(CaseSortie s, const char* code, Niche n)
        : sortie(s), entree(code), taux(Parametre::Requis("reductions.", code, ".taux")), niche(n), suivantes(code) {}
};
inline constexpr Plafond plafondResidences = ParFoyer("reductions.7XN.plafond");
inline constexpr int nAnneesResidences = 6;
inline constexpr LigneResidence residencesDeTourisme[] = {
    {"U_INV_ZRR_XN", "7XN", N2011},
    {"U_INV_ZRR_UY", "7UY", N2012},
    {"U_INV_ZRR_XV", "7XV", N2011},
    {"U_INV_ZRR_UZ", "7UZ", N2012},
};
/// Works on tourist residences.
inline constexpr LigneTaux travauxDeResidences[] = {
    {"U_REDUC_7XX", "7XX", "reductions.7XX.taux", "reductions.7XX.plafond", N2013}};

/// Furnished letting: reductions that the tax of earlier years could not bear.
inline constexpr LigneFraction meubleReporte[] = {
    {"7LR", N2010, "NP1_REPORT_7LR"}, {"7LF", N2011},
    {"7LZ", N2011, "NP1_REPORT_7LZ"}, {"7LX", N2011, "NP1_REPORT_7LX"},
    {"7LI", N2011, "NP1_REPORT_7LI"}, {"7LO", N2011, "NP1_REPORT_7LO"},
    {"7LU", N2011, "NP1_REPORT_7LU"}, {"7MG", N2012, "NP1_REPORT_7MG"},
    {"7MH", N2012, "NP1_REPORT_7MH"}, {"7LJ", N2012, "NP1_REPORT_7LJ"},
    {"7LP", N2012, "NP1_REPORT_7LP"}, {"7LV", N2012, "NP1_REPORT_7LV"},
    {"7ZP", N2011, "NP1_7ZP"},        {"7ZO", N2011, "NP1_7ZO"},
};

// ---- Rental schemes, each line within a ceiling of its own.

/// Investments of 2009 and 2010 still spread.
inline constexpr LigneEtalee locatifAncien[] = {
    {locatifNeuf, "7HS", "reductions.7HS.taux", 9, 2017, N2009, {}, "NP1_REPORT_7R5"},
    {locatifNeuf, "7HR", "reductions.7HR.taux", 9, 2017, N2009, {}, "NP1_REPORT_7R5"},
    {locatifNeuf, "7HU", "reductions.7HS.taux", 9, 2018, N2009, {}, "NP1_REPORT_7R5"},
    {locatifNeuf, "7HT", "reductions.7HR.taux", 9, 2018, N2009, {}, "NP1_REPORT_7R5"},
    {locatifNeuf, "7HZ", "reductions.7HS.taux", 9, 2018, N2009, {}, "NP1_REPORT_7R5"},
    {locatifNeuf, "7HX", "reductions.7HR.taux", 9, 2018, N2009, {}, "NP1_REPORT_7R5"},
    {locatifNeuf, "7HW", "reductions.7HW.taux", 9, 2018, N2010, {}, "NP1_REPORT_7R6"},
    {locatifNeuf, "7HV", "reductions.7HV.taux", 9, 2018, N2010, {}, "NP1_REPORT_7R6"},
    {meuble, "7IK", "reductions.7IR.taux", 9, 2017, N2009, {}, {}},
    {meuble, "7IR", "reductions.7IR.taux", 9, 2018, N2009, {}, "NP1_REPORT_7R1"},
};

/// The carry box of a carried rental fraction, by year group.
consteval CaseSortie ReportLocatif(Niche niche) {
    switch (niche) {
        case N2009:
            return "NP1_REPORT_7R5";
        case N2010:
            return "NP1_REPORT_7R6";
        case N2011:
            return "NP1_REPORT_7R7";
        case N2012:
            return "NP1_REPORT_7R8";
        default:
            throw "no carry box for this group";
    }
}
/// The carry box of a carried furnished-letting fraction, by year group.
consteval CaseSortie ReportMeuble(Niche niche) {
    switch (niche) {
        case N2009:
            return "NP1_REPORT_7R1";
        case N2010:
            return "NP1_REPORT_7R2";
        case N2011:
            return "NP1_REPORT_7R3";
        case N2012:
            return "NP1_REPORT_7R4";
        case N2013:
            return "NP1_REPORT_7R9";
        default:
            throw "no carry box for this group";
    }
}
consteval LigneFraction Locatif(const char* code, Niche niche) { return {code, niche, ReportLocatif(niche)}; }
consteval LigneFraction Meuble(const char* code, Niche niche) { return {code, niche, ReportMeuble(niche)}; }

inline constexpr LigneFraction locatifFractions[] = {
    Locatif("7HF", N2009), Locatif("7HD", N2010), Locatif("7HA", N2011), Locatif("7GU", N2009), Locatif("7GS", N2010),
    Locatif("7GL", N2011), Locatif("7GJ", N2012), Locatif("7YH", N2009), Locatif("7YF", N2010), Locatif("7YD", N2011),
    Locatif("7YB", N2012), Locatif("7YL", N2010), Locatif("7YK", N2011), Locatif("7YJ", N2012), Locatif("7YP", N2009),
    Locatif("7YO", N2010), Locatif("7YN", N2011), Locatif("7YM", N2012), Locatif("7YS", N2010), Locatif("7YR", N2011),
    Locatif("7YQ", N2012), Locatif("7YW", N2009), Locatif("7YV", N2010), Locatif("7YU", N2011), Locatif("7YT", N2012),
    Locatif("7YZ", N2010), Locatif("7YY", N2011), Locatif("7YX", N2012), Locatif("7WW", N2009), Locatif("7WV", N2010),
    Locatif("7WU", N2011), Locatif("7WT", N2012), Locatif("7WZ", N2010), Locatif("7WY", N2011), Locatif("7WX", N2012),
    {"7ZM", N2011},        {"7ZN", N2010},
};

inline constexpr LigneEtalee locatifRecent[] = {
    {locatifNeuf, "7NR", "reductions.7NM.taux", 5, 2021, N2011, "NP1_7S12", "NP1_REPORT_7R7"},
    {locatifNeuf, "7NS", "reductions.7NM.taux", 5, 2021, N2011, "NP1_7S12", "NP1_REPORT_7R7"},
    {locatifNeuf, "7NT", "reductions.7NO.taux", 5, 2021, N2011, "NP1_7S12", "NP1_REPORT_7R7"},
    {locatifNeuf, "7NP", "reductions.7NO.taux", 5, 2021, N2011, "NP1_7S12", "NP1_REPORT_7R7"},
    {locatifNeuf, "7NM", "reductions.7NM.taux", 9, 2025, N2011, "NP1_7S11", "NP1_REPORT_7R7"},
    {locatifNeuf, "7NN", "reductions.7NM.taux", 9, 2025, N2011, "NP1_7S11", "NP1_REPORT_7R7"},
    {locatifNeuf, "7NO", "reductions.7NO.taux", 9, 2025, N2011, "NP1_7S11", "NP1_REPORT_7R7"},
    {locatifNeuf, "7NK", "reductions.7NO.taux", 9, 2025, N2011, "NP1_7S11", "NP1_REPORT_7R7"},
    {locatifNeuf, "7NC", "reductions.7NC.taux", 9, 2025, N2011, "NP1_7S11", "NP1_REPORT_7R7"},
    {locatifNeuf, "7ND", "reductions.7NC.taux", 9, 2025, N2011, "NP1_7S11", "NP1_REPORT_7R7"},
    {locatifNeuf, "7NH", "reductions.7NC.taux", 9, 2025, N2011, "NP1_7S11", "NP1_REPORT_7R7"},
    {locatifNeuf, "7NE", "reductions.7NA.taux", 9, 2025, N2011, "NP1_7S11", "NP1_REPORT_7R7"},
    {locatifNeuf, "7NA", "reductions.7NA.taux", 9, 2025, N2011, "NP1_7S11", "NP1_REPORT_7R7"},
    {locatifNeuf, "7NI", "reductions.7NI.taux", 9, 2025, N2011, "NP1_7S11", "NP1_REPORT_7R7"},
    {locatifNeuf, "7NJ", "reductions.7NF.taux", 9, 2025, N2011, "NP1_7S11", "NP1_REPORT_7R7"},
    {locatifNeuf, "7NF", "reductions.7NF.taux", 9, 2025, N2011, "NP1_7S11", "NP1_REPORT_7R7"},
    {locatifNeuf, "7ZA", "reductions.7ZA.taux", 3, 2019, N2011, "NP1_7S14", "REPORT_7R13"},
    {locatifNeuf, "7ZB", "reductions.7ZB.taux", 3, 2019, N2010, "NP1_7S10", "REPORT_7R12"},
    {locatifNeuf, "7ZC", "reductions.7ZC.taux", 3, 2019, N2011, "NP1_7S14", "REPORT_7R13"},
    {locatifNeuf, "7ZD", "reductions.7ZA.taux", 3, 2019, N2011, "NP1_7S14", "REPORT_7R13"},
    {locatifNeuf, "7ZE", "reductions.7ZA.taux", 3, 2019, N2011, "NP1_7S14", "REPORT_7R13"},
    {locatifNeuf, "7ZF", "reductions.7ZB.taux", 3, 2019, N2010, "NP1_7S10", "REPORT_7R12"},
    {locatifNeuf, "7ZG", "reductions.7ZC.taux", 3, 2019, N2011, "NP1_7S14", "REPORT_7R13"},
    {locatifNeuf, "7ZH", "reductions.7ZA.taux", 3, 2019, N2011, "NP1_7S14", "REPORT_7R13"},
    {locatifNeuf, "7ZI", "reductions.7ZI.taux", 3, 2019, N2012, "NP1_7S16", "REPORT_7R14"},
    {locatifNeuf, "7ZJ", "reductions.7ZA.taux", 3, 2019, N2011, "NP1_7S14", "REPORT_7R13"},
    {locatifNeuf, "7ZK", "reductions.7ZK.taux", 3, 2019, N2012, "NP1_7S16", "REPORT_7R14"},
    {locatifNeuf, "7ZL", "reductions.7ZI.taux", 3, 2019, N2012, "NP1_7S16", "REPORT_7R14"},
    {locatifNeuf, "7JQ", "reductions.7JM.taux", 5, 2021, N2012, "NP1_7S13", "NP1_REPORT_7R8"},
    {locatifNeuf, "7JR", "reductions.7JN.taux", 5, 2021, N2012, "NP1_7S13", "NP1_REPORT_7R8"},
    {locatifNeuf, "7JO", "reductions.7JN.taux", 5, 2021, N2012, "NP1_7S13", "NP1_REPORT_7R8"},
    {locatifNeuf, "7JM", "reductions.7JM.taux", 9, 2025, N2012, "NP1_7S15", "NP1_REPORT_7R8"},
    {locatifNeuf, "7JN", "reductions.7JN.taux", 9, 2025, N2012, "NP1_7S15", "NP1_REPORT_7R8"},
    {locatifNeuf, "7JK", "reductions.7JN.taux", 9, 2025, N2012, "NP1_7S15", "NP1_REPORT_7R8"},
    {locatifNeuf, "7JD", "reductions.7JD.taux", 9, 2025, N2012, "NP1_7S15", "NP1_REPORT_7R8"},
    {locatifNeuf, "7JE", "reductions.7JA.taux", 9, 2025, N2012, "NP1_7S15", "NP1_REPORT_7R8"},
    {locatifNeuf, "7JA", "reductions.7JA.taux", 9, 2025, N2012, "NP1_7S15", "NP1_REPORT_7R8"},
    {locatifNeuf, "7JH", "reductions.7JA.taux", 9, 2025, N2012, "NP1_7S15", "NP1_REPORT_7R8"},
    {locatifNeuf, "7JJ", "reductions.7JF.taux", 9, 2025, N2012, "NP1_7S15", "NP1_REPORT_7R8"},
    {locatifNeuf, "7JF", "reductions.7JF.taux", 9, 2025, N2012, "NP1_7S15", "NP1_REPORT_7R8"},
    {locatifNeuf, "7FD", "reductions.7JN.taux", 5, 2021, N2012, "NP1_7S13", "NP1_REPORT_7R8"},
    {locatifNeuf, "7FC", "reductions.7JN.taux", 9, 2025, N2012, "NP1_7S15", "NP1_REPORT_7R8"},
    {locatifNeuf, "7FA", "reductions.7JA.taux", 9, 2025, N2012, "NP1_7S15", "NP1_REPORT_7R8"},
    {locatifNeuf, "7FB", "reductions.7JF.taux", 9, 2025, N2012, "NP1_7S15", "NP1_REPORT_7R8"},
};

/// Older furnished-letting schemes, without later fractions.
inline constexpr LigneFraction meubleAncien[] = {
    {"7IX", N2009},
    {"7IY", N2009, "NP1_REPORT_7IY"},
    {"7PA", N2009, "NP1_REPORT_7PA"},
    {"7PF", N2009, "NP1_REPORT_7PF"},
    {"7PK", N2009, "NP1_REPORT_7PK"},
    {"7PP", N2009, "NP1_REPORT_7PP"},
    {"7IH", N2010},
    {"7JC", N2010, "NP1_REPORT_7JC"},
    {"7PB", N2010, "NP1_REPORT_7PB"},
    {"7PG", N2010, "NP1_REPORT_7PG"},
    {"7PL", N2010, "NP1_REPORT_7PL"},
    {"7PQ", N2010, "NP1_REPORT_7PQ"},
    {"7IZ", N2011},
    {"7JI", N2011, "NP1_REPORT_7JI"},
    {"7PC", N2011, "NP1_REPORT_7PC"},
    {"7PH", N2011, "NP1_REPORT_7PH"},
    {"7PM", N2011, "NP1_REPORT_7PM"},
    {"7PR", N2011, "NP1_REPORT_7PR"},
    {"7JS", N2012, "NP1_REPORT_7JS"},
    {"7PD", N2012, "NP1_REPORT_7PD"},
    {"7PI", N2012, "NP1_REPORT_7PI"},
    {"7PN", N2012, "NP1_REPORT_7PN"},
    {"7PS", N2012, "NP1_REPORT_7PS"},
    {"7PE", N2013, "NP1_REPORT_7PE"},
    {"7PJ", N2013, "NP1_REPORT_7PJ"},
    {"7PO", N2013, "NP1_REPORT_7PO"},
    {"7PT", N2013, "NP1_REPORT_7PT"},
};

/// Furnished letting, investments of 2010: under what the line 7IR and then each other left.
inline constexpr LigneEtalee meuble2010[] = {
    {meuble, "7IQ", "reductions.7IR.taux", 9, 2018, N2009, {}, "NP1_REPORT_7R1", Enveloppe::Ligne7IR},
    {meuble, "7IP", "reductions.7IP.taux", 9, 2018, N2010, {}, "NP1_REPORT_7R2", MemeEnveloppe},
};

inline constexpr LigneFraction meubleFractions[] = {
    Meuble("7IC", N2009), Meuble("7IB", N2010), Meuble("7IA", N2011), Meuble("7JY", N2009), Meuble("7JX", N2010),
    Meuble("7JW", N2011), Meuble("7JV", N2012), Meuble("7OE", N2009), Meuble("7OD", N2010), Meuble("7OC", N2011),
    Meuble("7OB", N2012), Meuble("7OA", N2013), Meuble("7OJ", N2009), Meuble("7OI", N2010), Meuble("7OH", N2011),
    Meuble("7OG", N2012), Meuble("7OF", N2013), Meuble("7OO", N2009), Meuble("7ON", N2010), Meuble("7OM", N2011),
    Meuble("7OL", N2012), Meuble("7OK", N2013), Meuble("7OT", N2009), Meuble("7OS", N2010), Meuble("7OR", N2011),
    Meuble("7OQ", N2012), Meuble("7OP", N2013),
};

inline constexpr LigneEtalee meubleRecent[] = {
    {meuble, "7IJ", "reductions.7IJ.taux", 9, 2025, N2011, "NP1_7S3", {}},
    {meuble, "7ID", "reductions.7ID.taux", 9, 2025, N2012, "NP1_7S4", {}},
    {meuble, "7JT", "reductions.7JT.taux", 9, 2025, N2013, "NP1_7S18", {}},
    {meuble, "7OU", "reductions.7JT.taux", 9, 2024, N2013, "NP1_7S18", {}, MemeEnveloppe},
    {meuble, "7OV", "reductions.7JT.taux", 9, 2024, N2013, "NP1_7S18", {}, MemeEnveloppe},
    {meuble, "7OW", "reductions.7JT.taux", 9, 2024, N2013, "NP1_7S18", {}, MemeEnveloppe},
    {meuble, "7OX", "reductions.7JT.taux", 9, 2025, N2013, "NP1_7S18", {}, MemeEnveloppe},
};

/// Preservation of the natural heritage (CGI art. 199 octovicies).
inline constexpr LigneTaux patrimoine[] = {
    {"U_PRESERV_PATRIM_NM3", "7KC", auTaux100, "reductions.7KC.plafond", N2011},
    {"U_PRESERV_PATRIM_NM2", "7KD", auTaux100, "reductions.7KD.plafond", N2012, "NP1_PRESERV_PATRIM_7KD"},
    {"U_PRESERV_PATRIM_NM1", "7KE", auTaux100, "reductions.7KE.plafond", N2013, "NP1_PRESERV_PATRIM_7KE"},
};

/// Restored buildings (CGI art. 199 tervicies): a ceiling of one year, or of four.
inline constexpr LigneTaux immeublesRestaures[] = {
    {"U_REDUC_7SY", "7SY", "reductions.7SY.taux", Commun::ImmeublesRestaures, ToujoursActive},
    {"U_REDUC_7NX", "7NX", "reductions.7SY.taux", Commun::ImmeublesRestaures, ToujoursActive},
    {"U_REDUC_7TX", "7TX", "reductions.7SY.taux", Commun::ImmeublesRestauresQuatreAns, ToujoursActive,
     "NP1_REPORT_7R11"},
    {"U_REDUC_7SX", "7SX", "reductions.7SX.taux", Commun::ImmeublesRestaures, ToujoursActive},
    {"U_REDUC_7NY", "7NY", "reductions.7SX.taux", Commun::ImmeublesRestaures, ToujoursActive},
    {"U_REDUC_7TY", "7TY", "reductions.7SX.taux", Commun::ImmeublesRestauresQuatreAns, ToujoursActive,
     "NP1_REPORT_7R11"},
};

// ---- The order of imputation, group by group.

/// Calls f with each entry box that a row reads, and the group of the global cap that it counts in.
template <class Ligne, class Fonction>
constexpr void PourChaqueBoite(const Ligne& ligne, Fonction f) {
    if constexpr (requires { ligne.ligne; }) {
        PourChaqueBoite(ligne.ligne, f);
    } else {
        if constexpr (requires { ligne.entree; })
            if (ligne.entree) f(ligne.entree, ligne.niche);
        if constexpr (requires { ligne.college; })
            for (const CaseEntree box : {ligne.college, ligne.lycee, ligne.superieur}) f(box, ligne.niche);
        if constexpr (requires { ligne.suivantes; })
            for (const auto& copie : ligne.suivantes.copies)
                if (copie.vers) f(copie.de, HorsPlafond);
    }
}

/// A group of rows, with the boxes that they read.
template <const auto& table>
struct Groupe {
    static constexpr CasesEntree boites = [] {
        CasesEntree toutes;
        for (const auto& ligne : table) PourChaqueBoite(ligne, [&](CaseEntree box, Niche) { toutes.Ajoute(box); });
        return toutes;
    }();
    /// A row whose base comes from outputs alone is computed whatever the boxes.
    static constexpr bool toujours = [] {
        for (const auto& ligne : table)
            if constexpr (requires { ligne.entree; })
                if (!ligne.entree) return true;
        return false;
    }();

    /// The boxes of next year's return that the rows add into.
    static constexpr CasesSortie reports = [] {
        CasesSortie tous;
        for (const auto& ligne : table) {
            if constexpr (requires { ligne.report; })
                if (ligne.report) tous.Ajoute(ligne.report);
            if constexpr (requires { ligne.premiere; })
                for (int i = 0; ligne.premiere && i < ligne.fin - anneeDesRevenus; ++i) tous.Ajoute(ligne.premiere + i);
        }
        return tous;
    }();

    constexpr auto begin() const { return std::begin(table); }
    constexpr auto end() const { return std::end(table); }
};

/// The lines that are imputed first.
template <class Visiteur>
constexpr void PremiersGroupes(Visiteur visite) {
    visite(Groupe<premieresLignes>{});
    visite(Groupe<outremer::lignesSimples>{});
}
/// The lines after them; they are imputed once more when overseas shares are given back to the tax.
template <class Visiteur>
constexpr void SecondsGroupes(Visiteur visite) {
    visite(Groupe<fraisDeComptabilite>{});
    visite(Groupe<enfantsScolarises>{});
    visite(Groupe<lignesDons>{});
    visite(Groupe<creditEtranger>{});
    visite(Groupe<fractionsDeLAnnee>{});
    visite(Groupe<investissementsDeLAnnee>{});
    visite(Groupe<souscriptions>{});
    visite(Groupe<souscriptionsPME>{});
    visite(Groupe<reductionsExcedentaires>{});
    visite(Groupe<acquisitionsForestieres>{});
    visite(Groupe<travauxForestiers>{});
    visite(Groupe<residencesDeTourisme>{});
    visite(Groupe<travauxDeResidences>{});
    visite(Groupe<meubleReporte>{});
    visite(Groupe<locatifAncien>{});
    visite(Groupe<locatifFractions>{});
    visite(Groupe<locatifRecent>{});
    visite(Groupe<meubleAncien>{});
    visite(Groupe<meuble2010>{});
    visite(Groupe<meubleFractions>{});
    visite(Groupe<meubleRecent>{});
    visite(Groupe<patrimoine>{});
}
/// The last lines.
template <class Visiteur>
constexpr void DerniersGroupes(Visiteur visite) {
    visite(Groupe<immeublesRestaures>{});
    visite(Groupe<outremer::lignesReportees>{});
}
/// Every line that is imputed.
template <class Visiteur>
constexpr void TousLesGroupes(Visiteur visite) {
    PremiersGroupes(visite);
    SecondsGroupes(visite);
    DerniersGroupes(visite);
}
/// What is refunded or given back of the overseas lines once they are imputed.
template <class Visiteur>
constexpr void GroupesPartages(Visiteur visite) {
    visite(Groupe<outremer::lignesRetrocedees>{});
    visite(Groupe<outremer::lignesLimitees>{});
    visite(Groupe<outremer::lignesLimiteesAuForfait>{});
    visite(Groupe<outremer::lignesRemboursables>{});
}

/// Home employment: a credit that the reductions record in the global cap.
inline constexpr CaseEntree emploiADomicile = "7DB";

/// The boxes of every reduction that counts in the global cap.
inline constexpr CasesEntree boitesComptees = [] {
    CasesEntree comptees;
    TousLesGroupes([&](auto groupe) {
        for (const auto& ligne : groupe)
            PourChaqueBoite(ligne, [&](CaseEntree box, Niche niche) {
                if (niche != HorsPlafond && niche != ToujoursActive) comptees.Ajoute(box);
            });
    });
    comptees.Ajoute(emploiADomicile);
    return comptees;
}();

/// The boxes of the overseas investments.
inline constexpr CasesEntree boitesOutreMer = [] {
    CasesEntree boites = Groupe<outremer::lignesSimples>::boites;
    boites.Ajoute(Groupe<outremer::lignesReportees>::boites);
    return boites;
}();
/// Those of the subscriptions to capital, and of what is carried of them.
inline constexpr CasesEntree boitesCapital = [] {
    CasesEntree boites = Groupe<souscriptions>::boites;
    boites.Ajoute(Groupe<souscriptionsPME>::boites);
    boites.Ajoute(Groupe<reductionsExcedentaires>::boites);
    return boites;
}();

// ---- What the total of the reductions adds up: every reduction, less every share of them that is given back.
constexpr bool EstReduction(std::string_view nom) {
    constexpr std::string_view familles[] = {"U_REDUC_",   "U_DONS_", "U_CAPITAL_", "U_FOREST_",
                                             "U_INV_ZRR_", "U_DT_",   "U_PRESERV_"};
    constexpr std::string_view autres[] = {"U_CLASSES_MOYENNES", "U_HEBERGEMENT_V", "U_HEBERGEMENT_C",
                                           "U_RENTE_SURVIE",     "U_FRAIS_COMPTA",  "U_ENFANTS_ACHARGE",
                                           "U_ENFANTS_ALTERNE",  "U_ETR_REV_TK"};
    return std::any_of(std::begin(familles), std::end(familles),
                       [&](std::string_view f) { return nom.starts_with(f); }) ||
           std::find(std::begin(autres), std::end(autres), nom) != std::end(autres);
}
constexpr bool EstRetrocession(std::string_view nom) {
    return nom.starts_with("U_PR_") && !nom.ends_with("_R") && !nom.ends_with("_NR");
}
template <class Choix>
consteval CasesSortie SortiesDontLeNom(Choix choix) {
    CasesSortie sorties;
    for (int j = 0; j < nSorties; ++j)
        if (choix(sortie::noms[j])) sorties.Ajoute(CaseSortie::Numero(j));
    return sorties;
}
inline constexpr CasesSortie sortiesReductions = SortiesDontLeNom(EstReduction);
inline constexpr CasesSortie sortiesRetrocessions = SortiesDontLeNom(EstRetrocession);

}  // namespace kv::reductions
