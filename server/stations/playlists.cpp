#include "server/stations/playlists.h"

#include "server/store/store.h"

#include <algorithm>
#include <sstream>

namespace velmora::server {

namespace {

// From a large catalogue a sample of this size is weighed for one list.
constexpr int sampleSize = 300;
constexpr int artistSampleSize = 100;
// How far back a station remembers what it played.
constexpr int memorySize = 60;

std::string joined(const std::vector<Reason> &reasons)
{
    std::string text;
    for (const Reason reason : reasons)
        text.append(text.empty() ? "" : " ").append(traitId(reason));
    return text;
}

std::vector<Reason> parted(const std::string &text)
{
    std::vector<Reason> reasons;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        if (const std::optional<Reason> reason = reasonOf(word))
            reasons.push_back(*reason);
    }
    return reasons;
}

} // namespace

Playlists::Playlists(Store &store, Catalogue &catalogue, Stations &stations, Clock clock, Random random)
    : m_store(store)
    , m_catalogue(catalogue)
    , m_stations(stations)
    , m_clock(std::move(clock))
    , m_random(std::move(random))
{
}

std::set<std::string> Playlists::styles(const Station &station)
{
    const Store::Lock db = m_store.lock();
    return tasteOf(*db, station).styles;
}

bool Playlists::hasOwnMusic(const Station &station)
{
    const Store::Lock db = m_store.lock();
    const Taste taste = tasteOf(*db, station);
    const std::vector<Candidate> candidates = candidatesFor(*db, station, taste);
    return std::any_of(candidates.begin(), candidates.end(), [&](const Candidate &candidate) {
        const std::vector<Reason> reasons = reasonsFor(taste, candidate);
        return taste.isEmpty() || (!reasons.empty() && reasons.front() != Reason::Mood);
    });
}

std::vector<PlaylistEntry> Playlists::next(const Station &station)
{
    std::vector<PlaylistEntry> entries;
    const Store::Lock db = m_store.lock();
    Transaction change(*db);
    forgetOld(*db);
    const Taste taste = tasteOf(*db, station);
    const std::vector<Candidate> candidates = candidatesFor(*db, station, taste);
    if (candidates.empty())
        return entries;

    std::vector<int64_t> recent; // newest last
    int64_t lastArtist = 0;
    {
        Statement row =
            db->prepare("SELECT i.track_id, t.artist_id FROM issued_tracks i JOIN tracks t ON t.id = i.track_id "
                        "WHERE i.station_id = ?1 ORDER BY i.id DESC LIMIT ?2");
        row.with(station.id, memorySize);
        while (row.step()) {
            if (recent.empty())
                lastArtist = row.integer(1);
            recent.push_back(row.integer(0));
        }
        std::reverse(recent.begin(), recent.end());
    }
    const int adPlace = adPosition(m_random);
    const bool isGrowing = m_catalogue.isGrowing();
    std::set<int64_t> inList;
    while (entries.size() < entriesInList) {
        if (static_cast<int>(entries.size()) == adPlace) {
            if (std::optional<IssuedAd> ad = issueAd(*db, station)) {
                entries.push_back({std::nullopt, std::move(ad)});
                continue;
            }
        }
        const std::optional<Choice> choice = chooseNext(taste, candidates, lastArtist, recent, m_random);
        if (!choice || (!inList.insert(choice->trackId).second && isGrowing))
            break;
        entries.push_back({issueTrack(*db, station, *choice), std::nullopt});
        recent.push_back(choice->trackId);
        lastArtist = choice->artistId;
    }
    db->run("UPDATE stations SET lists_issued = lists_issued + 1 WHERE id = ?1", station.id);
    change.commit();
    return entries;
}

void Playlists::forgetOld(Database &db)
{
    const int64_t before = m_clock() - tokenSeconds;
    db.run("DELETE FROM issued_tracks WHERE issued_at < ?1", before);
    db.run("DELETE FROM issued_ads WHERE issued_at < ?1", before);
    db.run("DELETE FROM track_events WHERE happened_at < ?1", m_clock() - sleepSeconds);
    db.run("DELETE FROM sleeps WHERE until <= ?1", m_clock());
}

