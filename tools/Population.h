#pragma once

#include <cstdint>
#include <string>

namespace outil {

/// Writes a made-up population of plausible households as CSV: id, weight, entry boxes. docs/populations.md tells the
/// distributions. A household follows from the seed and its id alone. Throws ErreurEntree when the result can't be
/// written.
void EcritPopulation(const std::string& sortie, std::int64_t foyers, std::uint64_t graine);

}  // namespace outil
