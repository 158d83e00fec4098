#pragma once

#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>

#include "ErreurEntree.h"

// Files and the standard streams, with their names for the messages.

namespace outil {

/// Whether a name stands for standard input or output: "", "-".
bool EstStandard(const std::string& fichier);

/// What is read: a file or standard input. Throws ErreurEntree when it can't be.
class Entree {
  public:
    explicit Entree(const std::string& fichier);

    std::istream& Flux() { return m_flux; }
    const std::string& Nom() const { return m_nom; }
    /// In bytes; 0 where nobody knows.
    std::int64_t Taille() const { return m_taille; }
    /// After the last byte: throws when the end was an error.
    void Controle() const;

    /// All of it.
    static std::string Contenu(const std::string& fichier);

  private:
    std::string m_nom;
    std::ifstream m_fichier;
    std::istream& m_flux;
    std::int64_t m_taille = 0;
};

/// What is written: a file or standard output. Throws ErreurEntree when it can't be.
class Sortie {
  public:
    /// Writes over the file, or from an offset on: what stands after it is cut off.
    explicit Sortie(const std::string& fichier, std::int64_t depuis = 0);

    void Ecrit(std::string_view texte);
    /// Hands everything to the system.
    void Vide();
    const std::string& Nom() const { return m_nom; }
    /// Whether it is what somebody looks at.
    bool EstUnTerminal() const;

  private:
    std::string m_nom;
    std::ofstream m_fichier;
    std::ostream& m_flux;
};

/// Throws when a file would be read and written at once.
void ControleDifferents(const std::string& entree, const std::string& sortie);

/// Opens the standard streams that the caller closed, so that no file takes their place. To be called first.
void OuvreFluxFermes();

/// Whether standard error is a terminal.
bool ErreurEstUnTerminal();

}  // namespace outil
