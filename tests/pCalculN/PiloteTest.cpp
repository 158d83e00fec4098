#include "Calcul/pCalculN/Pilote.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <thread>

#include "support/Trace.h"
#include "tests/Foyer.h"
#include "tests/HasardReductions.h"
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

bool Lance(CDataCalcul& data, bool options = false, const kv::Loi& loi = kv::loi2017) {
    return kv::Lance(data, nullptr, true, -1.0, false, options, loi);
}

// The sum of the companions that are set, in 32 bits.
template <class Zone>
std::int32_t Somme(const Zone& zone) {
    std::uint32_t somme = 0;
    for (const std::int32_t v : zone.valeurs) somme += v == nNonSaisi ? 0u : static_cast<std::uint32_t>(v);
    return static_cast<std::int32_t>(somme);
}

// Households with plausible amounts, and every fourth return with arbitrary values anywhere.
std::vector<Retour> RetoursAuHasard(unsigned graine, int nombre) {
    Hasard plausible(graine);
    std::mt19937 arbitraire(graine);
    std::vector<Retour> retours;
    for (int i = 0; i < nombre; ++i) {
        retours.push_back(i % 4 == 0 ? Retour{} : plausible.Declaration());
        if (i % 4 == 0) test::RemplitAuHasard(retours.back().Data(), arbitraire);
        // A new resident's ceilings come from the launch before; a comparison of options clears the two it compares.
        retours.back().Avec({{"6QW", 0}, {"PFU", i % 4 == 1}, {"BAR", i % 4 == 2}});
        if (i % 4 == 3) retours.back().Avec({{"AVA", 1}});
    }
    return retours;
}

TEST(Pilote, ALaunchLeavesTheReturnAsTheHostGaveIt) {
    for (const bool options : {false, true}) {
        for (Retour& retour : RetoursAuHasard(2017, 120)) {
            CDataCalcul& data = retour.Data();
            const Donnees avant(data);
            ASSERT_TRUE(Lance(data, options));
            EXPECT_TRUE(Donnees(data) == avant);
            EXPECT_EQ(data.Entree["8TI"], Somme(data.TI));
            EXPECT_EQ(data.Entree["8TK"], Somme(data.TK));
        }
    }
}

TEST(Pilote, LaunchesAgree) {
    for (Retour& retour : RetoursAuHasard(14, 120)) {
        CDataCalcul autre;
        autre.CopieValeurs(retour.Data());
        ASSERT_TRUE(Lance(retour.Data()) && Lance(autre));
        EXPECT_TRUE(test::MemesSorties(retour.Data(), autre));
        ASSERT_TRUE(Lance(autre));  // again, over the outputs of the first time
        EXPECT_TRUE(test::MemesSorties(retour.Data(), autre));
    }
}

// A few boxes of any section, or twenty of income and charges; advantages, a new resident, each kind of re-run alone.
std::vector<Retour> RetoursVaries(unsigned graine, int nombre) {
    test::HasardReductions hasard(graine);
    std::vector<Retour> retours = RetoursAuHasard(graine, nombre / 4);
    while (std::ssize(retours) < nombre) {
        const bool simple = hasard.UneFoisSur(2);
        Retour& retour = retours.emplace_back(simple ? hasard.Foyer() : hasard.Declaration(hasard.Entre(1, 20)));
        hasard.Depenses(retour, hasard.Entre(0, 4));
        if (hasard.UneFoisSur(4)) hasard.OutreMer(retour, 3);
        for (const CaseEntree box : {CaseEntree("1AQ"), CaseEntree("1BC"), CaseEntree("4BY"), CaseEntree("5TA"),
                                     CaseEntree("5TF"), CaseEntree("2DH"), CaseEntree("6RS"), CaseEntree("8TC")})
            if (hasard.UneFoisSur(4)) retour.Avec({{box, hasard.Entre(1, 30000)}});
        for (const CaseEntree option : {CaseEntree("6QW"), CaseEntree("AVA"), CaseEntree("PFU"), CaseEntree("BAR")})
            if (hasard.UneFoisSur(4)) retour.Avec({{option, 1}});
        if (hasard.UneFoisSur(3)) retour.TI("4BE", hasard.Entre(1, 9000)).TK("2DC", hasard.Entre(0, 900));
        if (hasard.UneFoisSur(8)) retour.Quotient("1AJ", 4, hasard.Entre(0, 9000));
    }
    return retours;
}

