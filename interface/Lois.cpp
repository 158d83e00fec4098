#include <memory>
#include <string>
#include <vector>

#include "interface/LignesReductions.h"
#include "interface/Noms.h"
#include "interface/Poignees.h"
#include "support/KVTarvel.h"

// The law in kv.h.

using namespace kv;

namespace {

// Why no parameter has a name: the one that is meant.
std::string ParametreInconnu(std::string_view nom) {
    std::string suite;
    if (const std::string regle = RegleDe(nom); !regle.empty()) {
        suite = "; that line follows " + regle;
    } else {
        std::vector<std::string_view> noms;
        for (const LigneLoi& ligne : lignesLoi) noms.push_back(ligne.nom);
        std::vector<std::string> proches;
        for (const std::size_t i : LesPlusProches(nom, noms)) proches.emplace_back(noms[i]);
        suite = Liste(proches);
    }
    return "unknown parameter \"" + std::string(nom) + '"' + suite;
}

// Calls f with a parameter that the host names, or numbers.
template <class Fonction>
kv_status AvecParametre(kv_law& law, const char* nom, Fonction f) {
    const Parametre p = ChercheParametre(nom);
    return p ? f(p) : law.message.Refuse(KV_UNKNOWN, ParametreInconnu(nom));
}
template <class Fonction>
kv_status AvecParametre(kv_law& law, int32_t numero, Fonction f) {
    if (EstRang(numero, nParametres)) return f(Parametre::Numero(numero));
    return law.message.Refuse(KV_UNKNOWN, "no parameter has the number " + std::to_string(numero));
}

template <class Designation>
kv_status Fixe(kv_law* law, Designation parametre, double valeur) {
    return Repond(law->message, [&] {
        return AvecParametre(*law, parametre, [&](Parametre p) {
            const std::string etendue = kv::Fixe(law->loi, p, valeur);
            if (etendue.empty()) return kv_status{KV_OK};
            return law->message.Refuse(
                KV_BAD_VALUE, std::string(p.Ligne().nom) + ": " + VersUtf8(FloatToStr(valeur)) + " is not " + etendue);
        });
    });
}
template <class Designation>
kv_status Lis(kv_law* law, Designation parametre, double* valeur) {
    return Repond(law->message, [&] {
        return AvecParametre(*law, parametre,
                             [&](Parametre p) { return *valeur = Valeur(law->loi, p), kv_status{KV_OK}; });
    });
}

kv_status Nouvelle(const Loi& loi, kv_law** law) {
    if (!law) return KV_NULL;
    return Repond(SansMessage(), [&] { return *law = new kv_law{loi, {}}, KV_OK; });
}

}  // namespace

kv_status kv_parameter_count(int32_t* count) {
    if (!count) return KV_NULL;
    return *count = static_cast<int32_t>(nParametres), KV_OK;
}

kv_status kv_parameter_find(const char* name, int32_t* number) {
    if (!name || !number) return KV_NULL;
    const Parametre p = ChercheParametre(name);
    if (!p) return KV_UNKNOWN;
    return *number = p.numero, KV_OK;
}

kv_status kv_parameter_describe(int32_t number, kv_parameter* parameter) {
    if (!parameter) return KV_NULL;
    if (!EstRang(number, nParametres)) return KV_UNKNOWN;
    const Parametre p = Parametre::Numero(number);
    const LigneLoi& ligne = p.Ligne();
    const Etendue etendue = EtendueDe(ligne.unite);
    return Remplit(parameter, {.size = 0,
                               .name = ligne.nom,
                               .unit = NomUnite(ligne.unite),
                               .source = ligne.source,
                               .indexed = ligne.indexe,
                               .decimals = etendue.decimales,
                               .value = Valeur(loi2017, p),
                               .minimum = 0,
                               .maximum = etendue.maximum});
}

kv_status kv_parameter_search(const char* text, int32_t* numbers, int32_t capacity, int32_t* count) {
    if (!text || !count || (!numbers && capacity > 0)) return KV_NULL;
    return Repond(SansMessage(), [&] {
        const std::string cherche = EnMinuscules(text);
        const auto contient = [&](const char* t) { return EnMinuscules(t).find(cherche) != std::string::npos; };
        std::vector<std::size_t> trouves;
        for (std::size_t i = 0; i < nParametres; ++i)
            if (contient(lignesLoi[i].nom) || contient(lignesLoi[i].source)) trouves.push_back(i);
        return RendRangs(trouves, numbers, capacity, count);
    });
}

kv_status kv_law_create(kv_law** law) { return Nouvelle(loi2017, law); }
kv_status kv_law_copy(const kv_law* law, kv_law** copy) { return law ? Nouvelle(law->loi, copy) : KV_NULL; }
void kv_law_free(kv_law* law) { delete law; }
const char* kv_law_message(const kv_law* law) { return law ? law->message.Texte() : ""; }

kv_status kv_law_set(kv_law* law, const char* parameter, double value) {
    if (!law) return KV_NULL;
    return parameter ? Fixe(law, parameter, value) : law->message.Refuse(KV_NULL);
}
kv_status kv_law_set_parameter(kv_law* law, int32_t number, double value) {
    return law ? Fixe(law, number, value) : KV_NULL;
}
kv_status kv_law_get(kv_law* law, const char* parameter, double* value) {
    if (!law) return KV_NULL;
    return parameter && value ? Lis(law, parameter, value) : law->message.Refuse(KV_NULL);
}
kv_status kv_law_get_parameter(kv_law* law, int32_t number, double* value) {
    if (!law) return KV_NULL;
    return value ? Lis(law, number, value) : law->message.Refuse(KV_NULL);
}

kv_status kv_law_check(kv_law* law) {
    if (!law) return KV_NULL;
    return Repond(law->message, [&] {
        const std::string defaut = Defaut(law->loi);
        return defaut.empty() ? KV_OK : law->message.Refuse(KV_BAD_VALUE, defaut);
    });
}
