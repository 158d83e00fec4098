#include <algorithm>
#include <array>
#include <span>
#include <vector>

#include "Calcul/pCalculN/Activites.h"
#include "Calcul/pCalculN/Contexte.h"
#include "Calcul/pCalculN/Etapes.h"

// Exceptional and deferred income, taxed by the quotient (CGI art. 163-0 A): the net amount of each category after the
// deductions that the ordinary income receives, by coefficient.

namespace kv {

namespace {

// ---- The working figures of one coefficient, by name. Most take three values: first declarant, second declarant,
// dependants.

constexpr std::size_t nLignes = nActivites + 1;  // the activities, then everything else

enum Figure : std::size_t {
    Salaires = 0,                              // gross salaries
    Pensions = Salaires + 3,                   // gross pensions
    PartDeduction = Pensions + 3,              // share of the salary deduction
    PartAbattement = PartDeduction + 3,        // share of the pension allowance
    Net = PartAbattement + 3,                  // net salaries and pensions
    AvecCentre = Net + 3,                      // business income with an approved centre, by activity
    SansCentre = AvecCentre + 3 * nActivites,  // without one
    Montants = SansCentre + 3 * nActivites,    // the exceptional amounts, by line
    Mobiliers = Montants + 3 * nLignes,        // dividends (after allowance), insurance income, other
    FraisMobiliers = Mobiliers + 3,            // the expenses on each
    DeficitMobilier = FraisMobiliers + 3,      // deficit of earlier years
    NetMobilier,                               // net investment income
    AutresRevenus,                             // property income and gains
    NombreFigures,
};

struct Figures {
    std::int32_t coefficient = 0;
    std::array<std::int32_t, NombreFigures> valeurs{};
};

std::span<std::int32_t, 3> Trois(Figures& q, std::size_t figure) {
    return std::span<std::int32_t, 3>(q.valeurs.data() + figure, 3);
}
std::span<std::int32_t, 3> Ligne(Figures& q, Figure figure, std::size_t ligne) { return Trois(q, figure + 3 * ligne); }

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

// Reads an entry box of the ordinary income or, for a coefficient, the exceptional amount of the box.
class Lecture {
  public:
    explicit Lecture(const Contexte& c) : m_contexte(c), m_ordinaire(true), m_coefficient(1) {}
    Lecture(const Contexte& c, std::int32_t coefficient)
        : m_contexte(c), m_ordinaire(false), m_coefficient(coefficient) {}

    bool Ordinaire() const { return m_ordinaire; }
    std::int32_t operator()(CaseEntree box) const {
        if (!box) return 0;
        return m_ordinaire ? m_contexte.Vue()[box] : m_contexte.exceptionnels.De(box, m_coefficient);
    }
    std::int32_t operator()(std::span<const CaseEntree> boxes) const {
        std::int32_t total = 0;
        for (const CaseEntree box : boxes) total += (*this)(box);
        return total;
    }

  private:
    const Contexte& m_contexte;
    const bool m_ordinaire;
    const std::int32_t m_coefficient;
};

// The gross figures of one record. The ordinary business results are net of their deficits, dividends of their
// allowance (hundredths of a percent).
void Remplit(Figures& q, const Lecture& lit, std::int32_t abattementDividendes) {
    const bool ordinaire = lit.Ordinaire();
    for (std::size_t k = 0; k < nPersonnes; ++k) {
        const Personne& p = personnes[k];
        Trois(q, Salaires)[k] = lit(p.salaires) + (ordinaire ? lit(p.salairesOrdinaires) : 0);
        Trois(q, Pensions)[k] =
            lit(p.pensions) + (ordinaire ? lit(p.pensionsOrdinaires) : lit(p.pensionsExceptionnelles));
        for (std::size_t i = 0; i < nActivites; ++i) {
            const Activite& a = activites[i];
            const auto benefices = [&](const Benefice(&boxes)[2], CaseEntree deficit) {
                const std::int32_t total = lit(boxes[0].box) + lit(boxes[1].box);
                return ordinaire ? nPositif(total - lit(deficit)) : total;
            };
            Ligne(q, AvecCentre, i)[k] = benefices(a.avecCentre[k], a.deficitAvec[k]);
            Ligne(q, SansCentre, i)[k] = benefices(a.sansCentre[k], a.deficitSans[k]);
        }
    }
    for (std::size_t i = 0; i < 3; ++i) Trois(q, Mobiliers)[i] = lit(mobiliers[i]);
    q.valeurs[Mobiliers] -= nAuTaux(q.valeurs[Mobiliers], abattementDividendes);
    if (!ordinaire) q.valeurs[AutresRevenus] = lit("4BA") + lit("RAQ") + lit("3VG") + lit("3UA");
}

// The exceptional amounts of one record by line and person. A result without an approved centre is raised by
// a rate (hundredths of a percent).
void RemplitMontants(Figures& q, std::int32_t majoration) {
    for (std::size_t k = 0; k < nPersonnes; ++k) {
        for (std::size_t i = 0; i < nActivites; ++i)
            Ligne(q, Montants, i)[k] =
                Ligne(q, AvecCentre, i)[k] + nAuTaux(Ligne(q, SansCentre, i)[k], 10000 + majoration);
        std::int32_t& autres = Ligne(q, Montants, nActivites)[k];
        autres = nPositif(Trois(q, Net)[k]);
        if (k == 0) autres += q.valeurs[NetMobilier] + q.valeurs[AutresRevenus];
    }
}

class Quotient : Travail {
  public:
    explicit Quotient(Contexte& c) : Travail(c) {}
    void RevenusBrutQuotient();

