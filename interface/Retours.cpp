#include <chrono>
#include <cmath>

#include "interface/Avertissements.h"
#include "interface/Cles.h"
#include "interface/Retour.h"

// A return in kv.h: what a household declares, and how it wants to be computed.

using namespace kv;

namespace {

bool EstDate(std::int32_t aaaammjj) {
    const std::int32_t annee = aaaammjj / 10000, mois = aaaammjj / 100 % 100, jour = aaaammjj % 100;
    const std::chrono::year_month_day date{std::chrono::year(annee), std::chrono::month(static_cast<unsigned>(mois)),
                                           std::chrono::day(static_cast<unsigned>(jour))};
    return 10000 <= aaaammjj && annee <= 9999 && date.ok();
}

// The amount of an entry box in an area; null, with the status of the refusal, when there is none.
std::int32_t* MontantDe(kv_return& r, kv_area area, std::int32_t entry, kv_status& statut) {
    if (!EstRang(entry, nEntrees)) return statut = NumeroInconnu(r, "entry box", entry), nullptr;
    if (!EstRang(area, KV_AREA_TKZ + 1)) return statut = NumeroInconnu(r, "area", area), nullptr;
    const auto aire = static_cast<Aire>(area);
    const std::int32_t place = Place(aire, CaseEntree::Numero(entry));
    if (place >= 0) return &Montant(r.demande.saisie, aire, place);
    statut = r.message.Refuse(
        KV_NO_AMOUNT, std::string("box ") + entree::lignes[entry].nom + " has no amount in \"" + NomAire(aire) + '"');
    return nullptr;
}

// Whether a box can hold exceptional income; the status of the refusal otherwise.
kv_status ControleExceptionnel(kv_return& r, std::int32_t entry) {
    if (!EstRang(entry, nEntrees)) return NumeroInconnu(r, "entry box", entry);
    if (PeutEtreExceptionnel(CaseEntree::Numero(entry))) return KV_OK;
    return r.message.Refuse(KV_NO_AMOUNT,
                            std::string("box ") + entree::lignes[entry].nom + " has no amount in \"quotient\"");
}

}  // namespace

// ---- Handles.

kv_status kv_return_create(kv_return** created) {
    if (!created) return KV_NULL;
    return Repond(SansMessage(), [&] { return *created = new kv_return{}, KV_OK; });
}

kv_status kv_return_copy(const kv_return* original, kv_return** copy) {
    if (!original || !copy) return KV_NULL;
    return Repond(SansMessage(),
                  [&] { return *copy = new kv_return{original->demande, original->resultats, {}, {}, {}, {}}, KV_OK; });
}

void kv_return_free(kv_return* r) { delete r; }

kv_status kv_return_clear(kv_return* r) {
    return Avec(r, [](kv_return& retour) {
        retour.demande = {};
        retour.resultats.reset();
        retour.avertissements.clear();
        retour.effets.clear();
        retour.explication.clear();
        return KV_OK;
    });
}

const char* kv_message(const kv_return* r) { return r ? r->message.Texte() : ""; }

// ---- What is declared.

kv_status kv_set(kv_return* r, const char* name, int32_t value) {
    return Avec(
        r,
        [&](kv_return& retour) {
            const auto [cle, statut, message] = LisCleSaisie(name);
            if (statut != KV_OK) return retour.message.Refuse(statut, message);
            if (cle.coefficient)
                retour.demande.exceptionnels.Pose(cle.box, *cle.coefficient, value);
            else
                Montant(retour.demande.saisie, cle.aire, Place(cle.aire, cle.box)) = value;
            return kv_status{KV_OK};
        },
        name);
}

kv_status kv_get(kv_return* r, const char* name, int32_t* value) {
    return Avec(
        r,
        [&](kv_return& retour) {
            const auto [cle, statut, message] = LisCleSaisie(name);
            if (statut != KV_OK) return retour.message.Refuse(statut, message);
            *value = cle.coefficient ? retour.demande.exceptionnels.De(cle.box, *cle.coefficient)
                                     : Montant(retour.demande.saisie, cle.aire, Place(cle.aire, cle.box));
            return kv_status{KV_OK};
        },
        name, value);
}

kv_status kv_set_box(kv_return* r, kv_area area, int32_t entry, int32_t value) {
    return Avec(r, [&](kv_return& retour) {
        kv_status statut = KV_OK;
        if (std::int32_t* const montant = MontantDe(retour, area, entry, statut)) *montant = value;
        return statut;
    });
}

kv_status kv_get_box(kv_return* r, kv_area area, int32_t entry, int32_t* value) {
    return Avec(
        r,
        [&](kv_return& retour) {
            kv_status statut = KV_OK;
            if (const std::int32_t* const montant = MontantDe(retour, area, entry, statut)) *value = *montant;
            return statut;
        },
        value);
}

