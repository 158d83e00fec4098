#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "tests/Figures.h"
#include "tests/Hasard.h"

// What a build finds on random returns, as one number: two builds that agree print the same line.
//
//     kv_accord [RETURNS] [SEED]      the number of all their outputs, columns, texts, entries and boxes of next year
//     kv_accord --each RETURNS SEED   a number for each return
//     kv_accord --show RETURN SEED    one of them: its boxes, and everything that is found

namespace {

// FNV-1a, 64 bits.
std::uint64_t Empreinte(std::string_view texte, std::uint64_t depart = 14695981039346656037u) {
    for (const char c : texte) depart = (depart ^ static_cast<unsigned char>(c)) * 1099511628211u;
    return depart;
}

kv::Return Retour(long numero, long graine) {
    Hasard hasard(static_cast<std::uint32_t>(graine * 1'000'003 + numero));
    return hasard.Variee();
}

long Argument(int argc, char** argv, int i, long sinon) { return i < argc ? std::strtol(argv[i], nullptr, 10) : sinon; }

}  // namespace

int main(int argc, char** argv) {
    const std::string_view option = argc > 1 && argv[1][0] == '-' ? argv[1] : "";
    const int premier = option.empty() ? 1 : 2;
    const long nombre = Argument(argc, argv, premier, 10'000), graine = Argument(argc, argv, premier + 1, 1);
    if (option == "--show") {
        kv::Return r = Retour(nombre, graine);
        std::printf("%s\n", test::Boites(r).c_str());
        std::printf("%s", test::Figures(r.compute()).c_str());
        return 0;
    }
    std::uint64_t ensemble = Empreinte("");
    for (long i = 0; i < nombre; ++i) {
        const std::string figures = test::Figures(Retour(i, graine).compute());
        if (option == "--each") std::printf("%ld %016" PRIx64 "\n", i, Empreinte(figures));
        ensemble = Empreinte(figures, ensemble);
    }
    if (option.empty()) std::printf("%ld returns: %016" PRIx64 "\n", nombre, ensemble);
    return 0;
}
