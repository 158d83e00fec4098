// Makes the pictures of docs/page.md: node images.mjs.
import { fileURLToPath } from "node:url";
import { lance, net, ouvre } from "./tests/outils.mjs";

const ici = (nom) => fileURLToPath(new URL(`../docs/images/${nom}.png`, import.meta.url));
const monde = await lance();

async function etat(nom, options, prepare) {
    const { page, contexte } = await ouvre(monde, options);
    await page.getByLabel("Partir d'un exemple").selectOption({ label: "Couple, deux enfants" });
    await net(page, 5243);
    await page.locator("canvas").waitFor();
    await page.waitForTimeout(300);
    await prepare(page);
    await page.screenshot({ path: ici(nom) });
    await contexte.close();
}

await etat("page", { viewport: { width: 1200, height: 820 } }, async () => {});
await etat("page-pourquoi", { viewport: { width: 1200, height: 900 }, colorScheme: "dark" }, async (page) => {
    const section = page.locator("section", { hasText: "Pourquoi ce montant" });
    for (const branche of [/I_IMP_RETENU/, /I_IMP_SIMP/, /I_PLAF_FAM/])
        await section
            .locator("summary", { hasText: branche })
            .first()
            .evaluate((s) => s.parentElement.open || s.click());
    await section.evaluate((s) => s.scrollIntoView());
    await page.waitForTimeout(200);
});
await etat("page-telephone", { viewport: { width: 380, height: 760 }, isMobile: true }, async () => {});
await monde.ferme();
