// What a station plays: the rules as properties over many draws, first the choice by itself, then the service's lists.

#include "serverfixture.h"

#include "server/catalogue/demolibrary.h"

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

TEST(ChoiceTest, TheSameArtistNeverPlaysTwiceInARowWhereThereIsAnother)
{
    const Random random = seeded(1);
    for (const Taste &taste :
         {Taste{}, Taste{{3}, {"folk"}, {"calm"}, {90}, {}, {}, {}}, Taste{{3}, {}, {}, {}, {}, {}, {}}}) {
        int64_t last = 0;
        for (int i = 0; i < draws; ++i) {
            const auto choice = chooseNext(taste, candidates(), last, {}, random);
            ASSERT_TRUE(choice);
            EXPECT_NE(choice->artistId, last);
            last = choice->artistId;
        }
    }
}

TEST(ChoiceTest, OneArtistAloneMayFollowItself)
{
    const std::vector<Candidate> one = {{11, 1, "folk", "calm", 90}, {12, 1, "folk", "calm", 90}};
    const auto choice = chooseNext({}, one, 1, {11}, seeded(1));
    ASSERT_TRUE(choice);
    EXPECT_EQ(choice->trackId, 12);
    EXPECT_FALSE(chooseNext({}, {}, 0, {}, seeded(1)));
}

TEST(ChoiceTest, TheSeedsStylePlaysAndItsArtistOftenest)
{
    const Random random = seeded(2);
    const Taste taste{{3}, {"folk"}, {"calm"}, {90}, {}, {}, {}};
    std::map<int64_t, int> byArtist;
    int folk = 0;
    for (int i = 0; i < draws; ++i) {
        const auto choice = chooseNext(taste, candidates(), 0, {}, random);
        ++byArtist[choice->artistId];
        folk += choice->artistId <= 5;
    }
    EXPECT_GT(folk, draws * 9 / 10);
    for (const auto &[artist, count] : byArtist)
        EXPECT_TRUE(artist == 3 || count < byArtist[3]) << artist;
}

TEST(ChoiceTest, ThumbsUpDrawMusicOfThatKind)
{
    const Random random = seeded(3);
    const auto countOf = [&](const Taste &taste) {
        int count = 0;
        for (int i = 0; i < draws; ++i)
            count += chooseNext(taste, candidates(), 0, {}, random)->artistId == 2;
        return count;
    };
    const Taste plain{{}, {"folk"}, {}, {}, {}, {}, {}};
    Taste liked = plain;
    liked.likedArtists = {2};
    EXPECT_GT(countOf(liked), countOf(plain) * 3 / 2);
}

TEST(ChoiceTest, HalfOfWhatFitsPassesBeforeATrackComesBack)
{
    const Random random = seeded(4);
    std::vector<int64_t> recent;
    std::map<int64_t, int> lastHeard;
    for (int i = 0; i < draws; ++i) {
        const auto choice = chooseNext({}, candidates(), 0, recent, random);
        const auto before = lastHeard.find(choice->trackId);
        EXPECT_TRUE(before == lastHeard.end() || i - before->second > 15) << i;
        lastHeard[choice->trackId] = i;
        recent.push_back(choice->trackId);
    }
}

TEST(ChoiceTest, ReasonsAreWhatTheTrackSharesWithTheTaste)
{
    const Taste taste{{3}, {"folk"}, {"calm"}, {90}, {}, {4}, {}};
    struct Case {
        Candidate candidate;
        std::vector<Reason> reasons;
    };
    const Case cases[] = {
        {{1, 3, "folk", "calm", 92}, {Reason::artist, Reason::style, Reason::mood, Reason::tempo}},
        {{2, 1, "folk", "bright", 150}, {Reason::style}},
        {{3, 4, "rock", "bright", 150}, {Reason::liked}},
        {{4, 9, "rock", "bright", 90}, {}},
        {{5, 9, "rock", "calm", 0}, {Reason::mood}},
    };
    for (const Case &c : cases)
        EXPECT_EQ(reasonsFor(taste, c.candidate), c.reasons) << c.candidate.trackId;
}

