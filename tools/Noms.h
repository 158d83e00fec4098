#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace outil {

/// Up to three names that look like a mistyped one, the most alike first.
std::vector<std::string_view> LesPlusProches(std::string_view saisi, const std::vector<std::string_view>& noms);
/// "; nearest: a, b"; "" for none.
std::string Liste(const std::vector<std::string>& proches);
/// The list of the names most alike.
std::string Proches(std::string_view saisi, const std::vector<std::string_view>& noms);

/// The name without the difference between capital and small letters (ASCII).
std::string EnMinuscules(std::string_view nom);

}  // namespace outil
