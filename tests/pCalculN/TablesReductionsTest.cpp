#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <sstream>
#include <string_view>

#include "Calcul/cCalcul/Catalogues.h"
#include "Calcul/pCalculN/OutreMerTable.h"
#include "Calcul/pCalculN/ReductionsTable.h"
#include "interface/LignesReductions.h"

// What must hold of the reduction tables as a whole.

namespace {

namespace r = kv::reductions;
namespace om = kv::outremer;

std::string Nom(CaseSortie c) { return kv::sortie::noms[c.numero]; }
std::string Nom(CaseEntree c) { return kv::entree::lignes[c.numero].nom; }

template <class... Tables>
void Chaque(const auto& fait, const Tables&... tables) {
    (std::for_each(std::begin(tables), std::end(tables), fait), ...);
}

// The table rows, whatever their kind, as what imputes on the tax.
struct Rangee {
    CaseSortie sortie;
    CaseEntree entree;  // none where the base is computed
    kv::Niche niche;
};
std::vector<Rangee> Rangees() {
    std::vector<Rangee> rangees;
    r::TousLesGroupes([&](const auto& groupe) {
        for (const auto& ligne : groupe) {
            if constexpr (requires { ligne.ligne; })
                rangees.push_back({ligne.ligne.sortie, ligne.ligne.entree, ligne.ligne.niche});
            else if constexpr (requires { ligne.college; })
                rangees.push_back({ligne.sortie, ligne.college, ligne.niche});
            else
                rangees.push_back({ligne.sortie, ligne.entree, ligne.niche});
        }
    });
    return rangees;
}

std::set<std::string> SortiesDe(std::string_view debut) {
    std::set<std::string> noms;
    for (const char* nom : kv::sortie::noms)
        if (std::string_view(nom).starts_with(debut)) noms.insert(nom);
    return noms;
}
std::set<std::string> Sauf(std::set<std::string> noms, const std::set<std::string>& sauf) {
    for (const auto& nom : sauf) EXPECT_EQ(noms.erase(nom), 1u) << nom;
    return noms;
}

TEST(TablesReductions, EachOutputIsReachedByOneRowFromTheBoxOfItsName) {
    std::set<std::string> sorties, entrees;
    for (const Rangee& rangee : Rangees()) {
        EXPECT_TRUE(sorties.insert(Nom(rangee.sortie)).second) << Nom(rangee.sortie);
        if (Nom(rangee.sortie) == "U_ETR_REV_TK") continue;  // of computed figures
        ASSERT_TRUE(rangee.entree) << Nom(rangee.sortie);
        EXPECT_TRUE(entrees.insert(Nom(rangee.entree)).second) << Nom(rangee.entree);
        for (const std::string debut : {"U_REDUC_", "U_DT_"})
            if (Nom(rangee.sortie).starts_with(debut)) {
                const std::string code = Nom(rangee.sortie).substr(debut.size());
                EXPECT_EQ(Nom(rangee.entree), code.substr(0, 3)) << Nom(rangee.sortie);
            }
    }
}

TEST(TablesReductions, EveryReductionOfTheCatalogueHasItsRow) {
    std::set<std::string> ecrites;
    for (const Rangee& rangee : Rangees()) ecrites.insert(Nom(rangee.sortie));
    for (const auto& l : om::lignesRetrocedees)
        for (const CaseSortie c : {l.nonRetrocede, l.retrocede, l.excedent})
            EXPECT_TRUE(ecrites.insert(Nom(c)).second) << Nom(c);
    Chaque([&](const auto& l) { EXPECT_TRUE(ecrites.insert(Nom(l.excedent)).second) << Nom(l.excedent); },
           om::lignesLimitees, om::lignesLimiteesAuForfait);

    // Lapsed schemes keep their outputs; nothing is declared for them any more.
    std::set<std::string> lapsed;
    const auto codes = [&](const std::string& debut, const std::string& liste, const std::string& fin = "") {
        std::istringstream texte(liste);
        for (std::string code; texte >> code;) lapsed.insert(debut + code + fin);
    };
    codes("U_REDUC_",
          "7RF 7RE 7IU 7IN 7IF 7IV 7IG 7IT 7IW 7IM 7IL 7IE 7JU 7NL 7JL 7HK 7HO 7NB 7JB 7NG 7JG 7HJ 7HN 7GW 7GX 7GV 7NQ "
          "7JP 7LB 7LE 7LM 7LN 7LG 7LK 7LQ 7LC 7LD 7LS 7LT 7LH 7LL 7DF 7DD 7BX 7BY");
    codes("U_DT_", "HQK HQN HQU HQO HQF HPI HPA HPE HQP HQG HPJ HPB HPF HQE HQV HPL HPD HPH HQR HQI");
    codes("U_PR_", "HPA HPB HPD HPE HPF HPH HPI HPJ HPL HQF HQG HQI HQK HQN HQO HQP HQR HQU");
    for (const char* fin : {"_NR", "_R"}) codes("U_PR_", "HPA HPB HPE HPF HPI HPJ HQF HQG HQK HQN HQO HQP HQU", fin);

    std::set<std::string> attendues;
    for (const char* debut : {"U_REDUC_", "U_DT_", "U_PR_"}) attendues.merge(SortiesDe(debut));
    attendues = Sauf(attendues, lapsed);
    for (const std::string& nom : attendues) EXPECT_TRUE(ecrites.contains(nom)) << nom << " is reached by no row";
    for (const std::string& nom : lapsed) EXPECT_FALSE(ecrites.contains(nom)) << nom;
}

TEST(TablesReductions, OverseasRowsAgreeWithOneAnother) {
    EXPECT_EQ(std::size(om::lignesSimples), 60u);
    EXPECT_EQ(std::size(om::lignesReportees), 149u);
    EXPECT_EQ(std::size(om::lignesRemboursables), 11u);
    EXPECT_EQ(std::size(om::lignesRetrocedees), 87u);
    EXPECT_EQ(std::size(om::lignesLimitees), 82u);
    EXPECT_EQ(std::size(om::lignesLimiteesAuForfait), 30u);

    // What is given back comes off the year group that the reduction was counted in.
    std::map<int, kv::Niche> niches;
    Chaque([&](const auto& l) { niches[l.sortie.numero] = l.niche; }, om::lignesSimples, om::lignesReportees);
    Chaque(
        [&](const auto& l) {
            const auto reduction = niches.find(l.reduction.numero);
            ASSERT_NE(reduction, niches.end()) << Nom(l.reduction);
            EXPECT_EQ(l.niche, reduction->second) << Nom(l.reduction);
            EXPECT_EQ(Nom(l.excedent).substr(5), Nom(l.reduction).substr(5));
            niches.erase(reduction);  // each reduction is limited once
        },
        om::lignesRetrocedees, om::lignesLimitees, om::lignesLimiteesAuForfait);
    // Only what lies outside the cap is not limited.
    for (const auto& [numero, niche] : niches)
        EXPECT_EQ(niche, kv::Niche::HorsPlafond) << Nom(CaseSortie::Numero(numero));

    const kv::Loi& loi = kv::loi2017;
    for (const auto& l : om::lignesRetrocedees) {
        // The share kept and the share retroceded make the whole reduction: rate x (1 + b / a) = 100 %, and the limit
        // of what is retroceded is the room of the investor x b / a. Five lines keep the limit of the lower rate, 3/5.
        static const std::set<std::string> limite35 = {"HPX", "HRK", "HRP", "HRU", "HNU"};
        const om::Partage& p = om::partages[l.classe];
        const double pourUn = loi.Nombre(p.retrocedee) / loi.Nombre(p.conservee);
        EXPECT_NEAR(loi[p.taux] * (1 + pourUn), 10000, 1) << Nom(l.reduction);
        const double fraction = limite35.contains(Nom(l.reduction).substr(5)) ? 5.0 / 3 : pourUn;
        const double salle = loi[om::enveloppes[l.enveloppe - 1].plafond];
        EXPECT_NEAR(loi[om::partages[l.limite].plafond], salle * fraction, 1) << Nom(l.reduction);
    }
    // Rooms without retrocession: 7.5 times the room of the investor.
    for (const om::Enveloppe& e : om::enveloppes) EXPECT_EQ(2 * loi[e.sansRetrocession], 15 * loi[e.plafond]);
}

TEST(TablesReductions, APartialResetLeavesTheRetrocededOutputsAlone) {
    std::set<std::string> gardees, retrocedees;
    for (std::size_t j = 0; j < kv::nSorties; ++j)
        if (std::string_view(kv::sortie::noms[j]).starts_with("U_") && !TableSortie[j].bRazPartielle)
            gardees.insert(kv::sortie::noms[j]);
    for (const auto& l : om::lignesRetrocedees) retrocedees.insert({Nom(l.retrocede), Nom(l.reduction)});
    // The lapsed retroceded investments too.
    for (const char* code : {"HPA", "HPB", "HPE", "HPF", "HPI", "HPJ", "HQF", "HQG", "HQK", "HQN", "HQO", "HQP", "HQU"})
        retrocedees.insert({std::string("U_PR_") + code + "_R", std::string("U_DT_") + code});
    EXPECT_EQ(gardees, retrocedees);
    EXPECT_EQ(gardees.size(), 200u);
}

TEST(TablesReductions, LaterFractionsRunToTheEndOfTheLine) {
    // Years after 2017 in which a fraction can still be deducted.
    const std::vector<std::pair<const char*, int>> suites = {
        {"7HF 7HD 7HA 7IC 7IB 7IA 7YZ 7YY 7YX 7AI 7CI", 2},
        {"7GU 7GS 7GL 7GJ 7WZ 7WY 7WX 7JY 7JX 7JW 7JV 7BZ 7DZ", 3},
        {"7YH 7YF 7YD 7YB 7OE 7OD 7OC 7OB 7OA 7FI 7QZ 7SZ", 4},
        {"7YP 7YO 7YN 7YM 7OJ 7OI 7OH 7OG 7OF 7FK 7BI 7DI", 5},
        {"7YW 7YV 7YU 7YT 7OO 7ON 7OM 7OL 7OK 7FR 7CZ 7EZ", 6},
        {"7WW 7WV 7WU 7WT 7OT 7OS 7OR 7OQ 7OP 7FV 7RZ 7TZ", 7},
        {"7UY 7UZ 7YS 7YR 7YQ 7ZM 7ZN 7HU 7HT 7HZ 7HX 7HW 7HV 7IR 7IQ 7IP", 1},
        {"7YL 7YK 7YJ 7HS 7HR 7IK", 0},
    };
    std::map<std::string, int> attendues;
    for (const auto& [codes, nombre] : suites) {
        std::istringstream texte(codes);
        for (std::string code; texte >> code;) attendues[code] = nombre;
    }
    const auto verifie = [&](const auto& l) {
        const std::string code = Nom(l.entree);
        const auto attendue = attendues.find(code);
        int nombre = 0;
        for (const auto& copie : l.suivantes.copies) {
            if (!copie.vers) break;
            EXPECT_EQ(Nom(copie.de), code + static_cast<char>('A' + nombre));
            EXPECT_EQ(Nom(copie.vers), "NP" + std::to_string(++nombre) + "_" + code);
        }
        EXPECT_EQ(nombre, attendue == attendues.end() ? 0 : attendue->second) << code;
        if (attendue != attendues.end()) attendues.erase(attendue);
    };
    r::TousLesGroupes([&](const auto& groupe) {
        for (const auto& ligne : groupe)
            if constexpr (requires { ligne.suivantes; }) verifie(ligne);
    });
    EXPECT_TRUE(attendues.empty()) << attendues.begin()->first;
}

TEST(TablesReductions, YearlyAmountsStandInConsecutiveBoxes) {
    Chaque(
        [](const r::LigneEtalee& l) {
            // A line begun in 2017 ends in the year before its last anniversary; older ones end sooner.
            EXPECT_LE(l.fin, 2016 + l.annees) << Nom(l.entree);
            EXPECT_GE(l.fin, 2017) << Nom(l.entree);
            if (!l.premiere) return;
            const std::string premiere = Nom(l.premiere);
            ASSERT_TRUE(premiere.starts_with("NP1_")) << premiere;
            for (int i = 0; i < l.fin - 2017; ++i)
                EXPECT_EQ(Nom(l.premiere + i), "NP" + std::to_string(i + 1) + premiere.substr(3));
        },
        r::investissementsDeLAnnee, r::locatifAncien, r::locatifRecent, r::meuble2010, r::meubleRecent);
    // The first row of a table has a ceiling of its own, but for the investments of 2010, which take what 7IR left of
    // its.
    for (const auto* premiere :
         {&r::investissementsDeLAnnee[0], &r::locatifAncien[0], &r::locatifRecent[0], &r::meubleRecent[0]})
        EXPECT_EQ(premiere->enveloppe, r::Enveloppe::Neuve) << Nom(premiere->entree);
    EXPECT_EQ(r::meuble2010[0].enveloppe, r::Enveloppe::Ligne7IR);
    const auto& ligne7IR = std::end(r::locatifAncien)[-1];
    EXPECT_EQ(Nom(ligne7IR.entree), "7IR");
    EXPECT_EQ(ligne7IR.enveloppe, r::Enveloppe::Neuve);
}

TEST(TablesReductions, TheListingShowsEveryRowOnce) {
    std::multiset<std::string> sorties;
    for (const kv::LigneReduction& ligne : kv::LignesReductions()) sorties.insert(Nom(ligne.sortie));
    EXPECT_EQ(sorties.size(), Rangees().size() + 87 + 82 + 30 + 11);
    for (const Rangee& rangee : Rangees()) EXPECT_EQ(sorties.count(Nom(rangee.sortie)), 1u) << Nom(rangee.sortie);
}

}  // namespace
