#pragma once

#include "Calcul/cCalcul/DataCalcul.h"
#include "Calcul/cCalcul/Fiches.h"
#include "Calcul/pCalculN/Loi.h"
#include "KVCommun/cPeriode/Periode.h"

// The entry points of the computation. None lets an exception out: a failure is reported through the error services.

namespace kv {

/// Computes a return under a law. periode null: the calendar year 2017. tauxIndexation in percent, -1.0 for none.
///
/// With a switch, the options on capital income are simulated: optionsForcees always, optionsSiSaisies when the return
/// sets one. True when the pipeline and the wealth-tax step both completed; after a failure the entries stand as the
/// host gave them and the outputs as far as they were written.
bool Lance(CDataCalcul& data, const TPeriode* periode, bool drapeau, double tauxIndexation, bool optionsForcees = false,
           bool optionsSiSaisies = false, const Loi& loi = loi2017) noexcept;

/// Fills the carry-forward boxes from what the last launch left. The period is not read.
void LanceReports(CDataCalcul& data, const TPeriode* periode, double tauxIndexation) noexcept;

/// Parts, tax and allowances of a household from 24 boxes.
void LanceBareme(const EntreeBareme& entree, SortieBareme& sortie, double tauxIndexation) noexcept;

}  // namespace kv
