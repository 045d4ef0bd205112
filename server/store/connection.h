#pragma once

#include "server/store/statement.h"

namespace velmora::server {

// Whether a change is on the disk when commit() returns, or some time later: a power cut then loses the latest changes,
// and never a part of one. Later is for what comes back by itself (sessions, playlists, what a scan finds) or is one of
// many (plays): it costs no waiting for the disk.
enum class Durability { AtOnce, Later };

// One connection to one database, whatever its engine. What has been written is on the disk when the call returns,
// unless its transaction says otherwise. Not thread-safe; Store hands it to one thread at a time.
class Connection {
public:
    Connection() = default;
    virtual ~Connection() = default;
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    Statement prepare(std::string_view sql) { return Statement(compile(sql)); }

    // Runs one statement to its end and ignores its rows.
    template <typename... Values>
    void run(std::string_view sql, const Values &...values)
    {
        Statement statement = prepare(sql);
        statement.with(values...);
        while (statement.step()) {
        }
    }
    // Runs one statement to its end and returns the number in the first row: "INSERT ... RETURNING id". 0 without rows.
    template <typename... Values>
    int64_t number(std::string_view sql, const Values &...values)
    {
        Statement statement = prepare(sql);
        statement.with(values...);
        if (!statement.step())
            return 0;
        const int64_t value = statement.integer(0);
        while (statement.step()) {
        }
        return value;
    }
    // Runs several statements separated by semicolons, without values.
    virtual void execute(const std::string &script) = 0;

    virtual int changes() const = 0; // rows touched by the last writing statement
    virtual bool inTransaction() const = 0;

    // Whether other processes work in the same database. What has expired is then deleted by a job of the engine's, not
    // on the way of a request.
    virtual bool isShared() const { return false; }

    // Between the two, what is deleted is overwritten where the engine can do that, in the log too. Not inside a
    // transaction.
    virtual void beginErasing() {}
    virtual void endErasing() {}

protected:
    friend class Transaction;
    virtual std::unique_ptr<StatementDriver> compile(std::string_view sql) = 0;
    virtual void begin(Durability durability) = 0;
    virtual void commit() = 0;
    // After a begin() that was not committed.
    virtual void rollBack() noexcept = 0;
    // Within a transaction: others that ask for the same wait until it ends.
    virtual void lockAccount(int64_t account) = 0;
    virtual void lockName(const std::string &name) = 0;
};

// Transactions of one account exclude one another: for whoever reads and then writes what the reading allowed.
struct AccountLock {
    int64_t account = 0;
};
// The same by any name, across all processes.
struct NameLock {
    std::string name;
};

// All or nothing: rolled back unless commit() was called. Inside another transaction it joins that one, whose
// durability counts. A lock lasts until the outermost transaction ends.
//
// With PostgreSQL a statement that fails ends its transaction: catch no StoreError inside one and go on.
class Transaction {
public:
    explicit Transaction(Connection &db, Durability durability = Durability::AtOnce);
    Transaction(Connection &db, const AccountLock &lock, Durability durability = Durability::AtOnce);
    Transaction(Connection &db, const NameLock &lock, Durability durability = Durability::AtOnce);
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;
    void commit();

private:
    Connection &m_db;
    bool m_isOpen = false; // ours to end
};

} // namespace velmora::server
