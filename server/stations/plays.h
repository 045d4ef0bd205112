#pragma once

#include "server/accounts/accounts.h"

namespace velmora::server {

class Catalogue;

// One time that a track was issued.
struct Issue {
    AccountId account = 0;
    int64_t station = 0;
    int64_t number = 0; // IssuedTrack::number
    int64_t track = 0;

    // As it stands in a media address; the account and the file stand there, too.
    std::string text() const { return std::to_string(station) + '-' + std::to_string(number); }
    // False when the text is none.
    bool read(const std::string &text);
};

// What was heard, derived from the requests for audio: the first request for an issued track is its start, and the
// device's next start ends it. A doubtful case never counts as a skip. Any thread.
//
// Each station has so many slots (Listening::playSlots). The number of an issue says which one is its own, so that the
// plays of a station take a bounded place without being deleted, and a repeated request finds its play.
class Plays {
public:
    Plays(Store &store, Catalogue &catalogue, Clock clock);

    // Further requests for the same issue (ranges, retries) change nothing. Unknown stations are ignored. `radio`: of
    // Devices::radioMark().
    void started(const Issue &issue, const std::string &radio);
    // The radio's own report overrides this: "start", "end" or "skip", after so many seconds of `duration`.
    void reported(const Issue &issue, const std::string &radio, const std::string &type, int64_t seconds,
                  int64_t duration);

private:
    bool isKnown(Connection &db, const Issue &issue);
    void begin(Connection &db, const Issue &issue, const std::string &radio);
    void endEarlier(Connection &db, const Issue &issue, const std::string &radio);

    Store &m_store;
    Catalogue &m_catalogue;
    Clock m_clock;
};

} // namespace velmora::server
