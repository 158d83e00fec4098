#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace outil {

/// "; nearest: a, b": up to three names that look like a mistyped one, the most alike first; "" when none does.
std::string Proches(std::string_view saisi, const std::vector<std::string_view>& noms);

/// The name without the difference between capital and small letters (ASCII).
std::string EnMinuscules(std::string_view nom);

}  // namespace outil
