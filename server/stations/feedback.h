#pragma once

#include "server/stations/playlists.h"

namespace velmora::server {

// A listener's opinions of issued tracks. They change what the playlists choose next. Any thread.
class Feedback {
public:
    Feedback(Store &store, Clock clock);

    static constexpr int64_t sleepSeconds = 30 * 24 * 3600;

    // The latest thumb on a station counts.
    void rate(const IssuedTrack &track, bool isPositive);
    bool isThumbedUp(AccountId account, int64_t stationId, int64_t trackId);
    // Keeps the track away from all stations of the account for a month.
    void sleep(const IssuedTrack &track);
    void bookmarkTrack(const IssuedTrack &track);
    void bookmarkArtist(const IssuedTrack &track);

    struct Bookmarks {
        std::vector<int64_t> tracks;
        std::vector<int64_t> artists;
    };
    Bookmarks bookmarks(AccountId account);

private:
    void bookmark(AccountId account, const char *kind, int64_t target);

    Store &m_store;
    Clock m_clock;
};

} // namespace velmora::server
