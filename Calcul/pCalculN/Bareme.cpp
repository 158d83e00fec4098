#include "Calcul/pCalculN/Bareme.h"

#include <algorithm>

#include "Calcul/pCalculN/Contexte.h"
#include "Calcul/pCalculN/Etapes.h"

// The progressive scale, the cap on the family quotient, the tax on exceptional income (CGI art. 197 and 163-0 A).

namespace kv {

ImpotBareme AppliqueBareme(const Bareme& bareme, std::int32_t revenu, std::int32_t parts) {
    const double quotient = dDiv(revenu, dDiv(parts, 100.0));
    std::size_t i = 0;
    for (std::size_t k = 0; k < 4; ++k)
        if (bareme[k].Basse < quotient && quotient <= bareme[k].Haute) i = k;
    if (i == 0 && quotient > bareme[4].Basse) i = 4;
    const TrancheBareme& tranche = bareme[i];
    const double impot = dDiv(dMul(revenu, tranche.Taux), 10000.0) - dDiv(dMul(tranche.Constante, parts), 100.0);
    return {nArrondi(impot), nArrondi(tranche.Taux)};
}

namespace {

class ImpotBrut : Travail {
  public:
    explicit ImpotBrut(Contexte& c) : Travail(c) {}
    void CalculImpot();
    void TauxMarginal();

