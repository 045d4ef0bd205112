#include "server/store/store.h"

#include "server/store/migrations.h"
#include "server/store/postgres/postgresbackend.h"
#include "server/store/sqlitebackend.h"

#include <random>
#include <thread>

namespace velmora::server {

SqliteBackend::SqliteBackend(const std::filesystem::path &file)
    : m_db(file)
{
    migrate(m_db);
}

void SqliteBackend::dropDays(int64_t today)
{
    const std::lock_guard guard(m_mutex);
    for (const DailyTable &table : dailyTables)
        m_db.run(std::string("DELETE FROM ") + table.name + " WHERE day < ?1", today - table.keptDays);
}

Store::Store(const std::filesystem::path &file)
    : Store(std::make_unique<SqliteBackend>(file))
{
}

Store::Store(const std::string &address, const std::filesystem::path &file)
{
    if (address.empty())
        m_backend = std::make_unique<SqliteBackend>(file);
    else
        m_backend = std::make_unique<PostgresBackend>(PostgresAddress::of(address));
}

void Store::keepDays(int64_t now)
{
    constexpr int64_t ahead = 3; // for the case that nobody can make any for a while
    m_backend->makeDays(dayOf(now), ahead);
    m_backend->dropDays(dayOf(now));
}

std::string Store::setting(const std::string &name)
{
    const Lock db = lock();
    Statement row = db->prepare("SELECT value FROM settings WHERE name = ?1");
    row.with(name);
    return row.step() ? row.text(0) : std::string();
}

void Store::setSetting(const std::string &name, const std::string &value)
{
    const Lock db = lock();
    db->run("INSERT INTO settings (name, value) VALUES (?1, ?2) ON CONFLICT (name) DO UPDATE SET value = ?2", name,
            value);
}

std::string Store::settingOnce(const std::string &name, const std::function<std::string()> &make)
{
    const Lock db = lock();
    if (std::string value = setting(name); !value.empty())
        return value;
    db->run("INSERT INTO settings (name, value) VALUES (?1, ?2) ON CONFLICT (name) DO NOTHING", name, make());
    return setting(name); // of whoever was first
}

void pauseBeforeRepeating(int count)
{
    std::this_thread::sleep_for(count * std::chrono::milliseconds(10 + std::random_device{}() % 30));
}

} // namespace velmora::server
