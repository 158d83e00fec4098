#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <kv.hpp>
#include <optional>
#include <source_location>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// Returns and figures as every test writes them, in the names of kv.h:
//
//     M Fm=2 1AJ=42000 1AK=unset ti.1AW=500 quotient.4.1AJ=8000 launch=options indexation=2
//     TOT_R_IMPOS=37800 RN_SAL.c=37800,0,0 RN_PEN.c2=-5 C_CSG_MOB="5.1% x 1000" F11_6FL=12
//
// A box alone is ticked. An amount may be a sum, 7793-500. `.c` stands for the three columns, a quoted value for the
// text of a figure.

namespace test {

/// The words of a line: what stands between spaces, a quoted text as part of its word.
inline std::vector<std::string_view> Mots(std::string_view ligne) {
    std::vector<std::string_view> mots;
    for (std::size_t i = 0; (i = ligne.find_first_not_of(' ', i)) < ligne.size();) {
        std::size_t fin = i;
        for (bool cite = false; fin < ligne.size() && (cite || ligne[fin] != ' '); ++fin) cite ^= ligne[fin] == '"';
        mots.push_back(ligne.substr(i, fin - i));
        i = fin;
    }
    return mots;
}

/// A word "name=value"; the value of a name alone is "1".
struct Affectation {
    explicit Affectation(std::string_view mot) : nom(mot.substr(0, mot.find('='))) {
        if (nom.size() < mot.size()) valeur = mot.substr(nom.size() + 1);
    }
    std::string nom;
    std::string_view valeur = "1";
};

inline std::invalid_argument Illisible(std::string_view valeur) {
    return std::invalid_argument('"' + std::string(valeur) + "\" is no amount");
}

/// "1200", "-5", "7793-500", "unset".
inline std::int32_t Montant(std::string_view texte) {
    if (texte == "unset") return KV_UNSET;
    std::int32_t somme = 0;
    const char *p = texte.data(), *fin = p + texte.size();
    do {
        if (p != texte.data() && p != fin && *p == '+') ++p;
        std::int32_t terme = 0;
        const auto [suite, erreur] = std::from_chars(p, fin, terme);
        if (erreur != std::errc{} || (suite != fin && *suite != '+' && *suite != '-')) throw Illisible(texte);
        somme += terme;
        p = suite;
    } while (p != fin);
    return somme;
}

inline double Nombre(std::string_view texte) {
    double nombre = 0;
    const auto [suite, erreur] = std::from_chars(texte.data(), texte.data() + texte.size(), nombre);
    if (erreur != std::errc{} || suite != texte.data() + texte.size()) throw Illisible(texte);
    return nombre;
}

inline constexpr std::string_view lancements[] = {"normal", "options", "forced", "forced+options"};

/// Sets what the words of a line say; an unknown name throws, and names the nearest.
inline void Remplit(kv::Return& r, std::string_view boxes) {
    for (const std::string_view mot : Mots(boxes)) {
        const Affectation a(mot);
        if (a.nom == "launch") {
            const auto* const nom = std::find(std::begin(lancements), std::end(lancements), a.valeur);
            if (nom == std::end(lancements)) throw Illisible(a.valeur);
            r.set_launch(static_cast<kv_launch>(nom - lancements));
        } else if (a.nom == "indexation") {
            r.set_indexation(Nombre(a.valeur));
        } else if (a.nom == "period") {  // 20170101-20170630
            r.set_period(Montant(a.valeur.substr(0, 8)),
                         Montant(a.valeur.substr(std::min(a.valeur.size(), std::size_t{9}))));
        } else if (a.nom.starts_with("law.")) {
            r.set_law(r.law().set(a.nom.substr(4), Nombre(a.valeur)));
        } else {
            r.set(a.nom, Montant(a.valeur));
        }
    }
}

/// A return, not yet computed.
inline kv::Return Foyer(std::string_view boxes) {
    kv::Return r;
    Remplit(r, boxes);
    return r;
}

/// The three columns of an output, to compare at once.
inline std::vector<std::int32_t> Colonnes(const kv::Return& r, const std::string& sortie) {
    return {r[sortie + ".c1"], r[sortie + ".c2"], r[sortie + ".c3"]};
}

/// Compares figures of a computed return with those that the words of a line expect.
inline void Attend(const kv::Return& r, std::string_view figures, const std::string& quoi, const char* fichier,
                   int ligne) {
    const auto compare = [&](const auto& trouve, const auto& attendu, const std::string& nom) {
        if (trouve != attendu)
            ADD_FAILURE_AT(fichier, ligne) << nom << " is " << trouve << ", not " << attendu << "  " << quoi;
    };
    for (const std::string_view mot : Mots(figures)) {
        const Affectation a(mot);
        std::string_view valeur = a.valeur;
        if (valeur.starts_with('"')) {
            compare('"' + r.text(a.nom) + '"', std::string(valeur), a.nom);
        } else if (a.nom.ends_with(".c")) {
            for (char colonne = '1'; colonne <= '3'; ++colonne) {
                const std::string_view attendu = valeur.substr(0, valeur.find(','));
                compare(r[a.nom + colonne], Montant(attendu), a.nom + colonne);
                valeur.remove_prefix(std::min(attendu.size() + 1, valeur.size()));
            }
        } else {
            compare(r[a.nom], Montant(valeur), a.nom);
        }
    }
}
inline void Attend(const kv::Return& r, std::string_view figures, const std::string& quoi = "",
                   std::source_location ici = std::source_location::current()) {
    Attend(r, figures, quoi, ici.file_name(), static_cast<int>(ici.line()));
}
/// The same of a household that is computed first.
inline void Attend(std::string_view boxes, std::string_view figures,
                   std::source_location ici = std::source_location::current()) {
    Attend(Foyer(boxes).compute(), figures, std::string(boxes), ici);
}

}  // namespace test

using test::Attend;
using test::Colonnes;
using test::Foyer;