kv_status kv_set_exceptional(kv_return* r, int32_t entry, int32_t coefficient, int32_t amount) {
    return Avec(r, [&](kv_return& retour) {
        const kv_status statut = ControleExceptionnel(retour, entry);
        if (statut == KV_OK) retour.demande.exceptionnels.Pose(CaseEntree::Numero(entry), coefficient, amount);
        return statut;
    });
}

kv_status kv_get_exceptional(kv_return* r, int32_t entry, int32_t coefficient, int32_t* amount) {
    return Avec(
        r,
        [&](kv_return& retour) {
            const kv_status statut = ControleExceptionnel(retour, entry);
            if (statut == KV_OK) *amount = retour.demande.exceptionnels.De(CaseEntree::Numero(entry), coefficient);
            return statut;
        },
        amount);
}

kv_status kv_exceptional_count(kv_return* r, int32_t* count) {
    return Avec(
        r,
        [&](kv_return& retour) {
            return *count = static_cast<int32_t>(retour.demande.exceptionnels.montants.size()), KV_OK;
        },
        count);
}

kv_status kv_exceptional_at(kv_return* r, int32_t index, int32_t* entry, int32_t* coefficient, int32_t* amount) {
    return Avec(
        r,
        [&](kv_return& retour) {
            const auto& montants = retour.demande.exceptionnels.montants;
            if (!EstRang(index, montants.size())) return NumeroInconnu(retour, "exceptional amount", index);
            const auto& montant = montants[static_cast<std::size_t>(index)];
            *entry = montant.box.numero, *coefficient = montant.coefficient, *amount = montant.montant;
            return kv_status{KV_OK};
        },
        entry, coefficient, amount);
}

kv_status kv_set_period(kv_return* r, int32_t first, int32_t last) {
    return Avec(r, [&](kv_return& retour) {
        for (const std::int32_t date : {first, last})
            if (!EstDate(date))
                return retour.message.Refuse(KV_BAD_VALUE, std::to_string(date) + " is not a date (AAAAMMJJ)");
        if (last < first) return retour.message.Refuse(KV_BAD_VALUE, "period ends before it begins");
        retour.demande.debut = first, retour.demande.fin = last;
        return kv_status{KV_OK};
    });
}

kv_status kv_get_period(kv_return* r, int32_t* first, int32_t* last) {
    return Avec(
        r, [&](kv_return& retour) { return *first = retour.demande.debut, *last = retour.demande.fin, KV_OK; }, first,
        last);
}

kv_status kv_set_launch(kv_return* r, kv_launch launch) {
    return Avec(r, [&](kv_return& retour) {
        if (!EstRang(launch, KV_LAUNCH_FORCED_OPTIONS + 1)) return NumeroInconnu(retour, "launch", launch);
        return retour.demande.lancement = launch, kv_status{KV_OK};
    });
}

kv_status kv_get_launch(kv_return* r, kv_launch* launch) {
    return Avec(
        r, [&](kv_return& retour) { return *launch = retour.demande.lancement, KV_OK; }, launch);
}

kv_status kv_set_indexation(kv_return* r, double percent) {
    return Avec(r, [&](kv_return& retour) {
        if (!std::isfinite(percent)) return retour.message.Refuse(KV_BAD_VALUE, "the indexation is not a number");
        return retour.demande.indexation = percent, kv_status{KV_OK};
    });
}

kv_status kv_get_indexation(kv_return* r, double* percent) {
    return Avec(
        r, [&](kv_return& retour) { return *percent = retour.demande.indexation, KV_OK; }, percent);
}

kv_status kv_set_law(kv_return* r, const kv_law* law) {
    return Avec(r, [&](kv_return& retour) {
        const Loi& loi = law ? law->loi : loi2017;
        if (const std::string defaut = Defaut(loi); !defaut.empty()) return retour.message.Refuse(KV_BAD_VALUE, defaut);
        return retour.demande.loi = loi, kv_status{KV_OK};
    });
}

kv_status kv_get_law(kv_return* r, kv_law* law) {
    return Avec(
        r, [&](kv_return& retour) { return law->loi = retour.demande.loi, KV_OK; }, law);
}

kv_status kv_check(kv_return* r, int32_t* count) {
    return Avec(
        r,
        [&](kv_return& retour) {
            retour.avertissements = Avertissements(retour.demande.saisie.entrees);
            return *count = static_cast<int32_t>(retour.avertissements.size()), KV_OK;
        },
        count);
}

kv_status kv_warning(kv_return* r, int32_t index, const char** text) {
    return Avec(
        r,
        [&](kv_return& retour) {
            if (!EstRang(index, retour.avertissements.size())) return NumeroInconnu(retour, "warning", index);
            return *text = retour.avertissements[static_cast<std::size_t>(index)].c_str(), kv_status{KV_OK};
        },
        text);
}
