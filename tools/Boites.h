#pragma once

#include <ostream>
#include <string>
#include <string_view>

#include "Calcul/cCalcul/Cases.h"

// The boxes and what they mean.

namespace outil {

/// Every box of the three catalogues, one line each, tab-separated.
void EcritCatalogues(std::ostream& sortie);
/// The boxes whose name contains a text or whose label contains its words, one block each. Whether there is one.
bool EcritBoites(std::ostream& sortie, std::string_view motif);
/// The same boxes as a JSON array, one object a line; all of them for an empty text.
void EcritBoitesJson(std::ostream& sortie, std::string_view motif);
/// docs/boxes.md: every box with its meaning, part by part.
void EcritBoitesMarkdown(std::ostream& sortie);
/// The JSON Schema of a return.
void EcritSchema(std::ostream& sortie);

/// "; nearest: 1AJ (Traitements et salaires)", of the entry boxes whose name looks like a mistyped one; "" for none.
std::string BoitesProches(std::string_view saisi);

}  // namespace outil
