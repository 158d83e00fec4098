#pragma once

#include <cmath>
#include <exception>
#include <source_location>
#include <string>
#include <string_view>
#include <type_traits>

// Trace and error services, and the guard that keeps every exception inside the library.
//
// None of the services throws, and none loses a message: when a redirection fails, the message goes to standard error.
// They may be called from several threads.

/// Appends one line to a trace file (UTF-8), which nobody but the user may read. A line that is lost is reported
/// through CLogging::Error, once per file.
void WriteLog(const std::u16string& fichier, std::u16string_view ligne) noexcept;

/// The error log: standard error, unless redirected.
struct CLogging {
    static void Error(const std::u16string& message) noexcept;
};

/// Shows an exception to the user: standard error, unless redirected. module is the library's module handle.
void NUBDisplayException(const std::exception& exception, unsigned ligne, const std::u16string& source,
                         const void* module) noexcept;

/// Shows an error that is not an exception: standard error, unless redirected.
void NUBErreur(const std::u16string& message) noexcept;
void NUBErreur(const char16_t* message) noexcept;

/// The double rounded to a whole number, exact halves away from zero.
inline double dArrond(double x) { return std::round(x); }

namespace kv {

/// The service that a redirected message comes from.
enum class Service { Error, DisplayException, Erreur };

/// Receives a message in place of standard error; contexte is what was registered. It may be called from any thread.
using Redirection = void (*)(Service service, const char16_t* message, void* contexte);

/// Sends the messages of the three services to a host's function; null goes back to standard error.
void RedirigeMessages(Redirection redirection, void* contexte) noexcept;

/// Reports a caught exception: formats "(%s ligne : %d) : %s", then CLogging::Error, then NUBDisplayException.
void SignaleException(const std::exception& exception, unsigned ligne, const char* source) noexcept;

/// What is thrown without being an exception.
struct ExceptionInconnue : std::exception {
    const char* what() const noexcept override { return "exception inconnue"; }
};

/// Runs a body and returns its result; an exception is reported and gives the failure value.
///
/// source is the path that the message names. Every exported function and the driver use this guard, and nothing else
/// catches.
template <class Corps, class Resultat>
Resultat Protege(const char* source, Corps&& corps, Resultat echec,
                 std::source_location ici = std::source_location::current()) noexcept {
    try {
        return corps();
    } catch (const std::exception& e) {
        SignaleException(e, ici.line(), source);
    } catch (...) {
        SignaleException(ExceptionInconnue(), ici.line(), source);
    }
    return echec;
}

/// The same for a body without a result.
template <class Corps>
void Protege(const char* source, Corps&& corps, std::source_location ici = std::source_location::current()) noexcept {
    Protege(
        source, [&] { return corps(), true; }, false, ici);
}

}  // namespace kv
