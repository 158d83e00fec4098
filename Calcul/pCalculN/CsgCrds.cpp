#include <algorithm>

#include "Calcul/pCalculN/Contexte.h"
#include "Calcul/pCalculN/Etapes.h"

// Social levies on property, capital and other income that the assessment collects (CGI art. 1600-0 C and following;
// code de la sécurité sociale, art. L136-6).

namespace kv {

namespace {

// A levy on income that bore none at source.
struct LigneCsg {
    CaseSortie sortie;
    CaseEntree box;
    ParametreAnnuel taux;
};
constexpr LigneCsg lignesCsg[] = {
    {"S_E_CSG_1", "8TQ", "csg.activite"},     {"S_E_CSG_8", "8SC", "csg.activite"},
    {"S_E_CSG_9", "8SW", "csg.remplacement"}, {"S_E_CSG_10", "8SX", "csg.tauxReduit"},
    {"S_E_CSG_2", "8TV", "csg.pensions"},     {"S_E_CSG_3", "8TW", "csg.remplacement"},
    {"S_E_CSG_4", "8TX", "csg.tauxReduit"},   {"S_E_CSG_5", "8TR", "csg.activite"},
    {"S_E_CSG_11", "8PH", "csg.8PH"},         {"S_E_CSG_6", "8SA", "csg.pensions"},
    {"S_E_CSG_7", "8SB", "csg.tauxReduit"},
};

// The part of it that is deductible next year.
struct PartDeductible {
    CaseEntree box;
    ParametreAnnuel taux;
};
constexpr PartDeductible partsDeductibles[] = {
    {"8TR", "csg.activite.deductible"}, {"8PH", "csg.8PH.deductible"},          {"8TQ", "csg.activite.deductible"},
    {"8SC", "csg.activite.deductible"}, {"8SW", "csg.remplacement.deductible"}, {"8SX", "csg.tauxReduit.deductible"},
    {"8TV", "csg.pensions.deductible"}, {"8TW", "csg.remplacement.deductible"}, {"8TX", "csg.tauxReduit.deductible"},
};

// Long-term business gains, less the losses that come off each.
struct GainProfessionnel {
    CaseEntree gain;
    CaseEntree perte = {};
};
constexpr GainProfessionnel gainsProfessionnels[] = {
    {"5HX", "5XN"}, {"5HE"}, {"5KQ", "5KR"}, {"5KE"}, {"5NQ", "5NR"}, {"5NE"}, {"5HR", "5HS"}, {"5QD"},
    {"5KV", "5KW"}, {"5SO"}, {"5IX", "5YN"}, {"5IE"}, {"5LQ", "5LR"}, {"5LE"}, {"5OQ", "5OR"}, {"5OE"},
    {"5IR", "5IS"}, {"5RD"}, {"5LV", "5LW"}, {"5NT"}, {"5JX", "5ZN"}, {"5JE"}, {"5MQ", "5MR"}, {"5ME"},
    {"5PQ", "5PR"}, {"5PE"}, {"5JR", "5JS"}, {"5SD"}, {"5MV", "5MW"}, {"5OT"},
};

// A base that is foreign in part.
struct PartEtrangere {
    CaseSortie part;
    CaseEntree box;
    CaseSortie base;
};
constexpr PartEtrangere partsEtrangeres[] = {
    {"S_B_RCM_Etranger", "8TKA", "S_B_REV_MOB"},
    {"S_B_REV_FON_Etranger", "8TKB", "S_B_REV_FON"},
    {"S_B_PG_DIVERS_ETR", "8TKD", "S_B_PG_DIVERS"},
    {"S_B_RENTES_ETR", "8TKC", "S_B_RENTES"},
    {"S_B_LM_ETR", "8TKE", "S_B_LM"},
    {"S_B_PLUS_VALUES_ETR", "8TKF", "S_B_PLUS_VALUES"},
};

class PrelevementsSociaux : Travail {
  public:
    explicit PrelevementsSociaux(Contexte& c) : Travail(c) {}
    void CSG_CRDS();

