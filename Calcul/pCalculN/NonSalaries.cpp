#include <algorithm>
#include <span>

#include "Calcul/pCalculN/Contexte.h"
#include "Calcul/pCalculN/Etapes.h"
#include "Calcul/pCalculN/NonSalariesTable.h"

// Business income: agricultural (CGI art. 63, 64 bis), industrial and commercial (CGI art. 34, 50-0), non-commercial
// (CGI art. 92, 102 ter), under the micro and real regimes, with the deficits of the non-professional categories
// (CGI art. 156 I); exempt business income.

namespace kv {

using namespace nonsalaries;

namespace {

// The allowance on two kinds of receipts that share one minimum: the minimum is split in proportion to the receipts,
// never exceeds them, and the percentage wins when it is larger.
void AbatEnsemble(RecettesMicro& a, RecettesMicro& b, std::int32_t taux, std::int32_t minimum) {
    const std::int32_t total = a.recettes + b.recettes;
    for (RecettesMicro* r : {&a, &b})
        r->abattement =
            std::max(nAuTaux(r->recettes, taux), std::min(r->recettes, nProrata(r->recettes, minimum, total)));
}

// The allowances of the worldwide pass are kept; other passes take their share of them.
void Proportionne(std::span<RecettesMicro> recettes, std::span<RecettesMicro> memoire, Passe passe) {
    if (passe == Passe::Mondiale) {
        std::copy(recettes.begin(), recettes.end(), memoire.begin());
        return;
    }
    std::int32_t conserves = 0;
    for (const RecettesMicro& m : memoire) conserves += m.abattement;
    if (conserves <= 0) return;
    for (std::size_t i = 0; i < recettes.size(); ++i)
        recettes[i].abattement = nProrata(memoire[i].abattement, recettes[i].recettes, memoire[i].recettes);
}

// The years of activity that the micro-farm average covers.
std::int32_t AnneesMicroBA(std::int32_t debut) {
    if (debut == nNonSaisi || debut > anneeDesRevenus) return 0;
    return debut == anneeDesRevenus ? 1 : debut == anneeDesRevenus - 1 ? 2 : 3;
}

class NonSalaries : Travail {
  public:
    explicit NonSalaries(Contexte& c) : Travail(c) {}
    void RevenusNonSalaries();
    void RevenusExoneres();

