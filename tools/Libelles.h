#pragma once

#include <kv.hpp>
#include <string>

// What amounts and figures are called for a reader.

namespace outil {

/// "S_NET_A_PAYER"; "net" for "".
std::string NomDeFigure(const std::string& figure);
/// What a figure means, in French. For a name that is none: the name.
std::string LibelleDeFigure(const std::string& figure);
/// "Traitements et salaires, déclarant 1"; of "quotient.4.1AJ": "..., exceptionnel (4)".
std::string LibelleDuMontant(const std::string& nom, int32_t entree);

}  // namespace outil
