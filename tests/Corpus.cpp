#include <cstdlib>
#include <iostream>

#include "tests/Cas.h"
#include "tests/Figures.h"
#include "tests/Hasard.h"

// The returns that every interface must compute alike, one JSON document a line as the command line reads them: the
// households of the cases, but for those under another law, then random ones.
//
//     kv_corpus [RETURNS]

int main(int argc, char** argv) {
    for (const auto& fichier : test::Fichiers(KV_CAS, ".case"))
        for (const test::Bloc& bloc : test::LisCas(fichier))
            for (const test::Menage& menage : bloc.menages)
                if (menage.boites.find("law.") == menage.boites.npos)
                    std::cout << test::Document(Foyer(menage.boites)) << '\n';
    Hasard hasard(20);
    for (long n = argc > 1 ? std::strtol(argv[1], nullptr, 10) : 1000; n > 0; --n)
        std::cout << test::Document(hasard.Variee()) << '\n';
}
