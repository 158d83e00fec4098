#pragma once

#include <array>
#include <cstdint>
#include <memory_resource>
#include <vector>

// What the steps keep from one run to the next of a computation; all of it begins at 0 with each "1:Calcul".

namespace kv {

/// One declarant, or all dependants together: the three columns of a per-person line.
inline constexpr int nPersonnes = 3;
/// The declarants and the nine dependants.
inline constexpr int nMembres = 11;

/// What a normal pass found for one member of the household; the TK pass takes its share of it.
struct MemoireSalaires {
    std::int32_t salaires = 0, deduction = 0, fraisRetenus = 0, pensions = 0, abattement = 0;
    bool operator==(const MemoireSalaires&) const = default;
};

/// Receipts of one kind under a micro regime, and the allowance on them.
struct RecettesMicro {
    std::int32_t recettes = 0, abattement = 0;
    bool operator==(const RecettesMicro&) const = default;
};

/// What the passes over the income leave for later ones.
struct MemoirePasses {
    std::array<std::array<RecettesMicro, 4>, nPersonnes> microBic{};  ///< sales and services, professional then not
    std::array<std::array<RecettesMicro, 2>, nPersonnes> microBnc{};  ///< professional, non-professional
    std::array<std::int32_t, 3> deficitsPerdus{};                     ///< lapsed deficits by non-professional category
    std::int32_t baseMobiliers = 0;                                   ///< investment income of the normal pass
    std::int32_t deficitMobilier = 0;
    std::int32_t deficitFoncier = 0;
    std::int32_t deficitFoncierPerdu = 0;
    std::int32_t deficitAgricolePerdu = 0;
    std::int32_t baseOutreMer = 0;   ///< long-term gains of overseas residents
    std::int32_t impotOutreMer = 0;  ///< the tax on them
    bool operator==(const MemoirePasses&) const = default;
};

/// An item of exceptional income taxed by the quotient, CGI art. 163-0 A.
struct ItemQuotient {
    std::int32_t coefficient = 0;  ///< 0 stands for 4
    std::int32_t montant = 0;
    std::int32_t base = 0;  ///< amount / coefficient
    bool operator==(const ItemQuotient&) const = default;
};

struct Memoire {
    std::int32_t tauxMarginalFige = 0;        ///< marginal rate of the worldwide pass, hundredths of a percent
    std::int32_t revenusDejaSoumis = 0;       ///< capital income that already bore the levies, flat-tax variant
    std::int32_t revenusDejaSoumisReste = 0;  ///< the rest of it
    std::int32_t baseMobiliersSociale = 0;    ///< capital income that the social levies start from
    MemoirePasses passes;
    std::array<MemoireSalaires, nMembres> salaires{};
    std::pmr::vector<ItemQuotient> quotients;  ///< what the last quotient step found, by coefficient

    explicit Memoire(std::pmr::memory_resource* place) : quotients(place) {}
    /// A copy whose memory comes from elsewhere.
    Memoire(const Memoire& autre, std::pmr::memory_resource* place) : Memoire(place) { *this = autre; }
    bool operator==(const Memoire&) const = default;
};

}  // namespace kv
