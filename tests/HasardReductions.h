#pragma once

#include <string_view>

#include "tests/Hasard.h"

// Random returns with reductions.

namespace test {

class HasardReductions : public Hasard {
  public:
    using Hasard::Hasard;

    /// An amount of any size up to max, small ones as likely as large ones.
    std::int32_t Montant(std::int32_t max) { return Entre(0, max >> Entre(0, 11)); }

    /// A household with an income, or without any.
    Retour Foyer(bool avecRevenu = true) {
        Retour retour{{"M", Entre(0, 1)}, {"Fm", Entre(0, 2)}};
        if (avecRevenu) retour.Avec({{"1AJ", Montant(300000)}, {"4BA", Montant(900000)}});
        if (avecRevenu && UneFoisSur(4)) retour.Avec({{"GMR", 1}, {"5XT", Montant(50000)}});
        return retour;
    }
    /// Adds amounts to boxes of section 7, and of the overseas investments.
    void Depenses(Retour& retour, int nombre) {
        for (int i = 0; i < nombre; ++i) retour.Data().Entree[Parmi(Boites('7'))] = Montant(200000);
    }
    void OutreMer(Retour& retour, int nombre) {
        for (int i = 0; i < nombre; ++i) retour.Data().Entree[Parmi(Boites('H'))] = Montant(200000);
        retour.Avec({{"HQA", Entre(0, 1)}});
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
};

}  // namespace test
