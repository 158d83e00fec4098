#pragma once

#include "Calcul/pCalculN/Calcul.h"
#include "Calcul/pCalculN/Calculateur.h"

/// A launch on the data object of a host.
///
/// The return is read when the object is made and written at the end; the computation works on values of its own, so
/// that an exception leaves nothing of the return half done. The object lives for one launch, and the law at least as
/// long.
class CCalcul_N final : public CCalcul {
  public:
    CCalcul_N(CDataCalcul& data, const kv::Lancement& lancement, const kv::Loi& loi, double tauxIndexation);

    void CalculReports(const TPeriode* periode) override;
    bool Calcul(const TPeriode& periode, bool drapeau) override;
    /// "35:Calcul_ISF". False when it failed.
    bool Calcul_ISF();
    /// Begins a trace where one is wanted, in place of that of an earlier launch.
    void OuvreTrace() { m_calculateur.OuvreTrace(); }
    /// Hands the outputs found so far to the return, and the boxes that a launch writes.
    void EcritRetour();

  private:
    kv::Saisie m_saisie;
    kv::Exceptionnels m_exceptionnels;
    kv::Lignes m_lignes;
    const kv::LoiAppliquee m_loi;
    kv::Calculateur m_calculateur;
};
