// Why the net amount is what it is: a tree that opens branch by branch, down to the boxes.

import { useState } from "preact/hooks";
import type { Noeud } from "./kv";
import { nombre } from "./nombres";

const roles: Record<string, string> = {
    chosen: "",
    base: "base",
    rate: "taux",
    amount: "montant",
    numerator: "fois",
    denominator: "sur",
    among: "entre",
    income: "revenu",
    parts: "parts",
    count: "nombre",
    threshold: "seuil",
    effect: "effet",
    option: "option",
    below: "au-dessous",
};

function signe({ role, sign }: Noeud): string {
    if (role) return roles[role] === "" ? "" : `${roles[role] ?? role} `;
    return sign === undefined ? "" : sign < 0 ? "− " : "+ ";
}

function Ligne({ noeud }: { noeud: Noeud }) {
    const nom = (noeud.box ?? "") + (noeud.column ? `.c${noeud.column}` : "");
    const taux = noeud.role === "rate" && noeud.formula;
    return (
        <>
            <span class="signe">{signe(noeud)}</span>
            <strong>{taux ? noeud.formula : nombre(noeud.value)}</strong>{" "}
            {noeud.rule === "law" && !noeud.column ? (
                <code>{nom}</code>
            ) : (
                <>
                    {noeud.label} {nom !== "" && nom !== "net" && <code>{nom}</code>}
                </>
            )}
            {noeud.formula && !taux && <span class="formule"> = {noeud.formula}</span>}
            {noeud.rule === "step" && noeud.step && <span class="source"> [{noeud.step}]</span>}
            {noeud.run && <span class="source"> [{noeud.run}]</span>}
            {noeud.law && noeud.rule !== "law" && <span class="source"> [{noeud.law}]</span>}
        </>
    );
}

export function Arbre({ noeud, ouvert = false }: { noeud: Noeud; ouvert?: boolean }) {
    const termes = (noeud.terms ?? []).filter(
        (terme) => !((terme.role === "base" || terme.role === "rate") && terme.rule === "part" && !terme.terms),
    );
    // A node of a single term says little by itself: it opens with the one above it.
    const [montre, setMontre] = useState(ouvert || termes.length === 1);
    if (termes.length === 0)
        return (
            <div class="feuille">
                <Ligne noeud={noeud} />
            </div>
        );
    return (
        <details class="branche" open={montre} onToggle={(e) => setMontre(e.currentTarget.open)}>
            <summary>
                <Ligne noeud={noeud} />
            </summary>
            {montre && (
                <ul>
                    {termes.map((terme, rang) => (
                        <li key={rang}>
                            <Arbre noeud={terme} />
                        </li>
                    ))}
                </ul>
            )}
        </details>
    );
}
