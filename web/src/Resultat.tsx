// The result, beside the entries: it follows every key stroke.

import type { Moteur } from "./kv";
import { ecart, euros, nombre, pourcent } from "./nombres";

/** What the result shows of a computed return; read at once, so that other computations may follow. */
export interface Chiffres {
    net: number;
    impot: number;
    reductions: number;
    credits: number;
    prelevements: number;
    revenuReference: number;
    parts: number;
    tauxMoyen: number;
    tauxMarginal: number;
    tauxFoyer: number;
    tauxIndividuels: [number, number];
}

export function lisChiffres(moteur: Moteur): Chiffres {
    const lit = (nom: string) => moteur.lit(nom);
    return {
        net: moteur.net,
        impot: lit("TOT_PAYER") - lit("TOT_REST"),
        reductions: lit("REDUCTIONS"),
        credits: lit("D_CREDIT"),
        prelevements: lit("S_A_PAYER"),
        revenuReference: lit("REVENU_REF"),
        parts: lit("F_NB_PARTS_ALL") / 100,
        tauxMoyen: lit("TAUX_IMPOS_MOY") / 10_000,
        tauxMarginal: lit("TAUX_MARGINAL_3") / 10_000,
        tauxFoyer: lit("TAUX_PAS") / 1000,
        tauxIndividuels: [lit("TAUX_PAS_IND1") / 1000, lit("TAUX_PAS_IND2") / 1000],
    };
}

interface Props {
    chiffres: Chiffres;
    /** The net amount under the law of the year, where another law is tried. */
    netDeLAnnee: number | undefined;
    couple: boolean;
    avertissements: string[];
}

export function Resultat({ chiffres: c, netDeLAnnee, couple, avertissements }: Props) {
    const lignes: [string, string][] = [
        ["Impôt sur le revenu", c.impot < 0 ? `${euros(-c.impot)} restitués` : euros(c.impot)],
        ["Réductions d'impôt", euros(c.reductions)],
        ["Crédits d'impôt", euros(c.credits)],
        ["Prélèvements sociaux", euros(c.prelevements)],
        ["Revenu fiscal de référence", euros(c.revenuReference)],
        ["Nombre de parts", nombre(c.parts)],
        ["Taux moyen d'imposition", pourcent(c.tauxMoyen)],
        ["Taux marginal d'imposition", pourcent(c.tauxMarginal)],
        ["Taux de prélèvement à la source", pourcent(c.tauxFoyer)],
    ];
    if (couple)
        lignes.push(
            ["… individualisé, déclarant 1", pourcent(c.tauxIndividuels[0])],
            ["… individualisé, déclarant 2", pourcent(c.tauxIndividuels[1])],
        );
    return (
        <section class="panneau resultat" aria-labelledby="titre-resultat">
            <h2 id="titre-resultat">Résultat</h2>
            <p class="net" role="status" aria-live="polite">
                <span>{c.net < 0 ? "Vous êtes remboursé de" : "Vous payez"}</span>{" "}
                <output data-net={c.net}>{euros(Math.abs(c.net))}</output>
            </p>
            {netDeLAnnee !== undefined && (
                <p class="loi">
                    avec la loi changée ; {euros(netDeLAnnee)} avec celle de l'année, {ecart(c.net - netDeLAnnee)}
                </p>
            )}
            <dl>
                {lignes.map(([titre, valeur]) => (
                    <div key={titre}>
                        <dt>{titre}</dt>
                        <dd>{valeur}</dd>
                    </div>
                ))}
            </dl>
            {avertissements.length > 0 && (
                <div class="faute" role="note">
                    <p>Cette déclaration ne peut pas être vraie :</p>
                    <ul lang="en">
                        {avertissements.map((texte) => (
                            <li key={texte}>{texte}</li>
                        ))}
                    </ul>
                </div>
            )}
        </section>
    );
}
