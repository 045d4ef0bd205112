// What a station plays: the rules as properties over many draws, first the choice by itself, then the service's lists.

#include "serverfixture.h"

#include "server/demolibrary.h"

#include <fstream>
#include <map>
#include <random>

namespace velmora::server {
namespace {

constexpr int draws = 400;

Random seeded(unsigned seed)
{
    return [engine = std::make_shared<std::mt19937>(seed)](uint32_t bound) {
        return std::uniform_int_distribution<uint32_t>(0, bound - 1)(*engine);
    };
}

std::vector<Candidate> candidates()
{
    // Ten artists with three tracks each; artists 1 to 5 play "folk", the others "rock".
    std::vector<Candidate> all;
    for (int64_t artist = 1; artist <= 10; ++artist) {
        for (int64_t song = 0; song < 3; ++song)
            all.push_back({artist * 10 + song, artist, artist <= 5 ? "folk" : "rock", song == 0 ? "calm" : "bright",
                           artist <= 5 ? 90 : 150});
    }
    return all;
}

TEST(ChoiceTest, OneArtistAloneMayFollowItself)
{
    const std::vector<Candidate> one = {{11, 1, "folk", "calm", 90}, {12, 1, "folk", "calm", 90}};
    EXPECT_EQ(chooseNext({}, one, 1, {11}, seeded(1)).value().trackId, 12);
    EXPECT_FALSE(chooseNext({}, {}, 0, {}, seeded(1)));
}

TEST(ChoiceTest, TheSeedsStylePlaysItsArtistOftenestAndThumbsUpDrawMusicOfThatKind)
{
    const Random random = seeded(2);
    const auto byArtist = [&](const Taste &taste) {
        std::map<int64_t, int> counts;
        for (int i = 0; i < draws; ++i)
            ++counts[chooseNext(taste, candidates(), 0, {}, random)->artistId];
        return counts;
    };
    int folk = 0;
    std::map<int64_t, int> seeds = byArtist({{3}, {"folk"}, {"calm"}, {90}, {}, {}, {}});
    for (const auto &[artist, count] : seeds) {
        folk += artist <= 5 ? count : 0;
        EXPECT_TRUE(artist == 3 || count < seeds[3]) << artist;
    }
    EXPECT_GT(folk, draws * 9 / 10);
    const Taste plain{{}, {"folk"}, {}, {}, {}, {}, {}};
    Taste liked = plain;
    liked.likedArtists = {2};
    EXPECT_GT(byArtist(liked)[2], byArtist(plain)[2] * 3 / 2);
}

TEST(ChoiceTest, HalfOfWhatFitsPassesBeforeATrackComesBack)
{
    // Also where one artist has nearly all of it: the station's other artist does not come back every second track.
    std::vector<Candidate> lopsided = candidates();
    for (int64_t song = 0; song < 4; ++song)
        lopsided.push_back({200 + song, 20, "jazz", "calm", 70});
    lopsided.push_back({300, 30, "jazz", "calm", 70});
    const Taste jazz{{}, {"jazz"}, {}, {}, {}, {}, {}};
    for (const auto &[taste, all, half] : {std::tuple(Taste{}, candidates(), 15), {jazz, lopsided, 2}}) {
        const Random random = seeded(4);
        std::vector<int64_t> recent;
        std::vector<int64_t> fitting;
        int64_t lastArtist = 0;
        for (int i = 0; i < draws; ++i) {
            const Choice choice = chooseNext(taste, all, lastArtist, recent, random).value();
            EXPECT_NE(choice.artistId, lastArtist) << i;
            lastArtist = choice.artistId;
            recent.push_back(choice.trackId);
            if (choice.reasons == std::vector{Reason::Change})
                continue;
            const auto from = fitting.end() - std::min<ptrdiff_t>(half, std::ssize(fitting));
            EXPECT_EQ(std::find(from, fitting.end(), choice.trackId), fitting.end()) << i;
            fitting.push_back(choice.trackId);
        }
        EXPECT_GT(std::ssize(fitting), draws / 3);
    }
}

TEST(ChoiceTest, ReasonsAreWhatTheTrackSharesWithTheTaste)
{
    const Taste taste{{3}, {"folk"}, {"calm"}, {90}, {}, {4}, {}};
    const std::pair<Candidate, std::vector<Reason>> cases[] = {
        {{1, 3, "folk", "calm", 92}, {Reason::Artist, Reason::Style, Reason::Mood, Reason::Tempo}},
        {{2, 1, "folk", "bright", 150}, {Reason::Style}},
        {{3, 4, "rock", "bright", 150}, {Reason::Liked}},
        {{4, 9, "rock", "bright", 90}, {}},
        {{5, 9, "rock", "calm", 0}, {Reason::Mood}},
    };
    for (const auto &[candidate, reasons] : cases)
        EXPECT_EQ(reasonsFor(taste, candidate), reasons) << candidate.trackId;
}

TEST(ChoiceTest, TraitsAreAsciiAndEveryReasonIsKeptByItsId)
{
    for (const Reason reason :
         {Reason::Artist, Reason::Style, Reason::Mood, Reason::Tempo, Reason::Liked, Reason::Mix, Reason::Change}) {
        const std::string text = traitText(reason, "Électro", "süß", 72);
        EXPECT_FALSE(text.empty());
        EXPECT_TRUE(std::all_of(text.begin(), text.end(), [](unsigned char c) { return c >= ' ' && c < 0x7f; }))
            << text;
        EXPECT_EQ(reasonOf(traitId(reason)), reason);
    }
    EXPECT_EQ(traitText(Reason::Style, "Électro", "", 0), "an electro style");
    EXPECT_EQ(traitText(Reason::Mood, "", "明るい", 0), "a kindred mood");
}

class PlaylistTest : public ServerTest {
protected:
    // Track names of so many lists, in order.
    std::vector<json> tracks(const std::string &user, const std::string &station, int lists)
    {
        std::vector<json> all;
        for (int i = 0; i < lists; ++i) {
            for (const json &entry : list("getPlaylist", {{"stationToken", station}}, user, "entries")) {
                if (entry.at("type") == "track")
                    all.push_back(entry.at("track"));
            }
        }
        return all;
    }
    // Whether the song is among those of forty lists.
    bool isHeard(const std::string &user, const std::string &station, const json &song)
    {
        const std::vector<json> heard = tracks(user, station, 40);
        return std::any_of(heard.begin(), heard.end(),
                           [&](const json &t) { return t["songName"] == song["songName"]; });
    }
};

TEST_F(PlaylistTest, EveryListHasFourEntriesOneAdAndNeverBeginsWithIt)
{
    const std::string user = newListener();
    std::set<ptrdiff_t> places;
    for (int round = 0; round < 12; ++round) {
        const std::string station = addStation(user, "folk");
        for (int list = 0; list < 3; ++list) {
            const json entries = data("getPlaylist", {{"stationToken", station}}, user).at("entries");
            ASSERT_EQ(entries.size(), 4u);
            const auto isAd = [](const json &entry) { return entry.at("type") == "ad"; };
            EXPECT_EQ(std::count_if(entries.begin(), entries.end(), isAd), 1);
            places.insert(std::find_if(entries.begin(), entries.end(), isAd) - entries.begin());
        }
        data("deleteStation", {{"stationToken", station}}, user);
    }
    EXPECT_EQ(places, (std::set<ptrdiff_t>{1, 2, 3}));
}

TEST_F(PlaylistTest, TheSameArtistNeverPlaysTwiceInARowAcrossTheEndsOfListsToo)
{
    const std::string user = newListener();
    for (const std::string &station : {addStation(user, "folk"), tapestryToken(user)}) {
        std::string last;
        for (const json &track : tracks(user, station, 40)) {
            EXPECT_NE(track.at("artistName"), last);
            last = track.at("artistName");
        }
    }
}

TEST_F(PlaylistTest, ATrackWithAThumbDownDoesNotComeBackOnThatStation)
{
    const std::string user = newListener();
    const std::string station = addStation(user, "rock");
    const json track = firstTrack(user, station);
    data("addFeedback", {{"trackToken", track["trackToken"]}, {"isPositive", false}}, user);
    EXPECT_FALSE(isHeard(user, station, track));
    data("addFeedback", {{"trackToken", track["trackToken"]}, {"isPositive", true}}, user);
    const std::vector<json> after = tracks(user, station, 40);
    const auto found =
        std::find_if(after.begin(), after.end(), [&](const json &t) { return t["songName"] == track["songName"]; });
    ASSERT_NE(found, after.end()) << "the latest thumb counts";
    EXPECT_EQ(found->at("songRating"), 1);
}

TEST_F(PlaylistTest, AThumbUpDrawsMusicOfItsKindAndTheExplanationSaysSo)
{
    const std::string user = newListener();
    const std::string tapestry = tapestryToken(user); // without other stations: a mix of everything
    const auto styles = [&] {
        std::set<std::string> heard;
        for (const json &track : tracks(user, tapestry, 20))
            heard.insert(track.at("style"));
        return heard;
    };
    EXPECT_EQ(styles().size(), 4u);
    const json track = firstTrack(user, tapestry);
    const json thumb = {{"trackToken", track["trackToken"]}, {"isPositive", true}};
    data("addFeedback", thumb, user);
    EXPECT_EQ(styles(), std::set<std::string>{track["style"]});
    const json traits =
        data("explainTrack", {{"trackToken", firstTrack(user, tapestry)["trackToken"]}}, user).at("traits");
    EXPECT_EQ(traits.at(0).at("traitText"), "a likeness to music that you gave a thumbs up");
}

TEST_F(PlaylistTest, ASleepingTrackStaysAwayForAMonthFromEveryStation)
{
    const std::string user = newListener();
    const std::string station = addStation(user, "rock");
    const json track = firstTrack(user, station);
    data("sleepSong", {{"trackToken", track["trackToken"]}}, user);
    EXPECT_FALSE(isHeard(user, station, track));
    EXPECT_FALSE(isHeard(user, tapestryToken(user), track));
    *m_now += 30 * 24 * 3600 - 1;
    const std::string later = logIn(miraName, addDevice());
    EXPECT_FALSE(isHeard(later, station, track));
    *m_now += 1;
    EXPECT_TRUE(isHeard(later, station, track));
}

TEST_F(PlaylistTest, BookmarksAreKept)
{
    const std::string user = newListener();
    const json track = firstTrack(user, tapestryToken(user));
    for (int i = 0; i < 2; ++i) {
        data("addSongBookmark", {{"trackToken", track["trackToken"]}}, user);
        data("addArtistBookmark", {{"trackToken", track["trackToken"]}}, user);
    }
    const Feedback::Bookmarks kept = m_service->feedback.bookmarks(idOf());
    ASSERT_EQ(kept.tracks.size(), 1u);
    ASSERT_EQ(kept.artists.size(), 1u);
    EXPECT_EQ(m_service->catalogue.track(kept.tracks[0])->song, track.at("songName"));
    EXPECT_EQ(m_service->catalogue.artistName(kept.artists[0]), track.at("artistName"));
}

TEST_F(PlaylistTest, TheExplanationNamesWhatTheTrackWasChosenBy)
{
    const std::string user = newListener();
    const std::string station = addStation(user, "folk");
    for (const json &track : tracks(user, station, 10)) {
        const json traits = data("explainTrack", {{"trackToken", track["trackToken"]}}, user).at("traits");
        ASSERT_FALSE(traits.empty());
        const bool namesStyle =
            std::any_of(traits.begin(), traits.end(), [](const json &t) { return t["traitText"] == "a folk style"; });
        EXPECT_EQ(namesStyle, track.at("style") == "folk");
    }
}

TEST_F(PlaylistTest, OnlyTracksWithAFileArePlayedAndNoneIsAClearError)
{
    const std::string user = newListener();
    const std::string station = addStation(user, "folk");
    for (const Track &track : smallCatalogue({})) {
        if (track.style != "folk" || track.publicId != "folk-00")
            m_service->catalogue.setTrackPlayable(track.publicId, false, 0);
    }
    const std::vector<json> heard = tracks(user, station, 3);
    EXPECT_EQ(heard.size(), 3u) << "a growing catalogue does not repeat a track within a list";
    for (const json &track : heard)
        EXPECT_EQ(track.at("songName"), "Song folk-00");
    data("sleepSong", {{"trackToken", heard[0]["trackToken"]}}, user);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(call("getPlaylist", {{"stationToken", station}}, user).code, 5000);
    EXPECT_GT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(550))
        << "it waits for the first track";
}

TEST_F(PlaylistTest, AStationOfWhichNothingIsLeftSaysSo)
{
    const std::string user = newListener();
    const AccountId mira = idOf();
    const std::string station = addStation(user, "folk");
    const int64_t id = m_service->stations.find(mira, station)->id;
    for (const Track &track : smallCatalogue({}))
        m_service->feedback.rate({"", mira, id, *m_service->catalogue.track(track.publicId), {}}, false);
    EXPECT_EQ(call("getPlaylist", {{"stationToken", station}}, user).code, 5002);
}

// The service's side of the demo catalogue, with a script in place of the program that makes the music.
class DemoLibraryTest : public ServerTest {
protected:
    // A folder with its description: a track of style "a" whose file is there, one of style "b", and an ad.
    DemoLibraryTest()
    {
        json tracks = json::array();
        for (const std::string style : {"a", "b"})
            tracks.push_back({{"id", style + "-1"},
                              {"file", "music/" + style + ".flac"},
                              {"picture", "cover.png"},
                              {"song", "Song " + style},
                              {"artist", "Artist"},
                              {"album", "Album"},
                              {"style", style},
                              {"mood", "calm"},
                              {"year", 2001},
                              {"tempo", 90},
                              {"durationSeconds", 60}});
        const json ad = {{"id", "an-ad"},    {"file", "ad.flac"}, {"picture", "ad.png"},
                         {"title", "Title"}, {"line2", "Line"},   {"durationSeconds", 8}};
        std::filesystem::create_directories(m_folder / "music");
        write("catalogue.json", json{{"tracks", tracks}, {"ads", {ad}}}.dump());
        write("music/a.flac", std::string(6000, 'x'));
    }
    void write(const std::string &name, const std::string &text) { std::ofstream(m_folder / name) << text; }
    // The script gets the folder as its last argument.
    std::unique_ptr<DemoLibrary> start(const std::string &script)
    {
        const std::filesystem::path program = m_directory.path() / "program";
        std::ofstream(program) << "#!/bin/sh\nfor folder; do :; done\n" << script;
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        auto library = std::make_unique<DemoLibrary>(m_service->catalogue, DemoLibrary::Settings{program, m_folder, 7},
                                                     [this](const std::string &line) {
                                                         const std::lock_guard guard(m_mutex);
                                                         m_lines.push_back(line);
                                                     });
        library->start();
        return library;
    }
    bool waitForLine(const std::string &line)
    {
        return m_service->catalogue.waitUntil(
            [&] {
                const std::lock_guard guard(m_mutex);
                return std::find(m_lines.begin(), m_lines.end(), line) != m_lines.end();
            },
            std::chrono::seconds(60));
    }

