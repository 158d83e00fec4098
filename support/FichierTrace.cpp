#include <atomic>
#include <filesystem>

#include "support/Plateforme.h"
#include "support/Tarvel.h"
#include "support/Trace.h"

// The file that a host's user asks a trace in, by a marker.

namespace kv {

namespace {

constexpr const char* source = "Calcul/pCalculN";  // the steps whose trace it is
constexpr const char16_t* sousRepertoire = u"KV_TEMP";

// The files that belong to this host. Its name never changes, so that they are found once.
struct Fichiers {
    std::filesystem::path repertoire = Chemin(sousRepertoire);
    std::filesystem::path marqueur = Chemin(NomExecutable());
    std::filesystem::path trace = marqueur.stem();

    Fichiers() {
        if (marqueur.empty()) return;
        marqueur.replace_extension(".inf");
        trace += "_Calculs.json";
    }
};

// A computation of this process is writing the trace.
std::atomic<bool> ouverte = false;

}  // namespace

void Trace::Ouvre() noexcept {
    Protege(source, [&] {
        static const Fichiers fichiers;
        if (fichiers.marqueur.empty() || !EstLeNotre(fichiers.repertoire, fichiers.marqueur)) return;
        const std::u16string repertoire = GetPathTempSystem(sousRepertoire);
        if (repertoire.empty()) return;
        std::u16string fichier = Texte(Chemin(repertoire) / fichiers.trace);
        if (ouverte.exchange(true)) return;
        m_sFichierTrace = std::move(fichier);
        m_bTrace = m_ecritLeFichier = true;
    });
}

Trace::~Trace() {
    if (m_ecritLeFichier) ouverte = false;
}

void Trace::SupprimeFichier() const {
    std::error_code erreur;
    if (m_ecritLeFichier) std::filesystem::remove(Chemin(m_sFichierTrace), erreur);
}

}  // namespace kv
