#pragma once

#include <QPixmap>
#include <QSize>
#include <QString>

// Pictures that came from the network. Their content is not trusted.
namespace picturefile {

inline constexpr int largestSide = 4096; // pixels; a larger picture is refused before it is decoded
inline constexpr int decoderLimitMiB = 64;

// The picture in `file`, stretched to `size` pixels; its format is found by its content. Null when it is missing,
// damaged, too large, or not one of JPEG, PNG, GIF, BMP and WebP.
QPixmap load(const QString &file, const QSize &size);

} // namespace picturefile
