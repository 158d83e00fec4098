#pragma once

#include <kv.hpp>
#include <map>
#include <string>
#include <vector>

// A return and its figures as lines of text, to be compared between builds and interfaces.

namespace test {

/// The outputs with a value, a column or a text, one a line: "RN_SAL 27000 27000 0 0", then the text.
inline std::string Sorties(const kv::Return& r) {
    const auto n = static_cast<std::size_t>(kv::count(KV_OUTPUT));
    std::vector<std::int32_t> colonnes[4];
    for (std::int32_t k = 0; k < 4; ++k) {
        colonnes[k].resize(n);
        r.outputs(colonnes[k], k);
    }
    std::string figures;
    for (std::size_t j = 0; j < n; ++j) {
        const std::string texte = r.text(static_cast<std::int32_t>(j));
        bool vide = texte.empty();
        for (const auto& colonne : colonnes) vide = vide && colonne[j] == 0;
        if (vide) continue;
        figures += kv::describe(KV_OUTPUT, static_cast<std::int32_t>(j)).name;
        for (const auto& colonne : colonnes) figures += ' ' + std::to_string(colonne[j]);
        figures += (texte.empty() ? "" : ' ' + texte) + '\n';
    }
    return figures;
}

/// Everything that a computation found: the outputs, the entry boxes as the launch left them, and those of next year's
/// return.
inline std::string Figures(const kv::Return& r) {
    std::string figures = Sorties(r);
    const auto zone = [&](kv_catalogue catalogue, const auto& lit) {
        for (std::int32_t i = 0, n = kv::count(catalogue); i < n; ++i)
            if (const std::int32_t v = lit(i); v != 0)
                figures += kv::describe(catalogue, i).name + (' ' + std::to_string(v)) + '\n';
    };
    zone(KV_ENTRY, [&](std::int32_t i) { return r.entry(i); });
    zone(KV_CARRY, [&](std::int32_t i) { return r.carry(i); });
    return figures;
}

/// What a return holds in the notation of the tests, but for its law.
inline std::string Boites(const kv::Return& r) {
    static constexpr const char* aires[] = {"", "ti.", "tix.", "tiy.", "tk.", "tkz."};
    std::string boites;
    const auto ajoute = [&](const std::string& nom, std::int32_t v) {
        if (v != 0) boites += nom + '=' + (v == KV_UNSET ? "unset" : std::to_string(v)) + ' ';
    };
    for (std::int32_t i = 0, n = kv::count(KV_ENTRY); i < n; ++i) {
        const std::string nom = kv::describe(KV_ENTRY, i).name;
        for (kv_area aire = KV_AREA_ENTRY; aire <= KV_AREA_TKZ; ++aire) {
            std::int32_t v = 0;
            if (kv_get_box(r.handle(), aire, i, &v) == KV_OK) ajoute(aires[aire] + nom, v);
        }
    }
    for (const auto& [box, coefficient, montant] : r.exceptional())
        ajoute("quotient." + std::to_string(coefficient) + '.' + kv::describe(KV_ENTRY, box).name, montant);
    static constexpr const char* lancements[] = {"", "launch=options ", "launch=forced ", "launch=forced+options "};
    return boites + lancements[r.launch()];
}

/// "2017-03-15".
inline std::string DateIso(std::int32_t date) {
    std::string texte = std::to_string(date);
    return '"' + texte.insert(6, "-").insert(4, "-") + '"';
}

/// The return as the command line reads it, on one line, but for its law.
inline std::string Document(const kv::Return& r) {
    static constexpr const char* aires[] = {"entries", "ti", "tix", "tiy", "tk", "tkz"};
    std::string document = "{";
    for (kv_area aire = KV_AREA_ENTRY; aire <= KV_AREA_TKZ; ++aire) {
        std::string section;
        for (std::int32_t i = 0; i < kv::count(KV_ENTRY); ++i) {
            std::int32_t v = 0;
            if (kv_get_box(r.handle(), aire, i, &v) != KV_OK || v == 0) continue;
            section += (section.empty() ? "\"" : ",\"") + std::string(kv::describe(KV_ENTRY, i).name) +
                       "\":" + std::to_string(v);
        }
        if (aire == KV_AREA_ENTRY || !section.empty())
            document += (aire == KV_AREA_ENTRY ? "\"" : ",\"") + std::string(aires[aire]) + "\":{" + section + '}';
    }
    std::map<std::string, std::string> quotients;
    for (const auto& [box, coefficient, montant] : r.exceptional()) {
        std::string& montants = quotients[kv::describe(KV_ENTRY, box).name];
        montants += (montants.empty() ? "\"" : ",\"") + std::to_string(coefficient) + "\":" + std::to_string(montant);
    }
    std::string section;
    for (const auto& [nom, montants] : quotients)
        section += (section.empty() ? "\"" : ",\"") + nom + "\":{" + montants + '}';
    if (!section.empty()) document += ",\"quotients\":{" + section + '}';
    static constexpr const char* lancements[] = {"normal", "options", "forced", "forced-options"};
    document += std::string(",\"launch\":\"") + lancements[r.launch()] + '"';
    if (r.indexation() != -1.0) document += ",\"indexation\":" + std::to_string(r.indexation());
    const auto [debut, fin] = r.period();
    if (debut != 20170101 || fin != 20171231) document += ",\"period\":[" + DateIso(debut) + ',' + DateIso(fin) + ']';
    return document + '}';
}

}  // namespace test
