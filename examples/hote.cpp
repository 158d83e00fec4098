// A host in C++: fills a return from maps, exceptional income included, launches with the options, and reads the
// results and next year's return by name.

#include <iostream>

#include "Calcul/pInitCalcul/KVCalculMaps.h"

namespace {

std::string Ascii(const std::u16string& texte) { return {texte.begin(), texte.end()}; }

std::int32_t Valeur(const MapList& map, const std::u16string& nom) {
    const auto trouve = map.find(nom);
    return trouve == map.end() ? 0 : trouve->second;
}

}  // namespace

int main() {
    if (!KV_Calcul_Debut()) return 1;

    // A couple with a child, dividends, a donation, and 8 000 of deferred salary taxed by the quotient over 4 years.
    const MapList entrees = {{u"M", 1},      {u"Fm", 1},    {u"1AJ", 46000}, {u"1BJ", 38000},
                             {u"2DC", 3000}, {u"7UF", 600}, {u"AVA", 1}};
    KV_Calcul_RemplirStructureParMapEntree(entrees, {}, {}, {}, {}, {}, {});
    const std::int32_t mapSalaires = 81;  // the quotient map of box 1AJ: EntreeInit gives it
    KV_Calcul_RemplirStructureParMapQuotient({{mapSalaires, {{4, 8000}}}});
    if (!KV_Calcul_Lancement_OR()) return 1;

    const MapList sorties = KV_Calcul_RemplirMapSortie();
    for (const char16_t* nom : {u"TOT_R_IMPOS", u"RQ_REV_EXCEP", u"TOT_IMPOT", u"S_NET_A_PAYER", u"PFU", u"BAR"})
        std::cout << Ascii(nom) << ' ' << Valeur(sorties, nom) << '\n';

    // What next year's return takes over. A sibling library gives the indexation; here there is none.
    CDataCalcul* autre = ConstruitCalculGenere();
    if (!autre) return 1;
    KV_CalculReports(autre, nullptr, -1.0);
    DetruitCalculGenere(autre);
    std::cout << "quotients kept: " << KV_Calcul_RemplirMapQuotient().size() << '\n';
    KV_Calcul_Fin();
    return 0;
}
