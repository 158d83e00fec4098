#include "Calcul/pCalculN/Pilote.h"

#include <memory>

#include "Calcul/cCalcul/Transferts.h"
#include "Calcul/pCalculN/Calcul_N.h"
#include "Calcul/pCalculN/Etapes.h"
#include "Calcul/pCalculN/Prelevement.h"
#include "Calcul/pCalculN/Reports.h"
#include "support/Tarvel.h"

// The driver: the list of the steps, and how a launch begins and ends.

namespace {

using kv::Etape;

constexpr const char* source = "Calcul/pCalculN";

// ---- The numbered steps. Which one runs where: 28 runs 27, which runs 2, 3, 11 to 18, then 19, 22, 24 and 26; steps 4
// to 10 run inside step 3, 20 and 21 inside step 19, 25, 36 and 37 inside step 24.
struct LigneEtape {
    Etape etape;
    std::u16string_view libelle;
    void (*fait)(kv::Contexte&);
};
constexpr LigneEtape lignesEtapes[] = {
    {Etape::NombreParts, u"2:NombreParts", kv::NombreParts},
    {Etape::RevenusBrut, u"3:RevenusBrut", kv::RevenusBrut},
    {Etape::RevenusSalaires, u"4:RevenusSalaires", kv::RevenusSalaires},
    {Etape::RentesViageres, u"5:RentesViageres", kv::RentesViageres},
    {Etape::RevenusNonSalaries, u"6:RevenusNonSalaries", kv::RevenusNonSalaries},
    {Etape::RevenusExoneres, u"7:RevenusExoneres", kv::RevenusExoneres},
    {Etape::RevenusMobiliers, u"8:RevenusMobiliers", kv::RevenusMobiliers},
    {Etape::RevenusFonciers, u"9:RevenusFonciers", kv::RevenusFonciers},
    {Etape::RevenusDivers, u"10:RevenusDivers", kv::RevenusDivers},
    {Etape::RevenusBrutQuotient, u"11:RevenusBrutQuotient", kv::RevenusBrutQuotient},
    {Etape::RevenusTauxForf, u"12:RevenusTauxForf", kv::RevenusTauxForf},
    {Etape::RevenusNet, u"13:RevenusNet", kv::RevenusNet},
    {Etape::RevenusImposables, u"14:RevenusImposables", kv::RevenusImposables},
    {Etape::CalculImpot, u"15:CalculImpot", kv::CalculImpot},
    {Etape::TauxMarginal, u"16:TauxMarginal", kv::TauxMarginal},
    {Etape::RevenusTM, u"17:RevenusTM", kv::RevenusTM},
    {Etape::RevenusEtrangers, u"18:RevenusEtrangers", kv::RevenusEtrangers},
    {Etape::ImpotApresReductions, u"19:ImpotApresReductions", kv::ImpotApresReductions},
    {Etape::RevenuFiscalRef, u"20:RevenuFiscalRef", kv::RevenuFiscalRef},
    {Etape::HautsSalaires, u"21:HautsSalaires", kv::HautsSalaires},
    {Etape::ImpotApresCorrections, u"22:ImpotApresCorrections", kv::ImpotApresCorrections},
    {Etape::CreditDImpot, u"24:CreditDImpot", kv::CreditDImpot},
    {Etape::CSG_CRDS, u"25:CSG_CRDS", kv::CSG_CRDS},
    {Etape::ImpotAPaye, u"26:ImpotAPaye", kv::ImpotAPaye},
    {Etape::PlafondPERP, u"27:PlafondPERP", kv::PlafondPERP},
    {Etape::NichesFiscales, u"28:NichesFiscales", kv::NichesFiscales},
    {Etape::Reports, u"29:Reports", kv::Reports},
    {Etape::PrelevLib, u"30:PrelevLib", kv::PrelevLib},
    {Etape::TauxImposMoyen, u"31:TauxImposMoyen", kv::TauxImposMoyen},
    {Etape::ImposTxMarginal, u"32:ImposTxMarginal", kv::ImposTxMarginal},
    {Etape::ImposTrancheSup, u"33:ImposTrancheSup", kv::ImposTrancheSup},
    {Etape::RevenusNetFrais, u"34:RevenusNetFrais", kv::RevenusNetFrais},
    {Etape::Calcul_ISF, u"35:Calcul_ISF", kv::Calcul_ISF},
    {Etape::TauxPAS, u"36:TauxPAS", kv::TauxPAS},
    {Etape::KV_CIMR, u"37:KV_CIMR", kv::KV_CIMR},
};

// The row of each step, by its number. There is no step 23.
constexpr auto rangDesEtapes = [] {
    std::array<std::size_t, static_cast<std::size_t>(Etape::KV_CIMR) + 1> rangs{};
    for (std::size_t i = 0; i < std::size(lignesEtapes); ++i)
        rangs[static_cast<std::size_t>(lignesEtapes[i].etape)] = i;
    return rangs;
}();

constexpr std::u16string_view libelleCalcul = u"1:Calcul";
// What it runs itself.
constexpr Etape etapesPrincipales[] = {Etape::NichesFiscales, Etape::Reports,         Etape::PrelevLib,
                                       Etape::TauxImposMoyen, Etape::ImposTxMarginal, Etape::ImposTrancheSup};

// The totals of a household that no step finds.
class Totaux : kv::Travail {
  public:
    explicit Totaux(kv::Contexte& c) : Travail(c) {}

