#include <algorithm>
#include <numeric>
#include <string_view>

#include "Calcul/pCalculN/Contexte.h"
#include "Calcul/pCalculN/CreditsTable.h"
#include "Calcul/pCalculN/Etapes.h"
#include "Calcul/pCalculN/Imputation.h"
#include "Calcul/pCalculN/Prelevement.h"
#include "Calcul/pCalculN/ReductionsTable.h"

// The global cap on tax advantages (CGI art. 200-0 A): what the counted reductions and credits are worth, measured by
// computing the return with and without them, and what of it exceeds the ceilings.

namespace kv {

namespace {

// A year group, the most recent first: what it recorded, and where its advantage and ceiling are shown.
struct Groupe {
    CaseSortie recorde, avantage, affiche, plafond;
    Parametre plafondFixe, plafondPourcent;
    std::u16string_view nom, nomExces;
};
constexpr Groupe groupes[] = {
    {"NICHE_A2013",
     "NICHE_A5",
     "NICHE_AVANTAGE_N",
     "NICHE_PLAFOND_N",
     "niches.2013.plafond",
     {},
     u"nA5",
     u"nNiche2013"},
    {"NICHE_A2013S",
     "NICHE_A5S",
     "NICHE_AVANTAGE_N_S",
     "NICHE_PLAFOND_N_S",
     "niches.2013.plafondMajore",
     {},
     u"nA5S",
     u"nNiche2013S"},
    {"NICHE_A2012", "NICHE_A4", "NICHE_AVANTAGE_NM1", "NICHE_PLAFOND_NM1", "niches.2012.plafond", "niches.2012.taux",
     u"nA4", u"nNiche2012"},
    {"NICHE_A2011", "NICHE_A3", "NICHE_AVANTAGE_NM2", "NICHE_PLAFOND_NM2", "niches.2011.plafond", "niches.2011.taux",
     u"nA3", u"nNiche2011"},
    {"NICHE_A2010", "NICHE_A2", "NICHE_AVANTAGE_NM3", "NICHE_PLAFOND_NM3", "niches.2010.plafond", "niches.2010.taux",
     u"nA2", u"nNiche2010"},
    {"NICHE_A2009", "NICHE_A1", "NICHE_AVANTAGE_NM4", "NICHE_PLAFOND_NM4", "niches.2009.plafond", "niches.2009.taux",
     u"nA1", u"nNiche2009"},
};
constexpr std::size_t nGroupes = std::size(groupes);
static_assert(nGroupes == Imputation::nNiches);

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

class Niches : Travail {
  public:
    explicit Niches(Contexte& c) : Travail(c) {}
    void NichesFiscales();

  private:
    using ParGroupe = std::array<std::int32_t, nGroupes>;
    /// What is paid less what is refunded, with the advantages and without; what the deduction 4BY saves.
    struct Soldes {
        std::int32_t avec, sans, par4BY;
        bool memeCalcul = false;  // nothing counts, and what stands is the run with the advantages
    };

