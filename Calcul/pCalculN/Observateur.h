#pragma once

#include <cstdint>

#include "Calcul/cCalcul/Cases.h"

namespace kv {

class Contexte;

/// Runs beside the household's own that a reader may ask about.
enum class Passage : std::uint8_t {
    SansAvantages,  ///< without the advantages that the global cap counts
    Mondial,        ///< with the foreign amounts in the French boxes
};

/// A reduction at the moment when it is imputed: what no output keeps.
struct ReductionImputee {
    CaseSortie ligne;
    std::int32_t base;     ///< as declared
    std::int32_t plafond;  ///< of the base
    int annees;            ///< that the base is spread over, 1 for none
    std::int32_t due;      ///< the reduction, before the tax bounds it
    std::int32_t reste;    ///< the tax that was left for it
};

/// Told of what a computation goes through and leaves in no output.
class Observateur {
  public:
    /// At the end of a run, by its context, whose lines still stand.
    virtual void Fin(Passage passage, const Contexte& c) = 0;
    /// At each reduction, in every run.
    virtual void Impute(const ReductionImputee& reduction) = 0;

  protected:
    ~Observateur() = default;
};

}  // namespace kv
