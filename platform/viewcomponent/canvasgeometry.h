#pragma once

#include <QRect>

namespace viewcomponent {

inline constexpr QSize canvasSize(1280, 720);

// Where the canvas lies on a screen, in the screen's own logical pixels: in the middle of it, and at its corner when
// the screen is smaller in one direction, for then nothing is gained by cutting the other.
QRect canvasOn(const QRect &screen);
// Where a window stands that nobody has moved: in the middle of the canvas, a full-screen one thus at its corner.
QPoint restingPlace(const QSize &window);

} // namespace viewcomponent
