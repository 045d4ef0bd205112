#pragma once

#include "server/store/statement.h"

#include <filesystem>
#include <memory>

namespace velmora::server {

// One connection to one SQLite file: write-ahead log, foreign keys on, a lock of another process is waited for five
// seconds. What has been written is on the disk when the call returns, unless its transaction says otherwise.
// Not thread-safe; Store hands it to one thread at a time.
class Database {
public:
    // Creates the file, readable by its owner only, when it does not exist. Throws StoreError.
    explicit Database(const std::filesystem::path &file);

    Statement prepare(std::string_view sql) { return Statement(m_handle.get(), sql); }

    // Runs one statement to its end and ignores its rows.
    template <typename... Values>
    void run(std::string_view sql, const Values &...values)
    {
        Statement statement = prepare(sql);
        statement.with(values...);
        while (statement.step()) {
        }
    }
    // Runs several statements separated by semicolons, without values.
    void execute(const std::string &script);

    // Makes the other one equal to this one as it is at one moment; programs that write meanwhile are not disturbed.
    void copyTo(Database &other) const;

    int64_t lastRowId() const;
    int changes() const; // rows touched by the last writing statement
    bool inTransaction() const;

private:
    struct Closer {
        void operator()(sqlite3 *db) const;
    };
    std::unique_ptr<sqlite3, Closer> m_handle;
};

// Whether a change is on the disk when commit() returns, or some time later: a power cut then loses the latest changes,
// and never a part of one. Later is for what comes back by itself (sessions, playlists, what a scan finds): it costs no
// waiting for the disk.
enum class Durability { AtOnce, Later };

// All or nothing: rolled back unless commit() was called. Inside another transaction it joins that one, whose
// durability counts.
class Transaction {
public:
    explicit Transaction(Database &db, Durability durability = Durability::AtOnce);
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;
    void commit();

private:
    void restoreDurability();

    Database &m_db;
    const Durability m_durability;
    bool m_isOpen = false; // ours to end
};

} // namespace velmora::server
