#pragma once

#include <QByteArray>

// Reads the kernel's routes to find out whether there is a default route.
namespace netcommon {

// Reads one datagram of the kernel's answer to a request for all routes.
struct RouteDump {
    bool hasDefaultRoute = false; // over a link that is up
    bool isComplete = false;

    void read(const QByteArray &datagram);
};

// Asks the kernel for IPv4 and IPv6 routes; takes well under a millisecond, at most a second. `isKnown` becomes false
// when the kernel does not answer. Any thread.
bool hasDefaultRoute(bool *isKnown);

} // namespace netcommon
