// kv.h in the page: the library is a WebAssembly module, this class its functions with the types of the page. Everything
// stays in memory; a fault of the module ends it, and the page begins with a new one.

import adresse from "../../build/wasm/kv.wasm?url";

export type Genre = "euros" | "count" | "tick" | "code" | "date" | "year" | "rate" | "mark";

/** An entry box, an output or a box of next year's return. */
export interface Boite {
    nom: string;
    numero: number;
    libelle: string;
    genre: Genre;
    personne: string;
    groupe: string;
    /** Whether a foreign amount, or an exceptional one, may stand beside it. */
    etranger: boolean;
    deductionsEtrangeres: boolean;
    creditEtranger: boolean;
    exceptionnel: boolean;
    /** Of next year's return: the box that receives it. */
    suivante: string;
}

export interface Parametre {
    nom: string;
    unite: string;
    source: string;
    valeur: number;
    minimum: number;
    maximum: number;
}

/** A node of an explanation, as kv_explain tells it. */
export interface Noeud {
    value: number;
    label: string;
    rule: string;
    box?: string;
    column?: number;
    sign?: number;
    role?: string;
    formula?: string;
    law?: string;
    step?: string;
    run?: string;
    terms?: Noeud[];
}

export interface Effet {
    nom: string;
    montant: number;
    sans: number;
    plus: number;
    avecPlus: number;
}

export interface Courbe {
    montants: Int32Array;
    valeurs: Int32Array;
    moyens: Float64Array;
    marginaux: Float64Array;
}

/** Amounts by their names: "1AJ", "ti.1AW", "quotient.4.1AJ". */
export type Montants = Readonly<Record<string, number>>;
export type Lancement = "normal" | "options" | "forced" | "forced-options";

/** What a return sets. */
export interface Declaration {
    montants: Montants;
    lancement: Lancement;
    indexation: number;
    periode: readonly [string, string];
}

export type Loi = Readonly<Record<string, number>>;

/** A call that the library refused. */
export class Faute extends Error {
    constructor(
        readonly statut: number,
        message: string,
    ) {
        super(message);
    }
}

const lancements: Lancement[] = ["normal", "options", "forced", "forced-options"];
const [ok, tropPetit] = [0, 7];
const catalogues = { entree: 0, sortie: 1, report: 2 };

type Fonctions = Record<string, (...arguments_: number[]) => number> & { memory: WebAssembly.Memory };

export class Moteur {
    private readonly f: Fonctions;
    private readonly place: number; // room for arguments and results
    private readonly tailleDePlace = 1 << 16;
    private occupe = 0;
    private readonly retour: number;
    private readonly loi: number;
    private loiPosee = "{}";
    private readonly connues: Partial<Record<keyof typeof catalogues, Boite[]>> = {};
    private rangs?: Map<string, Boite>;

    private constructor(instance: WebAssembly.Instance) {
        this.f = instance.exports as Fonctions;
        this.f._initialize!();
        this.place = this.f.malloc!(this.tailleDePlace);
        this.retour = this.nouveau("kv_return_create");
        this.loi = this.nouveau("kv_law_create");
    }

    private static module?: Promise<WebAssembly.Module>;

    /** A new instance; the module itself is fetched once. */
    static async charge(): Promise<Moteur> {
        this.module ??= fetch(adresse)
            .then((reponse) => reponse.arrayBuffer())
            .then((octets) => WebAssembly.compile(octets));
        const horloge = (memoire: () => DataView) => (_: number, __: bigint, vers: number) => {
            memoire().setBigUint64(vers, BigInt(Date.now()) * 1_000_000n, true);
            return 0;
        };
        let instance: WebAssembly.Instance | undefined;
        const memoire = () => new DataView((instance!.exports.memory as WebAssembly.Memory).buffer);
        const rien = () => 0;
        instance = await WebAssembly.instantiate(await this.module, {
            wasi_snapshot_preview1: { clock_time_get: horloge(memoire), fd_close: rien, fd_seek: rien, fd_write: rien },
        });
        return new Moteur(instance);
    }

