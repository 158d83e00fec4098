#include <kv.hpp>
#include <limits>
#include <nlohmann/json.hpp>

#include "Boites.h"
#include "Retour.h"

// The JSON Schema of a return, made from the catalogues: what the reader of returns accepts.

namespace outil {

namespace {

using Objet = nlohmann::ordered_json;

// Amounts by entry box, of those that are chosen; each described by its label.
template <class Choix>
Objet Montants(const char* montant, Choix choix) {
    Objet boites = Objet::object();
    for (int32_t i = 0, n = kv::count(KV_ENTRY); i < n; ++i) {
        const kv_box box = kv::describe(KV_ENTRY, i);
        if (!choix(box)) continue;
        boites[box.name] = {{"$ref", montant}, {"description", std::string(box.label) + ", " + box.person_name}};
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
    Objet proprietes = {{"entries", Montants(montant, [](const kv_box&) { return true; })}};
    proprietes["ti"] = Montants(montant, [](const kv_box& box) { return box.ti >= 0; });
    for (const char* zone : {"tix", "tiy"})
        proprietes[zone] = Montants(montant, [](const kv_box& box) { return box.tix >= 0; });
    for (const char* zone : {"tk", "tkz"})
        proprietes[zone] = Montants(montant, [](const kv_box& box) { return box.tk >= 0; });
    proprietes["quotients"] = Montants(parCoefficient, [](const kv_box& box) { return box.quotient >= 0; });
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
