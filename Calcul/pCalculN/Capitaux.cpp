#include <algorithm>

#include "Calcul/pCalculN/Contexte.h"
#include "Calcul/pCalculN/Etapes.h"

// Capital and property income: investment income (CGI art. 158-3, 125-0 A), property income (CGI art. 14 to 33, 156
// I-3), agricultural and global deficits (CGI art. 156 I), income taxed at flat rates, flat levies already paid.

namespace kv {

namespace {

// The deficits of six earlier years on investment income, the oldest first, and where each is carried.
struct DeficitMobilier {
    CaseEntree box;
    CaseSortie report;
};
constexpr DeficitMobilier deficitsMobiliers[] = {
    {"2AA", {}},
    {"2AL", "NP1_REV_MOB_Nm5"},
    {"2AM", "NP1_REV_MOB_Nm4"},
    {"2AN", "NP1_REV_MOB_Nm3"},
    {"2AQ", "NP1_REV_MOB_Nm2"},
    {"2AR", "NP1_REV_MOB_Nm1"},
};

// What the household receives of investments, as the option taxes it, and the expenses on it.
struct Mobiliers {
    std::int32_t dividendes, assurance, autres, distribues, majores, prets, interets, assuranceVie;
    std::int32_t abattement;  // on life insurance
    std::int32_t frais;
};

class Capitaux : Travail {
  public:
    explicit Capitaux(Contexte& c) : Travail(c) {}
    void RevenusMobiliers();
    void RevenusFonciers();
    void RevenusDivers();
    void RevenusTauxForf();
    void PrelevLib();

  private:
    Mobiliers LitMobiliers() const;
    void MontantsMobiliers(const Mobiliers& m);
    void AbattementsEtFrais(const Mobiliers& m);
    void PartageFrais(const Mobiliers& m);
    void DeficitsMobiliers();
    std::int32_t DeficitDeLAnnee(const Mobiliers& m) const;
    void MobiliersMondiaux();
    void PrelevementLiberatoire(std::int32_t assuranceVie);
    void DeficitsFonciers(std::int32_t resultat, std::int32_t micro, std::int32_t abattement);
    void DeficitsAgricoles();
    void BasesProportionnelles();
    /// What the allowance takes off dividends.
    std::int32_t AbattementDividendes(std::int32_t dividendes) const {
        return nAuTaux(dividendes, loi["mobiliers.dividendes.abattement"]);
    }

