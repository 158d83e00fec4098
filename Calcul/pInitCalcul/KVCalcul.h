#ifndef KV_CALCUL_H
#define KV_CALCUL_H

// The calculation library of the French income-tax return 2042, income of 2017: what a host sees.
//
// A host fills the entry boxes of a return, launches the computation and reads the output boxes. Boxes are addressed by
// their number in the catalogues: entry 0 to 2127, output 0 to 2287, carry-forward 0 to 735. Values are signed 32-bit:
// whole euros, counts, ticks (0 or 1), choice codes, dates as AAAAMMJJ. The value -2147483647 means "not filled in" and
// counts as 0.
//
// Order of calls: KV_Calcul_Debut, KV_Calcul_AffecteCaseEntree for each box, KV_Calcul_Lancement (or _OR),
// KV_Calcul_LireCaseSortie for each figure wanted, and so on for other variants of the same return; KV_Calcul_Fin.
//
// The session functions work on one return per loaded library, from one thread at a time. The functions that take a
// CDataCalcul may run on several threads, one object each.
//
// No function lets an exception out. A failure inside the library is reported to standard error as
// "(source ligne : n) : message".

#include <stdbool.h>
#include <stdint.h>

#include "Calcul/cCalcul/Fiches.h"

#ifdef __cplusplus
class CDataCalcul;
struct TPeriode;
#else
typedef struct CDataCalcul CDataCalcul;
typedef struct TPeriode TPeriode;
#endif

#ifdef _WIN32
#define KV_API
#define KV_STDCALL __stdcall
#else
#define KV_API __attribute__((visibility("default")))
#define KV_STDCALL
#endif

#ifdef __cplusplus
extern "C" {
#endif

// ---- The session.

/// Opens a session on a new, empty return and hands it out; null when memory is short. A return of an earlier call is
/// left as it is: it is the caller's.
KV_API CDataCalcul* KV_Calcul_Debut(void);
/// Ends the session and destroys its return. Does nothing without one.
KV_API void KV_Calcul_Fin(void);
/// Destroys the return of the session, if any, and starts again from an empty one; null when memory is short.
KV_API CDataCalcul* KV_Calcul_InitEntree(void);
/// The same: entries and outputs both start empty.
KV_API CDataCalcul* KV_Calcul_InitSortie(void);

/// Stores a value in entry box `numero` (0 to 2127). Needs a session.
KV_API void KV_Calcul_AffecteCaseEntree(int32_t numero, int32_t valeur);
/// The value of entry box `numero` (0 to 2127). Needs a session.
KV_API int32_t KV_Calcul_LireCaseEntree(int32_t numero);
/// The value of output box `numero` (0 to 2287). Needs a session.
KV_API int32_t KV_Calcul_LireCaseSortie(int32_t numero);
/// Whose entry box `numero` is: 1, 2 declarants, 3 to 11 dependants, 12 dependants together, 14 household. Needs no
/// session.
KV_API uint32_t KV_Calcul_LireTypeCaseEntree(int32_t numero);

/// Computes the return of the session over the calendar year 2017. True when it completed.
KV_API bool KV_Calcul_Lancement(void);
/// The same with the options that the return sets: flat tax (`PFU`), scale (`BAR`), the cheaper of the two (`AVA`),
/// modernisation credit (`CIMR`). Both answer false without a session.
KV_API bool KV_Calcul_Lancement_OR(void);

// ---- Computation of any return.

/// Computes a return. periode: null for the calendar year 2017; it stays the caller's. drapeau: not read.
/// tauxIndexation: percent by which the euro thresholds rise, -1.0 for none.
///
/// True when the pipeline and the wealth-tax step completed. The entries stand afterwards as the host gave them, but
/// for `8TI` and `8TK`, which receive the totals of the foreign companions. False for a null return.
KV_API bool KV_Calcul(CDataCalcul* data, const TPeriode* periode, bool drapeau, double tauxIndexation);
/// The same with the option switches: optionsForcees applies the options whatever the return says, optionsSiSaisies
/// when it sets one of `PFU`, `BAR`, `AVA`, `CIMR`. With `AVA` the return is computed three times, flat tax, scale,
/// then the cheaper; the outputs `PFU` and `BAR` name the option applied and both entry switches end at 0.
KV_API bool KV_CalculPFUEtCIMR(CDataCalcul* data, const TPeriode* periode, bool drapeau, double tauxIndexation,
                               bool optionsForcees, bool optionsSiSaisies);

/// Fills the carry-forward boxes, next year's return, from the entries and outputs that the last launch left. periode:
/// not read. tauxIndexation as above. The boxes of a deficit category without deficits keep what they held. Does
/// nothing for a null return.
KV_API void KV_CalculReports(CDataCalcul* data, const TPeriode* periode, double tauxIndexation);

// ---- The scale.

/// Copies the five brackets of the scale of an income year, CGI art. 197 I-1. 2017 is the only year built in; another
/// one is reported and changes nothing. Does nothing for null.
KV_API void KV_RempliBareme(TrancheBareme* bareme, int32_t annee);
/// Parts, tax and allowances of a household from 24 boxes. Does nothing when one of the two is null.
KV_API void CalculBareme(const EntreeBareme* entree, SortieBareme* sortie, double tauxIndexation);

// ---- Returns, catalogue records and exceptional income.

/// A new, empty return; null when memory is short. It is the caller's until DetruitCalculGenere.
KV_API CDataCalcul* ConstruitCalculGenere(void);
/// Destroys a return. Does nothing for null.
KV_API void DetruitCalculGenere(CDataCalcul* data);
/// A copy of an entry record (0 to 2127). poignee is not read, here and below: null will do. An empty record for
/// another index.
KV_API CaseEntreeDef EntreeInit(const void* poignee, int32_t index);
/// A copy of an output record (0 to 2287).
KV_API CaseSortieDef SortieInit(const void* poignee, int32_t index);
/// A copy of a carry-forward record (0 to 735).
KV_API CaseReportDef ReportInit(const void* poignee, int32_t index);
/// Stores an amount (euros) of exceptional income: map 0 to 86, the `nQuotient` of an entry box; coefficient, by which
/// the amount is divided, 0 standing for 4. An amount already stored for this map and coefficient is kept. A map that
/// does not exist is reported and changes nothing. Does nothing when a pointer is null.
KV_API void AddValQuotient(CDataCalcul* data, const int32_t* map, const int32_t* coefficient, const int32_t* montant);
/// The amount stored for this map and coefficient, 0 for none, and when a pointer is null.
KV_API int32_t GetValQuotient(const CDataCalcul* data, const int32_t* map, const int32_t* coefficient);

// ---- Periods.

/// A period from 1 January to 31 December of a year; null when memory is short. It is the caller's until
/// TPeriodeDestructor.
KV_API TPeriode* KV_STDCALL TPeriodeConstructor(int32_t annee);
/// Frees a period. Does nothing for null.
KV_API void KV_STDCALL TPeriodeDestructor(TPeriode* periode);

#ifdef __cplusplus
}
#endif

#endif
