#include <algorithm>
#include <optional>

#include "Calcul/pCalculN/Calcul_N.h"

// The global cap on tax advantages (CGI art. 200-0 A): what the counted reductions and credits are worth, measured by
// computing the return with and without them, and what of it exceeds the ceilings.

namespace {

// A year group, the most recent first: what it recorded, and where its advantage and ceiling are shown.
struct Groupe {
    CaseSortie recorde, avantage, affiche, plafond;
    std::int32_t plafondFixe, plafondPourcent;
    std::u16string_view nom, nomExces;
};
constexpr Groupe groupes[] = {
    {"NICHE_A2013", "NICHE_A5", "NICHE_AVANTAGE_N", "NICHE_PLAFOND_N", 10000, 0, u"nA5", u"nNiche2013"},
    {"NICHE_A2013S", "NICHE_A5S", "NICHE_AVANTAGE_N_S", "NICHE_PLAFOND_N_S", 18000, 0, u"nA5S", u"nNiche2013S"},
    {"NICHE_A2012", "NICHE_A4", "NICHE_AVANTAGE_NM1", "NICHE_PLAFOND_NM1", 18000, 4, u"nA4", u"nNiche2012"},
    {"NICHE_A2011", "NICHE_A3", "NICHE_AVANTAGE_NM2", "NICHE_PLAFOND_NM2", 18000, 6, u"nA3", u"nNiche2011"},
    {"NICHE_A2010", "NICHE_A2", "NICHE_AVANTAGE_NM3", "NICHE_PLAFOND_NM3", 20000, 8, u"nA2", u"nNiche2010"},
    {"NICHE_A2009", "NICHE_A1", "NICHE_AVANTAGE_NM4", "NICHE_PLAFOND_NM4", 25000, 10, u"nA1", u"nNiche2009"},
};
constexpr std::size_t nGroupes = std::size(groupes);
static_assert(nGroupes == kv::Imputation::nNiches);

// The outputs that the trace shows, in its order.
struct Nommee {
    std::u16string_view nom;
    CaseSortie sortie;
};
constexpr Nommee tracees[] = {
    {u"s(NICHE_PLAFOND_NM4)", "NICHE_PLAFOND_NM4"},
    {u"s(NICHE_PLAFOND_NM3)", "NICHE_PLAFOND_NM3"},
    {u"s(NICHE_PLAFOND_NM2)", "NICHE_PLAFOND_NM2"},
    {u"s(NICHE_PLAFOND_NM1)", "NICHE_PLAFOND_NM1"},
    {u"s(NICHE_PLAFOND_N_S)", "NICHE_PLAFOND_N_S"},
    {u"s(NICHE_PLAFOND_N)", "NICHE_PLAFOND_N"},
    {u"s(NICHE_A)", "NICHE_A"},
    {u"s(NICHE_B)", "NICHE_B"},
    {u"s(NICHE_A4BY)", "NICHE_A4BY"},
    {u"s(NICHE_A5)", "NICHE_A5"},
    {u"s(NICHE_A5S)", "NICHE_A5S"},
    {u"s(NICHE_A4)", "NICHE_A4"},
    {u"s(NICHE_A3)", "NICHE_A3"},
    {u"s(NICHE_A2)", "NICHE_A2"},
    {u"s(NICHE_A1)", "NICHE_A1"},
};

}  // namespace

// What is paid, less what is refunded.
std::int32_t CCalcul_N::SoldeDImpot() const { return S["TOT_PAYER"] - S["TOT_REST"]; }

void CCalcul_N::RelanceSansAvantages(const TPeriode& periode) {
    m_imputation.SansAvantages(true);
    m_pData->RemetSortiesAZero(CDataCalcul::Raz::Partielle);
    ImpotApresReductions(periode, kv::Passe::Normale);
    ImpotApresCorrections(kv::Passe::Normale);
    CreditDImpot();
    ImpotAPaye();
    m_imputation.SansAvantages(false);
}

void CCalcul_N::TraceNiches(std::u16string_view nom, std::int32_t valeur) const {
    m_trace.Valeur(nom, valeur);
    m_trace.Valeur(u"s(NICHE_A2009)", S["NICHE_A2009"]);
    m_trace.Valeur(u"s(NICHE_A2010)", S["NICHE_A2010"]);
    m_trace.Valeur(u"s(NICHE_A2011)", S["NICHE_A2011"]);
    m_trace.Valeur(u"s(NICHE_A2012)", S["NICHE_A2012"]);
    m_trace.Valeur(u"s(NICHE_A2013S)", S["NICHE_A2013S"]);
    m_trace.Valeur(u"s(NICHE_A2013)", S["NICHE_A2013"]);
}

