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
}

CCalcul_N::~CCalcul_N() {
    if (m_bQuotientsDansFr) QuotientDansFr(false);  // a step threw between the two transfers
}

bool CCalcul_N::Calcul(const TPeriode& periode, bool drapeau) {
    return kv::Garde(
        source, [&] { return Pipeline(periode, drapeau), true; }, false);
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

// Which steps run where. Steps 4 and 5 run inside step 3.
void CCalcul_N::ChaineNormale(const TPeriode&) {
    NombreParts();
    RevenusBrut(kv::Passe::Normale);
    RevenusNet();
    RevenusImposables();
    CalculImpot();
    TauxMarginal();
}

void CCalcul_N::Pipeline(const TPeriode& periode, bool) {
    const kv::Etape etape(m_trace, u"1:Calcul");

    m_travail = {};
    m_bCouple = E["M"] == 1 || E["O"] == 1;
    TraceEntrees(periode);
    RemetSortiesAZero();
    E["8TI"] = kv::TotalTI(*m_pData);
    E["8TK"] = kv::TotalTK(*m_pData);
    ChaineNormale(periode);
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
            return calcul.Calcul(periode ? *periode : anneeEntiere, drapeau);
        },
        false);
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
