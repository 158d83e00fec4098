#pragma once

#include <array>
#include <optional>
#include <span>
#include <vector>

#include "Calcul/pCalculN/Bareme.h"
#include "Calcul/pCalculN/Calcul.h"
#include "Calcul/pCalculN/ReductionsTable.h"
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

class Assiettes;

/// Withholding rates of the two declarants of a couple, percent with one decimal.
using TauxIndividuels = std::array<double, 2>;

/// One declarant, or all dependants together: the three columns of a per-person line.
inline constexpr int nPersonnes = 3;
/// The declarants and the nine dependants.
inline constexpr int nMembres = 11;

/// What a normal pass found for one member of the household; the TK pass takes its share of it.
struct MemoireSalaires {
    std::int32_t salaires = 0, deduction = 0, fraisRetenus = 0, pensions = 0, abattement = 0;
};

/// Receipts of one kind under a micro regime, and the allowance on them.
struct RecettesMicro {
    std::int32_t recettes = 0, abattement = 0;
};

/// The categories whose deficits come off their own profits only.
enum class CategorieNonPro { Bnc, Bic, Meuble };

/// One of them: its result, what is imputed on it, what is carried, CGI art. 156 I.
struct CategorieDeficit {
    CaseSortie resultat, impute, deficit;
    CaseSortie anterieurs, imputes, annee, perdus, reste;
    std::array<CaseEntree, 10> boxes;  ///< deficits of earlier years, the oldest first
    CategorieNonPro categorie;
    bool deficitParPersonne;
    bool effaceSiNul;  ///< nothing left to carry: the detail is not shown
};

/// What the steps keep from one pass of a computation to the next.
struct MemoirePasses {
    std::array<std::array<RecettesMicro, 4>, nPersonnes> microBic{};  ///< sales and services, professional then not
    std::array<std::array<RecettesMicro, 2>, nPersonnes> microBnc{};  ///< professional, non-professional
    std::array<std::int32_t, 3> deficitsPerdus{};                     ///< lapsed deficits by non-professional category
    std::int32_t baseMobiliers = 0;                                   ///< investment income of the normal pass
    std::int32_t deficitMobilier = 0;
    std::int32_t deficitFoncier = 0;
    std::int32_t deficitFoncierPerdu = 0;
    std::int32_t deficitAgricolePerdu = 0;
    std::int32_t baseOutreMer = 0;   ///< long-term gains of overseas residents
    std::int32_t impotOutreMer = 0;  ///< the tax on them
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

    void CalculReports(const TPeriode* periode) override;
    bool Calcul(const TPeriode& periode, bool drapeau) override;
    /// "35:Calcul_ISF", the wealth-tax figures. False when it failed.
    bool Calcul_ISF();
    void SupprimeFichierTrace() const { m_trace.SupprimeFichier(); }

  private:
    // The driver (Pilote.cpp).
    bool Pipeline(const TPeriode& periode, bool drapeau);
    void EtapesPrincipales(const TPeriode& periode);
    void TauxIndividuelsDuCouple(const TPeriode& periode);
    bool FlatTaxMoinsChere() const;
    bool CompareOptions(const TPeriode& periode, bool drapeau);
    void TraceEntrees(const TPeriode& periode);
    void ChaineNormale(const TPeriode& periode);
    void RemetSortiesAZero() { m_pData->RemetSortiesAZero(CDataCalcul::Raz::ToutSaufPlafondsPERP); }
    void QuotientDansFr(bool ajoute);
    /// Takes the exceptional amounts back out of the entry boxes at the end of the scope, if they are in them.
    class QuotientsRepris {
      public:
        explicit QuotientsRepris(CCalcul_N& calcul) : m_calcul(calcul) {}
        ~QuotientsRepris() {
            if (m_calcul.m_bQuotientsDansFr) m_calcul.QuotientDansFr(false);
        }
        QuotientsRepris(const QuotientsRepris&) = delete;
        QuotientsRepris& operator=(const QuotientsRepris&) = delete;

      private:
        CCalcul_N& m_calcul;
    };

    /// One of the option switches of the return is set.
    bool UneOptionSaisie() const { return E["PFU"] != 0 || E["BAR"] != 0 || E["AVA"] != 0 || E["CIMR"] != 0; }
    /// The options on capital income and the modernisation credit apply.
    bool Options() const { return m_bOptionsForcees || (m_bOptionsSiSaisies && UneOptionSaisie()); }
    /// Each option, where the options apply: the scale for capital income, the flat tax (which wins over the scale when
    /// both are set), the modernisation credit.
    bool OptionBareme() const { return Options() && E["BAR"] != 0; }
    bool OptionForfait() const { return Options() && E["PFU"] != 0; }
    bool OptionCimr() const { return Options() && E["CIMR"] != 0; }
    /// The income is taxed as declared, whatever the option switches of the caller.
    bool SelonLaDeclaration() const { return !m_bOptionsForcees || (m_bOptionsSiSaisies && UneOptionSaisie()); }
    /// The rates of the following year apply (raised social levies).
    bool NouveauxTaux() const { return (m_bOptionsForcees && UneOptionSaisie()) || m_bOptionsSiSaisies; }

