#include "support/Trace.h"

#include <sys/stat.h>
#include <unistd.h>

#include "Calcul/pCalculN/Pilote.h"
#include "tests/Hote.h"
#include "tests/Messages.h"
#include "tests/RepertoireDeTrace.h"

namespace {

namespace fs = std::filesystem;

// Launches a return; whether it left a trace. The launch itself must not notice.
bool LaisseUneTrace(const test::RepertoireDeTrace& repertoire) {
    const test::Messages messages;
    const auto data = Hote("1AJ=33333");
    EXPECT_TRUE(kv::Lance(*data, nullptr, true, -1.0));
    EXPECT_EQ(data->Sortie["TOT_IMPOT"], 3293);
    EXPECT_TRUE(messages.Recus().empty());
    return !repertoire.Lignes().empty();
}

TEST(TraceService, ADirectoryThatIsNoUnicodeTextMeansNoTrace) {
    {
        const test::RepertoireDeTrace repertoire("caf\xE9");
        repertoire.PoseMarqueur();
        EXPECT_FALSE(LaisseUneTrace(repertoire));
        EntreeBareme entree{};
        entree.M = 1;
        SortieBareme sortie{};
        kv::LanceBareme(entree, sortie, -1.0);
        EXPECT_EQ(sortie.F_NB_PARTS_ALL, 200);
    }
    const test::RepertoireDeTrace accentue("caf\xC3\xA9");
    accentue.PoseMarqueur();
    EXPECT_TRUE(LaisseUneTrace(accentue));
}

// What another user can put there turns nothing on, and nobody else reads the trace.
TEST(TraceService, TheTraceIsTheUsersOwn) {
    const test::RepertoireDeTrace repertoire;
    const fs::path ailleurs = repertoire.KvTemp().parent_path() / "ailleurs";
    std::ofstream(ailleurs).flush();
    fs::create_symlink(ailleurs, repertoire.Marqueur());
    EXPECT_FALSE(LaisseUneTrace(repertoire)) << "a marker that is a link";

    fs::remove(repertoire.Marqueur());
    repertoire.PoseMarqueur();
    fs::create_symlink(ailleurs, repertoire.Fichier());
    EXPECT_TRUE(LaisseUneTrace(repertoire));
    EXPECT_TRUE(fs::is_empty(ailleurs)) << "a link in the place of the trace is followed";
    struct stat etat;
    ASSERT_EQ(lstat(repertoire.Fichier().c_str(), &etat), 0);
    EXPECT_EQ(etat.st_mode, S_IFREG | S_IRUSR | S_IWUSR);

    fs::rename(repertoire.KvTemp(), ailleurs.string() + "_KV_TEMP");
    fs::create_directory_symlink(ailleurs.string() + "_KV_TEMP", repertoire.KvTemp());
    fs::remove(repertoire.Fichier());
    EXPECT_FALSE(LaisseUneTrace(repertoire)) << "a directory that is a link";
}

TEST(TraceService, AnotherUsersMarkerTurnsNothingOn) {
    if (geteuid() != 0) GTEST_SKIP() << "only the superuser can give a file to somebody else";
    for (const bool duRepertoire : {false, true}) {
        const test::RepertoireDeTrace repertoire;
        repertoire.PoseMarqueur();
        const fs::path autre = duRepertoire ? repertoire.KvTemp() : repertoire.Marqueur();
        ASSERT_EQ(chown(autre.c_str(), 65534, 65534), 0);
        EXPECT_FALSE(LaisseUneTrace(repertoire)) << autre;
    }
}

TEST(TraceService, OneComputationOfTheProcessTraces) {
    const test::RepertoireDeTrace repertoire;
    repertoire.PoseMarqueur();
    {
        kv::Trace enCours;
        enCours.Ouvre();
        EXPECT_TRUE(enCours.m_bTrace);
        enCours.Ligne(u"1:Calcul");
        kv::Lance(*Hote("1AJ=33333"), nullptr, true, -1.0);  // neither writes into the file nor deletes it
        EXPECT_EQ(repertoire.Lignes().size(), 1u);
    }
    EXPECT_TRUE(LaisseUneTrace(repertoire));
    EXPECT_GT(repertoire.Lignes().size(), 1u);
}

}  // namespace
