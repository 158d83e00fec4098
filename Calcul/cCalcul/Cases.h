#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <string_view>

#include "Calcul/cCalcul/CatalogueEntree.h"
#include "Calcul/cCalcul/CatalogueReport.h"
#include "Calcul/cCalcul/CatalogueSortie.h"

// Boxes are named where they are used: S["RN_SAL"]. A name becomes its number when the code is compiled, and an unknown
// name is a compile error. The names are hashed to 64-bit keys and sorted once; the catalogues hold no two equal keys.

namespace kv {

/// Continues the hash of a name (FNV-1a), so that a prefix and a code make a name.
constexpr std::uint64_t Hache(std::string_view texte, std::uint64_t depart = 0xCBF29CE484222325) {
    for (const char c : texte) depart = (depart ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    return depart;
}

/// The names of one catalogue, sorted by key.
template <std::size_t N>
class IndexDesNoms {
  public:
    template <class Nom>
    explicit consteval IndexDesNoms(Nom nom) {
        for (std::size_t i = 0; i < N; ++i) m_rangs[i] = {Hache(nom(i)), static_cast<std::int16_t>(i)};
        std::sort(m_rangs.begin(), m_rangs.end(), [](const Rang& a, const Rang& b) { return a.cle < b.cle; });
        for (std::size_t i = 1; i < N; ++i)
            if (m_rangs[i - 1].cle == m_rangs[i].cle) throw "two boxes with the same key";
    }

    /// The number of the box with this key, -1 for none.
    constexpr int Cherche(std::uint64_t cle) const {
        const auto rang = std::lower_bound(m_rangs.begin(), m_rangs.end(), cle,
                                           [](const Rang& r, std::uint64_t c) { return r.cle < c; });
        return rang != m_rangs.end() && rang->cle == cle ? rang->numero : -1;
    }

  private:
    struct Rang {
        std::uint64_t cle;
        std::int16_t numero;
    };
    std::array<Rang, N> m_rangs{};
};

inline constexpr int nEntrees = 2128;
inline constexpr int nSorties = 2288;
inline constexpr int nReports = 736;
static_assert(std::size(entree::lignes) == nEntrees);
static_assert(std::size(sortie::noms) == nSorties);
static_assert(std::size(report::noms) == nReports);

/// The three catalogues, as the box types below see them.
struct CatalogueEntree {
    static constexpr int nombre = nEntrees;
    static constexpr IndexDesNoms<nEntrees> index{[](std::size_t i) { return entree::lignes[i].nom; }};
};
struct CatalogueSortie {
    static constexpr int nombre = nSorties;
    static constexpr IndexDesNoms<nSorties> index{[](std::size_t i) { return sortie::noms[i]; }};
};
struct CatalogueReport {
    static constexpr int nombre = nReports;
    static constexpr IndexDesNoms<nReports> index{[](std::size_t i) { return report::noms[i]; }};
};

/// A box of one catalogue: its number, or -1 for "no box" in a table that leaves one out.
template <class Catalogue>
struct Case {
    int numero = -1;

    constexpr Case() = default;
    consteval Case(const char* nom) : numero(Catalogue::index.Cherche(Hache(nom))) {
        if (numero < 0) throw "no box has this name";
    }
    /// The box whose name is made of these parts; "no box" when there is none.
    static constexpr Case De(const char* debut, const char* milieu, const char* fin = "") {
        return Numero(Catalogue::index.Cherche(Hache(fin, Hache(milieu, Hache(debut)))));
    }
    /// The same, where the box must exist.
    static constexpr Case Requise(const char* debut, const char* milieu, const char* fin = "") {
        const Case box = De(debut, milieu, fin);
        if (!box) throw "no box has this name";
        return box;
    }
    static constexpr Case Numero(int numero) {
        Case c;
        c.numero = numero;
        return c;
    }
    constexpr explicit operator bool() const { return numero >= 0; }
    /// The box that stands n places further in the catalogue.
    constexpr Case operator+(int n) const { return Numero(numero + n); }
    friend constexpr bool operator==(Case, Case) = default;
};

using CaseEntree = Case<CatalogueEntree>;
using CaseSortie = Case<CatalogueSortie>;
using CaseReport = Case<CatalogueReport>;

/// A set of boxes of one catalogue.
template <class Catalogue>
struct Ensemble {
    static constexpr std::size_t nMots = (Catalogue::nombre + 63) / 64;
    std::array<std::uint64_t, nMots> mots{};

    constexpr bool operator==(const Ensemble&) const = default;
    constexpr bool Contient(Case<Catalogue> c) const { return (mots[Mot(c)] & Bit(c)) != 0; }
    constexpr void Ajoute(Case<Catalogue> c) { mots[Mot(c)] |= Bit(c); }
    constexpr void Retire(Case<Catalogue> c) { mots[Mot(c)] &= ~Bit(c); }
    constexpr void Ajoute(const Ensemble& autres) {
        for (std::size_t mot = 0; mot < nMots; ++mot) mots[mot] |= autres.mots[mot];
    }
    constexpr void Retire(const Ensemble& autres) {
        for (std::size_t mot = 0; mot < nMots; ++mot) mots[mot] &= ~autres.mots[mot];
    }

    /// How many boxes there are.
    constexpr std::size_t Nombre() const {
        std::size_t n = 0;
        for (const std::uint64_t mot : mots)
            if (mot != 0) n += static_cast<std::size_t>(std::popcount(mot));  // most are, and counting calls a function
        return n;
    }
    /// Calls f with the number of each box of the set, in their order; of those only that stand in parmi too.
    template <class Fonction>
    void Parcourt(Fonction f) const {
        for (std::size_t mot = 0; mot < nMots; ++mot) Parcourt(mot, mots[mot], f);
    }
    template <class Fonction>
    void Parcourt(Fonction f, const Ensemble& parmi) const {
        for (std::size_t mot = 0; mot < nMots; ++mot) Parcourt(mot, mots[mot] & parmi.mots[mot], f);
    }

  private:
    template <class Fonction>
    static void Parcourt(std::size_t mot, std::uint64_t bits, Fonction f) {
        for (; bits != 0; bits &= bits - 1) f(64 * mot + static_cast<std::size_t>(std::countr_zero(bits)));
    }
    static constexpr std::size_t Mot(Case<Catalogue> c) { return static_cast<std::size_t>(c.numero) / 64; }
    static constexpr std::uint64_t Bit(Case<Catalogue> c) { return std::uint64_t{1} << (c.numero % 64); }
};
using CasesEntree = Ensemble<CatalogueEntree>;
using CasesSortie = Ensemble<CatalogueSortie>;

/// A set of entry boxes that is known when the code is compiled, to be looked for in the boxes of a return: only the
/// words that hold one of it are compared.
template <std::size_t N>
class BoitesLues {
  public:
    consteval explicit BoitesLues(const CasesEntree& boxes) {
        std::size_t n = 0;
        for (std::size_t mot = 0; mot < CasesEntree::nMots; ++mot)
            if (boxes.mots[mot] != 0) m_mots[n++] = {mot, boxes.mots[mot]};
    }
    constexpr bool UneParmi(const CasesEntree& saisies) const {
        for (const auto& [mot, bits] : m_mots)
            if (saisies.mots[mot] & bits) return true;
        return false;
    }

  private:
    struct Mot {
        std::size_t rang;
        std::uint64_t bits;
    };
    std::array<Mot, N> m_mots{};
};
/// The same, of a constant set.
template <const CasesEntree& boxes>
inline constexpr auto boitesLues = BoitesLues<static_cast<std::size_t>(
    std::count_if(boxes.mots.begin(), boxes.mots.end(), [](std::uint64_t mot) { return mot != 0; }))>(boxes);

/// How many boxes have a mark: the size of the area that holds their slots.
consteval int NombreMarques(entree::Marque marque, int avant = nEntrees) {
    int n = 0;
    for (int i = 0; i < avant; ++i) n += (entree::lignes[i].marques & marque) != 0;
    return n;
}

/// The boxes that have a mark, in catalogue order: box k has slot k of the area.
template <entree::Marque marque>
inline constexpr auto casesMarquees = [] {
    std::array<CaseEntree, static_cast<std::size_t>(NombreMarques(marque))> trouvees{};
    std::size_t n = 0;
    for (int i = 0; i < nEntrees; ++i)
        if (entree::lignes[i].marques & marque) trouvees[n++] = CaseEntree::Numero(i);
    return trouvees;
}();

/// A slot of a companion area, named after the entry box that has it: TI["2DC"].
template <entree::Marque marque>
struct Compagnon {
    int numero;

    consteval Compagnon(const char* nom) : numero(NombreMarques(marque, CaseEntree(nom).numero)) {
        if (!(entree::lignes[CaseEntree(nom).numero].marques & marque)) throw "the box has no slot in this area";
    }
    static constexpr Compagnon Numero(int numero) { return Compagnon(numero); }

  private:
    constexpr explicit Compagnon(int n) : numero(n) {}
};

using CaseTI = Compagnon<entree::TI>;
using CaseTIX = Compagnon<entree::TIX>;
using CaseTK = Compagnon<entree::TK>;
using CaseQuotient = Compagnon<entree::Quotient>;

}  // namespace kv

using kv::CaseEntree;
using kv::CaseReport;
using kv::CaseSortie;
