#include <algorithm>
#include <numeric>
#include <string_view>

#include "Calcul/pCalculN/Imputation.h"
#include "Calcul/pCalculN/OutreMerTable.h"
#include "tests/HasardReductions.h"

// What holds of the reductions whatever the return.

namespace {

using kv::Imputation;
using kv::Niche;
using test::HasardReductions;

constexpr int nRetours = 150;
// Output boxes to draw lines from: none of them stands for a total.
CaseSortie Ligne(std::size_t i) { return CaseSortie::De("U_DT_", "HQJ") + static_cast<int>(i); }

std::int32_t Somme(const Resultat& r, std::initializer_list<std::string_view> debuts) {
    std::int32_t somme = 0;
    for (int j = 0; j < kv::nSorties; ++j) {
        const std::string_view nom = kv::sortie::noms[j];
        if (std::any_of(debuts.begin(), debuts.end(), [&](std::string_view d) { return nom.starts_with(d); }) &&
            !nom.starts_with("U_DECOTE"))
            somme += r[CaseSortie::Numero(j)];
    }
    return somme;
}

TEST(ProprietesImputation, TheRemainingTaxAndTheYearGroupsBalance) {
    HasardReductions hasard(20170401);
    for (int n = 0; n < 200; ++n) {
        CDataCalcul data;
        Imputation imputation(data);
        const std::int32_t depart = hasard.Montant(100000);
        imputation.FixeReste(depart);
        Imputation::Totaux attendus{};
        std::int32_t horsGroupes = 0;
        for (std::size_t i = 0; i < 30; ++i) {
            const auto niche = static_cast<Niche>(hasard.Entre(0, 7));
            const std::int32_t base = hasard.Montant(40000), avant = imputation.Reste();
            const CaseSortie ligne = Ligne(i);
            switch (hasard.Entre(0, 3)) {
                case 0:
                    imputation.Impute(niche, ligne, base);
                    EXPECT_EQ(data.Sortie[ligne], std::min(base, avant));
                    break;
                case 1:
                    EXPECT_EQ(imputation.Taux(niche, ligne, 25, base, 10000), base > 0);
                    EXPECT_EQ(data.Colonne[1][ligne], std::min(base, 10000));
                    break;
                case 2: {
                    const CaseSortie report = "NP1_DT_HRA";
                    data.Sortie[report] = 0;
                    imputation.Entiere(niche, ligne, report, base);
                    EXPECT_EQ(data.Sortie[ligne] + data.Sortie[report], base);
                    break;
                }
                default: {
                    const CaseSortie report = "NP1_REPORT_7R7";
                    const std::int32_t dejaReporte = data.Sortie[report], dejaSuivante = data.Sortie["NP1_7S12"];
                    imputation.Etalee(niche, ligne, 40, base, 30000, 5, "NP1_7S12", 4, report);
                    const std::int32_t annuite = data.Sortie["NP1_7S12"] - dejaSuivante;
                    EXPECT_EQ(annuite, nPourcent(nArrondi(std::min(base, 30000) / 5.0), 40));
                    EXPECT_EQ(data.Sortie[ligne] + data.Sortie[report] - dejaReporte, annuite);
                    EXPECT_EQ(data.Sortie["NP4_7S12"], data.Sortie["NP1_7S12"]);
                }
            }
            EXPECT_GE(imputation.Reste(), 0);
            EXPECT_EQ(avant - imputation.Reste(), data.Sortie[ligne]);
            if (niche == Niche::HorsPlafond || niche == Niche::ToujoursActive)
                horsGroupes += data.Sortie[ligne];
            else
                attendus[static_cast<std::size_t>(niche) - 1] += data.Sortie[ligne];
        }
        EXPECT_EQ(imputation.LisTotaux(), attendus);
        EXPECT_EQ(depart - imputation.Reste(), std::accumulate(attendus.begin(), attendus.end(), horsGroupes));
    }
}

TEST(ProprietesImputation, GivingBackUndoesAnImputation) {
    HasardReductions hasard(20170402);
    for (int n = 0; n < 100; ++n) {
        CDataCalcul data;
        Imputation imputation(data);
        const auto niche = static_cast<Niche>(hasard.Entre(0, 7));
        const std::int32_t depart = hasard.Montant(100000), credit = hasard.Montant(5000);
        imputation.FixeReste(depart);
        imputation.Note(niche, "D_ENFANTS_CESU", credit);
        const Imputation::Totaux totaux = imputation.LisTotaux();
        EXPECT_EQ(imputation.Reste(), depart);  // a credit takes nothing from the tax, but counts
        EXPECT_EQ(std::accumulate(totaux.begin(), totaux.end(), 0),
                  niche == Niche::HorsPlafond || niche == Niche::ToujoursActive ? 0 : credit);
        imputation.Impute(niche, Ligne(0), hasard.Montant(200000));
        imputation.Rend(niche, Ligne(1), data.Sortie[Ligne(0)]);
        EXPECT_EQ(imputation.Reste(), depart);
        EXPECT_EQ(imputation.LisTotaux(), totaux);
    }
}

TEST(ProprietesImputation, WithoutAdvantagesOnlyWhatLiesOutsideTheCapIsImputed) {
    for (int n = 0; n < 8; ++n) {
        const auto niche = static_cast<Niche>(n);
        const bool hors = niche == Niche::HorsPlafond || niche == Niche::ToujoursActive;
        CDataCalcul data;
        Imputation imputation(data);
        imputation.SansAvantages(true);
        imputation.FixeReste(1000);
        imputation.Impute(niche, Ligne(0), 100);
        EXPECT_EQ(imputation.Taux(niche, Ligne(1), 50, 200), hors);
        EXPECT_EQ(imputation.Fraction(niche, Ligne(2), "NP1_REPORT_7R5", 100), hors);
        EXPECT_EQ(imputation.Etalee(niche, Ligne(3), 10, 9000, 9000, 9, "NP1_7S12", 4, {}), hors);
        EXPECT_EQ(imputation.Reste(), hors ? 600 : 1000);
        EXPECT_EQ(data.Colonne[0][Ligne(1)], hors ? 200 : 0);
        EXPECT_EQ(data.Sortie["NP1_7S12"], hors ? 100 : 0);
        // A full line still shows what could have been imputed, and carries nothing.
        imputation.Entiere(niche, Ligne(4), "NP1_DT_HRA", 5000);
        EXPECT_EQ(data.Sortie[Ligne(4)], hors ? 600 : 1000);
        EXPECT_EQ(data.Colonne[1][Ligne(4)], 5000);
        EXPECT_EQ(data.Sortie["NP1_DT_HRA"], hors ? 4400 : 0);
        EXPECT_EQ(imputation.LisTotaux(), Imputation::Totaux{});
    }
}

TEST(ProprietesReductions, TheTaxGoesDownByTheLinesLessWhatIsGivenBack) {
    HasardReductions hasard(20170403);
    int epuises = 0, rendus = 0;
    for (int n = 0; n < nRetours; ++n) {
        Retour retour = hasard.Foyer();
        hasard.Depenses(retour, 8);
        hasard.OutreMer(retour, 6);
        const auto r = retour.Calcule();
        ASSERT_TRUE(r.Reussi());
        const std::int32_t avant = r["TOT_IMPOT_DOM"] + r["IMPOT_TAUX_MARG"] - r["U_DECOTE"];
        // Every U_ output but the relief and the shares retroceded is a line, U_PR_ is what it gives back.
        const std::int32_t rendu = Somme(r, {"U_PR_"}), lignes = Somme(r, {"U_"}) - rendu;
        EXPECT_EQ(r["REDUCTIONS"], lignes - rendu) << n;
        EXPECT_LE(r["REDUCTIONS"], avant) << n;
        EXPECT_EQ(r["TOT_IMP_RED"], avant - r["REDUCTIONS"]) << n;
        EXPECT_EQ(r["TOT_IMP_COR"], r["TOT_IMP_RED"] + r["CORRECTIONS"]) << n;
        epuises += r["REDUCTIONS"] == avant && avant > 0;
        rendus += rendu > 0;
        for (int j = 0; j < kv::nSorties; ++j) {
            if (!std::string_view(kv::sortie::noms[j]).starts_with("U_")) continue;
            EXPECT_GE(r[CaseSortie::Numero(j)], 0) << n << ' ' << kv::sortie::noms[j];
        }
    }
    EXPECT_GT(epuises, nRetours / 10);  // the draw reaches both
    EXPECT_GT(rendus, nRetours / 10);
}

TEST(ProprietesReductions, OverseasRoomsBoundWhatAnInvestorKeeps) {
    HasardReductions hasard(20170405);
    for (int n = 0; n < nRetours; ++n) {
        Retour retour = hasard.Foyer();
        hasard.OutreMer(retour, 25);
        const bool proportionnelle = retour.Data().Entree["HQA"] != 0;
        const auto r = retour.Calcule();
        const std::int32_t salle = proportionnelle ? nPourcent(nPositif(r["TOT_R_IMPOS"]), 15) : 40000;
        std::int32_t garde = 0, retrocede = 0, auForfait = 0;
        for (const auto& l : kv::outremer::lignesRetrocedees) {
            garde += r.C(2, l.nonRetrocede);
            retrocede += r.C(2, l.retrocede);
            EXPECT_LE(r[l.excedent], r[l.reduction]);
        }
        for (const auto& l : kv::outremer::lignesLimitees) garde += r[l.reduction] - r[l.excedent];
        for (const auto& l : kv::outremer::lignesLimiteesAuForfait) auForfait += r[l.reduction] - r[l.excedent];
        // The largest room is never exceeded; in the proportional option it also bounds what is retroceded and the
        // lines that otherwise have rooms of their own.
        EXPECT_LE(proportionnelle ? garde + retrocede + auForfait : garde, salle) << n;
        EXPECT_LE(auForfait, proportionnelle ? salle : 300000) << n;
    }
}

TEST(ProprietesReductions, WithoutIncomeEveryBaseIsCarriedWhole) {
    HasardReductions hasard(20170406);
    for (int n = 0; n < nRetours; ++n) {
        Retour retour = hasard.Foyer(false);
        hasard.Depenses(retour, 10);
        hasard.OutreMer(retour, 20);
        const auto r = retour.Calcule();
        EXPECT_EQ(r["REDUCTIONS"], 0) << n;
        for (const auto& l : kv::outremer::lignesReportees) {
            if (l.suite) {
                EXPECT_EQ(r[l.suite], r.E(l.entree)) << n;
            }
        }
        for (const auto& l : kv::outremer::lignesRemboursables)
            EXPECT_EQ(r[l.credit], std::min(r.E(l.entree), 229500)) << n;
    }
}

}  // namespace