    void PlusValues() {
        S["TOT_IMP_RED_INTERNE"] = S["TOT_IMP_RED"];
        S["REV_PV_TXPROP_BARPRO"] = nPositif(GainsMobiliersNets());
        S["REV_PV_AVEC_EXO"] = SommeS({"RF_PLUS", "RF_INVENTEURS", "S_B_PV_RETRAITE"}) +
                               SommeE({"3VD", "3VI", "3VF", "3SJ", "3SK", "3VM", "3VT", "3VC", "3SE", "3VZ", "3VW",
                                       "3SA", "3WI", "3WJ", "3WN", "3SZ", "3PI"});
    }
    void AuForfait() {
        S["FORFAIT_PF"] = SommeS({"RF_INVENTEURS", "RF_PENSIONS", "RF_2FA", "RF_PLUS", "RF_CESS_3VT", "RF_GAINS_22_5",
                                  "RF_GAINS_18", "RF_GAINS_30", "RF_GAINS_40", "RF_GAINS_BSPCE_19", "RF_GAINS_BSPCE_30",
                                  "RF_PV_24", "RF_PV_19", "RF_PV1", "RF_PV2"});
    }
    void IndiqueOptions(bool bareme, bool forfait) {
        if (bareme) S["BAR"] = 1;
        if (forfait) S["PFU"] = 1;
    }
};

}  // namespace

CCalcul_N::CCalcul_N(CDataCalcul& data, bool optionsForcees, bool optionsSiSaisies, double tauxIndexation,
                     const kv::Loi& loi)
    : CCalcul(data),
      m_lancement{
          .tauxIndexation = tauxIndexation, .optionsForcees = optionsForcees, .optionsSiSaisies = optionsSiSaisies},
      m_loiIndexee(kv::Indexee(loi, tauxIndexation)),
      m_loi(m_loiIndexee ? *m_loiIndexee : loi),
      m_bareme(kv::BaremeDe(m_loi)),
      m_saisie(kv::LisSaisie(data)),
      m_exceptionnels(kv::LisExceptionnels(data)) {
    kv::Replie(m_saisie);
    m_remplies = kv::BoitesRemplies(m_saisie);
    m_lignes.ReprendPlafondsPERP(data);
    m_trace.Ouvre();
    // The modernisation credit alone: the more favourable option is chosen.
    const bool aucuneOption = m_saisie["PFU"] == 0 && m_saisie["BAR"] == 0 && m_saisie["AVA"] == 0;
    if (aucuneOption && (optionsForcees || (optionsSiSaisies && m_saisie["CIMR"] != 0))) m_saisie["AVA"] = 1;
}

void CCalcul_N::CalculReports(const TPeriode*) { kv::RemplitReports(m_saisie, *m_pData); }

bool CCalcul_N::Calcul(const TPeriode& periode, bool drapeau) {
    return kv::Protege(
        source,
        [&] {
            m_lancement.periode = &periode;
            return Pipeline(drapeau);
        },
        false);
}

bool CCalcul_N::Calcul_ISF() {
    return kv::Protege(
        source,
        [&] {
            kv::Contexte c(Commun(), m_saisie, m_remplies, m_exceptionnels, false);
            c.Lance(Etape::Calcul_ISF);
            return true;
        },
        false);
}

