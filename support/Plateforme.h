#pragma once

#include <filesystem>
#include <string>

// What the library asks of the platform: the host's file name, the temporary directory, the clock, its own module.

/// The path of a subdirectory of the system's temporary directory, without a trailing separator.
std::u16string GetPathTempSystem(const std::u16string& sousRepertoire);

namespace kv {

std::filesystem::path Chemin(const std::u16string& texte);
std::u16string Texte(const std::filesystem::path& chemin);

/// The file name of the running executable, without its directory.
std::u16string NomExecutable();
/// The time of day, "hh:nn:ss".
std::u16string HeureDuJour();
/// A handle of the module that this library is, for the error display.
const void* Module() noexcept;

}  // namespace kv
