#include <benchmark/benchmark.h>

#include <kv.hpp>
#include <memory>
#include <random>
#include <string_view>
#include <utility>
#include <vector>

#include "Calcul/cCalcul/DataCalcul.h"
#include "Calcul/pCalculN/Pilote.h"

// How long a launch takes, and what it is made of.

namespace {

struct Valeur {
    CaseEntree box;
    std::int32_t valeur;
};

std::unique_ptr<CDataCalcul> Retour(std::initializer_list<Valeur> entrees) {
    auto data = std::make_unique<CDataCalcul>();
    for (const Valeur& v : entrees) data->Entree[v.box] = v.valeur;
    return data;
}

void Lance(benchmark::State& etat, CDataCalcul& data, bool options = false) {
    for (auto _ : etat) benchmark::DoNotOptimize(kv::Lance(data, nullptr, true, -1.0, false, options));
}

void Celibataire(benchmark::State& etat) { Lance(etat, *Retour({{"1AJ", 30000}})); }
BENCHMARK(Celibataire);

// The same through kv.h, next year's return included.
void CelibataireParKv(benchmark::State& etat) {
    kv::Return retour;
    retour.set("1AJ", 30000);
    for (auto _ : etat) benchmark::DoNotOptimize(retour.compute()["S_NET_A_PAYER"]);
}
BENCHMARK(CelibataireParKv);

// The same with one more box, each amount box of the form in its turn: what a box costs is the difference.
void CelibataireEtUneCase(benchmark::State& etat) {
    std::vector<CaseEntree> boxes;
    for (int i = 0; i < kv::nEntrees; ++i)
        if (const std::string_view nom = kv::entree::lignes[i].nom; nom.size() == 3 && '1' <= nom[0] && nom[0] <= '8')
            boxes.push_back(CaseEntree::Numero(i));
    const auto data = Retour({{"1AJ", 30000}});
    std::size_t i = 0;
    for (auto _ : etat) {
        const std::int32_t avant = std::exchange(data->Entree[boxes[i]], 31000);
        benchmark::DoNotOptimize(kv::Lance(*data, nullptr, true, -1.0, false, false));
        data->Entree[boxes[i]] = avant;
        i = (i + 1) % boxes.size();
    }
    etat.counters["boxes"] = static_cast<double>(boxes.size());
}
BENCHMARK(CelibataireEtUneCase);

void CoupleSalarie(benchmark::State& etat) {
    Lance(etat, *Retour({{"M", 1}, {"Fm", 2}, {"1AJ", 42000}, {"1BJ", 31000}}));
}
BENCHMARK(CoupleSalarie);

void Pensionnes(benchmark::State& etat) {
    Lance(etat, *Retour({{"M", 1},
                         {"AAF1", 19480615},
                         {"AAF2", 19500101},
                         {"1AS", 28000},
                         {"1BS", 14000},
                         {"2DC", 5000},
                         {"2BH", 5000},
                         {"2CK", 1050},
                         {"7UF", 600}}));
}
BENCHMARK(Pensionnes);

const std::initializer_list<Valeur> couple = {
    {"M", 1},     {"Fm", 2},     {"1AJ", 42000}, {"1BJ", 31000}, {"1AK", 5200}, {"1BS", 4000}, {"2DC", 1500},
    {"2TR", 800}, {"4BE", 6000}, {"5KO", 9000},  {"6EL", 3000},  {"7UF", 400},  {"7DB", 2500}};
void CoupleRevenusVaries(benchmark::State& etat) { Lance(etat, *Retour(couple)); }
BENCHMARK(CoupleRevenusVaries);

// The flat tax, the scale, then the cheaper of the two.
void ComparaisonDesOptions(benchmark::State& etat) {
    const auto data = Retour(couple);
    data->Entree["AVA"] = 1;
    Lance(etat, *data, true);
}
BENCHMARK(ComparaisonDesOptions);

// Exceptional salary and pension over two coefficients.
void RevenuAuQuotient(benchmark::State& etat) {
    const auto data = Retour(couple);
    data->AjouteQuotient(kv::CaseQuotient("1AJ").numero, 4, 12000);
    data->AjouteQuotient(kv::CaseQuotient("1BS").numero, 3, 6000);
    Lance(etat, *data);
}
BENCHMARK(RevenuAuQuotient);

// Every kind of re-run: worldwide income, auto-entrepreneur, prospection, credit equal to the French tax.
void RevenusEtrangers(benchmark::State& etat) {
    const auto data = Retour(couple);
    data->Entree["1AC"] = 8000;
    data->Entree["5TA"] = 3000;
    data->Entree["5TF"] = 2000;
    data->TI["4BE"] = 1500;
    data->TK["2DC"] = 900;
    Lance(etat, *data);
}
BENCHMARK(RevenusEtrangers);

void TroisCentsCases(benchmark::State& etat) {
    const auto data = Retour({{"M", 1}, {"Fm", 2}});
    std::mt19937 hasard(2017);
    for (int n = 0; n < 300;) {
        const CaseEntree box = CaseEntree::Numero(static_cast<int>(hasard() % kv::nEntrees));
        if (const char initiale = kv::entree::lignes[box.numero].nom[0]; initiale < '1' || initiale > '7') continue;
        data->Entree[box] = static_cast<std::int32_t>(hasard() % 20000);
        ++n;
    }
    Lance(etat, *data);
}
BENCHMARK(TroisCentsCases);

void Construction(benchmark::State& etat) {
    for (auto _ : etat) benchmark::DoNotOptimize(std::make_unique<CDataCalcul>());
}
BENCHMARK(Construction);

}  // namespace
