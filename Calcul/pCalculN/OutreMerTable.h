#pragma once

#include <array>

#include "Calcul/pCalculN/Imputation.h"
#include "Calcul/pCalculN/Loi.h"

// The lines of the overseas investments, by the code of their entry box (CGI art. 199 undecies A, B and C). The order
// of the rows is the order of imputation.

namespace kv::outremer {

using enum Niche;

/// A reduction imputed at 100 % of its entry box, without carry-forward.
struct LigneSimple {
    CaseSortie sortie;
    CaseEntree entree;
    Niche niche;
    consteval LigneSimple(const char* code, Niche n)
        : sortie(CaseSortie::Requise("U_DT_", code)), entree(code), niche(n) {}
};

// clang-format off
inline constexpr LigneSimple lignesSimples[] = {
    {"HQB", HorsPlafond}, {"HQC", HorsPlafond}, {"HQT", HorsPlafond}, {"HOA", HorsPlafond}, {"HOH", HorsPlafond},
    {"HOL", HorsPlafond}, {"HOO", HorsPlafond}, {"HOS", HorsPlafond}, {"HQL", N2009}, {"HQM", N2009}, {"HQD", N2010},
    {"HOB", N2009}, {"HOC", N2010}, {"HOM", N2009}, {"HON", N2010}, {"HOD", N2010}, {"HUA", N2010}, {"HUH", N2010},
    {"HUO", N2010}, {"HVA", N2010}, {"HOI", N2009}, {"HOJ", N2010}, {"HOK", N2011}, {"HOP", N2009}, {"HOQ", N2010},
    {"HOR", N2011}, {"HOE", N2010}, {"HOF", N2011}, {"HUB", N2010}, {"HUC", N2011}, {"HUI", N2010}, {"HUJ", N2011},
    {"HUP", N2010}, {"HUQ", N2011}, {"HVB", N2010}, {"HVC", N2011}, {"HOT", N2009}, {"HOU", N2010}, {"HOV", N2011},
    {"HOW", N2012}, {"HOG", N2010}, {"HOX", N2011}, {"HOY", N2012}, {"HOZ", N2013S}, {"HUD", N2010}, {"HUE", N2011},
    {"HUF", N2012}, {"HUG", N2013S}, {"HUK", N2010}, {"HUL", N2011}, {"HUM", N2012}, {"HUN", N2013S}, {"HUR", N2010},
    {"HUS", N2011}, {"HUT", N2012}, {"HUU", N2013S}, {"HVD", N2010}, {"HVE", N2011}, {"HVF", N2012}, {"HVG", N2013S},
};
// clang-format on

/// What becomes of the part that the tax can't take.
enum Suite { Perdu, Report, Rembourse };

/// A reduction imputed at 100 %, whose unimputed part is carried to next year, refunded, or lost.
struct LigneReportee {
    CaseSortie sortie;
    CaseEntree entree;
    Niche niche;
    CaseSortie suite;  ///< where the unimputed part goes
    consteval LigneReportee(const char* code, Niche n, Suite s = Perdu)
        : sortie(CaseSortie::Requise("U_DT_", code)),
          entree(code),
          niche(n),
          suite(s == Perdu ? CaseSortie() : CaseSortie::Requise(s == Report ? "NP1_DT_" : "CRE_DT_", code)) {}
};

// clang-format off
inline constexpr LigneReportee lignesReportees[] = {
    {"HQJ", N2009}, {"HQS", N2010}, {"HQW", N2011}, {"HQX", N2012}, {"HRA", N2010, Report}, {"HRB", N2011, Report},
    {"HRC", N2012, Report}, {"HRD", N2013S, Report}, {"HXA", N2010, Report}, {"HXB", N2011, Report},
    {"HXC", N2012, Report}, {"HXE", N2013S, Report}, {"HXF", N2010, Report}, {"HXG", N2011, Report},
    {"HXH", N2012, Report}, {"HXI", N2013S, Report}, {"HXK", N2013S, Report}, {"HXL", N2010, Report},
    {"HXM", N2011, Report}, {"HXN", N2012, Report}, {"HXO", N2013S, Report}, {"HXP", N2013S, Report},
    {"HXQ", N2010, Report}, {"HXR", N2011, Report}, {"HXS", N2012, Report}, {"HXT", N2013S, Report},
    {"HXU", N2013S, Report}, {"HPM", HorsPlafond}, {"HRJ", HorsPlafond}, {"HPO", N2009}, {"HPT", N2010},
    {"HPY", N2011}, {"HRL", N2009}, {"HRQ", N2010}, {"HRV", N2011}, {"HNV", N2012}, {"HPN", N2009}, {"HPS", N2010},
    {"HPX", N2011}, {"HRK", N2009}, {"HRP", N2010}, {"HRU", N2011}, {"HNU", N2012}, {"HPR", N2009}, {"HPW", N2010},
    {"HRI", N2011}, {"HRO", N2009}, {"HRT", N2010}, {"HRY", N2011}, {"HNY", N2012}, {"HPP", N2009}, {"HPU", N2010},
    {"HRG", N2011}, {"HRM", N2009}, {"HRR", N2010}, {"HRW", N2011}, {"HNW", N2012}, {"HSB", N2010, Report},
    {"HSG", N2011, Report}, {"HSL", N2010, Report}, {"HSQ", N2011, Report}, {"HSV", N2012, Report},
    {"HTA", N2013S, Report}, {"HSA", N2010, Report}, {"HSF", N2011, Report}, {"HSK", N2010, Report},
    {"HSP", N2011, Report}, {"HSU", N2012, Report}, {"HSZ", N2013S, Report}, {"HSE", N2010, Rembourse},
    {"HSJ", N2011, Rembourse}, {"HSO", N2010, Rembourse}, {"HST", N2011, Rembourse}, {"HSY", N2012, Rembourse},
    {"HTD", N2013S, Rembourse}, {"HSC", N2010, Report}, {"HSH", N2011, Report}, {"HSM", N2010, Report},
    {"HSR", N2011, Report}, {"HSW", N2012, Report}, {"HTB", N2013S, Report}, {"HAB", N2010, Report},
    {"HAG", N2011, Report}, {"HAL", N2010, Report}, {"HAQ", N2011, Report}, {"HAV", N2012, Report},
    {"HBB", N2013S, Report}, {"HAA", N2010, Report}, {"HAF", N2011, Report}, {"HAK", N2010, Report},
    {"HAP", N2011, Report}, {"HAU", N2012, Report}, {"HBA", N2013S, Report}, {"HAC", N2010, Report},
    {"HAH", N2011, Report}, {"HAM", N2010, Report}, {"HAR", N2011, Report}, {"HAW", N2012, Report},
    {"HBE", N2013S, Report}, {"HAE", N2010, Rembourse}, {"HAJ", N2011, Rembourse}, {"HAO", N2010, Rembourse},
    {"HAT", N2011, Rembourse}, {"HAY", N2012, Rembourse}, {"HBG", N2013S, Rembourse}, {"HBJ", N2010, Report},
    {"HBO", N2011, Report}, {"HBT", N2012, Report}, {"HBY", N2013S, Report}, {"HCD", N2013S, Report},
    {"HBI", N2010, Report}, {"HBN", N2011, Report}, {"HBS", N2012, Report}, {"HBX", N2013S, Report},
    {"HCC", N2013S, Report}, {"HBM", N2010}, {"HBR", N2011}, {"HBW", N2012}, {"HCB", N2013S}, {"HCG", N2013S},
    {"HBK", N2010, Report}, {"HBP", N2011, Report}, {"HBU", N2012, Report}, {"HBZ", N2013S, Report},
    {"HCE", N2013S, Report}, {"HCJ", N2012, Report}, {"HCO", N2013S, Report}, {"HCT", N2013S, Report},
    {"HCI", N2012, Report}, {"HCN", N2013S, Report}, {"HCS", N2013S, Report}, {"HCM", N2012}, {"HCR", N2013S},
    {"HCW", N2013S}, {"HCK", N2012, Report}, {"HCP", N2013S, Report}, {"HCU", N2013S, Report},
    {"HDJ", N2012, Report}, {"HDO", N2013S, Report}, {"HDT", N2013S, Report}, {"HDI", N2012, Report},
    {"HDN", N2013S, Report}, {"HDS", N2013S, Report}, {"HDM", N2012}, {"HDR", N2013S}, {"HDW", N2013S},
    {"HDK", N2012, Report}, {"HDP", N2013S, Report}, {"HDU", N2013S, Report},
};
// clang-format on

/// Refundable within a ceiling: what the reduction did not take.
struct LigneRemboursable {
    CaseSortie credit, reduction;
    CaseEntree entree;
    consteval LigneRemboursable(const char* code)
        : credit(CaseSortie::Requise("CRE_DT_", code)), reduction(CaseSortie::Requise("U_DT_", code)), entree(code) {}
};
inline constexpr Parametre plafondRemboursable = "investissementsOutremer.remboursement.plafond";
inline constexpr LigneRemboursable lignesRemboursables[] = {
    "HBM", "HBR", "HCB", "HBW", "HCG", "HCM", "HCR", "HCW", "HDM", "HDR", "HDW",
};

/// Classes of retrocession, by the part of the reduction that goes to the operating company (percent, rounded).
enum Retrocession : std::size_t { R50, R53, R56, R60, R62, R65, R66, R70, nRetrocessions };
struct Partage {
    Parametre taux;                   ///< what the investor keeps
    Parametre conservee, retrocedee;  ///< what is retroceded for what is kept
    Parametre plafond;                ///< fixed option: what the retroceded shares may take in all
    consteval Partage(const char* classe)
        : taux(Parametre::Requis("retrocession.", classe, ".taux")),
          conservee(Parametre::Requis("retrocession.", classe, ".conservee")),
          retrocedee(Parametre::Requis("retrocession.", classe, ".retrocedee")),
          plafond(Parametre::Requis("retrocession.", classe, ".plafond")) {}
};
inline constexpr Partage partages[nRetrocessions] = {"r50", "r53", "r56", "r60", "r62", "r65", "r66", "r70"};

/// The rooms of the investor's shares: a part of the income or an amount, and the amount of a line without
/// retrocession.
struct Enveloppe {
    Parametre part, plafond, sansRetrocession;
};
inline constexpr Enveloppe enveloppes[] = {
    {"investissementsOutremer.enveloppe1.taux", "investissementsOutremer.enveloppe1.plafond",
     "investissementsOutremer.enveloppe1.sansRetrocession"},
    {"investissementsOutremer.enveloppe2.taux", "investissementsOutremer.enveloppe2.plafond",
     "investissementsOutremer.enveloppe2.sansRetrocession"},
    {"investissementsOutremer.enveloppe3.taux", "investissementsOutremer.enveloppe3.plafond",
     "investissementsOutremer.enveloppe3.sansRetrocession"},
};

/// A business investment that is retroceded in part to the company that operates it.
///
/// Of the reduction, a rate stays with the investor within a room, and so much for it goes to the operator within its
/// own room; what exceeds both is given back.
struct LigneRetrocedee {
    CaseSortie reduction, nonRetrocede, retrocede, excedent;
    Niche niche;
    Retrocession classe;
    int enveloppe;        ///< which of the three rooms
    Retrocession limite;  ///< fixed option: whose room the retroceded share takes; lines of one class share it
    consteval LigneRetrocedee(const char* code, Niche n, Retrocession c, int e, Retrocession l)
        : reduction(CaseSortie::Requise("U_DT_", code)),
          nonRetrocede(CaseSortie::Requise("U_PR_", code, "_NR")),
          retrocede(CaseSortie::Requise("U_PR_", code, "_R")),
          excedent(CaseSortie::Requise("U_PR_", code)),
          niche(n),
          classe(c),
          enveloppe(e),
          limite(l) {}
};

// clang-format off
inline constexpr LigneRetrocedee lignesRetrocedees[] = {
    {"HQJ", N2009, R65, 1, R65}, {"HQS", N2010, R65, 1, R65}, {"HQW", N2011, R65, 1, R65},
    {"HQX", N2012, R65, 1, R65}, {"HRA", N2010, R65, 1, R65}, {"HRB", N2011, R65, 1, R65},
    {"HRC", N2012, R65, 1, R65}, {"HRD", N2013S, R65, 1, R65}, {"HXA", N2010, R65, 1, R65},
    {"HXB", N2011, R65, 1, R65}, {"HXC", N2012, R65, 1, R65}, {"HXE", N2013S, R65, 1, R65},
    {"HXF", N2010, R65, 1, R65}, {"HXG", N2011, R65, 1, R65}, {"HXH", N2012, R65, 1, R65},
    {"HXI", N2013S, R65, 1, R65}, {"HXK", N2013S, R70, 1, R70}, {"HXL", N2010, R65, 1, R65},
    {"HXM", N2011, R65, 1, R65}, {"HXN", N2012, R65, 1, R65}, {"HXO", N2013S, R65, 1, R65},
    {"HXP", N2013S, R70, 1, R70}, {"HXQ", N2010, R65, 1, R65}, {"HXR", N2011, R65, 1, R65},
    {"HXS", N2012, R65, 1, R65}, {"HXT", N2013S, R65, 1, R65}, {"HXU", N2013S, R70, 1, R70},
    {"HPO", N2009, R60, 1, R60}, {"HPT", N2010, R60, 1, R60}, {"HPY", N2011, R62, 2, R60},
    {"HRL", N2009, R62, 3, R62}, {"HRQ", N2010, R62, 3, R62}, {"HRV", N2011, R62, 3, R62},
    {"HNV", N2012, R62, 3, R62}, {"HSB", N2010, R62, 2, R60}, {"HSG", N2011, R62, 2, R60},
    {"HSL", N2010, R62, 3, R62}, {"HSQ", N2011, R62, 3, R62}, {"HSV", N2012, R62, 3, R62},
    {"HTA", N2013S, R62, 3, R62}, {"HAB", N2010, R62, 2, R60},
    {"HAG", N2011, R62, 2, R60}, {"HAL", N2010, R62, 3, R62}, {"HAQ", N2011, R62, 3, R62},
    {"HAV", N2012, R62, 3, R62}, {"HBB", N2013S, R62, 3, R62},
    {"HBJ", N2010, R62, 3, R62}, {"HBO", N2011, R62, 3, R62}, {"HBT", N2012, R62, 3, R62},
    {"HBY", N2013S, R62, 3, R62}, {"HCD", N2013S, R66, 3, R66},
    {"HCJ", N2012, R62, 3, R62}, {"HCO", N2013S, R62, 3, R62},
    {"HCT", N2013S, R66, 3, R66}, {"HDJ", N2012, R62, 3, R62},
    {"HDO", N2013S, R62, 3, R62}, {"HDT", N2013S, R66, 3, R66}, {"HPN", N2009, R50, 1, R50},
    {"HPS", N2010, R50, 1, R50}, {"HPX", N2011, R53, 2, R60},
    {"HRK", N2009, R53, 3, R62}, {"HRP", N2010, R53, 3, R62},
    {"HRU", N2011, R53, 3, R62}, {"HNU", N2012, R53, 3, R62},
    {"HSA", N2010, R53, 2, R50}, {"HSF", N2011, R53, 2, R50},
    {"HSK", N2010, R53, 3, R53}, {"HSP", N2011, R53, 3, R53},
    {"HSU", N2012, R53, 3, R53}, {"HSZ", N2013S, R53, 3, R53},
    {"HAA", N2010, R53, 2, R50}, {"HAF", N2011, R53, 2, R50},
    {"HAK", N2010, R53, 3, R53}, {"HAP", N2011, R53, 3, R53},
    {"HAU", N2012, R53, 3, R53}, {"HBA", N2013S, R53, 3, R53},
    {"HBI", N2010, R53, 3, R53}, {"HBN", N2011, R53, 3, R53},
    {"HBS", N2012, R53, 3, R53}, {"HBX", N2013S, R53, 3, R53},
    {"HCC", N2013S, R56, 3, R56}, {"HCI", N2012, R53, 3, R53},
    {"HCN", N2013S, R53, 3, R53}, {"HCS", N2013S, R56, 3, R56},
    {"HDI", N2012, R53, 3, R53}, {"HDN", N2013S, R53, 3, R53},
    {"HDS", N2013S, R56, 3, R56},
};
// clang-format on

/// A housing or business investment whose reduction is limited by a room; what exceeds it is given back.
struct LigneLimitee {
    CaseSortie reduction, excedent;
    Niche niche;
    int enveloppe;  ///< which of the three rooms
    constexpr LigneLimitee(const char* code, Niche n, int e)
        : reduction(CaseSortie::Requise("U_DT_", code)),
          excedent(CaseSortie::Requise("U_PR_", code)),
          niche(n),
          enveloppe(e) {}
};
constexpr const Enveloppe& EnveloppeDe(const LigneLimitee& ligne) {
    return enveloppes[static_cast<std::size_t>(ligne.enveloppe) - 1];
}

// clang-format off
inline constexpr LigneLimitee lignesLimitees[] = {
    {"HQL", N2009, 1}, {"HQM", N2009, 1}, {"HQD", N2010, 1}, {"HOB", N2009, 1}, {"HOC", N2010, 1}, {"HOM", N2009, 1},
    {"HON", N2010, 1}, {"HOD", N2010, 1}, {"HUA", N2010, 1}, {"HUH", N2010, 1}, {"HUO", N2010, 1}, {"HVA", N2010, 1},
    {"HOI", N2009, 2}, {"HOJ", N2010, 2}, {"HOK", N2011, 2}, {"HOP", N2009, 2}, {"HOQ", N2010, 2}, {"HOR", N2011, 2},
    {"HOE", N2010, 2}, {"HOF", N2011, 2}, {"HUB", N2010, 2}, {"HUC", N2011, 2}, {"HUI", N2010, 2}, {"HUJ", N2011, 2},
    {"HUP", N2010, 2}, {"HUQ", N2011, 2}, {"HVB", N2010, 2}, {"HVC", N2011, 2}, {"HOT", N2009, 3}, {"HOU", N2010, 3},
    {"HOV", N2011, 3}, {"HOW", N2012, 3}, {"HOG", N2010, 3}, {"HOX", N2011, 3}, {"HOY", N2012, 3},
    {"HOZ", N2013S, 3}, {"HUD", N2010, 3}, {"HUE", N2011, 3}, {"HUF", N2012, 3}, {"HUG", N2013S, 3},
    {"HUK", N2010, 3}, {"HUL", N2011, 3}, {"HUM", N2012, 3}, {"HUN", N2013S, 3}, {"HUR", N2010, 3},
    {"HUS", N2011, 3}, {"HUT", N2012, 3}, {"HUU", N2013S, 3}, {"HVD", N2010, 3}, {"HVE", N2011, 3},
    {"HVF", N2012, 3}, {"HVG", N2013S, 3}, {"HPP", N2009, 1}, {"HPU", N2010, 1}, {"HRG", N2011, 2},
    {"HRM", N2009, 3}, {"HRR", N2010, 3}, {"HRW", N2011, 3}, {"HNW", N2012, 3}, {"HSC", N2010, 2}, {"HSH", N2011, 2},
    {"HSM", N2010, 3}, {"HSR", N2011, 3}, {"HSW", N2012, 3}, {"HTB", N2013S, 3}, {"HAC", N2010, 2},
    {"HAH", N2011, 2}, {"HAM", N2010, 3}, {"HAR", N2011, 3}, {"HAW", N2012, 3}, {"HBE", N2013S, 3},
    {"HBK", N2010, 3}, {"HBP", N2011, 3}, {"HBU", N2012, 3}, {"HBZ", N2013S, 3}, {"HCE", N2013S, 3},
    {"HCK", N2012, 3}, {"HCP", N2013S, 3}, {"HCU", N2013S, 3}, {"HDK", N2012, 3}, {"HDP", N2013S, 3},
    {"HDU", N2013S, 3},
};

// In the fixed option these lines have the amount without retrocession as room.
struct LigneLimiteeAuForfait : LigneLimitee {
    using LigneLimitee::LigneLimitee;
};
inline constexpr LigneLimiteeAuForfait lignesLimiteesAuForfait[] = {
    {"HPR", N2009, 1}, {"HPW", N2010, 1}, {"HRI", N2011, 2}, {"HRO", N2009, 3},
    {"HRT", N2010, 3}, {"HRY", N2011, 3}, {"HNY", N2012, 3}, {"HSE", N2010, 2},
    {"HSJ", N2011, 2}, {"HSO", N2010, 3}, {"HST", N2011, 3}, {"HSY", N2012, 3},
    {"HTD", N2013S, 3}, {"HAE", N2010, 2}, {"HAJ", N2011, 2}, {"HAO", N2010, 3},
    {"HAT", N2011, 3}, {"HAY", N2012, 3}, {"HBG", N2013S, 3}, {"HBM", N2010, 3},
    {"HBR", N2011, 3}, {"HBW", N2012, 3}, {"HCB", N2013S, 3}, {"HCG", N2013S, 3},
    {"HCM", N2012, 3}, {"HCR", N2013S, 3}, {"HCW", N2013S, 3}, {"HDM", N2012, 3},
    {"HDR", N2013S, 3}, {"HDW", N2013S, 3},
};
// clang-format on

static_assert(std::size(lignesSimples) == 60 && std::size(lignesReportees) == 149 &&
              std::size(lignesRemboursables) == 11 && std::size(lignesRetrocedees) == 87 &&
              std::size(lignesLimitees) == 82 && std::size(lignesLimiteesAuForfait) == 30);

}  // namespace kv::outremer
