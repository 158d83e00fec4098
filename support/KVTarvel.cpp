#include "support/KVTarvel.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace {

std::int32_t Sature(double x) {
    constexpr double haut = std::numeric_limits<std::int32_t>::max();
    constexpr double bas = std::numeric_limits<std::int32_t>::min();
    if (std::isnan(x)) return 0;
    if (x >= haut) return std::numeric_limits<std::int32_t>::max();
    if (x <= bas) return std::numeric_limits<std::int32_t>::min();
    return static_cast<std::int32_t>(x);
}

// The digits [debut, debut + longueur) of a text as a number, -1 when one of them is not a digit.
std::int32_t Chiffres(std::u16string_view texte, std::size_t debut, std::size_t longueur) {
    std::int32_t n = 0;
    for (const char16_t c : texte.substr(debut, longueur)) {
        if (c < u'0' || c > u'9') return -1;
        n = 10 * n + (c - u'0');
    }
    return n;
}

std::u16string Elargit(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

}  // namespace

double dArrondi(double x) { return std::round(x); }
std::int32_t kv::ArronditHorsBornes(double x) { return Sature(std::round(x)); }
std::int32_t nTronque(double x) { return Sature(std::trunc(x)); }
std::int32_t nPlancher(double x) { return Sature(std::floor(x)); }

double dArrondn(double x, std::int32_t n) {
    const double echelle = std::pow(10.0, n);
    return dArrondi(x * echelle) / echelle;
}

std::int32_t DateToInt(std::u16string_view date, bool) {
    if (date.size() != 10) return 0;
    std::int32_t annee, mois, jour;
    if (date[2] == u'/' && date[5] == u'/') {
        jour = Chiffres(date, 0, 2), mois = Chiffres(date, 3, 2), annee = Chiffres(date, 6, 4);
    } else if (date[4] == u'-' && date[7] == u'-') {
        annee = Chiffres(date, 0, 4), mois = Chiffres(date, 5, 2), jour = Chiffres(date, 8, 2);
    } else {
        return 0;
    }
    if (annee < 0 || !bIsEntre(mois, 1, 12) || !bIsEntre(jour, 1, 31)) return 0;
    return annee * 10000 + mois * 100 + jour;
}

std::u16string IntToStr(std::int32_t n) { return Elargit(std::to_string(n)); }

std::u16string FloatToStr(double x) {
    char tampon[400];
    const auto fin = std::to_chars(tampon, tampon + sizeof tampon, x, std::chars_format::fixed).ptr;
    return Elargit({tampon, fin});
}

std::u16string EspacesNiveau(std::int32_t niveau) {
    return std::u16string(2 * static_cast<std::size_t>(nPositif(niveau)), u' ');
}

namespace kv {

namespace {

void AjouteUtf8(std::string& texte, char32_t c) {
    const auto suite = [&](int decalage) { texte += static_cast<char>(0x80 | ((c >> decalage) & 0x3F)); };
    if (c < 0x80) {
        texte += static_cast<char>(c);
    } else if (c < 0x800) {
        texte += static_cast<char>(0xC0 | (c >> 6)), suite(0);
    } else if (c < 0x10000) {
        texte += static_cast<char>(0xE0 | (c >> 12)), suite(6), suite(0);
    } else {
        texte += static_cast<char>(0xF0 | (c >> 18)), suite(12), suite(6), suite(0);
    }
}

constexpr char32_t cInvalide = 0xFFFD;

}  // namespace

std::string VersUtf8(std::u16string_view texte) {
    std::string utf8;
    for (std::size_t i = 0; i < texte.size(); ++i) {
        char32_t c = texte[i];
        const bool haut = c >= 0xD800 && c < 0xDC00;
        if (haut && i + 1 < texte.size() && texte[i + 1] >= 0xDC00 && texte[i + 1] < 0xE000)
            c = 0x10000 + ((c - 0xD800) << 10) + (texte[++i] - 0xDC00u);
        else if (c >= 0xD800 && c < 0xE000)
            c = cInvalide;
        AjouteUtf8(utf8, c);
    }
    return utf8;
}

std::u16string VersUtf16(std::string_view texte) {
    // How long a character is, by its first byte; 0 for a byte that can't begin one.
    const auto longueur = [](unsigned char tete) -> std::size_t {
        return tete < 0x80 ? 1 : tete < 0xC2 ? 0 : tete < 0xE0 ? 2 : tete < 0xF0 ? 3 : tete < 0xF5 ? 4 : 0;
    };
    constexpr char32_t minimum[] = {0, 0, 0x80, 0x800, 0x10000};  // below it the character is written too long
    std::u16string utf16;
    for (std::size_t i = 0; i < texte.size();) {
        const auto tete = static_cast<unsigned char>(texte[i++]);
        const std::size_t n = longueur(tete);
        char32_t c = n == 0 ? cInvalide : n == 1 ? tete : static_cast<char32_t>(tete & (0x7F >> n));
        std::size_t lus = 1;
        for (; lus < n && i < texte.size() && (texte[i] & 0xC0) == 0x80; ++lus) c = (c << 6) | (texte[i++] & 0x3F);
        if (lus < n || (n > 0 && c < minimum[n]) || (c >= 0xD800 && c < 0xE000) || c > 0x10FFFF) c = cInvalide;
        if (c >= 0x10000) {
            utf16 += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
            c = 0xDC00 + ((c - 0x10000) & 0x3FF);
        }
        utf16 += static_cast<char16_t>(c);
    }
    return utf16;
}

}  // namespace kv
