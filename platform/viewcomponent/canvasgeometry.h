#pragma once

#include <QRect>

namespace viewcomponent {

inline constexpr QSize canvasSize(1280, 720);

// What the larger picture multiplies every size by. The menu system adds the same to Qt's scale factor.
inline constexpr double largerFactor = 1.25;

// What the canvas is multiplied by on a screen that is smaller: above 0, at most 1. Larger screens have Qt's own scale
// factor. All sizes here are in the screen's logical pixels.
double shrinkFactor(const QSize &screen);
// Where a picture of this size lies on a screen: in the middle, or at the corner of a screen that it does not fit.
QRect placedOn(const QRect &screen, const QSize &picture);
QSize shrunk(const QSize &size, double factor);
// How much of the canvas is seen with the larger picture, in its own pixels, at this factor.
QSize viewSize(const QSize &screen, double factor);
// The view moved as little as possible so that `wanted` is in it, if possible with a margin around. In a direction in
// which `wanted` does not fit, the view stays. It never leaves the canvas.
QRect revealed(QRect view, const QRect &wanted);
// The place of a window that was never moved: the middle of the canvas, which is the corner for a full-screen window.
QPoint restingPlace(const QSize &window);

} // namespace viewcomponent
