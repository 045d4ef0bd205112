#pragma once

#include <QString>

// The station service's address, for deciding whether the network matters at all.
namespace netcommon {

// The address that the web-service library uses: from its environment variable, else from its configuration file;
// empty when neither names one.
QString serverAddress(const QString &fromEnvironment, const QString &configurationFile);
// Whether the host of this address is this machine.
bool isOnThisMachine(const QString &address);

} // namespace netcommon