// A traced launch passes over no step and no run: what the others pass over would have changed nothing, whatever the
// figures of the law.
TEST(Pilote, TracedAndUntracedLaunchesAgree) {
    for (const bool options : {false, true}) {
        auto sans = RetoursVaries(31, 96), avec = RetoursVaries(31, 96);
        Hasard hasard(31);
        std::vector<kv::Loi> lois(sans.size(), kv::loi2017);
        for (std::size_t i = 0; i < lois.size(); i += 2) lois[i] = hasard.Loi();
        const test::RepertoireDeTrace repertoire;
        for (std::size_t i = 0; i < sans.size(); ++i) ASSERT_TRUE(Lance(sans[i].Data(), options, lois[i]));
        EXPECT_TRUE(repertoire.Lignes().empty());
        repertoire.PoseMarqueur();
        for (std::size_t i = 0; i < avec.size(); ++i) {
            ASSERT_TRUE(Lance(avec[i].Data(), options, lois[i]));
            EXPECT_TRUE(test::MemesSorties(sans[i].Data(), avec[i].Data())) << i;
        }
        EXPECT_FALSE(repertoire.Lignes().empty());
    }
}

TEST(Pilote, TwoThreadsFindWhatOneFinds) {
    auto seuls = RetoursAuHasard(7, 16), ensemble = RetoursAuHasard(7, 16);
    for (Retour& retour : seuls) ASSERT_TRUE(Lance(retour.Data()));
    const auto lance = [&](std::size_t premier) {
        for (std::size_t i = premier; i < ensemble.size(); i += 2) Lance(ensemble[i].Data());
    };
    std::thread autre(lance, 1);
    lance(0);
    autre.join();
    for (std::size_t i = 0; i < seuls.size(); ++i)
        EXPECT_TRUE(test::MemesSorties(seuls[i].Data(), ensemble[i].Data())) << i;
}

// A return with something of everything that a launch moves.
Retour RetourComplet() {
    Retour retour = Foyer(
        "M Fm=2 Nm 1AJ=40000 1AG=1000 1NX=200 1AM=300 1AC=900 1AE=80 1AH=70 1BC=-5 1BJ=-2147483647 1BS=9000 "
        "5TB=800 5KP=1000 5TF=60 4BA=50 4BY=40 CIMR 6EL=8000");
    retour.TI("5HC", 500).TIX("5HC", 700).TI("5IF", nNonSaisi).TK("1AF", 300).TKZ("1AF", 400).TK("5AK", 20);
    retour.Quotient("1AJ", 4, 10000).Quotient("1BJ", 0, nNonSaisi).Quotient("RAQ", 3, 600);
    return retour;
}

TEST(Pilote, AStepThatThrowsLeavesTheReturnAsTheHostGaveIt) {
    Retour temoin = RetourComplet();
    ASSERT_TRUE(Lance(temoin.Data(), true));
    for (const bool durable : {false, true}) {
        bool atteinte = true;
        for (long n = 1; atteinte; n += 1 + n / (durable ? 16 : 64)) {  // every one at first, then ever sparser
            Retour retour = RetourComplet();
            const Donnees avant(retour.Data());
            const Messages messages;
            testing::internal::CaptureStderr();
            bool reussi;
            {
                const MemoireCourte memoire(n, durable);
                reussi = Lance(retour.Data(), true);
                atteinte = memoire.Atteinte();
            }
            const std::string erreurs = testing::internal::GetCapturedStderr();
            ASSERT_TRUE(Donnees(retour.Data()) == avant) << n;
            ASSERT_TRUE(reussi || atteinte) << n;
            if (reussi) {
                EXPECT_TRUE(test::MemesSorties(retour.Data(), temoin.Data())) << n;
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
    const auto lance = [] { Foyer("M 1AJ=33333 1AG=1000 1BJ=-5 1BS=-2147483647").Calcule(); };
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
