#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Calcul/cCalcul/Cases.h"

// Every value of one return: what the host fills in, what the computation finds.

/// Amounts of exceptional income by coefficient. Where the coefficient divides, 0 stands for 4.
using MapDeQuotients = std::map<std::int32_t, std::int32_t>;

namespace kv {

/// Signed 32-bit values, one per box or companion slot, read and written by the name of the box. Zone z{} is all 0.
template <class Case, int N>
struct Zone {
    static constexpr int nombre = N;
    std::array<std::int32_t, N> valeurs;

    std::int32_t& operator[](Case c) { return valeurs[static_cast<std::size_t>(c.numero)]; }
    std::int32_t operator[](Case c) const { return valeurs[static_cast<std::size_t>(c.numero)]; }
    bool operator==(const Zone&) const = default;
};

/// Texts, one per output box.
struct ZoneTextes {
    std::array<std::u16string, nSorties> valeurs;

    std::u16string& operator[](CaseSortie c) { return valeurs[static_cast<std::size_t>(c.numero)]; }
    const std::u16string& operator[](CaseSortie c) const { return valeurs[static_cast<std::size_t>(c.numero)]; }
};

inline constexpr int nQuotients = NombreMarques(entree::Quotient);
inline constexpr int nTI = NombreMarques(entree::TI);
inline constexpr int nTIX = NombreMarques(entree::TIX);
inline constexpr int nTK = NombreMarques(entree::TK);
static_assert(nQuotients == 87 && nTI == 115 && nTIX == 81 && nTK == 77);

using ZoneEntree = Zone<CaseEntree, nEntrees>;
using ZoneSortie = Zone<CaseSortie, nSorties>;
using ZoneReport = Zone<CaseReport, nReports>;

}  // namespace kv

/// The record of one coefficient, with room for working figures of the quotient computation.
struct CCalcQuotient {
    static constexpr int nValeurs = 120;

    explicit CCalcQuotient(std::int32_t id) : nId(id) {}

    std::int32_t nId;  ///< the coefficient
    std::array<std::int32_t, nValeurs> nValeur{};
};
static_assert(sizeof(CCalcQuotient) == 4 * 121);

class CDataCalcul {
  public:
    using Quotients = std::vector<std::unique_ptr<CCalcQuotient>>;

    std::array<MapDeQuotients, kv::nQuotients> MapsQuotients;  ///< by map number, the `nQuotient` of the entry box
    Quotients ListeQuotients;            ///< one record per coefficient ever stored, in order of first appearance
    CCalcQuotient QuotientTotal{0};      ///< totals over all records
    CCalcQuotient QuotientOrdinaire{1};  ///< the ordinary income
    kv::ZoneEntree Entree{};             ///< what the host fills in
    kv::Zone<kv::CaseTI, kv::nTI> TI{};  ///< companion amounts of entry boxes
    kv::Zone<kv::CaseTIX, kv::nTIX> TIX{};
    kv::Zone<kv::CaseTIX, kv::nTIX> TIY{};
    kv::Zone<kv::CaseTK, kv::nTK> TK{};
    kv::Zone<kv::CaseTK, kv::nTK> TKZ{};
    std::array<kv::ZoneSortie, 3> Colonne{};  ///< the three auxiliary figures of an output box
    kv::ZoneSortie Sortie{};                  ///< what the computation finds
    kv::ZoneTextes Detail;                    ///< how an output was found, for the reader
    kv::ZoneReport Report{};                  ///< next year's return

    CDataCalcul() = default;
    CDataCalcul(const CDataCalcul&) = delete;
    CDataCalcul& operator=(const CDataCalcul&) = delete;

    // Quotient store.

    /// Stores an amount of exceptional income (map 0 to 86); an amount already stored for the coefficient is kept.
    void AjouteQuotient(int map, std::int32_t coefficient, std::int32_t montant);
    /// The amount stored, 0 for none or for the unset value.
    std::int32_t Quotient(int map, std::int32_t coefficient) const;
    /// Takes the entries, companions, carry-forwards and quotients of another return; the outputs stay.
    void CopieValeurs(const CDataCalcul& source);
};
