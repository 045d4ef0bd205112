#include "server/accounts/ratelimit.h"

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

} // namespace velmora::server
