#pragma once

#include <span>
#include <vector>

#include "tests/Retour.h"

// Tables of cases: a return, and the figures that the law gives for it.

namespace test {

/// A figure to find: the value of an output, or one of its columns.
struct Attendu {
    CaseSortie sortie;
    std::int32_t valeur;
    std::size_t colonne = 0;  ///< 0: the value
};

struct Cas {
    Cas(const char* t, Retour&& r, std::vector<Attendu> a) : titre(t), retour(std::move(r)), attendus(std::move(a)) {}
    Cas(const char* t, Retour& r, std::vector<Attendu> a) : Cas(t, std::move(r), std::move(a)) {}

    const char* titre;
    Retour retour;
    std::vector<Attendu> attendus;
};

inline void Verifie(const Resultat& r, std::span<const Attendu> attendus) {
    EXPECT_TRUE(r.Reussi());
    for (const auto& [sortie, valeur, colonne] : attendus)
        EXPECT_EQ(colonne ? r.C(colonne, sortie) : r[sortie], valeur)
            << kv::sortie::noms[sortie.numero] << ", column " << colonne;
}

inline void VerifieCas(std::span<Cas> cas) {
    for (Cas& c : cas) {
        SCOPED_TRACE(c.titre);
        Verifie(c.retour.Calcule(), c.attendus);
    }
}

}  // namespace test

using test::Attendu;
using test::Cas;
using test::VerifieCas;
