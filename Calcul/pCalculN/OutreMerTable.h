#pragma once

#include <algorithm>
#include <array>

#include "Calcul/pCalculN/Imputation.h"

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
inline constexpr std::int32_t nPlafondRemboursable = 229500;
inline constexpr LigneRemboursable lignesRemboursables[] = {
    "HBM", "HBR", "HCB", "HBW", "HCG", "HCM", "HCR", "HCW", "HDM", "HDR", "HDW",
};

/// What the retroceded shares may take in all under the fixed option: lines of the same limit share it.
inline constexpr std::array<std::int32_t, 8> limitesAuForfait = {93333, 74286, 60000, 40000,
                                                                 34000, 51000, 38945, 59400};

/// A business investment that is retroceded in part to the company that operates it.
///
/// Of the reduction, taux percent stays with the investor within a room, and b / a times as much goes to the operator
/// within its own room; what exceeds both is given back.
struct LigneRetrocedee {
    CaseSortie reduction, nonRetrocede, retrocede, excedent;
    Niche niche;
    double taux;
    double a, b;         ///< the fraction a / b: what is kept against what is retroceded
    int enveloppe;       ///< which of the three rooms
    std::size_t limite;  ///< which of the limits of the fixed option
    consteval LigneRetrocedee(const char* code, Niche n, double t, double fa, double fb, int e, std::int32_t l)
        : reduction(CaseSortie::Requise("U_DT_", code)),
          nonRetrocede(CaseSortie::Requise("U_PR_", code, "_NR")),
          retrocede(CaseSortie::Requise("U_PR_", code, "_R")),
          excedent(CaseSortie::Requise("U_PR_", code)),
          niche(n),
          taux(t),
          a(fa),
          b(fb),
          enveloppe(e),
          limite(static_cast<std::size_t>(std::find(limitesAuForfait.begin(), limitesAuForfait.end(), l) -
                                          limitesAuForfait.begin())) {
        if (limite == limitesAuForfait.size()) throw "no such limit";
    }
};

// clang-format off
inline constexpr LigneRetrocedee lignesRetrocedees[] = {
    {"HQJ", N2009, 35, 7, 13, 1, 74286}, {"HQS", N2010, 35, 7, 13, 1, 74286}, {"HQW", N2011, 35, 7, 13, 1, 74286},
    {"HQX", N2012, 35, 7, 13, 1, 74286}, {"HRA", N2010, 35, 7, 13, 1, 74286}, {"HRB", N2011, 35, 7, 13, 1, 74286},
    {"HRC", N2012, 35, 7, 13, 1, 74286}, {"HRD", N2013S, 35, 7, 13, 1, 74286}, {"HXA", N2010, 35, 7, 13, 1, 74286},
    {"HXB", N2011, 35, 7, 13, 1, 74286}, {"HXC", N2012, 35, 7, 13, 1, 74286}, {"HXE", N2013S, 35, 7, 13, 1, 74286},
    {"HXF", N2010, 35, 7, 13, 1, 74286}, {"HXG", N2011, 35, 7, 13, 1, 74286}, {"HXH", N2012, 35, 7, 13, 1, 74286},
    {"HXI", N2013S, 35, 7, 13, 1, 74286}, {"HXK", N2013S, 30, 3, 7, 1, 93333}, {"HXL", N2010, 35, 7, 13, 1, 74286},
    {"HXM", N2011, 35, 7, 13, 1, 74286}, {"HXN", N2012, 35, 7, 13, 1, 74286}, {"HXO", N2013S, 35, 7, 13, 1, 74286},
    {"HXP", N2013S, 30, 3, 7, 1, 93333}, {"HXQ", N2010, 35, 7, 13, 1, 74286}, {"HXR", N2011, 35, 7, 13, 1, 74286},
    {"HXS", N2012, 35, 7, 13, 1, 74286}, {"HXT", N2013S, 35, 7, 13, 1, 74286}, {"HXU", N2013S, 30, 3, 7, 1, 93333},
    {"HPO", N2009, 40, 1, 1.5, 1, 60000}, {"HPT", N2010, 40, 1, 1.5, 1, 60000}, {"HPY", N2011, 37.5, 3, 5, 2, 60000},
    {"HRL", N2009, 37.5, 3, 5, 3, 51000}, {"HRQ", N2010, 37.5, 3, 5, 3, 51000}, {"HRV", N2011, 37.5, 3, 5, 3, 51000},
    {"HNV", N2012, 37.5, 3, 5, 3, 51000}, {"HSB", N2010, 37.5, 3, 5, 2, 60000}, {"HSG", N2011, 37.5, 3, 5, 2, 60000},
    {"HSL", N2010, 37.5, 3, 5, 3, 51000}, {"HSQ", N2011, 37.5, 3, 5, 3, 51000}, {"HSV", N2012, 37.5, 3, 5, 3, 51000},
    {"HTA", N2013S, 37.5, 3, 5, 3, 51000}, {"HAB", N2010, 37.5, 3, 5, 2, 60000},
    {"HAG", N2011, 37.5, 3, 5, 2, 60000}, {"HAL", N2010, 37.5, 3, 5, 3, 51000}, {"HAQ", N2011, 37.5, 3, 5, 3, 51000},
    {"HAV", N2012, 37.5, 3, 5, 3, 51000}, {"HBB", N2013S, 37.5, 3, 5, 3, 51000},
    {"HBJ", N2010, 37.5, 3, 5, 3, 51000}, {"HBO", N2011, 37.5, 3, 5, 3, 51000}, {"HBT", N2012, 37.5, 3, 5, 3, 51000},
    {"HBY", N2013S, 37.5, 3, 5, 3, 51000}, {"HCD", N2013S, 34, 17, 33, 3, 59400},
    {"HCJ", N2012, 37.5, 3, 5, 3, 51000}, {"HCO", N2013S, 37.5, 3, 5, 3, 51000},
    {"HCT", N2013S, 34, 17, 33, 3, 59400}, {"HDJ", N2012, 37.5, 3, 5, 3, 51000},
    {"HDO", N2013S, 37.5, 3, 5, 3, 51000}, {"HDT", N2013S, 34, 17, 33, 3, 59400}, {"HPN", N2009, 50, 1, 1, 1, 40000},
    {"HPS", N2010, 50, 1, 1, 1, 40000}, {"HPX", N2011, 47.37, 9, 10, 2, 60000},
    {"HRK", N2009, 47.37, 9, 10, 3, 51000}, {"HRP", N2010, 47.37, 9, 10, 3, 51000},
    {"HRU", N2011, 47.37, 9, 10, 3, 51000}, {"HNU", N2012, 47.37, 9, 10, 3, 51000},
    {"HSA", N2010, 47.37, 9, 10, 2, 40000}, {"HSF", N2011, 47.37, 9, 10, 2, 40000},
    {"HSK", N2010, 47.37, 9, 10, 3, 34000}, {"HSP", N2011, 47.37, 9, 10, 3, 34000},
    {"HSU", N2012, 47.37, 9, 10, 3, 34000}, {"HSZ", N2013S, 47.37, 9, 10, 3, 34000},
    {"HAA", N2010, 47.37, 9, 10, 2, 40000}, {"HAF", N2011, 47.37, 9, 10, 2, 40000},
    {"HAK", N2010, 47.37, 9, 10, 3, 34000}, {"HAP", N2011, 47.37, 9, 10, 3, 34000},
    {"HAU", N2012, 47.37, 9, 10, 3, 34000}, {"HBA", N2013S, 47.37, 9, 10, 3, 34000},
    {"HBI", N2010, 47.37, 9, 10, 3, 34000}, {"HBN", N2011, 47.37, 9, 10, 3, 34000},
    {"HBS", N2012, 47.37, 9, 10, 3, 34000}, {"HBX", N2013S, 47.37, 9, 10, 3, 34000},
    {"HCC", N2013S, 44, 11, 14, 3, 38945}, {"HCI", N2012, 47.37, 9, 10, 3, 34000},
    {"HCN", N2013S, 47.37, 9, 10, 3, 34000}, {"HCS", N2013S, 44, 11, 14, 3, 38945},
    {"HDI", N2012, 47.37, 9, 10, 3, 34000}, {"HDN", N2013S, 47.37, 9, 10, 3, 34000},
    {"HDS", N2013S, 44, 11, 14, 3, 38945},
};
// clang-format on

