#ifndef KV_CALCUL_MAPS_H
#define KV_CALCUL_MAPS_H

// The part of the interface that takes C++ types: maps keyed by box name, and texts. A host that uses it is built with
// the same C++ library as KVCalcul.

#include <cstdint>
#include <map>
#include <string>

#include "Calcul/pInitCalcul/KVCalcul.h"

/// Box values by name (UTF-16), in the order of the names.
using MapList = std::map<std::u16string, std::int32_t>;
/// Double values by entry name. No box holds a double: such a map is always empty.
using MapDouble = std::map<std::u16string, double>;
/// Exceptional income: amounts by coefficient, by map number (0 to 86).
using MapQuotients = std::map<std::int32_t, std::map<std::int32_t, std::int32_t>>;

#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"  // C names, C++ types
#endif

extern "C" {

// ---- The session's return as maps. A box appears when its value is neither 0 nor the unset value. Without a session,
// and after a failure, the maps are empty.

KV_API MapList KV_Calcul_RemplirMapEntree();
KV_API MapDouble KV_Calcul_RemplirMapEntreeDouble();
/// The foreign companions, by entry name.
KV_API MapList KV_Calcul_RemplirMapEntreeTI();
KV_API MapList KV_Calcul_RemplirMapEntreeTIX();
KV_API MapList KV_Calcul_RemplirMapEntreeTIY();
KV_API MapList KV_Calcul_RemplirMapEntreeTK();
KV_API MapList KV_Calcul_RemplirMapEntreeTKZ();
KV_API MapQuotients KV_Calcul_RemplirMapQuotient();
KV_API MapList KV_Calcul_RemplirMapSortie();
KV_API MapList KV_Calcul_RemplirMapReport();

// ---- Maps into the session's return. Names compare exactly; a name that no box has, and a companion that its box does
// not have, are ignored. Nothing is cleared first: boxes that are not named keep their values. Nothing happens without
// a session.

KV_API void KV_Calcul_RemplirStructureParMapEntree(MapList entrees, MapDouble doubles, MapList ti, MapList tix,
                                                   MapList tiy, MapList tk, MapList tkz);
KV_API void KV_Calcul_RemplirStructureParMapEntreeDouble(MapDouble doubles);
/// As AddValQuotient for each amount: one already stored is kept.
KV_API void KV_Calcul_RemplirStructureParMapQuotient(MapQuotients quotients);

// ---- Sibling libraries of the product, loaded from a directory given with or without its last separator. They stay
// loaded. What is missing is reported through the error service, and nothing else happens.

/// Asks "KVCOMMUN" (with the platform's extension) for the scale percentage of 2017, and fills the carry-forward boxes
/// of the session's return with it as indexation rate; without a session nothing is filled.
KV_API void KV_Calcul_Report(std::u16string repertoire);
/// Hands the session's return, null without one, to "KV" + numero + "_COMMUN.dll", which fills in test case `valeur`.
KV_API void KV_Calcul_RemplirStructure(std::int32_t numero, std::u16string repertoire, std::int16_t valeur);

// ---- Initialisation.

/// Fills an array of 37 texts with the overseas codes, "RSA" to "ITT". Does nothing for null.
KV_API void KV_InitDomTom(std::u16string* codes);
/// Does nothing: the carry-forward boxes are filled by KV_CalculReports.
KV_API void KV_InitReport();

}  // extern "C"

#ifdef __clang__
#pragma clang diagnostic pop
#endif

#endif
