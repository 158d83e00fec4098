#include <algorithm>

#include "Calcul/cCalcul/Transferts.h"
#include "Calcul/pCalculN/Contexte.h"
#include "Calcul/pCalculN/Etapes.h"

// Non-residents' minimum rate (CGI art. 197 A); the effective-rate method for foreign income (CGI art. 197 C).

namespace kv {

namespace {

// How far a re-run goes: the net income, the gross tax, the tax after reductions and corrections.
constexpr Etape jusquAuRevenuNet[] = {Etape::NombreParts, Etape::RevenusBrut, Etape::RevenusBrutQuotient,
                                      Etape::RevenusTauxForf, Etape::RevenusNet};
constexpr Etape jusquALImpot[] = {Etape::RevenusImposables, Etape::CalculImpot, Etape::TauxMarginal};
constexpr Etape jusquAuxCorrections[] = {Etape::ImpotApresReductions, Etape::ImpotApresCorrections};

// A run over changed inputs, from an empty slate.
void RelanceRevenuNet(Contexte& c) {
    c.RemetSortiesAZero();
    c.Lance(jusquAuRevenuNet);
}
void RelanceImpot(Contexte& c) {
    RelanceRevenuNet(c);
    c.Lance(jusquALImpot);
}
void RelanceCorrections(Contexte& c) {
    RelanceImpot(c);
    c.Lance(jusquAuxCorrections);
}

// What the worldwide pass shows.
struct RevenuMondial {
    std::int32_t revenu = 0, impot = 0, impotDom = 0;
    std::int32_t deductions = 0, abattements = 0;  // on salaries and gains, on pensions
    ParPersonne bruts;
};

// What the foreign income with a credit equal to the French tax shows.
struct RevenuTK {
    std::int32_t revenu = 0, impotPlusValues = 0, plusValues = 0;
};

class Etranger : Travail {
  public:
    explicit Etranger(Contexte& c) : Travail(c) {}
    void RevenusTM();
    void RevenusEtrangers();

  private:
    std::int32_t RevenuNetDesAbattements() const { return S["TOT_R_NET"] - S["ABAT"] + S["RQ_GAINS"]; }
    std::int32_t RevenuTaxe() const { return nPositif(S["TOT_R_IMPOS"] + S["QUOTIENT"]); }
    std::int32_t Colonnes(CaseSortie sortie) const { return C1[sortie] + C2[sortie] + C3[sortie]; }
    std::int32_t Deductions() const { return Colonnes("RN_SAL_DED_10") + Colonnes("RD_GAINS_2_Ded"); }

    std::int32_t NetAutoEntr();
    std::int32_t NetProspection();
    void RelanceMondiale(Contexte& c, std::u16string_view message);
    RevenuMondial Mondial();
    RevenuTK SeulsRevenusTK();
    void PartAutoEntr();
    void Impots(const RevenuMondial& mondial, const RevenuTK& tk, bool effectif);
    void FraisEtrangers(const RevenuMondial& mondial);

