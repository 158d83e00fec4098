#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/Notation.h"

// The cases of tests/cases, in files that anyone who knows the tax can write.
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
//
// A file .sums holds figures that are sums, "GRAPH_PV = RD_GAINS_1TZ + 1UZ - 1VZ", of outputs, columns and entry boxes;
// an indented line goes on. They are held on random returns.

namespace test {

/// Figures of a line, "NAME=value" each.
struct Figures {
    std::string mots;
    int ligne;
};
/// A household, and what is found for it.
struct Menage {
    std::string boites;
    int ligne;
    std::vector<Figures> figures = {};
};
/// A title and its households.
struct Bloc {
    std::string titre;
    int ligne;
    std::vector<Menage> menages = {};
};

/// Where a text begins outside quotes; its size when it does not.
inline std::size_t HorsGuillemets(std::string_view ligne, std::string_view texte) {
    bool cite = false;
    for (std::size_t i = 0; i < ligne.size(); ++i) {
        if (!cite && ligne.substr(i).starts_with(texte)) return i;
        cite ^= ligne[i] == '"';
    }
    return ligne.size();
}

/// Reads a file line by line; what is wrong with a line is thrown.
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
        const auto boites = Mots(ligne.substr(0, fleche));
        if (!boites.empty() && boites[0] == "with")
            for (const std::string_view mot : std::span(boites).subspan(1)) (m_communs += mot) += ' ';
        else if (!boites.empty())
            Boites(boites, numero);
        if (fleche < ligne.size()) LitFigures(Mots(ligne.substr(fleche + 2)), boites.empty(), numero);
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

/// The blocks of a file; a fault of a line is thrown with the file and the line.
inline std::vector<Bloc> LisCas(const std::filesystem::path& fichier) {
    std::ifstream entree(fichier);
    Lecteur lecteur;
    int numero = 0;
    for (std::string ligne; std::getline(entree, ligne);) {
        try {
            lecteur.Lit(ligne, ++numero);
        } catch (const std::exception& faute) {
            throw std::invalid_argument(fichier.string() + ':' + std::to_string(numero) + ": " + faute.what());
        }
    }
    return lecteur.blocs;
}

/// The files of a directory that end so, by name.
inline std::vector<std::filesystem::path> Fichiers(const std::filesystem::path& repertoire, const char* fin) {
    std::vector<std::filesystem::path> fichiers;
    for (const auto& entree : std::filesystem::directory_iterator(repertoire))
        if (entree.path().extension() == fin) fichiers.push_back(entree.path());
    std::sort(fichiers.begin(), fichiers.end());
    return fichiers;
}

}  // namespace test
