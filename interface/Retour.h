#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Calcul/pCalculN/Calculateur.h"
#include "interface/Poignees.h"

// A return behind its handle.

namespace kv {

/// What a household declares, and how it wants to be computed.
struct Demande {
    Saisie saisie{};
    Exceptionnels exceptionnels;
    std::int32_t debut = 20170101, fin = 20171231;  ///< AAAAMMJJ
    kv_launch lancement = KV_LAUNCH_NORMAL;
    double indexation = -1.0;
    Loi loi = loi2017;
};

TPeriode PeriodeDe(const Demande& demande);
Lancement LancementDe(const Demande& demande);

/// What its computation found.
struct Resultats {
    ZoneEntree entrees;  ///< as the launch left them
    Lignes lignes;
    ZoneReport reports{};
    std::optional<OptionsComparees> options;
};

/// Computes a return, without a trace; the observer, if any, is told of the runs beside the household's own.
std::shared_ptr<const Resultats> CalculeRetour(const Demande& demande, Observateur* observateur);

/// What an amount does to a figure, as kv_effect tells it.
struct Effet {
    std::string nom;
    std::int32_t entree, montant, sans, ajout, avec;
};

}  // namespace kv

struct kv_return {
    kv::Demande demande;
    std::shared_ptr<const kv::Resultats> resultats;  ///< of the last computation; copies share them
    std::vector<std::string> avertissements;         ///< of the last check
    std::vector<kv::Effet> effets;                   ///< that were looked for last
    std::string explication;                         ///< that was asked for last
    kv::Message message;
};

namespace kv {

/// Calls f(return) within the guard; a null among the pointers, the return first, is a status.
template <class Fonction, class... Pointeurs>
kv_status Avec(kv_return* r, Fonction f, const Pointeurs*... pointeurs) {
    if (!r) return KV_NULL;
    if ((!pointeurs || ...)) return r->message.Refuse(KV_NULL);
    return Repond(r->message, [&]() -> kv_status { return f(*r); });
}

/// The figures of a line, its value first.
inline std::int32_t Figure(const Ligne& ligne, std::size_t colonne) {
    return colonne == 0 ? ligne.valeur : ligne.colonnes[colonne - 1];
}
inline constexpr std::size_t nColonnes = 4;

/// A number that counts nothing.
inline kv_status NumeroInconnu(kv_return& r, const char* quoi, std::int32_t numero) {
    return r.message.Refuse(KV_UNKNOWN, std::string("no ") + quoi + " has the number " + std::to_string(numero));
}

}  // namespace kv
