#include "Calcul/pCalculN/ReductionsTable.h"

#include <algorithm>

#include "Calcul/pCalculN/Etapes.h"
#include "Calcul/pCalculN/ImpotAReduire.h"
#include "Calcul/pCalculN/OutreMer.h"

// Tax after reductions: the reduction lines in their order, on the tax that is left to be reduced.

namespace kv {

using namespace reductions;

namespace {

class Reductions : Travail {
  public:
    explicit Reductions(Contexte& c) : Travail(c) {}
    void ImpotApresReductions();

  private:
    void OuvrePlafondsCommuns();
    void EmploiADomicile();
    std::int32_t PlafondEmploiADomicile() const;
    void PrestationCompensatoireAVerser();
    void ImputeSecondsGroupes();
    /// A group none of whose boxes is filled in writes nothing.
    template <class Groupe>
    bool Concerne(Groupe) const {
        return Groupe::toujours || contexte.Remplies(boitesLues<Groupe::boites>);
    }
    template <class Groupe>
    void ImputeGroupe(Groupe groupe) {
        if (!Concerne(groupe)) return;
        for (const auto& ligne : groupe) Impute(ligne);
    }
    // The boxes of next year's return that several lines add into start again with each imputation.
    template <class Groupe>
    void RecommenceReports(Groupe groupe) {
        if constexpr (Groupe::reports != CasesSortie{})
            if (Concerne(groupe)) lignes.RemetValeurs(Groupe::reports);
    }
    void ReportsDuCapital();
    void SouscriptionsReportees();
    void ReportsForestiers();

    // ---- One line of each kind.
    std::int32_t PlafondDe(const Plafond& plafond) const;
    void Impute(const LigneTaux& ligne);
    void Impute(const LigneDon& don);
    void Impute(const LigneEnfants& ligne);
    void Impute(const LigneFraction& ligne);
    void Impute(const LigneEtalee& ligne);
    void Impute(const LigneResidence& ligne);
    void Impute(const outremer::LigneSimple& ligne);
    void Impute(const outremer::LigneReportee& ligne);
    void CopieFractions(const FractionsSuivantes& suivantes);

    std::int32_t& ResteDe(Commun commun) { return m_communs[static_cast<std::size_t>(commun)]; }
    std::int32_t ResteDe(Commun commun) const { return m_communs[static_cast<std::size_t>(commun)]; }

