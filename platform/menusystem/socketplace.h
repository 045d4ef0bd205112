#pragma once

#include <QString>

// Where the menu system's socket is when nobody says.
namespace menusystem {

// In the runtime directory; without one in a directory below `temporary` (as QDir::tempPath()) that is the user's own
// and closed to everybody else. `mayMake`: it is made when it is missing, and when somebody else sits there another
// one under a random name. Empty, with a reason, when there is no such place.
QString usualSocket(const QString &runtimeDirectory, const QString &temporary, bool mayMake, QString *reason);

} // namespace menusystem
