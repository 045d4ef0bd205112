#pragma once

#include "server/accounts/ratelimit.h"

namespace velmora::server {

// Slows guessing down without locking the right person out. Only failures cost: those of one account from one address
// most, those of one address against any account less. Failures from elsewhere never stop the first attempt of an
// address. Times are Unix seconds. Kept in memory, unless share() was called. Any thread.
class LoginThrottle {
public:
    // All checks of one address, right or wrong: each costs the machine a hash.
    static constexpr int checksOfAddress = 120;
    static constexpr std::chrono::seconds checkWindow{60};
    // So many failures cost nothing; after every further one the pause doubles, up to the longest.
    static constexpr int freeFailures = 4;          // of one account from one address
    static constexpr int freeFailuresOfGuessed = 1; // the same, once the account has `guessedFailures` from anywhere
    static constexpr int guessedFailures = 40;
    static constexpr int freeFailuresOfAddress = 60; // against any account
    static constexpr int64_t longestPause = 16;
    // Failures are forgotten after so long without a new one.
    static constexpr int64_t memorySeconds = 15 * 60;

    // As RateLimit::share(); the checks of one address are counted by each process alone.
    void share(Store &store, const std::string &name);

    // Nothing: the password may be checked, and failed() or succeeded() follows. Otherwise the attempt is refused
    // without a check, and the next one is allowed in so many seconds. During pauses attempts side by side are refused
    // but for one.
    std::optional<int> refuse(const std::string &account, const std::string &address, int64_t now);
    void failed(const std::string &account, const std::string &address, int64_t now);
    // Forgets the failures of this account from this address.
    void succeeded(const std::string &account, const std::string &address);

private:
    struct Record {
        int failures = 0;
        int64_t last = 0;
        int64_t next = 0; // no check before
    };
    using Records = LruTable<std::string, Record>;
    static constexpr size_t mostRecords = 10'000; // of each kind

    static Record *find(Records &records, const std::string &key, int64_t now);
    static void count(Records &records, const std::string &key, int freeOfCost, int64_t now);
    // How long the record still forbids a check; takes the turn when it does not.
    static int64_t secondsLeft(Record *record, int freeOfCost, int64_t now);
    int freeFailuresFor(const std::string &account, int64_t now);

    // The same with the records of the shared store. A key tells its kind apart.
    std::string sharedKey(const std::string &kind, const std::string &key) const;
    Record sharedRecord(const std::string &key, int64_t now);
    int sharedFreeFailuresFor(const std::string &account, int64_t now);
    int64_t sharedSecondsLeft(const std::string &key, int freeOfCost, int64_t now);
    void sharedCount(const std::string &key, int freeOfCost, int64_t now);

    RateLimit m_checks{checksOfAddress, checkWindow}; // by address
    Store *m_store = nullptr;                         // shared
    std::string m_name;                               // in it
    std::mutex m_mutex;                               // guards the records
    Records m_addresses{mostRecords};
    Records m_accounts{mostRecords};
    Records m_pairs{mostRecords}; // of an address and an account
};

} // namespace velmora::server
