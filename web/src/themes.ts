// The boxes that most returns use, by theme. The second declarant's stand where there is one.

export interface Theme {
    titre: string;
    boites: string[];
}

export const situations = [
    { boite: "C", libelle: "Célibataire" },
    { boite: "M", libelle: "Mariés" },
    { boite: "O", libelle: "Pacsés" },
    { boite: "D", libelle: "Divorcé ou séparé" },
    { boite: "V", libelle: "Veuf ou veuve" },
];

export const foyer = ["AAF1", "AAF2", "Fm", "Hm", "T", "L", "P", "Fp", "Gm"];

export const themes: Theme[] = [
    { titre: "Salaires", boites: ["1AJ", "1BJ", "1AP", "1BP", "1AK", "1BK"] },
    { titre: "Pensions et retraites", boites: ["1AS", "1BS", "1AO", "1BO", "1AZ", "1BZ"] },
    { titre: "Capitaux et plus-values", boites: ["2DC", "2TR", "2TS", "2CH", "2CK", "2BH", "2CA", "3VG", "3VH"] },
    { titre: "Revenus fonciers", boites: ["4BE", "4BA", "4BB", "4BC"] },
    { titre: "Indépendants", boites: ["5KO", "5LO", "5KP", "5LP", "5HQ", "5IQ", "5ND", "5OD", "5TA", "5TB", "5TE"] },
    { titre: "Charges déductibles", boites: ["6DE", "6EL", "6EM", "6GU", "6RS", "6RT"] },
    {
        titre: "Réductions et crédits",
        boites: ["7DB", "7GA", "7GB", "7UF", "7UD", "7AC", "7AE", "7EA", "7EC", "7EF", "7CD", "7AM"],
    },
];

export const capitaux = [
    "2DC",
    "2TR",
    "2TS",
    "2CH",
    "2FU",
    "2GO",
    "2TT",
    "3VG",
    "3SG",
    "3UA",
    "2TS1",
    "2CH1",
    "2CH2",
    "2CH3",
];

import celibataire from "../../examples/celibataire.json";
import coupleDeuxEnfants from "../../examples/couple-deux-enfants.json";
import coupleEnfantMarie from "../../examples/couple-enfant-marie-rattache.json";
import coupleHautsSalaires from "../../examples/couple-hauts-salaires.json";
import couplePensionsVersees from "../../examples/couple-pensions-versees-frais-reels.json";
import coupleAlternee from "../../examples/couple-residence-alternee.json";
import parentIsole from "../../examples/parent-isole.json";
import retraiteeInvalide from "../../examples/retraitee-invalide-rente-viagere.json";
import retraites from "../../examples/retraites-plus-de-65-ans.json";
import veuve from "../../examples/veuve-un-enfant.json";

/** Households to start from. */
export const exemples: { titre: string; document: unknown }[] = [
    { titre: "Célibataire", document: celibataire },
    { titre: "Couple, deux enfants", document: coupleDeuxEnfants },
    { titre: "Couple, hauts salaires", document: coupleHautsSalaires },
    { titre: "Couple, résidence alternée", document: coupleAlternee },
    { titre: "Couple, enfant marié rattaché", document: coupleEnfantMarie },
    { titre: "Couple, pensions versées, frais réels", document: couplePensionsVersees },
    { titre: "Parent isolé", document: parentIsole },
    { titre: "Veuve, un enfant", document: veuve },
    { titre: "Retraités de plus de 65 ans", document: retraites },
    { titre: "Retraitée invalide, rente viagère", document: retraiteeInvalide },
];
