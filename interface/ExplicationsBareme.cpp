#include <algorithm>

#include "Calcul/pCalculN/NombreParts.h"
#include "interface/Explicateur.h"
#include "support/KVTarvel.h"

// Parts, the scale, the cap on the family quotient, exceptional income.

namespace kv {

// ---- Parts, in hundredths.

bool Explicateur::ParParts(Noeud& noeud, std::int32_t profondeur) {
    const Saisie& saisie = m_vues[0];
    noeud.source = Parametre("parts.enfant").Ligne().source;
    Ajoute(noeud, Ligne("F_NB_PARTS_ISO", 0, profondeur - 1), 1);

    const std::int32_t aCharge = saisie["Fm"] + saisie["Jm"] + saisie["Rm"], alternes = saisie["Hm"];
    const std::int32_t rang = nDiv(ValeurLoi("parts.rangMajore"), 100);
    Noeud charges = Part("enfants et autres personnes à charge (centièmes)", PartsDesEnfants(saisie, m_loi));
    charges.formule = Decimal(ValeurLoi("parts.enfant")) + " part chacun";
    if (aCharge + alternes >= rang)
        charges.formule += ", " + Decimal(ValeurLoi("parts.enfantMajore")) + " à partir du " + Nombre(rang) + "e";
    if (alternes > 0) charges.formule += ", la moitié en résidence alternée";
    charges.source = noeud.source;
    for (const CaseEntree box : {CaseEntree("Fm"), CaseEntree("Jm"), CaseEntree("Rm"), CaseEntree("Hm")})
        Ajoute(charges, Boite(box, 0, profondeur - 2), 1, "count");
    Ajoute(noeud, std::move(charges), 1);

    static constexpr const char* motifs[nMotifs] = {
        "invalidité d'un déclarant (centièmes)",
        "ancien combattant, ou veuf d'un ancien combattant (centièmes)",
        "veuf avec personnes à charge (centièmes)",
        "parent isolé (centièmes)",
        "personne seule qui a élevé un enfant (centièmes)",
        "enfants et personnes à charge invalides (centièmes)",
        "enfants invalides en résidence alternée (centièmes)",
    };
    const PartsParMotif parts = PartsDesSituations(saisie, m_loi);
    for (std::size_t m = 0; m < nMotifs; ++m) {
        Noeud motif = Part(motifs[m], parts[m]);
        motif.source = partsParMotif[m].Ligne().source;
        Ajoute(noeud, std::move(motif), 1);
    }
    Somme(noeud);
    return Manque(noeud) == 0;
}

bool Explicateur::ParDeclarants(Noeud& noeud) {
    const bool ensemble = ImposesEnsemble(m_vues[0]);
    noeud.regle = "choice";
    noeud.formule = !ensemble  ? "une personne : 1 part"
                    : m_couple ? "un couple : 2 parts"
                               : "veuf dans l'année : 2 parts";
    return noeud.valeur == (ensemble ? 200 : 100);
}

// ---- The scale.

// The tax in each bracket, of all parts together.
bool Explicateur::ParBareme(Noeud& noeud, CaseSortie sortie, std::int32_t profondeur) {
    const std::int32_t revenu = Valeur(sortie, 2), parts = Valeur(sortie, 1);
    const Bareme bareme = BaremeDe(m_loi);
    if (AppliqueBareme(bareme, revenu, parts).impot != noeud.valeur) return false;
    noeud.source = Parametre("bareme.tranche2.taux").Ligne().source;
    const double parPart = dDiv(revenu, parts / 100.0);
    for (std::size_t i = 0; i < bareme.size() && parPart > bareme[i].Basse; ++i) {
        const bool derniere = i + 1 == bareme.size();
        const double dedans =
            (derniere ? parPart : std::min(parPart, static_cast<double>(bareme[i].Haute))) - bareme[i].Basse;
        Noeud tranche = Taxe("tranche au-dessus de " + Nombre(nArrondi(bareme[i].Basse)) + " par part",
                             Part("dans la tranche, toutes parts", nArrondi(dedans * parts / 100.0)),
                             PartTaux(nArrondi(bareme[i].Taux)));
        Ajoute(noeud, std::move(tranche), 1);
    }
    Complete(noeud, "arrondis");
    noeud.regle = "scale";
    noeud.formule = Nombre(revenu) + " sur " + Decimal(parts) + (parts == 100 ? " part" : " parts");
    // What the scale is applied to: operands, not terms.
    Ajoute(noeud,
           revenu == Valeur("TOT_R_IMPOS") ? Ligne("TOT_R_IMPOS", 0, profondeur - 1) : Part("revenu imposé", revenu), 1,
           "income");
    const CaseSortie nombre =
        sortie == CaseSortie("I_IMP_SIMP") ? CaseSortie("F_NB_PARTS_ISO") : CaseSortie("F_NB_PARTS_ALL");
    Ajoute(noeud, parts == Valeur(nombre) ? Ligne(nombre, 0, profondeur - 1) : Part("parts (centièmes)", parts), 1,
           "parts");
    return true;
}

// What the half parts beyond the base parts may save.
bool Explicateur::ParPlafondDesDemiParts(Noeud& noeud) {
    const Saisie& e = m_vues[0];
    const auto coche = [&](CaseEntree box) { return e[box] == 1; };
    const std::int32_t base = Valeur("F_NB_PARTS_ISO"), extra = Valeur("F_NB_PARTS_ALL") - base;
    const std::int32_t enfants = e["Fm"] + e["Jm"];
    const bool isole =
        (coche("C") || coche("D") || (coche("V") && enfants == 0)) && enfants + e["Hm"] > 0 && coche("T");
    const auto parDemiPart = [&](std::int32_t centiemes) {
        Noeud demiParts = Prorata("par demi-part au-delà de celles des déclarants",
                                  nTronque(dDiv(dMul(ValeurLoi("quotientFamilial.plafond.demiPart"), centiemes), 50)),
                                  FigureDeLaLoi("quotientFamilial.plafond.demiPart"),
                                  Part("parts en plus (centièmes)", centiemes), Part("une demi-part (centièmes)", 50));
        demiParts.formule = Nombre(ValeurLoi("quotientFamilial.plafond.demiPart")) + " par demi-part, " +
                            Decimal(centiemes) + (centiemes <= 100 ? " part" : " parts") +
                            " au-delà de celles des déclarants";
        return demiParts;
    };
    if (base == 100 && extra == 50 && coche("L") && e["P"] == 0 && e["Gp"] == 0 && e["W"] == 0) {
        noeud.regle = "choice", noeud.formule = "personne seule qui a élevé un enfant";
        Ajoute(noeud, FigureDeLaLoi("quotientFamilial.plafond.seul"), 1, "chosen");
        noeud.source = noeud.termes.back().source;
        return noeud.termes.back().valeur == noeud.valeur;
    }
    if (isole && extra < 100) {
        const Noeud figure = FigureDeLaLoi("quotientFamilial.plafond.parentIsole");
        Reprend(noeud, Prorata("", nProrata(figure.valeur, extra, 100), figure,
                               Part("parts en plus (centièmes)", extra), Part("une part (centièmes)", 100)));
        noeud.formule = "parent isolé : " + noeud.formule;
        return nProrata(figure.valeur, extra, 100) == noeud.valeur;
    }
    if (isole) {
        Noeud premiere = FigureDeLaLoi("quotientFamilial.plafond.parentIsole");
        noeud.source = premiere.source;
        Ajoute(noeud, std::move(premiere), 1);
        Ajoute(noeud, parDemiPart(extra - 100), 1);
        Somme(noeud);
        noeud.formule = "parent isolé, pour la première part" + (noeud.formule.empty() ? "" : " : " + noeud.formule);
        return Manque(noeud) == 0;
    }
    Noeud demiParts = parDemiPart(extra);
    const std::int32_t valeur = demiParts.valeur;
    Reprend(noeud, std::move(demiParts));
    return valeur == noeud.valeur;
}

// The half parts of disabled persons and war veterans save more than those of children.
bool Explicateur::ParReductionComplementaire(Noeud& noeud, std::int32_t profondeur) {
    const Saisie& e = m_vues[0];
    std::int32_t demiParts = e["P"] + e["Fp"];
    if (demiParts == 0) {
        demiParts = e["S"];
        if (Valeur("F_NB_CHARGE") == 0) demiParts = std::min(demiParts + (e["W"] != 0 ? 1 : 0) + e["Gp"], 1);
    }
    const std::int32_t dixiemes = 10 * (demiParts + e["Gm"] + e["Rm"]) + 5 * e["Im"];
    Noeud majoree = FigureDeLaLoi("quotientFamilial.plafond.demiPartMajoree");
    Noeud ordinaire = FigureDeLaLoi("quotientFamilial.plafond.demiPart");
    Noeud parDemiPart = Total("de plus par demi-part", majoree.valeur - ordinaire.valeur);
    noeud.source = majoree.source;
    Ajoute(parDemiPart, std::move(majoree), 1);
    Ajoute(parDemiPart, std::move(ordinaire), -1);
    Somme(parDemiPart);
    const std::int32_t entier = nDiv(parDemiPart.valeur * dixiemes, 10);
    if (noeud.valeur == entier) {
        Reprend(noeud, Prorata("", entier, std::move(parDemiPart), Part("demi-parts (dixièmes)", dixiemes),
                               Part("dixièmes", 10)));
        return true;
    }
    // It never brings the tax below that of all parts.
    Ajoute(noeud, Ligne("I_IMP_SIMP", 0, profondeur - 1), 1);
    Ajoute(noeud, Ligne("I_PLAF_FAM", 0, profondeur - 1), -1);
    Ajoute(noeud, Ligne("I_IMP_NORM", 0, profondeur - 1), -1);
    Somme(noeud);
    noeud.formule = "au plus ce qui dépasse l'impôt de toutes les parts : " + noeud.formule;
    return noeud.valeur < entier && Manque(noeud) == 0;
}

// Exceptional income of one coefficient: what its fraction adds to the tax, as many times.
bool Explicateur::ParQuotient(Noeud& noeud, std::int32_t profondeur) {
    const auto& coefficients = m_demande.exceptionnels.coefficients;
    const std::int32_t supplement = Valeur("I_QUOT", 2);
    if (coefficients.size() != 1 || nArrondi(dMul(supplement, Diviseur(coefficients[0]))) != noeud.valeur) return false;
    Reprend(noeud, Prorata("", noeud.valeur, Ligne("I_QUOT", 2, profondeur - 1),
                           Part("coefficient", Diviseur(coefficients[0])), Part("", 1)));
    return true;
}

}  // namespace kv
