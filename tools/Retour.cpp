#include "tools/Retour.h"

#include <array>
#include <charconv>
#include <chrono>
#include <concepts>
#include <optional>
#include <set>
#include <utility>

#include "Calcul/cCalcul/Catalogues.h"
#include "Calcul/pCalculN/Pilote.h"
#include "support/KVTarvel.h"
#include "tools/Boites.h"
#include "tools/LectureJson.h"
#include "tools/Noms.h"

namespace outil {

namespace {

// The sections that hold amounts by box, and where each amount goes.
struct Section {
    const char* nom;
    std::int32_t* (*valeur)(CDataCalcul&, const CaseEntreeDef&);  // null when the box has no such slot
};

template <class Zone>
std::int32_t* Slot(Zone& zone, std::int32_t slot) {
    return slot < 0 ? nullptr : &zone.valeurs[static_cast<std::size_t>(slot)];
}

constexpr Section sections[] = {
    {"entries", [](CDataCalcul& d, const CaseEntreeDef& c) { return &d.Entree.valeurs[c.Index]; }},
    {"ti", [](CDataCalcul& d, const CaseEntreeDef& c) { return Slot(d.TI, c.nTI); }},
    {"tix", [](CDataCalcul& d, const CaseEntreeDef& c) { return Slot(d.TIX, c.nTIX); }},
    {"tiy", [](CDataCalcul& d, const CaseEntreeDef& c) { return Slot(d.TIY, c.nTIY); }},
    {"tk", [](CDataCalcul& d, const CaseEntreeDef& c) { return Slot(d.TK, c.nTK); }},
    {"tkz", [](CDataCalcul& d, const CaseEntreeDef& c) { return Slot(d.TKZ, c.nTKZ); }},
};

// The launches by name, each with the two option switches.
struct Lancement {
    const char* nom;
    bool optionsForcees, optionsSiSaisies;
};
constexpr Lancement lancements[] = {
    {"normal", false, false}, {"options", false, true}, {"forced", true, false}, {"forced-options", true, true}};

// Follows the parser through a return. The structure is small and fixed: sections of amounts by box, amounts by box and
// coefficient, and three settings.
class Lecteur : public LecteurJson {
  public:
    Lecteur(Retour& retour, const std::string& fichier, const PositionJson& position)
        : LecteurJson(fichier, position), m_retour(retour) {}

    bool key(string_t& nom) override {
        NoteCle(m_clesVues[m_profondeur], nom);
        m_cles[m_profondeur] = nom;
        if (m_profondeur == 1) ChoisitSection(nom);
        if (m_profondeur == 2) m_box = Box(nom);
        return true;
    }

    bool number_integer(number_integer_t n) override { return Entier(n); }
    bool number_unsigned(number_unsigned_t n) override { return Entier(n); }
    bool number_float(number_float_t x, const string_t& texte) override {
        if (m_profondeur == 1 && m_cles[1] == "indexation") return m_retour.indexation = x, true;
        ErreurDeNombre(texte + " is not a 32-bit integer");
    }
    bool string(string_t& texte) override {
        if (m_profondeur == 1 && m_cles[1] == "launch") return ChoisitLancement(texte);
        if (m_dansPeriode) return Date(texte);
        return Refuse('"' + texte + '"');
    }

    bool start_object(std::size_t) override {
        const bool permis = m_profondeur == 0 || (m_profondeur == 1 && (m_section || m_cles[1] == "quotients")) ||
                            (m_profondeur == 2 && !m_section);
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
        if (m_dates != 2) Erreur("period needs two dates");
        if (m_retour.periode.Fin < m_retour.periode.Deb) Erreur("period ends before it begins");
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
        m_section = nullptr;
        for (const Section& section : sections)
            if (nom == section.nom) m_section = &section;
        if (m_section || nom == "quotients" || nom == "launch" || nom == "indexation" || nom == "period") return;
        std::vector<std::string_view> noms = {"quotients", "launch", "indexation", "period"};
        for (const Section& section : sections) noms.push_back(section.nom);
        Erreur("unknown key \"" + nom + '"' + Proches(nom, noms));
    }

