#include "interface/Populations.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <memory_resource>
#include <thread>

#include "interface/Atelier.h"

// Many returns in columns. Each worker computes in a place of its own, which it keeps from row to row: a row allocates
// nothing that an earlier one has not.

using namespace kv;

namespace {

struct ColonneSaisie {
    CleSaisie cle;
    const std::int32_t* valeurs;
};
struct ColonneFigure {
    CleFigure cle;
    std::int32_t* valeurs;
};

// What every row has in common, and how far the workers are.
struct Tableau {
    Tableau(const Demande& demande, const kv_columns& columns) : cadre(demande), demandees(columns) {}

    const Cadre cadre;
    const kv_columns& demandees;
    std::vector<ColonneSaisie> saisies;
    std::vector<ColonneFigure> figures;
    bool avecReports = false;

    // Rows are given out by lots, in their order: those below the next one have been computed once the workers are
    // done.
    static constexpr std::int64_t lot = 64;
    std::atomic<std::int64_t> prochaine = 0, faites = 0;
    std::atomic<bool> annule = false;
};

// A row that was not computed, and why.
struct Faute {
    std::int64_t ligne = std::numeric_limits<std::int64_t>::max();
    kv_status statut = KV_OK;
};

void NoteLigne(const Tableau& t, std::int64_t ligne, kv_status statut) {
    if (t.demandees.statuses) t.demandees.statuses[ligne] = statut;
    if (statut != KV_OK)
        for (const ColonneFigure& figure : t.figures) figure.valeurs[ligne] = 0;
}

class Ouvrier {
  public:
    explicit Ouvrier(Tableau& tableau) : t(tableau), m_atelier(t.cadre) {
        for (const auto& [cle, valeurs] : t.saisies)
            if (!cle.coefficient)
                m_montants.push_back({valeurs, &Montant(m_atelier.saisie, cle.aire, Place(cle.aire, cle.box)), cle});
            else
                m_exceptionnelles.push_back({cle, valeurs});
    }

    // Computes lots of rows until there are none left or the host cancels; the first row that could not be computed.
    template <class Compte>
    Faute Travaille(Compte rendCompte) noexcept {
        Faute premiere;
        while (!t.annule) {
            const std::int64_t debut = t.prochaine.fetch_add(Tableau::lot);
            const std::int64_t fin = std::min(debut + Tableau::lot, t.demandees.rows);
            if (debut >= fin) break;
            for (std::int64_t ligne = debut; ligne < fin; ++ligne) {
                const kv_status statut = Repond(SansMessage(), [&] { return Calcule(ligne), KV_OK; });
                NoteLigne(t, ligne, statut);
                if (statut != KV_OK && ligne < premiere.ligne) premiere = {ligne, statut};
            }
            rendCompte(t.faites += fin - debut);
        }
        return premiere;
    }

  private:
    void Calcule(std::int64_t ligne) {
        m_atelier.Recommence();
        for (const auto& [de, vers, cle] : m_montants) *vers = SansNonSaisi(cle.aire, cle.box, de[ligne]);
        for (const auto& [cle, valeurs] : m_exceptionnelles)
            if (const std::int32_t montant = nValForc(valeurs[ligne], 0); montant != 0)
                m_atelier.exceptionnels.Pose(cle.box, *cle.coefficient, montant);
        m_atelier.Calcule(t.avecReports);
        for (const auto& [cle, valeurs] : t.figures) valeurs[ligne] = m_atelier.Lit(cle);
    }