    bool m_avecAutoEntr = false, m_avecProspection = false;
    std::int32_t m_netAutoEntr = 0, m_netProspection = 0;  // what each adds to the net income
    ParPersonne m_prospections;
};

// Rates in hundredths of a percent. The tax is at least the minimum rate, unless the worldwide income shows less.
void Etranger::RevenusTM() {
    if (faits.resident) return;

    const std::int32_t minima[] = {loi["nonResidents.tauxMinimum"], loi["nonResidents.tauxMinimumOutremer"]};
    const double minimum = minima[E["RED"] != 0 ? 1 : 0];
    const std::int32_t revenu = RevenuTaxe();
    const std::int32_t impotFrancais = S["TOT_IMPOT"];
    const double tauxFrancais = dMul(10000.0, dDiv(impotFrancais, revenu));
    double tauxMondial = 0.0, retenu = dMax(tauxFrancais, minimum);
    std::int32_t impotMondial = 0;
    if (E["8TM"] != 0) {
        trace.Relance(u"=> on relance le calcul d'impôt en ajoutant la case 8TM");
        contexte.faits.avec8TM = true;
        Lance(Etape::CalculImpot);
        contexte.faits.avec8TM = false;
        impotMondial = S["TOT_IMPOT"];
        tauxMondial = dMul(10000.0, dDiv(impotMondial, E["8TM"]));
        retenu = tauxFrancais > minimum ? tauxFrancais : dMin(tauxMondial, minimum);
    }
    const std::int32_t impot = nArrondi(dDiv(dMul(revenu, retenu), 10000.0));
    trace.Relance(u"=> on relance le calcul d'impôt sans la case 8TM");
    Lance(Etape::CalculImpot);
    Lance(Etape::TauxMarginal);

    if (impot < loi["nonResidents.recouvrement"] && (retenu == minima[0] || retenu == minima[1]))
        S["IMPOT_TM_N_RECOUV"] = impot;
    S["IMPOT_TM"] = impot - S["IMPOT_TM_N_RECOUV"];
    const auto ligne = [&](CaseSortie sortie, std::int32_t base, double taux, std::int32_t valeur) {
        lignes.BaseEtTaux(sortie, base, nArrondi(taux));
        S[sortie] = valeur;
    };
    ligne("IMPOT_TM_RETENU", revenu, retenu, impot);
    ligne("IMPOT_TM_FRANCAIS", revenu, tauxFrancais, impotFrancais);
    ligne("IMPOT_TM_ETRANGER", E["8TM"], tauxMondial, impotMondial);
    S["IMPOT_TX_MOYEN"] = nPositif(impot - S["IMPOT_TM_N_RECOUV"]);
}

void Etranger::RevenusEtrangers() {
    if (TotalEtranger(E.Toutes(), false) == 0) return;
    const bool effectif = TotalEtranger(E.Toutes(), true) != 0;
    const std::int32_t deductionsFrancaises = Deductions(), abattementsFrancais = Colonnes("RN_PEN_ABAT");
    contexte.RetireExceptionnels();

    m_netAutoEntr = NetAutoEntr();
    m_netProspection = NetProspection();
    RevenuMondial mondial = Mondial();
    mondial.deductions -= deductionsFrancaises;
    mondial.abattements -= abattementsFrancais;
    const RevenuTK tk = E["8TK"] > 0 ? SeulsRevenusTK() : RevenuTK{};

    trace.Relance(u"=> on relance les calculs pour revenir à la normale (=revenus français seuls)");
    RelanceImpot(contexte);
    PartAutoEntr();
    Impots(mondial, tk, effectif);
    FraisEtrangers(mondial);
}

// A worldwide pass up to the net income.
void Etranger::RelanceMondiale(Contexte& c, std::u16string_view message) {
    c.faits.passe = Passe::Mondiale;
    trace.Relance(message);
    RelanceRevenuNet(c);
    c.RetireExceptionnels();
}

// What the auto-entrepreneur income adds to the net income.
std::int32_t Etranger::NetAutoEntr() {
    Saisie avec = contexte.declaree;
    trace.Ligne(u"****> _AutoEntr_Dans_Fr(true)");
    const std::int32_t deplace = DeplaceAutoEntr(avec);
    m_avecAutoEntr = deplace > 0;
    std::int32_t net = 0;
    if (m_avecAutoEntr) {
        const std::int32_t avant = RevenuNetDesAbattements();
        Contexte c(contexte, avec);
        RelanceMondiale(c, u"=> on relance les calculs après avoir ajouté les revenus auto-entrepreneurs (5TA)");
        net = RevenuNetDesAbattements() - avant;
    }
    if (deplace != 0) trace.Ligne(u"****> _AutoEntr_Dans_Fr(false)");
    return net;
}

// What the prospection income adds.
std::int32_t Etranger::NetProspection() {
    m_prospections = TotalProspection(contexte.declaree);
    m_avecProspection = m_prospections.Total() > 0;
    if (!m_avecProspection) return 0;
    if (m_avecAutoEntr) {
        Contexte c(contexte, contexte.declaree);
        RelanceMondiale(c, u"=> on relance les calculs à cause des prospections (5TF) et auto-entrepreneurs");
    }
    const std::int32_t avant = RevenuNetDesAbattements();
    Saisie avec = contexte.declaree;
    trace.Ligne(u"****> _Prospection_Dans_Fr(true)");
    DeplaceProspection(avec);
    Contexte c(contexte, avec);
    RelanceMondiale(c, u"=> on relance les calculs a cause des prospections (5TF)");
    trace.Ligne(u"****> _Prospection_Dans_Fr(false)");
    return RevenuNetDesAbattements() - avant;
}

// Worldwide income: the foreign amounts in the French boxes, up to the corrections.
RevenuMondial Etranger::Mondial() {
    Saisie avec = contexte.declaree;
    RevenuMondial mondial;
    trace.Ligne(u"****> _TI_Dans_Fr(true)");
    mondial.bruts = DeplaceTI(avec);
    if (m_avecProspection) {
        trace.Ligne(u"****> _Prospection_Dans_Fr(true)");
        DeplaceProspection(avec);
    }
    if (m_avecAutoEntr) {
        trace.Ligne(u"****> _AutoEntr_Dans_Fr(true)");
        DeplaceAutoEntr(avec);
    }
    Contexte c(contexte, avec);
    c.faits.passe = Passe::Mondiale;
    trace.Relance(u"=> on relance les calculs après avoir ajouté les revenus TI");
    RelanceCorrections(c);
    c.Fin(Passage::Mondial);
    c.RetireExceptionnels();
    mondial.deductions = Deductions();
    mondial.abattements = Colonnes("RN_PEN_ABAT");
    mondial.revenu = RevenuTaxe();
    mondial.impot = S["TOT_IMPOT"];
    mondial.impotDom = S["TOT_IMPOT_DOM"];
    memoire.tauxMarginalFige = S["TAUX_MARGINAL_2"];
    trace.Ligne(u"****> _TI_Dans_Fr(false)");
    if (m_avecProspection) trace.Ligne(u"****> _Prospection_Dans_Fr(false)");
    if (m_avecAutoEntr) trace.Ligne(u"****> _AutoEntr_Dans_Fr(false)");
    return mondial;
}

// The foreign income with a credit equal to the French tax, alone.
RevenuTK Etranger::SeulsRevenusTK() {
    Saisie seuls = contexte.declaree;
    trace.Ligne(u"****> _TK_Dans_Fr(true)");
    DeplaceTK(seuls);
    Contexte c(contexte, seuls);
    c.faits.passe = Passe::TK;
    trace.Relance(u"=> on relance les calculs avec que les revenus TK, sans les normaux");
    RelanceCorrections(c);
    RevenuTK tk;
    tk.revenu = S["TOT_R_BRUT"] + nPositif(TK["2TS"] - TKZ["2TS"]);
    if (!faits.forfait)
        tk.revenu += nPositif(nAuTaux(TK["2DC"], loi.Complement("mobiliers.dividendes.abattement")) - TKZ["2DC"]) +
                     nPositif(TK["2TR"] - TKZ["2TR"]);
    tk.impotPlusValues = S["CORRECTIONS"] - S["CO_PENSIONS"] - S["CO_INTERET"];
    tk.plusValues = S["RF_PENSIONS"] + S["RF_PLUS"] + S["RF_2FA"];
    c.RetireExceptionnels();
    trace.Ligne(u"****> _TK_Dans_Fr(false)");
    return tk;
}

// Auto-entrepreneur income: what the worldwide pass counted beyond the French income.
void Etranger::PartAutoEntr() {
    for (std::size_t k = 0; k < nPersonnes; ++k) {
        const auto& [ventes, services, ventesNonPro, servicesNonPro] = memoire.passes.microBic[k];
        const auto& [bnc, bncNonPro] = memoire.passes.microBnc[k];
        Colonne& c = C[k];
        c["MOND_AUTO_ENTR_P"] = (ventes.recettes + services.recettes - c["RR_BIC_P_MIC_DECL"]) -
                                (ventes.abattement + services.abattement - c["RR_BIC_P_MIC_ABAT"]) +
                                (bnc.recettes - c["RR_BNC_P_SPE_DECL"]) - (bnc.abattement - c["RR_BNC_P_SPE_ABAT"]);
        c["MOND_PROSPEC"] = m_prospections.montant[k];
    }
    lignes.Totalise("MOND_AUTO_ENTR_P");
    lignes.Totalise("MOND_PROSPEC");
}

// The tax at the effective rate; what it exceeds the French one by goes to each kind of income in proportion to what it
// adds.
void Etranger::Impots(const RevenuMondial& mondial, const RevenuTK& tk, bool effectif) {
    const std::int32_t revenuFrancais = RevenuTaxe();
    const std::int32_t impotEffectif = nProrata(mondial.impot, revenuFrancais, mondial.revenu);
    const std::int32_t supplement = impotEffectif - S["TOT_IMPOT"];
    S["IMPOT_ETR_REV_NET_TI"] = mondial.revenu - revenuFrancais;
    S["IMPOT_AUTO_ENTR"] = nProrata(supplement, m_netAutoEntr, S["IMPOT_ETR_REV_NET_TI"]);
    S["IMPOT_PROSPEC"] = nProrata(supplement, m_netProspection, S["IMPOT_ETR_REV_NET_TI"]);
    S["IMPOT_ETRANGER"] = supplement - S["IMPOT_AUTO_ENTR"] - S["IMPOT_PROSPEC"];
    S["IMPOT_TX_EFFECTIF"] = S["IMPOT_CALC"] = impotEffectif;
    Detail["IMPOT_CALC"] = Texte::Proratise(mondial.impot, mondial.revenu, revenuFrancais);
    S["IMPOT_ETR_TK"] = mondial.impotDom;
    S["IMPOT_ETR_REV_TK"] = S["IMPOT_ETR_REV_NET_TK"] = tk.revenu;
    S["IMPOT_ETR_PV_TK"] = faits.forfait ? 0 : tk.impotPlusValues;
    S["IMPOT_ETR_PV_NET_TK"] = tk.plusValues;
    S["IMPOT_ETR_RMI"] = mondial.revenu;
    if (effectif) S["TOT_R_MONDIAL"] = mondial.revenu;
    if (!effectif || S["IMPOT_TX_EFFECTIF"] == S["TOT_IMPOT"])
        S["IMPOT_TX_EFFECTIF"] = S["IMPOT_AUTO_ENTR"] = S["IMPOT_ETRANGER"] = S["IMPOT_CALC"] = 0;
    S["IMPOT_ETRANGER_2"] = S["IMPOT_ETRANGER"];
    S["IMPOT_TX_EFFECTIF_2"] = S["IMPOT_TX_EFFECTIF"];
}

// The foreign amounts by person, and their share of the deductions that they add.
void Etranger::FraisEtrangers(const RevenuMondial& mondial) {
    const ParPersonne& bruts = mondial.bruts;
    S["REV_BRUT_TI_V"] = bruts.montant[0];
    S["REV_BRUT_TI_C"] = bruts.montant[1];
    S["REV_BRUT_TI_E"] = bruts.montant[2];
    for (std::size_t k = 0; k < nPersonnes; ++k) {
        C[k]["FP_TI_SAL"] = nProrata(mondial.deductions, bruts.montant[k], bruts.Total());
        C[k]["FP_TI_PENS"] = nProrata(mondial.abattements, bruts.montant[k], bruts.Total());
    }
    lignes.Totalise("FP_TI_SAL");
    lignes.Totalise("FP_TI_PENS");
}

}  // namespace

void RevenusTM(Contexte& c) { Etranger(c).RevenusTM(); }
void RevenusEtrangers(Contexte& c) { Etranger(c).RevenusEtrangers(); }

}  // namespace kv
