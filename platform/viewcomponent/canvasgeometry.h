#pragma once

#include <QRect>

namespace viewcomponent {

inline constexpr QSize canvasSize(1280, 720);

// What the canvas is multiplied by on a screen that is smaller: above 0, at most 1. Larger screens have Qt's own scale
// factor. All sizes here are in the screen's logical pixels.
double shrinkFactor(const QSize &screen);
// Where the canvas lies on a screen at this factor: in the middle, or at the corner of a screen that it does not fit.
QRect canvasOn(const QRect &screen, double factor);
QSize shrunk(const QSize &size, double factor);
// The place of a window that was never moved: the middle of the canvas, which is the corner for a full-screen window.
QPoint restingPlace(const QSize &window);

} // namespace viewcomponent
