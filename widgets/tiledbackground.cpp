#include "widgets/tiledbackground.h"

#include <QEvent>
#include <QFile>
#include <QHash>
#include <QPainter>
#include <QPaintEvent>
#include <QWidget>

namespace {

// Soft gradients have fewer than 256 colours in a tile of this size.
constexpr QSize tileSize(128, 80);
constexpr int maxColours = 256;

// A part of a 32-bit picture as one byte per pixel; an ordinary copy when it has too many colours.
QImage withPalette(const QImage &picture, const QRect &part)
{
    QImage tile(part.size(), QImage::Format_Indexed8);
    QList<QRgb> colours;
    QHash<QRgb, uchar> places;
    for (int y = 0; y < part.height(); ++y) {
        const auto *const from = reinterpret_cast<const QRgb *>(picture.constScanLine(part.y() + y)) + part.x();
        uchar *const to = tile.scanLine(y);
        for (int x = 0; x < part.width(); ++x) {
            if (x > 0 && from[x] == from[x - 1]) {
                to[x] = to[x - 1];
                continue;
            }
            auto place = places.constFind(from[x]);
            if (place == places.constEnd()) {
                if (colours.size() == maxColours)
                    return picture.copy(part);
                place = places.insert(from[x], static_cast<uchar>(colours.size()));
                colours.append(from[x]);
            }
            to[x] = *place;
        }
    }
    tile.setColorTable(colours);
    return tile;
}

} // namespace

TiledBackground::TiledBackground(const QString &file, QWidget *widget)
    : QObject(widget)
    , m_file(file)
    , m_widget(widget)
{
    widget->installEventFilter(this);
}

bool TiledBackground::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_widget && event->type() == QEvent::Paint) {
        const qreal ratio = m_widget->devicePixelRatioF();
        const QSize size = (QSizeF(m_widget->size()) * ratio).toSize();
        if (size != m_size)
            cut(size, ratio);
        QPainter painter(m_widget);
        painter.setRenderHint(QPainter::SmoothPixmapTransform); // where a window is drawn smaller than it is
        painter.scale(1 / ratio, 1 / ratio);
        const QRect part = static_cast<QPaintEvent *>(event)->rect();
        paint(painter, QRectF(part.topLeft() * ratio, QSizeF(part.size()) * ratio).toAlignedRect());
    }
    return false;
}

void TiledBackground::cut(const QSize &size, qreal ratio)
{
    m_size = size;
    m_tiles.clear();
    QString large = m_file;
    large.insert(large.lastIndexOf(QLatin1Char('.')), QLatin1String("@2x"));
    QImage picture(ratio > 1 && QFile::exists(large) ? large : m_file);
    if (picture.isNull())
        return;
    // Before it is scaled: Qt 6.4 may crash when it scales a picture with a palette smoothly.
    const QImage::Format format = picture.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32;
    picture.convertTo(format);
    if (picture.size() != size) {
        picture = picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        picture.convertTo(format);
    }
    picture.setDevicePixelRatio(1);
    for (int y = 0; y < size.height(); y += tileSize.height())
        for (int x = 0; x < size.width(); x += tileSize.width()) {
            const QRect part = QRect(QPoint(x, y), tileSize) & picture.rect();
            m_tiles.push_back({part.topLeft(), withPalette(picture, part)});
        }
}

void TiledBackground::paint(QPainter &painter, const QRect &part) const
{
    for (const Tile &tile : m_tiles)
        if (part.intersects(QRect(tile.at, tile.picture.size())))
            painter.drawImage(tile.at, tile.picture);
}