TEST(ChoiceTest, TraitsAreAsciiAndEveryReasonIsKeptByItsId)
{
    for (const Reason reason :
         {Reason::artist, Reason::style, Reason::mood, Reason::tempo, Reason::liked, Reason::mix, Reason::change}) {
        const std::string text = traitText(reason, "Électro", "süß", 72);
        EXPECT_FALSE(text.empty());
        EXPECT_TRUE(std::all_of(text.begin(), text.end(), [](unsigned char c) { return c >= ' ' && c < 0x7f; }))
            << text;
        EXPECT_EQ(reasonOf(traitId(reason)), reason);
    }
    EXPECT_EQ(traitText(Reason::style, "Électro", "", 0), "an electro style");
    EXPECT_EQ(traitText(Reason::mood, "", "明るい", 0), "a kindred mood");
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
};

TEST_F(PlaylistTest, EveryListHasFourEntriesOneAdAndNeverBeginsWithIt)
{
    const std::string user = newListener();
    std::set<int> places;
    for (int round = 0; round < 12; ++round) {
        const std::string station = addStation(user, "folk");
        for (int list = 0; list < 3; ++list) {
            const json entries = data("getPlaylist", {{"stationToken", station}}, user).at("entries");
            ASSERT_EQ(entries.size(), 4u);
            int ads = 0;
            for (size_t i = 0; i < 4; ++i) {
                if (entries[i].at("type") != "ad")
                    continue;
                ++ads;
                EXPECT_NE(i, 0u);
                places.insert(static_cast<int>(i));
            }
            EXPECT_EQ(ads, 1);
        }
        data("deleteStation", {{"stationToken", station}}, user);
    }
    EXPECT_EQ(places.size(), 3u);
}

TEST_F(PlaylistTest, ArtistsChangeAcrossTheEndsOfListsToo)
{
    const std::string user = newListener();
    const std::string station = addStation(user, "folk");
    std::string last;
    for (const json &track : tracks(user, station, 40)) {
        EXPECT_NE(track.at("artistName"), last);
        last = track.at("artistName");
    }
}

TEST_F(PlaylistTest, ATrackWithAThumbDownDoesNotComeBackOnThatStation)
{
    const std::string user = newListener();
    const std::string station = addStation(user, "rock");
    const json track = firstTrack(user, station);
    data("addFeedback", {{"trackToken", track["trackToken"]}, {"isPositive", false}}, user);
    for (const json &next : tracks(user, station, 40))
        EXPECT_NE(next.at("songName"), track.at("songName"));
    data("addFeedback", {{"trackToken", track["trackToken"]}, {"isPositive", true}}, user);
    const std::vector<json> after = tracks(user, station, 40);
    const auto found =
        std::find_if(after.begin(), after.end(), [&](const json &t) { return t["songName"] == track["songName"]; });
    ASSERT_NE(found, after.end()) << "the latest thumb counts";
    EXPECT_EQ(found->at("songRating"), 1);
}

TEST_F(PlaylistTest, ASleepingTrackStaysAwayForAMonthFromEveryStation)
{
    const std::string user = newListener();
    const std::string station = addStation(user, "rock");
    const json track = firstTrack(user, station);
    const auto isHeard = [&](const std::string &stationToken) {
        const std::vector<json> heard = tracks(user, stationToken, 40);
        return std::any_of(heard.begin(), heard.end(),
                           [&](const json &t) { return t["songName"] == track["songName"]; });
    };
    data("sleepSong", {{"trackToken", track["trackToken"]}}, user);
    EXPECT_FALSE(isHeard(station));
    EXPECT_FALSE(isHeard(tapestryToken(user)));
    *m_now += 30 * 24 * 3600 - 1;
    const std::string later = logIn("mira@example.org", addDevice());
    for (const json &next : tracks(later, station, 20))
        EXPECT_NE(next.at("songName"), track.at("songName"));
    *m_now += 1;
    const std::vector<json> awake = tracks(later, station, 40);
    EXPECT_TRUE(
        std::any_of(awake.begin(), awake.end(), [&](const json &t) { return t["songName"] == track["songName"]; }));
}

TEST_F(PlaylistTest, BookmarksAreKept)
{
    const std::string user = newListener();
    const json track = firstTrack(user, tapestryToken(user));
    for (int i = 0; i < 2; ++i) {
        data("addSongBookmark", {{"trackToken", track["trackToken"]}}, user);
        data("addArtistBookmark", {{"trackToken", track["trackToken"]}}, user);
    }
    const Feedback::Bookmarks kept = m_service->feedback.bookmarks(m_service->accounts.find("mira@example.org")->id);
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
    const AccountId mira = m_service->accounts.find("mira@example.org")->id;
    const std::string station = addStation(user, "folk");
    const int64_t id = m_service->stations.find(mira, station)->id;
    for (const Track &track : smallCatalogue({}))
        m_service->feedback.rate({"", mira, id, *m_service->catalogue.track(track.publicId), {}}, false);
    EXPECT_EQ(call("getPlaylist", {{"stationToken", station}}, user).code, 5002);
}

