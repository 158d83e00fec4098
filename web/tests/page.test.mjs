// The page as a household uses it, in a real browser.
import assert from "node:assert/strict";
import { readdirSync, readFileSync } from "node:fs";
import { after, before, test } from "node:test";
import { fileURLToPath } from "node:url";
import { commande, corpus, lance, net, ouvre } from "./outils.mjs";

const ici = (chemin) => fileURLToPath(new URL(chemin, import.meta.url));
const axe = readFileSync(ici("../node_modules/axe-core/axe.min.js"), "utf8");
let monde;
before(async () => (monde = await lance()));
after(() => monde.ferme());

const exemple = (page, titre) => page.getByLabel("Partir d'un exemple").selectOption({ label: titre });
const champ = (page, nom) => page.locator(".saisie").getByLabel(new RegExp(`(^|\\s)${nom}$`));

test("figures are those of the command line", async () => {
    const { page, fautes, contexte } = await ouvre(monde);
    const examples = ici("../../examples/");
    const documents = corpus().trim().split("\n");
    for (const fichier of readdirSync(examples).filter((nom) => nom.endsWith(".json")))
        documents.push(JSON.stringify(JSON.parse(readFileSync(examples + fichier, "utf8"))));
    const retours = documents.map((document) => JSON.parse(document));
    const lignes = commande(["batch"], documents.join("\n") + "\n")
        .trim()
        .split("\n");
    const attendus = lignes.map((ligne) => JSON.parse(ligne).outputs);
    const trouves = await page.evaluate((tous) => tous.map((r) => globalThis.kvcalcul.calcule(r)), retours);
    for (const [i, attendu] of attendus.entries()) assert.deepEqual(trouves[i], attendu, JSON.stringify(retours[i]));
    assert.equal(trouves.length, retours.length);
    assert.ok(retours.length > 1500);
    assert.deepEqual(fautes, []);
    await contexte.close();
});

test("a household types its boxes, and asks why", async () => {
    const { page, contexte } = await ouvre(monde);
    await page.getByLabel("Mariés").check();
    await champ(page, "Fm").fill("2");
    await champ(page, "1AJ").fill("42 000");
    await champ(page, "1BJ").pressSequentially("31000");
    await net(page, 5243); // 65 700 over two parts bear 8 297, less twice 1 527

    // Why: branch by branch to a box.
    const arbre = page.locator("section", { hasText: "Pourquoi ce montant" });
    await arbre.getByText("5 243").first().waitFor();
    for (const branche of [/I_IMP_RETENU/, /I_IMP_SIMP/, /TOT_R_IMPOS/, /RN_SAL =/, /RN_SAL_SAIS =/])
        await arbre
            .locator("summary", { hasText: branche })
            .first()
            .evaluate((s) => s.parentElement.open || s.click());
    await arbre.getByText("8 297").first().waitFor();
    await arbre.locator(".feuille", { hasText: "1AJ" }).first().waitFor();
    assert.match(await arbre.innerText(), /1527 par demi-part/);

    // What each box does: without the children, 3 054 more.
    const effets = page.getByRole("region", { name: "Effet de chaque case" });
    await effets.getByRole("row", { name: /Fm/ }).getByText("− 3 054 €").waitFor();

    // A wrong amount is said at its field, and is not counted.
    await champ(page, "1BJ").fill("31000,5");
    await page.getByText("n'est pas un nombre entier").waitFor();
    assert.equal(await champ(page, "1BJ").getAttribute("aria-invalid"), "true");
    await net(page, 91); // 37 800 over three parts: 14 % of 8 379 less the relief of 1 059, and a fifth of the rest
    await champ(page, "1BJ").fill("31000");
    await net(page, 5243);

    // Every other box by search, an exceptional amount with it.
    await page.getByLabel("Chercher une case").fill("syndicales");
    await champ(page, "7AC").last().fill("300");
    await net(page, 5243 - 198); // 66 % of 300, less than 1 % of the salary
    await page.getByLabel("Chercher une case").fill("1AJ");
    await page.getByText("Montants étrangers ou exceptionnels de 1AJ").click();
    await page.getByLabel(/coefficient 4 quotient\.4\.1AJ/).fill("10000");
    // 9 000 more count for a quarter, four times over.
    await page.locator("output:not([data-net='5045'])").waitFor();
    await page.getByText("Autres cases remplies").waitFor();
    await page.getByRole("button", { name: "Tout effacer" }).click();
    await net(page, 0);
    await contexte.close();
});

