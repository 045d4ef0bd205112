#pragma once

#include <QString>

// The default place of the menu system's socket.
namespace menusystem {

// In the runtime directory; without one in a directory below `temporary` (as QDir::tempPath()) that is the user's own
// and closed to everybody else. `mayMake`: a missing directory is created, with a random name when the usual name is
// taken by somebody else. Empty, with a reason, when there is no such place.
QString usualSocket(const QString &runtimeDirectory, const QString &temporary, bool mayMake, QString *reason);

} // namespace menusystem
