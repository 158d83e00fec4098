#include "support/KVTarvel.h"
#include "tests/Hasard.h"
#include "tests/Notation.h"

namespace {

// The order in which lines share a ceiling, and the rate of each.
TEST(Credits, LinesUnderOneCeiling) {
    struct Famille {
        std::string prefixe;
        std::int32_t plafond;
        std::vector<std::pair<std::string, std::int32_t>> lignes;
    };
    Famille energie = {"D_CR_", 8000, {}}, forets = {"D_CREDIT_", 6250, {}};
    for (const std::string_view code :
         test::Mots("7CB 7AD 7AF 7AH 7AK 7AL 7AM 7AN 7AQ 7AR 7AV 7AX 7AY 7AZ 7BB 7BC 7BD 7BE 7BF 7BH 7BK 7BL"))
        energie.lignes.emplace_back(code, 30);
    const std::string_view a18 = "7UX 7TJ 7VM 7TM 7VQ 7TP 7UP 7UT";
    for (const std::string_view code : test::Mots("7VP 7TK 7UX 7TJ 7VN 7TO 7VM 7TM 7VR 7TQ 7VQ 7TP 7UA 7UB 7UP 7UT"))
        forets.lignes.emplace_back(code, a18.find(code) != a18.npos ? 18 : 25);
    for (const Famille& f : {energie, forets}) {
        for (std::size_t i = 0; i < f.lignes.size(); ++i) {
            const auto& [code, taux] = f.lignes[i];
            EXPECT_EQ(Foyer(code + "=1000").compute()[f.prefixe + code], 10 * taux) << code;
            if (i == 0) continue;
            const std::string& avant = f.lignes[i - 1].first;
            const auto r = Foyer(code + "=1000").set(avant, f.plafond - 100).compute();
            EXPECT_EQ(r[f.prefixe + code], taux) << code << " after " << avant;
            // The run without advantages keeps the forest credits: they are no advantage of the global cap.
            EXPECT_EQ(r["NICHE_A5"], taux == 30 ? r["D_CREDIT"] : 0) << code;
        }
    }
}

TEST(Credits, ImputedAndCopiedCreditsAtRandom) {
    static constexpr struct {
        const char *credit, *boxes;
        std::int32_t taux;
        bool limitePropre = false;
    } imputes[] = {
        {"D_AVOIR_FISC", "2AB", 100},         {"D_SOURCE_ETR", "8TAB", 100},
        {"D_PREVENTION", "8TE", 100},         {"D_IMPOT_ETR", "8VL 8VM 8WM 8UM", 100},
        {"D_MECENAT", "7US", 100, true},      {"D_ACQ_BIENS_CULTURELS", "7UO", 40, true},
        {"D_CREDIT_8TC", "8TC", 100},         {"D_INVEST_CORSE", "8TG 8TO", 100, true},
        {"D_CREDIT_COMP_EMPLOI", "8UW", 100},
    };
    static constexpr struct {
        const char *credit, *box;
    } copies[] = {
        {"D_DIRECT_EPARGNE", "2BG"},        {"D_PRELEV_FORFAIT", "2CK"},           {"D_RECHERCHE_RESTITUTION", "8TB"},
        {"D_COMP_EMPL_RESTITUTION", "8TL"}, {"D_INVEST_CORSE_RESTITUTION", "8TS"}, {"D_CREDIT_HJA", "HJA"},
        {"D_CREDIT_FAMILLE", "8UZ"},        {"D_CREDIT_APPRENTIS", "8TZ"},         {"D_CREDIT_AGRI_BIO", "8WA"},
        {"D_CREDIT_PROSPEC", "8WB"},        {"D_CREDIT_PRETS_SS_INT", "8WC"},      {"D_CREDIT_FORM_ENTR", "8WD"},
        {"D_CREDIT_INTERESSEMENT", "8WE"},  {"D_CREDIT_METIER_ART", "8WR"},        {"D_CREDIT_CONGES_AGRI", "8WT"},
        {"D_HOTEL_CAFE_RESTAU", "8WU"},     {"D_CREDIT_AUTO_ENTR", "8UY"},
    };
    Hasard hasard(42);
    const auto montant = [&](std::int32_t max) { return hasard.UneFoisSur(3) ? hasard.Entre(0, max) : 0; };
    for (int essai = 0; essai < 60; ++essai) {
        kv::Return r;
        r.set("1AJ", 15000 + montant(60000)).set("8TF", montant(2000)).set("8TP", montant(2000));
        for (const auto& credit : imputes)
            for (const std::string_view box : test::Mots(credit.boxes)) r.set(std::string(box), montant(3000));
        for (const auto& copie : copies) r.set(copie.box, montant(500));
        r.compute();

        std::int32_t declares = 0, retenus = 0, copiesEnsemble = 0;
        bool unCoupe = false;
        for (const auto& credit : imputes) {
            std::int32_t declare = 0;
            for (const std::string_view box : test::Mots(credit.boxes)) declare += r.get(std::string(box));
            declare = nPourcent(declare, credit.taux);
            EXPECT_GE(r[credit.credit], 0);
            EXPECT_LE(r[credit.credit], declare);
            unCoupe = unCoupe || (!credit.limitePropre && r[credit.credit] < declare);
            declares += declare;
            retenus += r[credit.credit];
        }
        for (const auto& copie : copies) {
            EXPECT_EQ(r[copie.credit], r.get(copie.box));
            copiesEnsemble += r.get(copie.box);
        }
        const std::int32_t impot = r["TOT_IMP_COR"];
        EXPECT_LE(retenus, impot);
        EXPECT_TRUE(!unCoupe || retenus == impot) << retenus;  // a credit is cut only where no tax is left
        const std::int32_t rendu = r.get("8TF") + r.get("8TP");
        EXPECT_LE(r["D_ACQ_BIENS_CULTURELS"], nPositif(impot - rendu));
        EXPECT_LE(r["D_MECENAT"], nPositif(impot - rendu));
        EXPECT_LE(r["D_INVEST_CORSE"], nPositif(impot - r.get("8TP")));
        EXPECT_EQ(r["D_CREDIT_TOT.c1"], declares);
        EXPECT_EQ(r["D_CREDIT_TOT.c2"], retenus);
        EXPECT_EQ(r["D_CREDIT"], retenus + copiesEnsemble);
    }
}

}  // namespace
