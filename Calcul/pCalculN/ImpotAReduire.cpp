#include "Calcul/pCalculN/ImpotAReduire.h"

#include <algorithm>

#include "Calcul/pCalculN/Contexte.h"

// From the gross tax to the tax that the reductions start from: the abatement of overseas residents (CGI art. 197 I-3),
// the low-tax relief (197 I-4 a), the reduction for modest incomes (197 I-4 b).

namespace kv {

namespace {

class AvantReductions : Travail {
  public:
    explicit AvantReductions(Contexte& c) : Travail(c) {}
    void AbattementOutreMer();
    std::int32_t DecoteEtClassesMoyennes();

  private:
    std::int32_t ClassesMoyennes(std::int32_t apresDecote) const;
};

// Overseas residents: an abatement on the gross tax, and on the tax at the marginal rate within the same room.
void AvantReductions::AbattementOutreMer() {
    const bool resident = faits.resident;
    const std::int32_t impot = !resident && S["IMPOT_TM_RETENU"] != 0 ? S["IMPOT_TM"]
                               : S["IMPOT_TX_EFFECTIF"] > 0           ? S["IMPOT_TX_EFFECTIF"]
                                                                      : S["TOT_IMPOT"];
    struct Departement {
        CaseSortie abattement, abattementTauxMarginal;
        Parametre taux, plafond;
    };
    static constexpr Departement antillesReunion = {
        "U_DECOTE_DOM_GMR", "IMPOT_DU_DOM_GMR", "outremer.antillesReunion.taux", "outremer.antillesReunion.plafond"};
    static constexpr Departement guyaneMayotte = {"U_DECOTE_DOM_GUY", "IMPOT_DU_DOM_GUY", "outremer.guyaneMayotte.taux",
                                                  "outremer.guyaneMayotte.plafond"};
    const Departement* dom = !resident                        ? nullptr
                             : E["GMR"] != 0                  ? &antillesReunion
                             : E["GUY"] != 0 || E["MAY"] != 0 ? &guyaneMayotte
                                                              : nullptr;
    S["TOT_IMPOT_DOM"] = impot;
    if (dom) {
        S[dom->abattement] = std::min(nAuTaux(impot, loi[dom->taux]), loi[dom->plafond]);
        S["TOT_IMPOT_DOM"] -= S[dom->abattement];
    }
    if (S["TM_BA"] > 0) {
        S["IMPOT_DU_REVENUS"] = nAuTaux(S["TM_BA"], S["TAUX_MARGINAL_3"]);
        S["IMPOT_DU_TAUX_MARG"] = S["IMPOT_DU_REVENUS"];
        if (dom) {
            S[dom->abattementTauxMarginal] =
                std::min(nAuTaux(S["IMPOT_DU_REVENUS"], loi[dom->taux]), loi[dom->plafond] - S[dom->abattement]);
            S["IMPOT_DU_TAUX_MARG"] -= S[dom->abattementTauxMarginal];
        }
        S["IMPOT_TAUX_MARG"] = S["IMPOT_DU_TAUX_MARG"];
    }
    S["TOT_IMPOT_DOM_AFF"] = S["TOT_IMPOT_DOM"];
}

// Both are for residents.
std::int32_t AvantReductions::DecoteEtClassesMoyennes() {
    const std::int32_t impot = S["TOT_IMPOT_DOM"] + S["IMPOT_TAUX_MARG"];
    const std::int32_t plafond = loi[faits.couple ? Parametre("decote.plafond.couple") : "decote.plafond.seul"];
    const double part = dMul(impot, dDiv(loi["decote.part"], 10000));
    const bool decote = impot > 0 && plafond > part && faits.resident;
    S["U_DECOTE"] = decote ? std::min(impot, nArrondi(plafond - part)) : 0;
    const std::int32_t apresDecote = impot - S["U_DECOTE"];
    S["U_CLASSES_MOYENNES"] = faits.resident ? ClassesMoyennes(apresDecote) : 0;
    return nPositif(std::min<std::int32_t>(S["TOT_IMPOT_DOM"], apresDecote - S["U_CLASSES_MOYENNES"]));
}

// The reduction for modest incomes: in full up to a first income, less and less up to a second one.
std::int32_t AvantReductions::ClassesMoyennes(std::int32_t apresDecote) const {
    const double partsEnPlus = dDiv(S["F_NB_PARTS_ALL"] - S["F_NB_PARTS_ISO"], 100);
    const std::int32_t majoration = nArrondi(dMul(partsEnPlus, loi["revenusModestes.parPart"]));
    const std::int32_t limite = ParFoyer(loi["revenusModestes.plafond"]) + majoration;
    const std::int32_t limitePleine = ParFoyer(loi["revenusModestes.plafondPlein"]) + majoration;
    const std::int32_t revenu = S["REV_REF_D"], reduction = nAuTaux(apresDecote, loi["revenusModestes.taux"]);
    if (revenu < limitePleine) return reduction;
    if (revenu >= limite) return 0;
    return nArrondi(dDiv(nArrondi(dMul(reduction, limite - revenu)), ParFoyer(loi["revenusModestes.degression"])));
}

}  // namespace

std::int32_t ImpotAReduire(Contexte& c) {
    AvantReductions impot(c);
    impot.AbattementOutreMer();
    return impot.DecoteEtClassesMoyennes();
}

}  // namespace kv
