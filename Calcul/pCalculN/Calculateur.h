#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <optional>
#include <string>

#include "Calcul/pCalculN/ChainesConnues.h"
#include "Calcul/pCalculN/Contexte.h"

namespace kv {

/// The label of a step, "4:RevenusSalaires"; "1:Calcul" for Etape{}.
std::string LibelleEtape(Etape etape);

/// The net amounts of a household under the two options on capital income.
struct OptionsComparees {
    Comparaison nets;
    bool forfait = false;  ///< the flat tax costs no more than the scale: it is the one applied
};

/// The income tax of a year: the numbered steps, run over one return under one law, from values to values.
///
/// The object lives for one launch; what it is made from lives at least as long. A step may throw for want of memory:
/// the lines then hold what had been found, and nothing else has changed hands.
class Calculateur final : private Chaine {
  public:
    /// saisie: the inputs, unset boxes as 0; the launch folds the detailed boxes into their totals and moves its
    /// switches there. lignes: the outputs, empty but for the ten retirement-savings ceilings of an earlier launch.
    /// loi: its indexed amounts raised already. reserve: where memory comes from beyond what an ordinary launch needs.
    Calculateur(Saisie& saisie, const Exceptionnels& exceptionnels, Lignes& lignes, const Lancement& lancement,
                const Loi& loi, std::pmr::memory_resource* reserve = std::pmr::new_delete_resource());

    /// Begins a trace where one is wanted, in place of that of an earlier launch.
    void OuvreTrace() {
        m_trace.Ouvre();
        m_trace.SupprimeFichier();
    }
    /// Begins a trace that goes to a function.
    void OuvreTrace(Trace::Recoit recoit, void* contexte) { m_trace.Ouvre(recoit, contexte); }
    /// Whether a line of it was lost.
    bool TracePerdue() const { return m_trace.Perdue(); }
    /// Tells an observer, which lives as long, of the runs beside the household's own.
    void Observe(Observateur& observateur) { m_observateur = &observateur; }
    /// "1:Calcul", the pipeline, over a period.
    void Calcul(const TPeriode& periode);
    /// "35:Calcul_ISF", the wealth-tax figures.
    void Calcul_ISF();

    /// Writes the boxes that a launch changes into the entries that a host gave: the totals of the foreign companions,
    /// and both option switches after a comparison.
    void EcritEntrees(ZoneEntree& entrees) const;
    /// What the comparison of the options found; none without a comparison.
    const std::optional<OptionsComparees>& Options() const { return m_options; }

  private:
    void Lance(Etape etape, Contexte& c) override;
    void Pipeline();
    void TauxIndividuelsDuCouple(Contexte& c);
    bool FlatTaxMoinsChere() const;
    void Compare(Contexte& c);
    void SimulationSuivante();
    void TraceEntrees() const;
    Contexte::Commun Commun() {
        return {m_lancement, m_loi,   m_bareme,         m_lignes,     m_memoire, m_comparaison,
                *this,       m_trace, m_chainesConnues, m_conservees, &m_place,  m_observateur};
    }

    Lancement m_lancement;
    const Loi& m_loi;
    const Bareme m_bareme;
    Saisie& m_saisie;
    CasesEntree m_remplies;  ///< the boxes that a family may look for; the driver's own switches are not among them
    const Exceptionnels& m_exceptionnels;
    Lignes& m_lignes;
    Trace m_trace;
    Observateur* m_observateur = nullptr;

    // What is kept of runs, all of it until the end of the launch: an ordinary one finds its place here.
    std::array<std::byte, 65536> m_octets;
    std::pmr::monotonic_buffer_resource m_place;
    Memoire m_memoire{&m_place};
    ChainesConnues m_chainesConnues{&m_place};
    Lignes::Conservees m_conservees{&m_place};  ///< of a run within the pipeline
    Lignes::Conservees m_forfait{&m_place};     ///< of the simulation of the flat tax

    // The comparison of the options: the net amounts of the two simulations, and which run is under way.
    Comparaison m_comparaison;
    std::optional<OptionsComparees> m_options;
    bool m_bSimulationBAR = false;
    bool m_bPassageFinal = false;
    bool m_finalConnu = false;        ///< the final run gives what the simulation of its option gave
    bool m_comparaisonFinie = false;  ///< the final run is over: the switches `PFU` and `BAR` end at 0
};

}  // namespace kv
