#include "pace.h"

#include <algorithm>

namespace velmora::ws {

using namespace std::chrono_literals;

Clock::time_point LoginPace::schedule(Clock::time_point now)
{
    while (!m_recent.empty() && m_recent.front() <= now - 10s)
        m_recent.pop_front();
    Clock::time_point due = now;
    if (m_recent.size() >= 3)
        due = std::max(now, m_recent.back()) + 1s;
    m_recent.push_back(due);
    return due;
}

Clock::time_point PlaylistPace::earliest(const std::string &station, Clock::time_point now) const
{
    const auto reply = m_replies.find(station);
    return reply == m_replies.end() ? now : std::max(now, reply->second + 1s);
}

void PlaylistPace::replied(const std::string &station, Clock::time_point now)
{
    std::erase_if(m_replies, [now](const auto &reply) { return reply.second <= now - 1s; });
    m_replies[station] = now;
}

} // namespace velmora::ws
