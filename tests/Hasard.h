#pragma once

#include <random>
#include <vector>

#include "tests/Retour.h"

// Random returns for properties that every return has, the same ones for the same seed: arbitrary values anywhere, or
// plausible households and amounts.

namespace test {

/// A value that a host may give: mostly nothing, ticks and amounts, but also unset, negative and absurd ones.
inline std::int32_t ValeurAuHasard(std::mt19937& hasard) {
    switch (hasard() % 16) {
        case 0:
            return nNonSaisi;
        case 1:
            return static_cast<std::int32_t>(hasard());
        case 2:
            return -static_cast<std::int32_t>(hasard() % 50'000);
        case 3:
        case 4:
            return 1;
        case 5:
        case 6:
        case 7:
            return static_cast<std::int32_t>(hasard() % 100'000);
        default:
            return 0;
    }
}

/// Fills everything that a host may fill: entries, companions, exceptional income.
inline void RemplitAuHasard(CDataCalcul& data, std::mt19937& hasard) {
    const auto remplit = [&](auto& zone) {
        for (std::int32_t& v : zone.valeurs) v = ValeurAuHasard(hasard);
    };
    remplit(data.Entree);
    remplit(data.TI), remplit(data.TIX), remplit(data.TIY), remplit(data.TK), remplit(data.TKZ);
    for (int k = 0; k < 30; ++k)
        data.AjouteQuotient(static_cast<int>(hasard() % kv::nQuotients), static_cast<std::int32_t>(hasard() % 5),
                            ValeurAuHasard(hasard));
}

class Hasard {
  public:
    explicit Hasard(std::uint32_t graine) : m_moteur(graine) {}

    std::int32_t Entre(std::int32_t min, std::int32_t max) {
        return min + static_cast<std::int32_t>(m_moteur() % static_cast<std::uint32_t>(max - min + 1));
    }
    bool UneFoisSur(std::int32_t n) { return Entre(1, n) == 1; }
    template <class Liste>
    auto Parmi(const Liste& liste) {
        return std::data(liste)[Entre(0, static_cast<std::int32_t>(std::size(liste)) - 1)];
    }
    /// Nothing to fortunes, the small amounts as often as the large ones.
    std::int32_t Montant() { return Entre(0, Parmi(std::initializer_list<std::int32_t>{600, 15000, 60000, 250000})); }

    /// A law with other figures, from nothing to twice those of the year.
    kv::Loi Loi() {
        kv::Loi loi = kv::loi2017;
        for (std::int32_t& figure : loi.valeurs) figure = nProrata(figure, Entre(0, 200), 100);
        return loi;
    }
    /// A return with this many boxes of income and charges, foreign and exceptional income.
    Retour Declaration(int boites = 20) {
        Retour retour;
        CDataCalcul& data = retour.Data();
        Menage(data);
        for (int i = 0; i < boites; ++i) {
            const CaseEntree box = Parmi(Boites());
            data.Entree[box] = UneFoisSur(20) ? nNonSaisi : EstDebut(box) ? Entre(2010, 2018) : Montant();
        }
        for (int i = Entre(0, 4); i > 0; --i) {
            Compagnon(data.TI) = UneFoisSur(10) ? nNonSaisi : Montant();
            Compagnon(data.TIX) = Montant() / 4;
            Compagnon(data.TIY) = Montant() / 4;
        }
        for (int i = Entre(0, 2); i > 0; --i) {
            Compagnon(data.TK) = UneFoisSur(10) ? nNonSaisi : Montant();
            Compagnon(data.TKZ) = Montant() / 4;
        }
        for (int i = Entre(0, 3); i > 0; --i) data.AjouteQuotient(Entre(0, kv::nQuotients - 1), Entre(0, 5), Montant());
        return retour;
    }

    /// The boxes of income and charges, but for the ceilings that an earlier launch left (6QW).
    static const std::vector<CaseEntree>& Boites() {
        static const std::vector<CaseEntree> boites = [] {
            std::vector<CaseEntree> toutes;
            for (int i = 0; i < kv::nEntrees; ++i)
                if (const char famille = kv::entree::lignes[i].nom[0]; '1' <= famille && famille <= '6')
                    toutes.push_back(CaseEntree::Numero(i));
            std::erase(toutes, CaseEntree("6QW"));
            return toutes;
        }();
        return boites;
    }

  private:
    static bool EstDebut(CaseEntree box) { return box == "5XC" || box == "5YC" || box == "5ZC"; }

    template <class Zone>
    std::int32_t& Compagnon(Zone& zone) {
        return zone.valeurs[static_cast<std::size_t>(Entre(0, Zone::nombre - 1))];
    }

    void Menage(CDataCalcul& data) {
        data.Entree[Parmi(std::initializer_list<CaseEntree>{"M", "M", "O", "C", "D", "V"})] = 1;
        data.Entree["Fm"] = Entre(0, 3);
        data.Entree["Hm"] = Entre(0, 2) / 2;
        for (const CaseEntree box : std::initializer_list<CaseEntree>{"T", "P", "Nm", "REM", "RED", "GUY", "GMR"})
            data.Entree[box] = UneFoisSur(8);
        data.Entree["8TM"] = UneFoisSur(8) ? Montant() : 0;
        data.Entree["AAF1"] = UneFoisSur(3) ? 19400615 : 0;
    }

    std::mt19937 m_moteur;
};

}  // namespace test

using test::Hasard;
