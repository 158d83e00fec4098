#include "tools/Retour.h"

#include <gtest/gtest.h>

#include <map>

namespace {

// The message for a text that must not be accepted begins with its line and names what is wrong.
void Refuse(const std::string& json, int ligne, const std::string& mention, int premiereLigne = 1) {
    try {
        outil::LisRetour(json, "retour.json", premiereLigne);
        ADD_FAILURE() << json << " is accepted";
    } catch (const outil::ErreurEntree& e) {
        const std::string message = e.what();
        EXPECT_TRUE(message.starts_with("retour.json:" + std::to_string(ligne) + ": ")) << json << " -> " << message;
        EXPECT_NE(message.find(mention), std::string::npos) << json << " -> " << message;
    }
}

TEST(LectureRetour, UnknownAndRepeatedKeysAreNamedWithTheirLine) {
    Refuse("{\"entries\": {\n\"1AJ\": 1,\n\"1ZZ\": 1}}", 3, "1ZZ");
    Refuse(R"({"entries": {"1aj": 1}})", 1, "1aj");
    Refuse("{\"entries\": {},\n\"entrees\": {}}", 2, "entrees");
    Refuse("{\"entries\": {\"1AJ\": 1,\n\n\"1AJ\": 2}}", 3, "1AJ");
    Refuse("{\"entries\": {},\n\"entries\": {}}", 2, "entries");
    Refuse(R"({"ti": {"5HC": 1}})", 1, "entries");  // the one key that a return must have
    Refuse(R"({"entries": {"1ZZ": 1}})", 7, "1ZZ", 7);
    Refuse(R"({"entries": {"ti.5HC": 1}})", 1, "unknown entry box ti.5HC");  // it has a section of its own
    Refuse(R"({"entries": {"1AJ\u0000": 1}})", 1, "zero character");
}

TEST(LectureRetour, ValuesAreWholeNumbersOf32Bits) {
    for (const std::string valeur : {"1.5", "1e3", "2147483648", "-2147483649", "18446744073709551615", "\"12\"",
                                     "true", "99999999999999999999", "null", "[1]", "{\"4\": 1}"})
        Refuse("{\"entries\": {\"1AJ\": " + valeur + "}}", 1, "1AJ");
    Refuse("{\n\"entries\": {\n\"1AJ\": 1.5\n}\n}", 3, "1AJ");  // the line of the value, not the next one
}

TEST(LectureRetour, CompanionsBelongToTheirBoxes) {
    for (const std::string section : {"ti", "tix", "tiy", "tk", "tkz"})
        Refuse("{\"entries\": {}, \"" + section + "\": {\"1AJ\": 1}}", 1, "1AJ");
    Refuse(R"({"entries": {}, "quotients": {"1AK": {"4": 1}}})", 1, "1AK");
    for (const std::string montants : {"5", "{\"x\": 1}", "{\"4.5\": 1}", "{\"99999999999\": 1}", "{\"4\": {\"5\": 1}}",
                                       "{\"4\": 1, \"04\": 2}", "{\"4\": 1, \" 4\": 2}"})  // the same one twice
        Refuse("{\"entries\": {}, \"quotients\": {\"1AJ\": " + montants + "}}", 1, "1AJ");
}

TEST(LectureRetour, StructureAndSettings) {
    for (const char* json : {"", "[]", "12", "{\"entries\": {\"1AJ\": 1", "{\"entries\": {}} x", "{\"entries\": 01}"})
        Refuse(json, 1, "");
    for (const char* json : {"{\"entries\": 5}", "{\"entries\": [1]}"}) Refuse(json, 1, "entries");
    for (const std::string reglage :
         {"launch\": \"other\"", "launch\": 1", "launch\": {\"normal\": 1}", "indexation\": \"2\"",
          "period\": \"2017-01-01\"", "period\": [\"2017-01-01\"]",
          "period\": [\"2017-01-01\", \"2017-06-30\", \"2017-12-31\"]", "period\": [[\"2017-01-01\", \"2017-12-31\"]]",
          "period\": {\"2017-01-01\": 1}", "period\": [\"2017-02-30\", \"2017-12-31\"]"})
        Refuse("{\"entries\": {}, \"" + reglage + "}", 1, reglage.substr(0, reglage.find('"')));
    Refuse("{\"entries\": {}, \"period\": [\"2017-01-01\",\n\"2017-13-01\"]}", 2, "2017-13-01");
}

// Interest of 1 000 from abroad: wherever the options apply, one of them is shown. The flat tax gives a credit for the
// foreign tax, 12.8 %, in a launch that is only forced; elsewhere the scale, with its own credit, may be the cheaper.
TEST(LectureRetour, EachLaunchSetsItsSwitches) {
    const struct {
        const char* lancement;
        std::int32_t sansOption, avecOption, credit;  // options shown, unticked and ticked; the credit
    } cas[] = {{"normal", 0, 0, 0}, {"options", 0, 1, 0}, {"forced", 1, 1, 128}, {"forced-options", 1, 1, 0}};
    for (const auto& c : cas) {
        for (const bool coche : {false, true}) {
            kv::Return retour =
                outil::LisRetour(R"({"entries": {"1AJ": 60000, "2TR": 1000, "PFU": )" + std::to_string(coche) +
                                     R"(}, "tk": {"2TR": 1000}, "launch": ")" + c.lancement + "\"}",
                                 "r");
            retour.compute();
            EXPECT_EQ(retour["PFU"] + retour["BAR"], coche ? c.avecOption : c.sansOption) << c.lancement;
            EXPECT_EQ(retour["D_CREDIT_PFU2"], c.credit) << c.lancement;
        }
    }
}

