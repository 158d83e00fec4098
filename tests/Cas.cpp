#include "tests/Cas.h"

#include <cmath>
#include <iostream>
#include <iterator>
#include <map>

#include "tests/Hasard.h"

// One test for each block of the cases, and for each sum; with words as arguments, for the blocks that have them in
// their title or in the name of their file.
//
// A file .sums holds figures that are sums, "GRAPH_PV = RD_GAINS_1TZ + 1UZ - 1VZ", of outputs, columns and entry boxes;
// an indented line goes on. They are held on random returns.

namespace {

using test::Bloc;
using test::Figures;
using test::Menage;

class TestDeBloc : public testing::Test {
  public:
    TestDeBloc(const std::string& fichier, const Bloc& bloc) : m_fichier(fichier), m_bloc(bloc) {}

    void TestBody() override {
        if (m_bloc.menages.empty()) ADD_FAILURE_AT(m_fichier.c_str(), m_bloc.ligne) << "a block without a household";
        for (const Menage& menage : m_bloc.menages) {
            int ligne = menage.ligne;
            if (menage.figures.empty()) ADD_FAILURE_AT(m_fichier.c_str(), ligne) << "a household without a figure";
            try {
                const kv::Return r = Foyer(menage.boites).compute();
                for (const Figures& figures : menage.figures) {
                    ligne = figures.ligne;
                    test::Attend(r, figures.mots, "of " + menage.boites, m_fichier.c_str(), ligne);
                }
            } catch (const std::exception& faute) {
                ADD_FAILURE_AT(m_fichier.c_str(), ligne) << faute.what();
            }
        }
    }

  private:
    const std::string m_fichier;
    const Bloc m_bloc;
};

// Whether a figure of the law that is a little higher or lower would fail a case: if not, nothing holds it. A euro more
// of 500 000 moves no tax.
class TestDeLaLoi : public testing::Test {
  public:
    explicit TestDeLaLoi(const std::vector<Bloc>& blocs) {
        for (const Bloc& bloc : blocs)
            for (const Menage& menage : bloc.menages) m_menages.push_back(Lus(menage));
    }

    void TestBody() override {
        for (std::int32_t p = 0; p < kv::parameter_count(); ++p) {
            const kv_parameter parametre = kv::describe_parameter(p);
            const std::string unite = parametre.unit;
            const double valeur = kv::Law().get(p), pas = unite == "euros" ? std::max(1.0, std::round(valeur / 2000))
                                                          : unite == "percent" ? 0.5
                                                                               : 1;
            EXPECT_TRUE(Tenu(p, valeur + pas) || Tenu(p, valeur - pas)) << parametre.name << " is held by no case";
        }
    }

  private:
    struct Figure {
        std::int32_t sortie, colonne, valeur;
    };
    struct Declare {
        kv::Return retour;
        std::vector<Figure> figures;
    };
    static Declare Lus(const Menage& menage) {
        Declare lu{Foyer(menage.boites), {}};
        const auto ajoute = [&](const std::string& nom, std::string_view montant) {
            const std::size_t point = nom.find('.');
            if (const auto sortie = kv::find(KV_OUTPUT, nom.substr(0, point)))
                lu.figures.push_back({*sortie, point == nom.npos ? 0 : nom.back() - '0', test::Montant(montant)});
        };
        for (const Figures& figures : menage.figures) {
            for (const std::string_view mot : test::Mots(figures.mots)) {
                const test::Affectation a(mot);
                if (a.nom.ends_with(".c")) {
                    std::string_view reste = a.valeur;
                    for (char colonne = '1'; colonne <= '3'; ++colonne) {
                        const std::string_view montant = reste.substr(0, reste.find(','));
                        ajoute(a.nom + colonne, montant);
                        reste.remove_prefix(std::min(montant.size() + 1, reste.size()));
                    }
                } else if (!a.valeur.starts_with('"')) {
                    ajoute(a.nom, a.valeur);
                }
            }
        }
        return lu;
    }

