#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "interface/Cles.h"

// The tree of what makes a figure, its JSON, and the difference of two.

namespace kv {

/// What a node shows: another return has such a figure of its own.
enum class Sorte : std::uint8_t {
    Partie,   ///< a part of a rule, or a figure of another run
    Figure,   ///< an output or one of its columns
    Report,   ///< a carry-forward box
    Boite,    ///< an entry box as the computation sees it, with what was added to it
    Montant,  ///< an amount as the return sets it
    Loi,      ///< a figure of the law
};

/// A figure and what makes it.
struct Noeud {
    Sorte sorte = Sorte::Partie;
    std::string nom = {};  ///< of its box, or of a figure of the law; "" for a part of a rule
    int colonne = 0;
    std::string libelle = {};
    std::int32_t valeur = 0;
    const char* regle = "part";
    std::string formule = {}, source = {}, etape = {};
    int signe = 1;
    const char* role = "";
    const char* passage = "";  ///< the run that it comes from, when it is not the household's own
    std::vector<Noeud> termes = {};
    CleFigure aEffets = {};  ///< the figure that the effects of the amounts are still to be found of

    bool EstTerme() const { return *role == 0; }
};

// ---- Figures in words.

inline std::string Nombre(std::int64_t n) { return std::to_string(n); }
/// "2.5", of hundredths.
std::string Decimal(std::int32_t centiemes);
/// "12.8 %", of hundredths of a percent.
inline std::string TexteTaux(std::int32_t centiemes) { return Decimal(centiemes) + " %"; }

// ---- Nodes.

Noeud Part(std::string libelle, std::int32_t valeur);
/// A rate that is no figure of the law, in hundredths of a percent.
Noeud PartTaux(std::int32_t centiemes);
/// Adds a term, or an operand when it has a role; not one that is 0.
void Ajoute(Noeud& noeud, Noeud terme, int signe, const char* role = "");
/// "4847 - 1500", what the terms add up; "" for fewer than two.
std::string Addition(const Noeud& noeud);
/// The value is what the terms add up.
void Somme(Noeud& noeud);
/// The same where a term may be missing: what makes the sum of the terms the value, by its name.
void Complete(Noeud& noeud, std::string libelle);
/// What the terms do not give of the value.
std::int32_t Manque(const Noeud& noeud);
/// A sum by its name, of terms that are still to be added.
Noeud Total(std::string libelle, std::int32_t valeur);
/// A rate of a base, as the tax rounds it.
Noeud Taxe(std::string libelle, Noeud base, Noeud taux);
/// amount x numerator / denominator; one of these without a label is 1 and not shown.
Noeud Prorata(std::string libelle, std::int32_t valeur, Noeud montant, Noeud numerateur, Noeud denominateur);
/// The smaller one of two, the larger one.
Noeud Minimum(Noeud a, Noeud b);
Noeud Maximum(Noeud a, Noeud b);
/// Gives a node what makes another one of the same value.
void Reprend(Noeud& noeud, Noeud&& autre);
/// Leaves so many levels below a node; a rule may have written more.
void Coupe(Noeud& noeud, std::int32_t profondeur);

// ---- JSON.

/// As kv_explain tells it, on one line.
std::string JsonDe(const Noeud& racine);

/// What a return has of what a node of another one shows: its value, none for a part of a rule; the same with what
/// makes it, none for what is no figure, so many levels below it.
struct AutreRetour {
    std::function<std::optional<std::int32_t>(const Noeud&)> lit;
    std::function<std::optional<Noeud>(const Noeud&, std::int32_t profondeur)> explique;
};
/// As kv_explain_difference tells it, on one line.
std::string JsonDeDifference(const Noeud& avant, const AutreRetour& retourAvant, const Noeud& apres,
                             const AutreRetour& retourApres, std::int32_t profondeur);

}  // namespace kv
