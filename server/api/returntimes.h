#pragma once

#include <chrono>
#include <mutex>

namespace velmora::server {

// When callers that found the queue full shall come again: one after the other, as fast as the service has answered of
// late. They all would come in the same moment otherwise, and most be refused once more, which takes the processor time
// that answers need. Any thread; time and chance are arguments.
class ReturnTimes {
public:
    using Time = std::chrono::steady_clock::time_point;
    static constexpr std::chrono::seconds shortest{2};
    // A radio repeats a request for 45 seconds: it has two more attempts at least.
    static constexpr std::chrono::seconds longest{20};

    void answered(Time now);
    // The seconds that a refused caller shall wait. Beyond the longest time nobody is given one of their own: they are
    // spread over its second half by `chance`, from 0 to 1.
    std::chrono::seconds afterRefusal(Time now, double chance);

private:
    void reachSecond(Time now);

    std::mutex m_mutex;    // guards all
    double m_rate = 1000;  // answers a second while the queue was full; at first that of a fast machine
    Time m_second;         // the begin of the one that is counted
    int m_answers = 0;     // in it
    bool m_isFull = false; // somebody was refused in it
    Time m_given;          // the last time that was given to a caller
};

} // namespace velmora::server
