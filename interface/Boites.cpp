#include <vector>

#include "Calcul/cCalcul/Catalogues.h"
#include "interface/LignesReductions.h"
#include "interface/Noms.h"
#include "interface/Poignees.h"
#include "interface/Sens.h"

// The catalogues of kv.h.

namespace kv {

namespace {

constexpr kv_box boiteVide = {.size = 0,
                              .name = "",
                              .label = "",
                              .kind = KV_EUROS,
                              .person = entree::Foyer,
                              .kind_name = "euros",
                              .person_name = "foyer",
                              .group = "",
                              .group_number = -1,
                              .linked = -1,
                              .quotient = -1,
                              .ti = -1,
                              .tix = -1,
                              .tk = -1,
                              .carried = -1,
                              .step = "",
                              .columns = {"", "", ""},
                              .next = "",
                              .takes = ""};
static_assert(static_cast<kv_kind>(sens::Genre::Marque) == KV_MARK);

void Decris(CaseEntree c, kv_box& box) {
    const sens::SensEntree& s = sens::De(c);
    const CaseEntreeDef& fiche = TableEntree[static_cast<std::size_t>(c.numero)];
    box.name = entree::lignes[c.numero].nom;
    box.label = s.libelle.c_str();
    box.kind = static_cast<kv_kind>(s.genre);
    box.kind_name = sens::NomGenre(s.genre);
    box.person = static_cast<int32_t>(fiche.Type);
    box.person_name = sens::Personne(c);
    box.group = sens::NomGroupe(s.groupe);
    box.group_number = static_cast<int32_t>(s.groupe);
    box.linked = fiche.CaseLiee;
    box.quotient = fiche.nQuotient;
    box.ti = fiche.nTI, box.tix = fiche.nTIX, box.tk = fiche.nTK;
}

void Decris(CaseSortie c, kv_box& box) {
    const sens::SensSortie& s = sens::De(c);
    box.name = sortie::noms[c.numero];
    box.label = s.libelle.c_str();
    box.kind = static_cast<kv_kind>(s.genre);
    box.kind_name = sens::NomGenre(s.genre);
    box.group = sens::NomGroupe(s.groupe);
    box.group_number = static_cast<int32_t>(s.groupe);
    box.carried = ReportDe(c).numero;
    box.step = s.etape.c_str();
    box.columns[0] = s.colonnes.c1, box.columns[1] = s.colonnes.c2, box.columns[2] = s.colonnes.c3;
}

void Decris(CaseReport c, kv_box& box) {
    const sens::SensReport& s = sens::De(c);
    box.name = report::noms[c.numero];
    box.label = s.libelle.c_str();
    box.group = "Déclaration suivante";
    box.next = s.boite.c_str();
    box.takes = s.source.c_str();
}

// Calls f with the box type of a catalogue, and how many boxes there are; no such catalogue is unknown.
template <class Fonction>
kv_status DansLeCatalogue(kv_catalogue catalogue, Fonction f) {
    switch (catalogue) {
        case KV_ENTRY:
            return f(CaseEntree(), nEntrees);
        case KV_OUTPUT:
            return f(CaseSortie(), nSorties);
        case KV_CARRY:
            return f(CaseReport(), nReports);
        default:
            return KV_UNKNOWN;
    }
}

int Cherche(CaseEntree, std::string_view nom) { return NumeroEntree(nom); }
int Cherche(CaseSortie, std::string_view nom) { return NumeroSortie(nom); }
int Cherche(CaseReport, std::string_view nom) { return NumeroReport(nom); }

const char* Nom(CaseEntree c) { return entree::lignes[c.numero].nom; }
const char* Nom(CaseSortie c) { return sortie::noms[c.numero]; }
const char* Nom(CaseReport c) { return report::noms[c.numero]; }

}  // namespace

}  // namespace kv

using namespace kv;

kv_status kv_box_count(kv_catalogue catalogue, int32_t* count) {
    if (!count) return KV_NULL;
    return DansLeCatalogue(catalogue, [&](auto, int nombre) { return *count = nombre, KV_OK; });
}

kv_status kv_box_find(kv_catalogue catalogue, const char* name, int32_t* number) {
    if (!name || !number) return KV_NULL;
    return DansLeCatalogue(catalogue, [&](auto c, int) {
        const int numero = Cherche(c, name);
        if (numero < 0) return KV_UNKNOWN;
        return *number = numero, KV_OK;
    });
}

kv_status kv_box_describe(kv_catalogue catalogue, int32_t number, kv_box* box) {
    if (!box) return KV_NULL;
    return Repond(SansMessage(), [&] {
        return DansLeCatalogue(catalogue, [&](auto c, int nombre) -> kv_status {
            if (!EstRang(number, static_cast<std::size_t>(nombre))) return KV_UNKNOWN;
            kv_box decrite = boiteVide;
            Decris(c.Numero(number), decrite);
            return Remplit(box, decrite);
        });
    });
}

kv_status kv_box_search(kv_catalogue catalogue, const char* words, int32_t* numbers, int32_t capacity, int32_t* count) {
    if (!words || !count || (!numbers && capacity > 0)) return KV_NULL;
    return Repond(SansMessage(), [&] {
        return DansLeCatalogue(catalogue, [&](auto c, int nombre) {
            std::vector<int> trouvees;
            for (int i = 0; i < nombre; ++i)
                if (const auto box = c.Numero(i); sens::Correspond(Nom(box), sens::De(box).libelle, words))
                    trouvees.push_back(i);
            return RendRangs(trouvees, numbers, capacity, count);
        });
    });
}

kv_status kv_box_nearest(kv_catalogue catalogue, const char* name, int32_t* numbers, int32_t capacity, int32_t* count) {
    if (!name || !count || (!numbers && capacity > 0)) return KV_NULL;
    return Repond(SansMessage(), [&] {
        return DansLeCatalogue(catalogue, [&](auto c, int nombre) {
            std::vector<std::string_view> noms;
            for (int i = 0; i < nombre; ++i) noms.push_back(Nom(c.Numero(i)));
            return RendRangs(LesPlusProches(name, noms), numbers, capacity, count);
        });
    });
}

kv_status kv_reduction_count(int32_t* count) {
    if (!count) return KV_NULL;
    return Repond(SansMessage(), [&] { return *count = static_cast<int32_t>(LignesReductions().size()), KV_OK; });
}

kv_status kv_reduction_describe(int32_t number, kv_reduction* reduction) {
    if (!reduction) return KV_NULL;
    return Repond(SansMessage(), [&]() -> kv_status {
        const std::vector<LigneReduction>& lignes = LignesReductions();
        if (!EstRang(number, lignes.size())) return KV_UNKNOWN;
        const LigneReduction& l = lignes[static_cast<std::size_t>(number)];
        return Remplit(reduction, {.size = 0,
                                   .output = l.sortie.numero,
                                   .given_back = l.rendue,
                                   .line = sortie::noms[l.sortie.numero],
                                   .base = l.base.c_str(),
                                   .rate = l.taux.c_str(),
                                   .ceiling = l.plafond.c_str(),
                                   .group = l.groupe.c_str(),
                                   .years = l.annees.c_str(),
                                   .last = l.derniere.c_str(),
                                   .carried = l.reports.c_str()});
    });
}
