#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace velmora::server {

// Slows guessing down without locking the right person out. Only failures count: those of one account from one address
// most, those of one account from anywhere and of one address against any account less. Kept in memory. Any thread.
class LoginThrottle {
public:
    using Time = std::chrono::steady_clock::time_point;
    using Milliseconds = std::chrono::milliseconds;

    // So many failures cost nothing; every further one doubles the wait, up to the longest.
    static constexpr int freeFailures = 4;
    static constexpr Milliseconds firstWait{250};
    static constexpr Milliseconds longestWait{4000};
    // Failures are forgotten after so long without a new one.
    static constexpr std::chrono::minutes memory{15};

    // How long this attempt must wait before its password is checked. Attempts of one address on one account at the
    // same time wait one after another. Nothing when this queue is longer than the longest wait: the attempt is then
    // refused without a check, because otherwise parallel guessing would not be slowed.
    std::optional<Milliseconds> admit(const std::string &account, const std::string &address, Time now);
    void failed(const std::string &account, const std::string &address, Time now);
    // Forgets the failures of this account from this address.
    void succeeded(const std::string &account, const std::string &address);

private:
    struct Record {
        int failures = 0;
        Time last;
        Time nextTurn;
    };
    Record *find(const std::string &key, Time now);
    void count(const std::string &key, Time now);
    void forgetOld(Time now);

    std::mutex m_mutex;
    std::map<std::string, Record> m_records;
};

// At most so many events in a time for one key. Kept in memory. Any thread.
class RateLimit {
public:
    using Time = LoginThrottle::Time;
    RateLimit(int events, std::chrono::seconds window)
        : m_events(events)
        , m_window(window)
    {
    }
    // Counts the event. When there were too many: in how many seconds the next one is allowed.
    std::optional<int> refuse(const std::string &key, Time now);

private:
    struct Record {
        int count = 0;
        Time start;
    };
    int m_events;
    std::chrono::seconds m_window;
    std::mutex m_mutex;
    std::map<std::string, Record> m_records;
};

} // namespace velmora::server
