#include <algorithm>
#include <cassert>
#include <new>

#include "Calcul/cCalcul/Catalogues.h"
#include "Calcul/cCalcul/DataCalcul.h"
#include "Calcul/pCalculN/Bareme.h"
#include "Calcul/pCalculN/Pilote.h"
#include "Calcul/pInitCalcul/KVCalcul.h"
#include "Calcul/pInitCalcul/Session.h"
#include "KVCommun/cPeriode/Periode.h"
#include "support/KVTarvel.h"
#include "support/Tarvel.h"

// The exported functions: each hands over to the part of the library that does the work.

namespace {

using kv::session;

template <class Table>
bool Existe(const Table& table, std::int32_t numero) {
    return 0 <= numero && static_cast<std::size_t>(numero) < table.size();
}

template <class Table>
typename Table::value_type Fiche(const Table& table, std::int32_t index) {
    return Existe(table, index) ? table[static_cast<std::size_t>(index)] : typename Table::value_type{};
}

CDataCalcul* Recommence() {
    DetruitCalculGenere(session);
    return session = ConstruitCalculGenere();
}

// A map number that a host hands over.
bool MapExiste(std::int32_t map) {
    if (bIsEntre(map, 0, kv::nQuotients - 1)) return true;
    kv::Protege(kv::sourceExports, [&] { NUBErreur(u"Map de quotients inconnue : " + IntToStr(map)); });
    return false;
}

}  // namespace

CDataCalcul* KV_Calcul_Debut() { return session = ConstruitCalculGenere(); }

void KV_Calcul_Fin() {
    DetruitCalculGenere(session);
    session = nullptr;
}

CDataCalcul* KV_Calcul_InitEntree() { return Recommence(); }
CDataCalcul* KV_Calcul_InitSortie() { return Recommence(); }

void KV_Calcul_AffecteCaseEntree(std::int32_t numero, std::int32_t valeur) {
    assert(session && Existe(TableEntree, numero));
    session->Entree[CaseEntree::Numero(numero)] = valeur;
}

std::int32_t KV_Calcul_LireCaseEntree(std::int32_t numero) {
    assert(session && Existe(TableEntree, numero));
    return session->Entree[CaseEntree::Numero(numero)];
}

std::int32_t KV_Calcul_LireCaseSortie(std::int32_t numero) {
    assert(session && Existe(TableSortie, numero));
    return session->Sortie[CaseSortie::Numero(numero)];
}

std::uint32_t KV_Calcul_LireTypeCaseEntree(std::int32_t numero) {
    assert(Existe(TableEntree, numero));
    return TableEntree[static_cast<std::size_t>(numero)].Type;
}

bool KV_Calcul_Lancement() { return KV_Calcul(session, nullptr, true, -1.0); }
bool KV_Calcul_Lancement_OR() { return KV_CalculPFUEtCIMR(session, nullptr, true, -1.0, false, true); }

bool KV_Calcul(CDataCalcul* data, const TPeriode* periode, bool drapeau, double tauxIndexation) {
    return data && kv::Lance(*data, periode, drapeau, tauxIndexation);
}

bool KV_CalculPFUEtCIMR(CDataCalcul* data, const TPeriode* periode, bool drapeau, double tauxIndexation,
                        bool optionsForcees, bool optionsSiSaisies) {
    return data && kv::Lance(*data, periode, drapeau, tauxIndexation, optionsForcees, optionsSiSaisies);
}

void KV_CalculReports(CDataCalcul* data, const TPeriode* periode, double tauxIndexation) {
    if (data) kv::LanceReports(*data, periode, tauxIndexation);
}

void KV_RempliBareme(TrancheBareme* bareme, std::int32_t annee) {
    if (!bareme) return;
    if (annee != kv::anneeDesRevenus) return NUBErreur(u"Aucun barème pour cette année");
    std::copy(kv::bareme2017.begin(), kv::bareme2017.end(), bareme);
}

void CalculBareme(const EntreeBareme* entree, SortieBareme* sortie, double tauxIndexation) {
    if (entree && sortie) kv::LanceBareme(*entree, *sortie, tauxIndexation);
}

CDataCalcul* ConstruitCalculGenere() { return new (std::nothrow) CDataCalcul; }
void DetruitCalculGenere(CDataCalcul* data) { delete data; }

CaseEntreeDef EntreeInit(const void*, std::int32_t index) { return Fiche(TableEntree, index); }
CaseSortieDef SortieInit(const void*, std::int32_t index) { return Fiche(TableSortie, index); }
CaseReportDef ReportInit(const void*, std::int32_t index) { return Fiche(TableReport, index); }

void AddValQuotient(CDataCalcul* data, const std::int32_t* map, const std::int32_t* coefficient,
                    const std::int32_t* montant) {
    if (!data || !map || !coefficient || !montant || !MapExiste(*map)) return;
    kv::Protege(kv::sourceExports, [&] { data->AjouteQuotient(*map, *coefficient, *montant); });
}

std::int32_t GetValQuotient(const CDataCalcul* data, const std::int32_t* map, const std::int32_t* coefficient) {
    if (!data || !map || !coefficient || !MapExiste(*map)) return 0;
    const MapDeQuotients& montants = data->MapsQuotients[static_cast<std::size_t>(*map)];
    const auto trouve = montants.find(*coefficient);
    return trouve == montants.end() ? 0 : trouve->second;
}

TPeriode* TPeriodeConstructor(std::int32_t annee) { return new (std::nothrow) TPeriode(annee); }
void TPeriodeDestructor(TPeriode* periode) { delete periode; }
