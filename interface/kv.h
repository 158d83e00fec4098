#ifndef KV_H
#define KV_H

/* The French income tax of a household, income of 2017, from the boxes of return 2042.

    A return is a handle: set its boxes, compute, read what was found.

       kv_return* household = NULL;
       int32_t tax = 0;
       if (kv_return_create(&household) == KV_OK && kv_set(household, "M", 1) == KV_OK &&
           kv_set(household, "1AJ", 42000) == KV_OK && kv_compute(household) == KV_OK &&
           kv_read(household, "TOT_PAYER", &tax) == KV_OK)
           printf("%d\n", (int)tax);
       else
           printf("%s\n", kv_message(household));
       kv_return_free(household);

    Boxes. The entry catalogue holds what a return can say, the output catalogue what a computation finds, the
    carry-forward catalogue what next year's return takes over. A box is named ("1AJ"; capital and small letters differ)
    or numbered from 0: a host that works on many returns looks a name up once, with kv_box_find. Values are signed
    32-bit integers: whole euros, counts, ticks (0 or 1), choice codes, dates as AAAAMMJJ, rates; kv_box says which.
    They wrap as 32-bit integers do.

    Statuses. Every function that can fail answers a kv_status, KV_OK being 0; a function that fails has changed
    nothing, and has written to none of its results unless its comment says so. kv_message and kv_law_message tell what
    went wrong in the words of the host's own names. A null pointer is a status, never a crash; only a handle that was
    freed already must not be handed over. Nothing here throws, ends the process, or writes to its standard output.

    Threads. A handle is for one thread at a time; different handles are independent, in any number of threads. The
    functions without a handle may be called from any thread at any time.

    Growth. Functions, statuses and members at the end of structures are added, none is changed or removed. A structure
    that a call fills or reads by pointer begins with its size, which the caller sets to sizeof: an older library fills
    in less of it, a newer one no more than the caller knows, and both leave in it how many bytes they filled.

    Memory. A thread that calls needs 256 KB of stack.

    Texts are UTF-8. Those that a function hands out as a pointer live as long as the library unless its comment says
    otherwise. */

#include <stddef.h>
#include <stdint.h>

#if !defined(_WIN32)
#define KV_PUBLIC __attribute__((visibility("default")))
#elif defined(KV_BUILD)
#define KV_PUBLIC __declspec(dllexport)
#elif defined(KV_STATIC) /* the host carries the library in itself */
#define KV_PUBLIC
#else
#define KV_PUBLIC __declspec(dllimport)
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---- The library. ------------------------------------------------------------------------------------------------ */

/** The revision of the interface that this header describes: it grows with each addition. */
#define KV_INTERFACE 1

/** How a call went. */
typedef int32_t kv_status;
enum {
    KV_OK = 0,
    KV_NULL = 1,         /**< a pointer that is needed is null */
    KV_BAD_SIZE = 2,     /**< the size of a structure is smaller than that of its first revision */
    KV_UNKNOWN = 3,      /**< no box, parameter, area, column, launch or place has this name or number */
    KV_NO_AMOUNT = 4,    /**< the box has no companion amount in this area, or no exceptional amount */
    KV_BAD_VALUE = 5,    /**< the value is none that can stand here */
    KV_NOT_COMPUTED = 6, /**< the return has not been computed yet */
    KV_TOO_SMALL = 7,    /**< not everything fits in the room given */
    KV_NO_MEMORY = 8,    /**< memory is short; the same call may succeed later */
    KV_FAILED = 9,       /**< anything else: a fault of the library */
    KV_CANCELLED = 10    /**< the host's progress function asked to stop */
};

/** The version of the library, "2017.1.0": the income year, then the releases of that year. */
KV_PUBLIC const char* kv_version(void);
/** The revision of the interface that the library has, to be compared with KV_INTERFACE. */
KV_PUBLIC int32_t kv_interface(void);
/** The income year whose law the library knows: 2017. */
KV_PUBLIC int32_t kv_year(void);
/** What a status means, in English; "unknown status" for a number that is none. */
KV_PUBLIC const char* kv_status_text(kv_status status);

/* ---- The catalogues: which boxes there are, and what they mean. -------------------------------------------------- */