TEST(LectureRetour, EachValueGoesWhereItBelongs) {
    const kv::Return retour = outil::LisRetour(R"({
        "entries": {"M": 1, "1AJ": 2147483647, "1BJ": -2147483648, "Z1": 20170315, "1AK": -2147483647},
        "ti": {"5HC": 1}, "tix": {"5HC": 2}, "tiy": {"5HC": 3}, "tk": {"5AK": 4}, "tkz": {"5AK": 5},
        "quotients": {"1AJ": {"4": 10000, "-3": 7}, "5HC": {"0": -8}},
        "launch": "options", "indexation": 1.5, "period": ["2017-07-01", "31/12/2017"]
    })",
                                               "retour.json");
    const std::map<std::string, std::int32_t> attendus = {{"M", 1},
                                                          {"1AJ", 2147483647},
                                                          {"1BJ", -2147483647 - 1},
                                                          {"Z1", 20170315},
                                                          {"1AK", KV_UNSET},
                                                          {"ti.5HC", 1},
                                                          {"tix.5HC", 2},
                                                          {"tiy.5HC", 3},
                                                          {"tk.5AK", 4},
                                                          {"tkz.5AK", 5},
                                                          {"quotient.4.1AJ", 10000},
                                                          {"quotient.-3.1AJ", 7},
                                                          {"quotient.0.5HC", -8}};
    for (const auto& [nom, valeur] : attendus) EXPECT_EQ(retour.get(nom), valeur) << nom;
    std::size_t remplis = retour.exceptional().size();
    for (kv_area aire = KV_AREA_ENTRY; aire <= KV_AREA_TKZ; ++aire)
        for (std::int32_t i = 0; i < kv::count(KV_ENTRY); ++i)
            if (std::int32_t valeur = 0; kv_get_box(retour.handle(), aire, i, &valeur) == KV_OK) remplis += valeur != 0;
    EXPECT_EQ(remplis, attendus.size());
    EXPECT_EQ(retour.launch(), KV_LAUNCH_OPTIONS);
    EXPECT_EQ(retour.indexation(), 1.5);
    EXPECT_EQ(retour.period().first, 20170701);
    EXPECT_EQ(retour.period().last, 20171231);

    const kv::Return simple = outil::LisRetour("{\"entries\": {}, \"indexation\": -1, \"launch\": \"normal\"}\n", "r");
    EXPECT_EQ(simple.launch(), KV_LAUNCH_NORMAL);
    EXPECT_EQ(simple.indexation(), -1.0);
    EXPECT_EQ(simple.period().first, 20170101);
    EXPECT_EQ(simple.period().last, 20171231);
}

}  // namespace
