#include <algorithm>
#include <span>

#include "Calcul/pCalculN/Calcul_N.h"

// Business income: agricultural (CGI art. 63, 64 bis), industrial and commercial (CGI art. 34, 50-0), non-commercial
// (CGI art. 92, 102 ter), under the micro and real regimes, with the deficits of the non-professional categories
// (CGI art. 156 I); exempt business income.

namespace {

using kv::Passe;

// A box for each person: first declarant, second declarant, dependants.
using ParPersonne = CaseEntree[kv::nPersonnes];

// A line of the real regimes: boxes less boxes plus boxes, by person.
struct LigneReelle {
    CaseSortie sortie;
    ParPersonne box;
    ParPersonne moins = {};
    ParPersonne plus = {};
};

constexpr LigneReelle lignesMicro[] = {
    // short-term gains and losses
    {"RR_BIC_P_MIC_PVCT", {"5KX", "5LX", "5MX"}},
    {"RR_BIC_NP_MIC_PVCT", {"5NX", "5OX", "5PX"}},
    {"RR_BNC_P_SPE_PVCT", {"5HV", "5IV", "5JV"}},
    {"RR_BNC_NP_SPE_PVCT", {"5KY", "5LY", "5MY"}},
    {"RR_BIC_P_MIC_MVCT", {"5KJ", "5LJ", "5MJ"}},
    {"RR_BIC_NP_MIC_MVCT", {"5IU", "5RZ", "5SZ"}},
    {"RR_BNC_P_SPE_MVCT", {"5KZ", "5LZ", "5MZ"}},
    {"RR_BNC_NP_SPE_MVCT", {"5JU", "5LD", "5MD"}},
    // micro-farms: receipts of the year and results of the two years before
    {"RR_BA_MICRO", {"5XB", "5YB", "5ZB"}},
    {"RR_BA_MICRO_REEL_Nm1", {"5XE", "5YE", "5ZE"}},
    {"RR_BA_MICRO_REEL_Nm2", {"5XF", "5YF", "5ZF"}},
    {"RR_BA_MICRO_FORFAIT2015", {"5XD", "5YD", "5ZD"}},
    {"RR_BA_FORFAITBOIS", {"5HD", "5ID", "5JD"}},
};

// With an approved centre (AVEC) or without one (SANS): profit less deficit.
constexpr LigneReelle lignesReelles[] = {
    {"RR_BA_FORF_PVCT", {"5HW", "5IW", "5JW"}},
    {"RR_BA_AVEC_CGA", {"5HC", "5IC", "5JC"}, {"5HF", "5IF", "5JF"}},
    {"RR_BA_SANS_CGA", {"5HI", "5II", "5JI"}, {"5HL", "5IL", "5JL"}},
    {"RR_BA_MICRO_MVCT", {"5XO", "5YO", "5ZO"}},
    {"RR_BAM_AVEC_CGA", {"5XT", "5XU", "5JCM"}},
    {"RR_BAM_SANS_CGA", {"5XV", "5XW", "5JIM"}},
    {"RR_BIC_P_AVEC_CGA", {"5KC", "5LC", "5MC"}, {"5KF", "5LF", "5MF"}},
    {"RR_BIC_P_SANS_CGA", {"5KI", "5LI", "5MI"}, {"5KL", "5LL", "5ML"}},
    {"RR_BIC_NP_AVEC_CGA", {"5NC", "5OC", "5PC"}, {"5NF", "5OF", "5PF"}},
    {"RR_BIC_NP_SANS_CGA", {"5NI", "5OI", "5PI"}, {"5NL", "5OL", "5PL"}},
    {"RR_BIC_NP_LM_AVEC_CGA", {"5NA", "5OA", "5PA"}, {"5NY", "5OY", "5PY"}, {"5NM", "5OM", "5PM"}},
    {"RR_BIC_NP_LM_SANS_CGA", {"5NK", "5OK", "5PK"}, {"5NZ", "5OZ", "5PZ"}, {"5KM", "5LM", "5MM"}},
    {"RR_BNC_P_AVEC_CGA", {"5QC", "5RC", "5SC"}, {"5QE", "5RE", "5SE"}},
    {"RR_BNC_P_SANS_CGA", {"5QI", "5RI", "5SI"}, {"5QK", "5RK", "5SK"}},
    {"RR_BNC_NP_AVEC_AA", {"5JG", "5RF", "5SF"}, {"5JJ", "5RG", "5SG"}},
    {"RR_BNC_NP_SANS_AA", {"5SN", "5NS", "5OS"}, {"5SP", "5NU", "5OU"}},
};

// Long-term gains of the real regimes.
constexpr LigneReelle plusValuesReelles[] = {
    {"RF_PLUS_BA_NOR", {"5HE", "5IE", "5JE"}},     {"RF_PLUS_BIC_P_NOR", {"5KE", "5LE", "5ME"}},
    {"RF_PLUS_BIC_NP_NOR", {"5NE", "5OE", "5PE"}}, {"RF_PLUS_BNC_P_NOR", {"5QD", "5RD", "5SD"}},
    {"RF_PLUS_BNC_NP_NOR", {"5SO", "5NT", "5OT"}},
};

// Long-term gains of the micro regimes, with the losses that come off them.
constexpr LigneReelle plusValuesMicro[] = {
    {"RF_PLUS_BA_MIC", {"5HX", "5IX", "5JX"}, {"5XN", "5YN", "5ZN"}},
    {"RF_PLUS_BIC_P_MIC", {"5KQ", "5LQ", "5MQ"}, {"5KR", "5LR", "5MR"}},
    {"RF_PLUS_BIC_NP_MIC", {"5NQ", "5OQ", "5PQ"}, {"5NR", "5OR", "5PR"}},
    {"RF_PLUS_BNC_P_MIC", {"5HR", "5IR", "5JR"}, {"5HS", "5IS", "5JS"}},
    {"RF_PLUS_BNC_NP_MIC", {"5KV", "5LV", "5MV"}, {"5KW", "5LW", "5MW"}},
};

// Exempt results.
constexpr LigneReelle lignesExonerees[] = {
    {"RE_FORFAIT", {"5XA", "5YA", "5ZA"}},
    {"RE_MICRO_BIC_PROF", {"5KN", "5LN", "5MN"}},
    {"RE_MICRO_BIC_NON_PROF", {"5NN", "5ON", "5PN"}},
    {"RE_SPE_BNC_PROF", {"5HP", "5IP", "5JP"}},
    {"RE_BA", {"5HB", "5IB", "5JB"}, {}, {"5HH", "5IH", "5JH"}},
    {"RE_BIC", {"5KB", "5LB", "5MB"}, {}, {"5KH", "5LH", "5MH"}},
    {"RE_BICNP", {"5NB", "5OB", "5PB"}, {}, {"5NH", "5OH", "5PH"}},
    {"RE_BNC", {"5QB", "5RB", "5SB"}, {}, {"5QH", "5RH", "5SH"}},
};

// The receipts of the micro regimes, by kind.
constexpr ParPersonne ventesPro = {"5KO", "5LO", "5MO"};
constexpr ParPersonne servicesPro = {"5KP", "5LP", "5MP"};
constexpr ParPersonne ventesNonPro = {"5NO", "5OO", "5PO"};
constexpr ParPersonne servicesNonPro = {"5NP", "5OP", "5PP"};
constexpr ParPersonne meubleVentes = {"5NG", "5OG", "5PG"};
constexpr ParPersonne meubleVentesDejaSoumises = {"5NJ", "5OJ", "5PJ"};
constexpr ParPersonne meubleServices = {"5ND", "5OD", "5PD"};
constexpr ParPersonne meubleServicesDejaSoumis = {"5NW", "5OW", "5PW"};
constexpr ParPersonne bncPro = {"5HQ", "5IQ", "5JQ"};
constexpr ParPersonne bncNonPro = {"5KU", "5LU", "5MU"};
constexpr ParPersonne debutActivite = {"5XC", "5YC", "5ZC"};

constexpr std::int32_t nMinimumMicro = 305;  // minimum allowance, not indexed

// The allowance on two kinds of receipts that share one minimum: the minimum is split in proportion to the receipts,
// never exceeds them, and the percentage wins when it is larger.
void AbatEnsemble(kv::RecettesMicro& a, kv::RecettesMicro& b, std::int32_t taux) {
    const std::int32_t total = a.recettes + b.recettes;
    for (kv::RecettesMicro* r : {&a, &b})
        r->abattement =
            std::max(nPourcent(r->recettes, taux), std::min(r->recettes, nProrata(r->recettes, nMinimumMicro, total)));
}

// The allowances of the worldwide pass are kept; other passes take their share of them.
void Proportionne(std::span<kv::RecettesMicro> recettes, std::span<kv::RecettesMicro> memoire, Passe passe) {
    if (passe == Passe::Mondiale) {
        std::copy(recettes.begin(), recettes.end(), memoire.begin());
        return;
    }
    std::int32_t gardes = 0;
    for (const kv::RecettesMicro& m : memoire) gardes += m.abattement;
    if (gardes <= 0) return;
    for (std::size_t i = 0; i < recettes.size(); ++i)
        recettes[i].abattement = nProrata(memoire[i].abattement, recettes[i].recettes, memoire[i].recettes);
}

// The allowance of a micro-farm for one year.
std::int32_t AbattementMicroBA(std::int32_t recettes) {
    if (recettes <= 0) return 0;
    return std::min(std::max(nPourcent(recettes, 87), nMinimumMicro), recettes);
}

// The years of activity that the micro-farm average covers.
std::int32_t AnneesMicroBA(std::int32_t debut) {
    if (debut == nNonSaisi || debut > 2017) return 0;
    return debut == 2017 ? 1 : debut == 2016 ? 2 : 3;
}

// The non-professional categories, whose deficits come off their own profits only.
constexpr kv::CategorieDeficit bncNonProfessionnels = {"RR_BNC_NP",
                                                       "RR_BNC_NP_DEF_IMP",
                                                       "RR_BNC_NP_DEF_REP",
                                                       "NP1_BNCNP_ANT",
                                                       "NP1_BNCNP_IMP",
                                                       "NP1_BNCNP_ANN",
                                                       "NP1_BNCNP_PER",
                                                       "NP1_BNCNP",
                                                       {"5HT", "5IT", "5JT", "5KT", "5LT", "5MT"},
                                                       kv::CategorieNonPro::Bnc,
                                                       false,
                                                       true};
constexpr kv::CategorieDeficit bicNonProfessionnels = {"RR_BIC_NP",
                                                       "RR_BIC_NP_DEF_IMP",
                                                       "RR_BIC_NP_DEF_REP",
                                                       "NP1_BICNP_ANT",
                                                       "NP1_BICNP_IMP",
                                                       "NP1_BICNP_ANN",
                                                       "NP1_BICNP_PER",
                                                       "NP1_BICNP",
                                                       {"5RN", "5RO", "5RP", "5RQ", "5RR", "5RW"},
                                                       kv::CategorieNonPro::Bic,
                                                       true,
                                                       true};
constexpr kv::CategorieDeficit locationsMeublees = {
    "RR_BIC_NP_LM",
    "RR_BIC_NP_LM_DEF_IMP",
    "RR_BIC_NP_LM_DEF_REP",
    "NP1_BICNP_LM_ANT",
    "NP1_BICNP_LM_IMP",
    "NP1_BICNP_LM_ANN",
    "NP1_BICNP_LM_PER",
    "NP1_BICNP_LM",
    {"5GA", "5GB", "5GC", "5GD", "5GE", "5GF", "5GG", "5GH", "5GI", "5GJ"},
    kv::CategorieNonPro::Meuble,
    true,
    false};

}  // namespace

