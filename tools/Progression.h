#pragma once

#include <chrono>
#include <cstdint>

#include "Flux.h"

namespace outil {

/// What a long work tells of itself on standard error.
enum class Bavardage {
    Ordinaire,   ///< how far it is where somebody looks at it, and what it has done
    Silencieux,  ///< errors alone
    Constant,    ///< how far it is, wherever that goes
};

/// Tells how far a long work is: rows done, rate, time left where the end is known. On a terminal the line is written
/// over itself some times a second; elsewhere there is one every ten seconds.
class Progression {
  public:
    /// Rows done before, a share of the whole, do not count in the rate. The result may itself go to a terminal: then
    /// nothing is told that was not asked for.
    Progression(Bavardage bavardage, const Sortie& resultat, std::int64_t lignes = 0, double part = 0);
    ~Progression() { Efface(); }
    Progression(const Progression&) = delete;
    Progression& operator=(const Progression&) = delete;

    /// part: how much of the work is done, 0 to 1; 0 when nobody knows.
    void Montre(std::int64_t lignes, double part);
    void Efface();

  private:
    using Horloge = std::chrono::steady_clock;

    const bool m_terminal, m_active;
    const std::int64_t m_lignesAvant;
    const double m_partAvant;
    const Horloge::time_point m_debut = Horloge::now();
    Horloge::time_point m_derniere = m_debut;
    bool m_montree = false;
};

}  // namespace outil
