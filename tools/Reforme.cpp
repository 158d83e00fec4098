#include "Reforme.h"

#include <charconv>
#include <cmath>
#include <iomanip>

#include "LectureJson.h"

namespace outil {

namespace {

using Objet = nlohmann::ordered_json;

class Lecteur : public LecteurJson {
  public:
    Lecteur(LoiNommee& loi, const PositionJson& position) : LecteurJson(loi.nom, position), m_loi(loi.loi) {}

    bool key(string_t& nom) override {
        NoteCle(m_vues, nom);
        double connue = 0;  // a name that is none has its message, with those that look like it
        if (kv_law_get(m_loi.handle(), nom.c_str(), &connue) != KV_OK) Erreur(kv_law_message(m_loi.handle()));
        m_parametre = nom;
        return true;
    }
    bool number_integer(number_integer_t n) override { return Fixe(static_cast<double>(n), std::to_string(n)); }
    bool number_unsigned(number_unsigned_t n) override { return Fixe(static_cast<double>(n), std::to_string(n)); }
    bool number_float(number_float_t x, const string_t& texte) override { return Fixe(x, texte); }
    bool start_object(std::size_t) override {
        if (m_dedans) Refuse("an object");
        return m_dedans = true;
    }
    bool end_object() override { return true; }

  private:
    std::string Ou() const override { return m_dedans ? m_parametre + ": " : "a reform is an object: "; }
    [[noreturn]] bool Refuse(const std::string& valeur) const override { Erreur(Ou() + valeur + " is not a number"); }
    bool Fixe(double valeur, const std::string& texte) {
        if (!m_dedans) Refuse(texte);
        if (kv_law_set(m_loi.handle(), m_parametre.c_str(), valeur) != KV_OK)
            ErreurDeNombre(kv_law_message(m_loi.handle()));
        return true;
    }

    kv::Law& m_loi;
    std::string m_parametre;
    std::set<std::string> m_vues;
    bool m_dedans = false;
};

}  // namespace

nlohmann::ordered_json FigureJson(double figure) {
    return figure == std::round(figure) ? Objet(static_cast<std::int64_t>(figure)) : Objet(figure);
}

std::string Decimal(double figure) {
    char texte[64];
    return {texte, std::to_chars(std::begin(texte), std::end(texte), figure, std::chars_format::fixed).ptr};
}

std::vector<int32_t> LoiNommee::Changements() const {
    std::vector<int32_t> changements;
    for (int32_t p = 0, n = kv::parameter_count(); p < n; ++p)
        if (loi.get(p) != kv::describe_parameter(p).value) changements.push_back(p);
    return changements;
}

LoiNommee LisReforme(std::string_view json, const std::string& fichier) {
    LoiNommee reforme{.loi = {}, .nom = fichier};
    PositionJson position;
    Lecteur lecteur(reforme, position);
    LisJson(json, position, lecteur);
    if (kv_law_check(reforme.loi.handle()) != KV_OK)
        throw ErreurEntree(fichier + ": " + kv_law_message(reforme.loi.handle()));
    return reforme;
}

void EcritLoi(std::ostream& sortie, const std::string& motif, bool json) {
    Objet liste = Objet::array();
    for (const int32_t numero : kv::search_parameters(motif)) {
        const kv_parameter p = kv::describe_parameter(numero);
        if (json)
            liste.push_back({{"name", p.name},
                             {"value", FigureJson(p.value)},
                             {"unit", p.unit},
                             {"indexed", p.indexed != 0},
                             {"source", p.source}});
        else
            sortie << std::left << std::setw(52) << p.name << std::right << std::setw(10) << Decimal(p.value) << "  "
                   << std::left << std::setw(8) << p.unit << "  " << std::setw(8) << (p.indexed ? "indexed" : "")
                   << "  " << p.source << '\n';
    }
    if (json) sortie << liste.dump(2) << '\n';
}

}  // namespace outil
