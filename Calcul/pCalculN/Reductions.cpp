#include "Calcul/pCalculN/ReductionsTable.h"

#include <algorithm>
#include <span>
#include <string_view>

#include "Calcul/pCalculN/Calcul_N.h"

// Tax after reductions: the abatement of overseas residents (CGI art. 197 I-3), the low-tax relief (197 I-4 a),
// the reduction for modest incomes (197 I-4 b), then the reduction lines in their order.

namespace {

using kv::reductions::Commun;
using kv::reductions::LigneEtalee;
using kv::reductions::LigneFraction;
using kv::reductions::LigneTaux;

// Every reduction that the tax is reduced by, and every share of them that is given back.
constexpr bool EstReduction(std::string_view nom) {
    constexpr std::string_view familles[] = {"U_REDUC_",   "U_DONS_", "U_CAPITAL_", "U_FOREST_",
                                             "U_INV_ZRR_", "U_DT_",   "U_PRESERV_"};
    constexpr std::string_view autres[] = {"U_CLASSES_MOYENNES", "U_HEBERGEMENT_V", "U_HEBERGEMENT_C",
                                           "U_RENTE_SURVIE",     "U_FRAIS_COMPTA",  "U_ENFANTS_ACHARGE",
                                           "U_ENFANTS_ALTERNE",  "U_ETR_REV_TK"};
    return std::any_of(std::begin(familles), std::end(familles),
                       [&](std::string_view f) { return nom.starts_with(f); }) ||
           std::find(std::begin(autres), std::end(autres), nom) != std::end(autres);
}
constexpr bool EstRetrocession(std::string_view nom) {
    return nom.starts_with("U_PR_") && !nom.ends_with("_R") && !nom.ends_with("_NR");
}
constexpr auto signesDesReductions = [] {
    std::array<signed char, kv::nSorties> signes{};
    for (std::size_t j = 0; j < kv::nSorties; ++j)
        signes[j] = EstReduction(kv::sortie::noms[j]) ? 1 : EstRetrocession(kv::sortie::noms[j]) ? -1 : 0;
    return signes;
}();

}  // namespace

void CCalcul_N::ImpotApresReductions(const TPeriode& periode, kv::Passe passe) {
    const kv::Etape etape(m_trace, u"19:ImpotApresReductions");

    if (!m_imputation.SansAvantages() && passe == kv::Passe::Normale) RevenuFiscalRef(periode);
    AbattementOutreMer();
    m_imputation.FixeTotaux({});
    DecoteEtClassesMoyennes();

    PremieresReductions();
    ReductionsOutreMerSimples();
    const kv::Imputation::Totaux totauxAvant = m_imputation.LisTotaux();
    const std::int32_t resteAvant = m_imputation.Reste();
    const std::int32_t forestierAvant = PlafondCommun(Commun::TravauxForestiers);
    SecondesReductions();
    const kv::Imputation::Totaux totauxApres = m_imputation.LisTotaux();
    const std::int32_t resteApres = m_imputation.Reste();
    PlafondCommun(Commun::TravauxForestiers) = forestierAvant;
    ImmeublesRestaures();

    if (ReductionsOutreMer()) {
        // Shares given back leave tax for the lines imputed before them: these are imputed once more.
        m_imputation.FixeReste(m_imputation.Reste() + resteAvant - resteApres + S["U_DT_HPM"] + S["U_DT_HRJ"]);
        kv::Imputation::Totaux totaux = m_imputation.LisTotaux();
        for (std::size_t g = 0; g < totaux.size(); ++g) totaux[g] -= totauxApres[g] - totauxAvant[g];
        m_imputation.FixeTotaux(totaux);
        SecondesReductions();
        m_imputation.Entiere(kv::Niche::HorsPlafond, "U_DT_HPM", {}, E["HPM"]);
        m_imputation.Entiere(kv::Niche::HorsPlafond, "U_DT_HRJ", {}, E["HRJ"]);
    }
    HautsSalaires();

    S["REDUCTIONS"] = 0;
    for (std::size_t j = 0; j < kv::nSorties; ++j) S["REDUCTIONS"] += signesDesReductions[j] * S.valeurs[j];
    S["SEPAR_REDUC"] = 1;
}

