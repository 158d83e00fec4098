#include "interface/Sens.h"

#include <map>
#include <set>
#include <thread>

#include "Calcul/pCalculN/Pilote.h"
#include "interface/LibellesEntree.h"
#include "interface/LibellesSortie.h"
#include "tests/Figures.h"
#include "tests/Hasard.h"
#include "tests/Hote.h"

namespace {

namespace sens = kv::sens;
using sens::De;

bool Inutilisee(CaseSortie c) { return De(c).libelle == "inutilisée"; }

TEST(Sens, EveryBoxHasALabel) {
    const auto controle = [](const std::string& libelle, const std::string& nom) {
        EXPECT_FALSE(libelle.empty()) << nom;
        EXPECT_LE(kv::VersUtf16(libelle).size(), 110u) << nom << ": " << libelle;
        EXPECT_EQ(libelle.find("  "), std::string::npos) << nom << ": " << libelle;
    };
    for (int i = 0; i < kv::nEntrees; ++i) controle(De(CaseEntree::Numero(i)).libelle, kv::entree::lignes[i].nom);
    for (int j = 0; j < kv::nSorties; ++j) controle(De(CaseSortie::Numero(j)).libelle, kv::sortie::noms[j]);
    for (int r = 0; r < kv::nReports; ++r) controle(De(CaseReport::Numero(r)).libelle, kv::report::noms[r]);
}

TEST(Sens, EachRowNamesBoxesOfTheCatalogueOnce) {
    std::set<std::string> vues;
    for (const auto& partie : sens::partiesEntree)
        for (const auto& ligne : partie.lignes) {
            std::istringstream boites(ligne.boites);
            for (std::string nom; boites >> nom;) {
                EXPECT_GE(kv::NumeroEntree(nom), 0) << nom;
                EXPECT_TRUE(vues.insert(nom).second) << nom;
            }
        }
    std::map<std::string, int> sorties;
    for (const auto& famille : sens::famillesSortie)
        for (const auto& ligne : famille.lignes) ++sorties[ligne.sortie];
    for (const char* nom : sens::sortiesInutilisees) {
        ++sorties[nom];
        EXPECT_TRUE(Inutilisee(CaseSortie::Numero(kv::CatalogueSortie::index.Cherche(kv::Hache(nom))))) << nom;
    }
    for (const auto& [nom, fois] : sorties) {
        EXPECT_GE(kv::CatalogueSortie::index.Cherche(kv::Hache(nom)), 0) << nom;
        EXPECT_EQ(fois, 1) << nom;
    }
}

// Composed labels: the person's part, a later fraction, what becomes of an overseas reduction, what next year takes
// over.
TEST(Sens, LabelsAreComposedFromTheTables) {
    EXPECT_EQ(De(CaseEntree("1BJCI")).libelle, De(CaseEntree("1BJ")).libelle + ", part exceptionnelle");
    EXPECT_EQ(De(CaseEntree("7FIB")).libelle, De(CaseEntree("7FI")).libelle + ", part de 2019");
    EXPECT_EQ(De(CaseSortie("NP2_7FI")).libelle, De(CaseEntree("7FIB")).libelle);
    EXPECT_EQ(De(CaseReport("F11_7FIA")).source, "NP1_7FI");
    EXPECT_EQ(De(CaseReport("F11_7FIA")).boite, "7FIA");
    EXPECT_EQ(De(CaseReport("F11_6FL")).libelle, "Déficit global de 2017, reste à reporter");
    EXPECT_EQ(De(CaseReport("F11_6FE")).libelle, "Déficit global de 2016, reste à reporter");
    EXPECT_EQ(De(CaseEntree("HSE")).libelle,
              "Outre-mer, plafond de 270000 € sans option, remboursable (règles de 2010)");
    EXPECT_EQ(De(CaseSortie("U_PR_HCD_R")).libelle,
              "Part rétrocédée : Outre-mer, rétrocession de 66 %, reportable (depuis 2013, plafond "
              "majoré)");
    EXPECT_EQ(De(CaseEntree("7IR")).libelle, "Location meublée, investissement à 25 % sur 9 ans (règles de 2009)");
    EXPECT_EQ(De(CaseSortie("NP1_REPORT_7R1")).libelle, "Réductions à reporter : Location meublée (règles de 2009)");
    EXPECT_EQ(De(CaseSortie("D_CR_7AF")).etape, "24:CreditDImpot");
    EXPECT_EQ(De(CaseSortie("PFU")).etape, "1:Calcul");
    EXPECT_STREQ(sens::Personne("1FJE"), "personne à charge 9");
    EXPECT_STREQ(sens::Personne("5JC"), "personnes à charge");
}

// What the labels say of boxes without effect, unused outputs and columns holds of any return, under any options.
TEST(Sens, NothingIsSaidThatAReturnShowsOtherwise) {
    std::set<int> inutiles, colonnes;
    Hasard hasard(5);
    for (int i = 0; i < 300; ++i) {
        kv::Return r = i % 2 == 0 ? hasard.Declaration(60) : hasard.Simple();
        hasard.Depenses(r, 60), hasard.OutreMer(r, 60);
        r.set_launch(i % 3 == 0 ? KV_LAUNCH_FORCED : i % 3 == 1 ? KV_LAUNCH_OPTIONS : KV_LAUNCH_NORMAL);
        kv::Return avec = r;
        for (int n = 0; n < kv::nEntrees; ++n)
            if (De(CaseEntree::Numero(n)).groupe == sens::Groupe::HorsCalcul) avec.set(n, hasard.Entre(1, 90000));
        EXPECT_EQ(test::Sorties(r.compute()), test::Sorties(avec.compute())) << i;
        for (int j = 0; j < kv::nSorties; ++j) {
            const CaseSortie c = CaseSortie::Numero(j);
            const auto& s = De(c);
            const char* noms[] = {s.colonnes.c1, s.colonnes.c2, s.colonnes.c3};
            if (r.output(j) != 0 && Inutilisee(c)) inutiles.insert(j);
            for (int k = 0; k < 3; ++k)
                if (r.output(j, k + 1) != 0 && !*noms[k]) colonnes.insert(10 * j + k + 1);
        }
        for (int n = 0; n < kv::nReports; ++n) {
            EXPECT_EQ(r.carry(n), avec.carry(n)) << kv::report::noms[n];
            EXPECT_FALSE(r.carry(n) != 0 && De(CaseReport::Numero(n)).libelle == "inutilisée") << kv::report::noms[n];
        }
    }
    for (const int j : inutiles) ADD_FAILURE() << kv::sortie::noms[j] << " is written";
    for (const int c : colonnes) ADD_FAILURE() << kv::sortie::noms[c / 10] << " has a column " << c % 10;
}

TEST(Sens, BoxesAreFoundByNameOrByWords) {
    const struct {
        const char* cherche;
        bool trouve;
    } cas[] = {{"1as", true},
               {"RETRAITES rentes", true},
               {"rentes pénsions", true},
               {"rentes salaires", false},
               {"", false},
               {" ", false},
               {"1bs", false}};
    for (const auto& c : cas)
        EXPECT_EQ(sens::Correspond("1AS", "Pensions, retraites et rentes", c.cherche), c.trouve) << c.cherche;
    EXPECT_TRUE(sens::Correspond("7XN", "Résidence de tourisme en zone rurale, 25 %", "residence 25"));
    EXPECT_TRUE(sens::Correspond("U_DONS_OEUVRES_N", "Dons aux œuvres de l'année N", "oeuvres"));
}

TEST(Avertissements, NameWhatCannotBeTrue) {
    const struct {
        const char *foyer, *mention;  // "" for a return that may well be
    } cas[] = {
        {"M Fm=2 Gm=1 1AJ=30000 1BJ=20000 AAF1=19700228", ""},
        {"C Jm=1 Gm=1 1AJ=30000 5XC=2016", ""},
        {"Vp Z1=20170301 1BJ=20000", ""},
        {"M C 1AJ=30000", "M (Mariés) and C (Célibataire): more than one family situation"},
        {"C 1BJ=20000 5IC=100", "5IC, 1BJ: income of a second declarant"},
        {"M Fm=1 Gm=2", "Gm = 2: more disabled dependants than Fm + Jm + Rm = 1"},
        {"C Im=1", "Im = 1: more disabled children in alternating residence than Hm = 0"},
        {"C AAF1=20180101", "AAF1 = 20180101 (Date de naissance): after the end of 2017"},
        {"C AAF1=19700230", "not a date"},
        {"C AAF1=1970", "not a date"},
        {"C 5XC=20160301", "not a year"},
        {"C 5XC=2019", "after the end of 2017"},
        {"C T=2", "T = 2 (Parent isolé): a tick is 0 or 1"},
    };
    for (const auto& c : cas) {
        const auto messages = Foyer(c.foyer).warnings();
        ASSERT_EQ(messages.size(), *c.mention ? 1u : 0u) << c.foyer << (messages.empty() ? "" : ": " + messages[0]);
        for (const std::string& message : messages) EXPECT_NE(message.find(c.mention), std::string::npos) << message;
    }
    EXPECT_TRUE(Foyer("C 1AJ=30000 M=unset 1BJ=unset AAF1=unset T=unset").warnings().empty());
}

}  // namespace
