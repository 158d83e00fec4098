#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The optional trace of a computation: one line per step, value and re-run, indented by level.

namespace kv {

/// The trace of one computation. Nothing is written unless it is on; a line that can't be written is reported and lost.
///
/// There is one trace file per process: a computation that begins while another one writes it has no trace.
struct Trace {
    bool m_bTrace = false;
    std::u16string m_sFichierTrace;
    std::int32_t m_nNiveau = 3;  ///< indentation of the next line

    Trace() = default;
    ~Trace();
    Trace(const Trace&) = delete;
    Trace& operator=(const Trace&) = delete;

    /// Turns the trace on when the marker file of this host exists: KV_TEMP/<host>.inf in the temporary directory, both
    /// the user's own. Whatever stands in the way means no trace.
    void Ouvre() noexcept;
    /// Turns the trace on; its lines go to a function, which does not throw, instead of a file.
    using Recoit = void (*)(std::u16string_view ligne, void* contexte);
    /// A line that it could not be handed, for want of memory, is remembered.
    void Ouvre(Recoit recoit, void* contexte) noexcept {
        m_recoit = recoit, m_contexte = contexte;
        m_bTrace = true;
    }
    bool Perdue() const { return m_perdue; }
    /// Deletes the file of an earlier launch.
    void SupprimeFichier() const;

    /// A line at the current level: time + " : " + indentation + text.
    void Ligne(std::u16string_view texte) const noexcept {
        if (m_bTrace) Ecrit(m_nNiveau, texte);
    }
    /// A value line.
    void Valeur(std::u16string_view nom, std::int32_t valeur) const noexcept;
    /// A re-run line, at the level of the line of the step that writes it.
    void Relance(std::u16string_view message) const noexcept {
        if (m_bTrace) Ecrit(m_nNiveau - 1, message);
    }

  private:
    template <class Corps>
    void Garde(Corps corps) const noexcept;
    void Ecrit(std::int32_t niveau, std::u16string_view texte) const noexcept;

    Recoit m_recoit = nullptr;
    void* m_contexte = nullptr;
    mutable bool m_perdue = false;
    bool m_ecritLeFichier = false;  ///< this computation is the one that writes the process's file
};

/// One step: writes its line, then indents what it runs until the end of the scope.
class EtapeTracee {
  public:
    EtapeTracee(Trace& trace, std::u16string_view libelle) : m_trace(trace) {
        m_trace.Ligne(libelle);
        ++m_trace.m_nNiveau;
    }
    ~EtapeTracee() { --m_trace.m_nNiveau; }
    EtapeTracee(const EtapeTracee&) = delete;
    EtapeTracee& operator=(const EtapeTracee&) = delete;

  private:
    Trace& m_trace;
};

}  // namespace kv
