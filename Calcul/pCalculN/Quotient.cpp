#include <algorithm>
#include <span>

#include "Calcul/cCalcul/Transferts.h"
#include "Calcul/pCalculN/Activites.h"
#include "Calcul/pCalculN/Calcul_N.h"

// Exceptional and deferred income, taxed by the quotient (CGI art. 163-0 A): the net amount of each category after the
// deductions that the ordinary income receives, by coefficient.

namespace {

using kv::nPersonnes;

// ---- The working values of a quotient record, by name. Most figures take three values, one per person.

constexpr std::size_t nLignes = kv::nActivites + 1;  // the activities, then everything else

enum Figure : std::size_t {
    Salaires = 0,                                  // gross salaries
    Pensions = Salaires + 3,                       // gross pensions
    PartDeduction = Pensions + 3,                  // share of the salary deduction
    PartAbattement = PartDeduction + 3,            // share of the pension allowance
    Net = PartAbattement + 3,                      // net salaries and pensions
    AvecCentre = Net + 3,                          // business income with an approved centre, by activity
    SansCentre = AvecCentre + 3 * kv::nActivites,  // without one
    Montants = SansCentre + 3 * kv::nActivites,    // the exceptional amounts, by line
    Mobiliers = Montants + 3 * nLignes,            // dividends (after allowance), insurance income, other
    FraisMobiliers = Mobiliers + 3,                // the expenses on each
    DeficitMobilier = FraisMobiliers + 3,          // deficit of earlier years
    NetMobilier,                                   // net investment income
    DeficitFoncier,                                // property deficit of earlier years
    AutresRevenus,                                 // property income and gains
    NombreFigures,
};
static_assert(NombreFigures <= CCalcQuotient::nValeurs);

std::span<std::int32_t, 3> Trois(CCalcQuotient& q, std::size_t figure) {
    return std::span<std::int32_t, 3>(q.nValeur.data() + figure, 3);
}
std::span<std::int32_t, 3> Ligne(CCalcQuotient& q, Figure figure, std::size_t ligne) {
    return Trois(q, figure + 3 * ligne);
}

// ---- Where the amounts come from.

// The boxes of one person: those that carry both ordinary and exceptional income, then those of one kind only.
struct Personne {
    CaseEntree salaires[12], salairesOrdinaires[12];
    CaseEntree pensions[12], pensionsOrdinaires[16], pensionsExceptionnelles[1];
};
constexpr Personne personnes[nPersonnes] = {
    {{"1AJ", "1AP", "1GB"}, {"1AF"}, {"1AS", "1AO", "1AZ"}, {"1AL"}, {"AAQ"}},
    {{"1BJ", "1BP", "1HB"}, {"1BF"}, {"1BS", "1BO", "1BZ"}, {"1BL"}, {"BAQ"}},
    {{"1CJ", "1DJ", "1EJ", "1FJ", "1CP", "1DP", "1EP", "1FP", "1IB", "1JB", "1KB", "1LB"},
     {"1CF", "1DF", "1EF", "1FF", "1FJA", "1FJB", "1FJC", "1FJD", "1FPA", "1FPB", "1FPC", "1FPD"},
     {"1CS", "1DS", "1ES", "1FS", "1CO", "1DO", "1EO", "1FO", "1CZ", "1DZ", "1EZ", "1FZ"},
     {"1CL", "1DL", "1EL", "1FL", "1FSA", "1FSB", "1FSC", "1FSD", "1FOA", "1FOB", "1FOC", "1FOD", "1FZA", "1FZB",
      "1FZC", "1FZD"},
     {}},
};

constexpr CaseSortie categories[] = {"RQ_REV_QN_BA",    "RQ_REV_QN_BIC_P",  "RQ_REV_QN_BIC_NP",
                                     "RQ_REV_QN_BNC_P", "RQ_REV_QN_BNC_NP", "RQ_REV_QN_AUTRE"};

constexpr CaseEntree mobiliers[3] = {"2DC", "2TS", "2TR"};

// Reads an entry box or, for a coefficient, the exceptional amount of the box.
class Lecture {
  public:
    explicit Lecture(const CDataCalcul& data) : m_data(data), m_ordinaire(true), m_coefficient(1) {}
    Lecture(const CDataCalcul& data, std::int32_t coefficient)
        : m_data(data), m_ordinaire(false), m_coefficient(coefficient) {}

