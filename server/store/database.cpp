#include "server/store/database.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora::server {

namespace {

constexpr int busyMilliseconds = 5000;

} // namespace

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

int64_t Database::lastRowId() const
{
    return sqlite3_last_insert_rowid(m_handle.get());
}

int Database::changes() const
{
    return sqlite3_changes(m_handle.get());
}

bool Database::inTransaction() const
{
    return sqlite3_get_autocommit(m_handle.get()) == 0;
}

Transaction::Transaction(Database &db, Durability durability)
    : m_db(db)
    , m_durability(durability)
{
    if (db.inTransaction())
        return;
    // It cannot be changed inside a transaction.
    if (m_durability == Durability::Later)
        db.execute("PRAGMA synchronous = NORMAL");
    try {
        db.execute("BEGIN IMMEDIATE");
    } catch (const StoreError &) {
        restoreDurability();
        throw;
    }
    m_isOpen = true;
}

Transaction::~Transaction()
{
    if (!m_isOpen)
        return;
    try {
        if (m_db.inTransaction())
            m_db.execute("ROLLBACK");
    } catch (const StoreError &) {
        // The connection has rolled back by itself (a full disk does that).
    }
    restoreDurability();
}

void Transaction::commit()
{
    if (!m_isOpen)
        return;
    m_db.execute("COMMIT");
    m_isOpen = false;
    restoreDurability();
}

void Transaction::restoreDurability()
{
    if (m_durability == Durability::AtOnce)
        return;
    try {
        m_db.execute("PRAGMA synchronous = FULL");
    } catch (const StoreError &) {
        std::terminate(); // never: outside a transaction this is a variable
    }
}

} // namespace velmora::server