void CCalcul_N::EcritRetour() {
    for (const CaseEntree total : {CaseEntree("8TI"), CaseEntree("8TK")}) m_pData->Entree[total] = m_saisie[total];
    if (m_optionsComparees)
        for (const CaseEntree option : {CaseEntree("PFU"), CaseEntree("BAR")})
            if (m_pData->Entree[option] != nNonSaisi) m_pData->Entree[option] = 0;
    m_lignes.EcritDans(*m_pData);
}

void CCalcul_N::Lance(Etape etape, kv::Contexte& c) {
    const LigneEtape& ligne = lignesEtapes[rangDesEtapes[static_cast<std::size_t>(etape)]];
    if (etape == Etape::NombreParts) {  // its line alone stands one level further in
        ++m_trace.m_nNiveau;
        m_trace.Ligne(ligne.libelle);
        --m_trace.m_nNiveau;
        return ligne.fait(c);
    }
    const kv::EtapeTracee tracee(m_trace, ligne.libelle);
    ligne.fait(c);
}

void CCalcul_N::TraceEntrees() const {
    if (!m_trace.m_bTrace) return;
    const TPeriode& periode = *m_lancement.periode;
    m_trace.Valeur(u"DateToInt(_Periode->Deb,false)", DateToInt(kv::TexteDate(periode.Deb), false));
    m_trace.Valeur(u"DateToInt(_Periode->Fin,false)", DateToInt(kv::TexteDate(periode.Fin), false));
    for (const CaseEntreeDef& fiche : TableEntree) {
        const std::int32_t valeur = m_saisie[CaseEntree::Numero(static_cast<int>(fiche.Index))];
        if (valeur > 0) m_trace.Valeur(fiche.Nom, valeur);
    }
}

bool CCalcul_N::Pipeline(bool drapeau) {
    const kv::EtapeTracee tracee(m_trace, libelleCalcul);

    const bool premierPassage = !m_bSimulationBAR && !m_bPassageFinal;
    if (m_saisie["AVA"] != 0 && premierPassage) m_saisie["PFU"] = 1;
    m_memoire = {};
    m_chainesConnues.Oublie();
    TraceEntrees();
    m_saisie["8TI"] = kv::TotalTI(m_saisie);
    m_saisie["8TK"] = kv::TotalTK(m_saisie);
    kv::Contexte c(Commun(), m_saisie, m_remplies, m_exceptionnels, m_saisie["M"] == 1 || m_saisie["O"] == 1);
    c.RemetSortiesAZero();

    c.Lance(etapesPrincipales);
    if (c.faits.couple) TauxIndividuelsDuCouple(c);
    c.RetireExceptionnels();
    Totaux totaux(c);
    const bool comparaison = c.faits.options && m_saisie["AVA"] != 0;
    if (!comparaison) totaux.IndiqueOptions(c.faits.bareme, c.faits.forfait);
    totaux.PlusValues();
    c.Lance(Etape::RevenusNetFrais);
    if (comparaison && !Compare(c, drapeau)) return false;
    totaux.AuForfait();
    return true;
}

// The flat-tax run is followed by the scale run, and that one by the run of the cheaper option, each inside the one
// before it. False when one of them failed. The final run begins with nothing that its simulation did not begin with,
// unless the return set the scale too, or reads the ceilings that the run before left: then its lines stand again.
bool CCalcul_N::Compare(kv::Contexte& c, bool drapeau) {
    if (m_bPassageFinal) {
        Totaux(c).IndiqueOptions(c.faits.bareme, c.faits.forfait);
        m_optionsComparees = true;
        return true;
    }
    if (!m_bSimulationBAR) {
        m_finalConnu = m_saisie["BAR"] == 0 && m_saisie["6QW"] == 0 && !m_trace.m_bTrace;
        if (m_finalConnu) m_lignes.Conserve(m_forfait);
        return SimulationSuivante(drapeau);
    }
    m_bChoixPFU = FlatTaxMoinsChere();
    if (!m_finalConnu) return SimulationSuivante(drapeau);
    if (m_bChoixPFU) m_lignes.Reprend(m_forfait);
    Totaux(c).IndiqueOptions(!m_bChoixPFU, m_bChoixPFU);
    m_optionsComparees = true;
    return true;
}

