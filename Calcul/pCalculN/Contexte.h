#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>

#include "Calcul/cCalcul/Lignes.h"
#include "Calcul/cCalcul/Saisie.h"
#include "Calcul/pCalculN/Bareme.h"
#include "Calcul/pCalculN/Loi.h"
#include "Calcul/pCalculN/Memoire.h"
#include "Calcul/pCalculN/Observateur.h"
#include "KVCommun/cPeriode/Periode.h"
#include "support/KVTarvel.h"
#include "support/Trace.h"

// What a step works with: the inputs, the outputs and the facts of the run it belongs to, and the way to run other
// steps. A run is a Contexte; a run over other inputs is another one, over a changed copy of the inputs.

namespace kv {

class Contexte;

/// The numbered steps.
enum class Etape : std::uint8_t {
    NombreParts = 2,
    RevenusBrut,
    RevenusSalaires,
    RentesViageres,
    RevenusNonSalaries,
    RevenusExoneres,
    RevenusMobiliers,
    RevenusFonciers,
    RevenusDivers,
    RevenusBrutQuotient,
    RevenusTauxForf,
    RevenusNet,
    RevenusImposables,
    CalculImpot,
    TauxMarginal,
    RevenusTM,
    RevenusEtrangers,
    ImpotApresReductions,
    RevenuFiscalRef,
    HautsSalaires,
    ImpotApresCorrections,
    CreditDImpot = 24,
    CSG_CRDS,
    ImpotAPaye,
    PlafondPERP,
    NichesFiscales,
    Reports,
    PrelevLib,
    TauxImposMoyen,
    ImposTxMarginal,
    ImposTrancheSup,
    RevenusNetFrais,
    Calcul_ISF,
    TauxPAS,
    KV_CIMR,
};

/// Runs a step: the one door from a step to the others.
class Chaine {
  public:
    virtual void Lance(Etape etape, Contexte& c) = 0;

  protected:
    ~Chaine() = default;
};

// ---- The runs that several steps ask for.

/// Steps 2 and 3: the gross income of the household.
inline constexpr Etape revenusBruts[] = {Etape::NombreParts, Etape::RevenusBrut};
/// The normal chain, up to the gross tax.
inline constexpr Etape chaineNormale[] = {
    Etape::NombreParts, Etape::RevenusBrut,       Etape::RevenusBrutQuotient, Etape::RevenusTauxForf,
    Etape::RevenusNet,  Etape::RevenusImposables, Etape::CalculImpot,         Etape::TauxMarginal,
    Etape::RevenusTM,   Etape::RevenusEtrangers,
};
/// What follows it: from the reductions to the amount payable.
inline constexpr Etape finDuCalcul[] = {Etape::ImpotApresReductions, Etape::ImpotApresCorrections, Etape::CreditDImpot,
                                        Etape::ImpotAPaye};

/// What a pass over the income is for.
enum class Passe : std::int32_t {
    Normale = 0,   ///< the ordinary computation
    Mondiale = 1,  ///< worldwide income: the foreign amounts stand in the French boxes
    TK = 2,        ///< only the foreign income with a credit equal to the French tax
};

/// What a host asks for.
struct Lancement {
    const TPeriode* periode = nullptr;
    bool optionsForcees = false;    ///< the options apply whatever the return sets
    bool optionsSiSaisies = false;  ///< they apply when the return sets one
};

/// The net amounts of the two simulations, which the comparison of the options reads.
struct Comparaison {
    struct Net {
        std::int32_t aPayer = 0, restitue = 0;
    };
    Net forfait, bareme;
};

/// What holds throughout a run, found once from its inputs and from what it is for.
struct Faits {
    Passe passe = Passe::Normale;
    bool couple = false;              ///< joint taxation
    bool resident = false;            ///< neither `REM` nor `RED`
    bool options = false;             ///< the options on capital income and the modernisation credit apply
    bool bareme = false;              ///< ... and the return asks for the scale on capital income
    bool forfait = false;             ///< ... for the flat tax, which wins over the scale when both are set
    bool cimr = false;                ///< ... for the modernisation credit
    bool selonLaDeclaration = false;  ///< capital income is taxed as declared, whatever the switches of the caller
    bool nouveauxTaux = false;        ///< the rates of the following year apply (raised social levies)
    bool sansAvantages = false;       ///< the advantages that count in the global cap are left out
    bool retenueALaSource = false;    ///< the withholding run: the declarant is half of a household
    bool avec8TM = false;             ///< the scale is applied to the worldwide income of box 8TM
    bool operator==(const Faits&) const = default;
};

class ChainesConnues;

class Contexte {
  public:
    /// What every run of a launch shares.
    struct Commun {
        const Lancement& lancement;
        const Loi& loi;        ///< with its amounts at the indexation rate of the launch
        const Bareme& bareme;  ///< the scale of that law
        Lignes& lignes;
        Memoire& memoire;
        Comparaison& comparaison;
        Chaine& chaine;
        Trace& trace;
        ChainesConnues& chainesConnues;
        Lignes::Conservees& conservees;    ///< room for the lines of a run that must stand again after others
        std::pmr::memory_resource* place;  ///< where a run takes memory from, until the end of the launch
        Observateur* observateur;          ///< null for none
    };

    Contexte(const Commun& commun, const Saisie& saisie, const CasesEntree& remplies,
             const Exceptionnels& exceptionnels, bool couple);
    /// A run over other inputs; what it is for stays.
    Contexte(const Contexte& autre, const Saisie& saisie);
    /// The same with other exceptional income and for another kind of household; a normal pass.
    Contexte(const Contexte& autre, const Saisie& saisie, const CasesEntree& remplies,
             const Exceptionnels& exceptionnels, bool couple)
        : Contexte(autre.commun, saisie, remplies, exceptionnels, couple) {}
    Contexte(const Contexte&) = delete;
    Contexte& operator=(const Contexte&) = delete;