test("curve, options, law and next year's boxes", async () => {
    const { page, contexte, fautes } = await ouvre(monde);
    await exemple(page, "Couple, deux enfants");
    await net(page, 5243);
    const courbe = page.locator("section", { hasText: "Si un revenu changeait" });
    await courbe.locator("canvas").waitFor();
    await courbe.getByText("Les chiffres de la courbe").click();
    const attendu = commande([
        ...["curve", ici("../../examples/couple-deux-enfants.json"), "--box", "1AJ"],
        ...["--from", "40000", "--to", "40000", "--step", "500"],
    ]);
    const valeur = Number(attendu.trim().split("\n")[1].split(",")[1]).toLocaleString("fr-FR");
    await courbe
        .getByRole("row", { name: /^40 000 €/ })
        .getByText(`${valeur} €`)
        .waitFor();

    // 31 % in the third bracket: 1 % of 11 528 more.
    const loi = page.locator("section", { hasText: "Si la loi changeait" });
    await loi.getByLabel("Valeur (%)").fill("31");
    await net(page, 5243 + 115);
    await page.getByText("+ 115 €").waitFor();
    await loi.getByLabel("Valeur (%)").fill("310");
    await loi.getByText("un nombre de 0 à 100 %").waitFor();
    await loi.getByRole("button", { name: "Revenir à la loi" }).click();
    await net(page, 5243);

    // 10 000 of dividends: 14 % or 30 % of 6 000 and levies of 15.5 %, or 12.8 % of 10 000 and as much.
    await page.getByText("Capitaux et plus-values").click();
    await champ(page, "2DC").fill("10000");
    const options = page.locator("section", { hasText: "Forfait ou barème" });
    await options.getByText(/coûte .* de moins/).waitFor();
    const [forfait, bareme] = (await options.locator("strong").allInnerTexts()).map((t) =>
        Number(t.replace(/\D/g, "")),
    );
    await options.getByLabel("Prélèvement forfaitaire unique").check();
    await net(page, forfait);
    await options.getByLabel("Barème progressif").check();
    await net(page, bareme);
    await page.getByRole("region", { name: "Montants à reporter" }).getByText("6PSS").waitFor();
    assert.deepEqual(fautes, []);
    await contexte.close();
});

