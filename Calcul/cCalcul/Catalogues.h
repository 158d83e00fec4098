#pragma once

#include <bit>
#include <string>
#include <string_view>

#include "Calcul/cCalcul/Cases.h"
#include "Calcul/cCalcul/Fiches.h"

// The three catalogues as records, and the look-up of a box by name while the program runs.

extern const std::array<CaseEntreeDef, kv::nEntrees> TableEntree;
extern const std::array<CaseSortieDef, kv::nSorties> TableSortie;
extern const std::array<CaseReportDef, kv::nReports> TableReport;

namespace kv {

/// A set of output boxes.
struct Sorties {
    static constexpr std::size_t nMots = (nSorties + 63) / 64;
    std::array<std::uint64_t, nMots> mots{};

    constexpr void Ajoute(CaseSortie c) { mots[Mot(c)] |= Bit(c); }
    constexpr void Retire(CaseSortie c) { mots[Mot(c)] &= ~Bit(c); }
    void Retire(const Sorties& autres) {
        for (std::size_t mot = 0; mot < nMots; ++mot) mots[mot] &= ~autres.mots[mot];
    }

    /// Calls f with the number of each box of the set, in their order; of those only that stand in parmi too.
    template <class Fonction>
    void Parcourt(Fonction f) const {
        for (std::size_t mot = 0; mot < nMots; ++mot) Parcourt(mot, mots[mot], f);
    }
    template <class Fonction>
    void Parcourt(Fonction f, const Sorties& parmi) const {
        for (std::size_t mot = 0; mot < nMots; ++mot) Parcourt(mot, mots[mot] & parmi.mots[mot], f);
    }

  private:
    template <class Fonction>
    static void Parcourt(std::size_t mot, std::uint64_t bits, Fonction f) {
        for (; bits != 0; bits &= bits - 1) f(64 * mot + static_cast<std::size_t>(std::countr_zero(bits)));
    }
    static constexpr std::size_t Mot(CaseSortie c) { return static_cast<std::size_t>(c.numero) / 64; }
    static constexpr std::uint64_t Bit(CaseSortie c) { return std::uint64_t{1} << (c.numero % 64); }
};
/// The outputs that a partial reset clears.
extern const Sorties sortiesRazPartielle;

/// The number of the box with exactly this name, -1 for none.
int NumeroEntree(std::string_view nom);
int NumeroSortie(std::string_view nom);
int NumeroReport(std::string_view nom);
int NumeroEntree(std::u16string_view nom);

}  // namespace kv
