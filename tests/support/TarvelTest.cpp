#include "support/Tarvel.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/Plateforme.h"
#include "tests/Messages.h"

namespace {

using kv::Service;
using test::Messages;

TEST(Tarvel, TheGuardReportsToTheLogThenToTheUser) {
    const Messages messages;
    EXPECT_EQ(kv::Protege(
                  "Calcul/essai", [] { return 7; }, -1),
              7);
    EXPECT_TRUE(messages.Recus().empty());

    const auto echoue = []() -> int { throw std::runtime_error("solde n\xC3\xA9gatif"); };
    const int rendu = kv::Protege("Calcul/essai", echoue, -1);
    const std::string debut = "(Calcul/essai ligne : " + std::to_string(__LINE__ - 1) + ") : ";
    EXPECT_EQ(rendu, -1);
    const std::vector<Messages::Message> attendus = {{Service::Error, debut + "solde n\xC3\xA9gatif"},
                                                     {Service::DisplayException, "solde n\xC3\xA9gatif"}};
    EXPECT_EQ(messages.Recus(), attendus);
}

TEST(Tarvel, TheGuardHoldsWhateverIsThrown) {
    const Messages messages;
    kv::Protege("Calcul/essai", [] { throw 42; });
    ASSERT_EQ(messages.Recus().size(), 2u);
    const auto& [erreur, affichage] = std::pair(messages.Recus()[0], messages.Recus()[1]);
    EXPECT_EQ(erreur.service, Service::Error);
    EXPECT_EQ(affichage.service, Service::DisplayException);
    EXPECT_FALSE(affichage.texte.empty());
    EXPECT_TRUE(erreur.texte.starts_with("(Calcul/essai ligne : ") && erreur.texte.ends_with(") : " + affichage.texte));
}

TEST(Tarvel, ARedirectionThatThrowsLosesNothing) {
    kv::RedirigeMessages([](Service, const char16_t*, void*) { throw std::runtime_error("panne"); }, nullptr);
    testing::internal::CaptureStderr();
    CLogging::Error(u"un");
    NUBDisplayException(std::runtime_error("deux"), 1, u"Calcul/essai", nullptr);
    NUBErreur(u"trois\u00E9");
    kv::RedirigeMessages(nullptr, nullptr);
    NUBErreur(std::u16string(u"quatre"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "un\ndeux\ntrois\xC3\xA9\nquatre\n");
}

// The device takes every line and keeps none.
TEST(Tarvel, ALostTraceLineIsReportedOncePerFile) {
    const std::filesystem::path lien = std::filesystem::path(testing::TempDir()) / "kv_trace_lien";
    std::filesystem::remove(lien);
    std::filesystem::create_symlink("/dev/null", lien);
    const Messages messages;
    for (int fois = 0; fois < 2; ++fois)
        for (const std::u16string& fichier : {std::u16string(u"/dev/full"), kv::Texte(lien)})
            WriteLog(fichier, u"1:Calcul");
    std::filesystem::remove(lien);
    const std::vector<Messages::Message> attendus = {
        {Service::Error, "Trace impossible : /dev/full"},
        {Service::Error, "Trace impossible : " + lien.string()}};  // a link is not followed
    EXPECT_EQ(messages.Recus(), attendus);
}

}  // namespace
