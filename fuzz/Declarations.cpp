#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "tests/Figures.h"
#include "tools/Retour.h"

// Any text as a return of the command line: it is refused with a message, or computed; written out and read again it
// gives the same figures.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* donnees, std::size_t taille) {
    const std::string texte(reinterpret_cast<const char*>(donnees), taille);
    kv::Return r;
    try {
        r = outil::LisRetour(texte, "retour.json");
    } catch (const outil::ErreurEntree&) {
        return 0;
    }
    kv::Return relu = outil::LisRetour(test::Document(r), "relu.json");
    if (test::Figures(relu.compute()) != test::Figures(r.compute())) std::abort();
    return 0;
}