/** The three catalogues. */
typedef int32_t kv_catalogue;
enum {
    KV_ENTRY = 0,  /**< 2128 boxes of the return, numbered from 0 */
    KV_OUTPUT = 1, /**< 2288 figures of the computation */
    KV_CARRY = 2   /**< 736 boxes of next year's return */
};

/** What a box holds. */
typedef int32_t kv_kind;
enum {
    KV_EUROS = 0,
    KV_COUNT = 1, /**< a count; parts and persons in hundredths or tenths where the label says so */
    KV_TICK = 2,  /**< 1 when ticked */
    KV_CODE = 3,  /**< a number that stands for a choice */
    KV_DATE = 4,  /**< AAAAMMJJ: 20170315 */
    KV_YEAR = 5,  /**< AAAA */
    KV_RATE = 6,  /**< hundredths of a percent unless the label says otherwise */
    KV_MARK = 7   /**< 1 when a section of a printed result has something to show */
};

/** A box. Members that a catalogue does not have are "" or -1. */
typedef struct kv_box {
    size_t size;             /**< sizeof(kv_box) */
    const char* name;        /**< "1AJ" */
    const char* label;       /**< what it means, in French; "inutilisée" for an output that no step writes */
    kv_kind kind;            /**< what it holds */
    int32_t person;          /**< 1, 2 declarants, 3 to 11 dependants, 12 dependants together, 14 household */
    const char* kind_name;   /**< "euros", "count", "tick", "code", "date", "year", "rate", "mark" */
    const char* person_name; /**< in French: "déclarant 1" */
    const char* group;       /**< the part of the return, in French: "Salaires et pensions" */
    int32_t group_number;    /**< entry, output: its place in the order of the return, from 0 */
    int32_t linked;          /**< entry: the number of the entry box that receives its amount when auto-entrepreneur
                                  or prospection income is moved */
    int32_t quotient;        /**< entry: its place among the boxes that can hold exceptional income */
    int32_t ti;              /**< entry: its place among the boxes with companions TI; TIX and TIY; TK and TKZ */
    int32_t tix;
    int32_t tk;
    int32_t carried;        /**< output: for a reduction, the output that shows what is carried to later years */
    const char* step;       /**< output: the step that writes it, "4:RevenusSalaires" */
    const char* columns[3]; /**< output: what its columns 1 to 3 hold, in French */
    const char* next;       /**< carry-forward: the box of next year's return */
    const char* takes;      /**< carry-forward: the figure that it takes over ("NP1_7FI", "7WHA"); "" when computed */
} kv_box;

/** How many boxes a catalogue has. KV_NULL, KV_UNKNOWN (no such catalogue). */
KV_PUBLIC kv_status kv_box_count(kv_catalogue catalogue, int32_t* count);
/** The number of the box with exactly this name. KV_NULL, KV_UNKNOWN. */
KV_PUBLIC kv_status kv_box_find(kv_catalogue catalogue, const char* name, int32_t* number);
/** What is known of a box. box->size is set by the caller. KV_NULL, KV_UNKNOWN, KV_BAD_SIZE, KV_NO_MEMORY (the first
    time only, when the labels are composed). */
KV_PUBLIC kv_status kv_box_describe(kv_catalogue catalogue, int32_t number, kv_box* box);
/** The boxes whose name contains a text, or whose label contains each of its words, in the order of the catalogue;
    accents and case do not matter. count receives how many there are, numbers the first capacity of them; numbers may
    be null when capacity is 0. KV_NULL, KV_UNKNOWN (no such catalogue), KV_NO_MEMORY; KV_TOO_SMALL when there are more
    than capacity: count and the first ones are written all the same. */
KV_PUBLIC kv_status kv_box_search(kv_catalogue catalogue, const char* words, int32_t* numbers, int32_t capacity,
                                  int32_t* count);
/** The boxes whose name looks most like a mistyped one, at most three, the most alike first. As kv_box_search. */
KV_PUBLIC kv_status kv_box_nearest(kv_catalogue catalogue, const char* name, int32_t* numbers, int32_t capacity,
                                   int32_t* count);