    // ---- Memory.

    private vue() {
        return new DataView(this.f.memory.buffer);
    }
    private reserve(octets: number): number {
        const debut = (this.occupe + 7) & ~7;
        if (debut + octets > this.tailleDePlace) throw new RangeError("too long");
        this.occupe = debut + octets;
        return this.place + debut;
    }
    private texteVers(texte: string): number {
        const octets = new TextEncoder().encode(texte.replaceAll("\0", "?").slice(0, 4000) + "\0");
        const vers = this.reserve(octets.length);
        new Uint8Array(this.f.memory.buffer, vers, octets.length).set(octets);
        return vers;
    }
    private texteDe(adresse_: number): string {
        const octets = new Uint8Array(this.f.memory.buffer);
        let fin = adresse_;
        while (octets[fin] !== 0) ++fin;
        return new TextDecoder().decode(octets.subarray(adresse_, fin));
    }
    /** Runs a call with room for its arguments. */
    private avec<T>(corps: () => T): T {
        const avant = this.occupe;
        try {
            return corps();
        } finally {
            this.occupe = avant;
        }
    }
    private nouveau(fonction: string): number {
        return this.avec(() => {
            const vers = this.reserve(4);
            if (this.f[fonction]!(vers) !== ok) throw new Faute(8, "memory is short");
            return this.vue().getUint32(vers, true);
        });
    }
    private controle(statut: number): void {
        if (statut !== ok) throw new Faute(statut, this.texteDe(this.f.kv_message!(this.retour)));
    }
    private entier(appel: (vers: number) => number): number {
        return this.avec(() => {
            const vers = this.reserve(4);
            this.controle(appel(vers));
            return this.vue().getInt32(vers, true);
        });
    }

    get version(): string {
        return this.texteDe(this.f.kv_version!());
    }

    // ---- The catalogues.

    boites(catalogue: keyof typeof catalogues): Boite[] {
        return (this.connues[catalogue] ??= this.lisCatalogue(catalogues[catalogue]));
    }
    private lisCatalogue(catalogue: number): Boite[] {
        const nombre = this.entier((vers) => this.f.kv_box_count!(catalogue, vers));
        return Array.from({ length: nombre }, (_, numero) =>
            this.avec(() => {
                const taille = 84;
                const vers = this.reserve(taille);
                this.vue().setUint32(vers, taille, true);
                this.f.kv_box_describe!(catalogue, numero, vers);
                const mot = (rang: number) => this.vue().getInt32(vers + 4 * rang, true);
                const texte = (rang: number) => (mot(rang) === 0 ? "" : this.texteDe(mot(rang)));
                return {
                    nom: texte(1),
                    numero,
                    libelle: texte(2),
                    genre: texte(5) as Genre,
                    personne: texte(6),
                    groupe: texte(7),
                    exceptionnel: catalogue === 0 && mot(10) >= 0,
                    etranger: catalogue === 0 && mot(11) >= 0,
                    deductionsEtrangeres: catalogue === 0 && mot(12) >= 0,
                    creditEtranger: catalogue === 0 && mot(13) >= 0,
                    suivante: catalogue === 2 ? texte(19) : "",
                };
            }),
        );
    }
    boite(nom: string): Boite | undefined {
        this.rangs ??= new Map(this.boites("entree").map((boite) => [boite.nom, boite]));
        return this.rangs.get(nom);
    }
    private numeros(appel: (vers: number, place: number, nombre: number) => number): number[] {
        return this.avec(() => {
            const capacite = 2400;
            const [vers, nombre] = [this.reserve(4 * capacite), this.reserve(4)];
            const statut = appel(vers, capacite, nombre);
            if (statut !== ok && statut !== tropPetit) throw new Faute(statut, "search");
            return [...new Int32Array(this.f.memory.buffer, vers, this.vue().getInt32(nombre, true))];
        });
    }
    /** The entry boxes whose name contains a text, or whose label its words. */
    cherche(mots: string): Boite[] {
        const trouves = this.avec(() => {
            const texte = this.texteVers(mots);
            return this.numeros((vers, place, nombre) => this.f.kv_box_search!(0, texte, vers, place, nombre));
        });
        return trouves.map((numero) => this.boites("entree")[numero]!);
    }
    /** The names that look most like a mistyped one. */
    proches(nom: string): string[] {
        const trouves = this.avec(() => {
            const texte = this.texteVers(nom);
            return this.numeros((vers, place, nombre) => this.f.kv_box_nearest!(0, texte, vers, place, nombre));
        });
        return trouves.map((numero) => this.boites("entree")[numero]!.nom);
    }
    parametres(): Parametre[] {
        const nombre = this.entier((vers) => this.f.kv_parameter_count!(vers));
        return Array.from({ length: nombre }, (_, numero) =>
            this.avec(() => {
                const vers = this.reserve(48);
                this.vue().setUint32(vers, 48, true);
                this.f.kv_parameter_describe!(numero, vers);
                const vue = this.vue();
                const texte = (rang: number) => this.texteDe(vue.getUint32(vers + 4 * rang, true));
                const nombre_ = (octet: number) => vue.getFloat64(vers + octet, true);
                return {
                    nom: texte(1),
                    unite: texte(2),
                    source: texte(3),
                    valeur: nombre_(24),
                    minimum: nombre_(32),
                    maximum: nombre_(40),
                };
            }),
        );
    }

