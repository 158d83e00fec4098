#include "Population.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <initializer_list>
#include <kv.hpp>
#include <string>

#include "Flux.h"

namespace outil {

namespace {

constexpr double foyersDuPays = 38e6;

// The boxes that a household may fill in, in the order of the columns.
constexpr std::string_view boites[] = {
    "M", "O", "C", "D", "V", "Fm", "Hm", "T", "AAF1", "AAF2", "1AJ", "1BJ", "1AK", "1AP", "1AS", "1BS", "2DC", "2TR",
    "2BH", "2CK", "3VG", "3VH", "4BE", "4BA", "4BC", "5KO", "5KP", "5HQ", "5QC", "5HC", "5ND", "6GU", "6EL", "6RS",
    "7UF", "7UD", "7AC", "7DB", "7GA", "7EA", "7EC", "7EF", "7CD", "7AM", "7CF",
    // a few of everything else
    "1AO", "1AW", "2TS", "2DH", "4BD", "6DD", "6EM", "7UH", "7WJ", "7GZ", "7XN", "7UM", "7BC", "5TA", "5TE", "5NG"};
constexpr int32_t premiereRare = 45, premiereIndependante = 58;
static_assert(boites[premiereRare] == "1AO" && boites[premiereIndependante] == "5TA");

// The place of a box among the columns, looked up when the code is compiled.
struct Colonne {
    consteval Colonne(const char* nom) {
        while (boites[rang] != nom) ++rang;
    }
    std::size_t rang = 0;
};

// Random figures that follow from two numbers (SplitMix64).
class Hasard {
  public:
    Hasard(std::uint64_t graine, std::uint64_t foyer) : m_etat(graine * 0x9E3779B97F4A7C15 + foyer) {
        m_etat = Suivant() ^ foyer;
    }
    // From 0 to 1.
    double Part() { return static_cast<double>(Suivant() >> 11) * 0x1p-53; }
    bool UneFois(double part) { return Part() < part; }
    int32_t Entre(int32_t min, int32_t max) { return min + static_cast<int32_t>(Part() * (max - min + 1)); }
    // Amounts around a median, the larger ones rarer: log-normal, the normal being the sum of twelve parts.
    int32_t Montant(double mediane, double ecart, int32_t maximum = 2'000'000) {
        double z = -6;
        for (int i = 0; i < 12; ++i) z += Part();
        return std::min(static_cast<int32_t>(std::lround(mediane * std::exp(ecart * z))), maximum);
    }
    // The rank of one of several cases, each with its share; the last one takes what is left.
    std::size_t Parmi(std::initializer_list<double> parts) {
        double reste = Part();
        std::size_t rang = 0;
        for (const double part : parts) {
            if (reste < part) break;
            reste -= part;
            ++rang;
        }
        return rang;
    }

  private:
    std::uint64_t Suivant() {
        std::uint64_t z = m_etat += 0x9E3779B97F4A7C15;
        z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9;
        z = (z ^ z >> 27) * 0x94D049BB133111EB;
        return z ^ z >> 31;
    }
    std::uint64_t m_etat;
};

class Foyer {
  public:
    Foyer(std::uint64_t graine, std::int64_t id) : m_hasard(graine, static_cast<std::uint64_t>(id)) {
        Situation();
        Revenus();
        Epargne();
        Independants();
        Depenses();
        // The boxes of the self-employed come last: none of the retired has one.
        if (m_hasard.UneFois(0.04)) {
            const int32_t derniere = m_retraite ? premiereIndependante : static_cast<int32_t>(std::size(boites));
            m_valeurs[static_cast<std::size_t>(m_hasard.Entre(premiereRare, derniere - 1))] =
                m_hasard.Montant(1500, 0.8, 20000);
        }
    }
    const auto& Valeurs() const { return m_valeurs; }

  private:
    int32_t& operator[](Colonne colonne) { return m_valeurs[colonne.rang]; }

    // An amount in a box of some of the households.
    void Parfois(double part, Colonne colonne, double mediane, double ecart, int32_t maximum = 2'000'000) {
        if (m_hasard.UneFois(part)) (*this)[colonne] = m_hasard.Montant(mediane, ecart, maximum);
    }

    void Situation() {
        static constexpr Colonne situations[] = {"M", "O", "C", "D", "V"};
        const std::size_t situation = m_hasard.Parmi({0.30, 0.05, 0.40, 0.16});
        (*this)[situations[situation]] = 1;
        m_couple = situation <= 1;
        m_retraite = m_hasard.UneFois(situation == 4 ? 0.80 : situation == 0 ? 0.38 : 0.22);
        const bool apresUneUnion = situation >= 3;
        const int32_t age = m_retraite ? 62 + static_cast<int32_t>(33 * m_hasard.Part() * m_hasard.Part())
                                       : m_hasard.Entre(apresUneUnion ? 28 : 20, 61);
        m_age = age;
        (*this)["AAF1"] = Naissance(age);
        if (m_couple) (*this)["AAF2"] = Naissance(std::clamp(age + m_hasard.Entre(-6, 6), 18, 99));
        if (m_retraite) return;
        m_enfants = static_cast<int32_t>(m_couple         ? m_hasard.Parmi({0.35, 0.22, 0.29, 0.11})
                                         : situation == 2 ? m_hasard.Parmi({0.86, 0.09, 0.04})
                                                          : m_hasard.Parmi({0.52, 0.24, 0.18, 0.05}));
        m_enfants = std::min(m_enfants, std::max(0, (age - 19) / 3));  // the first from 22 on, then every three years
        if (!m_couple && m_enfants > 0 && m_hasard.UneFois(0.15))
            (*this)["Hm"] = m_enfants;
        else
            (*this)["Fm"] = m_enfants;
        if (!m_couple && (*this)["Fm"] > 0 && m_hasard.UneFois(0.7)) (*this)["T"] = 1;
    }
    int32_t Naissance(int32_t age) {
        return 10000 * (kv_year() - age) + 100 * m_hasard.Entre(1, 12) + m_hasard.Entre(1, 28);
    }

