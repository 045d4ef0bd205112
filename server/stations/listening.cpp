#include "server/stations/listening.h"

#include "server/accounts/houserules.h"
#include "server/stations/feedback.h"
#include "server/store/store.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <unordered_set>

namespace velmora::server {

namespace {

using nlohmann::json;

constexpr int64_t monthSeconds = 30 * 24 * 3600;
constexpr size_t mostLiked = 200; // examples; the latest

// Parts of the result: the first column of its rows.
enum class Part { Session, Account, Setting, Station, Seed, Thumb, Sleep, Bookmark, PlayUnderWay, Plays };

// One statement for all that is needed: each part is found by an index, from the account or the station on. `me` is one
// row or none, and so is `own`. All rows have the same columns.
constexpr const char *tail = R"sql(,
own AS (SELECT st.id AS id, st.account_id AS account_id, st.is_tapestry AS is_tapestry
  FROM me JOIN stations st ON st.account_id = me.account_id AND st.token = ?3)
SELECT 1 AS part, a.id AS n1, a.is_active AS n2, a.explicit_filter AS n3, 0 AS n4, '' AS t1, '' AS t2, '' AS t3
  FROM me JOIN accounts a ON a.id = me.account_id
UNION ALL SELECT 3, st.id, st.is_tapestry,
    st.is_shared + 2 * st.allow_rename + 4 * st.allow_delete + 8 * st.allow_add_music + 16 * st.allow_feedback +
      CASE WHEN st.token = ?3 THEN 32 ELSE 0 END, st.lists_issued, st.name,
    CASE WHEN st.token = ?3 THEN st.recent ELSE '' END, CAST(st.created_at AS TEXT)
  FROM me JOIN stations st ON st.account_id = me.account_id
UNION ALL SELECT 4, s.station_id, 0, 0, 0, s.kind, s.target, ''
  FROM own JOIN stations st ON st.account_id = own.account_id AND (own.is_tapestry = 1 OR st.id = own.id)
    JOIN seeds s ON s.account_id = st.account_id AND s.station_id = st.id
UNION ALL SELECT 5, f.station_id, f.track_id, f.is_positive, f.given_at, '', '', ''
  FROM own JOIN feedback f ON f.account_id = own.account_id WHERE own.is_tapestry = 1 OR f.station_id = own.id
UNION ALL SELECT 6, z.track_id, z.until, 0, 0, '', '', ''
  FROM own JOIN sleeps z ON z.account_id = own.account_id WHERE z.until > ?2
UNION ALL SELECT 7, b.target, b.created_at, 0, 0, '', '', ''
  FROM own JOIN bookmarks b ON b.account_id = own.account_id AND b.kind = 'track'
UNION ALL SELECT 8, u.station_id, u.track_id, u.started_at, 0, '', '', ''
  FROM own JOIN plays_under_way u ON u.account_id = own.account_id WHERE u.is_over = 0 AND u.started_at > ?4
UNION ALL SELECT 9, p.station_id, 0, 0, 0, p.plays, '', ''
  FROM own JOIN remembered_plays p ON p.account_id = own.account_id AND p.station_id = own.id
  WHERE own.is_tapestry = 0
UNION ALL SELECT 9, p.station_id, 0, 0, 0, p.plays, '', ''
  FROM own JOIN remembered_plays p ON p.account_id = own.account_id WHERE own.is_tapestry = 1
UNION ALL SELECT 2, 0, 0, 0, 0, value, '', '' FROM settings WHERE name = 'lists per ad')sql";

} // namespace

const std::string &Listening::sessionQuery()
{
    static const std::string query =
        std::string("WITH me AS (SELECT account_id, kind, key_hash, device_id, is_revoked, device_model FROM sessions "
                    "WHERE token_hash = ?1 AND expires_at > ?2)") +
        tail +
        " UNION ALL SELECT 0, COALESCE(me.account_id, 0), me.is_revoked, CASE me.kind WHEN 'user' THEN 1 ELSE 0 END, "
        "0, "
        "me.key_hash, COALESCE(me.device_id, ''), me.device_model FROM me";
    return query;
}

const std::string &Listening::accountQuery()
{
    // The time counts for sleeps only.
    static const std::string query =
        std::string("WITH me AS (SELECT id AS account_id FROM accounts WHERE id = ?1)") + tail;
    return query;
}

Listening Listening::ofSession(Store &store, const std::string &token, const std::string &stationToken, int64_t now)
{
    const std::string hash = tokenHash(token);
    const Store::Lock db = store.lock();
    Statement row = db->prepare(sessionQuery());
    row.with(hash, now, stationToken, now - playSeconds);
    Listening listening = read(row, now);
    if (listening.m_session)
        listening.m_session->tokenHash = hash;
    if (listening.m_station)
        listening.m_station->token = stationToken;
    return listening;
}

