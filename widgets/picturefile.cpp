#include "widgets/picturefile.h"

#include <QImageReader>

namespace picturefile {

QPixmap load(const QString &file, const QSize &size)
{
    static const QList<QByteArray> kinds = {"jpeg", "jpg", "png", "gif", "bmp", "webp"};
    QImageReader reader(file);
    reader.setDecideFormatFromContent(true);
    if (!kinds.contains(reader.format()))
        return QPixmap();
    const QSize original = reader.size();
    if (!original.isValid() || original.width() > largestSide || original.height() > largestSide)
        return QPixmap();
    QImageReader::setAllocationLimit(decoderLimitMiB);
    reader.setScaledSize(size);
    return QPixmap::fromImage(reader.read());
}

} // namespace picturefile
