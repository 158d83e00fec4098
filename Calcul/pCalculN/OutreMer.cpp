#include <algorithm>

#include "Calcul/pCalculN/Calcul_N.h"
#include "Calcul/pCalculN/OutreMerTable.h"

// Overseas investments (CGI art. 199 undecies A, B, C and D): lines imputed in full, shares retroceded to the operating
// companies, and the rooms that limit what an investor keeps.

namespace {

using namespace kv::outremer;

// The three rooms, what has been used of them, and the remaining amounts of the retroceded parts.
class Enveloppes {
  public:
    Enveloppes(bool proportionnelles, std::int32_t revenu) : m_proportionnelles(proportionnelles) {
        if (proportionnelles)
            m_enveloppes = {nPourcent(revenu, 15), nPourcent(revenu, 13), nPourcent(revenu, 11)};
        else
            m_enveloppes = {40000, 36000, 30600};
    }

    bool Proportionnelles() const { return m_proportionnelles; }
    std::int32_t Place(int enveloppe) const {
        return m_enveloppes[static_cast<std::size_t>(enveloppe) - 1] - m_utilise;
    }
    void Utilise(std::int32_t montant) { m_utilise += montant; }
    void Recommence() { m_utilise = 0; }
    std::int32_t Utilise() const { return m_utilise; }

    // The remaining amount of a limit of the fixed option.
    std::int32_t& Limite(std::int32_t montant) {
        for (std::size_t i = 0; i < std::size(limites); ++i)
            if (limites[i] == montant) return m_restes[i];
        throw std::logic_error("limite inconnue");
    }

  private:
    static constexpr std::array<std::int32_t, 8> limites = {93333, 74286, 60000, 40000, 34000, 51000, 38945, 59400};
    const bool m_proportionnelles;
    std::array<std::int32_t, 3> m_enveloppes{};
    std::array<std::int32_t, 8> m_restes = limites;
    std::int32_t m_utilise = 0;
};

// What fits of an amount.
std::int32_t Tient(std::int32_t montant, std::int32_t place) { return nPositif(std::min(montant, place)); }

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
    Enveloppes enveloppes(E["HQA"] != 0, RevenuDuPlafond());

    // What the investor keeps of a business investment.
    const auto garde = [&](const LigneRetrocedee& ligne) {
        if (!m_imputation.Active(ligne.niche)) return;
        const std::int32_t base = S[ligne.reduction];
        C1[ligne.nonRetrocede] = nPourcent(base, ligne.taux);
        C2[ligne.nonRetrocede] = Tient(C1[ligne.nonRetrocede], enveloppes.Place(ligne.enveloppe));
        enveloppes.Utilise(C2[ligne.nonRetrocede]);
        if (base <= 0) return;
        C3[ligne.nonRetrocede] = nTronque(ligne.taux);
        Detail[ligne.nonRetrocede] = FloatToStr(ligne.taux) + u"% x " + IntToStr(base);
    };
    // What goes to the operator, and what exceeds both.
    const auto retrocede = [&](const LigneRetrocedee& ligne) {
        const bool active = m_imputation.Active(ligne.niche);
        const std::int32_t base = S[ligne.reduction];
        const std::int32_t part = active ? nArrondi(dMul(dDiv(C2[ligne.nonRetrocede], ligne.a), ligne.b)) : base;
        C1[ligne.retrocede] = part;
        if (enveloppes.Proportionnelles()) {
            C2[ligne.retrocede] = Tient(part, enveloppes.Place(ligne.enveloppe));
            enveloppes.Utilise(C2[ligne.retrocede]);
        } else {
            std::int32_t& limite = enveloppes.Limite(ligne.limite);
            C2[ligne.retrocede] = Tient(part, limite);
            limite -= C2[ligne.retrocede];
        }
        if (base > 0) Detail[ligne.retrocede] = FloatToStr(ligne.a) + u"/" + FloatToStr(ligne.b);
        if (!active) {
            S[ligne.excedent] = base - C2[ligne.retrocede];
            return;
        }
        C1[ligne.excedent] = std::min(C2[ligne.nonRetrocede] + C2[ligne.retrocede], base);
        S[ligne.excedent] = base - C1[ligne.excedent];
        m_imputation.FixeReste(m_imputation.Reste() + S[ligne.excedent]);
        m_imputation.Retranche(ligne.niche, base - C2[ligne.nonRetrocede]);
    };
    if (enveloppes.Proportionnelles()) {
        for (const LigneRetrocedee& ligne : lignesRetrocedees) garde(ligne), retrocede(ligne);
    } else {
        for (const LigneRetrocedee& ligne : lignesRetrocedees) garde(ligne);
        for (const LigneRetrocedee& ligne : lignesRetrocedees) retrocede(ligne);
    }

    // Housing, and business investments without retrocession: what exceeds the room is given back.
    const auto limite = [&](const LigneLimitee& ligne, std::int32_t place) {
        const std::int32_t base = S[ligne.reduction];
        const std::int32_t garde = std::min(base, nPositif(place));
        m_imputation.Rend(ligne.niche, ligne.excedent, nPositif(base - garde));
        enveloppes.Utilise(garde);
        if (base > 0) Detail[ligne.excedent] = u"100% x " + IntToStr(base);
    };
    for (const LigneLimitee& ligne : lignesLimitees) limite(ligne, enveloppes.Place(ligne.enveloppe));
    if (!enveloppes.Proportionnelles()) enveloppes.Recommence();
    for (const LigneLimitee& ligne : lignesLimiteesAuForfait)
        limite(ligne, enveloppes.Proportionnelles() ? enveloppes.Place(ligne.enveloppe)
                                                    : ligne.plafond - enveloppes.Utilise());
    return m_imputation.Reste() != resteAvant;
}
