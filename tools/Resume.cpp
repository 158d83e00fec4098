#include <algorithm>
#include <iomanip>
#include <string_view>
#include <utility>

#include "Calcul/pCalculN/ReductionsTable.h"
#include "interface/Avertissements.h"
#include "interface/Sens.h"
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
        for (const std::string& message : kv::Avertissements(m_data.Entree)) m_sortie << "warning: " << message << '\n';
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
        // Bytes that go on with a character take no place.
        const auto largeur = std::count_if(libelle.begin(), libelle.end(), [](char c) { return (c & 0xC0) != 0x80; });
        m_sortie << "  " << libelle
                 << std::string(static_cast<std::size_t>(std::max<std::ptrdiff_t>(64 - largeur, 1)), ' ')
                 << std::setw(12) << valeur;
        if (!remarque.empty()) m_sortie << "  " << remarque;
        m_sortie << '\n';
    }

    static std::string Decimal(double x) { return kv::VersUtf8(FloatToStr(x)); }
    std::string Detail(CaseSortie sortie) const { return kv::VersUtf8(m_data.Detail[sortie]); }
    // The label, without what the title of its section says.
    static std::string_view Libelle(CaseSortie sortie) {
        std::string_view libelle = kv::sens::De(sortie).libelle;
        for (const std::string_view titre : {"Réduction : ", "Crédit : "})
            if (libelle.starts_with(titre)) libelle.remove_prefix(titre.size());
        return libelle;
    }

    // An amount with the label of its box; left out when it is 0.
    void Montant(CaseSortie sortie, const std::string& remarque = "") {
        if (S[sortie] != 0) Toujours(sortie, remarque);
    }
    void Toujours(CaseSortie sortie, const std::string& remarque = "") {
        Ligne(Libelle(sortie), std::to_string(S[sortie]), remarque);
    }

    // A rate and its base: "25% x 800".
    static std::string TauxDeBase(std::int32_t centiemes, std::int32_t base) {
        return Decimal(centiemes / 100.0) + "% x " + std::to_string(base);
    }

    // An amount by person: the first declarant, the second, the dependants.
    void ParPersonne(CaseSortie sortie) {
        std::string detail;
        for (const auto& colonne : m_data.Colonne)
            detail += (detail.empty() ? "(" : " / ") + std::to_string(colonne[sortie]);
        Montant(sortie, detail + ")");
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
        if (S["TOT_N_REST"] != 0) Ligne("too small to be refunded", std::to_string(S["TOT_N_REST"]));
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
        Ligne("library", KV_VERSION);
        Ligne("law of the year", std::to_string(kv::anneeDesRevenus), remarque);
    }

    void Foyer() {
        Section("Household");
        Ligne("parts", Decimal(S["F_NB_PARTS_ALL"] / 100.0));
        Montant("F_NB_CHARGE");
        Montant("F_NB_ENFANTS_ALTERNE");
    }

    void Revenus() {
        Section("Income (first declarant / second declarant / dependants)");
        ParPersonne("RN_SAL");
        ParPersonne("RN_PEN");
        Montant("RD_RENTES");
        ParPersonne("RR_BA");
        ParPersonne("RR_BIC_P");
        ParPersonne("RR_BIC_NP");
        ParPersonne("RR_BIC_NP_LM");
        ParPersonne("RR_BNC_P");
        ParPersonne("RR_BNC_NP");
        Montant("RD_MOB");
        Montant("RD_FON");
        ParPersonne("RD_GAINS");
        Montant("RD_PV_BAREME");
        Montant("RD_AUTRE");
        Montant("RQ_REV_EXCEP");
        Toujours("TOT_R_BRUT");
        Montant("CHARGES");
        Montant("ABAT");
        Toujours("TOT_R_NET");
        Toujours("TOT_R_IMPOS");
        Montant("TOT_R_MONDIAL");
        Montant("REVENU_REF");
    }

    void Impot() {
        Section("Tax");
        Toujours("I_IMP_NORM");
        if (S["I_IMP_SIMP"] != 0) {
            Montant("I_IMP_SIMP");
            Montant("I_PLAF_FAM");
            Montant("I_NEUT_PLAF_FAM");
            Montant("I_AJUST_PLAF_FAM");
        }
        Montant("I_QUOT");
        Toujours("TOT_IMPOT");
        Ligne("marginal rate", Decimal(S["TAUX_MARGINAL_3"] / 100.0) + "%");
        if (S["IMPOT_CALC"] != 0) Montant("IMPOT_TX_EFFECTIF", "(" + Detail("IMPOT_CALC") + ")");
        if (S["IMPOT_TM_RETENU"] != 0)
            Montant("IMPOT_TM", "at " + Decimal(m_data.Colonne[2]["IMPOT_TM_RETENU"] / 100.0) + "%");
        Montant("U_DECOTE_DOM_GMR");
        Montant("U_DECOTE_DOM_GUY");
        Montant("U_DECOTE");
        Montant("U_CLASSES_MOYENNES");
        Montant("REDUCTIONS");
        Montant("TOT_IMP_RED");
        Montant("CORRECTIONS");
        Montant("CONTRIBUTIONS");
        Montant("NICHE_FISCALE");
        Montant("D_CREDIT");
        if (S["TAUX_IMPOS_MOY"] != 0) Ligne(Libelle("TAUX_IMPOS_MOY"), Decimal(S["TAUX_IMPOS_MOY"] / 100.0) + "%");
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
            Toujours(sortie, remarque);
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
            const CaseSortie credit = CaseSortie::Numero(j);
            const std::string_view nom = kv::sortie::noms[j];
            if (!nom.starts_with("D_") || credit == "D_CREDIT" || credit == "D_CREDIT_TOT") continue;
            const std::int32_t retenu = m_data.Colonne[1][credit], taux = m_data.Colonne[2][credit];
            const std::string texte = Detail(credit);
            Montant(credit, !texte.empty() ? texte : retenu != 0 && taux != 0 ? TauxDeBase(taux, retenu) : "");
        }
    }

    void Prelevements() {
        Section("Social levies");
        static constexpr std::string_view parts[3] = {"solidarité et assimilés", "CSG", "CRDS"};
        const bool deuxTaux = m_data.Colonne[1]["S_TAUX"] == 0;  // deferred gains bear another one
        for (std::size_t k = 0; k < 3; ++k) {
            const auto& colonne = m_data.Colonne[k];
            if (colonne["S_CONTR_SOC"] == 0) continue;
            const std::string base = std::to_string(colonne["S_BASES"]);
            Ligne(std::string(Libelle("S_CONTR_SOC")) + ", " + std::string(parts[k]),
                  std::to_string(colonne["S_CONTR_SOC"]),
                  k == 1 && deuxTaux ? "two rates x " + base : TauxDeBase(colonne["S_TAUX"], colonne["S_BASES"]));
        }
        for (int j = 0; j < kv::nSorties; ++j) {
            const CaseSortie ligne = CaseSortie::Numero(j);
            const std::string_view nom = kv::sortie::noms[j];
            if (nom.starts_with("S_E_") || nom.starts_with("S_S_") || ligne == "S_CRDS_SAL" || ligne == "S_CSG_SAL")
                if (ligne != "S_E_CSG_4_NP1") Montant(ligne, Detail(ligne));
        }
        Montant("S_A_PAYER");
        Montant("S_DEDUC");
    }

    void AnneeSuivante() {
        Section("For next year's return");
        Montant("NP1_GLOBAL");
        Montant("NP1_BA");
        Montant("NP1_BICNP");
        Montant("NP1_BICNP_LM");
        Montant("NP1_BNCNP");
        Montant("NP1_FON");
        Montant("NP1_REV_MOB");
        Montant("NP1_DONS_N");
        Montant("NP1_DONS_Nm1");
        Montant("NP1_PLAF_PERP_V");
        Montant("NP1_PLAF_PERP_C");
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
