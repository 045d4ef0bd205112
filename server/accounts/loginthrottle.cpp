#include "server/accounts/loginthrottle.h"

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
    const std::lock_guard guard(m_mutex);
    int64_t wait = secondsLeft(find(m_addresses, address, now), freeFailuresOfAddress, now);
    if (wait == 0)
        wait = secondsLeft(find(m_pairs, pairKey(account, address), now), freeFailuresFor(account, now), now);
    return wait > 0 ? std::optional(static_cast<int>(wait)) : std::nullopt;
}

void LoginThrottle::failed(const std::string &account, const std::string &address, int64_t now)
{
    const std::lock_guard guard(m_mutex);
    count(m_addresses, address, freeFailuresOfAddress, now);
    count(m_accounts, account, guessedFailures, now);
    count(m_pairs, pairKey(account, address), freeFailuresFor(account, now), now);
}

void LoginThrottle::succeeded(const std::string &account, const std::string &address)
{
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

} // namespace velmora::server
