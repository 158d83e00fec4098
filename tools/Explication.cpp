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
        {"base", "base"},       {"rate", "taux"},       {"amount", "montant"}, {"numerator", "fois"},
        {"denominator", "sur"}, {"among", "entre"},     {"income", "revenu"},  {"parts", "parts"},
        {"count", "nombre"},    {"threshold", "seuil"}, {"effect", "effet"},   {"option", "option"},
    };
    const auto role = roles.find(Texte(noeud, "role"));
    return role == roles.end() ? "" : role->second + ": ";
}

// A rate or a base that "14 % de 34558" has told already.
bool DansLaFormule(const Noeud& operande) {
    const std::string role = Texte(operande, "role");
    return (role == "base" || role == "rate") && Texte(operande, "rule") == "part" && Termes(operande).empty();
}

// ecrites: the figures of this run whose terms stand above already. Another run finds other figures by the same names.
using Ecrites = std::set<std::tuple<std::string, int, std::int64_t>>;
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
    Ecrites deLAutreCalcul;
    Ecrites& dejaVues = passage.empty() ? ecrites : deLAutreCalcul;
    const bool dejaEcrite = !boite.empty() && boite != "net" && Texte(noeud, "rule") != "box" &&
                            !Termes(noeud).empty() &&
                            !dejaVues.emplace(boite, noeud.value("column", 0), Valeur(noeud)).second;
    sortie << (dejaEcrite ? "  (voir plus haut)\n" : "\n");
    if (dejaEcrite) return;
    for (const Noeud& terme : Termes(noeud))
        if (!DansLaFormule(terme)) Ecrit(sortie, terme, retrait + 1, dejaVues);
}

// ---- Differences.

// ecrites: the branches that stand above already.
using BranchesEcrites = std::set<std::tuple<std::string, int, std::string, std::string>>;
void EcritDifference(std::ostream& sortie, const Noeud& noeud, std::size_t retrait, BranchesEcrites& ecrites) {
    const char* const signe = noeud.value("sign", 1) < 0 ? "- " : retrait > 0 && Role(noeud).empty() ? "+ " : "";
    const auto valeur = [&](const char* cle) {
        return noeud.contains(cle) ? std::to_string(noeud.at(cle).get<std::int64_t>()) : "?";
    };
    sortie << std::string(2 * retrait, ' ') << signe << Role(noeud) << valeur("before") << " -> " << valeur("after");
    if (noeud.contains("before") && noeud.contains("after")) {
        const std::int64_t ecart = noeud.at("after").get<std::int64_t>() - noeud.at("before").get<std::int64_t>();
        sortie << " (" << (ecart > 0 ? "+" : "") << ecart << ')';
    }
    sortie << "  " << Nom(noeud);
    // Two rules, or nothing below that tells it: the words do.
    const std::string avant = Texte(noeud, "formulaBefore"), apres = Texte(noeud, "formulaAfter");
    if (avant != apres && (Termes(noeud).empty() || !noeud.contains("rule")))
        sortie << " = " << (avant.empty() ? "-" : avant) << " -> " << (apres.empty() ? "-" : apres);
    if (const std::string seul = Texte(noeud, "in"); !seul.empty())
        sortie << (seul == "before" ? "  [compte dans le premier seulement]" : "  [compte dans le second seulement]");
    const std::string boite = Texte(noeud, "box");
    const bool dejaEcrite = !boite.empty() && !Termes(noeud).empty() &&
                            !ecrites.emplace(boite, noeud.value("column", 0), valeur("before"), valeur("after")).second;
    sortie << (dejaEcrite ? "  (voir plus haut)\n" : "\n");
    if (dejaEcrite) return;
    for (const Noeud& terme : Termes(noeud)) EcritDifference(sortie, terme, retrait + 1, ecrites);
}

}  // namespace

void EcritExplication(std::ostream& sortie, const kv::Return& retour, const std::string& figure, int profondeur,
                      bool json) {
    const std::string texte =
        Demande([&] { return retour.explain(figure.empty() ? nullptr : figure.c_str(), profondeur); });
    Ecrites ecrites;
    if (json)
        sortie << texte << '\n';
    else
        Ecrit(sortie, Noeud::parse(texte), 0, ecrites);
}

void EcritDifferences(std::ostream& sortie, const kv::Return& avant, const kv::Return& apres, const std::string& figure,
                      int profondeur, bool json) {
    BranchesEcrites ecrites;
    const std::string texte =
        Demande([&] { return apres.explain_difference(avant, figure.empty() ? nullptr : figure.c_str(), profondeur); });
    if (json)
        sortie << texte << '\n';
    else
        EcritDifference(sortie, Noeud::parse(texte), 0, ecrites);
}

}  // namespace outil
