#include "support/Bibliotheque.h"

#include "support/Plateforme.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace kv {

Bibliotheque::Bibliotheque(std::u16string repertoire, const std::u16string& fichier) {
    while (!repertoire.empty() && (repertoire.back() == u'/' || repertoire.back() == u'\\')) repertoire.pop_back();
    const std::filesystem::path chemin = Chemin(repertoire + u'/') / Chemin(fichier);
#ifdef _WIN32
    m_poignee = LoadLibraryW(std::filesystem::path(chemin).make_preferred().c_str());
#else
    m_poignee = dlopen(chemin.c_str(), RTLD_NOW | RTLD_LOCAL);
#endif
}

Bibliotheque::~Bibliotheque() {
    if (!m_poignee) return;
#ifdef _WIN32
    FreeLibrary(static_cast<HMODULE>(m_poignee));
#else
    dlclose(m_poignee);
#endif
}

void* Bibliotheque::Adresse(const char* nom) const {
#ifdef _WIN32
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(m_poignee), nom));
#else
    return dlsym(m_poignee, nom);
#endif
}

}  // namespace kv
