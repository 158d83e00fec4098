#include "tools/Reforme.h"

#include <iomanip>

#include "Calcul/pCalculN/ReductionsTable.h"
#include "support/KVTarvel.h"
#include "tools/LectureJson.h"
#include "tools/Noms.h"

namespace outil {

namespace {

using Objet = nlohmann::ordered_json;

// A name "reductions.7ZD.taux" of a line that follows the rule of another one: that rule.
std::string RegleDe(std::string_view nom) {
    std::string regle;
    kv::reductions::TousLesGroupes([&](const auto& groupe) {
        for (const auto& rangee : groupe) {
            const auto regarde = [&](const auto& ligne) {
                if constexpr (requires { ligne.taux; })
                    if (ligne.taux && ligne.entree &&
                        nom == std::string("reductions.") + kv::entree::lignes[ligne.entree.numero].nom + ".taux")
                        regle = std::string("; that line follows ") + ligne.taux.Ligne().nom;
            };
            if constexpr (requires { rangee.ligne; })
                regarde(rangee.ligne);
            else
                regarde(rangee);
        }
    });
    return regle;
}

class Lecteur : public LecteurJson {
  public:
    Lecteur(LoiNommee& loi, const PositionJson& position) : LecteurJson(loi.nom, position), m_loi(loi.loi) {}

    bool key(string_t& nom) override {
        NoteCle(m_vues, nom);
        m_parametre = kv::ChercheParametre(nom);
        if (m_parametre) return true;
        std::vector<std::string_view> noms;
        for (const kv::LigneLoi& ligne : kv::lignesLoi) noms.push_back(ligne.nom);
        const std::string regle = RegleDe(nom);
        Erreur("unknown parameter \"" + nom + '"' + (regle.empty() ? Proches(nom, noms) : regle));
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
    std::string Ou() const override {
        return m_dedans ? std::string(m_parametre.Ligne().nom) + ": " : "a reform is an object: ";
    }
    [[noreturn]] bool Refuse(const std::string& valeur) const override { Erreur(Ou() + valeur + " is not a number"); }
    bool Fixe(double valeur, const std::string& texte) {
        if (!m_dedans) Refuse(texte);
        const std::string defaut = kv::Fixe(m_loi, m_parametre, valeur);
        if (!defaut.empty()) ErreurDeNombre(texte + " is not " + defaut);
        return true;
    }

    kv::Loi& m_loi;
    kv::Parametre m_parametre;
    std::set<std::string> m_vues;
    bool m_dedans = false;
};

}  // namespace

nlohmann::ordered_json FigureJson(const kv::Loi& loi, kv::Parametre p) {
    const double valeur = kv::Valeur(loi, p);
    const std::int32_t entier = nArrondi(valeur);
    return entier == valeur ? Objet(entier) : Objet(valeur);
}

std::vector<kv::Parametre> LoiNommee::Changements() const {
    std::vector<kv::Parametre> changements;
    for (int i = 0; i < static_cast<int>(kv::nParametres); ++i)
        if (const auto p = kv::Parametre::Numero(i); loi[p] != kv::loi2017[p]) changements.push_back(p);
    return changements;
}

LoiNommee LisReforme(std::string_view json, const std::string& fichier) {
    LoiNommee reforme{.nom = fichier};
    PositionJson position;
    Lecteur lecteur(reforme, position);
    LisJson(json, position, lecteur);
    if (const std::string defaut = kv::Defaut(reforme.loi); !defaut.empty())
        throw ErreurEntree(fichier + ": " + defaut);
    return reforme;
}

void EcritLoi(std::ostream& sortie, std::string_view motif, bool json) {
    const std::string cherche = EnMinuscules(motif);
    const auto contient = [&](const char* texte) { return EnMinuscules(texte).find(cherche) != std::string::npos; };
    Objet liste = Objet::array();
    for (int i = 0; i < static_cast<int>(kv::nParametres); ++i) {
        const kv::Parametre p = kv::Parametre::Numero(i);
        const kv::LigneLoi& ligne = p.Ligne();
        if (!contient(ligne.nom) && !contient(ligne.source)) continue;
        const double valeur = kv::Valeur(kv::loi2017, p);
        const char* unite = kv::NomUnite(ligne.unite);
        if (json)
            liste.push_back({{"name", ligne.nom},
                             {"value", FigureJson(kv::loi2017, p)},
                             {"unit", unite},
                             {"indexed", ligne.indexe},
                             {"source", ligne.source}});
        else
            sortie << std::left << std::setw(52) << ligne.nom << std::right << std::setw(10)
                   << kv::VersUtf8(FloatToStr(valeur)) << "  " << std::left << std::setw(8) << unite << "  "
                   << std::setw(8) << (ligne.indexe ? "indexed" : "") << "  " << ligne.source << '\n';
    }
    if (json) sortie << liste.dump(2) << '\n';
}

}  // namespace outil