Listening Listening::ofAccount(Store &store, AccountId account, const std::string &stationToken, int64_t now)
{
    const Store::Lock db = store.lock();
    Statement row = db->prepare(accountQuery());
    row.with(account, now, stationToken, now - playSeconds);
    Listening listening = read(row, now);
    if (listening.m_station)
        listening.m_station->token = stationToken;
    return listening;
}

Listening Listening::read(Statement &row, int64_t now)
{
    Listening all;
    all.m_now = now;
    AccountId account = 0;
    while (row.step()) {
        switch (static_cast<Part>(row.integer(0))) {
        case Part::Session:
            all.m_session = Session{row.integer(3) != 0 ? TokenKind::User : TokenKind::Partner,
                                    {},
                                    row.text(5),
                                    row.integer(1),
                                    row.text(6),
                                    row.integer(2) != 0,
                                    row.text(7)};
            break;
        case Part::Account:
            account = row.integer(1);
            all.m_isActive = row.integer(2) != 0;
            all.m_isFiltered = row.integer(3) != 0;
            break;
        case Part::Setting:
            all.m_listsPerAd = row.text(5);
            break;
        case Part::Station: {
            const int64_t flags = row.integer(3);
            Station station;
            station.id = row.integer(1);
            station.isTapestry = row.integer(2) != 0;
            station.isShared = (flags & 1) != 0;
            station.allowRename = (flags & 2) != 0;
            station.allowDelete = (flags & 4) != 0;
            station.allowAddMusic = (flags & 8) != 0;
            station.allowFeedback = (flags & 16) != 0;
            station.listsIssued = static_cast<int>(row.integer(4));
            station.name = row.text(5);
            station.createdAt = idOf(row.text(7));
            if ((flags & 32) != 0) {
                all.m_station = station;
                const json recent = json::parse(row.text(6), nullptr, false);
                for (const json &track : recent.is_array() ? recent : json::array()) {
                    if (track.is_number_integer())
                        all.m_recent.push_back(track.get<int64_t>());
                }
            }
            all.m_stations.push_back(std::move(station));
            break;
        }
        case Part::Seed:
            all.m_seeds.emplace_back(row.integer(1), Music{musicKindOf(row.text(5)), row.text(6)});
            break;
        case Part::Thumb:
            all.m_thumbs.push_back({row.integer(1), row.integer(2), row.integer(4), row.integer(3) != 0});
            break;
        case Part::Sleep:
            all.m_sleeps.push_back({row.integer(1), row.integer(2) - Feedback::sleepSeconds});
            break;
        case Part::Bookmark:
            all.m_bookmarks.push_back({row.integer(1), row.integer(2)});
            break;
        case Part::PlayUnderWay:
            all.m_plays.push_back({row.integer(1), {row.integer(2), row.integer(3), {}}});
            break;
        case Part::Plays:
            for (Plays::Heard &play : Plays::heardIn(row.text(5))) {
                if (play.startedAt > now - playSeconds)
                    all.m_plays.push_back({row.integer(1), std::move(play)});
            }
            break;
        }
    }
    for (Station &station : all.m_stations)
        station.accountId = account;
    if (all.m_station)
        all.m_station->accountId = account;
    std::sort(all.m_stations.begin(), all.m_stations.end(), [](const Station &a, const Station &b) {
        return a.isTapestry != b.isTapestry ? a.isTapestry : a.id < b.id;
    });
    // As the engine is told them, whatever the engine of the store returns them in.
    std::sort(all.m_seeds.begin(), all.m_seeds.end(), [](const auto &a, const auto &b) {
        return std::tie(a.first, a.second.kind, a.second.target) < std::tie(b.first, b.second.kind, b.second.target);
    });
    std::sort(all.m_thumbs.begin(), all.m_thumbs.end(), [](const Thumb &a, const Thumb &b) {
        return a.givenAt != b.givenAt ? a.givenAt > b.givenAt : a.track < b.track;
    });
    return all;
}