/** A reduction of the tax, or a line that shares one out; texts in English, "" for what a line does not have. */
typedef struct kv_reduction {
    size_t size;         /**< sizeof(kv_reduction) */
    int32_t output;      /**< the number of the output that shows it */
    int32_t given_back;  /**< 1 when that output is a part given back, which adds to the tax */
    const char* line;    /**< the name of the output */
    const char* base;    /**< the entry box that it is taken of; for an overseas share, the reduction shared out */
    const char* rate;    /**< percent */
    const char* ceiling; /**< euros, and whose it is when it is shared */
    const char* group;   /**< the year group of the global cap on advantages: "2013", "outside" */
    const char* years;   /**< over how many years it is spread */
    const char* last;    /**< the last of them */
    const char* carried; /**< the outputs and boxes that later years take over */
} kv_reduction;

/** How many reduction lines there are. KV_NULL, KV_NO_MEMORY (the first time only). */
KV_PUBLIC kv_status kv_reduction_count(int32_t* count);
/** A line, numbered from 0 in the order of imputation on the tax. KV_NULL, KV_UNKNOWN, KV_BAD_SIZE, KV_NO_MEMORY. */
KV_PUBLIC kv_status kv_reduction_describe(int32_t number, kv_reduction* reduction);

/* ---- The law: every amount, rate, ceiling and age that the computation uses. ------------------------------------- */

/** A law: the figures of the year, or others laid over them. */
typedef struct kv_law kv_law;

/** A parameter of the law. Values are as a reader writes them: 1939 euros, 12.8 percent, 65 years, 1.5 times. */
typedef struct kv_parameter {
    size_t size;        /**< sizeof(kv_parameter) */
    const char* name;   /**< "decote.plafond.couple" */
    const char* unit;   /**< "euros", "percent", "years" or "count" */
    const char* source; /**< the legal source, "CGI art. 197 I-4 a"; "" where it is not certain */
    int32_t indexed;    /**< 1 when the indexation of a launch raises it */
    int32_t decimals;   /**< how many a value may have: 0 or 2 */
    double value;       /**< that of the year */
    double minimum;     /**< the values that it may have */
    double maximum;
} kv_parameter;

/** How many parameters the law has. KV_NULL. */
KV_PUBLIC kv_status kv_parameter_count(int32_t* count);
/** The number of the parameter with exactly this name. KV_NULL, KV_UNKNOWN. */
KV_PUBLIC kv_status kv_parameter_find(const char* name, int32_t* number);
/** What is known of a parameter, numbered from 0. KV_NULL, KV_UNKNOWN, KV_BAD_SIZE. */
KV_PUBLIC kv_status kv_parameter_describe(int32_t number, kv_parameter* parameter);
/** The parameters whose name or source contains a text (ASCII, whatever its case), in their order. As kv_box_search. */
KV_PUBLIC kv_status kv_parameter_search(const char* text, int32_t* numbers, int32_t capacity, int32_t* count);

/** A law with the figures of the year, to be freed with kv_law_free. KV_NULL, KV_NO_MEMORY. */
KV_PUBLIC kv_status kv_law_create(kv_law** law);
/** A copy of a law, to be freed as well. KV_NULL, KV_NO_MEMORY. */
KV_PUBLIC kv_status kv_law_copy(const kv_law* law, kv_law** copy);
/** Frees a law; does nothing for null. The returns that it was set in keep its figures. */
KV_PUBLIC void kv_law_free(kv_law* law);
/** What the last failure of a call on this law was, in English; "" before any, and for null. It stands until the next
    failure. */
KV_PUBLIC const char* kv_law_message(const kv_law* law);
/** Sets a parameter. KV_NULL, KV_UNKNOWN (the message names the nearest), KV_BAD_VALUE (not between its bounds, or more
    decimals than it may have), KV_NO_MEMORY. */
KV_PUBLIC kv_status kv_law_set(kv_law* law, const char* parameter, double value);
/** The same by number. */
KV_PUBLIC kv_status kv_law_set_parameter(kv_law* law, int32_t number, double value);
/** The value of a parameter. KV_NULL, KV_UNKNOWN, KV_NO_MEMORY. */
KV_PUBLIC kv_status kv_law_get(kv_law* law, const char* parameter, double* value);
/** The same by number. */
KV_PUBLIC kv_status kv_law_get_parameter(kv_law* law, int32_t number, double* value);
/** Whether the law can be applied. KV_NULL, KV_NO_MEMORY, KV_BAD_VALUE when the thresholds of a scale do not ascend:
    the message names the two. */
