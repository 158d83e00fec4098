#include "Effets.h"

#include <cstdio>
#include <iomanip>
#include <nlohmann/json.hpp>

#include "Libelles.h"

namespace outil {

namespace {

const char* OuNet(const std::string& figure) { return figure.empty() ? nullptr : figure.c_str(); }

// "+26"
std::string Signe(std::int64_t ecart) { return (ecart > 0 ? "+" : "") + std::to_string(ecart); }

std::string Decimales(double nombre, int n) {
    char texte[64];
    std::snprintf(texte, sizeof texte, "%.*f", n, nombre);
    return texte;
}

}  // namespace

kv_range Intervalle(const DemandeCourbe& demande) {
    kv_range range{};
    range.amount = demande.montant.c_str();
    range.from = demande.de, range.to = demande.a, range.step = demande.pas;
    range.figure = OuNet(demande.figure);
    return range;
}

void EcritEffets(std::ostream& sortie, const kv::Return& retour, const std::string& figure, bool json) {
    const kv::Return::Effects effets = Demande([&] { return retour.effects(OuNet(figure)); });
    if (json) {
        auto liste = nlohmann::ordered_json::array();
        for (const kv_effect& e : effets.amounts)
            liste.push_back({{"name", e.name},
                             {"label", LibelleDuMontant(e.name, e.entry)},
                             {"amount", e.amount},
                             {"without", e.without},
                             {"change", e.change},
                             {"changed", e.changed}});
        const nlohmann::ordered_json objet = {{"version", 1},
                                              {"figure", NomDeFigure(figure)},
                                              {"label", LibelleDeFigure(figure)},
                                              {"value", effets.value},
                                              {"effects", std::move(liste)}};
        sortie << objet.dump() << '\n';
        return;
    }
    sortie << LibelleDeFigure(figure) << " (" << NomDeFigure(figure) << "): " << effets.value << '\n';
    if (effets.amounts.empty()) return;
    sortie << '\n'
           << std::setw(16) << std::left << "amount" << std::right << std::setw(12) << "" << std::setw(24)
           << "without it" << std::setw(28) << "with more" << '\n';
    for (const kv_effect& e : effets.amounts) {
        const auto ecart = [&](std::int32_t change) { return '(' + Signe(std::int64_t{change} - effets.value) + ')'; };
        sortie << std::setw(16) << std::left << e.name << std::right << std::setw(12) << e.amount << std::setw(12)
               << e.without << std::setw(12) << ecart(e.without);
        if (e.change != 0)
            sortie << std::setw(6) << Signe(e.change) << ':' << std::setw(11) << e.changed << std::setw(10)
                   << ecart(e.changed);
        else
            sortie << std::setw(28) << "";
        sortie << "  " << LibelleDuMontant(e.name, e.entry) << '\n';
    }
}

void EcritCourbe(std::ostream& sortie, const kv::Return& retour, const DemandeCourbe& demande) {
    const kv::Return::Curve courbe = Demande([&] { return retour.curve(Intervalle(demande)); });
    sortie << demande.montant << ',' << NomDeFigure(demande.figure) << ",average,marginal\n";
    for (std::size_t i = 0; i < courbe.amounts.size(); ++i)
        sortie << courbe.amounts[i] << ',' << courbe.values[i] << ',' << Decimales(courbe.average[i], 6) << ','
               << Decimales(courbe.marginal[i], 6) << '\n';
}

void EcritMorceaux(std::ostream& sortie, const kv::Return& retour, const DemandeCourbe& demande) {
    sortie << "from,to,rate,value\n";
    for (const kv_piece& p : Demande([&] { return retour.breaks(Intervalle(demande)); }))
        sortie << p.from << ',' << p.to << ',' << Decimales(p.rate, 9) << ',' << p.value << '\n';
}

}  // namespace outil