    bool Tenu(std::int32_t parametre, double valeur) {
        for (std::size_t i = 0; i < m_menages.size(); ++i) {
            kv::Law loi = m_menages[i].retour.law();
            if (kv_law_set_parameter(loi.handle(), parametre, valeur) != KV_OK || kv_law_check(loi.handle()) != KV_OK)
                continue;
            kv::Return r = m_menages[i].retour;
            r.set_law(loi).compute();
            for (const Figure& f : m_menages[i].figures) {
                if (r.output(f.sortie, f.colonne) == f.valeur) continue;
                std::rotate(
                    m_menages.begin(), m_menages.begin() + static_cast<std::ptrdiff_t>(i),
                    m_menages.begin() + static_cast<std::ptrdiff_t>(i) + 1);  // the next one is likely held there too
                return true;
            }
        }
        return false;
    }

    std::vector<Declare> m_menages;
};

struct Somme {
    std::string texte;
    int ligne;
};

class TestDeSomme : public testing::Test {
  public:
    TestDeSomme(const std::string& fichier, const Somme& somme) : m_fichier(fichier), m_somme(somme) {}

    void TestBody() override {
        std::string_view texte = m_somme.texte, suppose;
        if (texte.starts_with('[')) {
            suppose = texte.substr(1, texte.find(']') - 1);
            texte.remove_prefix(texte.find(']') + 1);
        }
        const bool positive = texte.ends_with(", or 0");
        if (positive) texte.remove_suffix(6);
        const auto mots = test::Mots(texte);
        const std::string figure(mots.at(0));
        // Returns are drawn until each term was found in some of them.
        Hasard hasard(2018);
        std::map<std::string_view, int> trouves;
        for (int essai = 0; essai < 3000 && (essai < 12 || Rare(mots, trouves)); ++essai) {
            kv::Return r = hasard.Declaration(60);
            hasard.Depenses(r, 4);
            if (essai % 2 != 0) hasard.Partout(r, 60);
            for (const std::string_view mot : Termes(mots))
                if (Nature(mot) == entree && !hasard.UneFoisSur(3)) r.set(std::string(mot), hasard.Entre(0, 5000));
            test::Remplit(r, suppose);
            r.compute();
            std::int64_t somme = 0, signe = 1;
            for (const std::string_view mot : std::span(mots).subspan(2)) {
                if (Nature(mot) == operateur) {
                    signe = mot == "+" ? 1 : -1;
                } else {
                    const std::int32_t valeur = Valeur(r, mot);
                    somme += signe * valeur;
                    trouves[mot] += valeur != 0;
                }
            }
            if (positive) somme = std::max<std::int64_t>(somme, 0);
            if (r[figure] != somme)
                ADD_FAILURE_AT(m_fichier.c_str(), m_somme.ligne) << figure << " is " << r[figure] << ", not " << somme;
        }
        for (const std::string_view mot : Termes(mots))
            if (trouves[mot] == 0)
                ADD_FAILURE_AT(m_fichier.c_str(), m_somme.ligne)
                    << mot << " was in none of the returns: nothing holds it";
    }

  private:
    enum Genre { operateur, sortie, entree };
    static Genre Nature(std::string_view mot) {
        if (mot == "+" || mot == "-") return operateur;
        return kv::find(KV_OUTPUT, std::string(mot.substr(0, mot.find('.')))) ? sortie : entree;
    }
    static std::vector<std::string_view> Termes(const std::vector<std::string_view>& mots) {
        std::vector<std::string_view> termes;
        std::ranges::copy_if(std::span(mots).subspan(2), std::back_inserter(termes),
                             [](auto mot) { return Nature(mot) != operateur; });
        return termes;
    }
    static std::int32_t Valeur(const kv::Return& r, std::string_view mot) {
        const std::int32_t v = Nature(mot) == sortie ? r[std::string(mot)] : r.get(std::string(mot));
        return v == KV_UNSET ? 0 : v;
    }
    static bool Rare(const std::vector<std::string_view>& mots, const std::map<std::string_view, int>& trouves) {
        return std::ranges::any_of(Termes(mots), [&](auto mot) {
            const auto vus = trouves.find(mot);
            return vus == trouves.end() || vus->second < 3;
        });
    }