  private:
    void Lit(const LigneReelle& ligne);
    template <std::size_t N>
    void Lit(const LigneReelle (&table)[N]) {
        for (const LigneReelle& ligne : table) Lit(ligne);
    }
    void Micro();
    void MicroBic(std::size_t personne);
    void MicroBnc(std::size_t personne);
    void MicroBa(std::size_t personne);
    std::int32_t AbattementMicroBA(std::int32_t recettes) const;
    void Resultats();
    void BncNonProfessionnels();
    void PlusValues();
    void MajorationsSansCentre();
    void DeficitsNonProfessionnels(const CategorieDeficit& categorie);
};

void NonSalaries::MicroBic(std::size_t k) {
    const auto recettes = [&](std::initializer_list<CaseEntree> boxes) { return RecettesMicro{SommeE(boxes), 0}; };
    std::array<RecettesMicro, 4> r = {
        recettes({ventesPro[k]}),
        recettes({servicesPro[k]}),
        recettes({ventesNonPro[k], meubleVentes[k], meubleVentesDejaSoumises[k]}),
        recettes({servicesNonPro[k], meubleServices[k], meubleServicesDejaSoumis[k]}),
    };
    auto& [ventesP, servicesP, ventesNP, servicesNP] = r;
    const std::int32_t minimum = loi["micro.abattement.plancher"];
    AbatEnsemble(ventesP, ventesNP, loi["micro.ventes.abattement"], minimum);
    AbatEnsemble(servicesP, servicesNP, loi["micro.services.abattement"], minimum);
    Proportionne(r, memoire.passes.microBic[k], faits.passe);

    auto& c = C[k];
    c["RR_BIC_P_MIC_DECL"] = ventesP.recettes + servicesP.recettes;
    c["RR_BIC_P_MIC_ABAT"] = ventesP.abattement + servicesP.abattement;
    c["RR_BIC_P_MIC"] = nPositif(c["RR_BIC_P_MIC_DECL"] - c["RR_BIC_P_MIC_ABAT"]);

    // Furnished letting takes its share of the non-professional allowances.
    const std::int32_t dejaSoumis = E[meubleVentesDejaSoumises[k]];
    const std::int32_t partVentes = E[meubleVentes[k]] + dejaSoumis;
    const std::int32_t partServices = E[meubleServices[k]] + E[meubleServicesDejaSoumis[k]];
    if (partVentes + partServices > 0) {
        const auto part = [](const RecettesMicro& m, std::int32_t p) { return nProrata(m.abattement, p, m.recettes); };
        c["RR_BIC_NP_LM_MIC_DECL"] = partVentes + partServices;
        c["RR_BIC_NP_LM_MIC_ABAT"] = part(ventesNP, partVentes) + part(servicesNP, partServices);
        c["RR_BIC_NP_LM_MIC"] = nPositif(c["RR_BIC_NP_LM_MIC_DECL"] - c["RR_BIC_NP_LM_MIC_ABAT"]);
        c["S_B_DEJA_SOUMIS"] = dejaSoumis - part(ventesNP, dejaSoumis);
    }
    c["RR_BIC_NP_MIC_DECL"] = ventesNP.recettes + servicesNP.recettes - c["RR_BIC_NP_LM_MIC_DECL"];
    c["RR_BIC_NP_MIC_ABAT"] = ventesNP.abattement + servicesNP.abattement - c["RR_BIC_NP_LM_MIC_ABAT"];
    c["RR_BIC_NP_MIC"] = nPositif(c["RR_BIC_NP_MIC_DECL"] - c["RR_BIC_NP_MIC_ABAT"]);
}

void NonSalaries::MicroBnc(std::size_t k) {
    std::array<RecettesMicro, 2> r = {{{E[bncPro[k]], 0}, {E[bncNonPro[k]], 0}}};
    AbatEnsemble(r[0], r[1], loi["micro.nonCommercial.abattement"], loi["micro.abattement.plancher"]);
    Proportionne(r, memoire.passes.microBnc[k], faits.passe);

    auto& c = C[k];
    c["RR_BNC_P_SPE_DECL"] = r[0].recettes;
    c["RR_BNC_P_SPE_ABAT"] = r[0].abattement;
    c["RR_BNC_P_SPE"] = nPositif(r[0].recettes - r[0].abattement);
    c["RR_BNC_NP_SPE_DECL"] = r[1].recettes;
    c["RR_BNC_NP_SPE_ABAT"] = r[1].abattement;
    c["RR_BNC_NP_SPE"] = nPositif(r[1].recettes - r[1].abattement);
}

// The allowance of a micro-farm for one year.
std::int32_t NonSalaries::AbattementMicroBA(std::int32_t recettes) const {
    if (recettes <= 0) return 0;
    const std::int32_t abattement = nAuTaux(recettes, loi["micro.agricole.abattement"]);
    return std::min(std::max(abattement, loi["micro.abattement.plancher"]), recettes);
}

// The average result of three years, less an allowance (CGI art. 64 bis).
void NonSalaries::MicroBa(std::size_t k) {
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

// A category whose deficits are carried for six or ten years, the oldest used first.
void NonSalaries::DeficitsNonProfessionnels(const CategorieDeficit& d) {
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
    std::int32_t& perdus = memoire.passes.deficitsPerdus[static_cast<std::size_t>(d.categorie)];
    if (faits.passe == Passe::Normale) perdus = std::min(nPositif(plusAncien - S[d.imputes]), plusAncien);
    if (faits.passe != Passe::TK) S[d.perdus] = perdus;

    S[d.reste] = S[d.anterieurs] + S[d.annee] - S[d.imputes] - S[d.perdus];
    if (d.categorie == NonPro::Bnc) S[d.reste] = nPositif(S[d.reste]);
    if (d.effaceSiNul && S[d.reste] == 0) S[d.anterieurs] = S[d.annee] = S[d.imputes] = S[d.perdus] = 0;
}

void NonSalaries::Lit(const LigneReelle& ligne) {
    for (std::size_t k = 0; k < nPersonnes; ++k) {
        std::int32_t valeur = E[ligne.box[k]];
        if (ligne.moins[k]) valeur -= E[ligne.moins[k]];
        if (ligne.plus[k]) valeur += E[ligne.plus[k]];
        C[k][ligne.sortie] = valeur;
    }
    lignes.Totalise(ligne.sortie);
}

void NonSalaries::RevenusNonSalaries() {
    Micro();
    Lit(lignesReelles);
    Resultats();
    BncNonProfessionnels();
    PlusValues();

    MajorationsSansCentre();
    lignes.Ajoute("RR_BIC_NP", "RR_BIC_NP_MAJO");
    DeficitsNonProfessionnels(bicNonProfessionnels);
    lignes.Ajoute("RR_BIC_NP_LM", "RR_BIC_NP_LM_MAJO");
    DeficitsNonProfessionnels(locationsMeublees);
    lignes.Ajoute("RR_BA", "RR_BA_MAJO");
    lignes.Ajoute("RR_BAM", "RR_BAM_MAJO");
    lignes.Ajoute("RR_BIC_P", "RR_BIC_P_MAJO");
    lignes.Ajoute("RR_BNC_P", "RR_BNC_P_MAJO");

    Lit(inventeurs);
    S["RR_BAM_AFF"] = 0;
    lignes.Ajoute("TM_BA", "RR_BAM");
}

void NonSalaries::Micro() {
    for (std::size_t k = 0; k < nPersonnes; ++k) {
        MicroBic(k);
        MicroBnc(k);
    }
    Lit(lignesMicro);
    for (std::size_t k = 0; k < nPersonnes; ++k) MicroBa(k);
    static constexpr CaseSortie sortiesMicro[] = {
        "RR_BIC_P_MIC_DECL",     "RR_BIC_P_MIC_ABAT",  "RR_BIC_P_MIC",        "RR_BIC_NP_LM_MIC_DECL",
        "RR_BIC_NP_LM_MIC_ABAT", "RR_BIC_NP_LM_MIC",   "S_B_DEJA_SOUMIS",     "RR_BIC_NP_MIC_DECL",
        "RR_BIC_NP_MIC_ABAT",    "RR_BIC_NP_MIC",      "RR_BNC_P_SPE_DECL",   "RR_BNC_P_SPE_ABAT",
        "RR_BNC_P_SPE",          "RR_BNC_NP_SPE_DECL", "RR_BNC_NP_SPE_ABAT",  "RR_BNC_NP_SPE",
        "RR_BA_MICRO_MOY",       "RR_BA_MICRO_ABAT",   "RR_BA_MICRO_REV_IMP",
    };
    for (const CaseSortie sortie : sortiesMicro) lignes.Totalise(sortie);
}

// The result of each category, before the surcharges and the deficits of earlier years.
void NonSalaries::Resultats() {
    lignes.AjouteTout(
        "RR_BA", {"RR_BA_MICRO_REV_IMP", "RR_BA_FORF_PVCT", "RR_BA_AVEC_CGA", "RR_BA_SANS_CGA", "RR_BA_FORFAITBOIS"});
    lignes.Soustrait("RR_BA", "RR_BA_MICRO_MVCT");
    lignes.AjouteTout("RR_BAM", {"RR_BAM_AVEC_CGA", "RR_BAM_SANS_CGA"});
    lignes.AjouteTout("RR_BIC_P", {"RR_BIC_P_MIC", "RR_BIC_P_MIC_PVCT", "RR_BIC_P_AVEC_CGA", "RR_BIC_P_SANS_CGA"});
    lignes.Soustrait("RR_BIC_P", "RR_BIC_P_MIC_MVCT");
    lignes.AjouteTout("RR_BIC_NP", {"RR_BIC_NP_MIC", "RR_BIC_NP_MIC_PVCT", "RR_BIC_NP_AVEC_CGA", "RR_BIC_NP_SANS_CGA"});
    lignes.Soustrait("RR_BIC_NP", "RR_BIC_NP_MIC_MVCT");
    lignes.AjouteTout("RR_BIC_NP_LM", {"RR_BIC_NP_LM_MIC", "RR_BIC_NP_LM_AVEC_CGA", "RR_BIC_NP_LM_SANS_CGA"});
    lignes.AjouteTout("RR_BNC_P", {"RR_BNC_P_SPE", "RR_BNC_P_SPE_PVCT", "RR_BNC_P_AVEC_CGA", "RR_BNC_P_SANS_CGA"});
    lignes.Soustrait("RR_BNC_P", "RR_BNC_P_SPE_MVCT");
    lignes.AjouteTout("RR_BNC_NP", {"RR_BNC_NP_SPE", "RR_BNC_NP_SPE_PVCT"});
    lignes.Soustrait("RR_BNC_NP", "RR_BNC_NP_SPE_MVCT");
}

// Non-professional non-commercial income: a profit without an approved association is raised.
void NonSalaries::BncNonProfessionnels() {
    const LigneReelle& sansAssociation = lignesReelles[std::size(lignesReelles) - 1];
    for (std::size_t k = 0; k < nPersonnes; ++k)
        if (E[sansAssociation.box[k]] >= E[sansAssociation.moins[k]])
            C[k]["RR_BNC_NP_CON_MAJ"] = nAuTaux(C[k]["RR_BNC_NP_SANS_AA"], loi["benefices.sansCentre.majoration"]);
    lignes.Totalise("RR_BNC_NP_CON_MAJ");
    S["RR_BNC_NP_DEF_REP"] =
        nPositif(S["RR_BNC_NP_SPE_MVCT"] - SommeS({"RR_BNC_NP_SPE", "RR_BNC_NP_SPE_PVCT", "RR_BNC_NP_AVEC_AA",
                                                   "RR_BNC_NP_SANS_AA", "RR_BNC_NP_CON_MAJ"}));
    lignes.AjouteTout("RR_BNC_NP", {"RR_BNC_NP_AVEC_AA", "RR_BNC_NP_SANS_AA", "RR_BNC_NP_CON_MAJ"});
    DeficitsNonProfessionnels(bncNonProfessionnels);
}

// Long-term gains; the losses of the micro regimes that exceed their gains are carried.
void NonSalaries::PlusValues() {
    Lit(plusValuesReelles);
    for (const LigneReelle& ligne : plusValuesMicro) {
        for (std::size_t k = 0; k < nPersonnes; ++k) {
            const std::int32_t nette = E[ligne.box[k]] - E[ligne.moins[k]];
            C[k][ligne.sortie] += nPositif(nette);
            C[k]["NP1_MV_LT"] += nPositif(-nette);
        }
        lignes.Totalise(ligne.sortie);
    }
    lignes.Totalise("NP1_MV_LT");

    struct Categorie {
        CaseSortie total, micro, reel;
    };
    static constexpr Categorie categories[] = {
        {"RF_PLUS_BA", "RF_PLUS_BA_MIC", "RF_PLUS_BA_NOR"},
        {"RF_PLUS_BIC_P", "RF_PLUS_BIC_P_MIC", "RF_PLUS_BIC_P_NOR"},
        {"RF_PLUS_BIC_NP", "RF_PLUS_BIC_NP_MIC", "RF_PLUS_BIC_NP_NOR"},
        {"RF_PLUS_BNC_P", "RF_PLUS_BNC_P_MIC", "RF_PLUS_BNC_P_NOR"},
        {"RF_PLUS_BNC_NP", "RF_PLUS_BNC_NP_MIC", "RF_PLUS_BNC_NP_NOR"},
    };
    for (const Categorie& categorie : categories) {
        lignes.AjouteTout(categorie.total, {categorie.micro, categorie.reel});
        lignes.Ajoute("RF_PLUS", categorie.total);
    }
}

// Results without an approved centre are raised (CGI art. 158-7), a professional commercial loss coming
// off the non-professional base first.
void NonSalaries::MajorationsSansCentre() {
    for (auto& c : C) {
        const auto majore = [&](CaseSortie majoration, std::int32_t base) {
            if (base > 0) c[majoration] += nAuTaux(base, loi["benefices.sansCentre.majoration"]);
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
        lignes.Totalise(majoration);
}

void NonSalaries::RevenusExoneres() {
    for (std::size_t k = 0; k < nPersonnes; ++k) {
        for (const LigneReelle& ligne : lignesExonerees)
            C[k][ligne.sortie] = E[ligne.box[k]] + (ligne.plus[k] ? E[ligne.plus[k]] : 0);
        C[k]["RE_BNCNP"] = 0;
        for (const BoxParPersonne& box : bncNonProExoneres) C[k]["RE_BNCNP"] += E[box[k]];
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
    for (const CaseSortie sortie : exoneres) lignes.Totalise(sortie);
    lignes.Totalise("REXONERE");
}

}  // namespace

// Without a box the result of every category is 0; the worldwide pass keeps that in the memory too.
void RevenusNonSalaries(Contexte& c) {
    if (c.faits.passe == Passe::Mondiale || c.Remplies(boitesLues<boites>)) NonSalaries(c).RevenusNonSalaries();
}
void RevenusExoneres(Contexte& c) {
    if (c.Remplies(boitesLues<boitesExonerees>)) NonSalaries(c).RevenusExoneres();
}

}  // namespace kv
