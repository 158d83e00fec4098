#include "interface/Effets.h"

#include <algorithm>
#include <cstdlib>

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

}  // namespace

Exceptionnels Essais::AvecExceptionnel(const CleSaisie& cle, std::int32_t montant) const {
    Exceptionnels change;
    for (const std::int32_t coefficient : m_cadre.exceptionnels.coefficients)
        for (const auto& m : m_cadre.exceptionnels.montants) {
            if (m.coefficient != coefficient) continue;
            const bool celuiCi = m.box == cle.box && coefficient == *cle.coefficient;
            if (!celuiCi || montant != 0) change.Pose(m.box, coefficient, celuiCi ? montant : m.montant);
        }
    return change;
}

void Essais::Calcule(const CleSaisie& cle, std::int32_t montant) {
    m_atelier->Recommence();
    if (!cle.coefficient)
        Montant(m_atelier->saisie, cle.aire, Place(cle.aire, cle.box)) = montant;
    else
        m_atelier->exceptionnels = AvecExceptionnel(cle, montant);
    m_atelier->Calcule(true);
}

kv_status kv_effects(kv_return* r, const char* figure, int32_t* value, int32_t* count) {
    return Avec(
        r,
        [&](kv_return& retour) {
            const auto [lue, statut, message] = LisFigure(figure);
            if (statut != KV_OK) return retour.message.Refuse(statut, message);
            Essais essais(retour.demande);
            essais.Calcule();
            const std::int32_t valeur = essais.Lit(lue);
            const auto avec = [&, &figure = lue](const CleSaisie& cle, std::int32_t montant) {
                essais.Calcule(cle, montant);
                return essais.Lit(figure);
            };
            std::vector<Effet> effets;
            essais.PourChaqueMontant([&](const CleSaisie& cle, std::int32_t montant) {
                Effet e{NomDe(cle), cle.box.numero, montant, avec(cle, 0), Ajout(cle, montant), valeur};
                if (e.ajout != 0) e.avec = montant + e.ajout == 0 ? e.sans : avec(cle, montant + e.ajout);
                effets.push_back(std::move(e));
            });
            const auto portee = [&](const Effet& e) { return std::pair(Ecart(e.sans, valeur), Ecart(e.avec, valeur)); };
            std::sort(effets.begin(), effets.end(), [&](const Effet& a, const Effet& b) {
                if (portee(a) != portee(b)) return portee(a) > portee(b);
                return a.entree != b.entree ? a.entree < b.entree : a.nom < b.nom;
            });
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
                                                               .changed = e.avec,
                                                               .reserved = 0});
            return statut == KV_OK ? statut : retour.message.Refuse(statut);
        },
        effect);
}
