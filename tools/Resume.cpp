#include <algorithm>
#include <iomanip>
#include <string_view>
#include <utility>

#include "Calcul/pCalculN/ReductionsTable.h"
#include "support/KVTarvel.h"
#include "tools/Resultat.h"

// The summary: what a person wants to know of a computed return, the net amount first, then how it was reached.

namespace outil {

namespace {

// The box of next year's return that takes what the tax could not bear of a reduction; none for a line without one.
CaseSortie ReportDe(CaseSortie reduction) {
    CaseSortie report;
    kv::reductions::TousLesGroupes([&](const auto& groupe) {
        for (const auto& ligne : groupe) {
            if constexpr (requires { ligne.ligne.sortie; }) {
                if (ligne.ligne.sortie == reduction) report = ligne.report;
            } else if (ligne.sortie == reduction) {
                if constexpr (requires { ligne.report; }) report = ligne.report;
                if constexpr (requires { ligne.suite; }) report = ligne.suite;
            }
        }
    });
    return report;
}

class Resume {
  public:
    Resume(std::ostream& sortie, const CDataCalcul& data, const LoiNommee& loi)
        : m_sortie(sortie), S(data.Sortie), m_data(data), m_loi(loi) {}

    void Ecrit() {
        Net();
        Foyer();
        Revenus();
        Impot();
        Reductions();
        Credits();
        Prelevements();
        AnneeSuivante();
    }

  private:
    // ---- Layout. A section's title is written with its first line, so that an empty section leaves nothing.

    void Section(const char* titre) { m_titre = titre; }

    void Ligne(std::string_view libelle, const std::string& valeur, const std::string& remarque = "") {
        if (m_titre) m_sortie << '\n' << std::exchange(m_titre, nullptr) << '\n';
        m_sortie << "  " << std::left << std::setw(46) << libelle << std::right << std::setw(12) << valeur;
        if (!remarque.empty()) m_sortie << "  " << remarque;
        m_sortie << '\n';
    }

    static std::string Decimal(double x) { return kv::VersUtf8(FloatToStr(x)); }
    std::string Detail(CaseSortie sortie) const { return kv::VersUtf8(m_data.Detail[sortie]); }

    // An amount, left out when it is 0.
    void Montant(std::string_view libelle, CaseSortie sortie, const std::string& remarque = "") {
        if (S[sortie] != 0) Ligne(libelle, std::to_string(S[sortie]), remarque);
    }

    // An amount by person: the first declarant, the second, the dependants.
    void ParPersonne(std::string_view libelle, CaseSortie sortie) {
        std::string detail;
        for (const auto& colonne : m_data.Colonne)
            detail += (detail.empty() ? "(" : " / ") + std::to_string(colonne[sortie]);
        Montant(libelle, sortie, detail + ")");
    }

    // ---- Sections.

    void Net() {
        Section("Result");
        if (S["S_NET_RESTITUE"] != 0)
            Ligne("to be refunded", std::to_string(S["S_NET_RESTITUE"]));
        else
            Ligne("to pay", std::to_string(S["S_NET_A_PAYER"]));
        if (S["TOT_N_RECOUVRE"] + S["S_NON_RECOUVRE"] != 0)
            Ligne("too small to be collected", std::to_string(S["TOT_N_RECOUVRE"] + S["S_NON_RECOUVRE"]));
        Montant("too small to be refunded", "TOT_N_REST");
        Loi();
        if (S["PFU"] != 0) Ligne("option applied", "flat tax");
        if (S["BAR"] != 0) Ligne("option applied", "scale");
        const auto taux = [&](std::string_view libelle, CaseSortie sortie) {
            Ligne(libelle, Decimal(S[sortie] / 10.0) + "%");
        };
        if (S["NON_TAUX_PAS"] != 0) return Ligne("withholding rate", "none", "the household changed during the year");
        taux("withholding rate of the household", "TAUX_PAS");
        if (S["TAUX_PAS_IND1"] + S["TAUX_PAS_IND2"] != 0) {
            taux("  first declarant", "TAUX_PAS_IND1");
            taux("  second declarant", "TAUX_PAS_IND2");
        }
    }

    // The law that the figures follow.
    void Loi() {
        const std::size_t changements = m_loi.Changements().size();
        std::string remarque;
        if (changements > 0)
            remarque =
                std::to_string(changements) + (changements == 1 ? " figure" : " figures") + " changed by " + m_loi.nom;
        Ligne("law of the year", std::to_string(kv::anneeDesRevenus), remarque);
    }

    void Foyer() {
        Section("Household");
        Ligne("parts", Decimal(S["F_NB_PARTS_ALL"] / 100.0));
        Montant("dependants", "F_NB_CHARGE");
        Montant("children in alternating residence", "F_NB_ENFANTS_ALTERNE");
    }

