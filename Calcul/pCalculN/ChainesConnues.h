#pragma once

#include <list>
#include <memory_resource>

#include "Calcul/cCalcul/Lignes.h"
#include "Calcul/cCalcul/Saisie.h"
#include "Calcul/pCalculN/Contexte.h"
#include "Calcul/pCalculN/Memoire.h"

namespace kv {

/// The runs of the normal chain that a computation has made over a return whose runs may differ: with foreign income
/// each of them is four runs or more. What a run finds follows from what it starts from; one that starts where an
/// earlier one did is put back instead of made again, with what it leaves in memory.
class ChainesConnues {
  public:
    explicit ChainesConnues(std::pmr::memory_resource* place) : m_chaines(place) {}
    void Oublie() { m_chaines.clear(); }
    /// Clears the outputs and runs the normal chain.
    void Relance(Contexte& c);

  private:
    /// What a run starts from, as far as it reads it.
    struct Depart {
        explicit Depart(const Contexte& c);
        bool operator==(const Depart&) const = default;

        Saisie declaree;
        Exceptionnels exceptionnels;
        Faits faits;
        bool avecExceptionnels;   ///< the run sees the exceptional amounts from its first step on
        Memoire memoire;          ///< that of the members only where a TK pass reads it
        PlafondsPERP plafonds{};  ///< what a new resident (`6QW`) may deduct; no chain changes them
    };
    struct Chaine {
        Chaine(Depart&& d, const Memoire& m, std::pmr::memory_resource* place)
            : depart(std::move(d)), lignes(place), memoire(m, place) {}

        Depart depart;
        Lignes::Conservees lignes;
        Memoire memoire;
        bool avecExceptionnels = false;
    };

    std::pmr::list<Chaine> m_chaines;
};

}  // namespace kv
