#include "Calcul/pCalculN/Pilote.h"

#include <memory>

#include "Calcul/pCalculN/Calcul_N.h"
#include "Calcul/pCalculN/Reports.h"
#include "support/Tarvel.h"

// The launches on the data object of a host, each within a guard.

namespace {

constexpr const char* source = "Calcul/pCalculN";

}  // namespace

CCalcul_N::CCalcul_N(CDataCalcul& data, const kv::Lancement& lancement, const kv::Loi& loi, double tauxIndexation)
    : CCalcul(data),
      m_saisie(kv::LisSaisie(data)),
      m_exceptionnels(kv::LisExceptionnels(data)),
      m_loi(loi, tauxIndexation),
      m_calculateur(m_saisie, m_exceptionnels, m_lignes, lancement, m_loi) {
    m_lignes.ReprendPlafondsPERP(data);
}

void CCalcul_N::CalculReports(const TPeriode*) {
    m_lignes.ReprendFigures(*m_pData);
    kv::RemplitReports(m_saisie, m_lignes, m_pData->Report);
}

bool CCalcul_N::Calcul(const TPeriode& periode, bool) {
    return kv::Protege(
        source, [&] { return m_calculateur.Calcul(periode), true; }, false);
}

bool CCalcul_N::Calcul_ISF() {
    return kv::Protege(
        source, [&] { return m_calculateur.Calcul_ISF(), true; }, false);
}

void CCalcul_N::EcritRetour() {
    m_calculateur.EcritEntrees(m_pData->Entree);
    m_lignes.EcritDans(*m_pData);
}

namespace kv {

bool Lance(CDataCalcul& data, const TPeriode* periode, bool drapeau, double tauxIndexation, bool optionsForcees,
           bool optionsSiSaisies, const Loi& loi) noexcept {
    return Protege(
        source,
        [&] {
            FixeAnneeCourante(anneeDesRevenus);
            const TPeriode anneeEntiere(anneeDesRevenus);
            const Lancement lancement = {.optionsForcees = optionsForcees, .optionsSiSaisies = optionsSiSaisies};
            const auto calcul = std::make_unique<CCalcul_N>(data, lancement, loi, tauxIndexation);
            calcul->OuvreTrace();
            const bool pipeline = calcul->Calcul(periode ? *periode : anneeEntiere, drapeau);
            const bool isf = calcul->Calcul_ISF();
            calcul->EcritRetour();
            return pipeline && isf;
        },
        false);
}

void LanceReports(CDataCalcul& data, const TPeriode* periode, double tauxIndexation) noexcept {
    Protege(source,
            [&] { std::make_unique<CCalcul_N>(data, Lancement(), loi2017, tauxIndexation)->CalculReports(periode); });
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