/// A housing or business investment whose reduction is limited by a room; what exceeds it is given back.
struct LigneLimitee {
    CaseSortie reduction, excedent;
    Niche niche;
    int enveloppe;         ///< which of the three rooms
    std::int32_t plafond;  ///< fixed option: the room of this line
    consteval LigneLimitee(const char* code, Niche n, int e, std::int32_t p = 0)
        : reduction(CaseSortie::Requise("U_DT_", code)),
          excedent(CaseSortie::Requise("U_PR_", code)),
          niche(n),
          enveloppe(e),
          plafond(p) {}
};

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

// In the fixed option these lines have rooms of their own.
inline constexpr LigneLimitee lignesLimiteesAuForfait[] = {
    {"HPR", N2009, 1, 300000}, {"HPW", N2010, 1, 300000}, {"HRI", N2011, 2, 270000}, {"HRO", N2009, 3, 229500},
    {"HRT", N2010, 3, 229500}, {"HRY", N2011, 3, 229500}, {"HNY", N2012, 3, 229500}, {"HSE", N2010, 2, 270000},
    {"HSJ", N2011, 2, 270000}, {"HSO", N2010, 3, 229500}, {"HST", N2011, 3, 229500}, {"HSY", N2012, 3, 229500},
    {"HTD", N2013S, 3, 229500}, {"HAE", N2010, 2, 270000}, {"HAJ", N2011, 2, 270000}, {"HAO", N2010, 3, 229500},
    {"HAT", N2011, 3, 229500}, {"HAY", N2012, 3, 229500}, {"HBG", N2013S, 3, 229500}, {"HBM", N2010, 3, 229500},
    {"HBR", N2011, 3, 229500}, {"HBW", N2012, 3, 229500}, {"HCB", N2013S, 3, 229500}, {"HCG", N2013S, 3, 229500},
    {"HCM", N2012, 3, 229500}, {"HCR", N2013S, 3, 229500}, {"HCW", N2013S, 3, 229500}, {"HDM", N2012, 3, 229500},
    {"HDR", N2013S, 3, 229500}, {"HDW", N2013S, 3, 229500},
};
// clang-format on

static_assert(std::size(lignesSimples) == 60 && std::size(lignesReportees) == 149 &&
              std::size(lignesRemboursables) == 11 && std::size(lignesRetrocedees) == 87 &&
              std::size(lignesLimitees) == 82 && std::size(lignesLimiteesAuForfait) == 30);

}  // namespace kv::outremer
