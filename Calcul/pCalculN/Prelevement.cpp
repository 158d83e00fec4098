#include <algorithm>
#include <numeric>

#include "Calcul/cCalcul/Catalogues.h"
#include "Calcul/pCalculN/Assiettes.h"
#include "Calcul/pCalculN/Calcul_N.h"

// Withholding rate of the household (CGI art. 204 E to 204 H), individual rates of a couple (204 M), instalment bases
// (204 G), modernisation credit on the tax of non-exceptional income.

using kv::Assiettes;

// The household's situation changed during the year: no rate is computed.
bool CCalcul_N::SituationChangee() const {
    static constexpr CaseEntree evenements[] = {"MEvt", "OEvt", "VpEvt", "CEvt", "DEvt", "VEvt"};
    static constexpr CaseEntree situations[] = {"V", "Vp", "C", "D", "B", "M"};
    const auto coche = [&](CaseEntree box) { return E[box] != 0; };
    const bool dans2017 = AnneeOfDate(E["Z1"]) == 2017 || AnneeOfDate(E["Z2"]) == 2017;
    return std::any_of(std::begin(evenements), std::end(evenements), coche) ||
           (dans2017 && std::any_of(std::begin(situations), std::end(situations), coche));
}

// The tax of the scale on the income subject to withholding, less the credits for foreign tax.
double CCalcul_N::ImpotAPrelever(const Assiettes& a) const {
    const double part = dDiv(dMul(a.Impot(), a.RevenuNetPreleve()), a.RevenuNetImposable());
    return dPositif(part - E["8VM"] - E["8WM"] - E["8UM"]);
}

void CCalcul_N::TauxPAS() {
    const kv::Etape etape(m_trace, u"36:TauxPAS");

    if (SituationChangee()) {
        S["TAUX_PAS"] = 0;
        S["NON_TAUX_PAS"] = S["NON_TAUX_PAS1"] = 1;
        return;
    }
    S["NON_TAUX_PAS"] = S["NON_TAUX_PAS1"] = S["INFO_TAUX_PAS"] = 0;
    const Assiettes a(*m_pData, m_trace);
    // In tenths of a percent, through a rounding to hundredths.
    S["TAUX_PAS"] = nArrondi(dDiv(dArrond(dMul(dDiv(ImpotAPrelever(a), a.RevenuPreleve()), 10000)), 10));
    TraceTaux(a);
    m_trace.Valeur(u"s(TAUX_PAS)", S["TAUX_PAS"]);
    if (S["TOT_PAYER"] == 0 && dDiv(S["REVENU_REF"], S["F_NB_PARTS_ALL"] / 100.0) < IDX(25000) && S["TAUX_PAS"] > 0)
        S["INFO_TAUX_PAS"] = 1;

    S["ASSIETTE_A_IR"] = a.Acompte();
    const std::int32_t base = nPositif(a.FoncierAcompte()) + nPositif(a.Rentes()) + S["S_B_BENEF"] + a.AcompteMeubles();
    S["ACOMPTE_CS"] = nPourcent(base, 6.80) + nPourcent(base, 9.90) + nPourcent(base, 0.50);
}

void CCalcul_N::TraceTaux(const Assiettes& a) const {
    if (!m_trace.m_bTrace) return;
    m_trace.Ligne(u"Taux PAS : " + FloatToStr(S["TAUX_PAS"] / 10.0) + u"% = [" + IntToStr(a.Impot()) + u" x [(" +
                  IntToStr(a.RevenuNetPreleve()) + u" / " + IntToStr(a.RevenuNetImposable()) + u") - " +
                  IntToStr(E["8VM"]) + u" - " + IntToStr(E["8WM"]) + u" - " + IntToStr(E["8UM"]) + u"]] / " +
                  IntToStr(a.RevenuPreleve()));
}

void CCalcul_N::TraceTauxIndividuel(std::u16string_view titre, double taux, const Assiettes& a,
                                    std::int32_t credit) const {
    if (!m_trace.m_bTrace) return;
    m_trace.Ligne(std::u16string(titre) + u" " + FloatToStr(taux) + u"% = [(" + IntToStr(a.Impot()) + u" x " +
                  IntToStr(a.RevenuNetPreleve()) + u" / " + IntToStr(a.RevenuNetImposable()) + u") - " +
                  IntToStr(credit) + u"] / " + IntToStr(a.RevenuPreleve()));
}

namespace {

// A return that is rewritten for one declarant until the end of the scope.
class RetourDUnDeclarant {
  public:
    RetourDUnDeclarant(CDataCalcul& data, bool premier) : m_data(data), m_sauve(std::make_unique<CDataCalcul>()) {
        m_sauve->CopieValeurs(data);
        Prepare(premier ? kv::entree::D1 : kv::entree::D2);
    }
    ~RetourDUnDeclarant() { m_data.RepriseValeurs(*m_sauve); }
    RetourDUnDeclarant(const RetourDUnDeclarant&) = delete;
    RetourDUnDeclarant& operator=(const RetourDUnDeclarant&) = delete;

  private:
    // The declarant's boxes stay, the other one's are emptied, the rest is halved; what describes the household stays.
    void Prepare(kv::entree::Personne declarant) {
        static constexpr CaseEntree foyer[] = {"Fm", "Jm", "Rm", "Hm", "Nm", "Gm",   "Im", "P", "Gp", "W", "L",
                                               "N",  "Fp", "Vp", "Z1", "Z2", "VEvt", "T",  "V", "S",  "M", "O"};
        const auto moitie = [](std::int32_t& v) {
            if (v != nNonSaisi) v = nArrondi(v / 2.0);
        };
        const auto zero = [](std::int32_t& v) { v = 0; };
        for (const CaseEntreeDef& fiche : TableEntree) {
            const CaseEntree box = CaseEntree::Numero(static_cast<int>(fiche.Index));
            if (fiche.Type == declarant || std::find(std::begin(foyer), std::end(foyer), box) != std::end(foyer))
                continue;
            if (fiche.Type == kv::entree::D1 || fiche.Type == kv::entree::D2)
                Applique(fiche, box, zero);
            else
                Applique(fiche, box, moitie);
        }
    }

