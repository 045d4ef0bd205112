#include "retry.h"

#include <algorithm>

namespace velmora::ws {

using namespace std::chrono_literals;

namespace {
constexpr auto shortestAttempt = 5s;
}

void Retry::begin(const RetryLimits &limits, bool isStart, Clock::time_point now)
{
    if (m_ends)
        return;
    m_ends = now + (isStart ? limits.forTimeAtStart : limits.forTime);
    m_pause = limits.firstPause;
    m_longestPause = 8 * limits.firstPause;
}

std::optional<Clock::time_point> Retry::failed(Clock::time_point now, std::chrono::seconds retryAfter, double chance)
{
    m_hasFailed = true;
    if (!m_ends || now >= *m_ends || *m_ends - now < retryAfter)
        return {};
    const auto spread = std::chrono::duration_cast<Clock::duration>(m_pause * (0.5 + chance / 2));
    m_pause = std::min(2 * m_pause, m_longestPause);
    return std::min(now + std::max<Clock::duration>(spread, retryAfter), *m_ends);
}

std::optional<Clock::time_point> Retry::attemptEnds(Clock::time_point now) const
{
    if (!m_ends || !m_hasFailed)
        return {};
    return std::max(*m_ends, now + shortestAttempt);
}

} // namespace velmora::ws
