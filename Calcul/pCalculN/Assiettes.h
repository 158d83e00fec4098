#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "Calcul/cCalcul/Transferts.h"
#include "Calcul/pCalculN/Activites.h"
#include "Calcul/pCalculN/Contexte.h"

namespace kv {

/// The income bases of the withholding, read off a computed return: each category subject to it, gross, net, and the
/// part paid by instalments (CGI art. 204 F and 204 G).
///
/// Euros; the parts of a person may be negative. A figure that is not 0 is traced under its name.
class Assiettes {
  public:
    explicit Assiettes(const Contexte& c);

    /// Tax of the scale after the low-tax relief and the reduction for modest incomes.
    std::int32_t Impot() const;
    /// Net income of every category, positive parts only.
    std::int32_t RevenuNetImposable() const;
    /// Income subject to withholding: net of deductions, then before them.
    std::int32_t RevenuNetPreleve() const;
    std::int32_t RevenuPreleve() const;

    /// What a declarant (0 or 1) has of his own, each category at least 0; what the dependants have.
    std::int32_t PartDuDeclarant(std::size_t declarant) const;
    std::int32_t PartDesCharges() const;
    std::int32_t Rentes() const;
    std::int32_t Foncier() const;
    std::int32_t FoncierAcompte() const;

    /// Base of the income-tax instalment; activities count for a full year.
    std::int32_t Acompte() const;
    /// Furnished letting in the base of the social-levy instalment.
    std::int32_t AcompteMeubles() const;
    /// Income subject to withholding that is not exceptional.
    std::int32_t RevenuNonExceptionnel() const;

  private:
    ParPersonne Salaires() const;
    ParPersonne SalairesNets() const;
    ParPersonne SalairesAcompte() const;
    ParPersonne Pensions() const;
    ParPersonne PensionsNettes() const;
    ParPersonne PensionsAcompte() const;
    ParPersonne Professionnel(std::size_t activite) const;
    ParPersonne ProfessionnelAcompte(std::size_t activite) const;

    /// How many activities have figures to show.
    std::size_t Activites() const;
    std::int32_t Majore(const Activite& activite, std::size_t personne, std::int32_t montant) const;
    std::int32_t Somme(std::span<const CaseEntree> boxes) const;
    std::int32_t Quotients(std::span<const CaseEntree> boxes) const;
    double Ratio(std::size_t personne, CaseSortie net, CaseSortie declare) const;
    std::int32_t Trace(std::u16string_view nom, std::int32_t valeur) const;
    ParPersonne Trace(std::u16string_view nom, const ParPersonne& valeur) const;
    /// Salaries, pensions and each activity subject to withholding.
    template <class Fonction>
    void ParCategorie(Fonction fonction) const;

    const Contexte& m_contexte;
    const bool m_avecBoxesAPart;  ///< a box of the salaries or pensions that the withholding treats apart
    const bool m_avecActivites;   ///< otherwise every figure of the activities is 0
    const Loi& loi = m_contexte.commun.loi;
    const Entrees E{m_contexte};
    const Valeurs S{m_contexte.commun.lignes};
    const std::array<Colonne, 3> C{Colonne(m_contexte.commun.lignes, 0), Colonne(m_contexte.commun.lignes, 1),
                                   Colonne(m_contexte.commun.lignes, 2)};
    std::array<ParPersonne, nActivites> m_professionnels;  ///< each total reads them
};

}  // namespace kv
