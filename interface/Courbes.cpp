#include <algorithm>
#include <numeric>
#include <optional>

#include "interface/Cles.h"
#include "interface/Populations.h"

// A figure as one amount of a return grows.

using namespace kv;

namespace {

constexpr std::int32_t borne = 1'000'000'000;

std::int64_t NombreDePas(const kv_range& range) { return (std::int64_t{range.to} - range.from) / range.step + 1; }

// Computes n amounts, from the first one on, in blocks; calls f with each amount and its figure.
class Balayage {
  public:
    Balayage(const kv_return& r, const kv_range& range, const FigureLue& figure)
        : m_demande(r.demande), m_range(range), m_net(figure.net) {
        // A column of exceptional amounts says nothing of a 0: here it stands for one.
        if (const CleSaisie cle = LisCleSaisie(range.amount).cle; cle.coefficient)
            m_demande.exceptionnels.Pose(cle.box, *cle.coefficient, 0);
    }

    template <class Fonction>
    kv_status Parcourt(std::int64_t n, std::int32_t pas, Message& refus, Fonction f) {
        constexpr std::int64_t bloc = 1 << 14;
        const auto taille = static_cast<std::size_t>(std::min(n, bloc));
        std::vector<std::int32_t> montants(taille), valeurs(taille), moins(m_net ? taille : 0);
        const kv_input_column entree = {m_range.amount, montants.data()};
        const kv_output_column sorties[] = {{m_net ? "S_NET_A_PAYER" : m_range.figure, valeurs.data()},
                                            {"S_NET_RESTITUE", moins.data()}};
        struct Avancement {
            const kv_range& range;
            std::int64_t faites, n;
            bool annule;
        } avancement{m_range, 0, n, false};
        kv_columns colonnes{};
        colonnes.size = sizeof colonnes;
        colonnes.inputs = &entree, colonnes.input_count = 1;
        colonnes.outputs = sorties, colonnes.output_count = m_net ? 2 : 1;
        colonnes.threads = m_range.threads;
        colonnes.context = &avancement;
        if (m_range.progress)
            colonnes.progress = [](int64_t faites, int64_t, void* contexte) {
                Avancement& a = *static_cast<Avancement*>(contexte);
                const int32_t reponse = a.range.progress(a.faites + faites, a.n, a.range.context);
                a.annule = a.annule || reponse != 0;
                return reponse;
            };
        for (std::int64_t debut = 0; debut < n; debut += bloc, avancement.faites = debut) {
            if (avancement.annule) return refus.Refuse(KV_CANCELLED);  // after the last row of the block before
            colonnes.rows = std::min(bloc, n - debut);
            const auto lignes = static_cast<std::size_t>(colonnes.rows);
            for (std::size_t i = 0; i < lignes; ++i)
                montants[i] = static_cast<std::int32_t>(m_range.from + (debut + static_cast<std::int64_t>(i)) * pas);
            if (const kv_status statut = CalculeColonnes(m_demande, colonnes, refus); statut != KV_OK) return statut;
            for (std::size_t i = 0; i < lignes; ++i) f(montants[i], m_net ? valeurs[i] - moins[i] : valeurs[i]);
        }
        return KV_OK;
    }

  private:
    Demande m_demande;
    const kv_range& m_range;
    const bool m_net;
};

// Calls f(range, figure) once the range is known to be one.
template <class Fonction>
kv_status AvecBalayage(kv_return* r, const kv_range* range, int32_t* count, Fonction f) {
    return Avec(
        r,
        [&](kv_return& retour) {
            if (range->size < premiereTaille<kv_range>) return retour.message.Refuse(KV_BAD_SIZE);
            if (!range->amount) return retour.message.Refuse(KV_NULL);
            const auto montant = LisCleSaisie(range->amount);
            if (montant.statut != KV_OK) return retour.message.Refuse(montant.statut, montant.message);
            const auto figure = LisFigure(range->figure);
            if (figure.statut != KV_OK) return retour.message.Refuse(figure.statut, figure.message);
            if (range->from < -borne || range->to > borne || range->to < range->from)
                return retour.message.Refuse(KV_BAD_VALUE,
                                             "from and to are not an interval within one thousand million");
            if (range->step < 1 || range->step > borne || range->threads < 0)
                return retour.message.Refuse(
                    KV_BAD_VALUE, "the step is not 1 to one thousand million, or a number of threads is negative");
            Balayage balayage(retour, *range, figure.cle);
            return f(retour, balayage);
        },
        range, count);
}

// ---- Straight pieces.

constexpr std::int64_t milliardiemes = 1'000'000'000;  // rates have 9 decimals

std::int64_t DivisePlancher(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0); }
std::int64_t DivisePlafond(std::int64_t a, std::int64_t b) { return a / b + (a % b > 0); }