    // Household and scale (NombreParts.cpp, Bareme.cpp).
    void NombreParts();   // step 2
    void CalculImpot();   // step 15
    void TauxMarginal();  // step 16
    void CalculeBareme();
    void AppliqueBareme(CaseSortie ligne, std::int32_t revenu, std::int32_t parts);
    void PlafondQuotientFamilial(std::int32_t base, std::int32_t parts);
    std::int32_t RevenuAuBareme() const;

    // Income (Salaires.cpp, NonSalaries.cpp, Capitaux.cpp).
    void RevenusBrut(kv::Passe passe);         // step 3
    void RevenusSalaires(kv::Passe passe);     // step 4
    void RentesViageres();                     // step 5
    void RevenusNonSalaries(kv::Passe passe);  // step 6
    void MicroBic(std::size_t personne, kv::Passe passe);
    void MicroBnc(std::size_t personne, kv::Passe passe);
    void MicroBa(std::size_t personne);
    void ImputeDeficit(CaseSortie resultat, CaseSortie impute, std::int32_t deficits);
    void DeficitsNonProfessionnels(const kv::CategorieDeficit& categorie, kv::Passe passe);
    void MajorationsSansCentre();
    void RevenusExoneres();                  // step 7
    void RevenusMobiliers(kv::Passe passe);  // step 8
    void MobiliersMondiaux();
    void PrelevementLiberatoire(std::int32_t plafond, std::int32_t assuranceVie);
    void RevenusFonciers(kv::Passe passe);  // step 9
    void RevenusDivers(kv::Passe passe);    // step 10
    void RevenusTauxForf();                 // step 12
    void PrelevLib();                       // step 30

    // Exceptional income (Quotient.cpp).
    void RevenusBrutQuotient(kv::Passe passe);  // step 11
    void PartageDeductions();
    void PartageMobiliers();
    void SortiesQuotient();

    // Net, taxable and reference income (RevenuNet.cpp, RevenuReference.cpp).
    void RevenusNet();  // step 13
    void Charges();
    void ChargesEpargneRetraite(std::int32_t& reste);
    void ChargesGrossesReparations(std::int32_t& reste);
    void Charge(CaseSortie ligne, std::int32_t declare, std::int32_t retenu, std::int32_t& reste);
    void Abattements();
    void RevenusImposables();                       // step 14
    void RevenuFiscalRef(const TPeriode& periode);  // step 20
    std::int32_t CorrectionQuotient();
    std::int32_t GainsMobiliersNets() const;
    void RevenusNetFrais();  // step 34

    // Foreign income (Etranger.cpp).
    /// How far a re-run goes.
    enum class Jusque { RevenuNet, Impot, Corrections };
    void Relance(const TPeriode& periode, kv::Passe passe, Jusque jusque);
    std::int32_t RevenuNetDesAbattements() const;
    void RevenusTM(const TPeriode& periode);         // step 17
    void RevenusEtrangers(const TPeriode& periode);  // step 18

    // Reductions (Reductions.cpp, OutreMer.cpp).
    void ImpotApresReductions(const TPeriode& periode, kv::Passe passe);  // step 19
    void AbattementOutreMer();
    void DecoteEtClassesMoyennes();
    void PremieresReductions();
    void EmploiADomicile();
    void SecondesReductions();
    void RecommenceReports();
    void Dons();
    void Souscriptions();
    void Forets();
    void ResidenceDeTourisme(const kv::reductions::LigneTaux& ligne);
    void ImmeublesRestaures();
    void ReductionAuTaux(const kv::reductions::LigneTaux& ligne);
    void Fractions(std::span<const kv::reductions::LigneFraction> lignes);
    std::int32_t Etalees(std::span<const kv::reductions::LigneEtalee> lignes, std::int32_t enveloppe = 0);
    void CopieFractions(const kv::reductions::FractionsSuivantes& suivantes);
    std::int32_t& PlafondCommun(kv::reductions::Commun commun) {
        return m_plafondsCommuns[static_cast<std::size_t>(commun)];
    }
    void ReductionsOutreMerSimples();
    bool ReductionsOutreMer();
    /// The taxable income, exceptional income included, that ceilings in percent are taken of.
    std::int32_t RevenuDuPlafond() const {
        return S["I_BQ_TOUS_REV"] > 0 ? S["I_BQ_TOUS_REV"] : nPositif(S["TOT_R_IMPOS"]);
    }

    // Corrections (Corrections.cpp).
    void HautsSalaires();  // step 21
    std::int32_t ContributionHautsRevenus() const;
    void ImpotApresCorrections(kv::Passe passe);  // step 22
    void PlusValuesOutreMer(kv::Passe passe);
    void CapitauxAuForfait();

    // Social levies (CsgCrds.cpp).
    void CSG_CRDS();  // step 25
    void BaseSociale(CaseSortie base, std::int32_t montant);
    std::int32_t BaseMeubles() const;
    void BasesResident();
    void PrelevementsCapital(bool resident);
    void CsgDeductible();
    void CsgSansRetenue();
    void GainsSalaries();

