// To begin from an example or a file, to keep a return, to share it.

import { useRef, useState } from "preact/hooks";
import { lisJson, versJson, versLien } from "./declaration";
import type { Declaration } from "./kv";
import { exemples } from "./themes";

interface Props {
    declaration: Declaration;
    ouvre: (document: unknown, dou: string) => void;
    efface: () => void;
    garde: boolean;
    change: (garde: boolean) => void;
}

export function Fichiers({ declaration, ouvre, efface, garde, change }: Props) {
    const fichier = useRef<HTMLInputElement>(null);
    const [dit, setDit] = useState("");
    const telecharge = () => {
        const lien = document.createElement("a");
        const texte = JSON.stringify(versJson(declaration), null, 2) + "\n";
        lien.href = URL.createObjectURL(new Blob([texte], { type: "application/json" }));
        lien.download = "declaration.json";
        lien.click();
        setTimeout(() => URL.revokeObjectURL(lien.href), 1000);
        setDit("La déclaration est enregistrée dans declaration.json.");
    };
    const partage = async () => {
        const lien = versLien(declaration);
        history.replaceState(null, "", lien);
        try {
            await navigator.clipboard.writeText(lien);
            setDit("Le lien est copié. La déclaration est dans le lien lui-même : aucun serveur ne la reçoit.");
        } catch {
            setDit("Le lien est dans la barre d'adresse. La déclaration y est : aucun serveur ne la reçoit.");
        }
    };
    const charge = async (choisi: File) => ouvre(lisJson(await choisi.text()), choisi.name);
    return (
        <div class="fichiers">
            <select
                aria-label="Partir d'un exemple"
                value=""
                onChange={(e) => {
                    const exemple = exemples[Number(e.currentTarget.value)];
                    e.currentTarget.value = "";
                    if (exemple) ouvre(exemple.document, exemple.titre);
                }}
            >
                <option value="">Partir d'un exemple…</option>
                {exemples.map(({ titre }, rang) => (
                    <option key={titre} value={rang}>
                        {titre}
                    </option>
                ))}
            </select>
            <button type="button" onClick={() => fichier.current!.click()}>
                Ouvrir
            </button>
            <input
                ref={fichier}
                type="file"
                accept=".json,application/json"
                hidden
                aria-label="Ouvrir une déclaration"
                onChange={(e) => {
                    const choisi = e.currentTarget.files?.[0];
                    e.currentTarget.value = "";
                    if (choisi) void charge(choisi);
                }}
            />
            <button type="button" onClick={telecharge}>
                Enregistrer
            </button>
            <button type="button" onClick={() => void partage()}>
                Partager
            </button>
            <button type="button" onClick={() => print()}>
                Imprimer
            </button>
            <button type="button" onClick={efface}>
                Tout effacer
            </button>
            <label>
                <input type="checkbox" checked={garde} onChange={(e) => change(e.currentTarget.checked)} /> Garder cette
                déclaration dans ce navigateur
            </label>
            <p role="status">{dit}</p>
        </div>
    );
}
