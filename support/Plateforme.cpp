#include "support/Plateforme.h"

#include <array>
#include <cstdlib>
#include <ctime>

#include "support/KVTarvel.h"

#ifdef _WIN32
#include <windows.h>

#include <fstream>
extern "C" IMAGE_DOS_HEADER __ImageBase;
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
extern "C" void* __dso_handle;
#endif

namespace kv {

namespace {

using Natif = std::filesystem::path::string_type;
using VueNative = std::basic_string_view<Natif::value_type>;

// A path put together without allocation.
class CheminCourt {
  public:
    CheminCourt() { m_texte[0] = 0; }
    CheminCourt& operator+=(VueNative partie) {
        m_complet = m_complet && m_taille + partie.size() < m_texte.size();
        if (m_complet) m_taille += partie.copy(m_texte.data() + m_taille, partie.size());
        m_texte[m_taille] = 0;
        return *this;
    }
    bool Complet() const { return m_complet; }
    std::size_t Taille() const { return m_taille; }
    void Coupe(std::size_t taille) { m_texte[m_taille = taille] = 0; }
    const Natif::value_type* c_str() const { return m_texte.data(); }

  private:
    std::array<Natif::value_type, 4096> m_texte;
    std::size_t m_taille = 0;
    bool m_complet = true;
};

#ifdef _WIN32
constexpr wchar_t separateur[] = L"\\";

// The temporary directory of the user, without its last separator.
void AjouteTemporaire(CheminCourt& chemin) {
    wchar_t racine[MAX_PATH + 1];
    const DWORD longueur = GetTempPathW(MAX_PATH + 1, racine);
    chemin += VueNative(racine, longueur > 0 && longueur <= MAX_PATH ? longueur - 1 : 0);
}

bool EstLeNotre(const CheminCourt& chemin, bool) {
    return GetFileAttributesW(chemin.c_str()) != INVALID_FILE_ATTRIBUTES;
}
#else
constexpr char separateur[] = "/";

void AjouteTemporaire(CheminCourt& chemin) {
    const char* tmpdir = std::getenv("TMPDIR");
    chemin += tmpdir && *tmpdir ? tmpdir : "/tmp";
}

// A file, or a directory, of the user that runs the program.
bool EstLeNotre(const CheminCourt& chemin, bool repertoire) {
    struct stat etat;
    return lstat(chemin.c_str(), &etat) == 0 && (repertoire ? S_ISDIR(etat.st_mode) : S_ISREG(etat.st_mode)) &&
           etat.st_uid == geteuid();
}
#endif

}  // namespace

#ifdef _WIN32
std::filesystem::path Chemin(const std::u16string& texte) { return std::wstring(texte.begin(), texte.end()); }

std::u16string Texte(const std::filesystem::path& chemin) {
    const std::u16string texte(chemin.native().begin(), chemin.native().end());
    return VersUtf16(VersUtf8(texte)) == texte ? texte : std::u16string();
}

std::u16string NomExecutable() {
    wchar_t chemin[MAX_PATH];
    const DWORD longueur = GetModuleFileNameW(nullptr, chemin, MAX_PATH);
    return Texte(std::filesystem::path(std::wstring(chemin, longueur)).filename());
}

const void* Module() noexcept { return &__ImageBase; }

bool AjouteAuFichierPrive(const std::u16string& fichier, std::string_view texte) {
    std::ofstream sortie(Chemin(fichier), std::ios::app | std::ios::binary);
    sortie << texte;
    sortie.close();
    return !sortie.fail();
}
#else
std::filesystem::path Chemin(const std::u16string& texte) { return VersUtf8(texte); }

std::u16string Texte(const std::filesystem::path& chemin) {
    const std::u16string texte = VersUtf16(chemin.native());
    return VersUtf8(texte) == chemin.native() ? texte : std::u16string();
}

std::u16string NomExecutable() {
    std::error_code erreur;
    return Texte(std::filesystem::read_symlink("/proc/self/exe", erreur).filename());
}

const void* Module() noexcept { return &__dso_handle; }

bool AjouteAuFichierPrive(const std::u16string& fichier, std::string_view texte) {
    const std::string chemin = VersUtf8(fichier);
    const int d = open(chemin.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (d < 0) return false;
    struct stat etat;
    bool ecrit = fstat(d, &etat) == 0 && etat.st_uid == geteuid() && etat.st_nlink == 1 &&
                 (!S_ISREG(etat.st_mode) || fchmod(d, S_IRUSR | S_IWUSR) == 0);
    while (ecrit && !texte.empty()) {
        const ssize_t n = write(d, texte.data(), texte.size());
        ecrit = n >= 0;
        if (ecrit) texte.remove_prefix(static_cast<std::size_t>(n));
    }
    return close(d) == 0 && ecrit;
}
#endif

bool EstLeNotre(const std::filesystem::path& sousRepertoire, const std::filesystem::path& fichier) noexcept {
    CheminCourt chemin;
    AjouteTemporaire(chemin);
    (chemin += separateur) += sousRepertoire.native();
    const std::size_t repertoire = chemin.Taille();
    (chemin += separateur) += fichier.native();
    if (!chemin.Complet() || !EstLeNotre(chemin, false)) return false;
    chemin.Coupe(repertoire);
    return EstLeNotre(chemin, true);
}

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
    kv::CheminCourt racine;
    kv::AjouteTemporaire(racine);
    return kv::Texte(std::filesystem::path(racine.c_str()) / kv::Chemin(sousRepertoire));
}
