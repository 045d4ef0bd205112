#pragma once

#include <QByteArray>

#include <bitset>
#include <cstdint>
#include <optional>
#include <vector>

#include <linux/input-event-codes.h>

// Infrared and CEC remotes as the kernel delivers them: input devices of their own, with keys that no X server passes
// on. Qt Core only.
namespace netcommon::evdev {

using KeySet = std::bitset<KEY_CNT>;

// Whether an input device with these keys is a remote control. A keyboard is none: the display server reads it.
bool isRemote(const KeySet &keys, std::uint16_t busType);
// The remote's Qt key code; 0: none.
int remoteKey(std::uint16_t code);

struct Stroke {
    int key; // Qt key code
    bool isPress;
    bool isAutoRepeat;
    bool operator==(const Stroke &) const = default;
};

// Turns what was read from an input device into strokes of the remote. One object for one device.
class Reader {
public:
    // bytes: whole records or parts of them.
    std::vector<Stroke> read(const QByteArray &bytes);

private:
    QByteArray m_rest;
    bool m_isOverrun = false; // the kernel has lost events: nothing counts until the next report begins
    std::vector<int> m_down;
};

} // namespace netcommon::evdev