    const std::filesystem::path m_folder = m_service->dataDirectory() / "demo";
    std::mutex m_mutex; // guards m_lines
    std::vector<std::string> m_lines;
};

TEST_F(DemoLibraryTest, WhatTheProgramMakesIsPlayedAndItsWishesReachIt)
{
    // It makes "b" once somebody wants it, says so with the arguments it got, and then waits for the end of its input.
    const auto library = start(R"(
[ "$1 $2 $3" = "--each 7 --attended" ] || exit 1
echo ready
read style; read end
[ "$style" = b ] && [ -z "$end" ] || exit 1
printf '%3000s' x >"$folder/music/b.flac"
echo made ad.flac; echo failed music/c.flac; echo made music/unknown.flac; echo made music/b.flac
cat >/dev/null
)");
    const Counts before = m_service->catalogue.counts();
    EXPECT_TRUE(before.playable == 1 && before.total == 2) << "nothing but what is described is left";
    m_service->catalogue.want({"b"});
    ASSERT_TRUE(waitForLine("demo catalogue: 2 of 2 tracks"));
    EXPECT_EQ(m_service->catalogue.track("b-1")->bitrate, 400);
    EXPECT_TRUE(m_service->catalogue.track("b-1")->isPlayable && m_service->catalogue.ad("an-ad")->isPlayable);
    EXPECT_EQ(m_lines.front(), "demo catalogue: cannot make " + (m_folder / "music/c.flac").string());
    library->stop();
    EXPECT_EQ(m_lines.size(), 2u) << "an ordered end is no problem";
}

TEST_F(DemoLibraryTest, AProgramThatEndsEarlyOrDoesNotRunIsSaidAndWhatIsThereIsPlayed)
{
    {
        const auto library = start("echo ready; kill -9 $$");
        EXPECT_TRUE(waitForLine("demo catalogue: " + (m_directory.path() / "program").string() +
                                " has ended early; no more music is made"));
    }
    const auto library = start("exit 3");
    EXPECT_TRUE(waitForLine("demo catalogue: " + (m_directory.path() / "program").string() +
                            " does not run; no more music is made"));
    EXPECT_EQ(m_service->catalogue.counts().playable, 1);
    write("catalogue.json", "{\"tracks\": [{}]}");
    const auto damaged = start("echo ready; echo done");
    EXPECT_TRUE(waitForLine("demo catalogue: " + (m_folder / "catalogue.json").string() + " is missing or damaged"));
    EXPECT_EQ(m_service->catalogue.counts().total, 2) << "the catalogue stays as it was";
}

} // namespace
} // namespace velmora::server