    template <class Operation>
    void Applique(const CaseEntreeDef& fiche, CaseEntree box, Operation operation) {
        const auto slot = [&](auto& zone, std::int32_t n) {
            if (n >= 0) operation(zone.valeurs[static_cast<std::size_t>(n)]);
        };
        operation(m_data.Entree[box]);
        slot(m_data.TI, fiche.nTI);
        slot(m_data.TIX, fiche.nTIX);
        slot(m_data.TIY, fiche.nTIY);
        slot(m_data.TK, fiche.nTK);
        slot(m_data.TKZ, fiche.nTKZ);
        if (fiche.nQuotient >= 0)
            for (auto& [coefficient, montant] : m_data.MapsQuotients[static_cast<std::size_t>(fiche.nQuotient)])
                operation(montant);
    }

    CDataCalcul& m_data;
    std::unique_ptr<CDataCalcul> m_sauve;
};

}  // namespace

// Each declarant alone as half of the household: the one with the smaller income gets the rate that this gives, the
// other one the rest.
kv::TauxIndividuels CCalcul_N::CalculeTauxIndividuels(const TPeriode& periode) {
    QuotientDansFr(false);
    m_pData->Annule("TAUX_PAS_IND1");
    m_pData->Annule("TAUX_PAS_IND2");

    const Assiettes foyer(*m_pData, m_trace);
    const double impotDuFoyer = ImpotAPrelever(foyer);
    const std::int32_t propres[2] = {foyer.PartDuDeclarant(0), foyer.PartDuDeclarant(1)};
    const std::int32_t communs = foyer.Rentes() + foyer.Foncier() + foyer.PartDesCharges();
    const double tauxFoyer = S["TAUX_PAS"] / 1000.0;
    const std::int32_t credits[2] = {E["8VM"], E["8WM"]};

    struct Declarant {
        std::int32_t revenu = 0;
        double taux = 0;  // percent, one decimal
    };
    Declarant declarants[2];
    static constexpr std::u16string_view titres[2] = {u"============ PAS IND D1 ================",
                                                      u"============ PAS IND D2 ================"};
    static constexpr std::u16string_view formules[2] = {u"Taux PAS D1 :", u"Taux PAS D2 :"};
    for (const std::size_t d : {std::size_t{0}, std::size_t{1}}) {
        m_trace.Ligne(titres[d]);
        const RetourDUnDeclarant retour(*m_pData, d == 0);
        const kv::Change<bool> seul(m_bCouple, false);
        const kv::Change<bool> sansQuotients(m_bQuotientsDansFr, false);
        ChainePAS(periode);
        const Assiettes a(*m_pData, m_trace);
        declarants[d].revenu = S["TOT_R_IMPOS"] + S["RQ_REV_EXCEP"];
        const std::int32_t impot =
            nPositif(nProrata(a.Impot(), a.RevenuNetPreleve(), a.RevenuNetImposable()) - credits[d]);
        declarants[d].taux = dArrondn(dMul(dDiv(impot, a.RevenuPreleve()), 100), 1);
        TraceTauxIndividuel(formules[d], declarants[d].taux, a, credits[d]);
    }
    kv::TauxIndividuels taux{};
    if (declarants[0].revenu == declarants[1].revenu) return taux;
    const std::size_t petit = declarants[0].revenu < declarants[1].revenu ? 0 : 1, grand = 1 - petit;
    taux[petit] = declarants[petit].taux;
    const double reste = impotDuFoyer - dPourcent(propres[petit], taux[petit]) - nArrondi(dMul(communs, tauxFoyer));
    taux[grand] = dArrondn(dMul(dDiv(reste, propres[grand]), 100), 1);
    return taux;
}

// The run of one declarant as half of a household.
void CCalcul_N::ChainePAS(const TPeriode& periode) {
    const auto moitie = [&](CaseSortie sortie) { S[sortie] = nArrondi(S[sortie] / 2.0); };
    RemetSortiesAZero();
    const kv::Change<bool> calculPAS(m_bCalculPAS, true);
    NombreParts();
    RevenusBrut(kv::Passe::Normale);
    moitie("RD_DEFICIT");
    RevenusBrutQuotient(kv::Passe::Normale);
    RevenusTauxForf();
    RevenusNet();
    moitie("CHARGES");
    moitie("ABAT");
    RevenusImposables();
    CalculImpot();
    TauxMarginal();
    RevenusTM(periode);
    RevenusEtrangers(periode);
    ImpotApresReductions(periode, kv::Passe::Normale);
    QuotientDansFr(false);
}

// Tax of the year on the income that is not exceptional (art. 60 of the 2017 finance law).
void CCalcul_N::KV_CIMR() {
    const kv::Etape etape(m_trace, u"37:KV_CIMR");

    const Assiettes a(*m_pData, m_trace);
    const std::int32_t credit =
        nProrata(a.Impot(), a.RevenuNonExceptionnel(), a.RevenuNetImposable()) - SommeE({"8VM", "8WM", "8UM"});
    S["D_CREDIT_CIMR_IR"] = nPositif(credit);
}
