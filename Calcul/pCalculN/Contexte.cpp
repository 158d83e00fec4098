#include "Calcul/pCalculN/Contexte.h"

#include "Calcul/pCalculN/ChainesConnues.h"

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

Contexte::Contexte(const Commun& commun_, const Saisie& saisie, const CasesEntree& remplies_,
                   const Exceptionnels& exceptionnels_, bool couple)
    : commun(commun_),
      declaree(saisie),
      remplies(remplies_),
      exceptionnels(exceptionnels_),
      faits(FaitsDe(commun.lancement, saisie, couple)),
      m_vue(&saisie),
      m_remplies(&remplies) {}

Contexte::Contexte(const Contexte& autre, const Saisie& saisie)
    : Contexte(autre.commun, saisie, &saisie == &autre.declaree ? autre.remplies : BoitesRemplies(saisie),
               autre.exceptionnels, autre.faits.couple) {
    faits.passe = autre.faits.passe;
    faits.sansAvantages = autre.faits.sansAvantages;
    faits.retenueALaSource = autre.faits.retenueALaSource;
}

bool Contexte::Repetable() const {
    static constexpr CasesEntree etrangeres = [] {
        CasesEntree boites;
        for (const CaseEntree box : casesMarquees<entree::AutoEntr>) boites.Ajoute(box);
        for (const CaseEntree box : casesMarquees<entree::Prospection>) boites.Ajoute(box);
        for (const auto& rangee : {rangeeC, rangeeE, rangeeH})
            for (const CaseEntree box : rangee) boites.Ajoute(box);
        boites.Ajoute("6QW");
        boites.Ajoute("4BY");
        return boites;
    }();
    return !Remplies(boitesLues<etrangeres>) && Vide(declaree.TI.valeurs) && Vide(declaree.TK.valeurs);
}

void Contexte::RelanceChaineNormale() { commun.chainesConnues.Relance(*this); }

void Contexte::AjouteExceptionnels() {
    commun.trace.Ligne(u"****> _Quotient_Dans_Fr(true)");
    if (exceptionnels.montants.empty()) return;
    m_avecExceptionnels = declaree;
    DeplaceExceptionnels(*m_avecExceptionnels, exceptionnels);
    m_vue = &*m_avecExceptionnels;
    m_rempliesAvecExceptionnels = BoitesRemplies(*m_vue);
    m_remplies = &m_rempliesAvecExceptionnels;
}

void Contexte::RetireExceptionnels() {
    commun.trace.Ligne(u"****> _Quotient_Dans_Fr(false)");
    m_vue = &declaree;
    m_remplies = &remplies;
}

void Travail::ImputeDeficit(CaseSortie resultat, CaseSortie impute, std::int32_t deficits) {
    S[impute] = std::min<std::int32_t>(S[resultat], deficits);
    double benefices = 0;
    for (Colonne& colonne : C) benefices += dPositif(colonne[resultat]);
    for (Colonne& colonne : C)
        colonne[impute] = nArrondi(dMul(dDiv(dPositif(colonne[resultat]), benefices), S[impute]));
    lignes.Soustrait(resultat, impute);
}

}  // namespace kv
