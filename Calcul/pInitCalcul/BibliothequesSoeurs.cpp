#include "Calcul/cCalcul/DataCalcul.h"
#include "Calcul/pInitCalcul/KVCalculMaps.h"
#include "Calcul/pInitCalcul/Session.h"
#include "support/Bibliotheque.h"
#include "support/KVTarvel.h"
#include "support/Tarvel.h"

// The sibling libraries of the product, and the overseas codes that they share with the hosts.

namespace {

// The percentage function belongs to a library of another compiler: on 32-bit Windows its argument, a reference to the
// year, comes in the first register.
#if defined(_WIN32) && defined(__i386__)
#define KV_REGISTRE __attribute__((regparm(1)))
#else
#define KV_REGISTRE
#endif
using ObtenirPourcentageBareme = double(KV_REGISTRE*)(const std::int32_t& annee);

using GoCalcCasDeTest = void (*)(std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t,
                                 std::int32_t, std::int32_t, CDataCalcul*);

constexpr std::u16string_view codesOutreMer[] = {
    u"RSA", u"RSB", u"RSC", u"RSD", u"RSE", u"RSF", u"RSG", u"RST",  // 0 to 7
    u"ISA", u"ISB", u"ISC", u"ISD", u"ISE", u"ISF", u"ISG", u"ISH",
    u"ISI", u"ISJ", u"ISK", u"ISL", u"ISM", u"ISN",  // 21
    u"ITA", u"ITB", u"ITC", u"ITD", u"ITE", u"ITF", u"ITG", u"ITH",
    u"ITI", u"ITJ", u"ITK", u"ITL", u"ITM", u"ITN",
    u"ITT",  // 36
};
static_assert(std::size(codesOutreMer) == 37);

}  // namespace

void KV_Calcul_Report(std::u16string repertoire) {
    kv::Protege(kv::sourceExports, [&] {
        const std::u16string fichier = std::u16string(u"KVCOMMUN") + kv::Bibliotheque::extension;
        kv::Bibliotheque soeur(repertoire, fichier);
        if (!soeur) return NUBErreur(u"Impossible de charger : KVCOMMUN");
        const auto pourcentage = soeur.Fonction<ObtenirPourcentageBareme>("@ObtenirPourcentageBareme$qqrrxi");
        if (!pourcentage) return NUBErreur(u"Impossible de charger la fonction ObtenirPourcentageBareme");
        soeur.Conserve();  // before the call: an exception that it throws is the library's own
        const std::int32_t annee = 2017;
        KV_CalculReports(kv::session, nullptr, pourcentage(annee));
    });
}

void KV_Calcul_RemplirStructure(std::int32_t numero, std::u16string repertoire, std::int16_t valeur) {
    kv::Protege(kv::sourceExports, [&] {
        const std::u16string fichier = u"KV" + IntToStr(numero) + u"_" + u"COMMUN" + u".dll";
        kv::Bibliotheque soeur(repertoire, fichier);
        if (!soeur) return NUBErreur(u"Impossible de charger : " + fichier);
        const auto casDeTest = soeur.Fonction<GoCalcCasDeTest>("_GoCalcCasDeTest");
        if (!casDeTest) return NUBErreur(u"Impossible de charger la fonction GoCalcCasDeTest");
        soeur.Conserve();
        casDeTest(0, valeur, 0, 0, 0, 0, 1, 0, kv::session);
    });
}

void KV_InitDomTom(std::u16string* codes) {
    if (!codes) return;
    kv::Protege(kv::sourceExports, [&] {
        for (const std::u16string_view code : codesOutreMer) *codes++ = code;
    });
}

void KV_InitReport() {
    kv::Protege(kv::sourceExports, [] {});
}
