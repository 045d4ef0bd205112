#include "server/store/postgres/postgresdays.h"

#include <array>
#include <chrono>
#include <cstdio>

namespace velmora::server {

namespace {

std::string nameOf(const std::string &table, int64_t day)
{
    const std::chrono::year_month_day date{std::chrono::sys_days{std::chrono::days{day}}};
    std::array<char, 16> digits{};
    std::snprintf(digits.data(), digits.size(), "_%04d%02u%02u", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
    return table + digits.data();
}

} // namespace

void makePostgresDay(Connection &db, const std::string &table, int64_t day)
{
    const std::string name = nameOf(table, day);
    if (db.number("SELECT COUNT(*) FROM pg_catalog.pg_class WHERE oid = to_regclass(?1)", name) != 0)
        return;
    // Attaching a table hinders nobody; making it a partition from the start would wait for all who use the others. A
    // row that changes finds room beside the old one.
    db.execute("CREATE TABLE " + name + " (LIKE " + table +
               " INCLUDING DEFAULTS INCLUDING CONSTRAINTS) WITH (fillfactor = 90); ALTER TABLE " + table +
               " ATTACH PARTITION " + name + " FOR VALUES FROM (" + std::to_string(day) + ") TO (" +
               std::to_string(day + 1) + ")");
}

bool dropPostgresDay(Connection &db, const std::string &table, int64_t before)
{
    std::string oldest;
    {
        Statement row = db.prepare("SELECT MIN(CAST(c.relname AS TEXT)) FROM pg_catalog.pg_inherits i JOIN "
                                   "pg_catalog.pg_class c ON c.oid = i.inhrelid WHERE i.inhparent = to_regclass(?1)");
        row.with(table);
        if (row.step())
            oldest = row.text(0);
    }
    if (oldest.empty() || oldest >= nameOf(table, before)) // names of days sort as the days do
        return false;
    db.execute("DROP TABLE " + oldest);
    return true;
}

} // namespace velmora::server
