#include <algorithm>
#include <cmath>

#include "Calcul/pCalculN/CreditsTable.h"
#include "interface/Explicateur.h"
#include "support/KVTarvel.h"

// The rules of the tax that are more than a row: relief, contribution on high incomes, taxes at rates of their own,
// credits, thresholds, and what other runs found.

namespace kv {

bool Explicateur::ParRegleDeLImpot(Noeud& noeud, CaseSortie sortie, std::int32_t profondeur) {
    const auto est = [&](std::initializer_list<CaseSortie> sorties) {
        return std::find(sorties.begin(), sorties.end(), sortie) != sorties.end();
    };
    if (est({"I_IMP_NORM", "I_IMP_SIMP"})) return ParBareme(noeud, sortie, profondeur);
    if (est({"F_NB_PARTS_ALL"})) return ParParts(noeud, profondeur);
    if (est({"F_NB_PARTS_ISO"})) return ParDeclarants(noeud);
    if (est({"I_PLAF_FAM"})) return ParPlafondDesDemiParts(noeud);
    if (est({"I_NEUT_PLAF_FAM"})) return ParReductionComplementaire(noeud, profondeur);
    if (est({"I_QUOT"})) return ParQuotient(noeud, profondeur);
    if (est({"U_DECOTE"})) return ParDecote(noeud, profondeur);
    if (est({"U_CLASSES_MOYENNES"})) return ParRevenusModestes(noeud, profondeur);
    if (est({"IMPOT_TM_RETENU"})) return ParTauxMinimum(noeud, profondeur);
    if (est({"CONT_HAUT_REV"})) return ParHautsRevenus(noeud, profondeur);
    if (est({"CONT_HR_TAUX_EFFECTIF"})) return ParContributionEffective(noeud, profondeur);
    if (est({"CO_TNS_GUY", "CO_TNS_MGR"})) return ParPlusValuesOutreMer(noeud, sortie, profondeur);
    if (est({"CO_AGENTS_ASSUR"})) return ParAgentsAssurance(noeud);
    if (est({"CO_PENSIONS"})) return ParPensionsEnCapital(noeud);
    if (est({"D_LIB"})) return ParPrelevementLiberatoire(noeud);
    if (est({"D_CREDIT_7AC_7AE_7AG"})) return ParCotisationsSyndicales(noeud);
    if (est({"TOT_N_RECOUVRE", "TOT_N_REST", "S_NON_RECOUVRE"})) return ParSeuil(noeud, sortie, profondeur);
    if (est({"NICHE_B"})) return ParSoldeSansAvantages(noeud, profondeur);
    if (est({"IMPOT_TX_EFFECTIF"})) return ParTauxEffectif(noeud, profondeur);
    if (est({"IMPOT_ETR_RMI"})) return ParRevenuMondial(noeud, profondeur);
    return false;
}

// ---- The relief for small taxes and for modest incomes.

Noeud Explicateur::AvantDecote(std::int32_t profondeur) {
    Noeud impot = Total("impôt avant décote", Valeur("TOT_IMPOT_DOM") + Valeur("IMPOT_TAUX_MARG"));
    Ajoute(impot, Ligne("TOT_IMPOT_DOM", 0, profondeur - 1), 1);
    Ajoute(impot, Ligne("IMPOT_TAUX_MARG", 0, profondeur - 1), 1);
    Somme(impot);
    return impot;
}

namespace {

// Why there is none of a relief.
bool Aucune(Noeud& noeud, const char* pourquoi) {
    noeud.regle = "choice", noeud.formule = pourquoi;
    return noeud.valeur == 0;
}
constexpr const char* horsDeFrance = "réservée aux contribuables domiciliés en France";
constexpr const char* sansImpot = "pas d'impôt à réduire";

}  // namespace

bool Explicateur::ParDecote(Noeud& noeud, std::int32_t profondeur) {
    Noeud impot = AvantDecote(profondeur - 2);
    const std::int32_t avant = impot.valeur;
    if (!Resident()) return Aucune(noeud, horsDeFrance);
    if (avant <= 0) return Aucune(noeud, sansImpot);
    Noeud plafond = FigureDeLaLoi(m_couple ? Parametre("decote.plafond.couple") : "decote.plafond.seul");
    noeud.source = plafond.source;
    Ajoute(noeud, std::move(plafond), 1);
    Ajoute(noeud, Taxe("part de l'impôt", std::move(impot), FigureDeLaLoi("decote.part")), -1);
    const std::int32_t reste = Manque(noeud);
    Complete(noeud, noeud.valeur == 0       ? "pas en dessous de 0"
                    : noeud.valeur == avant ? "au-delà de l'impôt"
                                            : "arrondi");
    return noeud.valeur == 0 ? reste >= 0 : noeud.valeur == avant ? reste <= 1 : std::abs(reste) <= 1;
}

// In full up to a first income, less and less up to a second one.
bool Explicateur::ParRevenusModestes(Noeud& noeud, std::int32_t profondeur) {
    Noeud apres = Total("impôt après décote", Valeur("TOT_IMPOT_DOM") + Valeur("IMPOT_TAUX_MARG") - Valeur("U_DECOTE"));
    if (!Resident()) return Aucune(noeud, horsDeFrance);
    if (apres.valeur <= 0) return Aucune(noeud, sansImpot);
    Ajoute(apres, AvantDecote(profondeur - 3), 1);
    Ajoute(apres, Ligne("U_DECOTE", 0, profondeur - 3), -1);
    Somme(apres);
    Noeud entiere = Taxe("réduction entière", std::move(apres), FigureDeLaLoi("revenusModestes.taux"));
    noeud.source = entiere.source;

    const double partsEnPlus = dDiv(Valeur("F_NB_PARTS_ALL") - Valeur("F_NB_PARTS_ISO"), 100);
    const std::int32_t majoration = nArrondi(dMul(partsEnPlus, ValeurLoi("revenusModestes.parPart")));
    const auto limite = [&](Parametre p, const char* libelle) {
        Noeud n = Total(libelle, ParFoyer(ValeurLoi(p)) + majoration);
        Ajoute(n, FigureParFoyer(p), 1);
        Ajoute(n, Part("majoration pour les parts au-delà de celles des déclarants", majoration), 1);
        Somme(n);
        return n;
    };
    Noeud revenu = Ligne("REV_REF_D", 0, profondeur - 2);
    Noeud pleine = limite("revenusModestes.plafondPlein", "revenu jusqu'où elle est entière");
    Noeud fin = limite("revenusModestes.plafond", "revenu à partir duquel elle est nulle");
    if (revenu.valeur < pleine.valeur) {
        const std::int32_t valeur = entiere.valeur;
        Reprend(noeud, std::move(entiere));
        noeud.formule += ", le revenu de référence étant sous " + Nombre(pleine.valeur);
        Ajoute(noeud, std::move(revenu), 1, "income");
        return noeud.valeur == valeur;
    }
    if (revenu.valeur >= fin.valeur) {
        Ajoute(noeud, std::move(entiere), 1);
        Complete(noeud, "au-delà du plafond de revenu de " + Nombre(fin.valeur));
        Ajoute(noeud, std::move(revenu), 1, "income");
        Ajoute(noeud, std::move(fin), 1, "threshold");
        return noeud.valeur == 0;
    }
    Noeud marge = Total("ce qui manque au revenu de référence", fin.valeur - revenu.valeur);
    Ajoute(marge, std::move(fin), 1);
    Ajoute(marge, std::move(revenu), -1);
    Somme(marge);
    const double produit = nArrondi(dMul(entiere.valeur, marge.valeur));
    const std::int32_t degression = ParFoyer(ValeurLoi("revenusModestes.degression"));
    const std::int32_t valeur = nArrondi(dDiv(produit, degression));
    Reprend(noeud,
            Prorata("", valeur, std::move(entiere), std::move(marge), FigureParFoyer("revenusModestes.degression")));
    return noeud.valeur == valeur;
}

// ---- Non-residents.

// The average rate of the French income, or the minimum one, which a lower rate of the worldwide income replaces.
bool Explicateur::ParTauxMinimum(Noeud& noeud, std::int32_t profondeur) {
    const std::int32_t revenu = Valeur("IMPOT_TM_RETENU", 2), francais = Valeur("IMPOT_TM_FRANCAIS");
    const std::int32_t mondial = Valeur("IMPOT_TM_ETRANGER"), revenuMondial = m_vues[0]["8TM"];
    const Parametre minimum =
        m_declaree["RED"] != 0 ? Parametre("nonResidents.tauxMinimumOutremer") : "nonResidents.tauxMinimum";
    const double tauxFrancais = dMul(10000.0, dDiv(francais, revenu));
    const double tauxMondial = dMul(10000.0, dDiv(mondial, revenuMondial));
    if (tauxFrancais > ValeurLoi(minimum)) {
        noeud.regle = "choice", noeud.formule = "taux moyen des revenus français, au-dessus du taux minimum";
        noeud.source = minimum.Ligne().source;
        Ajoute(noeud, Ligne("IMPOT_TM_FRANCAIS", 0, profondeur - 1), 1, "chosen");
        return noeud.valeur == francais;
    }
    Noeud base = Ligne("IMPOT_TM_RETENU", 2, profondeur - 1);
    if (revenuMondial != 0 && tauxMondial < ValeurLoi(minimum)) {
        Noeud impot = Part("impôt des revenus mondiaux", mondial);
        impot.source = minimum.Ligne().source;
        Reprend(noeud, Prorata("", noeud.valeur, std::move(impot), std::move(base), Boite("8TM", 0, profondeur - 1)));
        noeud.formule = "taux moyen des revenus mondiaux, au-dessous du taux minimum : " + noeud.formule;
        return noeud.valeur == nProrata(mondial, revenu, revenuMondial);
    }
    Noeud impot = Taxe("", std::move(base), FigureDeLaLoi(minimum));
    const std::int32_t valeur = impot.valeur;
    Reprend(noeud, std::move(impot));
    noeud.formule = "taux minimum des non-résidents : " + noeud.formule;
    return noeud.valeur == valeur;
}

// The CSG on capital: gains whose taxation was deferred bear the rate of their year.
bool Explicateur::ParCsgDesCapitaux(Noeud& noeud, std::int32_t profondeur) {
    std::int32_t differes = 0;
    Noeud gains = Total("gains dont l'imposition était reportée", 0);
    for (const CaseEntree box : {CaseEntree("3WI"), CaseEntree("3WJ"), CaseEntree("3WN")}) {
        differes += m_vues.back()[box];
        Ajoute(gains, Boite(box, m_vues.size() - 1, profondeur - 3), 1);
    }
    if (differes <= 0) return false;  // the row of the rate tells it
    gains.valeur = differes;
    Somme(gains);
    Noeud reste = Total("base hors ces gains", nPositif(Valeur("S_BASES", 2) - differes));
    Ajoute(reste, Ligne("S_BASES", 2, profondeur - 3), 1);
    Ajoute(reste, Part("gains dont l'imposition était reportée", differes), -1);
    Somme(reste);
    Ajoute(noeud, Taxe("CSG de l'année", std::move(reste), FigureDeLaLoi("prelevementsSociaux.csg")), 1);
    Ajoute(noeud,
           Taxe("CSG de l'année des gains", std::move(gains), FigureDeLaLoi("prelevementsSociaux.csgAnterieure")), 1);
    Somme(noeud);
    return Manque(noeud) == 0;
}

// ---- The contribution on high incomes.

// An exceptional year counts for the average of the two before it and half of what exceeds that.
Noeud Explicateur::RevenuLisse(std::int32_t profondeur) {
    const std::int32_t n1 = m_vues[0]["CE16"], n2 = m_vues[0]["CE15"];
    const Parametre coefficient = "hautsRevenus.lissage.coefficient";
    Noeud deuxAnnees = Total("revenus de référence des deux années précédentes", n1 + n2);
    Ajoute(deuxAnnees, Boite("CE15", 0, profondeur - 3), 1);
    Ajoute(deuxAnnees, Boite("CE16", 0, profondeur - 3), 1);
    Somme(deuxAnnees);
    Noeud moyenne = Prorata("moyenne des deux années précédentes", nArrondi(dDiv(n1 + n2, 2)), std::move(deuxAnnees),
                            Part("", 1), Part("années", 2));
    Noeud exces = Total("revenu de l'année au-delà de cette moyenne", Valeur("REV_REF_C") - moyenne.valeur);
    Ajoute(exces, Ligne("REV_REF_C", 0, profondeur - 3), 1);
    Ajoute(exces, Part(moyenne.libelle, moyenne.valeur), -1);
    Somme(exces);
    const std::int32_t divise = nArrondi(dDiv(exces.valeur, static_cast<const Loi&>(m_loi).Nombre(coefficient)));
    Noeud partie = Prorata("divisé par le coefficient", divise, std::move(exces), Part("centièmes", 100),
                           FigureDeLaLoi(coefficient));
    Noeud lisse = Total("revenu lissé", moyenne.valeur + partie.valeur);
    Ajoute(lisse, std::move(moyenne), 1);
    Ajoute(lisse, std::move(partie), 1);
    Somme(lisse);
    return lisse;
}

// What exceeds each of the two thresholds, at its rate.
bool Explicateur::ParHautsRevenus(Noeud& noeud, std::int32_t profondeur) {
    static constexpr struct {
        Parametre seuil, taux;
    } tranches[] = {{"hautsRevenus.tranche1.seuil", "hautsRevenus.tranche1.taux"},
                    {"hautsRevenus.tranche2.seuil", "hautsRevenus.tranche2.taux"}};
    const std::int32_t retenu = Valeur("CONT_HAUT_REV", 1), seuil = ParFoyer(ValeurLoi(tranches[0].seuil));
    Noeud reference = Ligne("REV_REF_C", 0, profondeur - 2), lisse = RevenuLisse(profondeur - 1);
    const bool annuel = retenu == reference.valeur;
    if (retenu == 0) {
        noeud.regle = "scale", noeud.source = tranches[0].seuil.Ligne().source;
        noeud.formule = (reference.valeur <= seuil ? "revenu de référence de " + Nombre(reference.valeur)
                                                   : "revenu lissé de " + Nombre(lisse.valeur)) +
                        ", pas au-dessus de " + Nombre(seuil);
        Ajoute(noeud, reference.valeur <= seuil ? std::move(reference) : std::move(lisse), 1, "income");
        return noeud.valeur == 0;
    }
    if (!annuel && retenu != lisse.valeur) return false;
    std::int32_t haut = retenu, calcul = 0;
    Noeud bareme = Part("contribution du revenu lissé", 0);
    for (std::size_t i = std::size(tranches); i-- > 0;) {
        const std::int32_t bas = ParFoyer(ValeurLoi(tranches[i].seuil));
        if (haut <= bas) continue;
        Noeud tranche =
            Taxe("tranche au-dessus de " + Nombre(bas),
                 Part((annuel ? "revenu de référence" : "revenu lissé") + std::string(" au-dessus de ") + Nombre(bas),
                      haut - bas),
                 FigureDeLaLoi(tranches[i].taux));
        calcul += tranche.valeur;
        Ajoute(bareme, std::move(tranche), 1);
        haut = bas;
    }
    std::reverse(bareme.termes.begin(), bareme.termes.end());
    bareme.valeur = calcul, bareme.regle = "scale", bareme.source = tranches[0].taux.Ligne().source;
    bareme.formule = Nombre(retenu) + (annuel ? " de revenu de référence" : " de revenu lissé");
    Ajoute(bareme, annuel ? std::move(reference) : std::move(lisse), 1, "income");
    if (annuel) return Reprend(noeud, std::move(bareme)), noeud.valeur == calcul;
    const Parametre coefficient = "hautsRevenus.lissage.coefficient";
    Reprend(noeud, Prorata("", noeud.valeur, std::move(bareme), FigureDeLaLoi(coefficient), Part("centièmes", 100)));
    noeud.source = coefficient.Ligne().source;
    noeud.formule = "année exceptionnelle : " + Decimal(ValeurLoi(coefficient)) + " x " + Nombre(calcul);
    return nArrondi(dMul(static_cast<const Loi&>(m_loi).Nombre(coefficient), calcul)) == noeud.valeur;
}

// The share of it that the French income bears.
bool Explicateur::ParContributionEffective(Noeud& noeud, std::int32_t profondeur) {
    const std::int32_t revenu = Valeur("REV_REF_C"), francais = revenu - Valeur("IMPOT_ETR_REV_NET_TI");
    if (nProrata(Valeur("CONT_HAUT_REV"), francais, revenu) != noeud.valeur) return false;
    Noeud hors = Total("revenu de référence hors revenus étrangers", francais);
    Ajoute(hors, Ligne("REV_REF_C", 0, profondeur - 2), 1);
    Ajoute(hors, Ligne("IMPOT_ETR_REV_NET_TI", 0, 0), -1);
    Somme(hors);
    Reprend(noeud, Prorata("", noeud.valeur, Ligne("CONT_HAUT_REV", 0, profondeur - 1), std::move(hors),
                           Ligne("REV_REF_C", 0, 0)));
    return true;
}

// ---- Taxes at rates of their own.

// Long-term business gains overseas: the rate less the abatement, in the room that the income tax left of it.
bool Explicateur::ParPlusValuesOutreMer(Noeud& noeud, CaseSortie sortie, std::int32_t profondeur) {
    const bool guyane = sortie == CaseSortie("CO_TNS_GUY");
    const Parametre taux = guyane ? Parametre("outremer.guyaneMayotte.taux") : "outremer.antillesReunion.taux";
    const Parametre plafond = guyane ? Parametre("outremer.guyaneMayotte.plafond") : "outremer.antillesReunion.plafond";
    const Parametre tauxPlusValues = "corrections.CO_TNS.taux";
    const std::int32_t base = Valeur(sortie, 2);
    const std::int32_t reduit = nAuTaux(ValeurLoi(tauxPlusValues), 10000 - ValeurLoi(taux));
    const std::int32_t abattu = nAuTaux(base, ValeurLoi(tauxPlusValues)) - nAuTaux(base, reduit);
    Ajoute(noeud, Taxe("au taux entier", Ligne(sortie, 2, profondeur - 2), FigureDeLaLoi(tauxPlusValues)), 1);
    Noeud place = Total("ce que l'abattement sur l'impôt laisse du plafond", ValeurLoi(plafond));
    Ajoute(place, FigureDeLaLoi(plafond), 1);
    for (const CaseSortie abattement : {CaseSortie("U_DECOTE_DOM_GMR"), CaseSortie("U_DECOTE_DOM_GUY"),
                                        CaseSortie("IMPOT_DU_DOM_GMR"), CaseSortie("IMPOT_DU_DOM_GUY")}) {
        place.valeur -= Valeur(abattement);
        Ajoute(place, Ligne(abattement, 0, profondeur - 3), -1);
    }
    Somme(place);
    if (place.valeur < abattu)
        Ajoute(noeud, std::move(place), -1);
    else
        Ajoute(noeud, Part("abattement outre-mer de " + TexteTaux(ValeurLoi(taux)), abattu), -1);
    Somme(noeud);
    if (noeud.formule.empty())
        noeud.formule = "l'abattement sur l'impôt a pris tout le plafond de " + Nombre(ValeurLoi(plafond));
    noeud.source = taux.Ligne().source;
    return Manque(noeud) == 0;
}

// Insurance agents' compensation: three brackets, for each declarant.
bool Explicateur::ParAgentsAssurance(Noeud& noeud) {
    static constexpr struct {
        Parametre seuil, taux;
    } tranches[] = {{"agentsAssurance.tranche1.seuil", "agentsAssurance.tranche1.taux"},
                    {"agentsAssurance.tranche2.seuil", "agentsAssurance.tranche2.taux"},
                    {"agentsAssurance.tranche3.seuil", "agentsAssurance.tranche3.taux"}};
    for (const CaseEntree box : {CaseEntree("5QM"), CaseEntree("5RM")})
        for (std::size_t i = 0; i < std::size(tranches); ++i) {
            const std::int32_t bas = ValeurLoi(tranches[i].seuil), indemnite = m_vues.back()[box];
            const std::int32_t haut =
                i + 1 < std::size(tranches) ? std::min(indemnite, ValeurLoi(tranches[i + 1].seuil)) : indemnite;
            if (haut <= bas) continue;
            Noeud base = Total("indemnité de cette tranche", haut - bas);
            Ajoute(base, Boite(box, m_vues.size() - 1, -1), 1);
            Ajoute(base, Part("au-dessus de la tranche", indemnite - haut), -1);
            Ajoute(base, Part("au-dessous de la tranche", bas), -1);
            Somme(base);
            Ajoute(noeud, Taxe("tranche au-dessus de " + Nombre(bas), std::move(base), FigureDeLaLoi(tranches[i].taux)),
                   1);
        }
    Somme(noeud);
    noeud.source = tranches[0].taux.Ligne().source;
    return Manque(noeud) == 0;
}

bool Explicateur::ParPensionsEnCapital(Noeud& noeud) {
    const std::int32_t reste = 10000 - ValeurLoi("pensions.capital.abattement");
    return DansUneVue([&](std::size_t vue) {
        Noeud somme = Total("", noeud.valeur);
        for (const CaseEntree box : {CaseEntree("1AT"), CaseEntree("1BT")})
            Ajoute(somme,
                   Taxe("pension en capital", Taxe("après abattement de 10 %", Boite(box, vue, -1), PartTaux(reste)),
                        FigureDeLaLoi("pensions.capital.taux")),
                   1);
        Somme(somme);
        if (Manque(somme) != 0 || somme.termes.empty()) return false;
        Reprend(noeud, std::move(somme));
        noeud.source = Parametre("pensions.capital.taux").Ligne().source;
        return true;
    });
}

// ---- Credits.

// The flat levy already paid on life insurance is given back within what the other products leave of the allowance.
bool Explicateur::ParPrelevementLiberatoire(Noeud& noeud) {
    static constexpr CaseEntree anciens[] = {"2CH1"}, tous[] = {"2CH1", "2CH2", "2CH3", "2DH2", "2DH3"};
    static constexpr CaseEntree declares[] = {"2CH"};
    // An option that the caller forces on a return without one reads the detailed boxes, any other the declared ones.
    const Lancement lancement = LancementDe(m_demande);
    const bool uneOption =
        m_declaree["PFU"] != 0 || m_declaree["BAR"] != 0 || m_declaree["AVA"] != 0 || m_declaree["CIMR"] != 0;
    const bool declaree = !lancement.optionsForcees || (lancement.optionsSiSaisies && uneOption);
    const struct {
        bool applicable;
        CaseEntree box;
        std::span<const CaseEntree> avant;
    } cas[] = {{declaree, "2DH", declares},
               {!declaree && m_option == regles::Option::Forfait, "2DH1", anciens},
               {!declaree && m_option == regles::Option::Bareme, "2DH1", tous}};
    const std::int32_t plafond = ParFoyer(ValeurLoi("assuranceVie.abattement"));
    return DansUneVue([&](std::size_t vue) {
        for (const auto& [applicable, box, avant] : cas) {
            if (!applicable) continue;
            std::int32_t place = plafond;
            for (const CaseEntree autre : avant) place -= m_vues[vue][autre];
            const std::int32_t declare = m_vues[vue][box], retenu = std::min(declare, nPositif(place));
            if (declare <= 0 || nAuTaux(retenu, ValeurLoi("assuranceVie.taux")) != noeud.valeur) continue;
            Noeud base = Total("produits dans l'abattement", retenu);
            Ajoute(base, Boite(box, vue, -1), 1);
            Complete(base, "au-delà de ce qui restait de l'abattement de " + Nombre(plafond));
            Reprend(noeud, Taxe("", std::move(base), FigureDeLaLoi("assuranceVie.taux")));
            return true;
        }
        return false;
    });
}

// Union dues, within a part of salaries and pensions.
bool Explicateur::ParCotisationsSyndicales(Noeud& noeud) {
    const Parametre part = "credits.cotisationsSyndicales.plafondRevenu";
    return DansUneVue([&](std::size_t vue) {
        Noeud base = Total("cotisations retenues", 0);
        for (const credits::Cotisant& cotisant : credits::cotisants) {
            const std::int32_t cotisation = m_vues[vue][cotisant.cotisation];
            const std::int32_t plafond = credits::PlafondSyndical(cotisant, m_vues[vue], m_loi);
            base.valeur += std::min(cotisation, plafond);
            Ajoute(base, Boite(cotisant.cotisation, vue, -1), 1);
            const bool fraisReels = std::any_of(cotisant.fraisReels.begin(), cotisant.fraisReels.end(),
                                                [&](CaseEntree box) { return m_vues[vue][box] != 0; });
            Ajoute(
                base,
                Part("au-delà de " + TexteTaux(ValeurLoi(part)) +
                         (fraisReels ? " des pensions, des frais réels étant déduits" : " des salaires et pensions") +
                         ", " + entree::lignes[cotisant.cotisation.numero].nom,
                     nPositif(cotisation - plafond)),
                -1);
        }
        Somme(base);
        Noeud credit = Taxe("", std::move(base), FigureDeLaLoi("credits.cotisationsSyndicales.taux"));
        if (credit.valeur != noeud.valeur || credit.valeur == 0) return false;
        Reprend(noeud, std::move(credit));
        return true;
    });
}

// ---- Small amounts.

bool Explicateur::ParSeuil(Noeud& noeud, CaseSortie sortie, std::int32_t profondeur) {
    if (noeud.valeur == 0 || !ParLigne(noeud, sortie, 0, profondeur)) return false;
    const bool restitution = sortie == CaseSortie("TOT_N_REST"), prelevements = sortie == CaseSortie("S_NON_RECOUVRE");
    const bool avantCredits = Valeur("INFO_NON_RECOUV_RES") == 1;
    const Parametre seuil = restitution    ? Parametre("restitution.minimum")
                            : prelevements ? Parametre("recouvrement.prelevementsSociaux")
                            : avantCredits ? Parametre("recouvrement.impot")
                                           : "recouvrement.solde";
    noeud.formule = "moins de " + Nombre(ValeurLoi(seuil)) +
                    (!restitution && !prelevements && avantCredits ? " avant crédits d'impôt" : "") +
                    (noeud.formule.empty() ? "" : " : " + noeud.formule);
    noeud.source = seuil.Ligne().source;
    Ajoute(noeud, FigureDeLaLoi(seuil), 1, "threshold");
    return true;
}

// ---- What other runs found.

static constexpr const char* revenusMondiaux = "calcul sur les revenus mondiaux";

bool Explicateur::ParSoldeSansAvantages(Noeud& noeud, std::int32_t profondeur) {
    return DansUnPassage(Passage::SansAvantages, [&](Explicateur& sans) {
        if (sans.Valeur("TOT_PAYER") - sans.Valeur("TOT_REST") != noeud.valeur) return false;
        noeud.passage = "calcul sans les avantages que le plafonnement global compte";
        Ajoute(noeud, sans.Ligne("TOT_PAYER", 0, profondeur - 1), 1);
        Ajoute(noeud, sans.Ligne("TOT_REST", 0, profondeur - 1), -1);
        Somme(noeud);
        return true;
    });
}

bool Explicateur::ParRevenuMondial(Noeud& noeud, std::int32_t profondeur) {
    return DansUnPassage(Passage::Mondial, [&](Explicateur& monde) {
        if (nPositif(monde.Valeur("TOT_R_IMPOS") + monde.Valeur("QUOTIENT")) != noeud.valeur) return false;
        noeud.passage = revenusMondiaux;
        Ajoute(noeud, monde.Ligne("TOT_R_IMPOS", 0, profondeur - 1), 1);
        Ajoute(noeud, monde.Ligne("QUOTIENT", 0, profondeur - 1), 1);
        Somme(noeud);
        return Manque(noeud) == 0;
    });
}

// The tax on the worldwide income, for the share of the French one in it.
bool Explicateur::ParTauxEffectif(Noeud& noeud, std::int32_t profondeur) {
    const std::int32_t mondial = Valeur("IMPOT_ETR_RMI"), francais = mondial - Valeur("IMPOT_ETR_REV_NET_TI");
    return DansUnPassage(Passage::Mondial, [&](Explicateur& monde) {
        if (nProrata(monde.Valeur("TOT_IMPOT"), francais, mondial) != noeud.valeur) return false;
        Noeud impot = monde.Ligne("TOT_IMPOT", 0, profondeur - 1);
        impot.passage = revenusMondiaux;
        Noeud revenu = Total("revenu net français", francais);
        Ajoute(revenu, Ligne("IMPOT_ETR_RMI", 0, profondeur - 2), 1);
        Ajoute(revenu, Ligne("IMPOT_ETR_REV_NET_TI", 0, 0), -1);
        Somme(revenu);
        Reprend(noeud, Prorata("", noeud.valeur, std::move(impot), std::move(revenu), Ligne("IMPOT_ETR_RMI", 0, 0)));
        return true;
    });
}

}  // namespace kv
