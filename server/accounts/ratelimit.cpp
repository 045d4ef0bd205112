#include "server/accounts/ratelimit.h"

#include "server/accounts/secrets.h"
#include "server/store/store.h"

#include <algorithm>

namespace velmora::server {

RateLimit::RateLimit(int events, std::chrono::seconds window)
    : m_window(std::chrono::milliseconds(window).count())
    , m_spacing(m_window / events)
{
}

std::optional<int> RateLimit::refuse(const std::string &key, int64_t now)
{
    const int64_t nowMilliseconds = now * 1000;
    if (m_store)
        return refuseTogether(key, nowMilliseconds);
    const std::lock_guard guard(m_mutex);
    int64_t &wholeAt = m_wholeAt.at(key);
    // The upper bound is for a clock that was set back.
    const int64_t from = std::clamp(wholeAt, nowMilliseconds, nowMilliseconds + m_window);
    const int64_t excess = from + m_spacing - nowMilliseconds - m_window;
    if (excess > 0)
        return static_cast<int>((excess + 999) / 1000);
    wholeAt = from + m_spacing;
    return std::nullopt;
}

void RateLimit::share(Store &store, const std::string &name)
{
    if (!store.isShared())
        return;
    m_store = &store;
    m_name = name;
}

std::optional<int> RateLimit::refuseTogether(const std::string &key, int64_t nowMilliseconds)
{
    const std::string hash = tokenHash(m_name + '\n' + key); // no address is stored
    const Store::Lock db = m_store->lock();
    // The allowance is whole again at most one window from now: the clock may have been set back.
    db->run("INSERT INTO rate_limits (key, whole_at) VALUES (?1, ?2 + ?3) ON CONFLICT (key) DO UPDATE SET whole_at = "
            "LEAST(GREATEST(rate_limits.whole_at, ?2), ?2 + ?4) + ?3 WHERE LEAST(GREATEST(rate_limits.whole_at, ?2), "
            "?2 + ?4) + ?3 <= ?2 + ?4",
            hash, nowMilliseconds, m_spacing, m_window);
    if (db->changes() > 0)
        return std::nullopt;
    const int64_t wholeAt = db->number("SELECT whole_at FROM rate_limits WHERE key = ?1", hash);
    const int64_t excess = std::min(wholeAt, nowMilliseconds + m_window) + m_spacing - nowMilliseconds - m_window;
    return static_cast<int>((std::max<int64_t>(excess, 1) + 999) / 1000);
}

} // namespace velmora::server
