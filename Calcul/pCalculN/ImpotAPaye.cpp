#include "Calcul/pCalculN/Calcul_N.h"

// The amount payable or refunded, tax and social levies together, with the collection and refund thresholds
// (CGI art. 1657 and 1965 L).

void CCalcul_N::ImpotAPaye() {
    const kv::Etape etape(m_trace, u"26:ImpotAPaye");

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
    const bool avecCimr = OptionCimr();
    ClasseImpot(avantCredits, net);
    if (avecCimr) S["S_A_PAYER"] = nPositif(S["S_A_PAYER"] + S["S_CONTR_CIMR_CS"]);
    ClassePrelevementsSociaux(avecCimr);
    NetAPayer(net);

    if (Options() && E["AVA"] != 0) {
        const auto garde = [&](std::int32_t& membre, CaseSortie sortie, std::u16string_view nom) {
            membre = S[sortie];
            m_trace.Ligne(std::u16string(nom) + u" : " + IntToStr(membre));
        };
        if (E["PFU"] != 0) {
            garde(m_nS_NET_A_PAYER_PFU, "S_NET_A_PAYER", u"m_nS_NET_A_PAYER_PFU");
            garde(m_nS_NET_RESTITUE_PFU, "S_NET_RESTITUE", u"m_nS_NET_RESTITUE_PFU");
        }
        if (E["BAR"] != 0) {
            garde(m_nS_NET_A_PAYER_BAR, "S_NET_A_PAYER", u"m_nS_NET_A_PAYER_BAR");
            garde(m_nS_NET_RESTITUE_BAR, "S_NET_RESTITUE", u"m_nS_NET_RESTITUE_BAR");
        }
    }
}

// A refund below 8 is not paid, a balance below 12 or a tax before credits below 61 not collected.
void CCalcul_N::ClasseImpot(std::int32_t avantCredits, std::int32_t net) {
    if (net <= -8) {
        S["TOT_REST"] = -net;
    } else if (net < 0) {
        S["TOT_N_REST"] = -net;
        S["INFO_NON_RESTITUE"] = 1;
    } else if (avantCredits < 61) {
        S["TOT_N_RECOUVRE"] = net;
        S["INFO_NON_RECOUV_RES"] = 1;
    } else if (net < 12) {
        S["TOT_N_RECOUVRE"] = net;
        S["INFO_NON_RECOUVREMENT"] = 1;
    } else {
        S["TOT_PAYER"] = net;
    }
}

void CCalcul_N::ClassePrelevementsSociaux(bool avecCimr) {
    const std::int32_t prelevements = S["S_A_PAYER"];
    if (prelevements <= 0 || prelevements >= 61) return;
    S["S_NON_RECOUVRE"] = prelevements;
    if (avecCimr) {
        S["INFO_S_NON_RECOUVREMENT"] = 1;
    } else {
        S["S_A_PAYER"] = 0;
        S["INFO_S_NON_RECOUVRE"] = 1;
    }
}

void CCalcul_N::NetAPayer(std::int32_t net) {
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
