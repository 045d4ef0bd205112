#pragma once

#include "netcommon/netcommon_global.h"

#include <optional>

namespace netcommon {

// Decides when the network counts as lost. A loss is reported only after a delay, because short ones are normal (a
// cable is moved, an address is renewed, a router announces itself again). A network that was never there is never
// lost.
class NetworkDecider {
public:
    struct Action {
        std::optional<NETWORk_EVENT_T> event;
        bool startsTimer = false; // call timePassed() in lossDelayMs
        bool stopsTimer = false;

        bool operator==(const Action &) const = default;
    };
    static constexpr int lossDelayMs = 2000;

    // `isServerLocal`: the station service is on this machine, so no cable matters.
    NetworkDecider(bool isServerLocal, bool hasRoute);

    Action routesRead(bool hasRoute); // after each message of the kernel
    Action timePassed();
    Action injected(NETWORk_EVENT_T event);

private:
    bool m_isServerLocal;
    bool m_hasRoute;
    bool m_isTimerRunning = false;
    bool m_isLost = false;     // reported
    bool m_isHeldDown = false; // by the menu system
};

} // namespace netcommon
