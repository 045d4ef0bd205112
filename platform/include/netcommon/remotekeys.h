#pragma once

#include <Qt>

namespace netcommon {

// The remote's colour keys as the platform delivers them. Qt names the two codes after keys of a PC keyboard.
constexpr int redKey = Qt::Key_Calculator;
constexpr int greenKey = Qt::Key_AddFavorite;
static_assert(redKey == 0x010000CB && greenKey == 0x010000C0, "the codes that a device's platform sends");

} // namespace netcommon
