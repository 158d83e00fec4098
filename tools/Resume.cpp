#include <algorithm>
#include <iomanip>
#include <string>
#include <string_view>
#include <utility>

#include "Resultat.h"

// The summary: what a person wants to know of a computed return, the net amount first, then how it was reached.

namespace outil {

namespace {

class Resume {
  public:
    Resume(std::ostream& sortie, const kv::Return& retour, const LoiNommee& loi)
        : m_sortie(sortie), S(retour), m_loi(loi) {}

    void Ecrit() {
        for (const std::string& message : S.warnings()) m_sortie << "warning: " << message << '\n';
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

    using Nom = const std::string&;

    static int32_t Numero(Nom sortie) { return kv::find(KV_OUTPUT, sortie).value(); }
    // Calls f with each output of the catalogue.
    template <class Fonction>
    static void PourChaqueSortie(Fonction f) {
        for (int32_t j = 0, n = kv::count(KV_OUTPUT); j < n; ++j) {
            const kv_box box = kv::describe(KV_OUTPUT, j);
            f(j, std::string(box.name), box);
        }
    }
    int32_t Colonne(Nom sortie, int32_t colonne) const { return S.output(Numero(sortie), colonne); }
    // The label, without what the title of its section says.
    static std::string_view Libelle(Nom sortie) {
        std::string_view libelle = kv::describe(KV_OUTPUT, Numero(sortie)).label;
        for (const std::string_view titre : {"Réduction : ", "Crédit : "})
            if (libelle.starts_with(titre)) libelle.remove_prefix(titre.size());
        return libelle;
    }

    // An amount with the label of its box; left out when it is 0.
    void Montant(Nom sortie, const std::string& remarque = "") {
        if (S[sortie] != 0) Toujours(sortie, remarque);
    }
    void Toujours(Nom sortie, const std::string& remarque = "") {
        Ligne(Libelle(sortie), std::to_string(S[sortie]), remarque);
    }

    // A rate and its base: "25% x 800".
    static std::string TauxDeBase(int32_t centiemes, int32_t base) {
        return Decimal(centiemes / 100.0) + "% x " + std::to_string(base);
    }

    // An amount by person: the first declarant, the second, the dependants.
    void ParPersonne(Nom sortie) {
        std::string detail;
        for (int32_t colonne = 1; colonne <= 3; ++colonne)
            detail += (detail.empty() ? "(" : " / ") + std::to_string(Colonne(sortie, colonne));
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
        if (const kv_options options = S.options(); options.compared != 0) {
            Ligne("  to pay with the flat tax", std::to_string(options.flat_tax));
            Ligne("  to pay with the scale", std::to_string(options.scale));
        }
        const auto taux = [&](std::string_view libelle, Nom sortie) {
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
        Ligne("library", kv_version());
        Ligne("law of the year", std::to_string(kv_year()), remarque);
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
        if (S["IMPOT_CALC"] != 0) Montant("IMPOT_TX_EFFECTIF", "(" + S.text("IMPOT_CALC") + ")");
        if (S["IMPOT_TM_RETENU"] != 0) Montant("IMPOT_TM", "at " + Decimal(S["IMPOT_TM_RETENU.c3"] / 100.0) + "%");
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
        PourChaqueSortie([&](int32_t j, const std::string& nom, const kv_box& box) {
            const bool ligne = nom.starts_with("U_") && !nom.starts_with("U_DECOTE") && !nom.starts_with("U_PR_") &&
                               nom != "U_CLASSES_MOYENNES";
            if (!ligne || S.output(j, 1) == 0) return;
            std::string remarque = S.text(j);
            if (box.carried >= 0 && S.output(box.carried) != 0)
                remarque += ", carried: " + std::to_string(S.output(box.carried)) + " in " +
                            kv::describe(KV_OUTPUT, box.carried).name;
            Toujours(nom, remarque);
        });
        int32_t rendus = 0;
        for (const kv_reduction& ligne : kv::reduction_lines())
            if (ligne.given_back != 0) rendus += S.output(ligne.output);
        if (rendus != 0) Ligne("overseas shares given back", std::to_string(-rendus));
    }

    void Credits() {
        Section("Credits");
        PourChaqueSortie([&](int32_t j, const std::string& nom, const kv_box&) {
            if (!nom.starts_with("D_") || nom == "D_CREDIT" || nom == "D_CREDIT_TOT") return;
            const int32_t retenu = S.output(j, 2), taux = S.output(j, 3);
            const std::string texte = S.text(j);
            Montant(nom, !texte.empty() ? texte : retenu != 0 && taux != 0 ? TauxDeBase(taux, retenu) : "");
        });
    }

    void Prelevements() {
        Section("Social levies");
        static constexpr std::string_view parts[3] = {"solidarité et assimilés", "CSG", "CRDS"};
        const bool deuxTaux = Colonne("S_TAUX", 2) == 0;  // deferred gains bear another one
        for (int32_t k = 1; k <= 3; ++k) {
            const int32_t montant = Colonne("S_CONTR_SOC", k), base = Colonne("S_BASES", k);
            if (montant == 0) continue;
            Ligne(std::string(Libelle("S_CONTR_SOC")) + ", " + std::string(parts[k - 1]), std::to_string(montant),
                  k == 2 && deuxTaux ? "two rates x " + std::to_string(base) : TauxDeBase(Colonne("S_TAUX", k), base));
        }
        PourChaqueSortie([&](int32_t j, const std::string& nom, const kv_box&) {
            if (nom.starts_with("S_E_") || nom.starts_with("S_S_") || nom == "S_CRDS_SAL" || nom == "S_CSG_SAL")
                if (nom != "S_E_CSG_4_NP1") Montant(nom, S.text(j));
        });
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
    const kv::Return& S;
    const LoiNommee& m_loi;
    const char* m_titre = nullptr;
};

}  // namespace

void EcritResume(std::ostream& sortie, const kv::Return& retour, const LoiNommee& loi) {
    Resume(sortie, retour, loi).Ecrit();
}

}  // namespace outil
