#pragma once

#include <chrono>
#include <deque>
#include <map>
#include <string>
#include <string_view>

// When a request may be sent, so that a caller in a loop does not hammer the service. Plain values: time comes in.
namespace velmora::ws {

using Clock = std::chrono::steady_clock;

// After three partner logins within ten seconds each further one waits a second.
class LoginPace {
public:
    // When the login that is wanted now may be sent; counts it.
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
