#pragma once

#include <QString>

namespace faults {

// Copies a rendered demo catalogue with the first `seconds` of each track only. Tracks under 20 seconds would be left
// out by the service. What is there already is kept. False when something cannot be read or written.
bool shortenMusic(const QString &from, const QString &to, int seconds);

} // namespace faults