    // Credits (Credits.cpp).
    void CreditDImpot();  // step 24
    void LigneCredit(CaseSortie credit, std::int32_t declare, std::int32_t retenu, double taux);
    std::int32_t PlafondParFoyer(std::int32_t montant, std::int32_t parCharge) const;
    void Contributions();
    void CreditsImputes();
    void EquipementDuLogement();
    void TransitionEnergetique();
    void FraisDeGarde();
    void CotisationsSyndicales();
    void PretsEtudiants();
    void CreditsForestiers();
    void ReportsForestiers();
    void InteretsHabitationPrincipale();

    // Withholding (Prelevement.cpp, Assiettes.cpp).
    void TauxPAS();  // step 36
    bool SituationChangee() const;
    double ImpotAPrelever(const kv::Assiettes& assiettes) const;
    void TraceTaux(const kv::Assiettes& assiettes) const;
    void TraceTauxIndividuel(std::u16string_view titre, double taux, const kv::Assiettes& assiettes,
                             std::int32_t credit) const;
    kv::TauxIndividuels CalculeTauxIndividuels(const TPeriode& periode);
    void ChainePAS(const TPeriode& periode);
    void KV_CIMR();  // step 37

    // Amount payable (ImpotAPaye.cpp).
    void ImpotAPaye();  // step 26
    void ClasseImpot(std::int32_t avantCredits, std::int32_t net);
    void ClassePrelevementsSociaux(bool avecCimr);
    void NetAPayer(std::int32_t net);

    // Retirement savings, global cap, indicators, next year's return (PlafondPERP.cpp, Niches.cpp, Indicateurs.cpp,
    // Reports.cpp).
    void PlafondPERP(const TPeriode& periode);     // step 27
    void NichesFiscales(const TPeriode& periode);  // step 28
    void RelanceSansAvantages(const TPeriode& periode);
    std::int32_t SoldeDImpot() const;
    void TraceNiches(std::u16string_view nom, std::int32_t valeur) const;
    void TraceResultatNiches(std::span<const std::int32_t> exces) const;
    void Reports();          // step 29
    void TauxImposMoyen();   // step 31
    void ImposTxMarginal();  // step 32
    void ImposTrancheSup();  // step 33
    bool BaremeSeul() const;
    std::size_t TrancheMarginale() const;
    std::int32_t AvantagePlafonne() const;
    void CopieISF();
    void ReportsDeficits();

    /// Puts the option switches back as the host gave them; after a comparison the options themselves end at 0.
    class Interrupteurs {
      public:
        explicit Interrupteurs(kv::ZoneEntree& entrees)
            : E(entrees), m_ava(E["AVA"]), m_pfu(E["PFU"]), m_bar(E["BAR"]) {}
        ~Interrupteurs() {
            E["AVA"] = m_ava;
            E["PFU"] = m_pfu;
            E["BAR"] = m_bar;
        }
        Interrupteurs(const Interrupteurs&) = delete;
        Interrupteurs& operator=(const Interrupteurs&) = delete;
        void OptionsComparees() { m_pfu = m_bar = 0; }

      private:
        kv::ZoneEntree& E;
        std::int32_t m_ava, m_pfu, m_bar;
    };

    Interrupteurs m_interrupteurs{E};
    kv::Bareme m_Bareme{};
    const bool m_bOptionsForcees;
    const bool m_bOptionsSiSaisies;
    bool m_bCouple = false;  ///< joint taxation
    // The comparison of the options: the net amounts of the two simulations, and which run is under way.
    std::int32_t m_nS_NET_A_PAYER_PFU = 0, m_nS_NET_RESTITUE_PFU = 0;
    std::int32_t m_nS_NET_A_PAYER_BAR = 0, m_nS_NET_RESTITUE_BAR = 0;
    bool m_bSimulationBAR = false;
    bool m_bPassageFinal = false;
    bool m_bChoixPFU = false;         ///< the flat tax costs no more than the scale
    bool m_bCalculPAS = false;        ///< the withholding-rate chain run is under way
    bool m_bQuotientsDansFr = false;  ///< the exceptional amounts stand in their entry boxes
    std::vector<kv::ItemQuotient> m_lstQuotients;
    kv::Imputation m_imputation{*m_pData};
    /// What is left of the ceilings that several lines share.
    std::array<std::int32_t, static_cast<std::size_t>(kv::reductions::Commun::Nombre)> m_plafondsCommuns{};

    /// Per-computation figures of the steps, all back to 0 at the start of each "1:Calcul".
    struct Travail {
        bool bAvec8TM = false;                ///< the scale is applied to the worldwide income of box 8TM
        std::int32_t nTauxMarginalFige = 0;   ///< marginal rate of the worldwide pass, hundredths of a percent
        std::int32_t nRevenusDejaSoumis = 0;  ///< capital income that already bore the levies, flat-tax variant
        std::int32_t nRevenusDejaSoumisReste = 0;
        std::int32_t nBaseMobiliersSociale = 0;  ///< capital income that the social levies start from
        kv::MemoirePasses passes;
        std::array<kv::MemoireSalaires, kv::nMembres> salaires{};
    } m_travail;
};
