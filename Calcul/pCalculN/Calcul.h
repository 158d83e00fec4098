#pragma once

#include "Calcul/cCalcul/DataCalcul.h"
#include "KVCommun/cPeriode/Periode.h"

/// A computation on one return, which it does not own.
class CCalcul {
  public:
    /// The carry-forward computation: fills the carry-forward boxes from what the last launch left. The period is not
    /// read.
    virtual void CalculReports(const TPeriode* periode) = 0;
    /// "1:Calcul", the pipeline. False when a step failed. The flag is not read.
    virtual bool Calcul(const TPeriode& periode, bool drapeau) = 0;

    CCalcul(const CCalcul&) = delete;
    CCalcul& operator=(const CCalcul&) = delete;

  protected:
    explicit CCalcul(CDataCalcul& data) : m_pData(&data) {}
    ~CCalcul() = default;

    CDataCalcul* const m_pData;
};
