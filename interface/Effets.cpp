#include <algorithm>
#include <cstdlib>

#include "interface/Atelier.h"
#include "interface/Sens.h"

// What each amount of a return does to a figure: the return is computed without it, and with some more of it.

using namespace kv;

namespace {

// How far two figures lie apart.
std::int64_t Ecart(std::int32_t a, std::int32_t b) { return std::llabs(std::int64_t{a} - b); }

// What the second change adds to an amount.
std::int32_t Ajout(const CleSaisie& cle, std::int32_t montant) {
    if (cle.aire != Aire::Entrees || cle.coefficient) return 100;
    switch (sens::De(cle.box).genre) {
        case sens::Genre::Euros:
            return 100;
        case sens::Genre::Nombre:
            return 1;
        case sens::Genre::Coche:
            return -montant;
        default:
            return 0;
    }
}

class Essais {
  public:
    Essais(const Demande& demande, const FigureLue& figure)
        : m_figure(figure), m_cadre(demande), m_atelier(std::make_unique<Atelier>(m_cadre)) {}

    std::int32_t Valeur() {
        m_atelier->Calcule(bool(m_figure.cle.report));
        const std::int32_t valeur = m_atelier->Lit(m_figure);
        m_atelier->Recommence();
        return valeur;
    }
    std::int32_t Avec(const CleSaisie& cle, std::int32_t montant) {
        if (!cle.coefficient)
            Montant(m_atelier->saisie, cle.aire, Place(cle.aire, cle.box)) = montant;
        else
            m_atelier->exceptionnels = AvecExceptionnel(cle, montant);
        return Valeur();
    }
    template <class Fonction>
    void PourChaqueMontant(Fonction f) const {
        for (int i = 0; i < nEntrees; ++i)
            for (const Aire aire : {Aire::Entrees, Aire::TI, Aire::TIX, Aire::TIY, Aire::TK, Aire::TKZ}) {
                const CaseEntree box = CaseEntree::Numero(i);
                const std::int32_t place = Place(aire, box);
                if (place < 0) continue;
                const std::int32_t montant = Montant(m_cadre.saisie, aire, place);
                if (montant != 0 && montant != nNonSaisi) f(CleSaisie{box, aire, {}}, montant);
            }
        for (const auto& m : m_cadre.exceptionnels.montants)
            if (m.montant != 0) f(CleSaisie{m.box, Aire::Entrees, m.coefficient}, m.montant);
    }

  private:
    // The exceptional amounts with one of them changed; one that is 0 is left out, as if it had never been set.
    Exceptionnels AvecExceptionnel(const CleSaisie& cle, std::int32_t montant) const {
        Exceptionnels change;
        for (const std::int32_t coefficient : m_cadre.exceptionnels.coefficients)
            for (const auto& m : m_cadre.exceptionnels.montants) {
                if (m.coefficient != coefficient) continue;
                const bool celuiCi = m.box == cle.box && coefficient == *cle.coefficient;
                if (!celuiCi || montant != 0) change.Pose(m.box, coefficient, celuiCi ? montant : m.montant);
            }
        return change;
    }

    const FigureLue m_figure;
    const Cadre m_cadre;
    const std::unique_ptr<Atelier> m_atelier;
};

std::string Nom(const CleSaisie& cle) {
    const std::string boite = entree::lignes[cle.box.numero].nom;
    if (cle.coefficient) return "quotient." + std::to_string(*cle.coefficient) + '.' + boite;
    return cle.aire == Aire::Entrees ? boite : std::string(NomAire(cle.aire)) + '.' + boite;
}

}  // namespace

kv_status kv_effects(kv_return* r, const char* figure, int32_t* value, int32_t* count) {
    return Avec(
        r,
        [&](kv_return& retour) {
            const auto [lue, statut, message] = LisFigure(figure);
            if (statut != KV_OK) return retour.message.Refuse(statut, message);
            Essais essais(retour.demande, lue);
            const std::int32_t valeur = essais.Valeur();
            std::vector<Effet> effets;
            essais.PourChaqueMontant([&](const CleSaisie& cle, std::int32_t montant) {
                Effet e{Nom(cle), cle.box.numero, montant, essais.Avec(cle, 0), Ajout(cle, montant), valeur};
                if (e.ajout != 0) e.avec = montant + e.ajout == 0 ? e.sans : essais.Avec(cle, montant + e.ajout);
                effets.push_back(std::move(e));
            });
            const auto portee = [&](const Effet& e) { return std::pair(Ecart(e.sans, valeur), Ecart(e.avec, valeur)); };
            std::stable_sort(effets.begin(), effets.end(),
                             [&](const Effet& a, const Effet& b) { return portee(a) > portee(b); });
            retour.effets = std::move(effets);
            *value = valeur, *count = static_cast<int32_t>(retour.effets.size());
            return kv_status{KV_OK};
        },
        value, count);
}

kv_status kv_effect_at(kv_return* r, int32_t index, kv_effect* effect) {
    return Avec(
        r,
        [&](kv_return& retour) {
            if (!EstRang(index, retour.effets.size())) return NumeroInconnu(retour, "effect", index);
            const Effet& e = retour.effets[static_cast<std::size_t>(index)];
            const kv_status statut = Remplit(effect, kv_effect{.size = 0,
                                                               .name = e.nom.c_str(),
                                                               .entry = e.entree,
                                                               .amount = e.montant,
                                                               .without = e.sans,
                                                               .change = e.ajout,
                                                               .changed = e.avec});
            return statut == KV_OK ? statut : retour.message.Refuse(statut);
        },
        effect);
}
