#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <kv.hpp>
#include <new>
#include <stdexcept>

// Memory runs short at each allocation in turn, in every function that allocates: it answers a status and has changed
// nothing, so that the same call succeeds afterwards.

namespace {

long avantEchec = 0;  // allocations still to succeed, the failing one included; 0 when all succeed
bool echecAtteint = false, autreFaute = false;

void* Alloue(std::size_t taille) {
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
void* operator new[](std::size_t taille) { return Alloue(taille); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }

namespace {

// The call answers this status whether memory lasts or not: where it does not, a second try does.
void Essaie(const std::function<kv_status()>& appel, kv_status attendu = KV_OK) {
    kv_status statut = appel();
    if (statut == KV_NO_MEMORY) statut = appel();
    ASSERT_EQ(statut, attendu);
}

// One call of every function that allocates, the n-th allocation failing; what is computed is the same for every n.
// Searches look at thousands of names, all in the same way: they come last, and only where they are asked for.
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

}  // namespace
