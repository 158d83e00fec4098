/* A host in C: opens a session, fills boxes by number, launches, reads the result.

   Numbers come from the catalogues: `kvcalcul boxes 1AJ` prints the number of a box. Here they are looked up by name,
   once. With arguments NAME=VALUE the host computes that return instead, and prints every output that is not 0. */

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "Calcul/pInitCalcul/KVCalcul.h"

enum { ENTREES = 2128, SORTIES = 2288 };

/* Whether a catalogue name, UTF-16, is this ASCII text. */
static int memeNom(const KVCar* nom, const char* texte) {
    while (*nom && *nom == (KVCar)*texte) ++nom, ++texte;
    return *nom == 0 && *texte == 0;
}

static int32_t numeroEntree(const char* nom) {
    for (int32_t i = 0; i < ENTREES; ++i) {
        const CaseEntreeDef fiche = EntreeInit(NULL, i);
        if (memeNom(fiche.Nom, nom)) return i;
    }
    return -1;
}

static int32_t sortie(const char* nom) {
    for (int32_t i = 0; i < SORTIES; ++i) {
        const CaseSortieDef fiche = SortieInit(NULL, i);
        if (memeNom(fiche.Nom, nom)) return KV_Calcul_LireCaseSortie(i);
    }
    return 0;
}

static int remplit(const char* affectation) {
    char nom[8] = "";
    int valeur = 0;
    if (sscanf(affectation, "%7[^=]=%d", nom, &valeur) != 2 || numeroEntree(nom) < 0) {
        fprintf(stderr, "unknown box: %s\n", affectation);
        return 0;
    }
    KV_Calcul_AffecteCaseEntree(numeroEntree(nom), valeur);
    return 1;
}

static void ecritSorties(void) {
    for (int32_t i = 0; i < SORTIES; ++i) {
        const int32_t valeur = KV_Calcul_LireCaseSortie(i);
        if (valeur == 0) continue;
        const CaseSortieDef fiche = SortieInit(NULL, i);
        for (const KVCar* c = fiche.Nom; *c; ++c) putchar((int)*c);
        printf("=%d\n", (int)valeur);
    }
}

int main(int argc, char** argv) {
    static const char* const couple[] = {"M=1", "Fm=2", "1AJ=42000", "1BJ=31000"};
    if (!KV_Calcul_Debut()) return 1;
    int rempli = 1;
    for (int i = 1; i < argc; ++i) rempli = remplit(argv[i]) && rempli;
    for (size_t i = 0; argc == 1 && i < sizeof couple / sizeof *couple; ++i) rempli = remplit(couple[i]) && rempli;
    if (!rempli || !KV_Calcul_Lancement()) return 1;
    if (argc > 1)
        ecritSorties();
    else
        printf("parts %.2f, taxable income %d, tax %d, to pay %d\n", sortie("F_NB_PARTS_ALL") / 100.0,
               (int)sortie("TOT_R_IMPOS"), (int)sortie("TOT_IMPOT"), (int)sortie("S_NET_A_PAYER"));
    KV_Calcul_Fin();
    return 0;
}
