#pragma once

#include <QStringList>

// The station service's address, for deciding whether the network matters at all.
namespace netcommon {

// The web-service library's configuration: the file that VELMORA_WS_CONF names; else the one that a package of this
// machine brings, then the owner's, which wins.
QStringList configurationFiles();
// One value of these files; empty when none of them names it.
QString configuredValue(const QString &name, const QStringList &files = configurationFiles());
// The file with the certificates to trust instead of the system's: VELMORA_WS_CA_FILE, else `ca_file` of the library's
// configuration. Empty: none is named.
QString configuredAuthority();
// The address that the web-service library uses: the chosen one (its environment variable), else that of its
// configuration; empty when neither names one.
QString serverAddress(const QString &chosen, const QStringList &files = configurationFiles());
// Whether the host of this address is this machine.
bool isOnThisMachine(const QString &address);

} // namespace netcommon
