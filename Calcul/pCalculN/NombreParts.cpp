#include <algorithm>

#include "Calcul/pCalculN/Calcul_N.h"

// Household parts, in hundredths (CGI art. 193 to 195).

namespace {

constexpr std::int32_t nPart = 100;
constexpr std::int32_t nDemiPart = 50;
constexpr std::int32_t nQuartDePart = 25;

}  // namespace

void CCalcul_N::NombreParts() {
    {
        const kv::Change<std::int32_t> unNiveauPlusBas(m_trace.m_nNiveau, m_trace.m_nNiveau + 1);
        m_trace.Ligne(u"2:NombreParts");
    }

    const auto coche = [&](CaseEntree c) { return E[c] == 1; };
    const bool veufDansLAnnee = coche("Vp") && (AnneeOfDate(E["Z1"]) == 2017 || AnneeOfDate(E["Z2"]) == 2017);
    const bool imposesEnsemble = coche("M") || coche("O") || veufDansLAnnee;
    const std::int32_t aCharge = E["Fm"] + E["Jm"] + E["Rm"];
    const std::int32_t alternes = E["Hm"];
    const bool sansInvalidite = E["P"] == 0 && E["Fp"] == 0;

    const std::int32_t base = imposesEnsemble ? 2 * nPart : nPart;
    std::int32_t parts = base;

    // Half a part for each of the first two dependants, a whole one from the third.
    if (aCharge > 0) parts += nDemiPart * aCharge;
    if (aCharge >= 3) parts += nDemiPart * (aCharge - 2);
    if (alternes > 0) {
        parts += nQuartDePart * alternes;
        if (aCharge + alternes >= 3) parts += nQuartDePart * std::min(aCharge + alternes - 2, alternes);
    }

    if (imposesEnsemble) {
        if (coche("P") || coche("Fp")) parts += nDemiPart * (E["P"] + E["Fp"]);
        if (coche("S") && sansInvalidite) parts += nDemiPart;
        if (veufDansLAnnee && E["W"] != 0 && sansInvalidite) parts += nDemiPart;
    } else if (aCharge + alternes > 0) {
        if (coche("V") || coche("VEvt"))
            parts += nPart;
        else if (coche("T"))
            parts += aCharge == 0 && alternes == 1 ? nQuartDePart : nDemiPart;
        if (coche("P")) parts += nDemiPart;
    } else if (coche("P") || coche("Gp") || E["W"] != 0 || (coche("L") && E["N"] == 0)) {
        parts += nDemiPart;
    }
    parts += nDemiPart * E["Gm"] + nDemiPart * E["Rm"] + nQuartDePart * E["Im"];

    // The withholding-rate run taxes each declarant as half of the household.
    const std::int32_t diviseur = m_bCalculPAS ? 2 : 1;
    S["F_NB_PARTS_ALL"] = parts / diviseur;
    S["F_NB_PARTS_ISO"] = base / diviseur;
    S["F_NB_CHARGE"] = (E["Nm"] + aCharge) / diviseur;
    S["F_NB_ENFANTS"] = (E["Jm"] + E["Fm"] + E["Nm"]) / diviseur;
    S["F_NB_ENFANTS_ALTERNE"] = alternes / diviseur;
}
