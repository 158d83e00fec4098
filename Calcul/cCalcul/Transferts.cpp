#include "Calcul/cCalcul/Transferts.h"

#include <numeric>

#include "Calcul/cCalcul/Catalogues.h"
#include "support/KVTarvel.h"

namespace kv {

namespace {

constexpr TransfertTK::Paire paires[] = {
    {"5HC", "5AK"}, {"5HI", "5AL"}, {"5IC", "5BK"}, {"5II", "5BL"}, {"5JC", "5CK"}, {"5JI", "5CL"}, {"5KC", "5DF"},
    {"5KI", "5DG"}, {"5LC", "5EF"}, {"5LI", "5EG"}, {"5MC", "5FF"}, {"5MI", "5FG"}, {"5NA", "5EY"}, {"5NK", "5EZ"},
    {"5OA", "5FY"}, {"5OK", "5FZ"}, {"5PA", "5GY"}, {"5PK", "5GZ"}, {"5NC", "5UR"}, {"5NI", "5US"}, {"5OC", "5VR"},
    {"5OI", "5VS"}, {"5PC", "5WR"}, {"5PI", "5WS"}, {"5QC", "5XJ"}, {"5QI", "5XK"}, {"5RC", "5YJ"}, {"5RI", "5YK"},
    {"5SC", "5ZJ"}, {"5SI", "5ZK"}, {"5JG", "5XS"}, {"5SN", "5XX"}, {"5RF", "5YS"}, {"5NS", "5YX"}, {"5SF", "5ZS"},
    {"5OS", "5ZX"}, {"4BA", "4BL"}, {"4BE", "4BK"},
};
static_assert(std::size(paires) == TransfertTK::nPaires);

// Investment income keeps its companion amounts apart: its allowances are computed on each part.
constexpr bool EstMobilier(CaseEntree box) { return box == "2DC" || box == "2TS" || box == "2TR"; }

constexpr const entree::Ligne& LigneDe(CaseEntree box) { return entree::lignes[box.numero]; }

constexpr std::size_t RangPersonne(CaseEntree box) {
    const entree::Personne p = LigneDe(box).personne;
    return p == entree::D1 ? 0 : p == entree::D2 ? 1 : 2;
}

template <class Zone>
std::int32_t Somme(const Zone& zone) {
    std::int32_t total = 0;
    for (const std::int32_t v : zone.valeurs) total += nValForc(v, 0);
    return total;
}

}  // namespace

TransfertTI::TransfertTI(CDataCalcul& data, Trace& trace) : m_data(data), m_trace(trace), m_ti(data.TI) {
    m_trace.Ligne(u"****> _TI_Dans_Fr(true)");
    for (int p = 0; p < nColonnesSalaires; ++p) DeplaceSalaires(p);
    for (const CaseEntree box : boites<entree::TIX>) {
        if (EstMobilier(box)) continue;
        const CaseEntreeDef& fiche = TableEntree[static_cast<std::size_t>(box.numero)];
        std::int32_t& ti = m_data.TI[CaseTI::Numero(fiche.nTI)];
        ti = nValForc(ti, 0);
        const CaseTIX slot = CaseTIX::Numero(fiche.nTIX);
        for (const std::int32_t moins : {m_data.TIX[slot], m_data.TIY[slot]})
            if (nValForc(moins, 0) != 0) ti = fiche.bNegatifTI ? ti + moins : nPositif(ti - moins);
    }
    for (std::size_t k = 0; k < boites<entree::TI>.size(); ++k) {
        const CaseEntree box = boites<entree::TI>[k];
        const std::int32_t ti = nValForc(m_data.TI.valeurs[k], 0);
        if (EstMobilier(box)) continue;
        m_data.Entree[box] += ti;
        m_montants.montant[RangPersonne(box)] += LigneDe(box).marques & entree::NegatifTI ? -ti : ti;
    }
}

TransfertTI::~TransfertTI() {
    m_trace.Ligne(u"****> _TI_Dans_Fr(false)");
    for (std::size_t k = 0; k < boites<entree::TI>.size(); ++k)
        if (const CaseEntree box = boites<entree::TI>[k]; !EstMobilier(box))
            m_data.Entree[box] -= nValForc(m_data.TI.valeurs[k], 0);
    for (int p = 0; p < nColonnesSalaires; ++p) RameneSalaires(p);
    m_data.TI = m_ti;
}

void TransfertTI::DeplaceSalaires(int personne) {
    const auto p = static_cast<std::size_t>(personne);
    auto& E = m_data.Entree;
    m_salairesExoneres[p] = E[rangeeC[p]];
    E[rangeeC[p]] = nPositif(E[rangeeC[p]]);
    E[rangeeK[p]] += E[rangeeE[p]];
    E[rangeeS[p]] += E[rangeeH[p]];
    E[rangeeJ[p]] += E[rangeeC[p]];
    m_montants.montant[RangPersonne(rangeeC[p])] += E[rangeeC[p]] + E[rangeeH[p]];
}

void TransfertTI::RameneSalaires(int personne) {
    const auto p = static_cast<std::size_t>(personne);
    auto& E = m_data.Entree;
    E[rangeeJ[p]] -= E[rangeeC[p]];
    E[rangeeC[p]] = m_salairesExoneres[p];
    E[rangeeK[p]] -= E[rangeeE[p]];
    E[rangeeS[p]] -= E[rangeeH[p]];
}

TransfertTK::TransfertTK(CDataCalcul& data, Trace& trace) : m_data(data), m_trace(trace) {
    m_trace.Ligne(u"****> _TK_Dans_Fr(true)");
    auto& E = m_data.Entree;
    for (std::size_t k = 0; k < nPaires; ++k) m_premieres[k] = E[paires[k].premiere];

    // Salaries as declared: expenses of the row F are taken off only where the flat deduction does not exceed them.
    std::array<bool, nColonnesSalaires> deductionForfaitaire{};
    for (std::size_t p = 0; p < nColonnesSalaires; ++p)
        deductionForfaitaire[p] = nPourcent(E[rangeeJ[p]] + E[rangeeF[p]], 10) > E[rangeeK[p]];

    for (std::size_t k = 0; k < m_sauves.size(); ++k) {
        std::int32_t& box = E[boites<entree::SauveTK>[k]];
        m_sauves[k] = box;
        box = 0;
    }
    for (std::size_t k = 0; k < boites<entree::TK>.size(); ++k) {
        const CaseEntree box = boites<entree::TK>[k];
        if (EstMobilier(box)) continue;
        E[box] += nValForc(m_data.TK.valeurs[k], 0);
        const auto f = std::find(rangeeF.begin(), rangeeF.end(), box);
        if (f != rangeeF.end() && deductionForfaitaire[static_cast<std::size_t>(f - rangeeF.begin())]) continue;
        E[box] = nPositif(E[box] - nValForc(m_data.TKZ.valeurs[k], 0));
    }
    for (const Paire& paire : paires) E[paire.premiere] = E[paire.seconde];
}

TransfertTK::~TransfertTK() {
    m_trace.Ligne(u"****> _TK_Dans_Fr(false)");
    auto& E = m_data.Entree;
    for (std::size_t k = 0; k < m_sauves.size(); ++k) E[boites<entree::SauveTK>[k]] = m_sauves[k];
    for (std::size_t k = 0; k < nPaires; ++k) E[paires[k].premiere] = m_premieres[k];
}

TransfertLie::TransfertLie(CDataCalcul& data, Trace& trace, Nature nature)
    : m_data(data), m_trace(trace), m_nature(nature), m_total(Deplace(+1)) {}

TransfertLie::~TransfertLie() {
    if (m_deplace) Deplace(-1);
}

std::int32_t TransfertLie::Deplace(int signe) {
    const bool autoEntr = m_nature == Nature::AutoEntr;
    m_trace.Ligne(autoEntr    ? signe > 0 ? u"****> _AutoEntr_Dans_Fr(true)" : u"****> _AutoEntr_Dans_Fr(false)"
                  : signe > 0 ? u"****> _Prospection_Dans_Fr(true)"
                              : u"****> _Prospection_Dans_Fr(false)");
    std::int32_t total = 0;
    const auto deplace = [&](CaseEntree box) {
        const std::int32_t v = nPositif(nValForc(m_data.Entree[box], 0));
        m_data.Entree[CaseEntree::Numero(TableEntree[static_cast<std::size_t>(box.numero)].CaseLiee)] += signe * v;
        total += v;
        m_deplace = m_deplace || v != 0;
    };
    if (autoEntr)
        for (const CaseEntree box : boites<entree::AutoEntr>) deplace(box);
    else
        for (const CaseEntree box : boites<entree::Prospection>) deplace(box);
    return total;
}

std::int32_t QuotientDansFr(CDataCalcul& data, Trace& trace, bool ajoute) {
    trace.Ligne(ajoute ? u"****> _Quotient_Dans_Fr(true)" : u"****> _Quotient_Dans_Fr(false)");
    std::int32_t total = 0;
    for (const auto& quotient : data.ListeQuotients) {
        for (std::size_t k = 0; k < boites<entree::Quotient>.size(); ++k) {
            const std::int32_t v = data.Quotient(boites<entree::Quotient>[k], quotient -> nId);
            const CaseEntree box = boites<entree::Quotient>[k];
            const CaseEntree cible = box == "AAQ"   ? CaseEntree("1AS")
                                     : box == "BAQ" ? CaseEntree("1BS")
                                     : box == "RAQ" ? CaseEntree("4BA")
                                                    : box;
            data.Entree[cible] += ajoute ? v : -v;
            total += v;
        }
    }
    return total;
}

ParPersonne TotalProspection(const CDataCalcul& data) {
    ParPersonne total;
    for (const CaseEntree box : boites<entree::Prospection>)
        total.montant[RangPersonne(box)] += nValForc(data.Entree[box], 0);
    return total;
}

std::int32_t TotalTI(const CDataCalcul& data) { return Somme(data.TI); }
std::int32_t TotalTK(const CDataCalcul& data) { return Somme(data.TK); }

std::int32_t TotalEtranger(const CDataCalcul& data, bool sansTK) {
    std::int32_t total = TotalTI(data) + (sansTK ? 0 : TotalTK(data));
    const auto ajoute = [&](const auto& boxes) {
        for (const CaseEntree box : boxes) total += nValForc(data.Entree[box], 0);
    };
    ajoute(boites<entree::AutoEntr>);
    ajoute(boites<entree::Prospection>);
    ajoute(rangeeC);
    ajoute(rangeeE);
    ajoute(rangeeH);
    return total;
}

std::int32_t IndicateurEtranger(const CDataCalcul& data) {
    const auto valeur = [&](CaseEntree box) { return nValForc(data.Entree[box], 0); };
    std::int32_t total = TotalTI(data);
    for (std::size_t p = 0; p < nColonnesSalaires; ++p)
        total += nPositif(valeur(rangeeC[p]) - valeur(rangeeE[p])) + valeur(rangeeH[p]);
    return total;
}

std::int32_t ExcedentQuotient(const CDataCalcul& data, CaseQuotient map) {
    std::int32_t excedent = 0;
    for (const auto& [coefficient, montant] : data.MapsQuotients[static_cast<std::size_t>(map.numero)])
        excedent += nValForc(montant, 0) - nArrondi(dDiv(nValForc(montant, 0), Diviseur(coefficient)));
    return excedent;
}

}  // namespace kv
