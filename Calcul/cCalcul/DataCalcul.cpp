#include "Calcul/cCalcul/DataCalcul.h"

#include <algorithm>

#include "support/KVTarvel.h"

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

void CDataCalcul::CopieValeurs(const CDataCalcul& source) {
    Entree = source.Entree;
    TI = source.TI, TIX = source.TIX, TIY = source.TIY, TK = source.TK, TKZ = source.TKZ;
    Report = source.Report;
    QuotientTotal.nValeur.fill(0);
    QuotientOrdinaire.nValeur.fill(0);
    Quotients copie;
    for (const auto& quotient : source.ListeQuotients) copie.push_back(std::make_unique<CCalcQuotient>(*quotient));
    ListeQuotients = std::move(copie);
    MapsQuotients = source.MapsQuotients;
}
