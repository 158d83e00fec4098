// Serves the built page on this machine: node serve.mjs [PORT]. KVPAGE names another folder than build/web.
import { createReadStream, existsSync, statSync } from "node:fs";
import { createServer } from "node:http";
import { extname, join, normalize } from "node:path";
import { fileURLToPath } from "node:url";

const racine = process.env.KVPAGE ?? fileURLToPath(new URL("../build/web/", import.meta.url));
const types = {
    ".html": "text/html; charset=utf-8",
    ".js": "text/javascript",
    ".css": "text/css",
    ".wasm": "application/wasm",
    ".svg": "image/svg+xml",
    ".webmanifest": "application/manifest+json",
};

export function sert(port) {
    const serveur = createServer((demande, reponse) => {
        const chemin = normalize(decodeURIComponent(new URL(demande.url, "http://localhost").pathname));
        let fichier = join(racine, chemin);
        if (!fichier.startsWith(racine) || !existsSync(fichier)) return reponse.writeHead(404).end();
        if (statSync(fichier).isDirectory()) fichier = join(fichier, "index.html");
        reponse.writeHead(200, { "content-type": types[extname(fichier)] ?? "application/octet-stream" });
        createReadStream(fichier).pipe(reponse);
    });
    return new Promise((pret) => serveur.listen(port, "127.0.0.1", () => pret(serveur)));
}

if (process.argv[1] === fileURLToPath(import.meta.url)) {
    const serveur = await sert(Number(process.argv[2] ?? 8017));
    console.log(`http://localhost:${serveur.address().port}/`);
}
