import { useCallback, useEffect, useLayoutEffect, useMemo, useState } from "preact/hooks";
import { Arbre } from "./Arbre";
import type { Saisie } from "./Champ";
import { Courbe } from "./Courbe";
import { avecMontant, deJson, deLien, lisJson, vierge, versJson } from "./declaration";
import { Fichiers } from "./Fichiers";
import type { Declaration, Loi, Moteur } from "./kv";
import { Effets, LoiChangee, Options, Reports } from "./Panneaux";
import { lisChiffres, Resultat } from "./Resultat";
import { Foyer, Recherche, Themes } from "./Saisie";

const memoire = "declaration";

/** What the page begins with: a return that comes with the address, or that this browser keeps. */
export function depart(moteur: Moteur): { declaration: Declaration; refus: string[] } {
    const lien = deLien(location.hash);
    const garde = localStorage.getItem(memoire);
    if (lien === undefined && garde === null) return { declaration: vierge, refus: [] };
    const [dou, document] = lien !== undefined ? ["lien", lien] : ["ce navigateur", lisJson(garde!)];
    const { declaration, refus } = deJson(document, moteur);
    return { declaration, refus: refus.map((texte) => `${dou} : ${texte}`) };
}

/** What is dear to compute follows a moment later: the result never waits for it. */
function useDiffere<T>(valeur: T, millisecondes = 120): T {
    const [suivie, setSuivie] = useState(valeur);
    useEffect(() => {
        const attente = setTimeout(() => setSuivie(valeur), millisecondes);
        return () => clearTimeout(attente);
    }, [valeur, millisecondes]);
    return suivie;
}

interface Props {
    moteur: Moteur;
    /** Told of a fault of the module: another one takes over. */
    remplace: (faute: unknown) => void;
    declaration: Declaration;
    /** What could not be read of the return that the page began with. */
    refuses: string[];
    setDeclaration: (change: (avant: Declaration) => Declaration) => void;
}

export function Page({ moteur, remplace, declaration, refuses, setDeclaration }: Props) {
    const [loi, setLoi] = useState<Loi>({});
    const [refus, setRefus] = useState(refuses);
    const [garde, setGarde] = useState(() => localStorage.getItem(memoire) !== null);

    const ouvre = useCallback(
        (document: unknown, dou: string) => {
            const lue = deJson(document, moteur);
            setRefus(lue.refus.map((texte) => `${dou} : ${texte}`));
            if (document !== null) setDeclaration(() => lue.declaration);
        },
        [moteur, setDeclaration],
    );
    useEffect(() => {
        const lis = () => {
            const document = deLien(location.hash);
            if (document !== undefined) ouvre(document, "lien");
        };
        addEventListener("hashchange", lis);
        return () => removeEventListener("hashchange", lis);
    }, [ouvre]);
    useLayoutEffect(() => {
        if (garde) localStorage.setItem(memoire, JSON.stringify(versJson(declaration)));
        else localStorage.removeItem(memoire);
    }, [garde, declaration]);

    const saisie: Saisie = useMemo(
        () => ({
            lit: (nom) => declaration.montants[nom] ?? 0,
            pose: (nom, montant) => setDeclaration((avant) => avecMontant(avant, nom, montant)),
        }),
        [declaration, setDeclaration],
    );
    const noms = Object.keys(declaration.montants);

    const calcul = useMemo(() => {
        try {
            let netDeLAnnee: number | undefined;
            if (Object.keys(loi).length > 0) {
                moteur.calcule(declaration);
                netDeLAnnee = moteur.net;
            }
            moteur.calcule(declaration, loi);
            return { netDeLAnnee, chiffres: lisChiffres(moteur), avertissements: moteur.avertissements() };
        } catch (faute) {
            remplace(faute);
            return undefined;
        }
    }, [moteur, declaration, loi]);

    const [suivie, suivieLoi] = [useDiffere(declaration), useDiffere(loi)];
    const details = useMemo(() => {
        try {
            const arbre = moteur.explique(suivie, suivieLoi, null);
            const effets = moteur.effets(suivie, suivieLoi);
            moteur.calcule(suivie, suivieLoi);
            return { arbre, effets, net: moteur.net, reports: moteur.reports() };
        } catch (faute) {
            remplace(faute);
            return undefined;
        }
    }, [moteur, suivie, suivieLoi]);

    return (
        <>
            <header>
                <h1>Impôt sur les revenus de 2017</h1>
                <p>
                    Le calcul se fait dans cette page : aucun chiffre n'en sort.{" "}
                    <span class="discret">Version {moteur.version}</span>
                </p>
                <Fichiers
                    declaration={declaration}
                    ouvre={ouvre}
                    efface={() => {
                        setDeclaration(() => vierge);
                        setRefus([]);
                        history.replaceState(null, "", location.pathname);
                    }}
                    garde={garde}
                    change={setGarde}
                />
                {refus.length > 0 && (
                    <div class="faute" role="alert">
                        <p>Ce qui n'a pas pu être lu, le reste étant gardé :</p>
                        <ul>
                            {refus.map((texte) => (
                                <li key={texte}>{texte}</li>
                            ))}
                        </ul>
                    </div>
                )}
            </header>
            <main>
                <div class="haut">
                    <div class="saisie">
                        <Foyer moteur={moteur} saisie={saisie} noms={noms} />
                        <Themes moteur={moteur} saisie={saisie} noms={noms} />
                        <Recherche moteur={moteur} saisie={saisie} noms={noms} />
                    </div>
                    <div class="cote">
                        {calcul && <Resultat {...calcul} couple={saisie.lit("M") === 1 || saisie.lit("O") === 1} />}
                    </div>
                </div>
                {details && (
                    <div class="details">
                        <section class="panneau" aria-labelledby="titre-pourquoi">
                            <h2 id="titre-pourquoi">Pourquoi ce montant</h2>
                            <Arbre noeud={details.arbre} ouvert key={String(details.arbre.value)} />
                        </section>
                        <Effets moteur={moteur} effets={details.effets} net={details.net} />
                        <Courbe moteur={moteur} declaration={suivie} loi={suivieLoi} />
                        <Options
                            moteur={moteur}
                            declaration={declaration}
                            suivie={suivie}
                            loi={suivieLoi}
                            change={(d) => setDeclaration(() => d)}
                        />
                        <LoiChangee moteur={moteur} loi={loi} change={setLoi} />
                        <Reports reports={details.reports} />
                    </div>
                )}
            </main>
        </>
    );
}
