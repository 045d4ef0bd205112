#pragma once

#include "server/engine/engineindex.h"

#include <condition_variable>
#include <mutex>
#include <thread>

namespace velmora::server {

class Catalogue;
class Store;

// Keeps the engine's view of the catalogue up to date: a small one at once, by whoever asks; a large one on a thread of
// its own, while requests go on with the view before. Any thread, but never under the store's lock.
class EngineKeeper {
public:
    using Index = std::shared_ptr<const engine::EngineIndex>;

    EngineKeeper(Store &store, Catalogue &catalogue);
    ~EngineKeeper(); // ends the building that is under way

    // Never null. Waits for the first view of a large catalogue: seconds after the start of the service.
    Index current();

private:
    bool isLarge();
    void keep();
    Index build(engine::StyleShares::Votes votes);
    void publish(Index index, uint64_t revision);
    void report(const char *what) const;

    Store &m_store;
    Catalogue &m_catalogue;
    std::mutex m_building; // held by the request thread that builds a small view; taken before the store's lock
    std::mutex m_mutex;    // guards what follows
    Index m_index;
    uint64_t m_revision = 0; // of the catalogue when m_index was begun
    std::condition_variable m_changed;
    std::atomic<bool> m_isStopping{false};
    std::thread m_thread; // runs keep()
};

} // namespace velmora::server