  private:
    void BaseSociale(CaseSortie base, std::int32_t montant);
    std::int32_t BaseMeubles() const;
    void BasesResident();
    std::int32_t BaseMobiliers() const;
    void PrelevementsCapital();
    void CsgDeductible();
    void CsgSansRetenue();
    void GainsSalaries();
    void Ligne(CaseSortie sortie, std::size_t colonne, std::int32_t taux, std::int32_t base);
};

void PrelevementsSociaux::CSG_CRDS() {
    BaseSociale("S_B_REV_FON", nPositif(S["RD_FON"]));
    BaseSociale("S_B_BENEF", nPositif(SommeE({"5HY", "5IY", "5JY"})));
    lignes.Totalise("S_B_DEJA_SOUMIS");
    BaseSociale("S_B_LM", BaseMeubles());
    if (faits.resident) BasesResident();
    PrelevementsCapital();
    if (faits.resident) {
        CsgDeductible();
        CsgSansRetenue();
        GainsSalaries();
    }
    static constexpr CaseSortie prelevements[] = {"S_CONTR_SOC", "S_CONTR_SAL", "S_CONTR_CARRIED", "S_CSG_CRDS_ETR",
                                                  "S_CSG_CRDS_SAL"};
    S["S_A_PAYER"] = 0;
    for (const CaseSortie prelevement : prelevements) S["S_A_PAYER"] += S[prelevement];
    if (S["S_BASES"] + S["S_A_PAYER"] != 0) S["SEPAR_CSG"] = 1;
}

// A base: the same for the three levies.
void PrelevementsSociaux::BaseSociale(CaseSortie base, std::int32_t montant) {
    lignes.Ecrit(base) = {montant, {montant, montant, montant}};
}

// Furnished letting, less what already bore the levies.
std::int32_t PrelevementsSociaux::BaseMeubles() const {
    const std::int32_t ventes = nAuTaux(SommeE({"5NJ", "5OJ", "5PJ"}), loi.Complement("micro.ventes.abattement"));
    const std::int32_t services = nAuTaux(SommeE({"5NW", "5OW", "5PW"}), loi.Complement("micro.services.abattement"));
    struct Meuble {
        CaseEntree aSoumettre, dejaSoumis;
    };
    static constexpr Meuble avecCentre[nPersonnes] = {{"5NA", "5NM"}, {"5OA", "5OM"}, {"5PA", "5PM"}};
    static constexpr Meuble sansCentre[nPersonnes] = {{"5NK", "5KM"}, {"5OK", "5LM"}, {"5PK", "5MM"}};

    std::int32_t dejaSoumis = ventes + services, declares = ventes + services;
    for (std::size_t k = 0; k < nPersonnes; ++k) {
        const auto part = [&](const Meuble& m, CaseSortie resultat) {
            dejaSoumis += nProrata(C[k][resultat], E[m.dejaSoumis], E[m.aSoumettre] + E[m.dejaSoumis]);
            declares += E[m.dejaSoumis];
        };
        part(avecCentre[k], "RR_BIC_NP_LM_AVEC_CGA");
        part(sansCentre[k], "RR_BIC_NP_LM_SANS_CGA");
    }
    const std::int32_t resultat = S["RR_BIC_NP_LM"] - S["RR_BIC_NP_LM_MAJO"];
    const std::int32_t impute = S["RR_BIC_NP_LM_DEF_IMP"];
    return nPositif(resultat - dejaSoumis + nProrata(impute, declares, resultat + impute));
}

std::int32_t PrelevementsSociaux::BaseMobiliers() const {
    const std::int32_t base = nPositif(memoire.baseMobiliersSociale) + E["2DM"];
    if (faits.forfait)
        return base + SommeE({"2DC", "2CH2", "2CH3", "2DH2", "2DH3", "2TS2", "2EE2", "2TR", "2TT", "2FA", "2GO"});
    return faits.bareme ? base : base + E["2FA"];
}

void PrelevementsSociaux::BasesResident() {
    BaseSociale("S_B_REV_MOB", BaseMobiliers());
    BaseSociale("S_B_PG_DIVERS", nPositif(GainsMobiliersNets()) +
                                     SommeE({"3VD", "3VI", "3VF", "3VJ", "3VK", "3SJ", "3SK", "1TZ", "1UZ", "1VZ",
                                             "3VM", "3VT", "3PI", "3WE", "3WI", "3WJ", "3WN", "3UZ"}));
    BaseSociale("S_B_RENTES", nPositif(S["RD_RENTES"]));
    std::int32_t gains = 0;
    for (const GainProfessionnel& g : gainsProfessionnels)
        gains += g.perte ? nPositif(E[g.gain] - E[g.perte]) : E[g.gain];
    BaseSociale("S_B_PLUS_VALUES", nPositif(gains));
    BaseSociale("S_B_PV_RETRAITE", nPositif(E["5HG"] + E["5IG"]));
    for (const PartEtrangere& p : partsEtrangeres) BaseSociale(p.part, std::min<std::int32_t>(E[p.box], S[p.base]));
    BaseSociale("S_B_CSG_CRDS", faits.forfait ? memoire.revenusDejaSoumis + memoire.revenusDejaSoumisReste
                                              : std::min<std::int32_t>(E["2CG"] + E["2BH"], S["S_B_REV_MOB"]));
}

// One base, three rates; deferred gains bear the lower CSG of their year.
void PrelevementsSociaux::PrelevementsCapital() {
    std::int32_t base = SommeS({"S_B_REV_FON", "S_B_BENEF", "S_B_LM"});
    std::int32_t differes = 0;
    if (faits.resident) {
        base += SommeS({"S_B_REV_MOB", "S_B_PG_DIVERS", "S_B_RENTES", "S_B_PLUS_VALUES", "S_B_PV_RETRAITE"}) -
                S["S_B_CSG_CRDS"];
        for (const PartEtrangere& p : partsEtrangeres) base -= S[p.part];
        differes = SommeE({"3WI", "3WJ", "3WN"});
    }
    for (Colonne& colonne : C) colonne["S_BASES"] = base;
    S["S_BASES"] = nPositif(C1["S_BASES"] + (C2["S_BASES"] - differes) + C3["S_BASES"]);
    if (S["S_BASES"] == 0 && differes == 0) return;

    const std::int32_t prelevements = loi["prelevementsSociaux.prelevements"], csg = loi["prelevementsSociaux.csg"],
                       crds = loi["prelevementsSociaux.crds"];
    C1["S_TAUX"] = prelevements;
    C2["S_TAUX"] = csg;
    C3["S_TAUX"] = crds;
    lignes.Totalise("S_TAUX");
    C1["S_CONTR_SOC"] = nAuTaux(base, prelevements);
    C2["S_CONTR_SOC"] =
        nAuTaux(nPositif(base - differes), csg) + nAuTaux(differes, loi["prelevementsSociaux.csgAnterieure"]);
    C3["S_CONTR_SOC"] = nAuTaux(base, crds);
    lignes.Totalise("S_CONTR_SOC");
    lignes.Copie("S_MONTANT", "S_CONTR_SOC");
    S["S_BASES"] = nProrata(S["S_CONTR_SOC"], 10000, S["S_TAUX"]);
    if (C2["S_BASES"] != 0 && differes != 0) C2["S_TAUX"] = 0;  // two rates apply
}

// The part of the levy on capital that next year's income is reduced by; none of a levy that is below 0.
void PrelevementsSociaux::CsgDeductible() {
    if (S["S_BASES"] < 0) return;
    const bool bareme = faits.bareme, forfait = faits.forfait;
    std::int32_t base = SommeS({"S_B_REV_FON", "S_B_RENTES", "S_B_BENEF", "S_B_LM"}) -
                        SommeS({"S_B_REV_FON_Etranger", "S_B_RCM_Etranger", "S_B_RENTES_ETR", "S_B_LM_ETR",
                                "S_B_PG_DIVERS_ETR", "S_B_CSG_CRDS"});
    if (forfait)
        base = nPositif(base + SommeE({"2FU", "2CH1", "2TS1"}));
    else
        base += S["S_B_REV_MOB"];
    std::int32_t gains = E["1TZ"];
    if (!forfait && GainsMobiliersNets() >= 1)
        gains += std::min(SommeE({"3VG", "3UA", "3SG", "3VQ"}) - E["3VR"], GainsMobiliersNets());
    if (bareme && !forfait) gains += E["3SJ2"];
    const std::int32_t taux = loi["prelevementsSociaux.deductible"];
    C2["S_DEDUC"] = nAuTaux(base, taux) + nAuTaux(gains, taux);
    lignes.Totalise("S_DEDUC");
}

// A levy of one column: rate in hundredths of a percent.
void PrelevementsSociaux::Ligne(CaseSortie sortie, std::size_t colonne, std::int32_t taux, std::int32_t base) {
    C[colonne][sortie] = nAuTaux(base, taux);
    lignes.Totalise(sortie);
    Detail[sortie] = Texte::TauxDeBase(taux, base);
}

void PrelevementsSociaux::CsgSansRetenue() {
    const std::int32_t baseCrds = SommeE({"8TR", "8PH", "8TQ", "8SC", "8SW", "8SX", "8TV", "8TW", "8TX", "8SA", "8SB"});
    const std::int32_t baseCasa = SommeE({"8SC", "8TV", "8SA"});
    Ligne("S_E_CRDS", 2, loi["prelevementsSociaux.crds"], baseCrds);
    Ligne("S_E_CASA", 2, loi["casa"], baseCasa);
    S["S_CSG_CRDS_ETR"] = S["S_E_CRDS"] + S["S_E_CASA"];
    for (const LigneCsg& l : lignesCsg) {
        Ligne(l.sortie, 1, EnVigueur(l.taux), E[l.box]);
        S["S_CSG_CRDS_ETR"] += S[l.sortie];
    }

    C2["S_E_CSG_4_NP1"] = 0;
    for (const PartDeductible& p : partsDeductibles) C2["S_E_CSG_4_NP1"] += nAuTaux(E[p.box], EnVigueur(p.taux));
    lignes.Totalise("S_E_CSG_4_NP1");
}

// Share gains taxed as salaries, gains subject to the employee contribution, carried interest.
void PrelevementsSociaux::GainsSalaries() {
    const std::int32_t gains = E["1TT"] + E["1UT"];
    Ligne("S_CRDS_SAL", 2, loi["prelevementsSociaux.crds"], gains);
    Ligne("S_CSG_SAL", 1, EnVigueur("csg.activite"), gains);
    C2["S_DEDUC_CSG_SAL"] = nAuTaux(gains, EnVigueur("csg.activite.deductible"));
    lignes.Totalise("S_DEDUC_CSG_SAL");
    S["S_CSG_CRDS_SAL"] = S["S_CRDS_SAL"] + S["S_CSG_SAL"];

    const auto contribution = [&](CaseSortie sortie, CaseSortie total, std::int32_t taux, std::int32_t base) {
        S[sortie] = S[total] = nAuTaux(base, taux);
        Detail[sortie] = Texte::TauxDeBase(taux, base);
    };
    contribution("S_S_GAINS_3VN_1TT_1UT", "S_CONTR_SAL", loi["gainsSalaries.contribution"],
                 SommeE({"3VN", "1TT", "1UT"}));
    contribution("S_S_CARRIED", "S_CONTR_CARRIED", loi["carriedInterest.contribution"], SommeE({"1NY", "1OY"}));
}

}  // namespace

void CSG_CRDS(Contexte& c) { PrelevementsSociaux(c).CSG_CRDS(); }

}  // namespace kv
