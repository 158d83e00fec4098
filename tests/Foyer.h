#pragma once

#include <source_location>
#include <sstream>
#include <string>

#include "Calcul/cCalcul/Catalogues.h"
#include "tests/Retour.h"

namespace test {

/// A return written in short, for the rows of a table: "M Fm=2 1AJ=42000"; a box alone is ticked.
inline Retour Foyer(const std::string& boxes) {
    Retour retour;
    std::istringstream texte(boxes);
    for (std::string mot; texte >> mot;) {
        const std::size_t egal = std::min(mot.find('='), mot.size());
        const int numero = kv::NumeroEntree(std::string_view(mot).substr(0, egal));
        if (numero < 0) throw std::invalid_argument(mot);
        retour.Data().Entree[CaseEntree::Numero(numero)] = egal < mot.size() ? std::stoi(mot.substr(egal + 1)) : 1;
    }
    return retour;
}

template <class Case>
struct Valeur {
    Case box;
    std::int32_t valeur;
};

/// Compares several boxes at once, outputs or entries.
template <class Case, int N>
void Attend(const kv::Zone<Case, N>& zone, std::initializer_list<Valeur<std::type_identity_t<Case>>> valeurs,
            const std::string& quoi = "", std::source_location ici = std::source_location::current()) {
    for (const auto& [box, valeur] : valeurs) {
        if (zone[box] == valeur) continue;
        const auto numero = static_cast<std::size_t>(box.numero);
        const auto* nom = N == kv::nEntrees ? TableEntree[numero % kv::nEntrees].Nom : TableSortie[numero].Nom;
        ADD_FAILURE_AT(ici.file_name(), static_cast<int>(ici.line()))
            << kv::VersUtf8(nom) << " is " << zone[box] << ", not " << valeur << "  " << quoi;
    }
}
inline void Attend(const Resultat& r, std::initializer_list<Valeur<CaseSortie>> valeurs, const std::string& quoi = "",
                   std::source_location ici = std::source_location::current()) {
    Attend(r.Data().Sortie, valeurs, quoi, ici);
}

}  // namespace test

using test::Attend;
using test::Foyer;
