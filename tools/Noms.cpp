#include "tools/Noms.h"

#include <algorithm>
#include <array>

namespace outil {

namespace {

// What it takes to make a name of a mistyped one, letter by letter: one left out counts least, as a name is often
// shortened; two neighbours that changed places count as one mistake.
constexpr std::size_t nOubli = 1, nErreur = 3;

std::size_t Ecart(const std::string& saisi, const std::string& nom) {
    std::array<std::vector<std::size_t>, 3> rangs;  // the last three rows of the table of all beginnings
    for (auto& rang : rangs) rang.resize(nom.size() + 1);
    for (std::size_t j = 0; j <= nom.size(); ++j) rangs[0][j] = j * nOubli;
    for (std::size_t i = 1; i <= saisi.size(); ++i) {
        auto &rang = rangs[i % 3], &avant = rangs[(i + 2) % 3], &encoreAvant = rangs[(i + 1) % 3];
        rang[0] = i * nErreur;
        for (std::size_t j = 1; j <= nom.size(); ++j) {
            const std::size_t change = avant[j - 1] + (saisi[i - 1] == nom[j - 1] ? 0 : nErreur);
            rang[j] = std::min({change, avant[j] + nErreur, rang[j - 1] + nOubli});
            if (i > 1 && j > 1 && saisi[i - 1] == nom[j - 2] && saisi[i - 2] == nom[j - 1])
                rang[j] = std::min(rang[j], encoreAvant[j - 2] + nErreur);
        }
    }
    return rangs[saisi.size() % 3][nom.size()];
}

}  // namespace

std::string EnMinuscules(std::string_view nom) {
    std::string minuscules(nom);
    for (char& c : minuscules)
        if ('A' <= c && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return minuscules;
}

std::vector<std::string_view> LesPlusProches(std::string_view saisi, const std::vector<std::string_view>& noms) {
    const std::string cherche = EnMinuscules(saisi);
    std::vector<std::pair<std::size_t, std::string_view>> ecarts;
    for (const std::string_view nom : noms)
        if (const std::size_t ecart = Ecart(cherche, EnMinuscules(nom));
            ecart <= std::max<std::size_t>(cherche.size(), 3))
            ecarts.emplace_back(ecart, nom);
    std::sort(ecarts.begin(), ecarts.end());
    std::vector<std::string_view> proches;
    for (const auto& [ecart, nom] : ecarts)
        if (proches.size() < 3) proches.push_back(nom);
    return proches;
}

std::string Liste(const std::vector<std::string>& proches) {
    std::string texte;
    for (const std::string& nom : proches) texte += (texte.empty() ? "; nearest: " : ", ") + nom;
    return texte;
}

std::string Proches(std::string_view saisi, const std::vector<std::string_view>& noms) {
    const auto proches = LesPlusProches(saisi, noms);
    return Liste({proches.begin(), proches.end()});
}

}  // namespace outil
