#ifndef KV_FICHES_H
#define KV_FICHES_H

#include <stdint.h>

// The catalogue records as they are copied to a host. Usable from C and C++; names are UTF-16, zero-terminated.

#ifdef __cplusplus
typedef char16_t KVCar;
#else
typedef uint16_t KVCar;
#endif

/// An entry box of return 2042 (56 bytes).
typedef struct CaseEntreeDef {
    uint32_t Index;        ///< number of the box, 0 to 2127; also its slot in the entry area
    KVCar Nom[6];          ///< name on the form, 1 to 5 characters
    int32_t CaseLiee;      ///< box that receives this box's amount in its transfer, -1 for none
    uint32_t Type;         ///< person: 1, 2 declarants, 3 to 11 dependants, 12 dependants together, 14 household
    uint8_t bAutoEntr;     ///< takes part in the auto-entrepreneur transfer
    uint8_t bProspection;  ///< takes part in the prospection transfer
    uint8_t bNegatifTI;    ///< its TI amount counts negatively
    uint8_t bSauveTK;      ///< saved before the TK transfer and restored after it
    int32_t nQuotient;     ///< quotient map, 0 to 86, or -1
    int32_t nTI;           ///< slot in the TI area, 0 to 114, or -1
    int32_t nTIX;          ///< slot in the TIX area, 0 to 80, or -1
    int32_t nTIY;          ///< slot in the TIY area, 0 to 80, or -1
    int32_t nTK;           ///< slot in the TK area, 0 to 76, or -1
    int32_t nTKZ;          ///< slot in the TKZ area, 0 to 76, or -1
    int32_t nDouble;       ///< slot of a double value: -1, no box has one
} CaseEntreeDef;

/// An output box (108 bytes).
typedef struct CaseSortieDef {
    uint32_t Index;         ///< number of the box, 0 to 2287; also its slot in the output area
    KVCar Nom[50];          ///< name, at most 27 characters
    uint8_t bRazPartielle;  ///< cleared by a partial reset
    uint8_t Zero[3];
} CaseSortieDef;

/// A carry-forward box (104 bytes).
typedef struct CaseReportDef {
    uint32_t Index;  ///< number of the box, 0 to 735; also its slot in the carry-forward area
    KVCar Nom[50];   ///< "F11_" and the code of a box of next year's form
} CaseReportDef;

/// A bracket of the progressive scale: tax = income x rate / 10000 - constant per part, CGI art. 197 I-1.
typedef struct TrancheBareme {
    double Basse;      ///< lower bound per part, euros
    double Haute;      ///< upper bound per part, euros; 0 for the last bracket
    double Constante;  ///< euros per part
    double Taux;       ///< hundredths of a percent
} TrancheBareme;

/// What the scale shortcut reads: 24 entry boxes.
typedef struct EntreeBareme {
    int32_t M, C, D, V, O, Fp, S, P, W, L, N, T, Gp, Fm, Gm, Hm, Im, Rm, Jm, Nm, Pm;
    int32_t c6DD;
    int32_t nInutilise;  ///< not read
    int32_t c2TS;
} EntreeBareme;

/// What the scale shortcut answers.
typedef struct SortieBareme {
    int32_t F_NB_PARTS_ALL;  ///< parts, hundredths
    int32_t TOT_PAYER;       ///< amount to pay, euros
    int32_t TOT_REST;        ///< amount refunded, euros
    int32_t ABAT;            ///< allowances, euros
} SortieBareme;

#endif
