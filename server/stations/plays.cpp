#include "server/stations/plays.h"

#include "server/catalogue/catalogue.h"
#include "server/stations/feedback.h"
#include "server/stations/listening.h"
#include "server/store/store.h"

#include <algorithm>
#include <array>
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

constexpr int64_t issuesOfBlock = 16;
constexpr int64_t blocks = Listening::playSlots / issuesOfBlock;
constexpr std::array outcomes = {"left", "ended", "skipped"}; // by their numbers in a block

int64_t blockOf(const Issue &issue)
{
    return issue.number / issuesOfBlock;
}

// A play as it stands in a block, which is a JSON array but for the brackets around it and its last comma.
std::string remembered(int64_t track, int64_t startedAt, std::string_view outcome)
{
    const auto number = std::find(outcomes.begin(), outcomes.end(), outcome) - outcomes.begin();
    return '[' + std::to_string(track) + ',' + std::to_string(startedAt) + ',' + std::to_string(number) + "],";
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
    const Play now{radio, issue, m_clock(), false, {}};
    m_store.reachDay(now.startedAt);
    const Store::Lock db = m_store.lock();
    const std::vector<Play> all = latest(*db, issue.account);
    const auto isSame = [&](const Play &play) { return play.issue.isSame(issue); };
    if (std::any_of(all.begin(), all.end(), isSame))
        return;
    const auto own = std::find_if(all.begin(), all.end(), [&](const Play &play) { return play.radio == radio; });
    // A radio plays what it was issued in turn, so that only an earlier one can be a repetition.
    const bool isNext = own != all.end() && own->issue.station == issue.station && own->issue.number < issue.number;
    if (!isNext && find(*db, issue))
        return;
    Transaction change(*db, Durability::Later);
    if (!begin(*db, now))
        return;
    if (own != all.end() && !own->isOver)
        finish(*db, *own, outcomeBefore(*db, *own, issue), now.startedAt - own->startedAt);
    change.commit();
}

std::vector<Plays::Play> Plays::latest(Connection &db, AccountId account)
{
    std::vector<Play> all;
    Statement row = db.prepare("SELECT radio, station_id, number, track_id, started_at, is_over FROM plays_under_way "
                               "WHERE account_id = ?1");
    row.with(account);
    while (row.step())
        all.push_back({row.text(0),
                       {account, row.integer(1), row.integer(2), row.integer(3)},
                       row.integer(4),
                       row.integer(5) != 0,
                       {}});
    return all;
}

std::optional<Plays::Play> Plays::find(Connection &db, const Issue &issue)
{
    const int64_t today = dayOf(m_clock()); // a token is valid for two days
    Statement row = db.prepare("SELECT track_id, started_at, outcome FROM plays WHERE day IN (?4, ?5, ?6) AND "
                               "account_id = ?1 AND station_id = ?2 AND number = ?3");
    row.with(issue.account, issue.station, issue.number, today - 2, today - 1, today);
    if (!row.step())
        return std::nullopt;
    Play play{{}, issue, row.integer(1), true, row.text(2)};
    play.issue.track = row.integer(0);
    return play;
}

// The row of the radio is always written before the play that it held: who deletes the account waits, or is waited for.
bool Plays::begin(Connection &db, const Play &play)
{
    db.run("INSERT INTO plays_under_way (account_id, radio, station_id, number, track_id, started_at, is_over) "
           "SELECT account_id, ?3, id, ?4, ?5, ?6, ?7 FROM stations WHERE account_id = ?1 AND id = ?2 "
           "ON CONFLICT (account_id, radio) DO UPDATE SET station_id = ?2, number = ?4, track_id = ?5, "
           "started_at = ?6, is_over = ?7",
           play.issue.account, play.issue.station, play.radio, play.issue.number, play.issue.track, play.startedAt,
           play.isOver);
    return db.changes() != 0;
}

void Plays::finish(Connection &db, const Play &play, const std::string &outcome, int64_t seconds)
{
    const Issue &issue = play.issue;
    const int64_t day = dayOf(play.startedAt), today = dayOf(m_clock());
    // A radio that was switched off in the middle, and comes back after days: what it had heard is not known.
    if (day < today - daysKept("plays") || day > today)
        return;
    db.run("INSERT INTO plays (day, account_id, station_id, number, track_id, started_at, seconds, outcome) SELECT ?4, "
           "account_id, id, ?3, ?5, ?6, ?7, ?8 FROM stations WHERE account_id = ?1 AND id = ?2 "
           "ON CONFLICT (day, account_id, station_id, number) DO NOTHING",
           issue.account, issue.station, issue.number, day, issue.track, play.startedAt, seconds, outcome);
    if (db.changes() == 0) // the station is gone, or two processes were told of the same moment
        return;
    db.run("INSERT INTO remembered_plays (account_id, station_id, slot, block, plays) SELECT account_id, id, ?3, ?4, "
           "?5 FROM stations WHERE account_id = ?1 AND id = ?2 ON CONFLICT (account_id, station_id, slot) DO UPDATE "
           "SET plays = CASE WHEN remembered_plays.block = ?4 THEN remembered_plays.plays || ?5 ELSE ?5 END, "
           "block = ?4 WHERE remembered_plays.block <= ?4",
           issue.account, issue.station, blockOf(issue) % blocks, blockOf(issue),
           remembered(issue.track, play.startedAt, outcome));
}

