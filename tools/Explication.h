#pragma once

#include <kv.hpp>
#include <ostream>
#include <string>

// Why a figure is what it is, as a tree. A figure is named as in kv.h; "" is the net amount.

namespace outil {

/// The tree of a figure, profondeur levels of it, all of them when negative; as text or as the JSON of kv_explain.
/// Throws ErreurEntree for an unknown figure.
void EcritExplication(std::ostream& sortie, const kv::Return& retour, const std::string& figure, int profondeur,
                      bool json);
/// The branches of two trees that differ, and by how much.
void EcritDifferences(std::ostream& sortie, const kv::Return& avant, const kv::Return& apres, const std::string& figure,
                      int profondeur, bool json);

}  // namespace outil
