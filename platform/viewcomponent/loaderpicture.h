#pragma once

#include <QPixmap>

// The loader: ten bars through which a light runs.
namespace viewcomponent {

inline constexpr int loaderFrames = 10;
inline constexpr int loaderFrameMs = 200;
inline constexpr QSize loaderSize(191, 21);

// A picture of the application for a widget of this size, the double-size one (@2x) on a dense screen; null if there is
// none. Not by QIcon: for each new one Qt's picture cache keeps a key for ever.
QPixmap sharpPicture(const QString &file, const QSize &size, qreal devicePixelRatio);
// The application's own picture of the frame (0 to 9), or a drawn one if it has none.
QPixmap loaderPicture(int frame, qreal devicePixelRatio);
// The drawn one.
QPixmap drawnLoader(int frame, qreal devicePixelRatio);

} // namespace viewcomponent