test("a return is saved, opened, shared, and kept only when asked", async () => {
    const { page, contexte } = await ouvre(monde, { acceptDownloads: true });
    await exemple(page, "Parent isolé");
    const [telecharge] = await Promise.all([
        page.waitForEvent("download"),
        page.getByRole("button", { name: "Enregistrer" }).click(),
    ]);
    const chemin = await telecharge.path();
    const paye = Number(JSON.parse(commande(["run", "--json", chemin])).outputs.S_NET_A_PAYER ?? 0);
    await net(page, paye);
    await page.getByRole("button", { name: "Partager" }).click();
    await page.getByText("aucun serveur ne la reçoit").waitFor();
    const fragment = new URL(page.url()).hash;
    assert.equal(await page.evaluate(() => localStorage.length), 0);
    await page.getByRole("button", { name: "Tout effacer" }).click();
    await net(page, 0);
    await page.getByLabel("Ouvrir une déclaration").setInputFiles(chemin);
    await net(page, paye);

    const ailleurs = await ouvre(monde, {}, fragment);
    await net(ailleurs.page, paye);
    assert.ok(ailleurs.demandes.every((url) => !url.includes(fragment.slice(1))));
    await ailleurs.page.goto(
        monde.adresse + "#d=" + Buffer.from('{"entries":{"1AX":5,"1AJ":1.5,"1BJ":30000}}').toString("base64url"),
    );
    await net(ailleurs.page, 2407); // 14 % of 17 193, as alone
    await ailleurs.page.getByText(/1AX : case inconnue, les plus proches/).waitFor();
    await ailleurs.page.getByText(/1AJ : 1.5 n'est pas un nombre entier/).waitFor();
    await ailleurs.page.goto(monde.adresse + "#d=%%%");
    await ailleurs.page
        .getByLabel("Ouvrir une déclaration")
        .setInputFiles({ name: "x.json", mimeType: "application/json", buffer: Buffer.from("{") });
    await ailleurs.page.getByText("x.json : ce n'est pas une déclaration").waitFor();
    await net(ailleurs.page, 2407);
    await ailleurs.contexte.close();

    await page.getByLabel("Garder cette déclaration").check();
    await page.goto(monde.adresse);
    await net(page, paye);
    await page.getByLabel("Garder cette déclaration").uncheck();
    assert.equal(await page.evaluate(() => localStorage.length), 0);
    await contexte.close();
});

test("nothing leaves the page, which works without a network", async () => {
    const { page, contexte, demandes, fautes } = await ouvre(monde);
    await page.evaluate(() => navigator.serviceWorker.ready);
    await page.waitForTimeout(300);
    assert.ok(demandes.every((url) => url.startsWith(monde.adresse)));
    const avant = demandes.length;
    await exemple(page, "Couple, deux enfants");
    await net(page, 5243);
    await champ(page, "1AJ").fill("50000");
    await page.locator("canvas").waitFor();
    await page.waitForTimeout(300);
    assert.deepEqual(demandes.slice(avant), []);

    await page.reload();
    await page.locator("output").waitFor();
    await contexte.setOffline(true);
    await page.reload();
    await exemple(page, "Couple, deux enfants");
    await net(page, 5243);
    assert.deepEqual(fautes, []);
    await contexte.close();
});

test("a fault of the module is said, and the page goes on", async () => {
    const { page, contexte } = await ouvre(monde);
    await exemple(page, "Couple, deux enfants");
    await net(page, 5243);
    await page.evaluate(() => {
        // The next access to the module fails, as a trap within it would.
        const buffer = Object.getOwnPropertyDescriptor(WebAssembly.Memory.prototype, "buffer");
        const casse = () => {
            Object.defineProperty(WebAssembly.Memory.prototype, "buffer", buffer);
            throw new WebAssembly.RuntimeError("unreachable");
        };
        Object.defineProperty(WebAssembly.Memory.prototype, "buffer", { configurable: true, get: casse });
    });
    await champ(page, "1AJ").fill("43000");
    await page.getByText("Le calcul s'est arrêté").waitFor();
    await champ(page, "1AJ").fill("42100");
    await net(page, 5243 + 27);
    await contexte.close();
});

for (const [nom, options] of [
    ["light", {}],
    ["dark", { colorScheme: "dark" }],
    ["phone", { viewport: { width: 360, height: 740 }, isMobile: true, hasTouch: true }],
])
    test(`accessible: ${nom}`, async () => {
        const { page, contexte } = await ouvre(monde, options);
        await exemple(page, "Couple, deux enfants");
        await net(page, 5243);
        await page.getByLabel("Chercher une case").fill("dons");
        await champ(page, "1BJ").fill("x");
        await page.locator("canvas").waitFor();
        for (const details of await page.locator("details").all()) await details.evaluate((d) => (d.open = true));
        await page.evaluate(axe);
        const { violations } = await page.evaluate(() => globalThis.axe.run());
        assert.deepEqual(
            violations.map((v) => [v.id, v.nodes.map((n) => n.target.join(" "))]),
            [],
        );
        const large = await page.evaluate(() => document.documentElement.scrollWidth - innerWidth);
        assert.ok(large <= 0, `${large} pixels beyond the width`);
        await contexte.close();
    });

test("by keyboard alone, and on paper", async () => {
    const { page, contexte } = await ouvre(monde);
    await page.getByLabel("Célibataire").focus();
    await page.keyboard.press("ArrowRight");
    assert.ok(await page.getByLabel("Mariés").isChecked());
    await champ(page, "1AJ").focus();
    await page.keyboard.type("42000");
    await page.keyboard.press("Tab");
    await page.keyboard.type("31000");
    await champ(page, "Fm").focus();
    await page.keyboard.type("2");
    await net(page, 5243);
    const arbre = page.locator("section", { hasText: "Pourquoi ce montant" });
    await arbre.getByText("5 243").first().waitFor();
    const summary = await arbre.locator("summary").last().elementHandle();
    await summary.focus();
    const ouvert = () => summary.evaluate((s) => s.parentElement.open);
    const avant = await ouvert();
    await page.keyboard.press("Enter");
    assert.notEqual(await ouvert(), avant);

    await page.emulateMedia({ media: "print" });
    assert.ok(!(await page.getByRole("button", { name: "Imprimer" }).isVisible()));
    assert.ok(await champ(page, "1AJ").isVisible());
    assert.ok(!(await champ(page, "1AK").isVisible()));
    const pages = (await page.pdf({ format: "A4" })).toString("latin1").match(/\/Type\s*\/Page\b/g).length;
    assert.equal(pages, 1);
    await contexte.close();
});