void CCalcul_N::NichesFiscales(const TPeriode& periode) {
    const kv::Etape etape(m_trace, u"28:NichesFiscales");

    m_trace.Relance(u"=> Calcul de B : on relance tous les calculs normaux (avec les réductions)");
    PlafondPERP(periode);
    m_trace.Relance(u"=> Calcul de B : on relance les réductions sans aucun avantage");
    RelanceSansAvantages(periode);
    const std::int32_t sansAvantages = SoldeDImpot();
    TraceNiches(u"nB", sansAvantages);

    // The advantage that the property deduction 4BY gives counts in the oldest group.
    std::int32_t sans4BY = -1;
    std::optional<kv::Ajout> deduction4BYImputee;
    if (const std::int32_t deduction = E["4BY"]; deduction > 0) {
        m_trace.Relance(u"=> Calcul de 4BY : on relance tous les calculs après avoir ajouté 4BY à 4BA");
        {
            const kv::Ajout ajoutee(*m_pData, {{"4BA", deduction}});
            QuotientDansFr(false);
            PlafondPERP(periode);
            m_trace.Relance(u"=> Calcul de 4BY : on relance les réductions sans aucun avantage");
            RelanceSansAvantages(periode);
            sans4BY = SoldeDImpot();
        }
        deduction4BYImputee.emplace(*m_pData, std::initializer_list<kv::Ajout::Montant>{{"4BY", -deduction}});
    }
    TraceNiches(u"nC", sans4BY);

    m_trace.Relance(u"=> Calcul de A : on relance tous les calculs normaux (avec les réductions)");
    m_travail.passes = {};
    QuotientDansFr(false);
    PlafondPERP(periode);
    const std::int32_t avecAvantages = SoldeDImpot();
    TraceNiches(u"nA", avecAvantages);
    const std::int32_t avantage4BY = sans4BY != -1 ? nPositif(sans4BY - sansAvantages) : 0;
    TraceNiches(u"nA4BY", avantage4BY);

    // Each group takes what the more recent ones left of the total advantage, up to what it recorded.
    std::array<std::int32_t, nGroupes> avantages;
    std::int32_t reste = sansAvantages - avecAvantages, total = 0;
    for (std::size_t g = 0; g < nGroupes; ++g) {
        const std::int32_t supplement = g + 1 == nGroupes ? avantage4BY : 0;
        avantages[g] = std::min(reste + supplement, S[groupes[g].recorde] + supplement);
        reste -= avantages[g];
        total += avantages[g];
        m_trace.Valeur(groupes[g].nom, avantages[g]);
    }

    // An older group's ceiling covers its own advantage and what the more recent groups kept within theirs.
    std::array<std::int32_t, nGroupes> exces;
    std::int32_t garde = 0;
    S["NICHE_FISCALE"] = 0;
    for (std::size_t g = 0; g < nGroupes; ++g) {
        const Groupe& groupe = groupes[g];
        const std::int32_t plafond = groupe.plafondFixe + nPourcent(RevenuDuPlafond(), groupe.plafondPourcent);
        S[groupe.plafond] = plafond;
        S[groupe.affiche] = S[groupe.avantage] = avantages[g];
        const std::int32_t somme = garde + avantages[g];
        exces[g] = nPositif(somme - plafond);
        garde = std::min(somme, plafond);
        S["NICHE_FISCALE"] += exces[g];
    }
    S["NICHE_A"] = avecAvantages;
    S["NICHE_B"] = sansAvantages;
    S["NICHE_A4BY"] = avantage4BY;
    TraceResultatNiches(exces);

    m_trace.Relance(u"=> On relance les crédits d'impôts et l'impôt à payer avec les niches calculées");
    CreditDImpot();
    ImpotAPaye();
    if (total == 0) {
        S["NICHE_FISCALE"] = 0;
        for (const Groupe& groupe : groupes) S[groupe.plafond] = S[groupe.affiche] = 0;
    }
}

void CCalcul_N::TraceResultatNiches(std::span<const std::int32_t> exces) const {
    for (const Nommee& tracee : tracees) m_trace.Valeur(tracee.nom, S[tracee.sortie]);
    for (std::size_t g = 0; g < nGroupes; ++g) m_trace.Valeur(groupes[g].nomExces, exces[g]);
    m_trace.Valeur(u"s(NICHE_FISCALE)", S["NICHE_FISCALE"]);
}
