#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Calcul/cCalcul/Cases.h"
#include "Calcul/pCalculN/Loi2017.h"

// The law as one value: loi["decote.plafond.couple"]. A name is checked when the code is compiled, as that of a box.

namespace kv {

inline constexpr std::size_t nParametres = std::size(lignesLoi);
inline constexpr IndexDesNoms<nParametres> indexLoi{[](std::size_t i) { return lignesLoi[i].nom; }};

/// A parameter of the law by name: its number, or -1 for "none" in a table that leaves one out.
struct Parametre {
    int numero = -1;

    constexpr Parametre() = default;
    consteval Parametre(const char* nom) : Parametre(De(nom)) {
        if (numero < 0) throw "no parameter has this name";
    }
    /// The parameter whose name is made of these parts; "none" when there is no such one.
    static constexpr Parametre De(const char* debut, const char* milieu = "", const char* fin = "") {
        return Numero(indexLoi.Cherche(Hache(fin, Hache(milieu, Hache(debut)))));
    }
    /// The same, where the parameter must exist.
    static constexpr Parametre Requis(const char* debut, const char* milieu, const char* fin = "") {
        const Parametre p = De(debut, milieu, fin);
        if (!p) throw "no parameter has this name";
        return p;
    }
    static constexpr Parametre Numero(int numero) {
        Parametre p;
        p.numero = numero;
        return p;
    }
    constexpr explicit operator bool() const { return numero >= 0; }
    friend constexpr bool operator==(Parametre, Parametre) = default;

    constexpr const LigneLoi& Ligne() const { return lignesLoi[static_cast<std::size_t>(numero)]; }
};

/// A parameter that has two figures, of the year and of the following one; one without them has the same figure twice.
struct ParametreAnnuel {
    Parametre annee, suivante;

    constexpr ParametreAnnuel() = default;
    consteval ParametreAnnuel(const char* nom)
        : annee(Parametre::De(nom, ".annee")), suivante(Parametre::De(nom, ".suivante")) {
        if (!annee && !suivante) annee = suivante = nom;
        if (!annee || !suivante) throw "no parameter has this name";
    }
    consteval ParametreAnnuel(Parametre a, Parametre s) : annee(a), suivante(s) {}
};

/// The figures of a law, each in the unit of its row: euros, hundredths of a percent, years, hundredths of a number.
///
/// A plain value: an amendment is a copy with other figures,
///
///     kv::Loi loi = kv::loi2017;
///     loi["decote.plafond.couple"] = 2000;
struct Loi {
    std::array<std::int32_t, nParametres> valeurs;

    constexpr std::int32_t operator[](Parametre p) const { return valeurs[static_cast<std::size_t>(p.numero)]; }
    constexpr std::int32_t& operator[](Parametre p) { return valeurs[static_cast<std::size_t>(p.numero)]; }
    /// A number that is not whole: 1.5.
    constexpr double Nombre(Parametre p) const { return (*this)[p] / 100.0; }
    /// What is left to 100 %.
    constexpr std::int32_t Complement(Parametre p) const { return 10000 - (*this)[p]; }

    bool operator==(const Loi&) const = default;
};

inline constexpr Loi loi2017 = [] {
    Loi loi{};
    for (std::size_t i = 0; i < nParametres; ++i) loi.valeurs[i] = lignesLoi[i].valeur;
    return loi;
}();

/// The law with the indexed amounts raised by a rate in percent; none for -1.0 and 0, which raise nothing.
std::optional<Loi> Indexee(const Loi& loi, double taux);

/// A law as a launch applies it, its indexed amounts raised. The law that it is made from lives at least as long.
class LoiAppliquee {
  public:
    LoiAppliquee(const Loi& loi, double taux) : m_indexee(Indexee(loi, taux)), m_loi(m_indexee ? *m_indexee : loi) {}
    LoiAppliquee(const LoiAppliquee&) = delete;
    LoiAppliquee& operator=(const LoiAppliquee&) = delete;
    operator const Loi&() const { return m_loi; }

  private:
    const std::optional<Loi> m_indexee;
    const Loi& m_loi;
};

// ---- Reforms: parameters by name, as a reader writes them.

/// The parameter with this name; "none" when there is none.
Parametre ChercheParametre(std::string_view nom);
/// A figure as a reader writes it: 1939 euros, 12.8 percent, 65 years, 1.5 times.
double Valeur(const Loi& loi, Parametre p);
/// Sets a parameter to a figure as a reader writes it; "" when it was set, else what the parameter takes.
///
/// Euros: whole, 0 to 1 000 000 000. Percent: 0 to 100, at most two decimals. Years: whole, 0 to 150. Numbers: 0 to
/// 1000, at most two decimals.
std::string Fixe(Loi& loi, Parametre p, double valeur);
/// Why a law can't be applied: thresholds of brackets that do not ascend. "" when it can.
std::string Defaut(const Loi& loi);
/// "euros", "percent", "years" or "count".
const char* NomUnite(Unite unite);
/// What a figure of a unit may be, as a reader writes it: from 0 to a maximum, with so many decimals.
struct Etendue {
    double maximum;
    int decimales;
};
Etendue EtendueDe(Unite unite);

}  // namespace kv
