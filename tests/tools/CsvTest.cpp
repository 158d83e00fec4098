#include "tools/Csv.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

#include "tests/Hasard.h"

namespace {

using Enregistrements = std::vector<std::vector<std::string>>;

Enregistrements Lus(const std::string& texte, char* separateur = nullptr) {
    std::istringstream entree(texte);
    outil::LecteurCsv lecteur(entree);
    if (separateur) *separateur = lecteur.Separateur();
    Enregistrements lus;
    for (std::vector<std::string_view> champs; lecteur.Suivant(champs);) lus.emplace_back(champs.begin(), champs.end());
    EXPECT_EQ(lecteur.Octets(), std::ssize(texte));
    EXPECT_EQ(lecteur.Complet(), texte.empty() || texte.back() == '\n');
    return lus;
}

TEST(Csv, FieldsAsSpreadsheetsWriteThem) {
    char separateur = 0;
    EXPECT_EQ(Lus("a,b\n1,2\n"), (Enregistrements{{"a", "b"}, {"1", "2"}}));
    EXPECT_EQ(Lus("\xEF\xBB\xBFid;\"x,y\"\r\n;\r\n\r\n5;6", &separateur),
              (Enregistrements{{"id", "x,y"}, {"", ""}, {"5", "6"}}));
    EXPECT_EQ(separateur, ';');
    EXPECT_EQ(Lus("\"a;b\"\tc\n", &separateur), (Enregistrements{{"a;b", "c"}}));
    EXPECT_EQ(separateur, '\t');
    EXPECT_EQ(Lus("alone\n\"1;2\"\n", &separateur), (Enregistrements{{"alone"}, {"1;2"}}));
    EXPECT_EQ(separateur, ',');
    EXPECT_EQ(Lus("\"a \"\"quoted\"\" word\",\"two\nlines\r\n\",\"\"\n,,\n"),
              (Enregistrements{{"a \"quoted\" word", "two\nlines\r\n", ""}, {"", "", ""}}));
    // A quote opens a field at its beginning only.
    EXPECT_EQ(Lus("1,5\" disk,a\"b\"c\n2,x,\"y\"z\n3,6\",\n"),
              (Enregistrements{{"1", "5\" disk", "a\"b\"c"}, {"2", "x", "yz"}, {"3", "6\"", ""}}));
    EXPECT_EQ(Lus("\r\n\na;b\n", &separateur), (Enregistrements{{"a", "b"}}));
    EXPECT_EQ(separateur, ';');
    EXPECT_EQ(Lus(""), Enregistrements{});
    EXPECT_EQ(Lus("\n\r\n"), Enregistrements{});
    EXPECT_EQ(Lus("a,\"never closed\nb"), (Enregistrements{{"a", "never closed\nb"}}));
}

TEST(Csv, AQuoteThatIsNeverClosed) {
    std::istringstream court("a,\"b\nc\n"),
        longue("a,\"b\n" + std::string(2 * outil::LecteurCsv::longueurMaximale, 'c'));
    std::vector<std::string_view> champs;
    outil::LecteurCsv lecteur(court);
    EXPECT_TRUE(lecteur.Suivant(champs));
    EXPECT_TRUE(lecteur.Ouvert());
    EXPECT_THROW(outil::LecteurCsv(longue).Suivant(champs), std::length_error);
}

// Records of any length, whatever stands in them, are read as they were written.
TEST(Csv, WhatIsWrittenIsReadAgain) {
    Hasard hasard(16);
    const auto longueur = [&](int max) { return static_cast<std::size_t>(hasard.Entre(0, max)); };
    const char signes[] = "a1.,;\"\n\r \xC3\xA9";
    for (const char separateur : {',', ';'}) {
        Enregistrements attendus = {{"id", "x"}};
        std::string texte = std::string("id") + separateur + "x\n";
        for (int i = 0; i < 2000; ++i) {
            auto& champs = attendus.emplace_back();
            for (std::size_t j = 0, n = static_cast<std::size_t>(hasard.Entre(2, 6)); j < n; ++j) {
                // One field is longer than what is read at once.
                const std::size_t taille = i == 1000 && j == 1    ? 700'000
                                           : hasard.UneFoisSur(8) ? longueur(1999)
                                                                  : longueur(7);
                std::string& champ = champs.emplace_back();
                while (champ.size() < taille) champ += signes[longueur(sizeof signes - 2)];
                if (j > 0) texte += separateur;
                outil::EcritChamp(texte, champ, separateur);
            }
            texte += hasard.UneFoisSur(2) ? "\n" : "\r\n";
        }
        EXPECT_TRUE(Lus(texte) == attendus);
    }
}

}  // namespace
