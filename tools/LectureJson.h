#pragma once

#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <string_view>

#include "ErreurEntree.h"

// Reading the small JSON files of a user, so that a message can say where in the file something is wrong.

namespace outil {

/// Where the parser is: it reads one character beyond a number.
struct PositionJson {
    int ligne = 1;
    char dernier = 0;

    int LigneDUnNombre() const { return ligne - (dernier == '\n'); }
};

/// Follows the parser through a file; what a file may not hold is an error. A reader of one kind of file derives from
/// it and takes what belongs there.
class LecteurJson : public nlohmann::json_sax<nlohmann::json> {
  public:
    LecteurJson(const std::string& fichier, const PositionJson& position) : m_fichier(fichier), m_position(position) {}

    bool boolean(bool) override { return Refuse("a boolean"); }
    bool null() override { return Refuse("null"); }
    bool binary(binary_t&) override { return Refuse("binary data"); }
    bool string(string_t& texte) override { return Refuse('"' + texte + '"'); }
    bool start_array(std::size_t) override { Erreur(Ou() + "a list does not belong here"); }
    bool end_array() override { return true; }
    bool parse_error(std::size_t, const std::string&, const nlohmann::json::exception& e) override {
        // "[json.exception.parse_error.101] parse error at line 1, column 2: what it is"
        const std::string message = e.what();
        const std::size_t ou = message.find(": ");
        Erreur("not valid JSON: " + (ou == std::string::npos ? message : message.substr(ou + 2)));
    }

  protected:
    /// Where a value stands, to begin a message with.
    virtual std::string Ou() const = 0;
    /// What a value is instead of what it should be.
    [[noreturn]] virtual bool Refuse(const std::string& valeur) const = 0;

    [[noreturn]] void Erreur(const std::string& message) const { ErreurALaLigne(m_position.ligne, message); }
    [[noreturn]] void ErreurDeNombre(const std::string& message) const {
        ErreurALaLigne(m_position.LigneDUnNombre(), message);
    }
    /// Notes a key of an object: it stands there once, and is a name that a C interface can be given.
    void NoteCle(std::set<std::string>& vues, const std::string& nom) const {
        if (nom.find('\0') != nom.npos) Erreur("a key holds a zero character");
        if (!vues.insert(nom).second) Erreur("key \"" + nom + "\" stands twice");
    }

  private:
    [[noreturn]] void ErreurALaLigne(int ligne, const std::string& message) const {
        throw ErreurEntree(m_fichier + ":" + std::to_string(ligne) + ": " + message);
    }

    const std::string& m_fichier;
    const PositionJson& m_position;
};

/// Lets a reader follow a text; position is the one that the reader was made with.
void LisJson(std::string_view texte, PositionJson& position, LecteurJson& lecteur);

}  // namespace outil
