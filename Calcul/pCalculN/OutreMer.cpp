#include "Calcul/pCalculN/OutreMer.h"

#include <algorithm>

#include "Calcul/pCalculN/Contexte.h"
#include "Calcul/pCalculN/Imputation.h"
#include "Calcul/pCalculN/OutreMerTable.h"

// Overseas investments (CGI art. 199 undecies A, B, C and D): the shares retroceded to the operating companies, and the
// rooms that limit what an investor keeps.

namespace kv {

using namespace outremer;

namespace {

// What fits of an amount.
std::int32_t Tient(std::int32_t montant, std::int32_t place) { return nPositif(std::min(montant, place)); }

class Repartition : Travail {
  public:
    Repartition(Contexte& c, Imputation& imputation) : Travail(c), m_imputation(imputation) {
        const std::int32_t revenu = RevenuDuPlafond();
        for (std::size_t i = 0; i < m_enveloppes.size(); ++i)
            m_enveloppes[i] = m_proportionnel ? nAuTaux(revenu, loi[enveloppes[i].part]) : loi[enveloppes[i].plafond];
        for (std::size_t i = 0; i < m_limites.size(); ++i) m_limites[i] = loi[partages[i].plafond];
    }

    // What the reduction did not take of a refundable one.
    void Rembourse() {
        if (faits.sansAvantages) return;
        for (const LigneRemboursable& ligne : lignesRemboursables)
            S[ligne.credit] = nPositif(std::min(E[ligne.entree], loi[plafondRemboursable]) - S[ligne.reduction]);
    }

    // Business investments. Where the rooms are a part of the income, the two shares of a line follow each other.
    void Retrocede() {
        if (m_proportionnel) {
            for (const LigneRetrocedee& ligne : lignesRetrocedees) ConservePart(ligne), RetrocedePart(ligne);
        } else {
            for (const LigneRetrocedee& ligne : lignesRetrocedees) ConservePart(ligne);
            for (const LigneRetrocedee& ligne : lignesRetrocedees) RetrocedePart(ligne);
        }
    }

    // Housing, and business investments without retrocession.
    void Limite() {
        for (const LigneLimitee& ligne : lignesLimitees) LimitePart(ligne, Place(ligne.enveloppe));
        if (!m_proportionnel) m_utilise = 0;
        for (const LigneLimiteeAuForfait& ligne : lignesLimiteesAuForfait)
            LimitePart(ligne,
                       m_proportionnel ? Place(ligne.enveloppe) : loi[EnveloppeDe(ligne).sansRetrocession] - m_utilise);
    }

  private:
    std::int32_t Place(int enveloppe) const {
        return m_enveloppes[static_cast<std::size_t>(enveloppe) - 1] - m_utilise;
    }

    void ConservePart(const LigneRetrocedee& ligne) {
        if (!m_imputation.Active(ligne.niche)) return;
        const CaseSortie part = ligne.nonRetrocede;
        const std::int32_t base = S[ligne.reduction], taux = loi[partages[ligne.classe].taux];
        C[0][part] = nAuTaux(base, taux);
        C[1][part] = Tient(C[0][part], Place(ligne.enveloppe));
        m_utilise += C[1][part];
        if (base <= 0) return;
        C[2][part] = nDiv(taux, 100);
        Detail[part] = Texte::TauxDeBase(taux, base);
    }

    // An inactive line retrocedes all it can, and gives nothing back.
    void RetrocedePart(const LigneRetrocedee& ligne) {
        const bool active = m_imputation.Active(ligne.niche);
        const CaseSortie part = ligne.retrocede;
        const Partage& partage = partages[ligne.classe];
        const std::int32_t base = S[ligne.reduction], conservee = C[1][ligne.nonRetrocede];
        C[0][part] =
            active ? nArrondi(dMul(dDiv(conservee, loi.Nombre(partage.conservee)), loi.Nombre(partage.retrocedee)))
                   : base;
        if (m_proportionnel) {
            C[1][part] = Tient(C[0][part], Place(ligne.enveloppe));
            m_utilise += C[1][part];
        } else {
            std::int32_t& limite = m_limites[ligne.limite];
            C[1][part] = Tient(C[0][part], limite);
            limite -= C[1][part];
        }
        if (base > 0) Detail[part] = Texte::Fraction(loi[partage.conservee], loi[partage.retrocedee]);
        if (!active) {
            S[ligne.excedent] = base - C[1][part];
            return;
        }
        C[0][ligne.excedent] = std::min(conservee + C[1][part], base);
        S[ligne.excedent] = base - C[0][ligne.excedent];
        m_imputation.FixeReste(m_imputation.Reste() + S[ligne.excedent]);
        m_imputation.Retranche(ligne.niche, base - conservee);
    }

    void LimitePart(const LigneLimitee& ligne, std::int32_t place) {
        const std::int32_t base = S[ligne.reduction], conservee = std::min(base, nPositif(place));
        m_imputation.Rend(ligne.niche, ligne.excedent, nPositif(base - conservee));
        m_utilise += conservee;
        if (base > 0) Detail[ligne.excedent] = Texte::TauxDeBase(10000, base);
    }

    Imputation& m_imputation;
    const bool m_proportionnel = E["HQA"] != 0;            // the rooms are a part of the income
    std::array<std::int32_t, 3> m_enveloppes{};            // the rooms
    std::int32_t m_utilise = 0;                            // what has been used of them, together
    std::array<std::int32_t, nRetrocessions> m_limites{};  // what is left of the rooms of the retroceded shares
};

}  // namespace

bool PartageOutreMer(Contexte& c, Imputation& imputation) {
    const std::int32_t resteAvant = imputation.Reste();
    Repartition repartition(c, imputation);
    repartition.Rembourse();
    repartition.Retrocede();
    repartition.Limite();
    return imputation.Reste() != resteAvant;
}

}  // namespace kv
