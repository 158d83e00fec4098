// The net amount and its marginal rate as one amount grows, the jumps marked with what they cost.

import { useEffect, useId, useMemo, useRef, useState } from "preact/hooks";
import uPlot from "uplot";
import "uplot/dist/uPlot.min.css";
import type { Courbe as Points, Declaration, Loi, Moteur } from "./kv";
import { ecart, euros, lisEntier, pourcent } from "./nombres";

interface Saut {
    montant: number;
    saut: number;
}

/** Where the figure leaps: a step that changes it by far more, or less, than those on both sides of it. */
export function sauts({ montants, valeurs }: Points, seuil = 60): Saut[] {
    const pas = (i: number) => valeurs[i + 1]! - valeurs[i]!;
    const trouves: Saut[] = [];
    for (let i = 1; i + 2 < valeurs.length; ++i) {
        const voisin = Math.abs(pas(i) - pas(i - 1)) < Math.abs(pas(i) - pas(i + 1)) ? pas(i - 1) : pas(i + 1);
        if (Math.abs(pas(i) - voisin) >= seuil) trouves.push({ montant: montants[i + 1]!, saut: pas(i) - voisin });
    }
    return trouves;
}

function couleurs() {
    const style = getComputedStyle(document.documentElement);
    const lit = (nom: string) => style.getPropertyValue(nom).trim();
    return { texte: lit("--texte"), grille: lit("--trait"), valeur: lit("--accent"), taux: lit("--second") };
}

function Dessin({ points, saute }: { points: Points; saute: Saut[] }) {
    const place = useRef<HTMLDivElement>(null);
    useEffect(() => {
        const ici = place.current!;
        const sombre = matchMedia("(prefers-color-scheme: dark)");
        let trace: uPlot | undefined;
        const dessine = () => {
            trace?.destroy();
            const c = couleurs();
            const axe = { stroke: c.texte, grid: { stroke: c.grille, width: 1 }, ticks: { stroke: c.grille } };
            const milliers = (_: uPlot, valeurs: number[]) => valeurs.map((v) => v.toLocaleString("fr-FR"));
            trace = new uPlot(
                {
                    width: Math.max(ici.clientWidth, 240),
                    height: 300,
                    scales: {
                        x: { time: false },
                        taux: { range: (_, bas, haut) => [Math.min(bas, 0), Math.max(haut, 50)] },
                    },
                    axes: [
                        { ...axe, values: milliers },
                        { ...axe, values: milliers, size: 70 },
                        {
                            ...axe,
                            scale: "taux",
                            side: 1,
                            grid: { show: false },
                            values: (_, v) => v.map((t) => `${t} %`),
                        },
                    ],
                    series: [
                        { label: "montant" },
                        { label: "net", stroke: c.valeur, width: 2, points: { show: false } },
                        {
                            label: "taux marginal",
                            scale: "taux",
                            stroke: c.taux,
                            width: 1.2,
                            points: { show: false },
                            paths: uPlot.paths.stepped!({ align: 1 }),
                        },
                    ],
                    legend: { show: false },
                    hooks: {
                        draw: [
                            (u) => {
                                u.ctx.fillStyle = c.texte;
                                u.ctx.font = `${12 * devicePixelRatio}px sans-serif`;
                                for (const { montant, saut } of saute) {
                                    const i = points.montants.indexOf(montant);
                                    const [x, y] = [
                                        u.valToPos(montant, "x", true),
                                        u.valToPos(points.valeurs[i] ?? 0, "y", true),
                                    ];
                                    u.ctx.beginPath();
                                    u.ctx.arc(x, y, 3 * devicePixelRatio, 0, 7);
                                    u.ctx.fill();
                                    u.ctx.fillText(ecart(saut), x + 6 * devicePixelRatio, y - 6 * devicePixelRatio);
                                }
                            },
                        ],
                    },
                },
                [
                    [...points.montants],
                    [...points.valeurs],
                    [...points.marginaux].map((t) => Math.max(-100, Math.min(100, 100 * t))),
                ],
                ici,
            );
        };
        dessine();
        const taille = new ResizeObserver(() => trace?.setSize({ width: Math.max(ici.clientWidth, 240), height: 300 }));
        taille.observe(ici);
        sombre.addEventListener("change", dessine);
        return () => {
            sombre.removeEventListener("change", dessine);
            taille.disconnect();
            trace?.destroy();
        };
    }, [points, saute]);
    return <div class="dessin" ref={place} aria-hidden="true" />;
}

