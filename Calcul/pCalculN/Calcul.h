#pragma once

#include <cstdint>

#include "Calcul/cCalcul/DataCalcul.h"
#include "Calcul/cCalcul/Portees.h"
#include "KVCommun/cPeriode/Periode.h"
#include "support/KVTarvel.h"
#include "support/Trace.h"

/// What every computation on a return shares: the return, named as the rules name it, the trace and the indexation.
///
/// While the object lives, unset boxes count as 0 and the detailed salary and pension boxes are folded into their
/// totals; its end puts the return back as the host gave it.
class CCalcul {
  public:
    /// The carry-forward computation: fills the carry-forward boxes from what the last launch left. The period is not
    /// read.
    virtual void CalculReports(const TPeriode* periode) = 0;
    /// "1:Calcul", the pipeline. False when a step failed. The flag is handed on to nested runs only.
    virtual bool Calcul(const TPeriode& periode, bool drapeau) = 0;

    CCalcul(const CCalcul&) = delete;
    CCalcul& operator=(const CCalcul&) = delete;

  protected:
    CCalcul(CDataCalcul& data, double tauxIndexation)
        : m_pData(&data), m_dTauxIndexation(tauxIndexation), m_nonSaisies(data), m_repliement(data) {
        m_trace.Ouvre();
    }
    ~CCalcul() = default;

    /// A euro threshold, indexed at the rate of this computation (-1.0: none).
    std::int32_t IDX(std::int32_t seuil) const {
        const double taux = m_dTauxIndexation == -1.0 ? 0.0 : m_dTauxIndexation;
        return nArrondi(dMul(seuil, dDiv(dMul(taux, 100.0) + 10000.0, 10000.0)));
    }

    /// Sums of boxes.
    std::int32_t SommeE(std::initializer_list<CaseEntree> boxes) const {
        std::int32_t somme = 0;
        for (const CaseEntree box : boxes) somme += E[box];
        return somme;
    }
    std::int32_t SommeS(std::initializer_list<CaseSortie> sorties) const {
        std::int32_t somme = 0;
        for (const CaseSortie sortie : sorties) somme += S[sortie];
        return somme;
    }

    CDataCalcul* const m_pData;
    const double m_dTauxIndexation;
    kv::Trace m_trace;

    kv::ZoneEntree& E = m_pData->Entree;                  ///< entry boxes
    kv::ZoneSortie& S = m_pData->Sortie;                  ///< outputs
    std::array<kv::ZoneSortie, 3>& C = m_pData->Colonne;  ///< output columns 1 to 3, from 0
    kv::ZoneSortie& C1 = C[0];
    kv::ZoneSortie& C2 = C[1];
    kv::ZoneSortie& C3 = C[2];
    kv::ZoneTextes& Detail = m_pData->Detail;     ///< texts of the outputs
    decltype(CDataCalcul::TI)& TI = m_pData->TI;  ///< companion slots
    decltype(CDataCalcul::TIX)& TIX = m_pData->TIX;
    decltype(CDataCalcul::TIY)& TIY = m_pData->TIY;
    decltype(CDataCalcul::TK)& TK = m_pData->TK;
    decltype(CDataCalcul::TKZ)& TKZ = m_pData->TKZ;
    decltype(CDataCalcul::Report)& R = m_pData->Report;  ///< carry-forwards

  private:
    kv::NonSaisiesAZero m_nonSaisies;
    kv::Repliement m_repliement;
};
