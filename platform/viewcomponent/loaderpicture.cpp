#include "loaderpicture.h"

#include <QFile>
#include <QImage>
#include <QPainter>

namespace viewcomponent {

namespace {

struct Bar {
    int height;
    QRgb colour;
};

// By the number of steps since the light stood on the bar; the last is the bar that it reaches next.
constexpr Bar lit[] = {{21, 0xffffcb52}, {17, 0xffe8a83f}, {13, 0xffb87a45}, {10, 0xff8a5a58}};
constexpr Bar ahead{11, 0xff6e4a78};
constexpr Bar resting{7, 0xff4a2f60};

Bar barAt(int distance)
{
    if (distance < int(std::size(lit)))
        return lit[distance];
    return distance == loaderFrames - 1 ? ahead : resting;
}

} // namespace

QPixmap drawnLoader(int frame, qreal devicePixelRatio)
{
    QPixmap picture((QSizeF(loaderSize) * devicePixelRatio).toSize());
    picture.setDevicePixelRatio(devicePixelRatio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    for (int index = 0; index < loaderFrames; ++index) {
        const Bar bar = barAt((frame - index + loaderFrames) % loaderFrames);
        painter.setBrush(QColor::fromRgb(bar.colour));
        const QRectF place(4 + 18 * index, (loaderSize.height() - bar.height) / 2.0, 10, bar.height);
        painter.drawRoundedRect(place, 3, 3);
    }
    return picture;
}

QPixmap sharpPicture(const QString &file, const QSize &size, qreal devicePixelRatio)
{
    QString dense = file;
    dense.insert(file.lastIndexOf(u'.'), QStringLiteral("@2x"));
    QImage image(devicePixelRatio > 1 && QFile::exists(dense) ? dense : file);
    if (image.isNull())
        return {};
    const QSize wanted = (QSizeF(size) * devicePixelRatio).toSize();
    if (image.width() > wanted.width() || image.height() > wanted.height())
        image = image.convertToFormat(QImage::Format_ARGB32_Premultiplied)
                    .scaled(wanted, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    image.setDevicePixelRatio(qreal(image.width()) / size.width());
    return QPixmap::fromImage(image);
}

QPixmap loaderPicture(int frame, qreal devicePixelRatio)
{
    const QPixmap picture =
        sharpPicture(QStringLiteral(":/images/Loading_%1.png").arg(frame), loaderSize, devicePixelRatio);
    return picture.isNull() ? drawnLoader(frame, devicePixelRatio) : picture;
}

} // namespace viewcomponent
