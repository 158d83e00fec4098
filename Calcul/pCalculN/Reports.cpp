#include "Calcul/pCalculN/Reports.h"

#include <algorithm>
#include <limits>
#include <span>

#include "Calcul/pCalculN/CreditsTable.h"
#include "Calcul/pCalculN/ReportsTable.h"
#include "support/KVTarvel.h"

// The carry-forward computation: what next year's return takes over from this one. It runs no step; it reads the
// entries and outputs of the launch.

namespace kv {

namespace {

// The deficits of a category by year of origin, the most recent first: where each is carried, and the box it came in.
struct Deficits {
    std::span<const CaseReport> reports;
    std::span<const CaseEntree> boxes;
};

constexpr CaseReport reportsAgricoles[] = {"F11_5QQ", "F11_5QP", "F11_5QO", "F11_5QN", "F11_5QG", "F11_5QF"};
constexpr CaseEntree agricoles[] = {"5QQ", "5QP", "5QO", "5QN", "5QG", "5QF"};
constexpr CaseReport reportsCommerciaux[] = {"F11_5RW", "F11_5RR", "F11_5RQ", "F11_5RP", "F11_5RO", "F11_5RN"};
constexpr CaseEntree commerciaux[] = {"5RW", "5RR", "5RQ", "5RP", "5RO", "5RN"};
constexpr CaseReport reportsMeubles[] = {"F11_5GJ", "F11_5GI", "F11_5GH", "F11_5GG", "F11_5GF",
                                         "F11_5GE", "F11_5GD", "F11_5GC", "F11_5GB", "F11_5GA"};
constexpr CaseEntree meubles[] = {"5GJ", "5GI", "5GH", "5GG", "5GF", "5GE", "5GD", "5GC", "5GB", "5GA"};
constexpr CaseReport reportsNonCommerciaux[] = {"F11_5MT", "F11_5LT", "F11_5KT", "F11_5JT", "F11_5IT", "F11_5HT"};
constexpr CaseEntree nonCommerciaux[] = {"5MT", "5LT", "5KT", "5JT", "5IT", "5HT"};
constexpr CaseReport reportsGlobaux[] = {"F11_6FL", "F11_6FE", "F11_6FD", "F11_6FC", "F11_6FB", "F11_6FA"};
constexpr CaseEntree globaux[] = {"6FL", "6FE", "6FD", "6FC", "6FB", "6FA"};

class AnneeSuivante {
  public:
    AnneeSuivante(const Saisie& saisie, const Lignes& lignes, ZoneReport& reports)
        : m_lignes(lignes), E(saisie.entrees), R(reports) {}

    void Copies();
    void Calcules();
    void DeficitsParAnnee();

  private:
    static constexpr std::int32_t nSansLimite = std::numeric_limits<std::int32_t>::max();

    std::int32_t Total(const Deficits& d) const;
    void Decale(const Deficits& d, std::int32_t annee);
    void Repartit(const Deficits& d, std::int32_t reste, std::int32_t annee, std::int32_t limite = nSansLimite);
    void Reporte(const Deficits& d, std::int32_t reste, std::int32_t annee);

    // A value, the second column of a line.
    std::int32_t S(CaseSortie c) const { return m_lignes.Lit(c).valeur; }
    std::int32_t C2(CaseSortie c) const { return m_lignes.Lit(c).colonnes[1]; }

