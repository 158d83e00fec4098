#include "Retour.h"

#include <algorithm>
#include <array>
#include <concepts>
#include <set>
#include <utility>

#include "Boites.h"
#include "LectureJson.h"

namespace outil {

namespace {

// The sections that hold amounts by box; in each the name of an amount begins with that of the section.
constexpr const char *sectionDesBoites = "entries", *sectionDesQuotients = "quotients";
constexpr const char* sections[] = {sectionDesBoites, "ti", "tix", "tiy", "tk", "tkz"};
constexpr const char* reglages[] = {"launch", "indexation", "period"};

constexpr std::pair<const char*, kv_launch> lancements[] = {{"normal", KV_LAUNCH_NORMAL},
                                                            {"options", KV_LAUNCH_OPTIONS},
                                                            {"forced", KV_LAUNCH_FORCED},
                                                            {"forced-options", KV_LAUNCH_FORCED_OPTIONS}};

// "\"normal\", \"options\"": names as a message lists them.
template <class Noms>
std::string EntreGuillemets(const Noms& noms) {
    std::string texte;
    for (const auto& nom : noms) texte += std::string(texte.empty() ? "\"" : ", \"") + nom + '"';
    return texte;
}

// A date AAAAMMJJ of a text "AAAA-MM-JJ" or "JJ/MM/AAAA"; 0 for any other text.
int32_t DateDe(std::string_view texte) {
    const bool iso = texte.size() == 10 && texte[4] == '-' && texte[7] == '-';
    const bool francaise = texte.size() == 10 && texte[2] == '/' && texte[5] == '/';
    if (!iso && !francaise) return 0;
    const auto nombre = [&](std::size_t debut, std::size_t taille) {
        int32_t n = 0;
        for (const char c : texte.substr(debut, taille)) n = '0' <= c && c <= '9' ? 10 * n + (c - '0') : -10000;
        return n;
    };
    const int32_t annee = iso ? nombre(0, 4) : nombre(6, 4), mois = iso ? nombre(5, 2) : nombre(3, 2),
                  jour = iso ? nombre(8, 2) : nombre(0, 2);
    return annee < 0 || mois < 0 || jour < 0 ? 0 : 10000 * annee + 100 * mois + jour;
}

// Follows the parser through a return. The structure is small and fixed: sections of amounts by box, amounts by box and
// coefficient, and three settings.
class Lecteur : public LecteurJson {
  public:
    Lecteur(kv::Return& retour, const std::string& fichier, const PositionJson& position)
        : LecteurJson(fichier, position), m_retour(retour) {}

    bool key(string_t& nom) override {
        NoteCle(m_clesVues[m_profondeur], nom);
        m_cles[m_profondeur] = nom;
        if (m_profondeur == 1) ChoisitSection(nom);
        if (m_profondeur == 2) ControleBoite(nom);
        return true;
    }

    bool number_integer(number_integer_t n) override { return Entier(n); }
    bool number_unsigned(number_unsigned_t n) override { return Entier(n); }
    bool number_float(number_float_t x, const string_t& texte) override {
        if (m_profondeur == 1 && m_cles[1] == "indexation") return Indexation(x);
        ErreurDeNombre(Ou() + texte + " is not a 32-bit integer");
    }
    bool string(string_t& texte) override {
        if (m_profondeur == 1 && m_cles[1] == "launch") return ChoisitLancement(texte);
        if (m_dansPeriode) return Date(texte);
        return Refuse('"' + texte + '"');
    }

    bool start_object(std::size_t) override {
        const bool permis = m_profondeur == 0 || (m_profondeur == 1 && (m_section || m_quotients)) ||
                            (m_profondeur == 2 && m_quotients);
        if (!permis || m_dansPeriode) Erreur(Ou() + "an object does not belong here");
        m_clesVues[++m_profondeur].clear();
        return true;
    }
    bool end_object() override {
        if (--m_profondeur == 0 && !m_clesVues[1].contains("entries")) Erreur("a return has \"entries\"");
        return true;
    }
    bool start_array(std::size_t) override {
        if (m_profondeur != 1 || m_cles[1] != "period" || m_dansPeriode) Erreur(Ou() + "a list does not belong here");
        return m_dansPeriode = true;
    }
    bool end_array() override {
        if (m_dates != m_periode.size()) Erreur("period needs two dates");
        if (kv_set_period(m_retour.handle(), m_periode[0], m_periode[1]) != KV_OK)
            Erreur(kv_message(m_retour.handle()));
        return m_dansPeriode = false, true;
    }

