#include <algorithm>
#include <array>

#include "Calcul/pCalculN/CreditsTable.h"
#include "Calcul/pCalculN/NonSalariesTable.h"
#include "Calcul/pCalculN/SalairesTable.h"
#include "interface/Explicateur.h"
#include "support/KVTarvel.h"

// What comes off an income before it is taxed: the expenses of salaries, the allowances on pensions and on receipts,
// the maintenance paid.

namespace kv {

bool Explicateur::ParRegleDuRevenu(Noeud& noeud, CaseSortie sortie, int colonne, std::int32_t profondeur) {
    if (sortie == CaseSortie("S_CONTR_SOC") && colonne == 2) return ParCsgDesCapitaux(noeud, profondeur);
    if (colonne == 2 &&
        (sortie == CaseSortie("D_FRAIS_GARDE_ACHARGE") || sortie == CaseSortie("D_FRAIS_GARDE_ALTERNE")))
        return ParGardeDEnfants(noeud, sortie);
    if (colonne == 0)
        return (sortie == CaseSortie("C_ENFANTS_1") || sortie == CaseSortie("C_ENFANTS_2") ||
                sortie == CaseSortie("C_JUSTICE")) &&
               ParPensionsVersees(noeud, sortie);
    if (sortie == CaseSortie("A_AGEES") && colonne == 1) return ParPersonnesAgees(noeud);
    if (sortie == CaseSortie("RN_SAL_DED_10")) return ParFrais(noeud, colonne, false, profondeur);
    if (sortie == CaseSortie("RD_GAINS_2_Ded")) return ParFrais(noeud, colonne, true, profondeur);
    if (sortie == CaseSortie("RN_PEN_ABAT")) return ParAbattementPensions(noeud, colonne, profondeur);
    if (sortie == CaseSortie("RR_BA_MICRO_MOY")) return ParMoyenneAgricole(noeud, colonne, profondeur);
    if (sortie == CaseSortie("RR_BA_MICRO_ABAT")) return ParAbattementAgricole(noeud, colonne, profondeur);
    return ParAbattementMicro(noeud, sortie, colonne);
}

namespace {

// A part of an amount, within a floor and the amount itself; a ceiling of 0 is none.
Noeud DansLesBornes(Noeud part, Noeud plancher, Noeud plafond, const Noeud& montant) {
    if (plafond.valeur != 0 && part.valeur > plafond.valeur) part = Minimum(std::move(part), std::move(plafond));
    if (part.valeur < plancher.valeur) part = Maximum(std::move(part), std::move(plancher));
    if (part.valeur > montant.valeur) part = Minimum(std::move(part), Part(montant.libelle, montant.valeur));
    return part;
}

// One member's amount stands for the column, several are added up.
bool Repartit(Noeud& noeud, std::vector<Noeud>&& membres) {
    if (membres.size() == 1 && membres[0].valeur == noeud.valeur) {
        const bool boite = std::string_view(membres[0].regle) == "box" || membres[0].sorte == Sorte::Boite;
        const std::string formule = membres[0].formule;
        if (boite) {
            noeud.regle = "choice", noeud.formule = formule;
            Ajoute(noeud, std::move(membres[0]), 1, "chosen");
        } else {
            Reprend(noeud, std::move(membres[0]));
        }
        return true;
    }
    for (Noeud& membre : membres) Ajoute(noeud, std::move(membre), 1);
    Somme(noeud);
    return !noeud.termes.empty() && Manque(noeud) == 0;
}

template <std::size_t N>
std::int32_t SommeDe(const Saisie& saisie, const CaseEntree (&boxes)[N]) {
    std::int32_t somme = 0;
    for (const CaseEntree box : boxes)
        if (box) somme += saisie[box];
    return somme;
}

std::string NomDuMembre(std::size_t membre) {
    std::string nom = membre < 2 ? "déclarant " : "personne à charge ";
    return nom += Nombre(static_cast<int>(membre) + (membre < 2 ? 1 : -1));
}

}  // namespace

// The flat deduction of each member, within its bounds, or the actual expenses where they are higher; what share gains
// take of it stands with the gains.
bool Explicateur::ParFrais(Noeud& noeud, int colonne, bool desGains, std::int32_t profondeur) {
    return DansUneVue([&](std::size_t vue) {
        const Saisie& e = m_vues[vue];
        std::vector<Noeud> membres;
        for (std::size_t i = 0; i < nMembres; ++i) {
            const salaires::Membre& membre = salaires::membres[i];
            if (salaires::ColonneDe(i) + 1 != static_cast<std::size_t>(colonne)) continue;
            const std::int32_t gains = SommeDe(e, membre.gains), total = SommeDe(e, membre.salaires) + gains;
            Noeud salaire = Total("salaires, " + NomDuMembre(i), total);
            for (const CaseEntree box : membre.salaires)
                if (box) Ajoute(salaire, Boite(box, vue, profondeur), 1);
            for (const CaseEntree box : membre.gains)
                if (box) Ajoute(salaire, Boite(box, vue, profondeur), 1);
            Somme(salaire);
            const bool chomeur = e[membre.plancherMajore] != 0;
            Noeud retenus = Part("", 0);
            if (total > 0)
                retenus = DansLesBornes(
                    Taxe("déduction forfaitaire, " + NomDuMembre(i), salaire, FigureDeLaLoi("salaires.deduction.taux")),
                    FigureDeLaLoi(chomeur ? Parametre("salaires.deduction.plancherMajore")
                                          : "salaires.deduction.plancher"),
                    FigureDeLaLoi("salaires.deduction.plafond"), salaire);
            if (const std::int32_t forfait = retenus.valeur; e[membre.fraisReels] > forfait) {
                retenus = Boite(membre.fraisReels, vue, profondeur);
                retenus.formule =
                    "frais réels" + (forfait > 0 ? ", plus élevés que le forfait de " + Nombre(forfait) : "");
            }
            if (desGains ? gains <= 0 || i >= 2 : retenus.valeur == 0) continue;
            if (gains <= 0 || i >= 2) {
                membres.push_back(std::move(retenus));
                continue;
            }
            Noeud part = Prorata("part des gains d'actions", nProrata(retenus.valeur, gains, total),
                                 Part("déduction entière", retenus.valeur), Part("gains d'actions", gains),
                                 Part("salaires et gains", total));
            if (desGains) {
                Reprend(part, Prorata("", part.valeur, std::move(retenus), Part("gains d'actions", gains),
                                      Part("salaires et gains", total)));
                membres.push_back(std::move(part));
                continue;
            }
            Noeud net = Total("déduction, " + NomDuMembre(i), retenus.valeur - part.valeur);
            Ajoute(net, std::move(retenus), 1);
            Ajoute(net, std::move(part), -1);
            Somme(net);
            membres.push_back(std::move(net));
        }
        Noeud essai = noeud;
        if (!Repartit(essai, std::move(membres))) return false;
        if (essai.source.empty()) essai.source = Parametre("salaires.deduction.taux").Ligne().source;
        noeud = std::move(essai);
        return true;
    });
}

// A minimum for each pensioner; a ceiling for the household, which those above the minimum share.
bool Explicateur::ParAbattementPensions(Noeud& noeud, int colonne, std::int32_t profondeur) {
    const Parametre taux = "pensions.abattement.taux", plancher = "pensions.abattement.plancher";
    const std::int32_t plafond = ValeurLoi("pensions.abattement.plafond");
    return DansUneVue([&](std::size_t vue) {
        struct Pensionne {
            std::int32_t pensions = 0, abattement = 0;
            bool auPlancher = false;
        };
        std::array<Pensionne, nMembres> tous;
        std::int32_t pensions = 0, total = 0, pensionsAuPlancher = 0, auPlancher = 0;
        for (std::size_t i = 0; i < nMembres; ++i) {
            Pensionne& p = tous[i];
            p.pensions = SommeDe(m_vues[vue], salaires::membres[i].pensions);
            p.abattement = nAuTaux(p.pensions, ValeurLoi(taux));
            p.auPlancher = p.pensions > 0 && p.abattement < ValeurLoi(plancher);
            if (p.auPlancher) {
                p.abattement = std::min(ValeurLoi(plancher), p.pensions);
                pensionsAuPlancher += p.pensions, auPlancher += p.abattement;
            }
            pensions += p.pensions, total += p.abattement;
        }
        std::vector<Noeud> membres;
        for (std::size_t i = 0; i < nMembres; ++i) {
            const Pensionne& p = tous[i];
            if (salaires::ColonneDe(i) + 1 != static_cast<std::size_t>(colonne) || p.abattement == 0) continue;
            if (!p.auPlancher && total > plafond) {
                Noeud aPartager = Total("plafond du foyer, moins les abattements minimums", plafond - auPlancher);
                aPartager.source = Parametre("pensions.abattement.plafond").Ligne().source;
                Ajoute(aPartager, FigureDeLaLoi("pensions.abattement.plafond"), 1);
                Ajoute(aPartager, Part("abattements minimums", auPlancher), -1);
                Somme(aPartager);
                const std::int32_t part = nProrata(plafond - auPlancher, p.pensions, pensions - pensionsAuPlancher);
                membres.push_back(Prorata("part du plafond, " + NomDuMembre(i), part, std::move(aPartager),
                                          Part("pensions, " + NomDuMembre(i), p.pensions),
                                          Part("pensions qui se partagent le plafond", pensions - pensionsAuPlancher)));
                continue;
            }
            Noeud pension = Total("pensions, " + NomDuMembre(i), p.pensions);
            for (const CaseEntree box : salaires::membres[i].pensions)
                if (box) Ajoute(pension, Boite(box, vue, profondeur), 1);
            Somme(pension);
            Noeud abattement = Taxe("abattement, " + NomDuMembre(i), pension, FigureDeLaLoi(taux));
            if (p.auPlancher)
                abattement = DansLesBornes(std::move(abattement), FigureDeLaLoi(plancher), Part("", 0), pension);
            membres.push_back(std::move(abattement));
        }
        // What the roundings gave beyond the ceiling comes off.
        Noeud essai = noeud;
        if (!Repartit(essai, std::move(membres))) {
            if (essai.termes.empty() || std::abs(Manque(essai)) > 2) return false;
            Complete(essai, "arrondi");
        }
        if (essai.source.empty()) essai.source = taux.Ligne().source;
        noeud = std::move(essai);
        return true;
    });
}

// ---- The micro regimes.

namespace {

// Receipts of one kind: the boxes of a line, and those of the line that shares the minimum with it.
struct Recettes {
    const char* libelle;
    Parametre abattement;
    std::span<const CaseEntree> boxes, autres;
};

}  // namespace

// A part of the receipts of each kind, no less than a minimum that professional and other receipts share.
bool Explicateur::ParAbattementMicro(Noeud& noeud, CaseSortie sortie, int colonne) {
    using namespace nonsalaries;
    const auto k = static_cast<std::size_t>(colonne - 1);
    const CaseEntree ventes[] = {ventesPro[k]}, services[] = {servicesPro[k]};
    const CaseEntree ventesNP[] = {ventesNonPro[k], meubleVentes[k], meubleVentesDejaSoumises[k]};
    const CaseEntree servicesNP[] = {servicesNonPro[k], meubleServices[k], meubleServicesDejaSoumis[k]};
    const CaseEntree bnc[] = {bncPro[k]}, bncNP[] = {bncNonPro[k]};
    const Parametre surVentes = "micro.ventes.abattement", surServices = "micro.services.abattement";
    const Parametre surBnc = "micro.nonCommercial.abattement", minimum = "micro.abattement.plancher";
    const char* const abattementVentes = "abattement sur les ventes";
    const char* const abattementServices = "abattement sur les prestations";
    std::vector<Recettes> recettes;
    const bool meuble = sortie == CaseSortie("RR_BIC_NP_LM_MIC_ABAT");
    const bool avecMeuble = meuble || sortie == CaseSortie("RR_BIC_NP_MIC_ABAT");
    if (sortie == CaseSortie("RR_BIC_P_MIC_ABAT")) {
        recettes = {{abattementVentes, surVentes, ventes, ventesNP},
                    {abattementServices, surServices, services, servicesNP}};
    } else if (avecMeuble) {
        recettes = {{abattementVentes, surVentes, ventesNP, ventes},
                    {abattementServices, surServices, servicesNP, services}};
    } else if (sortie == CaseSortie("RR_BNC_P_SPE_ABAT")) {
        recettes = {{"abattement sur les recettes", surBnc, bnc, bncNP}};
    } else if (sortie == CaseSortie("RR_BNC_NP_SPE_ABAT")) {
        recettes = {{"abattement sur les recettes", surBnc, bncNP, bnc}};
    } else {
        return false;
    }
    return DansUneVue([&](std::size_t vue) {
        const auto somme = [&](std::span<const CaseEntree> boxes) {
            std::int32_t total = 0;
            for (const CaseEntree box : boxes) total += m_vues[vue][box];
            return total;
        };
        std::vector<Noeud> parts;
        for (const auto& [libelle, taux, boxes, autres] : recettes) {
            const std::int32_t total = somme(boxes), ailleurs = somme(autres);
            if (total <= 0) continue;
            Noeud base = Total("recettes", total);
            for (const CaseEntree box : boxes) Ajoute(base, Boite(box, vue, -1), 1);
            Somme(base);
            Noeud plancher = FigureDeLaLoi(minimum);
            if (ailleurs > 0)
                plancher = Prorata("minimum, partagé avec les autres recettes de même nature",
                                   nProrata(total, plancher.valeur, total + ailleurs), plancher,
                                   Part("recettes", total), Part("toutes les recettes", total + ailleurs));
            Noeud abattement =
                DansLesBornes(Taxe(libelle, base, FigureDeLaLoi(taux)), std::move(plancher), Part("", 0), base);
            if (avecMeuble) {  // furnished letting has its share of the allowance of the category
                const std::int32_t location = somme(boxes.subspan(1)), autre = total - location;
                const std::int32_t part = nProrata(abattement.valeur, location, total);
                const std::int32_t valeur = meuble ? part : abattement.valeur - part;
                if ((meuble ? autre : location) != 0)
                    abattement = Prorata(
                        libelle, valeur, std::move(abattement),
                        Part(meuble ? "recettes de location meublée" : "autres recettes", meuble ? location : autre),
                        Part("recettes", total));
            }
            if (abattement.valeur != 0) parts.push_back(std::move(abattement));
        }
        Noeud essai = noeud;
        if (!Repartit(essai, std::move(parts))) return false;
        noeud = std::move(essai);
        return true;
    });
}

namespace {

std::int32_t AnneesDActivite(std::int32_t debut) {
    if (debut > anneeDesRevenus) return 0;
    return debut == anneeDesRevenus ? 1 : debut == anneeDesRevenus - 1 ? 2 : 3;
}

constexpr CaseSortie resultatsAgricoles[] = {"RR_BA_MICRO", "RR_BA_MICRO_FORFAIT2015", "RR_BA_MICRO_REEL_Nm1",
                                             "RR_BA_MICRO_REEL_Nm2"};

}  // namespace

// The average of the years of activity, up to three.
bool Explicateur::ParMoyenneAgricole(Noeud& noeud, int colonne, std::int32_t profondeur) {
    const std::int32_t annees =
        AnneesDActivite(m_vues[0][nonsalaries::debutActivite[static_cast<std::size_t>(colonne - 1)]]);
    Noeud somme = Total("recettes et résultats des années retenues", 0);
    for (const CaseSortie sortie : resultatsAgricoles) {
        somme.valeur += Valeur(sortie, colonne);
        Ajoute(somme, Ligne(sortie, colonne, profondeur - 2), 1);
    }
    Somme(somme);
    if (annees == 0 || nArrondi(dDiv(somme.valeur, annees)) != noeud.valeur) return false;
    Reprend(noeud, Prorata("", noeud.valeur, std::move(somme), Part("", 1), Part("années d'activité", annees)));
    noeud.source = Parametre("micro.agricole.abattement").Ligne().source;
    return true;
}

// A part of the average; of each year's amount, averaged, where one of the three years has none.
bool Explicateur::ParAbattementAgricole(Noeud& noeud, int colonne, std::int32_t profondeur) {
    const Parametre taux = "micro.agricole.abattement", plancher = "micro.abattement.plancher";
    const auto abattement = [&](Noeud base) {
        Noeud part = Taxe("abattement, " + base.libelle, base, FigureDeLaLoi(taux));
        return DansLesBornes(std::move(part), FigureDeLaLoi(plancher), Part("", 0), base);
    };
    static constexpr CaseSortie parAnnee[] = {"RR_BA_MICRO", "RR_BA_MICRO_REEL_Nm1", "RR_BA_MICRO_REEL_Nm2"};
    const bool troisAnnees = std::all_of(std::begin(parAnnee), std::end(parAnnee),
                                         [&](CaseSortie sortie) { return Valeur(sortie, colonne) > 0; });
    if (troisAnnees) {
        Noeud moyen = abattement(Ligne("RR_BA_MICRO_MOY", colonne, profondeur - 1));
        const std::int32_t valeur = moyen.valeur;
        Reprend(noeud, std::move(moyen));
        return noeud.valeur == valeur;
    }
    const std::int32_t annees =
        AnneesDActivite(m_vues[0][nonsalaries::debutActivite[static_cast<std::size_t>(colonne - 1)]]);
    Noeud somme = Total("abattements de chaque année", 0);
    for (const CaseSortie sortie : parAnnee) {
        if (Valeur(sortie, colonne) <= 0) continue;
        Noeud annee = abattement(Ligne(sortie, colonne, profondeur - 2));
        somme.valeur += annee.valeur;
        Ajoute(somme, std::move(annee), 1);
    }
    Somme(somme);
    if (annees == 0 || somme.valeur == 0 || nArrondi(dDiv(somme.valeur, annees)) != noeud.valeur) return false;
    Reprend(noeud, Prorata("", noeud.valeur, std::move(somme), Part("", 1), Part("années d'activité", annees)));
    noeud.source = taux.Ligne().source;
    return true;
}

// Childcare: within a ceiling for each child, half of it in alternating residence.
bool Explicateur::ParGardeDEnfants(Noeud& noeud, CaseSortie sortie) {
    const bool alternes = sortie == CaseSortie("D_FRAIS_GARDE_ALTERNE");
    const std::int32_t plafond = nDiv(ValeurLoi("credits.gardeEnfants.plafond"), alternes ? 2 : 1);
    return DansUneVue([&](std::size_t vue) {
        Noeud essai = noeud;
        std::int32_t auDela = 0;
        for (const CaseEntree enfant : alternes ? credits::enfantsAlternes : credits::enfantsACharge) {
            Ajoute(essai, Boite(enfant, vue, -1), 1);
            auDela += nPositif(m_vues[vue][enfant] - plafond);
        }
        Ajoute(essai, Part("au-delà du plafond de " + Nombre(plafond) + " par enfant", auDela), -1);
        Somme(essai);
        essai.source = Parametre("credits.gardeEnfants.plafond").Ligne().source;
        if (essai.termes.empty() || Manque(essai) != 0) return false;
        noeud = std::move(essai);
        return true;
    });
}

// The declarants of a certain age, or disabled.
bool Explicateur::ParPersonnesAgees(Noeud& noeud) {
    const std::int32_t age = ValeurLoi("abattements.personnesAgees.age");
    const auto compte = [&](CaseEntree naissance, CaseEntree invalide, std::size_t declarant) {
        const std::int32_t ne = m_vues[0][naissance], annee = AnneeOfDate(ne);
        const bool agee = anneeDesRevenus - annee >= age;
        if (ne <= 0 || !(agee || m_vues[0][invalide] == 1)) return;
        const std::string motif = agee ? Nombre(age) + " ans ou plus, étant né en " + Nombre(annee) : "invalide";
        Ajoute(noeud, Part(NomDuMembre(declarant) + " : " + motif, 1), 1);
    };
    compte("AAF1", "P", 0);
    if (m_couple) compte("AAF2", "Fp", 1);
    Somme(noeud);
    noeud.source = Parametre("abattements.personnesAgees.age").Ligne().source;
    return Manque(noeud) == 0;
}

// ---- Maintenance paid: raised for decisions before 2006, within a ceiling for each child, within the income.

bool Explicateur::ParPensionsVersees(Noeud& noeud, CaseSortie sortie) {
    static constexpr CaseEntree enfants[] = {"6EL", "6EM", "6EN", "6EQ"}, majorees[] = {"6GI", "6GJ", "6GK", "6GL"};
    static constexpr CaseEntree justice[] = {"6GP"};
    const bool parEnfant = sortie != CaseSortie("C_JUSTICE"), raise = sortie != CaseSortie("C_ENFANTS_1");
    const std::span<const CaseEntree> boxes = !parEnfant ? std::span<const CaseEntree>(justice)
                                              : raise    ? std::span<const CaseEntree>(majorees)
                                                         : std::span<const CaseEntree>(enfants);
    const Parametre plafond = "abattements.enfantMarie", majoration = "charges.pensions.majoration";
    return DansUneVue([&](std::size_t vue) {
        Noeud essai = noeud;
        std::int32_t auDela = 0;
        for (const CaseEntree box : boxes) {
            const std::int32_t versee = m_vues[vue][box];
            if (versee == 0) continue;
            const std::string nom = entree::lignes[box.numero].nom;
            Ajoute(essai, Boite(box, vue, -1), 1);
            std::int32_t comptee = versee;
            if (raise) {
                Noeud plus = Taxe("majoration de " + nom, Part("pension versée", versee), FigureDeLaLoi(majoration));
                comptee += plus.valeur;
                Ajoute(essai, std::move(plus), 1);
            }
            if (parEnfant) auDela += nPositif(comptee - ValeurLoi(plafond));
        }
        if (essai.termes.empty()) return false;
        Ajoute(essai, Part("au-delà du plafond de " + Nombre(ValeurLoi(plafond)) + " par enfant", auDela), -1);
        if (essai.valeur < Valeur(sortie, 2))
            Ajoute(essai, Part("au-delà du revenu", Valeur(sortie, 2) - essai.valeur), -1);
        Somme(essai);
        if (Manque(essai) != 0) return false;
        essai.source = "CGI art. 156 II-2°";
        noeud = std::move(essai);
        return true;
    });
}

}  // namespace kv
