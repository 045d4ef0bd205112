#include "server/store/database.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace velmora::server {

namespace {

constexpr int busyMilliseconds = 5000;

} // namespace

class SqliteStatement : public StatementDriver {
public:
    SqliteStatement(Database &db, std::string sql, sqlite3_stmt *statement)
        : m_db(db)
        , m_sql(std::move(sql))
        , m_statement(statement)
    {
    }
    ~SqliteStatement() override { m_db.giveBack(m_sql, m_statement); }
    SqliteStatement(const SqliteStatement &) = delete;
    SqliteStatement &operator=(const SqliteStatement &) = delete;

    void bind(int index, int64_t value) override { check(sqlite3_bind_int64(m_statement, index, value)); }
    void bind(int index, double value) override { check(sqlite3_bind_double(m_statement, index, value)); }
    // A null pointer would bind NULL; an empty view may carry one.
    void bind(int index, const Blob &value) override
    {
        check(sqlite3_bind_blob64(m_statement, index, value.bytes.empty() ? "" : value.bytes.data(), value.bytes.size(),
                                  SQLITE_TRANSIENT));
    }
    void bind(int index, std::string_view value) override
    {
        check(sqlite3_bind_text(m_statement, index, value.empty() ? "" : value.data(), static_cast<int>(value.size()),
                                SQLITE_TRANSIENT));
    }
    void bindNull(int index, Type) override { check(sqlite3_bind_null(m_statement, index)); }

    bool step() override
    {
        const int result = sqlite3_step(m_statement);
        if (result == SQLITE_ROW)
            return true;
        if (result != SQLITE_DONE)
            check(result);
        return false;
    }
    void reset() override
    {
        sqlite3_reset(m_statement);
        sqlite3_clear_bindings(m_statement);
    }

    int64_t integer(int column) const override { return sqlite3_column_int64(m_statement, column); }
    double real(int column) const override { return sqlite3_column_double(m_statement, column); }
    std::string text(int column) const override { return string(sqlite3_column_text(m_statement, column), column); }
    std::string blob(int column) const override { return string(sqlite3_column_blob(m_statement, column), column); }
    bool isNull(int column) const override { return sqlite3_column_type(m_statement, column) == SQLITE_NULL; }

private:
    std::string string(const void *bytes, int column) const
    {
        return bytes ? std::string(static_cast<const char *>(bytes),
                                   static_cast<size_t>(sqlite3_column_bytes(m_statement, column)))
                     : std::string();
    }
    void check(int result) const
    {
        if (result == SQLITE_OK)
            return;
        const bool isConstraint = (result & 0xff) == SQLITE_CONSTRAINT;
        throw StoreError(std::string("the database refuses: ") + sqlite3_errmsg(sqlite3_db_handle(m_statement)),
                         isConstraint ? StoreError::Kind::Constraint : StoreError::Kind::Fault);
    }

    Database &m_db;
    const std::string m_sql;
    sqlite3_stmt *m_statement; // never null
};

void Database::Closer::operator()(sqlite3 *db) const
{
    sqlite3_close_v2(db);
}

Database::Database(const std::filesystem::path &file)
{
    // Created here, because SQLite would use the umask's mode; the log files get the mode of this file.
    const int fd = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0)
        throw StoreError("cannot open " + file.string());
    ::close(fd);

    sqlite3 *db = nullptr;
    const int result = sqlite3_open_v2(file.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    m_handle.reset(db);
    if (result != SQLITE_OK)
        throw StoreError("cannot open " + file.string());
    sqlite3_busy_timeout(db, busyMilliseconds);
    // A large catalogue's search index is read through memory mapping, past the small page cache.
    execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL; PRAGMA foreign_keys = ON; PRAGMA mmap_size = "
            "268435456; "
            "PRAGMA cache_size = -8192;");
}

Database::~Database()
{
    for (const auto &[sql, statement] : m_idle)
        sqlite3_finalize(statement);
}

std::unique_ptr<StatementDriver> Database::compile(std::string_view sql)
{
    std::string text(sql);
    sqlite3_stmt *statement = nullptr;
    if (const auto idle = m_idle.find(text); idle != m_idle.end()) {
        statement = idle->second;
        m_idle.erase(idle);
    } else if (sqlite3_prepare_v3(m_handle.get(), text.data(), static_cast<int>(text.size()), SQLITE_PREPARE_PERSISTENT,
                                  &statement, nullptr) != SQLITE_OK ||
               !statement) {
        throw StoreError(std::string("cannot prepare a statement: ") + sqlite3_errmsg(m_handle.get()));
    }
    return std::make_unique<SqliteStatement>(*this, std::move(text), statement);
}

void Database::giveBack(const std::string &sql, sqlite3_stmt *statement) noexcept
{
    sqlite3_reset(statement);
    sqlite3_clear_bindings(statement);
    try {
        if (m_idle.size() < mostIdle && m_idle.emplace(sql, statement).second)
            return;
    } catch (const std::bad_alloc &) {
        // Ended like one too many.
    }
    sqlite3_finalize(statement);
}

void Database::execute(const std::string &script)
{
    char *message = nullptr;
    if (sqlite3_exec(m_handle.get(), script.c_str(), nullptr, nullptr, &message) == SQLITE_OK)
        return;
    const std::string text = message ? message : "unknown";
    sqlite3_free(message);
    throw StoreError("the database refuses: " + text);
}

void Database::copyTo(Database &other) const
{
    sqlite3_backup *copy = sqlite3_backup_init(other.m_handle.get(), "main", m_handle.get(), "main");
    if (copy)
        sqlite3_backup_step(copy, -1);
    if (!copy || sqlite3_backup_finish(copy) != SQLITE_OK)
        throw StoreError(std::string("the database cannot be copied: ") + sqlite3_errmsg(other.m_handle.get()));
}

int Database::changes() const
{
    return sqlite3_changes(m_handle.get());
}

bool Database::inTransaction() const
{
    return sqlite3_get_autocommit(m_handle.get()) == 0;
}

void Database::beginErasing()
{
    execute("PRAGMA secure_delete = ON");
}

void Database::endErasing()
{
    execute("PRAGMA secure_delete = OFF; PRAGMA wal_checkpoint(TRUNCATE)");
}

void Database::begin(Durability durability)
{
    m_durability = durability;
    // It cannot be changed inside a transaction.
    if (m_durability == Durability::Later)
        execute("PRAGMA synchronous = NORMAL");
    try {
        execute("BEGIN IMMEDIATE");
    } catch (const StoreError &) {
        restoreDurability();
        throw;
    }
}

void Database::commit()
{
    execute("COMMIT");
    restoreDurability();
}

void Database::rollBack() noexcept
{
    try {
        if (inTransaction())
            execute("ROLLBACK");
    } catch (const StoreError &) {
        // The connection has rolled back by itself (a full disk does that).
    }
    restoreDurability();
}

void Database::restoreDurability()
{
    if (m_durability == Durability::AtOnce)
        return;
    try {
        execute("PRAGMA synchronous = FULL");
    } catch (const StoreError &) {
        std::terminate(); // never: outside a transaction this is a variable
    }
}

} // namespace velmora::server
