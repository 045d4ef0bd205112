#pragma once

#include <QSize>

namespace menusystem {

// The largest factor at which the canvas of 1280 x 720 fits the screen; a window on a desktop leaves room around it.
// 1 for an unknown size, and for a screen on which the canvas does not fit: there the radio's own canvas paints
// smaller.
double scaleFor(const QSize &screen, bool isWindowed);

// The screen's size in real pixels; empty when this machine does not say. Needs an application object.
QSize screenSize();

} // namespace menusystem