void CCalcul_N::MicroBic(std::size_t k, Passe passe) {
    const auto recettes = [&](std::initializer_list<CaseEntree> boxes) { return kv::RecettesMicro{SommeE(boxes), 0}; };
    std::array<kv::RecettesMicro, 4> r = {
        recettes({ventesPro[k]}),
        recettes({servicesPro[k]}),
        recettes({ventesNonPro[k], meubleVentes[k], meubleVentesDejaSoumises[k]}),
        recettes({servicesNonPro[k], meubleServices[k], meubleServicesDejaSoumis[k]}),
    };
    auto& [ventesP, servicesP, ventesNP, servicesNP] = r;
    AbatEnsemble(ventesP, ventesNP, 71);
    AbatEnsemble(servicesP, servicesNP, 50);
    Proportionne(r, m_travail.passes.microBic[k], passe);

    auto& c = C[k];
    c["RR_BIC_P_MIC_DECL"] = ventesP.recettes + servicesP.recettes;
    c["RR_BIC_P_MIC_ABAT"] = ventesP.abattement + servicesP.abattement;
    c["RR_BIC_P_MIC"] = nPositif(c["RR_BIC_P_MIC_DECL"] - c["RR_BIC_P_MIC_ABAT"]);

    // Furnished letting takes its share of the non-professional allowances.
    const std::int32_t dejaSoumis = E[meubleVentesDejaSoumises[k]];
    const std::int32_t partVentes = E[meubleVentes[k]] + dejaSoumis;
    const std::int32_t partServices = E[meubleServices[k]] + E[meubleServicesDejaSoumis[k]];
    if (partVentes + partServices > 0) {
        const auto part = [](const kv::RecettesMicro& m, std::int32_t p) {
            return nProrata(m.abattement, p, m.recettes);
        };
        c["RR_BIC_NP_LM_MIC_DECL"] = partVentes + partServices;
        c["RR_BIC_NP_LM_MIC_ABAT"] = part(ventesNP, partVentes) + part(servicesNP, partServices);
        c["RR_BIC_NP_LM_MIC"] = nPositif(c["RR_BIC_NP_LM_MIC_DECL"] - c["RR_BIC_NP_LM_MIC_ABAT"]);
        c["S_B_DEJA_SOUMIS"] = dejaSoumis - part(ventesNP, dejaSoumis);
    }
    c["RR_BIC_NP_MIC_DECL"] = ventesNP.recettes + servicesNP.recettes - c["RR_BIC_NP_LM_MIC_DECL"];
    c["RR_BIC_NP_MIC_ABAT"] = ventesNP.abattement + servicesNP.abattement - c["RR_BIC_NP_LM_MIC_ABAT"];
    c["RR_BIC_NP_MIC"] = nPositif(c["RR_BIC_NP_MIC_DECL"] - c["RR_BIC_NP_MIC_ABAT"]);
}

