#include "Calcul/pCalculN/Pilote.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <thread>

#include "interface/Retour.h"
#include "support/Trace.h"
#include "tests/Hasard.h"
#include "tests/Hote.h"
#include "tests/Messages.h"
#include "tests/RepertoireDeTrace.h"

namespace {

// Allocations still to succeed in this thread, the failing one included; 0 when all succeed.
thread_local long avantEchec = 0;
thread_local bool echecDurable = false, echecAtteint = false;

// Memory runs short in this thread until the end of the scope: the n-th allocation from here fails, and, when it lasts,
// all the later ones.
struct MemoireCourte {
    explicit MemoireCourte(long n, bool durable = false) {
        avantEchec = n, echecDurable = durable, echecAtteint = false;
    }
    ~MemoireCourte() { avantEchec = 0, echecDurable = echecAtteint = false; }
    bool Atteinte() const { return echecAtteint; }
};

void* Alloue(std::size_t taille) noexcept {
    const bool echoue = (avantEchec > 0 && --avantEchec == 0) || (echecAtteint && echecDurable);
    if (echoue) echecAtteint = true;
    return echoue ? nullptr : std::malloc(taille > 0 ? taille : 1);
}

void* AlloueOuLeve(std::size_t taille) {
    if (void* p = Alloue(taille)) return p;
    throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t taille) { return AlloueOuLeve(taille); }
void* operator new[](std::size_t taille) { return AlloueOuLeve(taille); }
void* operator new(std::size_t taille, const std::nothrow_t&) noexcept { return Alloue(taille); }
void* operator new[](std::size_t taille, const std::nothrow_t&) noexcept { return Alloue(taille); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { std::free(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { std::free(p); }

namespace {

using kv::Service;
using test::Messages;

bool Lance(CDataCalcul& data, bool options = false) { return kv::Lance(data, nullptr, true, -1.0, false, options); }

// The sum of the companions that are set, in 32 bits.
template <class Zone>
std::int32_t Somme(const Zone& zone) {
    std::uint32_t somme = 0;
    for (const std::int32_t v : zone.valeurs) somme += v == nNonSaisi ? 0u : static_cast<std::uint32_t>(v);
    return static_cast<std::int32_t>(somme);
}

using Retours = std::vector<std::unique_ptr<CDataCalcul>>;

// Households with plausible amounts, and every fourth return with arbitrary values anywhere.
Retours RetoursAuHasard(unsigned graine, int nombre) {
    Hasard hasard(graine);
    Retours retours;
    for (int i = 0; i < nombre; ++i) {
        kv::Return r = i % 4 == 0 ? hasard.Tout() : hasard.Declaration();
        // A new resident's ceilings come from the launch before; a comparison of options clears the two it compares.
        r.set("6QW", 0).set("PFU", i % 4 == 1).set("BAR", i % 4 == 2);
        if (i % 4 == 3) r.set("AVA", 1);
        retours.push_back(Hote(r));
    }
    return retours;
}

TEST(Pilote, ALaunchLeavesTheReturnAsTheHostGaveIt) {
    for (const bool options : {false, true}) {
        for (const auto& data : RetoursAuHasard(2017, 120)) {
            const Donnees avant(*data);
            ASSERT_TRUE(Lance(*data, options));
            EXPECT_TRUE(Donnees(*data) == avant);
            EXPECT_EQ(data->Entree["8TI"], Somme(data->TI));
            EXPECT_EQ(data->Entree["8TK"], Somme(data->TK));
        }
    }
}

TEST(Pilote, LaunchesAgree) {
    for (const auto& data : RetoursAuHasard(14, 120)) {
        CDataCalcul autre;
        autre.CopieValeurs(*data);
        ASSERT_TRUE(Lance(*data) && Lance(autre));
        EXPECT_TRUE(test::MemesSorties(*data, autre));
        ASSERT_TRUE(Lance(autre));  // again, over the outputs of the first time
        EXPECT_TRUE(test::MemesSorties(*data, autre));
    }
}

// A traced launch passes over no step and no run: what the others pass over would have changed nothing, whatever the
// return, the launch and the figures of the law.
TEST(Pilote, TracedAndUntracedLaunchesAgree) {
    Hasard hasard(31);
    const test::RepertoireDeTrace repertoire;
    repertoire.PoseMarqueur();
    for (int i = 0; i < 250; ++i) {
        kv::Return r = hasard.Variee();
        const auto avec = Hote(r), sans = Hote(r);
        const kv_launch lancement = r.launch();
        const auto lance = [&](CDataCalcul& data) {
            return kv::Lance(data, nullptr, true, r.indexation(), lancement >= KV_LAUNCH_FORCED, lancement % 2 == 1,
                             r.handle()->demande.loi);
        };
        ASSERT_TRUE(lance(*avec));
        std::filesystem::remove(repertoire.Marqueur());
        ASSERT_TRUE(lance(*sans));
        repertoire.PoseMarqueur();
        EXPECT_TRUE(test::MemesSorties(*avec, *sans)) << i;
    }
    EXPECT_FALSE(repertoire.Lignes().empty());
}

TEST(Pilote, TwoThreadsFindWhatOneFinds) {
    auto seuls = RetoursAuHasard(7, 16), ensemble = RetoursAuHasard(7, 16);
    for (const auto& data : seuls) ASSERT_TRUE(Lance(*data));
    const auto lance = [&](std::size_t premier) {
        for (std::size_t i = premier; i < ensemble.size(); i += 2) Lance(*ensemble[i]);
    };
    std::thread autre(lance, 1);
    lance(0);
    autre.join();
    for (std::size_t i = 0; i < seuls.size(); ++i) EXPECT_TRUE(test::MemesSorties(*seuls[i], *ensemble[i])) << i;
}

// A return with something of everything that a launch moves.
std::unique_ptr<CDataCalcul> RetourComplet() {
    return Hote(
        "M Fm=2 Nm 1AJ=40000 1AG=1000 1NX=200 1AM=300 1AC=900 1AE=80 1AH=70 1BC=-5 1BJ=unset 1BS=9000 5TB=800 5KP=1000 "
        "5TF=60 4BA=50 4BY=40 CIMR 6EL=8000 ti.5HC=500 tix.5HC=700 ti.5IF=unset tk.1AF=300 tkz.1AF=400 tk.5AK=20 "
        "quotient.4.1AJ=10000 quotient.0.1BJ=unset quotient.3.RAQ=600");
}

TEST(Pilote, AStepThatThrowsLeavesTheReturnAsTheHostGaveIt) {
    const auto temoin = RetourComplet();
    ASSERT_TRUE(Lance(*temoin, true));
    for (const bool durable : {false, true}) {
        bool atteinte = true;
        for (long n = 1; atteinte; n += 1 + n / (durable ? 16 : 64)) {  // every one at first, then ever sparser
            const auto data = RetourComplet();
            const Donnees avant(*data);
            const Messages messages;
            testing::internal::CaptureStderr();
            bool reussi;
            {
                const MemoireCourte memoire(n, durable);
                reussi = Lance(*data, true);
                atteinte = memoire.Atteinte();
            }
            const std::string erreurs = testing::internal::GetCapturedStderr();
            ASSERT_TRUE(Donnees(*data) == avant) << n;
            ASSERT_TRUE(reussi || atteinte) << n;
            if (reussi) {
                EXPECT_TRUE(test::MemesSorties(*data, *temoin)) << n;
            } else if (durable) {  // the host's function is short of memory too: the message goes to standard error
                EXPECT_NE(erreurs.find("(Calcul/pCalculN ligne : "), std::string::npos) << n;
                EXPECT_NE(erreurs.find("bad_alloc"), std::string::npos) << n;
            } else {
                ASSERT_EQ(messages.Recus().size(), 2u) << n;
                EXPECT_EQ(messages.Recus()[0].service, Service::Error);
                EXPECT_TRUE(messages.Recus()[0].texte.starts_with("(Calcul/pCalculN ligne : "));
                EXPECT_EQ(messages.Recus()[1].service, Service::DisplayException);
            }
        }
    }
}

// A line that can't be written for lack of memory is reported as coming from the steps, and the launch goes on.
TEST(PiloteDeathTest, ATraceWithoutMemory) {
    const auto ecrit = [] {
        kv::Trace trace;
        trace.m_bTrace = true;
        trace.m_sFichierTrace = u"/dev/null";
        const MemoireCourte memoire(1, true);
        trace.Valeur(u"s(TAUX_PAS)", 12345678);
        std::_Exit(0);
    };
    EXPECT_EXIT(ecrit(), testing::ExitedWithCode(0), "\\(Calcul/pCalculN ligne : ");
}

TEST(Pilote, TheScaleShortcut) {
    // 200 + 3 x 50 + 50; alternating 25 + 25; invalid 2 x 50 + 50 + 3 x 25. Allowances 2.5 x 5795, truncated.
    EntreeBareme entree{};
    entree.M = 1, entree.Fm = 1, entree.Jm = 1, entree.Rm = 1, entree.Hm = 1, entree.Gm = 2, entree.Im = 3;
    entree.Nm = 3, entree.Pm = 1, entree.nInutilise = 9;
    SortieBareme sortie{};
    kv::LanceBareme(entree, sortie, -1.0);
    EXPECT_EQ(sortie.F_NB_PARTS_ALL, 675);
    EXPECT_EQ(sortie.ABAT, 14487);
    kv::LanceBareme(entree, sortie, 2.0);
    EXPECT_EQ(sortie.ABAT, 14777);  // 2.5 x 5911
}

TEST(Pilote, Trace) {
    const test::RepertoireDeTrace repertoire;
    const auto lance = [] { Lance(*Hote("M 1AJ=33333 1AG=1000 1BJ=-5 1BS=unset")); };
    lance();
    EXPECT_TRUE(std::filesystem::is_empty(repertoire.KvTemp()));
    repertoire.PoseMarqueur();
    lance();
    const std::vector<std::string> lignes = repertoire.Lignes();
    for (const std::string& ligne : lignes) {  // "hh:nn:ss : "
        std::string forme = ligne.substr(0, 11);
        for (char& c : forme) c = std::isdigit(static_cast<unsigned char>(c)) ? '9' : c;
        EXPECT_EQ(forme, "99:99:99 : ");
    }
    // The number of the line with a text, and how far the text is indented.
    const auto ou = [&](const std::string& texte) {
        std::size_t i = 0;
        while (i < lignes.size() && (!lignes[i].ends_with(' ' + texte) ||
                                     lignes[i].find_first_not_of(' ', 11) + texte.size() != lignes[i].size()))
            ++i;
        EXPECT_LT(i, lignes.size()) << texte;
        return i;
    };
    const auto retrait = [&](const std::string& texte) {
        const std::size_t i = ou(texte);
        return i < lignes.size() ? lignes[i].size() - 11 - texte.size() : 0;
    };
    EXPECT_EQ(ou("1:Calcul"), 0u);
    EXPECT_EQ(retrait("1:Calcul"), 6u);  // level 3
    // Then the period and the entries above 0, folded, in the order of the catalogue.
    EXPECT_EQ(ou("-> DateToInt(_Periode->Deb,false) : 20170101"), 1u);
    EXPECT_EQ(ou("-> DateToInt(_Periode->Fin,false) : 20171231"), 2u);
    EXPECT_EQ(ou("-> 1AG : 1000") + ou("-> M : 1") + ou("-> 1AJ : 34333"), 3u + 4u + 5u);
    EXPECT_LT(ou("-> M : 1"), ou("-> 1AJ : 34333"));  // 1569, 1902
    EXPECT_EQ(retrait("-> M : 1"), 8u);
    // A step stands one level below the one that runs it, the parts one level below their neighbours.
    EXPECT_EQ(retrait("4:RevenusSalaires"), retrait("3:RevenusBrut") + 2);
    EXPECT_EQ(retrait("13:RevenusNet"), retrait("3:RevenusBrut"));
    EXPECT_EQ(retrait("2:NombreParts"), retrait("3:RevenusBrut") + 2);
    EXPECT_LT(ou("2:NombreParts"), ou("3:RevenusBrut"));
    EXPECT_LT(ou("15:CalculImpot"), ou("16:TauxMarginal"));

    lance();
    EXPECT_EQ(repertoire.Lignes().size(), lignes.size());  // the file is made anew
}

}  // namespace
