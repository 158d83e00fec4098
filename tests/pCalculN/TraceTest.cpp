#include <algorithm>
#include <map>

#include "Calcul/pCalculN/Pilote.h"
#include "tests/Hote.h"
#include "tests/RepertoireDeTrace.h"

namespace {

// A step or re-run line: how far it is indented, and its text.
struct Ligne {
    std::size_t espaces;
    std::string texte;
    bool operator==(const Ligne&) const = default;
};
void PrintTo(const Ligne& l, std::ostream* flux) { *flux << l.espaces << " " << l.texte; }

// Launches with the trace on; the step and re-run lines, in order.
std::vector<Ligne> LignesDe(const char* boxes, bool options = false) {
    const test::RepertoireDeTrace repertoire;
    repertoire.PoseMarqueur();
    EXPECT_TRUE(kv::Lance(*Hote(boxes), nullptr, true, -1.0, false, options));

    std::vector<Ligne> lignes;
    for (const std::string& ligne : repertoire.Lignes()) {
        constexpr std::size_t debut = sizeof("hh:nn:ss : ") - 1;
        const std::size_t espaces = std::min(ligne.find_first_not_of(' ', debut), ligne.size()) - debut;
        const std::string texte = ligne.substr(debut + espaces);
        const std::size_t chiffres = std::min(texte.find_first_not_of("0123456789"), texte.size());
        const bool etape = chiffres > 0 && chiffres < texte.size() && texte[chiffres] == ':';
        if (etape || texte.starts_with("=> ")) lignes.push_back({espaces, texte});
    }
    return lignes;
}

// Several lines with the same indentation.
void Ajoute(std::vector<Ligne>& lignes, std::size_t espaces, std::initializer_list<const char*> textes) {
    for (const char* texte : textes) lignes.push_back({espaces, texte});
}

// The gross income of a household: its parts stand one level further in than the other steps.
void AjouteRevenus(std::vector<Ligne>& lignes, std::size_t espaces) {
    Ajoute(lignes, espaces + 2, {"2:NombreParts"});
    Ajoute(lignes, espaces, {"3:RevenusBrut"});
    Ajoute(lignes, espaces + 2,
           {"4:RevenusSalaires", "5:RentesViageres", "6:RevenusNonSalaries", "7:RevenusExoneres", "8:RevenusMobiliers",
            "9:RevenusFonciers", "10:RevenusDivers"});
}

// The end of a computation, from the reductions to the amount payable.
void AjouteFin(std::vector<Ligne>& lignes, std::size_t espaces, bool avantages) {
    Ajoute(lignes, espaces, {"19:ImpotApresReductions"});
    if (avantages) Ajoute(lignes, espaces + 2, {"20:RevenuFiscalRef"});
    Ajoute(lignes, espaces + 2, {"21:HautsSalaires"});
    Ajoute(lignes, espaces, {"22:ImpotApresCorrections", "24:CreditDImpot"});
    Ajoute(lignes, espaces + 2, {"25:CSG_CRDS", "36:TauxPAS"});
    Ajoute(lignes, espaces, {"26:ImpotAPaye"});
}

// Two spaces for each level; a launch begins at level 3.
TEST(TraceDesEtapes, StepsOfACouple) {
    const auto lignes = LignesDe("M Fm=1 1AJ=42000 1BJ=31000 7FQ=2000");
    std::vector<Ligne> debut;
    Ajoute(debut, 6, {"1:Calcul"});
    Ajoute(debut, 8,
           {"28:NichesFiscales", "=> Calcul de B : on relance tous les calculs normaux (avec les réductions)"});
    Ajoute(debut, 10, {"27:PlafondPERP"});
    AjouteRevenus(debut, 12);
    Ajoute(debut, 12, {"11:RevenusBrutQuotient", "=> on relance les calculs en ayant ajouté les revenus au quotient"});
    AjouteRevenus(debut, 14);
    Ajoute(debut, 12,
           {"12:RevenusTauxForf", "13:RevenusNet", "14:RevenusImposables", "15:CalculImpot", "16:TauxMarginal",
            "17:RevenusTM", "18:RevenusEtrangers"});
    Ajoute(debut, 10, {"=> on relance les calculs normaux"});
    AjouteFin(debut, 12, true);
    Ajoute(debut, 8, {"=> Calcul de B : on relance les réductions sans aucun avantage"});
    AjouteFin(debut, 10, false);
    Ajoute(debut, 8, {"=> Calcul de A : on relance tous les calculs normaux (avec les réductions)"});
    Ajoute(debut, 10, {"27:PlafondPERP"});
    ASSERT_GT(lignes.size(), debut.size());
    for (std::size_t i = 0; i < debut.size(); ++i) EXPECT_EQ(lignes[i], debut[i]) << i;

    // What "1:Calcul" and the entry point run themselves: twice for a couple, whose two rates are found between.
    std::vector<Ligne> exterieures, attendues;
    for (const Ligne& l : lignes)
        if (l.espaces <= 8 && !l.texte.starts_with("=>")) exterieures.push_back(l);
    const auto principales = [&] {
        Ajoute(attendues, 8,
               {"28:NichesFiscales", "29:Reports", "30:PrelevLib", "31:TauxImposMoyen", "32:ImposTxMarginal",
                "33:ImposTrancheSup"});
    };
    Ajoute(attendues, 6, {"1:Calcul"});
    principales();
    for (int declarant = 1; declarant <= 2; ++declarant)
        Ajoute(
            attendues, 8,
            {"3:RevenusBrut", "11:RevenusBrutQuotient", "12:RevenusTauxForf", "13:RevenusNet", "14:RevenusImposables",
             "15:CalculImpot", "16:TauxMarginal", "17:RevenusTM", "18:RevenusEtrangers", "19:ImpotApresReductions"});
    principales();
    Ajoute(attendues, 8, {"34:RevenusNetFrais"});
    Ajoute(attendues, 6, {"35:Calcul_ISF"});
    EXPECT_EQ(exterieures, attendues);

    // Step 28 twice; in each, step 27 twice, one run without advantages and steps 24 and 26 once more. The two
    // declarants alone run a chain up to step 19.
    std::map<std::string, int> compte, attendu;
    for (const Ligne& l : lignes) ++compte[l.texte.starts_with("=>") ? l.texte : l.texte.substr(0, l.texte.find(':'))];
    const auto fois = [&](int n, std::initializer_list<const char*> etapes) {
        for (const char* etape : etapes) attendu[etape] = n;
    };
    fois(12, {"2", "3", "4", "5", "6", "7", "8", "9", "10"});
    fois(6, {"11", "12", "13", "14", "15", "16", "17", "18", "20", "22",
             "=> on relance les calculs en ayant ajouté les revenus au quotient"});
    fois(8, {"19", "21", "24", "25", "26", "36"});
    fois(4, {"27", "=> on relance les calculs normaux"});
    fois(2, {"28", "29", "30", "31", "32", "33",
             "=> Calcul de B : on relance tous les calculs normaux (avec les réductions)",
             "=> Calcul de B : on relance les réductions sans aucun avantage",
             "=> Calcul de A : on relance tous les calculs normaux (avec les réductions)",
             "=> On relance les crédits d'impôts et l'impôt à payer avec les niches calculées"});
    fois(1, {"1", "34", "35"});
    EXPECT_EQ(compte, attendu);
}

// The re-runs that a return asks for, and the level of the step that runs them.
TEST(TraceDesEtapes, ReRuns) {
    struct Cas {
        const char* boxes;
        bool options;
        std::vector<std::pair<Ligne, int>> lignes;
    };
    for (const Cas& c : {
             Cas{"1AJ=20000 4BA=5000 4BY=1000",
                 false,
                 {{{8, "=> Calcul de 4BY : on relance tous les calculs après avoir ajouté 4BY à 4BA"}, 1},
                  {{8, "=> Calcul de 4BY : on relance les réductions sans aucun avantage"}, 1},
                  {{10, "27:PlafondPERP"}, 3}}},
             // Exempt salaries: step 4 once more in step 27; twice in step 20, and the chain after it.
             {"1AJ=20000 1AQ=3000",
              false,
              {{{10, "=> on relance les salaires après avoir ajouté les revenus des cases 1AQ"}, 2},
               {{10, "=> on relance les salaires après avoir retirée les revenus des cases 1AQ"}, 0},
               {{14, "=> on relance les salaires après avoir ajouté les revenus de 1AQ"}, 2},
               {{14, "=> on relance les calculs en prenant en compte la demi-base"}, 2},
               {{12, "4:RevenusSalaires"}, 2}}},
             {"REM 1AJ=20000 8TM=60000",
              false,
              {{{12, "=> on relance le calcul d'impôt en ajoutant la case 8TM"}, 2},
               {{12, "=> on relance le calcul d'impôt sans la case 8TM"}, 2},
               {{14, "15:CalculImpot"}, 4},
               {{14, "16:TauxMarginal"}, 2}}},
             // A comparison: three runs, each inside the one before it, the modernisation credit in each.
             {"CIMR 1AJ=20000",
              true,
              {{{6, "1:Calcul"}, 1},
               {{8, "1:Calcul"}, 1},
               {{10, "1:Calcul"}, 1},
               {{8, "28:NichesFiscales"}, 1},
               {{10, "28:NichesFiscales"}, 1},
               {{12, "28:NichesFiscales"}, 1},
               {{14, "37:KV_CIMR"}, 2 + 2},  // in step 27 of the first run, in step 28 itself of the second
               {{6, "35:Calcul_ISF"}, 1}}},
         }) {
        const auto lignes = LignesDe(c.boxes, c.options);
        for (const auto& [ligne, fois] : c.lignes)
            EXPECT_EQ(std::count(lignes.begin(), lignes.end(), ligne), fois) << c.boxes << ": " << ligne.texte;
    }
}

}  // namespace