void CCalcul_N::MicroBnc(std::size_t k, Passe passe) {
    std::array<kv::RecettesMicro, 2> r = {{{E[bncPro[k]], 0}, {E[bncNonPro[k]], 0}}};
    AbatEnsemble(r[0], r[1], 34);
    Proportionne(r, m_travail.passes.microBnc[k], passe);

    auto& c = C[k];
    c["RR_BNC_P_SPE_DECL"] = r[0].recettes;
    c["RR_BNC_P_SPE_ABAT"] = r[0].abattement;
    c["RR_BNC_P_SPE"] = nPositif(r[0].recettes - r[0].abattement);
    c["RR_BNC_NP_SPE_DECL"] = r[1].recettes;
    c["RR_BNC_NP_SPE_ABAT"] = r[1].abattement;
    c["RR_BNC_NP_SPE"] = nPositif(r[1].recettes - r[1].abattement);
}

// The average result of three years, less an allowance (CGI art. 64 bis).
void CCalcul_N::MicroBa(std::size_t k) {
    auto& c = C[k];
    const std::int32_t annees = AnneesMicroBA(E[debutActivite[k]]);
    const std::int32_t n = c["RR_BA_MICRO"], nMoins1 = c["RR_BA_MICRO_REEL_Nm1"], nMoins2 = c["RR_BA_MICRO_REEL_Nm2"];
    const std::int32_t somme = n + c["RR_BA_MICRO_FORFAIT2015"] + nMoins1 + nMoins2;
    c["RR_BA_MICRO_MOY"] = somme > 0 ? nArrondi(dDiv(somme, annees)) : 0;

    const std::int32_t abattements = AbattementMicroBA(n) + AbattementMicroBA(nMoins1) + AbattementMicroBA(nMoins2);
    if (n > 0 && nMoins1 > 0 && nMoins2 > 0)
        c["RR_BA_MICRO_ABAT"] = AbattementMicroBA(c["RR_BA_MICRO_MOY"]);
    else
        c["RR_BA_MICRO_ABAT"] = abattements > 0 ? nArrondi(dDiv(abattements, annees)) : 0;
    c["RR_BA_MICRO_REV_IMP"] += c["RR_BA_MICRO_MOY"] - c["RR_BA_MICRO_ABAT"];
}

