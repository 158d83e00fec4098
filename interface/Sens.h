#pragma once

#include <string>
#include <string_view>

#include "interface/LigneLibelle.h"

// What each box means: a label in French, a kind, and where the box stands. Composed once, when first asked for; any
// thread may ask.

namespace kv::sens {

/// An entry box.
struct SensEntree {
    std::string libelle;
    Genre genre = Genre::Euros;
    Groupe groupe = Groupe::HorsCalcul;  ///< HorsCalcul: no rule reads the box
};

/// An output box.
struct SensSortie {
    std::string libelle;  ///< "inutilisée" when no step writes it
    Genre genre = Genre::Euros;
    std::string etape;  ///< the step that writes it, "4:RevenusSalaires"; "" for none
    Groupe groupe = Groupe::HorsCalcul;
    Colonnes colonnes;
};

/// A carry-forward box.
struct SensReport {
    std::string libelle;  ///< "inutilisée" when nothing is carried into it
    std::string boite;    ///< the box of next year's return
    std::string source;   ///< the box of this year whose figure it takes; "" when it is computed or unused
};

const SensEntree& De(CaseEntree c);
const SensSortie& De(CaseSortie c);
const SensReport& De(CaseReport c);

/// "déclarant 1", "personnes à charge", "foyer": whose box it is.
const char* Personne(CaseEntree c);
/// "euros", "count", "tick", "code", "date", "year", "rate", "mark".
const char* NomGenre(Genre genre);
/// "Foyer", "Salaires et pensions", ..., "Outre-mer".
const char* NomGroupe(Groupe groupe);

/// Whether a name contains a text, or a label contains each word of it; accents and case do not matter.
bool Correspond(std::string_view nom, std::string_view libelle, std::string_view cherche);

}  // namespace kv::sens
