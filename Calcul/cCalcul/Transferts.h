#pragma once

#include <array>
#include <cstdint>

#include "Calcul/cCalcul/DataCalcul.h"
#include "support/Trace.h"

// Amounts moved into the ordinary boxes for a run of the computation, and back out of them.
//
// Each move is a scope object: the constructor moves, the destructor puts every box and slot back exactly as it was,
// also when an exception passes. Moves may end in any order, but for the TK move: it writes the boxes back as it found
// them, so that what began inside it must end inside it.

namespace kv {

/// The first letters of the six salary columns: the declarants and the first four dependants.
inline constexpr int nColonnesSalaires = 6;

/// A row of six salary boxes, such as `1AJ` .. `1FJ`.
using RangeeSalaires = std::array<CaseEntree, nColonnesSalaires>;
inline constexpr RangeeSalaires rangeeC = {"1AC", "1BC", "1CC", "1DC", "1EC", "1FC"};
inline constexpr RangeeSalaires rangeeE = {"1AE", "1BE", "1CE", "1DE", "1EE", "1FE"};
inline constexpr RangeeSalaires rangeeF = {"1AF", "1BF", "1CF", "1DF", "1EF", "1FF"};
inline constexpr RangeeSalaires rangeeH = {"1AH", "1BH", "1CH", "1DH", "1EH", "1FH"};
inline constexpr RangeeSalaires rangeeJ = {"1AJ", "1BJ", "1CJ", "1DJ", "1EJ", "1FJ"};
inline constexpr RangeeSalaires rangeeK = {"1AK", "1BK", "1CK", "1DK", "1EK", "1FK"};
inline constexpr RangeeSalaires rangeeS = {"1AS", "1BS", "1CS", "1DS", "1ES", "1FS"};

/// An amount by person: first declarant, second declarant, everyone else.
struct ParPersonne {
    std::array<std::int32_t, 3> montant{};

    std::int32_t Total() const { return montant[0] + montant[1] + montant[2]; }
};

/// Foreign income retained for the effective rate (companions TI, less TIX and TIY; exempt salaries and pensions of the
/// rows C, E and H), as French income until the end of the scope.
class TransfertTI {
  public:
    TransfertTI(CDataCalcul& data, Trace& trace);
    ~TransfertTI();
    TransfertTI(const TransfertTI&) = delete;
    TransfertTI& operator=(const TransfertTI&) = delete;

    /// The gross amounts moved, by person.
    const ParPersonne& Montants() const { return m_montants; }

  private:
    void DeplaceSalaires(int personne);
    void RameneSalaires(int personne);

    CDataCalcul& m_data;
    Trace& m_trace;
    ParPersonne m_montants;
    std::array<std::int32_t, nColonnesSalaires> m_salairesExoneres{};  ///< the boxes of row C as declared
    decltype(CDataCalcul::TI) m_ti;                                    ///< the TI area as declared
};

/// Foreign income with a credit equal to the French tax (companions TK, less TKZ), alone in the boxes until the end of
/// the scope.
class TransfertTK {
  public:
    TransfertTK(CDataCalcul& data, Trace& trace);
    ~TransfertTK();
    TransfertTK(const TransfertTK&) = delete;
    TransfertTK& operator=(const TransfertTK&) = delete;

    /// A business box and the box that says which part of its TK amount is a gain.
    struct Paire {
        CaseEntree premiere, seconde;
    };
    static constexpr int nPaires = 38;

  private:
    CDataCalcul& m_data;
    Trace& m_trace;
    std::array<std::int32_t, NombreMarques(entree::SauveTK)> m_sauves{};
    std::array<std::int32_t, nPaires> m_premieres{};
};

/// Auto-entrepreneur or prospection amounts in the boxes they are linked to, until the end of the scope.
class TransfertLie {
  public:
    enum class Nature { AutoEntr, Prospection };
    TransfertLie(CDataCalcul& data, Trace& trace, Nature nature);
    ~TransfertLie();
    TransfertLie(const TransfertLie&) = delete;
    TransfertLie& operator=(const TransfertLie&) = delete;

    /// The total moved.
    std::int32_t Total() const { return m_total; }

  private:
    std::int32_t Deplace(int signe);

    CDataCalcul& m_data;
    Trace& m_trace;
    Nature m_nature;
    bool m_deplace = false;  ///< an amount has been moved
    std::int32_t m_total;
};

/// The exceptional amounts of the quotient store into their entry boxes (ajoute) or back out of them; the total moved.
///
/// Not a scope object: the amounts stay in the boxes for the rest of the chain of steps that added them.
std::int32_t QuotientDansFr(CDataCalcul& data, Trace& trace, bool ajoute);

/// The prospection income declared, by person.
ParPersonne TotalProspection(const CDataCalcul& data);
/// Sum of the TI companions, of the TK companions.
std::int32_t TotalTI(const CDataCalcul& data);
std::int32_t TotalTK(const CDataCalcul& data);
/// All foreign, auto-entrepreneur and prospection income; without the TK companions when sansTK is set.
std::int32_t TotalEtranger(const CDataCalcul& data, bool sansTK);
/// Foreign income at the effective rate: TI companions, exempt salaries less their expenses, exempt pensions.
std::int32_t IndicateurEtranger(const CDataCalcul& data);

/// What a coefficient divides and multiplies by.
constexpr std::int32_t Diviseur(std::int32_t coefficient) { return coefficient == 0 ? 4 : coefficient; }
/// What the quotient leaves out of the taxable amounts of a map: sum of a - a / d.
std::int32_t ExcedentQuotient(const CDataCalcul& data, CaseQuotient map);

}  // namespace kv