export function Courbe({ moteur, declaration, loi }: { moteur: Moteur; declaration: Declaration; loi: Loi }) {
    const identifiant = useId();
    const [choisie, setChoisie] = useState("");
    const [jusqua, setJusqua] = useState("200000");
    const revenus = Object.keys(declaration.montants).filter((nom) => moteur.boite(nom)?.genre === "euros");
    const nom = revenus.includes(choisie) || moteur.pourquoiPas(choisie) === "" ? choisie : (revenus[0] ?? "1AJ");
    const fin = Math.min(Math.max(lisEntier(jusqua) ?? 200_000, 400), 100_000_000);
    const pas = Math.max(1, Math.floor(fin / 400));
    const points = useMemo(
        () => moteur.courbe(declaration, loi, nom, pas * 400, pas),
        [moteur, declaration, loi, nom, pas],
    );
    const saute = useMemo(() => sauts(points), [points]);
    const dixiemes = Array.from({ length: 11 }, (_, k) => 40 * k);
    return (
        <section class="panneau" aria-labelledby="titre-courbe">
            <h2 id="titre-courbe">Si un revenu changeait</h2>
            <div class="ligne">
                <div class="champ court">
                    <label for={`${identifiant}-case`}>Case</label>
                    <input
                        id={`${identifiant}-case`}
                        list={`${identifiant}-cases`}
                        value={choisie === "" ? nom : choisie}
                        onInput={(e) => setChoisie(e.currentTarget.value.trim())}
                    />
                    <datalist id={`${identifiant}-cases`}>
                        {revenus.map((boite) => (
                            <option key={boite} value={boite}>
                                {moteur.boite(boite)?.libelle}
                            </option>
                        ))}
                    </datalist>
                </div>
                <div class="champ court">
                    <label for={`${identifiant}-fin`}>De 0 à (euros)</label>
                    <input
                        id={`${identifiant}-fin`}
                        inputMode="numeric"
                        value={jusqua}
                        onInput={(e) => setJusqua(e.currentTarget.value)}
                    />
                </div>
            </div>
            <figure>
                <Dessin points={points} saute={saute} />
                <figcaption>
                    <span class="cle valeur">net à payer</span> et <span class="cle taux">taux marginal</span> selon{" "}
                    <code>{nom}</code> ({moteur.boite(nom)?.libelle}), de 0 à {euros(pas * 400)}, par {euros(pas)}.
                    {saute.length > 0 &&
                        ` Sauts : ${saute.map((s) => `${ecart(s.saut)} vers ${euros(s.montant)}`).join(", ")}.`}
                </figcaption>
            </figure>
            <details>
                <summary>Les chiffres de la courbe</summary>
                <table>
                    <thead>
                        <tr>
                            <th scope="col">{nom}</th>
                            <th scope="col">Net</th>
                            <th scope="col">Taux moyen</th>
                            <th scope="col">Taux marginal</th>
                        </tr>
                    </thead>
                    <tbody>
                        {dixiemes.map((i) => (
                            <tr key={i}>
                                <th scope="row">{euros(points.montants[i]!)}</th>
                                <td>{euros(points.valeurs[i]!)}</td>
                                <td>{pourcent(points.moyens[i]!)}</td>
                                <td>{pourcent(points.marginaux[i]!)}</td>
                            </tr>
                        ))}
                    </tbody>
                </table>
            </details>
        </section>
    );
}
