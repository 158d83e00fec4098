/* A host in C on kv.h: what a couple with two children pays, a column, a text and a carry-forward, then the same couple
   under another law. C99. */

#include <kv.h>
#include <stdio.h>

static int declare(kv_return* r) {
    static const struct {
        const char* box;
        int32_t value;
    } boxes[] = {{"M", 1}, {"Fm", 2}, {"1AJ", 42000}, {"1BJ", 31000}, {"7UF", 600}};
    for (size_t i = 0; i < sizeof boxes / sizeof *boxes; ++i)
        if (kv_set(r, boxes[i].box, boxes[i].value) != KV_OK) return 0;
    return 1;
}

static int show(kv_return* r) {
    int32_t tax = 0, salaries = 0, ceiling = 0, gifts = 0;
    char text[KV_TEXT];
    if (kv_read(r, "TOT_PAYER", &tax) != KV_OK || kv_read(r, "RN_SAL.c2", &salaries) != KV_OK ||
        kv_read(r, "F11_6PSS", &ceiling) != KV_OK)
        return 0;
    /* A text is read by number: the box is looked up once, whatever the number of returns. */
    if (kv_box_find(KV_OUTPUT, "U_DONS_OEUVRES_N", &gifts) != KV_OK ||
        kv_read_text(r, gifts, text, sizeof text, NULL) != KV_OK)
        return 0;
    printf("tax %d, net salary of the second declarant %d, gifts %s, next year's ceiling %d\n", (int)tax, (int)salaries,
           text, (int)ceiling);
    return 1;
}

int main(void) {
    kv_return* household = NULL;
    kv_law* law = NULL;
    int done = kv_return_create(&household) == KV_OK && kv_law_create(&law) == KV_OK;
    done = done && declare(household) && kv_compute(household) == KV_OK && show(household);
    done = done && kv_law_set(law, "reductions.7UF.taux", 75) == KV_OK && kv_set_law(household, law) == KV_OK &&
           kv_compute(household) == KV_OK && show(household);
    if (!done) fprintf(stderr, "%s%s\n", kv_message(household), kv_law_message(law));
    kv_law_free(law);
    kv_return_free(household);
    return done ? 0 : 1;
}
