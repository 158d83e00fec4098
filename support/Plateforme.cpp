#include "support/Plateforme.h"

#include <cstdlib>
#include <ctime>

#include "support/KVTarvel.h"

#ifdef _WIN32
#include <windows.h>
extern "C" IMAGE_DOS_HEADER __ImageBase;
#else
extern "C" void* __dso_handle;
#endif

namespace kv {

std::filesystem::path Chemin(const std::u16string& texte) { return std::filesystem::path(texte); }
std::u16string Texte(const std::filesystem::path& chemin) { return chemin.u16string(); }

#ifdef _WIN32
std::u16string NomExecutable() {
    wchar_t chemin[MAX_PATH];
    const DWORD longueur = GetModuleFileNameW(nullptr, chemin, MAX_PATH);
    return std::filesystem::path(std::wstring(chemin, longueur)).filename().u16string();
}
const void* Module() noexcept { return &__ImageBase; }
#else
std::u16string NomExecutable() {
    std::error_code erreur;
    return std::filesystem::read_symlink("/proc/self/exe", erreur).filename().u16string();
}
const void* Module() noexcept { return &__dso_handle; }
#endif

std::u16string HeureDuJour() {
    const std::time_t maintenant = std::time(nullptr);
    std::tm local{};
#ifdef _WIN32
    localtime_s(&local, &maintenant);
#else
    localtime_r(&maintenant, &local);
#endif
    char texte[16];
    std::strftime(texte, sizeof texte, "%H:%M:%S", &local);
    return VersUtf16(texte);
}

}  // namespace kv

std::u16string GetPathTempSystem(const std::u16string& sousRepertoire) {
#ifdef _WIN32
    std::error_code erreur;
    std::filesystem::path racine = std::filesystem::temp_directory_path(erreur);
#else
    const char* tmpdir = std::getenv("TMPDIR");
    std::filesystem::path racine = tmpdir && *tmpdir ? tmpdir : "/tmp";
#endif
    return (racine / sousRepertoire).u16string();
}
