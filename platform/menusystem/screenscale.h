#pragma once

#include <QSize>

namespace menusystem {

// The factor at which the canvas of 1280 x 720 is as large as fits; a window on a desktop leaves room around it.
// 1 for an unknown size, and for a screen on which the canvas does not fit: there the radio's own canvas paints smaller.
double scaleFor(const QSize &screen, bool isWindowed);

// The screen's size in real pixels; empty when this machine does not say. Qt's platform is asked, by a process of its
// own, because a display server that is not there ends the process that asks, and a console's screen is let go with it.
QSize screenSize();
// What that process does: prints "WIDTHxHEIGHT". Returns its exit code.
int printScreenSize(int argc, char **argv);

} // namespace menusystem
