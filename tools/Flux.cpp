#include "Flux.h"

#include <unistd.h>

#include <filesystem>
#include <iostream>

namespace outil {

bool EstStandard(const std::string& fichier) { return fichier.empty() || fichier == "-"; }

Entree::Entree(const std::string& fichier)
    : m_nom(EstStandard(fichier) ? "standard input" : fichier),
      m_flux(EstStandard(fichier) ? std::cin : static_cast<std::istream&>(m_fichier)) {
    if (EstStandard(fichier)) return;
    m_fichier.open(fichier, std::ios::binary);
    std::error_code erreur;
    if (!m_fichier || std::filesystem::is_directory(fichier, erreur)) throw ErreurEntree(m_nom + ": cannot be read");
    if (std::filesystem::is_regular_file(fichier, erreur))
        if (const auto octets = std::filesystem::file_size(fichier, erreur); !erreur)
            m_taille = static_cast<std::int64_t>(octets);
}

void Entree::Controle() const {
    if (m_flux.bad()) throw ErreurEntree(m_nom + ": cannot be read");
}

std::string Entree::Contenu(const std::string& fichier) {
    Entree entree(fichier);
    std::string contenu;
    for (char morceau[1 << 14]; entree.Flux().read(morceau, sizeof morceau), entree.Flux().gcount() > 0;)
        contenu.append(morceau, static_cast<std::size_t>(entree.Flux().gcount()));
    entree.Controle();
    return contenu;
}

Sortie::Sortie(const std::string& fichier, std::int64_t depuis)
    : m_nom(EstStandard(fichier) ? "standard output" : fichier),
      m_flux(EstStandard(fichier) ? std::cout : static_cast<std::ostream&>(m_fichier)) {
    if (EstStandard(fichier)) return;
    std::error_code erreur;
    if (depuis > 0) std::filesystem::resize_file(fichier, static_cast<std::uintmax_t>(depuis), erreur);
    if (!erreur) m_fichier.open(fichier, std::ios::binary | (depuis > 0 ? std::ios::app : std::ios::trunc));
    if (erreur || !m_fichier) throw ErreurEntree(m_nom + ": cannot be written");
}

void Sortie::Ecrit(std::string_view texte) {
    if (!m_flux.write(texte.data(), static_cast<std::streamsize>(texte.size())))
        throw ErreurEntree(m_nom + ": cannot be written");
}

void Sortie::Vide() {
    if (!m_flux.flush()) throw ErreurEntree(m_nom + ": cannot be written");
}

bool Sortie::EstUnTerminal() const { return &m_flux == &std::cout && isatty(STDOUT_FILENO) == 1; }

void ControleDifferents(const std::string& entree, const std::string& sortie) {
    std::error_code inconnue;  // of a file that does not exist yet
    if (!EstStandard(entree) && !EstStandard(sortie) && std::filesystem::equivalent(entree, sortie, inconnue))
        throw ErreurEntree(sortie + ": is read and written at once");
}

bool ErreurEstUnTerminal() { return isatty(STDERR_FILENO) == 1; }

}  // namespace outil
