#include "Calcul/pCalculN/Imputation.h"

#include <algorithm>

#include "support/KVTarvel.h"

namespace kv {

namespace {

// The totals of the year groups, in the order of the groups.
constexpr CaseSortie totaux[Imputation::nNiches] = {"NICHE_A2013", "NICHE_A2013S", "NICHE_A2012",
                                                    "NICHE_A2011", "NICHE_A2010",  "NICHE_A2009"};

}  // namespace

Imputation::Totaux Imputation::LisTotaux() const {
    Totaux valeurs;
    for (std::size_t g = 0; g < nNiches; ++g) valeurs[g] = m_lignes.Lit(totaux[g]).valeur;
    return valeurs;
}

void Imputation::FixeTotaux(const Totaux& valeurs) {
    for (std::size_t g = 0; g < nNiches; ++g) m_lignes.Ecrit(totaux[g]).valeur = valeurs[g];
}

void Imputation::Compte(Niche niche, std::int32_t montant) {
    if (montant == 0 || niche == Niche::HorsPlafond || niche == Niche::ToujoursActive) return;
    m_lignes.Ecrit(totaux[static_cast<std::size_t>(niche) - 1]).valeur += montant;
}

void Imputation::Rend(Niche niche, CaseSortie ligne, std::int32_t montant) {
    if (!Active(niche)) return;
    m_lignes.Ecrit(ligne).valeur = montant;
    m_nReste += montant;
    Compte(niche, -montant);
}

void Imputation::Note(Niche niche, CaseSortie ligne, std::int32_t montant) {
    if (!Active(niche)) return;
    if (m_lignes.Lit(ligne).valeur != montant) m_lignes.Ecrit(ligne).valeur = montant;
    Compte(niche, montant);
}

// The columns and the text; the rate of a column is whole.
void Imputation::Montre(const Demande& d, std::int32_t retenue) {
    m_lignes.Ecrit(d.ligne).colonnes = {d.base, retenue, nDiv(d.taux, 100)};
    m_lignes.EcritTexte(d.ligne) = Texte::TauxDeBase(d.taux, retenue);
}

void Imputation::Impute(const Demande& d, std::int32_t montant, int annees) {
    if (m_observateur) m_observateur->Impute({d.ligne, d.base, d.plafond, annees, montant, m_nReste});
    const std::int32_t impute = std::min(m_nReste, montant);
    m_lignes.Ecrit(d.ligne).valeur = impute;
    m_nReste -= impute;
    Compte(d.niche, impute);
    if (d.report) m_lignes.Ecrit(d.report).valeur += nPositif(montant - impute);
}

bool Imputation::Impute(const Demande& d) {
    if (d.base < 1 || !Active(d.niche)) return false;
    const std::int32_t retenue = std::min(d.base, d.plafond);
    Montre(d, retenue);
    Impute(d, std::min(nAuTaux(retenue, d.taux), d.limite));
    return true;
}

bool Imputation::ImputeOuMontre(const Demande& d) {
    if (d.base < 1) return false;
    if (Active(d.niche)) return Impute(d);
    Montre(d, d.base);
    m_lignes.Ecrit(d.ligne).valeur = std::min(m_nReste, d.base);
    return false;
}

std::optional<std::int32_t> Imputation::ImputeAnnuite(const Demande& d, int annees) {
    if (d.base < 1 || !Active(d.niche)) return {};
    const std::int32_t retenue = nArrondi(dDiv(std::min(d.base, d.plafond), annees));
    const std::int32_t annuite = nAuTaux(retenue, d.taux);
    Montre(d, retenue);
    Impute(d, annuite, annees);
    return annuite;
}

}  // namespace kv
