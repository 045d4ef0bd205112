#pragma once

#include "server/store/backend.h"
#include "server/store/days.h"

#include <filesystem>
#include <functional>

namespace velmora::server {

// One database of the service. It is used through lock(): the connection belongs to that thread until the Lock ends.
// Locks nest within a thread. Nothing slow (hashing a password, reading a file, waiting) is done under a lock.
//
// A SQLite file has one connection, so that a lock excludes all other threads. PostgreSQL has a pool, and other
// processes: a lock excludes nobody. Whoever reads and then writes by it says so with a Transaction's AccountLock or
// NameLock, or lets one statement do both (DELETE ... RETURNING).
class Store {
public:
    class Lock {
    public:
        explicit Lock(Store &store)
            : m_backend(*store.m_backend)
            , m_db(m_backend.borrow())
        {
        }
        ~Lock() { m_backend.giveBack(); }
        Lock(const Lock &) = delete;
        Lock &operator=(const Lock &) = delete;
        Connection *operator->() const { return &m_db; }
        Connection &operator*() const { return m_db; }

    private:
        Backend &m_backend;
        Connection &m_db;
    };

    // Opens or makes a SQLite file and brings its schema up to date. Throws StoreError.
    explicit Store(const std::filesystem::path &file);
    // The same, or the PostgreSQL of an address (PostgresAddress) if there is one.
    Store(const std::string &address, const std::filesystem::path &file);
    explicit Store(std::unique_ptr<Backend> backend)
        : m_backend(std::move(backend))
    {
    }

    Lock lock() { return Lock(*this); }
    bool isShared() const { return m_backend->isShared(); }
    // Called before rows of today are written, outside a transaction: it takes time on a day's first call only.
    void reachDay(int64_t now) { m_backend->makeDays(dayOf(now), 0); }
    // Makes place for the next days and drops those that are no longer kept. Called every minute.
    void keepDays(int64_t now);
    using Waits = Backend::Waits;
    Waits waits() const { return m_backend->waits(); }

    // Small values of the service's own. Empty when never set.
    std::string setting(const std::string &name);
    void setSetting(const std::string &name, const std::string &value);
    // The value; the first caller of all, in whatever process, sets it to what `make` returns.
    std::string settingOnce(const std::string &name, const std::function<std::string()> &make);

private:
    std::unique_ptr<Backend> m_backend;
};

// Some ten milliseconds times `count`, different each time.
void pauseBeforeRepeating(int count);

// Runs a function that makes one transaction. A transaction that the database cancelled in favour of another one is
// made again, three times in all. Inside a transaction it runs once: the outermost one is made again.
template <typename Work>
auto repeated(Store &store, Work work)
{
    constexpr int most = 3;
    for (int count = 1; count < most && !store.lock()->inTransaction(); ++count) {
        try {
            return work();
        } catch (const StoreError &error) {
            if (!error.isConflict())
                throw;
        }
        // The other one gets the locks first, or both block each other again.
        pauseBeforeRepeating(count);
    }
    return work();
}

} // namespace velmora::server
