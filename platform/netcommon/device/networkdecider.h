#pragma once

#include "netcommon/netcommon_global.h"

#include <optional>

namespace netcommon {

// When the network counts as lost. A loss is told only after it has lasted (a cable is plugged over, an address is
// renewed, a router announces itself anew); what never was there is never lost.
class NetworkDecider {
public:
    struct Action {
        std::optional<NETWORk_EVENT_T> event;
        bool startsTimer = false; // lossDelayMs from now timePassed() is to be called
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
    bool m_isLost = false;     // told so
    bool m_isHeldDown = false; // by the menu system
};

} // namespace netcommon
