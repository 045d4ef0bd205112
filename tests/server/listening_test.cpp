// What the service remembers of listening: plays, tokens, what a list reads and writes, and what the engine is told.

#include "playlistfixture.h"

#include "server/api/requestkeys.h"
#include "server/library/halffloat.h"
#include "server/stations/enginekeeper.h"
#include "server/stations/engineloader.h"
#include "server/stations/listening.h"

#include <regex>
#include <sqlite3.h>

namespace velmora::server {
namespace {

using namespace std::chrono_literals;

// The requests of a listener who hears one track after another on one device.
class ListeningTest : public PlaylistTest {
protected:
    Issue issueOf(const json &track) { return m_service->playlists.findTrack(idOf(), track.at("trackToken"))->issue(); }
    void begin(const json &track, const std::string &radio = "kitchen")
    {
        m_service->plays.started(issueOf(track), radio);
    }
    std::string outcomeOf(const json &track)
    {
        const Issue issue = issueOf(track);
        const Store::Lock db = m_service->store.lock();
        Statement row = db->prepare("SELECT outcome FROM plays WHERE station_id = ?1 AND number = ?2 UNION ALL SELECT "
                                    "'playing' FROM plays_under_way WHERE station_id = ?1 AND number = ?2 AND "
                                    "is_over = 0");
        return row.with(issue.station, issue.number).step() ? row.text(0) : "";
    }
    Listening listening(const std::string &station)
    {
        return Listening::ofAccount(m_service->store, idOf(), station, *m_now);
    }
    // How many plays the engine is told of.
    int playsOf(const std::string &station)
    {
        const std::atomic<bool> isStopping{false};
        const engine::EngineIndex index(loadEngineMusic(m_service->catalogueStore, isStopping),
                                        engine::StyleShares::Votes::Ignored);
        int plays = 0;
        for (const auto &[track, times] : listening(station).circumstances(index).plays)
            plays += times;
        return plays;
    }
    engine::StationTaste taste(const std::string &station)
    {
        const Listening read = listening(station);
        return read.taste(*read.station());
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
        {20, "sleepSong", "left"}, {20, "station", "left"}, {85, "addFeedback", "ended"}, {20, "again", "skipped"},
        {85, "station", "left"}};
    for (const Case &row : cases) {
        const json track = firstTrack(user, folk);
        const json next = firstTrack(user, std::string_view(row.between) == "station" ? rock : folk);
        begin(track);
        EXPECT_EQ(outcomeOf(track), "playing");
        *m_now += row.seconds;
        if (std::string_view(row.between) == "addFeedback")
            data("addFeedback", {{"trackToken", track["trackToken"]}, {"isPositive", true}}, user);
        if (std::string_view(row.between) == "sleepSong")
            data("sleepSong", {{"trackToken", track["trackToken"]}}, user);
        if (std::string_view(row.between) == "again") // another range of the same address
            begin(track);
        begin(next);
        EXPECT_EQ(outcomeOf(track), row.outcome) << row.seconds << ' ' << row.between;
        *m_now += 1; // the next case has its own start
    }
    // Another device's start does not end a play; the radio's own report does.
    const json track = firstTrack(user, folk);
    begin(track);
    *m_now += 20;
    begin(firstTrack(user, folk), "bathroom");
    EXPECT_EQ(outcomeOf(track), "playing");
    data("trackEvent", {{"trackToken", track["trackToken"]}, {"eventType", "skip"}, {"seconds", 20}}, user);
    EXPECT_EQ(outcomeOf(track), "skipped");
    m_service->plays.started({idOf(), 123456, 1, 1}, "kitchen");
}

// The statements that SQLite carries out, but for those that only begin or end something.
std::vector<std::string> *carriedOut = nullptr;

const int isTraced = sqlite3_auto_extension(reinterpret_cast<void (*)()>(+[](sqlite3 *db) {
    return sqlite3_trace_v2(
        db, SQLITE_TRACE_STMT,
        [](unsigned, void *, void *, void *text) {
            const std::string_view sql = static_cast<const char *>(text);
            // A table's own statements come as comments.
            if (carriedOut && !sql.starts_with("--") && !sql.starts_with("BEGIN") && !sql.starts_with("COMMIT") &&
                !sql.starts_with("PRAGMA"))
                carriedOut->emplace_back(sql);
            return 0;
        },
        nullptr);
}));

TEST_F(ListeningTest, AStationRemembersTheLatestPlaysAndNoMore)
{
    const std::string user = newListener();
    const std::string folk = addStation(user, "folk");
    Issue issue = issueOf(firstTrack(user, folk));
    const Issue first = issue;
    const Store::Lock db = m_service->store.lock();
    Transaction change(*db); // hundreds of starts are one change
    for (; issue.number < first.number + 600; ++issue.number) {
        *m_now += 100;
        m_service->plays.started(issue, "kitchen");
    }
    const int most = playsOf(folk);
    EXPECT_TRUE(most <= Listening::playSlots && most > Listening::playSlots - 16) << most;
    m_service->plays.started(first, "kitchen");
    EXPECT_EQ(playsOf(folk), most) << "it was played, even if it is forgotten";
    *m_now += Listening::playSeconds - 100 * 100;
    EXPECT_EQ(playsOf(folk), 100);
    change.commit();
}

TEST_F(ListeningTest, WhatWasPlayedAndAskedGoesByTheDay)
{
    const std::string user = newListener();
    const std::string folk = addStation(user, "folk");
    Issue issue = issueOf(firstTrack(user, folk));
    RequestKeys keys(m_service->store, [this] { return m_now->load(); });
    const Store::Lock db = m_service->store.lock();
    const auto number = [&](const std::string &query) { return db->number(query); };
    const auto outcome = [&](const Issue &of) {
        Statement row = db->prepare("SELECT outcome FROM plays WHERE number = ?1 AND day = ?2");
        return row.with(of.number, dayOf(*m_now) - 1).step() ? row.text(0) : "";
    };
    const bool isShared = db->isShared();
    const std::string ofBoth =
        "FROM pg_stat_user_tables WHERE relname LIKE 'plays\\_2%' OR relname LIKE 'request_answers\\_2%'";
    constexpr int days = 20;
    std::vector<std::string> statements;
    for (int day = 0; day < days; ++day) {
        const RequestKeys::Request request{"owner", std::string(30, '0') + std::to_string(day + 10), "f\n{}", true};
        const json answer = {{"code", 0}, {"data", day}};
        carriedOut = &statements;
        *m_now = (dayOf(*m_now) + 1) * 24 * 3600 - 40; // just before midnight
        const Issue late = issue;
        m_service->plays.started(late, "kitchen");
        EXPECT_EQ(keys.once(request, [&] { return answer; }), answer);
        *m_now += 60; // just after it
        m_service->plays.started(late, "kitchen");
        EXPECT_EQ(keys.once(request, [] { return json(); }), answer) << "yesterday's answer";
        ++issue.number;
        *m_now += 30;
        m_service->plays.started(issue, "kitchen");
        EXPECT_EQ(outcome(late), "ended") << "it crossed midnight";
        m_service->plays.started(late, "kitchen");
        m_service->plays.reported(late, "kitchen", "skip", 20, 90);
        EXPECT_EQ(outcome(late), "skipped") << "yesterday's play is found, and its radio knows better";
        EXPECT_EQ(number("SELECT number FROM plays_under_way"), issue.number) << "and is not begun anew";
        ++issue.number;
        carriedOut = nullptr;
        if (day % 3 != 0) // else nobody has made the new day, and it is made when it is needed
            m_service->store.keepDays(*m_now);
        if (isShared) {
            number("SELECT 1 FROM pg_stat_force_next_flush()");
            EXPECT_EQ(number("SELECT SUM(n_tup_del) " + ofBoth), 0);
            EXPECT_EQ(number("SELECT SUM(n_tup_upd - n_tup_hot_upd) " + ofBoth), 0);
        }
    }
    for (const std::string &statement : statements)
        EXPECT_FALSE(statement.starts_with("DELETE FROM")) << statement;
    const int64_t today = dayOf(*m_now);
    for (const DailyTable &table : dailyTables) {
        EXPECT_EQ(number(std::string("SELECT MIN(day) FROM ") + table.name), today - table.keptDays);
        if (isShared) { // with today and those ahead
            EXPECT_EQ(number("SELECT COUNT(*) FROM pg_inherits WHERE inhparent = to_regclass('" +
                             std::string(table.name) + "')"),
                      table.keptDays + 4);
        }
    }
    EXPECT_EQ(playsOf(folk), 2 * days) << "what the engine learned of is remembered";
    EXPECT_EQ(taste(folk).events.size(), 2 * days - 1u) << "and how all ended but the one that is under way";
    if (isShared) {
        const std::string changed = "FROM pg_stat_user_tables WHERE relname IN ('plays_under_way', 'remembered_plays')";
        EXPECT_EQ(number("SELECT SUM(n_tup_upd - n_tup_hot_upd) " + changed), 0) << "an index was written";
        EXPECT_GT(number("SELECT SUM(n_tup_upd) " + changed), 3 * days);
    }
}

// Of the catalogue: it belongs to no account.
bool isOfMusic(const std::string &statement)
{
    return statement.find("FROM tracks") < statement.size() || statement.find("_search") < statement.size() ||
           statement.find("FROM artists") < statement.size() || statement.find("FROM styles") < statement.size();
}

// Whether every table of accounts in the statement is entered by the account.
bool isWithinAccount(const std::string &statement)
{
    static const std::regex table(
        "(FROM|JOIN|INTO|UPDATE) (stations|seeds|feedback|sleeps|bookmarks|plays|plays_under_way|remembered_plays)\\b");
    const std::sregex_iterator end;
    std::sregex_iterator found(statement.begin(), statement.end(), table);
    if (found == end)
        return statement.find("account_id") < statement.size() ||
               statement.find("FROM sessions WHERE token_hash =") < statement.size() ||
               statement.find("FROM accounts WHERE ") < statement.size();
    while (found != end) {
        const auto from = static_cast<size_t>(found->position());
        const size_t to = ++found == end ? statement.size() : static_cast<size_t>(found->position());
        if (statement.substr(from, to - from).find("account_id") == std::string::npos)
            return false;
    }
    return true;
}

// The steps of a statement's plan that read a whole table.
std::vector<std::string> scansOf(Connection &db, std::string statement)
{
    for (const auto &[parameter, value] : {std::pair("?1", "1"), {"?2", "2"}, {"?3", "'3'"}, {"?4", "4"}}) {
        const bool isHash = std::string_view(parameter) == "?1" && statement.find("token_hash = ?1") < statement.size();
        for (size_t at = statement.find(parameter); at != std::string::npos; at = statement.find(parameter))
            statement.replace(at, 2, isHash ? "'1'" : value);
    }
    const bool isPostgres = db.isShared();
    std::vector<std::string> scans;
    Transaction only(db);
    if (isPostgres)
        db.execute("SET LOCAL enable_seqscan = off"); // an empty table has no need of its indexes
    Statement row = db.prepare((isPostgres ? "EXPLAIN " : "EXPLAIN QUERY PLAN ") + statement);
    int steps = 0;
    for (; row.step(); ++steps) {
        const std::string step = row.text(isPostgres ? 0 : 3);
        // The session and the station are single rows by then.
        const bool isRow = step == "SCAN me" || step == "SCAN own" || step == "SCAN CONSTANT ROW";
        if (step.find("Seq Scan") < step.size() || step.find("AUTOMATIC") < step.size() ||
            (step.starts_with("SCAN") && !isRow))
            scans.push_back(step);
    }
    EXPECT_GT(steps, 0);
    return scans;
}

TEST_F(ListeningTest, AListIsOneReadAndOneWriteByIndexWithinTheAccount)
{
    const Store::Lock db = m_service->store.lock();
    for (const std::string &statement :
         {Listening::sessionQuery(), Listening::accountQuery(), std::string(Playlists::keepStatement())}) {
        EXPECT_EQ(scansOf(*db, statement), std::vector<std::string>()) << statement;
        EXPECT_TRUE(isWithinAccount(statement)) << statement;
    }
    EXPECT_FALSE(scansOf(*db, "SELECT 1 FROM accounts WHERE gender = 'x'").empty()) << "a scan is seen";
    // Rows of different accounts may have the same key but for the account.
    for (const char *table :
         {"seeds", "feedback", "sleeps", "bookmarks", "plays", "plays_under_way", "remembered_plays"}) {
        Statement key = db->prepare(
            db->isShared() ? "SELECT COUNT(*) FROM information_schema.key_column_usage WHERE table_name = ?1 AND "
                             "column_name = 'account_id' AND constraint_name LIKE '%pkey'"
                           : "SELECT COUNT(*) FROM pragma_table_info(?1) WHERE name = 'account_id' AND pk > 0");
        EXPECT_TRUE(key.with(table).step() && key.integer(0) == 1) << table;
    }
    // What it reads is what the parts say.
    const std::string user = newListener(), other = newListener("tomas@example.org");
    const std::string folk = addStation(user, "folk"), rock = addStation(user, "rock");
    addStation(other, "folk");
    const json track = firstTrack(user, folk);
    std::vector<std::string> statements;
    carriedOut = &statements;
    firstTrack(user, rock);
    carriedOut = nullptr;
    std::erase_if(statements, isOfMusic);
    EXPECT_EQ(statements.size(), db->isShared() ? 0u : 2u) << json(statements);
    // Whatever a listener does is done within the account.
    carriedOut = &statements;
    data("addFeedback", {{"trackToken", track["trackToken"]}, {"isPositive", true}}, user);
    for (const char *function : {"sleepSong", "addSongBookmark", "addArtistBookmark", "explainTrack"})
        data(function, {{"trackToken", track["trackToken"]}}, user);
    data("trackEvent", {{"trackToken", track["trackToken"]}, {"eventType", "end"}}, user);
    data("search", {{"text", "song"}}, user);
    begin(track);
    const std::string quiet = addStation(user, "ambient");
    data("addMusic", {{"stationToken", quiet}, {"musicToken", track["songToken"]}}, user);
    data("renameStation", {{"stationToken", quiet}, {"newName", "Quiet"}}, user);
    for (const char *function : {"getStation", "deleteStation"})
        data(function, {{"stationToken", quiet}}, user);
    data("getStationList", {{"sortOrder", "asc"}}, user);
    EXPECT_TRUE(m_service->devices.mayListen(idOf(), ""));
    carriedOut = nullptr;
    for (const std::string &statement : statements) {
        EXPECT_TRUE(isWithinAccount(statement) || isOfMusic(statement)) << statement;
    }
    for (const std::string &station : {folk, rock, tapestryToken(user)}) {
        const Listening read = Listening::ofSession(m_service->store, user, station, *m_now);
        EXPECT_EQ(read.session()->accountId, idOf());
        EXPECT_EQ(read.station()->id, m_service->stations.find(idOf(), station)->id);
        EXPECT_EQ(read.stations().size(), 3u) << "those of the account";
        EXPECT_TRUE(read.stations()[0].isTapestry);
        EXPECT_EQ(read.taste(*read.station()).liked.size(), station == rock ? 0u : 1u);
        EXPECT_EQ(read.taste(*read.station()).seeds.size(), read.station()->isTapestry ? 0u : 1u);
        EXPECT_EQ(read.recent().size(), station == folk || station == rock ? 3u : 0u);
        EXPECT_EQ(Listening::ofSession(m_service->store, other, station, *m_now).station(), std::nullopt);
        EXPECT_FALSE(Listening::ofSession(m_service->store, station, station, *m_now).session());
    }
}

TEST_F(ListeningTest, SealedTokensEndWithTheirKeyTheirTimeAndEveryChange)
{
    const std::string user = newListener();
    const std::string folk = addStation(user, "folk");
    const json track = firstTrack(user, folk);
    const std::string token = track.at("trackToken"), song = track.at("songToken");
    const auto explain = [&](const std::string &text) {
        return call("explainTrack", {{"trackToken", text}}, user).code;
    };
    const auto create = [&](const std::string &text) {
        return call("createStation", {{"musicToken", text}}, user).code;
    };
    for (const std::string &text : {token, song}) {
        EXPECT_LE(text.size(), SealedTokens::longest);
        EXPECT_TRUE(std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c < 0x7f; }));
    }
    EXPECT_EQ(explain(token), 0);
    for (size_t i = 0; i < token.size(); i += 7) {
        std::string altered = token;
        altered[i] = altered[i] == 'A' ? 'B' : 'A';
        EXPECT_EQ(explain(altered), 5002) << i;
    }
    EXPECT_EQ(explain(song), 5002) << "another kind";
    EXPECT_EQ(explain(randomToken(15)), 5002) << "as they were before they were sealed";
    EXPECT_EQ(explain(std::string(5000, 'A')), 5002);
    // Another process changes the key; this one's tokens are good with one change, not with two.
    SealedTokens elsewhere(m_service->store, [this] { return m_now->load(); });
    const auto changeKey = [&] {
        elsewhere.changeKey();
        *m_now += SealedTokens::lookSeconds;
    };
    changeKey();
    EXPECT_EQ(explain(token), 0);
    EXPECT_EQ(create(song), 0);
    const std::string second = firstTrack(user, folk).at("songToken");
    changeKey();
    EXPECT_EQ(explain(token), 5002);
    EXPECT_EQ(create(song), 5002);
    EXPECT_EQ(create(second), 0);
    SealedTokens here(m_service->store, [this] { return m_now->load(); });
    here.seal(1, "music", json::array({1})); // it knows the keys
    elsewhere.changeKey();
    EXPECT_TRUE(here.open(1, "music", elsewhere.seal(1, "music", json::array({2})))) << "with a key of just now";
    *m_now += SealedTokens::keySeconds; // keys also change by themselves
    const std::string later = logIn(miraName, addDevice());
    const std::string fresh = firstTrack(later, folk).at("trackToken");
    EXPECT_NE(tokenFront(fresh), tokenFront(second));
    *m_now += 3 * 3600;
    EXPECT_EQ(call("explainTrack", {{"trackToken", fresh}}, later).code, 0);
    *m_now += Playlists::tokenSeconds;
    EXPECT_EQ(call("explainTrack", {{"trackToken", fresh}}, logIn(miraName, addDevice())).code, 5002);
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
    EXPECT_EQ(outcomeOf(track), "") << "a HEAD request is no play";
    std::string forged = path;
    forged.replace(forged.find("&i=") + 3, 1, "x");
    EXPECT_EQ(httpGet(port, forged).status, 403);
    EXPECT_EQ(httpGet(port, path).status, 200);
    EXPECT_EQ(outcomeOf(track), "playing");
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
    const engine::StationTaste learned = taste(folk);
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
    EXPECT_TRUE(taste(rock).events.empty());
    EXPECT_EQ(taste(tapestryToken(user)).events.size(), expected.size());
    say("addFeedback", 4, {{"isPositive", true}});
    EXPECT_TRUE(taste(folk).disliked.empty()) << "the latest thumb counts";
}

