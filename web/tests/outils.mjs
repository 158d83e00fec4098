// What the tests share: the page in a real browser, the command line beside it, the returns of every interface.
import { spawnSync } from "node:child_process";
import { fileURLToPath } from "node:url";
import { chromium } from "playwright-core";
import { sert } from "../serve.mjs";

const outil = process.env.KVCALCUL ?? fileURLToPath(new URL("../../build/release/kvcalcul", import.meta.url));

/** What a call of the command line writes. */
export function commande(arguments_, entree = "") {
    const { stdout, stderr, status } = spawnSync(outil, arguments_, {
        input: entree,
        encoding: "utf8",
        maxBuffer: 1 << 28,
    });
    if (status !== 0) throw new Error(`kvcalcul ${arguments_.join(" ")}: ${stderr}`);
    return stdout;
}

/** The returns on which every interface is compared. */
export function corpus() {
    const programme =
        process.env.KVCORPUS ?? fileURLToPath(new URL("../../build/release/tests/kv_corpus", import.meta.url));
    const { stdout, status } = spawnSync(programme, ["500"], { encoding: "utf8", maxBuffer: 1 << 28 });
    if (status !== 0) throw new Error("kv_corpus");
    return stdout;
}

/** A browser and the address of the page; everything ends with `ferme`. */
export async function lance() {
    const serveur = await sert(0);
    const navigateur = await chromium.launch({
        executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium",
        args: ["--no-sandbox"],
    });
    return {
        adresse: `http://localhost:${serveur.address().port}/`,
        navigateur,
        async ferme() {
            await navigateur.close();
            serveur.closeAllConnections();
            serveur.close();
        },
    };
}

/** The page, ready; what goes wrong in it is kept in `fautes`, each request in `demandes`. */
export async function ouvre({ navigateur, adresse }, options = {}, fragment = "") {
    const contexte = await navigateur.newContext({
        viewport: { width: 1280, height: 900 },
        locale: "fr-FR",
        ...options,
    });
    const page = await contexte.newPage();
    const fautes = [],
        demandes = [];
    page.on("console", (message) => message.type() === "error" && fautes.push(message.text()));
    page.on("pageerror", (faute) => fautes.push(faute.message));
    page.on("request", (demande) => demandes.push(demande.url()));
    page.on("response", (reponse) => reponse.status() >= 400 && fautes.push(`${reponse.status()} ${reponse.url()}`));
    await page.goto(adresse + fragment);
    await page.locator("output").waitFor();
    return { contexte, page, fautes, demandes };
}

/** The net amount that the page shows, once it is `attendu`. */
export async function net(page, attendu) {
    await page.locator(`output[data-net="${attendu}"]`).waitFor({ timeout: 5000 });
}