    Imputation m_imputation{lignes, faits.sansAvantages, contexte.commun.observateur};
    std::array<std::int32_t, static_cast<std::size_t>(Commun::Nombre)> m_communs{};  // what is left of shared ceilings
    std::int32_t m_enveloppe = 0;  // what the last line of a rental scheme left of its ceiling
};

void Reductions::ImpotApresReductions() {
    if (!faits.sansAvantages && faits.passe == Passe::Normale) Lance(Etape::RevenuFiscalRef);
    m_imputation.FixeReste(ImpotAReduire(contexte));
    m_imputation.FixeTotaux({});

    const auto impute = [&](auto groupe) { ImputeGroupe(groupe); };
    OuvrePlafondsCommuns();
    EmploiADomicile();
    PremiersGroupes(impute);
    PrestationCompensatoireAVerser();

    const Imputation::Totaux totauxAvant = m_imputation.LisTotaux();
    const std::int32_t resteAvant = m_imputation.Reste();
    const auto communsAvant = m_communs;
    ImputeSecondsGroupes();
    const Imputation::Totaux totauxApres = m_imputation.LisTotaux();
    const std::int32_t resteApres = m_imputation.Reste();
    m_communs = communsAvant;
    DerniersGroupes([&](auto groupe) {
        RecommenceReports(groupe);
        ImputeGroupe(groupe);
    });

    if (contexte.Remplies(boitesLues<boitesOutreMer>) && PartageOutreMer(contexte, m_imputation)) {
        // Shares given back leave tax for the lines imputed before them: these are imputed once more.
        m_imputation.FixeReste(m_imputation.Reste() + resteAvant - resteApres + S["U_DT_HPM"] + S["U_DT_HRJ"]);
        Imputation::Totaux totaux = m_imputation.LisTotaux();
        for (std::size_t g = 0; g < totaux.size(); ++g) totaux[g] -= totauxApres[g] - totauxAvant[g];
        m_imputation.FixeTotaux(totaux);
        ImputeSecondsGroupes();
        for (const auto& ligne : outremer::lignesReportees)
            if (ligne.niche == HorsPlafond) Impute(ligne);
    }
    Lance(Etape::HautsSalaires);

    S["REDUCTIONS"] = lignes.Somme(sortiesReductions) - lignes.Somme(sortiesRetrocessions);
    S["SEPAR_REDUC"] = 1;
}

// The shared ceilings, but for those of the donations and of the subscriptions to capital, which open later.
void Reductions::OuvrePlafondsCommuns() {
    const std::int32_t revenu = S["TOT_R_NET"] + S["RQ_GAINS"], parEnfant = loi["reductions.7GZ.parEnfant"];
    ResteDe(Commun::TravauxForestiers) = ParFoyer(loi["reductions.7UL.plafond"]);
    ResteDe(Commun::AidePersonnesEnDifficulte) = EnVigueur("reductions.7UD.plafond");
    ResteDe(Commun::Presse) = ParFoyer(loi["reductions.7MY.plafond"]);
    ResteDe(Commun::Sofica) =
        nPositif(std::min(loi["reductions.7EN.plafond"], nAuTaux(revenu, loi["reductions.7EN.plafondRevenu"])));
    ResteDe(Commun::RenteSurvie) =
        loi["reductions.7GZ.plafond"] + parEnfant * S["F_NB_ENFANTS"] + nDiv(parEnfant, 2) * S["F_NB_ENFANTS_ALTERNE"];
    ResteDe(Commun::ImmeublesRestaures) = loi["reductions.7SY.plafond"];
    ResteDe(Commun::ImmeublesRestauresQuatreAns) = loi["reductions.7TX.plafond"];
}

// Compensatory payment: what is still to be paid next year.
void Reductions::PrestationCompensatoireAVerser() {
    const std::int32_t capital = E["7WO"], verse = E["7WN"], plafond = loi["reductions.7WN.plafond"];
    const std::int32_t aVerser = E["7WM"] > 0 ? E["7WM"] - verse : capital - verse;
    S["NP1_PREST_COMP"] = capital < plafond ? nPositif(aVerser) : nArrondi(dMul(dDiv(aVerser, capital), plafond));
}

std::int32_t Reductions::PlafondEmploiADomicile() const {
    if (E["7DG"] >= 1) return loi["credits.7DB.plafondInvalide"];
    const auto estAge = [&](CaseEntree naissance) {
        return E[naissance] > 0 && anneeDesRevenus - AnneeOfDate(E[naissance]) >= loi["credits.7DB.age"];
    };
    const std::int32_t ages = estAge("AAF1") + (faits.couple && estAge("AAF2")),
                       parPersonne = loi["credits.7DB.majoration"];
    const std::int32_t majorations = nArrondi(dMul(parPersonne, S["F_NB_ENFANTS"])) +
                                     nArrondi(dMul(nArrondi(dDiv(parPersonne, 2)), S["F_NB_ENFANTS_ALTERNE"])) +
                                     nArrondi(dMul(parPersonne, ages)) +
                                     nArrondi(dMul(parPersonne, nPositif(E["7DL"])));
    return loi[E["7DQ"] >= 1 ? Parametre("credits.7DB.plafondPremiereAnnee") : "credits.7DB.plafond"] +
           std::min(loi["credits.7DB.majorationMaximum"], majorations);
}

// Home employment (CGI art. 199 sexdecies): a credit, counted in the cap but not imputed here.
void Reductions::EmploiADomicile() {
    const std::int32_t depenses = E[emploiADomicile];
    if (faits.sansAvantages || depenses <= 0) return;
    const std::int32_t retenu = std::min(depenses, PlafondEmploiADomicile()), taux = loi["credits.7DB.taux"];
    BaseRetenue("D_ENFANTS_CESU", depenses, retenu, nDiv(taux, 100));
    Detail["D_ENFANTS_CESU"] = Texte::TauxDeBase(taux, retenu);
    m_imputation.Note(N2013, "D_ENFANTS_CESU", nAuTaux(retenu, taux));
}

void Reductions::ImputeSecondsGroupes() {
    SecondsGroupes([&](auto groupe) { RecommenceReports(groupe); });
    // Donations share a part of the taxable income.
    ResteDe(Commun::Dons) = nAuTaux(nPositif(S["TOT_R_BRUT"] - S["C_REDUC"] + S["QUOTIENT"] - S["QUOTIENT_A_DED"]),
                                    loi["reductions.7UF.plafondRevenu"]);
    ResteDe(Commun::Capital) = ParFoyer(loi["reductions.7CL.plafond"]);
    ResteDe(Commun::CapitalPME) = ParFoyer(loi["reductions.7CF.plafond"]);
    SecondsGroupes([&](auto groupe) { ImputeGroupe(groupe); });
    if (contexte.Remplies(boitesLues<boitesCapital>)) {
        ReportsDuCapital();
        SouscriptionsReportees();
    }
    if (!faits.sansAvantages && Concerne(Groupe<travauxForestiers>{})) ReportsForestiers();
}

// ---- One line of each kind.

std::int32_t Reductions::PlafondDe(const Plafond& plafond) const {
    if (plafond.siImpot && m_imputation.Reste() < 1) return 0;
    std::int32_t montant = plafond.montant ? loi[plafond.montant] : Imputation::nSansPlafond;
    if (plafond.parFoyer) montant = ParFoyer(montant);
    if (plafond.fois) montant *= E[plafond.fois];
    if (plafond.commun != Commun::Aucun) montant = std::min(montant, nPositif(ResteDe(plafond.commun)));
    return montant;
}

void Reductions::Impute(const LigneTaux& ligne) {
    const bool imputee = m_imputation.Impute({.ligne = ligne.sortie,
                                              .niche = ligne.niche,
                                              .taux = TauxDe(loi, ligne.taux),
                                              .base = ligne.base ? ligne.base(E, S, loi) : E[ligne.entree],
                                              .plafond = PlafondDe(ligne.plafond),
                                              .report = ligne.report});
    const Commun commun = ligne.plafond.commun;
    if (!imputee || commun == Commun::Aucun) return;
    ResteDe(commun) -= C2[ligne.sortie];
    if (commun == Commun::Capital) ResteDe(Commun::CapitalPME) -= C2[ligne.sortie];
}

// What exceeds the ceiling of donations is carried for five years.
void Reductions::Impute(const LigneDon& don) {
    Impute(don.ligne);
    if (don.report) S[don.report] += nPositif(C1[don.ligne.sortie] - C2[don.ligne.sortie]);
}

void Reductions::Impute(const LigneEnfants& ligne) {
    const std::int32_t college = E[ligne.college], lycee = E[ligne.lycee], superieur = E[ligne.superieur];
    const std::int32_t montant = loi["reductions.7EA.montant"] * college + loi["reductions.7EC.montant"] * lycee +
                                 loi["reductions.7EF.montant"] * superieur;
    if (m_imputation.Impute({ligne.sortie, ligne.niche, nTaux100, nArrondi(dDiv(montant, ligne.diviseur))}))
        C1[ligne.sortie] = college + lycee + superieur;
}

void Reductions::Impute(const LigneFraction& ligne) {
    m_imputation.Impute({.ligne = ligne.sortie,
                         .niche = ligne.niche,
                         .taux = nTaux100,
                         .base = E[ligne.entree],
                         .report = ligne.report});
    CopieFractions(ligne.suivantes);
}

// The yearly amount is added to the boxes of the following years.
void Reductions::Impute(const LigneEtalee& ligne) {
    const auto resteApres = [&](CaseEntree box, std::int32_t enveloppe) {
        return enveloppe - std::min(nPositif(E[box]), enveloppe);
    };
    if (ligne.enveloppe == Enveloppe::Neuve) m_enveloppe = loi[ligne.plafond];
    if (ligne.enveloppe == Enveloppe::Ligne7IR) m_enveloppe = resteApres("7IR", loi[ligne.plafond]);
    const auto annuite = m_imputation.ImputeAnnuite({.ligne = ligne.sortie,
                                                     .niche = ligne.niche,
                                                     .taux = loi[ligne.taux],
                                                     .base = E[ligne.entree],
                                                     .plafond = m_enveloppe,
                                                     .report = ligne.report},
                                                    ligne.annees);
    if (ligne.premiere && annuite) {
        S[ligne.premiere] += *annuite;
        for (int i = 1; i < ligne.fin - anneeDesRevenus; ++i) S[ligne.premiere + i] = S[ligne.premiere];
    }
    m_enveloppe = resteApres(ligne.entree, m_enveloppe);
    CopieFractions(ligne.suivantes);
}

void Reductions::Impute(const LigneResidence& ligne) {
    const std::int32_t plafond = PlafondDe(plafondResidences), taux = loi[ligne.taux];
    m_imputation.Impute({.ligne = ligne.sortie,
                         .niche = ligne.niche,
                         .taux = taux,
                         .base = E[ligne.entree],
                         .plafond = plafond,
                         .limite = nAuTaux(nArrondi(dDiv(plafond, nAnneesResidences)), taux)});
    CopieFractions(ligne.suivantes);
}

void Reductions::Impute(const outremer::LigneSimple& ligne) {
    m_imputation.Impute({ligne.sortie, ligne.niche, nTaux100, E[ligne.entree]});
}

void Reductions::Impute(const outremer::LigneReportee& ligne) {
    m_imputation.ImputeOuMontre({.ligne = ligne.sortie,
                                 .niche = ligne.niche,
                                 .taux = nTaux100,
                                 .base = E[ligne.entree],
                                 .report = ligne.suite});
}

void Reductions::CopieFractions(const FractionsSuivantes& suivantes) {
    for (const auto& copie : suivantes.copies) {
        if (!copie.vers) break;
        S[copie.vers] = E[copie.de];
    }
}

// ---- What next year's return takes over of whole groups.

// Subscriptions: what the reductions of each year take beyond the global cap is carried, the most recent year first.
void Reductions::ReportsDuCapital() {
    const std::int32_t plafondGlobal = loi["niches.2013.plafond"];
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
}

// Subscriptions beyond their ceilings are carried too.
void Reductions::SouscriptionsReportees() {
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

// What the works declared before a line left of the ceiling; the rest of the line is carried.
void Reductions::ReportsForestiers() {
    struct Travaux {
        CaseEntree depense;
        CaseSortie report;
    };
    static constexpr Travaux travaux[] = {
        {"7TE", {}}, {"7TF", "NP1_FOREST_TRAV_7TF"}, {"7TG", "NP1_FOREST_TRAV_7TG"}, {"7TH", "NP1_FOREST_TRAV_7TH"},
        {"7UU", {}}, {"7TI", "NP1_FOREST_TRAV_7TI"},
    };
    std::int32_t reste = ParFoyer(loi["reductions.7UL.plafond"]) - E["7UL"];
    for (const Travaux& t : travaux) {
        if (t.report) S[t.report] = nPositif(E[t.depense] - nPositif(reste));
        reste -= E[t.depense];
    }
}

}  // namespace

void ImpotApresReductions(Contexte& c) { Reductions(c).ImpotApresReductions(); }

}  // namespace kv
