#pragma once

#include "server/engine/engineindex.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <unordered_set>

namespace velmora::server {

class Catalogue;
class Store;

// Keeps the engine's view of the catalogue up to date. The caller rebuilds a small view at once. A large view is
// rebuilt by a separate thread, while requests use the old view. Any thread, but never under the store's lock.
class EngineKeeper {
public:
    using Index = std::shared_ptr<const engine::EngineIndex>;

    using Duration = std::chrono::steady_clock::duration;
    // How long a view of so many tracks, which took so long to build, is kept though the catalogue changed. `presence`:
    // how many known tracks came or went since.
    static Duration restFor(Duration built, uint64_t presence, size_t tracks);

    EngineKeeper(Store &store, Catalogue &catalogue);
    ~EngineKeeper(); // cancels a build in progress

    // Never null. Waits for the first view of a large catalogue: seconds after the start of the service.
    Index current();

    // Tracks of the current view that do not play any more; null while none are known.
    using Absent = std::shared_ptr<const std::unordered_set<int64_t>>;
    Absent absent();
    // Looks for them now: some 20 ms for a large view. To be called when a view turned out to be out of date.
    Absent findAbsent();

    // Views that were published since the start. The first view of a large catalogue is soon followed by a second one.
    unsigned views();

private:
    bool isLarge();
    void keep();
    // Builds and publishes a view.
    void build(engine::StyleShares::Votes votes);
    void rest(std::unique_lock<std::mutex> &guard, Duration built);
    void report(const char *what) const;

    Store &m_store;
    Catalogue &m_catalogue;
    std::mutex m_building; // held by the request thread that builds a small view; taken before the store's lock
    std::mutex m_mutex;    // guards the members below
    Index m_index;
    unsigned m_views = 0;    // published
    uint64_t m_revision = 0; // of the catalogue when m_index was begun
    uint64_t m_presence = 0; // presenceChanges() of the catalogue then
    Absent m_absent;         // of m_index
    uint64_t m_absentAt = 0; // presenceChanges() when they were looked for
    std::condition_variable m_changed;
    std::atomic<bool> m_isStopping{false};
    std::thread m_thread; // runs keep()
};

} // namespace velmora::server