    const Commun commun;
    const Saisie& declaree;              ///< the inputs without the exceptional amounts
    const CasesEntree remplies;          ///< the boxes of them that are not 0
    const Exceptionnels& exceptionnels;  ///< the exceptional amounts beside them
    Faits faits;

    /// Whether one of these boxes is filled in. A family none of whose boxes is has nothing to do but what it writes
    /// regardless; while a trace is written nothing is passed over.
    template <std::size_t N>
    bool Remplies(const BoitesLues<N>& boites) const {
        return commun.trace.m_bTrace || boites.UneParmi(*m_remplies);
    }
    /// Whether every run over these inputs gives what the first one gave. Foreign income leaves memories for later
    /// runs, `6QW` reads the ceilings that the run before left, `4BY` is measured by other inputs; while a trace is
    /// written nothing is passed over.
    bool Repetable() const;

    /// The inputs as the run sees them: with the exceptional amounts from the quotient step on.
    const Saisie& Vue() const { return *m_vue; }
    bool AvecExceptionnels() const { return m_vue != &declaree; }
    const Saisie* const& PointeurDeVue() const { return m_vue; }
    void AjouteExceptionnels();
    void RetireExceptionnels();

    /// Tells the observer, where there is one, that a run has ended.
    void Fin(Passage passage) const {
        if (commun.observateur) commun.observateur->Fin(passage, *this);
    }
    void Lance(Etape etape) { commun.chaine.Lance(etape, *this); }
    void Lance(std::span<const Etape> etapes) {
        for (const Etape etape : etapes) Lance(etape);
    }
    /// The normal chain from an empty slate.
    void RelanceChaineNormale();
    /// Clears every output but the ten retirement-savings ceilings: each run of the income steps begins so.
    void RemetSortiesAZero() { commun.lignes.RemetAZero(Lignes::Raz::ToutSaufPlafondsPERP); }

  private:
    const Saisie* m_vue;
    const CasesEntree* m_remplies;  ///< the boxes of what the run sees that are not 0
    std::optional<Saisie> m_avecExceptionnels;
    CasesEntree m_rempliesAvecExceptionnels;
};

/// The entry boxes as the run sees them: E["1AJ"].
class Entrees {
  public:
    explicit Entrees(const Contexte& c) : m_vue(c.PointeurDeVue()) {}
    std::int32_t operator[](CaseEntree c) const { return (*m_vue)[c]; }
    const Saisie& Toutes() const { return *m_vue; }

  private:
    const Saisie* const& m_vue;
};

/// A step at work: the figures of its run by the names that the rules give them. Each family derives its own.
class Travail {
  protected:
    explicit Travail(Contexte& c) : contexte(c) {}

    void Lance(Etape etape) { contexte.Lance(etape); }

    /// A figure of the year, or of the following one where its rates apply.
    std::int32_t EnVigueur(ParametreAnnuel p) const { return loi[faits.nouveauxTaux ? p.suivante : p.annee]; }
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
    /// What is allowed per household: twice as much for a couple.
    std::int32_t ParFoyer(std::int32_t montant) const { return faits.couple ? 2 * montant : montant; }
    /// Gains on securities, less losses and allowances for length of ownership.
    std::int32_t GainsMobiliersNets() const {
        return SommeE({"3VG", "3SG", "3UA", "3SL", "3VA", "3VQ"}) - E["3VH"] - E["3VR"];
    }
    /// The tax on a pension paid out as capital (CGI art. 163 bis II).
    std::int32_t ImpotPensionEnCapital(std::int32_t pension) const {
        return nAuTaux(nAuTaux(pension, loi.Complement("pensions.capital.abattement")), loi["pensions.capital.taux"]);
    }
    /// The taxable income, exceptional income included, that ceilings in percent are taken of.
    std::int32_t RevenuDuPlafond() const {
        return S["I_BQ_TOUS_REV"] > 0 ? S["I_BQ_TOUS_REV"] : nPositif(S["TOT_R_IMPOS"]);
    }
    /// Takes deficits off a profit, each person's in proportion to their own profits.
    void ImputeDeficit(CaseSortie resultat, CaseSortie impute, std::int32_t deficits);
    /// A credit or reduction line: base declared, base retained, rate.
    void BaseRetenue(CaseSortie ligne, std::int32_t declare, std::int32_t retenu, std::int32_t taux) {
        C1[ligne] = declare;
        lignes.BaseEtTaux(ligne, retenu, taux);
    }

    Contexte& contexte;
    const Lancement& lancement = contexte.commun.lancement;
    const Loi& loi = contexte.commun.loi;
    const Faits& faits = contexte.faits;
    Lignes& lignes = contexte.commun.lignes;
    Memoire& memoire = contexte.commun.memoire;
    Trace& trace = contexte.commun.trace;

    const Entrees E{contexte};  ///< entry boxes
    Valeurs S{lignes};          ///< outputs
    Colonne C1{lignes, 0}, C2{lignes, 1}, C3{lignes, 2};
    std::array<Colonne, 3> C{C1, C2, C3};                ///< output columns 1 to 3, from 0
    Textes Detail{lignes};                               ///< texts of the outputs
    const Zone<CaseTI, nTI>& TI = contexte.declaree.TI;  ///< companion slots
    const Zone<CaseTIX, nTIX>& TIX = contexte.declaree.TIX;
    const Zone<CaseTIX, nTIX>& TIY = contexte.declaree.TIY;
    const Zone<CaseTK, nTK>& TK = contexte.declaree.TK;
    const Zone<CaseTK, nTK>& TKZ = contexte.declaree.TKZ;
};

}  // namespace kv