    Tableau& t;
    Atelier m_atelier;
    struct Montants {
        const std::int32_t* de;
        std::int32_t* vers;
        CleSaisie cle;
    };
    std::vector<Montants> m_montants;
    std::vector<ColonneSaisie> m_exceptionnelles;
};

kv_status LisColonnes(const kv_columns& columns, Tableau& t, Message& refus) {
    const auto nulle = [&](const auto& colonne) { return !colonne.name || (!colonne.values && columns.rows > 0); };
    for (std::int32_t i = 0; i < columns.input_count; ++i) {
        const kv_input_column& colonne = columns.inputs[i];
        if (nulle(colonne)) return refus.Refuse(KV_NULL);
        const auto [cle, statut, message] = LisCleSaisie(colonne.name);
        if (statut != KV_OK) return refus.Refuse(statut, message);
        if (std::any_of(t.saisies.begin(), t.saisies.end(), [&, &lue = cle](const auto& c) { return c.cle == lue; }))
            return refus.Refuse(KV_BAD_VALUE, std::string(colonne.name) + " stands in two columns");
        t.saisies.push_back({cle, colonne.values});
    }
    for (std::int32_t i = 0; i < columns.output_count; ++i) {
        const kv_output_column& colonne = columns.outputs[i];
        if (nulle(colonne)) return refus.Refuse(KV_NULL);
        const auto [cle, statut, message] = LisCleFigure(colonne.name);
        if (statut != KV_OK) return refus.Refuse(statut, message);
        t.figures.push_back({cle, colonne.values});
        t.avecReports = t.avecReports || cle.report;
    }
    return KV_OK;
}

// How many workers there is work for.
std::size_t NombreDOuvriers(const kv_columns& columns) {
#ifdef __wasm__
    return columns.rows >= 0;  // one: there are no threads there
#else
    const std::int64_t voulus = columns.threads > 0 ? columns.threads : std::thread::hardware_concurrency();
    return static_cast<std::size_t>(std::clamp<std::int64_t>(voulus, 1, columns.rows / Tableau::lot + 1));
#endif
}

// Calls f in n threads, this one included; in fewer where the system has no more.
template <class Fonction>
void EnParallele(std::size_t n, Fonction f) {
#ifdef __wasm__
    f(n - 1);
#else
    std::vector<std::thread> autres;
    Repond(SansMessage(), [&] {
        autres.reserve(n - 1);
        while (autres.size() < n - 1) autres.emplace_back(f, autres.size() + 1);
        return KV_OK;
    });
    f(std::size_t{0});
    for (std::thread& autre : autres) autre.join();
#endif
}

}  // namespace

kv_status kv::CalculeColonnes(const Demande& demande, const kv_columns& columns, Message& refus) try {
    Tableau t(demande, columns);
    if (const kv_status statut = LisColonnes(columns, t, refus); statut != KV_OK) return statut;
    std::int64_t dites = 0;
    const auto rendCompte = [&](std::int64_t faites) {
        dites = faites;
        if (columns.progress && columns.progress(faites, columns.rows, columns.context) != 0) t.annule = true;
    };
    rendCompte(0);
    std::vector<Faute> fautes(NombreDOuvriers(columns));
    const auto premier = std::make_unique<Ouvrier>(t);
    EnParallele(fautes.size(), [&](std::size_t rang) noexcept {
        if (rang == 0) {
            fautes[0] = premier->Travaille(rendCompte);
        } else {  // without memory for a worker, the others do its work
            Repond(SansMessage(), [&] {
                const auto ouvrier = std::make_unique<Ouvrier>(t);
                return fautes[rang] = ouvrier->Travaille([](std::int64_t) {}), KV_OK;
            });
        }
    });
    if (t.faites != dites) rendCompte(t.faites);  // the last rows were those of other workers
    Faute premiere = *std::min_element(fautes.begin(), fautes.end(),
                                       [](const Faute& a, const Faute& b) { return a.ligne < b.ligne; });
    const std::int64_t atteintes = std::min(t.prochaine.load(), columns.rows);
    for (std::int64_t ligne = atteintes; ligne < columns.rows; ++ligne) NoteLigne(t, ligne, KV_CANCELLED);
    if (atteintes < std::min(columns.rows, premiere.ligne)) premiere = {atteintes, KV_CANCELLED};
    return premiere.statut == KV_OK ? KV_OK : refus.Refuse(premiere.statut);
} catch (...) {  // before the first row
    for (std::int64_t ligne = 0; ligne < columns.rows; ++ligne) {
        if (columns.statuses) columns.statuses[ligne] = KV_NO_MEMORY;
        for (std::int32_t i = 0; i < columns.output_count; ++i)
            if (columns.outputs[i].values) columns.outputs[i].values[ligne] = 0;
    }
    throw;
}

kv_status kv_compute_columns(kv_return* r, const kv_columns* columns) {
    return Avec(
        r,
        [&](kv_return& retour) {
            if (columns->size < premiereTaille<kv_columns>) return retour.message.Refuse(KV_BAD_SIZE);
            if (columns->rows < 0 || columns->input_count < 0 || columns->output_count < 0 || columns->threads < 0)
                return retour.message.Refuse(KV_BAD_VALUE, "a number of rows, columns or threads is negative");
            if ((!columns->inputs && columns->input_count > 0) || (!columns->outputs && columns->output_count > 0))
                return retour.message.Refuse(KV_NULL);
            return CalculeColonnes(retour.demande, *columns, retour.message);
        },
        columns);
}