    const std::int32_t m_plafondAssuranceVie = ParFoyer(loi["assuranceVie.abattement"]);
};

Mobiliers Capitaux::LitMobiliers() const {
    Mobiliers m{.dividendes = E["2DC"],
                .assurance = E["2TS"],
                .autres = E["2TR"],
                .distribues = E["2FU"],
                .majores = E["2GO"],
                .prets = E["2TT"],
                .interets = E["2FA"],
                .assuranceVie = E["2CH"],
                .abattement = 0,
                .frais = E["2CA"]};
    if (faits.bareme) {
        m.assurance = SommeE({"2TS1", "2TS2", "2EE2"});
        m.assuranceVie = SommeE({"2CH1", "2CH2", "2CH3", "2DH2", "2DH3"});
    }
    if (faits.forfait) {
        m.assurance = E["2TS1"];
        m.assuranceVie = E["2CH1"];
    }
    m.abattement = std::min(m_plafondAssuranceVie, m.assuranceVie);
    return m;
}

void Capitaux::RevenusMobiliers() {
    const Mobiliers m = LitMobiliers();
    MontantsMobiliers(m);
    AbattementsEtFrais(m);
    S["RD_MOB"] = S["RD_MOB_MONT"] + S["RD_MOB_MAJO"] - S["RD_MOB_DEMI_BASE"] - S["RD_MOB_ABAT"] - S["RD_MOB_FRAIS"];
    DeficitsMobiliers();
    S["NP1_REV_MOB_ANN"] = DeficitDeLAnnee(m);
    S["RD_MOB"] -= S["RD_MOB_DEFICIT_NM1"];
    S["RD_MOB_DEF"] = S["NP1_REV_MOB_ANN"];
    S["NP1_REV_MOB"] += S["NP1_REV_MOB_ANN"];

    if (faits.passe == Passe::Normale) memoire.passes.deficitMobilier = S["RD_MOB_DEF"];
    if (faits.passe == Passe::Mondiale) MobiliersMondiaux();
    PrelevementLiberatoire(m.assuranceVie);
}

void Capitaux::MontantsMobiliers(const Mobiliers& m) {
    std::int32_t montant = m.dividendes + m.assurance + m.autres + m.distribues + m.assuranceVie + m.majores + m.prets;
    if (faits.bareme) montant += m.interets;
    if (faits.forfait) montant = m.assurance + m.distribues + m.assuranceVie;
    S["RD_MOB_MONT"] = memoire.baseMobiliersSociale = montant;
    S["RD_MOB_MAJO"] = faits.forfait ? 0 : nAuTaux(m.majores, loi["mobiliers.majoration"]);
    S["RD_MOB_DEMI_BASE_2DC"] = faits.forfait ? 0 : AbattementDividendes(m.dividendes);
    S["RD_MOB_DEMI_BASE_2FU"] = AbattementDividendes(m.distribues);
    S["RD_MOB_DEMI_BASE"] = S["RD_MOB_DEMI_BASE_2DC"] + S["RD_MOB_DEMI_BASE_2FU"];
}

void Capitaux::AbattementsEtFrais(const Mobiliers& m) {
    if (faits.passe == Passe::TK) {
        S["RD_MOB_FRAIS"] = S["RD_MOB_ABAT"] = 0;
        return;
    }
    if (faits.resident) S["RD_MOB_ABAT"] = m.abattement;
    const std::int32_t avantFrais = S["RD_MOB_MONT"] + S["RD_MOB_MAJO"] - S["RD_MOB_DEMI_BASE"] - S["RD_MOB_ABAT"];
    S["RD_MOB_FRAIS"] = std::min(m.frais, avantFrais);
    if (faits.passe != Passe::Normale) return;
    PartageFrais(m);
    memoire.passes.baseMobiliers = avantFrais - S["RD_MOB_FRAIS"];
}

// Expenses are shared out over the income they come from.
void Capitaux::PartageFrais(const Mobiliers& m) {
    std::int32_t fraisDividendes = 0, fraisAssurance = 0, fraisAutres = 0;
    const auto partage = [&](std::int32_t troisieme) {
        const std::int32_t total = m.dividendes + m.assurance + troisieme;
        fraisDividendes = nProrata(m.frais, m.dividendes, total);
        fraisAssurance = nProrata(m.frais, m.assurance, total);
        fraisAutres = nProrata(m.frais, troisieme, total);
    };
    if (faits.selonLaDeclaration) {
        partage(m.autres);
    } else {
        if (E["BAR"] != 0) partage(m.autres + m.interets);
        if (E["PFU"] != 0) fraisDividendes = 0, fraisAssurance = m.frais, fraisAutres = 0;
    }
    S["RD_MOB_FRAIS_2DC"] = fraisDividendes;
    S["RD_MOB_FRAIS_2TS"] = fraisAssurance;
    S["RD_MOB_FRAIS_2TR"] = fraisAutres;
}

// Deficits of earlier years, the oldest first; the oldest year's is carried no further.
void Capitaux::DeficitsMobiliers() {
    std::int32_t anterieurs = 0;
    for (const DeficitMobilier& d : deficitsMobiliers) anterieurs += E[d.box];
    S["RD_MOB_DEFICIT_NM1"] = faits.passe == Passe::TK ? nProrata(anterieurs, S["RD_MOB"], memoire.passes.baseMobiliers)
                                                       : std::min(anterieurs, nPositif(S["RD_MOB"]));
    S["NP1_REV_MOB"] = 0;
    std::int32_t cumul = 0;
    for (const DeficitMobilier& d : deficitsMobiliers) {
        cumul += E[d.box];
        if (!d.report) continue;
        S[d.report] = std::min(E[d.box], nPositif(cumul - S["RD_MOB_DEFICIT_NM1"]));
        S["NP1_REV_MOB"] += S[d.report];
    }
}

// The expenses that exceed the income net of its allowances.
std::int32_t Capitaux::DeficitDeLAnnee(const Mobiliers& m) const {
    const std::int32_t distribuesNets = m.distribues - AbattementDividendes(m.distribues);
    std::int32_t net = m.dividendes - AbattementDividendes(m.dividendes) + m.assurance + m.autres + distribuesNets +
                       (m.assuranceVie - m.abattement) + nAuTaux(m.majores, 10000 + loi["mobiliers.majoration"]) +
                       m.prets;
    if (faits.bareme) net += m.interets;
    if (faits.forfait) net = m.assurance + distribuesNets + (m.assuranceVie - m.abattement);
    return nPositif(m.frais - net);
}

// The worldwide pass adds the foreign investment income, and the deficit that the French income alone could not use.
void Capitaux::MobiliersMondiaux() {
    S["RD_MOB"] += nPositif(memoire.passes.deficitMobilier - S["RD_MOB_DEF"]);
    S["RD_MOB"] += nPositif(TI["2TS"] - TIX["2TS"] - TIY["2TS"]);
    if (lancement.optionsForcees || (lancement.optionsSiSaisies && E["PFU"] != 0)) return;
    S["RD_MOB"] += nPositif(
        nAuTaux(nPositif(TI["2DC"] - TIX["2DC"]), loi.Complement("mobiliers.dividendes.abattement")) - TIY["2DC"]);
    S["RD_MOB"] += nPositif(TI["2TR"] - TIX["2TR"] - TIY["2TR"]);
}

// The credit for the flat levy on life insurance, within what the allowance leaves.
void Capitaux::PrelevementLiberatoire(std::int32_t assuranceVie) {
    const std::int32_t plafond = m_plafondAssuranceVie, taux = loi["assuranceVie.taux"];
    if (!faits.resident || E["2CH"] >= plafond) return;
    if (faits.selonLaDeclaration)
        S["D_LIB"] = nPositif(nAuTaux(std::min(E["2DH"], plafond - E["2CH"]), taux));
    else if (E["BAR"] != 0 || E["PFU"] != 0)
        S["D_LIB"] = nPositif(nAuTaux(std::min(E["2DH1"], nPositif(plafond - assuranceVie)), taux));
}

void Capitaux::RevenusFonciers() {
    const std::int32_t resultat = E["4BA"], deficitFoncier = E["4BB"], deficitGlobal = E["4BC"], anterieurs = E["4BD"];
    const std::int32_t micro = E["4BE"];
    const std::int32_t abattement = micro > 0 ? nAuTaux(micro, loi["foncier.micro.abattement"]) : 0;

    std::int32_t net = resultat + micro - abattement;
    if (deficitFoncier > 0) net = nPositif(net - deficitFoncier);
    if (deficitGlobal > 0) net -= deficitGlobal;
    if (anterieurs > 0 && net > 0) net = nPositif(net - anterieurs);

    DeficitsFonciers(resultat, micro, abattement);
    if (faits.passe == Passe::Normale) memoire.passes.deficitFoncier = S["RD_FON_DEF"];
    if (faits.passe == Passe::Mondiale) net += nPositif(memoire.passes.deficitFoncier - S["RD_FON_DEF"]);
    S["RD_FON"] = net;
}

// What the year's income is made of, in profit or in deficit; the deficits of earlier years, and what is carried.
void Capitaux::DeficitsFonciers(std::int32_t resultat, std::int32_t micro, std::int32_t abattement) {
    const std::int32_t deficitFoncier = E["4BB"], deficitGlobal = E["4BC"], anterieurs = E["4BD"];
    if (resultat + micro - abattement - deficitFoncier >= 0) {
        S["RD_FON_BA"] = resultat;
        S["RD_FON_BB"] = deficitFoncier;
        S["RD_FON_BE"] = micro;
        S["RD_FON_BE_ABAT"] = abattement;
    } else {
        S["NP1_FON_ANN_BA"] = resultat;
        S["NP1_FON_ANN_BB"] = deficitFoncier;
        S["NP1_FON_ANN_BE"] = micro;
        S["NP1_FON_ANN_BE_ABAT"] = abattement;
    }
    S["RD_FON_BC"] = deficitGlobal;
    S["RD_FON_BD_IMPUT"] =
        std::min(nPositif(resultat - deficitFoncier - deficitGlobal + micro - abattement), anterieurs);
    S["NP1_FON_ANT"] = anterieurs;
    S["NP1_FON_IMP"] = S["RD_FON_BD_IMPUT"];

    MemoirePasses& passes = memoire.passes;
    if (faits.passe == Passe::Normale) passes.deficitFoncierPerdu = nPositif(E["4BDa"] - S["NP1_FON_IMP"]);
    if (faits.passe != Passe::TK) S["NP1_FON_PER"] = passes.deficitFoncierPerdu;

    S["NP1_FON_ANN"] =
        nPositif(S["NP1_FON_ANN_BB"] - S["NP1_FON_ANN_BA"] - S["NP1_FON_ANN_BE"] + S["NP1_FON_ANN_BE_ABAT"]);
    S["NP1_FON"] = nPositif(S["NP1_FON_ANT"] - S["NP1_FON_IMP"] - S["NP1_FON_PER"] + S["NP1_FON_ANN"]);
    if (S["NP1_FON"] == 0) S["NP1_FON_ANT"] = S["NP1_FON_IMP"] = S["NP1_FON_PER"] = S["NP1_FON_ANN"] = 0;
    S["RD_FON_DEF"] = S["NP1_FON"];
}

// Agricultural deficits come off farm income, and off other income only when it is modest.
void Capitaux::DeficitsAgricoles() {
    const bool bareme = faits.bareme, forfait = faits.forfait;
    const std::int32_t anterieurs = SommeE({"5QF", "5QG", "5QN", "5QO", "5QP", "5QQ"});
    if (S["RR_BA"] > 0) {
        if (anterieurs > 0)
            ImputeDeficit("RR_BA", "RR_BA_DEF_ANT", anterieurs);
        else
            S["RR_BA_DEF_ANT"] = 0;
    } else {
        std::int32_t autres =
            nPositif(S["RF_PLUS"] - S["RF_PLUS_BA"]) +
            SommeS({"RNORMAL", "RR_BIC_P", "RR_BIC_NP", "RR_BIC_NP_DEF_REP", "RR_BIC_NP_LM", "RR_BIC_NP_LM_DEF_REP",
                    "RR_BNC_NP_DEF_REP", "RR_BNC_P", "RR_BNC_NP", "RDIVERS", "RD_GAINS_1TZ", "RF_INVENTEURS"}) -
            S["RD_GAINS_2_Ded"] + SommeE({"3VG", "3UA", "3VE", "3VM", "3VT", "3PI", "3SB", "3SZ", "3UV", "3WI",
                                          "3WJ", "3WP", "3VD", "3VI", "3VF", "3VJ", "3VK", "3SK", "1TT", "1UT"});
        autres += bareme || forfait ? E["3SJ1"] + E["3SJ2"] : E["3SJ"] + E["2FA"];
        if (forfait) autres += S["RF_PFU1"] + S["RF_PFU2"];
        if (autres > loi["deficits.agricoles.plafond"]) {
            lignes.Annule("RR_BA_DEF");
            lignes.Soustrait("RR_BA_DEF", "RR_BA");
            S["NP1_BA_ANN"] = S["RR_BA_DEF"];
        }
    }
    S["NP1_BA_ANT"] = anterieurs;
    S["NP1_BA_IMP"] = S["RR_BA_DEF_ANT"];
    std::int32_t& perdus = memoire.passes.deficitAgricolePerdu;
    if (faits.passe == Passe::Normale) perdus = std::min(nPositif(E["5QF"] - S["NP1_BA_IMP"]), E["5QF"]);
    if (faits.passe != Passe::TK) S["NP1_BA_PER"] = perdus;
    S["NP1_BA"] = S["NP1_BA_ANT"] - S["NP1_BA_IMP"] + S["NP1_BA_ANN"] - S["NP1_BA_PER"];
    if (S["NP1_BA"] == 0) S["NP1_BA_ANT"] = S["NP1_BA_IMP"] = S["NP1_BA_PER"] = 0;
}

void Capitaux::RevenusDivers() {
    DeficitsAgricoles();
    S["RD_AUTRE"] = E["6GH"];
    S["RD_PV_BAREME"] = SommeE({"3VG", "3UA", "3SB", "3VE", "3UV", "3SZ"});
    if (faits.bareme) S["RD_PV_BAREME"] += E["3SJ2"];
    if (faits.forfait) S["RD_PV_BAREME"] = 0;
    S["RD_DEFICIT"] = SommeE({"6FA", "6FB", "6FC", "6FD", "6FE", "6FL"});
}

void Capitaux::RevenusTauxForf() {
    const bool option = faits.bareme || faits.forfait;

    C1["RF_PENSIONS"] = nAuTaux(E["1AT"], loi.Complement("pensions.capital.abattement"));
    C2["RF_PENSIONS"] = nAuTaux(E["1BT"], loi.Complement("pensions.capital.abattement"));
    lignes.Totalise("RF_PENSIONS");
    S["RF_2FA"] = option ? 0 : E["2FA"];
    S["RF_GAINS_BSPCE_19"] = option ? E["3SJ1"] : E["3SJ"];

    struct Gain {
        CaseSortie sortie;
        CaseEntree box;
    };
    static constexpr Gain gains[] = {
        {"RF_GAINS_40", "3VF"},   {"RF_GAINS_30", "3VI"},       {"RF_GAINS_18", "3VD"},
        {"RF_GAINS_22_5", "3VM"}, {"RF_GAINS_BSPCE_30", "3SK"}, {"RF_CESS_3VT", "3VT"},
        {"RF_PV_24", "3WI"},      {"RF_PV_19", "3WJ"},          {"RF_3PI", "3PI"},
        {"RF_PV1", "3WP"},
    };
    for (const Gain& gain : gains) S[gain.sortie] = E[gain.box];

    BasesProportionnelles();
    C2["FORFAIT"] = SommeS({"RF_INVENTEURS", "RF_2FA", "RF_PLUS", "RF_GAINS_18", "RF_GAINS_30", "RF_GAINS_40",
                            "RF_GAINS_22_5", "RF_CESS_3VT", "RF_3PI", "RF_GAINS_BSPCE_19", "RF_GAINS_BSPCE_30",
                            "RF_PENSIONS", "RF_PV_24", "RF_PV_19", "RF_PV1"});
    S["FORFAIT"] = 0;
}

// The bases of the taxes at proportional rates, which step 22 computes.
void Capitaux::BasesProportionnelles() {
    C2["CO_19"] = S["RF_CESS_3VT"] + S["RF_GAINS_BSPCE_19"] + S["RF_PV_19"];
    C2["CO_24"] = S["RF_PV_24"];
    C2["CO_18"] = S["RF_GAINS_18"];
    C2["CO_50"] = S["RF_3PI"];
    C2["CO_3WR"] = E["3WR"];
    // Long-term business gains: in the overseas departments they share the room of the abatement.
    if (E["GMR"] != 0)
        C2["CO_TNS_MGR"] = S["RF_PLUS"];
    else if (E["GUY"] != 0 || E["MAY"] != 0)
        C2["CO_TNS_GUY"] = S["RF_PLUS"];
    else
        C2["CO_TNS"] += S["RF_PLUS"];
    C2["CO_30"] = S["RF_GAINS_30"] + S["RF_GAINS_BSPCE_30"];
    C2["CO_41"] = S["RF_GAINS_40"];
    C2["CO_22_5"] = S["RF_GAINS_22_5"];

    std::int32_t bases = 0;
    for (const CaseSortie ligne :
         {CaseSortie("CO_TNS_GUY"), CaseSortie("CO_TNS_MGR"), CaseSortie("CO_TNS"), CaseSortie("CO_18"),
          CaseSortie("CO_19"), CaseSortie("CO_24"), CaseSortie("CO_30"), CaseSortie("CO_41"), CaseSortie("CO_22_5"),
          CaseSortie("CO_3WR"), CaseSortie("CO_50")})
        bases += C2[ligne];
    if (bases > 0) S["SEPAR_QUOT"] = 1;
}

void Capitaux::PrelevLib() {
    const auto prelevement = [&](CaseSortie ligne, CaseEntree box, std::int32_t taux) {
        lignes.BaseEtTaux(ligne, E[box], taux);
        S[ligne] = nAuTaux(E[box], taux);
    };
    prelevement("PL_DH", "2DH", loi["assuranceVie.taux"]);
    prelevement("PL_EE", "2EE", loi["mobiliers.2EE.taux"]);
    S["PL_PRELEV_LIB"] = S["PL_DH"] + S["PL_EE"];
    if (S["PL_PRELEV_LIB"] > 0) S["SAUT_PAGE_LIB"] = S["SEPAR_PRELEV_LIB"] = 1;
}

}  // namespace

void RevenusMobiliers(Contexte& c) { Capitaux(c).RevenusMobiliers(); }
void RevenusFonciers(Contexte& c) { Capitaux(c).RevenusFonciers(); }
void RevenusDivers(Contexte& c) { Capitaux(c).RevenusDivers(); }
void RevenusTauxForf(Contexte& c) { Capitaux(c).RevenusTauxForf(); }
void PrelevLib(Contexte& c) { Capitaux(c).PrelevLib(); }

}  // namespace kv