// The rates, in thousand millionths, of the lines that pass within one euro of every figure of a piece.
class Morceau {
  public:
    Morceau(std::int32_t debut, std::int32_t valeur) : m_debut(debut), m_fin(debut), m_valeur(valeur) {}

    // Goes on to the next amount; false when no line goes as far.
    bool Prolonge(std::int32_t montant, std::int32_t valeur) {
        const std::int64_t pas = std::int64_t{montant} - m_debut, ecart = std::int64_t{valeur} - m_valeur;
        const std::int64_t min = std::max(m_min, DivisePlafond((ecart - 1) * milliardiemes, pas));
        const std::int64_t max = std::min(m_max, DivisePlancher((ecart + 1) * milliardiemes, pas));
        if (min > max) return false;
        m_min = min, m_max = max, m_fin = montant;
        return true;
    }
    kv_piece Rend() const { return {m_debut, m_fin, static_cast<double>(Taux()) / milliardiemes, m_valeur}; }

  private:
    // Of the rates that fit the one with the fewest decimals: 0.126 rather than 0.126000071.
    std::int64_t Taux() const {
        if (m_fin == m_debut) return 0;
        for (std::int64_t unite = milliardiemes;; unite /= 10) {
            const std::int64_t taux = DivisePlancher(std::midpoint(m_min, m_max) + unite / 2, unite) * unite;
            for (const std::int64_t t : {taux, taux - unite, taux + unite})
                if (m_min <= t && t <= m_max) return t;
        }
    }

    std::int32_t m_debut, m_fin, m_valeur;
    std::int64_t m_min = -(std::int64_t{1} << 62), m_max = std::int64_t{1} << 62;
};

}  // namespace

kv_status kv_curve(kv_return* r, const kv_range* range, int32_t* amounts, int32_t* values, double* average,
                   double* marginal, int32_t capacity, int32_t* count) {
    return AvecBalayage(r, range, count, [&](kv_return& retour, Balayage& balayage) {
        const std::int64_t n = NombreDePas(*range);
        *count = static_cast<int32_t>(n);
        if (n > capacity) return retour.message.Refuse(KV_TOO_SMALL);
        std::int64_t i = 0;
        std::int32_t avant = 0;
        return balayage.Parcourt(n + (marginal != nullptr), range->step, retour.message,
                                 [&](std::int32_t montant, std::int32_t valeur) {
                                     if (i > 0 && marginal)
                                         marginal[i - 1] = (static_cast<double>(valeur) - avant) / range->step;
                                     avant = valeur;
                                     if (i == n) return;  // beyond the end, for the last marginal rate
                                     if (amounts) amounts[i] = montant;
                                     if (values) values[i] = valeur;
                                     if (average) average[i] = montant == 0 ? 0 : static_cast<double>(valeur) / montant;
                                     ++i;
                                 });
    });
}

kv_status kv_breaks(kv_return* r, const kv_range* range, kv_piece* pieces, int32_t capacity, int32_t* count) {
    return AvecBalayage(r, range, count, [&](kv_return& retour, Balayage& balayage) {
        if (!pieces && capacity > 0) return retour.message.Refuse(KV_NULL);
        std::vector<kv_piece> trouves;
        std::optional<Morceau> morceau;
        const kv_status statut = balayage.Parcourt(std::int64_t{range->to} - range->from + 1, 1, retour.message,
                                                   [&](std::int32_t montant, std::int32_t valeur) {
                                                       if (morceau && morceau->Prolonge(montant, valeur)) return;
                                                       if (morceau) trouves.push_back(morceau->Rend());
                                                       morceau.emplace(montant, valeur);
                                                   });
        if (statut != KV_OK) return statut;
        trouves.push_back(morceau->Rend());
        *count = static_cast<int32_t>(trouves.size());
        const std::size_t rendus = std::min(trouves.size(), static_cast<std::size_t>(std::max(capacity, 0)));
        std::copy_n(trouves.begin(), rendus, pieces);
        return rendus < trouves.size() ? retour.message.Refuse(KV_TOO_SMALL) : kv_status{KV_OK};
    });
}
