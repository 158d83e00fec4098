#include "Calcul/pCalculN/Calculateur.h"

#include "Calcul/cCalcul/Catalogues.h"
#include "Calcul/cCalcul/Transferts.h"
#include "Calcul/pCalculN/Etapes.h"
#include "Calcul/pCalculN/Prelevement.h"
#include "support/KVTarvel.h"

// The driver: the list of the steps, and the order in which "1:Calcul" runs them.

namespace kv {

namespace {

// ---- The numbered steps. Which one runs where: 28 runs 27, which runs 2, 3, 11 to 18, then 19, 22, 24 and 26; steps 4
// to 10 run inside step 3, 20 and 21 inside step 19, 25, 36 and 37 inside step 24.
struct LigneEtape {
    Etape etape;
    std::u16string_view libelle;
    void (*fait)(Contexte&);
};
constexpr LigneEtape lignesEtapes[] = {
    {Etape::NombreParts, u"2:NombreParts", NombreParts},
    {Etape::RevenusBrut, u"3:RevenusBrut", RevenusBrut},
    {Etape::RevenusSalaires, u"4:RevenusSalaires", RevenusSalaires},
    {Etape::RentesViageres, u"5:RentesViageres", RentesViageres},
    {Etape::RevenusNonSalaries, u"6:RevenusNonSalaries", RevenusNonSalaries},
    {Etape::RevenusExoneres, u"7:RevenusExoneres", RevenusExoneres},
    {Etape::RevenusMobiliers, u"8:RevenusMobiliers", RevenusMobiliers},
    {Etape::RevenusFonciers, u"9:RevenusFonciers", RevenusFonciers},
    {Etape::RevenusDivers, u"10:RevenusDivers", RevenusDivers},
    {Etape::RevenusBrutQuotient, u"11:RevenusBrutQuotient", RevenusBrutQuotient},
    {Etape::RevenusTauxForf, u"12:RevenusTauxForf", RevenusTauxForf},
    {Etape::RevenusNet, u"13:RevenusNet", RevenusNet},
    {Etape::RevenusImposables, u"14:RevenusImposables", RevenusImposables},
    {Etape::CalculImpot, u"15:CalculImpot", CalculImpot},
    {Etape::TauxMarginal, u"16:TauxMarginal", TauxMarginal},
    {Etape::RevenusTM, u"17:RevenusTM", RevenusTM},
    {Etape::RevenusEtrangers, u"18:RevenusEtrangers", RevenusEtrangers},
    {Etape::ImpotApresReductions, u"19:ImpotApresReductions", ImpotApresReductions},
    {Etape::RevenuFiscalRef, u"20:RevenuFiscalRef", RevenuFiscalRef},
    {Etape::HautsSalaires, u"21:HautsSalaires", HautsSalaires},
    {Etape::ImpotApresCorrections, u"22:ImpotApresCorrections", ImpotApresCorrections},
    {Etape::CreditDImpot, u"24:CreditDImpot", CreditDImpot},
    {Etape::CSG_CRDS, u"25:CSG_CRDS", CSG_CRDS},
    {Etape::ImpotAPaye, u"26:ImpotAPaye", ImpotAPaye},
    {Etape::PlafondPERP, u"27:PlafondPERP", PlafondPERP},
    {Etape::NichesFiscales, u"28:NichesFiscales", NichesFiscales},
    {Etape::Reports, u"29:Reports", Reports},
    {Etape::PrelevLib, u"30:PrelevLib", PrelevLib},
    {Etape::TauxImposMoyen, u"31:TauxImposMoyen", TauxImposMoyen},
    {Etape::ImposTxMarginal, u"32:ImposTxMarginal", ImposTxMarginal},
    {Etape::ImposTrancheSup, u"33:ImposTrancheSup", ImposTrancheSup},
    {Etape::RevenusNetFrais, u"34:RevenusNetFrais", RevenusNetFrais},
    {Etape::Calcul_ISF, u"35:Calcul_ISF", Calcul_ISF},
    {Etape::TauxPAS, u"36:TauxPAS", TauxPAS},
    {Etape::KV_CIMR, u"37:KV_CIMR", KV_CIMR},
};

// The row of each step, by its number. There is no step 23.
constexpr auto rangDesEtapes = [] {
    std::array<std::size_t, static_cast<std::size_t>(Etape::KV_CIMR) + 1> rangs{};
    for (std::size_t i = 0; i < std::size(lignesEtapes); ++i)
        rangs[static_cast<std::size_t>(lignesEtapes[i].etape)] = i;
    return rangs;
}();

constexpr std::u16string_view libelleCalcul = u"1:Calcul";
// What it runs itself.
constexpr Etape etapesPrincipales[] = {Etape::NichesFiscales, Etape::Reports,         Etape::PrelevLib,
                                       Etape::TauxImposMoyen, Etape::ImposTxMarginal, Etape::ImposTrancheSup};

// The totals of a household that no step finds.
class Totaux : Travail {
  public:
    explicit Totaux(Contexte& c) : Travail(c) {}

