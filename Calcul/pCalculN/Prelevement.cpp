#include "Calcul/pCalculN/Prelevement.h"

#include <algorithm>

#include "Calcul/cCalcul/Transferts.h"
#include "Calcul/pCalculN/Assiettes.h"
#include "Calcul/pCalculN/Contexte.h"
#include "Calcul/pCalculN/Etapes.h"
#include "support/Tarvel.h"

// Withholding rate of the household (CGI art. 204 E to 204 H), individual rates of a couple (204 M), instalment bases
// (204 G), modernisation credit on the tax of non-exceptional income.

namespace kv {

namespace {

class Prelevement : Travail {
  public:
    explicit Prelevement(Contexte& c) : Travail(c) {}
    void TauxPAS();
    void SignaleTauxSansImpot();
    void KV_CIMR();
    TauxIndividuels CalculeTauxIndividuels();

  private:
    struct Declarant {
        std::int32_t revenu = 0;
        double taux = 0;  // percent, one decimal
    };

    bool SituationChangee() const;
    double ImpotAPrelever(const Assiettes& a) const;
    Declarant DeclarantSeul(std::size_t declarant);
    void ChaineDUnDeclarant(Contexte& seul);
    void TraceTaux(const Assiettes& a) const;
    void TraceTauxIndividuel(std::size_t declarant, double taux, const Assiettes& a, std::int32_t credit) const;
};

// The household's situation changed during the year: no rate is computed.
bool Prelevement::SituationChangee() const {
    static constexpr CaseEntree evenements[] = {"MEvt", "OEvt", "VpEvt", "CEvt", "DEvt", "VEvt"};
    static constexpr CaseEntree situations[] = {"V", "Vp", "C", "D", "B", "M"};
    const auto coche = [&](CaseEntree box) { return E[box] != 0; };
    const bool dansLAnnee = AnneeOfDate(E["Z1"]) == anneeDesRevenus || AnneeOfDate(E["Z2"]) == anneeDesRevenus;
    return std::any_of(std::begin(evenements), std::end(evenements), coche) ||
           (dansLAnnee && std::any_of(std::begin(situations), std::end(situations), coche));
}

// The tax of the scale on the income subject to withholding, less the credits for foreign tax.
double Prelevement::ImpotAPrelever(const Assiettes& a) const {
    const double part = dDiv(dMul(a.Impot(), a.RevenuNetPreleve()), a.RevenuNetImposable());
    return dPositif(part - E["8VM"] - E["8WM"] - E["8UM"]);
}

void Prelevement::TauxPAS() {
    if (SituationChangee()) {
        S["TAUX_PAS"] = 0;
        S["NON_TAUX_PAS"] = S["NON_TAUX_PAS1"] = 1;
        return;
    }
    S["NON_TAUX_PAS"] = S["NON_TAUX_PAS1"] = 0;
    const Assiettes a(contexte);
    // In tenths of a percent, through a rounding to hundredths.
    S["TAUX_PAS"] = nArrondi(dDiv(dArrond(dMul(dDiv(ImpotAPrelever(a), a.RevenuPreleve()), 10000)), 10));
    TraceTaux(a);
    trace.Valeur(u"s(TAUX_PAS)", S["TAUX_PAS"]);
    SignaleTauxSansImpot();

    S["ASSIETTE_A_IR"] = a.Acompte();
    const std::int32_t base = nPositif(a.FoncierAcompte()) + nPositif(a.Rentes()) + S["S_B_BENEF"] + a.AcompteMeubles();
    S["ACOMPTE_CS"] = nAuTaux(base, loi["prelevementsSociaux.prelevements"]) +
                      nAuTaux(base, loi["prelevementsSociaux.csg"]) + nAuTaux(base, loi["prelevementsSociaux.crds"]);
}

void Prelevement::SignaleTauxSansImpot() {
    const double revenuParPart = dDiv(S["REVENU_REF"], dDiv(S["F_NB_PARTS_ALL"], 100.0));
    const bool modeste = revenuParPart < loi["prelevementSource.revenuModeste"];
    S["INFO_TAUX_PAS"] = S["TOT_PAYER"] == 0 && S["TAUX_PAS"] > 0 && modeste ? 1 : 0;
}

void Prelevement::TraceTaux(const Assiettes& a) const {
    if (!trace.m_bTrace) return;
    trace.Ligne(u"Taux PAS : " + FloatToStr(dDiv(S["TAUX_PAS"], 10.0)) + u"% = [" + IntToStr(a.Impot()) + u" x [(" +
                IntToStr(a.RevenuNetPreleve()) + u" / " + IntToStr(a.RevenuNetImposable()) + u") - " +
                IntToStr(E["8VM"]) + u" - " + IntToStr(E["8WM"]) + u" - " + IntToStr(E["8UM"]) + u"]] / " +
                IntToStr(a.RevenuPreleve()));
}

void Prelevement::TraceTauxIndividuel(std::size_t declarant, double taux, const Assiettes& a,
                                      std::int32_t credit) const {
    if (!trace.m_bTrace) return;
    static constexpr std::u16string_view formules[2] = {u"Taux PAS D1 :", u"Taux PAS D2 :"};
    trace.Ligne(std::u16string(formules[declarant]) + u" " + FloatToStr(taux) + u"% = [(" + IntToStr(a.Impot()) +
                u" x " + IntToStr(a.RevenuNetPreleve()) + u" / " + IntToStr(a.RevenuNetImposable()) + u") - " +
                IntToStr(credit) + u"] / " + IntToStr(a.RevenuPreleve()));
}

// Each declarant alone as half of the household: the one with the smaller income gets the rate that this gives, the
// other one the rest.
TauxIndividuels Prelevement::CalculeTauxIndividuels() {
    contexte.RetireExceptionnels();
    lignes.Annule("TAUX_PAS_IND1");
    lignes.Annule("TAUX_PAS_IND2");

    const Assiettes foyer(contexte);
    const double impotDuFoyer = ImpotAPrelever(foyer);
    const std::int32_t propres[2] = {foyer.PartDuDeclarant(0), foyer.PartDuDeclarant(1)};
    const std::int32_t communs = foyer.Rentes() + foyer.Foncier() + foyer.PartDesCharges();
    const double tauxFoyer = dDiv(S["TAUX_PAS"], 1000.0);

    const Declarant declarants[2] = {DeclarantSeul(0), DeclarantSeul(1)};
    TauxIndividuels taux{};
    if (declarants[0].revenu == declarants[1].revenu) return taux;
    const std::size_t petit = declarants[0].revenu < declarants[1].revenu ? 0 : 1, grand = 1 - petit;
    taux[petit] = declarants[petit].taux;
    const double reste = impotDuFoyer - dPourcent(propres[petit], taux[petit]) - nArrondi(dMul(communs, tauxFoyer));
    taux[grand] = dArrondn(dMul(dDiv(reste, propres[grand]), 100), 1);
    return taux;
}

Prelevement::Declarant Prelevement::DeclarantSeul(std::size_t declarant) {
    static constexpr std::u16string_view titres[2] = {u"============ PAS IND D1 ================",
                                                      u"============ PAS IND D2 ================"};
    trace.Ligne(titres[declarant]);
    Saisie saisie = contexte.declaree;
    CasesEntree remplies = contexte.remplies;
    Exceptionnels exceptionnels(contexte.exceptionnels, contexte.commun.place);
    RetourDUnDeclarant(declarant == 0 ? entree::D1 : entree::D2, saisie, remplies, exceptionnels);
    Contexte seul(contexte, saisie, remplies, exceptionnels, false);
    ChaineDUnDeclarant(seul);

    const Assiettes a(seul);
    const std::int32_t credit = E[declarant == 0 ? CaseEntree("8VM") : CaseEntree("8WM")];
    const std::int32_t impot = nPositif(nProrata(a.Impot(), a.RevenuNetPreleve(), a.RevenuNetImposable()) - credit);
    Declarant d;
    d.revenu = S["TOT_R_IMPOS"] + S["RQ_REV_EXCEP"];
    d.taux = dArrondn(dMul(dDiv(impot, a.RevenuPreleve()), 100), 1);
    TraceTauxIndividuel(declarant, d.taux, a, credit);
    return d;
}

// The run of one declarant as half of a household.
void Prelevement::ChaineDUnDeclarant(Contexte& seul) {
    const auto moitie = [&](CaseSortie sortie) { S[sortie] = nArrondi(dDiv(S[sortie], 2.0)); };
    static constexpr Etape jusquAuRevenuNet[] = {Etape::RevenusBrutQuotient, Etape::RevenusTauxForf, Etape::RevenusNet};
    static constexpr Etape jusquAuxReductions[] = {Etape::RevenusImposables, Etape::CalculImpot,
                                                   Etape::TauxMarginal,      Etape::RevenusTM,
                                                   Etape::RevenusEtrangers,  Etape::ImpotApresReductions};
    seul.RemetSortiesAZero();
    seul.faits.retenueALaSource = true;
    seul.Lance(revenusBruts);
    moitie("RD_DEFICIT");
    seul.Lance(jusquAuRevenuNet);
    moitie("CHARGES");
    moitie("ABAT");
    seul.Lance(jusquAuxReductions);
    seul.RetireExceptionnels();
    seul.faits.retenueALaSource = false;
}

// Tax of the year on the income that is not exceptional (art. 60 of the 2017 finance law).
void Prelevement::KV_CIMR() {
    const Assiettes a(contexte);
    const std::int32_t credit =
        nProrata(a.Impot(), a.RevenuNonExceptionnel(), a.RevenuNetImposable()) - SommeE({"8VM", "8WM", "8UM"});
    S["D_CREDIT_CIMR_IR"] = nPositif(credit);
}

}  // namespace

void TauxPAS(Contexte& c) { Prelevement(c).TauxPAS(); }
void KV_CIMR(Contexte& c) { Prelevement(c).KV_CIMR(); }
void SignaleTauxSansImpot(Contexte& c) { Prelevement(c).SignaleTauxSansImpot(); }
TauxIndividuels CalculeTauxIndividuels(Contexte& c) { return Prelevement(c).CalculeTauxIndividuels(); }

}  // namespace kv