// Overseas residents: an abatement on the gross tax, and on the tax at the marginal rate within the same room.
void CCalcul_N::AbattementOutreMer() {
    const bool resident = E["REM"] == 0 && E["RED"] == 0;
    const std::int32_t impot = !resident && S["IMPOT_TM_RETENU"] != 0 ? S["IMPOT_TM"]
                               : S["IMPOT_TX_EFFECTIF"] > 0           ? S["IMPOT_TX_EFFECTIF"]
                                                                      : S["TOT_IMPOT"];
    struct Departement {
        CaseSortie abattement, abattementTauxMarginal;
        std::int32_t taux, plafond;
    };
    static constexpr Departement antillesReunion = {"U_DECOTE_DOM_GMR", "IMPOT_DU_DOM_GMR", 30, 5100};
    static constexpr Departement guyaneMayotte = {"U_DECOTE_DOM_GUY", "IMPOT_DU_DOM_GUY", 40, 6700};
    const Departement* dom = !resident                        ? nullptr
                             : E["GMR"] != 0                  ? &antillesReunion
                             : E["GUY"] != 0 || E["MAY"] != 0 ? &guyaneMayotte
                                                              : nullptr;
    S["TOT_IMPOT_DOM"] = impot;
    if (dom) {
        S[dom->abattement] = std::min(nPourcent(impot, dom->taux), dom->plafond);
        S["TOT_IMPOT_DOM"] -= S[dom->abattement];
    }
    if (S["TM_BA"] > 0) {
        S["IMPOT_DU_REVENUS"] = nPourcent(S["TM_BA"], S["TAUX_MARGINAL_3"] / 100.0);
        S["IMPOT_DU_TAUX_MARG"] = S["IMPOT_DU_REVENUS"];
        if (dom) {
            S[dom->abattementTauxMarginal] =
                std::min(nPourcent(S["IMPOT_DU_REVENUS"], dom->taux), dom->plafond - S[dom->abattement]);
            S["IMPOT_DU_TAUX_MARG"] -= S[dom->abattementTauxMarginal];
        }
        S["IMPOT_TAUX_MARG"] = S["IMPOT_DU_TAUX_MARG"];
    }
    S["TOT_IMPOT_DOM_AFF"] = S["TOT_IMPOT_DOM"];
}

void CCalcul_N::DecoteEtClassesMoyennes() {
    const bool resident = E["REM"] == 0 && E["RED"] == 0;
    const std::int32_t impot = S["TOT_IMPOT_DOM"] + S["IMPOT_TAUX_MARG"];
    const std::int32_t plafond = IDX(m_bCouple ? 1939 : 1177);
    const double troisQuarts = dMul(impot, dDiv(3, 4));
    S["U_DECOTE"] =
        impot > 0 && plafond > troisQuarts && resident ? std::min(impot, nArrondi(plafond - troisQuarts)) : 0;
    const std::int32_t apresDecote = impot - S["U_DECOTE"];

    std::int32_t& reduction = S["U_CLASSES_MOYENNES"];
    reduction = 0;
    if (resident) {
        const std::int32_t foyers = m_bCouple ? 2 : 1;
        const std::int32_t parDemiPart =
            nArrondi(dMul(dDiv(S["F_NB_PARTS_ALL"] - S["F_NB_PARTS_ISO"], 100), IDX(7474)));
        const std::int32_t limite = IDX(20705) * foyers + parDemiPart;
        const std::int32_t limitePleine = IDX(18685) * foyers + parDemiPart;
        const std::int32_t revenu = S["REV_REF_D"];
        if (revenu < limitePleine)
            reduction = nPourcent(apresDecote, 20);
        else if (revenu < limite)
            reduction = nArrondi(dDiv(nArrondi(dMul(nPourcent(apresDecote, 20), limite - revenu)), IDX(2020) * foyers));
    }
    m_imputation.FixeReste(nPositif(std::min(S["TOT_IMPOT_DOM"], apresDecote - reduction)));
}

