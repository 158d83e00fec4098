#include "Libelles.h"

namespace outil {

std::string NomDeFigure(const std::string& figure) { return figure.empty() ? "net" : figure; }

std::string LibelleDeFigure(const std::string& figure) {
    if (figure.empty()) return "Montant net à payer, négatif : restitution";
    if (const auto report = kv::find(KV_CARRY, figure)) return kv::describe(KV_CARRY, *report).label;
    const std::size_t point = figure.rfind(".c");
    const auto sortie = kv::find(KV_OUTPUT, figure.substr(0, point));
    if (!sortie) return figure;
    const kv_box box = kv::describe(KV_OUTPUT, *sortie);
    if (point == figure.npos) return box.label;
    const char* const colonne = box.columns[static_cast<std::size_t>(figure.back() - '1')];
    return std::string(box.label) + ", " + (*colonne ? colonne : figure.substr(point + 1));
}

std::string LibelleDuMontant(const std::string& nom, int32_t entree) {
    const kv_box box = kv::describe(KV_ENTRY, entree);
    std::string libelle = box.label;
    if (std::string_view(box.person_name) != "foyer") libelle += std::string(", ") + box.person_name;
    if (nom.starts_with("quotient.")) {
        libelle += ", revenu exceptionnel";
    } else if (nom.find('.') != nom.npos) {
        libelle += ", montant étranger (" + nom.substr(0, nom.find('.')) + ')';
    }
    return libelle;
}

}  // namespace outil
