#pragma once

#include "interface/Retour.h"

namespace kv {

/// Computes columns of returns over the inputs and settings that a return has; refus keeps the message of a failure.
/// As kv_compute_columns, which has looked at the numbers of the columns.
kv_status CalculeColonnes(const Demande& demande, const kv_columns& columns, Message& refus);

}  // namespace kv
