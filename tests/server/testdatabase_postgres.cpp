#include "postgresserver.h"
#include "server/store/store.h"
#include "testdatabase.h"

#include <gtest/gtest.h>

namespace velmora::server {

namespace {

std::unique_ptr<PostgresServer> postgres; // of all tests of the program

class PostgresEnvironment : public testing::Environment {
    void SetUp() override
    {
        if (!PostgresServer::programs())
            GTEST_SKIP() << "PostgreSQL is not installed";
        postgres = std::make_unique<PostgresServer>();
    }
    void TearDown() override { postgres.reset(); }
};

const testing::Environment *const environment = testing::AddGlobalTestEnvironment(new PostgresEnvironment);

} // namespace

TestDatabase::TestDatabase()
    : m_address(postgres->makeDatabase())
{
}

TestDatabase::~TestDatabase()
{
    postgres->dropDatabase(m_address);
}

std::string TestDatabase::content(const std::filesystem::path &) const
{
    Store store(m_address, {});
    const Store::Lock db = store.lock();
    std::string stored;
    Statement table = db->prepare("SELECT tablename FROM pg_tables WHERE schemaname = 'public'");
    while (table.step()) {
        Statement row = db->prepare("SELECT CAST(t AS TEXT) FROM " + table.text(0) + " t");
        while (row.step())
            stored += row.text(0) + '\n';
    }
    return stored;
}

} // namespace velmora::server
