#pragma once

#include <cstdint>
#include <string>

#include "Progression.h"
#include "Resultat.h"

// Many returns in JSON, one a line.

namespace outil {

struct DemandeLot {
    std::string entree, sortie;  ///< files, or the standard streams
    Forme forme = Forme::Json;
    std::int32_t threads = 0;  ///< 0: one a processor
    Bavardage bavardage = Bavardage::Ordinaire;
};

/// Writes one result a line, in the order of the lines; an error object for a line that can't be read or computed. What
/// a return warns of goes to standard error. Memory does not grow with the number of lines. Whether all could be
/// computed. Throws ErreurEntree for a file that can't be read or written.
bool CalculeLot(const DemandeLot& demande, const LoiNommee& loi);

}  // namespace outil
