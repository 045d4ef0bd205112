#pragma once

#include <QByteArray>

namespace netcommon {

// What the radio shows and plays, as one line of JSON (without the line's end). docs/remote-keys.md lists its members.
// Texts of password fields are left out. GUI thread.
QByteArray statusLine();

} // namespace netcommon
