#include "Calcul/pCalculN/Contexte.h"

#include <algorithm>

#include "Calcul/cCalcul/Transferts.h"

namespace kv {

namespace {

Faits FaitsDe(const Lancement& lancement, const Saisie& saisie, bool couple) {
    const auto cochee = [&](CaseEntree box) { return saisie[box] != 0; };
    const bool uneOption = cochee("PFU") || cochee("BAR") || cochee("AVA") || cochee("CIMR");
    Faits faits;
    faits.couple = couple;
    faits.resident = !cochee("REM") && !cochee("RED");
    faits.options = lancement.optionsForcees || (lancement.optionsSiSaisies && uneOption);
    faits.bareme = faits.options && cochee("BAR");
    faits.forfait = faits.options && cochee("PFU");
    faits.cimr = faits.options && cochee("CIMR");
    faits.selonLaDeclaration = !lancement.optionsForcees || (lancement.optionsSiSaisies && uneOption);
    faits.nouveauxTaux = (lancement.optionsForcees && uneOption) || lancement.optionsSiSaisies;
    return faits;
}

}  // namespace

Contexte::Contexte(const Commun& commun_, const Saisie& saisie, const Exceptionnels& exceptionnels_, bool couple)
    : commun(commun_),
      declaree(saisie),
      exceptionnels(exceptionnels_),
      faits(FaitsDe(commun.lancement, saisie, couple)),
      m_vue(&saisie) {}

void Contexte::AjouteExceptionnels() {
    commun.trace.Ligne(u"****> _Quotient_Dans_Fr(true)");
    if (exceptionnels.montants.empty()) return;
    m_avecExceptionnels = declaree;
    DeplaceExceptionnels(*m_avecExceptionnels, exceptionnels);
    m_vue = &*m_avecExceptionnels;
}

void Contexte::RetireExceptionnels() {
    commun.trace.Ligne(u"****> _Quotient_Dans_Fr(false)");
    m_vue = &declaree;
}

void Travail::ImputeDeficit(CaseSortie resultat, CaseSortie impute, std::int32_t deficits) {
    S[impute] = std::min(S[resultat], deficits);
    double benefices = 0;
    for (Colonne& colonne : C) benefices += dPositif(colonne[resultat]);
    for (Colonne& colonne : C)
        colonne[impute] = nArrondi(dMul(dDiv(dPositif(colonne[resultat]), benefices), S[impute]));
    lignes.Soustrait(resultat, impute);
}

}  // namespace kv
