#include "Calcul/cCalcul/Portees.h"

#include "support/KVTarvel.h"

namespace kv {

NonSaisiesAZero::NonSaisiesAZero(CDataCalcul& data) {
    const auto parcours = [&](auto& zone) {
        for (std::int32_t& v : zone.valeurs)
            if (v == nNonSaisi) m_nonSaisies.push_back(&v);
    };
    parcours(data.Entree);
    parcours(data.TI), parcours(data.TIX), parcours(data.TIY), parcours(data.TK), parcours(data.TKZ);
    std::erase_if(m_nonSaisies, [&](const std::int32_t* v) {
        constexpr CaseEntree gardees[] = {"5XC", "5YC", "5ZC", "8TI", "8TK"};
        return std::any_of(std::begin(gardees), std::end(gardees), [&](CaseEntree c) { return v == &data.Entree[c]; });
    });
    for (std::int32_t* v : m_nonSaisies) *v = 0;
}

NonSaisiesAZero::~NonSaisiesAZero() {
    for (std::int32_t* v : m_nonSaisies) *v = nNonSaisi;
}

namespace {

std::int32_t Somme(const ZoneEntree& E, std::initializer_list<CaseEntree> boxes) {
    std::int32_t somme = 0;
    for (const CaseEntree box : boxes) somme += E[box];
    return somme;
}

}  // namespace

Repliement::Repliement(CDataCalcul& data)
    : Ajout(data, {{"1AJ", Somme(data.Entree, {"1AG", "1NX", "1TP", "1PM"})},
                   {"1BJ", Somme(data.Entree, {"1BG", "1OX", "1UP", "1QM"})},
                   {"1CJ", data.Entree["1CG"]},
                   {"1DJ", data.Entree["1DG"]},
                   {"1EJ", data.Entree["1EG"]},
                   {"1FJ", data.Entree["1FG"]},
                   {"1AS", data.Entree["1AM"]},
                   {"1BS", data.Entree["1BM"]},
                   {"1CS", data.Entree["1CM"]},
                   {"1DS", data.Entree["1DM"]},
                   {"1ES", data.Entree["1EM"]},
                   {"1FS", data.Entree["1FM"]}}) {}

}  // namespace kv
