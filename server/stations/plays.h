#pragma once

#include "server/accounts/accounts.h"

namespace velmora::server {

struct IssuedTrack;

// What was really heard, seen by the requests for audio: the first one for an issued track is its start, the next start
// of the same device ends it. A doubt never counts as a skip. Any thread.
class Plays {
public:
    Plays(Store &store, Clock clock);

    // Further requests for the same issue (ranges, repetitions) change nothing. Unknown issues are ignored.
    void started(int64_t issueId);
    // A radio that reports by itself knows better: "start", "end" or "skip", after so many seconds.
    void reported(const IssuedTrack &track, const std::string &type, int64_t seconds);

private:
    void begin(Database &db, int64_t issueId);
    void endEarlier(Database &db, int64_t issueId);

    Store &m_store;
    Clock m_clock;
};

} // namespace velmora::server