// Splits an amount over the persons in proportion to their profits, and takes it off them.
void CCalcul_N::ImputeDeficit(CaseSortie resultat, CaseSortie impute, std::int32_t deficits) {
    S[impute] = std::min(S[resultat], deficits);
    double benefices = 0;
    for (const auto& c : C) benefices += dPositif(c[resultat]);
    for (auto& c : C) c[impute] = nArrondi(dMul(dDiv(dPositif(c[resultat]), benefices), S[impute]));
    m_pData->Soustrait(resultat, impute);
}

// A category whose deficits are carried for six or ten years, the oldest used first.
void CCalcul_N::DeficitsNonProfessionnels(const kv::CategorieDeficit& d, Passe passe) {
    std::int32_t anterieurs = 0;
    for (const CaseEntree box : d.boxes)
        if (box) anterieurs += E[box];
    const std::int32_t plusAncien = E[d.boxes[0]];

    if (S[d.resultat] > 0) {
        if (anterieurs > 0)
            ImputeDeficit(d.resultat, d.impute, anterieurs);
        else
            S[d.impute] = 0;
    } else {
        S[d.deficit] = -S[d.resultat];
        if (d.deficitParPersonne)
            for (auto& c : C) c[d.deficit] = -c[d.resultat];
    }
    S[d.anterieurs] = anterieurs;
    S[d.imputes] = S[d.impute];
    S[d.annee] = S[d.deficit];
    std::int32_t& perdus = m_travail.passes.deficitsPerdus[static_cast<std::size_t>(d.categorie)];
    if (passe == Passe::Normale) perdus = std::min(nPositif(plusAncien - S[d.imputes]), plusAncien);
    if (passe != Passe::TK) S[d.perdus] = perdus;

    S[d.reste] = S[d.anterieurs] + S[d.annee] - S[d.imputes] - S[d.perdus];
    if (d.categorie == kv::CategorieNonPro::Bnc) S[d.reste] = nPositif(S[d.reste]);
    if (d.effaceSiNul && S[d.reste] == 0) S[d.anterieurs] = S[d.annee] = S[d.imputes] = S[d.perdus] = 0;
}

