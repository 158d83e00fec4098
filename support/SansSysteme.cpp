#include <cstdio>
#include <ctime>

#include "support/KVTarvel.h"
#include "support/Plateforme.h"
#include "support/Tarvel.h"
#include "support/Trace.h"

// What stands for Plateforme.cpp, Tarvel.cpp and FichierTrace.cpp where there are no files, no threads and no
// exceptions: in a browser. Nobody can ask for a trace by a file there; the rare messages go to standard error.

namespace kv {

std::u16string HeureDuJour() {
    const std::time_t maintenant = std::time(nullptr);
    char texte[16] = "";
    if (const std::tm* const utc = std::gmtime(&maintenant)) std::strftime(texte, sizeof texte, "%H:%M:%S", utc);
    return VersUtf16(texte);
}

void SignaleException(const std::exception& exception, unsigned ligne, const char* source) noexcept {
    std::fprintf(stderr, "(%s ligne : %u) : %s\n", source, ligne, exception.what());
}

void Trace::Ouvre() noexcept {}
Trace::~Trace() = default;
void Trace::SupprimeFichier() const {}

}  // namespace kv

void WriteLog(const std::u16string&, std::u16string_view) noexcept {}
void CLogging::Error(const std::u16string& message) noexcept {
    std::fprintf(stderr, "%s\n", kv::VersUtf8(message).c_str());
}
void NUBErreur(const char16_t* message) noexcept { CLogging::Error(message); }

// What would be thrown ends the module: its page says so and begins with a new one.
extern "C" [[noreturn]] void* __cxa_allocate_exception(std::size_t) noexcept { __builtin_trap(); }
extern "C" [[noreturn]] void __cxa_throw(void*, void*, void (*)(void*)) { __builtin_trap(); }
