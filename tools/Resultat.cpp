#include "tools/Resultat.h"

#include <algorithm>
#include <iomanip>
#include <nlohmann/json.hpp>
#include <vector>

#include "interface/Avertissements.h"
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

// The year, and the figures that are not those of the year.
Objet Loi(const LoiNommee& loi) {
    Objet objet = {{"year", kv::anneeDesRevenus}};
    for (const kv::Parametre p : loi.Changements()) objet["changes"][p.Ligne().nom] = FigureJson(loi.loi, p);
    return objet;
}

struct Difference {
    std::string nom;
    std::int32_t avant, apres;
};
std::vector<Difference> Differences(const CDataCalcul& avant, const CDataCalcul& apres) {
    std::vector<Difference> differences;
    for (std::size_t j = 0; j < kv::nSorties; ++j) {
        const auto compare = [&](const char* suffixe, const kv::ZoneSortie& a, const kv::ZoneSortie& b) {
            if (a.valeurs[j] != b.valeurs[j])
                differences.push_back({std::string(kv::sortie::noms[j]) + suffixe, a.valeurs[j], b.valeurs[j]});
        };
        compare("", avant.Sortie, apres.Sortie);
        constexpr const char* colonnes[] = {".c1", ".c2", ".c3"};
        for (std::size_t k = 0; k < 3; ++k) compare(colonnes[k], avant.Colonne[k], apres.Colonne[k]);
    }
    for (std::size_t r = 0; r < kv::nReports; ++r)
        if (avant.Report.valeurs[r] != apres.Report.valeurs[r])
            differences.push_back({kv::report::noms[r], avant.Report.valeurs[r], apres.Report.valeurs[r]});
    return differences;
}

// What a household pays, or gets back as a negative amount.
std::int32_t Net(const CDataCalcul& data) { return data.Sortie["S_NET_A_PAYER"] - data.Sortie["S_NET_RESTITUE"]; }

}  // namespace

void EcritComparaison(std::ostream& sortie, const CDataCalcul& avant, const LoiNommee& loiAvant,
                      const CDataCalcul& apres, const LoiNommee& loiApres, bool json) {
    const std::vector<Difference> differences = Differences(avant, apres);
    if (json) {
        Objet objet = {{"ok", true},
                       {"version", KV_VERSION},
                       {"laws", {Loi(loiAvant), Loi(loiApres)}},
                       {"differences", Objet::object()}};
        for (const Difference& d : differences) objet["differences"][d.nom] = {d.avant, d.apres};
        sortie << objet.dump() << '\n';
        return;
    }
    const auto ligne = [&](const std::string& nom, const std::string& a, const std::string& b,
                           const std::string& ecart) {
        const auto largeur = static_cast<int>(std::max<std::size_t>(12, loiApres.nom.size() + 2));
        sortie << std::left << std::setw(32) << nom << std::right << std::setw(12) << a << std::setw(largeur) << b
               << std::setw(14) << ecart << '\n';
    };
    const auto figures = [&](const std::string& nom, std::int32_t a, std::int32_t b) {
        const std::int64_t ecart = std::int64_t{b} - a;
        ligne(nom, std::to_string(a), std::to_string(b), (ecart > 0 ? "+" : "") + std::to_string(ecart));
    };
    ligne("", loiAvant.nom, loiApres.nom, "difference");
    figures("to pay, less what is refunded", Net(avant), Net(apres));
    if (differences.empty()) sortie << "Every figure is the same.\n";
    for (const Difference& d : differences) figures(d.nom, d.avant, d.apres);
}

void EcritErreur(std::ostream& sortie, const std::string& message) {
    sortie << Objet{{"ok", false}, {"error", message}}.dump(-1, ' ', false, Objet::error_handler_t::replace) << '\n';
}

void EcritResultat(std::ostream& sortie, Retour& retour, const LoiNommee& loi, bool reussi, Forme forme) {
    if (!reussi) return EcritErreur(sortie, "the computation failed");
    if (forme == Forme::Resume) return EcritResume(sortie, *retour.data, loi);
    Objet objet = {{"ok", true}, {"version", KV_VERSION}, {"law", Loi(loi)}};
    if (const auto messages = kv::Avertissements(retour.data->Entree); !messages.empty()) objet["warnings"] = messages;
    if (forme == Forme::Json) {
        objet["outputs"] = SortiesNonNulles(*retour.data);
    } else {
        objet["outputs"] = SortiesCompletes(*retour.data);
        objet["entries"] = Entrees(*retour.data);
        retour.CalculeReports();
        objet["carry_forwards"] = Reports(*retour.data);
    }
    sortie << objet.dump() << '\n';
}

}  // namespace outil
