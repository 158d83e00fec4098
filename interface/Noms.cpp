#include "interface/Noms.h"

#include <algorithm>
#include <array>

namespace kv {

namespace {

// What it takes to make a name of a mistyped one, letter by letter: one left out counts least, as a name is often
// shortened; two neighbours that changed places count as one mistake.
constexpr std::size_t nOubli = 1, nErreur = 3;

// How far names are from a mistyped one.
class Ecarts {
  public:
    explicit Ecarts(std::string_view saisi) : m_saisi(EnMinuscules(saisi)) {}

    const std::string& Saisi() const { return m_saisi; }

    std::size_t A(const std::string& nom) {
        for (auto& rang : m_rangs) rang.resize(nom.size() + 1);
        for (std::size_t j = 0; j <= nom.size(); ++j) m_rangs[0][j] = j * nOubli;
        for (std::size_t i = 1; i <= m_saisi.size(); ++i) {
            auto &rang = m_rangs[i % 3], &avant = m_rangs[(i + 2) % 3], &encoreAvant = m_rangs[(i + 1) % 3];
            rang[0] = i * nErreur;
            for (std::size_t j = 1; j <= nom.size(); ++j) {
                const std::size_t change = avant[j - 1] + (m_saisi[i - 1] == nom[j - 1] ? 0 : nErreur);
                rang[j] = std::min({change, avant[j] + nErreur, rang[j - 1] + nOubli});
                if (i > 1 && j > 1 && m_saisi[i - 1] == nom[j - 2] && m_saisi[i - 2] == nom[j - 1])
                    rang[j] = std::min(rang[j], encoreAvant[j - 2] + nErreur);
            }
        }
        return m_rangs[m_saisi.size() % 3][nom.size()];
    }

  private:
    std::string m_saisi;
    std::array<std::vector<std::size_t>, 3> m_rangs;  // the last three rows of the table of all beginnings
};

}  // namespace

std::string EnMinuscules(std::string_view nom) {
    std::string minuscules(nom);
    for (char& c : minuscules)
        if ('A' <= c && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return minuscules;
}

std::vector<std::size_t> LesPlusProches(std::string_view saisi, const std::vector<std::string_view>& noms) {
    constexpr std::size_t plusLongNom = 64;
    if (saisi.size() > plusLongNom) return {};  // no name at all
    Ecarts depuis(saisi);
    const std::size_t limite = std::max<std::size_t>(depuis.Saisi().size(), 3);
    std::vector<std::pair<std::size_t, std::size_t>> ecarts;
    for (std::size_t i = 0; i < noms.size(); ++i)
        if (const std::size_t ecart = depuis.A(EnMinuscules(noms[i])); ecart <= limite) ecarts.emplace_back(ecart, i);
    std::sort(ecarts.begin(), ecarts.end(), [&](const auto& a, const auto& b) {
        return a.first != b.first ? a.first < b.first : noms[a.second] < noms[b.second];
    });
    std::vector<std::size_t> proches;
    for (const auto& [ecart, rang] : ecarts)
        if (proches.size() < 3) proches.push_back(rang);
    return proches;
}

std::string Liste(const std::vector<std::string>& proches) {
    std::string texte;
    for (const std::string& nom : proches) texte += (texte.empty() ? "; nearest: " : ", ") + nom;
    return texte;
}

}  // namespace kv
