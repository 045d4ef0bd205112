// The database file: private, migrated, refused when it is newer, unchanged after a failed migration.

#include "server/stations/plays.h"
#include "server/store/database.h"
#include "server/store/migrations.h"
#include "server/store/store.h"
#include "server/store/storeprobe.h"
#include "serverfixture.h"

#include <map>
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
        Database db(m_file);
        migrate(db, 1);
        db.run("INSERT INTO settings (name, value) VALUES ('kept', ?1)", odd);
        db.execute(
            "INSERT INTO accounts (id, user_name, folded_name, password_hash, created_at) VALUES (1, 'a', 'a', '', 0); "
            "INSERT INTO devices (device_id, account_id, key_hash, associated_at) VALUES ('001A2B3C4D5E-0', 1, 'k', "
            "7)");
    }
    Store store(m_file);
    EXPECT_EQ(store.setting("kept"), odd);
    EXPECT_EQ(version(), newestSchemaVersion());
    const Store::Lock db = store.lock();
    Statement device = db->prepare("SELECT associated_at FROM devices WHERE key_hash = 'k'");
    ASSERT_TRUE(device.step());
    EXPECT_EQ(device.integer(0), 7);
}

TEST_F(StoreTest, AProbeTellsInTimeOfAStoreThatDoesNotAnswer)
{
    Store store(m_file);
    StoreProbe probe(store);
    EXPECT_TRUE(probe.isAnswering());
    {
        const Store::Lock held = store.lock();
        EXPECT_FALSE(probe.isAnswering()) << "and returned";
    }
    EXPECT_TRUE(probe.isAnswering());
}

TEST_F(StoreTest, WhatAThumbIsForKeepsItsIdForEver)
{
    const char *const trackColumns =
        " (public_id, artist_id, album_id, song, folded, style, mood, tempo, year, duration, audio_path, audio_type, "
        "bitrate, picture_path, is_playable) VALUES ";
    const auto track = [](const char *id) {
        return "('" + std::string(id) + "', 7, 1, '', '', '', '', 0, 0, 0, '', '', 0, '', 1)";
    };
    {
        // The version before ids became permanent, with data.
        Database db(m_file);
        migrate(db, 12);
        db.execute(
            "INSERT INTO accounts (id, user_name, folded_name, password_hash, created_at) VALUES (5, 'a', 'a', '', 0); "
            "INSERT INTO stations (id, account_id, token, name, created_at) VALUES (3, 5, 't', 'n', 0); INSERT INTO "
            "seeds VALUES (3, 'style', 'folk'); INSERT INTO artists (id, public_id, name, folded) VALUES (7, 'a', 'A', "
            "'a'); INSERT INTO albums (id, public_id, artist_id, title, year) VALUES (1, 'l', 7, 'L', 0); INSERT INTO "
            "tracks" +
            std::string(trackColumns) + track("one") + ", " + track("two") +
            "; INSERT INTO feedback (station_id, track_id, account_id, is_positive, given_at) VALUES (3, 2, 5, 1, "
            "9); INSERT INTO ads VALUES (3, 'b', '', '', 0, '', '', '', 1)");
    }
    Store store(m_file);
    const Store::Lock db = store.lock();
    EXPECT_EQ(db->number("SELECT given_at FROM feedback WHERE track_id = 2"), 9) << "a thumb is lost with its table";
    EXPECT_EQ(db->number("SELECT account_id FROM seeds WHERE station_id = 3 AND target = 'folk'"), 5);
    db->run("DELETE FROM tracks WHERE id = 2");
    EXPECT_EQ(db->number("SELECT COUNT(*) FROM feedback"), 0) << "foreign keys hold again";
    EXPECT_EQ(db->number("INSERT INTO tracks" + std::string(trackColumns) + track("three") + " RETURNING id"), 3);
    db->run("DELETE FROM tracks");
    db->run("DELETE FROM albums");
    db->run("DELETE FROM artists");
    EXPECT_EQ(db->number("INSERT INTO artists (public_id, name, folded) VALUES ('b', 'B', 'b') RETURNING id"), 8);
    EXPECT_EQ(db->number("INSERT INTO albums (public_id, artist_id, title, year) VALUES ('m', 8, '', 0) RETURNING id"),
              2);
    const char *const ad = "INSERT INTO ads (public_id, title, line2, duration, audio_path, audio_type, picture_path, "
                           "is_playable) VALUES ('c', '', '', 0, '', '', '', 1) RETURNING id";
    EXPECT_EQ(db->number(ad), 4);
    db->run("DELETE FROM ads");
    EXPECT_EQ(db->number(ad), 5);
}

TEST_F(StoreTest, WhatWasHeardBeforeItWentByTheDayIsRemembered)
{
    {
        Database db(m_file);
        migrate(db, 10);
        db.execute(
            "INSERT INTO accounts (id, user_name, folded_name, password_hash, created_at) VALUES (5, 'a', 'a', '', 0); "
            "INSERT INTO stations (id, account_id, token, name, created_at, lists_issued) VALUES (3, 5, 't', 'n', 0, "
            "500), "
            "(4, 5, 'u', 'm', 0, 1); INSERT INTO artists (id, public_id, name, folded) VALUES (7, 'a', 'A', 'a'); "
            "INSERT INTO albums "
            "(id, public_id, artist_id, title, year) VALUES (1, 'l', 7, 'L', 0); INSERT INTO tracks (id, public_id, "
            "artist_id, album_id, song, folded, style, mood, tempo, year, duration, audio_path, audio_type, bitrate, "
            "picture_path, is_playable) VALUES (2, 'one', 7, 1, '', '', '', '', 0, 0, 0, '', '', 0, '', 1); "
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 600) INSERT INTO plays SELECT i, "
            "5, 3, 2, i * 3600, 60, CASE i % 3 WHEN 0 THEN 'ended' WHEN 1 THEN 'skipped' ELSE 'left' END FROM n; "
            "INSERT INTO plays VALUES (1000, 5, 4, 2, 86400, 9.5, 'playing'); INSERT INTO request_answers (id, owner, "
            "content_hash, answer, answered_at) VALUES ('i', 'o', 'c', 'x', 86399)");
    }
    Store store(m_file);
    const Store::Lock db = store.lock();
    EXPECT_EQ(db->number("SELECT COUNT(*) FROM plays WHERE station_id = 3 AND day = started_at / 86400"), 512);
    const auto remembered = [&](int64_t station) {
        std::map<int64_t, std::string> plays; // outcomes by begin
        Statement row = db->prepare("SELECT plays FROM remembered_plays WHERE station_id = ?1");
        row.with(station);
        while (row.step()) {
            for (const Plays::Heard &play : Plays::heardIn(row.text(0)))
                plays[play.startedAt] = play.outcome;
        }
        return plays;
    };
    const std::map<int64_t, std::string> many = remembered(3);
    EXPECT_GE(many.size(), 496u);
    EXPECT_LE(many.size(), 512u);
    EXPECT_EQ(many.at(600 * 3600), "ended");
    EXPECT_EQ(many.at(598 * 3600), "skipped");
    EXPECT_EQ(many.at(599 * 3600), "left");
    EXPECT_EQ(remembered(4), (std::map<int64_t, std::string>{{86400, "left"}}))
        << "one station's newest is not another's";
    EXPECT_EQ(db->number("SELECT day FROM request_answers WHERE owner = 'o' AND id = 'i'"), 0);
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
