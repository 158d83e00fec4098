#include <filesystem>
#include <fstream>
#include <iostream>

#include "tests/Notation.h"

// The cases of tests/cases: one test for each block, in files that anyone who knows the tax can write.
//
//     Title of a block
//       with M 1AJ=30000                      boxes of all its households
//       Fm=2 7UF=100                          a household: its boxes, on one line or several
//         -> TOT_R_IMPOS=27000                what is found for it                          # and why
//       -> TOT_IMPOT TOT_R_IMPOS              figures that the following households name in this order
//       Fm=3 -> 1234 27000 RN_SAL.c=27000,0,0
//       empty -> 1234 27000                   a household with no box but those of the block
//
// Words after # are the arithmetic that leads to the figures. The notation of boxes and figures is that of Notation.h.

namespace {

struct Figures {
    std::string mots;
    int ligne;
};
struct Menage {
    std::string boites;
    int ligne;
    std::vector<Figures> figures = {};
};
struct Bloc {
    std::string titre;
    int ligne;
    std::vector<Menage> menages = {};
};

// Where a text begins outside quotes; its size when it does not.
std::size_t HorsGuillemets(std::string_view ligne, std::string_view texte) {
    bool cite = false;
    for (std::size_t i = 0; i < ligne.size(); ++i) {
        if (!cite && ligne.substr(i).starts_with(texte)) return i;
        cite ^= ligne[i] == '"';
    }
    return ligne.size();
}

class Lecteur {
  public:
    std::vector<Bloc> blocs;

    void Lit(std::string_view ligne, int numero) {
        ligne = ligne.substr(0, HorsGuillemets(ligne, "#"));
        while (ligne.ends_with(' ')) ligne.remove_suffix(1);
        if (ligne.empty()) return;
        if (ligne[0] != ' ') {
            blocs.push_back({std::string(ligne), numero});
            m_communs.clear(), m_entete.clear();
            return;
        }
        if (blocs.empty()) throw std::invalid_argument("a household without a title above it");
        const std::size_t fleche = HorsGuillemets(ligne, "->");
        const auto boites = test::Mots(ligne.substr(0, fleche));
        if (!boites.empty() && boites[0] == "with")
            for (const std::string_view mot : std::span(boites).subspan(1)) (m_communs += mot) += ' ';
        else if (!boites.empty())
            Boites(boites, numero);
        if (fleche < ligne.size()) LitFigures(test::Mots(ligne.substr(fleche + 2)), boites.empty(), numero);
    }

  private:
    void Boites(const std::vector<std::string_view>& boites, int numero) {
        std::vector<Menage>& menages = blocs.back().menages;
        if (menages.empty() || !menages.back().figures.empty()) {
            menages.push_back({m_communs, numero});
            m_position = 0;
        }
        for (const std::string_view mot : boites)
            if (mot != "empty") (menages.back().boites += mot) += ' ';
    }

    void LitFigures(const std::vector<std::string_view>& mots, bool seules, int numero) {
        const bool entete = seules && !mots.empty() && std::all_of(mots.begin(), mots.end(), [](std::string_view mot) {
                                return 'A' <= mot[0] && mot[0] <= 'Z' && mot.find('=') == mot.npos;
                            });
        if (entete) {
            if (!m_suiteDEntete) m_entete.clear();
            m_entete.insert(m_entete.end(), mots.begin(), mots.end());
            m_suiteDEntete = true;
            return;
        }
        m_suiteDEntete = false;
        if (blocs.back().menages.empty()) throw std::invalid_argument("figures without a household");
        Figures& figures = blocs.back().menages.back().figures.emplace_back("", numero);
        for (const std::string_view mot : mots) {
            if (HorsGuillemets(mot, "=") == mot.size()) {
                if (m_position == m_entete.size()) throw std::invalid_argument(std::string(mot) + " has no name");
                (figures.mots += m_entete[m_position++]) += '=';
            }
            (figures.mots += mot) += ' ';
        }
    }

    std::string m_communs;              // boxes of all the households of a block
    std::vector<std::string> m_entete;  // names of the figures that have none
    std::size_t m_position = 0;
    bool m_suiteDEntete = false;
};

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

void Enregistre(const std::filesystem::path& chemin) {
    const std::string fichier = chemin.string();
    std::ifstream entree(chemin);
    Lecteur lecteur;
    int numero = 0;
    for (std::string ligne; std::getline(entree, ligne);) {
        try {
            lecteur.Lit(ligne, ++numero);
        } catch (const std::exception& faute) {
            std::cerr << fichier << ':' << numero << ": " << faute.what() << '\n';
            std::exit(1);
        }
    }
    for (const Bloc& bloc : lecteur.blocs)
        testing::RegisterTest(EnUnMot(chemin.stem().string()).c_str(), EnUnMot(bloc.titre).c_str(), nullptr, nullptr,
                              fichier.c_str(), bloc.ligne,
                              [fichier, bloc]() -> testing::Test* { return new TestDeBloc(fichier, bloc); });
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    std::vector<std::filesystem::path> fichiers;
    for (const auto& entree : std::filesystem::directory_iterator(argc > 1 ? argv[1] : KV_CAS))
        if (entree.path().extension() == ".case") fichiers.push_back(entree.path());
    std::sort(fichiers.begin(), fichiers.end());
    for (const auto& fichier : fichiers) Enregistre(fichier);
    return RUN_ALL_TESTS();
}
