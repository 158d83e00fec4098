#pragma once

#include <cstdint>
#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Comma-separated values as RFC 4180 describes them, and as spreadsheets write them.

namespace outil {

/// Reads records one by one, whatever the length of the file. A field that begins with a quote ends with one, quotes
/// within it doubled; elsewhere a quote is a letter. Lines end with LF or CRLF; a byte order mark at the beginning and
/// empty lines are passed over.
class LecteurCsv {
  public:
    /// No record is longer; one that is most likely has a quote that is never closed.
    static constexpr std::size_t longueurMaximale = 1 << 24;

    /// Without a separator it is the first comma, semicolon or tab of the first line that is not quoted, a comma where
    /// there is none.
    explicit LecteurCsv(std::istream& entree, std::optional<char> separateur = {});

    /// The next record; its fields live until the next call. False at the end. Throws std::length_error for a record
    /// that is too long.
    bool Suivant(std::vector<std::string_view>& champs);

    char Separateur() const { return m_separateur; }
    /// The bytes of the records read so far, line ends included.
    std::int64_t Octets() const { return m_octets; }
    /// Whether the last record ended with a line end.
    bool Complet() const { return m_complet; }
    /// Whether it ended within quotes: the file did.
    bool Ouvert() const { return m_ouvert; }

  private:
    // Where the search for the end of a record is: nothing but plain fields so far, or, once there is a quote, what the
    // next character continues.
    enum class Etat { Simple, DebutDeChamp, Champ, EntreGuillemets, GuillemetDansUnChamp };

    std::size_t FinDEnregistrement();
    std::size_t FinParmiLesGuillemets();
    bool Remplit();
    void DecoupeAvecGuillemets(char* debut, char* fin, std::vector<std::string_view>& champs) const;

    std::istream& m_entree;
    std::vector<char> m_tampon;
    std::size_t m_debut = 0, m_fin = 0;  ///< what is left of the buffer
    std::size_t m_vu = 0;                ///< how far the end of the record has been looked for
    Etat m_etat = Etat::Simple;
    char m_separateur = ',';
    std::int64_t m_octets = 0;
    bool m_complet = true, m_ouvert = false;
};

/// Appends a field, quoted where it has to be.
void EcritChamp(std::string& vers, std::string_view champ, char separateur);

}  // namespace outil