  private:
    [[noreturn]] bool Refuse(const std::string& valeur) const override {
        Erreur(Ou() + valeur + " is not a 32-bit integer");
    }

    std::string Ou() const override {
        if (m_profondeur == 0) return "a return is an object: ";
        std::string ou = m_cles[1];
        if (m_profondeur >= 2) ou += ", box " + m_cles[2];
        if (m_profondeur >= 3) ou += ", coefficient " + m_cles[3];
        return ou + ": ";
    }

    void ChoisitSection(const std::string& nom) {
        m_section = std::find(std::begin(sections), std::end(sections), nom) != std::end(sections);
        m_quotients = nom == sectionDesQuotients;
        if (m_section || m_quotients || std::find(std::begin(reglages), std::end(reglages), nom) != std::end(reglages))
            return;
        std::vector<std::string> noms(std::begin(sections), std::end(sections));
        noms.push_back(sectionDesQuotients);
        noms.insert(noms.end(), std::begin(reglages), std::end(reglages));
        Erreur("unknown key \"" + nom + "\"; a return has " + EntreGuillemets(noms));
    }

    // The name of an amount as the library knows it: "1AJ", "ti.1AW", "quotient.4.1AJ".
    std::string Montant(const std::string& boite, const std::string& coefficient) const {
        if (m_quotients) return "quotient." + coefficient + '.' + boite;
        return m_cles[1] == sectionDesBoites ? boite : m_cles[1] + '.' + boite;
    }

    // A box that does not exist, or can't hold what the section says, is an error where it stands.
    void ControleBoite(const std::string& boite) {
        if (!kv::find(KV_ENTRY, boite)) Erreur("unknown entry box " + boite + BoitesProches(boite));
        int32_t montant = 0;
        if (kv_get(m_retour.handle(), Montant(boite, "0").c_str(), &montant) != KV_OK)
            Erreur(kv_message(m_retour.handle()));
    }

    bool Entier(std::integral auto n) {
        if (m_profondeur == 1 && m_cles[1] == "indexation") return Indexation(static_cast<double>(n));
        if (!std::in_range<int32_t>(n)) ErreurDeNombre(Ou() + "the value is not a 32-bit integer");
        if (m_profondeur != (m_quotients ? 3u : 2u)) ErreurDeNombre(Ou() + "a number does not belong here");
        const std::string montant = Montant(m_cles[2], m_cles[3]);
        if (kv_set(m_retour.handle(), montant.c_str(), static_cast<int32_t>(n)) != KV_OK)
            ErreurDeNombre(Ou() + kv_message(m_retour.handle()));
        return true;
    }

    bool Indexation(double taux) {
        if (kv_set_indexation(m_retour.handle(), taux) != KV_OK) ErreurDeNombre(kv_message(m_retour.handle()));
        return true;
    }

    bool ChoisitLancement(const std::string& texte) {
        try {
            return m_retour.set_launch(LancementDeNom(texte)), true;
        } catch (const ErreurEntree& e) {
            Erreur(e.what());
        }
    }

    bool Date(const std::string& texte) {
        const int32_t date = DateDe(texte);
        if (kv_set_period(m_retour.handle(), date, date) != KV_OK)
            Erreur("period: \"" + texte + "\" is not a date (AAAA-MM-JJ)");
        if (m_dates == m_periode.size()) Erreur("period needs two dates");
        m_periode[m_dates++] = date;
        return true;
    }

    kv::Return& m_retour;
    std::size_t m_profondeur = 0;
    std::array<std::string, 5> m_cles;
    std::array<std::set<std::string>, 5> m_clesVues;
    bool m_section = false,
         m_quotients = false;  ///< what the key of the return holds: amounts by box, exceptional ones
    bool m_dansPeriode = false;
    std::array<int32_t, 2> m_periode{};
    std::size_t m_dates = 0;
};

}  // namespace

std::vector<std::string> NomsDesLancements() {
    std::vector<std::string> noms;
    for (const auto& [nom, lancement] : lancements) noms.emplace_back(nom);
    return noms;
}

kv_launch LancementDeNom(const std::string& cherche) {
    for (const auto& [nom, lancement] : lancements)
        if (cherche == nom) return lancement;
    throw ErreurEntree("launch is one of " + EntreGuillemets(NomsDesLancements()) + ", not \"" + cherche + "\"");
}

kv::Return LisRetour(std::string_view texte, const std::string& fichier, int premiereLigne) {
    kv::Return retour;
    PositionJson position{premiereLigne};
    Lecteur lecteur(retour, fichier, position);
    LisJson(texte, position, lecteur);
    return retour;
}

}  // namespace outil
