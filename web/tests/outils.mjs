// What the tests share: the page in a real browser, the command line beside it, random returns.
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

/** Random numbers that follow from a seed. */
export function hasard(graine) {
    let etat = graine;
    return (n) => {
        etat = (Math.imul(etat ^ (etat >>> 15), 0x2c1b3c6d) + 0x9e3779b9) | 0;
        let x = Math.imul(etat ^ (etat >>> 12), 0x297a2d39);
        x ^= x >>> 15;
        return (x >>> 0) % n;
    };
}

/** A random return over all boxes, as the command line reads it. */
export function declaration(tire, boites) {
    const montant = () => (tire(10) === 0 ? tire(2 ** 31) - 2 ** 30 : tire(60_000)) * (tire(12) === 0 ? -1 : 1);
    const entries = {};
    for (const nom of ["M", "1AJ", "1BJ", "1AS", "2DC", "3VG", "4BA", "5KO", "7UF"])
        if (tire(2) === 0) entries[nom] = nom === "M" ? 1 : tire(60_000);
    for (let n = [3, 10, 40, 200][tire(4)]; n > 0; --n) {
        const { name, kind } = boites[tire(boites.length)];
        entries[name] = kind === "tick" ? 1 : kind === "count" ? tire(4) : kind === "euros" ? montant() : tire(2018);
    }
    const document = { entries };
    if (tire(4) === 0) document.ti = { "1AW": tire(20_000) };
    if (tire(4) === 0) document.quotients = { "1AJ": { [2 + tire(4)]: tire(50_000) + 1 } };
    if (tire(3) === 0) document.launch = ["options", "forced", "forced-options"][tire(3)];
    return document;
}
