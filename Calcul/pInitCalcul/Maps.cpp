#include "Calcul/cCalcul/Catalogues.h"
#include "Calcul/cCalcul/DataCalcul.h"
#include "Calcul/pInitCalcul/KVCalculMaps.h"
#include "Calcul/pInitCalcul/Session.h"
#include "support/KVTarvel.h"
#include "support/Tarvel.h"

// The session's return as maps keyed by box name, and back.

namespace {

using kv::session;

// The slot of a record in a zone; null when the box has none there.
template <class Zone>
std::int32_t* Slot(Zone& zone, std::int32_t numero) {
    return numero < 0 ? nullptr : &zone.valeurs[static_cast<std::size_t>(numero)];
}

std::int32_t* Entree(CDataCalcul& d, const CaseEntreeDef& c) { return &d.Entree.valeurs[c.Index]; }
std::int32_t* TI(CDataCalcul& d, const CaseEntreeDef& c) { return Slot(d.TI, c.nTI); }
std::int32_t* TIX(CDataCalcul& d, const CaseEntreeDef& c) { return Slot(d.TIX, c.nTIX); }
std::int32_t* TIY(CDataCalcul& d, const CaseEntreeDef& c) { return Slot(d.TIY, c.nTIY); }
std::int32_t* TK(CDataCalcul& d, const CaseEntreeDef& c) { return Slot(d.TK, c.nTK); }
std::int32_t* TKZ(CDataCalcul& d, const CaseEntreeDef& c) { return Slot(d.TKZ, c.nTKZ); }
std::int32_t* Sortie(CDataCalcul& d, const CaseSortieDef& c) { return &d.Sortie.valeurs[c.Index]; }
std::int32_t* Report(CDataCalcul& d, const CaseReportDef& c) { return &d.Report.valeurs[c.Index]; }

template <class Table, class Valeur>
MapList Exporte(const Table& table, Valeur valeur) {
    return kv::Protege(
        kv::sourceExports,
        [&] {
            MapList map;
            if (!session) return map;
            for (const auto& fiche : table)
                if (const std::int32_t* v = valeur(*session, fiche); v && *v != 0 && *v != nNonSaisi)
                    map.emplace(fiche.Nom, *v);
            return map;
        },
        MapList{});
}

template <class Valeur>
void Charge(const MapList& map, const CaseEntreeDef& fiche, Valeur valeur) {
    const auto trouve = map.find(fiche.Nom);
    if (trouve == map.end()) return;
    if (std::int32_t* v = valeur(*session, fiche)) *v = trouve->second;
}

}  // namespace

MapList KV_Calcul_RemplirMapEntree() { return Exporte(TableEntree, Entree); }
MapDouble KV_Calcul_RemplirMapEntreeDouble() { return {}; }
MapList KV_Calcul_RemplirMapEntreeTI() { return Exporte(TableEntree, TI); }
MapList KV_Calcul_RemplirMapEntreeTIX() { return Exporte(TableEntree, TIX); }
MapList KV_Calcul_RemplirMapEntreeTIY() { return Exporte(TableEntree, TIY); }
MapList KV_Calcul_RemplirMapEntreeTK() { return Exporte(TableEntree, TK); }
MapList KV_Calcul_RemplirMapEntreeTKZ() { return Exporte(TableEntree, TKZ); }
MapList KV_Calcul_RemplirMapSortie() { return Exporte(TableSortie, Sortie); }
MapList KV_Calcul_RemplirMapReport() { return Exporte(TableReport, Report); }

MapQuotients KV_Calcul_RemplirMapQuotient() {
    return kv::Protege(
        kv::sourceExports,
        [] {
            MapQuotients quotients;
            if (!session) return quotients;
            for (std::int32_t k = 0; k < kv::nQuotients; ++k) {
                std::map<std::int32_t, std::int32_t> montants;
                for (const auto& quotient : session->ListeQuotients)
                    if (const std::int32_t montant = session->Quotient(k, quotient->nId))
                        montants.emplace(quotient->nId, montant);
                if (!montants.empty()) quotients.emplace(k, std::move(montants));
            }
            return quotients;
        },
        MapQuotients{});
}

void KV_Calcul_RemplirStructureParMapEntree(MapList entrees, MapDouble, MapList ti, MapList tix, MapList tiy,
                                            MapList tk, MapList tkz) {
    kv::Protege(kv::sourceExports, [&] {
        if (!session) return;
        for (const CaseEntreeDef& fiche : TableEntree) {
            Charge(entrees, fiche, Entree);
            Charge(ti, fiche, TI);
            Charge(tix, fiche, TIX);
            Charge(tiy, fiche, TIY);
            Charge(tk, fiche, TK);
            Charge(tkz, fiche, TKZ);
        }
    });
}

void KV_Calcul_RemplirStructureParMapEntreeDouble(MapDouble) {}  // no box holds a double

void KV_Calcul_RemplirStructureParMapQuotient(MapQuotients quotients) {
    if (!session) return;
    for (const auto& [map, montants] : quotients)
        for (const auto& [coefficient, montant] : montants) AddValQuotient(session, &map, &coefficient, &montant);
}
