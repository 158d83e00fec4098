#include "support/Trace.h"

#include <filesystem>

#include "support/KVTarvel.h"
#include "support/Plateforme.h"
#include "support/Tarvel.h"

namespace kv {

void Trace::Ouvre() {
    const std::filesystem::path repertoire = Chemin(GetPathTempSystem(u"KV_TEMP"));
    const std::filesystem::path hote = Chemin(NomExecutable());
    std::error_code erreur;
    if (!std::filesystem::exists(repertoire / std::filesystem::path(hote).replace_extension(".inf"), erreur)) return;
    m_bTrace = true;
    m_sFichierTrace = Texte(repertoire / (hote.stem().u16string() + u"_Calculs.json"));
}

void Trace::SupprimeFichier() const {
    std::error_code erreur;
    if (m_bTrace) std::filesystem::remove(Chemin(m_sFichierTrace), erreur);
}

void Trace::Valeur(std::u16string_view nom, std::int32_t valeur) const noexcept {
    if (!m_bTrace) return;
    Garde("support/Trace", [&] { Ecrit(m_nNiveau, u"-> " + std::u16string(nom) + u" : " + IntToStr(valeur)); });
}

void Trace::Ecrit(std::int32_t niveau, std::u16string_view texte) const noexcept {
    Garde("support/Trace",
          [&] { WriteLog(m_sFichierTrace, HeureDuJour() + u" : " + EspacesNiveau(niveau) + std::u16string(texte)); });
}

}  // namespace kv
