#pragma once

class CDataCalcul;

namespace kv {

/// Where the messages of the exported functions come from.
inline constexpr const char* sourceExports = "Calcul/pInitCalcul";

/// The return of the session, null without one. The library keeps nothing else between two calls.
inline CDataCalcul* session = nullptr;

}  // namespace kv
