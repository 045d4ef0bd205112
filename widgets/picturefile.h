#pragma once

#include <QPixmap>
#include <QSize>
#include <QString>

// Pictures that came from the network: nothing about them is trusted.
namespace picturefile {

inline constexpr int largestSide = 4096; // pixels; a larger picture is refused before it is decoded
inline constexpr int decoderLimitMiB = 64;

// The picture in `file`, by its content, stretched to `size` pixels. Null when it is missing, damaged, too large or of
// a kind that is not a plain picture (JPEG, PNG, GIF, BMP, WebP).
QPixmap load(const QString &file, const QSize &size);

} // namespace picturefile
