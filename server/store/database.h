#pragma once

#include "server/store/connection.h"

#include <filesystem>
#include <unordered_map>

struct sqlite3;
struct sqlite3_stmt;

namespace velmora::server {

// One connection to one SQLite file: write-ahead log, foreign keys on, a lock of another process is waited for five
// seconds.
class Database final : public Connection {
public:
    // Creates the file, readable by its owner only, when it does not exist. Throws StoreError.
    explicit Database(const std::filesystem::path &file);
    ~Database() override;

    void execute(const std::string &script) override;
    int changes() const override;
    bool inTransaction() const override;
    void beginErasing() override;
    void endErasing() override;

    // Makes the other one equal to this one as it is at one moment; programs that write meanwhile are not disturbed.
    void copyTo(Database &other) const;

private:
    friend class SqliteStatement;
    std::unique_ptr<StatementDriver> compile(std::string_view sql) override;
    void begin(Durability durability) override;
    void commit() override;
    void rollBack() noexcept override;
    void lockAccount(int64_t) override {} // a transaction excludes all others
    void lockName(const std::string &) override {}
    void restoreDurability();
    // Keeps a statement for the next one with the same text, or ends it.
    void giveBack(const std::string &sql, sqlite3_stmt *statement) noexcept;

    static constexpr size_t mostIdle = 300;
    struct Closer {
        void operator()(sqlite3 *db) const;
    };
    std::unique_ptr<sqlite3, Closer> m_handle;
    std::unordered_map<std::string, sqlite3_stmt *> m_idle; // compiled, not in use; by text
    Durability m_durability = Durability::AtOnce;           // of the transaction
};

} // namespace velmora::server
