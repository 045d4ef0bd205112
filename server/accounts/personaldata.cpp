#include "server/accounts/personaldata.h"

#include "server/accounts/secrets.h"
#include "server/store/store.h"

#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <unistd.h>
#include <vector>

namespace velmora::server {

namespace {

constexpr int rowsAtOnce = 500; // under one lock

// A list of the file. Its query is given the account, the id of the row before and how many rows; it returns an id,
// rising, and the row as JSON. SQLite writes the JSON, so that nothing of it is kept here.
struct List {
    const char *name;
    const char *query;
};

// Tracks by name: their ids mean nothing elsewhere.
#define TRACK_OF(id)                                                                                                   \
    "'song', (SELECT song FROM tracks WHERE id = " id "), 'artist', (SELECT a.name FROM tracks t JOIN artists a ON "   \
    "a.id = t.artist_id WHERE t.id = " id ")"
#define STATION_OF(id) "'station', (SELECT name FROM stations WHERE id = " id ")"
#define TIME_OF(seconds) "strftime('%Y-%m-%dT%H:%M:%SZ', " seconds ", 'unixepoch')"

constexpr List lists[] = {
    {"radios",
     "SELECT ROW_NUMBER() OVER (ORDER BY device_id) AS row, json_object('identity', device_id, 'name', name, "
     "'since', " TIME_OF("associated_at") ") FROM devices WHERE account_id = ?1 ORDER BY 1 LIMIT ?3 OFFSET ?2"},
    {"stations",
     "SELECT id, json_object('name', name, 'made', " TIME_OF(
         "created_at") ", 'seeds', (SELECT json_group_array("
                       "json_object('kind', kind, 'name', COALESCE((SELECT name FROM artists WHERE kind = 'artist' AND "
                       "id = target), "
                       "(SELECT song FROM tracks WHERE kind = 'track' AND id = target), target))) FROM seeds WHERE "
                       "station_id = "
                       "stations.id)) FROM stations WHERE account_id = ?1 AND id > ?2 ORDER BY id LIMIT ?3"},
    {"thumbs", "SELECT track_id, json_object(" TRACK_OF("track_id") ", " STATION_OF(
                   "station_id") ", 'up', json(iif(is_positive, 'true', 'false')), "
                                 "'given', " TIME_OF("given_at") ") FROM feedback WHERE "
                                                                 "account_id = ?1 ORDER BY "
                                                                 "track_id, station_id "
                                                                 "LIMIT ?3 OFFSET ?2"},
    {"sleeping", "SELECT track_id, json_object(" TRACK_OF("track_id") ", 'until', " TIME_OF(
                     "until") ") FROM sleeps WHERE account_id = ?1 ORDER BY track_id LIMIT ?3 OFFSET ?2"},
    {"bookmarks",
     "SELECT target, json_object('kind', kind, 'name', iif(kind = 'artist', (SELECT name FROM artists WHERE "
     "id = target), (SELECT song FROM tracks WHERE id = target)), 'made', " TIME_OF(
         "created_at") ") FROM bookmarks WHERE account_id = ?1 ORDER BY kind, target LIMIT ?3 OFFSET ?2"},
    {"plays", "SELECT issue_id, json_object(" TRACK_OF("track_id") ", " STATION_OF("station_id") ", 'begun', " TIME_OF(
                  "started_at") ", 'seconds', seconds, 'ended', outcome) FROM plays WHERE "
                                "account_id = ?1 AND issue_id > ?2 ORDER BY issue_id LIMIT ?3"},
};
// Of these lists the second parameter is the last row's id, of the others the number of rows before.
bool goesById(const List &list)
{
    return std::string_view(list.query).find(" > ?2") != std::string_view::npos;
}

} // namespace

bool PersonalData::write(AccountId account, const std::filesystem::path &file)
{
    const int handle = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> out(handle < 0 ? nullptr : ::fdopen(handle, "w"),
                                                               &std::fclose);
    if (!out)
        return false;
    {
        const Store::Lock db = m_store.lock();
        Statement row = db->prepare("SELECT json_object('email', user_name, 'made', " TIME_OF(
            "created_at") ", 'birthYear', birth_year, 'gender', gender, 'zipCode', zip_code, 'countryCode', "
                          "country_code, 'wantsMails', json(iif(email_opt_in, 'true', 'false')), "
                          "'explicitFilter', json(iif(explicit_filter, 'true', 'false')), 'hasPin', "
                          "json(iif(explicit_pin_hash IS NULL, 'false', 'true'))) FROM accounts WHERE id = ?1");
        row.with(account);
        if (!row.step())
            return false;
        std::fprintf(out.get(), "{\"account\":%s", row.text(0).c_str());
    }
    for (const List &list : lists) {
        std::fprintf(out.get(), ",\n\"%s\":[", list.name);
        int64_t after = 0;
        bool isFirst = true;
        for (int found = rowsAtOnce; found == rowsAtOnce;) {
            found = 0;
            const Store::Lock db = m_store.lock();
            Statement row = db->prepare(list.query);
            row.with(account, after, rowsAtOnce);
            while (row.step()) {
                std::fprintf(out.get(), "%s\n%s", isFirst ? "" : ",", row.text(1).c_str());
                isFirst = false;
                ++found;
                after = goesById(list) ? row.integer(0) : after + 1;
            }
        }
        std::fputs("]", out.get());
    }
    std::fputs("}\n", out.get());
    return std::fflush(out.get()) == 0 && std::ferror(out.get()) == 0;
}

bool PersonalData::remove(AccountId account)
{
    std::string userName;
    {
        const Store::Lock db = m_store.lock();
        Statement row = db->prepare("SELECT user_name FROM accounts WHERE id = ?1");
        row.with(account);
        if (!row.step())
            return false;
        userName = row.text(0);
    }
    // What grows with the years first, piece by piece: others are served between the pieces.
    for (const char *table : {"plays", "issued_tracks", "issued_ads", "track_events"}) {
        const std::string rows = std::string("DELETE FROM ") + table + " WHERE rowid IN (SELECT rowid FROM " + table +
                                 " WHERE account_id = ?1 LIMIT 500)";
        for (bool isMore = true; isMore;) {
            const Store::Lock db = m_store.lock();
            db->execute("PRAGMA secure_delete = ON");
            db->run(rows, account);
            isMore = db->changes() > 0;
            db->execute("PRAGMA secure_delete = OFF");
        }
    }
    const Store::Lock db = m_store.lock();
    db->execute("PRAGMA secure_delete = ON");
    {
        Transaction change(*db);
        // The answers to its radios' requests are known by the radio's key and the account.
        std::vector<std::string> keys;
        {
            Statement row = db->prepare("SELECT key_hash FROM devices WHERE account_id = ?1 UNION SELECT key_hash FROM "
                                        "sessions WHERE account_id = ?1");
            row.with(account);
            while (row.step())
                keys.push_back(row.text(0));
        }
        for (const std::string &key : keys)
            db->run("DELETE FROM request_answers WHERE owner = ?1", tokenHash(key + ' ' + std::to_string(account)));
        db->run("DELETE FROM sign_ups WHERE user_name = ?1", userName);
        db->run("DELETE FROM play_counts WHERE station_id IN (SELECT id FROM stations WHERE account_id = ?1)", account);
        db->run("DELETE FROM play_days WHERE account_id = ?1", account);
        db->run("DELETE FROM accounts WHERE id = ?1", account); // and all that hangs on it
        change.commit();
    }
    db->execute("PRAGMA secure_delete = OFF; PRAGMA wal_checkpoint(TRUNCATE)");
    return true;
}

} // namespace velmora::server