Taste Playlists::tasteOf(Database &db, const Station &station)
{
    Taste taste;
    if (!station.isTapestry) {
        for (const Music &music : m_stations.seeds(station.id))
            addSeed(db, taste, music);
    } else {
        for (const Station &other : m_stations.list(station.accountId)) {
            for (const Music &music : m_stations.seeds(other.id))
                addSeed(db, taste, music);
        }
    }
    addLiked(db, taste, station);
    return taste;
}

void Playlists::addSeed(Database &db, Taste &taste, const Music &music)
{
    if (music.kind == MusicKind::Style) {
        taste.styles.insert(music.target);
        return;
    }
    const char *condition = music.kind == MusicKind::Artist ? "artist_id" : "id";
    if (music.kind == MusicKind::Artist)
        taste.artists.insert(std::stoll(music.target));
    Statement row = db.prepare(std::string("SELECT artist_id, style, mood, tempo FROM tracks WHERE ") + condition +
                               " = CAST(?1 AS INTEGER) LIMIT 50");
    row.with(music.target);
    while (row.step()) {
        taste.artists.insert(row.integer(0));
        taste.styles.insert(row.text(1));
        taste.moods.insert(row.text(2));
        taste.tempos.push_back(static_cast<int>(row.integer(3)));
    }
}

void Playlists::addLiked(Database &db, Taste &taste, const Station &station)
{
    // The Tapestry station follows every thumb of the listener, another station its own.
    const char *where = station.isTapestry ? "f.account_id = ?1" : "f.station_id = ?1";
    Statement row = db.prepare(std::string("SELECT t.id, t.artist_id, t.style FROM feedback f JOIN tracks t ON "
                                           "t.id = f.track_id WHERE f.is_positive = 1 AND ") +
                               where + " ORDER BY f.given_at DESC LIMIT 200");
    row.with(station.isTapestry ? station.accountId : station.id);
    while (row.step()) {
        taste.likedTracks.insert(row.integer(0));
        taste.likedArtists.insert(row.integer(1));
        taste.likedStyles.insert(row.text(2));
    }
}

std::vector<Candidate> Playlists::candidatesFor(Database &db, const Station &station, const Taste &taste)
{
    std::vector<Candidate> candidates;
    std::set<int64_t> seen;
    // On the Tapestry station a thumb down counts from wherever it was given.
    const std::string allowed =
        std::string("SELECT t.id, t.artist_id, t.style, t.mood, t.tempo FROM tracks t WHERE "
                    "NOT EXISTS (SELECT 1 FROM sleeps z WHERE z.track_id = t.id "
                    "AND z.account_id = ?1 AND z.until > ?2) AND NOT EXISTS (SELECT 1 FROM feedback f "
                    "WHERE f.track_id = t.id AND f.is_positive = 0 AND ") +
        (station.isTapestry ? "f.account_id = ?1" : "f.station_id = ?3") +
        ") AND (t.is_explicit = 0 OR (SELECT explicit_filter FROM accounts WHERE id = ?1) = 0) ";
    const auto take = [&](Statement row) {
        while (row.step()) {
            if (seen.insert(row.integer(0)).second)
                candidates.push_back(
                    {row.integer(0), row.integer(1), row.text(2), row.text(3), static_cast<int>(row.integer(4))});
        }
    };
    const auto sample = [&](const std::string &condition, const std::optional<std::string> &value, int64_t from,
                            int limit) {
        // From a random place on, then from the beginning: an index walk, however large the catalogue.
        for (const char *part : {"t.id >= ?5 ", "t.id < ?5 "}) {
            Statement row = db.prepare(allowed + condition + part + "ORDER BY t.id LIMIT ?6");
            row.with(station.accountId, m_clock(), station.id, value, from, limit);
            take(std::move(row));
        }
    };
    int64_t highest = 0;
    {
        Statement row = db.prepare("SELECT COALESCE(MAX(id), 0) FROM tracks");
        row.step();
        highest = row.integer(0);
    }
    const int64_t from = 1 + m_random(static_cast<uint32_t>(highest) + 1);
    for (const int64_t artist : taste.artists)
        sample("AND t.is_playable = 1 AND t.artist_id = CAST(?4 AS INTEGER) AND ", std::to_string(artist), from,
               artistSampleSize);
    std::set<std::string> styles = taste.styles;
    styles.insert(taste.likedStyles.begin(), taste.likedStyles.end());
    for (const std::string &style : styles)
        sample("AND t.is_playable = 1 AND t.style = ?4 AND ", style, from, sampleSize);
    for (const int64_t track : taste.likedTracks)
        sample("AND t.is_playable = 1 AND t.id = CAST(?4 AS INTEGER) AND ", std::to_string(track), 0, 1);
    // The plus keeps the planner from sorting the whole catalogue: here the tracks' own order is the index.
    sample("AND ?4 IS NULL AND +t.is_playable = 1 AND ", std::nullopt, from, sampleSize);
    return candidates;
}