void CCalcul_N::RevenusNonSalaries(Passe passe) {
    const kv::Etape etape(m_trace, u"6:RevenusNonSalaries");
    CDataCalcul& data = *m_pData;

    for (std::size_t k = 0; k < kv::nPersonnes; ++k) {
        MicroBic(k, passe);
        MicroBnc(k, passe);
    }
    const auto lit = [&](const LigneReelle& ligne) {
        for (std::size_t k = 0; k < kv::nPersonnes; ++k) {
            std::int32_t valeur = E[ligne.box[k]];
            if (ligne.moins[k]) valeur -= E[ligne.moins[k]];
            if (ligne.plus[k]) valeur += E[ligne.plus[k]];
            C[k][ligne.sortie] = valeur;
        }
        data.Totalise(ligne.sortie);
    };
    for (const LigneReelle& ligne : lignesMicro) lit(ligne);
    for (std::size_t k = 0; k < kv::nPersonnes; ++k) MicroBa(k);
    static constexpr CaseSortie sortiesMicro[] = {
        "RR_BIC_P_MIC_DECL",     "RR_BIC_P_MIC_ABAT",  "RR_BIC_P_MIC",        "RR_BIC_NP_LM_MIC_DECL",
        "RR_BIC_NP_LM_MIC_ABAT", "RR_BIC_NP_LM_MIC",   "S_B_DEJA_SOUMIS",     "RR_BIC_NP_MIC_DECL",
        "RR_BIC_NP_MIC_ABAT",    "RR_BIC_NP_MIC",      "RR_BNC_P_SPE_DECL",   "RR_BNC_P_SPE_ABAT",
        "RR_BNC_P_SPE",          "RR_BNC_NP_SPE_DECL", "RR_BNC_NP_SPE_ABAT",  "RR_BNC_NP_SPE",
        "RR_BA_MICRO_MOY",       "RR_BA_MICRO_ABAT",   "RR_BA_MICRO_REV_IMP",
    };
    for (const CaseSortie sortie : sortiesMicro) data.Totalise(sortie);

    for (const LigneReelle& ligne : lignesReelles) lit(ligne);
    data.AjouteTout(
        "RR_BA", {"RR_BA_MICRO_REV_IMP", "RR_BA_FORF_PVCT", "RR_BA_AVEC_CGA", "RR_BA_SANS_CGA", "RR_BA_FORFAITBOIS"});
    data.Soustrait("RR_BA", "RR_BA_MICRO_MVCT");
    data.AjouteTout("RR_BAM", {"RR_BAM_AVEC_CGA", "RR_BAM_SANS_CGA"});
    data.AjouteTout("RR_BIC_P", {"RR_BIC_P_MIC", "RR_BIC_P_MIC_PVCT", "RR_BIC_P_AVEC_CGA", "RR_BIC_P_SANS_CGA"});
    data.Soustrait("RR_BIC_P", "RR_BIC_P_MIC_MVCT");
    data.AjouteTout("RR_BIC_NP", {"RR_BIC_NP_MIC", "RR_BIC_NP_MIC_PVCT", "RR_BIC_NP_AVEC_CGA", "RR_BIC_NP_SANS_CGA"});
    data.Soustrait("RR_BIC_NP", "RR_BIC_NP_MIC_MVCT");
    data.AjouteTout("RR_BIC_NP_LM", {"RR_BIC_NP_LM_MIC", "RR_BIC_NP_LM_AVEC_CGA", "RR_BIC_NP_LM_SANS_CGA"});
    data.AjouteTout("RR_BNC_P", {"RR_BNC_P_SPE", "RR_BNC_P_SPE_PVCT", "RR_BNC_P_AVEC_CGA", "RR_BNC_P_SANS_CGA"});
    data.Soustrait("RR_BNC_P", "RR_BNC_P_SPE_MVCT");
    data.AjouteTout("RR_BNC_NP", {"RR_BNC_NP_SPE", "RR_BNC_NP_SPE_PVCT"});
    data.Soustrait("RR_BNC_NP", "RR_BNC_NP_SPE_MVCT");

    // Non-professional non-commercial income: a profit without an approved association is raised by a quarter.
    const LigneReelle& sansAssociation = lignesReelles[std::size(lignesReelles) - 1];
    for (std::size_t k = 0; k < kv::nPersonnes; ++k)
        if (E[sansAssociation.box[k]] >= E[sansAssociation.moins[k]])
            C[k]["RR_BNC_NP_CON_MAJ"] = nPourcent(C[k]["RR_BNC_NP_SANS_AA"], 25);
    data.Totalise("RR_BNC_NP_CON_MAJ");
    S["RR_BNC_NP_DEF_REP"] =
        nPositif(S["RR_BNC_NP_SPE_MVCT"] - SommeS({"RR_BNC_NP_SPE", "RR_BNC_NP_SPE_PVCT", "RR_BNC_NP_AVEC_AA",
                                                   "RR_BNC_NP_SANS_AA", "RR_BNC_NP_CON_MAJ"}));
    data.AjouteTout("RR_BNC_NP", {"RR_BNC_NP_AVEC_AA", "RR_BNC_NP_SANS_AA", "RR_BNC_NP_CON_MAJ"});
    DeficitsNonProfessionnels(bncNonProfessionnels, passe);

    for (const LigneReelle& ligne : plusValuesReelles) lit(ligne);
    for (const LigneReelle& ligne : plusValuesMicro) {
        for (std::size_t k = 0; k < kv::nPersonnes; ++k) {
            const std::int32_t nette = E[ligne.box[k]] - E[ligne.moins[k]];
            C[k][ligne.sortie] += nPositif(nette);
            C[k]["NP1_MV_LT"] += nPositif(-nette);
        }
        data.Totalise(ligne.sortie);
    }
    data.Totalise("NP1_MV_LT");

    MajorationsSansCentre();
    data.Ajoute("RR_BIC_NP", "RR_BIC_NP_MAJO");
    DeficitsNonProfessionnels(bicNonProfessionnels, passe);
    data.Ajoute("RR_BIC_NP_LM", "RR_BIC_NP_LM_MAJO");
    DeficitsNonProfessionnels(locationsMeublees, passe);
    data.Ajoute("RR_BA", "RR_BA_MAJO");
    data.Ajoute("RR_BAM", "RR_BAM_MAJO");
    data.Ajoute("RR_BIC_P", "RR_BIC_P_MAJO");
    data.Ajoute("RR_BNC_P", "RR_BNC_P_MAJO");

    struct PlusValues {
        CaseSortie total, micro, reel;
    };
    static constexpr PlusValues plusValues[] = {
        {"RF_PLUS_BA", "RF_PLUS_BA_MIC", "RF_PLUS_BA_NOR"},
        {"RF_PLUS_BIC_P", "RF_PLUS_BIC_P_MIC", "RF_PLUS_BIC_P_NOR"},
        {"RF_PLUS_BIC_NP", "RF_PLUS_BIC_NP_MIC", "RF_PLUS_BIC_NP_NOR"},
        {"RF_PLUS_BNC_P", "RF_PLUS_BNC_P_MIC", "RF_PLUS_BNC_P_NOR"},
        {"RF_PLUS_BNC_NP", "RF_PLUS_BNC_NP_MIC", "RF_PLUS_BNC_NP_NOR"},
    };
    for (const PlusValues& p : plusValues) {
        data.AjouteTout(p.total, {p.micro, p.reel});
        data.Ajoute("RF_PLUS", p.total);
    }
    lit({"RF_INVENTEURS", {"5TC", "5UC", "5VC"}});
    S["RR_BAM_AFF"] = 0;
    data.Ajoute("TM_BA", "RR_BAM");
}

