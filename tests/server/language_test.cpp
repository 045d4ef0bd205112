// The languages of the pages: which one a browser gets, and what a catalogue gives.
#include "server/web/language.h"

#include <gtest/gtest.h>

#include <thread>

namespace velmora::server {

TEST(Language, TheBrowsersBestLanguageIsTakenWhateverItSends)
{
    const std::pair<const char *, const char *> cases[] = {
        {"", "en"},
        {"de", "de"},
        {"de-CH,de;q=0.9,en;q=0.8", "de"},
        {"sv, nl;q=0.5, fr;q=0.7", "fr"},
        {"EN-gb;q=0.2, AR-eg;q=0.3", "ar"},
        {"ja;q=0", "en"},
        {"en, de", "en"},
        {"*", "en"},
        {"pl;q=1.5, it;q=0.1", "it"},
        {"de;q=", "en"},
        {",,;;=, es ;q=0.4 ,", "es"},
        {"../../etc/passwd, zh", "en"},
    };
    for (const auto &[header, code] : cases)
        EXPECT_EQ(acceptedLanguage(header).code, code) << header;
    EXPECT_EQ(acceptedLanguage(std::string(100'000, ',') + "pl").code, "pl");
    EXPECT_EQ(findLanguage("DE"), nullptr);
    EXPECT_TRUE(findLanguage("ar")->isRightToLeft);
}

TEST(Language, EachThreadHasItsOwn)
{
    const InLanguage outer(*findLanguage("de"));
    EXPECT_EQ(say("Your account"), "Ihr Konto");
    std::thread([] {
        EXPECT_EQ(say("Your account"), "Your account");
        const InLanguage inner(*findLanguage("ar"));
        EXPECT_NE(say("Your account"), "Your account");
    }).join();
    {
        const InLanguage inner(*findLanguage("en"));
        EXPECT_EQ(say("Your account"), "Your account");
    }
    EXPECT_EQ(say("Your account"), "Ihr Konto");
}

TEST(Language, NumbersMomentsAndValuesStandWhereTheLanguageHasThem)
{
    const auto wait = [](const char *code, int seconds) {
        const InLanguage in(*findLanguage(code));
        return sayMany("Too many tries. Please wait a second.", "Too many tries. Please wait {1} seconds.", seconds);
    };
    EXPECT_EQ(wait("en", 1), "Too many tries. Please wait a second.");
    EXPECT_EQ(wait("en", 30), "Too many tries. Please wait 30 seconds.");
    EXPECT_NE(wait("pl", 2), wait("pl", 5));
    EXPECT_NE(wait("pl", 5).find("5 sekund."), std::string::npos);
    constexpr int64_t noon = 1'795'521'600; // 24 November 2026 in every time zone of Europe
    EXPECT_EQ(sayTime(noon).substr(0, 10), "2026-11-24");
    const InLanguage in(*findLanguage("de"));
    EXPECT_EQ(sayTime(noon).substr(0, 10), "24.11.2026");
    EXPECT_EQ(say("A text of no catalogue: {1}.", "{2}", "x"), "A text of no catalogue: {2}."); // values stay values
}

} // namespace velmora::server
