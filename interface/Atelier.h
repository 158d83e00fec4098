#pragma once

#include <memory_resource>
#include <optional>

#include "Calcul/pCalculN/Reports.h"
#include "interface/Cles.h"
#include "interface/Retour.h"

// Where many computations follow one another: a place keeps its memory from one to the next.

namespace kv {

/// What computations have in common; each one may change its inputs.
struct Cadre {
    explicit Cadre(const Demande& demande)
        : saisie(SansNonSaisis(demande.saisie)),
          exceptionnels(SansNonSaisis(demande.exceptionnels)),
          periode(PeriodeDe(demande)),
          lancement(LancementDe(demande)),
          loi(demande.loi, demande.indexation) {}

    const Saisie saisie;
    const Exceptionnels exceptionnels;
    const TPeriode periode;
    const Lancement lancement;
    const LoiAppliquee loi;
};

/// For one thread. Each computation is a first launch. May throw for want of memory; the next one begins afresh.
class Atelier {
  public:
    explicit Atelier(const Cadre& cadre) : m_cadre(cadre) { Recommence(); }

    /// The inputs of the next computation, unset amounts as 0: those of the frame until they are changed.
    Saisie saisie;
    Exceptionnels exceptionnels;
    /// Takes the inputs of the frame again: a computation changes some of them.
    void Recommence() {
        saisie = m_cadre.saisie;
        exceptionnels = m_cadre.exceptionnels;
    }

    void Calcule(bool avecReports) {
        m_lignes.PosePlafonds({});  // those of another household
        m_calculateur.emplace(saisie, exceptionnels, m_lignes, m_cadre.lancement, m_cadre.loi, &m_reserve);
        m_calculateur->Calcul(m_cadre.periode);
        m_calculateur->Calcul_ISF();
        if (!avecReports) return;
        m_reports = {};
        RemplitReports(saisie, m_lignes, m_reports);
    }
    std::int32_t Lit(const CleFigure& cle) const {
        return cle.report ? m_reports[cle.report] : Figure(m_lignes.Lit(cle.sortie), cle.colonne);
    }
    std::int32_t Lit(const FigureLue& figure) const {
        return figure.net ? Lit(CleFigure{"S_NET_A_PAYER"}) - Lit(CleFigure{"S_NET_RESTITUE"}) : Lit(figure.cle);
    }

  private:
    const Cadre& m_cadre;
    Lignes m_lignes;
    ZoneReport m_reports;
    std::pmr::unsynchronized_pool_resource m_reserve;
    std::optional<Calculateur> m_calculateur;
};

}  // namespace kv
