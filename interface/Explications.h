#pragma once

#include <string>

#include "interface/Cles.h"
#include "interface/Retour.h"

// Why a figure is what it is.

namespace kv {

/// The tree of what makes a figure of a return, which is computed for it, as JSON on one line; kv_explain tells its
/// shape. profondeur: how many levels below the figure, all of them when negative.
std::string Explique(const Demande& demande, const FigureLue& figure, std::int32_t profondeur);

/// The branches of the trees of two returns that differ, as kv_explain_difference tells them.
std::string ExpliqueDifference(const Demande& avant, const Demande& apres, const FigureLue& figure,
                               std::int32_t profondeur);

}  // namespace kv
