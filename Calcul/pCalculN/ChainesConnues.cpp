#include "Calcul/pCalculN/ChainesConnues.h"

#include <algorithm>
#include <utility>

namespace kv {

ChainesConnues::Depart::Depart(const Contexte& c)
    : declaree(c.declaree),
      exceptionnels(c.exceptionnels, c.commun.place),
      faits(c.faits),
      avecExceptionnels(c.AvecExceptionnels()),
      memoire(c.commun.memoire, c.commun.place) {
    if (declaree["8TK"] <= 0) memoire.salaires = {};
    if (declaree["6QW"] != 0) plafonds = c.commun.lignes.Plafonds();
}

void ChainesConnues::Relance(Contexte& c) {
    Lignes& lignes = c.commun.lignes;
    Memoire& memoire = c.commun.memoire;
    c.RemetSortiesAZero();
    if (c.commun.trace.m_bTrace || c.Repetable()) return c.Lance(chaineNormale);

    Depart depart(c);
    const auto connue =
        std::find_if(m_chaines.begin(), m_chaines.end(), [&](const Chaine& chaine) { return chaine.depart == depart; });
    if (connue != m_chaines.end()) {
        const PlafondsPERP plafonds = lignes.Plafonds();
        lignes.Reprend(connue->lignes);
        lignes.PosePlafonds(plafonds);
        memoire = connue->memoire;
        connue->avecExceptionnels ? c.AjouteExceptionnels() : c.RetireExceptionnels();
        return;
    }
    c.Lance(chaineNormale);
    Chaine& chaine = m_chaines.emplace_back(std::move(depart), memoire, c.commun.place);
    lignes.Conserve(chaine.lignes);
    chaine.avecExceptionnels = c.AvecExceptionnels();
}

}  // namespace kv
