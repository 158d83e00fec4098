#include "Calcul/pCalculN/Pilote.h"

#include "Calcul/cCalcul/Catalogues.h"
#include "Calcul/cCalcul/Transferts.h"
#include "Calcul/pCalculN/Calcul_N.h"

// The driver: which steps run, in which order, and how a launch begins and ends.

namespace {

constexpr const char* source = "Calcul/pCalculN";

}  // namespace

CCalcul_N::CCalcul_N(CDataCalcul& data, bool optionsForcees, bool optionsSiSaisies, double tauxIndexation)
    : CCalcul(data, tauxIndexation), m_bOptionsForcees(optionsForcees), m_bOptionsSiSaisies(optionsSiSaisies) {
    kv::RemplitBareme(m_Bareme, 2017);
    // The modernisation credit alone: the more favourable option is chosen.
    if (Options() && E["PFU"] == 0 && E["BAR"] == 0 && E["AVA"] == 0) E["AVA"] = 1;
}

CCalcul_N::~CCalcul_N() {
    const QuotientsRepris repris(*this);  // a step may have thrown between the two transfers
}

bool CCalcul_N::Calcul(const TPeriode& periode, bool drapeau) {
    return kv::Garde(
        source, [&] { return Pipeline(periode, drapeau); }, false);
}

bool CCalcul_N::Calcul_ISF() {
    return kv::Garde(
        source, [&] { return CopieISF(), true; }, false);
}

// The exceptional amounts go into the entry boxes once per run of the quotient step, and come out once after it.
void CCalcul_N::QuotientDansFr(bool ajoute) {
    kv::QuotientDansFr(*m_pData, m_trace, ajoute);
    m_bQuotientsDansFr = ajoute;
}

void CCalcul_N::TraceEntrees(const TPeriode& periode) {
    if (!m_trace.m_bTrace) return;
    m_trace.Valeur(u"DateToInt(_Periode->Deb,false)", DateToInt(kv::TexteDate(periode.Deb), false));
    m_trace.Valeur(u"DateToInt(_Periode->Fin,false)", DateToInt(kv::TexteDate(periode.Fin), false));
    for (const CaseEntreeDef& fiche : TableEntree) {
        const std::int32_t valeur = E[CaseEntree::Numero(static_cast<int>(fiche.Index))];
        if (valeur > 0) m_trace.Valeur(fiche.Nom, valeur);
    }
}

// ---- Which steps run where. Steps 4 to 10 run inside step 3; 20 and 21 inside step 19; 25, 36 and 37 inside step 24.

// The normal chain, which step 27 runs.
void CCalcul_N::ChaineNormale(const TPeriode& periode) {
    NombreParts();
    RevenusBrut(kv::Passe::Normale);
    RevenusBrutQuotient(kv::Passe::Normale);
    RevenusTauxForf();
    RevenusNet();
    RevenusImposables();
    CalculImpot();
    TauxMarginal();
    RevenusTM(periode);
    RevenusEtrangers(periode);
}

// The steps of the pipeline. Step 28 runs step 27, which runs the normal chain, then steps 19, 22, 24 and 26.
void CCalcul_N::EtapesPrincipales(const TPeriode& periode) {
    NichesFiscales(periode);
    Reports();
    PrelevLib();
    TauxImposMoyen();
    ImposTxMarginal();
    ImposTrancheSup();
}

bool CCalcul_N::Pipeline(const TPeriode& periode, bool drapeau) {
    const kv::Etape etape(m_trace, u"1:Calcul");

    const bool premierPassage = !m_bSimulationBAR && !m_bPassageFinal;
    if (E["AVA"] != 0 && premierPassage) E["PFU"] = 1;
    m_travail = {};
    m_bCouple = E["M"] == 1 || E["O"] == 1;
    TraceEntrees(periode);
    RemetSortiesAZero();
    E["8TI"] = kv::TotalTI(*m_pData);
    E["8TK"] = kv::TotalTK(*m_pData);

    EtapesPrincipales(periode);
    if (m_bCouple) TauxIndividuelsDuCouple(periode);
    QuotientDansFr(false);
    if (Options()) {
        if (E["AVA"] == 0) {
            if (E["BAR"] != 0) S["BAR"] = 1;
            if (E["PFU"] != 0) S["PFU"] = 1;
        } else if (m_bSimulationBAR) {
            m_bChoixPFU = FlatTaxMoinsChere();
        }
    }
    S["TOT_IMP_RED_INTERNE"] = S["TOT_IMP_RED"];
    S["REV_PV_TXPROP_BARPRO"] = nPositif(GainsMobiliersNets());
    S["REV_PV_AVEC_EXO"] = SommeS({"RF_PLUS", "RF_INVENTEURS", "S_B_PV_RETRAITE"}) +
                           SommeE({"3VD", "3VI", "3VF", "3SJ", "3SK", "3VM", "3VT", "3VC", "3SE", "3VZ", "3VW", "3SA",
                                   "3WI", "3WJ", "3WN", "3SZ", "3PI"});
    RevenusNetFrais();
    if (Options() && E["AVA"] != 0 && !CompareOptions(periode, drapeau)) return false;
    S["FORFAIT_PF"] = SommeS({"RF_INVENTEURS", "RF_PENSIONS", "RF_2FA", "RF_PLUS", "RF_CESS_3VT", "RF_GAINS_22_5",
                              "RF_GAINS_18", "RF_GAINS_30", "RF_GAINS_40", "RF_GAINS_BSPCE_19", "RF_GAINS_BSPCE_30",
                              "RF_PV_24", "RF_PV_19", "RF_PV1", "RF_PV2"});
    return true;
}

