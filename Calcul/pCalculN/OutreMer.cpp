#include <algorithm>

#include "Calcul/pCalculN/Calcul_N.h"
#include "Calcul/pCalculN/OutreMerTable.h"

// Overseas investments (CGI art. 199 undecies A, B, C and D): lines imputed in full, shares retroceded to the operating
// companies, and the rooms that limit what an investor keeps.

namespace {

using namespace kv::outremer;

// What fits of an amount.
std::int32_t Tient(std::int32_t montant, std::int32_t place) { return nPositif(std::min(montant, place)); }

// The shares of the overseas investments: what the investor keeps within the three rooms, what goes to the operators,
// and what exceeds both and is given back to the tax.
class Partage {
  public:
    Partage(CDataCalcul& data, kv::Imputation& imputation, bool proportionnel, std::int32_t revenu)
        : S(data.Sortie),
          C(data.Colonne),
          Detail(data.Detail),
          m_imputation(imputation),
          m_proportionnel(proportionnel) {
        if (proportionnel)
            m_enveloppes = {nPourcent(revenu, 15), nPourcent(revenu, 13), nPourcent(revenu, 11)};
        else
            m_enveloppes = {40000, 36000, 30600};
    }

    // Business investments. Where the rooms are a part of the income, the two shares of a line follow each other.
    void Retrocede() {
        if (m_proportionnel) {
            for (const LigneRetrocedee& ligne : lignesRetrocedees) GardePart(ligne), RetrocedePart(ligne);
        } else {
            for (const LigneRetrocedee& ligne : lignesRetrocedees) GardePart(ligne);
            for (const LigneRetrocedee& ligne : lignesRetrocedees) RetrocedePart(ligne);
        }
    }

    // Housing, and business investments without retrocession.
    void Limite() {
        for (const LigneLimitee& ligne : lignesLimitees) LimitePart(ligne, Place(ligne.enveloppe));
        if (!m_proportionnel) m_utilise = 0;
        for (const LigneLimitee& ligne : lignesLimiteesAuForfait)
            LimitePart(ligne, m_proportionnel ? Place(ligne.enveloppe) : ligne.plafond - m_utilise);
    }

  private:
    std::int32_t Place(int enveloppe) const {
        return m_enveloppes[static_cast<std::size_t>(enveloppe) - 1] - m_utilise;
    }

    void GardePart(const LigneRetrocedee& ligne) {
        if (!m_imputation.Active(ligne.niche)) return;
        const CaseSortie part = ligne.nonRetrocede;
        const std::int32_t base = S[ligne.reduction];
        C[0][part] = nPourcent(base, ligne.taux);
        C[1][part] = Tient(C[0][part], Place(ligne.enveloppe));
        m_utilise += C[1][part];
        if (base <= 0) return;
        C[2][part] = nTronque(ligne.taux);
        Detail[part] = FloatToStr(ligne.taux) + u"% x " + IntToStr(base);
    }

    // An inactive line retrocedes all it can, and gives nothing back.
    void RetrocedePart(const LigneRetrocedee& ligne) {
        const bool active = m_imputation.Active(ligne.niche);
        const CaseSortie part = ligne.retrocede;
        const std::int32_t base = S[ligne.reduction], gardee = C[1][ligne.nonRetrocede];
        C[0][part] = active ? nArrondi(dMul(dDiv(gardee, ligne.a), ligne.b)) : base;
        if (m_proportionnel) {
            C[1][part] = Tient(C[0][part], Place(ligne.enveloppe));
            m_utilise += C[1][part];
        } else {
            std::int32_t& limite = m_limites[ligne.limite];
            C[1][part] = Tient(C[0][part], limite);
            limite -= C[1][part];
        }
        if (base > 0) Detail[part] = FloatToStr(ligne.a) + u"/" + FloatToStr(ligne.b);
        if (!active) {
            S[ligne.excedent] = base - C[1][part];
            return;
        }
        C[0][ligne.excedent] = std::min(gardee + C[1][part], base);
        S[ligne.excedent] = base - C[0][ligne.excedent];
        m_imputation.FixeReste(m_imputation.Reste() + S[ligne.excedent]);
        m_imputation.Retranche(ligne.niche, base - gardee);
    }

    void LimitePart(const LigneLimitee& ligne, std::int32_t place) {
        const std::int32_t base = S[ligne.reduction], gardee = std::min(base, nPositif(place));
        m_imputation.Rend(ligne.niche, ligne.excedent, nPositif(base - gardee));
        m_utilise += gardee;
        if (base > 0) Detail[ligne.excedent] = u"100% x " + IntToStr(base);
    }

    kv::ZoneSortie& S;
    std::array<kv::ZoneSortie, 3>& C;
    kv::ZoneTextes& Detail;
    kv::Imputation& m_imputation;
    const bool m_proportionnel;                  // the rooms are a part of the income
    std::array<std::int32_t, 3> m_enveloppes{};  // the rooms
    std::int32_t m_utilise = 0;                  // what has been used of them, together
    std::array<std::int32_t, limitesAuForfait.size()> m_limites = limitesAuForfait;  // what is left of the limits
};

}  // namespace

void CCalcul_N::ReductionsOutreMerSimples() {
    for (const LigneSimple& ligne : lignesSimples) m_imputation.Taux(ligne.niche, ligne.sortie, 100, E[ligne.entree]);
}

// Whether shares were given back to the tax.
bool CCalcul_N::ReductionsOutreMer() {
    for (const LigneReportee& ligne : lignesReportees)
        m_imputation.Entiere(ligne.niche, ligne.sortie, ligne.suite, E[ligne.entree]);
    if (!m_imputation.SansAvantages())
        for (const LigneRemboursable& ligne : lignesRemboursables)
            S[ligne.credit] = nPositif(std::min(E[ligne.entree], nPlafondRemboursable) - S[ligne.reduction]);

    const std::int32_t resteAvant = m_imputation.Reste();
    Partage partage(*m_pData, m_imputation, E["HQA"] != 0, RevenuDuPlafond());
    partage.Retrocede();
    partage.Limite();
    return m_imputation.Reste() != resteAvant;
}
