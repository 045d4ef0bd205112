#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

namespace velmora::server {

class Store;

// Whether a store answers, told within a bounded time even when its database does not answer at all: a thread of its
// own reads from it. Any thread.
class StoreProbe {
public:
    static constexpr std::chrono::milliseconds longest{900};

    // The store outlives the probe. Its destructor waits for a reading that is under way.
    explicit StoreProbe(Store &store);
    ~StoreProbe();
    StoreProbe(const StoreProbe &) = delete;
    StoreProbe &operator=(const StoreProbe &) = delete;

    // Whether a reading that began after the call succeeded within the longest time. Callers share readings.
    bool isAnswering();

private:
    void read();

    Store &m_store;
    std::mutex m_mutex; // guards the members below
    std::condition_variable m_changed;
    uint64_t m_wanted = 0; // number of the last reading that somebody waits for
    uint64_t m_begun = 0;
    uint64_t m_done = 0;
    bool m_isGood = false; // the one done last
    bool m_isEnding = false;
    std::thread m_thread;
};

} // namespace velmora::server
