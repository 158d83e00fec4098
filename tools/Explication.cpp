#include "Explication.h"

#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <tuple>
#include <utility>

#include "Effets.h"

namespace outil {

namespace {

using Noeud = nlohmann::ordered_json;

Noeud Arbre(const kv::Return& retour, const std::string& figure, int profondeur) {
    const char* const nom = figure.empty() ? nullptr : figure.c_str();
    return Noeud::parse(Demande([&] { return retour.explain(nom, profondeur); }));
}

std::string Texte(const Noeud& noeud, const char* cle) { return noeud.value(cle, std::string()); }
std::int64_t Valeur(const Noeud& noeud) { return noeud.at("value").get<std::int64_t>(); }
const Noeud& Termes(const Noeud& noeud) {
    static const Noeud aucun = Noeud::array();
    return noeud.contains("terms") ? noeud.at("terms") : aucun;
}

// "Impôt brut (TOT_IMPOT)", "..., déclarant 1 (RN_SAL.c1)".
std::string Nom(const Noeud& noeud) {
    const std::string boite = Texte(noeud, "box");
    const std::string colonne = noeud.contains("column") ? ".c" + std::to_string(noeud.at("column").get<int>()) : "";
    if (Texte(noeud, "rule") == "law" && colonne.empty()) return boite;
    return Texte(noeud, "label") + (boite.empty() ? "" : " (" + boite + colonne + ')');
}

// What an operand is for; "" for a term.
std::string Role(const Noeud& noeud) {
    static const std::map<std::string, std::string> roles = {
        {"base", "base"},     {"rate", "taux"},   {"amount", "montant"}, {"numerator", "fois"}, {"denominator", "sur"},
        {"income", "revenu"}, {"parts", "parts"}, {"count", "nombre"},   {"effect", "effet"},   {"option", "option"},
    };
    const auto role = roles.find(Texte(noeud, "role"));
    return role == roles.end() ? "" : role->second + ": ";
}

// ecrites: the figures whose terms stand above already.
using Ecrites = std::set<std::pair<std::string, int>>;
void Ecrit(std::ostream& sortie, const Noeud& noeud, std::size_t retrait, Ecrites& ecrites) {
    const std::string formule = Texte(noeud, "formula"), loi = Texte(noeud, "law"), passage = Texte(noeud, "run");
    const std::string role = Role(noeud);
    const bool taux = Texte(noeud, "role") == "rate" && !formule.empty();
    const char* const signe = noeud.value("sign", 1) < 0 ? "- " : retrait > 0 && role.empty() ? "+ " : "";
    sortie << std::string(2 * retrait, ' ') << signe << role << (taux ? formule : std::to_string(Valeur(noeud))) << "  "
           << Nom(noeud);
    if (!taux && !formule.empty()) sortie << " = " << formule;
    if (Texte(noeud, "rule") == "step" && noeud.contains("step")) sortie << "  [" << Texte(noeud, "step") << ']';
    if (!passage.empty()) sortie << "  [" << passage << ']';
    if (!loi.empty() && Texte(noeud, "rule") != "law") sortie << "  [" << loi << ']';
    const std::string boite = Texte(noeud, "box");
    const bool dejaEcrite = !boite.empty() && Texte(noeud, "rule") != "box" && !Termes(noeud).empty() &&
                            !ecrites.emplace(boite, noeud.value("column", 0)).second;
    sortie << (dejaEcrite ? "  (voir plus haut)\n" : "\n");
    if (dejaEcrite) return;
    for (const Noeud& terme : Termes(noeud)) Ecrit(sortie, terme, retrait + 1, ecrites);
}

// ---- Differences.

// What makes two terms the same one in two trees.
auto Cle(const Noeud& noeud) {
    const std::string boite = Texte(noeud, "box");
    return std::tuple(boite, noeud.value("column", 0), Texte(noeud, "role"),
                      boite.empty() ? Texte(noeud, "label") : "");
}

// A node of both trees: the figures, and the terms that differ. null: the branch stands in the other tree alone.
Noeud Difference(const Noeud* avant, const Noeud* apres) {
    const Noeud& l = apres ? *apres : *avant;
    Noeud noeud = {{"label", Texte(l, "label")}};
    for (const char* cle : {"box", "column", "role", "sign"})
        if (l.contains(cle)) noeud[cle] = l.at(cle);
    noeud["before"] = avant ? Valeur(*avant) : 0;
    noeud["after"] = apres ? Valeur(*apres) : 0;
    for (const auto& [cle, arbre] : {std::pair{"formulaBefore", avant}, {"formulaAfter", apres}})
        if (arbre && arbre->contains("formula")) noeud[cle] = arbre->at("formula");
    Noeud termes = Noeud::array();
    const auto cherche = [](const Noeud* parmi, const Noeud& terme) -> const Noeud* {
        if (parmi)
            for (const Noeud& autre : Termes(*parmi))
                if (Cle(autre) == Cle(terme)) return &autre;
        return nullptr;
    };
    const auto ajoute = [&](const Noeud* a, const Noeud* b) {
        if (!a || !b || Valeur(*a) != Valeur(*b)) termes.push_back(Difference(a, b));
    };
    if (avant)
        for (const Noeud& terme : Termes(*avant)) ajoute(&terme, cherche(apres, terme));
    if (apres)
        for (const Noeud& terme : Termes(*apres))
            if (!cherche(avant, terme)) ajoute(nullptr, &terme);
    if (!termes.empty()) noeud["terms"] = std::move(termes);
    return noeud;
}

void EcritDifference(std::ostream& sortie, const Noeud& noeud, std::size_t retrait) {
    const auto avant = noeud.at("before").get<std::int64_t>(), apres = noeud.at("after").get<std::int64_t>();
    const char* const signe = noeud.value("sign", 1) < 0 ? "- " : retrait > 0 && Role(noeud).empty() ? "+ " : "";
    sortie << std::string(2 * retrait, ' ') << signe << Role(noeud) << avant << " -> " << apres << " ("
           << (apres > avant ? "+" : "") << apres - avant << ")  " << Nom(noeud) << '\n';
    for (const Noeud& terme : Termes(noeud)) EcritDifference(sortie, terme, retrait + 1);
}

}  // namespace

void EcritExplication(std::ostream& sortie, const kv::Return& retour, const std::string& figure, int profondeur,
                      bool json) {
    const Noeud arbre = Arbre(retour, figure, profondeur);
    Ecrites ecrites;
    if (json)
        sortie << arbre.dump() << '\n';
    else
        Ecrit(sortie, arbre, 0, ecrites);
}

void EcritDifferences(std::ostream& sortie, const kv::Return& avant, const kv::Return& apres, const std::string& figure,
                      int profondeur, bool json) {
    const Noeud a = Arbre(avant, figure, profondeur), b = Arbre(apres, figure, profondeur);
    Noeud difference = Difference(&a, &b);
    if (json) {
        Noeud racine = {{"version", 1}};
        racine.update(difference);
        sortie << racine.dump() << '\n';
    } else {
        EcritDifference(sortie, difference, 0);
    }
}

}  // namespace outil
