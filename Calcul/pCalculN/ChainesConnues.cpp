#include "Calcul/pCalculN/ChainesConnues.h"

#include <algorithm>

namespace kv {

Memoire ChainesConnues::MemoireLue(const Contexte& c) {
    Memoire memoire = c.commun.memoire;
    if (c.declaree["8TK"] <= 0) memoire.salaires = {};
    return memoire;
}

bool ChainesConnues::PartDe(const Depart& depart, const Contexte& c) {
    return depart.memoire == MemoireLue(c) && depart.faits == c.faits &&
           depart.avecExceptionnels == c.AvecExceptionnels() &&
           (c.declaree["6QW"] == 0 || depart.plafonds == c.commun.lignes.Plafonds()) &&
           depart.exceptionnels == c.exceptionnels && depart.declaree == c.declaree;
}

void ChainesConnues::Relance(Contexte& c) {
    const Contexte::Commun& commun = c.commun;
    c.RemetSortiesAZero();
    if (commun.trace.m_bTrace || c.Repetable()) return c.Lance(chaineNormale);

    const auto connue =
        std::find_if(m_chaines.begin(), m_chaines.end(), [&](const auto& chaine) { return PartDe(chaine->depart, c); });
    if (connue != m_chaines.end()) {
        const Chaine& chaine = **connue;
        const PlafondsPERP plafonds = commun.lignes.Plafonds();
        commun.lignes.Reprend(chaine.lignes);
        commun.lignes.PosePlafonds(plafonds);
        commun.memoire = chaine.memoire;
        chaine.avecExceptionnels ? c.AjouteExceptionnels() : c.RetireExceptionnels();
        return;
    }
    auto chaine = std::make_unique_for_overwrite<Chaine>();
    chaine->depart = {c.declaree,    c.exceptionnels,         c.faits, c.AvecExceptionnels(),
                      MemoireLue(c), commun.lignes.Plafonds()};
    c.Lance(chaineNormale);
    commun.lignes.Conserve(chaine->lignes);
    chaine->memoire = commun.memoire;
    chaine->avecExceptionnels = c.AvecExceptionnels();
    m_chaines.push_back(std::move(chaine));
}

}  // namespace kv