    const Lignes& m_lignes;
    const ZoneEntree& E;
    ZoneReport& R;
};

std::int32_t AnneeSuivante::Total(const Deficits& d) const {
    std::int32_t total = 0;
    for (const CaseEntree box : d.boxes) total += E[box];
    return total;
}

// The whole deficits move one year back.
void AnneeSuivante::Decale(const Deficits& d, std::int32_t annee) {
    R[d.reports[0]] = annee;
    for (std::size_t i = 1; i < d.reports.size(); ++i) R[d.reports[i]] = E[d.boxes[i - 1]];
}

// What is left of the deficits moves one year back, the most recent years first; the oldest year takes what remains,
// within a limit.
void AnneeSuivante::Repartit(const Deficits& d, std::int32_t reste, std::int32_t annee, std::int32_t limite) {
    const auto ecrit = [&](std::size_t i, std::int32_t montant) {
        R[d.reports[i]] = montant;
        reste -= montant;
    };
    ecrit(0, annee);
    const std::size_t dernier = d.reports.size() - 1;
    for (std::size_t i = 1; i < dernier; ++i) ecrit(i, std::min(reste, E[d.boxes[i - 1]]));
    ecrit(dernier, std::min(reste, limite));
}

// A category whose oldest year takes what is left.
void AnneeSuivante::Reporte(const Deficits& d, std::int32_t reste, std::int32_t annee) {
    if (reste == 0) return;
    if (reste < Total(d))
        Repartit(d, reste, annee);
    else
        Decale(d, reste > Total(d) ? annee : 0);
}

void AnneeSuivante::Copies() {
    for (const reports::Copie& copie : reports::copies) {
        R[copie.vers] = copie.source == reports::Copie::DEntree    ? E[CaseEntree::Numero(copie.numero)]
                        : copie.source == reports::Copie::DeSortie ? S(CaseSortie::Numero(copie.numero))
                                                                   : C2(CaseSortie::Numero(copie.numero));
    }
}

void AnneeSuivante::Calcules() {
    R["F11_IRNm1"] = S("TOT_PAYER") - S("TOT_REST") - S("TOT_N_REST") - S("TOT_N_RECOUVRE");
    R["F11_6DE"] = std::min(S("S_DEDUC") + S("S_DEDUC_CSG_SAL"), S("S_A_PAYER"));
    R["F11_7WL"] = nPositif(C2("D_AIDE_RISQUE_TECHNO"));
    bool depenses = false;
    std::int32_t retenues = 0;
    for (const auto& t : credits::transitionEnergetique) {
        depenses = depenses || E[t.depense] > 0;
        retenues += C2(t.credit);
    }
    R["F11_7WHA"] = depenses ? retenues : 0;
}

void AnneeSuivante::DeficitsParAnnee() {
    const Deficits agricole = {reportsAgricoles, agricoles};
    if (S("NP1_BA") + S("NP1_BA_ANN") != 0) {
        if (S("NP1_BA") < S("NP1_BA_ANT"))
            Repartit(agricole, S("NP1_BA"), S("NP1_BA_ANN"), nPositif(E["5QG"]));
        else
            Decale(agricole, S("NP1_BA") > S("NP1_BA_ANT") ? S("NP1_BA_ANN") : 0);
    }
    Reporte({reportsCommerciaux, commerciaux}, S("NP1_BICNP"), S("NP1_BICNP_ANN"));
    Reporte({reportsMeubles, meubles}, S("NP1_BICNP_LM"), S("NP1_BICNP_LM_ANN"));
    if (S("NP1_BNCNP") + S("NP1_BNCNP_PER") != 0)
        Repartit({reportsNonCommerciaux, nonCommerciaux}, S("NP1_BNCNP"),
                 nPositif(S("NP1_BNCNP_ANN") - S("NP1_BNCNP_IMP")));

    const Deficits global = {reportsGlobaux, globaux};
    if (S("NP1_GLOBAL") != 0) {
        if (S("NP1_GLOBAL") < Total(global))
            Repartit(global, S("NP1_GLOBAL"), S("NP1_GLOBAL_ANN"),
                     nPositif(E["6FB"] + E["6FA"] - S("NP1_GLOBAL_IMP") - S("NP1_GLOBAL_PER")));
        else
            Decale(global, S("NP1_GLOBAL_ANN"));
    }
}

}  // namespace

void RemplitReports(const Saisie& saisie, const Lignes& lignes, ZoneReport& reports) {
    AnneeSuivante annee(saisie, lignes, reports);
    annee.Copies();
    annee.Calcules();
    annee.DeficitsParAnnee();
}

}  // namespace kv
