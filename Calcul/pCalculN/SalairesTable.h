#pragma once

#include <algorithm>

#include "Calcul/cCalcul/Cases.h"
#include "Calcul/pCalculN/Memoire.h"

// Salaries and pensions: which boxes are whose.

namespace kv::salaires {

/// What one member of the household declares. A member beyond the form's columns has fewer boxes.
struct Membre {
    CaseEntree salaires[4];
    CaseEntree fraisReels;
    CaseEntree plancherMajore;  ///< long-term unemployed: the raised floor of the flat deduction
    CaseEntree pensions[4];
    CaseEntree gains[2];  ///< share gains taxed as salaries
};

inline constexpr Membre membres[nMembres] = {
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

/// The column of a member: the declarants each their own, the dependants together.
constexpr std::size_t ColonneDe(std::size_t membre) { return std::min<std::size_t>(membre, 2); }

}  // namespace kv::salaires
