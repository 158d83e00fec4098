#include "tools/Resultat.h"

#include <nlohmann/json.hpp>

#include "Calcul/pInitCalcul/KVCalcul.h"
#include "support/KVTarvel.h"

namespace outil {

namespace {

using Objet = nlohmann::ordered_json;

Objet SortiesNonNulles(const CDataCalcul& data) {
    Objet sorties = Objet::object();
    for (std::size_t j = 0; j < kv::nSorties; ++j)
        if (const std::int32_t valeur = data.Sortie.valeurs[j]) sorties[kv::sortie::noms[j]] = valeur;
    return sorties;
}

Objet SortiesCompletes(const CDataCalcul& data) {
    Objet sorties = Objet::object();
    for (std::size_t j = 0; j < kv::nSorties; ++j) {
        const auto colonne = [&](std::size_t k) { return data.Colonne[k].valeurs[j]; };
        const std::u16string& detail = data.Detail.valeurs[j];
        if (data.Sortie.valeurs[j] == 0 && colonne(0) == 0 && colonne(1) == 0 && colonne(2) == 0 && detail.empty())
            continue;
        sorties[kv::sortie::noms[j]] = {{"value", data.Sortie.valeurs[j]},
                                        {"c1", colonne(0)},
                                        {"c2", colonne(1)},
                                        {"c3", colonne(2)},
                                        {"detail", kv::VersUtf8(detail)}};
    }
    return sorties;
}

Objet Entrees(const CDataCalcul& data) {
    Objet entrees = Objet::object();
    for (std::size_t i = 0; i < kv::nEntrees; ++i)
        if (const std::int32_t valeur = data.Entree.valeurs[i]) entrees[kv::entree::lignes[i].nom] = valeur;
    return entrees;
}

Objet Reports(const CDataCalcul& data) {
    Objet reports = Objet::object();
    for (std::size_t r = 0; r < kv::nReports; ++r)
        if (const std::int32_t valeur = data.Report.valeurs[r]) reports[kv::report::noms[r]] = valeur;
    return reports;
}

}  // namespace

void EcritErreur(std::ostream& sortie, const std::string& message) {
    sortie << Objet{{"ok", false}, {"error", message}}.dump(-1, ' ', false, Objet::error_handler_t::replace) << '\n';
}

void EcritResultat(std::ostream& sortie, Retour& retour, bool reussi, Forme forme) {
    if (!reussi) return EcritErreur(sortie, "the computation failed");
    if (forme == Forme::Resume) return EcritResume(sortie, *retour.data);
    Objet objet = {{"ok", true}};
    if (forme == Forme::Json) {
        objet["outputs"] = SortiesNonNulles(*retour.data);
    } else {
        objet["outputs"] = SortiesCompletes(*retour.data);
        objet["entries"] = Entrees(*retour.data);
        KV_CalculReports(retour.data.get(), &retour.periode, retour.indexation);
        objet["carry_forwards"] = Reports(*retour.data);
    }
    sortie << objet.dump() << '\n';
}

}  // namespace outil
