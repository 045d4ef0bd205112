#pragma once

#include <QString>

// The station service's address, for deciding whether the network matters at all.
namespace netcommon {

// One value of the web-service library's configuration file; empty when the file does not name it.
QString configuredValue(const QString &configurationFile, const QString &name);
// The file with the certificates to trust instead of the system's: VELMORA_WS_CA_FILE, else `ca_file` of the library's
// configuration file. Empty: none is named.
QString configuredAuthority();
// The address that the web-service library uses: the chosen one (its environment variable), else that of its
// configuration file; empty when neither names one.
QString serverAddress(const QString &chosen, const QString &configurationFile);
// Whether the host of this address is this machine.
bool isOnThisMachine(const QString &address);

} // namespace netcommon
