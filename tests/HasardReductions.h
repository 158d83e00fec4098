#pragma once

#include <random>
#include <string_view>
#include <vector>

#include "tests/Retour.h"

// Random returns with reductions, the same on every machine: no distribution of the standard library.

namespace test {

class HasardReductions {
  public:
    explicit HasardReductions(std::uint32_t graine) : m_tirage(graine) {}

    std::uint32_t Moins(std::size_t n) { return static_cast<std::uint32_t>(m_tirage() % n); }
    /// An amount of any size up to max, small ones as likely as large ones.
    std::int32_t Montant(std::int32_t max) {
        const auto borne = static_cast<std::uint32_t>(max) >> Moins(12);
        return static_cast<std::int32_t>(Moins(borne + 1));
    }
    template <class Liste>
    auto Un(const Liste& liste) {
        return liste[Moins(std::size(liste))];
    }

    /// A household with an income, or without any.
    Retour Foyer(bool avecRevenu = true) {
        Retour retour{{"M", static_cast<std::int32_t>(Moins(2))}, {"Fm", static_cast<std::int32_t>(Moins(3))}};
        if (avecRevenu) retour.Avec({{"1AJ", Montant(300000)}, {"4BA", Montant(900000)}});
        if (avecRevenu && Moins(4) == 0) retour.Avec({{"GMR", 1}, {"5XT", Montant(50000)}});
        return retour;
    }
    /// Adds amounts to boxes of section 7, and of the overseas investments.
    void Depenses(Retour& retour, int nombre) {
        for (int i = 0; i < nombre; ++i) retour.Data().Entree[Un(Boites('7'))] = Montant(200000);
    }
    void OutreMer(Retour& retour, int nombre) {
        for (int i = 0; i < nombre; ++i) retour.Data().Entree[Un(Boites('H'))] = Montant(200000);
        retour.Avec({{"HQA", static_cast<std::int32_t>(Moins(2))}});
    }

  private:
    // The boxes of three characters that begin so: the amounts of a section, but for the option HQA.
    static const std::vector<CaseEntree>& Boites(char section) {
        static const auto cherche = [](char s) {
            std::vector<CaseEntree> boites;
            for (int i = 0; i < kv::nEntrees; ++i) {
                const std::string_view nom = kv::entree::lignes[i].nom;
                if (nom.size() == 3 && nom[0] == s && nom != "HQA") boites.push_back(CaseEntree::Numero(i));
            }
            return boites;
        };
        static const std::vector<CaseEntree> depenses = cherche('7'), outreMer = cherche('H');
        return section == '7' ? depenses : outreMer;
    }

    std::mt19937 m_tirage;
};

}  // namespace test
