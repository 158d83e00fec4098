#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "Calcul/cCalcul/Cases.h"
#include "Calcul/pCalculN/Loi.h"

// What each figure is made of, for a reader: sums, rates, bounds. The steps compute; these rows tell what they
// computed. A row is shown only where its operands give the figure: that keeps its numbers true, not its words. Of two
// rules that may give the same amount the one that the step prefers stands first, and a difference has a name only
// where one rule alone can have made it. What follows from a table of reductions, credits or business income is not
// repeated here; rules with several bounds are told by the code beside them.

namespace kv::regles {

/// A word of a formula: an output ("RN_SAL"), one of its columns ("RN_SAL.2", "RN_SAL.*" for the column of the figure
/// that is explained), an entry box ("[1AJ]"), a figure of the law ("{decote.part}"), one that a couple has twice
/// ("{foyer:assuranceVie.abattement}"), a number ("10"). Each may be taken off.
struct Terme {
    enum class Sorte : std::uint8_t { Sortie, Boite, Loi, ParFoyer, Nombre };
    Sorte sorte = Sorte::Sortie;
    int numero = -1;
    int colonne = 0;  ///< 0: the value; -1: the column of the figure that is explained
    int signe = 1;
};

constexpr Terme LisTerme(std::string_view mot) {
    if (mot.front() == '[')
        return {Terme::Sorte::Boite, CatalogueEntree::index.Cherche(Hache(mot.substr(1, mot.size() - 2)))};
    if (mot.front() == '{') {
        constexpr std::string_view foyer = "{foyer:";
        const bool parFoyer = mot.starts_with(foyer);
        const std::size_t debut = parFoyer ? foyer.size() : 1;
        return {parFoyer ? Terme::Sorte::ParFoyer : Terme::Sorte::Loi,
                indexLoi.Cherche(Hache(mot.substr(debut, mot.size() - debut - 1)))};
    }
    if ('0' <= mot.front() && mot.front() <= '9') {
        int nombre = 0;
        for (const char chiffre : mot) nombre = 10 * nombre + (chiffre - '0');
        return {Terme::Sorte::Nombre, nombre};
    }
    Terme terme;
    if (mot.size() > 2 && mot[mot.size() - 2] == '.') {
        terme.colonne = mot.back() == '*' ? -1 : mot.back() - '0';
        mot.remove_suffix(2);
    }
    terme.numero = CatalogueSortie::index.Cherche(Hache(mot));
    return terme;
}

/// Words with a space between them, "-" before one that is taken off. Checked when the code is compiled.
class Formule {
  public:
    consteval Formule(const char* texte) : m_texte(texte) {
        for (std::string_view reste = m_texte; !reste.empty();)
            if (PremierTerme(reste).numero < 0) throw "no figure has this name";
    }
    template <class Fonction>
    constexpr void Parcourt(Fonction f) const {
        for (std::string_view reste = m_texte; !reste.empty();) f(PremierTerme(reste));
    }

  private:
    // The first term of a text, which goes on after it.
    static constexpr Terme PremierTerme(std::string_view& reste) {
        for (int signe = 1;;) {
            const std::size_t fin = std::min(reste.find(' '), reste.size());
            const std::string_view mot = reste.substr(0, fin);
            reste.remove_prefix(std::min(fin + 1, reste.size()));
            if (mot == "-") {
                signe = -1;
            } else if (mot != "+") {
                Terme terme = LisTerme(mot);
                terme.signe = signe;
                return terme;
            }
        }
    }

