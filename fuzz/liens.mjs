// Any text as a link of the page: what is read from it, put in a link again, is the same, and nothing is thrown.
//   node liens.mjs SECONDS CORPUS
import { readFileSync, readdirSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { createRequire } from "node:module";

const web = join(dirname(fileURLToPath(import.meta.url)), "../web");
const { runnerImport } = await import(createRequire(join(web, "package.json")).resolve("vite"));
const { module } = await runnerImport(join(web, "src/declaration.ts"), { root: web, configFile: false, logLevel: "error" });
const { deJson, deLien, versLien } = module;
globalThis.location = { origin: "https://page", pathname: "/" };

// A computation that knows the names of boxes by their form.
const moteur = {
    pourquoiPas: (nom) => (/^((ti|tix|tiy|tk|tkz|quotient\.-?\d{1,9})\.)?[0-9A-Z]{2,4}$/.test(nom) ? "" : "unknown"),
    proches: () => [],
    boite: () => undefined,
};
const fragmentDe = (texte) => "#d=" + btoa(String.fromCharCode(...new TextEncoder().encode(texte))).replaceAll("+", "-").replaceAll("/", "_").replaceAll("=", "");

const graines = readdirSync(process.argv[3]).map((nom) => readFileSync(join(process.argv[3], nom), "utf8").trim());
let etat = Date.now() >>> 0;
const tire = (n) => {
    etat = (Math.imul(etat ^ (etat >>> 15), 0x2c1b3c6d) + 0x9e3779b9) >>> 0;
    return etat % n;
};
const morceaux = ['"', "{", "}", ":", ",", "[", "]", "null", "-1", "1e9", "2147483648", "\\u0000", "é", '"entries"', '"__proto__"', " "];
const change = (texte) => {
    for (let n = 1 + tire(4); n > 0; --n) {
        const ici = tire(texte.length + 1);
        texte = texte.slice(0, ici) + (tire(3) ? morceaux[tire(morceaux.length)] : "") + texte.slice(ici + tire(3));
    }
    return texte;
};

let essais = 0;
for (const fin = Date.now() + 1000 * Number(process.argv[2]); Date.now() < fin; ++essais) {
    const texte = change(graines[tire(graines.length)]);
    const fragment = tire(8) ? fragmentDe(texte) : change(fragmentDe(texte));
    try {
        const { declaration } = deJson(deLien(fragment), moteur);
        const lien = versLien(declaration);
        const relue = deJson(deLien(lien.slice(lien.indexOf("#"))), moteur);
        if (relue.refus.length > 0 || JSON.stringify(relue.declaration) !== JSON.stringify(declaration)) throw new Error("another return");
    } catch (faute) {
        console.error(`${fragment}\n${texte}\n${faute.stack}`);
        process.exit(1);
    }
}
console.log(`links: ${essais} tried`);
