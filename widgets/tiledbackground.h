#pragma once

#include <QImage>
#include <QObject>
#include <QPoint>
#include <QSize>
#include <QString>

#include <vector>

class QPainter;
class QRect;
class QWidget;

// Paints a picture behind the content of a widget, stretched over it. A style sheet would keep 4 bytes a pixel, which
// for a picture as large as the screen is the greatest part of the radio's pictures. Here the picture is cut into tiles
// in device pixels, each with its own colour table: 1 byte per pixel, exactly the same colours. GUI thread.
class TiledBackground : public QObject {
    Q_OBJECT
public:
    // file: as in a style sheet; its neighbour "@2x" serves larger screens. widget: the parent. Without the picture
    // nothing is painted.
    TiledBackground(const QString &file, QWidget *widget);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Tile {
        QPoint at; // device pixels
        QImage picture;
    };
    void cut(const QSize &size, qreal ratio);
    void paint(QPainter &painter, const QRect &part) const;

    const QString m_file;
    QWidget *const m_widget; // the parent
    QSize m_size;            // of all tiles, device pixels; empty: not cut yet
    std::vector<Tile> m_tiles;
};