    bool Ordinaire() const { return m_ordinaire; }
    std::int32_t operator()(CaseEntree box) const {
        if (!box) return 0;
        if (m_ordinaire) return m_data.Entree[box];
        return m_data.Quotient(box, m_coefficient);
    }
    std::int32_t operator()(std::span<const CaseEntree> boxes) const {
        std::int32_t total = 0;
        for (const CaseEntree box : boxes) total += (*this)(box);
        return total;
    }

  private:
    const CDataCalcul& m_data;
    const bool m_ordinaire;
    const std::int32_t m_coefficient;
};

// The gross figures of one record. The ordinary business results are net of their deficits.
void Remplit(CCalcQuotient& q, const Lecture& lit, bool abattementDividendes) {
    const bool ordinaire = lit.Ordinaire();
    q.nValeur.fill(0);
    for (std::size_t k = 0; k < nPersonnes; ++k) {
        const Personne& p = personnes[k];
        Trois(q, Salaires)[k] = lit(p.salaires) + (ordinaire ? lit(p.salairesOrdinaires) : 0);
        Trois(q, Pensions)[k] =
            lit(p.pensions) + (ordinaire ? lit(p.pensionsOrdinaires) : lit(p.pensionsExceptionnelles));
        for (std::size_t i = 0; i < kv::nActivites; ++i) {
            const kv::Activite& a = kv::activites[i];
            const auto benefices = [&](const kv::Benefice(&boxes)[2], CaseEntree deficit) {
                const std::int32_t total = lit(boxes[0].box) + lit(boxes[1].box);
                return ordinaire ? nPositif(total - lit(deficit)) : total;
            };
            Ligne(q, AvecCentre, i)[k] = benefices(a.avecCentre[k], a.deficitAvec[k]);
            Ligne(q, SansCentre, i)[k] = benefices(a.sansCentre[k], a.deficitSans[k]);
        }
    }
    for (std::size_t i = 0; i < 3; ++i) Trois(q, Mobiliers)[i] = lit(mobiliers[i]);
    if (abattementDividendes) q.nValeur[Mobiliers] -= nPourcent(q.nValeur[Mobiliers], 40);
    if (!ordinaire) q.nValeur[AutresRevenus] = lit("4BA") + lit("RAQ") + lit("3VG") + lit("3UA");
}

// The totals: the ordinary income and every coefficient, value by value.
void Totalise(CDataCalcul& data) {
    data.QuotientTotal.nValeur = data.QuotientOrdinaire.nValeur;
    for (const auto& q : data.ListeQuotients)
        for (std::size_t i = 0; i < CCalcQuotient::nValeurs; ++i) data.QuotientTotal.nValeur[i] += q->nValeur[i];
}

// The exceptional amounts of one record by line and person. A result without an approved centre counts for 125 %.
void RemplitMontants(CCalcQuotient& q) {
    for (std::size_t k = 0; k < nPersonnes; ++k) {
        for (std::size_t i = 0; i < kv::nActivites; ++i)
            Ligne(q, Montants, i)[k] = Ligne(q, AvecCentre, i)[k] + nPourcent(Ligne(q, SansCentre, i)[k], 125);
        std::int32_t& autres = Ligne(q, Montants, kv::nActivites)[k];
        autres = nPositif(Trois(q, Net)[k]);
        if (k == 0) autres += q.nValeur[NetMobilier] + q.nValeur[AutresRevenus];
    }
}

}  // namespace

void CCalcul_N::RevenusBrutQuotient(kv::Passe passe) {
    const kv::Etape etape(m_trace, u"11:RevenusBrutQuotient");
    CDataCalcul& data = *m_pData;

    const bool abattementDividendes = !OptionForfait();
    Remplit(data.QuotientOrdinaire, Lecture(data), abattementDividendes);
    for (const auto& q : data.ListeQuotients) Remplit(*q, Lecture(data, q->nId), abattementDividendes);

    m_trace.Relance(u"=> on relance les calculs en ayant ajouté les revenus au quotient");
    Totalise(data);
    QuotientDansFr(true);
    RemetSortiesAZero();
    NombreParts();
    RevenusBrut(passe);

    PartageDeductions();
    PartageMobiliers();
    RemplitMontants(data.QuotientOrdinaire);
    for (const auto& q : data.ListeQuotients) RemplitMontants(*q);
    Totalise(data);
    SortiesQuotient();
}

