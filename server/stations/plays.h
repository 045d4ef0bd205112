#pragma once

#include "server/accounts/accounts.h"

namespace velmora::server {

struct IssuedTrack;

// What was heard, derived from the requests for audio: the first request for an issued track is its start, and the
// device's next start ends it. A doubtful case never counts as a skip. Any thread.
class Plays {
public:
    Plays(Store &store, Clock clock);

    // Further requests for the same issue (ranges, retries) change nothing. Unknown issues are ignored.
    void started(int64_t issueId);
    // The radio's own report overrides this: "start", "end" or "skip", after so many seconds.
    void reported(const IssuedTrack &track, const std::string &type, int64_t seconds);

private:
    void begin(Database &db, int64_t issueId);
    void endEarlier(Database &db, int64_t issueId);

    Store &m_store;
    Clock m_clock;
};

} // namespace velmora::server