IssuedTrack Playlists::issueTrack(Database &db, const Station &station, const Choice &choice)
{
    IssuedTrack issued{randomToken(15), station.accountId, station.id, *m_catalogue.track(choice.trackId),
                       choice.reasons};
    db.run("INSERT INTO issued_tracks (token, account_id, station_id, track_id, reasons, issued_at) "
           "VALUES (?1, ?2, ?3, ?4, ?5, ?6)",
           issued.token, station.accountId, station.id, choice.trackId, joined(choice.reasons), m_clock());
    return issued;
}

std::optional<IssuedAd> Playlists::issueAd(Database &db, const Station &station)
{
    int64_t id = 0;
    {
        // The one that this listener has not had for the longest time.
        Statement row =
            db.prepare("SELECT a.id FROM ads a LEFT JOIN issued_ads i ON i.ad_id = a.id AND i.account_id = ?1 "
                       "WHERE a.is_playable = 1 GROUP BY a.id ORDER BY COALESCE(MAX(i.id), 0), a.id LIMIT 1");
        row.with(station.accountId);
        if (!row.step())
            return std::nullopt;
        id = row.integer(0);
    }
    IssuedAd issued{randomToken(15), station.id, *m_catalogue.ad(id)};
    db.run("INSERT INTO issued_ads (token, account_id, station_id, ad_id, issued_at) VALUES (?1, ?2, ?3, ?4, ?5)",
           issued.token, station.accountId, station.id, id, m_clock());
    return issued;
}

std::optional<IssuedTrack> Playlists::findTrack(AccountId account, const std::string &token)
{
    const Store::Lock db = m_store.lock();
    Statement row =
        db->prepare("SELECT station_id, track_id, reasons FROM issued_tracks WHERE token = ?1 AND account_id = ?2");
    row.with(token, account);
    if (!row.step())
        return std::nullopt;
    const std::optional<Track> track = m_catalogue.track(row.integer(1));
    if (!track)
        return std::nullopt;
    return IssuedTrack{token, account, row.integer(0), *track, parted(row.text(2))};
}

std::optional<IssuedAd> Playlists::findAd(AccountId account, const std::string &token)
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT station_id, ad_id FROM issued_ads WHERE token = ?1 AND account_id = ?2");
    row.with(token, account);
    if (!row.step())
        return std::nullopt;
    const std::optional<Ad> ad = m_catalogue.ad(row.integer(1));
    return ad ? std::optional(IssuedAd{token, row.integer(0), *ad}) : std::nullopt;
}

void Playlists::registerAd(AccountId account, const std::string &token)
{
    m_store.lock()->run(
        "UPDATE issued_ads SET registered_at = ?3 WHERE token = ?1 AND account_id = ?2 AND registered_at IS "
        "NULL",
        token, account, m_clock());
}

} // namespace velmora::server