// A couple's two individual rates; the runs they need leave the outputs to be computed again.
void CCalcul_N::TauxIndividuelsDuCouple(const TPeriode& periode) {
    const kv::TauxIndividuels taux = CalculeTauxIndividuels(periode);
    EtapesPrincipales(periode);
    static constexpr CaseSortie sorties[2] = {"TAUX_PAS_IND1", "TAUX_PAS_IND2"};
    static constexpr std::u16string_view noms[2] = {u"s(TAUX_PAS_IND1)", u"s(TAUX_PAS_IND2)"};
    for (std::size_t d = 0; d < 2; ++d) {
        S[sorties[d]] = nArrondi(dMul(taux[d], 10));
        Detail[sorties[d]] = FloatToStr(S[sorties[d]] / 10.0) + u"%";
        if (S[sorties[d]] != 0) m_trace.Valeur(noms[d], S[sorties[d]]);
    }
}

// Which of the two simulations costs less; the flat tax when they cost the same.
bool CCalcul_N::FlatTaxMoinsChere() const {
    if (m_nS_NET_A_PAYER_PFU != m_nS_NET_A_PAYER_BAR) return m_nS_NET_A_PAYER_PFU < m_nS_NET_A_PAYER_BAR;
    if (m_nS_NET_A_PAYER_PFU > 0 && m_nS_NET_RESTITUE_BAR > 0) return false;
    return m_nS_NET_RESTITUE_PFU >= m_nS_NET_RESTITUE_BAR;
}

// The flat-tax run is followed by the scale run, and that one by the run of the cheaper option, each inside the one
// before it. False when one of them failed.
bool CCalcul_N::CompareOptions(const TPeriode& periode, bool drapeau) {
    if (m_bSimulationBAR) {
        m_bSimulationBAR = false;
        m_bPassageFinal = true;
        E["PFU"] = m_bChoixPFU ? 1 : 0;
        E["BAR"] = m_bChoixPFU ? 0 : 1;
        return Calcul(periode, drapeau);
    }
    if (!m_bPassageFinal) {
        m_bSimulationBAR = true;
        E["PFU"] = 0;
        E["BAR"] = 1;
        return Calcul(periode, drapeau);
    }
    if (E["BAR"] != 0) S["BAR"] = 1;
    if (E["PFU"] != 0) S["PFU"] = 1;
    E["PFU"] = E["BAR"] = 0;
    m_interrupteurs.OptionsComparees();
    return true;
}

namespace kv {

bool Lance(CDataCalcul& data, const TPeriode* periode, bool drapeau, double tauxIndexation, bool optionsForcees,
           bool optionsSiSaisies) noexcept {
    return Garde(
        source,
        [&] {
            FixeAnneeCourante(2017);
            const TPeriode anneeEntiere(2017);
            CCalcul_N calcul(data, optionsForcees, optionsSiSaisies, tauxIndexation);
            calcul.SupprimeFichierTrace();
            const bool pipeline = calcul.Calcul(periode ? *periode : anneeEntiere, drapeau);
            const bool isf = calcul.Calcul_ISF();
            return pipeline && isf;
        },
        false);
}

void LanceReports(CDataCalcul& data, const TPeriode* periode, double tauxIndexation) noexcept {
    Garde(source, [&] {
        CCalcul_N calcul(data, false, false, tauxIndexation);
        static_cast<CCalcul&>(calcul).CalculReports(periode);
    });
}

void LanceBareme(const EntreeBareme& entree, SortieBareme& sortie, double tauxIndexation) noexcept {
    Garde(source, [&] {
        const TPeriode periode(2017);
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
