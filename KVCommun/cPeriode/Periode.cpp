#include "KVCommun/cPeriode/Periode.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "support/KVTarvel.h"

namespace {

using namespace std::chrono;

constexpr sys_days origine{1899y / December / 30};
std::atomic<std::int32_t> anneeCourante = 0;

year_month_day Decoupe(double date) { return sys_days(origine + days(nTronque(std::floor(date)))); }

std::int32_t MoisDe(year_month_day date) { return static_cast<std::int32_t>(unsigned(date.month())); }
std::int32_t JourDe(year_month_day date) { return static_cast<std::int32_t>(unsigned(date.day())); }

}  // namespace

namespace kv {

double Date(std::int32_t annee, std::int32_t mois, std::int32_t jour) {
    const year_month_day date{year(annee), month(static_cast<unsigned>(mois)), day(static_cast<unsigned>(jour))};
    return static_cast<double>((sys_days(date) - origine).count());
}

std::u16string TexteDate(double date) {
    const year_month_day d = Decoupe(date);
    char texte[32];
    std::snprintf(texte, sizeof texte, "%02d/%02d/%04d", JourDe(d), MoisDe(d), int(d.year()));
    return VersUtf16(texte);
}

std::int32_t AnneeCourante() { return anneeCourante; }
void FixeAnneeCourante(std::int32_t annee) { anneeCourante = annee; }

}  // namespace kv

TPeriode::TPeriode() : TPeriode(kv::AnneeCourante()) {}

TPeriode::TPeriode(std::int32_t annee) : Deb(kv::Date(annee, 1, 1)), Fin(kv::Date(annee, 12, 31)), Annee(annee) {}

std::int32_t TPeriode::Jours() const {
    const year_month_day debut = Decoupe(Deb), fin = Decoupe(Fin);
    const std::int32_t jours =
        std::min(JourDe(fin), 30) + 30 * (MoisDe(fin) - MoisDe(debut)) - std::min(JourDe(debut), 30) + 1;
    return std::min(jours, 360);
}

double TPeriode::CoefficientAnnuel() const { return dDiv(360.0, Jours()); }
double TPeriode::Annualise(double montant) const { return dMul(montant, CoefficientAnnuel()); }
double TPeriode::Fraction() const { return dDiv(Jours(), 360.0); }
