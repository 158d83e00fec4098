#pragma once

#include <array>
#include <optional>
#include <vector>

#include "Calcul/pCalculN/Bareme.h"
#include "Calcul/pCalculN/Calcul.h"
#include "support/Tarvel.h"

namespace kv {

/// What a pass over the income is for.
enum class Passe : std::int32_t {
    Normale = 0,   ///< the ordinary computation
    Mondiale = 1,  ///< worldwide income: the foreign amounts stand in the French boxes
    TK = 2,        ///< only the foreign income with a credit equal to the French tax
};

/// An item of exceptional income taxed by the quotient, CGI art. 163-0 A.
struct ItemQuotient {
    std::int32_t coefficient = 0;  ///< 0 stands for 4
    std::int32_t montant1 = 0;
    std::int32_t montant2 = 0;
    std::int32_t somme = 0;
    std::int32_t base = 0;       ///< sum / coefficient
    std::int32_t partImpot = 0;  ///< its share of the extra tax
    std::int32_t impot = 0;      ///< share x coefficient
};

/// One declarant, or all dependants together: the three columns of a per-person line.
inline constexpr int nPersonnes = 3;
/// The declarants and the nine dependants.
inline constexpr int nMembres = 11;

/// What a normal pass found for one member of the household; the TK pass takes its share of it.
struct MemoireSalaires {
    std::int32_t salaires = 0, deduction = 0, fraisRetenus = 0, pensions = 0, abattement = 0;
};

}  // namespace kv

/// The income tax of 2017: the numbered steps, run over one return.
///
/// A step is the method named after its label. Income steps add into their outputs and rely on the reset of the outputs
/// before a pass. The object lives for one launch.
class CCalcul_N final : public CCalcul {
  public:
    CCalcul_N(CDataCalcul& data, bool optionsForcees, bool optionsSiSaisies, double tauxIndexation);
    ~CCalcul_N();

    bool Calcul(const TPeriode& periode, bool drapeau) override;
    void SupprimeFichierTrace() const { m_trace.SupprimeFichier(); }

  private:
    // The driver (Pilote.cpp).
    void Pipeline(const TPeriode& periode, bool drapeau);
    void TraceEntrees(const TPeriode& periode);
    void ChaineNormale(const TPeriode& periode);
    void RemetSortiesAZero() { m_pData->RemetSortiesAZero(CDataCalcul::Raz::ToutSaufPlafondsPERP); }
    void QuotientDansFr(bool ajoute);

    /// One of the option switches of the return is set.
    bool UneOptionSaisie() const { return E["PFU"] != 0 || E["BAR"] != 0 || E["AVA"] != 0 || E["CIMR"] != 0; }
    /// The options on capital income and the modernisation credit apply.
    bool Options() const { return m_bOptionsForcees || (m_bOptionsSiSaisies && UneOptionSaisie()); }
    /// The rates of the following year apply (raised social levies).
    bool NouveauxTaux() const { return (m_bOptionsForcees && UneOptionSaisie()) || m_bOptionsSiSaisies; }

    // Household and scale.
    void NombreParts();
    void CalculImpot();
    void TauxMarginal();
    void CalculeBareme();
    void AppliqueBareme(CaseSortie ligne, std::int32_t revenu, std::int32_t parts);
    void PlafondQuotientFamilial(std::int32_t base, std::int32_t parts);
    std::int32_t RevenuAuBareme() const;

    // Income.
    void RevenusBrut(kv::Passe passe);
    void RevenusSalaires(kv::Passe passe);
    void RentesViageres();

    // Net and taxable income.
    void RevenusNet();
    void Charges();
    void ChargesEpargneRetraite(std::int32_t& reste);
    void ChargesGrossesReparations(std::int32_t& reste);
    void Charge(CaseSortie ligne, std::int32_t declare, std::int32_t retenu, std::int32_t& reste);
    void Abattements();
    void RevenusImposables();

    kv::Bareme m_Bareme{};
    const bool m_bOptionsForcees;
    const bool m_bOptionsSiSaisies;
    bool m_bCouple = false;           ///< joint taxation
    bool m_bCalculPAS = false;        ///< the withholding-rate chain run is under way
    bool m_bQuotientsDansFr = false;  ///< the exceptional amounts stand in their entry boxes
    std::vector<kv::ItemQuotient> m_lstQuotients;

    /// Per-computation figures of the steps, all back to 0 at the start of each "1:Calcul".
    struct Travail {
        bool bAvec8TM = false;                ///< the scale is applied to the worldwide income of box 8TM
        std::int32_t nTauxMarginalFige = 0;   ///< marginal rate of the worldwide pass, hundredths of a percent
        std::int32_t nRevenusDejaSoumis = 0;  ///< capital income that already bore the levies, flat-tax variant
        std::int32_t nRevenusDejaSoumisReste = 0;
        std::array<kv::MemoireSalaires, kv::nMembres> salaires{};
    } m_travail;
};
