import { createHash } from "node:crypto";
import { readdirSync, readFileSync } from "node:fs";
import { fileURLToPath } from "node:url";
import { defineConfig, type Plugin } from "vite";

const ici = (chemin: string) => fileURLToPath(new URL(chemin, import.meta.url));

/** The worker that keeps the files of the page for later visits without a network: it names them all. */
function sansReseau(): Plugin {
    return {
        name: "sans-reseau",
        generateBundle(_, paquet) {
            const fichiers = ["./", ...Object.keys(paquet), ...readdirSync(ici("public"))].filter(
                (nom) => nom !== "index.html",
            );
            const empreinte = createHash("sha256");
            for (const sortie of Object.values(paquet))
                empreinte.update(sortie.type === "chunk" ? sortie.code : sortie.source);
            const source = readFileSync(ici("src/sw.js"), "utf8")
                .replace("__FICHIERS__", JSON.stringify(fichiers))
                .replace("__VERSION__", JSON.stringify(empreinte.digest("hex").slice(0, 16)));
            this.emitFile({ type: "asset", fileName: "sw.js", source });
        },
    };
}

export default defineConfig({
    base: "./",
    build: { outDir: ici("../build/web"), emptyOutDir: true, target: "es2022", modulePreload: { polyfill: false } },
    server: { fs: { allow: [ici("..")] } },
    oxc: { jsx: { runtime: "automatic", importSource: "preact" } },
    plugins: [sansReseau()],
});
