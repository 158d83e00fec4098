#pragma once

#include <array>
#include <cstddef>
#include <memory_resource>
#include <optional>

#include "Calcul/pCalculN/Calcul.h"
#include "Calcul/pCalculN/ChainesConnues.h"
#include "Calcul/pCalculN/Contexte.h"

/// The income tax of a year: the numbered steps, run over one return under one law.
///
/// The return is read when the object is made; the computation works on values of its own, so that an exception leaves
/// nothing of the return half done. The object lives for one launch, and the law at least as long.
class CCalcul_N final : public CCalcul, private kv::Chaine {
  public:
    CCalcul_N(CDataCalcul& data, bool optionsForcees, bool optionsSiSaisies, double tauxIndexation, const kv::Loi& loi);

    void CalculReports(const TPeriode* periode) override;
    bool Calcul(const TPeriode& periode, bool drapeau) override;
    /// "35:Calcul_ISF", the wealth-tax figures. False when it failed.
    bool Calcul_ISF();
    /// Removes the trace of an earlier launch.
    void SupprimeFichierTrace() const { m_trace.SupprimeFichier(); }
    /// Hands the outputs found so far to the return, and the boxes that a launch writes.
    void EcritRetour();

  private:
    void Lance(kv::Etape etape, kv::Contexte& c) override;
    bool Pipeline(bool drapeau);
    void TauxIndividuelsDuCouple(kv::Contexte& c);
    bool FlatTaxMoinsChere() const;
    bool Compare(kv::Contexte& c, bool drapeau);
    bool SimulationSuivante(bool drapeau);
    void TraceEntrees() const;
    kv::Contexte::Commun Commun() {
        return {m_lancement,   m_loi, m_bareme, m_lignes,         m_memoire,
                m_comparaison, *this, m_trace,  m_chainesConnues, m_conservees};
    }

    kv::Lancement m_lancement;
    const std::optional<kv::Loi> m_loiIndexee;  ///< where the launch raises the indexed amounts
    const kv::Loi& m_loi;
    const kv::Bareme m_bareme;
    kv::Saisie m_saisie;
    kv::CasesEntree m_remplies;  ///< the boxes that a family may look for; the driver's own switches are not among them
    kv::Exceptionnels m_exceptionnels;
    kv::Lignes m_lignes;
    kv::Memoire m_memoire;
    kv::Trace m_trace;

    // What is kept of runs, all of it until the end of the launch: an ordinary one finds its place here.
    std::array<std::byte, 65536> m_octets;
    std::pmr::monotonic_buffer_resource m_place{m_octets.data(), m_octets.size()};
    kv::ChainesConnues m_chainesConnues{&m_place};
    kv::Lignes::Conservees m_conservees{&m_place};  ///< of a run within the pipeline
    kv::Lignes::Conservees m_forfait{&m_place};     ///< of the simulation of the flat tax

    // The comparison of the options: the net amounts of the two simulations, and which run is under way.
    kv::Comparaison m_comparaison;
    bool m_bSimulationBAR = false;
    bool m_bPassageFinal = false;
    bool m_finalConnu = false;        ///< the final run gives what the simulation of its option gave
    bool m_bChoixPFU = false;         ///< the flat tax costs no more than the scale
    bool m_optionsComparees = false;  ///< the final run is over: the switches `PFU` and `BAR` end at 0
};