// One line at a rate, within its ceiling; what it retains comes off a shared ceiling.
void CCalcul_N::ReductionAuTaux(const LigneTaux& ligne) {
    const std::int32_t base = ligne.base ? ligne.base(E) : E[ligne.entree];
    std::int32_t plafond = ligne.plafond.montant;
    if (ligne.plafond.parFoyer && m_bCouple) plafond *= 2;
    const Commun commun = ligne.plafond.commun;
    if (commun != Commun::Aucun) plafond = std::min(plafond, nPositif(PlafondCommun(commun)));
    if (m_imputation.Taux(ligne.niche, ligne.sortie, ligne.taux, base, plafond) && commun != Commun::Aucun)
        PlafondCommun(commun) -= C2[ligne.sortie];
}

void CCalcul_N::PremieresReductions() {
    const std::int32_t foyers = m_bCouple ? 2 : 1;
    PlafondCommun(Commun::TravauxForestiers) = 6250 * foyers;
    PlafondCommun(Commun::AidePersonnesEnDifficulte) = NouveauxTaux() ? 536 : 531;
    PlafondCommun(Commun::Presse) = 5000 * foyers;
    PlafondCommun(Commun::Sofica) = nPositif(std::min(18000, nPourcent(S["TOT_R_NET"] + S["RQ_GAINS"], 25)));
    PlafondCommun(Commun::RenteSurvie) = 1525 + 300 * S["F_NB_ENFANTS"] + 150 * S["F_NB_ENFANTS_ALTERNE"];

    EmploiADomicile();
    for (const LigneTaux& ligne : kv::reductions::premieresLignes) ReductionAuTaux(ligne);

    // Compensatory payment: what is still to be paid next year.
    const std::int32_t capital = E["7WO"], verse = E["7WN"];
    const std::int32_t aVerser = E["7WM"] > 0 ? E["7WM"] - verse : capital - verse;
    S["NP1_PREST_COMP"] = capital < kv::reductions::nPlafondPrestation
                              ? nPositif(aVerser)
                              : nArrondi(dMul(dDiv(aVerser, capital), kv::reductions::nPlafondPrestation));
}

// Home employment (CGI art. 199 sexdecies): a credit, counted in the cap but not imputed here.
void CCalcul_N::EmploiADomicile() {
    const std::int32_t depenses = E["7DB"];
    if (m_imputation.SansAvantages() || depenses <= 0) return;
    std::int32_t plafond = 20000;
    if (E["7DG"] < 1) {
        const auto plusDe65Ans = [&](CaseEntree naissance) {
            return E[naissance] > 0 && 2017 - AnneeOfDate(E[naissance]) >= 65;
        };
        const std::int32_t ages = plusDe65Ans("AAF1") + (m_bCouple && plusDe65Ans("AAF2"));
        const std::int32_t majoration =
            std::min(3000, nArrondi(dMul(1500, S["F_NB_ENFANTS"])) +
                               nArrondi(dMul(nArrondi(dDiv(1500, 2)), S["F_NB_ENFANTS_ALTERNE"])) +
                               nArrondi(dMul(1500, ages)) + nArrondi(dMul(1500, nPositif(E["7DL"]))));
        plafond = (E["7DQ"] >= 1 ? 15000 : 12000) + majoration;
    }
    const std::int32_t retenu = std::min(depenses, plafond);
    C1["D_ENFANTS_CESU"] = depenses;
    m_pData->BaseEtTaux("D_ENFANTS_CESU", retenu, 50);
    Detail["D_ENFANTS_CESU"] = u"50% x " + IntToStr(retenu);
    m_imputation.Note(kv::Niche::N2013, "D_ENFANTS_CESU", nPourcent(retenu, 50));
}

