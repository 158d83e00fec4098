#pragma once

#include <ostream>
#include <string>

#include "Reforme.h"
#include "Retour.h"

namespace outil {

/// How a result is written.
enum class Forme {
    Resume,   ///< sections that a person reads
    Json,     ///< the non-zero outputs by name, on one line
    Complet,  ///< value, columns and text of every output that has any, the entries, the carry-forwards, on one line
};

/// Writes the results of a return computed under a law.
void EcritResultat(std::ostream& sortie, const kv::Return& retour, const LoiNommee& loi, Forme forme);
/// Writes the figures of one return under two laws where they differ: values, columns ("CO_19.c2"), carry-forwards. As
/// a table, or as JSON on one line.
void EcritComparaison(std::ostream& sortie, const kv::Return& avant, const LoiNommee& loiAvant, const kv::Return& apres,
                      const LoiNommee& loiApres, bool json);
/// Writes an error object, on one line.
void EcritErreur(std::ostream& sortie, const std::string& message);
/// The sections that a person reads.
void EcritResume(std::ostream& sortie, const kv::Return& retour, const LoiNommee& loi);

}  // namespace outil
