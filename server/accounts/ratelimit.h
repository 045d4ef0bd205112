#pragma once

#include "server/accounts/lrutable.h"

#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>

namespace velmora::server {

class Store;

// So many events in a time for one key: at once, or spread over it. Used up, the allowance grows again evenly. Kept in
// memory, unless share() was called. Any thread.
//
// Where a function has several limits, that of the caller's address is asked first: a key that the caller chooses then
// cannot fill the table.
class RateLimit {
public:
    RateLimit(int events, std::chrono::seconds window);

    // From now on all processes of a shared store count together, under this name. A store that is not shared changes
    // nothing. For what is rare: each event is a write. To be called before the first event.
    void share(Store &store, const std::string &name);

    // Counts the event at this time (Unix seconds). When there were too many: in how many seconds the next one is
    // allowed, at least 1.
    std::optional<int> refuse(const std::string &key, int64_t now);

private:
    std::optional<int> refuseTogether(const std::string &key, int64_t nowMilliseconds);

    static constexpr size_t mostKeys = 20'000;
    const int64_t m_window;                             // milliseconds
    Store *m_store = nullptr;                           // shared
    std::string m_name;                                 // in it
    const int64_t m_spacing;                            // milliseconds; of events at the lasting rate
    std::mutex m_mutex;                                 // guards m_wholeAt
    LruTable<std::string, int64_t> m_wholeAt{mostKeys}; // when the key's allowance is whole again, Unix milliseconds
};

} // namespace velmora::server
