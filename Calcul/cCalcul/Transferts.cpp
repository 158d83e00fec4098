#include "Calcul/cCalcul/Transferts.h"

#include <numeric>

#include "Calcul/cCalcul/Catalogues.h"
#include "support/KVTarvel.h"

namespace kv {

namespace {

// A business box and the box that says which part of its TK amount is a gain.
struct Paire {
    CaseEntree premiere, seconde;
};
constexpr Paire paires[] = {
    {"5HC", "5AK"}, {"5HI", "5AL"}, {"5IC", "5BK"}, {"5II", "5BL"}, {"5JC", "5CK"}, {"5JI", "5CL"}, {"5KC", "5DF"},
    {"5KI", "5DG"}, {"5LC", "5EF"}, {"5LI", "5EG"}, {"5MC", "5FF"}, {"5MI", "5FG"}, {"5NA", "5EY"}, {"5NK", "5EZ"},
    {"5OA", "5FY"}, {"5OK", "5FZ"}, {"5PA", "5GY"}, {"5PK", "5GZ"}, {"5NC", "5UR"}, {"5NI", "5US"}, {"5OC", "5VR"},
    {"5OI", "5VS"}, {"5PC", "5WR"}, {"5PI", "5WS"}, {"5QC", "5XJ"}, {"5QI", "5XK"}, {"5RC", "5YJ"}, {"5RI", "5YK"},
    {"5SC", "5ZJ"}, {"5SI", "5ZK"}, {"5JG", "5XS"}, {"5SN", "5XX"}, {"5RF", "5YS"}, {"5NS", "5YX"}, {"5SF", "5ZS"},
    {"5OS", "5ZX"}, {"4BA", "4BL"}, {"4BE", "4BK"},
};
static_assert(std::size(paires) == 38);

// Investment income keeps its companion amounts apart: its allowances are computed on each part.
constexpr bool EstMobilier(CaseEntree box) { return box == "2DC" || box == "2TS" || box == "2TR"; }

constexpr const entree::Ligne& LigneDe(CaseEntree box) { return entree::lignes[box.numero]; }

constexpr std::size_t RangPersonne(CaseEntree box) {
    const entree::Personne p = LigneDe(box).personne;
    return p == entree::D1 ? 0 : p == entree::D2 ? 1 : 2;
}

constexpr const CaseEntreeDef& FicheDe(CaseEntree box) { return TableEntree[static_cast<std::size_t>(box.numero)]; }

template <class Zone>
std::int32_t Somme(const Zone& zone) {
    std::array<std::int32_t, 4> sommes{};
    std::size_t i = 0;
    for (; i + 4 <= zone.valeurs.size(); i += 4)
        for (std::size_t k = 0; k < 4; ++k) sommes[k] += zone.valeurs[i + k];
    return std::accumulate(zone.valeurs.begin() + i, zone.valeurs.end(), sommes[0] + sommes[1] + sommes[2] + sommes[3]);
}

// Only positive amounts move.
template <class Cases>
std::int32_t DeplaceLies(Saisie& saisie, const Cases& cases) {
    std::int32_t total = 0;
    for (const CaseEntree box : cases) {
        const std::int32_t montant = nPositif(saisie[box]);
        saisie[CaseEntree::Numero(FicheDe(box).CaseLiee)] += montant;
        total += montant;
    }
    return total;
}

}  // namespace

ParPersonne DeplaceTI(Saisie& saisie) {
    ParPersonne bruts;
    for (std::size_t p = 0; p < nColonnesSalaires; ++p) {
        const std::int32_t salaire = nPositif(saisie[rangeeC[p]]);
        saisie[rangeeC[p]] = salaire;
        saisie[rangeeK[p]] += saisie[rangeeE[p]];
        saisie[rangeeS[p]] += saisie[rangeeH[p]];
        saisie[rangeeJ[p]] += salaire;
        bruts.montant[RangPersonne(rangeeC[p])] += salaire + saisie[rangeeH[p]];
    }
    for (const CaseEntree box : casesMarquees<entree::TIX>) {
        if (EstMobilier(box)) continue;
        const CaseEntreeDef& fiche = FicheDe(box);
        std::int32_t& ti = saisie.TI[CaseTI::Numero(fiche.nTI)];
        const CaseTIX slot = CaseTIX::Numero(fiche.nTIX);
        for (const std::int32_t moins : {saisie.TIX[slot], saisie.TIY[slot]})
            if (moins != 0) ti = fiche.bNegatifTI ? ti + moins : nPositif(ti - moins);
    }
    for (std::size_t k = 0; k < nTI; ++k) {
        const CaseEntree box = casesMarquees<entree::TI>[k];
        if (EstMobilier(box)) continue;
        const std::int32_t ti = saisie.TI.valeurs[k];
        saisie[box] += ti;
        bruts.montant[RangPersonne(box)] += LigneDe(box).marques & entree::NegatifTI ? -ti : ti;
    }
    return bruts;
}

void DeplaceTK(Saisie& saisie) {
    // Salaries as declared: expenses of the row F are taken off only where the flat deduction does not exceed them.
    std::array<bool, nColonnesSalaires> deductionForfaitaire{};
    for (std::size_t p = 0; p < nColonnesSalaires; ++p)
        deductionForfaitaire[p] = nPourcent(saisie[rangeeJ[p]] + saisie[rangeeF[p]], 10) > saisie[rangeeK[p]];

    for (const CaseEntree box : casesMarquees<entree::SauveTK>) saisie[box] = 0;
    for (std::size_t k = 0; k < nTK; ++k) {
        const CaseEntree box = casesMarquees<entree::TK>[k];
        if (EstMobilier(box)) continue;
        saisie[box] += saisie.TK.valeurs[k];
        const auto f = std::find(rangeeF.begin(), rangeeF.end(), box);
        if (f != rangeeF.end() && deductionForfaitaire[static_cast<std::size_t>(f - rangeeF.begin())]) continue;
        saisie[box] = nPositif(saisie[box] - saisie.TKZ.valeurs[k]);
    }
    for (const Paire& paire : paires) saisie[paire.premiere] = saisie[paire.seconde];
}

std::int32_t DeplaceAutoEntr(Saisie& saisie) { return DeplaceLies(saisie, casesMarquees<entree::AutoEntr>); }
std::int32_t DeplaceProspection(Saisie& saisie) { return DeplaceLies(saisie, casesMarquees<entree::Prospection>); }

void DeplaceExceptionnels(Saisie& saisie, const Exceptionnels& exceptionnels) {
    for (const Exceptionnels::Montant& m : exceptionnels.montants) {
        const CaseEntree cible = m.box == "AAQ"   ? CaseEntree("1AS")
                                 : m.box == "BAQ" ? CaseEntree("1BS")
                                 : m.box == "RAQ" ? CaseEntree("4BA")
                                                  : m.box;
        saisie[cible] += m.montant;
    }
}

namespace {

// What becomes of an amount in the return of one declarant: it stays, or goes to the declarant whose it is, or is
// halved.
enum class Partage : std::uint8_t { Foyer, D1, D2, Moitie };
constexpr auto partages = [] {
    constexpr CaseEntree foyer[] = {"Fm", "Jm", "Rm", "Hm", "Nm", "Gm",   "Im", "P", "Gp", "W", "L",
                                    "N",  "Fp", "Vp", "Z1", "Z2", "VEvt", "T",  "V", "S",  "M", "O"};
    std::array<Partage, nEntrees> p{};
    for (std::size_t i = 0; i < p.size(); ++i) {
        const entree::Personne personne = entree::lignes[i].personne;
        p[i] = personne == entree::D1 ? Partage::D1 : personne == entree::D2 ? Partage::D2 : Partage::Moitie;
    }
    for (const CaseEntree box : foyer) p[static_cast<std::size_t>(box.numero)] = Partage::Foyer;
    return p;
}();

}  // namespace

void RetourDUnDeclarant(entree::Personne declarant, Saisie& saisie, CasesEntree& remplies,
                        Exceptionnels& exceptionnels) {
    const Partage sien = declarant == entree::D1 ? Partage::D1 : Partage::D2;
    // A half is rounded away from 0: what was not 0 does not become so. A year that is not set stays so.
    const auto partage = [&](CaseEntree box, std::int32_t& v) {
        const Partage p = partages[static_cast<std::size_t>(box.numero)];
        if (p == Partage::Foyer || p == sien) return;
        if (p != Partage::Moitie)
            v = 0;
        else if (v != nNonSaisi)
            v = nArrondi(v / 2.0);
    };
    const CasesEntree avant = remplies;
    avant.Parcourt([&](std::size_t i) {
        const CaseEntree box = CaseEntree::Numero(static_cast<int>(i));
        partage(box, saisie[box]);
        if (saisie[box] == 0) remplies.Retire(box);
    });
    const auto compagnons = [&](auto& zone, const auto& cases) {
        if (Vide(zone.valeurs)) return;
        for (std::size_t k = 0; k < zone.valeurs.size(); ++k)
            if (zone.valeurs[k] != 0) partage(cases[k], zone.valeurs[k]);
    };
    compagnons(saisie.TI, casesMarquees<entree::TI>);
    compagnons(saisie.TIX, casesMarquees<entree::TIX>), compagnons(saisie.TIY, casesMarquees<entree::TIX>);
    compagnons(saisie.TK, casesMarquees<entree::TK>), compagnons(saisie.TKZ, casesMarquees<entree::TK>);
    for (Exceptionnels::Montant& m : exceptionnels.montants) partage(m.box, m.montant);
}

ParPersonne TotalProspection(const Saisie& saisie) {
    ParPersonne total;
    for (const CaseEntree box : casesMarquees<entree::Prospection>) total.montant[RangPersonne(box)] += saisie[box];
    return total;
}

std::int32_t TotalTI(const Saisie& saisie) { return Somme(saisie.TI); }
std::int32_t TotalTK(const Saisie& saisie) { return Somme(saisie.TK); }

std::int32_t TotalEtranger(const Saisie& saisie, bool sansTK) {
    std::int32_t total = TotalTI(saisie) + (sansTK ? 0 : TotalTK(saisie));
    const auto ajoute = [&](const auto& cases) {
        for (const CaseEntree box : cases) total += saisie[box];
    };
    ajoute(casesMarquees<entree::AutoEntr>);
    ajoute(casesMarquees<entree::Prospection>);
    ajoute(rangeeC);
    ajoute(rangeeE);
    ajoute(rangeeH);
    return total;
}

std::int32_t IndicateurEtranger(const Saisie& saisie) {
    std::int32_t total = TotalTI(saisie);
    for (std::size_t p = 0; p < nColonnesSalaires; ++p)
        total += nPositif(saisie[rangeeC[p]] - saisie[rangeeE[p]]) + saisie[rangeeH[p]];
    return total;
}

}  // namespace kv
