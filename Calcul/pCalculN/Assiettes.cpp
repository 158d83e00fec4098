#include "Calcul/pCalculN/Assiettes.h"

#include "Calcul/pCalculN/NonSalariesTable.h"
#include "support/KVTarvel.h"

namespace kv {

namespace {

// The boxes of one person that the withholding treats apart.
struct BoxesSalaires {
    CaseEntree horsPrelevement[4];  // foreign salaries, share options
    CaseEntree etrangers[4];        // foreign source, paid by instalments
    CaseEntree gerants[4];          // majority managers, paid by instalments, exceptional part included
    CaseEntree deductions[4];       // allowances already taken off the declared salaries
    CaseEntree quotients[12];       // boxes with exceptional income
    CaseEntree exceptionnel;
};
constexpr BoxesSalaires salaires[nPersonnes] = {
    {{"1AF", "1TP", "1NX", "1PM"}, {"1AG"}, {"1GB"}, {"1GA"}, {"1AJ", "1AP", "1GB"}, "1AJCI"},
    {{"1BF", "1UP", "1OX", "1QM"}, {"1BG"}, {"1HB"}, {"1HA"}, {"1BJ", "1BP", "1HB"}, "1BJCI"},
    {{"1CF", "1DF", "1EF", "1FF"},
     {"1CG", "1DG", "1EG", "1FG"},
     {"1IB", "1JB", "1KB", "1LB"},
     {"1IA", "1JA", "1KA", "1LA"},
     {"1CJ", "1DJ", "1EJ", "1FJ", "1CP", "1DP", "1EP", "1FP", "1IB", "1JB", "1KB", "1LB"},
     "1CJCI"},
};

struct BoxesPensions {
    CaseEntree etrangeres[4];            // outside the withholding
    CaseEntree alimentaires[9];          // maintenance received, paid by instalments
    CaseEntree sourceEtrangere[4];       // foreign source, paid by instalments
    CaseEntree alimentairesQuotient[4];  // the ones with exceptional income
    CaseEntree quotients[13];
};
constexpr BoxesPensions pensions[nPersonnes] = {
    {{"1AL"}, {"1AO"}, {"1AM"}, {"1AO"}, {"1AS", "1AO", "1AZ", "AAQ"}},
    {{"1BL"}, {"1BO"}, {"1BM"}, {"1BO"}, {"1BS", "1BO", "1BZ", "BAQ"}},
    {{"1CL", "1DL", "1EL", "1FL"},
     {"1CO", "1DO", "1EO", "1FO", "1FOA", "1FOB", "1FOC", "1FOD", "1FOE"},
     {"1CM", "1DM", "1EM", "1FM"},
     {"1CO", "1DO", "1EO", "1FO"},
     {"1CS", "1DS", "1ES", "1FS", "1CO", "1DO", "1EO", "1FO", "1CZ", "1DZ", "1EZ", "1FZ"}},
};

// The boxes of both that are looked up one by one: most returns have none of them.
constexpr CasesEntree boxesAPart = [] {
    CasesEntree toutes;
    const auto ajoute = [&](const auto& boxes) {
        for (const CaseEntree box : boxes)
            if (box) toutes.Ajoute(box);
    };
    for (const BoxesSalaires& b : salaires)
        ajoute(b.horsPrelevement), ajoute(b.etrangers), ajoute(b.gerants), ajoute(b.deductions);
    for (const BoxesPensions& b : pensions) ajoute(b.etrangeres), ajoute(b.alimentaires), ajoute(b.sourceEtrangere);
    return toutes;
}();

constexpr std::u16string_view nomsProfessionnels[nActivites] = {u"RR_BA_PAS",        u"RR_BIC_P_PAS", u"RR_BIC_NP_PAS",
                                                                u"RR_BIC_NP_LM_PAS", u"RR_BNC_P_PAS", u"RR_BNC_NP_PAS"};
constexpr std::u16string_view nomsAcompte[nActivites] = {u"RR_BA_PASA",        u"RR_BIC_P_PASA", u"RR_BIC_NP_PASA",
                                                         u"RR_BIC_NP_LM_PASA", u"RR_BNC_P_PASA", u"RR_BNC_NP_PASA"};

std::int32_t TotalPositif(const ParPersonne& p) {
    std::int32_t total = 0;
    for (const std::int32_t montant : p.montant) total += nPositif(montant);
    return total;
}

template <class Fonction>
ParPersonne PourChacun(Fonction fonction) {
    ParPersonne p;
    for (std::size_t k = 0; k < nPersonnes; ++k) p.montant[k] = fonction(k);
    return p;
}

}  // namespace

Assiettes::Assiettes(const Contexte& c)
    : m_contexte(c),
      m_avecBoxesAPart(c.Remplies(boitesLues<boxesAPart>)),
      m_avecActivites(!c.exceptionnels.montants.empty() || c.Remplies(boitesLues<boitesActivites>) ||
                      c.Remplies(boitesLues<nonsalaries::boites>)) {
    for (std::size_t i = 0; i < Activites(); ++i) {
        const Activite& a = activites[i];
        m_professionnels[i] = PourChacun([&](std::size_t k) {
            return C[k][a.resultat] - E[a.etrangerAvec[k]] - Majore(a, k, E[a.etrangerSans[k]]);
        });
    }
}

std::int32_t Assiettes::Somme(std::span<const CaseEntree> boxes) const {
    std::int32_t somme = 0;
    if (!m_avecBoxesAPart) return somme;
    for (const CaseEntree box : boxes)
        if (box) somme += E[box];
    return somme;
}

std::int32_t Assiettes::Quotients(std::span<const CaseEntree> boxes) const {
    std::int32_t somme = 0;
    if (m_contexte.exceptionnels.montants.empty()) return somme;
    for (const CaseEntree box : boxes)
        if (box) somme += m_contexte.exceptionnels.De(box);
    return somme;
}

double Assiettes::Ratio(std::size_t k, CaseSortie net, CaseSortie declare) const {
    return dDiv(C[k][net], C[k][declare]);
}

std::int32_t Assiettes::Trace(std::u16string_view nom, std::int32_t valeur) const {
    if (valeur != 0) m_contexte.commun.trace.Valeur(nom, valeur);
    return valeur;
}

ParPersonne Assiettes::Trace(std::u16string_view nom, const ParPersonne& valeur) const {
    Trace(nom, valeur.Total());
    return valeur;
}

std::int32_t Assiettes::Impot() const {
    return Trace(u"IR_PAS", S["TOT_IMPOT_DOM"] - S["U_DECOTE"] - S["U_CLASSES_MOYENNES"]);
}

// ---- Salaries. The entry boxes hold the exceptional amounts too while the bases are read.

ParPersonne Assiettes::Salaires() const {
    return Trace(u"RN_SAL_PAS", PourChacun([&](std::size_t k) {
                     const BoxesSalaires& b = salaires[k];
                     const std::int32_t acompte = Somme(b.etrangers) + Somme(b.gerants) - Quotients(b.gerants);
                     const std::int32_t reste =
                         C[k]["RN_SAL_SAIS"] - Somme(b.horsPrelevement) - acompte + Somme(b.deductions);
                     return nTronque(Ratio(k, "RN_SAL", "RN_SAL_SAIS") * acompte + reste);
                 }));
}

ParPersonne Assiettes::SalairesAcompte() const {
    return Trace(u"RN_SAL_PASA", PourChacun([&](std::size_t k) {
                     const BoxesSalaires& b = salaires[k];
                     const std::int32_t acompte = Somme(b.etrangers) + Somme(b.gerants) - 2 * Quotients(b.gerants);
                     return nTronque(Ratio(k, "RN_SAL", "RN_SAL_SAIS") * acompte);
                 }));
}

ParPersonne Assiettes::SalairesNets() const {
    return Trace(u"RN_SAL_NET_PAS", PourChacun([&](std::size_t k) {
                     const BoxesSalaires& b = salaires[k];
                     const std::int32_t preleves = C[k]["RN_SAL_SAIS"] - Somme(b.horsPrelevement) + Somme(b.deductions);
                     return nTronque(dDiv(dMul(C[k]["RN_SAL"], preleves), C[k]["RN_SAL_SAIS"]));
                 }));
}

// ---- Pensions.

ParPersonne Assiettes::Pensions() const {
    return Trace(u"RN_PEN_PAS", PourChacun([&](std::size_t k) {
                     const BoxesPensions& b = pensions[k];
                     const std::int32_t alimentaires = Somme(b.alimentaires) - Quotients(b.alimentairesQuotient);
                     const std::int32_t etrangeres = Somme(b.sourceEtrangere);
                     return nArrondi((alimentaires + etrangeres) * Ratio(k, "RN_PEN", "RN_PEN_DECL")) +
                            (C[k]["RN_PEN_DECL"] - Somme(b.etrangeres) - alimentaires - etrangeres);
                 }));
}

ParPersonne Assiettes::PensionsAcompte() const {
    return Trace(u"RN_PEN_PASA", PourChacun([&](std::size_t k) {
                     const BoxesPensions& b = pensions[k];
                     const std::int32_t acompte =
                         Somme(b.alimentaires) - 2 * Quotients(b.alimentairesQuotient) + Somme(b.sourceEtrangere);
                     return nArrondi(acompte * Ratio(k, "RN_PEN", "RN_PEN_DECL"));
                 }));
}

ParPersonne Assiettes::PensionsNettes() const {
    return Trace(u"RN_PEN_NET_PAS", PourChacun([&](std::size_t k) {
                     const std::int32_t declarees = C[k]["RN_PEN_DECL"];
                     return nProrata(C[k]["RN_PEN"], declarees - Somme(pensions[k].etrangeres), declarees);
                 }));
}

// ---- Annuities and property.

std::int32_t Assiettes::Rentes() const {
    return Trace(u"RD_RENTES_PAS", S["RD_RENTES"] - nAuTaux(E["1AR"], loi["rentes.moinsDe50ans"]) -
                                       nAuTaux(E["1BR"], loi["rentes.de50a59ans"]) -
                                       nAuTaux(E["1CR"], loi["rentes.de60a69ans"]) -
                                       nAuTaux(E["1DR"], loi["rentes.plusDe69ans"]));
}

std::int32_t Assiettes::Foncier() const {
    return Trace(u"RD_FON_PAS", S["RD_FON"] - nAuTaux(E["4BK"], loi.Complement("foncier.micro.abattement")) - E["4BL"]);
}

std::int32_t Assiettes::FoncierAcompte() const {
    return Trace(u"RD_FON_PASA", Foncier() - m_contexte.exceptionnels.De("4BA") - m_contexte.exceptionnels.De("RAQ"));
}

// ---- Activities.

std::size_t Assiettes::Activites() const { return m_avecActivites ? std::size_t{nActivites} : 0; }

// An amount declared without an approved centre, with its share of the category's surcharge.
std::int32_t Assiettes::Majore(const Activite& a, std::size_t k, std::int32_t montant) const {
    return montant + nProrata(montant, C[k][a.majoration], C[k][a.resultatSansCentre]);
}

ParPersonne Assiettes::Professionnel(std::size_t activite) const {
    return Trace(nomsProfessionnels[activite], m_professionnels[activite]);
}

ParPersonne Assiettes::ProfessionnelAcompte(std::size_t activite) const {
    const Activite& a = activites[activite];
    const ParPersonne preleve = Professionnel(activite);
    const auto quotients = [&](const Benefice(&boxes)[2]) {
        const CaseEntree deux[] = {boxes[0].box, boxes[1].box};
        return Quotients(deux);
    };
    return Trace(nomsAcompte[activite], PourChacun([&](std::size_t k) {
                     return preleve.montant[k] - quotients(a.avecCentre[k]) - Majore(a, k, quotients(a.sansCentre[k])) -
                            (a.plusValuesCourtTerme ? C[k][a.plusValuesCourtTerme] : 0);
                 }));
}

// ---- Totals.

template <class Fonction>
void Assiettes::ParCategorie(Fonction fonction) const {
    fonction(Salaires());
    fonction(Pensions());
    for (std::size_t i = 0; i < Activites(); ++i) fonction(Professionnel(i));
}

std::int32_t Assiettes::RevenuPreleve() const {
    std::int32_t total = Rentes() + Foncier();
    ParCategorie([&](const ParPersonne& p) { total += p.Total(); });
    return Trace(u"REV_PAS", total);
}

std::int32_t Assiettes::RevenuNetPreleve() const {
    std::int32_t total = SalairesNets().Total() + PensionsNettes().Total() + Rentes() + Foncier();
    for (std::size_t i = 0; i < Activites(); ++i) total += Professionnel(i).Total();
    return Trace(u"REV_PAS_NET", total);
}

std::int32_t Assiettes::RevenuNetImposable() const {
    static constexpr CaseSortie parPersonne[] = {"RN_SAL",    "RN_PEN",   "RR_BA",     "RR_BIC_P", "RR_BIC_NP_LM",
                                                 "RR_BIC_NP", "RR_BNC_P", "RR_BNC_NP", "RD_GAINS"};
    static constexpr CaseSortie communs[] = {"RD_RENTES", "RD_MOB",       "RD_FON",
                                             "RD_AUTRE",  "RD_GAINS_1TZ", "RD_PV_BAREME"};
    std::int32_t total = 0;
    for (const CaseSortie ligne : parPersonne)
        for (const auto& colonne : C) total += nPositif(colonne[ligne]);
    for (const CaseSortie ligne : communs) total += nPositif(S[ligne]);
    return Trace(u"REV_NET_IMP", total);
}

std::int32_t Assiettes::PartDuDeclarant(std::size_t declarant) const {
    std::int32_t total = 0;
    ParCategorie([&](const ParPersonne& p) { total += nPositif(p.montant[declarant]); });
    return total;
}

std::int32_t Assiettes::PartDesCharges() const {
    std::int32_t total = 0;
    ParCategorie([&](const ParPersonne& p) { total += p.montant[2]; });
    return total;
}

std::int32_t Assiettes::Acompte() const {
    std::int32_t total = nPositif(SalairesAcompte().Total()) + nPositif(PensionsAcompte().Total()) +
                         nPositif(Rentes()) + nPositif(FoncierAcompte());
    for (std::size_t i = 0; i < Activites(); ++i) {
        const ParPersonne acompte = ProfessionnelAcompte(i);
        for (std::size_t k = 0; k < nPersonnes; ++k) {
            if (E[activites[i].cesse[k]] != 0) continue;  // an activity that has ceased pays no instalment
            const std::int32_t mois = E[activites[i].mois[k]], positif = nPositif(acompte.montant[k]);
            total += mois > 0 ? nProrata(positif, 12, mois) : positif;
        }
    }
    return total;
}

std::int32_t Assiettes::AcompteMeubles() const {
    static constexpr CaseEntree ventesDejaSoumises[nPersonnes] = {"5NJ", "5OJ", "5PJ"};
    static constexpr CaseEntree servicesDejaSoumis[nPersonnes] = {"5NW", "5OW", "5PW"};
    const Activite& a = activites[Meuble];
    if (!m_avecActivites) return 0;
    std::int32_t total = 0;
    for (std::size_t k = 0; k < nPersonnes; ++k) {
        // Letting that already bore the levies, exceptional and foreign letting stay out.
        const auto horsBase = [&](const Benefice(&boxes)[2], CaseEntree etranger) {
            return E[boxes[1].box] + m_contexte.exceptionnels.De(boxes[0].box) +
                   m_contexte.exceptionnels.De(boxes[1].box) + E[etranger];
        };
        std::int32_t base =
            nPositif(C[k][a.resultat] - C[k][a.majoration] -
                     nAuTaux(E[ventesDejaSoumises[k]], loi.Complement("micro.ventes.abattement")) -
                     nAuTaux(E[servicesDejaSoumis[k]], loi.Complement("micro.services.abattement")) -
                     horsBase(a.avecCentre[k], a.etrangerAvec[k]) - horsBase(a.sansCentre[k], a.etrangerSans[k]));
        if (E[a.mois[k]] != 0) base = nDiv(base * 12, E[a.mois[k]]);
        total += base;
    }
    return total;
}

std::int32_t Assiettes::RevenuNonExceptionnel() const {
    std::int32_t total = nPositif(Rentes()) + nPositif(FoncierAcompte() - E["4BACI"]);
    total += TotalPositif(PourChacun([&](std::size_t k) {
        const BoxesSalaires& b = salaires[k];
        const std::int32_t retenus =
            C[k]["RN_SAL_SAIS"] - Somme(b.horsPrelevement) - Quotients(b.quotients) - E[b.exceptionnel];
        return nProrata(retenus, C[k]["RN_SAL"], C[k]["RN_SAL_SAIS"]);
    }));
    total += TotalPositif(PourChacun([&](std::size_t k) {
        const BoxesPensions& b = pensions[k];
        const std::int32_t retenues = C[k]["RN_PEN_DECL"] - Somme(b.etrangeres) - Quotients(b.quotients);
        return nProrata(retenues, C[k]["RN_PEN"], C[k]["RN_PEN_DECL"]);
    }));
    for (std::size_t i = 0; i < Activites(); ++i) {
        const Activite& a = activites[i];
        const auto exceptionnel = [&](const Benefice(&boxes)[2]) {
            std::int32_t montant = 0;
            for (const Benefice& b : boxes)
                if (b.box) montant += E[b.exceptionnel];
            return montant;
        };
        const ParPersonne acompte = ProfessionnelAcompte(i);
        total += TotalPositif(PourChacun([&](std::size_t k) {
            return acompte.montant[k] - exceptionnel(a.avecCentre[k]) - Majore(a, k, exceptionnel(a.sansCentre[k]));
        }));
    }
    return total;
}

}  // namespace kv
