#include "Calcul/cCalcul/Saisie.h"

#include <tuple>
#include <utility>

#include "Calcul/cCalcul/Catalogues.h"

namespace kv {

void Exceptionnels::Pose(CaseEntree box, std::int32_t coefficient, std::int32_t montant) {
    const auto place = std::lower_bound(
        montants.begin(), montants.end(), std::pair(box.numero, coefficient),
        [](const Montant& m, const auto& cherche) { return std::pair(m.box.numero, m.coefficient) < cherche; });
    if (place != montants.end() && place->box == box && place->coefficient == coefficient) {
        place->montant = montant;
        return;
    }
    const auto rang = place - montants.begin();
    montants.reserve(montants.size() + 1);  // what can fail comes first
    if (std::find(coefficients.begin(), coefficients.end(), coefficient) == coefficients.end())
        coefficients.push_back(coefficient);
    montants.insert(montants.begin() + rang, {box, coefficient, montant});
}

std::int32_t Exceptionnels::De(CaseEntree box, std::int32_t coefficient) const {
    for (const Montant& m : montants)
        if (m.box == box && m.coefficient == coefficient) return m.montant;
    return 0;
}

std::int32_t Exceptionnels::De(CaseEntree box) const {
    std::int32_t total = 0;
    for (const Montant& m : montants)
        if (m.box == box) total += m.montant;
    return total;
}

std::int32_t Exceptionnels::Excedent(CaseEntree box) const {
    std::int32_t excedent = 0;
    for (const Montant& m : montants)
        if (m.box == box) excedent += m.montant - nArrondi(dDiv(m.montant, Diviseur(m.coefficient)));
    return excedent;
}

namespace {

// Copies an area in blocks of a fixed size, each changed on the way: several values at once.
template <class Zone, class Fonction>
void EnBlocs(Zone& vers, const Zone& de, Fonction change) {
    constexpr std::size_t taille = 32, n = std::tuple_size_v<decltype(vers.valeurs)>;
    std::array<std::int32_t, taille> bloc;
    for (std::size_t i = 0; i + taille <= n; i += taille) {
        std::copy_n(&de.valeurs[i], taille, bloc.data());
        for (std::int32_t& v : bloc) v = change(v);
        std::copy_n(bloc.data(), taille, &vers.valeurs[i]);
    }
    for (std::size_t i = n / taille * taille; i < n; ++i) vers.valeurs[i] = change(de.valeurs[i]);
}

}  // namespace

Saisie& Saisie::operator=(const Saisie& autre) {
    const auto copie = [](auto& vers, const auto& de) { EnBlocs(vers, de, [](std::int32_t v) { return v; }); };
    copie(entrees, autre.entrees);
    copie(TI, autre.TI), copie(TIX, autre.TIX), copie(TIY, autre.TIY), copie(TK, autre.TK), copie(TKZ, autre.TKZ);
    return *this;
}

namespace {

// The start years of the farms, which are read as they stand.
constexpr CaseEntree debuts[] = {"5XC", "5YC", "5ZC"};

Saisie Lis(const ZoneEntree& entrees, const auto& TI, const auto& TIX, const auto& TIY, const auto& TK,
           const auto& TKZ) {
    Saisie saisie;
    const auto lis = [](auto& vers, const auto& de) {
        EnBlocs(vers, de, [](std::int32_t v) { return v & -(v != nNonSaisi); });
    };
    lis(saisie.entrees, entrees);
    lis(saisie.TI, TI), lis(saisie.TIX, TIX), lis(saisie.TIY, TIY), lis(saisie.TK, TK), lis(saisie.TKZ, TKZ);
    for (const CaseEntree debut : debuts) saisie[debut] = entrees[debut];
    return saisie;
}

}  // namespace

Saisie LisSaisie(const CDataCalcul& d) { return Lis(d.Entree, d.TI, d.TIX, d.TIY, d.TK, d.TKZ); }
Saisie SansNonSaisis(const Saisie& s) { return Lis(s.entrees, s.TI, s.TIX, s.TIY, s.TK, s.TKZ); }

bool ResteNonSaisie(Aire aire, CaseEntree box) {
    return aire == Aire::Entrees && std::find(std::begin(debuts), std::end(debuts), box) != std::end(debuts);
}

Exceptionnels SansNonSaisis(Exceptionnels exceptionnels) {
    for (Exceptionnels::Montant& m : exceptionnels.montants) m.montant = nValForc(m.montant, 0);
    return exceptionnels;
}

std::int32_t Place(Aire aire, CaseEntree box) {
    const CaseEntreeDef& fiche = TableEntree[static_cast<std::size_t>(box.numero)];
    const std::int32_t places[] = {box.numero, fiche.nTI, fiche.nTIX, fiche.nTIY, fiche.nTK, fiche.nTKZ};
    return places[static_cast<std::size_t>(aire)];
}

std::int32_t& Montant(Saisie& saisie, Aire aire, std::int32_t place) {
    std::int32_t* const aires[] = {saisie.entrees.valeurs.data(), saisie.TI.valeurs.data(), saisie.TIX.valeurs.data(),
                                   saisie.TIY.valeurs.data(),     saisie.TK.valeurs.data(), saisie.TKZ.valeurs.data()};
    return aires[static_cast<std::size_t>(aire)][place];
}

Exceptionnels LisExceptionnels(const CDataCalcul& data) {
    Exceptionnels exceptionnels;
    if (data.ListeQuotients.empty()) return exceptionnels;
    for (const auto& quotient : data.ListeQuotients) exceptionnels.coefficients.push_back(quotient->nId);
    for (std::size_t map = 0; map < data.MapsQuotients.size(); ++map)
        for (const auto& [coefficient, montant] : data.MapsQuotients[map])
            exceptionnels.montants.push_back({casesMarquees<entree::Quotient>[map], coefficient, nValForc(montant, 0)});
    return exceptionnels;
}

CasesEntree BoitesRemplies(const Saisie& saisie) {
    // Half a word at a time, in a form that compares several boxes at once.
    static constexpr auto bits = [] {
        std::array<std::int32_t, 32> b{};
        for (std::size_t i = 0; i < b.size(); ++i) b[i] = static_cast<std::int32_t>(std::uint32_t{1} << i);
        return b;
    }();
    const auto moitie = [](const std::int32_t* valeurs) {
        std::int32_t remplies = 0;
        for (std::size_t i = 0; i < bits.size(); ++i) remplies |= -(valeurs[i] != 0) & bits[i];
        return std::uint64_t{static_cast<std::uint32_t>(remplies)};
    };
    constexpr std::size_t nEntiers = nEntrees / 64, nReste = nEntrees % 64;
    CasesEntree remplies;
    for (std::size_t mot = 0; mot < nEntiers; ++mot) {
        const std::int32_t* valeurs = &saisie.entrees.valeurs[64 * mot];
        if (Vide<64>(valeurs)) continue;  // most are
        remplies.mots[mot] = moitie(valeurs) | moitie(valeurs + 32) << 32;
    }
    for (std::size_t i = 0; i < nReste; ++i)
        if (const int numero = static_cast<int>(64 * nEntiers + i); saisie[CaseEntree::Numero(numero)] != 0)
            remplies.Ajoute(CaseEntree::Numero(numero));
    return remplies;
}

void Replie(Saisie& saisie) {
    for (const auto& [total, details] : totauxDetailles)
        for (const CaseEntree detail : details)
            if (detail) saisie[total] += saisie[detail];
}

}  // namespace kv
