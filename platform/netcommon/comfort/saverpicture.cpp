#include "saverpicture.h"

#include "platform/shared/canvasproperty.h"

#include <QImageReader>
#include <QLocale>
#include <QPainterPath>
#include <QRegularExpression>
#include <QTime>

#include <cmath>

namespace netcommon {

namespace {

constexpr QSize canvasSize(1280, 720);
constexpr int coverSide = 400;
constexpr double brightness = 0.4;
constexpr qint64 sideMs = 45'000;
constexpr qint64 appearMs = 3000;
// Of the picture, with everything in it. Both sides together leave room for the drift.
constexpr QSize groupSize(560, 640);
constexpr int driftX = 40;
constexpr int driftY = 70;

QRect groupPlace(qint64 elapsedMs)
{
    const qint64 turn = elapsedMs / sideMs;
    const double share = double(elapsedMs % sideMs) / sideMs;
    // The way differs from turn to turn: up or down, and beginning elsewhere.
    const double way = turn % 4 < 2 ? share : 1 - share;
    const int x = (turn % 2 == 0 ? 0 : canvasSize.width() / 2) + 20 + int(driftX * share);
    const int y = 5 + int(driftY * way);
    return {QPoint(x, y), groupSize};
}

// Appears and goes softly.
double strength(qint64 elapsedMs)
{
    const qint64 inTurn = elapsedMs % sideMs;
    const qint64 fromEdge = std::min(inTurn + 1000, sideMs - inTurn);
    return std::min(1.0, double(fromEdge) / appearMs);
}

QFont font(int pixels, bool isBold)
{
    QFont font(QStringLiteral("Arial"));
    font.setPixelSize(pixels);
    font.setBold(isBold);
    return font;
}

// One line, cut at the end if it is too long.
void drawLine(QPainter &painter, const QRect &place, const QFont &font, const QString &text)
{
    painter.setFont(font);
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     QFontMetrics(font).elidedText(text, Qt::ElideRight, place.width()));
}

// As the locale writes it, without seconds.
QString timeOfDay()
{
    static const QRegularExpression seconds(QStringLiteral("[:.]ss?"));
    return QLocale().toString(QTime::currentTime(), QLocale().timeFormat(QLocale::ShortFormat).remove(seconds));
}

QPixmap loaded(const QString &file, qreal ratio)
{
    const int side = qRound(coverSide * ratio);
    QImageReader reader(file);
    reader.setDecideFormatFromContent(true);
    if (reader.size().isValid())
        reader.setScaledSize(reader.size().scaled(side, side, Qt::KeepAspectRatio));
    QPixmap cover = QPixmap::fromImageReader(&reader);
    cover.setDevicePixelRatio(ratio);
    return cover;
}

void drawMoon(QPainter &painter, const QRectF &place)
{
    QPainterPath moon;
    moon.addEllipse(place);
    QPainterPath shadow;
    shadow.addEllipse(place.translated(place.width() * 0.4, -place.height() * 0.15));
    painter.fillPath(moon.subtracted(shadow), Qt::white);
}

} // namespace

void paintSaver(QPainter &painter, const SaverScene &scene, qint64 elapsedMs)
{
    painter.fillRect(QRect(QPoint(), canvasSize), Qt::black);
    const QRect group = groupPlace(elapsedMs);
    painter.setOpacity(brightness * strength(elapsedMs));
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.setPen(Qt::white);
    const QRect cover(group.topLeft(), QSize(coverSide, coverSide));
    if (!scene.cover.isNull()) {
        const QSize size = scene.cover.deviceIndependentSize().toSize();
        painter.drawPixmap(cover.center() - QRect(QPoint(), size).center(), scene.cover);
    }
    const auto line = [&](int top, int height) { return QRect(group.x(), group.y() + top, group.width(), height); };
    drawLine(painter, line(416, 50), font(36, true), scene.title);
    drawLine(painter, line(468, 38), font(26, false), scene.artist);
    drawLine(painter, line(540, 90), font(72, false), scene.clock);
    if (scene.sleep.isEmpty())
        return;
    const QRect sleep = line(540, 90).adjusted(330, 0, 0, 0);
    drawMoon(painter, QRectF(sleep.x() - 44, sleep.center().y() - 14, 28, 28));
    drawLine(painter, sleep, font(26, false), scene.sleep);
}

SaverPicture::SaverPicture(QWidget *playingScreen)
    : QWidget(playingScreen)
{
    setObjectName(QStringLiteral("saverPicture"));
    setGeometry(playingScreen->rect());
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_OpaquePaintEvent); // nothing below is painted
    raise();
    show();
}

void SaverPicture::showBlack()
{
    if (m_isBlack)
        return;
    m_isBlack = true;
    m_track = {};
    m_scene = {};
    update();
}

void SaverPicture::showTrack(const NowPlaying &track, const QString &sleep, qint64 elapsedMs)
{
    if (m_isBlack || track.coverFile != m_track.coverFile) {
        m_scene.cover = track.coverFile.isEmpty() ? QPixmap() : loaded(track.coverFile, devicePixelRatioF());
    }
    m_isBlack = false;
    m_track = track;
    m_elapsedMs = elapsedMs;
    m_scene.title = track.title;
    m_scene.artist = track.artist;
    m_scene.clock = timeOfDay();
    m_scene.sleep = sleep;
    update();
}

void SaverPicture::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
    if (m_isBlack)
        return;
    const QRect view = platform::viewOfCanvas(); // also with the larger picture all of it is seen
    const QSize picture = canvasSize.scaled(view.size(), Qt::KeepAspectRatio);
    painter.translate(view.center() - QRect(QPoint(), picture).center());
    painter.scale(double(picture.width()) / canvasSize.width(), double(picture.height()) / canvasSize.height());
    paintSaver(painter, m_scene, m_elapsedMs);
}

} // namespace netcommon
