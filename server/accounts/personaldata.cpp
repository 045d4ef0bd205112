#include "server/accounts/personaldata.h"

#include "server/accounts/accounts.h"
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

// A list of the file. Its query is given the account, what was last returned as the first column (0 at first), and how
// many rows; the first column rises from row to row, the second one is the row as JSON. SQLite writes the JSON, so that
// nothing of it is kept here. Tracks and stations go by name: their ids mean nothing elsewhere.
struct List {
    const char *name;
    const char *query;
};

constexpr List lists[] = {
    {"radios", R"sql(
SELECT row, json FROM (
  SELECT ROW_NUMBER() OVER (ORDER BY device_id, key_hash) AS row,
    json_object('identity', device_id, 'name', name, 'since', datetime(associated_at, 'unixepoch')) AS json
  FROM devices WHERE account_id = ?1)
WHERE row > ?2 ORDER BY row LIMIT ?3)sql"},
    {"sessions", R"sql(
SELECT row, json FROM (
  SELECT ROW_NUMBER() OVER (ORDER BY token_hash) AS row,
    json_object('radio', device_id, 'model', device_model, 'until', datetime(expires_at, 'unixepoch')) AS json
  FROM sessions WHERE account_id = ?1)
WHERE row > ?2 ORDER BY row LIMIT ?3)sql"},
    {"stations", R"sql(
SELECT id, json_object('name', name, 'made', datetime(created_at, 'unixepoch'), 'seeds', (
  SELECT json_group_array(json_object('kind', kind, 'name', CASE kind
    WHEN 'artist' THEN (SELECT name FROM artists WHERE id = target)
    WHEN 'track' THEN (SELECT song FROM tracks WHERE id = target)
    ELSE target END))
  FROM seeds WHERE account_id = ?1 AND station_id = stations.id))
FROM stations WHERE account_id = ?1 AND id > ?2 ORDER BY id LIMIT ?3)sql"},
    {"thumbs", R"sql(
SELECT row, json FROM (
  SELECT ROW_NUMBER() OVER (ORDER BY f.given_at, f.track_id, f.station_id) AS row,
    json_object('song', t.song, 'artist', a.name, 'station', s.name, 'up', json(iif(f.is_positive, 'true', 'false')),
      'given', datetime(f.given_at, 'unixepoch')) AS json
  FROM feedback f JOIN tracks t ON t.id = f.track_id JOIN artists a ON a.id = t.artist_id
    JOIN stations s ON s.id = f.station_id
  WHERE f.account_id = ?1)
WHERE row > ?2 ORDER BY row LIMIT ?3)sql"},
    {"sleeping", R"sql(
SELECT t.id, json_object('song', t.song, 'artist', a.name, 'until', datetime(z.until, 'unixepoch'))
FROM sleeps z JOIN tracks t ON t.id = z.track_id JOIN artists a ON a.id = t.artist_id
WHERE z.account_id = ?1 AND t.id > ?2 ORDER BY t.id LIMIT ?3)sql"},
    {"bookmarks", R"sql(
SELECT row, json FROM (
  SELECT ROW_NUMBER() OVER (ORDER BY created_at, kind, target) AS row,
    json_object('kind', kind, 'made', datetime(created_at, 'unixepoch'), 'name', CASE kind
      WHEN 'artist' THEN (SELECT name FROM artists WHERE id = target)
      ELSE (SELECT song FROM tracks WHERE id = target) END) AS json
  FROM bookmarks WHERE account_id = ?1)
WHERE row > ?2 ORDER BY row LIMIT ?3)sql"},
    {"plays", R"sql(
SELECT row, json FROM (
  SELECT ROW_NUMBER() OVER (ORDER BY p.started_at, p.station_id, p.number) AS row,
    json_object('song', t.song, 'artist', a.name, 'station', s.name,
      'begun', datetime(p.started_at, 'unixepoch'), 'seconds', p.seconds, 'ended', p.outcome) AS json
  FROM plays p LEFT JOIN tracks t ON t.id = p.track_id LEFT JOIN artists a ON a.id = t.artist_id
    LEFT JOIN stations s ON s.id = p.station_id
  WHERE p.account_id = ?1)
WHERE row > ?2 ORDER BY row LIMIT ?3)sql"},
    {"underWay", R"sql(
SELECT row, json FROM (
  SELECT ROW_NUMBER() OVER (ORDER BY p.started_at, p.radio) AS row,
    json_object('song', t.song, 'artist', a.name, 'station', s.name,
      'begun', datetime(p.started_at, 'unixepoch')) AS json
  FROM plays_under_way p LEFT JOIN tracks t ON t.id = p.track_id LEFT JOIN artists a ON a.id = t.artist_id
    LEFT JOIN stations s ON s.id = p.station_id
  WHERE p.account_id = ?1)
WHERE row > ?2 ORDER BY row LIMIT ?3)sql"},
    {"remembered", R"sql(
SELECT row, json FROM (
  SELECT ROW_NUMBER() OVER (ORDER BY r.station_id, r.block, e.key) AS row,
    json_object('song', t.song, 'artist', a.name, 'station', s.name,
      'begun', datetime(json_extract(e.value, '$[1]'), 'unixepoch'),
      'ended', CASE json_extract(e.value, '$[2]') WHEN 1 THEN 'ended' WHEN 2 THEN 'skipped' ELSE 'left' END) AS json
  FROM remembered_plays r JOIN json_each('[' || rtrim(r.plays, ',') || ']') e
    LEFT JOIN tracks t ON t.id = json_extract(e.value, '$[0]') LEFT JOIN artists a ON a.id = t.artist_id
    JOIN stations s ON s.id = r.station_id
  WHERE r.account_id = ?1)
WHERE row > ?2 ORDER BY row LIMIT ?3)sql"},
    {"handedOut", R"sql(
SELECT row, json FROM (
  SELECT ROW_NUMBER() OVER (ORDER BY s.id, r.key) AS row,
    json_object('song', t.song, 'artist', a.name, 'station', s.name) AS json
  FROM stations s JOIN json_each(s.recent) r JOIN tracks t ON t.id = r.value JOIN artists a ON a.id = t.artist_id
  WHERE s.account_id = ?1)
WHERE row > ?2 ORDER BY row LIMIT ?3)sql"},
};

