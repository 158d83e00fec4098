#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Calcul/cCalcul/Saisie.h"
#include "interface/kv.h"

// The names by which a host says what it sets and reads: "1AJ", "ti.1AW", "quotient.4.1AJ"; "TOT_PAYER", "CO_19.c2",
// "F11_6FL".

namespace kv {

/// An amount that a return can set.
struct CleSaisie {
    CaseEntree box;
    Aire aire = Aire::Entrees;
    std::optional<std::int32_t> coefficient;  ///< of an exceptional amount

    bool operator==(const CleSaisie&) const = default;
};

/// A figure of a computed return.
struct CleFigure {
    CaseSortie sortie;
    std::size_t colonne = 0;  ///< 0: the value
    CaseReport report = {};   ///< where the figure is a carry-forward box
};

/// A name read, or why it is none: a status, and a message with the nearest names.
template <class Cle>
struct LectureCle {
    Cle cle = {};
    kv_status statut = KV_OK;
    std::string message = {};
};
LectureCle<CleSaisie> LisCleSaisie(std::string_view nom);
LectureCle<CleFigure> LisCleFigure(std::string_view nom);

/// A figure that a host looks at: one of the computation, or the net amount, what is paid less what is refunded.
struct FigureLue {
    CleFigure cle;
    bool net = false;
};
/// A name of a figure; null for the net amount.
LectureCle<FigureLue> LisFigure(const char* nom);

/// "1AJ", "ti.1AW", "quotient.4.1AJ".
std::string NomDe(const CleSaisie& cle);
/// "ti": an area by name.
const char* NomAire(Aire aire);
/// Whether an entry box can hold exceptional income.
bool PeutEtreExceptionnel(CaseEntree box);

}  // namespace kv