// Results without an approved centre are raised by a quarter (CGI art. 158-7), a professional commercial loss coming
// off the non-professional base first.
void CCalcul_N::MajorationsSansCentre() {
    for (auto& c : C) {
        const auto majore = [&](CaseSortie majoration, std::int32_t base) {
            if (base > 0) c[majoration] += nPourcent(base, 25);
        };
        majore("RR_BA_MAJO", c["RR_BA_SANS_CGA"]);
        majore("RR_BAM_MAJO", c["RR_BAM_SANS_CGA"]);
        std::int32_t pro = c["RR_BIC_P_SANS_CGA"], nonPro = c["RR_BIC_NP_SANS_CGA"];
        if (pro < 0 && nonPro > 0) nonPro += pro, pro = 0;
        majore("RR_BIC_P_MAJO", pro);
        majore("RR_BIC_NP_MAJO", nonPro);
        majore("RR_BIC_NP_LM_MAJO", c["RR_BIC_NP_LM_SANS_CGA"]);
        majore("RR_BNC_P_MAJO", c["RR_BNC_P_SANS_CGA"]);
    }
    for (const CaseSortie majoration :
         {CaseSortie("RR_BA_MAJO"), CaseSortie("RR_BAM_MAJO"), CaseSortie("RR_BIC_P_MAJO"),
          CaseSortie("RR_BIC_NP_MAJO"), CaseSortie("RR_BIC_NP_LM_MAJO"), CaseSortie("RR_BNC_P_MAJO")})
        m_pData->Totalise(majoration);
}

