#pragma once

#include <QString>

namespace home {

// When the service is asked again while it does not answer.
class ServiceWait {
public:
    // Milliseconds until the next question: 1, 2, 5, 10 and then always 15 seconds, each up to a fifth shorter or
    // longer, so that the radios of a house or of a town do not ask together. `chance`: from 0 to 1.
    int nextPause(double chance);

private:
    int m_asked = 0; // pauses so far
};

// Whether the host of this address is in the house: this machine, a private network, or a name that only a home network
// knows. Such a service may be asked every second whether its port is open.
bool isInTheHouse(const QString &address);

} // namespace home