    void Revenus() {
        Section("Income (first declarant / second declarant / dependants)");
        ParPersonne("net salaries", "RN_SAL");
        ParPersonne("net pensions", "RN_PEN");
        Montant("annuities", "RD_RENTES");
        ParPersonne("farm", "RR_BA");
        ParPersonne("commercial, professional", "RR_BIC_P");
        ParPersonne("commercial, non-professional", "RR_BIC_NP");
        ParPersonne("furnished letting", "RR_BIC_NP_LM");
        ParPersonne("non-commercial, professional", "RR_BNC_P");
        ParPersonne("non-commercial, non-professional", "RR_BNC_NP");
        Montant("investment income", "RD_MOB");
        Montant("property income", "RD_FON");
        ParPersonne("share gains taxed as salaries", "RD_GAINS");
        Montant("gains taxed by the scale", "RD_PV_BAREME");
        Montant("other income", "RD_AUTRE");
        Montant("exceptional income, taxed by the quotient", "RQ_REV_EXCEP");
        Ligne("gross income", std::to_string(S["TOT_R_BRUT"]));
        Montant("deductible charges", "CHARGES");
        Montant("allowances", "ABAT");
        Ligne("net income", std::to_string(S["TOT_R_NET"]));
        Ligne("taxable income", std::to_string(S["TOT_R_IMPOS"]));
        Montant("worldwide income", "TOT_R_MONDIAL");
        Montant("reference income", "REVENU_REF");
    }

    void Impot() {
        Section("Tax");
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
        if (S["IMPOT_CALC"] != 0)
            Montant("tax at the effective rate", "IMPOT_TX_EFFECTIF", "(" + Detail("IMPOT_CALC") + ")");
        if (S["IMPOT_TM_RETENU"] != 0)
            Montant("tax of a non-resident", "IMPOT_TM",
                    "at " + Decimal(m_data.Colonne[2]["IMPOT_TM_RETENU"] / 100.0) + "%");
        Montant("overseas abatement", "U_DECOTE_DOM_GMR");
        Montant("overseas abatement", "U_DECOTE_DOM_GUY");
        Montant("low-tax relief", "U_DECOTE");
        Montant("reduction for modest incomes", "U_CLASSES_MOYENNES");
        Montant("reductions, modest incomes included", "REDUCTIONS");
        Montant("tax after reductions", "TOT_IMP_RED");
        Montant("taxes at proportional rates", "CORRECTIONS");
        Montant("contribution on high incomes", "CONTRIBUTIONS");
        Montant("advantages above the global cap", "NICHE_FISCALE");
        Montant("credits", "D_CREDIT");
        Montant("average rate, hundredths of a percent", "TAUX_IMPOS_MOY");
    }

    void Reductions() {
        Section("Reductions, as imputed");
        for (int j = 0; j < kv::nSorties; ++j) {
            const CaseSortie sortie = CaseSortie::Numero(j);
            const std::string_view nom = kv::sortie::noms[j];
            const bool ligne = nom.starts_with("U_") && !nom.starts_with("U_DECOTE") && !nom.starts_with("U_PR_") &&
                               sortie != "U_CLASSES_MOYENNES";
            if (!ligne || m_data.Colonne[0][sortie] == 0) continue;
            const CaseSortie report = ReportDe(sortie);
            std::string remarque = Detail(sortie);
            if (report && S[report] != 0)
                remarque += ", carried: " + std::to_string(S[report]) + " in " + kv::sortie::noms[report.numero];
            Ligne(nom.substr(2), std::to_string(S[sortie]), remarque);
        }
        std::int32_t rendus = 0;
        kv::reductions::GroupesPartages([&](const auto& groupe) {
            for (const auto& ligne : groupe)
                if constexpr (requires { ligne.excedent; }) rendus += S[ligne.excedent];
        });
        if (rendus != 0) Ligne("overseas shares given back", std::to_string(-rendus));
    }

    void Credits() {
        Section("Credits");
        for (int j = 0; j < kv::nSorties; ++j) {
            const std::string_view nom = kv::sortie::noms[j];
            if (nom.starts_with("D_") && nom != "D_CREDIT" && nom != "D_CREDIT_TOT")
                Montant(nom.substr(2), CaseSortie::Numero(j), Detail(CaseSortie::Numero(j)));
        }
    }

    void Prelevements() {
        Section("Social levies");
        if (S["S_CONTR_SOC"] != 0)
            Montant("property and capital income", "S_CONTR_SOC", "on " + std::to_string(m_data.Colonne[0]["S_BASES"]));
        Montant("income without levy at source", "S_CSG_CRDS_ETR");
        Montant("share gains", "S_CSG_CRDS_SAL");
        Montant("employee contribution on gains", "S_CONTR_SAL");
        Montant("carried interest", "S_CONTR_CARRIED");
        Montant("to pay", "S_A_PAYER");
        Montant("deductible next year", "S_DEDUC");
    }

    void AnneeSuivante() {
        Section("For next year's return");
        Montant("global deficit", "NP1_GLOBAL");
        Montant("farm deficit", "NP1_BA");
        Montant("commercial deficit, non-professional", "NP1_BICNP");
        Montant("furnished-letting deficit", "NP1_BICNP_LM");
        Montant("non-commercial deficit, non-professional", "NP1_BNCNP");
        Montant("property deficit", "NP1_FON");
        Montant("investment deficit", "NP1_REV_MOB");
        Montant("donations of this year", "NP1_DONS_N");
        Montant("donations of last year", "NP1_DONS_Nm1");
        Montant("retirement-savings ceiling, first declarant", "NP1_PLAF_PERP_V");
        Montant("retirement-savings ceiling, second declarant", "NP1_PLAF_PERP_C");
    }

    std::ostream& m_sortie;
    const kv::ZoneSortie& S;
    const CDataCalcul& m_data;
    const LoiNommee& m_loi;
    const char* m_titre = nullptr;
};

}  // namespace

void EcritResume(std::ostream& sortie, const CDataCalcul& data, const LoiNommee& loi) {
    Resume(sortie, data, loi).Ecrit();
}

}  // namespace outil
