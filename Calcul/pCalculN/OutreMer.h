#pragma once

namespace kv {

class Contexte;
class Imputation;

/// What becomes of the overseas investments once they are imputed: the refundable ones, the shares that the investor
/// keeps or retrocedes, and what exceeds the rooms, which goes back to the tax. Whether anything went back.
bool PartageOutreMer(Contexte& c, Imputation& imputation);

}  // namespace kv
