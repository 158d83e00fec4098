#include <limits>
#include <nlohmann/json.hpp>

#include "Calcul/cCalcul/Catalogues.h"
#include "interface/Sens.h"
#include "tools/Boites.h"
#include "tools/Retour.h"

// The JSON Schema of a return, made from the catalogues: what the reader of returns accepts.

namespace outil {

namespace {

using Objet = nlohmann::ordered_json;

// Amounts by entry box, of those that are chosen; each described by its label.
template <class Choix>
Objet Montants(const char* montant, Choix choix) {
    Objet boites = Objet::object();
    for (const CaseEntreeDef& fiche : TableEntree) {
        if (!choix(fiche)) continue;
        const CaseEntree c = CaseEntree::Numero(static_cast<int>(fiche.Index));
        Objet boite = {{"$ref", montant}};
        boite["description"] = kv::sens::De(c).libelle + ", " + kv::sens::Personne(c);
        boites[kv::entree::lignes[fiche.Index].nom] = boite;
    }
    return {{"type", "object"}, {"properties", boites}, {"additionalProperties", false}};
}

}  // namespace

void EcritSchema(std::ostream& sortie) {
    constexpr const char *montant = "#/$defs/amount", *parCoefficient = "#/$defs/byCoefficient";
    const Objet definitions = {{"amount",
                                {{"type", "integer"},
                                 {"minimum", std::numeric_limits<std::int32_t>::min()},
                                 {"maximum", std::numeric_limits<std::int32_t>::max()}}},
                               {"byCoefficient",
                                {{"type", "object"},
                                 {"patternProperties", {{"^(0|-?[1-9][0-9]*)$", {{"$ref", montant}}}}},
                                 {"additionalProperties", false}}}};
    const Objet date = {{"type", "string"}, {"pattern", "^([0-9]{4}-[0-9]{2}-[0-9]{2}|[0-9]{2}/[0-9]{2}/[0-9]{4})$"}};
    Objet proprietes = {{"entries", Montants(montant, [](const auto&) { return true; })}};
    proprietes["ti"] = Montants(montant, [](const auto& c) { return c.nTI >= 0; });
    for (const char* zone : {"tix", "tiy"})
        proprietes[zone] = Montants(montant, [](const auto& c) { return c.nTIX >= 0; });
    for (const char* zone : {"tk", "tkz"})
        proprietes[zone] = Montants(montant, [](const auto& c) { return c.nTK >= 0; });
    proprietes["quotients"] = Montants(parCoefficient, [](const auto& c) { return c.nQuotient >= 0; });
    proprietes["launch"] = {{"enum", NomsDesLancements()}};
    proprietes["indexation"] = {{"type", "number"}};
    proprietes["period"] = {{"type", "array"}, {"items", date}, {"minItems", 2}, {"maxItems", 2}};
    const Objet schema = {{"$schema", "https://json-schema.org/draft/2020-12/schema"},
                          {"title", "A French income-tax return, form 2042, income of 2017"},
                          {"type", "object"},
                          {"properties", proprietes},
                          {"required", {"entries"}},
                          {"additionalProperties", false},
                          {"$defs", definitions}};
    sortie << schema.dump(1) << '\n';
}

}  // namespace outil
