#pragma once

#include "server/accounts/accounts.h"

#include <vector>

namespace velmora::server {

class Catalogue;

// One time that a track was issued.
struct Issue {
    AccountId account = 0;
    int64_t station = 0;
    int64_t number = 0; // IssuedTrack::number
    int64_t track = 0;

    bool isSame(const Issue &other) const { return station == other.station && number == other.number; }
    // As it stands in a media address; the account and the file stand there, too.
    std::string text() const { return std::to_string(station) + '-' + std::to_string(number); }
    // False when the text is none.
    bool read(const std::string &text);
};

// What was heard, derived from the requests for audio: the first request for an issued track is its start, and the
// device's next start ends it. A doubtful case never counts as a skip. Any thread.
//
// A play stands in three places. While it is under way it is the one row of its radio. When it is over it is a row of
// its day, which is kept for some days (store/days.h), and a few characters in a bounded memory of its station, for the
// engine: Listening::playSlots issues, in blocks of which each has a row.
class Plays {
public:
    Plays(Store &store, Catalogue &catalogue, Clock clock);

    // Further requests for the same issue (ranges, retries) change nothing. Unknown stations are ignored. `radio`: of
    // Devices::radioMark().
    void started(const Issue &issue, const std::string &radio);
    // The radio's own report overrides this: "start", "end" or "skip", after so many seconds of `duration`.
    void reported(const Issue &issue, const std::string &radio, const std::string &type, int64_t seconds,
                  int64_t duration);

    // A remembered play.
    struct Heard {
        int64_t track = 0, startedAt = 0;
        std::string outcome; // "ended", "skipped" or "left"
    };
    // Of a block as it is stored.
    static std::vector<Heard> heardIn(const std::string &block);

private:
    struct Play { // as far as it is known
        std::string radio;
        Issue issue;
        int64_t startedAt = 0;
        bool isOver = false;
        std::string outcome; // of one that is over and was looked up
    };

    // The last play of each of the account's radios.
    std::vector<Play> latest(Connection &db, AccountId account);
    // A play of the last days that is over.
    std::optional<Play> find(Connection &db, const Issue &issue);
    // False: there is no such station.
    bool begin(Connection &db, const Play &play);
    void finish(Connection &db, const Play &play, const std::string &outcome, int64_t seconds);
    void correct(Connection &db, const Play &play, const std::string &outcome, int64_t seconds);
    // How the play ended when the radio has begun another one.
    std::string outcomeBefore(Connection &db, const Play &play, const Issue &next);

    Store &m_store;
    Catalogue &m_catalogue;
    Clock m_clock;
};

} // namespace velmora::server
