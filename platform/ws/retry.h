#pragma once

#include "pace.h"

#include <chrono>
#include <optional>

namespace velmora::ws {

struct RetryLimits {
    std::chrono::milliseconds forTime{45'000};        // from the first attempt to the last one
    std::chrono::milliseconds forTimeAtStart{60'000}; // the same, while the service has never answered
    std::chrono::milliseconds firstPause{500};        // doubled after each attempt, up to eight times as long
};

// When one request that failed for a passing reason is sent again. Plain values: time and chance are arguments.
class Retry {
public:
    // The first attempt begins. Later calls change nothing.
    void begin(const RetryLimits &limits, bool isStart, Clock::time_point now);
    // An attempt has failed. When the next one is due; empty: the time is over, or the service asks for a longer pause
    // than there is time for. `chance`, from 0 to 1, spreads the radios of many homes over time: a pause is between
    // half and all of its length. The last attempt is made when the time is just over.
    std::optional<Clock::time_point> failed(Clock::time_point now, std::chrono::seconds retryAfter, double chance);
    // When an attempt that begins now is given up, whatever the transfer's own limits say. Empty: it is the first one.
    std::optional<Clock::time_point> attemptEnds(Clock::time_point now) const;

private:
    std::optional<Clock::time_point> m_ends; // empty: not begun
    std::chrono::milliseconds m_pause{0};    // the next one's
    std::chrono::milliseconds m_longestPause{0};
    bool m_hasFailed = false;
};

} // namespace velmora::ws
