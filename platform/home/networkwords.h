#pragma once

#include "servicehealth.h"

#include <QString>

namespace home {

// What is known of the way to the service.
struct NetworkFacts {
    bool hasCard = false;       // any but the loopback
    bool isConnected = false;   // a cable with a signal, or a Wi-Fi
    bool hasAddress = false;    // more than a link-local one
    bool hasRoute = false;      // to other networks
    bool isServiceHere = false; // on this machine
    ServiceHealth::Result service = ServiceHealth::Result::Unreachable;
};

// What is wrong, in one or two sentences for people: the first broken link of the way, seen from this device.
QString networkWords(const NetworkFacts &facts);

// The facts but `service`, from the kernel.
NetworkFacts networkFacts(const QString &serviceAddress);

} // namespace home