KV_PUBLIC kv_status kv_law_check(kv_law* law);

/* ---- A return: what a household declares. ------------------------------------------------------------------------ */

/** A return and, once computed, its results. */
typedef struct kv_return kv_return;

/** The value of a box that is not filled in: it counts as 0, but in 5XC, 5YC and 5ZC, the years that farms began in:
    there it means that none is known, and 0 is a year long ago. */
#define KV_UNSET (-2147483647)

/** An amount of an entry box: its own, or a companion that goes with it. */
typedef int32_t kv_area;
enum {
    KV_AREA_ENTRY = 0, /**< the box itself */
    KV_AREA_TI = 1,    /**< foreign income in it, exempt but retained for the effective rate */
    KV_AREA_TIX = 2,   /**< two amounts taken off TI */
    KV_AREA_TIY = 3,
    KV_AREA_TK = 4, /**< foreign income in it that gives a credit equal to the French tax */
    KV_AREA_TKZ = 5 /**< an amount taken off TK */
};

/** What a computation does with the options on capital income (`PFU` flat tax, `BAR` scale, `AVA` the cheaper of the
    two) and the modernisation credit (`CIMR`). */
typedef int32_t kv_launch;
enum {
    KV_LAUNCH_NORMAL = 0,        /**< they are not looked at */
    KV_LAUNCH_OPTIONS = 1,       /**< those that the return sets apply */
    KV_LAUNCH_FORCED = 2,        /**< they apply whatever the return sets; the cheaper option where it sets none */
    KV_LAUNCH_FORCED_OPTIONS = 3 /**< both */
};

/** An empty return over the year 2017, launched normally, under the law of the year, without indexation; to be freed
    with kv_return_free. KV_NULL, KV_NO_MEMORY. */
KV_PUBLIC kv_status kv_return_create(kv_return** created);
/** A copy of a return and its results, to be freed as well. KV_NULL, KV_NO_MEMORY. */
KV_PUBLIC kv_status kv_return_copy(const kv_return* original, kv_return** copy);
/** Frees a return; does nothing for null. */
KV_PUBLIC void kv_return_free(kv_return* r);
/** Makes a return as kv_return_create does, without results. KV_NULL. */
KV_PUBLIC kv_status kv_return_clear(kv_return* r);
/** What the last failure of a call on this return was, in English; "" before any, and for null. It stands until the
    next failure. */
KV_PUBLIC const char* kv_message(const kv_return* r);

/** Sets an amount by name: a box ("1AJ"), a companion ("ti.1AW", "tix.", "tiy.", "tk.", "tkz."), or exceptional income
    with the coefficient that divides it ("quotient.4.1AJ"). KV_NULL, KV_UNKNOWN (the message names the nearest boxes),
    KV_NO_AMOUNT, KV_NO_MEMORY. */
KV_PUBLIC kv_status kv_set(kv_return* r, const char* name, int32_t value);
/** Reads back an amount by name, 0 where none was set. As kv_set. */
KV_PUBLIC kv_status kv_get(kv_return* r, const char* name, int32_t* value);
/** Sets an amount of an entry box by number. KV_NULL, KV_UNKNOWN, KV_NO_AMOUNT. */
KV_PUBLIC kv_status kv_set_box(kv_return* r, kv_area area, int32_t entry, int32_t value);
/** Reads back an amount of an entry box by number. As kv_set_box. */
KV_PUBLIC kv_status kv_get_box(kv_return* r, kv_area area, int32_t entry, int32_t* value);

/** Sets an amount of exceptional or deferred income (euros), which the quotient taxes apart from the box that it
    belongs to (CGI art. 163-0 A): the coefficient divides it, 0 standing for 4. KV_NULL, KV_UNKNOWN, KV_NO_AMOUNT,
    KV_NO_MEMORY. */
