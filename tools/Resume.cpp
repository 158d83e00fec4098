#include <iomanip>
#include <vector>

#include "support/KVTarvel.h"
#include "tools/Resultat.h"

// The summary: what a person wants to know of a computed return, in sections.

namespace outil {

namespace {

class Resume {
  public:
    Resume(std::ostream& sortie, const CDataCalcul& data) : m_sortie(sortie), S(data.Sortie), m_data(data) {}

    void Ecrit() {
        Foyer();
        Revenus();
        Impot();
    }

  private:
    void Titre(const char* titre) { m_sortie << '\n' << titre << '\n'; }

    void Ligne(const std::string& libelle, const std::string& valeur, const std::string& remarque = "") {
        m_sortie << "  " << std::left << std::setw(44) << libelle << std::right << std::setw(12) << valeur;
        if (!remarque.empty()) m_sortie << "  " << remarque;
        m_sortie << '\n';
    }

    // An amount, left out when it is 0.
    void Montant(const char* libelle, CaseSortie sortie) {
        if (S[sortie] != 0) Ligne(libelle, std::to_string(S[sortie]));
    }

    // An amount by person: the first declarant, the second, the dependants.
    void ParPersonne(const char* libelle, CaseSortie sortie) {
        if (S[sortie] == 0) return;
        std::string detail;
        for (const auto& colonne : m_data.Colonne)
            detail += (detail.empty() ? "(" : " / ") + std::to_string(colonne[sortie]);
        Ligne(libelle, std::to_string(S[sortie]), detail + ")");
    }

    static std::string Decimal(double x) { return kv::VersUtf8(FloatToStr(x)); }

    void Foyer() {
        Titre("Household");
        Ligne("parts", Decimal(S["F_NB_PARTS_ALL"] / 100.0));
        Montant("dependants", "F_NB_CHARGE");
        Montant("children in alternating residence", "F_NB_ENFANTS_ALTERNE");
    }

    void Revenus() {
        Titre("Income (first declarant / second declarant / dependants)");
        ParPersonne("net salaries", "RN_SAL");
        ParPersonne("net pensions", "RN_PEN");
        Montant("annuities", "RD_RENTES");
        ParPersonne("share gains taxed as salaries", "RD_GAINS");
        Montant("gross income", "TOT_R_BRUT");
        Montant("deductible charges", "CHARGES");
        Montant("allowances", "ABAT");
        Ligne("net income", std::to_string(S["TOT_R_NET"]));
        Ligne("taxable income", std::to_string(S["TOT_R_IMPOS"]));
    }

    void Impot() {
        Titre("Tax");
        Ligne("scale, all parts", std::to_string(S["I_IMP_NORM"]));
        if (S["I_IMP_SIMP"] != 0) {
            Montant("scale, parts without dependants", "I_IMP_SIMP");
            Montant("cap on the family quotient", "I_PLAF_FAM");
            Montant("complementary reduction", "I_NEUT_PLAF_FAM");
            Montant("adjustment for widowed parents", "I_AJUST_PLAF_FAM");
        }
        Montant("tax on exceptional income", "I_QUOT");
        Ligne("gross tax", std::to_string(S["TOT_IMPOT"]));
        Ligne("marginal rate", Decimal(S["TAUX_MARGINAL_3"] / 100.0) + "%");
    }

    std::ostream& m_sortie;
    const kv::ZoneSortie& S;
    const CDataCalcul& m_data;
};

}  // namespace

void EcritResume(std::ostream& sortie, const CDataCalcul& data) { Resume(sortie, data).Ecrit(); }

}  // namespace outil
