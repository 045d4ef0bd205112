#pragma once

#include "server/store/database.h"

#include <atomic>
#include <chrono>
#include <filesystem>
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
        {
            const std::lock_guard turn(m_turn);
            m_mutex.lock();
        }
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
    std::chrono::steady_clock::duration waited() const { return std::chrono::steady_clock::duration(m_waited); }

private:
    std::mutex m_turn; // held by the one thread that is next
    std::mutex m_mutex;
    std::atomic<std::thread::id> m_owner; // the thread that holds m_mutex
    int m_depth = 0;                      // of that thread
    std::atomic<uint64_t> m_locks = 0;
    std::atomic<std::chrono::steady_clock::rep> m_waited = 0; // for locks, by all threads
};

// The service's only database. It is used through lock(): the connection belongs to that thread until the Lock ends.
// Locks nest within a thread. Nothing slow (hashing a password, reading a file, waiting) is done under a lock.
class Store {
public:
    class Lock {
    public:
        explicit Lock(Store &store)
            : m_guard(store.m_mutex)
            , m_db(store.m_db)
        {
        }
        Database *operator->() const { return &m_db; }
        Database &operator*() const { return m_db; }

    private:
        std::lock_guard<FairMutex> m_guard;
        Database &m_db;
    };

    // Opens or makes the file and brings its schema up to date. Throws StoreError.
    explicit Store(const std::filesystem::path &file);

    Lock lock() { return Lock(*this); }
    // Since the start. Any thread.
    struct Waits {
        uint64_t locks = 0;
        double seconds = 0;
    };
    Waits waits() const { return {m_mutex.locks(), std::chrono::duration<double>(m_mutex.waited()).count()}; }

    // Small values of the service's own, such as the key that signs addresses. Empty when never set.
    std::string setting(const std::string &name);
    void setSetting(const std::string &name, const std::string &value);

private:
    FairMutex m_mutex;
    Database m_db;
};

} // namespace velmora::server
