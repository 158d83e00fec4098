#include <map>
#include <numeric>
#include <set>
#include <sstream>

#include "Calcul/pCalculN/Pilote.h"
#include "Calcul/pCalculN/ReportsTable.h"
#include "tests/Hasard.h"
#include "tests/Hote.h"

namespace {

using kv::reports::Copie;
using kv::reports::copies;

std::string NomReport(CaseReport box) { return kv::report::noms[box.numero]; }

// The deficits of a category by year of origin, the most recent first, and the oldest one last.
struct Categorie {
    std::vector<const char*> codes;
    std::vector<CaseSortie> sorties;
    CaseReport Report(std::size_t i) const { return CaseReport::Requise("F11_", codes[i]); }
    CaseEntree Box(std::size_t i) const { return CaseEntree::Requise(codes[i], ""); }
};
const Categorie agricole = {{"5QQ", "5QP", "5QO", "5QN", "5QG", "5QF"}, {"NP1_BA", "NP1_BA_ANN", "NP1_BA_ANT"}};
const Categorie commercial = {{"5RW", "5RR", "5RQ", "5RP", "5RO", "5RN"}, {"NP1_BICNP", "NP1_BICNP_ANN"}};
const Categorie meubles = {{"5GJ", "5GI", "5GH", "5GG", "5GF", "5GE", "5GD", "5GC", "5GB", "5GA"},
                           {"NP1_BICNP_LM", "NP1_BICNP_LM_ANN"}};
const Categorie nonCommercial = {{"5MT", "5LT", "5KT", "5JT", "5IT", "5HT"},
                                 {"NP1_BNCNP", "NP1_BNCNP_ANN", "NP1_BNCNP_IMP", "NP1_BNCNP_PER"}};
const Categorie global = {{"6FL", "6FE", "6FD", "6FC", "6FB", "6FA"},
                          {"NP1_GLOBAL", "NP1_GLOBAL_ANN", "NP1_GLOBAL_IMP", "NP1_GLOBAL_PER"}};
const Categorie mobilier = {{"2AR", "2AQ", "2AN", "2AM", "2AL", "2AA"}, {}};

TEST(Reports, EveryBoxHasOneSource) {
    std::set<int> cibles;
    for (const Copie& copie : copies) {
        EXPECT_TRUE(copie.vers && copie.numero >= 0);
        EXPECT_LT(copie.numero, copie.source == Copie::DEntree ? kv::nEntrees : kv::nSorties);
        EXPECT_TRUE(cibles.insert(copie.vers.numero).second) << NomReport(copie.vers);
    }
    EXPECT_EQ(cibles.size(), 698u);
    std::set<std::string> autres = {"F11_IRNm1", "F11_6DE", "F11_7WL", "F11_7WHA"};
    for (const Categorie* c : {&agricole, &commercial, &meubles, &nonCommercial, &global})
        for (std::size_t i = 0; i < c->codes.size(); ++i) autres.insert(NomReport(c->Report(i)));
    std::set<std::string> sansCopie;
    for (int i = 0; i < kv::nReports; ++i)
        if (!cibles.contains(i)) sansCopie.insert(kv::report::noms[i]);
    EXPECT_EQ(sansCopie, autres);
}

// A box takes the figure of its name: "7FIC" that of the third year of 7FI, "HSB" the one that ends in HSB, or the
// entry box itself; these boxes take another one.
TEST(Reports, NamesAreThoseOfTheirFigures) {
    std::map<std::string, std::string> autres;
    std::istringstream exceptions(
        "2AR REV_MOB_ANN 2AQ REV_MOB_Nm1 2AN REV_MOB_Nm2 2AM REV_MOB_Nm3 2AL REV_MOB_Nm4 2AA REV_MOB_Nm5 6PSP "
        "PLAF_PERP_V_0 "
        "6PSQ PLAF_PERP_V_A 6PSR PLAF_PERP_V_B 6PSS PLAF_PERP_V_C 6PTP PLAF_PERP_C_0 6PTQ PLAF_PERP_C_A 6PTR "
        "PLAF_PERP_C_B "
        "6PTS PLAF_PERP_C_C 6CB CHARG_GROSSE_REP_N 6HQ CHARG_GROSSE_REP_Nm1 6HP CHARG_GROSSE_REP_Nm2 6HO "
        "CHARG_GROSSE_REP_Nm3 "
        "6HN CHARG_GROSSE_REP_Nm4 6HM CHARG_GROSSE_REP_Nm5 6HL CHARG_GROSSE_REP_Nm6 6HK CHARG_GROSSE_REP_Nm7 "
        "6HJ CHARG_GROSSE_REP_Nm8 7XY DONS_N 7XW DONS_Nm1 7XU DONS_Nm2 7XT DONS_Nm3 7XS DONS_Nm4 7WP PREST_COMP "
        "7UA4 FOREST_TRAV_7UA4_7UA 7UB8 FOREST_TRAV_7UB8_7UB 7UP4 FOREST_TRAV_7UP4_7UP 7UT8 FOREST_TRAV_7UT8_7UT "
        "7CL CAPITAL_NOUV_7CM 7CM CAPITAL_NOUV_7CN 7CN CAPITAL_NOUV_7CC 7CQ CAPITAL_PE_7CR 7CR CAPITAL_PE_7CV "
        "7CV CAPITAL_PE_7CX 7CX CAPITAL_PE_7CF CE17 REV_REF_C 7WHB 7WHA 7WHC 7WHB 7WHD 7WHC 7WJA D_AIDE_PERS_AGEES "
        "7WJB 7WJA 7WJC 7WJB 7WJD 7WJC");
    for (std::string boite, figure; exceptions >> boite >> figure;) autres[boite] = figure;
    for (const Copie& copie : copies) {
        const std::string vers = NomReport(copie.vers), boite = vers.substr(vers.find('_') + 1);
        const std::string de =
            copie.source == Copie::DEntree ? kv::entree::lignes[copie.numero].nom : kv::sortie::noms[copie.numero];
        const std::string fraction =
            "NP" + std::to_string(boite.back() - 'A' + 1) + '_' + boite.substr(0, boite.size() - 1);
        if (autres.contains(boite))
            EXPECT_TRUE(de == autres[boite] || de == "NP1_" + autres[boite]) << vers << ' ' << de;
        else if (copie.source == Copie::DEntree)
            EXPECT_EQ(de, boite);
        else if (kv::NumeroSortie(fraction) >= 0)
            EXPECT_EQ(de, fraction) << vers;
        else
            EXPECT_TRUE(de.ends_with('_' + boite)) << vers << ' ' << de;
    }
}

// Each copied box follows its own figure and no other one.
TEST(Reports, CopiesFollowTheirFigures) {
    CDataCalcul data;
    std::iota(data.Entree.valeurs.begin(), data.Entree.valeurs.end(), 1'000'000);
    std::iota(data.Sortie.valeurs.begin(), data.Sortie.valeurs.end(), 2'000'000);
    for (std::size_t k = 0; k < 3; ++k)
        std::iota(data.Colonne[k].valeurs.begin(), data.Colonne[k].valeurs.end(),
                  3'000'000 + 10'000 * static_cast<int>(k));
    const Donnees saisie(data);
    kv::LanceReports(data, nullptr, -1.0);
    const struct {
        CaseReport vers;
        std::int32_t valeur;
    } attendus[] = {
        {"F11_6PSS", 2'000'000 + CaseSortie("NP1_PLAF_PERP_V_C").numero},
        {"F11_6PTP", 2'000'000 + CaseSortie("NP1_PLAF_PERP_C_0").numero},
        {"F11_2AR", 2'000'000 + CaseSortie("NP1_REV_MOB_ANN").numero},
        {"F11_7XY", 2'000'000 + CaseSortie("NP1_DONS_N").numero},
        {"F11_7WHB", 1'000'000 + CaseEntree("7WHA").numero},
        {"F11_7WJD", 1'000'000 + CaseEntree("7WJC").numero},
        {"F11_7WLB", 1'000'000 + CaseEntree("7WLB").numero},
        {"F11_7WJA", 3'010'000 + CaseSortie("D_AIDE_PERS_AGEES").numero},
    };
    for (const auto& a : attendus) EXPECT_EQ(data.Report[a.vers], a.valeur) << NomReport(a.vers);
    for (const Copie& copie : copies)
        EXPECT_EQ(data.Report[copie.vers] % 1'000'000 % 10'000, copie.numero) << NomReport(copie.vers);
    EXPECT_TRUE(Donnees(data) == saisie);
}

// Deficits of 10, 20, 30... from the most recent year to the oldest one, and what a launch found of them.
TEST(Reports, DeficitBlocks) {
    struct Cas {
        const Categorie& categorie;
        std::vector<std::int32_t> sorties;  // left, the year's own, then what the category reads besides
        std::vector<std::int32_t> reports;  // none: the boxes keep what they held
    };
    for (const Cas& c : {
             Cas{agricole, {120, 0, 210}, {0, 10, 20, 30, 40, 20}},  // part of it left
             {agricole, {45, 0, 210}, {0, 10, 20, 15, 0, 0}},
             {agricole, {190, 40, 210}, {40, 10, 20, 30, 40, 50}},  // the year's own first
             {agricole, {205, 0, 210}, {0, 10, 20, 30, 40, 50}},    // the oldest takes no more than its own year
             {agricole, {220, 9, 215}, {9, 10, 20, 30, 40, 50}},    // more than before: all move a year
             {agricole, {210, 9, 210}, {0, 10, 20, 30, 40, 50}},  // no more than before: the year's own does not count
             {agricole, {0, 0, 210}, {}},
             {commercial, {120, 0}, {0, 10, 20, 30, 40, 20}},
             {commercial, {160, 40}, {40, 10, 20, 30, 40, 20}},
             {commercial, {210, 9}, {0, 10, 20, 30, 40, 50}},
             {commercial, {350, 200}, {200, 10, 20, 30, 40, 50}},
             {commercial, {0, 9}, {}},
             {meubles, {450, 0}, {0, 10, 20, 30, 40, 50, 60, 70, 80, 90}},  // the oldest year takes what is left
             {meubles, {220, 70}, {70, 10, 20, 30, 40, 50, 0, 0, 0, 0}},
             {meubles, {650, 200}, {200, 10, 20, 30, 40, 50, 60, 70, 80, 90}},
             {meubles, {0, 9}, {}},
             {nonCommercial, {0, 0, 0, 60}, {0, 0, 0, 0, 0, 0}},  // all lapsed
             {nonCommercial, {75, 0, 135}, {0, 10, 20, 30, 15, 0}},
             {nonCommercial, {170, 20, 0, 60}, {20, 10, 20, 30, 40, 50}},
             {nonCommercial, {0, 9}, {}},
             {global, {130, 0, 80, 0}, {0, 10, 20, 30, 40, 30}},  // 80 used: 60, and 20 of 50
             {global, {150, 0, 15, 45}, {0, 10, 20, 30, 40, 50}},
             {global, {150, 0, 0, 80}, {0, 10, 20, 30, 40, 30}},
             {global, {150, 0, 150, 60}, {0, 10, 20, 30, 40, 0}},  // nothing of the two oldest years
             {global, {250, 100}, {100, 10, 20, 30, 40, 50}},
             {global, {0, 9}, {}},
         }) {
        const Categorie& categorie = c.categorie;
        CDataCalcul data;
        data.Report.valeurs.fill(-7);
        for (std::size_t i = 0; i < categorie.codes.size(); ++i)
            data.Entree[categorie.Box(i)] = 10 * (static_cast<std::int32_t>(i) + 1);
        for (std::size_t i = 0; i < c.sorties.size(); ++i) data.Sortie[categorie.sorties[i]] = c.sorties[i];
        kv::LanceReports(data, nullptr, -1.0);
        std::vector<std::int32_t> reports;
        for (std::size_t i = 0; i < categorie.codes.size(); ++i) reports.push_back(data.Report[categorie.Report(i)]);
        EXPECT_EQ(reports, c.reports.empty() ? std::vector(categorie.codes.size(), -7) : c.reports)
            << categorie.codes[0] << ": " << c.sorties[0];
    }
}

// Six years of a category, good and bad, each return taking over the boxes of the one before: what is carried is what
// was brought in and the year's own, less what the income took and what lapsed.
TEST(Reports, DeficitsAreConservedFromYearToYear) {
    struct Source {
        const Categorie& categorie;
        const char *benefice, *deficit, *foyer;  // boxes of a good and of a bad year, and what else the return holds
    };
    Hasard hasard(11);
    for (const Source& s : {
             Source{agricole,
                    "5HC=", "5HF=", " 1AJ=200000"},  // beyond 108904 of other income the deficit is kept apart
             {commercial, "5NC=", "5NF=", ""},
             {meubles, "5NA=", "5NY=", ""},
             {nonCommercial, "5JG=", "5JJ=", ""},
             {global, "6GH=", "4BC=", ""},
             {mobilier, "2TR=", "2CA=", ""},
         }) {
        for (int suite = 0; suite < 6; ++suite) {
            const std::size_t annees = s.categorie.codes.size();
            std::vector<std::int32_t> boxes(annees);
            for (std::int32_t& v : boxes) v = hasard.UneFoisSur(3) ? 0 : hasard.Entre(0, 8000);
            for (int an = 0; an < 6; ++an) {
                const std::int32_t resultat = hasard.Entre(-5000, 7000);
                const std::string texte =
                    (resultat < 0 ? s.deficit : s.benefice) + std::to_string(std::abs(resultat)) + s.foyer;
                kv::Return r = Foyer(texte);
                for (std::size_t i = 0; i < annees; ++i) r.set(s.categorie.Box(i).numero, boxes[i]);
                r.compute();

                const std::int32_t apportes = std::accumulate(boxes.begin(), boxes.end(), 0);
                const std::int32_t impute = std::clamp(resultat, 0, apportes);
                const std::int32_t perdu = nPositif(boxes.back() - impute);
                for (std::size_t i = 0; i < annees; ++i) boxes[i] = r.carry(s.categorie.Report(i).numero);
                const std::int32_t reportes = std::accumulate(boxes.begin(), boxes.end(), 0);
                EXPECT_EQ(impute + reportes + perdu, apportes + nPositif(-resultat)) << texte << ", year " << an;
                for (const std::int32_t v : boxes) EXPECT_GE(v, 0) << texte;
            }
        }
    }
}

}  // namespace
