#include <algorithm>
#include <numeric>
#include <string_view>

#include "Calcul/cCalcul/Catalogues.h"
#include "Calcul/pCalculN/Imputation.h"
#include "Calcul/pCalculN/OutreMerTable.h"
#include "support/KVTarvel.h"
#include "tests/Hasard.h"
#include "tests/Notation.h"

// What holds of the reductions whatever the return.

namespace {

using kv::Imputation;
using kv::Niche;

constexpr int nRetours = 150;
// Output boxes to draw lines from: none of them stands for a total.
CaseSortie Ligne(std::size_t i) { return CaseSortie::De("U_DT_", "HQJ") + static_cast<int>(i); }

std::int32_t Somme(const kv::Return& r, std::string_view debut) {
    std::int32_t somme = 0;
    for (int j = 0; j < kv::nSorties; ++j) {
        const std::string_view nom = kv::sortie::noms[j];
        if (nom.starts_with(debut) && !nom.starts_with("U_DECOTE")) somme += r.output(j);
    }
    return somme;
}

// The lines of one imputation, empty at first.
struct Essai {
    std::unique_ptr<kv::Lignes> lignes = std::make_unique<kv::Lignes>();
    Imputation imputation;

    explicit Essai(std::int32_t reste, bool sansAvantages = false) : imputation(*lignes, sansAvantages) {
        imputation.FixeReste(reste);
    }
    std::int32_t operator[](CaseSortie ligne) const { return lignes->Lit(ligne).valeur; }
    std::int32_t C(std::size_t colonne, CaseSortie ligne) const { return lignes->Lit(ligne).colonnes[colonne - 1]; }
};
constexpr CaseSortie report = "NP1_REPORT_7R7";

// Whatever is imputed, what is due stands in the line and in next year's return.
TEST(ProprietesImputation, TheRemainingTaxAndTheYearGroupsBalance) {
    Hasard hasard(20170401);
    for (int n = 0; n < 200; ++n) {
        const std::int32_t depart = hasard.Montant(100000);
        Essai essai(depart);
        Imputation& imputation = essai.imputation;
        Imputation::Totaux attendus{};
        std::int32_t horsGroupes = 0;
        for (std::size_t i = 0; i < 30; ++i) {
            const auto niche = static_cast<Niche>(hasard.Entre(0, 7));
            const std::int32_t base = hasard.Montant(40000), avant = imputation.Reste();
            const CaseSortie ligne = Ligne(i);
            const std::int32_t dejaReporte = essai[report];
            std::int32_t du;
            switch (hasard.Entre(0, 2)) {
                case 0:
                    du = std::min(nPourcent(std::min(base, 10000), 25), 2000);
                    EXPECT_EQ(imputation.Impute({ligne, niche, 2500, base, 10000, 2000, report}), base > 0);
                    EXPECT_EQ(essai.C(2, ligne), std::min(base, 10000));
                    break;
                case 1:
                    du = base;
                    imputation.ImputeOuMontre(
                        {.ligne = ligne, .niche = niche, .taux = 10000, .base = base, .report = report});
                    break;
                default:
                    du = nPourcent(nArrondi(std::min(base, 30000) / 5.0), 40);
                    const auto annuite = imputation.ImputeAnnuite({.ligne = ligne,
                                                                   .niche = niche,
                                                                   .taux = 4000,
                                                                   .base = base,
                                                                   .plafond = 30000,
                                                                   .report = report},
                                                                  5);
                    EXPECT_EQ(annuite.value_or(0), du);
            }
            EXPECT_EQ(essai[ligne], std::min(du, avant));
            EXPECT_EQ(essai[ligne] + essai[report] - dejaReporte, du);
            EXPECT_EQ(avant - imputation.Reste(), essai[ligne]);
            if (niche == Niche::HorsPlafond || niche == Niche::ToujoursActive)
                horsGroupes += essai[ligne];
            else
                attendus[static_cast<std::size_t>(niche) - 1] += essai[ligne];
        }
        EXPECT_EQ(imputation.LisTotaux(), attendus);
        EXPECT_EQ(depart - imputation.Reste(), std::accumulate(attendus.begin(), attendus.end(), horsGroupes));
    }
}

TEST(ProprietesImputation, GivingBackUndoesAnImputation) {
    Hasard hasard(20170402);
    for (int n = 0; n < 100; ++n) {
        const auto niche = static_cast<Niche>(hasard.Entre(0, 7));
        const std::int32_t depart = hasard.Montant(100000), credit = hasard.Montant(5000);
        Essai essai(depart);
        Imputation& imputation = essai.imputation;
        imputation.Note(niche, "D_ENFANTS_CESU", credit);
        const Imputation::Totaux totaux = imputation.LisTotaux();
        EXPECT_EQ(imputation.Reste(), depart);  // a credit takes nothing from the tax, but counts
        EXPECT_EQ(std::accumulate(totaux.begin(), totaux.end(), 0),
                  niche == Niche::HorsPlafond || niche == Niche::ToujoursActive ? 0 : credit);
        imputation.Impute({Ligne(0), niche, 10000, hasard.Montant(200000)});
        imputation.Rend(niche, Ligne(1), essai[Ligne(0)]);
        EXPECT_EQ(imputation.Reste(), depart);
        EXPECT_EQ(imputation.LisTotaux(), totaux);
    }
}

TEST(ProprietesImputation, WithoutAdvantagesOnlyWhatLiesOutsideTheCapIsImputed) {
    for (int n = 0; n < 8; ++n) {
        const auto niche = static_cast<Niche>(n);
        const bool hors = niche == Niche::HorsPlafond || niche == Niche::ToujoursActive;
        Essai essai(1000, true);
        Imputation& imputation = essai.imputation;
        EXPECT_EQ(imputation.Impute({Ligne(1), niche, 5000, 200}), hors);
        EXPECT_EQ(imputation.ImputeAnnuite({Ligne(3), niche, 1000, 27000}, 9),
                  hors ? std::optional(300) : std::nullopt);
        EXPECT_EQ(imputation.Reste(), hors ? 600 : 1000);
        EXPECT_EQ(essai.C(1, Ligne(1)), hors ? 200 : 0);
        // A full line still shows what could have been imputed, and carries nothing.
        imputation.ImputeOuMontre({.ligne = Ligne(4), .niche = niche, .taux = 10000, .base = 5000, .report = report});
        EXPECT_EQ(essai[Ligne(4)], hors ? 600 : 1000);
        EXPECT_EQ(essai.C(2, Ligne(4)), 5000);
        EXPECT_EQ(essai[report], hors ? 4400 : 0);
        EXPECT_EQ(imputation.LisTotaux(), Imputation::Totaux{});
    }
}

TEST(ProprietesReductions, TheTaxGoesDownByTheLinesLessWhatIsGivenBack) {
    Hasard hasard(20170403);
    int epuises = 0, rendus = 0;
    for (int n = 0; n < nRetours; ++n) {
        kv::Return r = hasard.Simple();
        hasard.Depenses(r, 8);
        hasard.OutreMer(r, 6);
        r.compute();
        const std::int32_t avant = r["TOT_IMPOT_DOM"] + r["IMPOT_TAUX_MARG"] - r["U_DECOTE"];
        // Every U_ output but the relief and the shares retroceded is a line, U_PR_ is what it gives back.
        const std::int32_t rendu = Somme(r, "U_PR_"), lignes = Somme(r, "U_") - rendu;
        EXPECT_EQ(r["REDUCTIONS"], lignes - rendu) << n;
        EXPECT_LE(r["REDUCTIONS"], avant) << n;
        EXPECT_EQ(r["TOT_IMP_RED"], avant - r["REDUCTIONS"]) << n;
        EXPECT_EQ(r["TOT_IMP_COR"], r["TOT_IMP_RED"] + r["CORRECTIONS"]) << n;
        epuises += r["REDUCTIONS"] == avant && avant > 0;
        rendus += rendu > 0;
        for (int j = 0; j < kv::nSorties; ++j) {
            if (!std::string_view(kv::sortie::noms[j]).starts_with("U_")) continue;
            EXPECT_GE(r.output(j), 0) << n << ' ' << kv::sortie::noms[j];
        }
    }
    EXPECT_GT(epuises, nRetours / 10);  // the draw reaches both
    EXPECT_GT(rendus, nRetours / 10);
}

TEST(ProprietesReductions, OverseasRoomsBoundWhatAnInvestorKeeps) {
    Hasard hasard(20170405);
    for (int n = 0; n < nRetours; ++n) {
        kv::Return r = hasard.Simple();
        hasard.OutreMer(r, 25);
        const bool proportionnelle = r.get("HQA") != 0;
        r.compute();
        const std::int32_t salle = proportionnelle ? nPourcent(nPositif(r["TOT_R_IMPOS"]), 15) : 40000;
        std::int32_t garde = 0, retrocede = 0, auForfait = 0;
        for (const auto& l : kv::outremer::lignesRetrocedees) {
            garde += r.output(l.nonRetrocede.numero, 2);
            retrocede += r.output(l.retrocede.numero, 2);
            EXPECT_LE(r.output(l.excedent.numero), r.output(l.reduction.numero));
        }
        for (const auto& l : kv::outremer::lignesLimitees)
            garde += r.output(l.reduction.numero) - r.output(l.excedent.numero);
        for (const auto& l : kv::outremer::lignesLimiteesAuForfait)
            auForfait += r.output(l.reduction.numero) - r.output(l.excedent.numero);
        // The largest room is never exceeded; in the proportional option it also bounds what is retroceded and the
        // lines that otherwise have rooms of their own.
        EXPECT_LE(proportionnelle ? garde + retrocede + auForfait : garde, salle) << n;
        EXPECT_LE(auForfait, proportionnelle ? salle : 300000) << n;
    }
}

TEST(ProprietesReductions, WithoutIncomeEveryBaseIsCarriedWhole) {
    Hasard hasard(20170406);
    for (int n = 0; n < nRetours; ++n) {
        kv::Return r = hasard.Simple(false);
        hasard.Depenses(r, 10);
        hasard.OutreMer(r, 20);
        r.compute();
        EXPECT_EQ(r["REDUCTIONS"], 0) << n;
        int recues = 0;
        for (const auto& l : kv::outremer::lignesReportees) {
            EXPECT_EQ(r.output(l.sortie.numero), 0) << n;
            EXPECT_EQ(r.output(l.sortie.numero, 1), r.get(l.entree.numero)) << n;
            if (!l.suite) continue;
            ++recues;
            EXPECT_EQ(r.output(l.suite.numero), r.get(l.entree.numero)) << n;
        }
        EXPECT_EQ(recues, 149 - 45);  // 45 lines lose what the tax can't take, or are refunded within a ceiling
        for (const auto& l : kv::outremer::lignesRemboursables)
            EXPECT_EQ(r.output(l.credit.numero), std::min(r.get(l.entree.numero), 229500)) << n;
    }
}

}  // namespace