    // ---- A return.

    /** Why an amount can't be set under this name; "" when it can. */
    pourquoiPas(nom: string): string {
        return this.avec(() => {
            const statut = this.f.kv_get!(this.retour, this.texteVers(nom), this.reserve(4));
            return statut === ok ? "" : this.texteDe(this.f.kv_message!(this.retour));
        });
    }
    private pose(declaration: Declaration, loi: Loi): void {
        this.controle(this.f.kv_return_clear!(this.retour));
        for (const [nom, montant] of Object.entries(declaration.montants))
            this.avec(() => this.controle(this.f.kv_set!(this.retour, this.texteVers(nom), montant)));
        this.controle(this.f.kv_set_launch!(this.retour, lancements.indexOf(declaration.lancement)));
        this.controle(this.f.kv_set_indexation!(this.retour, declaration.indexation));
        const [debut, fin] = declaration.periode.map((jour) => Number(jour.replaceAll("-", "")));
        this.controle(this.f.kv_set_period!(this.retour, debut!, fin!));
        this.poseLoi(loi);
    }
    private poseLoi(loi: Loi): void {
        if (Object.keys(loi).length === 0) return;
        const texte = JSON.stringify(loi);
        if (texte !== this.loiPosee) {
            for (const { nom, valeur } of this.parametres()) this.poseParametre(nom, loi[nom] ?? valeur);
            this.loiPosee = texte;
        }
        this.controle(this.f.kv_set_law!(this.retour, this.loi));
    }
    private poseParametre(nom: string, valeur: number): void {
        this.avec(() => {
            const statut = this.f.kv_law_set!(this.loi, this.texteVers(nom), valeur);
            if (statut !== ok) throw new Faute(statut, this.texteDe(this.f.kv_law_message!(this.loi)));
        });
    }

