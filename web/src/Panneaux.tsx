// What stands below the result: what each box does, next year's return, the options, a changed law.

import { useId, useMemo, useState } from "preact/hooks";
import type { Boite, Declaration, Effet, Loi, Moteur, Parametre } from "./kv";
import { ecart, euros, nombre } from "./nombres";
import { capitaux } from "./themes";

export function Effets({ moteur, effets, net }: { moteur: Moteur; effets: Effet[]; net: number }) {
    const libelle = (nom: string) => moteur.boite(nom.split(".").at(-1)!)?.libelle ?? "";
    return (
        <section class="panneau" aria-labelledby="titre-effets">
            <h2 id="titre-effets">Ce que fait chaque case</h2>
            {effets.length === 0 ? (
                <p>Aucune case n'est remplie.</p>
            ) : (
                <div class="defile" tabIndex={0} role="region" aria-label="Effet de chaque case sur le net">
                    <table>
                        <thead>
                            <tr>
                                <th scope="col">Case</th>
                                <th scope="col">Montant</th>
                                <th scope="col">Ce qu'elle ajoute au net</th>
                                <th scope="col">Un peu plus ferait</th>
                            </tr>
                        </thead>
                        <tbody>
                            {effets.map((e) => (
                                <tr key={e.nom}>
                                    <th scope="row">
                                        {libelle(e.nom)} <code>{e.nom}</code>
                                    </th>
                                    <td>{nombre(e.montant)}</td>
                                    <td>{ecart(net - e.sans)}</td>
                                    <td>
                                        {e.plus === 0
                                            ? "—"
                                            : `${ecart(e.avecPlus - net)} pour ${ecart(e.plus).replace(" €", "")}`}
                                    </td>
                                </tr>
                            ))}
                        </tbody>
                    </table>
                </div>
            )}
        </section>
    );
}

export function Reports({ reports }: { reports: { boite: Boite; montant: number }[] }) {
    return (
        <section class="panneau" aria-labelledby="titre-reports">
            <h2 id="titre-reports">Pour la déclaration de l'année suivante</h2>
            {reports.length === 0 ? (
                <p>Rien n'est à reporter.</p>
            ) : (
                <div class="defile" tabIndex={0} role="region" aria-label="Montants à reporter">
                    <table>
                        <thead>
                            <tr>
                                <th scope="col">Ce qui se reporte</th>
                                <th scope="col">Case</th>
                                <th scope="col">Montant</th>
                            </tr>
                        </thead>
                        <tbody>
                            {reports.map(({ boite, montant }) => (
                                <tr key={boite.nom}>
                                    <th scope="row">{boite.libelle}</th>
                                    <td>
                                        <code>{boite.suivante || boite.nom}</code>
                                    </td>
                                    <td>{nombre(montant)}</td>
                                </tr>
                            ))}
                        </tbody>
                    </table>
                </div>
            )}
        </section>
    );
}

// ---- The options on capital income.

const choixDOption = [
    { valeur: "", libelle: "Comme en 2017, sans option" },
    { valeur: "PFU", libelle: "Prélèvement forfaitaire unique" },
    { valeur: "BAR", libelle: "Barème progressif" },
    { valeur: "AVA", libelle: "Le moins cher des deux" },
];

export function avecOption(declaration: Declaration, option: string): Declaration {
    const montants: Record<string, number> = { ...declaration.montants };
    for (const { valeur } of choixDOption) delete montants[valeur];
    if (option !== "") montants[option] = 1;
    return { ...declaration, montants, lancement: option === "" ? "normal" : "options" };
}

interface PropsOptions {
    moteur: Moteur;
    declaration: Declaration;
    /** The return that both amounts are of, a moment behind. */
    suivie: Declaration;
    loi: Loi;
    change: (declaration: Declaration) => void;
}

