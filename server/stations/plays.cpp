#include "server/stations/plays.h"

#include "server/catalogue/catalogue.h"
#include "server/stations/feedback.h"
#include "server/stations/listening.h"
#include "server/store/store.h"

#include <charconv>

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

int64_t slotOf(const Issue &issue)
{
    return issue.number % Listening::playSlots;
}

} // namespace

bool Issue::read(const std::string &text)
{
    const char *const end = text.data() + text.size();
    const auto [dash, stationError] = std::from_chars(text.data(), end, station);
    if (stationError != std::errc() || dash == end || *dash != '-')
        return false;
    const auto [rest, numberError] = std::from_chars(dash + 1, end, number);
    return numberError == std::errc() && rest == end && number >= 0;
}

Plays::Plays(Store &store, Catalogue &catalogue, Clock clock)
    : m_store(store)
    , m_catalogue(catalogue)
    , m_clock(std::move(clock))
{
}

void Plays::started(const Issue &issue, const std::string &radio)
{
    const Store::Lock db = m_store.lock();
    if (isKnown(*db, issue))
        return;
    Transaction change(*db, Durability::Later);
    endEarlier(*db, issue, radio);
    begin(*db, issue, radio);
    change.commit();
}

bool Plays::isKnown(Connection &db, const Issue &issue)
{
    Statement row = db.prepare("SELECT number FROM plays WHERE account_id = ?1 AND station_id = ?2 AND slot = ?3");
    row.with(issue.account, issue.station, slotOf(issue));
    // A lower number: of hundreds of tracks ago, when the slot was another issue's.
    return row.step() && row.integer(0) >= issue.number;
}

void Plays::begin(Connection &db, const Issue &issue, const std::string &radio)
{
    db.run("INSERT INTO plays (account_id, station_id, slot, number, track_id, radio, started_at, seconds, outcome) "
           "SELECT account_id, id, ?3, ?4, ?5, ?6, ?7, 0, 'playing' FROM stations WHERE account_id = ?1 AND id = ?2 "
           "ON CONFLICT (account_id, station_id, slot) DO UPDATE SET number = ?4, track_id = ?5, radio = ?6, "
           "started_at = ?7, seconds = 0, outcome = 'playing'",
           issue.account, issue.station, slotOf(issue), issue.number, issue.track, radio, m_clock());
}

void Plays::endEarlier(Connection &db, const Issue &issue, const std::string &radio)
{
    struct Play {
        int64_t station, slot, seconds, track;
        bool isSpokenFor;
    };
    std::vector<Play> earlier;
    {
        // A thumb or a sleep given during the play already states the opinion.
        Statement row = db.prepare(
            "SELECT p.station_id, p.slot, ?3 - p.started_at, p.track_id, "
            "CASE WHEN EXISTS (SELECT 1 FROM feedback f WHERE f.account_id = p.account_id AND f.track_id = p.track_id "
            "AND f.station_id = p.station_id AND f.given_at >= p.started_at) THEN 1 "
            "WHEN EXISTS (SELECT 1 FROM sleeps z WHERE z.account_id = p.account_id AND z.track_id = p.track_id AND "
            "z.until - ?4 >= p.started_at) THEN 1 ELSE 0 END "
            "FROM plays p WHERE p.account_id = ?1 AND p.outcome = 'playing' AND p.radio = ?2");
        row.with(issue.account, radio, m_clock(), Feedback::sleepSeconds);
        while (row.step())
            earlier.push_back({row.integer(0), row.integer(1), row.integer(2), row.integer(3), row.integer(4) != 0});
    }
    for (const Play &play : earlier) {
        const std::optional<Track> track = m_catalogue.track(play.track);
        std::string outcome = track ? outcomeOf(play.seconds, track->durationSeconds) : "left";
        if (play.station != issue.station || (play.isSpokenFor && outcome == "skipped"))
            outcome = "left";
        db.run("UPDATE plays SET outcome = ?4, seconds = ?5 WHERE account_id = ?1 AND station_id = ?2 AND slot = ?3",
               issue.account, play.station, play.slot, outcome, play.seconds);
    }
}

void Plays::reported(const Issue &issue, const std::string &radio, const std::string &type, int64_t seconds,
                     int64_t duration)
{
    const Store::Lock db = m_store.lock();
    Transaction change(*db);
    if (!isKnown(*db, issue))
        begin(*db, issue, radio);
    if (type != "start")
        db->run("UPDATE plays SET outcome = ?5, seconds = ?6 WHERE account_id = ?1 AND station_id = ?2 AND slot = ?3 "
                "AND number = ?4",
                issue.account, issue.station, slotOf(issue), issue.number,
                type == "end" ? "ended" : outcomeOf(seconds, duration), seconds);
    change.commit();
}

} // namespace velmora::server
