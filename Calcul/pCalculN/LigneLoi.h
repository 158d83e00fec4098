#pragma once

#include <cstdint>

// How a parameter of the law is written down: one row with its name, its value, its unit and its legal source.

namespace kv {

/// What a parameter counts, and what its value stands for in a computation.
enum class Unite : std::uint8_t {
    Euros,     ///< whole euros
    Pourcent,  ///< hundredths of a percent
    Annees,    ///< whole years
    Nombre,    ///< hundredths: of a part, of a multiple
};

/// A parameter of the law.
struct LigneLoi {
    const char* nom;  ///< dotted: "decote.plafond.couple"
    Unite unite;
    std::int32_t valeur;  ///< in the unit
    bool indexe;          ///< rises with the indexation rate of a launch
    const char* source;   ///< legal source; empty where it is not certain
};

/// A value with at most two decimals, in hundredths.
consteval std::int32_t Centiemes(double x) {
    const auto n = static_cast<std::int32_t>(100 * x + 0.5);
    if (n / 100.0 != x) throw "more than two decimals";
    return n;
}

// ---- The rows of a law, by unit.

consteval LigneLoi Euros(const char* nom, std::int32_t montant, const char* source = "") {
    return {nom, Unite::Euros, montant, false, source};
}
/// Euros that the indexation of a launch raises.
consteval LigneLoi Indexe(const char* nom, std::int32_t montant, const char* source = "") {
    return {nom, Unite::Euros, montant, true, source};
}
consteval LigneLoi Pourcent(const char* nom, double taux, const char* source = "") {
    return {nom, Unite::Pourcent, Centiemes(taux), false, source};
}
consteval LigneLoi Annees(const char* nom, std::int32_t annees, const char* source = "") {
    return {nom, Unite::Annees, annees, false, source};
}
consteval LigneLoi Nombre(const char* nom, double nombre, const char* source = "") {
    return {nom, Unite::Nombre, Centiemes(nombre), false, source};
}

}  // namespace kv