export function Options({ moteur, declaration, suivie, loi, change }: PropsOptions) {
    const options = useMemo(() => {
        moteur.calcule(avecOption(suivie, "AVA"), loi);
        return moteur.options();
    }, [moteur, suivie, loi]);
    const choisie =
        choixDOption.find(({ valeur }) => valeur !== "" && declaration.montants[valeur] === 1)?.valeur ?? "";
    const concernee = capitaux.some((nom) => declaration.montants[nom] !== undefined);
    return (
        <section class="panneau" aria-labelledby="titre-options">
            <h2 id="titre-options">Forfait ou barème pour les capitaux</h2>
            {options && (
                <p>
                    Net avec le prélèvement forfaitaire : <strong>{euros(options.forfait)}</strong> ; avec le barème :{" "}
                    <strong>{euros(options.bareme)}</strong>.{" "}
                    {options.forfait === options.bareme
                        ? concernee
                            ? "Les deux reviennent au même."
                            : "Sans revenus de capitaux, les deux reviennent au même."
                        : `${options.applique === "forfait" ? "Le forfait" : "Le barème"} coûte ${euros(
                              Math.abs(options.forfait - options.bareme),
                          )} de moins.`}
                </p>
            )}
            <fieldset>
                <legend>Appliquer</legend>
                <div class="choix">
                    {choixDOption.map(({ valeur, libelle }) => (
                        <label key={valeur}>
                            <input
                                type="radio"
                                name="option"
                                checked={valeur === choisie}
                                onChange={() => change(avecOption(declaration, valeur))}
                            />
                            {libelle}
                        </label>
                    ))}
                </div>
            </fieldset>
        </section>
    );
}

// ---- A changed law.

const unites: Record<string, string> = { euros: "€", percent: "%", years: "ans", count: "" };

interface PropsLoi {
    moteur: Moteur;
    loi: Loi;
    change: (loi: Loi) => void;
}

export function LoiChangee({ moteur, loi, change }: PropsLoi) {
    const identifiant = useId();
    const parametres = useMemo(() => moteur.parametres(), [moteur]);
    const [cherche, setCherche] = useState("bareme.tranche3.taux");
    const [faute, setFaute] = useState("");
    const choisi = parametres.find(({ nom }) => nom === cherche.trim());
    const pose = (parametre: Parametre, texte: string) => {
        const valeur = Number(texte.trim().replace(",", "."));
        const { minimum, maximum, unite } = parametre;
        if (texte.trim() === "" || !Number.isFinite(valeur) || valeur < minimum || valeur > maximum)
            return setFaute(`un nombre de ${nombre(minimum)} à ${nombre(maximum)} ${unites[unite] ?? ""}`.trim());
        const autres: Record<string, number> = { ...loi, [parametre.nom]: valeur };
        if (valeur === parametre.valeur) delete autres[parametre.nom];
        try {
            moteur.calcule(
                { montants: {}, lancement: "normal", indexation: -1, periode: ["2017-01-01", "2017-12-31"] },
                autres,
            );
        } catch {
            return setFaute(
                "les seuils d'un barème doivent aller en croissant, et une valeur avoir deux décimales au plus",
            );
        }
        setFaute("");
        change(autres);
    };
    return (
        <section class="panneau" aria-labelledby="titre-loi">
            <h2 id="titre-loi">Si la loi changeait</h2>
            <div class="ligne">
                <div class="champ large">
                    <label for={`${identifiant}-nom`}>Chiffre de la loi</label>
                    <input
                        id={`${identifiant}-nom`}
                        list={`${identifiant}-noms`}
                        value={cherche}
                        onInput={(e) => setCherche(e.currentTarget.value)}
                    />
                    <datalist id={`${identifiant}-noms`}>
                        {parametres.map(({ nom, source }) => (
                            <option key={nom} value={nom}>
                                {source}
                            </option>
                        ))}
                    </datalist>
                </div>
                {choisi && (
                    <div class="champ court" key={choisi.nom}>
                        <label for={`${identifiant}-valeur`}>Valeur ({unites[choisi.unite] || "nombre"})</label>
                        <input
                            id={`${identifiant}-valeur`}
                            inputMode="decimal"
                            defaultValue={String(loi[choisi.nom] ?? choisi.valeur).replace(".", ",")}
                            aria-invalid={faute !== ""}
                            aria-describedby={`${identifiant}-faute`}
                            onInput={(e) => pose(choisi, e.currentTarget.value)}
                        />
                    </div>
                )}
            </div>
            <p id={`${identifiant}-faute`} class="faute" role="alert">
                {faute}
            </p>
            {choisi && (
                <p>
                    {nombre(choisi.valeur)} {unites[choisi.unite]} dans la loi de l'année
                    {choisi.source && ` (${choisi.source})`}.
                </p>
            )}
            {Object.keys(loi).length > 0 && (
                <>
                    <ul>
                        {Object.entries(loi).map(([nom, valeur]) => (
                            <li key={nom}>
                                <code>{nom}</code> : {nombre(valeur)}
                            </li>
                        ))}
                    </ul>
                    <button type="button" onClick={() => change({})}>
                        Revenir à la loi de l'année
                    </button>
                </>
            )}
        </section>
    );
}
