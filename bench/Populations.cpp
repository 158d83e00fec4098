#include <benchmark/benchmark.h>

#include <filesystem>

#include "tools/Population.h"
#include "tools/Table.h"

// How many returns a second go from a table to a table, by the number of threads.

namespace {

void TableDeFoyers(benchmark::State& etat) {
    constexpr std::int64_t foyers = 50'000;
    const auto fichier = std::filesystem::temp_directory_path() / "kv_bench_population.csv";
    outil::EcritPopulation(fichier, foyers, 2017);
    outil::DemandeTable demande;
    demande.entree = fichier, demande.sortie = "/dev/null";
    demande.figures = {"TOT_PAYER", "S_NET_A_PAYER", "TOT_IMPOT", "TOT_R_IMPOS", "F_NB_PARTS_ALL"};
    demande.threads = static_cast<std::int32_t>(etat.range(0));
    demande.bavardage = outil::Bavardage::Silencieux;
    for (auto _ : etat) benchmark::DoNotOptimize(outil::CalculeTable(demande, {}));
    etat.SetItemsProcessed(foyers * etat.iterations());  // rows
    std::filesystem::remove(fichier);
}
BENCHMARK(TableDeFoyers)->ArgName("threads")->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
