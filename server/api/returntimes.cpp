#include "server/api/returntimes.h"

#include <algorithm>
#include <cmath>

namespace velmora::server {

using namespace std::chrono;

void ReturnTimes::answered(Time now)
{
    const std::lock_guard guard(m_mutex);
    reachSecond(now);
    ++m_answers;
}

seconds ReturnTimes::afterRefusal(Time now, double chance)
{
    const std::lock_guard guard(m_mutex);
    reachSecond(now);
    m_isFull = true;
    m_given = std::max(m_given, now + shortest) + duration_cast<Time::duration>(duration<double>(1 / m_rate));
    if (m_given <= now + longest)
        return floor<seconds>(m_given - now);
    m_given = now + longest;
    return seconds(std::lround(double(longest.count()) * (1 + chance) / 2));
}

// How fast the service is shows only while callers wait for it.
void ReturnTimes::reachSecond(Time now)
{
    const double elapsed = duration<double>(now - m_second).count();
    if (elapsed < 1)
        return;
    if (m_isFull)
        m_rate = std::max(1.0, (m_rate + m_answers / elapsed) / 2);
    m_second = now;
    m_answers = 0;
    m_isFull = false;
}

} // namespace velmora::server
