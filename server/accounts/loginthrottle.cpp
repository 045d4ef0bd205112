#include "server/accounts/loginthrottle.h"

#include "server/accounts/secrets.h"
#include "server/store/store.h"

#include <algorithm>

namespace velmora::server {

namespace {

int64_t pauseAfter(int failures, int freeOfCost)
{
    if (failures <= freeOfCost)
        return 0;
    return std::min<int64_t>(LoginThrottle::longestPause, int64_t(1) << std::min(failures - freeOfCost - 1, 10));
}

std::string pairKey(const std::string &account, const std::string &address)
{
    return address + '\n' + account;
}

} // namespace

std::optional<int> LoginThrottle::refuse(const std::string &account, const std::string &address, int64_t now)
{
    if (const std::optional<int> seconds = m_checks.refuse(address, now))
        return seconds;
    if (m_store) {
        int64_t wait = sharedSecondsLeft(sharedKey("address", address), freeFailuresOfAddress, now);
        if (wait == 0)
            wait = sharedSecondsLeft(sharedKey("pair", pairKey(account, address)), sharedFreeFailuresFor(account, now),
                                     now);
        return wait > 0 ? std::optional(static_cast<int>(wait)) : std::nullopt;
    }
    const std::lock_guard guard(m_mutex);
    int64_t wait = secondsLeft(find(m_addresses, address, now), freeFailuresOfAddress, now);
    if (wait == 0)
        wait = secondsLeft(find(m_pairs, pairKey(account, address), now), freeFailuresFor(account, now), now);
    return wait > 0 ? std::optional(static_cast<int>(wait)) : std::nullopt;
}

void LoginThrottle::failed(const std::string &account, const std::string &address, int64_t now)
{
    if (m_store) {
        sharedCount(sharedKey("address", address), freeFailuresOfAddress, now);
        sharedCount(sharedKey("account", account), guessedFailures, now);
        sharedCount(sharedKey("pair", pairKey(account, address)), sharedFreeFailuresFor(account, now), now);
        return;
    }
    const std::lock_guard guard(m_mutex);
    count(m_addresses, address, freeFailuresOfAddress, now);
    count(m_accounts, account, guessedFailures, now);
    count(m_pairs, pairKey(account, address), freeFailuresFor(account, now), now);
}

void LoginThrottle::succeeded(const std::string &account, const std::string &address)
{
    if (m_store) {
        m_store->lock()->run("DELETE FROM login_failures WHERE key = ?1", sharedKey("pair", pairKey(account, address)));
        return;
    }
    const std::lock_guard guard(m_mutex);
    m_pairs.erase(pairKey(account, address));
}

int LoginThrottle::freeFailuresFor(const std::string &account, int64_t now)
{
    const Record *record = find(m_accounts, account, now);
    return record && record->failures > guessedFailures ? freeFailuresOfGuessed : freeFailures;
}

LoginThrottle::Record *LoginThrottle::find(Records &records, const std::string &key, int64_t now)
{
    Record *record = records.find(key);
    if (record && now - record->last > memorySeconds) {
        records.erase(key);
        return nullptr;
    }
    return record;
}

void LoginThrottle::count(Records &records, const std::string &key, int freeOfCost, int64_t now)
{
    find(records, key, now);
    Record &record = records.at(key);
    ++record.failures;
    record.last = now;
    record.next = now + pauseAfter(record.failures, freeOfCost);
}

int64_t LoginThrottle::secondsLeft(Record *record, int freeOfCost, int64_t now)
{
    const int64_t pause = record ? pauseAfter(record->failures, freeOfCost) : 0;
    if (pause == 0)
        return 0;
    // The upper bound is for a clock that was set back.
    if (record->next > now && record->next <= now + longestPause)
        return record->next - now;
    record->next = now + pause;
    return 0;
}

void LoginThrottle::share(Store &store, const std::string &name)
{
    if (!store.isShared())
        return;
    m_store = &store;
    m_name = name;
}

std::string LoginThrottle::sharedKey(const std::string &kind, const std::string &key) const
{
    return tokenHash(m_name + '\n' + kind + '\n' + key); // no name and no address is stored
}

LoginThrottle::Record LoginThrottle::sharedRecord(const std::string &key, int64_t now)
{
    const Store::Lock db = m_store->lock();
    Statement row = db->prepare("SELECT failures, last, next FROM login_failures WHERE key = ?1 AND last >= ?2");
    row.with(key, now - memorySeconds);
    return row.step() ? Record{static_cast<int>(row.integer(0)), row.integer(1), row.integer(2)} : Record{};
}

int LoginThrottle::sharedFreeFailuresFor(const std::string &account, int64_t now)
{
    const bool isGuessed = sharedRecord(sharedKey("account", account), now).failures > guessedFailures;
    return isGuessed ? freeFailuresOfGuessed : freeFailures;
}

int64_t LoginThrottle::sharedSecondsLeft(const std::string &key, int freeOfCost, int64_t now)
{
    Record record = sharedRecord(key, now);
    const int64_t next = record.next;
    if (const int64_t wait = secondsLeft(&record, freeOfCost, now); wait > 0 || record.next == next)
        return wait;
    // Of several that come at once, in whatever process, one takes the turn.
    const Store::Lock db = m_store->lock();
    db->run("UPDATE login_failures SET next = ?2 WHERE key = ?1 AND next = ?3", key, record.next, next);
    return db->changes() > 0 ? 0 : record.next - now;
}

void LoginThrottle::sharedCount(const std::string &key, int freeOfCost, int64_t now)
{
    const Store::Lock db = m_store->lock();
    Transaction change(*db, Durability::Later);
    const int64_t failures = db->number(
        "INSERT INTO login_failures (key, failures, last, next) VALUES (?1, 1, ?2, ?2) ON CONFLICT (key) DO UPDATE SET "
        "failures = CASE WHEN login_failures.last < ?3 THEN 1 ELSE login_failures.failures + 1 END, last = ?2 "
        "RETURNING failures",
        key, now, now - memorySeconds);
    db->run("UPDATE login_failures SET next = ?2 WHERE key = ?1", key,
            now + pauseAfter(static_cast<int>(failures), freeOfCost));
    change.commit();
}

} // namespace velmora::server
