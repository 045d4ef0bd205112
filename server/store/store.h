#pragma once

#include "server/store/database.h"

#include <filesystem>
#include <mutex>

namespace velmora::server {

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
        std::lock_guard<std::recursive_mutex> m_guard;
        Database &m_db;
    };

    // Opens or makes the file and brings its schema up to date. Throws StoreError.
    explicit Store(const std::filesystem::path &file);

    Lock lock() { return Lock(*this); }

    // Small values of the service's own, such as the key that signs addresses. Empty when never set.
    std::string setting(const std::string &name);
    void setSetting(const std::string &name, const std::string &value);

private:
    std::recursive_mutex m_mutex;
    Database m_db;
};

} // namespace velmora::server