void CCalcul_N::SecondesReductions() {
    namespace r = kv::reductions;
    RecommenceReports();

    // Accounting expenses; children in education (CGI art. 199 quater F).
    m_imputation.Taux(kv::Niche::HorsPlafond, "U_FRAIS_COMPTA", 100, E["7FF"], 915 * E["7FG"]);
    const auto enfants = [&](CaseSortie ligne, std::int32_t nombre, std::int32_t montant) {
        if (m_imputation.Taux(kv::Niche::HorsPlafond, ligne, 100, montant)) C1[ligne] = nombre;
    };
    enfants("U_ENFANTS_ACHARGE", SommeE({"7EA", "7EC", "7EF"}), 61 * E["7EA"] + 153 * E["7EC"] + 183 * E["7EF"]);
    enfants("U_ENFANTS_ALTERNE", SommeE({"7EB", "7ED", "7EG"}),
            nArrondi(dDiv(61 * E["7EB"] + 153 * E["7ED"] + 183 * E["7EG"], 2)));

    Dons();
    m_imputation.Taux(kv::Niche::HorsPlafond, "U_ETR_REV_TK", 100,
                      nProrata(S["IMPOT_ETR_TK"], S["IMPOT_ETR_REV_TK"], S["IMPOT_ETR_RMI"]));
    Fractions(r::fractionsDeLAnnee);
    Etalees(r::investissementsDeLAnnee);
    Souscriptions();
    Forets();
    for (const LigneTaux& ligne : r::residencesDeTourisme) ResidenceDeTourisme(ligne);
    S["NP1_7UY"] = E["7UYA"];
    S["NP1_7UZ"] = E["7UZA"];
    m_imputation.Taux(kv::Niche::N2013, "U_REDUC_7XX", 20, E["7XX"], 22000);
    Fractions(r::meubleReporte);

    const std::int32_t resteDe2010 = Etalees(r::locatifAncien);  // what the last line left of its ceiling
    Fractions(r::locatifFractions);
    Etalees(r::locatifRecent);
    Fractions(r::meubleAncien);
    Etalees(r::meuble2010, resteDe2010);
    Fractions(r::meubleFractions);
    Etalees(r::meubleRecent);

    for (const r::LignePatrimoine& p : r::patrimoine) {
        ReductionAuTaux(p.ligne);
        if (p.report) S[p.report] = nPositif(C2[p.ligne.sortie] - S[p.ligne.sortie]);
    }
}

// The boxes of next year's return that several lines add into start again with each imputation.
void CCalcul_N::RecommenceReports() {
    namespace r = kv::reductions;
    const auto fractions = [&](std::span<const LigneFraction> lignes) {
        for (const LigneFraction& ligne : lignes)
            if (ligne.report) S[ligne.report] = 0;
    };
    const auto etalees = [&](std::span<const LigneEtalee> lignes) {
        for (const LigneEtalee& ligne : lignes) {
            if (ligne.report) S[ligne.report] = 0;
            if (ligne.premiere)
                for (int i = 0; i < ligne.fin - 2017; ++i) S[ligne.premiere + i] = 0;
        }
    };
    fractions(r::meubleReporte);
    fractions(r::locatifFractions);
    fractions(r::meubleAncien);
    fractions(r::meubleFractions);
    etalees(r::investissementsDeLAnnee);
    etalees(r::locatifAncien);
    etalees(r::locatifRecent);
    etalees(r::meuble2010);
    etalees(r::meubleRecent);
}

void CCalcul_N::Fractions(std::span<const LigneFraction> lignes) {
    for (const LigneFraction& ligne : lignes) {
        m_imputation.Fraction(ligne.niche, ligne.sortie, ligne.report, E[ligne.entree]);
        CopieFractions(ligne.suivantes);
    }
}

std::int32_t CCalcul_N::Etalees(std::span<const LigneEtalee> lignes, std::int32_t enveloppe) {
    for (const LigneEtalee& ligne : lignes) {
        if (ligne.enveloppeNeuve) enveloppe = kv::reductions::nEnveloppeLocative;
        m_imputation.Etalee(ligne.niche, ligne.sortie, ligne.taux, E[ligne.entree], enveloppe, ligne.annees,
                            ligne.premiere, ligne.fin - 2017, ligne.report);
        enveloppe -= std::min(nPositif(E[ligne.entree]), enveloppe);
        CopieFractions(ligne.suivantes);
    }
    return enveloppe;
}

