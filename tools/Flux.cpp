#include "Flux.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <iostream>
#include <utility>

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
    if (EstStandard(sortie)) return;
    struct stat lue, ecrite;  // of a result that does not exist yet there is nothing to compare
    if (stat(sortie.c_str(), &ecrite) != 0 || !S_ISREG(ecrite.st_mode)) return;
    if ((EstStandard(entree) ? fstat(STDIN_FILENO, &lue) : stat(entree.c_str(), &lue)) != 0) return;
    if (lue.st_dev == ecrite.st_dev && lue.st_ino == ecrite.st_ino)
        throw ErreurEntree(sortie + ": is read and written at once");
}

void OuvreFluxFermes() {
    // The wrong way round: to read from it or to write to it fails, as it should.
    for (const auto& [flux, sens] :
         {std::pair{STDIN_FILENO, O_WRONLY}, {STDOUT_FILENO, O_RDONLY}, {STDERR_FILENO, O_RDONLY}})
        if (fcntl(flux, F_GETFD) == -1) [[maybe_unused]]
            const int ouvert = open("/dev/null", sens);
}

bool ErreurEstUnTerminal() { return isatty(STDERR_FILENO) == 1; }

}  // namespace outil
