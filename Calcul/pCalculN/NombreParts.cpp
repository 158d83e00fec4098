#include "Calcul/pCalculN/NombreParts.h"

#include <algorithm>
#include <numeric>

#include "Calcul/pCalculN/Contexte.h"
#include "Calcul/pCalculN/Etapes.h"

namespace kv {

namespace {

constexpr std::int32_t nPart = 100;

bool VeufDansLAnnee(const Saisie& saisie) {
    return saisie["Vp"] == 1 &&
           (AnneeOfDate(saisie["Z1"]) == anneeDesRevenus || AnneeOfDate(saisie["Z2"]) == anneeDesRevenus);
}

class Foyer : Travail {
  public:
    explicit Foyer(Contexte& c) : Travail(c) {}
    void NombreParts();
};

void Foyer::NombreParts() {
    const std::int32_t base = ImposesEnsemble(E.Toutes()) ? 2 * nPart : nPart;
    const PartsParMotif situations = PartsDesSituations(E.Toutes(), loi);
    const std::int32_t enPlus =
        PartsDesEnfants(E.Toutes(), loi) + std::accumulate(situations.begin(), situations.end(), 0);
    const std::int32_t aCharge = E["Fm"] + E["Jm"] + E["Rm"];
    // The withholding-rate run taxes each declarant as half of the household.
    const std::int32_t diviseur = faits.retenueALaSource ? 2 : 1;
    S["F_NB_PARTS_ALL"] = nDiv(base + enPlus, diviseur);
    S["F_NB_PARTS_ISO"] = nDiv(base, diviseur);
    S["F_NB_CHARGE"] = nDiv(E["Nm"] + aCharge, diviseur);
    S["F_NB_ENFANTS"] = nDiv(E["Jm"] + E["Fm"] + E["Nm"], diviseur);
    S["F_NB_ENFANTS_ALTERNE"] = nDiv(E["Hm"], diviseur);
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

bool ImposesEnsemble(const Saisie& saisie) { return saisie["M"] == 1 || saisie["O"] == 1 || VeufDansLAnnee(saisie); }

PartsParMotif PartsDesSituations(const Saisie& saisie, const Loi& loi) {
    const auto coche = [&](CaseEntree box) { return saisie[box] == 1; };
    const std::int32_t aCharge = saisie["Fm"] + saisie["Jm"] + saisie["Rm"], alternes = saisie["Hm"];
    PartsParMotif parts{};
    const auto ajoute = [&](Motif motif, std::int32_t fois = 1) {
        const auto m = static_cast<std::size_t>(motif);
        parts[m] += fois * loi[partsParMotif[m]];
    };
    if (ImposesEnsemble(saisie)) {
        const bool sansInvalidite = saisie["P"] == 0 && saisie["Fp"] == 0;
        if (coche("P") || coche("Fp")) ajoute(Motif::Invalidite, saisie["P"] + saisie["Fp"]);
        if (coche("S") && sansInvalidite) ajoute(Motif::AncienCombattant);
        if (VeufDansLAnnee(saisie) && saisie["W"] != 0 && sansInvalidite) ajoute(Motif::AncienCombattant);
    } else if (aCharge + alternes > 0) {
        if (coche("V") || coche("VEvt")) {
            ajoute(Motif::VeufAvecCharges);
        } else if (coche("T")) {
            ajoute(Motif::ParentIsole);
            std::int32_t& isole = parts[static_cast<std::size_t>(Motif::ParentIsole)];
            if (aCharge == 0 && alternes == 1) isole = nDiv(isole, 2);
        }
        if (coche("P")) ajoute(Motif::Invalidite);
    } else {  // one ground only: the best of those that apply, the first of equal ones
        const bool applicables[] = {coche("P"), coche("Gp") || saisie["W"] != 0, coche("L") && saisie["N"] == 0};
        static constexpr Motif motifs[] = {Motif::Invalidite, Motif::AncienCombattant, Motif::Seul};
        std::int32_t meilleur = 0;
        for (std::size_t i = 0; i < std::size(motifs); ++i) {
            const std::int32_t montant = loi[partsParMotif[static_cast<std::size_t>(motifs[i])]];
            if (!applicables[i] || montant <= meilleur) continue;
            parts = {};
            parts[static_cast<std::size_t>(motifs[i])] = meilleur = montant;
        }
    }
    ajoute(Motif::EnfantInvalide, saisie["Gm"] + saisie["Rm"]);
    parts[static_cast<std::size_t>(Motif::EnfantInvalideAlterne)] = nDiv(loi["parts.enfantInvalide"], 2) * saisie["Im"];
    return parts;
}

void NombreParts(Contexte& c) { Foyer(c).NombreParts(); }

}  // namespace kv
