#include "Calcul/pCalculN/NombreParts.h"

#include <algorithm>

#include "Calcul/pCalculN/Contexte.h"
#include "Calcul/pCalculN/Etapes.h"

// Household parts, in hundredths (CGI art. 193 to 195).

namespace kv {

namespace {

constexpr std::int32_t nPart = 100;

class Foyer : Travail {
  public:
    explicit Foyer(Contexte& c) : Travail(c) {}
    void NombreParts();

  private:
    bool Coche(CaseEntree box) const { return E[box] == 1; }
    std::int32_t PartsDesSituations() const;

    // A person widowed in the year is taxed as a couple.
    const bool m_veufDansLAnnee =
        Coche("Vp") && (AnneeOfDate(E["Z1"]) == anneeDesRevenus || AnneeOfDate(E["Z2"]) == anneeDesRevenus);
    const bool m_imposesEnsemble = Coche("M") || Coche("O") || m_veufDansLAnnee;
    const std::int32_t m_aCharge = E["Fm"] + E["Jm"] + E["Rm"];
    const std::int32_t m_alternes = E["Hm"];
};

// What disability, war service, widowhood and living alone add.
std::int32_t Foyer::PartsDesSituations() const {
    const std::int32_t invalide = loi["parts.invalide"], combattant = loi["parts.ancienCombattant"];
    const std::int32_t isole = loi["parts.parentIsole"], enfantInvalide = loi["parts.enfantInvalide"];
    std::int32_t parts = 0;
    if (m_imposesEnsemble) {
        const bool sansInvalidite = E["P"] == 0 && E["Fp"] == 0;
        if (Coche("P") || Coche("Fp")) parts += invalide * (E["P"] + E["Fp"]);
        if (Coche("S") && sansInvalidite) parts += combattant;
        if (m_veufDansLAnnee && E["W"] != 0 && sansInvalidite) parts += combattant;
    } else if (m_aCharge + m_alternes > 0) {
        if (Coche("V") || Coche("VEvt"))
            parts += loi["parts.veufAvecCharges"];
        else if (Coche("T"))
            parts += m_aCharge == 0 && m_alternes == 1 ? nDiv(isole, 2) : isole;
        if (Coche("P")) parts += invalide;
    } else {  // one ground only: the best of those that apply
        if (Coche("P")) parts = std::max(parts, invalide);
        if (Coche("Gp") || E["W"] != 0) parts = std::max(parts, combattant);
        if (Coche("L") && E["N"] == 0) parts = std::max(parts, loi["parts.seul"]);
    }
    return parts + enfantInvalide * (E["Gm"] + E["Rm"]) + nDiv(enfantInvalide, 2) * E["Im"];
}

void Foyer::NombreParts() {
    const std::int32_t base = m_imposesEnsemble ? 2 * nPart : nPart;
    // The withholding-rate run taxes each declarant as half of the household.
    const std::int32_t diviseur = faits.retenueALaSource ? 2 : 1;
    S["F_NB_PARTS_ALL"] = nDiv(base + PartsDesEnfants(E.Toutes(), loi) + PartsDesSituations(), diviseur);
    S["F_NB_PARTS_ISO"] = nDiv(base, diviseur);
    S["F_NB_CHARGE"] = nDiv(E["Nm"] + m_aCharge, diviseur);
    S["F_NB_ENFANTS"] = nDiv(E["Jm"] + E["Fm"] + E["Nm"], diviseur);
    S["F_NB_ENFANTS_ALTERNE"] = nDiv(m_alternes, diviseur);
}

}  // namespace

std::int32_t PartsDesEnfants(const Saisie& saisie, const Loi& loi) {
    const std::int32_t aCharge = saisie["Fm"] + saisie["Jm"] + saisie["Rm"], alternes = saisie["Hm"];
    const std::int32_t parEnfant = loi["parts.enfant"], supplement = loi["parts.enfantMajore"] - parEnfant;
    const std::int32_t avantMajoration = nDiv(loi["parts.rangMajore"], 100) - 1;
    std::int32_t parts = 0;
    if (aCharge > 0) parts += parEnfant * aCharge + supplement * nPositif(aCharge - avantMajoration);
    if (alternes > 0) {
        const std::int32_t majores = std::min(nPositif(aCharge + alternes - avantMajoration), alternes);
        parts += nDiv(parEnfant, 2) * alternes + nDiv(supplement, 2) * majores;
    }
    return parts;
}

void NombreParts(Contexte& c) { Foyer(c).NombreParts(); }

}  // namespace kv
