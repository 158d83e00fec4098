#include "Calcul/cCalcul/Lignes.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

#include "support/KVTarvel.h"

namespace kv {

namespace {

// The ceilings that contributions of later years may use.
constexpr CaseSortie plafondsPERP[std::tuple_size_v<PlafondsPERP>] = {
    "NP1_PLAF_PERP_V",   "NP1_PLAF_PERP_C",   "NP1_PLAF_PERP_C_B", "NP1_PLAF_PERP_V_B", "NP1_PLAF_PERP_C_C",
    "NP1_PLAF_PERP_V_C", "NP1_PLAF_PERP_C_A", "NP1_PLAF_PERP_V_A", "NP1_PLAF_PERP_C_0", "NP1_PLAF_PERP_V_0",
};

constexpr CasesSortie sortiesRazComplete = [] {
    CasesSortie sorties;
    for (int i = 0; i < nSorties; ++i) sorties.Ajoute(CaseSortie::Numero(i));
    for (const CaseSortie plafond : plafondsPERP) sorties.Retire(plafond);
    return sorties;
}();

Ligne LigneDe(const CDataCalcul& data, CaseSortie c) {
    return {data.Sortie[c], {data.Colonne[0][c], data.Colonne[1][c], data.Colonne[2][c]}};
}

// Clears a whole area. In blocks: a large area cleared in one go may be cleared byte by byte.
template <class Zone>
void Efface(Zone& zone) {
    constexpr std::size_t bloc = 64 / sizeof(zone[0]), n = std::tuple_size_v<Zone>;
    static_assert(n % bloc == 0);
    for (std::size_t i = 0; i < n; i += bloc) std::memset(static_cast<void*>(&zone[i]), 0, bloc * sizeof(zone[0]));
}

// Texts are rare: several are looked at together.
void EffaceTextes(std::array<std::u16string, nSorties>& textes) {
    constexpr std::size_t groupe = 16;
    static_assert(nSorties % groupe == 0);
    for (std::size_t i = 0; i < nSorties; i += groupe) {
        const std::u16string* const t = &textes[i];
        const std::size_t tailles = [&]<std::size_t... k>(std::index_sequence<k...>) { return (t[k].size() | ...); }
        (std::make_index_sequence<groupe>());
        if (tailles == 0) continue;
        for (std::size_t k = 0; k < groupe; ++k) textes[i + k].clear();
    }
}

// A text being written: no text is longer than the longest form with three numbers.
class Ecriture {
  public:
    Ecriture& operator<<(std::u16string_view texte) {
        m_taille += texte.copy(m_texte.data() + m_taille, m_texte.size() - m_taille);
        return *this;
    }
    Ecriture& operator<<(std::int32_t n) { return Decimal(n, 0); }
    // n divided by 10 to the power of decimales (0 to 2), without needless zeros.
    Ecriture& Decimal(std::int32_t n, int decimales) {
        const std::uint32_t absolu = n < 0 ? 0 - static_cast<std::uint32_t>(n) : static_cast<std::uint32_t>(n);
        const std::uint32_t unite = decimales == 0 ? 1 : decimales == 1 ? 10 : 100;
        if (n < 0) Car(u'-');
        Entier(absolu / unite);
        std::uint32_t reste = absolu % unite;
        if (decimales == 1) reste *= 10;  // in hundredths
        if (reste == 0) return *this;
        Car(u'.');
        Chiffre(reste / 10);
        if (reste % 10 != 0) Chiffre(reste % 10);
        return *this;
    }
    std::u16string_view Texte() const { return {m_texte.data(), m_taille}; }

  private:
    void Car(char16_t c) { m_texte[m_taille++] = c; }
    void Chiffre(std::uint32_t chiffre) { Car(static_cast<char16_t>(u'0' + chiffre)); }
    void Entier(std::uint32_t n) {
        if (n >= 10) Entier(n / 10);
        Chiffre(n % 10);
    }

