#include "Explication.h"

#include <map>
#include <nlohmann/json.hpp>
#include <set>
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
    const std::string texte =
        Demande([&] { return apres.explain_difference(avant, figure.empty() ? nullptr : figure.c_str(), profondeur); });
    if (json)
        sortie << texte << '\n';
    else
        EcritDifference(sortie, Noeud::parse(texte), 0);
}

}  // namespace outil
