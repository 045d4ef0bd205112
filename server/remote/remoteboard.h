#pragma once

#include "server/accounts/lrutable.h"
#include "server/remote/radiorecord.h"
#include "server/store/repeatedtask.h"
#include "server/store/store.h"

#include <functional>
#include <mutex>
#include <string>

namespace velmora::server {

// The records of radios where several processes meet: rows of a table in a shared store, only of radios that a
// telephone has to do with, so that a radio that waits alone costs no database. Each process asks for changed rows ten
// times a second, which also works where a proxy pools transactions and notifications of the database do not arrive.
// Times are the database's. Any thread.
class RemoteBoard {
public:
    // `changed` is called when another process has changed the record: on a thread of the board's, or in use(). The
    // store is shared and outlives the board.
    using Changed = std::function<void(const std::string &radio)>;
    RemoteBoard(Store &store, Changed changed);

    // Whether there is a record, as far as is known without asking the database. One of another process is known within
    // a fraction of a second.
    bool has(const std::string &radio);

    // What becomes of a record: written; written, and the other processes are told; deleted.
    enum class After { Quiet, News, Gone };
    using Work = std::function<After(RadioRecord &record, RadioRecord::Time now)>;
    // Lets the work read and change the record while nobody else does; it may be called again. False, and no call, when
    // there is no record and `isMade` does not ask for one. Throws StoreError.
    bool use(const std::string &radio, bool isMade, const Work &work);

private:
    void poll();
    // The version that was found in the database, and the one that was left there; 0: none. Whether the first is news.
    bool learn(const std::string &radio, int64_t found, int64_t left);

    Store &m_store;
    const std::string m_key; // that seals the records: an order may be a password
    const Changed m_changed;
    std::mutex m_mutex;                             // guards the members below
    LruTable<std::string, int64_t> m_known{20'000}; // versions of records
    int64_t m_newest = 0;                           // version that was seen
    RepeatedTask m_poll;
};

} // namespace velmora::server
