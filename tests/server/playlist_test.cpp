// The service's playlists, and the demo catalogue that some of them play.

#include "playlistfixture.h"

#include "server/demolibrary.h"

#include <fstream>

namespace velmora::server {
namespace {

using namespace std::chrono_literals;

TEST_F(PlaylistTest, EveryListHasFourEntriesAndAsManyAdsAsItShallButNeverBeginsWithOne)
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
    // Own music: as many as the owner wishes.
    m_service->catalogueStore.lock()->execute("UPDATE tracks SET source = 'folder'");
    m_service->catalogue.noteChange();
    for (const auto &[lists, expected] : {std::pair(0, 0), {1, 8}, {2, 4}, {4, 2}}) {
        m_service->house.setListsPerAd(lists);
        const std::string station = addStation(user, "folk");
        int ads = 0;
        for (int i = 0; i < 8; ++i) {
            for (const json &entry : list("getPlaylist", {{"stationToken", station}}, user, "entries"))
                ads += entry.at("type") == "ad";
        }
        EXPECT_EQ(ads, expected) << "of 32 pieces, in every list number " << lists;
        data("deleteStation", {{"stationToken", station}}, user);
    }
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

TEST_F(PlaylistTest, AThumbUpDrawsMusicOfItsKind)
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

TEST_F(PlaylistTest, TheExplanationNamesWhatTheTrackWasChosenByAndOnTapestryItsStation)
{
    const std::string user = newListener();
    const std::string folk = addStation(user, "folk");
    const auto traits = [&](const json &track) {
        std::vector<std::string> texts;
        for (const json &trait : list("explainTrack", {{"trackToken", track["trackToken"]}}, user, "traits"))
            texts.push_back(trait.at("traitText"));
        return texts;
    };
    int naming = 0;
    const std::vector<json> heard = tracks(user, folk, 10);
    for (const json &track : heard) {
        const std::vector<std::string> texts = traits(track);
        ASSERT_FALSE(texts.empty());
        const bool namesStyle = std::find(texts.begin(), texts.end(), "a folk style") != texts.end();
        EXPECT_TRUE(track.at("style") == "folk" || !namesStyle);
        naming += namesStyle ? 1 : 0;
    }
    EXPECT_GT(naming, std::ssize(heard) / 2);

    data("renameStation", {{"stationToken", folk}, {"newName", "Frühe Lieder"}}, user);
    int fromFolk = 0;
    for (const json &track : tracks(user, tapestryToken(user), 10)) {
        const std::string first = traits(track).front();
        fromFolk += first == "music of your station fruhe lieder" ? 1 : 0;
        EXPECT_TRUE(first != "music of your station fruhe lieder" || track.at("style") == "folk");
    }
    EXPECT_TRUE(fromFolk > 5 && fromFolk < 25) << fromFolk << " of 30; the other half is everything";
}

TEST_F(PlaylistTest, OnlyTracksWithAFileArePlayedAndNoneIsAClearError)
{
    const std::string user = newListener();
    const std::string station = addStation(user, "folk");
    for (const Track &track : smallCatalogue({})) {
        if (track.style != "folk" || track.publicId != "folk-00")
            setPlayable(track.publicId, false);
    }
    m_service->catalogue.setGrowing("demo", true);
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

TEST_F(PlaylistTest, AStationWithoutPlayableMusicReportsIt)
{
    const std::string user = newListener();
    const AccountId mira = idOf();
    const std::string station = addStation(user, "folk");
    const int64_t id = m_service->stations.find(mira, station)->id;
    for (const Track &track : smallCatalogue({}))
        m_service->feedback.rate({"", mira, id, *m_service->catalogue.track(track.publicId), {}}, false);
    EXPECT_EQ(call("getPlaylist", {{"stationToken", station}}, user).code, 5002);
}

// The service's side of the demo catalogue; a script replaces the program that makes the music.
class DemoLibraryTest : public ServerTest {
protected:
    DemoLibraryTest() { clearCatalogue(); }
    // The script gets the folder as its last argument.
    std::unique_ptr<DemoLibrary> start(const std::string &script)
    {
        const std::filesystem::path program = m_directory.path() / "program";
        std::ofstream(program) << "#!/bin/sh\nfor folder; do :; done\n" << script;
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        DemoLibrary::Settings settings{program, m_folder, 7};
        settings.firstPause = std::chrono::milliseconds(1);
        settings.mostRestarts = 2;
        auto library = std::make_unique<DemoLibrary>(m_service->catalogue, settings, [this](const std::string &line) {
            const std::lock_guard guard(m_mutex);
            m_lines.push_back(line);
        });
        library->start();
        return library;
    }
    int64_t linesLike(const std::string &part)
    {
        const std::lock_guard guard(m_mutex);
        return std::count_if(m_lines.begin(), m_lines.end(),
                             [&](const std::string &line) { return line.find(part) != std::string::npos; });
    }
    bool waitForLine(const std::string &part)
    {
        return m_service->catalogue.waitUntil([&] { return linesLike(part) > 0; }, std::chrono::seconds(60));
    }

    const std::filesystem::path m_folder = m_service->dataDirectory() / "demo";
    std::mutex m_mutex; // guards m_lines
    std::vector<std::string> m_lines;
};

TEST_F(DemoLibraryTest, ItsStylesMakeStationsAtOnceItsAdsPlayAndWishesReachTheProgram)
{
    // The script makes "b" when it is requested, prints its arguments, and waits for the end of its input.
    const auto library = start(R"(
[ "$1 $2 $3" = "--each 7 --attended" ] || exit 1
[ -d "$folder/music" ] || exit 1
echo '{"ads": [{"id": "an-ad", "file": "ad.flac", "picture": "", "title": "T", "line2": "", "durationSeconds": 8}]}' \
  >"$folder/ads.json"
echo style a; echo style b; echo ready 1 3
read style; read end
[ "$style" = b ] && [ -z "$end" ] || exit 1
echo made ad.flac; echo failed music/c.flac; echo made music/b.flac
cat >/dev/null
)");
    EXPECT_EQ(m_service->catalogue.styles(), (std::vector<std::string>{"a", "b"}));
    EXPECT_TRUE(m_service->catalogue.isGrowing());
    addAccount();
    Station station;
    EXPECT_EQ(m_service->stations.create(idOf(), {MusicKind::Style, "b"}, &station), StationResult::Done);
    EXPECT_FALSE(m_service->catalogue.ad("an-ad")->isPlayable);
    m_service->catalogue.want(
        m_service->playlists.styles(Listening::ofAccount(m_service->store, idOf(), station.token, *m_now)));
    ASSERT_TRUE(waitForLine("demo catalogue: 2 of 3 tracks"));
    EXPECT_TRUE(m_service->catalogue.ad("an-ad")->isPlayable);
    EXPECT_EQ(m_lines.front(), "demo catalogue: cannot make " + (m_folder / "music/c.flac").string());
    library->stop();
    EXPECT_EQ(m_lines.size(), 2u) << "a requested end is no error";
}

TEST_F(DemoLibraryTest, AProgramThatEndsEarlyIsStartedAgainButNotForEver)
{
    // The fourth run is the first that succeeds. A run that made something does not count as a failure.
    const auto library = start(R"(
echo >>"$folder/runs"; runs=$(wc -l <"$folder/runs")
echo ready 0 2
[ "$runs" = 2 ] && echo made music/a.flac
[ "$runs" -lt 4 ] && kill -9 $$
echo done
)");
    EXPECT_TRUE(m_service->catalogue.waitUntil([&] { return linesLike("has ended early; it is started again") == 3; },
                                               std::chrono::seconds(60)));
    EXPECT_TRUE(
        m_service->catalogue.waitUntil([&] { return !m_service->catalogue.isGrowing(); }, std::chrono::seconds(60)));
    library->stop();
    EXPECT_EQ(linesLike("has ended early"), 3);
    EXPECT_EQ(linesLike("keeps ending early"), 0);
    m_lines.clear();
    const auto broken = start("exit 3");
    ASSERT_TRUE(waitForLine("it is started again"));
    EXPECT_FALSE(m_service->catalogue.isGrowing()) << "lists wait for nothing that may never come";
    EXPECT_TRUE(waitForLine("keeps ending early; no more music is made"));
    EXPECT_EQ(linesLike("it is started again"), 2);
}

} // namespace
} // namespace velmora::server
