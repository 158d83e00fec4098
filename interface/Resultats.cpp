#include <cstring>

#include "Calcul/pCalculN/Reports.h"
#include "interface/Cles.h"
#include "interface/Explications.h"
#include "interface/Retour.h"

// The computation of a return in kv.h, and what it finds.

using namespace kv;

namespace {

double DateDe(std::int32_t aaaammjj) { return Date(aaaammjj / 10000, aaaammjj / 100 % 100, aaaammjj % 100); }

// ouvreTrace: called with the computation before it begins.
template <class Fonction>
std::shared_ptr<const Resultats> Calcule(const Demande& demande, Fonction ouvreTrace) {
    Saisie saisie = SansNonSaisis(demande.saisie);
    const Exceptionnels exceptionnels = SansNonSaisis(demande.exceptionnels);
    const LoiAppliquee loi(demande.loi, demande.indexation);
    auto resultats = std::make_shared_for_overwrite<Resultats>();  // its lines clear themselves
    const auto calculateur =
        std::make_unique<Calculateur>(saisie, exceptionnels, resultats->lignes, LancementDe(demande), loi);
    ouvreTrace(*calculateur);
    const TPeriode periode = PeriodeDe(demande);
    calculateur->Calcul(periode);
    calculateur->Calcul_ISF();
    if (calculateur->TracePerdue()) throw std::bad_alloc();
    RemplitReports(saisie, resultats->lignes, resultats->reports);
    resultats->entrees = demande.saisie.entrees;
    calculateur->EcritEntrees(resultats->entrees);
    resultats->options = calculateur->Options();
    return resultats;
}

// Calls f(return, results) within the guard; without results the return has not been computed.
template <class Fonction, class... Pointeurs>
kv_status AvecResultats(kv_return* r, Fonction f, const Pointeurs*... pointeurs) {
    return Avec(
        r,
        [&](kv_return& retour) {
            return retour.resultats ? f(retour, *retour.resultats) : retour.message.Refuse(KV_NOT_COMPUTED);
        },
        pointeurs...);
}

std::int32_t Net(const Comparaison::Net& net) { return net.aPayer - net.restitue; }

}  // namespace

TPeriode kv::PeriodeDe(const Demande& demande) {
    TPeriode periode(anneeDesRevenus);
    periode.Deb = DateDe(demande.debut), periode.Fin = DateDe(demande.fin);
    return periode;
}

Lancement kv::LancementDe(const Demande& demande) {
    const kv_launch l = demande.lancement;
    return {.optionsForcees = l == KV_LAUNCH_FORCED || l == KV_LAUNCH_FORCED_OPTIONS,
            .optionsSiSaisies = l == KV_LAUNCH_OPTIONS || l == KV_LAUNCH_FORCED_OPTIONS};
}

std::shared_ptr<const Resultats> kv::CalculeRetour(const Demande& demande, Observateur* observateur) {
    return Calcule(demande, [&](Calculateur& c) {
        if (observateur) c.Observe(*observateur);
    });
}

kv_status kv_compute(kv_return* r) {
    return Avec(r, [](kv_return& retour) {
        return retour.resultats = Calcule(retour.demande, [](Calculateur& c) { c.OuvreTrace(); }), KV_OK;
    });
}

kv_status kv_compute_traced(kv_return* r, kv_trace_line line, void* context) {
    struct Lecteur {
        kv_trace_line line;
        void* context;
    } lecteur{line, context};
    const auto recoit = [](std::u16string_view ligne, void* contexte) {
        const Lecteur& l = *static_cast<Lecteur*>(contexte);
        l.line(VersUtf8(ligne).c_str(), l.context);
    };
    return Avec(r, [&](kv_return& retour) {
        if (!line) return retour.message.Refuse(KV_NULL);
        const auto ouvre = [&](Calculateur& c) { c.OuvreTrace(recoit, &lecteur); };
        return retour.resultats = Calcule(retour.demande, ouvre), kv_status{KV_OK};
    });
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

kv_status kv_explain(kv_return* r, const char* figure, int32_t depth, const char** json) {
    return Avec(
        r,
        [&](kv_return& retour) {
            const auto [lue, statut, message] = LisFigure(figure);
            if (statut != KV_OK) return retour.message.Refuse(statut, message);
            retour.explication = Explique(retour.demande, lue, depth);
            return *json = retour.explication.c_str(), kv_status{KV_OK};
        },
        json);
}

kv_status kv_explain_difference(kv_return* before, kv_return* after, const char* figure, int32_t depth,
                                const char** json) {
    return Avec(
        after,
        [&](kv_return& retour) {
            const auto [lue, statut, message] = LisFigure(figure);
            if (statut != KV_OK) return retour.message.Refuse(statut, message);
            retour.explication = ExpliqueDifference(before->demande, retour.demande, lue, depth);
            return *json = retour.explication.c_str(), kv_status{KV_OK};
        },
        before, json);
}
