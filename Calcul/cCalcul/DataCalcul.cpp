#include "Calcul/cCalcul/DataCalcul.h"

#include <algorithm>

#include "Calcul/cCalcul/Catalogues.h"
#include "support/KVTarvel.h"

namespace {

// The ceilings that contributions of later years may use: they outlive every full reset.
constexpr CaseSortie plafondsPERP[] = {
    "NP1_PLAF_PERP_V",   "NP1_PLAF_PERP_C",   "NP1_PLAF_PERP_C_B", "NP1_PLAF_PERP_V_B", "NP1_PLAF_PERP_C_C",
    "NP1_PLAF_PERP_V_C", "NP1_PLAF_PERP_C_A", "NP1_PLAF_PERP_V_A", "NP1_PLAF_PERP_C_0", "NP1_PLAF_PERP_V_0",
};

constexpr auto videParRazComplete = [] {
    std::array<bool, kv::nSorties> tout{};
    tout.fill(true);
    for (const CaseSortie c : plafondsPERP) tout[static_cast<std::size_t>(c.numero)] = false;
    return tout;
}();

}  // namespace

void CDataCalcul::AjouteQuotient(int map, std::int32_t coefficient, std::int32_t montant) {
    const auto memeId = [&](const auto& quotient) { return quotient->nId == coefficient; };
    if (std::none_of(ListeQuotients.begin(), ListeQuotients.end(), memeId))
        ListeQuotients.push_back(std::make_unique<CCalcQuotient>(coefficient));
    MapsQuotients[static_cast<std::size_t>(map)].emplace(coefficient, montant);
}

std::int32_t CDataCalcul::Quotient(int map, std::int32_t coefficient) const {
    const MapDeQuotients& montants = MapsQuotients[static_cast<std::size_t>(map)];
    const auto trouve = montants.find(coefficient);
    return trouve == montants.end() ? 0 : nValForc(trouve->second, 0);
}

std::int32_t CDataCalcul::Quotient(CaseEntree box, std::int32_t coefficient) const {
    const int map = TableEntree[static_cast<std::size_t>(box.numero)].nQuotient;
    return map < 0 ? 0 : Quotient(map, coefficient);
}

std::int32_t CDataCalcul::Quotient(CaseEntree box) const {
    const int map = TableEntree[static_cast<std::size_t>(box.numero)].nQuotient;
    std::int32_t total = 0;
    if (map >= 0)
        for (const auto& [coefficient, montant] : MapsQuotients[static_cast<std::size_t>(map)])
            total += nValForc(montant, 0);
    return total;
}

void CDataCalcul::RemetAZero(CaseSortie sortie) {
    Annule(sortie);
    Detail[sortie].clear();
}

void CDataCalcul::RemetSortiesAZero(Raz raz) {
    for (std::size_t i = 0; i < kv::nSorties; ++i)
        if (raz == Raz::Partielle ? TableSortie[i].bRazPartielle != 0 : videParRazComplete[i])
            RemetAZero(CaseSortie::Numero(static_cast<int>(i)));
}

void CDataCalcul::Vide() {
    for (auto* zone : {&Colonne[0], &Colonne[1], &Colonne[2], &Sortie}) zone->valeurs.fill(0);
    for (auto& texte : Detail.valeurs) texte.clear();
    Entree.valeurs.fill(0);
    TI.valeurs.fill(0), TIX.valeurs.fill(0), TIY.valeurs.fill(0), TK.valeurs.fill(0), TKZ.valeurs.fill(0);
    Report.valeurs.fill(0);
}

namespace {

void CopieZones(CDataCalcul& vers, const CDataCalcul& de) noexcept {
    vers.Entree = de.Entree;
    vers.TI = de.TI, vers.TIX = de.TIX, vers.TIY = de.TIY, vers.TK = de.TK, vers.TKZ = de.TKZ;
    vers.Report = de.Report;
    vers.QuotientTotal.nValeur.fill(0);
    vers.QuotientOrdinaire.nValeur.fill(0);
}

}  // namespace

void CDataCalcul::RepriseValeurs(CDataCalcul& source) noexcept {
    CopieZones(*this, source);
    ListeQuotients.swap(source.ListeQuotients);
    MapsQuotients.swap(source.MapsQuotients);
}

void CDataCalcul::CopieValeurs(const CDataCalcul& source) {
    CopieZones(*this, source);
    Quotients copie;
    for (const auto& quotient : source.ListeQuotients) copie.push_back(std::make_unique<CCalcQuotient>(*quotient));
    ListeQuotients = std::move(copie);
    MapsQuotients = source.MapsQuotients;
}

void CDataCalcul::Ajoute(CaseSortie vers, CaseSortie ligne) {
    for (auto& colonne : Colonne) colonne[vers] += colonne[ligne];
    Sortie[vers] += Sortie[ligne];
}

void CDataCalcul::Soustrait(CaseSortie vers, CaseSortie ligne) {
    for (auto& colonne : Colonne) colonne[vers] -= colonne[ligne];
    Sortie[vers] -= Sortie[ligne];
}

void CDataCalcul::Copie(CaseSortie vers, CaseSortie ligne) {
    for (auto& colonne : Colonne) colonne[vers] = colonne[ligne];
    Sortie[vers] = Sortie[ligne];
}

void CDataCalcul::Annule(CaseSortie ligne) {
    for (auto& colonne : Colonne) colonne[ligne] = 0;
    Sortie[ligne] = 0;
}

void CDataCalcul::Totalise(CaseSortie ligne) {
    Sortie[ligne] = Colonne[0][ligne] + Colonne[1][ligne] + Colonne[2][ligne];
}

void CDataCalcul::BaseEtTaux(CaseSortie ligne, std::int32_t base, std::int32_t taux) {
    Colonne[1][ligne] = base;
    Colonne[2][ligne] = taux;
}