KV_PUBLIC kv_status kv_set_exceptional(kv_return* r, int32_t entry, int32_t coefficient, int32_t amount);
/** Reads back an exceptional amount, 0 where none was set. KV_NULL, KV_UNKNOWN, KV_NO_AMOUNT. */
KV_PUBLIC kv_status kv_get_exceptional(kv_return* r, int32_t entry, int32_t coefficient, int32_t* amount);
/** How many exceptional amounts were set. KV_NULL. */
KV_PUBLIC kv_status kv_exceptional_count(kv_return* r, int32_t* count);
/** One of them, numbered from 0 by box, then by coefficient. KV_NULL, KV_UNKNOWN. */
KV_PUBLIC kv_status kv_exceptional_at(kv_return* r, int32_t index, int32_t* entry, int32_t* coefficient,
                                      int32_t* amount);

/** The stretch of the year that the household's income was earned over, two dates AAAAMMJJ, first and last day. Both
    are of one year: what lies between them is counted without their years. KV_NULL, KV_BAD_VALUE (not two dates of the
    calendar, years 1 to 9999, or the first after the last). */
KV_PUBLIC kv_status kv_set_period(kv_return* r, int32_t first, int32_t last);
KV_PUBLIC kv_status kv_get_period(kv_return* r, int32_t* first, int32_t* last);
/** What is done with the options. KV_NULL, KV_UNKNOWN. */
KV_PUBLIC kv_status kv_set_launch(kv_return* r, kv_launch launch);
KV_PUBLIC kv_status kv_get_launch(kv_return* r, kv_launch* launch);
/** Percent by which the indexed amounts of the law rise; -1.0 and 0.0 for none (no other number stands for -1 percent).
    KV_NULL, KV_BAD_VALUE (not finite). */
KV_PUBLIC kv_status kv_set_indexation(kv_return* r, double percent);
KV_PUBLIC kv_status kv_get_indexation(kv_return* r, double* percent);
/** The law that the return is computed under; null for that of the year. Its figures are copied. KV_NULL (no return),
    KV_BAD_VALUE (as kv_law_check; the message is the return's), KV_NO_MEMORY. */
KV_PUBLIC kv_status kv_set_law(kv_return* r, const kv_law* law);
/** Copies the figures of the law that the return is computed under into a law. KV_NULL. */
KV_PUBLIC kv_status kv_get_law(kv_return* r, kv_law* law);

/** Looks for what can't be true of the entry boxes: two family situations, a second declarant's income without a
    couple, a date in the future, a tick that is neither 0 nor 1. Such a return is computed all the same. count receives
    how many warnings there are. KV_NULL, KV_NO_MEMORY. */
KV_PUBLIC kv_status kv_check(kv_return* r, int32_t* count);
/** A warning of the last kv_check, in English, numbered from 0; it lives until the next kv_check, or until the return
    is cleared or freed. KV_NULL, KV_UNKNOWN. */
KV_PUBLIC kv_status kv_warning(kv_return* r, int32_t index, const char** text);

/* ---- The computation, and what it finds. ------------------------------------------------------------------------- */

/** Computes the return, and writes the trace that a user has asked for with a marker file. Each computation is a first
    one: it reads nothing that another one left, and changes nothing that was set. The results of an earlier one are
    replaced; they stand when it fails. KV_NULL, KV_NO_MEMORY, KV_FAILED. */
KV_PUBLIC kv_status kv_compute(kv_return* r);

/** A figure by name: the value of an output ("TOT_PAYER"), one of its three columns ("CO_19.c2"), or a carry-forward
    box ("F11_6FL"); 0 where nothing was written. KV_NULL, KV_NOT_COMPUTED, KV_UNKNOWN (the message names the nearest),
    KV_NO_MEMORY. */
KV_PUBLIC kv_status kv_read(kv_return* r, const char* name, int32_t* value);
/** A figure of an output by number: its value (column 0) or a column (1 to 3). KV_NULL, KV_NOT_COMPUTED, KV_UNKNOWN. */
KV_PUBLIC kv_status kv_read_output(kv_return* r, int32_t output, int32_t column, int32_t* value);
/** Outputs 0 to count - 1 at once: their values (column 0) or one of their columns. KV_NULL, KV_NOT_COMPUTED,
    KV_UNKNOWN (no such column, or more than there are outputs). */
