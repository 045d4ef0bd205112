#pragma once

#include <QByteArray>

// The kernel's routes, as far as "is there a way out" needs them.
namespace netcommon {

// Reads one datagram of the kernel's answer to a request for all routes.
struct RouteDump {
    bool hasDefaultRoute = false; // one over a link that carries
    bool isComplete = false;

    void read(const QByteArray &datagram);
};

// Asks the kernel, IPv4 and IPv6; takes well under a millisecond, waits a second at most. `isKnown` becomes false when
// the kernel does not answer. Any thread.
bool hasDefaultRoute(bool *isKnown);

} // namespace netcommon
