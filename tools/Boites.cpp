#include "Boites.h"

#include <algorithm>
#include <iterator>
#include <kv.hpp>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

namespace outil {

namespace {

using Objet = nlohmann::ordered_json;

constexpr kv_catalogue catalogues[] = {KV_ENTRY, KV_OUTPUT, KV_CARRY};

const char* NomCatalogue(kv_catalogue catalogue) {
    static constexpr const char* noms[] = {"entry", "output", "carry-forward"};
    return noms[catalogue];
}

// Calls f with each box of a catalogue: its number, and what it means.
template <class Fonction>
void PourChaqueBoite(kv_catalogue catalogue, Fonction f) {
    for (int32_t i = 0, n = kv::count(catalogue); i < n; ++i) f(i, kv::describe(catalogue, i));
}

// Calls f with the boxes that a text finds, in the three catalogues; with all of them for an empty text.
template <class Fonction>
void PourChaqueBoite(const std::string& motif, Fonction f) {
    for (const kv_catalogue catalogue : catalogues) {
        if (motif.empty())
            PourChaqueBoite(catalogue, [&](int32_t i, const kv_box& box) { f(catalogue, i, box); });
        else
            for (const int32_t i : kv::search(catalogue, motif)) f(catalogue, i, kv::describe(catalogue, i));
    }
}

// What an entry box can hold beside its own amount, by the names that a return gives it.
std::vector<std::pair<const char*, int32_t>> Aires(const kv_box& box) {
    std::vector<std::pair<const char*, int32_t>> aires = {
        {"quotients", box.quotient}, {"ti", box.ti}, {"tix", box.tix}, {"tk", box.tk}};
    std::erase_if(aires, [](const auto& aire) { return aire.second < 0; });
    return aires;
}

// The second line of a block, and the rest of a row of the document: what is known of a box beside its label.
std::string Precisions(kv_catalogue catalogue, const kv_box& box) {
    std::string texte = box.kind_name;
    if (catalogue == KV_CARRY) {
        texte += std::string(", box ") + box.next + " of next year's return";
        return *box.takes ? texte + ", takes over " + box.takes : texte;
    }
    if (catalogue == KV_OUTPUT) {
        if (!*box.step) return "no step writes it";
        texte += std::string(", step ") + box.step;
        for (std::size_t k = 0; k < std::size(box.columns); ++k)
            if (*box.columns[k]) texte += "; c" + std::to_string(k + 1) + ": " + box.columns[k];
        return texte;
    }
    texte += std::string(", ") + box.person_name + ", " + box.group;
    std::string aires;
    for (const auto& [aire, place] : Aires(box)) aires.append(aires.empty() ? "" : ", ").append(aire);
    return aires.empty() ? texte : texte + " (" + aires + ")";
}

Objet Json(kv_catalogue catalogue, int32_t numero, const kv_box& box) {
    Objet objet = {{"name", box.name},      {"catalogue", catalogue == KV_CARRY ? "carry" : NomCatalogue(catalogue)},
                   {"number", numero},      {"label", box.label},
                   {"kind", box.kind_name}, {"person", box.person_name},
                   {"group", box.group}};
    switch (catalogue) {
        case KV_ENTRY:
            for (const auto& [aire, place] : Aires(box)) objet["areas"].push_back(aire);
            break;
        case KV_OUTPUT:
            objet["step"] = box.step;
            objet["columns"] = Objet::array();
            if (std::any_of(std::begin(box.columns), std::end(box.columns), [](const char* c) { return *c != 0; }))
                objet["columns"] = box.columns;
            break;
        case KV_CARRY:
            objet["box"] = box.next;
            objet["takes"] = box.takes;
    }
    return objet;
}

}  // namespace

void EcritCatalogues(std::ostream& sortie) {
    PourChaqueBoite(KV_ENTRY, [&](int32_t i, const kv_box& box) {
        sortie << "entry    " << i << '\t' << box.name << "\tperson " << box.person;
        if (box.linked >= 0) sortie << "\tlinked to " << kv::describe(KV_ENTRY, box.linked).name;
        for (const auto& [aire, place] : Aires(box))
            sortie << '\t' << (place == box.quotient && *aire == 'q' ? "quotient" : aire) << ' ' << place;
        sortie << '\n';
    });
    PourChaqueBoite(KV_OUTPUT,
                    [&](int32_t j, const kv_box& box) { sortie << "output   " << j << '\t' << box.name << '\n'; });
    PourChaqueBoite(KV_CARRY,
                    [&](int32_t r, const kv_box& box) { sortie << "carry    " << r << '\t' << box.name << '\n'; });
}

bool EcritBoites(std::ostream& sortie, const std::string& motif) {
    bool trouvee = false;
    PourChaqueBoite(motif, [&](kv_catalogue catalogue, int32_t numero, const kv_box& box) {
        sortie << (std::exchange(trouvee, true) ? "\n" : "") << box.name << "  " << box.label << "\n    "
               << NomCatalogue(catalogue) << ' ' << numero << ", " << Precisions(catalogue, box) << '\n';
    });
    return trouvee;
}

void EcritBoitesJson(std::ostream& sortie, const std::string& motif) {
    const char* avant = "[\n";
    PourChaqueBoite(motif, [&](kv_catalogue catalogue, int32_t numero, const kv_box& box) {
        sortie << std::exchange(avant, ",\n") << Json(catalogue, numero, box).dump();
    });
    sortie << (*avant == '[' ? "[]" : "\n]") << '\n';
}

void EcritBoitesMarkdown(std::ostream& sortie) {
    sortie << "# The boxes\n\n"
              "Generated by `kvcalcul boxes --markdown`; `kvcalcul boxes WORDS` searches.\n\n"
              "## Entry boxes\n";
    for (int32_t groupe = 0, ecrites = 0; ecrites < kv::count(KV_ENTRY); ++groupe) {
        bool titre = false;
        PourChaqueBoite(KV_ENTRY, [&](int32_t, const kv_box& box) {
            if (box.group_number != groupe) return;
            if (!std::exchange(titre, true))
                sortie << "\n### " << box.group << "\n\n| box | label | kind | person |\n| --- | --- | --- | --- |\n";
            sortie << "| " << box.name << " | " << box.label << " | " << box.kind_name << " | " << box.person_name
                   << " |\n";
            ++ecrites;
        });
    }
    sortie << "\n## Output boxes\n\n| box | label | kind, step and columns |\n| --- | --- | --- |\n";
    PourChaqueBoite(KV_OUTPUT, [&](int32_t, const kv_box& box) {
        sortie << "| " << box.name << " | " << box.label << " | " << Precisions(KV_OUTPUT, box) << " |\n";
    });
    sortie << "\n## Carry-forward boxes\n\n| box | label | takes over |\n| --- | --- | --- |\n";
    PourChaqueBoite(KV_CARRY, [&](int32_t, const kv_box& box) {
        sortie << "| " << box.name << " | " << box.label << " | " << box.takes << " |\n";
    });
}

void EcritReductions(std::ostream& sortie) {
    for (const kv_reduction& r : kv::reduction_lines()) {
        sortie << r.line;
        for (const char* valeur : {r.base, r.rate, r.ceiling, r.group, r.years, r.last, r.carried})
            sortie << '\t' << (*valeur ? valeur : "-");
        sortie << '\n';
    }
}

std::string BoitesProches(const std::string& saisi) {
    std::string texte;
    for (const int32_t i : kv::nearest(KV_ENTRY, saisi)) {
        const kv_box box = kv::describe(KV_ENTRY, i);
        texte += std::string(texte.empty() ? "; nearest: " : ", ") + box.name + " (" + box.label + ")";
    }
    return texte;
}

}  // namespace outil
