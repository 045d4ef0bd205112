#include "server/store/postgres/postgresbackend.h"

#include "server/store/postgres/postgresschema.h"

#include <array>
#include <ctime>

namespace velmora::server {

namespace {

constexpr std::chrono::seconds longestWait{5};
constexpr std::chrono::minutes tidyEvery{1};
constexpr int rowsOfStep = 1000; // that others may have to wait for

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
    Expiring{"request_answers", "answered_at", 24 * 3600},
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
            const std::unique_ptr<PostgresBackend, void (*)(PostgresBackend *)> lent(
                this, [](PostgresBackend *self) { self->giveBack(); });
            Transaction change(db, Durability::Later);
            if (db.number("SELECT CASE WHEN pg_try_advisory_xact_lock(hashtextextended(?1, 0)) THEN 1 ELSE 0 END",
                          "upkeep of velmora-server") == 0)
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
