#include "Progression.h"

#include <iostream>
#include <string>

namespace outil {

namespace {

constexpr const char* effaceLigne = "\r\033[K";

// "1 234 567"
std::string ParMilliers(std::int64_t n) {
    std::string texte = std::to_string(n);
    for (std::size_t i = texte.size(); i > 3; i -= 3) texte.insert(i - 3, 1, ' ');
    return texte;
}

std::string Duree(double secondes) {
    const auto s = static_cast<std::int64_t>(secondes);
    if (s < 90) return std::to_string(s) + " s";
    if (s < 5400) return std::to_string((s + 30) / 60) + " min";
    return std::to_string(s / 3600) + " h " + std::to_string(s % 3600 / 60) + " min";
}

}  // namespace

Progression::Progression(Bavardage bavardage, const Sortie& resultat, std::int64_t lignes, double part)
    : m_terminal(ErreurEstUnTerminal()),
      m_active(bavardage == Bavardage::Constant ||
               (bavardage == Bavardage::Ordinaire && m_terminal && !resultat.EstUnTerminal())),
      m_lignesAvant(lignes),
      m_partAvant(part) {}

void Progression::Montre(std::int64_t lignes, double part) {
    const auto maintenant = Horloge::now();
    if (!m_active || maintenant - m_derniere < std::chrono::milliseconds(m_terminal ? 200 : 10'000)) return;
    m_derniere = maintenant;
    const double secondes = std::chrono::duration<double>(maintenant - m_debut).count();
    const double debit = static_cast<double>(lignes - m_lignesAvant) / secondes;
    std::cerr << (m_terminal ? effaceLigne : "") << ParMilliers(lignes) << " rows, "
              << ParMilliers(static_cast<std::int64_t>(debit)) << " rows/s";
    if (part > m_partAvant) std::cerr << ", " << Duree(secondes * (1 - part) / (part - m_partAvant)) << " left";
    std::cerr << (m_terminal ? "" : "\n") << std::flush;
    m_montree = m_terminal;
}

void Progression::Efface() {
    if (m_montree) std::cerr << effaceLigne << std::flush;
    m_montree = false;
}

}  // namespace outil
