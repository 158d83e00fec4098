#pragma once

#include <array>
#include <cstdint>
#include <limits>

#include "Calcul/cCalcul/DataCalcul.h"

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

    explicit Imputation(CDataCalcul& data) : m_data(data) {}

    /// Switches the advantages counted in the cap off or on.
    void SansAvantages(bool sans) { m_bSansAvantages = sans; }
    bool SansAvantages() const { return m_bSansAvantages; }
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

    /// Imputes an amount, as far as the remaining tax goes.
    void Impute(Niche niche, CaseSortie ligne, std::int32_t montant);
    /// Gives an amount back to the remaining tax.
    void Rend(Niche niche, CaseSortie ligne, std::int32_t montant);
    /// Records an amount that the remaining tax does not bear (a credit).
    void Note(Niche niche, CaseSortie ligne, std::int32_t montant);

    // ---- Lines. Each returns whether the line was computed: not for a base below 1, nor when it is inactive.

    /// Imputes a rate (percent) of a base, within a ceiling.
    bool Taux(Niche niche, CaseSortie ligne, double taux, std::int32_t base, std::int32_t plafond = nSansPlafond);
    /// The same, of which at most limite is imputed.
    bool TauxLimite(Niche niche, CaseSortie ligne, double taux, std::int32_t base, std::int32_t plafond,
                    std::int32_t limite);
    /// Imputes a whole base; what is left of it goes to a box of next year's return. When inactive, the line still
    /// shows what could have been imputed.
    bool Entiere(Niche niche, CaseSortie ligne, CaseSortie report, std::int32_t base);
    /// A carried fraction: imputes a whole base; what is left of it is added to a box of next year's return.
    bool Fraction(Niche niche, CaseSortie ligne, CaseSortie report, std::int32_t base);
    /// One year of a reduction spread over several: a rate of base / annees within a ceiling. The yearly amount is
    /// added to the boxes of the nSuivantes following years, from premiere on; what the tax can't bear is added to
    /// report.
    bool Etalee(Niche niche, CaseSortie ligne, double taux, std::int32_t base, std::int32_t plafond, int annees,
                CaseSortie premiere, int nSuivantes, CaseSortie report);

  private:
    void Compte(Niche niche, std::int32_t montant);
    void Colonnes(CaseSortie ligne, double taux, std::int32_t base, std::int32_t retenue);

    CDataCalcul& m_data;
    std::int32_t m_nReste = 0;
    bool m_bSansAvantages = false;
};

}  // namespace kv
