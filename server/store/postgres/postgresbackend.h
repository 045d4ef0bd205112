#pragma once

#include "server/store/backend.h"
#include "server/store/postgres/postgresconnection.h"
#include "server/store/repeatedtask.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

namespace velmora::server {

// A PostgreSQL with a pool of connections, which are made as they are needed. Any thread.
class PostgresBackend final : public Backend {
public:
    // Brings the schema up to date: the first process of several, the others wait. Throws StoreError when there is no
    // server, or its schema is of a newer program.
    explicit PostgresBackend(PostgresAddress address);

    // Waits up to five seconds for a connection. Throws StoreError.
    Connection &borrow() override;
    void giveBack() noexcept override;
    Waits waits() const override;
    bool isShared() const override { return true; }
    void makeDays(int64_t today, int64_t ahead) override;
    void dropDays(int64_t today) override;

private:
    // Gives a connection back at the end of its life.
    struct GiveBack {
        void operator()(PostgresBackend *self) const noexcept { self->giveBack(); }
    };
    using Returned = std::unique_ptr<PostgresBackend, GiveBack>;

    // Deletes what has expired, every minute, in one process at a time.
    void tidy();
    // Whether no other process does the upkeep until the transaction ends.
    static bool isAlone(Connection &db);

    struct Lent {
        std::unique_ptr<PostgresConnection> connection;
        int depth = 0;
    };

    const PostgresAddress m_address;
    mutable std::mutex m_mutex; // guards the members below
    std::condition_variable m_isBack;
    std::unordered_map<std::thread::id, Lent> m_lent;
    std::vector<std::unique_ptr<PostgresConnection>> m_idle; // the one used last at the end
    int m_made = 0;                                          // idle and lent ones
    int m_waiting = 0;                                       // threads
    uint64_t m_failures = 0;
    uint64_t m_locks = 0;
    std::chrono::steady_clock::duration m_waited{};
    int64_t m_daysSince = 0; // there are partitions for what was kept on this day, and for the days up to m_lastDay
    int64_t m_lastDay = -1;
    std::optional<RepeatedTask> m_tidier;
};

} // namespace velmora::server
