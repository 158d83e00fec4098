#include "Calcul/cCalcul/Catalogues.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "support/KVTarvel.h"

namespace {

template <class Table>
void VerifieNoms(const Table& table, int (*numero)(std::string_view)) {
    std::set<std::u16string> noms;
    for (std::size_t i = 0; i < table.size(); ++i) {
        EXPECT_EQ(table[i].Index, i);
        EXPECT_TRUE(noms.insert(table[i].Nom).second) << kv::VersUtf8(table[i].Nom);
        EXPECT_EQ(numero(kv::VersUtf8(table[i].Nom)), static_cast<int>(i));
    }
}

TEST(Catalogues, EachNameStandsOnceAndIsFound) {
    VerifieNoms(TableEntree, kv::NumeroEntree);
    VerifieNoms(TableSortie, kv::NumeroSortie);
    VerifieNoms(TableReport, kv::NumeroReport);
    EXPECT_EQ(kv::NumeroEntree("1aj"), -1);  // exactly the name
    EXPECT_EQ(kv::NumeroEntree("1AJ "), -1);
    EXPECT_EQ(kv::NumeroEntree(""), -1);
    EXPECT_EQ(kv::NumeroEntree(u"1AJ"), 1902);
}

TEST(Catalogues, KnownBoxes) {
    const std::pair<const char*, int> cas[] = {{"0IF", 0},    {"0VA", 1},  {"1AJ", 1902},
                                               {"1BJ", 1903}, {"M", 1569}, {"P", 2127}};
    for (const auto& [nom, numero] : cas) EXPECT_EQ(kv::NumeroEntree(nom), numero) << nom;
    EXPECT_EQ(kv::NumeroSortie("SAUT_BLOC_REPORTS"), 0);
    EXPECT_EQ(kv::NumeroSortie("NP1_PLAF_PERP_V"), 1070);
    EXPECT_EQ(kv::NumeroReport("F11_2AA"), 0);
    EXPECT_EQ(kv::CaseQuotient("5HC").numero, 0);
    EXPECT_EQ(kv::CaseQuotient("1AJ").numero, 81);
    EXPECT_EQ(kv::CaseQuotient("1FJ").numero, 86);
    EXPECT_EQ(TableEntree[0].nQuotient, -1);
}

TEST(Catalogues, SlotsAreTakenOnceInEachArea) {
    const auto prises = [](std::int32_t CaseEntreeDef::*champ) {
        std::set<std::int32_t> slots;
        for (const CaseEntreeDef& f : TableEntree)
            EXPECT_TRUE(f.*champ == -1 || slots.insert(f.*champ).second) << f.Index;
        EXPECT_EQ(*slots.begin(), 0);
        EXPECT_EQ(*slots.rbegin(), static_cast<std::int32_t>(slots.size()) - 1);
        return slots.size();
    };
    using C = CaseEntreeDef;
    EXPECT_EQ((std::vector{prises(&C::nQuotient), prises(&C::nTI), prises(&C::nTIX), prises(&C::nTIY), prises(&C::nTK),
                           prises(&C::nTKZ)}),
              (std::vector<std::size_t>{87, 115, 81, 81, 77, 77}));
}

TEST(Catalogues, RecordsOfEntryBoxesHoldTogether) {
    int autoEntr = 0, prospection = 0, negatifs = 0, sauves = 0, sansIndice = 0, sansDrapeau = 0;
    std::map<std::uint32_t, int> parPersonne;
    for (const CaseEntreeDef& f : TableEntree) {
        const std::string nom = kv::VersUtf8(f.Nom);
        EXPECT_EQ(f.nTIX, f.nTIY) << nom;
        EXPECT_EQ(f.nTK, f.nTKZ) << nom;
        EXPECT_EQ(f.nDouble, -1) << nom;
        EXPECT_TRUE(f.nTI >= 0 || (f.nTIX < 0 && !f.bNegatifTI)) << nom;
        EXPECT_TRUE(f.nTK < 0 || f.bSauveTK) << nom;  // or its amount would outlive the transfer
        EXPECT_EQ(f.CaseLiee >= 0, f.bAutoEntr + f.bProspection == 1) << nom;
        if (f.CaseLiee >= 0) {
            EXPECT_TRUE(f.bSauveTK) << nom;
            EXPECT_EQ(f.nTI, -1) << nom;
            EXPECT_EQ(TableEntree[static_cast<std::size_t>(f.CaseLiee)].Type, f.Type) << nom;
        }
        autoEntr += f.bAutoEntr, prospection += f.bProspection, negatifs += f.bNegatifTI, sauves += f.bSauveTK;
        sansDrapeau += !(f.bAutoEntr || f.bProspection || f.bNegatifTI || f.bSauveTK);
        sansIndice += f.nQuotient < 0 && f.nTI < 0 && f.nTIX < 0 && f.nTK < 0;
        ++parPersonne[f.Type];
    }
    EXPECT_EQ((std::vector{autoEntr, prospection, negatifs, sauves, sansIndice, sansDrapeau}),
              (std::vector{9, 6, 70, 562, 1894, 1566}));
    const std::map<std::uint32_t, int> personnes = {{1, 210}, {2, 210}, {3, 32}, {4, 32}, {5, 32},   {6, 32},   {7, 7},
                                                    {8, 7},   {9, 7},   {10, 7}, {11, 7}, {12, 174}, {14, 1371}};
    EXPECT_EQ(parPersonne, personnes);

    const auto liee = [](std::string_view nom) {
        return TableEntree[static_cast<std::size_t>(kv::NumeroEntree(nom))].CaseLiee;
    };
    EXPECT_EQ(liee("5TB"), kv::NumeroEntree("5KP"));
    EXPECT_EQ(liee("5VI"), kv::NumeroEntree("5SI"));
}

TEST(Catalogues, FamiliesOfOutputs) {
    const std::map<std::string, int> attendues = {
        {"U_", 971},    {"NP1_", 357}, {"NP2_", 90},   {"NP3_", 76},   {"NP4_", 63}, {"NP5_", 48},
        {"NP6_", 34},   {"NP7_", 22},  {"NP8_", 10},   {"D_", 95},     {"RR_", 71},  {"S_", 51},
        {"RD_", 36},    {"RF_", 33},   {"NICHE_", 28}, {"IMPOT_", 25}, {"CRE_", 23}, {"ISF_", 22},
        {"CO_", 21},    {"I_", 19},    {"REV_", 18},   {"TOT_", 15},   {"C_", 15},   {"SEPAR_", 14},
        {"GRAPH_", 13}, {"RN_", 10},   {"RE_", 10},    {"RQ_", 9},     {"TAUX_", 7}, {"INFO_", 7},
        {"I2_", 6},     {"F_", 5},     {"SAUT_", 4},   {"CONT_", 4},   {"PL_", 3},   {"REPORT_", 3}};
    std::map<std::string, int> familles;
    int autres = 0, razPartielle = 0;
    for (const CaseSortieDef& f : TableSortie) {
        const std::string nom = kv::VersUtf8(f.Nom), famille = nom.substr(0, nom.find('_') + 1);
        attendues.contains(famille) ? ++familles[famille] : ++autres;
        razPartielle += f.bRazPartielle;
        EXPECT_TRUE(!f.bRazPartielle || famille == "D_" || famille == "U_") << nom;
    }
    EXPECT_EQ(familles, attendues);
    EXPECT_EQ(autres, 50);
    EXPECT_EQ(razPartielle, 866);  // 95 credits and 971 reductions but 200 retroceded ones
    for (const CaseReportDef& f : TableReport) EXPECT_TRUE(kv::VersUtf8(f.Nom).starts_with("F11_"));
}

}  // namespace