// A couple's two individual rates; the runs they need leave the outputs to be found again.
void CCalcul_N::TauxIndividuelsDuCouple(kv::Contexte& c) {
    const bool connues = c.Repetable();
    if (connues) m_lignes.Conserve(m_conservees);
    const kv::TauxIndividuels taux = kv::CalculeTauxIndividuels(c);
    if (connues)
        m_lignes.Reprend(m_conservees);
    else
        c.Lance(etapesPrincipales);
    static constexpr CaseSortie sorties[2] = {"TAUX_PAS_IND1", "TAUX_PAS_IND2"};
    static constexpr std::u16string_view noms[2] = {u"s(TAUX_PAS_IND1)", u"s(TAUX_PAS_IND2)"};
    for (std::size_t d = 0; d < 2; ++d) {
        const std::int32_t dixiemes = nArrondi(dMul(taux[d], 10));
        m_lignes.Ecrit(sorties[d]).valeur = dixiemes;
        m_lignes.EcritTexte(sorties[d]) = kv::Texte::TauxEnDixiemes(dixiemes);
        if (dixiemes != 0) m_trace.Valeur(noms[d], dixiemes);
    }
}

// Which of the two simulations costs less; the flat tax when they cost the same.
bool CCalcul_N::FlatTaxMoinsChere() const {
    const auto& [forfait, bareme] = m_comparaison;
    if (forfait.aPayer != bareme.aPayer) return forfait.aPayer < bareme.aPayer;
    if (forfait.aPayer > 0 && bareme.restitue > 0) return false;
    return forfait.restitue >= bareme.restitue;
}

// The next of the three runs.
bool CCalcul_N::SimulationSuivante(bool drapeau) {
    m_bPassageFinal = m_bSimulationBAR;
    m_bSimulationBAR = !m_bPassageFinal;
    const bool forfait = m_bPassageFinal && m_bChoixPFU;
    m_saisie["PFU"] = forfait ? 1 : 0;
    m_saisie["BAR"] = forfait ? 0 : 1;
    return Calcul(*m_lancement.periode, drapeau);
}

namespace kv {

std::string LibelleEtape(Etape etape) {
    return VersUtf8(etape == Etape{} ? libelleCalcul
                                     : lignesEtapes[rangDesEtapes[static_cast<std::size_t>(etape)]].libelle);
}

bool Lance(CDataCalcul& data, const TPeriode* periode, bool drapeau, double tauxIndexation, bool optionsForcees,
           bool optionsSiSaisies, const Loi& loi) noexcept {
    return Protege(
        source,
        [&] {
            FixeAnneeCourante(anneeDesRevenus);
            const TPeriode anneeEntiere(anneeDesRevenus);
            const auto calcul =
                std::make_unique<CCalcul_N>(data, optionsForcees, optionsSiSaisies, tauxIndexation, loi);
            calcul->SupprimeFichierTrace();
            const bool pipeline = calcul->Calcul(periode ? *periode : anneeEntiere, drapeau);
            const bool isf = calcul->Calcul_ISF();
            calcul->EcritRetour();
            return pipeline && isf;
        },
        false);
}

void LanceReports(CDataCalcul& data, const TPeriode* periode, double tauxIndexation) noexcept {
    Protege(source,
            [&] { std::make_unique<CCalcul_N>(data, false, false, tauxIndexation, loi2017)->CalculReports(periode); });
}

void LanceBareme(const EntreeBareme& entree, SortieBareme& sortie, double tauxIndexation) noexcept {
    Protege(source, [&] {
        const TPeriode periode(anneeDesRevenus);
        const auto data = std::make_unique<CDataCalcul>();
        const struct {
            CaseEntree box;
            std::int32_t valeur;
        } boxes[] = {
            {"M", entree.M},   {"C", entree.C},      {"D", entree.D},      {"V", entree.V},   {"O", entree.O},
            {"Fp", entree.Fp}, {"S", entree.S},      {"P", entree.P},      {"W", entree.W},   {"L", entree.L},
            {"N", entree.N},   {"T", entree.T},      {"Gp", entree.Gp},    {"Fm", entree.Fm}, {"Gm", entree.Gm},
            {"Hm", entree.Hm}, {"Im", entree.Im},    {"Rm", entree.Rm},    {"Jm", entree.Jm}, {"Nm", entree.Nm},
            {"Pm", entree.Pm}, {"6DD", entree.c6DD}, {"2TS", entree.c2TS},
        };
        for (const auto& [box, valeur] : boxes) data->Entree[box] = valeur;
        Lance(*data, &periode, true, tauxIndexation);
        sortie = {data->Sortie["F_NB_PARTS_ALL"], data->Sortie["TOT_PAYER"], data->Sortie["TOT_REST"],
                  data->Sortie["ABAT"]};
    });
}

}  // namespace kv