void Plays::correct(Connection &db, const Play &play, const std::string &outcome, int64_t seconds)
{
    const Issue &issue = play.issue;
    db.run("UPDATE plays SET outcome = ?5, seconds = ?6 WHERE day = ?4 AND account_id = ?1 AND station_id = ?2 AND "
           "number = ?3",
           issue.account, issue.station, issue.number, dayOf(play.startedAt), outcome, seconds);
    if (outcome != play.outcome)
        db.run("UPDATE remembered_plays SET plays = replace(plays, ?5, ?6) WHERE account_id = ?1 AND station_id = ?2 "
               "AND slot = ?3 AND block = ?4",
               issue.account, issue.station, blockOf(issue) % blocks, blockOf(issue),
               remembered(issue.track, play.startedAt, play.outcome), remembered(issue.track, play.startedAt, outcome));
}

std::string Plays::outcomeBefore(Connection &db, const Play &play, const Issue &next)
{
    if (play.issue.station != next.station)
        return "left";
    const std::optional<Track> track = m_catalogue.track(play.issue.track);
    std::string outcome = track ? outcomeOf(m_clock() - play.startedAt, track->durationSeconds) : "left";
    if (outcome != "skipped")
        return outcome;
    // A thumb or a sleep given during the play already states the opinion.
    Statement row = db.prepare(
        "SELECT 1 FROM feedback WHERE account_id = ?1 AND track_id = ?3 AND station_id = ?2 AND given_at >= ?4 "
        "UNION ALL SELECT 1 FROM sleeps WHERE account_id = ?1 AND track_id = ?3 AND until - ?5 >= ?4");
    row.with(play.issue.account, play.issue.station, play.issue.track, play.startedAt, Feedback::sleepSeconds);
    return row.step() ? "left" : outcome;
}

void Plays::reported(const Issue &issue, const std::string &radio, const std::string &type, int64_t seconds,
                     int64_t duration)
{
    const Play now{radio, issue, m_clock(), false, {}};
    const bool isStart = type == "start";
    const std::string outcome = isStart ? "left" : type == "end" ? "ended" : outcomeOf(seconds, duration);
    m_store.reachDay(now.startedAt);
    const Store::Lock db = m_store.lock();
    Transaction change(*db, Durability::Later);
    const std::vector<Play> all = latest(*db, issue.account);
    const auto same = std::find_if(all.begin(), all.end(), [&](const Play &play) { return play.issue.isSame(issue); });
    const auto own = std::find_if(all.begin(), all.end(), [&](const Play &play) { return play.radio == radio; });
    if (same != all.end() && !same->isOver) {
        if (!isStart) {
            Play over = *same;
            over.isOver = true;
            begin(*db, over);
            finish(*db, *same, outcome, seconds);
        }
    } else if (const std::optional<Play> known = find(*db, issue)) {
        if (!isStart)
            correct(*db, *known, outcome, seconds);
    } else if (!isStart ||
               (own != all.end() && own->issue.station == issue.station && own->issue.number > issue.number)) {
        // Word of what was not noticed. Nobody deletes the account meanwhile.
        const Transaction alone(*db, AccountLock{issue.account});
        finish(*db, now, outcome, seconds);
    } else if (begin(*db, now) && own != all.end() && !own->isOver) {
        // What it says of the track before may still be on the way.
        const std::string before = outcomeBefore(*db, *own, issue);
        finish(*db, *own, before == "ended" ? before : "left", now.startedAt - own->startedAt);
    }
    change.commit();
}

std::vector<Plays::Heard> Plays::heardIn(const std::string &block)
{
    std::vector<Heard> plays;
    const char *const end = block.data() + block.size();
    for (const char *at = block.data(); at < end;) {
        Heard play;
        size_t outcome = 0;
        // "[track,begin,outcome],"
        const char *next = std::from_chars(at + 1, end, play.track).ptr;
        next = std::from_chars(std::min(next + 1, end), end, play.startedAt).ptr;
        next = std::from_chars(std::min(next + 1, end), end, outcome).ptr;
        if (end - next < 2 || outcome >= outcomes.size())
            break;
        play.outcome = outcomes[outcome];
        plays.push_back(std::move(play));
        at = next + 2;
    }
    return plays;
}

} // namespace velmora::server
