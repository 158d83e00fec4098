#pragma once

#include <cstdint>
#include <string>

/// The stretch of the year that a computation covers.
///
/// Dates are days since 30 December 1899, time in the fraction.
struct TPeriode {
    double Deb;            ///< first day
    double Fin;            ///< last day
    std::u16string Texte;  ///< empty in every period the library makes
    std::int32_t Annee;

    /// The current year of the library: 0 until the first launch.
    TPeriode();
    /// 1 January to 31 December of a year.
    explicit TPeriode(std::int32_t annee);

    /// The days of the period in 30-day months, at most 360; the years are not looked at.
    std::int32_t Jours() const;
    /// 360 / days: what brings an amount earned over the period to a full year.
    double CoefficientAnnuel() const;
    /// The amount brought to a full year, not rounded.
    double Annualise(double montant) const;
    /// The part of a full year that the period covers: days / 360.
    double Fraction() const;
};

namespace kv {

/// A calendar date as the period holds it.
double Date(std::int32_t annee, std::int32_t mois, std::int32_t jour);
/// A date written "JJ/MM/AAAA".
std::u16string TexteDate(double date);

/// The library's current year, set by every launch; nothing in the computation reads it.
std::int32_t AnneeCourante();
void FixeAnneeCourante(std::int32_t annee);

}  // namespace kv
