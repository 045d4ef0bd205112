// The service's playlists, its record of plays, and what the engine learns from both.

#include "serverfixture.h"

#include "server/demolibrary.h"
#include "server/library/halffloat.h"
#include "server/stations/enginekeeper.h"
#include "server/stations/engineloader.h"
#include "server/stations/listening.h"

#include <fstream>

namespace velmora::server {
namespace {

using namespace std::chrono_literals;

class PlaylistTest : public ServerTest {
protected:
    // The track names of so many lists, in order.
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
    // Whether the song occurs in forty lists.
    bool isHeard(const std::string &user, const std::string &station, const json &song)
    {
        const std::vector<json> heard = tracks(user, station, 40);
        return std::any_of(heard.begin(), heard.end(),
                           [&](const json &t) { return t["songName"] == song["songName"]; });
    }
};

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
    m_service->store.lock()->execute("UPDATE tracks SET source = 'folder'");
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

// The requests of a listener who hears one track after another on one device.
class ListeningTest : public PlaylistTest {
protected:
    int64_t issueOf(const json &track)
    {
        return m_service->playlists.findTrack(idOf(), track.at("trackToken"))->issueId;
    }
    std::string outcomeOf(int64_t issue)
    {
        const Store::Lock db = m_service->store.lock();
        Statement row = db->prepare("SELECT outcome FROM plays WHERE issue_id = ?1");
        return row.with(issue).step() ? row.text(0) : "";
    }
    engine::StationTaste taste(const std::string &user, const std::string &station)
    {
        const Store::Lock db = m_service->store.lock();
        return Listening(*db, m_service->stations, *m_now)
            .taste(*m_service->stations.find(m_service->sessions.find(user)->accountId, station));
    }
};

TEST_F(ListeningTest, TheNextStartTellsHowTheLastPlayEnded)
{
    const std::string user = newListener();
    const std::string folk = addStation(user, "folk"), rock = addStation(user, "rock");
    struct Case {
        int seconds; // of 90
        const char *between;
        const char *outcome;
    };
    const Case cases[] = {
        {2, "", "left"},           {3, "", "skipped"},      {44, "", "skipped"},          {45, "", "left"},
        {80, "", "left"},          {81, "", "ended"},       {500, "", "ended"},           {20, "addFeedback", "left"},
        {20, "sleepSong", "left"}, {20, "station", "left"}, {85, "addFeedback", "ended"}, {20, "again", "skipped"}};
    for (const Case &row : cases) {
        const json track = firstTrack(user, folk);
        const json next = firstTrack(user, std::string_view(row.between) == "station" ? rock : folk);
        m_service->plays.started(issueOf(track));
        EXPECT_EQ(outcomeOf(issueOf(track)), "playing");
        *m_now += row.seconds;
        if (std::string_view(row.between) == "addFeedback")
            data("addFeedback", {{"trackToken", track["trackToken"]}, {"isPositive", true}}, user);
        if (std::string_view(row.between) == "sleepSong")
            data("sleepSong", {{"trackToken", track["trackToken"]}}, user);
        if (std::string_view(row.between) == "again") // another range of the same address
            m_service->plays.started(issueOf(track));
        m_service->plays.started(issueOf(next));
        EXPECT_EQ(outcomeOf(issueOf(track)), row.outcome) << row.seconds << ' ' << row.between;
        *m_now += 1; // the next case has its own start
    }
    // Another device's start does not end a play; the radio's own report does.
    const json track = firstTrack(user, folk);
    m_service->plays.started(issueOf(track));
    const std::string elsewhere = logIn(miraName, addDevice("00AABBCCDDEE"));
    *m_now += 20;
    m_service->plays.started(issueOf(firstTrack(elsewhere, folk)));
    EXPECT_EQ(outcomeOf(issueOf(track)), "playing");
    data("trackEvent", {{"trackToken", track["trackToken"]}, {"eventType", "skip"}, {"seconds", 20}}, user);
    EXPECT_EQ(outcomeOf(issueOf(track)), "skipped");
    m_service->plays.started(123456);

    // The counts that playlists read follow the plays, also when these go.
    const auto rows = [&](const char *sql) {
        std::vector<std::array<int64_t, 3>> all;
        const Store::Lock db = m_service->store.lock();
        Statement row = db->prepare(sql);
        while (row.step())
            all.push_back({row.integer(0), row.integer(1), row.integer(2)});
        return all;
    };
    for (const char *change :
         {"SELECT 1", "UPDATE plays SET outcome = 'left'", "DELETE FROM plays WHERE issue_id % 3 = 0",
          "DELETE FROM stations WHERE name = 'Rock'", "DELETE FROM tracks WHERE id % 2 = 0"}) {
        m_service->store.lock()->run(change);
        const auto counts = rows("SELECT station_id, track_id, plays FROM play_counts ORDER BY 1, 2");
        EXPECT_EQ(counts, rows("SELECT station_id, track_id, COUNT(*) FROM plays GROUP BY 1, 2 ORDER BY 1, 2"));
        EXPECT_FALSE(counts.empty()) << change;
        EXPECT_EQ(rows("SELECT station_id, day, plays FROM play_days ORDER BY 1, 2"),
                  rows("SELECT station_id, started_at / 86400, COUNT(*) FROM plays GROUP BY 1, 2 ORDER BY 1, 2"));
    }
}

TEST_F(ListeningTest, TheFirstRequestForAnAddressIsTheStart)
{
    listen();
    const std::string user = newListener();
    const json track = firstTrack(user, addStation(user, "folk"));
    const std::string address = track.at("audioUrl");
    const std::string path = address.substr(address.find("/media"));
    const int port = m_server->port();
    EXPECT_EQ(httpRequest(port, "HEAD", path).status, 200);
    EXPECT_EQ(outcomeOf(issueOf(track)), "") << "a HEAD request is no play";
    std::string forged = path;
    forged.replace(forged.find("&i=") + 3, 1, "9");
    EXPECT_EQ(httpGet(port, forged).status, 403);
    EXPECT_EQ(httpGet(port, path).status, 200);
    EXPECT_EQ(outcomeOf(issueOf(track)), "playing");
}

TEST_F(ListeningTest, ThumbsPlaysSleepsAndBookmarksTeachTheStationsThatHeardThem)
{
    const std::string user = newListener();
    const std::string folk = addStation(user, "folk"), rock = addStation(user, "rock");
    std::vector<json> heard;
    std::vector<int64_t> ids;
    while (heard.size() < 5) {
        for (const json &track : tracks(user, folk, 1)) {
            const int64_t id = m_service->playlists.findTrack(idOf(), track.at("trackToken"))->track.id;
            if (std::find(ids.begin(), ids.end(), id) == ids.end() && heard.size() < 5) {
                heard.push_back(track);
                ids.push_back(id);
            }
        }
    }
    const auto say = [&](const char *function, size_t track, json more = json::object()) {
        more["trackToken"] = heard[track]["trackToken"];
        *m_now += 1;
        data(function, more, user);
    };
    say("trackEvent", 0, {{"eventType", "end"}});
    say("trackEvent", 1, {{"eventType", "skip"}, {"seconds", 10}});
    say("trackEvent", 2, {{"eventType", "start"}});
    say("sleepSong", 2);
    say("addSongBookmark", 1);
    say("addFeedback", 3, {{"isPositive", true}});
    say("addFeedback", 4, {{"isPositive", false}});
    const engine::StationTaste learned = taste(user, folk);
    const std::vector<std::tuple<int64_t, bool, float>> expected = {
        {ids[0], true, engine::eventweight::ended},  {ids[1], false, engine::eventweight::skipped},
        {ids[2], false, engine::eventweight::sleep}, {ids[1], true, engine::eventweight::bookmark},
        {ids[3], true, engine::eventweight::thumb},  {ids[4], false, engine::eventweight::thumb}};
    std::vector<std::tuple<int64_t, bool, float>> events;
    for (const engine::TasteEvent &event : learned.events)
        events.emplace_back(event.track, event.isLiked, event.weight);
    EXPECT_EQ(events, expected);
    EXPECT_EQ(learned.liked, std::vector{ids[3]});
    EXPECT_EQ(learned.disliked, std::vector{ids[4]});
    EXPECT_TRUE(taste(user, rock).events.empty());
    EXPECT_EQ(taste(user, tapestryToken(user)).events.size(), expected.size());
    say("addFeedback", 4, {{"isPositive", true}});
    EXPECT_TRUE(taste(user, folk).disliked.empty()) << "the latest thumb counts";
}

TEST_F(ListeningTest, TheEngineReadsWhatTheStoreHoldsOfPresentMusic)
{
    media::Descriptor descriptor;
    for (size_t i = 0; i < descriptor.size(); ++i)
        descriptor[i] = static_cast<float>(i) * 0.25f - 9;
    const int64_t track = m_service->catalogue.track("folk-00")->id, other = m_service->catalogue.track("folk-01")->id;
    setPlayable("rock-00", false);
    {
        const Store::Lock db = m_service->store.lock();
        db->run("INSERT INTO descriptors VALUES (?1, ?2, ?3), (?4, ?5, ?3)", track, media::descriptorVersion,
                Blob{halves(descriptor)}, other, media::descriptorVersion + 1);
        db->run("DELETE FROM track_styles");
        db->run("INSERT INTO styles (id, name, folded) VALUES (101, 'Früh', 'fruh'), (102, '明', '明')");
        db->run("INSERT INTO track_styles VALUES (?1, 101, 0.75), (?1, 102, 0.25)", track);
        db->run("UPDATE tracks SET kind = 'speech' WHERE public_id = 'rock-01'");
        db->run("UPDATE tracks SET recording_id = ?2, work = 'Suite', composer = 'N', movement = 2 WHERE id = ?1",
                track, other);
    }
    const std::atomic<bool> isStopping{false};
    const engine::EngineMusic music = loadEngineMusic(m_service->store, isStopping);
    EXPECT_EQ(music.tracks.size(), 22u);
    const auto found = [&](int64_t id) {
        return *std::find_if(music.tracks.begin(), music.tracks.end(),
                             [&](const engine::EngineTrack &entry) { return entry.id == id; });
    };
    EXPECT_EQ(found(track).descriptor, descriptor);
    EXPECT_FALSE(found(other).descriptor) << "numbers of another version";
    ASSERT_EQ(found(track).tags.size(), 2u);
    const engine::StyleWeight first = found(track).tags[0];
    EXPECT_EQ(music.styles[static_cast<size_t>(first.style)].words, "fruh");
    EXPECT_EQ(music.styles[static_cast<size_t>(found(track).tags[1].style)].words, "");
    EXPECT_FLOAT_EQ(first.weight, 0.75f);
    EXPECT_EQ(music.styles[static_cast<size_t>(found(other).tags.at(0).style)].name, "folk") << "the track's own style";
    EXPECT_TRUE(found(track).recording == other && found(track).movement == 2 && found(track).work != 0);
    EXPECT_EQ(found(other).composer, 0);
}

TEST_F(ListeningTest, ALargeCatalogueIsFollowedInTheBackground)
{
    const auto fill = [&](int from, int to) {
        std::vector<Track> tracks;
        for (int i = from; i < to; ++i) {
            Track track = smallCatalogue(m_directory.path() / "media").front();
            track.publicId = "many-" + std::to_string(i);
            track.song = track.publicId;
            track.artist = "Artist " + std::to_string(i % 50);
            track.style = i < 700 ? "many" : "late";
            tracks.push_back(track);
        }
        m_service->catalogue.put(tracks);
    };
    fill(0, 700);
    const std::string user = newListener();
    EXPECT_EQ(tracks(user, addStation(user, "many"), 1).size(), 3u);
    fill(700, 760);
    const std::string late = addStation(user, "late");
    const Station station = *m_service->stations.find(idOf(), late);
    EXPECT_TRUE(m_service->catalogue.waitUntil([&] { return m_service->playlists.hasOwnMusic(station); }, 60s));
    const auto heard = tracks(user, late, 3); // one of them may differ by chance, but hardly several
    EXPECT_GE(std::count_if(heard.begin(), heard.end(), [](const json &track) { return track.at("style") == "late"; }),
              static_cast<int>(heard.size()) - 3);

    // A folder goes away and comes back.
    EngineKeeper keeper(m_service->store, m_service->catalogue);
    EXPECT_EQ(keeper.current()->size(), 784u);
    const auto setPresent = [&](bool isPresent) {
        m_service->store.lock()->run("UPDATE tracks SET is_playable = ?1 WHERE song LIKE 'many-1%'", isPresent);
    };
    setPresent(false);
    EXPECT_FALSE(keeper.absent()) << "nobody has missed any";
    EXPECT_EQ(keeper.findAbsent()->size(), 111u);
    EXPECT_EQ(keeper.absent()->size(), 111u);
    setPresent(true);
    m_service->catalogue.notePresence(111);
    const EngineKeeper::Absent absent = keeper.absent();
    EXPECT_TRUE(!absent || absent->empty());
    EXPECT_EQ(EngineKeeper::restFor(10s, 999, 100'000), 100s) << "a deleted album can wait";
    EXPECT_EQ(EngineKeeper::restFor(10s, 1000, 100'000), 10s) << "a folder cannot";
    EXPECT_EQ(EngineKeeper::restFor(100s, 49, 600), 600s);
    EXPECT_EQ(EngineKeeper::restFor(100s, 50, 600), 100s);
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
    m_service->catalogue.want(m_service->playlists.styles(station));
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
