#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <utility>
#include <vector>

#include "Calcul/cCalcul/DataCalcul.h"

// What a run changes in the entries, it puts back: scope objects whose destructor restores, also when an exception
// passes.

namespace kv {

/// Adds amounts to entry boxes until the end of the scope.
///
/// The amounts are subtracted again, rather than the boxes written back, so that what else moved in and out of the same
/// boxes meanwhile is kept.
class Ajout {
  public:
    static constexpr std::size_t nMax = 12;
    struct Montant {
        CaseEntree box;
        std::int32_t montant;
    };

    Ajout(CDataCalcul& data, std::initializer_list<Montant> montants) : m_data(data), m_nombre(montants.size()) {
        std::copy(montants.begin(), montants.end(), m_montants.begin());
        Deplace(+1);
    }
    ~Ajout() { Deplace(-1); }
    Ajout(const Ajout&) = delete;
    Ajout& operator=(const Ajout&) = delete;

  private:
    void Deplace(int signe) {
        for (std::size_t i = 0; i < m_nombre; ++i) m_data.Entree[m_montants[i].box] += signe * m_montants[i].montant;
    }

    CDataCalcul& m_data;
    std::size_t m_nombre;
    std::array<Montant, nMax> m_montants{};
};

/// Gives a variable another value until the end of the scope.
template <class T>
class Change {
  public:
    Change(T& variable, T valeur) : m_variable(variable), m_avant(std::exchange(variable, valeur)) {}
    ~Change() { m_variable = m_avant; }
    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;

  private:
    T& m_variable;
    T m_avant;
};

/// Makes every unset entry box and companion slot count as 0 until the end of the scope.
///
/// The start years of the farms are read as they are; the totals of foreign income are written by every launch.
class NonSaisiesAZero {
  public:
    explicit NonSaisiesAZero(CDataCalcul& data);
    ~NonSaisiesAZero();
    NonSaisiesAZero(const NonSaisiesAZero&) = delete;
    NonSaisiesAZero& operator=(const NonSaisiesAZero&) = delete;

  private:
    std::vector<std::int32_t*> m_nonSaisies;
};

/// Folds the boxes of the detailed salary and pension rows into their totals until the end of the scope.
class Repliement : public Ajout {
  public:
    explicit Repliement(CDataCalcul& data);
};

}  // namespace kv
