#pragma once

#include <filesystem>
#include <string>
#include <string_view>

// What the library asks of the platform: the host's file name, the temporary directory, files, the clock, its own
// module. A name that the platform holds in something else than Unicode comes out empty: it is never half right.

/// The path of a subdirectory of the system's temporary directory, without a trailing separator; empty when it is not
/// Unicode text.
std::u16string GetPathTempSystem(const std::u16string& sousRepertoire);

namespace kv {

std::filesystem::path Chemin(const std::u16string& texte);
/// Empty for a path that is not Unicode text.
std::u16string Texte(const std::filesystem::path& chemin);

/// The file name of the running executable, without its directory; empty when it is not Unicode text.
std::u16string NomExecutable();
/// Whether a subdirectory of the temporary directory holds a file. On POSIX both must belong to the user that runs the
/// program, and be no links. One system call where there is no such file; no allocation.
bool EstLeNotre(const std::filesystem::path& sousRepertoire, const std::filesystem::path& fichier) noexcept;
/// Appends to a file that nobody else may read, creating it where it is missing; false when not everything could be
/// written. On POSIX a file that belongs to somebody else, or is a link, is left alone.
bool AjouteAuFichierPrive(const std::u16string& fichier, std::string_view texte);
/// The time of day, "hh:nn:ss".
std::u16string HeureDuJour();
/// A handle of the module that this library is, for the error display.
const void* Module() noexcept;

}  // namespace kv