    const CaseEntreeDef* Box(const std::string& nom) const {
        const int numero = kv::NumeroEntree(nom);
        if (numero < 0) Erreur("unknown entry box " + nom + BoitesProches(nom));
        const CaseEntreeDef& fiche = TableEntree[static_cast<std::size_t>(numero)];
        if (m_section ? !m_section->valeur(*m_retour.data, fiche) : fiche.nQuotient < 0)
            Erreur("box " + nom + " has no amount in \"" + m_cles[1] + "\"");
        return &fiche;
    }

    bool Entier(std::integral auto n) {
        if (m_profondeur == 1 && m_cles[1] == "indexation") return m_retour.indexation = static_cast<double>(n), true;
        if (!std::in_range<std::int32_t>(n)) ErreurDeNombre("the value is not a 32-bit integer");
        const auto valeur = static_cast<std::int32_t>(n);
        if (m_profondeur == 2 && m_section)
            *m_section->valeur(*m_retour.data, *m_box) = valeur;
        else if (m_profondeur == 3)
            m_retour.data->AjouteQuotient(m_box->nQuotient, Coefficient(), valeur);
        else
            ErreurDeNombre("a number does not belong here");
        return true;
    }

    std::int32_t Coefficient() const {
        // In the one form that a number has: two spellings of a coefficient would hide each other's amount.
        std::int32_t coefficient = 0;
        std::from_chars(m_cles[3].data(), m_cles[3].data() + m_cles[3].size(), coefficient);
        if (std::to_string(coefficient) == m_cles[3]) return coefficient;
        ErreurDeNombre("the coefficient is not a 32-bit integer");
    }

    bool ChoisitLancement(const std::string& texte) {
        for (const Lancement& l : lancements)
            if (texte == l.nom)
                return m_retour.optionsForcees = l.optionsForcees, m_retour.optionsSiSaisies = l.optionsSiSaisies, true;
        std::string noms;
        for (const Lancement& l : lancements) noms += std::string(noms.empty() ? "\"" : ", \"") + l.nom + '"';
        Erreur("launch is one of " + noms + ", not \"" + texte + "\"");
    }

    bool Date(const std::string& texte) {
        const std::int32_t date = DateToInt(kv::VersUtf16(texte), false);
        const std::chrono::year_month_day jour{std::chrono::year(date / 10000),
                                               std::chrono::month(static_cast<unsigned>(date / 100 % 100)),
                                               std::chrono::day(static_cast<unsigned>(date % 100))};
        if (date == 0 || !jour.ok()) Erreur("period: \"" + texte + "\" is not a date (AAAA-MM-JJ)");
        if (m_dates == 2) Erreur("period needs two dates");
        (m_dates++ == 0 ? m_retour.periode.Deb : m_retour.periode.Fin) =
            kv::Date(date / 10000, date / 100 % 100, date % 100);
        return true;
    }

    Retour& m_retour;
    std::size_t m_profondeur = 0;
    std::array<std::string, 5> m_cles;
    std::array<std::set<std::string>, 5> m_clesVues;
    const Section* m_section = nullptr;
    const CaseEntreeDef* m_box = nullptr;
    bool m_dansPeriode = false;
    int m_dates = 0;
};

}  // namespace

bool Retour::Calcule(const kv::Loi& loi) {
    return kv::Lance(*data, &periode, true, indexation, optionsForcees, optionsSiSaisies, loi);
}

void Retour::CalculeReports() { kv::LanceReports(*data, &periode, indexation); }

std::vector<std::string> NomsDesLancements() {
    std::vector<std::string> noms;
    for (const Lancement& l : lancements) noms.emplace_back(l.nom);
    return noms;
}

Retour LisRetour(std::string_view texte, const std::string& fichier, int premiereLigne) {
    Retour retour;
    PositionJson position{premiereLigne};
    Lecteur lecteur(retour, fichier, position);
    LisJson(texte, position, lecteur);
    return retour;
}

}  // namespace outil
