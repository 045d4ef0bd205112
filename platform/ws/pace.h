#pragma once

#include <chrono>
#include <deque>
#include <map>
#include <string>
#include <string_view>

// Throttles requests, so that a caller in a loop does not flood the service. Plain values: time is an argument.
namespace velmora::ws {

using Clock = std::chrono::steady_clock;

// After three partner logins within ten seconds, each further one waits one second.
class LoginPace {
public:
    // Returns when a login that is requested now may be sent, and counts it.
    Clock::time_point schedule(Clock::time_point now);

private:
    std::deque<Clock::time_point> m_recent;
};

// At most one playlist a second for the same station, counted from the previous reply.
class PlaylistPace {
public:
    Clock::time_point earliest(const std::string &station, Clock::time_point now) const;
    void replied(const std::string &station, Clock::time_point now);

private:
    std::map<std::string, Clock::time_point, std::less<>> m_replies;
};

} // namespace velmora::ws
