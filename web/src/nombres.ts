// Amounts as the page writes and reads them.

const entier = new Intl.NumberFormat("fr-FR", { maximumFractionDigits: 0 });
const decimal = new Intl.NumberFormat("fr-FR", { maximumFractionDigits: 2 });

/** "12 345 €". */
export const euros = (montant: number) => `${entier.format(montant)} €`;
/** "+ 120 €", "− 120 €". */
export const ecart = (montant: number) => (montant > 0 ? "+ " : montant < 0 ? "− " : "") + euros(Math.abs(montant));
export const nombre = (n: number) => decimal.format(n);
/** "12,8 %", of a share. */
export const pourcent = (part: number) => `${decimal.format(100 * part)} %`;

/** What was typed as a whole number; undefined for anything else, 0 for nothing. */
export function lisEntier(texte: string): number | undefined {
    const chiffres = texte.replaceAll(/[\s\u00a0\u202f€]/g, "").replace("−", "-");
    if (chiffres === "" || chiffres === "-") return 0;
    if (!/^-?\d{1,10}$/.test(chiffres)) return undefined;
    const n = Number(chiffres);
    return Math.abs(n) < 2 ** 31 ? n : undefined;
}