    void Revenus() {
        if (m_retraite) {
            (*this)["1AS"] = m_hasard.Montant(17000, 0.5);
            if (m_couple) Parfois(0.9, "1BS", 12000, 0.55);
            return;
        }
        const bool jeune = m_age < 27;
        Parfois(0.82, "1AJ", jeune ? 13000 : 22500, 0.6);
        if (m_couple) Parfois(0.75, "1BJ", 18500, 0.6);
        Parfois(0.09, "1AP", 6000, 0.7, 60000);
        if ((*this)["1AJ"] > 0 && m_hasard.UneFois(0.08))
            (*this)["1AK"] = (*this)["1AJ"] / 10 + m_hasard.Montant(1500, 0.6);
    }

    void Epargne() {
        Parfois(0.35, "2TR", 140, 1.3);
        if (m_hasard.UneFois(0.11)) {
            const int32_t dividendes = m_hasard.Montant(300, 1.5);
            (*this)["2DC"] = (*this)["2BH"] = dividendes;
            (*this)["2CK"] = dividendes / 5;
        }
        // A gain or a loss; a small rent, a result, or a deficit.
        const std::size_t titres = m_hasard.Parmi({0.02, 0.01}), loyers = m_hasard.Parmi({0.06, 0.05, 0.015});
        Parfois(titres == 0, "3VG", 2000, 1.4);
        Parfois(titres == 1, "3VH", 1500, 1.2);
        Parfois(loyers == 0, "4BE", 5000, 0.6, 15000);
        Parfois(loyers == 1, "4BA", 4000, 0.9);
        Parfois(loyers == 2, "4BC", 3500, 0.7, 10700);
    }

    void Independants() {
        if (m_retraite) return;
        Parfois(0.012, "5KO", 18000, 0.9, 170000);
        Parfois(0.015, "5KP", 9000, 0.9, 70000);
        Parfois(0.02, "5HQ", 8000, 0.9, 70000);
        Parfois(0.012, "5QC", 38000, 0.8);
        Parfois(0.01, "5HC", 15000, 0.8);
        Parfois(0.015, "5ND", 6000, 0.8, 70000);
    }

    void Depenses() {
        Parfois(0.025, "6GU", 2400, 0.5, 30000);
        Parfois(m_age > 45 ? 0.03 : 0.0, "6EL", 3000, 0.4, 5795);
        Parfois(m_retraite ? 0.0 : 0.03, "6RS", 900, 0.9);
        Parfois(m_retraite ? 0.22 : 0.11, "7UF", 120, 1.0);
        Parfois(0.05, "7UD", 80, 0.8);
        Parfois((*this)["1AJ"] > 0 ? 0.07 : 0.0, "7AC", 130, 0.5);
        Parfois(m_retraite ? 0.16 : 0.06, "7DB", 800, 1.0, 15000);
        if ((*this)["Fm"] > 0) {
            Parfois(0.2, "7GA", 1500, 0.6, 6000);
            static constexpr Colonne classes[] = {"7EA", "7EC", "7EF"};
            if (m_age > 35 && m_hasard.UneFois(0.5))
                (*this)[classes[m_hasard.Parmi({0.45, 0.3})]] = m_hasard.Entre(1, (*this)["Fm"]);
        }
        Parfois(m_age > 78 ? 0.07 : 0.0, "7CD", 9000, 0.5);
        Parfois(0.02, "7AM", 3000, 0.7, 16000);
        Parfois(0.006, "7CF", 4000, 0.9);
    }

    Hasard m_hasard;
    std::array<int32_t, std::size(boites)> m_valeurs{};
    bool m_couple = false, m_retraite = false;
    int32_t m_age = 0, m_enfants = 0;
};

}  // namespace

void EcritPopulation(const std::string& fichier, std::int64_t foyers, std::uint64_t graine) {
    Sortie sortie(fichier);
    std::string texte = "id,weight";
    for (const std::string_view boite : boites) (texte += ',') += boite;
    texte += '\n';
    char nombre[32];
    const auto ecrit = [&](auto n) { texte.append(nombre, std::to_chars(nombre, std::end(nombre), n).ptr); };
    const double part = std::round(foyersDuPays / static_cast<double>(foyers) * 1e6) / 1e6;
    char poids[32];
    const std::string_view texteDuPoids(poids,
                                        std::to_chars(poids, std::end(poids), part, std::chars_format::fixed).ptr);
    for (std::int64_t id = 1; id <= foyers; ++id) {
        ecrit(id);
        texte += ',';
        texte += texteDuPoids;
        const Foyer foyer(graine, id);
        for (const int32_t valeur : foyer.Valeurs()) {
            texte += ',';
            if (valeur != 0) ecrit(valeur);
        }
        texte += '\n';
        if (texte.size() < 1 << 16 && id != foyers) continue;
        sortie.Ecrit(texte);
        texte.clear();
    }
    sortie.Vide();
}

}  // namespace outil