    std::array<char16_t, 96> m_texte;
    std::size_t m_taille = 0;
};

}  // namespace

void Texte::Ecrit(std::u16string& vers) const {
    const auto [a, b, c] = m_nombres;
    Ecriture texte;
    switch (m_forme) {
        case Forme::Nombre:
            texte << a;
            break;
        case Forme::Taux:
            texte.Decimal(a, 2) << u"%";
            break;
        case Forme::TauxEnDixiemes:
            texte.Decimal(a, 1) << u"%";
            break;
        case Forme::TauxDeBase:
            texte.Decimal(a, 2) << u"% x " << b;
            break;
        case Forme::BaseAuTaux:
            (texte << a << u" x ").Decimal(b, 2) << u"%";
            break;
        case Forme::Fraction:
            (texte.Decimal(a, 2) << u"/").Decimal(b, 2);
            break;
        case Forme::Personnes:
            texte << a << u" personne(s)";
            break;
        case Forme::Enfants:
            texte.Decimal(a, 1) << u" enfant(s)";
            break;
        case Forme::Proratise:
            texte << a << u" sur " << b << u") proratisé (x " << c << u" / " << b;
            break;
    }
    vers.assign(texte.Texte());
}

Lignes::Lignes() { Efface(m_lignes); }

std::u16string Lignes::LitTexte(CaseSortie c) const {
    std::u16string texte;
    if (m_notees.Contient(c)) m_textes[static_cast<std::size_t>(c.numero)].Ecrit(texte);
    return texte;
}

void Lignes::RemetAZero(Raz raz) {
    const CasesSortie& sorties = raz == Raz::Partielle ? sortiesRazPartielle : sortiesRazComplete;
    m_touchees.Parcourt([&](std::size_t j) { m_lignes[j] = {}; }, sorties);
    m_touchees.Retire(sorties);
    m_notees.Retire(sorties);
}

void Lignes::ReprendPlafondsPERP(const CDataCalcul& data) {
    for (const CaseSortie c : plafondsPERP) Ecrit(c) = LigneDe(data, c);
}

void Lignes::ReprendFigures(const CDataCalcul& data) {
    for (int j = 0; j < nSorties; ++j) Ecrit(CaseSortie::Numero(j)) = LigneDe(data, CaseSortie::Numero(j));
}

void Lignes::PosePlafonds(const PlafondsPERP& plafonds) {
    for (std::size_t i = 0; i < plafonds.size(); ++i) Ecrit(plafondsPERP[i]) = plafonds[i];
}

PlafondsPERP Lignes::Plafonds() const {
    PlafondsPERP plafonds;
    for (std::size_t i = 0; i < plafonds.size(); ++i) plafonds[i] = Lit(plafondsPERP[i]);
    return plafonds;
}

void Lignes::EcritDans(CDataCalcul& data) const {
    for (auto* zone : {&data.Colonne[0], &data.Colonne[1], &data.Colonne[2], &data.Sortie}) Efface(zone->valeurs);
    m_touchees.Parcourt([&](std::size_t j) {
        data.Sortie.valeurs[j] = m_lignes[j].valeur;
        for (std::size_t k = 0; k < 3; ++k) data.Colonne[k].valeurs[j] = m_lignes[j].colonnes[k];
    });
    EffaceTextes(data.Detail.valeurs);
    m_notees.Parcourt([&](std::size_t j) { m_textes[j].Ecrit(data.Detail.valeurs[j]); });
}

void Lignes::Conserve(Conservees& vers) const {
    vers.touchees = m_touchees, vers.notees = m_notees;
    vers.lignes.resize(m_touchees.Nombre()), vers.textes.resize(m_notees.Nombre());
    auto ligne = vers.lignes.begin();
    m_touchees.Parcourt([&](std::size_t j) { *ligne++ = m_lignes[j]; });
    auto texte = vers.textes.begin();
    m_notees.Parcourt([&](std::size_t j) { *texte++ = m_textes[j]; });
}

void Lignes::Reprend(const Conservees& de) {
    m_touchees.Parcourt([&](std::size_t j) { m_lignes[j] = {}; });
    m_touchees = de.touchees, m_notees = de.notees;
    auto ligne = de.lignes.begin();
    m_touchees.Parcourt([&](std::size_t j) { m_lignes[j] = *ligne++; });
    auto texte = de.textes.begin();
    m_notees.Parcourt([&](std::size_t j) { m_textes[j] = *texte++; });
}

void Lignes::RemetValeurs(const CasesSortie& lignes) {
    m_touchees.Parcourt([&](std::size_t j) { m_lignes[j].valeur = 0; }, lignes);
}

std::int32_t Lignes::Somme(const CasesSortie& lignes) const {
    std::int32_t somme = 0;
    m_touchees.Parcourt([&](std::size_t j) { somme += m_lignes[j].valeur; }, lignes);
    return somme;
}

void Lignes::Ajoute(CaseSortie vers, CaseSortie ligne) {
    Ligne& somme = Ecrit(vers);
    const Ligne& terme = Lit(ligne);
    somme.valeur += terme.valeur;
    for (std::size_t k = 0; k < 3; ++k) somme.colonnes[k] += terme.colonnes[k];
}

void Lignes::Soustrait(CaseSortie vers, CaseSortie ligne) {
    Ligne& somme = Ecrit(vers);
    const Ligne& terme = Lit(ligne);
    somme.valeur -= terme.valeur;
    for (std::size_t k = 0; k < 3; ++k) somme.colonnes[k] -= terme.colonnes[k];
}

void Lignes::AjouteTout(CaseSortie vers, std::initializer_list<CaseSortie> lignes) {
    for (const CaseSortie ligne : lignes) Ajoute(vers, ligne);
}

void Lignes::Totalise(CaseSortie ligne) {
    Ligne& l = Ecrit(ligne);
    l.valeur = l.colonnes[0] + l.colonnes[1] + l.colonnes[2];
}

void Lignes::BaseEtTaux(CaseSortie ligne, std::int32_t base, std::int32_t taux) {
    Ligne& l = Ecrit(ligne);
    l.colonnes[1] = base;
    l.colonnes[2] = taux;
}

}  // namespace kv
