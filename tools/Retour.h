#pragma once

#include <kv.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "ErreurEntree.h"

// A return as a file describes it.

namespace outil {

/// Reads a return from JSON. fichier and premiereLigne say where the text stands, for the messages.
/// Throws ErreurEntree for anything that is not exactly a return.
kv::Return LisRetour(std::string_view json, const std::string& fichier, int premiereLigne = 1);

/// The launches by the names that a return may give them.
std::vector<std::string> NomsDesLancements();
/// The launch with this name. Throws ErreurEntree, with the names there are, when there is none.
kv_launch LancementDeNom(const std::string& nom);

}  // namespace outil