    bool SansRienDeCompte() const;
    std::int32_t AvecAvantages(Contexte& c);
    std::int32_t SansAvantages(Contexte& c);
    std::int32_t Avec4BYDeduite();
    void Plafonne(Contexte& c, const Soldes& soldes);
    ParGroupe PartageAvantage(std::int32_t avantage, std::int32_t avantage4BY);
    ParGroupe ExcesParGroupe(const ParGroupe& avantages);
    void Trace(std::u16string_view nom, std::int32_t valeur) const;
    void TraceResultat(const ParGroupe& exces) const;
};

// ---- What is paid, less what is refunded, by a run with the advantages and by one without.

std::int32_t Niches::AvecAvantages(Contexte& c) {
    c.Lance(Etape::PlafondPERP);
    return S["TOT_PAYER"] - S["TOT_REST"];
}

std::int32_t Niches::SansAvantages(Contexte& c) {
    c.faits.sansAvantages = true;
    lignes.RemetAZero(Lignes::Raz::Partielle);
    c.Lance(finDuCalcul);
    c.Fin(Passage::SansAvantages);
    c.faits.sansAvantages = false;
    return S["TOT_PAYER"] - S["TOT_REST"];
}

// Nothing that the run without advantages would leave out: no box of an advantage that counts is filled in, and the
// levy on life insurance, which the partial reset clears, gives no credit.
bool Niches::SansRienDeCompte() const {
    return !contexte.Remplies(boitesLues<reductions::boitesComptees>) &&
           !contexte.Remplies(boitesLues<credits::boitesComptees>) && S["D_LIB"] == 0;
}

// Without advantages, the property deduction 4BY taxed again.
std::int32_t Niches::Avec4BYDeduite() {
    trace.Relance(u"=> Calcul de 4BY : on relance tous les calculs après avoir ajouté 4BY à 4BA");
    Saisie ajoutee = contexte.declaree;
    ajoutee["4BA"] += E["4BY"];
    Contexte c(contexte, ajoutee);
    c.RetireExceptionnels();
    AvecAvantages(c);
    trace.Relance(u"=> Calcul de 4BY : on relance les réductions sans aucun avantage");
    return SansAvantages(c);
}

void Niches::NichesFiscales() {
    trace.Relance(u"=> Calcul de B : on relance tous les calculs normaux (avec les réductions)");
    const std::int32_t avec = AvecAvantages(contexte);
    trace.Relance(u"=> Calcul de B : on relance les réductions sans aucun avantage");
    const bool repetable = contexte.Repetable(), rien = SansRienDeCompte();
    if (repetable && !rien) lignes.Conserve(contexte.commun.conservees);
    const std::int32_t sansAvantages = rien ? avec : SansAvantages(contexte);
    Trace(u"nB", sansAvantages);
    if (repetable) {  // run A is what stood before the run without advantages
        if (!rien) lignes.Reprend(contexte.commun.conservees);
        return Plafonne(contexte, {.avec = avec, .sans = sansAvantages, .par4BY = 0, .memeCalcul = rien});
    }

    // The advantage that the property deduction 4BY gives counts in the oldest group; once measured, it is imputed.
    const bool deduction = E["4BY"] > 0;
    const std::int32_t sans4BY = deduction ? Avec4BYDeduite() : -1;
    Trace(u"nC", sans4BY);
    Saisie imputee = contexte.declaree;
    if (deduction) imputee["4BY"] -= E["4BY"];
    Contexte c(contexte, imputee);

    trace.Relance(u"=> Calcul de A : on relance tous les calculs normaux (avec les réductions)");
    memoire.passes = {};
    c.RetireExceptionnels();
    const std::int32_t avecAvantages = AvecAvantages(c);
    Trace(u"nA", avecAvantages);
    const std::int32_t avantage4BY = sans4BY != -1 ? nPositif(sans4BY - sansAvantages) : 0;
    Trace(u"nA4BY", avantage4BY);
    Plafonne(c, {.avec = avecAvantages, .sans = sansAvantages, .par4BY = avantage4BY});
}

// Caps what each group takes of the total advantage, and computes the credits and the amount payable once more.
void Niches::Plafonne(Contexte& c, const Soldes& soldes) {
    const ParGroupe avantages = PartageAvantage(soldes.sans - soldes.avec, soldes.par4BY);
    const ParGroupe exces = ExcesParGroupe(avantages);
    S["NICHE_A"] = soldes.avec;
    S["NICHE_B"] = soldes.sans;
    S["NICHE_A4BY"] = soldes.par4BY;
    TraceResultat(exces);

    trace.Relance(u"=> On relance les crédits d'impôts et l'impôt à payer avec les niches calculées");
    if (soldes.memeCalcul) {  // both would find again what they found, but for what the first reads of the second
        SignaleTauxSansImpot(c);
    } else {
        c.Lance(Etape::CreditDImpot);
        c.Lance(Etape::ImpotAPaye);
    }
    if (std::accumulate(avantages.begin(), avantages.end(), 0) == 0) {
        S["NICHE_FISCALE"] = 0;
        for (const Groupe& groupe : groupes) S[groupe.plafond] = S[groupe.affiche] = 0;
    }
}

// Each group takes what the more recent ones left of the total advantage, up to what it recorded.
Niches::ParGroupe Niches::PartageAvantage(std::int32_t avantage, std::int32_t avantage4BY) {
    ParGroupe avantages;
    std::int32_t reste = avantage;
    for (std::size_t g = 0; g < nGroupes; ++g) {
        const std::int32_t supplement = g + 1 == nGroupes ? avantage4BY : 0;
        avantages[g] = std::min(reste + supplement, S[groupes[g].recorde] + supplement);
        reste -= avantages[g];
        trace.Valeur(groupes[g].nom, avantages[g]);
    }
    return avantages;
}

// An older group's ceiling covers its own advantage and what the more recent groups kept within theirs.
Niches::ParGroupe Niches::ExcesParGroupe(const ParGroupe& avantages) {
    ParGroupe exces;
    std::int32_t conserve = 0;
    S["NICHE_FISCALE"] = 0;
    for (std::size_t g = 0; g < nGroupes; ++g) {
        const Groupe& groupe = groupes[g];
        const std::int32_t part = groupe.plafondPourcent ? nAuTaux(RevenuDuPlafond(), loi[groupe.plafondPourcent]) : 0;
        const std::int32_t plafond = loi[groupe.plafondFixe] + part;
        S[groupe.plafond] = plafond;
        S[groupe.affiche] = S[groupe.avantage] = avantages[g];
        const std::int32_t somme = conserve + avantages[g];
        exces[g] = nPositif(somme - plafond);
        conserve = std::min(somme, plafond);
        S["NICHE_FISCALE"] += exces[g];
    }
    return exces;
}

void Niches::Trace(std::u16string_view nom, std::int32_t valeur) const {
    trace.Valeur(nom, valeur);
    trace.Valeur(u"s(NICHE_A2009)", S["NICHE_A2009"]);
    trace.Valeur(u"s(NICHE_A2010)", S["NICHE_A2010"]);
    trace.Valeur(u"s(NICHE_A2011)", S["NICHE_A2011"]);
    trace.Valeur(u"s(NICHE_A2012)", S["NICHE_A2012"]);
    trace.Valeur(u"s(NICHE_A2013S)", S["NICHE_A2013S"]);
    trace.Valeur(u"s(NICHE_A2013)", S["NICHE_A2013"]);
}

void Niches::TraceResultat(const ParGroupe& exces) const {
    for (const Nommee& tracee : tracees) trace.Valeur(tracee.nom, S[tracee.sortie]);
    for (std::size_t g = 0; g < nGroupes; ++g) trace.Valeur(groupes[g].nomExces, exces[g]);
    trace.Valeur(u"s(NICHE_FISCALE)", S["NICHE_FISCALE"]);
}

}  // namespace

void NichesFiscales(Contexte& c) { Niches(c).NichesFiscales(); }

}  // namespace kv
