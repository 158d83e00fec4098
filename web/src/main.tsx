import { render } from "preact";
import { useState } from "preact/hooks";
import { deJson, vierge } from "./declaration";
import { type Declaration, Moteur } from "./kv";
import { depart, Page } from "./Page";
import "./style.css";

// The page, and what becomes of it when the module fails: a new one takes over, with the same return; when it fails on
// that return too, the return is said to be the cause.
function Application({ premier }: { premier: Moteur }) {
    const [moteur, setMoteur] = useState(premier);
    const [{ declaration: premiere, refus }] = useState(() => depart(premier));
    const [declaration, setDeclaration] = useState<Declaration>(premiere);
    const [bonne, setBonne] = useState<Declaration>(premiere);
    const [faute, setFaute] = useState("");
    const remplace = (cause: unknown) => {
        console.error(cause);
        void Moteur.charge().then((nouveau) => {
            setMoteur(nouveau);
            setDeclaration(declaration === bonne ? vierge : bonne);
            setFaute("Le calcul s'est arrêté sur cette déclaration : la précédente est reprise.");
        });
    };
    return (
        <>
            {faute !== "" && (
                <p class="faute" role="alert">
                    {faute}
                </p>
            )}
            <Page
                moteur={moteur}
                remplace={remplace}
                declaration={declaration}
                refuses={refus}
                setDeclaration={(change) =>
                    setDeclaration((avant) => {
                        setBonne(avant);
                        return change(avant);
                    })
                }
            />
        </>
    );
}

const place = document.getElementById("page")!;
try {
    const moteur = await Moteur.charge();
    render(<Application premier={moteur} />, (place.replaceChildren(), place));
    // For whoever opens the console: the figures of a return, as the command line gives them, and the curve of its net
    // amount.
    const aPart = await Moteur.charge();
    const lis = (document: unknown) => {
        const { declaration, refus } = deJson(document, aPart);
        if (refus.length > 0) throw new Error(refus.join("\n"));
        return declaration;
    };
    Object.assign(globalThis, {
        kvcalcul: {
            calcule: (document: unknown) => (aPart.calcule(lis(document)), aPart.sorties()),
            courbe: (document: unknown, nom: string, a: number, pas: number) =>
                aPart.courbe(lis(document), {}, nom, a, pas),
        },
    });
    if ("serviceWorker" in navigator && import.meta.env.PROD) await navigator.serviceWorker.register("./sw.js");
} catch (faute) {
    console.error(faute);
    place.textContent = "Le calcul n'a pas pu démarrer dans ce navigateur.";
}