void CCalcul_N::CopieFractions(const kv::reductions::FractionsSuivantes& suivantes) {
    for (const auto& copie : suivantes.copies)
        if (copie.vers) S[copie.vers] = E[copie.de];
}

// Donations share a ceiling of 20 % of the taxable income; what exceeds it is carried for five years.
void CCalcul_N::Dons() {
    PlafondCommun(Commun::Dons) =
        nPourcent(nPositif(S["TOT_R_BRUT"] - S["C_REDUC"] + S["QUOTIENT"] - S["QUOTIENT_A_DED"]), 20);
    S["NP1_DONS_N"] = 0;
    for (const kv::reductions::LigneDon& don : kv::reductions::lignesDons) {
        const CaseSortie sortie = don.ligne.sortie;
        ReductionAuTaux(don.ligne);
        const std::int32_t excedent = nPositif(C1[sortie] - C2[sortie]);
        if (don.report == "NP1_DONS_N")
            S["NP1_DONS_N"] += excedent;
        else if (don.report)
            S[don.report] = excedent;
    }
}

// Subscriptions to the capital of small companies: ceilings on the subscriptions, and what the global cap of earlier
// years left out.
void CCalcul_N::Souscriptions() {
    namespace r = kv::reductions;
    const std::int32_t foyers = m_bCouple ? 2 : 1;
    PlafondCommun(Commun::Capital) = 20000 * foyers;
    for (const LigneTaux& ligne : r::souscriptions) ReductionAuTaux(ligne);
    PlafondCommun(Commun::CapitalPME) = 50000 * foyers - (20000 * foyers - PlafondCommun(Commun::Capital));
    for (const LigneTaux& ligne : r::souscriptionsPME) ReductionAuTaux(ligne);
    for (const LigneTaux& ligne : r::reductionsExcedentaires)
        m_imputation.Taux(ligne.niche, ligne.sortie, ligne.taux, E[ligne.entree],
                          m_imputation.Reste() < 1 ? 0 : kv::Imputation::nSansPlafond);

    // What the reductions of each year take beyond the global cap is carried, the most recent year first.
    constexpr std::int32_t plafondGlobal = 10000;
    struct Annee {
        CaseSortie report;
        CaseSortie reductions[3];
    };
    static constexpr Annee annees[] = {
        {"NP1_CAPITAL_PE_NOUV_7R10", {"U_CAPITAL_PE_N", "U_CAPITAL_NOUV_N"}},
        {"NP1_CAPITAL_PE_NOUV_7FY", {"U_CAPITAL_NOUV_NM1", "U_CAPITAL_NOUV_7CX", "U_CAPITAL_NOUV_7FY"}},
        {"NP1_CAPITAL_PE_NOUV_7EY", {"U_CAPITAL_NOUV_NM2", "U_CAPITAL_NOUV_7CV", "U_CAPITAL_NOUV_7EY"}},
        {"NP1_CAPITAL_PE_NOUV_7DY", {"U_CAPITAL_NOUV_NM3", "U_CAPITAL_NOUV_7CR", "U_CAPITAL_NOUV_7DY"}},
        {"NP1_CAPITAL_PE_NOUV_7CY", {"U_CAPITAL_NOUV_NM4", "U_CAPITAL_NOUV_7CQ", "U_CAPITAL_NOUV_7CY"}},
    };
    std::int32_t cumul = 0, reportes = 0;
    for (const Annee& annee : annees) {
        std::int32_t reductions = 0;
        for (const CaseSortie reduction : annee.reductions)
            if (reduction) reductions += S[reduction];
        cumul += nPositif(reductions);
        S[annee.report] = nPositif(cumul - plafondGlobal - reportes);
        reportes += S[annee.report];
    }

    // Subscriptions beyond their ceilings are carried too.
    struct Souscription {
        CaseSortie report;
        CaseEntree versement;
        CaseSortie ligne;
        CaseSortie total;
    };
    static constexpr Souscription souscriptions[] = {
        {"NP1_CAPITAL_NOUV_7CM", "7CM", "U_CAPITAL_NOUV_NM3", "NP1_CAPITAL_NOUV_N"},
        {"NP1_CAPITAL_NOUV_7CN", "7CN", "U_CAPITAL_NOUV_NM2", "NP1_CAPITAL_NOUV_N"},
        {"NP1_CAPITAL_NOUV_7CC", "7CC", "U_CAPITAL_NOUV_NM1", "NP1_CAPITAL_NOUV_N"},
        {"NP1_CAPITAL_PE_7CR", "7CR", "U_CAPITAL_NOUV_7CR", "NP1_CAPITAL_PE_N"},
        {"NP1_CAPITAL_PE_7CV", "7CV", "U_CAPITAL_NOUV_7CV", "NP1_CAPITAL_PE_N"},
        {"NP1_CAPITAL_PE_7CX", "7CX", "U_CAPITAL_NOUV_7CX", "NP1_CAPITAL_PE_N"},
        {"NP1_CAPITAL_PE_7CF", "7CF", "U_CAPITAL_PE_N", "NP1_CAPITAL_PE_N"},
    };
    S["NP1_CAPITAL_NOUV_N"] = S["NP1_CAPITAL_PE_N"] = 0;
    for (const Souscription& s : souscriptions) {
        S[s.report] = nPositif(E[s.versement] - C2[s.ligne]);
        S[s.total] += S[s.report];
    }
}

