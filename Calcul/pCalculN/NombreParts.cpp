#include <algorithm>

#include "Calcul/pCalculN/Contexte.h"
#include "Calcul/pCalculN/Etapes.h"

// Household parts, in hundredths (CGI art. 193 to 195).

namespace kv {

namespace {

constexpr std::int32_t nPart = 100;
constexpr std::int32_t nDemiPart = 50;
constexpr std::int32_t nQuartDePart = 25;

class Foyer : Travail {
  public:
    explicit Foyer(Contexte& c) : Travail(c) {}
    void NombreParts();

  private:
    bool Coche(CaseEntree box) const { return E[box] == 1; }
    std::int32_t PartsDesEnfants() const;
    std::int32_t PartsDesSituations() const;

    // A person widowed in the year is taxed as a couple.
    const bool m_veufDansLAnnee = Coche("Vp") && (AnneeOfDate(E["Z1"]) == 2017 || AnneeOfDate(E["Z2"]) == 2017);
    const bool m_imposesEnsemble = Coche("M") || Coche("O") || m_veufDansLAnnee;
    const std::int32_t m_aCharge = E["Fm"] + E["Jm"] + E["Rm"];
    const std::int32_t m_alternes = E["Hm"];
};

// Half a part for each of the first two dependants, a whole one from the third; half of that in alternating residence.
std::int32_t Foyer::PartsDesEnfants() const {
    std::int32_t parts = 0;
    if (m_aCharge > 0) parts += nDemiPart * m_aCharge;
    if (m_aCharge >= 3) parts += nDemiPart * (m_aCharge - 2);
    if (m_alternes > 0) {
        parts += nQuartDePart * m_alternes;
        if (m_aCharge + m_alternes >= 3) parts += nQuartDePart * std::min(m_aCharge + m_alternes - 2, m_alternes);
    }
    return parts;
}

// What disability, war service, widowhood and living alone add.
std::int32_t Foyer::PartsDesSituations() const {
    std::int32_t parts = 0;
    if (m_imposesEnsemble) {
        const bool sansInvalidite = E["P"] == 0 && E["Fp"] == 0;
        if (Coche("P") || Coche("Fp")) parts += nDemiPart * (E["P"] + E["Fp"]);
        if (Coche("S") && sansInvalidite) parts += nDemiPart;
        if (m_veufDansLAnnee && E["W"] != 0 && sansInvalidite) parts += nDemiPart;
    } else if (m_aCharge + m_alternes > 0) {
        if (Coche("V") || Coche("VEvt"))
            parts += nPart;
        else if (Coche("T"))
            parts += m_aCharge == 0 && m_alternes == 1 ? nQuartDePart : nDemiPart;
        if (Coche("P")) parts += nDemiPart;
    } else if (Coche("P") || Coche("Gp") || E["W"] != 0 || (Coche("L") && E["N"] == 0)) {
        parts += nDemiPart;
    }
    return parts + nDemiPart * E["Gm"] + nDemiPart * E["Rm"] + nQuartDePart * E["Im"];
}

void Foyer::NombreParts() {
    const std::int32_t base = m_imposesEnsemble ? 2 * nPart : nPart;
    // The withholding-rate run taxes each declarant as half of the household.
    const std::int32_t diviseur = faits.retenueALaSource ? 2 : 1;
    S["F_NB_PARTS_ALL"] = nDiv(base + PartsDesEnfants() + PartsDesSituations(), diviseur);
    S["F_NB_PARTS_ISO"] = nDiv(base, diviseur);
    S["F_NB_CHARGE"] = nDiv(E["Nm"] + m_aCharge, diviseur);
    S["F_NB_ENFANTS"] = nDiv(E["Jm"] + E["Fm"] + E["Nm"], diviseur);
    S["F_NB_ENFANTS_ALTERNE"] = nDiv(m_alternes, diviseur);
}

}  // namespace

void NombreParts(Contexte& c) { Foyer(c).NombreParts(); }

}  // namespace kv
