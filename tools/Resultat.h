#pragma once

#include <ostream>
#include <string>

#include "tools/Reforme.h"
#include "tools/Retour.h"

namespace outil {

/// How a result is written.
enum class Forme {
    Resume,   ///< sections that a person reads
    Json,     ///< the non-zero outputs by name, on one line
    Complet,  ///< value, columns and text of every output that has any, the entries, the carry-forwards, on one line
};

/// Writes the result of a return computed under a law.
void EcritResultat(std::ostream& sortie, Retour& retour, const LoiNommee& loi, bool reussi, Forme forme);
/// Writes the figures of one return under two laws where they differ: values, columns ("CO_19.c2"), carry-forwards. The
/// second computation did not see the first one's figures. As a table, or as JSON on one line.
void EcritComparaison(std::ostream& sortie, const CDataCalcul& avant, const LoiNommee& loiAvant,
                      const CDataCalcul& apres, const LoiNommee& loiApres, bool json);
/// Writes an error object, on one line.
void EcritErreur(std::ostream& sortie, const std::string& message);
/// The sections that a person reads.
void EcritResume(std::ostream& sortie, const CDataCalcul& data, const LoiNommee& loi);
/// The rows of the reduction tables, in the order of imputation, tab-separated: output, entry, rate, ceiling, year
/// group of the global cap, years, last year, boxes of next year's return; "-" for none.
void EcritReductions(std::ostream& sortie);

}  // namespace outil
