#include "support/Trace.h"

#include "support/KVTarvel.h"
#include "support/Plateforme.h"
#include "support/Tarvel.h"

namespace kv {

namespace {

constexpr const char* source = "Calcul/pCalculN";  // the steps whose trace it is

}  // namespace

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
