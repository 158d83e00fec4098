// How fast the page is: node mesure.mjs. A cold cache, the couple of the README, medians of twenty.
import { lance, net, ouvre } from "./tests/outils.mjs";

const monde = await lance();
const mediane = (nombres) => nombres.sort((a, b) => a - b)[Math.floor(nombres.length / 2)];

const debut = performance.now();
const { page } = await ouvre(monde);
const premier = performance.now() - debut;
await page.getByLabel("Partir d'un exemple").selectOption({ label: "Couple, deux enfants" });
await net(page, 5243);
await page.locator("canvas").waitFor();

// From the key stroke to the new result in the page.
const frappes = await page.evaluate(async () => {
    const champ = [...document.querySelectorAll(".saisie label")].find((l) => /1AJ$/.test(l.textContent)).control;
    const resultat = document.querySelector(".net");
    const poser = Object.getOwnPropertyDescriptor(HTMLInputElement.prototype, "value").set;
    const durees = [];
    for (let i = 0; i < 20; ++i) {
        await new Promise((fini) => setTimeout(fini, 400));
        const debut = performance.now();
        const change = new Promise((fini) =>
            new MutationObserver((_, observateur) => (observateur.disconnect(), fini())).observe(resultat, {
                subtree: true,
                childList: true,
                characterData: true,
                attributes: true,
            }),
        );
        poser.call(champ, String(42_000 + 1000 * (i + 1)));
        champ.dispatchEvent(new Event("input", { bubbles: true }));
        await change;
        durees.push(performance.now() - debut);
    }
    return durees;
});
const courbes = await page.evaluate(() => {
    const durees = [];
    for (let i = 0; i < 20; ++i) {
        const debut = performance.now();
        globalThis.kvcalcul.courbe({ entries: { M: 1, Fm: 2, "1AJ": 42_000, "1BJ": 31_000 } }, "1AJ", 200_000, 500);
        durees.push(performance.now() - debut);
    }
    return durees;
});
console.log(`first figure, cold cache        ${premier.toFixed(0)} ms`);
console.log(
    `key stroke to result            ${mediane(frappes).toFixed(1)} ms, worst ${Math.max(...frappes).toFixed(1)}`,
);
console.log(
    `curve of 401 points             ${mediane(courbes).toFixed(1)} ms, worst ${Math.max(...courbes).toFixed(1)}`,
);
await monde.ferme();
