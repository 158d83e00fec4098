#include <cstdint>
#include <exception>

// Sibling libraries for the tests: one with the percentage function, one with the test-case function, one whose
// test-case function throws, one with neither.

#define VISIBLE __attribute__((visibility("default")))

extern "C" {
#if defined(AVEC_POURCENTAGE)

// The name begins with "@", which no linker takes here: the build puts it in place of the first letter.
VISIBLE double Pourcentage(const std::int32_t& annee) asm("XObtenirPourcentageBareme$qqrrxi");
double Pourcentage(const std::int32_t& annee) {
    if (annee != 2017) __builtin_trap();
    return 10.0;
}

#elif defined(AVEC_CAS_DE_TEST)

// Keeps what it was given, and counts its calls.
VISIBLE std::int32_t recus[9] = {};
VISIBLE const void* retourRecu = nullptr;
VISIBLE void _GoCalcCasDeTest(std::int32_t a, std::int32_t b, std::int32_t c, std::int32_t d, std::int32_t e,
                              std::int32_t f, std::int32_t g, std::int32_t h, const void* retour) {
    const std::int32_t arguments[] = {a, b, c, d, e, f, g, h};
    for (int i = 0; i < 8; ++i) recus[i] = arguments[i];
    ++recus[8];
    retourRecu = retour;
}

#elif defined(EN_PANNE)

struct Panne : std::exception {
    const char* what() const noexcept override { return "en panne"; }
};
VISIBLE void _GoCalcCasDeTest() { throw Panne(); }

#else

VISIBLE void RienDUtile() {}

#endif
}
