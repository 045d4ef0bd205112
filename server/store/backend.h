#pragma once

#include "server/store/connection.h"

#include <memory>

namespace velmora::server {

// The database engine behind a Store. Any thread.
class Backend {
public:
    // Since the start: how often a thread asked for a connection, how long threads waited for one, and how often none
    // came. Now: the connections, those that a thread has, the most that there may be, and the threads that wait.
    struct Waits {
        uint64_t locks = 0;
        double seconds = 0;
        uint64_t failures = 0;
        int connections = 1;
        int used = 0;
        int most = 1;
        int waiting = 0;
    };

    virtual ~Backend() = default;
    // A connection for this thread. A thread that has one gets the same again. Throws StoreError.
    virtual Connection &borrow() = 0;
    // As often as borrow().
    virtual void giveBack() noexcept = 0;
    virtual Waits waits() const = 0;
    // Whether other processes may work in the same database.
    virtual bool isShared() const { return false; }
    // Afterwards there is place for rows of all days that the tables that grow with time keep, of today, and of so many
    // days ahead. Throws StoreError.
    virtual void makeDays(int64_t today, int64_t ahead) = 0;
    // The days that those tables no longer keep go as a whole, unless another process is at it. Throws StoreError.
    virtual void dropDays(int64_t today) = 0;
};

} // namespace velmora::server
