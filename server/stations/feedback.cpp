#include "server/stations/feedback.h"

#include "server/store/store.h"

namespace velmora::server {

Feedback::Feedback(Store &store, Clock clock)
    : m_store(store)
    , m_clock(std::move(clock))
{
}

void Feedback::rate(const IssuedTrack &track, bool isPositive)
{
    m_store.lock()->run(
        "INSERT INTO feedback (station_id, track_id, account_id, is_positive, given_at) "
        "VALUES (?1, ?2, ?3, ?4, ?5) ON CONFLICT (account_id, station_id, track_id) DO UPDATE SET is_positive = ?4, "
        "given_at = ?5",
        track.stationId, track.track.id, track.accountId, isPositive, m_clock());
}

bool Feedback::isThumbedUp(AccountId account, int64_t stationId, int64_t trackId)
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT is_positive FROM feedback WHERE account_id = ?1 AND station_id = ?2 AND "
                                "track_id = ?3");
    row.with(account, stationId, trackId);
    return row.step() && row.integer(0) != 0;
}

void Feedback::sleep(const IssuedTrack &track)
{
    const Store::Lock db = m_store.lock();
    Transaction change(*db);
    db->run("DELETE FROM sleeps WHERE account_id = ?1 AND until <= ?2", track.accountId, m_clock());
    db->run(
        "INSERT INTO sleeps (account_id, track_id, until) VALUES (?1, ?2, ?3) ON CONFLICT (account_id, track_id) DO "
        "UPDATE SET until = ?3",
        track.accountId, track.track.id, m_clock() + sleepSeconds);
    change.commit();
}

void Feedback::bookmarkTrack(const IssuedTrack &track)
{
    bookmark(track.accountId, "track", track.track.id);
}

void Feedback::bookmarkArtist(const IssuedTrack &track)
{
    bookmark(track.accountId, "artist", track.track.artistId);
}

void Feedback::bookmark(AccountId account, const char *kind, int64_t target)
{
    m_store.lock()->run(
        "INSERT INTO bookmarks (account_id, kind, target, created_at) VALUES (?1, ?2, ?3, ?4) ON CONFLICT DO NOTHING",
        account, kind, target, m_clock());
}

Feedback::Bookmarks Feedback::bookmarks(AccountId account)
{
    Bookmarks result;
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT kind, target FROM bookmarks WHERE account_id = ?1 ORDER BY created_at");
    row.with(account);
    while (row.step())
        (row.text(0) == "track" ? result.tracks : result.artists).push_back(row.integer(1));
    return result;
}

} // namespace velmora::server
