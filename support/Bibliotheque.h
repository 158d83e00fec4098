#pragma once

#include <string>

namespace kv {

/// A dynamic library loaded at run time. It is unloaded with this object, unless it is kept.
class Bibliotheque {
  public:
    /// What the platform adds to the name of a library.
#ifdef _WIN32
    static constexpr const char16_t* extension = u".dll";
#else
    static constexpr const char16_t* extension = u".so";
#endif

    /// Loads repertoire/fichier; the directory may end with its separator.
    Bibliotheque(std::u16string repertoire, const std::u16string& fichier);
    ~Bibliotheque();
    Bibliotheque(const Bibliotheque&) = delete;
    Bibliotheque& operator=(const Bibliotheque&) = delete;

    explicit operator bool() const { return m_poignee != nullptr; }
    /// One of its functions; null when it has none of this name.
    template <class Pointeur>
    Pointeur Fonction(const char* nom) const {
        return reinterpret_cast<Pointeur>(Adresse(nom));
    }
    /// Leaves the library loaded for the rest of the program.
    void Conserve() { m_poignee = nullptr; }

  private:
    void* Adresse(const char* nom) const;

    void* m_poignee;
};

}  // namespace kv
