#pragma once

#include <QString>

// The station service's address, for deciding whether the network matters at all.
namespace netcommon {

// One value of the web-service library's configuration file; empty when the file does not name it.
QString configuredValue(const QString &configurationFile, const QString &name);
// The address that the web-service library uses: the chosen one (its environment variable), else that of its
// configuration file; empty when neither names one.
QString serverAddress(const QString &chosen, const QString &configurationFile);
// Whether the host of this address is this machine.
bool isOnThisMachine(const QString &address);

} // namespace netcommon