  private:
    bool MemesRevenus() const;
    void Totalise();
    void PartageDeductions();
    void PartageMobiliers();
    void Sorties();

    Figures m_ordinaire, m_total;  // the ordinary income; the totals over it and every coefficient
    std::pmr::vector<Figures> m_quotients{contexte.commun.place};  // the exceptional income, by coefficient
};

void Quotient::RevenusBrutQuotient() {
    const std::int32_t abattementDividendes = faits.forfait ? 0 : loi["mobiliers.dividendes.abattement"];
    if (!contexte.exceptionnels.coefficients.empty()) Remplit(m_ordinaire, Lecture(contexte), abattementDividendes);
    for (const std::int32_t coefficient : contexte.exceptionnels.coefficients) {
        Figures& q = m_quotients.emplace_back();
        q.coefficient = coefficient;
        Remplit(q, Lecture(contexte, coefficient), abattementDividendes);
    }
    trace.Relance(u"=> on relance les calculs en ayant ajouté les revenus au quotient");
    Totalise();
    contexte.AjouteExceptionnels();
    if (!MemesRevenus()) {
        contexte.RemetSortiesAZero();
        contexte.Lance(revenusBruts);
    }

    PartageDeductions();
    PartageMobiliers();
    for (Figures& q : m_quotients) RemplitMontants(q, loi["benefices.sansCentre.majoration"]);
    Sorties();
}

// Without exceptional amounts the income is what it was, unless the withholding run has halved its deficits meanwhile.
bool Quotient::MemesRevenus() const {
    const auto& montants = contexte.exceptionnels.montants;
    const bool aucun = std::all_of(montants.begin(), montants.end(), [](const auto& m) { return m.montant == 0; });
    return aucun && !trace.m_bTrace && !(faits.retenueALaSource && S["RD_DEFICIT"] != 0);
}

void Quotient::Totalise() {
    m_total.valeurs = m_ordinaire.valeurs;
    for (const Figures& q : m_quotients)
        for (std::size_t i = 0; i < q.valeurs.size(); ++i) m_total.valeurs[i] += q.valeurs[i];
}

// The deductions were computed on all salaries and pensions together: each coefficient takes its share.
void Quotient::PartageDeductions() {
    for (Figures& q : m_quotients) {
        for (std::size_t k = 0; k < nPersonnes; ++k) {
            const std::int32_t salaires = Trois(q, Salaires)[k], pensions = Trois(q, Pensions)[k];
            Trois(q, PartDeduction)[k] = nProrata(C[k]["RN_SAL_DED_10"], salaires, Trois(m_total, Salaires)[k]);
            Trois(q, PartAbattement)[k] = nProrata(C[k]["RN_PEN_ABAT"], pensions, Trois(m_total, Pensions)[k]);
            Trois(q, Net)[k] = salaires + pensions - Trois(q, PartDeduction)[k] - Trois(q, PartAbattement)[k];
        }
    }
}

// Expenses and deficits of investment income, shared out the same way.
void Quotient::PartageMobiliers() {
    static constexpr CaseSortie frais[3] = {"RD_MOB_FRAIS_2DC", "RD_MOB_FRAIS_2TS", "RD_MOB_FRAIS_2TR"};
    const std::int32_t netTotal =
        S["RD_MOB_MONT"] + S["RD_MOB_MAJO"] - S["RD_MOB_DEMI_BASE"] - S["RD_MOB_ABAT"] - S["RD_MOB_FRAIS"];
    for (Figures& q : m_quotients) {
        std::int32_t net = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            const std::int32_t brut = Trois(q, Mobiliers)[i];
            Trois(q, FraisMobiliers)[i] = nProrata(S[frais[i]], brut, Trois(m_total, Mobiliers)[i]);
            net += brut - Trois(q, FraisMobiliers)[i];
        }
        net = nPositif(net);
        q.valeurs[DeficitMobilier] = nProrata(S["RD_MOB_DEFICIT_NM1"], net, netTotal);
        q.valeurs[NetMobilier] = nPositif(net - q.valeurs[DeficitMobilier]);
    }
}

// The items that the scale taxes, and the exceptional income by category.
void Quotient::Sorties() {
    memoire.quotients.clear();
    for (const CaseSortie categorie : categories) S[categorie] = 0;
    for (Figures& q : m_quotients) {
        ItemQuotient item;
        item.coefficient = q.coefficient;
        for (std::size_t i = 0; i < nLignes; ++i) {
            for (const std::int32_t montant : Ligne(q, Montants, i)) {
                item.montant += montant;
                S[i < nActivites ? activites[i].auQuotient : CaseSortie("RQ_REV_QN_AUTRE")] += montant;
            }
        }
        memoire.quotients.push_back(item);
    }
    S["RQ_REV_EXCEP"] = 0;
    for (const CaseSortie categorie : categories) S["RQ_REV_EXCEP"] += S[categorie];
    if (S["RQ_REV_EXCEP"] <= 0) return;
    for (const CaseSortie categorie : categories)
        if (S[categorie] == S["RQ_REV_EXCEP"]) S[categorie] = 0;  // the only category: the total shows it
}

}  // namespace

void RevenusBrutQuotient(Contexte& c) { Quotient(c).RevenusBrutQuotient(); }

}  // namespace kv
