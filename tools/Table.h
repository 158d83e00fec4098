#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Progression.h"
#include "Reforme.h"

// Millions of returns: a table in, a table out.

namespace outil {

/// What is asked for.
struct DemandeTable {
    std::string entree, sortie;        ///< files, or the standard streams
    std::vector<std::string> figures;  ///< the outputs wanted
    kv_launch lancement = KV_LAUNCH_NORMAL;
    std::int32_t threads = 0;          ///< 0: one a processor
    std::int32_t part = 1, parts = 1;  ///< of the rows, every parts-th one from the part-th
    bool reprend = false;              ///< goes on with a result that was cut short, in a file
    Bavardage bavardage = Bavardage::Ordinaire;
};

/// Computes each row of a wide CSV. The header names boxes, companions and exceptional amounts as kv.h does; a column
/// that is none of them passes through. Writes what passed through, the figures and a status: empty, or why the row
/// could not be computed. Memory does not grow with the number of rows. How many rows could not be computed. Throws
/// ErreurEntree for a header that can't be used and for a file that can't be read or written.
std::int64_t CalculeTable(const DemandeTable& demande, const LoiNommee& loi);

}  // namespace outil
