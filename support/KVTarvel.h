#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Numbers, dates and texts: every rounding, percentage, bound and conversion of the computation.
//
// Amounts are signed 32-bit whole euros; intermediate figures are doubles. None of these functions reports an error,
// and none has undefined behaviour on any argument: conversions to 32 bits saturate, NaN counts as 0.

/// The unset value of a box or companion slot.
inline constexpr std::int32_t nNonSaisi = -2147483647;

namespace kv {
/// Nearest whole number of a double that may lie outside 32 bits.
std::int32_t ArronditHorsBornes(double x);
}  // namespace kv

/// Nearest whole number, exact halves away from zero, saturated to 32 bits.
inline std::int32_t nArrondi(double x) {
    if (!(-2147483648.0 < x && x < 2147483647.0)) return kv::ArronditHorsBornes(x);
    const auto entier = static_cast<std::int32_t>(x);
    const double reste = x - entier;
    return reste >= 0.5 ? entier + 1 : reste <= -0.5 ? entier - 1 : entier;
}
/// Nearest whole number, exact halves away from zero, as a double.
double dArrondi(double x);
/// x rounded to n decimals.
double dArrondn(double x, std::int32_t n);
/// x without its fraction, saturated to 32 bits.
std::int32_t nTronque(double x);
/// The largest whole number not above x, saturated to 32 bits.
std::int32_t nPlancher(double x);

/// montant x taux / 100, not rounded; taux in percent.
inline double dPourcent(std::int32_t montant, double taux) { return montant * taux / 100.0; }
/// montant x taux / 100 in whole euros; taux in percent.
inline std::int32_t nPourcent(std::int32_t montant, double taux) { return nArrondi(dPourcent(montant, taux)); }
inline std::int32_t nPourcent(std::int32_t montant, std::int32_t taux) {
    return nPourcent(montant, static_cast<double>(taux));
}
/// montant x taux in whole euros; taux in hundredths of a percent: 680 for 6.8 %.
inline std::int32_t nAuTaux(std::int32_t montant, std::int32_t taux) { return nPourcent(montant, taux / 100.0); }

/// a / b, and 0 for a zero divisor: a ratio with an empty denominator is 0.
inline double dDiv(double a, double b) { return b == 0.0 ? 0.0 : a / b; }
inline double dMul(double a, double b) { return a * b; }
/// Integer division toward zero, and 0 for a zero divisor.
inline std::int32_t nDiv(std::int32_t a, std::int32_t b) {
    return b == 0 ? 0 : static_cast<std::int32_t>(std::int64_t{a} / b);
}
/// (a x b) / c rounded to whole euros: the share of a that b / c stands for.
inline std::int32_t nProrata(double a, double b, double c) { return nArrondi(dDiv(dMul(a, b), c)); }

/// The larger, the smaller of two doubles; the same as a whole number.
inline double dMax(double a, double b) { return a > b ? a : b; }
inline double dMin(double a, double b) { return a < b ? a : b; }
inline std::int32_t nMax(double a, double b) { return nArrondi(dMax(a, b)); }
inline std::int32_t nMin(double a, double b) { return nArrondi(dMin(a, b)); }
/// The value when greater than 0, else 0.
inline double dPositif(double x) { return x > 0.0 ? x : 0.0; }
inline std::int32_t nPositif(std::int32_t x) { return x > 0 ? x : 0; }
/// Caps the pointed value.
inline void nMaximise(std::int32_t* valeur, std::int32_t plafond) {
    if (*valeur > plafond) *valeur = plafond;
}

/// valeur, or defaut when it is the unset value.
inline std::int32_t nValForc(std::int32_t valeur, std::int32_t defaut) { return valeur == nNonSaisi ? defaut : valeur; }
/// bas <= x <= haut.
inline bool bIsEntre(std::int32_t x, std::int32_t bas, std::int32_t haut) { return bas <= x && x <= haut; }

/// The integer form AAAAMMJJ of a date written "JJ/MM/AAAA" or "AAAA-MM-JJ"; 0 for any other text.
std::int32_t DateToInt(std::u16string_view date, bool);
/// The year of an integer date, 0 for d <= 0.
inline std::int32_t AnneeOfDate(std::int32_t date) { return date > 0 ? date / 10000 : 0; }

/// A whole number in decimal digits.
std::u16string IntToStr(std::int32_t n);
/// A number in its shortest decimal form, "." as separator: 12.5, 10, 0.3.
std::u16string FloatToStr(double x);
/// The indentation of a trace line: two spaces per level.
std::u16string EspacesNiveau(std::int32_t niveau);

namespace kv {

/// Texts are UTF-16 inside, UTF-8 on disk. What is not valid becomes U+FFFD.
std::string VersUtf8(std::u16string_view texte);
std::u16string VersUtf16(std::string_view texte);

}  // namespace kv
