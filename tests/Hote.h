#pragma once

#include <map>
#include <memory>

#include "Calcul/cCalcul/Catalogues.h"
#include "Calcul/cCalcul/DataCalcul.h"
#include "support/KVTarvel.h"
#include "tests/Notation.h"

// Returns as a host of the imposed functions holds them.

namespace test {

/// The same return in a data object.
inline std::unique_ptr<CDataCalcul> Hote(const kv::Return& r) {
    auto data = std::make_unique<CDataCalcul>();
    const auto copie = [&](auto& zone, kv_area aire, std::int32_t CaseEntreeDef::*place) {
        for (const CaseEntreeDef& fiche : TableEntree)
            if (fiche.*place >= 0)
                zone.valeurs[static_cast<std::size_t>(fiche.*place)] =
                    r.get(static_cast<std::int32_t>(fiche.Index), aire);
    };
    for (int i = 0; i < kv::nEntrees; ++i) data->Entree[CaseEntree::Numero(i)] = r.get(i);
    copie(data->TI, KV_AREA_TI, &CaseEntreeDef::nTI);
    copie(data->TIX, KV_AREA_TIX, &CaseEntreeDef::nTIX);
    copie(data->TIY, KV_AREA_TIY, &CaseEntreeDef::nTIY);
    copie(data->TK, KV_AREA_TK, &CaseEntreeDef::nTK);
    copie(data->TKZ, KV_AREA_TKZ, &CaseEntreeDef::nTKZ);
    for (const auto& [box, coefficient, montant] : r.exceptional())
        data->AjouteQuotient(TableEntree[static_cast<std::size_t>(box)].nQuotient, coefficient, montant);
    return data;
}
inline std::unique_ptr<CDataCalcul> Hote(std::string_view boites) { return Hote(Foyer(boites)); }

/// Compares entry boxes with those that the words of a line expect.
inline void Attend(const kv::ZoneEntree& entrees, std::string_view attendues,
                   std::source_location ici = std::source_location::current()) {
    for (const std::string_view mot : Mots(attendues)) {
        const Affectation a(mot);
        const int numero = kv::NumeroEntree(a.nom);
        const std::int32_t v = numero < 0 ? throw std::invalid_argument(a.nom) : entrees[CaseEntree::Numero(numero)];
        if (v != Montant(a.valeur))
            ADD_FAILURE_AT(ici.file_name(), static_cast<int>(ici.line())) << a.nom << " is " << v << ", not " << mot;
    }
}

/// Everything that a host gave: entries, companions, quotient amounts.
struct Donnees {
    explicit Donnees(const CDataCalcul& data)
        : entree(data.Entree.valeurs),
          ti(data.TI.valeurs),
          tix(data.TIX.valeurs),
          tiy(data.TIY.valeurs),
          tk(data.TK.valeurs),
          tkz(data.TKZ.valeurs),
          quotients(data.MapsQuotients) {
        // The totals of the foreign companions are written by every launch.
        entree[static_cast<std::size_t>(CaseEntree("8TI").numero)] = 0;
        entree[static_cast<std::size_t>(CaseEntree("8TK").numero)] = 0;
    }
    bool operator==(const Donnees&) const = default;

    decltype(kv::ZoneEntree::valeurs) entree;
    decltype(decltype(CDataCalcul::TI)::valeurs) ti;
    decltype(decltype(CDataCalcul::TIX)::valeurs) tix, tiy;
    decltype(decltype(CDataCalcul::TK)::valeurs) tk, tkz;
    decltype(CDataCalcul::MapsQuotients) quotients;
};

/// Everything that a launch found, value by value and text by text.
inline bool MemesSorties(const CDataCalcul& a, const CDataCalcul& b) {
    for (std::size_t k = 0; k < 3; ++k)
        if (a.Colonne[k].valeurs != b.Colonne[k].valeurs) return false;
    return a.Sortie.valeurs == b.Sortie.valeurs && a.Detail.valeurs == b.Detail.valeurs;
}

}  // namespace test

using test::Attend;  // with the overload of this header
using test::Donnees;
using test::Hote;
