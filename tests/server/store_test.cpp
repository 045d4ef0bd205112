// The database file: private, migrated, refused when it is newer, unchanged after a failed migration.

#include "server/store/migrations.h"
#include "server/store/store.h"
#include "serverfixture.h"

#include <sys/stat.h>

namespace velmora::server {
namespace {

class StoreTest : public testing::Test {
protected:
    int64_t version()
    {
        Database db(m_file);
        Statement row = db.prepare("PRAGMA user_version");
        row.step();
        return row.integer(0);
    }

    TemporaryDirectory m_directory;
    std::filesystem::path m_file = m_directory.path() / "velmora.db";
};

TEST_F(StoreTest, ANewFileGetsTheNewestSchemaAndOnlyItsOwnerReadsIt)
{
    const Store store(m_file);
    EXPECT_EQ(version(), newestSchemaVersion());
    struct stat status {};
    ASSERT_EQ(::stat(m_file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
}

TEST_F(StoreTest, EveryOlderVersionIsBroughtUpToDateWithItsData)
{
    const std::string odd("it's \"odd\" \0 -- ; DROP TABLE settings", 37);
    {
        Store(m_file).setSetting("kept", odd);
    }
    {
        // The state of the first version: without the changes of later steps.
        Database db(m_file);
        db.execute(
            "INSERT INTO accounts (id, user_name, folded_name, password_hash, created_at) VALUES (1, 'a', 'a', '', 0); "
            "INSERT INTO devices (device_id, account_id, key_hash, associated_at) VALUES ('001A2B3C4D5E-0', 1, 'k', "
            "7); "
            "PRAGMA foreign_keys = OFF; ALTER TABLE sessions DROP COLUMN is_revoked; ALTER TABLE sessions DROP COLUMN "
            "device_model; ALTER TABLE activation_codes DROP COLUMN device_model; ALTER TABLE activation_codes DROP "
            "COLUMN address; DROP TABLE play_counts; DROP TABLE play_days; DROP TABLE sign_ups; DROP TABLE "
            "request_answers; DROP "
            "TABLE plays; DROP TABLE "
            "descriptors; DROP TABLE track_styles; DROP TABLE styles; DROP TABLE files; DROP TABLE roots; DROP TABLE "
            "issued_tracks; "
            "DROP TABLE issued_ads; DROP TABLE feedback; DROP TABLE sleeps; DROP TABLE bookmarks; DROP TABLE "
            "track_events; DROP TABLE seeds; DROP TABLE music_tokens; DROP "
            "TABLE stations; DROP TABLE tracks; DROP TABLE albums; DROP TABLE artists; DROP TABLE ads; DROP TABLE "
            "track_search; DROP TABLE artist_search; DROP TABLE cover_files; DROP TABLE invitations; ALTER TABLE "
            "resets DROP COLUMN value; PRAGMA user_version = 1;");
    }
    Store store(m_file);
    EXPECT_EQ(store.setting("kept"), odd);
    EXPECT_EQ(version(), newestSchemaVersion());
    const Store::Lock db = store.lock();
    Statement device = db->prepare("SELECT associated_at FROM devices WHERE key_hash = 'k'");
    ASSERT_TRUE(device.step());
    EXPECT_EQ(device.integer(0), 7);
}

TEST_F(StoreTest, ANewerFileIsRefusedWithItsVersionAndLeftUnchanged)
{
    {
        const Store store(m_file);
    }
    Database(m_file).execute("PRAGMA user_version = 1000");
    try {
        const Store store(m_file);
        FAIL() << "a newer database was opened";
    } catch (const StoreError &error) {
        EXPECT_NE(std::string(error.what()).find("1000"), std::string::npos) << error.what();
    }
    EXPECT_EQ(version(), 1000);
}

TEST_F(StoreTest, AStepThatFailsLeavesTheVersionBeforeIt)
{
    {
        Database db(m_file);
        db.execute("CREATE TABLE artists (x); PRAGMA user_version = 1;"); // the second step cannot make this table
    }
    EXPECT_THROW({ const Store store(m_file); }, StoreError);
    EXPECT_EQ(version(), 1);
    Database db(m_file);
    Statement row = db.prepare("SELECT COUNT(*) FROM sqlite_master WHERE name = 'albums'");
    row.step();
    EXPECT_EQ(row.integer(0), 0);
}

} // namespace
} // namespace velmora::server
