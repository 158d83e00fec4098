#pragma once

#include <ostream>
#include <string>
#include <string_view>

// The boxes and what they mean.

namespace outil {

/// Every box of the three catalogues, one line each, tab-separated.
void EcritCatalogues(std::ostream& sortie);
/// The boxes whose name contains a text or whose label contains its words, one block each. Whether there is one.
bool EcritBoites(std::ostream& sortie, const std::string& motif);
/// The same boxes as a JSON array, one object a line; all of them for an empty text.
void EcritBoitesJson(std::ostream& sortie, const std::string& motif);
/// docs/boxes.md: every box with its meaning, part by part.
void EcritBoitesMarkdown(std::ostream& sortie);
/// The rows of the reduction tables, in the order of imputation, tab-separated: output, entry, rate, ceiling, year
/// group of the global cap, years, last year, boxes of next year's return; "-" for none.
void EcritReductions(std::ostream& sortie);
/// The JSON Schema of a return.
void EcritSchema(std::ostream& sortie);

/// "; nearest: 1AJ (Traitements et salaires)", of the entry boxes whose name looks like a mistyped one; "" for none.
std::string BoitesProches(const std::string& saisi);

}  // namespace outil
