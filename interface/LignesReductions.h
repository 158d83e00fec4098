#pragma once

#include <string>
#include <vector>

#include "Calcul/cCalcul/Cases.h"

// The reduction tables as they stand, for a reader who compares them with the law.

namespace kv {

/// A line of the tables; texts are "" for what it does not have.
struct LigneReduction {
    CaseSortie sortie;
    bool rendue = false;  ///< a part given back, which adds to the tax
    std::string base;     ///< the entry box; for an overseas share, the reduction that is shared out
    std::string taux, plafond;
    std::string groupe;  ///< of the global cap on advantages
    std::string annees, derniere;
    std::string reports;
};

/// Every line, in the order of imputation. Composed when first asked for; any thread may ask.
const std::vector<LigneReduction>& LignesReductions();
/// The output that shows what is carried of a reduction; none for a line without one.
CaseSortie ReportDe(CaseSortie reduction);
/// A name "reductions.7ZD.taux" of a line that follows the rule of another one: the parameter of that one; "" for none.
std::string RegleDe(std::string_view parametre);

}  // namespace kv