TEST_F(ListeningTest, TheEngineReadsWhatTheStoreHoldsOfPresentMusic)
{
    media::Descriptor descriptor;
    for (size_t i = 0; i < descriptor.size(); ++i)
        descriptor[i] = static_cast<float>(i) * 0.25f - 9;
    const int64_t track = m_service->catalogue.track("folk-00")->id, other = m_service->catalogue.track("folk-01")->id;
    setPlayable("rock-00", false);
    {
        const Store::Lock db = m_service->catalogueStore.lock();
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
    const engine::EngineMusic music = loadEngineMusic(m_service->catalogueStore, isStopping);
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
    const Listening station = listening(late);
    EXPECT_TRUE(m_service->catalogue.waitUntil([&] { return m_service->playlists.hasOwnMusic(station); }, 60s));
    const auto heard = tracks(user, late, 3); // one of them may differ by chance, but hardly several
    EXPECT_GE(std::count_if(heard.begin(), heard.end(), [](const json &track) { return track.at("style") == "late"; }),
              static_cast<int>(heard.size()) - 3);

    // A folder goes away and comes back.
    EngineKeeper keeper(m_service->catalogueStore, m_service->catalogue);
    EXPECT_TRUE(m_service->catalogue.waitUntil([&] { return keeper.views() == 2; }, 60s));
    EXPECT_EQ(keeper.current()->size(), 784u);
    const auto setPresent = [&](bool isPresent) {
        m_service->catalogueStore.lock()->run("UPDATE tracks SET is_playable = ?1 WHERE song LIKE 'many-1%'",
                                              isPresent);
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

} // namespace
} // namespace velmora::server
