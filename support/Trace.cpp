#include "support/Trace.h"

#include <atomic>
#include <filesystem>

#include "support/KVTarvel.h"
#include "support/Plateforme.h"
#include "support/Tarvel.h"

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

// Where a function waits for the lines, it is told that one is lost; a file is worth a report only.
template <class Corps>
void Trace::Garde(Corps corps) const noexcept {
    if (!m_recoit) return static_cast<void>(Protege(source, corps));
    try {
        corps();
    } catch (...) {
        m_perdue = true;
    }
}

void Trace::Valeur(std::u16string_view nom, std::int32_t valeur) const noexcept {
    if (!m_bTrace) return;
    Garde([&] { Ecrit(m_nNiveau, u"-> " + std::u16string(nom) + u" : " + IntToStr(valeur)); });
}

void Trace::Ecrit(std::int32_t niveau, std::u16string_view texte) const noexcept {
    Garde([&] {
        const std::u16string ligne = HeureDuJour() + u" : " + EspacesNiveau(niveau) + std::u16string(texte);
        m_recoit ? m_recoit(ligne, m_contexte) : WriteLog(m_sFichierTrace, ligne);
    });
}

}  // namespace kv
