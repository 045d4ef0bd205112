#include "server/stations/plays.h"

#include "server/stations/playlists.h"
#include "server/store/store.h"

namespace velmora::server {

namespace {

constexpr int64_t hastySeconds = 3; // shorter plays are ignored: the file did not decode, or keys were pressed quickly
constexpr double endedShare = 0.9;
constexpr double skippedShare = 0.5;

// The outcome of leaving a track after so many seconds.
const char *outcomeOf(int64_t seconds, int64_t duration)
{
    if (static_cast<double>(seconds) >= endedShare * static_cast<double>(duration))
        return "ended";
    if (seconds >= hastySeconds && static_cast<double>(seconds) < skippedShare * static_cast<double>(duration))
        return "skipped";
    return "left";
}

} // namespace

Plays::Plays(Store &store, Clock clock)
    : m_store(store)
    , m_clock(std::move(clock))
{
}

void Plays::started(int64_t issueId)
{
    const Store::Lock db = m_store.lock();
    {
        Statement known = db->prepare("SELECT 1 FROM plays WHERE issue_id = ?1");
        if (known.with(issueId).step())
            return;
    }
    Transaction change(*db, Durability::Later);
    endEarlier(*db, issueId);
    begin(*db, issueId);
    change.commit();
}

void Plays::begin(Database &db, int64_t issueId)
{
    // Not "OR IGNORE", which would rule the triggers too.
    db.run("INSERT INTO plays (issue_id, account_id, station_id, track_id, started_at, outcome) "
           "SELECT id, account_id, station_id, track_id, ?2, 'playing' FROM issued_tracks WHERE id = ?1 "
           "ON CONFLICT DO NOTHING",
           issueId, m_clock());
}

void Plays::endEarlier(Database &db, int64_t issueId)
{
    struct Play {
        int64_t issue, seconds, duration;
        bool isSameStation, isSpokenFor;
    };
    std::vector<Play> earlier;
    {
        // A thumb or a sleep given during the play already states the opinion.
        Statement row = db.prepare(
            "SELECT p.issue_id, ?2 - p.started_at, t.duration, p.station_id = n.station_id, "
            "EXISTS (SELECT 1 FROM feedback f WHERE f.station_id = p.station_id AND f.track_id = p.track_id AND "
            "f.given_at >= p.started_at) OR EXISTS (SELECT 1 FROM sleeps z WHERE z.account_id = p.account_id AND "
            "z.track_id = p.track_id AND z.until - ?3 >= p.started_at) FROM issued_tracks n JOIN plays p ON "
            "p.account_id = n.account_id AND p.outcome = 'playing' JOIN issued_tracks i ON i.id = p.issue_id AND "
            "i.device_key_hash = n.device_key_hash JOIN tracks t ON t.id = p.track_id WHERE n.id = ?1");
        row.with(issueId, m_clock(), Playlists::sleepSeconds);
        while (row.step())
            earlier.push_back(
                {row.integer(0), row.integer(1), row.integer(2), row.integer(3) != 0, row.integer(4) != 0});
    }
    for (const Play &play : earlier) {
        std::string outcome = outcomeOf(play.seconds, play.duration);
        if (!play.isSameStation || (play.isSpokenFor && outcome == "skipped"))
            outcome = "left";
        db.run("UPDATE plays SET outcome = ?2, seconds = ?3 WHERE issue_id = ?1", play.issue, outcome, play.seconds);
    }
}

void Plays::reported(const IssuedTrack &track, const std::string &type, int64_t seconds)
{
    const Store::Lock db = m_store.lock();
    Transaction change(*db);
    begin(*db, track.issueId);
    if (type != "start") {
        const char *outcome = type == "end" ? "ended" : outcomeOf(seconds, track.track.durationSeconds);
        db->run("UPDATE plays SET outcome = ?2, seconds = ?3 WHERE issue_id = ?1", track.issueId, outcome, seconds);
    }
    change.commit();
}

} // namespace velmora::server
