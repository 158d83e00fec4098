#pragma once

#include <string>
#include <string_view>
#include <vector>

// Names that a reader mistyped, and those that were meant.

namespace kv {

/// The ranks of up to three names that look like a mistyped one, the most alike first.
std::vector<std::size_t> LesPlusProches(std::string_view saisi, const std::vector<std::string_view>& noms);
/// "; nearest: a, b"; "" for none.
std::string Liste(const std::vector<std::string>& proches);

/// The name without the difference between capital and small letters (ASCII).
std::string EnMinuscules(std::string_view nom);

}  // namespace kv
