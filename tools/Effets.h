#pragma once

#include <kv.hpp>
#include <ostream>
#include <string>

#include "ErreurEntree.h"

// What would change a figure. A figure is named as in kv.h; "" is the net amount.

namespace outil {

/// Calls f; what kv.h refuses there is bad input.
template <class Fonction>
auto Demande(Fonction f) {
    try {
        return f();
    } catch (const kv::Error& e) {
        if (e.status() == KV_NO_MEMORY || e.status() == KV_FAILED) throw;
        throw ErreurEntree(e.what());
    }
}

/// What each amount of a return does to a figure, as a table or as JSON on one line. Throws ErreurEntree for an unknown
/// figure.
void EcritEffets(std::ostream& sortie, const kv::Return& retour, const std::string& figure, bool json);

/// What is looked at, from where to where.
struct DemandeCourbe {
    std::string montant, figure;
    std::int32_t de = 0, a = 0, pas = 1;
};
kv_range Intervalle(const DemandeCourbe& demande);
/// The figure, its average and its marginal rate as an amount grows, as CSV. Throws ErreurEntree for names and bounds
/// that can't be used, as the two below.
void EcritCourbe(std::ostream& sortie, const kv::Return& retour, const DemandeCourbe& demande);
/// The same as a picture, SVG: axes, units, the jumps with their amounts, for light and dark pages.
void DessineCourbe(std::ostream& sortie, const kv::Return& retour, const DemandeCourbe& demande);
/// The straight pieces of the figure, as CSV.
void EcritMorceaux(std::ostream& sortie, const kv::Return& retour, const DemandeCourbe& demande);

}  // namespace outil