void CCalcul_N::Forets() {
    const std::int32_t foyers = m_bCouple ? 2 : 1;
    m_imputation.Taux(kv::Niche::N2013, "U_FOREST_ACQU", 18, E["7UN"], 5700 * foyers);
    for (const LigneTaux& ligne : kv::reductions::travauxForestiers) ReductionAuTaux(ligne);
    if (m_imputation.SansAvantages()) return;

    // What the works declared before a line left of the ceiling; the rest of the line is carried.
    struct Travaux {
        CaseEntree depense;
        CaseSortie report;
    };
    static constexpr Travaux travaux[] = {
        {"7TE", {}}, {"7TF", "NP1_FOREST_TRAV_7TF"}, {"7TG", "NP1_FOREST_TRAV_7TG"}, {"7TH", "NP1_FOREST_TRAV_7TH"},
        {"7UU", {}}, {"7TI", "NP1_FOREST_TRAV_7TI"},
    };
    std::int32_t reste = 6250 * foyers - E["7UL"];
    for (const Travaux& t : travaux) {
        if (t.report) S[t.report] = nPositif(E[t.depense] - nPositif(reste));
        reste -= E[t.depense];
    }
}

void CCalcul_N::ResidenceDeTourisme(const LigneTaux& ligne) {
    const std::int32_t plafond = ligne.plafond.montant * (m_bCouple ? 2 : 1);
    const std::int32_t annuiteMaximale = nPourcent(nArrondi(dDiv(plafond, 6)), ligne.taux);
    m_imputation.TauxLimite(ligne.niche, ligne.sortie, ligne.taux, E[ligne.entree], plafond, annuiteMaximale);
}

void CCalcul_N::ImmeublesRestaures() {
    PlafondCommun(Commun::ImmeublesRestaures) = 100000;
    PlafondCommun(Commun::ImmeublesRestauresQuatreAns) = 400000;
    for (const LigneTaux& ligne : kv::reductions::immeublesRestaures) ReductionAuTaux(ligne);
    S["NP1_REPORT_7R11"] = 0;
    for (const CaseSortie ligne : {CaseSortie("U_REDUC_7TX"), CaseSortie("U_REDUC_7TY")})
        S["NP1_REPORT_7R11"] += nPositif(nPourcent(C2[ligne], C3[ligne]) - S[ligne]);
}
