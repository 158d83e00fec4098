#pragma once

#include <kv.hpp>
#include <nlohmann/json_fwd.hpp>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

// A reform: figures of the law that a file changes.

namespace outil {

/// A law and how a reader calls it.
struct LoiNommee {
    kv::Law loi;
    std::string nom = std::to_string(kv_year());  ///< the year, or the file of the reform

    /// The numbers of the parameters that are not those of the year.
    std::vector<int32_t> Changements() const;
};

/// Lays the figures of a JSON object, name to value, over the law of the year. Throws ErreurEntree for a name that is
/// no parameter, a value that the parameter can't take, or brackets that do not ascend; fichier is for the messages.
LoiNommee LisReforme(std::string_view json, const std::string& fichier);

/// A figure as a reader writes it: a whole number as an integer, others with their decimals.
nlohmann::ordered_json FigureJson(double figure);
/// The same as text.
std::string Decimal(double figure);

/// Lists the parameters whose name or source contains a text: name, value, unit, whether indexed, source.
void EcritLoi(std::ostream& sortie, const std::string& motif, bool json);

}  // namespace outil
