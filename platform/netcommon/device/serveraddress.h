#pragma once

#include <QString>

// Where the station service is, as far as the network's state is concerned.
namespace netcommon {

// The address that the web-service library uses: from its environment variable, else from its configuration file;
// empty when neither names one.
QString serverAddress(const QString &fromEnvironment, const QString &configurationFile);
// Whether the host of this address is this machine.
bool isOnThisMachine(const QString &address);

} // namespace netcommon