    const std::string m_fichier;
    const Somme m_somme;
};

// A name that any tool can filter.
std::string EnUnMot(const std::string& texte) {
    std::string mot;
    bool majuscule = true;
    for (const char c : texte) {
        if (std::isalnum(static_cast<unsigned char>(c)))
            mot += majuscule ? static_cast<char>(std::toupper(static_cast<unsigned char>(c))) : c;
        majuscule = !std::isalnum(static_cast<unsigned char>(c));
    }
    return mot;
}

// Whether a text contains all words, whatever their case.
bool Contient(std::string texte, const std::vector<std::string>& mots) {
    const auto minuscules = [](std::string t) {
        for (char& c : t) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        return t;
    };
    texte = minuscules(texte);
    return std::all_of(mots.begin(), mots.end(),
                       [&](const std::string& mot) { return texte.find(minuscules(mot)) != texte.npos; });
}

void EnregistreCas(const std::filesystem::path& chemin, const std::vector<Bloc>& blocs) {
    const std::string fichier = chemin.string();
    for (const Bloc& bloc : blocs)
        testing::RegisterTest(EnUnMot(chemin.stem().string()).c_str(), EnUnMot(bloc.titre).c_str(), nullptr, nullptr,
                              fichier.c_str(), bloc.ligne,
                              [fichier, bloc]() -> testing::Test* { return new TestDeBloc(fichier, bloc); });
}

void EnregistreSommes(const std::filesystem::path& chemin) {
    const std::string fichier = chemin.string();
    std::ifstream entree(chemin);
    std::vector<Somme> sommes;
    int numero = 0;
    for (std::string ligne; std::getline(entree, ligne);) {
        ++numero;
        if (ligne.empty() || ligne[0] == '#') continue;
        if (ligne[0] == ' ' && !sommes.empty())
            sommes.back().texte += ligne;
        else
            sommes.push_back({ligne, numero});
    }
    for (const Somme& somme : sommes)
        testing::RegisterTest(EnUnMot(chemin.stem().string()).c_str(),
                              EnUnMot(somme.texte.substr(0, somme.texte.find(" ="))).c_str(), nullptr, nullptr,
                              fichier.c_str(), somme.ligne,
                              [fichier, somme]() -> testing::Test* { return new TestDeSomme(fichier, somme); });
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const std::vector<std::string> mots(argv + 1, argv + argc);
    std::vector<Bloc> tous;
    try {
        for (const auto& fichier : test::Fichiers(KV_CAS, ".case")) {
            std::vector<Bloc> blocs = test::LisCas(fichier);
            std::erase_if(
                blocs, [&](const Bloc& bloc) { return !Contient(fichier.stem().string() + ' ' + bloc.titre, mots); });
            EnregistreCas(fichier, blocs);
            tous.insert(tous.end(), blocs.begin(), blocs.end());
        }
    } catch (const std::exception& faute) {
        std::cerr << faute.what() << '\n';
        return 1;
    }
    if (!mots.empty()) {
        if (tous.empty()) std::cerr << "no case has these words in its title, or in the name of its file\n";
        return tous.empty() ? 2 : RUN_ALL_TESTS();
    }
    for (const auto& fichier : test::Fichiers(KV_CAS, ".sums")) EnregistreSommes(fichier);
    testing::RegisterTest("Loi", "EachFigureIsHeldByACase", nullptr, nullptr, __FILE__, __LINE__,
                          [&tous]() -> testing::Test* { return new TestDeLaLoi(tous); });
    return RUN_ALL_TESTS();
}
