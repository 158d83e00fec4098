#include <cstddef>
#include <cstdint>
#include <string>

#include "tests/Notation.h"
#include "tools/ErreurEntree.h"
#include "tools/Reforme.h"

// Any text as a reform: it is refused with a message, or a return is computed under it.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* donnees, std::size_t taille) {
    static const kv::Return couple = Foyer("M Fm=2 1AJ=42000 1BJ=31000 2DC=900 7UF=300 HQJ=500 5KO=9000");
    try {
        const std::string texte(reinterpret_cast<const char*>(donnees), taille);
        kv::Return(couple).set_law(outil::LisReforme(texte, "reforme.json").loi).compute();
    } catch (const outil::ErreurEntree&) {
    }
    return 0;
}
