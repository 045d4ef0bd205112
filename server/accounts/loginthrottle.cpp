#include "server/accounts/loginthrottle.h"

#include <algorithm>

namespace velmora::server {

namespace {

// Old keys are removed when there are this many, so that an attacker cannot fill the memory.
constexpr size_t manyRecords = 10000;
// One account tried from many addresses, or many accounts from one address: slowed later and less.
constexpr int freeFailuresAnywhere = 40;

LoginThrottle::Milliseconds waitAfter(int failures, int freeOfCost)
{
    if (failures <= freeOfCost)
        return LoginThrottle::Milliseconds(0);
    const int doublings = std::min(failures - freeOfCost - 1, 10);
    return std::min(LoginThrottle::firstWait * (1 << doublings), LoginThrottle::longestWait);
}

std::string pairKey(const std::string &account, const std::string &address)
{
    return "p" + address + "\n" + account;
}

} // namespace

std::optional<LoginThrottle::Milliseconds> LoginThrottle::admit(const std::string &account, const std::string &address,
                                                                Time now)
{
    const std::lock_guard guard(m_mutex);
    Milliseconds wait{0};
    for (const std::string &key : {"a" + account, "i" + address}) {
        if (const Record *record = find(key, now))
            wait = std::max(wait, waitAfter(record->failures, freeFailuresAnywhere));
    }
    Record *pair = find(pairKey(account, address), now);
    if (!pair)
        return wait;
    const Milliseconds own = waitAfter(pair->failures, freeFailures);
    if (own.count() == 0)
        return wait;
    const Time turn = std::max(now, pair->nextTurn) + own;
    if (turn - now > longestWait + own / 2)
        return std::nullopt;
    pair->nextTurn = turn;
    return std::max(wait, std::chrono::ceil<Milliseconds>(turn - now));
}

void LoginThrottle::failed(const std::string &account, const std::string &address, Time now)
{
    const std::lock_guard guard(m_mutex);
    if (m_records.size() >= manyRecords)
        forgetOld(now);
    count("a" + account, now);
    count("i" + address, now);
    count(pairKey(account, address), now);
}

void LoginThrottle::succeeded(const std::string &account, const std::string &address)
{
    const std::lock_guard guard(m_mutex);
    m_records.erase(pairKey(account, address));
}

LoginThrottle::Record *LoginThrottle::find(const std::string &key, Time now)
{
    const auto found = m_records.find(key);
    if (found == m_records.end())
        return nullptr;
    if (now - found->second.last > memory) {
        m_records.erase(found);
        return nullptr;
    }
    return &found->second;
}

void LoginThrottle::count(const std::string &key, Time now)
{
    find(key, now);
    Record &record = m_records[key];
    ++record.failures;
    record.last = now;
}

void LoginThrottle::forgetOld(Time now)
{
    std::erase_if(m_records, [now](const auto &entry) { return now - entry.second.last > memory; });
    if (m_records.size() >= manyRecords)
        m_records.clear();
}

std::optional<int> RateLimit::refuse(const std::string &key, Time now)
{
    const std::lock_guard guard(m_mutex);
    if (m_records.size() >= manyRecords)
        std::erase_if(m_records, [&](const auto &entry) { return now - entry.second.start > m_window; });
    Record &record = m_records[key];
    if (record.count == 0 || now - record.start > m_window)
        record = {0, now};
    if (record.count >= m_events)
        return static_cast<int>(std::chrono::ceil<std::chrono::seconds>(record.start + m_window - now).count()) + 1;
    ++record.count;
    return std::nullopt;
}

} // namespace velmora::server
