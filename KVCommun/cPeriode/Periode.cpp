#include "KVCommun/cPeriode/Periode.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>

#include "support/KVTarvel.h"

namespace {

// A day of the Gregorian calendar, extended to every year. Years are 64-bit: any 32-bit year has its days.
struct Jour {
    std::int64_t annee;
    std::int32_t mois, jour;
};

// Years begin in March here, so that the leap day is the last one: month m, 0 for March, begins after (153 m + 2) / 5
// days. Four centuries have 146 097 days.
constexpr std::int64_t joursParEre = 146'097, anneesParEre = 400;

constexpr std::int64_t QuotientParDefaut(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0); }

constexpr std::int64_t JoursDepuisMars0(Jour date) {
    const std::int64_t annee = date.annee - (date.mois <= 2);
    const std::int64_t ere = QuotientParDefaut(annee, anneesParEre), rang = annee - ere * anneesParEre;
    const std::int64_t mois = (date.mois + 9) % 12;
    return ere * joursParEre + rang * 365 + rang / 4 - rang / 100 + (153 * mois + 2) / 5 + date.jour - 1;
}

constexpr Jour Decoupe(std::int64_t jours) {
    const std::int64_t ere = QuotientParDefaut(jours, joursParEre), jour = jours - ere * joursParEre;
    const std::int64_t rang = (jour - jour / 1460 + jour / 36'524 - jour / 146'096) / 365;  // leap days left out
    const std::int64_t dansLAnnee = jour - (365 * rang + rang / 4 - rang / 100);
    const std::int64_t mois = (5 * dansLAnnee + 2) / 153;
    const std::int64_t annee = ere * anneesParEre + rang + (mois >= 10);
    return {annee, static_cast<std::int32_t>(mois < 10 ? mois + 3 : mois - 9),
            static_cast<std::int32_t>(dansLAnnee - (153 * mois + 2) / 5 + 1)};
}

constexpr std::int64_t origine = JoursDepuisMars0({1899, 12, 30});
std::atomic<std::int32_t> anneeCourante = 0;

// The day that a date stands in; a host's date may be any double.
Jour Decoupe(double date) {
    constexpr double extreme = 1e15;
    const double jours = std::isnan(date) ? 0.0 : std::clamp(std::floor(date), -extreme, extreme);
    return Decoupe(origine + static_cast<std::int64_t>(jours));
}

}  // namespace

namespace kv {

double Date(std::int32_t annee, std::int32_t mois, std::int32_t jour) {
    return static_cast<double>(JoursDepuisMars0({annee, mois, jour}) - origine);
}

std::u16string TexteDate(double date) {
    const Jour d = Decoupe(date);
    char texte[48];
    std::snprintf(texte, sizeof texte, "%02d/%02d/%04lld", d.jour, d.mois, static_cast<long long>(d.annee));
    return VersUtf16(texte);
}

std::int32_t AnneeCourante() { return anneeCourante; }
void FixeAnneeCourante(std::int32_t annee) { anneeCourante = annee; }

}  // namespace kv

TPeriode::TPeriode() : TPeriode(kv::AnneeCourante()) {}

TPeriode::TPeriode(std::int32_t annee) : Deb(kv::Date(annee, 1, 1)), Fin(kv::Date(annee, 12, 31)), Annee(annee) {}

std::int32_t TPeriode::Jours() const {
    const Jour debut = Decoupe(Deb), fin = Decoupe(Fin);
    const std::int32_t jours = std::min(fin.jour, 30) + 30 * (fin.mois - debut.mois) - std::min(debut.jour, 30) + 1;
    return std::min(jours, 360);
}

double TPeriode::CoefficientAnnuel() const { return dDiv(360.0, Jours()); }
double TPeriode::Annualise(double montant) const { return dMul(montant, CoefficientAnnuel()); }
double TPeriode::Fraction() const { return dDiv(Jours(), 360.0); }