    std::string_view m_texte;
};

enum class Genre : std::uint8_t {
    Somme,     ///< the terms added up
    Choix,     ///< the one operand that applies
    Plafonne,  ///< the operands added up, at most the last one
    Taux,      ///< the operands added up, at the rate of the last one, hundredths of a percent
    Part,      ///< the first operand times the second one, over the third one
    Produits,  ///< the operands two by two multiplied, and added up
};

/// The option on capital income that a row is of: each one reads other boxes.
enum class Option : std::uint8_t { Toutes, Aucune, Bareme, Forfait, SansForfait };

struct Regle {
    Formule figure;
    Genre genre;
    Formule operandes;
    /// What the difference is called where the operands do not give all of the figure; null: then the row does not
    /// apply.
    const char* ecart = nullptr;
    const char* mots = "";  ///< what the operands do not say
    Option option = Option::Toutes;
};

constexpr const char* pasMoinsDeZero = "pas en dessous de 0";
constexpr const char* auDelaDuPlafond = "au-delà du plafond";
constexpr const char* auDelaDeLaBase = "au-delà de la base";
constexpr const char* auDelaDeLImpot = "au-delà de l'impôt";
constexpr const char* auDelaDuRevenu = "au-delà du revenu";
constexpr const char* auDelaDesCapitaux = "au-delà des revenus de capitaux mobiliers";

/// Of several rows of one figure the first one that gives it is shown.
inline constexpr Regle lignes[] = {
    // ---- The amount payable.
    {"S_NET_A_PAYER", Genre::Somme, "TOT_PAYER - TOT_REST + S_A_PAYER"},
    {"S_NET_A_PAYER", Genre::Somme, "TOT_PAYER - TOT_REST + S_A_PAYER + S_NET_RESTITUE"},
    {"S_NET_A_PAYER", Genre::Somme, "TOT_PAYER - TOT_REST + S_A_PAYER - S_NON_RECOUVRE"},
    {"S_NET_RESTITUE", Genre::Somme, "TOT_REST - TOT_PAYER - S_A_PAYER"},
    {"S_NET_RESTITUE", Genre::Somme, "TOT_REST - TOT_PAYER - S_A_PAYER + S_NET_A_PAYER"},
    {"S_NET_RESTITUE", Genre::Somme, "TOT_REST - TOT_PAYER - S_A_PAYER + S_NON_RECOUVRE"},
    {"TOT_PAYER", Genre::Somme,
     "TOT_IMP_COR + NICHE_FISCALE + CONTRIBUTIONS - D_CREDIT - TOT_N_RECOUVRE + TOT_REST + TOT_N_REST"},
    {"TOT_REST", Genre::Somme,
     "D_CREDIT - TOT_IMP_COR - NICHE_FISCALE - CONTRIBUTIONS + TOT_PAYER + TOT_N_RECOUVRE - TOT_N_REST"},
    {"TOT_N_RECOUVRE", Genre::Somme, "TOT_IMP_COR + NICHE_FISCALE + CONTRIBUTIONS - D_CREDIT"},
    {"TOT_N_REST", Genre::Somme, "D_CREDIT - TOT_IMP_COR - NICHE_FISCALE - CONTRIBUTIONS"},
    {"S_NON_RECOUVRE", Genre::Somme, "S_CONTR_SOC + S_CONTR_SAL + S_CONTR_CARRIED + S_CSG_CRDS_ETR + S_CSG_CRDS_SAL"},
    {"S_NON_RECOUVRE", Genre::Choix, "S_A_PAYER"},
    {"S_A_PAYER", Genre::Somme, "S_CONTR_SOC + S_CONTR_SAL + S_CONTR_CARRIED + S_CSG_CRDS_ETR + S_CSG_CRDS_SAL"},
    {"S_A_PAYER", Genre::Somme,
     "S_CONTR_SOC + S_CONTR_SAL + S_CONTR_CARRIED + S_CSG_CRDS_ETR + S_CSG_CRDS_SAL + S_CONTR_CIMR_CS"},
    {"S_A_PAYER", Genre::Somme,
     "S_CONTR_SOC + S_CONTR_SAL + S_CONTR_CARRIED + S_CSG_CRDS_ETR + S_CSG_CRDS_SAL - S_NON_RECOUVRE"},
    {"CONTRIBUTIONS", Genre::Somme, "CONT_HAUT_REV + [3WT]"},
    {"CONTRIBUTIONS", Genre::Somme, "CONT_HR_TAUX_EFFECTIF + [3WT]"},

    // ---- The global cap on advantages: what they are worth is what is paid without them less what is paid with them.
    {"NICHE_FISCALE", Genre::Somme, "NICHE_A5 - NICHE_PLAFOND_N"},
    {"NICHE_FISCALE", Genre::Somme, "NICHE_A5 + NICHE_A5S + NICHE_A4 + NICHE_A3 + NICHE_A2 + NICHE_A1",
     "gardé, dans les plafonds"},
    {"NICHE_A5", Genre::Somme, "NICHE_B - NICHE_A"},
    {"NICHE_A5", Genre::Choix, "NICHE_A2013"},
    {"NICHE_A5S", Genre::Choix, "NICHE_A2013S"},
    {"NICHE_A4", Genre::Choix, "NICHE_A2012"},
    {"NICHE_A3", Genre::Choix, "NICHE_A2011"},
    {"NICHE_A2", Genre::Choix, "NICHE_A2010"},
    {"NICHE_A1", Genre::Choix, "NICHE_A2009"},
    {"NICHE_A", Genre::Somme, "TOT_PAYER - TOT_REST - NICHE_FISCALE",
     "sous un autre seuil de recouvrement ou de restitution"},
    {"NICHE_PLAFOND_N", Genre::Choix, "{niches.2013.plafond}"},

    // ---- From the gross tax to the tax of proportional rates.
    {"TOT_IMP_COR", Genre::Somme, "TOT_IMP_RED + CORRECTIONS"},
    {"CORRECTIONS", Genre::Somme,
     "CO_TNS_GUY + CO_TNS_MGR + CO_TNS + CO_18 + CO_19 + CO_24 + CO_3WR + CO_3WS + CO_30 + CO_41 + CO_22_5 + CO_50 + "
     "CO_INV_AUTEUR + CO_REPRISE + CO_INVEST_CORSE + CO_AGENTS_ASSUR + CO_PENSIONS + CO_INTERET + CO_TAXELOYER + "
     "CO_PFU1 + CO_PFU2"},
    {"CO_PFU1", Genre::Taux, "RF_PFU1 {pfu.assuranceVie.taux}"},
    {"CO_PFU2", Genre::Taux, "RF_PFU2 {pfu.taux}"},
    {"CO_REPRISE", Genre::Choix, "[8TF]"},
    {"CO_INVEST_CORSE", Genre::Choix, "[8TP]"},
    {"CO_TAXELOYER", Genre::Choix, "[4BH]"},
    {"CO_INTERET", Genre::Taux, "[2FA] {mobiliers.2FA.taux}"},
    {"CO_18", Genre::Taux, "CO_18.2 CO_18.3"},
    {"CO_19", Genre::Taux, "CO_19.2 CO_19.3"},
    {"CO_22_5", Genre::Taux, "CO_22_5.2 CO_22_5.3"},
    {"CO_24", Genre::Taux, "CO_24.2 CO_24.3"},
    {"CO_30", Genre::Taux, "CO_30.2 CO_30.3"},
    {"CO_41", Genre::Taux, "CO_41.2 CO_41.3"},
    {"CO_50", Genre::Taux, "CO_50.2 CO_50.3"},
    {"CO_TNS", Genre::Taux, "CO_TNS.2 CO_TNS.3"},
    {"CO_INV_AUTEUR", Genre::Taux, "CO_INV_AUTEUR.2 CO_INV_AUTEUR.3"},
    {"CO_18.2", Genre::Choix, "[3VD]"},
    {"CO_19.2", Genre::Somme, "[3VT] + [3SJ] + [3WJ]", nullptr, "", Option::Aucune},
    {"CO_19.2", Genre::Somme, "[3VT] + [3SJ1] + [3WJ]", nullptr, "", Option::Bareme},
    {"CO_19.2", Genre::Somme, "[3VT] + [3SJ1] + [3WJ]", nullptr, "", Option::Forfait},
    {"CO_22_5.2", Genre::Choix, "[3VM]"},
    {"CO_24.2", Genre::Choix, "[3WI]"},
    {"CO_30.2", Genre::Somme, "[3VI] + [3SK]"},
    {"CO_41.2", Genre::Choix, "[3VF]"},
    {"CO_50.2", Genre::Choix, "[3PI]"},
    {"CO_TNS.2", Genre::Choix, "RF_PLUS"},
    {"CO_TNS_GUY.2", Genre::Choix, "RF_PLUS"},
    {"CO_TNS_MGR.2", Genre::Choix, "RF_PLUS"},
    {"CO_INV_AUTEUR.2", Genre::Somme, "[5TC] + [5UC] + [5VC]"},
    {"TOT_IMP_RED", Genre::Somme, "TOT_IMPOT_DOM + IMPOT_TAUX_MARG - U_DECOTE - REDUCTIONS"},
    {"TOT_IMP_RED", Genre::Somme, "TOT_IMPOT_DOM + IMPOT_TAUX_MARG - U_DECOTE - REDUCTIONS", pasMoinsDeZero},
    {"TOT_IMPOT_DOM", Genre::Choix, "IMPOT_TM"},
    {"TOT_IMPOT_DOM", Genre::Somme, "TOT_IMPOT - U_DECOTE_DOM_GMR - U_DECOTE_DOM_GUY"},
    {"TOT_IMPOT_DOM", Genre::Somme, "IMPOT_TX_EFFECTIF - U_DECOTE_DOM_GMR - U_DECOTE_DOM_GUY"},
    {"IMPOT_TM", Genre::Somme, "IMPOT_TM_RETENU - IMPOT_TM_N_RECOUV"},
    {"IMPOT_TM_RETENU.2", Genre::Somme, "TOT_R_IMPOS + QUOTIENT"},
    {"IMPOT_TM_FRANCAIS", Genre::Choix, "TOT_IMPOT"},
    {"U_DECOTE_DOM_GMR", Genre::Taux, "IMPOT_TX_EFFECTIF {outremer.antillesReunion.taux}"},
    {"U_DECOTE_DOM_GMR", Genre::Taux, "TOT_IMPOT {outremer.antillesReunion.taux}"},
    {"U_DECOTE_DOM_GMR", Genre::Choix, "{outremer.antillesReunion.plafond}", nullptr, "plafond"},
    {"U_DECOTE_DOM_GUY", Genre::Taux, "IMPOT_TX_EFFECTIF {outremer.guyaneMayotte.taux}"},
    {"U_DECOTE_DOM_GUY", Genre::Taux, "TOT_IMPOT {outremer.guyaneMayotte.taux}"},
    {"U_DECOTE_DOM_GUY", Genre::Choix, "{outremer.guyaneMayotte.plafond}", nullptr, "plafond"},
    {"IMPOT_DU_DOM_GMR", Genre::Taux, "IMPOT_DU_REVENUS {outremer.antillesReunion.taux}"},
    {"IMPOT_DU_DOM_GMR", Genre::Somme, "{outremer.antillesReunion.plafond} - U_DECOTE_DOM_GMR", nullptr,
     "ce que l'abattement sur l'impôt au barème laisse du plafond"},
    {"IMPOT_DU_DOM_GUY", Genre::Taux, "IMPOT_DU_REVENUS {outremer.guyaneMayotte.taux}"},
    {"IMPOT_DU_DOM_GUY", Genre::Somme, "{outremer.guyaneMayotte.plafond} - U_DECOTE_DOM_GUY", nullptr,
     "ce que l'abattement sur l'impôt au barème laisse du plafond"},
    {"IMPOT_TAUX_MARG", Genre::Choix, "IMPOT_DU_TAUX_MARG"},
    {"IMPOT_DU_TAUX_MARG", Genre::Somme, "IMPOT_DU_REVENUS - IMPOT_DU_DOM_GMR - IMPOT_DU_DOM_GUY"},
    {"TAUX_MARGINAL_3", Genre::Choix, "I_IMP_RETENU.3"},
    {"TAUX_MARGINAL_3", Genre::Choix, "I_BAREME.3"},
    {"IMPOT_DU_REVENUS", Genre::Taux, "TM_BA TAUX_MARGINAL_3"},
    {"RF_PFU1", Genre::Somme, "[2CH2] + [2DH2]", "abattement sur l'assurance-vie"},
    {"RF_PFU2", Genre::Somme,
     "[3SJ2] + [3VG] + [3SG] + [3UA] + [3SL] + [3VE] + [3UV] + [3SA] + [3SZ] + [2DH3] + [2EE2] + [2DC] + [2CH3] + "
     "[2TS2] + [2TR] + [2TT] + [2FA] + [2GO]",
     "abattement sur l'assurance-vie"},
    {"RF_PLUS", Genre::Somme, "RF_PLUS_BA + RF_PLUS_BIC_P + RF_PLUS_BIC_NP + RF_PLUS_BNC_P + RF_PLUS_BNC_NP"},
    {"RF_PLUS.*", Genre::Somme,
     "RF_PLUS_BA.* + RF_PLUS_BIC_P.* + RF_PLUS_BIC_NP.* + RF_PLUS_BNC_P.* + RF_PLUS_BNC_NP.*"},
    {"RF_PLUS_BA", Genre::Somme, "RF_PLUS_BA_MIC + RF_PLUS_BA_NOR"},
    {"RF_PLUS_BIC_P", Genre::Somme, "RF_PLUS_BIC_P_MIC + RF_PLUS_BIC_P_NOR"},
    {"RF_PLUS_BIC_NP", Genre::Somme, "RF_PLUS_BIC_NP_MIC + RF_PLUS_BIC_NP_NOR"},
    {"RF_PLUS_BNC_P", Genre::Somme, "RF_PLUS_BNC_P_MIC + RF_PLUS_BNC_P_NOR"},
    {"RF_PLUS_BNC_NP", Genre::Somme, "RF_PLUS_BNC_NP_MIC + RF_PLUS_BNC_NP_NOR"},
    {"RF_PLUS_BA.*", Genre::Somme, "RF_PLUS_BA_MIC.* + RF_PLUS_BA_NOR.*"},
    {"RF_PLUS_BIC_P.*", Genre::Somme, "RF_PLUS_BIC_P_MIC.* + RF_PLUS_BIC_P_NOR.*"},
    {"RF_PLUS_BIC_NP.*", Genre::Somme, "RF_PLUS_BIC_NP_MIC.* + RF_PLUS_BIC_NP_NOR.*"},
    {"RF_PLUS_BNC_P.*", Genre::Somme, "RF_PLUS_BNC_P_MIC.* + RF_PLUS_BNC_P_NOR.*"},
    {"RF_PLUS_BNC_NP.*", Genre::Somme, "RF_PLUS_BNC_NP_MIC.* + RF_PLUS_BNC_NP_NOR.*"},
    {"TOT_IMPOT", Genre::Somme, "I_BAREME + I_QUOT"},
    {"I_BAR_QUOT", Genre::Somme, "I_BAREME + I_QUOT"},

    {"I_BAREME", Genre::Choix, "I_IMP_NORM", nullptr, "impôt de toutes les parts"},
    {"I_BAREME", Genre::Choix, "I_IMP_RETENU", nullptr, "quotient familial plafonné"},
    {"I_IMP_RETENU", Genre::Somme, "I_IMP_SIMP - I_PLAF_FAM - I_NEUT_PLAF_FAM - I_AJUST_PLAF_FAM", nullptr,
     "impôt des parts des déclarants, moins l'avantage maximal des autres"},
    {"I_IMP_RETENU", Genre::Choix, "I_IMP_NORM"},

    // ---- Taxable income.
    {"QUOTIENT_A_DED", Genre::Choix, "RQ_REV_EXCEP"},
    {"A_AGEES.2", Genre::Choix, "{abattements.personnesAgees.montantPlein}", nullptr,
     "revenu modeste : abattement entier"},
    {"A_AGEES.2", Genre::Choix, "{abattements.personnesAgees.montant}", nullptr, "revenu moyen : abattement réduit"},
    {"A_ENFANTS.1", Genre::Produits, "[Nm] 10 - [Pm] 5", nullptr, "dixièmes, la moitié en résidence alternée"},
    {"A_ENFANTS.2", Genre::Choix, "{abattements.enfantMarie}"},
    {"I_AJUST_PLAF_FAM", Genre::Somme, "{quotientFamilial.veuf}", "au-delà de l'impôt de toutes les parts",
     "veuf avec charge de famille"},
    {"A_AGEES", Genre::Part, "A_AGEES.2 A_AGEES.1 1"},
    {"A_ENFANTS", Genre::Part, "A_ENFANTS.2 A_ENFANTS.1 10"},
    {"TOT_R_IMPOS", Genre::Somme, "TOT_R_NET_G - ABAT - QUOTIENT_A_DED"},
    {"TOT_R_IMPOS", Genre::Somme, "TOT_R_NET_G - ABAT - QUOTIENT_A_DED", pasMoinsDeZero},
    {"ABAT", Genre::Somme, "A_AGEES + A_ENFANTS"},
    {"TOT_R_NET_G", Genre::Somme, "TOT_R_BRUT - CHARGES"},
    {"TOT_R_NET", Genre::Somme, "TOT_R_BRUT - C_REDUC"},
    {"CHARGES", Genre::Choix, "C_REDUC"},
    {"C_REDUC", Genre::Somme,
     "C_CSG + C_CSG_MOB + C_DEDUC + C_ENFANTS_1 + C_ENFANTS_2 + C_COT_PERP_V + C_COT_PERP_C + C_COT_PERP_E + C_JUSTICE "
     "+ C_AUTRE + C_FRAIS + C_TM_BIS + C_TM_TER + C_GROSSE_REP"},
    {"C_CSG", Genre::Somme, "[6DE]", auDelaDuRevenu},
    {"C_CSG_MOB", Genre::Taux, "C_CSG_MOB.2 C_CSG_MOB.3", auDelaDuRevenu},
    {"C_CSG_MOB.2", Genre::Choix, "[2BH]"},
    {"C_DEDUC", Genre::Somme, "[6DD]", auDelaDuRevenu},
    {"C_COT_PERP_V", Genre::Choix, "[6RS]"},
    {"C_COT_PERP_V", Genre::Somme, "C_COT_PERP_V.2", auDelaDuRevenu},
    {"C_COT_PERP_V.2", Genre::Choix, "[6RS]"},
    {"C_COT_PERP_V.2", Genre::Somme, "[6PS1] + [6PSA] + [6PSB] + [6PSC]", nullptr, "plafonds non utilisés"},
    {"C_COT_PERP_V.2", Genre::Somme, "[6PS1] + [6PSA] + [6PSB] + [6PSC] + [6PT1] + [6PTA] + [6PTB] + [6PTC] - [6RT]",
     nullptr, "plafonds du couple mis en commun"},
    {"C_COT_PERP_C", Genre::Choix, "[6RT]"},
    {"C_COT_PERP_C", Genre::Somme, "C_COT_PERP_C.2", auDelaDuRevenu},
    {"C_COT_PERP_C.2", Genre::Choix, "[6RT]"},
    {"C_COT_PERP_C.2", Genre::Somme, "[6PT1] + [6PTA] + [6PTB] + [6PTC]", nullptr, "plafonds non utilisés"},
    {"C_COT_PERP_C.2", Genre::Somme, "[6PT1] + [6PTA] + [6PTB] + [6PTC] + [6PS1] + [6PSA] + [6PSB] + [6PSC] - [6RS]",
     nullptr, "plafonds du couple mis en commun"},
    {"C_COT_PERP_E", Genre::Choix, "[6RU]"},
    {"C_COT_PERP_E", Genre::Somme, "C_COT_PERP_E.2", auDelaDuRevenu},
    {"C_COT_PERP_E.2", Genre::Choix, "[6RU]"},
    {"C_COT_PERP_E.2", Genre::Somme, "[6PU1] + [6PUA] + [6PUB] + [6PUC]", nullptr, "plafonds non utilisés"},
    {"C_AUTRE", Genre::Somme, "[6GU]", auDelaDuRevenu},
    {"C_FRAIS", Genre::Choix, "[6EU]"},
    {"C_FRAIS", Genre::Somme, "C_FRAIS.2", auDelaDuRevenu},
    {"C_FRAIS.2", Genre::Choix, "[6EU]"},
    {"C_FRAIS.2", Genre::Produits, "[6EV] {charges.accueil.plafond}", nullptr, "plafond par personne accueillie"},
    {"C_GROSSE_REP", Genre::Somme, "[6CB] + [6HJ] + [6HK] + [6HL] + [6HM] + [6HN] + [6HO] + [6HP] + [6HQ]"},
    {"C_GROSSE_REP", Genre::Somme, "C_GROSSE_REP.2", auDelaDuRevenu},
    {"C_GROSSE_REP.2", Genre::Plafonne,
     "[6CB] + [6HJ] + [6HK] + [6HL] + [6HM] + [6HN] + [6HO] + [6HP] + [6HQ] {charges.grossesReparations.plafond}"},
    {"C_TM_BIS", Genre::Choix, "[8TMA]"},
    {"C_TM_TER", Genre::Choix, "[8TMA]"},

    // ---- Reference income; its terms stand below.
    {"REV_REF_D", Genre::Somme, "REVENU_REF + [3SA]"},
    {"REV_REF_D", Genre::Somme, "REV_REF_B + [3SA]"},
    {"REV_REF_C", Genre::Somme, "REVENU_REF - [3WN]"},
    {"REV_REF_C", Genre::Somme, "REV_REF_B - [3WN]"},
    {"REV_REF_EE", Genre::Choix, "[2EE]", nullptr, "", Option::Aucune},
    {"REV_REF_EE", Genre::Somme, "[2EE1]", nullptr, "", Option::Bareme},
    {"REV_REF_EE", Genre::Somme, "[2EE1] + [2EE2]", nullptr, "", Option::Forfait},
    {"REV_REF_FA", Genre::Choix, "[2FA]"},
    {"REV_REF_DH", Genre::Choix, "[2DH]", nullptr, "", Option::Aucune},
    {"REV_REF_DH", Genre::Somme, "[2DH1]", nullptr, "", Option::Bareme},
    {"REV_REF_DH", Genre::Somme, "[2DH1] + [2DH2] + [2DH3]", nullptr, "", Option::Forfait},
    {"REV_REF_BA_EXO", Genre::Somme, "RE_FORFAIT + RE_BA"},
    {"REV_REF_BIC_EXO", Genre::Somme, "RE_MICRO_BIC_PROF + RE_BIC + RE_MICRO_BIC_NON_PROF + RE_BICNP"},
    {"REV_REF_BNC_EXO", Genre::Somme,
     "RE_SPE_BNC_PROF + RE_BNC + RE_BNCNP + [5QL] + [5RL] + [5SL] + [5SV] + [5SW] + [5SX]"},
    {"TOT_R_MONDIAL", Genre::Choix, "IMPOT_ETR_RMI"},

    // ---- Gross income.
    {"TOT_R_BRUT", Genre::Somme, "RNORMAL + RDIVERS + RREEL"},
    {"RNORMAL", Genre::Somme, "RN_SAL + RN_PEN"},
    {"RDIVERS", Genre::Somme,
     "RD_RENTES + RD_MOB + RD_FON + RD_AUTRE + RD_GAINS + RD_GAINS_1TZ + RD_PV_BAREME - RD_DEFICIT"},
    {"RREEL", Genre::Somme,
     "RR_BA + RR_BA_DEF + RR_BIC_P + RR_BIC_NP + RR_BIC_NP_DEF_REP + RR_BIC_NP_LM + RR_BIC_NP_LM_DEF_REP + RR_BNC_P + "
     "RR_BNC_NP + RR_BNC_NP_DEF_REP"},

    {"RN_SAL", Genre::Somme, "RN_SAL_SAIS - RN_SAL_DED_10"},
    {"RN_SAL.*", Genre::Somme, "RN_SAL_SAIS.* - RN_SAL_DED_10.*"},
    {"RN_SAL_SAIS.1", Genre::Somme, "[1AJ] + [1AP] + [1AF] + [1GB]"},
    {"RN_SAL_SAIS.2", Genre::Somme, "[1BJ] + [1BP] + [1BF] + [1HB]"},
    {"RN_SAL_SAIS.3", Genre::Somme,
     "[1CJ] + [1CP] + [1CF] + [1IB] + [1DJ] + [1DP] + [1DF] + [1JB] + [1EJ] + [1EP] + [1EF] + [1KB] + [1FJ] + [1FP] + "
     "[1FF] + [1LB] + [1FJA] + [1FPA] + [1FJB] + [1FPB] + [1FJC] + [1FPC] + [1FJD] + [1FPD] + [1FJE] + [1FPE]"},
    {"RN_PEN", Genre::Somme, "RN_PEN_DECL - RN_PEN_ABAT"},
    {"RN_PEN.*", Genre::Somme, "RN_PEN_DECL.* - RN_PEN_ABAT.*"},
    {"RN_PEN_DECL.1", Genre::Somme, "[1AS] + [1AO] + [1AZ] + [1AL]"},
    {"RN_PEN_DECL.2", Genre::Somme, "[1BS] + [1BO] + [1BZ] + [1BL]"},
    {"RN_PEN_DECL.3", Genre::Somme,
     "[1CS] + [1CO] + [1CZ] + [1CL] + [1DS] + [1DO] + [1DZ] + [1DL] + [1ES] + [1EO] + [1EZ] + [1EL] + [1FS] + [1FO] + "
     "[1FZ] + [1FL] + [1FSA] + [1FOA] + [1FZA] + [1FSB] + [1FOB] + [1FZB] + [1FSC] + [1FOC] + [1FZC] + [1FSD] + [1FOD] "
     "+ [1FZD] + [1FSE] + [1FOE] + [1FZE]"},

    {"RD_RENTES", Genre::Somme, "RD_RENTES_M_50 + RD_RENTES_50_59 + RD_RENTES_60_69 + RD_RENTES_P_70"},
    {"RD_RENTES_M_50", Genre::Taux, "RD_RENTES_M_50.2 {rentes.moinsDe50ans}"},
    {"RD_RENTES_50_59", Genre::Taux, "RD_RENTES_50_59.2 {rentes.de50a59ans}"},
    {"RD_RENTES_60_69", Genre::Taux, "RD_RENTES_60_69.2 {rentes.de60a69ans}"},
    {"RD_RENTES_P_70", Genre::Taux, "RD_RENTES_P_70.2 {rentes.plusDe69ans}"},
    {"RD_RENTES_M_50.2", Genre::Somme, "[1AW] + [1AR]"},
    {"RD_RENTES_50_59.2", Genre::Somme, "[1BW] + [1BR]"},
    {"RD_RENTES_60_69.2", Genre::Somme, "[1CW] + [1CR]"},
    {"RD_RENTES_P_70.2", Genre::Somme, "[1DW] + [1DR]"},

    {"RD_MOB", Genre::Somme,
     "RD_MOB_MONT + RD_MOB_MAJO - RD_MOB_DEMI_BASE - RD_MOB_ABAT - RD_MOB_FRAIS - RD_MOB_DEFICIT_NM1"},
    {"RD_MOB_MONT", Genre::Somme, "[2DC] + [2TS] + [2TR] + [2FU] + [2CH] + [2GO] + [2TT]", nullptr, "", Option::Aucune},
    {"RD_MOB_MONT", Genre::Somme,
     "[2DC] + [2TS1] + [2TS2] + [2EE2] + [2TR] + [2FU] + [2CH1] + [2CH2] + [2CH3] + [2DH2] + [2DH3] + [2GO] + [2TT] + "
     "[2FA]",
     nullptr, "", Option::Bareme},
    {"RD_MOB_MONT", Genre::Somme, "[2TS1] + [2FU] + [2CH1]", nullptr, "", Option::Forfait},
    {"RD_MOB_MAJO", Genre::Taux, "[2GO] {mobiliers.majoration}"},
    {"RD_MOB_DEMI_BASE", Genre::Somme, "RD_MOB_DEMI_BASE_2DC + RD_MOB_DEMI_BASE_2FU"},
    {"RD_MOB_DEMI_BASE_2DC", Genre::Taux, "[2DC] {mobiliers.dividendes.abattement}"},
    {"RD_MOB_DEMI_BASE_2FU", Genre::Taux, "[2FU] {mobiliers.dividendes.abattement}"},
    {"RD_MOB_ABAT", Genre::Plafonne, "[2CH] {foyer:assuranceVie.abattement}", nullptr, "", Option::Aucune},
    {"RD_MOB_ABAT", Genre::Plafonne, "[2CH1] {foyer:assuranceVie.abattement}", nullptr, "", Option::Forfait},
    {"RD_MOB_ABAT", Genre::Plafonne, "[2CH1] + [2CH2] + [2CH3] + [2DH2] + [2DH3] {foyer:assuranceVie.abattement}",
     nullptr, "", Option::Bareme},
    {"RD_MOB_FRAIS", Genre::Somme, "[2CA]", auDelaDesCapitaux},
    {"RD_MOB_DEFICIT_NM1", Genre::Somme, "[2AA] + [2AL] + [2AM] + [2AN] + [2AQ] + [2AR]", auDelaDesCapitaux},
    {"RD_FON", Genre::Somme, "[4BA] + [4BE] - RD_FON_BE_ABAT - [4BB] - [4BC] - RD_FON_BD_IMPUT"},
    {"RD_FON", Genre::Somme, "[4BA] + [4BE] - NP1_FON_ANN_BE_ABAT - [4BB] - [4BC]"},
    {"RD_FON", Genre::Somme, "[4BA] + [4BE] - NP1_FON_ANN_BE_ABAT - [4BB] + NP1_FON_ANN - [4BC]", nullptr,
     "le déficit foncier de l'année se reporte"},
    {"RD_FON_BE_ABAT", Genre::Taux, "[4BE] {foncier.micro.abattement}"},
    {"RD_FON_BD_IMPUT", Genre::Somme, "[4BD]", "au-delà des revenus fonciers"},
    {"NP1_FON_ANN_BE_ABAT", Genre::Taux, "[4BE] {foncier.micro.abattement}"},
    {"NP1_FON_ANN", Genre::Somme, "[4BB] - [4BA] - [4BE] + NP1_FON_ANN_BE_ABAT"},
    {"RD_AUTRE", Genre::Choix, "[6GH]"},
    {"RD_GAINS", Genre::Somme, "RD_GAINS_2_Rev - RD_GAINS_2_Ded"},
    {"RD_GAINS_2_Rev.1", Genre::Somme, "[1TT] + [3VJ]"},
    {"RD_GAINS_2_Rev.2", Genre::Somme, "[1UT] + [3VK]"},
    {"RD_GAINS_1TZ", Genre::Choix, "[1TZ]"},
    {"RD_PV_BAREME", Genre::Somme, "[3VG] + [3UA] + [3SB] + [3VE] + [3UV] + [3SZ]", nullptr, "", Option::Aucune},
    {"RD_PV_BAREME", Genre::Somme, "[3VG] + [3UA] + [3SB] + [3VE] + [3UV] + [3SZ] + [3SJ2]", nullptr, "",
     Option::Bareme},
    {"RD_DEFICIT", Genre::Somme, "[6FA] + [6FB] + [6FC] + [6FD] + [6FE] + [6FL]"},

    // ---- Business income; its lines of boxes are in their tables.
    {"RR_BA", Genre::Somme,
     "RR_BA_MICRO_REV_IMP + RR_BA_FORF_PVCT + RR_BA_AVEC_CGA + RR_BA_SANS_CGA + RR_BA_FORFAITBOIS - RR_BA_MICRO_MVCT + "
     "RR_BA_MAJO - RR_BA_DEF_ANT"},
    {"RR_BIC_P", Genre::Somme,
     "RR_BIC_P_MIC + RR_BIC_P_MIC_PVCT + RR_BIC_P_AVEC_CGA + RR_BIC_P_SANS_CGA - RR_BIC_P_MIC_MVCT + RR_BIC_P_MAJO"},
    {"RR_BIC_NP", Genre::Somme,
     "RR_BIC_NP_MIC + RR_BIC_NP_MIC_PVCT + RR_BIC_NP_AVEC_CGA + RR_BIC_NP_SANS_CGA - RR_BIC_NP_MIC_MVCT + "
     "RR_BIC_NP_MAJO"},
    {"RR_BIC_NP_LM", Genre::Somme,
     "RR_BIC_NP_LM_MIC + RR_BIC_NP_LM_AVEC_CGA + RR_BIC_NP_LM_SANS_CGA + RR_BIC_NP_LM_MAJO"},
    {"RR_BNC_P", Genre::Somme,
     "RR_BNC_P_SPE + RR_BNC_P_SPE_PVCT + RR_BNC_P_AVEC_CGA + RR_BNC_P_SANS_CGA - RR_BNC_P_SPE_MVCT + RR_BNC_P_MAJO"},
    {"RR_BNC_NP", Genre::Somme,
     "RR_BNC_NP_SPE + RR_BNC_NP_SPE_PVCT - RR_BNC_NP_SPE_MVCT + RR_BNC_NP_AVEC_AA + RR_BNC_NP_SANS_AA + "
     "RR_BNC_NP_CON_MAJ"},
    {"RR_BA.*", Genre::Somme,
     "RR_BA_MICRO_REV_IMP.* + RR_BA_FORF_PVCT.* + RR_BA_AVEC_CGA.* + RR_BA_SANS_CGA.* + RR_BA_FORFAITBOIS.* - "
     "RR_BA_MICRO_MVCT.* + RR_BA_MAJO.* - RR_BA_DEF_ANT.*"},
    {"RR_BIC_P.*", Genre::Somme,
     "RR_BIC_P_MIC.* + RR_BIC_P_MIC_PVCT.* + RR_BIC_P_AVEC_CGA.* + RR_BIC_P_SANS_CGA.* - RR_BIC_P_MIC_MVCT.* + "
     "RR_BIC_P_MAJO.*"},
    {"RR_BIC_NP.*", Genre::Somme,
     "RR_BIC_NP_MIC.* + RR_BIC_NP_MIC_PVCT.* + RR_BIC_NP_AVEC_CGA.* + RR_BIC_NP_SANS_CGA.* - RR_BIC_NP_MIC_MVCT.* + "
     "RR_BIC_NP_MAJO.* - RR_BIC_NP_DEF_IMP.*"},
    {"RR_BIC_NP", Genre::Somme,
     "RR_BIC_NP_MIC + RR_BIC_NP_MIC_PVCT + RR_BIC_NP_AVEC_CGA + RR_BIC_NP_SANS_CGA - RR_BIC_NP_MIC_MVCT + "
     "RR_BIC_NP_MAJO - RR_BIC_NP_DEF_IMP"},
    {"RR_BIC_NP_LM.*", Genre::Somme,
     "RR_BIC_NP_LM_MIC.* + RR_BIC_NP_LM_AVEC_CGA.* + RR_BIC_NP_LM_SANS_CGA.* + RR_BIC_NP_LM_MAJO.* - "
     "RR_BIC_NP_LM_DEF_IMP.*"},
    {"RR_BIC_NP_LM", Genre::Somme,
     "RR_BIC_NP_LM_MIC + RR_BIC_NP_LM_AVEC_CGA + RR_BIC_NP_LM_SANS_CGA + RR_BIC_NP_LM_MAJO - RR_BIC_NP_LM_DEF_IMP"},
    {"RR_BNC_P.*", Genre::Somme,
     "RR_BNC_P_SPE.* + RR_BNC_P_SPE_PVCT.* + RR_BNC_P_AVEC_CGA.* + RR_BNC_P_SANS_CGA.* - RR_BNC_P_SPE_MVCT.* + "
     "RR_BNC_P_MAJO.*"},
    {"RR_BNC_NP.*", Genre::Somme,
     "RR_BNC_NP_SPE.* + RR_BNC_NP_SPE_PVCT.* - RR_BNC_NP_SPE_MVCT.* + RR_BNC_NP_AVEC_AA.* + RR_BNC_NP_SANS_AA.* + "
     "RR_BNC_NP_CON_MAJ.*"},
    {"RR_BA_MICRO_REV_IMP.*", Genre::Somme, "RR_BA_MICRO_MOY.* - RR_BA_MICRO_ABAT.*"},
    {"RR_BA_DEF.*", Genre::Choix, "- RR_BA.*"},
    {"RR_BA_DEF", Genre::Choix, "- RR_BA"},
    {"TM_BA", Genre::Choix, "RR_BAM"},
    {"TM_BA.*", Genre::Choix, "RR_BAM.*"},
    {"RR_BAM", Genre::Somme, "RR_BAM_AVEC_CGA + RR_BAM_SANS_CGA + RR_BAM_MAJO"},
    {"RR_BAM.*", Genre::Somme, "RR_BAM_AVEC_CGA.* + RR_BAM_SANS_CGA.* + RR_BAM_MAJO.*"},
    {"RR_BAM_MAJO.*", Genre::Taux, "RR_BAM_SANS_CGA.* {benefices.sansCentre.majoration}"},
    {"RR_BIC_NP_DEF_REP", Genre::Choix, "- RR_BIC_NP"},
    {"RR_BIC_NP_LM_DEF_REP", Genre::Choix, "- RR_BIC_NP_LM"},
    {"RR_BNC_NP_DEF_REP", Genre::Choix, "- RR_BNC_NP"},
    {"RR_BIC_P_MIC.*", Genre::Somme, "RR_BIC_P_MIC_DECL.* - RR_BIC_P_MIC_ABAT.*", pasMoinsDeZero},
    {"RR_BIC_NP_MIC.*", Genre::Somme, "RR_BIC_NP_MIC_DECL.* - RR_BIC_NP_MIC_ABAT.*", pasMoinsDeZero},
    {"RR_BIC_NP_LM_MIC.*", Genre::Somme, "RR_BIC_NP_LM_MIC_DECL.* - RR_BIC_NP_LM_MIC_ABAT.*", pasMoinsDeZero},
    {"RR_BNC_P_SPE.*", Genre::Somme, "RR_BNC_P_SPE_DECL.* - RR_BNC_P_SPE_ABAT.*", pasMoinsDeZero},
    {"RR_BNC_NP_SPE.*", Genre::Somme, "RR_BNC_NP_SPE_DECL.* - RR_BNC_NP_SPE_ABAT.*", pasMoinsDeZero},
    {"RR_BIC_P_MIC_DECL.1", Genre::Somme, "[5KO] + [5KP]"},
    {"RR_BIC_P_MIC_DECL.2", Genre::Somme, "[5LO] + [5LP]"},
    {"RR_BIC_NP_MIC_DECL.1", Genre::Somme, "[5NO] + [5NP]"},
    {"RR_BIC_NP_MIC_DECL.2", Genre::Somme, "[5OO] + [5OP]"},
    {"RR_BIC_NP_MIC_DECL.3", Genre::Somme, "[5PO] + [5PP]"},
    {"RR_BNC_NP_SPE_DECL.1", Genre::Choix, "[5KU]"},
    {"RR_BNC_NP_SPE_DECL.2", Genre::Choix, "[5LU]"},
    {"RR_BNC_NP_SPE_DECL.3", Genre::Choix, "[5MU]"},
    {"RR_BNC_P_SPE_DECL.1", Genre::Choix, "[5HQ]"},
    {"RR_BNC_P_SPE_DECL.2", Genre::Choix, "[5IQ]"},
    {"RR_BNC_P_SPE_DECL.3", Genre::Choix, "[5JQ]"},
    {"RR_BIC_NP_LM_MIC_DECL.1", Genre::Somme, "[5NG] + [5NJ] + [5ND] + [5NW]"},
    {"RR_BIC_NP_LM_MIC_DECL.2", Genre::Somme, "[5OG] + [5OJ] + [5OD] + [5OW]"},
    {"RR_BIC_NP_LM_MIC_DECL.3", Genre::Somme, "[5PG] + [5PJ] + [5PD] + [5PW]"},
    {"RR_BIC_P_MIC_DECL.3", Genre::Somme, "[5MO] + [5MP]"},
    {"RR_BA_MAJO.*", Genre::Taux, "RR_BA_SANS_CGA.* {benefices.sansCentre.majoration}"},
    {"RR_BIC_P_MAJO.*", Genre::Taux, "RR_BIC_P_SANS_CGA.* {benefices.sansCentre.majoration}"},
    {"RR_BIC_NP_MAJO.*", Genre::Taux, "RR_BIC_NP_SANS_CGA.* {benefices.sansCentre.majoration}"},
    {"RR_BIC_NP_LM_MAJO.*", Genre::Taux, "RR_BIC_NP_LM_SANS_CGA.* {benefices.sansCentre.majoration}"},
    {"RR_BNC_P_MAJO.*", Genre::Taux, "RR_BNC_P_SANS_CGA.* {benefices.sansCentre.majoration}"},
    {"RR_BNC_NP_CON_MAJ.*", Genre::Taux, "RR_BNC_NP_SANS_AA.* {benefices.sansCentre.majoration}"},

    // ---- Social levies.
    {"S_CONTR_SOC.1", Genre::Taux, "S_BASES.1 {prelevementsSociaux.prelevements}"},
    {"S_CONTR_SOC.2", Genre::Taux, "S_BASES.2 {prelevementsSociaux.csg}"},
    {"S_CONTR_SOC.3", Genre::Taux, "S_BASES.3 {prelevementsSociaux.crds}"},
    {"S_BASES.*", Genre::Somme,
     "S_B_REV_FON + S_B_BENEF + S_B_LM + S_B_REV_MOB + S_B_PG_DIVERS + S_B_RENTES + S_B_PLUS_VALUES + S_B_PV_RETRAITE "
     "- S_B_CSG_CRDS - S_B_RCM_Etranger - S_B_REV_FON_Etranger - S_B_PG_DIVERS_ETR - S_B_RENTES_ETR - S_B_LM_ETR - "
     "S_B_PLUS_VALUES_ETR"},
    {"S_B_REV_FON", Genre::Choix, "RD_FON"},
    {"S_B_RENTES", Genre::Choix, "RD_RENTES"},
    {"S_B_REV_MOB", Genre::Somme, "RD_MOB_MONT + [2DM] + [2FA]", nullptr, "", Option::Aucune},
    {"S_B_REV_MOB", Genre::Somme, "RD_MOB_MONT + [2DM]", nullptr, "", Option::Bareme},
    {"S_B_REV_MOB", Genre::Somme,
     "RD_MOB_MONT + [2DM] + [2DC] + [2CH2] + [2CH3] + [2DH2] + [2DH3] + [2TS2] + [2EE2] + [2TR] + [2TT] + [2FA] + "
     "[2GO]",
     nullptr, "", Option::Forfait},
    {"S_B_CSG_CRDS", Genre::Somme, "[2CG] + [2BH]"},
    {"S_B_CSG_CRDS", Genre::Choix, "S_B_REV_MOB"},
    {"S_B_PG_DIVERS", Genre::Somme,
     "[3VG] + [3SG] + [3UA] + [3SL] + [3VA] + [3VQ] - [3VH] - [3VR] + [3VD] + [3VI] + [3VF] + [3VJ] + [3VK] + [3SJ] + "
     "[3SK] + [1TZ] + [1UZ] + [1VZ] + [3VM] + [3VT] + [3PI] + [3WE] + [3WI] + [3WJ] + [3WN] + [3UZ]",
     "pertes reportées"},
    {"S_CSG_CRDS_ETR", Genre::Somme,
     "S_E_CRDS + S_E_CASA + S_E_CSG_1 + S_E_CSG_8 + S_E_CSG_9 + S_E_CSG_10 + S_E_CSG_2 + S_E_CSG_3 + S_E_CSG_4 + "
     "S_E_CSG_5 + S_E_CSG_11 + S_E_CSG_6 + S_E_CSG_7"},
    {"S_B_LM", Genre::Somme, "RR_BIC_NP_LM - RR_BIC_NP_LM_MAJO",
     "part qui a déjà supporté les prélèvements, ou de déficits"},
    {"S_B_BENEF", Genre::Somme, "[5HY] + [5IY] + [5JY]", pasMoinsDeZero},
    {"S_B_PV_RETRAITE", Genre::Somme, "[5HG] + [5IG]", pasMoinsDeZero},
    {"S_B_PLUS_VALUES", Genre::Somme,
     "[5HX] - [5XN] + [5HE] + [5KQ] - [5KR] + [5KE] + [5NQ] - [5NR] + [5NE] + [5HR] - [5HS] + [5QD] + [5KV] - [5KW] + "
     "[5SO] + [5IX] - [5YN] + [5IE] + [5LQ] - [5LR] + [5LE] + [5OQ] - [5OR] + [5OE] + [5IR] - [5IS] + [5RD] + [5LV] - "
     "[5LW] + [5NT] + [5JX] - [5ZN] + [5JE] + [5MQ] - [5MR] + [5ME] + [5PQ] - [5PR] + [5PE] + [5JR] - [5JS] + [5SD] + "
     "[5MV] - [5MW] + [5OT]",
     "pertes au-delà des gains"},
    {"S_B_RCM_Etranger", Genre::Somme, "[8TKA]", auDelaDeLaBase},
    {"S_B_REV_FON_Etranger", Genre::Somme, "[8TKB]", auDelaDeLaBase},
    {"S_B_PG_DIVERS_ETR", Genre::Somme, "[8TKD]", auDelaDeLaBase},
    {"S_B_RENTES_ETR", Genre::Somme, "[8TKC]", auDelaDeLaBase},
    {"S_B_LM_ETR", Genre::Somme, "[8TKE]", auDelaDeLaBase},
    {"S_B_PLUS_VALUES_ETR", Genre::Somme, "[8TKF]", auDelaDeLaBase},
    {"S_E_CRDS", Genre::Taux,
     "[8TR] [8PH] [8TQ] [8SC] [8SW] [8SX] [8TV] [8TW] [8TX] [8SA] [8SB] {prelevementsSociaux.crds}"},
    {"S_E_CASA", Genre::Taux, "[8SC] [8TV] [8SA] {casa}"},
    {"S_E_CSG_1", Genre::Taux, "[8TQ] {csg.activite.annee}"},
    {"S_E_CSG_1", Genre::Taux, "[8TQ] {csg.activite.suivante}"},
    {"S_E_CSG_8", Genre::Taux, "[8SC] {csg.activite.annee}"},
    {"S_E_CSG_8", Genre::Taux, "[8SC] {csg.activite.suivante}"},
    {"S_E_CSG_9", Genre::Taux, "[8SW] {csg.remplacement}"},
    {"S_E_CSG_10", Genre::Taux, "[8SX] {csg.tauxReduit}"},
    {"S_E_CSG_2", Genre::Taux, "[8TV] {csg.pensions.annee}"},
    {"S_E_CSG_2", Genre::Taux, "[8TV] {csg.pensions.suivante}"},
    {"S_E_CSG_3", Genre::Taux, "[8TW] {csg.remplacement}"},
    {"S_E_CSG_4", Genre::Taux, "[8TX] {csg.tauxReduit}"},
    {"S_E_CSG_5", Genre::Taux, "[8TR] {csg.activite.annee}"},
    {"S_E_CSG_5", Genre::Taux, "[8TR] {csg.activite.suivante}"},
    {"S_E_CSG_11", Genre::Taux, "[8PH] {csg.8PH}"},
    {"S_E_CSG_6", Genre::Taux, "[8SA] {csg.pensions.annee}"},
    {"S_E_CSG_6", Genre::Taux, "[8SA] {csg.pensions.suivante}"},
    {"S_E_CSG_7", Genre::Taux, "[8SB] {csg.tauxReduit}"},
    {"S_CRDS_SAL", Genre::Taux, "[1TT] [1UT] {prelevementsSociaux.crds}"},
    {"S_CSG_SAL", Genre::Taux, "[1TT] [1UT] {csg.activite.annee}"},
    {"S_CSG_SAL", Genre::Taux, "[1TT] [1UT] {csg.activite.suivante}"},
    {"S_CONTR_SAL", Genre::Taux, "[3VN] [1TT] [1UT] {gainsSalaries.contribution}"},
    {"S_CONTR_CARRIED", Genre::Taux, "[1NY] [1OY] {carriedInterest.contribution}"},
    {"S_CSG_CRDS_SAL", Genre::Somme, "S_CRDS_SAL + S_CSG_SAL"},

    // ---- What credits and reductions are taken of, where no table says it.
    {"D_AVOIR_FISC", Genre::Somme, "[2AB]", auDelaDeLImpot},
    {"D_SOURCE_ETR", Genre::Somme, "[8TAB]", auDelaDeLImpot},
    {"D_IMPOT_ETR", Genre::Somme, "[8VL] + [8VM] + [8WM] + [8UM]", auDelaDeLImpot},
    {"D_ETR_PV_TK", Genre::Somme, "IMPOT_ETR_PV_TK", auDelaDeLImpot},
    {"D_PREVENTION", Genre::Somme, "[8TE]", auDelaDeLImpot},
    {"D_INVEST_CORSE", Genre::Somme, "[8TG] + [8TO]", auDelaDeLImpot},
    {"D_CREDIT_8TC", Genre::Somme, "[8TC]", auDelaDeLImpot},
    {"D_CREDIT_COMP_EMPLOI", Genre::Somme, "[8UW]", auDelaDeLImpot},
    {"U_ENFANTS_ACHARGE.2", Genre::Produits,
     "[7EA] {reductions.7EA.montant} [7EC] {reductions.7EC.montant} [7EF] {reductions.7EF.montant}"},
    {"U_ENFANTS_ALTERNE.2", Genre::Produits,
     "[7EB] {reductions.7EA.montant} [7ED] {reductions.7EC.montant} [7EG] {reductions.7EF.montant}",
     "moitié de l'autre parent"},
    {"U_ENFANTS_ACHARGE.1", Genre::Somme, "[7EA] + [7EC] + [7EF]"},
    {"U_ENFANTS_ALTERNE.1", Genre::Somme, "[7EB] + [7ED] + [7EG]"},
    {"D_ENFANTS_CESU.1", Genre::Choix, "[7DB]"},
    {"D_FRAIS_GARDE_ACHARGE.1", Genre::Somme, "[7GA] + [7GB] + [7GC] + [7GD]"},
    {"D_FRAIS_GARDE_ALTERNE.1", Genre::Somme, "[7GE] + [7GF] + [7GG] + [7GM]"},
    {"D_PV_NON_RESIDENT.1", Genre::Choix, "[3VE]"},
    {"D_SCR_NON_RESIDENT.1", Genre::Choix, "[3UV]"},
    {"D_PREV_RISQUE_TECH.1", Genre::Choix, "[7WR]"},
    {"D_CREDIT_HAB_PRIN_BBC.1", Genre::Choix, "[7VX]"},
    {"D_CREDIT_HAB_PRIN_2010N.1", Genre::Choix, "[7VV]"},
    {"D_CREDIT_HAB_PRIN_2011N.1", Genre::Choix, "[7VT]"},
    {"D_PRET_ETUDIANTS_1.1", Genre::Choix, "[7UK]"},
    {"D_PRET_ETUDIANTS_2.1", Genre::Choix, "[7TD]"},
    {"D_CREDIT_7UQ.1", Genre::Choix, "[7UQ]"},
    {"D_CREDIT_7UI.1", Genre::Choix, "[7UI]"},
    {"D_MECENAT.1", Genre::Choix, "[7US]"},
    {"D_ACQ_BIENS_CULTURELS.1", Genre::Choix, "[7UO]"},
    {"D_AIDE_RISQUE_TECHNO.1", Genre::Choix, "[7WL]"},
    {"D_RESTI_TAXE_ADD_DROIT_BAIL", Genre::Taux, "[4TQ] {credits.4TQ.taux}"},
    {"CO_3WR", Genre::Choix, "[3WR]"},
    {"CO_3WS", Genre::Choix, "CO_3WS.2"},
    {"D_AIDE_PERS_AGEES.1", Genre::Choix, "[7WJ]"},
};

/// The reference income: the French net income or the worldwide one, what is exempt, taxed apart or saved, and capital
/// income as the option taxes it.
inline constexpr Formule revenuNet[] = {"TOT_R_BRUT - RD_PV_BAREME - CHARGES - ABAT", "TOT_R_MONDIAL - RD_PV_BAREME"};
inline constexpr Formule horsRevenuNet =
    "RR_BAM + REV_REF_EE + REV_REF_DH + REV_REF_FA + REV_REF_REV_EXO + REV_REF_BA_EXO + REV_REF_BIC_EXO + "
    "REV_REF_BNC_EXO + REV_REF_IMPATRIES_EXO + C_COT_PERP_V + C_COT_PERP_C + C_COT_PERP_E + RF_PLUS + RF_INVENTEURS + "
    "REV_REF_1AT + [1UZ] + [1VZ] + [3VG] + [3SG] + [3UA] + [3SL] + [3VA] + [3VQ] - [3VH] - [3VR] + [3VD] + [3VI] + "
    "[3VF] "
    "+ [3SJ] + [3SK] + [3VM] + [3VT] + [3PI] + [3VC] + [3SE] + [3WE] + [3WI] + [3WJ] + [3WN] + [3TZ] + [3VZ]";
inline constexpr Formule capitauxAuBareme = "RD_MOB_DEMI_BASE";
inline constexpr Formule capitauxAuForfait =
    "RD_MOB_DEMI_BASE_2FU + [2DC] + [2CH2] + [2CH3] + [2TS2] + [2TR] + [2TT] + [2GO]";

}  // namespace kv::regles