// The deductions were computed on all salaries and pensions together: each coefficient takes its share, the ordinary
// income what is left.
void CCalcul_N::PartageDeductions() {
    CDataCalcul& data = *m_pData;
    CCalcQuotient& ordinaire = data.QuotientOrdinaire;
    CCalcQuotient& total = data.QuotientTotal;
    for (std::size_t k = 0; k < nPersonnes; ++k) {
        const std::int32_t deduction = C[k]["RN_SAL_DED_10"], abattement = C[k]["RN_PEN_ABAT"];
        Trois(ordinaire, PartDeduction)[k] = deduction;
        Trois(ordinaire, PartAbattement)[k] = abattement;
        for (const auto& q : data.ListeQuotients) {
            Trois(*q, PartDeduction)[k] = nProrata(deduction, Trois(*q, Salaires)[k], Trois(total, Salaires)[k]);
            Trois(*q, PartAbattement)[k] = nProrata(abattement, Trois(*q, Pensions)[k], Trois(total, Pensions)[k]);
            Trois(ordinaire, PartDeduction)[k] -= Trois(*q, PartDeduction)[k];
            Trois(ordinaire, PartAbattement)[k] -= Trois(*q, PartAbattement)[k];
        }
        const auto net = [&](CCalcQuotient& q) {
            Trois(q, Net)[k] = Trois(q, Salaires)[k] + Trois(q, Pensions)[k] - Trois(q, PartDeduction)[k] -
                               Trois(q, PartAbattement)[k];
        };
        net(ordinaire);
        for (const auto& q : data.ListeQuotients) net(*q);
    }
    Totalise(data);
}

// Expenses and deficits of investment income, shared out the same way.
void CCalcul_N::PartageMobiliers() {
    CDataCalcul& data = *m_pData;
    CCalcQuotient& ordinaire = data.QuotientOrdinaire;
    CCalcQuotient& total = data.QuotientTotal;
    static constexpr CaseSortie frais[3] = {"RD_MOB_FRAIS_2DC", "RD_MOB_FRAIS_2TS", "RD_MOB_FRAIS_2TR"};
    for (CCalcQuotient* q : {&ordinaire, &total}) {
        for (std::size_t i = 0; i < 3; ++i) Trois(*q, FraisMobiliers)[i] = S[frais[i]];
        q->nValeur[DeficitMobilier] = S["RD_MOB_DEFICIT_NM1"];
        q->nValeur[DeficitFoncier] = S["RD_FON_BD_IMPUT"];
    }
    const std::int32_t netTotal =
        S["RD_MOB_MONT"] + S["RD_MOB_MAJO"] - S["RD_MOB_DEMI_BASE"] - S["RD_MOB_ABAT"] - S["RD_MOB_FRAIS"];
    total.nValeur[NetMobilier] = netTotal;
    for (const auto& q : data.ListeQuotients) {
        std::int32_t net = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            const std::int32_t brut = Trois(*q, Mobiliers)[i];
            Trois(*q, FraisMobiliers)[i] =
                nProrata(Trois(ordinaire, FraisMobiliers)[i], brut, Trois(total, Mobiliers)[i]);
            net += brut - Trois(*q, FraisMobiliers)[i];
        }
        net = nPositif(net);
        q->nValeur[DeficitMobilier] = nProrata(S["RD_MOB_DEFICIT_NM1"], net, netTotal);
        q->nValeur[NetMobilier] = nPositif(net - q->nValeur[DeficitMobilier]);
    }
}

// The items that the scale taxes, and the exceptional income by category.
void CCalcul_N::SortiesQuotient() {
    m_lstQuotients.clear();
    for (const CaseSortie categorie : categories) S[categorie] = 0;
    for (const auto& q : m_pData->ListeQuotients) {
        kv::ItemQuotient item;
        item.coefficient = q->nId;
        for (std::size_t i = 0; i < nLignes; ++i) {
            for (const std::int32_t montant : Ligne(*q, Montants, i)) {
                item.montant2 += montant;
                S[i < kv::nActivites ? kv::activites[i].auQuotient : CaseSortie("RQ_REV_QN_AUTRE")] += montant;
            }
        }
        m_lstQuotients.push_back(item);
    }
    S["RQ_REV_EXCEP"] = 0;
    for (const CaseSortie categorie : categories) S["RQ_REV_EXCEP"] += S[categorie];
    if (S["RQ_REV_EXCEP"] <= 0) return;
    for (const CaseSortie categorie : categories)
        if (S[categorie] == S["RQ_REV_EXCEP"]) S[categorie] = 0;  // the only category: the total shows it
}