KV_PUBLIC kv_status kv_read_outputs(kv_return* r, int32_t column, int32_t* values, int32_t count);
/** How an output was found, in French: "7.5% x 1000"; "" for one without a text. It is written to text with a
    terminating zero; length receives its bytes without that zero, and may be null. KV_TEXT bytes hold any text.
    KV_NULL, KV_NOT_COMPUTED, KV_UNKNOWN, KV_NO_MEMORY; KV_TOO_SMALL when it does not fit in size bytes: length alone is
    written. */
KV_PUBLIC kv_status kv_read_text(kv_return* r, int32_t output, char* text, size_t size, size_t* length);
#define KV_TEXT 256
/** A carry-forward box by number. KV_NULL, KV_NOT_COMPUTED, KV_UNKNOWN. */
KV_PUBLIC kv_status kv_read_carry(kv_return* r, int32_t carry, int32_t* value);
/** An entry box as the computation took it, by number: what was set when it began, but for `8TI` and `8TK`, which hold
    the totals of the foreign companions, and `PFU` and `BAR`, which are 0 after a comparison of the options. KV_NULL,
    KV_NOT_COMPUTED, KV_UNKNOWN. */
KV_PUBLIC kv_status kv_read_entry(kv_return* r, int32_t entry, int32_t* value);

/** What the comparison of the options found. */
typedef struct kv_options {
    size_t size;      /**< sizeof(kv_options) */
    int32_t compared; /**< 1 when the two options were compared; else the rest is 0 */
    int32_t flat_tax; /**< what the household pays with the flat tax, euros; negative: what it is refunded */
    int32_t scale;    /**< the same with the scale */
    int32_t
        applied; /**< KV_FLAT_TAX or KV_SCALE: what is paid less, else refunded more; the flat tax when both agree */
} kv_options;
enum { KV_FLAT_TAX = 1, KV_SCALE = 2 };
/** Both net amounts, where the options were compared. options->size is set by the caller. KV_NULL, KV_NOT_COMPUTED,
    KV_BAD_SIZE. */
KV_PUBLIC kv_status kv_read_options(kv_return* r, kv_options* options);

/* ---- Many returns, in columns. ----------------------------------------------------------------------------------- */

/** A column of amounts that n returns set: an entry box, a companion or an exceptional amount by its name, as in
    kv_set, and one value a row. */
typedef struct kv_input_column {
    const char* name;      /**< "1AJ", "ti.1AW", "quotient.4.1AJ" */
    const int32_t* values; /**< rows values; KV_UNSET and 0 both say nothing of an exceptional amount */
} kv_input_column;

/** A column of figures that n computations find, by its name, as in kv_read. */
typedef struct kv_output_column {
    const char* name; /**< "TOT_PAYER", "CO_19.c2", "F11_6FL" */
    int32_t* values;  /**< room for rows values; 0 where nothing is written */
} kv_output_column;

/** Called by the thread that called kv_compute_columns, kv_curve or kv_breaks, with the rows or amounts computed so
    far, how many there are, and the context: before the first one, from time to time, and after the last one. Any
    answer but 0 ends the computation: rows that no thread has begun are left; when none is left it has no effect. It
    must not throw, and must not call anything on the return that is computed. */
typedef int32_t (*kv_progress)(int64_t done, int64_t rows, void* context);

/** Returns to compute, a row each. */
typedef struct kv_columns {
    size_t size;                     /**< sizeof(kv_columns) */
    int64_t rows;                    /**< how many returns */
    const kv_input_column* inputs;   /**< what they set; columns of one amount may not stand twice */
    int32_t input_count;             /**< how many columns of amounts */
    int32_t output_count;            /**< how many columns of figures */
    const kv_output_column* outputs; /**< what is read of them */
    int32_t* statuses;               /**< room for rows statuses; or null */
    kv_progress progress;            /**< null for none */
    void* context;                   /**< handed to progress */
    int32_t threads;                 /**< how many threads compute, this one among them; 0: one a processor */
    int32_t reserved;                /**< 0 */
} kv_columns;

