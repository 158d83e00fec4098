// One box of the return: its label, its field, and what is wrong with what stands there.

import { useEffect, useId, useState } from "preact/hooks";
import type { Boite } from "./kv";
import { lisEntier } from "./nombres";

export interface Saisie {
    lit: (nom: string) => number;
    pose: (nom: string, montant: number) => void;
}

interface Props {
    boite: Boite;
    saisie: Saisie;
    /** Another name than that of the box: a companion, an exceptional amount. */
    nom?: string;
    libelle?: string;
}

const deDate = (jour: number) => {
    const texte = String(jour).padStart(8, "0");
    return jour === 0 ? "" : `${texte.slice(0, 4)}-${texte.slice(4, 6)}-${texte.slice(6)}`;
};

export function Champ({ boite, saisie, nom = boite.nom, libelle }: Props) {
    const identifiant = useId();
    const montant = saisie.lit(nom);
    const texteDe = (n: number) => (n === 0 ? "" : String(n));
    const [texte, setTexte] = useState(texteDe(montant));
    useEffect(() => {
        const lu = lisEntier(texte);
        if (lu === undefined ? montant !== 0 : lu !== montant) setTexte(texteDe(montant)); // a wrong text stays
    }, [montant]);
    const faux = lisEntier(texte) === undefined;
    const personne = boite.personne === "foyer" ? "" : `, ${boite.personne}`;
    const vide = montant === 0 && !faux ? " vide" : ""; // not printed
    const titre = (
        <>
            {libelle ?? boite.libelle + personne} <code>{nom}</code>
        </>
    );
    if (boite.genre === "tick")
        return (
            <label class={`champ coche${vide}`}>
                <input
                    type="checkbox"
                    checked={montant === 1}
                    onChange={(e) => saisie.pose(nom, e.currentTarget.checked ? 1 : 0)}
                />
                <span>{titre}</span>
            </label>
        );
    if (boite.genre === "date")
        return (
            <div class={`champ${vide}`}>
                <label for={identifiant}>{titre}</label>
                <input
                    id={identifiant}
                    type="date"
                    min="1880-01-01"
                    max="2017-12-31"
                    value={deDate(montant)}
                    onInput={(e) => saisie.pose(nom, Number(e.currentTarget.value.replaceAll("-", "")) || 0)}
                />
            </div>
        );
    return (
        <div class={`champ${vide}`}>
            <label for={identifiant}>{titre}</label>
            <input
                id={identifiant}
                inputMode="numeric"
                autocomplete="off"
                value={texte}
                aria-invalid={faux}
                aria-describedby={faux ? `${identifiant}-faute` : undefined}
                onInput={(e) => {
                    setTexte(e.currentTarget.value);
                    saisie.pose(nom, lisEntier(e.currentTarget.value) ?? 0);
                }}
            />
            {faux && (
                <p class="faute" id={`${identifiant}-faute`} role="alert">
                    « {texte} » n'est pas un nombre entier : la case n'est pas comptée.
                </p>
            )}
        </div>
    );
}