engine::StationTaste Listening::taste(const Station &station) const
{
    engine::StationTaste taste;
    for (const auto &[id, music] : m_seeds) {
        if (station.isTapestry || id != station.id)
            continue;
        if (music.kind == MusicKind::Style)
            taste.seeds.push_back({engine::Seed::Kind::Style, 0, music.target});
        else
            taste.seeds.push_back(
                {music.kind == MusicKind::Artist ? engine::Seed::Kind::Artist : engine::Seed::Kind::Track,
                 idOf(music.target),
                 {}});
    }
    for (const Thumb &thumb : m_thumbs) {
        if (!isOf(thumb.station, station))
            continue;
        if (!thumb.isPositive)
            taste.disliked.push_back(thumb.track);
        else if (taste.liked.size() < mostLiked)
            taste.liked.push_back(thumb.track);
    }
    taste.events = events(station);
    return taste;
}

std::vector<engine::TasteEvent> Listening::events(const Station &station) const
{
    struct Event {
        int64_t at;
        int kind; // of equal times the lower one counts as the later one
        engine::TasteEvent event;
    };
    using namespace engine::eventweight;
    std::vector<Event> events;
    std::unordered_set<int64_t> heard;
    for (const Thumb &entry : m_thumbs) {
        if (isOf(entry.station, station))
            events.push_back({entry.givenAt, entry.isPositive ? 0 : 1, {entry.track, entry.isPositive, thumb}});
    }
    for (const auto &[of, play] : m_plays) {
        if (!isOf(of, station))
            continue;
        heard.insert(play.track);
        if (play.outcome == "ended")
            events.push_back({play.startedAt, 2, {play.track, true, ended}});
        else if (play.outcome == "skipped")
            events.push_back({play.startedAt, 3, {play.track, false, skipped}});
    }
    // Sleeps and bookmarks belong to the account; they teach the stations on which the track was heard.
    for (const Opinion &opinion : m_sleeps) {
        if (heard.contains(opinion.track))
            events.push_back({opinion.at, 4, {opinion.track, false, engine::eventweight::sleep}});
    }
    for (const Opinion &opinion : m_bookmarks) {
        if (heard.contains(opinion.track))
            events.push_back({opinion.at, 5, {opinion.track, true, bookmark}});
    }
    std::sort(events.begin(), events.end(), [](const Event &a, const Event &b) {
        return a.at != b.at ? a.at < b.at : a.kind != b.kind ? a.kind > b.kind : a.event.track > b.event.track;
    });
    if (events.size() > engine::Taste::mostEvents)
        events.erase(events.begin(), events.end() - engine::Taste::mostEvents);
    std::vector<engine::TasteEvent> result;
    result.reserve(events.size());
    for (const Event &event : events)
        result.push_back(event.event);
    return result;
}

engine::Circumstances Listening::circumstances(const engine::EngineIndex &index) const
{
    engine::Circumstances now;
    now.allowsExplicit = !m_isFiltered;
    if (!m_station)
        return now;
    now.recent = m_recent;
    for (const auto &[station, play] : m_plays) {
        if (station == m_station->id)
            ++now.plays[play.track];
    }
    for (const Opinion &sleep : m_sleeps)
        now.excludedTracks.insert(sleep.track);
    // Two thumbs down for an artist and none up exclude the artist.
    struct Count {
        int up = 0, down = 0;
    };
    std::unordered_map<int64_t, Count> byArtist;
    for (const Thumb &thumb : m_thumbs) {
        if (!isOf(thumb.station, *m_station))
            continue;
        if (!thumb.isPositive)
            now.excludedTracks.insert(thumb.track);
        if (const std::optional<engine::Position> track = index.find(thumb.track)) {
            Count &count = byArtist[index.facts(*track).artist];
            ++(thumb.isPositive ? count.up : count.down);
        }
    }
    for (const auto &[artist, count] : byArtist) {
        if (count.down >= 2 && count.up == 0)
            now.excludedArtists.insert(artist);
    }
    return now;
}

std::unordered_map<int64_t, int> Listening::playsByStation() const
{
    std::unordered_map<int64_t, int> plays;
    for (const auto &[station, play] : m_plays) {
        if (play.startedAt > m_now - monthSeconds)
            ++plays[station];
    }
    return plays;
}

bool Listening::isThumbedUp(int64_t trackId) const
{
    return std::any_of(m_thumbs.begin(), m_thumbs.end(), [&](const Thumb &thumb) {
        return thumb.station == m_station->id && thumb.track == trackId && thumb.isPositive;
    });
}

int Listening::listsOfAccount() const
{
    int sum = 0;
    for (const Station &station : m_stations)
        sum += station.listsIssued;
    return sum;
}

std::string Listening::recentText(const std::vector<int64_t> &tracks)
{
    return json(std::vector<int64_t>(tracks.begin(),
                                     tracks.begin() + static_cast<std::ptrdiff_t>(std::min(tracks.size(), mostRecent))))
        .dump();
}

} // namespace velmora::server