/** Computes a return for each row, as if kv_compute ran over a copy of r with the amounts of the row set over those of
    r, in the order of the columns: period, launch, indexation, law and what no column names are those of r, which stays
    as it is. An exceptional amount of 0 or KV_UNSET in a column sets nothing: that of r, if any, stands. The figures
    are the same for any number of threads. No trace is written.

    statuses receives KV_OK for a row that was computed, KV_NO_MEMORY, KV_FAILED or KV_CANCELLED for another one, whose
    figures are 0. The answer is that of the first row that was not computed, KV_OK when all were.

    KV_NULL (also a name, or values where there are rows), KV_BAD_SIZE, KV_UNKNOWN and KV_NO_AMOUNT (a name; the message
    names the nearest), KV_BAD_VALUE (a negative number, or an amount in two columns): nothing is written. KV_NO_MEMORY;
    KV_FAILED; KV_CANCELLED: the rows that were not reached have it as their status. The message is that of r. */
KV_PUBLIC kv_status kv_compute_columns(kv_return* r, const kv_columns* columns);

/* ---- Why a figure is what it is. --------------------------------------------------------------------------------- */

/* Here and below, a figure is named as in kv_read; null stands for the net amount, S_NET_A_PAYER less S_NET_RESTITUE:
    what the household pays, or, negative, what it is refunded. The return is computed anew, as it is set; nothing of it
    is changed, and its results stand. */

/** The tree of what makes a figure, only what is not 0 (but the figure itself, and what says why it is), as a JSON text
    that lives until the next kv_explain or kv_explain_difference on this return, or until it is cleared or freed.
    depth: how many levels below the figure; all of them when negative.

    A node is an object: "label" in French, "value", "rule"; where there is one "formula" in French, "box" (an output,
    an entry box or a parameter of the law), "column" (1 to 3), "law" (the legal source), "step", "run" (which other
    computation this node and those below are of: without the capped advantages, of the worldwide income, under the
    other option), "terms": nodes with a "sign" (1 or -1) and, where they are operands, a "role". The top has "version",
    1. Rules, and what holds of their terms:

      sum, scale  the terms without a role, each times its sign, add up to the value; "income" and "parts" are what a
                  scale is applied to, "threshold" what an amount stayed below
      choice      the term "chosen" times its sign is the value; without one the formula says what applies
      min, max    the smallest or the largest of the terms "among": a ceiling or a floor that is met
      rate        "base" times "rate", which is in hundredths of a percent
      share       "amount" times "numerator" over "denominator", which is 1 where it is not there
      box, law    a leaf: an amount of the return; a figure of the law in its unit (euros, hundredths of a percent or of
                  a number, years)
      part        a part of a rule that is no figure of its own
      step        no rule is known: the step and its text, and as terms with the role "effect" what each amount of the
                  return adds to the figure, all else being equal; they need not add up
      run         a figure of another computation, with its own tree
      deeper      what makes it lies below the depth asked for, or already stands above

    KV_NULL (r, json), KV_UNKNOWN (the message names the nearest), KV_NO_MEMORY, KV_FAILED. */
KV_PUBLIC kv_status kv_explain(kv_return* r, const char* figure, int32_t depth, const char** json);
/** The branches of the trees of two returns that differ, as a JSON text like that of kv_explain: "before" and "after"
    instead of "value", "formulaBefore" and "formulaAfter", "rule" where both trees have the same one, and of the terms
    those alone that differ, or that something below differs of. What leads to the net amount is told in one way for
    both: tax, advantages above the global cap, contributions, credits, levies.
    Where the two returns come to a figure in different ways (the family quotient capped in one of them), the terms of
    both stand there, each with what the two returns have of it, and "in", "before" or "after", is the one in which it
    counts; "before" or "after" is left out where that return has no such figure. With a figure that counts in one tree
    only taken as 0 in the other, the differences of the terms of a sum or a scale add up to that of the figure.
    Returns that differ in their law alone show what it changes. The text and the message are those of after; before is
    read only. Otherwise as kv_explain. */
KV_PUBLIC kv_status kv_explain_difference(kv_return* before, kv_return* after, const char* figure, int32_t depth,
                                          const char** json);

/* ---- What would change a figure. --------------------------------------------------------------------------------- */

/** What an amount that a return sets does to a figure. */
typedef struct kv_effect {
    size_t size;      /**< sizeof(kv_effect) */
    const char* name; /**< the amount by its name, as in kv_set; it lives as long as the list of kv_effects */
    int32_t entry;    /**< the number of its entry box */
    int32_t amount;   /**< what the return sets */
    int32_t without;  /**< the figure when nothing is set there */
    int32_t change;   /**< what a second change adds: 100 euros, 1 of a count; a tick is toggled; 0 for other kinds */
    int32_t changed;  /**< the figure then */
    int32_t reserved; /**< 0 */
} kv_effect;

