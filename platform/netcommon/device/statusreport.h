#pragma once

#include <QByteArray>

#include <cstdint>

namespace netcommon {

// What the radio shows and plays, as one line of JSON (without the line's end). docs/remote-keys.md lists its members.
// Texts of password fields are left out. GUI thread.
QByteArray statusLine();

// The same for the menu system's heartbeat: the flags of menumessages.h. GUI thread.
std::uint32_t statusFlags();

} // namespace netcommon
