#include "server/store/postgres/postgresbackend.h"

#include "server/store/days.h"
#include "server/store/postgres/postgresdays.h"
#include "server/store/postgres/postgresschema.h"

#include <array>
#include <ctime>

namespace velmora::server {

namespace {

constexpr std::chrono::seconds longestWait{5};
constexpr std::chrono::minutes tidyEvery{1};
constexpr int rowsOfStep = 1000; // that others may have to wait for

// Who adds or drops a day waits for the statements that use the table, and others wait behind: a fifth of a second at
// most.
constexpr const char *waitBriefly = "SET LOCAL lock_timeout = 200";

struct Expiring {
    const char *table;
    const char *column;
    int64_t seconds;       // kept after the time of the column
    int64_t perSecond = 1; // units of the column
};
constexpr std::array expiring = {
    Expiring{"sessions", "expires_at", 0},
    Expiring{"activation_codes", "expires_at", 0},
    Expiring{"grants", "expires_at", 0},
    Expiring{"resets", "expires_at", 0},
    Expiring{"sign_ups", "expires_at", 0},
    Expiring{"invitations", "expires_at", 0},
    Expiring{"sleeps", "until", 0},
    Expiring{"login_failures", "last", 3600},
    Expiring{"rate_limits", "whole_at", 0, 1000},
    Expiring{"browser_sessions", "last_used", 3600},
    Expiring{"remote_radios", "version", 3600, 1000},
};

} // namespace

PostgresBackend::PostgresBackend(PostgresAddress address)
    : m_address(std::move(address))
{
    Connection &db = borrow();
    try {
        migratePostgres(db);
    } catch (...) {
        giveBack();
        throw;
    }
    giveBack();
    m_tidier.emplace(tidyEvery, [this] { tidy(); }); // without a server nothing expires
}

void PostgresBackend::tidy()
{
    const int64_t now = std::time(nullptr);
    for (const Expiring &what : expiring) {
        const std::string table = what.table;
        for (bool isMore = true; isMore;) {
            Connection &db = borrow();
            const Returned lent(this);
            Transaction change(db, Durability::Later);
            if (!isAlone(db))
                return; // another process does it
            std::string rows = "DELETE FROM ";
            rows.append(table).append(" WHERE ctid = ANY (ARRAY (SELECT ctid FROM ").append(table);
            rows.append(" WHERE ").append(what.column).append(" <= ?1 LIMIT ?2))");
            db.run(rows, (now - what.seconds) * what.perSecond, rowsOfStep);
            isMore = db.changes() == rowsOfStep;
            change.commit();
        }
    }
}

bool PostgresBackend::isAlone(Connection &db)
{
    return db.number("SELECT CASE WHEN pg_try_advisory_xact_lock(hashtextextended(?1, 0)) THEN 1 ELSE 0 END",
                     "upkeep of velmora-server") != 0;
}

void PostgresBackend::makeDays(int64_t today, int64_t ahead)
{
    {
        const std::lock_guard guard(m_mutex);
        if (today >= m_daysSince && today + ahead <= m_lastDay)
            return;
    }
    {
        Connection &db = borrow();
        const Returned lent(this);
        Transaction change(db, NameLock{"days of velmora-server"});
        db.execute(waitBriefly);
        for (const DailyTable &table : dailyTables) {
            for (int64_t day = today - table.keptDays; day <= today + ahead; ++day)
                makePostgresDay(db, table.name, day);
        }
        change.commit();
    }
    const std::lock_guard guard(m_mutex);
    m_daysSince = today;
    m_lastDay = today + ahead;
}

void PostgresBackend::dropDays(int64_t today)
{
    for (const DailyTable &table : dailyTables) {
        for (bool isMore = true; isMore;) {
            Connection &db = borrow();
            const Returned lent(this);
            Transaction change(db);
            if (!isAlone(db))
                return; // another process does it
            db.execute(waitBriefly);
            isMore = dropPostgresDay(db, table.name, today - table.keptDays);
            change.commit();
        }
    }
}

Connection &PostgresBackend::borrow()
{
    const std::thread::id thread = std::this_thread::get_id();
    std::unique_lock guard(m_mutex);
    if (const auto lent = m_lent.find(thread); lent != m_lent.end()) {
        ++lent->second.depth;
        return *lent->second.connection;
    }
    const auto begin = std::chrono::steady_clock::now();
    ++m_waiting;
    const bool isThere =
        m_isBack.wait_for(guard, longestWait, [this] { return !m_idle.empty() || m_made < m_address.connections; });
    --m_waiting;
    ++m_locks;
    m_waited += std::chrono::steady_clock::now() - begin;
    m_failures += isThere ? 0 : 1;
    if (!isThere)
        throw StoreError("all connections to PostgreSQL are in use", StoreError::Kind::Unavailable);
    std::unique_ptr<PostgresConnection> connection;
    if (m_idle.empty()) {
        connection = std::make_unique<PostgresConnection>(m_address);
        ++m_made;
    } else {
        connection = std::move(m_idle.back());
        m_idle.pop_back();
    }
    PostgresConnection &lent = *connection;
    m_lent[thread] = {std::move(connection), 1};
    guard.unlock();
    try {
        lent.revive();
    } catch (const StoreError &) {
        giveBack();
        guard.lock();
        ++m_failures;
        throw;
    }
    return lent;
}

void PostgresBackend::giveBack() noexcept
{
    {
        const std::lock_guard guard(m_mutex);
        const auto lent = m_lent.find(std::this_thread::get_id());
        if (--lent->second.depth > 0)
            return;
        try {
            m_idle.push_back(std::move(lent->second.connection));
        } catch (const std::bad_alloc &) {
            --m_made;
        }
        m_lent.erase(lent);
    }
    m_isBack.notify_one();
}

Backend::Waits PostgresBackend::waits() const
{
    const std::lock_guard guard(m_mutex);
    return {m_locks,
            std::chrono::duration<double>(m_waited).count(),
            m_failures,
            m_made,
            static_cast<int>(m_lent.size()),
            m_address.connections,
            m_waiting};
}

} // namespace velmora::server
