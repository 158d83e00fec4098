// A return as the page holds it, and as the command line reads and writes it.

import type { Declaration, Lancement, Montants, Moteur } from "./kv";

export const vierge: Declaration = {
    montants: {},
    lancement: "normal",
    indexation: -1,
    periode: ["2017-01-01", "2017-12-31"],
};

const aires = ["ti", "tix", "tiy", "tk", "tkz"];
const lancements: Lancement[] = ["normal", "options", "forced", "forced-options"];

/** The JSON of the command line. */
export function versJson({ montants, lancement, indexation, periode }: Declaration): Record<string, unknown> {
    const entries: Record<string, number> = {};
    const document: Record<string, unknown> = { entries };
    const quotients: Record<string, Record<string, number>> = {};
    for (const [nom, montant] of Object.entries(montants)) {
        const parties = nom.split(".");
        if (parties.length === 1) entries[nom] = montant;
        else if (parties[0] === "quotient") (quotients[parties[2]!] ??= {})[parties[1]!] = montant;
        else ((document[parties[0]!] ??= {}) as Record<string, number>)[parties[1]!] = montant;
    }
    if (Object.keys(quotients).length > 0) document.quotients = quotients;
    if (lancement !== "normal") document.launch = lancement;
    if (indexation !== -1) document.indexation = indexation;
    if (periode.join() !== vierge.periode.join()) document.period = periode;
    return document;
}

export function estMontant(valeur: unknown): valeur is number {
    return typeof valeur === "number" && Number.isInteger(valeur) && Math.abs(valeur) < 2 ** 31;
}

const estObjet = (valeur: unknown): valeur is Record<string, unknown> =>
    typeof valeur === "object" && valeur !== null && !Array.isArray(valeur);

/** Reads it; what can't be read is told, in French, and the rest is kept. */
export function deJson(document: unknown, moteur: Moteur): { declaration: Declaration; refus: string[] } {
    const refus: string[] = [];
    const montants: Record<string, number> = {};
    const pose = (nom: string, valeur: unknown) => {
        if (moteur.pourquoiPas(nom) !== "") {
            const boite = nom.split(".").at(-1)!;
            const proches = moteur.proches(boite).filter((proche) => proche !== boite);
            const connue = moteur.boite(boite) !== undefined;
            refus.push(
                connue
                    ? `${nom} : la case ${boite} n'a pas de tel montant`
                    : `${nom} : case inconnue${proches.length > 0 ? `, les plus proches : ${proches.join(", ")}` : ""}`,
            );
        } else if (!estMontant(valeur)) {
            refus.push(`${nom} : ${JSON.stringify(valeur)} n'est pas un nombre entier d'euros`);
        } else if (valeur !== 0) {
            montants[nom] = valeur;
        }
    };
    const parcourt = (zone: unknown, quoi: string, f: (nom: string, valeur: unknown) => void) => {
        if (zone === undefined) return;
        if (estObjet(zone)) Object.entries(zone).forEach(([nom, valeur]) => f(nom, valeur));
        else refus.push(`${quoi} : n'est pas un objet`);
    };
    let { lancement, indexation, periode } = vierge;
    if (!estObjet(document)) return { declaration: vierge, refus: ["ce n'est pas une déclaration : un objet JSON"] };
    for (const [membre, valeur] of Object.entries(document)) {
        if (membre === "entries") {
            parcourt(valeur, membre, pose);
        } else if (aires.includes(membre)) {
            parcourt(valeur, membre, (nom, montant) => pose(`${membre}.${nom}`, montant));
        } else if (membre === "quotients") {
            parcourt(valeur, membre, (nom, parCoefficient) =>
                parcourt(parCoefficient, `quotients.${nom}`, (c, montant) => pose(`quotient.${c}.${nom}`, montant)),
            );
        } else if (membre === "launch" && lancements.includes(valeur as Lancement)) {
            lancement = valeur as Lancement;
        } else if (membre === "indexation") {
            if (Number.isFinite(valeur)) indexation = valeur as number;
            else refus.push("indexation : n'est pas un pourcentage");
        } else if (membre === "period" && Array.isArray(valeur) && valeur.length === 2) {
            periode = [String(valeur[0]), String(valeur[1])];
        } else {
            refus.push(`${membre} : ne fait pas partie d'une déclaration`);
        }
    }
    return { declaration: { montants, lancement, indexation, periode }, refus };
}

/** With another amount; 0 takes it out. */
export function avecMontant(declaration: Declaration, nom: string, montant: number): Declaration {
    const montants: Record<string, number> = { ...declaration.montants };
    if (montant === 0) delete montants[nom];
    else montants[nom] = montant;
    return { ...declaration, montants };
}
export function avecMontants(declaration: Declaration, autres: Montants): Declaration {
    return Object.entries(autres).reduce((d, [nom, montant]) => avecMontant(d, nom, montant), declaration);
}

/** The document of a text; null for one that is no JSON. */
export function lisJson(texte: string): unknown {
    try {
        return JSON.parse(texte);
    } catch {
        return null;
    }
}

// ---- A link: the return in the fragment, which a browser never sends.

const octets = (texte: string) => new TextEncoder().encode(texte);

export function versLien(declaration: Declaration): string {
    const binaire = String.fromCharCode(...octets(JSON.stringify(versJson(declaration))));
    const code = btoa(binaire).replaceAll("+", "-").replaceAll("/", "_").replaceAll("=", "");
    return `${location.origin}${location.pathname}#d=${code}`;
}

/** The document of a fragment; undefined for one that holds none. */
export function deLien(fragment: string): unknown {
    const code = /^#d=([\w-]+)$/.exec(fragment)?.[1];
    if (code === undefined) return undefined;
    try {
        const binaire = atob(code.replaceAll("-", "+").replaceAll("_", "/"));
        return lisJson(new TextDecoder().decode(Uint8Array.from(binaire, (c) => c.charCodeAt(0))));
    } catch {
        return null; // not of the alphabet
    }
}
