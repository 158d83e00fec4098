#pragma once

class CDataCalcul;

namespace kv {

struct Saisie;

/// Fills the carry-forward boxes of a return from its inputs and from the outputs that the last launch left. The boxes
/// of a deficit category without deficits keep what they held.
void RemplitReports(const Saisie& saisie, CDataCalcul& data);

}  // namespace kv
