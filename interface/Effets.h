#pragma once

#include <memory>

#include "interface/Atelier.h"

// A return computed again with one of its amounts changed.

namespace kv {

class Essais {
  public:
    explicit Essais(const Demande& demande) : m_cadre(demande), m_atelier(std::make_unique<Atelier>(m_cadre)) {}

    /// Computes the return as it is.
    void Calcule() {
        m_atelier->Recommence();
        m_atelier->Calcule(true);
    }
    /// Computes it with another amount in one place; an exceptional amount that is 0 is left out, as if it had never
    /// been set.
    void Calcule(const CleSaisie& cle, std::int32_t montant);
    /// A figure of the last computation.
    std::int32_t Lit(const FigureLue& figure) const { return m_atelier->Lit(figure); }

    /// Calls f with each amount of the return that is not 0, in the order of the boxes; exceptional ones last.
    template <class Fonction>
    void PourChaqueMontant(Fonction f) const {
        for (int i = 0; i < nEntrees; ++i)
            for (const Aire aire : {Aire::Entrees, Aire::TI, Aire::TIX, Aire::TIY, Aire::TK, Aire::TKZ}) {
                const CaseEntree box = CaseEntree::Numero(i);
                const std::int32_t place = Place(aire, box);
                if (place < 0) continue;
                const std::int32_t montant = Montant(m_cadre.saisie, aire, place);
                if (montant != 0 && montant != nNonSaisi) f(CleSaisie{box, aire, {}}, montant);
            }
        for (const auto& m : m_cadre.exceptionnels.montants)
            if (m.montant != 0) f(CleSaisie{m.box, Aire::Entrees, m.coefficient}, m.montant);
    }

  private:
    Exceptionnels AvecExceptionnel(const CleSaisie& cle, std::int32_t montant) const;

    const Cadre m_cadre;
    const std::unique_ptr<Atelier> m_atelier;
};

}  // namespace kv
