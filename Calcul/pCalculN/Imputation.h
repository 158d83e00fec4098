#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <optional>

#include "Calcul/cCalcul/Lignes.h"
#include "Calcul/pCalculN/Observateur.h"

namespace kv {

/// Where an advantage counts in the global cap (CGI art. 200-0 A): the year group whose rules it was granted under.
enum class Niche : std::uint8_t {
    HorsPlafond,  ///< outside the cap
    N2013,        ///< 2013 and later, ordinary ceiling
    N2013S,       ///< 2013 and later, special ceiling
    N2012,
    N2011,
    N2010,
    N2009,
    ToujoursActive,  ///< outside the cap
};

/// The reductions, imputed one after the other on the remaining tax.
///
/// A line is an output: its value is what was imputed, column 1 the base as declared, column 2 the base retained,
/// column 3 the rate in whole percent, the text "rate% x base". When the computation is run without advantages, the
/// lines that count in the cap are inactive: they do nothing.
class Imputation {
  public:
    static constexpr std::int32_t nSansPlafond = std::numeric_limits<std::int32_t>::max();
    static constexpr int nNiches = 6;

    /// sansAvantages: the advantages counted in the cap are off. observateur: null for none.
    Imputation(Lignes& lignes, bool sansAvantages, Observateur* observateur = nullptr)
        : m_lignes(lignes), m_observateur(observateur), m_bSansAvantages(sansAvantages) {}

    bool Active(Niche niche) const {
        return !m_bSansAvantages || niche == Niche::HorsPlafond || niche == Niche::ToujoursActive;
    }

    /// The tax that is still to be reduced, never below 0.
    std::int32_t Reste() const { return m_nReste; }
    void FixeReste(std::int32_t reste) { m_nReste = reste; }

    /// Year-group totals, in the order of the groups.
    using Totaux = std::array<std::int32_t, nNiches>;
    Totaux LisTotaux() const;
    void FixeTotaux(const Totaux& totaux);
    /// Takes an amount off the total of a group.
    void Retranche(Niche niche, std::int32_t montant) { Compte(niche, -montant); }

    // ---- Amounts.

    /// Gives an amount back to the remaining tax.
    void Rend(Niche niche, CaseSortie ligne, std::int32_t montant);
    /// Records an amount that the remaining tax does not bear (a credit).
    void Note(Niche niche, CaseSortie ligne, std::int32_t montant);

    // ---- Lines.

    /// A reduction that is due.
    struct Demande {
        CaseSortie ligne;
        Niche niche;
        std::int32_t taux;                    ///< hundredths of a percent
        std::int32_t base;                    ///< as declared
        std::int32_t plafond = nSansPlafond;  ///< of the base
        std::int32_t limite = nSansPlafond;   ///< of the reduction
        CaseSortie report = {};               ///< what the tax can't bear is added here
    };
    /// Imputes it; whether it was computed: not for a base below 1, nor when the line is inactive.
    bool Impute(const Demande& demande);
    /// The same for a line that, when inactive, still shows what could have been imputed.
    bool ImputeOuMontre(const Demande& demande);
    /// Imputes one year's part of a reduction spread over several; the yearly amount, none when it was not computed.
    std::optional<std::int32_t> ImputeAnnuite(const Demande& demande, int annees);

  private:
    void Compte(Niche niche, std::int32_t montant);
    void Montre(const Demande& demande, std::int32_t retenue);
    void Impute(const Demande& demande, std::int32_t montant, int annees = 1);

    Lignes& m_lignes;
    Observateur* const m_observateur;
    std::int32_t m_nReste = 0;
    const bool m_bSansAvantages;
};

}  // namespace kv