    /** Computes a return: `lit` then reads its figures. */
    calcule(declaration: Declaration, loi: Loi = {}): void {
        this.pose(declaration, loi);
        this.controle(this.f.kv_compute!(this.retour));
    }
    /** A figure of the return computed last: an output, one of its columns, a box of next year's return. */
    lit(nom: string): number {
        return this.avec(() => {
            const texte = this.texteVers(nom);
            return this.entier((vers) => this.f.kv_read!(this.retour, texte, vers));
        });
    }
    get net(): number {
        return this.lit("S_NET_A_PAYER") - this.lit("S_NET_RESTITUE");
    }
    /** The outputs that are not 0. */
    sorties(): Record<string, number> {
        const boites = this.boites("sortie");
        return this.avec(() => {
            const vers = this.reserve(4 * boites.length);
            this.controle(this.f.kv_read_outputs!(this.retour, 0, vers, boites.length));
            const valeurs = new Int32Array(this.f.memory.buffer, vers, boites.length);
            return Object.fromEntries(boites.flatMap((b, i) => (valeurs[i] === 0 ? [] : [[b.nom, valeurs[i]!]])));
        });
    }
    /** What next year's return takes over, where it is not 0. */
    reports(): { boite: Boite; montant: number }[] {
        return this.boites("report").flatMap((boite) => {
            const montant = this.entier((vers) => this.f.kv_read_carry!(this.retour, boite.numero, vers));
            return montant === 0 ? [] : [{ boite, montant }];
        });
    }
    /** Both options on capital income, where they were compared. */
    options(): { forfait: number; bareme: number; applique: "forfait" | "bareme" } | undefined {
        return this.avec(() => {
            const vers = this.reserve(20);
            this.vue().setUint32(vers, 20, true);
            this.controle(this.f.kv_read_options!(this.retour, vers));
            const mot = (rang: number) => this.vue().getInt32(vers + 4 * rang, true);
            if (mot(1) === 0) return undefined;
            return { forfait: mot(2), bareme: mot(3), applique: mot(4) === 1 ? "forfait" : "bareme" };
        });
    }
    /** What can't be true of the return, in English as the library says it. */
    avertissements(): string[] {
        const nombre = this.entier((vers) => this.f.kv_check!(this.retour, vers));
        return Array.from({ length: nombre }, (_, i) =>
            this.texteDe(this.entier((vers) => this.f.kv_warning!(this.retour, i, vers))),
        );
    }

    // ---- Why, and what if; null for the net amount.

    explique(declaration: Declaration, loi: Loi, figure: string | null): Noeud {
        this.pose(declaration, loi);
        return this.avec(() => {
            const nom = figure === null ? 0 : this.texteVers(figure);
            const json = this.entier((vers) => this.f.kv_explain!(this.retour, nom, -1, vers));
            return JSON.parse(this.texteDe(json)) as Noeud;
        });
    }
    effets(declaration: Declaration, loi: Loi): Effet[] {
        this.pose(declaration, loi);
        return this.avec(() => {
            const valeur = this.reserve(4);
            const nombre = this.entier((vers) => this.f.kv_effects!(this.retour, 0, valeur, vers));
            const vers = this.reserve(32);
            return Array.from({ length: nombre }, (_, i) => {
                this.vue().setUint32(vers, 32, true);
                this.controle(this.f.kv_effect_at!(this.retour, i, vers));
                const mot = (rang: number) => this.vue().getInt32(vers + 4 * rang, true);
                return { nom: this.texteDe(mot(1)), montant: mot(3), sans: mot(4), plus: mot(5), avecPlus: mot(6) };
            });
        });
    }
    /** The net amount as one amount grows. */
    courbe(declaration: Declaration, loi: Loi, nom: string, a: number, pas: number): Courbe {
        this.pose(declaration, loi);
        const n = Math.floor(a / pas) + 1;
        const zone = this.f.malloc!(24 * n);
        if (zone === 0) throw new Faute(8, "memory is short");
        try {
            return this.avec(() => {
                const etendue = this.reserve(36);
                const mots = [36, this.texteVers(nom), 0, a, pas, 1, 0, 0, 0];
                mots.forEach((mot, rang) => this.vue().setInt32(etendue + 4 * rang, mot, true));
                const [moyens, marginaux, montants, valeurs] = [0, 8, 16, 20].map((octet) => zone + octet * n);
                this.entier((vers) =>
                    this.f.kv_curve!(this.retour, etendue, montants!, valeurs!, moyens!, marginaux!, n, vers),
                );
                const memoire = this.f.memory.buffer;
                return {
                    montants: new Int32Array(memoire, montants!, n).slice(),
                    valeurs: new Int32Array(memoire, valeurs!, n).slice(),
                    moyens: new Float64Array(memoire, moyens!, n).slice(),
                    marginaux: new Float64Array(memoire, marginaux!, n).slice(),
                };
            });
        } finally {
            this.f.free!(zone);
        }
    }
}
