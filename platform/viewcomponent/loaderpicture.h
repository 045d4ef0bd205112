#pragma once

#include <QPixmap>

// The loader: ten bars through which a light runs.
namespace viewcomponent {

inline constexpr int loaderFrames = 10;
inline constexpr int loaderFrameMs = 200;
inline constexpr QSize loaderSize(191, 21);

// The application's own picture of the frame (0 to 9), or a drawn one if it has none.
QPixmap loaderPicture(int frame, qreal devicePixelRatio);
// The drawn one.
QPixmap drawnLoader(int frame, qreal devicePixelRatio);

} // namespace viewcomponent
