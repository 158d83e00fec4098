// A host in C++: fills a return from maps, exceptional income included, launches with the options, and reads the
// results and next year's return by name.

#include <iostream>

#include "Calcul/pInitCalcul/KVCalculMaps.h"

namespace {

std::string Ascii(const std::u16string& texte) { return {texte.begin(), texte.end()}; }

// The quotient map of an entry box, -1 for a box without one.
std::int32_t MapDeQuotient(const std::u16string& nom) {
    for (std::int32_t i = 0;; ++i) {
        const CaseEntreeDef fiche = EntreeInit(nullptr, i);
        if (fiche.Nom == nom) return fiche.nQuotient;
        if (fiche.Nom[0] == 0) return -1;  // beyond the last one
    }
}

std::int32_t Valeur(const MapList& map, const std::u16string& nom) {
    const auto trouve = map.find(nom);
    return trouve == map.end() ? 0 : trouve->second;
}

}  // namespace

int main() {
    CDataCalcul* const retour = KV_Calcul_Debut();
    if (!retour) return 1;

    // A couple with a child, dividends, a donation, and 8 000 of deferred salary taxed by the quotient over 4 years.
    const MapList entrees = {{u"M", 1},      {u"Fm", 1},    {u"1AJ", 46000}, {u"1BJ", 38000},
                             {u"2DC", 3000}, {u"7UF", 600}, {u"AVA", 1}};
    KV_Calcul_RemplirStructureParMapEntree(entrees, {}, {}, {}, {}, {}, {});
    KV_Calcul_RemplirStructureParMapQuotient({{MapDeQuotient(u"1AJ"), {{4, 8000}}}});
    if (!KV_Calcul_Lancement_OR()) return 1;

    const MapList sorties = KV_Calcul_RemplirMapSortie();
    for (const char16_t* nom : {u"TOT_R_IMPOS", u"RQ_REV_EXCEP", u"TOT_IMPOT", u"S_NET_A_PAYER", u"PFU", u"BAR"})
        std::cout << Ascii(nom) << ' ' << Valeur(sorties, nom) << '\n';

    // What next year's return takes over: here what each declarant may still deduct for retirement savings. A sibling
    // library gives the indexation; here there is none.
    KV_CalculReports(retour, nullptr, -1.0);
    const MapList reports = KV_Calcul_RemplirMapReport();
    for (const char16_t* nom : {u"F11_6PSS", u"F11_6PTS"})
        std::cout << Ascii(nom) << ' ' << Valeur(reports, nom) << '\n';
    KV_Calcul_Fin();
    return 0;
}
