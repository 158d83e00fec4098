#include <chrono>
#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Calcul/pCalculN/Calculateur.h"
#include "Calcul/pCalculN/Reports.h"
#include "interface/Avertissements.h"
#include "interface/Cles.h"
#include "interface/Poignees.h"

// A return in kv.h: what a household declares, its computation, and what it finds.

namespace {

using namespace kv;

// What a computation found.
struct Resultats {
    ZoneEntree entrees;  // as the launch left them
    Lignes lignes;
    ZoneReport reports{};
    std::optional<OptionsComparees> options;
};

// What a household declares, and how it wants to be computed.
struct Demande {
    Saisie saisie{};
    Exceptionnels exceptionnels;
    std::int32_t debut = 20170101, fin = 20171231;
    kv_launch lancement = KV_LAUNCH_NORMAL;
    double indexation = -1.0;
    Loi loi = loi2017;
};

}  // namespace

struct kv_return {
    Demande demande;
    std::shared_ptr<const Resultats> resultats;  // of the last computation; copies share them
    std::vector<std::string> avertissements;     // of the last check
    Message message;
};

namespace {

std::optional<double> DateDe(std::int32_t aaaammjj) {
    const std::int32_t annee = aaaammjj / 10000, mois = aaaammjj / 100 % 100, jour = aaaammjj % 100;
    if (aaaammjj < 10000 || annee > 9999) return {};
    const std::chrono::year_month_day date{std::chrono::year(annee), std::chrono::month(static_cast<unsigned>(mois)),
                                           std::chrono::day(static_cast<unsigned>(jour))};
    if (!date.ok()) return {};
    return Date(annee, mois, jour);
}

std::shared_ptr<const Resultats> Calcule(const Demande& demande) {
    TPeriode periode(anneeDesRevenus);
    periode.Deb = *DateDe(demande.debut), periode.Fin = *DateDe(demande.fin);
    Saisie saisie = SansNonSaisis(demande.saisie);
    const Exceptionnels exceptionnels = SansNonSaisis(demande.exceptionnels);
    const Lancement lancement = {
        .tauxIndexation = demande.indexation,
        .optionsForcees = demande.lancement == KV_LAUNCH_FORCED || demande.lancement == KV_LAUNCH_FORCED_OPTIONS,
        .optionsSiSaisies = demande.lancement == KV_LAUNCH_OPTIONS || demande.lancement == KV_LAUNCH_FORCED_OPTIONS};
    auto resultats = std::make_shared_for_overwrite<Resultats>();  // its lines clear themselves
    const auto calculateur =
        std::make_unique<Calculateur>(saisie, exceptionnels, resultats->lignes, lancement, demande.loi);
    calculateur->SupprimeFichierTrace();
    calculateur->Calcul(periode);
    calculateur->Calcul_ISF();
    RemplitReports(saisie, resultats->lignes, resultats->reports);
    resultats->entrees = demande.saisie.entrees;
    calculateur->EcritEntrees(resultats->entrees);
    resultats->options = calculateur->Options();
    return resultats;
}

// ---- What the functions have in common.

// Calls f(return) within the guard; a null among the pointers, the return first, is a status.
template <class Fonction, class... Pointeurs>
kv_status Avec(kv_return* r, Fonction f, const Pointeurs*... pointeurs) {
    if (!r) return KV_NULL;
    if ((!pointeurs || ...)) return r->message.Refuse(KV_NULL);
    return Repond(r->message, [&]() -> kv_status { return f(*r); });
}

// The same with the results, where there are some.
template <class Fonction, class... Pointeurs>
kv_status AvecResultats(kv_return* r, Fonction f, const Pointeurs*... pointeurs) {
    return Avec(
        r,
        [&](kv_return& retour) {
            return retour.resultats ? f(retour, *retour.resultats) : retour.message.Refuse(KV_NOT_COMPUTED);
        },
        pointeurs...);
}

kv_status NumeroInconnu(kv_return& r, const char* quoi, std::int32_t numero) {
    return r.message.Refuse(KV_UNKNOWN, std::string("no ") + quoi + " has the number " + std::to_string(numero));
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

std::int32_t Figure(const Ligne& ligne, std::size_t colonne) {
    return colonne == 0 ? ligne.valeur : ligne.colonnes[colonne - 1];
}
constexpr std::size_t nColonnes = 4;  // the value, then the three columns

std::int32_t Net(const Comparaison::Net& net) { return net.aPayer - net.restitue; }

}  // namespace

// ---- Handles.

kv_status kv_return_create(kv_return** created) {
    if (!created) return KV_NULL;
    return Repond(SansMessage(), [&] { return *created = new kv_return{}, KV_OK; });
}

kv_status kv_return_copy(const kv_return* original, kv_return** copy) {
    if (!original || !copy) return KV_NULL;
    return Repond(SansMessage(), [&] {
        return *copy = new kv_return{original->demande, original->resultats, {}, {}}, KV_OK;
    });
}

void kv_return_free(kv_return* r) { delete r; }

kv_status kv_return_clear(kv_return* r) {
    return Avec(r, [](kv_return& retour) {
        retour.demande = {};
        retour.resultats.reset();
        retour.avertissements.clear();
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
            if (!DateDe(date))
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

// ---- What is found.

kv_status kv_compute(kv_return* r) {
    return Avec(r, [](kv_return& retour) { return retour.resultats = Calcule(retour.demande), KV_OK; });
}

kv_status kv_read(kv_return* r, const char* name, int32_t* value) {
    return AvecResultats(
        r,
        [&](kv_return& retour, const Resultats& resultats) {
            const auto [cle, statut, message] = LisCleFigure(name);
            if (statut != KV_OK) return retour.message.Refuse(statut, message);
            *value = cle.report ? resultats.reports[cle.report] : Figure(resultats.lignes.Lit(cle.sortie), cle.colonne);
            return kv_status{KV_OK};
        },
        name, value);
}

kv_status kv_read_output(kv_return* r, int32_t output, int32_t column, int32_t* value) {
    return AvecResultats(
        r,
        [&](kv_return& retour, const Resultats& resultats) {
            if (!EstRang(output, nSorties)) return NumeroInconnu(retour, "output", output);
            if (!EstRang(column, nColonnes)) return NumeroInconnu(retour, "column", column);
            *value = Figure(resultats.lignes.Lit(CaseSortie::Numero(output)), static_cast<std::size_t>(column));
            return kv_status{KV_OK};
        },
        value);
}

kv_status kv_read_outputs(kv_return* r, int32_t column, int32_t* values, int32_t count) {
    return AvecResultats(
        r,
        [&](kv_return& retour, const Resultats& resultats) {
            if (!EstRang(column, nColonnes)) return NumeroInconnu(retour, "column", column);
            if (!EstRang(count, nSorties + 1)) return NumeroInconnu(retour, "output", count - (count > 0));
            for (int j = 0; j < count; ++j)
                values[j] = Figure(resultats.lignes.Lit(CaseSortie::Numero(j)), static_cast<std::size_t>(column));
            return kv_status{KV_OK};
        },
        values);
}

kv_status kv_read_text(kv_return* r, int32_t output, char* text, size_t size, size_t* length) {
    return AvecResultats(r, [&](kv_return& retour, const Resultats& resultats) {
        if (!text && size > 0) return retour.message.Refuse(KV_NULL);
        if (!EstRang(output, nSorties)) return NumeroInconnu(retour, "output", output);
        const std::string trouve = VersUtf8(resultats.lignes.LitTexte(CaseSortie::Numero(output)));
        if (length) *length = trouve.size();
        if (trouve.size() >= size) return retour.message.Refuse(KV_TOO_SMALL);
        std::memcpy(text, trouve.c_str(), trouve.size() + 1);
        return kv_status{KV_OK};
    });
}

kv_status kv_read_carry(kv_return* r, int32_t carry, int32_t* value) {
    return AvecResultats(
        r,
        [&](kv_return& retour, const Resultats& resultats) {
            if (!EstRang(carry, nReports)) return NumeroInconnu(retour, "carry-forward box", carry);
            return *value = resultats.reports[CaseReport::Numero(carry)], kv_status{KV_OK};
        },
        value);
}

kv_status kv_read_entry(kv_return* r, int32_t entry, int32_t* value) {
    return AvecResultats(
        r,
        [&](kv_return& retour, const Resultats& resultats) {
            if (!EstRang(entry, nEntrees)) return NumeroInconnu(retour, "entry box", entry);
            return *value = resultats.entrees[CaseEntree::Numero(entry)], kv_status{KV_OK};
        },
        value);
}

kv_status kv_read_options(kv_return* r, kv_options* options) {
    return AvecResultats(
        r,
        [&](kv_return& retour, const Resultats& resultats) {
            kv_options trouvees = {};
            if (const auto& o = resultats.options)
                trouvees = {.size = 0,
                            .compared = 1,
                            .flat_tax = Net(o->nets.forfait),
                            .scale = Net(o->nets.bareme),
                            .applied = o->forfait ? KV_FLAT_TAX : KV_SCALE};
            const kv_status statut = Remplit(options, trouvees);
            return statut == KV_OK ? statut : retour.message.Refuse(statut);
        },
        options);
}