    void PlusValues() {
        S["TOT_IMP_RED_INTERNE"] = S["TOT_IMP_RED"];
        S["REV_PV_TXPROP_BARPRO"] = nPositif(GainsMobiliersNets());
        S["REV_PV_AVEC_EXO"] = SommeS({"RF_PLUS", "RF_INVENTEURS", "S_B_PV_RETRAITE"}) +
                               SommeE({"3VD", "3VI", "3VF", "3SJ", "3SK", "3VM", "3VT", "3VC", "3SE", "3VZ", "3VW",
                                       "3SA", "3WI", "3WJ", "3WN", "3SZ", "3PI"});
    }
    void AuForfait() {
        S["FORFAIT_PF"] = SommeS({"RF_INVENTEURS", "RF_PENSIONS", "RF_2FA", "RF_PLUS", "RF_CESS_3VT", "RF_GAINS_22_5",
                                  "RF_GAINS_18", "RF_GAINS_30", "RF_GAINS_40", "RF_GAINS_BSPCE_19", "RF_GAINS_BSPCE_30",
                                  "RF_PV_24", "RF_PV_19", "RF_PV1", "RF_PV2"});
    }
    void IndiqueOptions(bool bareme, bool forfait) {
        if (bareme) S["BAR"] = 1;
        if (forfait) S["PFU"] = 1;
    }
};

}  // namespace

Calculateur::Calculateur(Saisie& saisie, const Exceptionnels& exceptionnels, Lignes& lignes, const Lancement& lancement,
                         const Loi& loi, std::pmr::memory_resource* reserve)
    : m_lancement(lancement),
      m_loi(loi),
      m_bareme(BaremeDe(loi)),
      m_saisie(saisie),
      m_exceptionnels(exceptionnels),
      m_lignes(lignes),
      m_place(m_octets.data(), m_octets.size(), reserve) {
    Replie(m_saisie);
    m_remplies = BoitesRemplies(m_saisie);
    // The modernisation credit alone: the more favourable option is chosen.
    const bool aucuneOption = m_saisie["PFU"] == 0 && m_saisie["BAR"] == 0 && m_saisie["AVA"] == 0;
    if (aucuneOption && (lancement.optionsForcees || (lancement.optionsSiSaisies && m_saisie["CIMR"] != 0)))
        m_saisie["AVA"] = 1;
}

void Calculateur::Calcul(const TPeriode& periode) {
    m_lancement.periode = &periode;
    Pipeline();
}

void Calculateur::Calcul_ISF() {
    Contexte c(Commun(), m_saisie, m_remplies, m_exceptionnels, false);
    c.Lance(Etape::Calcul_ISF);
}

void Calculateur::EcritEntrees(ZoneEntree& entrees) const {
    for (const CaseEntree total : {CaseEntree("8TI"), CaseEntree("8TK")}) entrees[total] = m_saisie[total];
    if (m_comparaisonFinie)
        for (const CaseEntree option : {CaseEntree("PFU"), CaseEntree("BAR")})
            if (entrees[option] != nNonSaisi) entrees[option] = 0;
}

void Calculateur::Lance(Etape etape, Contexte& c) {
    const LigneEtape& ligne = lignesEtapes[rangDesEtapes[static_cast<std::size_t>(etape)]];
    if (etape == Etape::NombreParts) {  // its line alone stands one level further in
        ++m_trace.m_nNiveau;
        m_trace.Ligne(ligne.libelle);
        --m_trace.m_nNiveau;
        return ligne.fait(c);
    }
    const EtapeTracee tracee(m_trace, ligne.libelle);
    ligne.fait(c);
}

void Calculateur::TraceEntrees() const {
    if (!m_trace.m_bTrace) return;
    const TPeriode& periode = *m_lancement.periode;
    m_trace.Valeur(u"DateToInt(_Periode->Deb,false)", DateToInt(TexteDate(periode.Deb), false));
    m_trace.Valeur(u"DateToInt(_Periode->Fin,false)", DateToInt(TexteDate(periode.Fin), false));
    for (const CaseEntreeDef& fiche : TableEntree) {
        const std::int32_t valeur = m_saisie[CaseEntree::Numero(static_cast<int>(fiche.Index))];
        if (valeur > 0) m_trace.Valeur(fiche.Nom, valeur);
    }
}

void Calculateur::Pipeline() {
    const EtapeTracee tracee(m_trace, libelleCalcul);

    const bool premierPassage = !m_bSimulationBAR && !m_bPassageFinal;
    if (m_saisie["AVA"] != 0 && premierPassage) m_saisie["PFU"] = 1;
    m_memoire = Memoire(&m_place);
    m_chainesConnues.Oublie();
    TraceEntrees();
    m_saisie["8TI"] = TotalTI(m_saisie);
    m_saisie["8TK"] = TotalTK(m_saisie);
    Contexte c(Commun(), m_saisie, m_remplies, m_exceptionnels, m_saisie["M"] == 1 || m_saisie["O"] == 1);
    c.RemetSortiesAZero();

    c.Lance(etapesPrincipales);
    if (c.faits.couple) TauxIndividuelsDuCouple(c);
    c.RetireExceptionnels();
    Totaux totaux(c);
    const bool comparaison = c.faits.options && m_saisie["AVA"] != 0;
    if (!comparaison) totaux.IndiqueOptions(c.faits.bareme, c.faits.forfait);
    totaux.PlusValues();
    c.Lance(Etape::RevenusNetFrais);
    if (comparaison) Compare(c);
    totaux.AuForfait();
}

// The flat-tax run is followed by the scale run, and that one by the run of the cheaper option, each inside the one
// before it. The final run begins with nothing that its simulation did not begin with, unless the return set the scale
// too, or reads the ceilings that the run before left: then its lines stand again.
void Calculateur::Compare(Contexte& c) {
    if (m_bPassageFinal) {
        Totaux(c).IndiqueOptions(c.faits.bareme, c.faits.forfait);
        m_comparaisonFinie = true;
        return;
    }
    if (!m_bSimulationBAR) {
        m_finalConnu = m_saisie["BAR"] == 0 && m_saisie["6QW"] == 0 && !m_trace.m_bTrace;
        if (m_finalConnu) m_lignes.Conserve(m_forfait);
        return SimulationSuivante();
    }
    m_options = {m_comparaison, FlatTaxMoinsChere()};
    if (!m_finalConnu) return SimulationSuivante();
    if (m_options->forfait) m_lignes.Reprend(m_forfait);
    Totaux(c).IndiqueOptions(!m_options->forfait, m_options->forfait);
    m_comparaisonFinie = true;
}

// A couple's two individual rates; the runs they need leave the outputs to be found again.
void Calculateur::TauxIndividuelsDuCouple(Contexte& c) {
    const bool connues = c.Repetable();
    if (connues) m_lignes.Conserve(m_conservees);
    const TauxIndividuels taux = CalculeTauxIndividuels(c);
    if (connues)
        m_lignes.Reprend(m_conservees);
    else
        c.Lance(etapesPrincipales);
    static constexpr CaseSortie sorties[2] = {"TAUX_PAS_IND1", "TAUX_PAS_IND2"};
    static constexpr std::u16string_view noms[2] = {u"s(TAUX_PAS_IND1)", u"s(TAUX_PAS_IND2)"};
    for (std::size_t d = 0; d < 2; ++d) {
        const std::int32_t dixiemes = nArrondi(dMul(taux[d], 10));
        m_lignes.Ecrit(sorties[d]).valeur = dixiemes;
        m_lignes.EcritTexte(sorties[d]) = Texte::TauxEnDixiemes(dixiemes);
        if (dixiemes != 0) m_trace.Valeur(noms[d], dixiemes);
    }
}

// Which of the two simulations costs less; the flat tax when they cost the same.
bool Calculateur::FlatTaxMoinsChere() const {
    const auto& [forfait, bareme] = m_comparaison;
    if (forfait.aPayer != bareme.aPayer) return forfait.aPayer < bareme.aPayer;
    if (forfait.aPayer > 0 && bareme.restitue > 0) return false;
    return forfait.restitue >= bareme.restitue;
}

// The next of the three runs.
void Calculateur::SimulationSuivante() {
    m_bPassageFinal = m_bSimulationBAR;
    m_bSimulationBAR = !m_bPassageFinal;
    const bool forfait = m_bPassageFinal && m_options->forfait;
    m_saisie["PFU"] = forfait ? 1 : 0;
    m_saisie["BAR"] = forfait ? 0 : 1;
    Pipeline();
}

std::string LibelleEtape(Etape etape) {
    return VersUtf8(etape == Etape{} ? libelleCalcul
                                     : lignesEtapes[rangDesEtapes[static_cast<std::size_t>(etape)]].libelle);
}

}  // namespace kv