constexpr const char *accountQuery = R"sql(
SELECT json_object('email', user_name, 'made', datetime(created_at, 'unixepoch'), 'birthYear', birth_year,
  'gender', gender, 'zipCode', zip_code, 'countryCode', country_code,
  'wantsMails', json(iif(email_opt_in, 'true', 'false')),
  'explicitFilter', json(iif(explicit_filter, 'true', 'false')),
  'hasPin', json(iif(explicit_pin_hash IS NULL, 'false', 'true')))
FROM accounts WHERE id = ?1)sql";

} // namespace

bool PersonalData::write(AccountId account, const std::filesystem::path &file)
{
    const int handle = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> out(handle < 0 ? nullptr : ::fdopen(handle, "w"),
                                                               &std::fclose);
    if (!out)
        return false;
    if (m_store.isShared()) {
        if (m_store.lock()->number("SELECT id FROM accounts WHERE id = ?1", account) == 0)
            return false;
        writeShared(account, out.get());
        return std::fflush(out.get()) == 0 && std::ferror(out.get()) == 0;
    }
    {
        const Store::Lock db = m_store.lock();
        Statement row = db->prepare(accountQuery);
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
                after = row.integer(0);
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
    const Store::Lock db = m_store.lock();
    db->beginErasing();
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
        db->run("DELETE FROM mails WHERE recipient_hash = ?1", tokenHash(Accounts::foldedName(userName)));
        db->run("DELETE FROM accounts WHERE id = ?1", account); // and all that hangs on it
        // Which plays do not. Whoever has just written one has been waited for, and nobody writes any more.
        db->run("DELETE FROM plays WHERE account_id = ?1", account);
        change.commit();
    }
    db->endErasing();
    return true;
}

} // namespace velmora::server
