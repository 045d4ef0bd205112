#pragma once

#include "netcommon/netcommon_global.h"

#include <optional>

namespace netcommon {

// Decides when the network counts as lost. The report ends the radio, so it comes only after a delay (a cable is moved,
// a router restarts), and not while buffered sound is left to hear. A network that was never there is never lost.
class NetworkDecider {
public:
    struct Action {
        std::optional<NETWORk_EVENT_T> event;
        int timerMs = 0; // starts the timer: call timePassed() after so many milliseconds; 0: does not
        bool stopsTimer = false;

        bool operator==(const Action &) const = default;
    };
    static constexpr int lossDelayMs = 30'000;
    static constexpr int soundCheckMs = 500;

    // `isServerLocal`: the station service is on this machine, so no cable matters.
    NetworkDecider(bool isServerLocal, bool hasRoute);

    Action routesRead(bool hasRoute); // after each message of the kernel
    Action timePassed(bool isSoundLeft);
    Action injected(NETWORk_EVENT_T event);

private:
    bool m_isServerLocal;
    bool m_hasRoute;
    bool m_isTimerRunning = false;
    bool m_isLost = false;     // reported
    bool m_isHeldDown = false; // by the menu system
};

} // namespace netcommon