/** Computes the return again without each of its amounts that are not 0, and with some more of each. value receives the
    figure, count how many amounts there are; kv_effect_at reads them, the most telling first: those without which the
    figure differs most, then those of which some more changes it most. KV_NULL, KV_UNKNOWN (the message names the
    nearest), KV_NO_MEMORY, KV_FAILED. */
KV_PUBLIC kv_status kv_effects(kv_return* r, const char* figure, int32_t* value, int32_t* count);
/** One of the effects that the last kv_effects on this return found, numbered from 0. They live until the next
    kv_effects, or until the return is cleared or freed. KV_NULL, KV_UNKNOWN, KV_BAD_SIZE. */
KV_PUBLIC kv_status kv_effect_at(kv_return* r, int32_t index, kv_effect* effect);

/** The values that one amount of a return takes in turn. */
typedef struct kv_range {
    size_t size;          /**< sizeof(kv_range) */
    const char* amount;   /**< its name, as in kv_set */
    int32_t from;         /**< euros, or what the box holds; -1 000 000 000 to 1 000 000 000 */
    int32_t to;           /**< from or more, as far as that */
    int32_t step;         /**< 1 to 1 000 000 000; kv_breaks looks at every whole amount, whatever it is */
    int32_t threads;      /**< how many threads compute, this one among them; 0: one a processor */
    const char* figure;   /**< what is looked at; null: the net amount */
    kv_progress progress; /**< null for none; rows are amounts */
    void* context;        /**< handed to progress */
} kv_range;

/** A figure as one amount grows: from, from + step, ... as far as to. count receives how many amounts that is; each
    array that is not null the first capacity of them: the amount, the figure, its average rate (figure / amount, 0 for
    the amount 0) and its marginal rate ((figure at amount + step - figure) / step), both in euros per euro. KV_NULL (r,
    range, count), KV_BAD_SIZE, KV_UNKNOWN, KV_NO_AMOUNT, KV_BAD_VALUE (the bounds or the step), KV_NO_MEMORY,
    KV_FAILED, KV_CANCELLED: nothing but count is sure then. KV_TOO_SMALL when there are more than capacity: count alone
    is written. */
KV_PUBLIC kv_status kv_curve(kv_return* r, const kv_range* range, int32_t* amounts, int32_t* values, double* average,
                             double* marginal, int32_t capacity, int32_t* count);

/** A stretch of amounts along which a figure is a straight line, to one euro. */
typedef struct kv_piece {
    int32_t from;  /**< the first amount */
    int32_t to;    /**< the last one; the next stretch begins at to + 1 */
    double rate;   /**< euros per euro, 9 decimals */
    int32_t value; /**< the figure at from */
} kv_piece;

/** Cuts a range into straight pieces: at every whole amount of a piece the figure is value + rate * (amount - from), to
    one euro, and no longer piece that begins there has such a rate. Every amount of the range is computed. count
    receives how many pieces there are, pieces the first capacity of them. Statuses as kv_curve; KV_TOO_SMALL when there
    are more than capacity: count and the first ones are written all the same, after another failure nothing. */
KV_PUBLIC kv_status kv_breaks(kv_return* r, const kv_range* range, kv_piece* pieces, int32_t capacity, int32_t* count);

/* ---- How it went. ------------------------------------------------------------------------------------------------ */

/** Called with each line of a trace in its order, UTF-8 with a terminating zero, and the context of the call: the time
    of day, then a step, a value or a re-run. It must not throw, and must not call anything on the return that is
    computed. */
typedef void (*kv_trace_line)(const char* line, void* context);

/** Computes the return as kv_compute does, and tells each step, value and re-run, indented by level. A computation that
    is traced passes over nothing, and finds the same. As kv_compute; KV_NO_MEMORY also when a line was lost. */
KV_PUBLIC kv_status kv_compute_traced(kv_return* r, kv_trace_line line, void* context);

#ifdef __cplusplus
}
#endif

#endif
