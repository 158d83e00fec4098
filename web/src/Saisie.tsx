// What the household declares: its situation, the boxes of most returns, every other box by search.

import { useId, useMemo, useState } from "preact/hooks";
import { Champ, type Saisie } from "./Champ";
import type { Boite, Moteur } from "./kv";
import { lisEntier } from "./nombres";
import { foyer, situations, themes } from "./themes";

interface Props {
    moteur: Moteur;
    saisie: Saisie;
    /** The names of the amounts that are set. */
    noms: string[];
}

const seconds = (moteur: Moteur, nom: string) => moteur.boite(nom)?.personne === "déclarant 2" || nom === "Fp";

export function Foyer({ moteur, saisie }: Props) {
    const couple = saisie.lit("M") === 1 || saisie.lit("O") === 1;
    const choisie = situations.find(({ boite }) => saisie.lit(boite) === 1)?.boite ?? "";
    return (
        <section class="panneau" aria-labelledby="titre-foyer">
            <h2 id="titre-foyer">Le foyer</h2>
            <fieldset>
                <legend>Situation de famille</legend>
                <div class="choix">
                    {situations.map(({ boite, libelle }) => (
                        <label key={boite}>
                            <input
                                type="radio"
                                name="situation"
                                checked={boite === choisie}
                                onChange={() =>
                                    situations.forEach((s) => saisie.pose(s.boite, s.boite === boite ? 1 : 0))
                                }
                            />
                            {libelle}
                        </label>
                    ))}
                </div>
            </fieldset>
            <div class="champs">
                {foyer
                    .filter((nom) => couple || !seconds(moteur, nom))
                    .filter((nom) => !couple || (nom !== "T" && nom !== "L"))
                    .map((nom) => (
                        <Champ key={nom} boite={moteur.boite(nom)!} saisie={saisie} />
                    ))}
            </div>
        </section>
    );
}

export function Themes({ moteur, saisie, noms }: Props) {
    const couple = saisie.lit("M") === 1 || saisie.lit("O") === 1;
    return (
        <section class="panneau" aria-labelledby="titre-revenus">
            <h2 id="titre-revenus">Revenus, charges, réductions</h2>
            {themes.map(({ titre, boites }, rang) => (
                <details key={titre} open={rang === 0 || boites.some((nom) => noms.includes(nom))}>
                    <summary>{titre}</summary>
                    <div class="champs">
                        {boites
                            .filter((nom) => couple || !seconds(moteur, nom) || noms.includes(nom))
                            .map((nom) => (
                                <Champ key={nom} boite={moteur.boite(nom)!} saisie={saisie} />
                            ))}
                    </div>
                </details>
            ))}
        </section>
    );
}

/** The amounts that stand beside a box: foreign income, exceptional income by coefficient. */
function Lies({ boite, saisie, noms }: { boite: Boite; saisie: Saisie; noms: string[] }) {
    const identifiant = useId();
    const [coefficient, setCoefficient] = useState("4");
    const aires: [boolean, string, string][] = [
        [boite.etranger, "ti", "revenu étranger exonéré, retenu pour le taux effectif"],
        [boite.deductionsEtrangeres, "tix", "première déduction de ce revenu étranger"],
        [boite.deductionsEtrangeres, "tiy", "seconde déduction de ce revenu étranger"],
        [boite.creditEtranger, "tk", "revenu étranger ouvrant droit à un crédit égal à l'impôt français"],
        [boite.creditEtranger, "tkz", "déduction de ce revenu étranger"],
    ];
    const montants = { ...boite, genre: "euros" as const };
    const prefixe = "quotient.";
    const connus = noms.filter((nom) => nom.startsWith(prefixe) && nom.endsWith(`.${boite.nom}`));
    const nouveau = lisEntier(coefficient);
    const nom = nouveau === undefined || nouveau < 0 ? "" : `${prefixe}${nouveau}.${boite.nom}`;
    return (
        <div class="lies">
            {aires
                .filter(([existe]) => existe)
                .map(([, aire, libelle]) => (
                    <Champ key={aire} boite={montants} nom={`${aire}.${boite.nom}`} libelle={libelle} saisie={saisie} />
                ))}
            {boite.exceptionnel && (
                <>
                    {[...new Set([...connus, nom])].filter(Boolean).map((nom_) => (
                        <Champ
                            key={nom_}
                            boite={montants}
                            nom={nom_}
                            libelle={`revenu exceptionnel, coefficient ${nom_.split(".")[1]}`}
                            saisie={saisie}
                        />
                    ))}
                    <div class="champ court">
                        <label for={identifiant}>Coefficient du quotient</label>
                        <input
                            id={identifiant}
                            inputMode="numeric"
                            value={coefficient}
                            onInput={(e) => setCoefficient(e.currentTarget.value)}
                        />
                    </div>
                </>
            )}
        </div>
    );
}

export function Recherche({ moteur, saisie, noms }: Props) {
    const identifiant = useId();
    const [mots, setMots] = useState("");
    const vus = 24;
    const trouvees = useMemo(() => (mots.trim() === "" ? [] : moteur.cherche(mots.trim())), [moteur, mots]);
    const dansLesThemes = new Set([...foyer, ...situations.map((s) => s.boite), ...themes.flatMap((t) => t.boites)]);
    const autres = [...new Set(noms.map((nom) => nom.split(".").at(-1)!))].filter(
        (nom) => !dansLesThemes.has(nom) || noms.some((autre) => autre.endsWith(`.${nom}`)),
    );
    const montre = (boite: Boite) => (
        <li key={boite.nom}>
            <Champ boite={boite} saisie={saisie} />
            {(boite.etranger || boite.creditEtranger || boite.exceptionnel) && (
                <details open={noms.some((nom) => nom.endsWith(`.${boite.nom}`))}>
                    <summary>Montants étrangers ou exceptionnels de {boite.nom}</summary>
                    <Lies boite={boite} saisie={saisie} noms={noms} />
                </details>
            )}
        </li>
    );
    return (
        <section class="panneau" aria-labelledby="titre-recherche">
            <h2 id="titre-recherche">Toutes les cases</h2>
            <div class="champ large">
                <label for={identifiant}>Chercher une case par son nom ou par des mots</label>
                <input
                    id={identifiant}
                    type="search"
                    value={mots}
                    placeholder="7UF, pension alimentaire…"
                    onInput={(e) => setMots(e.currentTarget.value)}
                />
            </div>
            <p role="status">
                {mots.trim() !== "" &&
                    (trouvees.length === 0
                        ? "Aucune case."
                        : `${trouvees.length} case${trouvees.length > 1 ? "s" : ""}` +
                          (trouvees.length > vus ? `, les ${vus} premières :` : " :"))}
            </p>
            <ul class="cases">{trouvees.slice(0, vus).map(montre)}</ul>
            {autres.length > 0 && (
                <>
                    <h3>Autres cases remplies</h3>
                    <ul class="cases">{autres.flatMap((nom) => moteur.boite(nom) ?? []).map(montre)}</ul>
                </>
            )}
        </section>
    );
}
