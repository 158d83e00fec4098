#include "Calcul/pCalculN/Contexte.h"
#include "Calcul/pCalculN/Etapes.h"

// The amount payable or refunded, tax and social levies together, with the collection and refund thresholds
// (CGI art. 1657 and 1965 L).

namespace kv {

namespace {

class Solde : Travail {
  public:
    explicit Solde(Contexte& c) : Travail(c) {}
    void ImpotAPaye();

  private:
    void ClasseImpot(std::int32_t avantCredits, std::int32_t net);
    void ClassePrelevementsSociaux();
    void NetAPayer(std::int32_t net);
    void NoteComparaison();
};

void Solde::ImpotAPaye() {
    static constexpr CaseSortie sorties[] = {
        "TOT_PAYER",           "TOT_REST",
        "TOT_N_REST",          "TOT_N_RECOUVRE",
        "INFO_NON_RESTITUE",   "INFO_NON_RECOUVREMENT",
        "INFO_NON_RECOUV_RES", "S_NON_RECOUVRE",
        "S_NON_RESTITUE",      "S_RESTITUE",
        "INFO_S_NON_RESTITUE", "INFO_S_NON_RECOUVREMENT",
        "INFO_S_NON_RECOUVRE", "S_NET_A_PAYER",
        "S_NET_RESTITUE",
    };
    for (const CaseSortie sortie : sorties) S[sortie] = 0;

    const std::int32_t avantCredits = S["TOT_IMP_COR"] + S["NICHE_FISCALE"] + S["CONTRIBUTIONS"];
    const std::int32_t net = avantCredits - S["D_CREDIT"];
    ClasseImpot(avantCredits, net);
    if (faits.cimr) S["S_A_PAYER"] = nPositif(S["S_A_PAYER"] + S["S_CONTR_CIMR_CS"]);
    ClassePrelevementsSociaux();
    NetAPayer(net);
    if (faits.options && E["AVA"] != 0) NoteComparaison();
}

// The net amounts that the comparison of the options reads.
void Solde::NoteComparaison() {
    const auto note = [&](std::int32_t& montant, CaseSortie sortie, std::u16string_view nom) {
        montant = S[sortie];
        if (trace.m_bTrace) trace.Ligne(std::u16string(nom) + u" : " + IntToStr(montant));
    };
    Comparaison& comparaison = contexte.commun.comparaison;
    if (E["PFU"] != 0) {
        note(comparaison.forfait.aPayer, "S_NET_A_PAYER", u"m_nS_NET_A_PAYER_PFU");
        note(comparaison.forfait.restitue, "S_NET_RESTITUE", u"m_nS_NET_RESTITUE_PFU");
    }
    if (E["BAR"] != 0) {
        note(comparaison.bareme.aPayer, "S_NET_A_PAYER", u"m_nS_NET_A_PAYER_BAR");
        note(comparaison.bareme.restitue, "S_NET_RESTITUE", u"m_nS_NET_RESTITUE_BAR");
    }
}

// A small refund is not paid; a small balance, or a small tax before credits, is not collected.
void Solde::ClasseImpot(std::int32_t avantCredits, std::int32_t net) {
    if (net <= -loi["restitution.minimum"]) {
        S["TOT_REST"] = -net;
    } else if (net < 0) {
        S["TOT_N_REST"] = -net;
        S["INFO_NON_RESTITUE"] = 1;
    } else if (avantCredits < loi["recouvrement.impot"]) {
        S["TOT_N_RECOUVRE"] = net;
        S["INFO_NON_RECOUV_RES"] = 1;
    } else if (net < loi["recouvrement.solde"]) {
        S["TOT_N_RECOUVRE"] = net;
        S["INFO_NON_RECOUVREMENT"] = 1;
    } else {
        S["TOT_PAYER"] = net;
    }
}

void Solde::ClassePrelevementsSociaux() {
    const std::int32_t prelevements = S["S_A_PAYER"];
    if (prelevements <= 0 || prelevements >= loi["recouvrement.prelevementsSociaux"]) return;
    S["S_NON_RECOUVRE"] = prelevements;
    if (faits.cimr) {
        S["INFO_S_NON_RECOUVREMENT"] = 1;
    } else {
        S["S_A_PAYER"] = 0;
        S["INFO_S_NON_RECOUVRE"] = 1;
    }
}

void Solde::NetAPayer(std::int32_t net) {
    const std::int32_t prelevements = S["S_A_PAYER"];
    const bool prelevementsRecouvres = S["S_NON_RECOUVRE"] == 0;
    if (S["TOT_REST"] > 0) {
        const std::int32_t ensemble = prelevementsRecouvres ? net + prelevements : net;
        (ensemble >= 0 ? S["S_NET_A_PAYER"] : S["S_NET_RESTITUE"]) = ensemble >= 0 ? ensemble : -ensemble;
    } else if (S["TOT_PAYER"] > 0) {
        S["S_NET_A_PAYER"] = prelevementsRecouvres ? net + prelevements : net;
    } else {
        S["S_NET_A_PAYER"] = prelevementsRecouvres ? prelevements : 0;
    }
}

}  // namespace

void ImpotAPaye(Contexte& c) { Solde(c).ImpotAPaye(); }

}  // namespace kv
