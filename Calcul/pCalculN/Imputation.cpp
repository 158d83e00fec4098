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
    for (std::size_t g = 0; g < nNiches; ++g) valeurs[g] = m_data.Sortie[totaux[g]];
    return valeurs;
}

void Imputation::FixeTotaux(const Totaux& valeurs) {
    for (std::size_t g = 0; g < nNiches; ++g) m_data.Sortie[totaux[g]] = valeurs[g];
}

void Imputation::Compte(Niche niche, std::int32_t montant) {
    if (niche == Niche::HorsPlafond || niche == Niche::ToujoursActive) return;
    m_data.Sortie[totaux[static_cast<std::size_t>(niche) - 1]] += montant;
}

void Imputation::Colonnes(CaseSortie ligne, double taux, std::int32_t base, std::int32_t retenue) {
    m_data.Colonne[0][ligne] = base;
    m_data.BaseEtTaux(ligne, retenue, nTronque(taux));
    m_data.Detail[ligne] = FloatToStr(taux) + u"% x " + IntToStr(retenue);
}

void Imputation::Impute(Niche niche, CaseSortie ligne, std::int32_t montant) {
    if (!Active(niche)) return;
    const std::int32_t impute = std::min(m_nReste, montant);
    m_data.Sortie[ligne] = impute;
    m_nReste -= impute;
    Compte(niche, impute);
}

void Imputation::Rend(Niche niche, CaseSortie ligne, std::int32_t montant) {
    if (!Active(niche)) return;
    m_data.Sortie[ligne] = montant;
    m_nReste += montant;
    Compte(niche, -montant);
}

void Imputation::Note(Niche niche, CaseSortie ligne, std::int32_t montant) {
    if (!Active(niche)) return;
    m_data.Sortie[ligne] = montant;
    Compte(niche, montant);
}

bool Imputation::Taux(Niche niche, CaseSortie ligne, double taux, std::int32_t base, std::int32_t plafond) {
    return TauxLimite(niche, ligne, taux, base, plafond, nSansPlafond);
}

bool Imputation::TauxLimite(Niche niche, CaseSortie ligne, double taux, std::int32_t base, std::int32_t plafond,
                            std::int32_t limite) {
    if (base < 1 || !Active(niche)) return false;
    const std::int32_t retenue = std::min(base, plafond);
    Colonnes(ligne, taux, base, retenue);
    Impute(niche, ligne, std::min(nPourcent(retenue, taux), limite));
    return true;
}

bool Imputation::Entiere(Niche niche, CaseSortie ligne, CaseSortie report, std::int32_t base) {
    if (base < 1) return false;
    if (!Active(niche)) {
        Colonnes(ligne, 100, base, base);
        m_data.Sortie[ligne] = std::min(m_nReste, base);
        return false;
    }
    Taux(niche, ligne, 100, base);
    if (report) m_data.Sortie[report] = nPositif(m_data.Colonne[0][ligne] - m_data.Sortie[ligne]);
    return true;
}

bool Imputation::Fraction(Niche niche, CaseSortie ligne, CaseSortie report, std::int32_t base) {
    if (!Taux(niche, ligne, 100, base)) return false;
    if (report) m_data.Sortie[report] += nPositif(base - m_data.Sortie[ligne]);
    return true;
}

bool Imputation::Etalee(Niche niche, CaseSortie ligne, double taux, std::int32_t base, std::int32_t plafond, int annees,
                        CaseSortie premiere, int nSuivantes, CaseSortie report) {
    if (base < 1 || !Active(niche)) return false;
    const std::int32_t retenue = nArrondi(dDiv(std::min(base, plafond), annees));
    const std::int32_t annuite = nPourcent(retenue, taux);
    Colonnes(ligne, taux, base, retenue);
    if (premiere) {
        m_data.Sortie[premiere] += annuite;
        for (int i = 1; i < nSuivantes; ++i) m_data.Sortie[premiere + i] = m_data.Sortie[premiere];
    }
    if (report) m_data.Sortie[report] += nPositif(annuite - m_nReste);
    Impute(niche, ligne, annuite);
    return true;
}

}  // namespace kv
