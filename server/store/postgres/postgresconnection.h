#pragma once

#include "server/store/connection.h"

#include <chrono>
#include <unordered_map>
#include <utility>
#include <vector>

struct pg_conn;
struct pg_result;

namespace velmora::server {

// Where a PostgreSQL is and how it is used.
struct PostgresAddress {
    static constexpr int mostConnections = 200;

    // Of "postgresql://[user@][host][:port]/database[?parameter=value&...]". The parameters are libpq's, and two of our
    // own: pool (connections at most, 1 to 200) and prepared=off, which behind a pgbouncer that pools transactions is
    // necessary. Throws std::runtime_error with a text for the person who wrote it. A password in the address is
    // refused: it would be in the list of processes. It belongs into the file of passfile= or PGPASSFILE.
    static PostgresAddress of(const std::string &text);
    static bool isOne(const std::string &text);

    std::vector<std::pair<std::string, std::string>> parameters; // of libpq
    int connections = 8;
    bool isPrepared = true;
};

// One connection to PostgreSQL. A lost one is made again: for the next transaction, and once for a statement outside a
// transaction that only reads. A statement outside a transaction that was cancelled in favour of another is done again,
// three times in all.
class PostgresConnection : public Connection {
public:
    // Connects when it is first needed. The address outlives the connection.
    explicit PostgresConnection(const PostgresAddress &address)
        : m_address(address)
    {
    }

    void execute(const std::string &script) override;
    int changes() const override { return m_changes; }
    bool inTransaction() const override { return m_isInTransaction; }
    bool isShared() const override { return true; }

    // Outside a transaction, when the connection has rested: a server that ended it meanwhile is noticed, so that the
    // next statement is not lost. Throws StoreError when there is no server.
    void revive();

    struct Parameter {
        StatementDriver::Type type = StatementDriver::Type::Unknown;
        bool isNull = true;
        std::string value; // a number as text; a text or bytes as they are
    };
    struct ResultCloser {
        void operator()(pg_result *result) const;
    };
    using Result = std::unique_ptr<pg_result, ResultCloser>;
    // Throws StoreError.
    Result run(const std::string &sql, const std::vector<Parameter> &parameters);

private:
    std::unique_ptr<StatementDriver> compile(std::string_view sql) override;
    void begin(Durability durability) override;
    void commit() override;
    void rollBack() noexcept override;
    void lockAccount(int64_t account) override;
    void lockName(const std::string &name) override;

    void connect();
    bool isLost() const;
    Result send(const std::string &sql, const std::vector<Parameter> &parameters);
    // The last result of what was sent. What takes longer than a statement may is cancelled; a connection that does not
    // answer to that either is given up.
    Result receive();
    // Waits for a result until then, at most.
    bool hasArrived(std::chrono::steady_clock::time_point until);
    Result simple(const std::string &script);
    // What is wrong with the result, if anything is.
    void check(const pg_result *result) const;

    struct Closer {
        void operator()(pg_conn *handle) const;
    };
    const PostgresAddress &m_address;
    std::unique_ptr<pg_conn, Closer> m_handle;
    std::unordered_map<std::string, std::string> m_prepared; // on this connection: name by text and types
    bool m_isInTransaction = false;
    int m_changes = 0;
};

// ?1 as PostgreSQL calls it, $1; texts and names in quotes stay.
std::string withDollars(std::string_view sql);

} // namespace velmora::server
