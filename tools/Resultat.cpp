#include "Resultat.h"

#include <algorithm>
#include <array>
#include <iomanip>
#include <nlohmann/json.hpp>
#include <vector>

namespace outil {

namespace {

using Objet = nlohmann::ordered_json;

// The outputs of a return: their values, then their three columns.
using Sorties = std::array<std::vector<int32_t>, 4>;
Sorties SortiesDe(const kv::Return& retour) {
    Sorties sorties;
    for (std::size_t k = 0; k < sorties.size(); ++k) {
        sorties[k].resize(static_cast<std::size_t>(kv::count(KV_OUTPUT)));
        retour.outputs(sorties[k], static_cast<int32_t>(k));
    }
    return sorties;
}

const char* Nom(kv_catalogue catalogue, std::size_t numero) {
    return kv::describe(catalogue, static_cast<int32_t>(numero)).name;
}

Objet SortiesNonNulles(const kv::Return& retour) {
    Objet sorties = Objet::object();
    std::vector<int32_t> valeurs(static_cast<std::size_t>(kv::count(KV_OUTPUT)));
    retour.outputs(valeurs);
    for (std::size_t j = 0; j < valeurs.size(); ++j)
        if (valeurs[j] != 0) sorties[Nom(KV_OUTPUT, j)] = valeurs[j];
    return sorties;
}

Objet SortiesCompletes(const kv::Return& retour) {
    Objet objet = Objet::object();
    const Sorties sorties = SortiesDe(retour);
    for (std::size_t j = 0; j < sorties[0].size(); ++j) {
        const std::string texte = retour.text(static_cast<int32_t>(j));
        if (texte.empty() && std::all_of(sorties.begin(), sorties.end(), [&](const auto& s) { return s[j] == 0; }))
            continue;
        objet[Nom(KV_OUTPUT, j)] = {{"value", sorties[0][j]},
                                    {"c1", sorties[1][j]},
                                    {"c2", sorties[2][j]},
                                    {"c3", sorties[3][j]},
                                    {"detail", texte}};
    }
    return objet;
}

// The boxes of a catalogue that are not 0.
template <class Lecture>
Objet NonNulles(kv_catalogue catalogue, Lecture lecture) {
    Objet objet = Objet::object();
    for (int32_t i = 0, n = kv::count(catalogue); i < n; ++i)
        if (const int32_t valeur = lecture(i)) objet[kv::describe(catalogue, i).name] = valeur;
    return objet;
}

// The year, and the figures that are not those of the year.
Objet Loi(const LoiNommee& loi) {
    Objet objet = {{"year", kv_year()}};
    for (const int32_t p : loi.Changements())
        objet["changes"][kv::describe_parameter(p).name] = FigureJson(loi.loi.get(p));
    return objet;
}

struct Difference {
    std::string nom;
    int32_t avant, apres;
};
std::vector<Difference> Differences(const kv::Return& avant, const kv::Return& apres) {
    std::vector<Difference> differences;
    const auto compare = [&](const std::string& nom, int32_t a, int32_t b) {
        if (a != b) differences.push_back({nom, a, b});
    };
    const Sorties a = SortiesDe(avant), b = SortiesDe(apres);
    for (std::size_t j = 0; j < a[0].size(); ++j)
        for (std::size_t k = 0; k < a.size(); ++k)
            compare(Nom(KV_OUTPUT, j) + (k == 0 ? "" : ".c" + std::to_string(k)), a[k][j], b[k][j]);
    for (int32_t r = 0, n = kv::count(KV_CARRY); r < n; ++r)
        compare(kv::describe(KV_CARRY, r).name, avant.carry(r), apres.carry(r));
    return differences;
}

// What a household pays, or gets back as a negative amount.
int32_t Net(const kv::Return& retour) { return retour["S_NET_A_PAYER"] - retour["S_NET_RESTITUE"]; }

}  // namespace

void EcritComparaison(std::ostream& sortie, const kv::Return& avant, const LoiNommee& loiAvant, const kv::Return& apres,
                      const LoiNommee& loiApres, bool json) {
    const std::vector<Difference> differences = Differences(avant, apres);
    if (json) {
        Objet objet = {{"ok", true},
                       {"version", kv_version()},
                       {"laws", {Loi(loiAvant), Loi(loiApres)}},
                       {"differences", Objet::object()}};
        for (const Difference& d : differences) objet["differences"][d.nom] = {d.avant, d.apres};
        sortie << objet.dump() << '\n';
        return;
    }
    const auto ligne = [&](const std::string& nom, const std::string& a, const std::string& b,
                           const std::string& ecart) {
        const auto largeur = static_cast<int>(std::max<std::size_t>(12, loiApres.nom.size() + 2));
        sortie << std::left << std::setw(32) << nom << std::right << std::setw(12) << a << std::setw(largeur) << b
               << std::setw(14) << ecart << '\n';
    };
    const auto figures = [&](const std::string& nom, int32_t a, int32_t b) {
        const std::int64_t ecart = std::int64_t{b} - a;
        ligne(nom, std::to_string(a), std::to_string(b), (ecart > 0 ? "+" : "") + std::to_string(ecart));
    };
    ligne("", loiAvant.nom, loiApres.nom, "difference");
    figures("to pay, less what is refunded", Net(avant), Net(apres));
    if (differences.empty()) sortie << "Every figure is the same.\n";
    for (const Difference& d : differences) figures(d.nom, d.avant, d.apres);
}

void EcritErreur(std::ostream& sortie, const std::string& message) {
    sortie << Objet{{"ok", false}, {"error", message}}.dump(-1, ' ', false, Objet::error_handler_t::replace) << '\n';
}

void EcritResultat(std::ostream& sortie, const kv::Return& retour, const LoiNommee& loi, Forme forme) {
    if (forme == Forme::Resume) return EcritResume(sortie, retour, loi);
    Objet objet = {{"ok", true}, {"version", kv_version()}, {"law", Loi(loi)}};
    if (const auto messages = retour.warnings(); !messages.empty()) objet["warnings"] = messages;
    if (const kv_options options = retour.options(); options.compared != 0)
        objet["options"] = {{"flat_tax", options.flat_tax}, {"scale", options.scale}};
    if (forme == Forme::Json) {
        objet["outputs"] = SortiesNonNulles(retour);
    } else {
        objet["outputs"] = SortiesCompletes(retour);
        objet["entries"] = NonNulles(KV_ENTRY, [&](int32_t i) { return retour.entry(i); });
        objet["carry_forwards"] = NonNulles(KV_CARRY, [&](int32_t r) { return retour.carry(r); });
    }
    sortie << objet.dump() << '\n';
}

}  // namespace outil
