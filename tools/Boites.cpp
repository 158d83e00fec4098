#include "tools/Boites.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "Calcul/cCalcul/Catalogues.h"
#include "interface/Sens.h"
#include "tools/Noms.h"

namespace outil {

namespace {

using Objet = nlohmann::ordered_json;
namespace sens = kv::sens;

std::vector<std::string> ColonnesDe(const sens::Colonnes& c) {
    if (!*c.c1 && !*c.c2 && !*c.c3) return {};
    return {c.c1, c.c2, c.c3};
}

// The companion areas in which an entry box has a slot.
std::vector<const char*> Zones(const CaseEntreeDef& c) {
    std::vector<const char*> zones;
    for (const auto& [zone, slot] : {std::pair("quotients", c.nQuotient), std::pair("ti", c.nTI),
                                     std::pair("tix", c.nTIX), std::pair("tk", c.nTK)})
        if (slot >= 0) zones.push_back(zone);
    return zones;
}

// Calls f with each box of the three catalogues: its type, its number, its name and what it means.
template <class Fonction>
void PourChaqueBoite(Fonction f) {
    for (int i = 0; i < kv::nEntrees; ++i) f(CaseEntree::Numero(i), kv::entree::lignes[i].nom);
    for (int j = 0; j < kv::nSorties; ++j) f(CaseSortie::Numero(j), kv::sortie::noms[j]);
    for (int r = 0; r < kv::nReports; ++r) f(CaseReport::Numero(r), kv::report::noms[r]);
}

std::string Joint(const std::vector<const char*>& morceaux) {
    std::string texte;
    for (const char* morceau : morceaux) texte.append(texte.empty() ? "" : ", ").append(morceau);
    return texte;
}

// The second line of a block, and the rest of a row of the document: what is known of a box beside its label.
std::string Precisions(CaseEntree c) {
    const sens::SensEntree& s = sens::De(c);
    const std::string zones = Joint(Zones(TableEntree[static_cast<std::size_t>(c.numero)]));
    return std::string(sens::NomGenre(s.genre)) + ", " + sens::Personne(c) + ", " + sens::NomGroupe(s.groupe) +
           (zones.empty() ? "" : " (" + zones + ")");
}
std::string Precisions(CaseSortie c) {
    const sens::SensSortie& s = sens::De(c);
    if (s.etape.empty()) return "no step writes it";
    std::string texte = std::string(sens::NomGenre(s.genre)) + ", step " + s.etape;
    const auto colonne = [&](const char* nom, const char* libelle) {
        if (*libelle) texte += std::string("; ") + nom + ": " + libelle;
    };
    colonne("c1", s.colonnes.c1), colonne("c2", s.colonnes.c2), colonne("c3", s.colonnes.c3);
    return texte;
}
std::string Precisions(CaseReport c) {
    const sens::SensReport& s = sens::De(c);
    return "euros, box " + s.boite + " of next year's return" + (s.source.empty() ? "" : ", takes over " + s.source);
}

Objet Json(CaseEntree c) {
    const sens::SensEntree& s = sens::De(c);
    Objet objet = {{"name", kv::entree::lignes[c.numero].nom},
                   {"catalogue", "entry"},
                   {"number", c.numero},
                   {"label", s.libelle},
                   {"kind", sens::NomGenre(s.genre)},
                   {"person", sens::Personne(c)},
                   {"group", sens::NomGroupe(s.groupe)}};
    if (const auto zones = Zones(TableEntree[static_cast<std::size_t>(c.numero)]); !zones.empty())
        objet["areas"] = zones;
    return objet;
}
Objet Json(CaseSortie c) {
    const sens::SensSortie& s = sens::De(c);
    return {{"name", kv::sortie::noms[c.numero]},
            {"catalogue", "output"},
            {"number", c.numero},
            {"label", s.libelle},
            {"kind", sens::NomGenre(s.genre)},
            {"person", "foyer"},
            {"group", sens::NomGroupe(s.groupe)},
            {"step", s.etape},
            {"columns", ColonnesDe(s.colonnes)}};
}
Objet Json(CaseReport c) {
    const sens::SensReport& s = sens::De(c);
    return {{"name", kv::report::noms[c.numero]},
            {"catalogue", "carry"},
            {"number", c.numero},
            {"label", s.libelle},
            {"kind", "euros"},
            {"person", "foyer"},
            {"group", "Déclaration suivante"},
            {"box", s.boite},
            {"takes", s.source}};
}

const char* Catalogue(CaseEntree) { return "entry"; }
const char* Catalogue(CaseSortie) { return "output"; }
const char* Catalogue(CaseReport) { return "carry-forward"; }

}  // namespace

void EcritCatalogues(std::ostream& sortie) {
    for (const CaseEntreeDef& c : TableEntree) {
        sortie << "entry    " << c.Index << '\t' << kv::entree::lignes[c.Index].nom << "\tperson " << c.Type;
        if (c.CaseLiee >= 0) sortie << "\tlinked to " << kv::entree::lignes[c.CaseLiee].nom;
        for (const auto& [zone, slot] : {std::pair("quotient", c.nQuotient), std::pair("ti", c.nTI),
                                         std::pair("tix", c.nTIX), std::pair("tk", c.nTK)})
            if (slot >= 0) sortie << '\t' << zone << ' ' << slot;
        sortie << '\n';
    }
    for (std::size_t j = 0; j < kv::nSorties; ++j) sortie << "output   " << j << '\t' << kv::sortie::noms[j] << '\n';
    for (std::size_t r = 0; r < kv::nReports; ++r) sortie << "carry    " << r << '\t' << kv::report::noms[r] << '\n';
}

bool EcritBoites(std::ostream& sortie, std::string_view motif) {
    bool trouvee = false;
    PourChaqueBoite([&](auto c, const char* nom) {
        if (!sens::Correspond(nom, sens::De(c).libelle, motif)) return;
        sortie << (std::exchange(trouvee, true) ? "\n" : "") << nom << "  " << sens::De(c).libelle << "\n    "
               << Catalogue(c) << ' ' << c.numero << ", " << Precisions(c) << '\n';
    });
    return trouvee;
}

void EcritBoitesJson(std::ostream& sortie, std::string_view motif) {
    const char* avant = "[\n";
    PourChaqueBoite([&](auto c, const char* nom) {
        if (!motif.empty() && !sens::Correspond(nom, sens::De(c).libelle, motif)) return;
        sortie << std::exchange(avant, ",\n") << Json(c).dump();
    });
    sortie << (*avant == '[' ? "[]" : "\n]") << '\n';
}

void EcritBoitesMarkdown(std::ostream& sortie) {
    sortie << "# The boxes\n\n"
              "Generated by `kvcalcul boxes --markdown`; `kvcalcul boxes WORDS` searches.\n\n"
              "## Entry boxes\n";
    for (int g = 0; g <= static_cast<int>(sens::Groupe::HorsCalcul); ++g) {
        const auto groupe = static_cast<sens::Groupe>(g);
        sortie << "\n### " << sens::NomGroupe(groupe)
               << "\n\n| box | label | kind | person |\n| --- | --- | --- | --- |\n";
        for (int i = 0; i < kv::nEntrees; ++i) {
            const CaseEntree c = CaseEntree::Numero(i);
            const sens::SensEntree& s = sens::De(c);
            if (s.groupe == groupe)
                sortie << "| " << kv::entree::lignes[i].nom << " | " << s.libelle << " | " << sens::NomGenre(s.genre)
                       << " | " << sens::Personne(c) << " |\n";
        }
    }
    sortie << "\n## Output boxes\n\n| box | label | kind, step and columns |\n| --- | --- | --- |\n";
    for (int j = 0; j < kv::nSorties; ++j) {
        const CaseSortie c = CaseSortie::Numero(j);
        sortie << "| " << kv::sortie::noms[j] << " | " << sens::De(c).libelle << " | " << Precisions(c) << " |\n";
    }
    sortie << "\n## Carry-forward boxes\n\n| box | label | takes over |\n| --- | --- | --- |\n";
    for (int r = 0; r < kv::nReports; ++r) {
        const sens::SensReport& s = sens::De(CaseReport::Numero(r));
        sortie << "| " << kv::report::noms[r] << " | " << s.libelle << " | " << s.source << " |\n";
    }
}

std::string BoitesProches(std::string_view saisi) {
    std::vector<std::string_view> noms;
    for (const auto& ligne : kv::entree::lignes) noms.push_back(ligne.nom);
    std::vector<std::string> proches;
    for (const std::string_view nom : LesPlusProches(saisi, noms))
        proches.push_back(std::string(nom) + " (" + sens::De(CaseEntree::Numero(kv::NumeroEntree(nom))).libelle + ")");
    return Liste(proches);
}

}  // namespace outil
