#include "support/Tarvel.h"

#include <atomic>
#include <cstdio>
#include <mutex>
#include <set>

#include "support/KVTarvel.h"
#include "support/Plateforme.h"

namespace {

std::mutex verrou;
kv::Redirection redirige = nullptr;
void* contexteDeRedirection = nullptr;
std::set<std::u16string> fichiersEnDefaut;  // the files that a line was lost of
std::atomic<bool> memoireCourte = false;    // no memory for the name of one

void ErreurStandard(std::u16string_view message) noexcept {
    try {
        std::fprintf(stderr, "%s\n", kv::VersUtf8(message).c_str());
    } catch (...) {  // no memory left to convert the text: what is ASCII in it still gets out
        for (const char16_t c : message) std::fputc(c < 0x80 ? static_cast<int>(c) : '?', stderr);
        std::fputc('\n', stderr);
    }
}

void Emet(kv::Service service, const char16_t* message) noexcept {
    kv::Redirection fonction;
    void* contexte;
    {
        const std::lock_guard verrouille(verrou);
        fonction = redirige, contexte = contexteDeRedirection;
    }
    if (fonction) {
        try {
            return fonction(service, message, contexte);
        } catch (...) {  // a host's function that fails must not lose the message
        }
    }
    ErreurStandard(message);
}

}  // namespace

void WriteLog(const std::u16string& fichier, std::u16string_view ligne) noexcept {
    try {
        if (kv::AjouteAuFichierPrive(fichier, kv::VersUtf8(ligne) + '\n')) return;
        const bool premiereFois = [&] {
            const std::lock_guard verrouille(verrou);
            return fichiersEnDefaut.insert(fichier).second;
        }();
        if (premiereFois) CLogging::Error(u"Trace impossible : " + fichier);
    } catch (...) {
        if (!memoireCourte.exchange(true)) Emet(kv::Service::Error, u"Trace impossible");
    }
}

void CLogging::Error(const std::u16string& message) noexcept { Emet(kv::Service::Error, message.c_str()); }

void NUBDisplayException(const std::exception& exception, unsigned, const std::u16string&, const void*) noexcept {
    try {
        Emet(kv::Service::DisplayException, kv::VersUtf16(exception.what()).c_str());
    } catch (...) {
        std::fprintf(stderr, "%s\n", exception.what());
    }
}

void NUBErreur(const std::u16string& message) noexcept { NUBErreur(message.c_str()); }
void NUBErreur(const char16_t* message) noexcept { Emet(kv::Service::Erreur, message); }

namespace kv {

void RedirigeMessages(Redirection redirection, void* contexte) noexcept {
    const std::lock_guard verrouille(verrou);
    redirige = redirection, contexteDeRedirection = contexte;
}

void SignaleException(const std::exception& exception, unsigned ligne, const char* source) noexcept {
    try {
        const std::u16string chemin = VersUtf16(source);
        CLogging::Error(u"(" + chemin + u" ligne : " + VersUtf16(std::to_string(ligne)) + u") : " +
                        VersUtf16(exception.what()));
        NUBDisplayException(exception, ligne, chemin, Module());
    } catch (...) {  // no memory left to build the texts
        std::fprintf(stderr, "(%s ligne : %u) : %s\n", source, ligne, exception.what());
    }
}

}  // namespace kv