class DemoLibraryTest : public ServerTest {
protected:
    DemoSource source()
    {
        DemoSource source;
        for (const char *style : {"a", "a", "a", "b", "b", "c"}) {
            const std::string id = std::string(style) + std::to_string(source.tracks.size());
            source.tracks.push_back({id, "Song " + id, "Artist " + id, "Album", style, "calm", 2001, 90, 60});
        }
        source.ads.push_back({"an-ad", "Title", "Line", 8});
        const auto write = [this](const std::string &id, const std::filesystem::path &file) {
            const std::lock_guard guard(m_mutex);
            m_made.push_back(id);
            std::ofstream(file) << std::string(6000, 'x');
            return id != m_broken;
        };
        source.renderTrack = [write](const demo::DemoTrack &track, const std::filesystem::path &file) {
            return write(track.id, file);
        };
        source.renderAd = [write](const demo::DemoAd &ad, const std::filesystem::path &file) {
            return write(ad.id, file);
        };
        source.renderPicture = [](const std::string &, const std::filesystem::path &file) {
            std::ofstream(file) << "picture";
            return true;
        };
        return source;
    }

    std::mutex m_mutex;
    std::vector<std::string> m_made;
    std::vector<std::string> m_lines;
    std::string m_broken;
};

TEST_F(DemoLibraryTest, ATrackOfEveryStyleIsMadeFirstThenAdsThenTheRest)
{
    {
        DemoLibrary library(m_service->catalogue, source(), m_service->dataDirectory() / "demo",
                            [this](const std::string &line) {
                                const std::lock_guard guard(m_mutex);
                                m_lines.push_back(line);
                            });
        library.start();
        ASSERT_TRUE(m_service->catalogue.waitUntil([&] { return m_service->catalogue.counts().playable == 6; },
                                                   std::chrono::seconds(20)));
    }
    EXPECT_EQ(m_made, (std::vector<std::string>{"a0", "b3", "c5", "an-ad", "a1", "a2", "b4"}));
    EXPECT_EQ(m_lines.front(), "demo catalogue: 1 of 6 tracks");
    EXPECT_EQ(m_lines.back(), "demo catalogue: 6 of 6 tracks");
    EXPECT_EQ(m_service->catalogue.counts().total, 6) << "what is not in the catalogue any more has gone";
    EXPECT_EQ(m_service->catalogue.track("a0")->bitrate, 800);
}

TEST_F(DemoLibraryTest, AWantedStyleComesFirstAndFilesThatAreThereAreNotMadeAgain)
{
    const std::filesystem::path directory = m_service->dataDirectory() / "demo";
    std::filesystem::create_directory(directory);
    std::ofstream(directory / "a0.flac") << "there";
    std::ofstream(directory / "a1.flac.Xy12Zq") << "unfinished";
    m_service->catalogue.want({"c"});
    {
        DemoLibrary library(m_service->catalogue, source(), directory, [](const std::string &) {});
        library.start();
        EXPECT_GE(m_service->catalogue.counts().playable, 1) << "playable before anything is made";
        ASSERT_TRUE(m_service->catalogue.waitUntil([&] { return m_service->catalogue.counts().playable == 6; },
                                                   std::chrono::seconds(20)));
    }
    EXPECT_EQ(m_made.front(), "c5");
    EXPECT_EQ(std::count(m_made.begin(), m_made.end(), "a0"), 0);
    EXPECT_FALSE(std::filesystem::exists(directory / "a1.flac.Xy12Zq"));
}

TEST_F(DemoLibraryTest, ATrackThatCannotBeMadeIsLeftOutAndTheOthersGoOn)
{
    m_broken = "b3";
    {
        DemoLibrary library(m_service->catalogue, source(), m_service->dataDirectory() / "demo",
                            [](const std::string &) {});
        library.start();
        ASSERT_TRUE(m_service->catalogue.waitUntil([&] { return m_service->catalogue.counts().playable == 5; },
                                                   std::chrono::seconds(20)));
    }
    EXPECT_FALSE(m_service->catalogue.track("b3")->isPlayable);
}

} // namespace
} // namespace velmora::server
