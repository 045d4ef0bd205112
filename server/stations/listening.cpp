#include "server/stations/listening.h"

#include "server/stations/playlists.h"
#include "server/store/database.h"

#include <algorithm>
#include <charconv>

namespace velmora::server {

namespace {

constexpr int64_t daySeconds = 24 * 3600;
constexpr int mostLiked = 200; // examples; the latest
constexpr int mostRecent = 60;

int64_t idOf(const std::string &text)
{
    int64_t id = 0;
    std::from_chars(text.data(), text.data() + text.size(), id);
    return id;
}

// The column that selects a station's own rows, or for the Tapestry station the rows of its account.
const char *ownColumn(const Station &station)
{
    return station.isTapestry ? "account_id" : "station_id";
}

int64_t ownValue(const Station &station)
{
    return station.isTapestry ? station.accountId : station.id;
}

} // namespace

engine::StationTaste Listening::taste(const Station &station)
{
    engine::StationTaste taste;
    if (!station.isTapestry) {
        for (const Music &music : m_stations.seeds(station.id)) {
            if (music.kind == MusicKind::Style)
                taste.seeds.push_back({engine::Seed::Kind::Style, 0, music.target});
            else
                taste.seeds.push_back(
                    {music.kind == MusicKind::Artist ? engine::Seed::Kind::Artist : engine::Seed::Kind::Track,
                     idOf(music.target),
                     {}});
        }
    }
    Statement row = m_db.prepare(std::string("SELECT track_id, is_positive FROM feedback WHERE ") + ownColumn(station) +
                                 " = ?1 ORDER BY given_at DESC, track_id");
    row.with(ownValue(station));
    while (row.step()) {
        if (row.integer(1) == 0)
            taste.disliked.push_back(row.integer(0));
        else if (taste.liked.size() < mostLiked)
            taste.liked.push_back(row.integer(0));
    }
    taste.events = events(station);
    return taste;
}

std::vector<engine::TasteEvent> Listening::events(const Station &station)
{
    // Sleeps and bookmarks belong to the account; they teach the stations on which the track was heard.
    const std::string own = std::string(ownColumn(station)) + " = ?1";
    const std::string ownStations = station.isTapestry ? "IN (SELECT id FROM stations WHERE account_id = ?1)" : "= ?1";
    const auto isHeard = [&](const char *track) {
        return "EXISTS (SELECT 1 FROM play_counts p WHERE p.station_id " + ownStations + " AND p.track_id = " + track +
               ")";
    };
    Statement row = m_db.prepare(
        "SELECT happened_at, kind, track_id FROM ("
        "SELECT given_at AS happened_at, CASE is_positive WHEN 1 THEN 0 ELSE 1 END AS kind, track_id FROM feedback "
        "WHERE " +
        own +
        " UNION ALL SELECT * FROM (SELECT started_at, CASE outcome WHEN 'ended' THEN 2 ELSE 3 END, track_id FROM "
        "plays WHERE " +
        own +
        " AND outcome IN ('ended', 'skipped') ORDER BY started_at DESC LIMIT ?4)"
        " UNION ALL SELECT s.until - ?2, 4, s.track_id FROM sleeps s WHERE s.account_id = ?3 AND " +
        isHeard("s.track_id") +
        " UNION ALL SELECT b.created_at, 5, b.target FROM bookmarks b WHERE b.account_id = ?3 AND b.kind = 'track' "
        "AND " +
        isHeard("b.target") + ") ORDER BY happened_at DESC, kind, track_id LIMIT ?4");
    row.with(ownValue(station), Playlists::sleepSeconds, station.accountId,
             static_cast<int>(engine::Taste::mostEvents));
    struct Kind {
        bool isLiked;
        float weight;
    };
    constexpr std::array<Kind, 6> kinds = {
        Kind{true, engine::eventweight::thumb},  Kind{false, engine::eventweight::thumb},
        Kind{true, engine::eventweight::ended},  Kind{false, engine::eventweight::skipped},
        Kind{false, engine::eventweight::sleep}, Kind{true, engine::eventweight::bookmark}};
    std::vector<engine::TasteEvent> events;
    while (row.step()) {
        const Kind &kind = kinds[static_cast<size_t>(row.integer(1))];
        events.push_back({row.integer(2), kind.isLiked, kind.weight});
    }
    std::reverse(events.begin(), events.end());
    return events;
}

engine::Circumstances Listening::circumstances(const Station &station)
{
    engine::Circumstances now;
    {
        Statement row =
            m_db.prepare("SELECT track_id FROM issued_tracks WHERE station_id = ?1 ORDER BY id DESC LIMIT ?2");
        row.with(station.id, mostRecent);
        while (row.step())
            now.recent.push_back(row.integer(0));
    }
    {
        // Plays are kept for 90 days.
        Statement row = m_db.prepare("SELECT track_id, plays FROM play_counts WHERE station_id = ?1");
        row.with(station.id);
        while (row.step())
            now.plays[row.integer(0)] = static_cast<int>(row.integer(1));
    }
    {
        Statement row = m_db.prepare("SELECT track_id FROM sleeps WHERE account_id = ?1 AND until > ?2");
        row.with(station.accountId, m_now);
        while (row.step())
            now.excludedTracks.insert(row.integer(0));
    }
    // Two thumbs down for an artist and none up exclude the artist.
    struct Thumbs {
        int up = 0, down = 0;
    };
    std::unordered_map<int64_t, Thumbs> byArtist;
    {
        Statement row = m_db.prepare(std::string("SELECT f.track_id, t.artist_id, f.is_positive FROM feedback f JOIN "
                                                 "tracks t ON t.id = f.track_id WHERE f.") +
                                     ownColumn(station) + " = ?1");
        row.with(ownValue(station));
        while (row.step()) {
            const bool isPositive = row.integer(2) != 0;
            if (!isPositive)
                now.excludedTracks.insert(row.integer(0));
            ++(isPositive ? byArtist[row.integer(1)].up : byArtist[row.integer(1)].down);
        }
    }
    for (const auto &[artist, thumbs] : byArtist) {
        if (thumbs.down >= 2 && thumbs.up == 0)
            now.excludedArtists.insert(artist);
    }
    Statement row = m_db.prepare("SELECT explicit_filter FROM accounts WHERE id = ?1");
    row.with(station.accountId);
    now.allowsExplicit = !row.step() || row.integer(0) == 0;
    return now;
}

std::unordered_map<int64_t, int> Listening::playsByStation(AccountId account)
{
    std::unordered_map<int64_t, int> plays;
    Statement row = m_db.prepare(
        "SELECT station_id, SUM(plays) FROM play_days WHERE account_id = ?1 AND day > ?2 GROUP BY station_id");
    row.with(account, m_now / daySeconds - 30);
    while (row.step())
        plays[row.integer(0)] = static_cast<int>(row.integer(1));
    return plays;
}

} // namespace velmora::server
