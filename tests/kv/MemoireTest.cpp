#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <kv.hpp>
#include <new>
#include <stdexcept>

// Memory runs short at each allocation in turn, in every function that allocates: it answers a status and has changed
// nothing, so that the same call succeeds afterwards.

namespace {

std::atomic<long> avantEchec = 0;  // allocations still to succeed, the failing one included; 0 when all succeed
std::atomic<bool> echecAtteint = false, autreFaute = false;
std::atomic<long> allocations = 0;

void* Alloue(std::size_t taille) {
    ++allocations;
    if (avantEchec > 0 && --avantEchec == 0) {
        echecAtteint = true;
        if (autreFaute) throw std::runtime_error("another fault");
        throw std::bad_alloc();
    }
    if (void* p = std::malloc(taille > 0 ? taille : 1)) return p;
    throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t taille) { return Alloue(taille); }
void* operator new(std::size_t taille, const std::nothrow_t&) noexcept {
    try {
        return Alloue(taille);
    } catch (...) {
        return nullptr;
    }
}
void* operator new[](std::size_t taille) { return Alloue(taille); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }

namespace {

// The call answers this status whether memory lasts or not: where it does not, a second try does.
template <class Appel>
void Essaie(Appel appel, kv_status attendu = KV_OK) {
    kv_status statut = appel();
    if (statut == KV_NO_MEMORY) statut = appel();
    ASSERT_EQ(statut, attendu);
}

// One call of every function that allocates, the n-th allocation failing; what is computed is the same for every n.
// Searches look at thousands of names and a trace writes thousands of lines, all in the same way: they come last, and
// only where they are asked for.
void Histoire(long n, bool recherches) {
    kv_return *r = nullptr, *copie = nullptr;
    kv_law *loi = nullptr, *autre = nullptr;
    int32_t nombre = 0, net = 0, relu = 0, rangs[200];
    double taux = 0;
    char texte[KV_TEXT];
    kv_box box{};
    box.size = sizeof box;
    kv_reduction reduction{};
    reduction.size = sizeof reduction;

    avantEchec = n, echecAtteint = false;
    Essaie([&] { return kv_return_create(&r); });
    Essaie([&] { return kv_law_create(&loi); });
    Essaie([&] { return kv_law_set(loi, "bareme.tranche3.taux", 31); });
    Essaie([&] { return kv_law_set(loi, "bareme.tranche3.tau", 31); }, KV_UNKNOWN);
    Essaie([&] { return kv_law_set(loi, "bareme.tranche3.taux", 101); }, KV_BAD_VALUE);
    Essaie([&] { return kv_law_get(loi, "bareme.tranche3.taux", &taux); });
    Essaie([&] { return kv_law_check(loi); });
    Essaie([&] { return kv_law_copy(loi, &autre); });
    Essaie([&] { return kv_set_law(r, autre); });
    for (const char* boite : {"M", "AVA", "Fm"}) Essaie([&] { return kv_set(r, boite, 1); });
    Essaie([&] { return kv_set(r, "1AJ", 40000); });
    Essaie([&] { return kv_set(r, "1BC", 3000); });
    Essaie([&] { return kv_set(r, "2DC", 3000); });
    Essaie([&] { return kv_set(r, "T", 2); });
    Essaie([&] { return kv_set(r, "ti.4BE", 1500); });
    Essaie([&] { return kv_set(r, "quotient.4.1AJ", 8000); });
    Essaie([&] { return kv_set_exceptional(r, 1, 4, 8000); }, KV_NO_AMOUNT);
    Essaie([&] { return kv_set(r, "1AJX", 1); }, KV_UNKNOWN);
    Essaie([&] { return kv_get(r, "quotient.4.1AJ", &relu); });
    Essaie([&] { return kv_set_launch(r, KV_LAUNCH_OPTIONS); });
    Essaie([&] { return kv_check(r, &nombre); });
    Essaie([&] { return kv_return_copy(r, &copie); });
    Essaie([&] { return kv_compute(r); });
    Essaie([&] { return kv_read(r, "S_NET_A_PAYER", &net); });
    Essaie([&] { return kv_read(r, "S_NET", &relu); }, KV_UNKNOWN);
    Essaie([&] { return kv_compute(copie); });
    Essaie([&] { return kv_read(copie, "S_NET_A_PAYER", &relu); });
    Essaie([&] { return kv_read_text(r, 2000, texte, sizeof texte, nullptr); });
    Essaie([&] { return kv_box_describe(KV_OUTPUT, 0, &box); });
    Essaie([&] { return kv_reduction_describe(0, &reduction); });
    Essaie([&] { return kv_reduction_count(&nombre); });
    if (recherches) {
        const kv_trace_line oublie = [](const char*, void*) {};
        Essaie([&] { return kv_compute_traced(r, oublie, nullptr); });
        Essaie([&] { return kv_box_search(KV_ENTRY, "frais réels", rangs, 200, &nombre); });
        Essaie([&] { return kv_box_nearest(KV_ENTRY, "1AJX", rangs, 200, &nombre); });
        Essaie([&] { return kv_parameter_search("decote", rangs, 200, &nombre); });
    }
    avantEchec = 0;

    ASSERT_EQ(relu, net);
    static const int32_t reference = net;
    ASSERT_EQ(net, reference);
    kv_return_free(r), kv_return_free(copie);
    kv_law_free(loi), kv_law_free(autre);
}

TEST(MemoireCourte, EachFunctionAnswersAStatusAndSucceedsLater) {
    Histoire(0, false);  // the labels are composed, the reference found
    echecAtteint = true;
    for (long n = 1; echecAtteint; ++n) {
        Histoire(n, false);
        if (HasFatalFailure()) FAIL() << n;
    }
}

// What a process composes once is composed by the next caller: in a new process each time.
TEST(MemoireCourte, InANewProcess) {
    enum { Atteint, Fini, Faux };
    for (long n = 1, fin = Atteint; fin == Atteint; n += 1 + n / 16) {  // ever sparser
        const pid_t enfant = fork();
        if (enfant == 0) {
            Histoire(n, true);
            std::_Exit(HasFatalFailure() ? Faux : echecAtteint ? Atteint : Fini);
        }
        int statut = 0;
        ASSERT_EQ(waitpid(enfant, &statut, 0), enfant);
        ASSERT_TRUE(WIFEXITED(statut) && WEXITSTATUS(statut) != Faux) << n;
        fin = WEXITSTATUS(statut);
    }
}

TEST(MemoireCourte, AFailedComputationLeavesTheResultsOfTheOneBefore) {
    kv::Return r;
    r.set("1AJ", 33333).compute();
    r.set("1AJ", 60000);
    avantEchec = 1;
    EXPECT_EQ(kv_compute(r.handle()), KV_NO_MEMORY);
    EXPECT_STREQ(kv_message(r.handle()), "memory is short");
    EXPECT_EQ(r["TOT_IMPOT"], 3293);
    autreFaute = true, avantEchec = 1;
    EXPECT_EQ(kv_compute(r.handle()), KV_FAILED);
    EXPECT_STREQ(kv_message(r.handle()), "another fault");
    EXPECT_EQ(r["TOT_IMPOT"], 3293);
    EXPECT_EQ(r.get("1AJ"), 60000);
    EXPECT_EQ(r.compute()["TOT_R_IMPOS"], 54000);
    autreFaute = false;
}

TEST(MemoireCourte, WhatWouldChangeAFigure) {
    kv::Return r;
    r.set("1AJ", 33333).set("quotient.4.1AJ", 10);
    kv_range range{};
    range.size = sizeof range, range.amount = "quotient.4.1AJ", range.to = 1, range.step = 1, range.threads = 1;
    const auto epuise = [](auto appel) {
        kv_status statut = KV_NO_MEMORY;
        for (long n = 1; statut == KV_NO_MEMORY; ++n) {
            avantEchec = n;
            statut = appel();
            avantEchec = 0;
        }
        return statut;
    };
    int32_t valeur = 0, nombre = 0, valeurs[2];
    kv_piece morceau;
    EXPECT_EQ(epuise([&] { return kv_effects(r.handle(), "TOT_IMPOT", &valeur, &nombre); }), KV_OK);
    EXPECT_EQ(epuise([&] { return kv_effects(r.handle(), "TOT_IMPO", &valeur, &nombre); }), KV_UNKNOWN);
    EXPECT_EQ(nombre, 2);
    EXPECT_EQ(epuise([&] { return kv_curve(r.handle(), &range, valeurs, nullptr, nullptr, nullptr, 2, &nombre); }),
              KV_OK);
    EXPECT_EQ(valeurs[1], 1);
    EXPECT_EQ(epuise([&] { return kv_breaks(r.handle(), &range, &morceau, 1, &nombre); }), KV_OK);
    EXPECT_EQ(morceau.to, 1);
    const char* explication = nullptr;
    EXPECT_EQ(epuise([&] { return kv_explain(r.handle(), "I_IMP_NORM", 2, &explication); }), KV_OK);
    EXPECT_NE(explication, nullptr);
    EXPECT_EQ(r.get("quotient.4.1AJ"), 10);

    // A trace comes whole, or not at all.
    std::size_t lignes = 0, toutes = 0;
    const kv_trace_line compte = [](const char*, void* n) { ++*static_cast<std::size_t*>(n); };
    ASSERT_EQ(kv_compute_traced(r.handle(), compte, &toutes), KV_OK);
    for (long n = 1; lignes < toutes; n += 1 + n / 8) {
        lignes = 0, avantEchec = n;
        const kv_status statut = kv_compute_traced(r.handle(), compte, &lignes);
        avantEchec = 0;
        ASSERT_EQ(statut, lignes < toutes ? KV_NO_MEMORY : KV_OK) << n;
    }
}

// Households with a bit of everything, a row each; every row of a block of 32 stands again in the next one.
long Allocations(std::size_t lignes, const std::vector<std::string>& noms) {
    std::vector<std::vector<int32_t>> colonnes;
    std::vector<kv_input_column> entrees;
    for (std::size_t i = 0; i < noms.size(); ++i) {
        auto& colonne = colonnes.emplace_back(lignes);
        for (std::size_t l = 0; l < lignes; ++l)
            if ((l % 32 >> i % 5 & 1) != 0) colonne[l] = noms[i].size() < 3 ? 1 : static_cast<int32_t>(1000 * (i + 1));
        entrees.push_back({noms[i].c_str(), colonne.data()});
    }
    std::vector<int32_t> nets(lignes), reports(lignes);
    const kv_output_column sorties[] = {{"S_NET_A_PAYER", nets.data()}, {"F11_6PSS", reports.data()}};
    const kv::Return r;
    const long avant = allocations;
    r.compute_columns(static_cast<int64_t>(lignes), entrees, sorties, 1);
    return allocations - avant;
}

TEST(MemoireCourte, ARowAllocatesNothing) {
    for (const std::vector<std::string>& noms :
         {std::vector<std::string>{"M", "1AJ", "2DC", "Fm", "7UF", "4BE", "5KO", "AVA"},
          {"1AJ", "quotient.4.1AJ", "quotient.2.1BJ", "M"},
          {"1AC", "1BC", "ti.4BE", "M", "5TB", "5TF", "4BE", "6QW"}})
        EXPECT_EQ(Allocations(64, noms), Allocations(640, noms));
}

// Without memory for a row the others are computed; without memory for anything, nothing is.
TEST(MemoireCourte, InColumns) {
    std::vector<int32_t> salaires(200, 33333), impots(200), statuts(200);
    const kv_input_column entree = {"1AJ", salaires.data()};
    const kv_output_column sortie = {"TOT_IMPOT", impots.data()};
    kv_columns colonnes{};
    colonnes.size = sizeof colonnes, colonnes.rows = 200, colonnes.statuses = statuts.data();
    colonnes.inputs = &entree, colonnes.input_count = 1, colonnes.outputs = &sortie, colonnes.output_count = 1;
    const kv::Return r;
    for (const int32_t threads : {1, 3}) {
        colonnes.threads = threads;
        echecAtteint = true;
        for (long n = 1; echecAtteint; ++n) {
            std::fill(impots.begin(), impots.end(), -7);
            std::fill(statuts.begin(), statuts.end(), -7);
            avantEchec = n, echecAtteint = false;
            const kv_status statut = kv_compute_columns(r.handle(), &colonnes);
            avantEchec = 0;
            ASSERT_TRUE(statut == KV_OK || statut == KV_NO_MEMORY);
            for (std::size_t i = 0; i < impots.size(); ++i)
                ASSERT_TRUE(statuts[i] == KV_OK ? impots[i] == 3293 : statuts[i] == KV_NO_MEMORY && impots[i] == 0);
        }
    }
}

}  // namespace