void CCalcul_N::RevenusExoneres() {
    const kv::Etape etape(m_trace, u"7:RevenusExoneres");

    for (std::size_t k = 0; k < kv::nPersonnes; ++k) {
        for (const LigneReelle& ligne : lignesExonerees)
            C[k][ligne.sortie] = E[ligne.box[k]] + (ligne.plus[k] ? E[ligne.plus[k]] : 0);
        static constexpr ParPersonne bncNonProExoneres[] = {
            {"5TH", "5UH", "5VH"}, {"5HK", "5JK", "5LK"}, {"5IK", "5KK", "5MK"}};
        C[k]["RE_BNCNP"] = 0;
        for (const ParPersonne& box : bncNonProExoneres) C[k]["RE_BNCNP"] += E[box[k]];
    }
    static constexpr CaseSortie exoneres[] = {"RE_FORFAIT",
                                              "RE_MICRO_BIC_PROF",
                                              "RE_MICRO_BIC_NON_PROF",
                                              "RE_SPE_BNC_PROF",
                                              "RE_SPE_BNC_NON_PROF",
                                              "RE_BA",
                                              "RE_BIC",
                                              "RE_BICNP",
                                              "RE_BNC",
                                              "RE_BNCNP"};
    for (auto& c : C) {
        c["REXONERE"] = 0;
        for (const CaseSortie sortie : exoneres) c["REXONERE"] += c[sortie];
    }
    for (const CaseSortie sortie : exoneres) m_pData->Totalise(sortie);
    m_pData->Totalise("REXONERE");
}
