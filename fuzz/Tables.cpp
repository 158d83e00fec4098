#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <stdexcept>

#include "tools/Csv.h"

// Any text as a CSV: what is read, written out and read again is the same.

namespace {

using Enregistrements = std::vector<std::vector<std::string>>;

Enregistrements Lus(const std::string& texte, std::optional<char> separateur, char* trouve = nullptr) {
    std::istringstream entree(texte);
    outil::LecteurCsv lecteur(entree, separateur);
    Enregistrements lus;
    for (std::vector<std::string_view> champs; lecteur.Suivant(champs);) lus.emplace_back(champs.begin(), champs.end());
    if (trouve) *trouve = lecteur.Separateur();
    return lus;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* donnees, std::size_t taille) {
    char separateur = ',';
    const Enregistrements lus = Lus(std::string(reinterpret_cast<const char*>(donnees), taille), {}, &separateur);
    std::string ecrit;
    for (const auto& champs : lus) {
        for (std::size_t i = 0; i < champs.size(); ++i) {
            if (i > 0) ecrit += separateur;
            // An empty line holds nothing: a lone empty field is written with its quotes.
            if (champs.size() == 1 && champs[0].empty())
                ecrit += "\"\"";
            else
                outil::EcritChamp(ecrit, champs[i], separateur);
        }
        ecrit += '\n';
    }
    if (Lus(ecrit, separateur) != lus) std::abort();
    return 0;
}