  private:
    std::int32_t RevenuAuBareme() const { return faits.avec8TM ? E["8TM"] : nPositif(S["TOT_R_IMPOS"]); }
    void Ligne(CaseSortie ligne, std::int32_t revenu, std::int32_t parts);
    void CalculeBareme(std::int32_t revenu);
    void PlafondQuotientFamilial(std::int32_t base, std::int32_t parts);
    std::int32_t PlafondDesDemiParts(std::int32_t base, std::int32_t parts) const;
    std::int32_t DemiPartsComplementaires() const;
    void RetientLImpot(std::int32_t plafonne);
    void ImpotDesRevenusAuQuotient();
};

// A tax line: parts, income taxed and marginal rate in the columns.
void ImpotBrut::Ligne(CaseSortie ligne, std::int32_t revenu, std::int32_t parts) {
    const ImpotBareme resultat = AppliqueBareme(contexte.commun.bareme, revenu, parts);
    lignes.Ecrit(ligne) = {resultat.impot, {parts, revenu, resultat.tauxMarginal}};
}

void ImpotBrut::CalculeBareme(std::int32_t revenu) {
    const std::int32_t base = S["F_NB_PARTS_ISO"], parts = S["F_NB_PARTS_ALL"];
    const bool partsEnPlus = (base == 100 && parts > 100) || (base == 200 && parts > 200);

    Ligne("I_IMP_NORM", revenu, parts);
    if (partsEnPlus) {
        Ligne("I_IMP_SIMP", revenu, base);
        PlafondQuotientFamilial(base, parts);
        lignes.Copie("I_BAREME", "I_IMP_RETENU");
    } else {
        const bool avecQuotient = S["I2_IMP_NORM"] + S["I2_IMP_SIMP"] + S["I2_PLAF_FAM"] > 0;
        const CaseSortie modele = avecQuotient ? CaseSortie("I2_IMP_NORM") : CaseSortie("I_IMP_NORM");
        S["I_IMP_RETENU"] = S["I_IMP_NORM"];
        C1["I_IMP_RETENU"] = C1[modele];
        C2["I_IMP_RETENU"] = revenu;
        C3["I_IMP_RETENU"] = C3[modele];
        lignes.Copie("I_BAREME", "I_IMP_NORM");
    }
    C1["I_BAREME"] = 0;
    C2["I_BAREME"] = revenu;
    if (S["I_BAREME"] > 0) S["SEPAR_IMPOT"] = 1;
}

// What the half parts beyond the base parts may save at most.
std::int32_t ImpotBrut::PlafondDesDemiParts(std::int32_t base, std::int32_t parts) const {
    const std::int32_t extra = parts - base;
    const bool parentIsole = (E["C"] == 1 || E["D"] == 1 || (E["V"] == 1 && E["Fm"] + E["Jm"] == 0)) &&
                             E["Fm"] + E["Jm"] + E["Hm"] > 0 && E["T"] == 1;
    if (base == 100 && parts == 150 && E["L"] == 1 && E["P"] == 0 && E["Gp"] == 0 && E["W"] == 0)
        return loi["quotientFamilial.plafond.seul"];
    const std::int32_t demiPart = loi["quotientFamilial.plafond.demiPart"];
    const std::int32_t isole = loi["quotientFamilial.plafond.parentIsole"];
    if (parentIsole && extra < 100) return nProrata(isole, extra, 100);
    if (parentIsole) return nTronque(isole + dDiv(dMul(demiPart, extra - 100), 50));
    return nTronque(dDiv(dMul(demiPart, extra), 50));
}

// The half parts that give the complementary reduction, in tenths.
std::int32_t ImpotBrut::DemiPartsComplementaires() const {
    std::int32_t demiParts = E["P"] + E["Fp"];
    if (demiParts == 0) {
        demiParts = E["S"];
        if (S["F_NB_CHARGE"] == 0) demiParts = std::min(demiParts + (E["W"] != 0 ? 1 : 0) + E["Gp"], 1);
    }
    demiParts += E["Gm"] + E["Rm"];
    return 10 * demiParts + 5 * E["Im"];
}

// The advantage of the half parts beyond the base parts is capped (CGI art. 197 I-2), with a complementary reduction
// for some half parts and an adjustment for widowed parents.
void ImpotBrut::PlafondQuotientFamilial(std::int32_t base, std::int32_t parts) {
    const std::int32_t plafond = PlafondDesDemiParts(base, parts);
    S["I_PLAF_FAM"] = plafond;
    Detail["I_PLAF_FAM"] = Texte::Nombre(plafond);
    C1["I_NEUT_PLAF_FAM"] = DemiPartsComplementaires();

    const std::int32_t normal = S["I_IMP_NORM"];
    const std::int32_t plafonne = S["I_IMP_SIMP"] - plafond;
    const std::int32_t complement =
        nDiv((loi["quotientFamilial.plafond.demiPartMajoree"] - loi["quotientFamilial.plafond.demiPart"]) *
                 C1["I_NEUT_PLAF_FAM"],
             10);
    S["I_NEUT_PLAF_FAM"] = plafonne - complement >= normal ? complement : plafonne > normal ? plafonne - normal : 0;

    const bool veufAvecCharge = base == 100 && E["V"] == 1 && E["Fm"] + E["Rm"] + E["Jm"] + E["Hm"] >= 1;
    const std::int32_t marge = plafonne - S["I_NEUT_PLAF_FAM"] - normal;
    S["I_AJUST_PLAF_FAM"] = veufAvecCharge && marge > 0 ? std::min(loi["quotientFamilial.veuf"], marge) : 0;
    RetientLImpot(plafonne);
}

// The larger of the capped tax and the tax of all parts. With exceptional income, the figures that include it say which
// of the two the columns show.
void ImpotBrut::RetientLImpot(std::int32_t plafonne) {
    const std::int32_t normal = S["I_IMP_NORM"];
    const bool avecQuotient = SommeS({"I2_IMP_NORM", "I2_IMP_SIMP", "I2_PLAF_FAM", "I2_NEUT_PLAF_FAM"}) > 0;
    const bool simple =
        avecQuotient
            ? S["I2_IMP_SIMP"] - S["I2_PLAF_FAM"] - S["I2_NEUT_PLAF_FAM"] - S["I2_AJUST_PLAF_FAM"] >= S["I2_IMP_NORM"]
            : plafonne - S["I_NEUT_PLAF_FAM"] - S["I_AJUST_PLAF_FAM"] >= normal;
    const CaseSortie modele = simple ? CaseSortie("I_IMP_SIMP") : CaseSortie("I_IMP_NORM");
    S["I_IMP_RETENU"] = std::max(plafonne, normal);
    C1["I_IMP_RETENU"] = C1[modele];
    C2["I_IMP_RETENU"] = C2["I_IMP_NORM"];
    C3["I_IMP_RETENU"] = C3[modele];
    lignes.Soustrait("I_IMP_RETENU", "I_NEUT_PLAF_FAM");
    lignes.Soustrait("I_IMP_RETENU", "I_AJUST_PLAF_FAM");
}

void ImpotBrut::CalculImpot() {
    S["I_QUOT"] = 0;
    CalculeBareme(RevenuAuBareme());
    if (S["QUOTIENT"] > 0) ImpotDesRevenusAuQuotient();
    C1["I_NEUT_PLAF_FAM"] = 0;
    S["TOT_IMPOT"] = S["I_BAR_QUOT"] = S["I_BAREME"] + S["I_QUOT"];
    S["DEF_A_REPORT"] = S["TOT_R_BRUT"] < 0 ? S["TOT_R_BRUT"] + E["2FA"] : 0;
}

// Each exceptional amount is divided by its coefficient; what the quotients add to the tax is multiplied back.
void ImpotBrut::ImpotDesRevenusAuQuotient() {
    const std::int32_t impotOrdinaire = S["I_BAREME"];
    S["I_BASES_QN"] = 0;
    for (ItemQuotient& item : memoire.quotients) {
        item.base = nPlancher(dDiv(item.montant, Diviseur(item.coefficient)));
        S["I_BASES_QN"] += item.base;
    }
    S["I_BASES"] = S["I_BASES_QN"];
    S["I_BAREME_REV"] = RevenuAuBareme();
    // The bases come on top of the income before it is bounded at 0.
    CalculeBareme(faits.avec8TM ? E["8TM"] + S["I_BASES"] : nPositif(S["TOT_R_IMPOS"] + S["I_BASES"]));

    struct Copie {
        CaseSortie vers, de;
    };
    static constexpr Copie avecQuotient[] = {
        {"I2_IMP_NORM", "I_IMP_NORM"},           {"I2_IMP_SIMP", "I_IMP_SIMP"},
        {"I2_PLAF_FAM", "I_PLAF_FAM"},           {"I_BQ_TOUS", "I_IMP_RETENU"},
        {"I2_NEUT_PLAF_FAM", "I_NEUT_PLAF_FAM"}, {"I2_AJUST_PLAF_FAM", "I_AJUST_PLAF_FAM"},
    };
    for (const auto& [vers, de] : avecQuotient) lignes.Copie(vers, de);
    C1["I2_NEUT_PLAF_FAM"] = 0;

    S["I_PART_QUO_N"] = S["I_QUO_N"] = 0;
    S["I_PART_QN_APP"] = S["I_BAREME"] - impotOrdinaire;
    for (const ItemQuotient& item : memoire.quotients) {
        const std::int32_t part = nProrata(S["I_PART_QN_APP"], item.base, S["I_BASES"]);
        S["I_PART_QUO_N"] += part;
        S["I_QUO_N"] += nArrondi(dMul(part, Diviseur(item.coefficient)));
    }
    C2["I_QUOT"] = S["I_PART_QN_APP"];
    S["I_QUOT"] = S["I_QUO_N"];
    CalculeBareme(
        RevenuAuBareme());  // the figures with the exceptional income now steer the columns of the retained tax
}

void ImpotBrut::TauxMarginal() {
    const std::int32_t taux = C3["I_IMP_RETENU"] != 0 ? C3["I_IMP_RETENU"] : C3["I_BAREME"];
    const std::int32_t retenu = memoire.tauxMarginalFige > 0 ? memoire.tauxMarginalFige : taux;
    S["TAUX_MARGINAL_3"] = retenu;
    if (faits.resident) {
        S["TAUX_MARGINAL_2"] = retenu;
        Detail["TAUX_MARGINAL_2"] = Texte::Taux(retenu);
    }
}

}  // namespace

void CalculImpot(Contexte& c) { ImpotBrut(c).CalculImpot(); }
void TauxMarginal(Contexte& c) { ImpotBrut(c).TauxMarginal(); }

}  // namespace kv
