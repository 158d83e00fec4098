#pragma once

#include <cstdint>

#include "Calcul/pCalculN/Contexte.h"

// How the meaning of a box is written down: one row for all boxes that mean the same of different persons.

namespace kv::sens {

/// What a box holds.
enum class Genre : std::uint8_t {
    Euros,
    Nombre,  ///< a count; parts and persons in hundredths or tenths where the label says so
    Coche,   ///< 1 when ticked
    Code,    ///< a number that stands for a choice
    Date,    ///< AAAAMMJJ
    Annee,   ///< AAAA
    Taux,    ///< hundredths of a percent, unless the label says otherwise
    Marque,  ///< a mark for the layout of a printed result: 1 when its section has something to show
};

/// The part of the return that an entry box stands in.
enum class Groupe : std::uint8_t {
    Foyer,
    SalairesPensions,
    Mobiliers,
    PlusValues,
    Foncier,
    NonSalaries,
    Charges,
    ReductionsCredits,
    OutreMer,
    Divers,
    Fortune,
    HorsCalcul,
};

/// Entry boxes of one meaning, a space between them.
struct LigneEntree {
    const char* boites;
    const char* libelle;
    Genre genre = Genre::Euros;
};

/// What the three columns of an output hold; "" for one that is not written.
struct Colonnes {
    const char *c1 = "", *c2 = "", *c3 = "";
};
inline constexpr Colonnes aucune = {};
inline constexpr Colonnes parPersonne = {"déclarant 1", "déclarant 2", "personnes à charge"};
inline constexpr Colonnes baseEtTaux = {"", "base", "taux (centièmes de %)"};
inline constexpr Colonnes declareRetenuTaux = {"montant déclaré", "montant retenu", "taux (centièmes de %)"};
inline constexpr Colonnes reduction = {"base déclarée", "base retenue", "taux (%)"};
inline constexpr Colonnes bareme = {"parts (centièmes)", "revenu imposé", "taux marginal (centièmes de %)"};
inline constexpr Colonnes troisPrelevements = {"prélèvements de solidarité et assimilés", "CSG", "CRDS"};

/// An output box. Its columns are those of its family unless the row says otherwise.
struct LigneSortie {
    const char* sortie;
    const char* libelle;
    Genre genre = Genre::Euros;
    const Colonnes* colonnes = nullptr;
};

}  // namespace kv::sens
