#pragma once

#include <array>

namespace kv {

class Contexte;

/// Withholding rates of the two declarants of a couple, percent with one decimal.
using TauxIndividuels = std::array<double, 2>;

/// Finds them, from a run of each declarant alone (CGI art. 204 M). The outputs are left to be computed again.
TauxIndividuels CalculeTauxIndividuels(Contexte& c);

/// Tells a household of modest income that it has a rate although its return is not taxed; by the amount payable that
/// was found last.
void SignaleTauxSansImpot(Contexte& c);

}  // namespace kv
