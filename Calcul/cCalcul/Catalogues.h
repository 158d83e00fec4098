#pragma once

#include <string>
#include <string_view>

#include "Calcul/cCalcul/Cases.h"
#include "Calcul/cCalcul/Fiches.h"

// The three catalogues as records, and the look-up of a box by name while the program runs.

extern const std::array<CaseEntreeDef, kv::nEntrees> TableEntree;
extern const std::array<CaseSortieDef, kv::nSorties> TableSortie;
extern const std::array<CaseReportDef, kv::nReports> TableReport;

namespace kv {

/// The outputs that a partial reset clears.
extern const CasesSortie sortiesRazPartielle;

/// The number of the box with exactly this name, -1 for none.
int NumeroEntree(std::string_view nom);
int NumeroSortie(std::string_view nom);
int NumeroReport(std::string_view nom);
int NumeroEntree(std::u16string_view nom);

}  // namespace kv
