#pragma once

#include "server/store/backend.h"
#include "server/store/database.h"

#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>

namespace velmora::server {

// Locks nest within a thread, and threads get it in turn: one that unlocks and locks again at once, as a scan does,
// waits behind those that came meanwhile.
class FairMutex {
public:
    void lock()
    {
        if (m_owner == std::this_thread::get_id()) {
            ++m_depth;
            return;
        }
        const auto begin = std::chrono::steady_clock::now();
        ++m_waiting;
        {
            const std::lock_guard turn(m_turn);
            m_mutex.lock();
        }
        --m_waiting;
        ++m_locks;
        m_waited += (std::chrono::steady_clock::now() - begin).count();
        m_owner = std::this_thread::get_id();
        m_depth = 1;
    }
    void unlock()
    {
        if (--m_depth > 0)
            return;
        m_owner = std::thread::id();
        m_mutex.unlock();
    }
    uint64_t locks() const { return m_locks; }
    bool isLocked() const { return m_owner.load() != std::thread::id(); }
    int waiting() const { return m_waiting; } // threads
    std::chrono::steady_clock::duration waited() const { return std::chrono::steady_clock::duration(m_waited); }

private:
    std::mutex m_turn; // held by the one thread that is next
    std::mutex m_mutex;
    std::atomic<std::thread::id> m_owner; // the thread that holds m_mutex
    int m_depth = 0;                      // of that thread
    std::atomic<int> m_waiting = 0;
    std::atomic<uint64_t> m_locks = 0;
    std::atomic<std::chrono::steady_clock::rep> m_waited = 0; // for locks, by all threads
};

// One SQLite file with one connection.
class SqliteBackend : public Backend {
public:
    // Opens or makes the file and brings its schema up to date. Throws StoreError.
    explicit SqliteBackend(const std::filesystem::path &file);

    Connection &borrow() override
    {
        m_mutex.lock();
        return m_db;
    }
    void giveBack() noexcept override { m_mutex.unlock(); }
    void makeDays(int64_t, int64_t) override {}
    void dropDays(int64_t today) override;
    Waits waits() const override
    {
        Waits waits;
        waits.locks = m_mutex.locks();
        waits.seconds = std::chrono::duration<double>(m_mutex.waited()).count();
        waits.used = m_mutex.isLocked() ? 1 : 0;
        waits.waiting = m_mutex.waiting();
        return waits;
    }

private:
    FairMutex m_mutex;
    Database m_db;
};

} // namespace velmora::server
