#include <algorithm>

#include "Calcul/cCalcul/Transferts.h"
#include "Calcul/pCalculN/Bareme.h"
#include "Calcul/pCalculN/Contexte.h"
#include "Calcul/pCalculN/Etapes.h"

// Summary indicators, once the tax is known: the global deficit carried to later years, the average rate, the income
// taxed at the marginal rate, the margin before the next bracket; the wealth-tax figures that the host supplies.

namespace kv {

namespace {

// A rate of the scale in percent.
double Taux(const TrancheBareme& tranche) { return dDiv(tranche.Taux, 100.0); }

class Indicateurs : Travail {
  public:
    explicit Indicateurs(Contexte& c) : Travail(c) {}
    void Reports();
    void TauxImposMoyen();
    void ImposTxMarginal();
    void ImposTrancheSup();
    void Calcul_ISF();

  private:
    bool BaremeSeul() const;
    std::size_t TrancheMarginale() const;
    std::int32_t AvantagePlafonne() const;
    bool ToutesLesParts() const;
    double RevenuDEgalite(const TrancheBareme& plafonnee, const TrancheBareme& toutesLesParts) const;

    const Bareme& bareme = contexte.commun.bareme;
};

void Indicateurs::Reports() {
    if (S["DEF_A_REPORT"] < 0) S["NP1_GLOBAL_ANN"] = nPositif(-S["DEF_A_REPORT"] - S["RD_DEFICIT"]);
    S["NP1_GLOBAL_ANT"] = SommeE({"6FA", "6FB", "6FC", "6FD", "6FE", "6FL"});
    S["NP1_GLOBAL_IMP"] =
        nPositif(std::min(S["NP1_GLOBAL_ANT"] + S["NP1_GLOBAL_ANN"], S["TOT_R_BRUT"] + S["RD_DEFICIT"]));
    // The oldest year's deficit lapses when it is not used.
    S["NP1_GLOBAL_PER"] = std::min(nPositif(E["6FA"] - S["NP1_GLOBAL_IMP"]), E["6FA"]);
    S["NP1_GLOBAL"] = S["NP1_GLOBAL_ANT"] + S["NP1_GLOBAL_ANN"] - S["NP1_GLOBAL_IMP"] - S["NP1_GLOBAL_PER"];
}

void Indicateurs::TauxImposMoyen() {
    if (S["TOT_PAYER"] <= 0 || !faits.resident) return;

    const std::int32_t tauxDeductible = EnVigueur("csg.capital.deductible");
    const std::int32_t deductions = SommeS({"C_ENFANTS_1", "C_ENFANTS_2", "C_JUSTICE", "C_AUTRE", "C_CSG",
                                            "C_COT_PERP_V", "C_COT_PERP_C", "C_COT_PERP_E"});
    const std::int32_t commun =
        SommeS({"TOT_R_BRUT", "RR_BAM", "RD_MOB_ABAT", "RN_PEN_ABAT", "RF_PLUS", "RF_INVENTEURS", "RD_MOB_DEMI_BASE",
                "RF_PENSIONS", "RF_CESS_3VT", "RF_3PI", "RF_GAINS_18", "RF_GAINS_30", "RF_GAINS_40", "RF_GAINS_22_5",
                "RF_GAINS_BSPCE_19", "RF_GAINS_BSPCE_30", "RQ_GAINS"}) +
        SommeE({"3WI", "3WJ", "3WP", "5QM", "5RM"}) - deductions;
    const auto impotAvecPrelevement = [&](std::int32_t prelevement) {
        return nPositif(nAuTaux(prelevement, loi["assuranceVie.taux"]) + S["TOT_PAYER"] + E["2CK"] - E["8TF"] -
                        E["8TP"]);
    };
    std::int32_t revenu = 0, impot = 0;
    if (faits.selonLaDeclaration) {
        revenu = commun + S["RF_2FA"] + E["2DH"] - nAuTaux(E["2BH"], tauxDeductible);
        impot = impotAvecPrelevement(E["2DH"]);
    } else if (E["PFU"] != 0) {
        revenu = commun +
                 SommeE({"2FA", "2DH1", "2DH2", "2DH3", "2EE2", "2DC", "2CH2", "2CH3", "2TS2", "2TR", "2TT", "2GO",
                         "3SJ2", "3VG", "3UA", "3SB", "3SZ"}) -
                 nAuTaux(memoire.revenusDejaSoumis, tauxDeductible);
        impot = impotAvecPrelevement(E["2DH1"]);
    } else if (E["BAR"] != 0) {
        revenu = commun + E["2DH1"] - nAuTaux(E["2BH"], tauxDeductible);
        impot = impotAvecPrelevement(E["2DH1"]);
    }
    S["TAUX_IMPOS_MOY"] = nPositif(nArrondi(dMul(dMul(dDiv(impot, revenu), 100.0), 100.0)));
    Detail["TAUX_IMPOS_MOY"] = Texte::Taux(S["TAUX_IMPOS_MOY"]);
}

// The two steps below say nothing of a household whose tax does not come from the scale alone.
bool Indicateurs::BaremeSeul() const { return faits.resident && E["8TK"] == 0 && IndicateurEtranger(E.Toutes()) == 0; }

// The first bracket with the marginal rate.
std::size_t Indicateurs::TrancheMarginale() const {
    for (std::size_t i = 0; i < bareme.size(); ++i)
        if (nArrondi(bareme[i].Taux) == S["TAUX_MARGINAL_2"]) return i;
    return 0;
}

// What the cap on the family quotient takes off the tax of the base parts.
std::int32_t Indicateurs::AvantagePlafonne() const {
    const bool demiParts =
        SommeE({"P", "Fp", "Gm", "Rm", "Im"}) > 0 || E["S"] > 0 || (S["F_NB_CHARGE"] == 0 && E["W"] != 0);
    const bool veuf = S["F_NB_PARTS_ISO"] == 100 && E["V"] == 1 && SommeE({"Fm", "Rm", "Jm", "Hm"}) >= 1;
    const std::int32_t complement =
        loi["quotientFamilial.plafond.demiPartMajoree"] - loi["quotientFamilial.plafond.demiPart"];
    return (demiParts ? complement : 0) + (veuf ? loi["quotientFamilial.veuf"] : 0) +
           (S["I_BQ_TOUS_REV"] > 0 ? S["I2_PLAF_FAM"] : S["I_PLAF_FAM"]);
}

// The tax retained is that of all parts, and not the capped one.
bool Indicateurs::ToutesLesParts() const {
    return S["I_BQ_TOUS_REV"] > 0 ? S["I_BQ_TOUS"] == S["I2_IMP_NORM"]
                                  : S["I_BQ_TOUS_REV"] == 0 && S["I_IMP_RETENU"] == S["I_IMP_NORM"];
}

// The income where the capped tax in one bracket meets the tax of all parts in another one.
double Indicateurs::RevenuDEgalite(const TrancheBareme& plafonnee, const TrancheBareme& toutesLesParts) const {
    const double iso = dDiv(S["F_NB_PARTS_ISO"], 100.0), toutes = dDiv(S["F_NB_PARTS_ALL"], 100.0);
    return dDiv(dMul(plafonnee.Constante, iso) + AvantagePlafonne() + dDiv(Taux(plafonnee), 100) -
                    dMul(toutesLesParts.Constante, toutes),
                dDiv(Taux(plafonnee) - Taux(toutesLesParts), 100));
}

void Indicateurs::ImposTxMarginal() {
    if (!BaremeSeul()) return;

    const std::int32_t revenu = RevenuDuPlafond(), partsIso = S["F_NB_PARTS_ISO"], partsToutes = S["F_NB_PARTS_ALL"];
    const std::size_t k = TrancheMarginale();
    const TrancheBareme& tranche = bareme[k];
    const auto auDela = [&](std::int32_t parts) {
        return nPositif(revenu - nArrondi(dMul(dMul(tranche.Basse, parts), 0.01)));
    };
    std::int32_t montant;
    if (partsToutes == partsIso || ToutesLesParts()) {
        montant = auDela(partsToutes);
    } else {
        const double iso = dDiv(partsIso, 100.0), toutes = dDiv(partsToutes, 100.0);
        montant = auDela(partsIso);
        for (std::size_t j = k; j-- > 1;) {
            const TrancheBareme& basse = bareme[j];
            const double x = RevenuDEgalite(tranche, basse);
            if (x <= dMul(basse.Basse, toutes) || x <= dMul(tranche.Basse, iso) || x >= dMul(tranche.Basse, toutes))
                continue;
            montant = nPositif(nArrondi(revenu - x));
            break;
        }
    }
    S["IMPOS_TAUX_MARGINAL"] = montant + S["TM_BA"];
    Detail["IMPOS_TAUX_MARGINAL"] = Texte::Nombre(S["IMPOS_TAUX_MARGINAL"]);
}

void Indicateurs::ImposTrancheSup() {
    if (!BaremeSeul()) return;

    const std::int32_t revenu = RevenuDuPlafond(), partsIso = S["F_NB_PARTS_ISO"], partsToutes = S["F_NB_PARTS_ALL"];
    const std::size_t k = TrancheMarginale();
    const TrancheBareme& tranche = bareme[k];
    const auto jusquA = [&](std::int32_t parts) {
        return nPositif(nArrondi(dMul(dMul(tranche.Haute, parts), 0.01)) - revenu);
    };
    const bool partsDeBase = partsToutes == partsIso ||
                             (S["I_BQ_TOUS_REV"] > 0 && S["I_BQ_TOUS"] != S["I2_IMP_NORM"]) ||
                             (S["I_BQ_TOUS_REV"] == 0 && S["I_IMP_RETENU"] != S["I_IMP_NORM"]);
    std::int32_t marge;
    if (partsDeBase) {
        marge = jusquA(partsIso);
    } else {
        const double iso = dDiv(partsIso, 100.0), toutes = dDiv(partsToutes, 100.0);
        marge = jusquA(partsToutes);
        for (std::size_t j = k + 1; j < bareme.size(); ++j) {
            const TrancheBareme& haute = bareme[j];
            const double x = RevenuDEgalite(haute, tranche);
            if (x <= dMul(tranche.Haute, iso) || x >= dMul(tranche.Haute, toutes)) continue;
            if (j < 4 && x >= dMul(haute.Haute, iso)) continue;  // the last bracket has no upper bound
            marge = nPositif(nArrondi(x - revenu));
            break;
        }
    }
    S["IMPOS_TRANCHE_SUP"] = marge;
    Detail["IMPOS_TRANCHE_SUP"] = Texte::Nombre(marge);
}

void Indicateurs::Calcul_ISF() {
    struct LigneISF {
        CaseSortie sortie;
        CaseEntree valeur;
        CaseEntree base = {};
        Parametre taux = {};
        bool pourcentEntier = false;  // column 3 shows a whole percent, or hundredths of one
    };
    static constexpr LigneISF lignesISF[] = {
        {"ISF_PATRIMOINE", "HI"},
        {"ISF_IMPOTSOLIDFORTUNE", "ST"},
        {"ISF_AVANT_REDUC", "LM"},
        {"ISF_TRANCHE_1", "M1", "T1", "isf.tranche1.taux"},
        {"ISF_TRANCHE_2", "M2", "T2", "isf.tranche2.taux"},
        {"ISF_TRANCHE_3", "M3", "T3", "isf.tranche3.taux"},
        {"ISF_TRANCHE_4", "M4", "T4", "isf.tranche4.taux"},
        {"ISF_TRANCHE_5", "M5", "T5", "isf.tranche5.taux"},
        {"ISF_TRANCHE_6", "M6", "T6", "isf.tranche6.taux"},
        {"ISF_DECOTE", "DECOT"},
        {"ISF_REDUC", "REDUC"},
        {"ISF_PME_DIRECT", "CRNE", "NE", "isf.pme.taux", true},
        {"ISF_PME_STE", "CRNF", "NF", "isf.pme.taux", true},
        {"ISF_PME_FIP", "CRMX", "MX", "isf.pme.taux", true},
        {"ISF_PME_FCPI", "CRNA", "NA", "isf.pme.taux", true},
        {"ISF_DONS_FRANCE", "CRNC", "NC", "isf.dons.taux", true},
        {"ISF_DONS_ETRANGER", "CRNG", "NG", "isf.dons.taux", true},
        {"ISF_AVANT_PLAF", "NP"},
        {"ISF_PLAF", "PV"},
        {"ISF_APRES_PLAF", "QR"},
        {"ISF_PAYE_ETRANGER", "RS"},
        {"ISF_A_PAYER", "ST"},
    };
    std::int32_t total = 0;
    for (const LigneISF& ligne : lignesISF) {
        S[ligne.sortie] = E[ligne.valeur];
        if (ligne.base)
            lignes.BaseEtTaux(ligne.sortie, E[ligne.base], nDiv(loi[ligne.taux], ligne.pourcentEntier ? 100 : 1));
        if (ligne.sortie != "ISF_PATRIMOINE") total += S[ligne.sortie];
    }
    if (total > 0) S["SEPAR_ISF"] = S["SAUT_PAGE_ISF"] = 1;
}

}  // namespace

void Reports(Contexte& c) { Indicateurs(c).Reports(); }
void TauxImposMoyen(Contexte& c) { Indicateurs(c).TauxImposMoyen(); }
void ImposTxMarginal(Contexte& c) { Indicateurs(c).ImposTxMarginal(); }
void ImposTrancheSup(Contexte& c) { Indicateurs(c).ImposTrancheSup(); }
void Calcul_ISF(Contexte& c) { Indicateurs(c).Calcul_ISF(); }

}  // namespace kv
