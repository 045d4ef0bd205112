#include "server/store/statement.h"

#include <sqlite3.h>
#include <utility>

namespace velmora::server {

Statement::Statement(sqlite3 *db, std::string_view sql)
{
    if (sqlite3_prepare_v2(db, sql.data(), static_cast<int>(sql.size()), &m_statement, nullptr) != SQLITE_OK)
        throw StoreError(std::string("cannot prepare a statement: ") + sqlite3_errmsg(db));
}

Statement::Statement(Statement &&other) noexcept
    : m_statement(std::exchange(other.m_statement, nullptr))
{
}

Statement::~Statement()
{
    sqlite3_finalize(m_statement);
}

bool Statement::step()
{
    const int result = sqlite3_step(m_statement);
    if (result == SQLITE_ROW)
        return true;
    if (result != SQLITE_DONE)
        check(result);
    return false;
}

void Statement::reset()
{
    sqlite3_reset(m_statement);
    sqlite3_clear_bindings(m_statement);
}

int64_t Statement::integer(int column) const
{
    return sqlite3_column_int64(m_statement, column);
}

std::string Statement::text(int column) const
{
    const auto *bytes = reinterpret_cast<const char *>(sqlite3_column_text(m_statement, column));
    return bytes ? std::string(bytes, static_cast<size_t>(sqlite3_column_bytes(m_statement, column))) : std::string();
}

std::string Statement::blob(int column) const
{
    const auto *bytes = static_cast<const char *>(sqlite3_column_blob(m_statement, column));
    return bytes ? std::string(bytes, static_cast<size_t>(sqlite3_column_bytes(m_statement, column))) : std::string();
}

double Statement::real(int column) const
{
    return sqlite3_column_double(m_statement, column);
}

bool Statement::isNull(int column) const
{
    return sqlite3_column_type(m_statement, column) == SQLITE_NULL;
}

void Statement::bind(int index, int64_t value)
{
    check(sqlite3_bind_int64(m_statement, index, value));
}

void Statement::bind(int index, double value)
{
    check(sqlite3_bind_double(m_statement, index, value));
}

void Statement::bind(int index, const Blob &value)
{
    // An empty view may have no address, and SQLite takes that for NULL.
    check(sqlite3_bind_blob64(m_statement, index, value.bytes.empty() ? "" : value.bytes.data(), value.bytes.size(),
                              SQLITE_TRANSIENT));
}

void Statement::bind(int index, std::string_view value)
{
    // A null pointer would bind NULL; an empty view may carry one.
    const char *bytes = value.empty() ? "" : value.data();
    check(sqlite3_bind_text(m_statement, index, bytes, static_cast<int>(value.size()), SQLITE_TRANSIENT));
}

void Statement::bind(int index, std::nullptr_t)
{
    check(sqlite3_bind_null(m_statement, index));
}

void Statement::check(int result) const
{
    if (result == SQLITE_OK)
        return;
    sqlite3 *db = sqlite3_db_handle(m_statement);
    throw StoreError(std::string("the database refuses: ") + sqlite3_errmsg(db), (result & 0xff) == SQLITE_CONSTRAINT);
}

} // namespace velmora::server
