// Search: folding, words matched by their beginning and inside, odd input, the limit of results, a large catalogue.

#include "serverfixture.h"

#include "server/catalogue/searchtext.h"

namespace velmora::server {
namespace {

TEST(FoldingTest, CaseMarksAndLettersWithStrokesFold)
{
    const std::pair<const char *, const char *> cases[] = {
        {"Paper Boats", "paper boats"},
        {"ÉLISE Ångström Dvořák", "elise angstrom dvorak"},
        {"e\xcc\x81lise", "elise"}, // a letter and a combining mark
        {"Straße Łódź Bjørn Æther œuvre", "strasse lodz bjorn aether oeuvre"},
        {"İstanbul ılık", "istanbul ilik"},
        {"Don't don’t", "dont dont"},
        {"AC/DC (live) - 7\"", "ac dc live 7"},
        {"ﬁne ２０", "fine 20"},
        {"ВЕСНА Ёлка", "весна елка"},
        {"🎵🎶 song", "🎵🎶 song"},
        {"👍🏽", "👍"},
        {"  ... \t\n ** ", ""},
        {"a\xff\xfe"
         "b",
         "a b"},
    };
    for (const auto &[text, folded] : cases)
        EXPECT_EQ(foldedText(text), folded) << text;
}

TEST(FoldingTest, CharactersAreCountedNotBytes)
{
    EXPECT_EQ(firstCharacters("äöü", 2), "äö");
    EXPECT_EQ(firstCharacters("ab", 9), "ab");
    EXPECT_EQ(characterCount("ä🎵b"), 3u);
}

class SearchTest : public ServerTest {
protected:
    void add(const std::string &song, const std::string &artist)
    {
        Track track;
        track.publicId = "s" + std::to_string(m_added++);
        track.song = song;
        track.artist = artist;
        track.album = "Album";
        track.style = "folk";
        m_service->catalogue.put(std::vector{track});
    }
    std::vector<std::string> songs(const std::string &text)
    {
        std::vector<std::string> names;
        for (const FoundTrack &track : m_service->search.find(text).tracks)
            names.push_back(track.song);
        return names;
    }
    std::vector<std::string> artists(const std::string &text)
    {
        std::vector<std::string> names;
        for (const FoundArtist &artist : m_service->search.find(text).artists)
            names.push_back(artist.name);
        return names;
    }
    int m_added = 0;
    using Names = std::vector<std::string>;
};

TEST_F(SearchTest, WordsAreFoundFromTheirBeginningAndInside)
{
    add("Blue River Lullaby", "Dvořák Brothers");
    add("Don't Look Down", "The Quiet Tide");
    EXPECT_EQ(songs("river"), Names{"Blue River Lullaby"});
    EXPECT_EQ(songs("RIV lull"), Names{"Blue River Lullaby"});
    EXPECT_EQ(songs("llab"), Names{"Blue River Lullaby"}) << "inside a word";
    EXPECT_EQ(songs("ri"), Names{"Blue River Lullaby"}) << "two letters match the beginning of a word";
    EXPECT_EQ(songs("iv"), Names{}) << "two letters do not match inside a word";
    EXPECT_EQ(songs("dont look"), Names{"Don't Look Down"});
    EXPECT_EQ(songs("don’t"), Names{"Don't Look Down"});
    EXPECT_EQ(artists("dvorak"), Names{"Dvořák Brothers"});
    EXPECT_EQ(artists("DVOŘ bro"), Names{"Dvořák Brothers"});
    EXPECT_EQ(songs("river dvorak"), Names{"Blue River Lullaby"}) << "a word of the song and one of the artist";
    EXPECT_EQ(songs("dvorak"), Names{}) << "an artist's name alone finds the artist";
    EXPECT_EQ(songs("river quiet"), Names{});
}

TEST_F(SearchTest, AnExactNameComesFirstThenMatchesAtABeginningThenInside)
{
    add("Overtones", "A");
    add("Tones of Evening", "B");
    add("Tones", "C");
    EXPECT_EQ(songs("tones"), (Names{"Tones", "Tones of Evening", "Overtones"}));
}

TEST_F(SearchTest, NothingIsReadAsAQueryLanguage)
{
    add("Paper Boats", "The Quiet Tide");
    add("And Or Not Near", "Star *");
    EXPECT_EQ(songs("\"paper\""), Names{"Paper Boats"});
    EXPECT_EQ(songs("paper*"), Names{"Paper Boats"});
    EXPECT_EQ(songs("song:paper"), Names{}) << "a word, not a column";
    EXPECT_EQ(songs("paper OR zebra"), Names{}) << "OR is a word too";
    EXPECT_EQ(songs("and or not near"), Names{"And Or Not Near"});
    for (const char *odd : {"\"",
                            "\"\"\"",
                            "*",
                            "^paper(",
                            "NEAR(",
                            "'; DROP TABLE tracks; --",
                            "paper\" OR \"zebra",
                            "{song} : x",
                            "%",
                            "_",
                            "\\",
                            "-",
                            "+",
                            "()",
                            "\x01",
                            "\xff\xff",
                            "",
                            "   ",
                            "🎵",
                            "👍🏽👍🏽",
                            "\xf0\x9f"})
        EXPECT_NO_THROW(m_service->search.find(odd)) << odd;
    EXPECT_EQ(songs("%"), Names{});
    EXPECT_EQ(songs("_"), Names{});
}

TEST_F(SearchTest, SymbolsInNamesAreFound)
{
    add("🎵 Morning", "東京ベイ");
    EXPECT_EQ(songs("🎵"), Names{"🎵 Morning"});
    EXPECT_EQ(artists("東京"), Names{"東京ベイ"});
    EXPECT_EQ(artists("京ベイ"), Names{"東京ベイ"});
}

TEST_F(SearchTest, TenThousandCharactersAreAnsweredFromTheFirst256)
{
    add("Paper Boats", "The Quiet Tide");
    const std::string user = newListener();
    EXPECT_EQ(data("search", {{"text", "paper" + std::string(10000, ' ') + "zebra"}}, user).at("tracks").size(), 1u);
    EXPECT_EQ(data("search", {{"text", std::string(10000, 'x')}}, user).at("tracks").size(), 0u);
    std::string words;
    while (words.size() < 10000)
        words += "\" z";
    EXPECT_EQ(data("search", {{"text", words}}, user).at("tracks").size(), 0u);
}

TEST_F(SearchTest, AtMostFiftyOfEachAreGivenAndATokenStaysTheSame)
{
    for (int i = 0; i < 70; ++i)
        add("Common Name " + std::to_string(i), "Common Artist " + std::to_string(i));
    const std::string user = newListener();
    const json found = data("search", {{"text", "common"}}, user);
    EXPECT_EQ(found.at("tracks").size(), 50u);
    EXPECT_EQ(found.at("artists").size(), 50u);
    EXPECT_EQ(data("search", {{"text", "common"}}, user), found);
    EXPECT_EQ(call("createStation", {{"musicToken", found["artists"][0]["musicToken"]}}, user).code, 0);
}

TEST_F(SearchTest, AChangedTrackIsFoundByItsNewNameOnly)
{
    add("Old Name", "A");
    m_added = 0;
    add("New Name", "A");
    EXPECT_EQ(songs("old name"), Names{});
    EXPECT_EQ(songs("new name"), Names{"New Name"});
}

} // namespace
} // namespace velmora::server
