#include "volumebar.h"

#include "platform/shared/canvasproperty.h"

#include <QPainter>
#include <QPainterPath>

namespace netcommon {

namespace {

constexpr int shownMs = 2000;
constexpr QSize barSize(440, 64);
constexpr int fromTop = 20; // of what is seen: above everything that a screen puts there
constexpr QRectF track(88, 27, 258, 10);
constexpr QRectF numberPlace(356, 0, 66, 64);
const QColor amber(0xFF, 0xB4, 0x00);
const QColor edge(0x8E, 0x6F, 0xAE);
const QColor pale(0x9C, 0x92, 0xA6);

void drawSpeaker(QPainter &painter, bool isMuted)
{
    QPainterPath speaker;
    speaker.addPolygon(QPolygonF({{28, 26}, {36, 26}, {45, 18}, {45, 46}, {36, 38}, {28, 38}}));
    painter.fillPath(speaker, Qt::white);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::white, 3, Qt::SolidLine, Qt::RoundCap));
    if (isMuted) {
        painter.drawLine(QPointF(51, 27), QPointF(61, 37));
        painter.drawLine(QPointF(61, 27), QPointF(51, 37));
    } else {
        painter.drawArc(QRectF(42, 24, 16, 16), -50 * 16, 100 * 16);
        painter.drawArc(QRectF(40, 18, 28, 28), -50 * 16, 100 * 16);
    }
}

} // namespace

VolumeBar::VolumeBar(QWidget *screen)
    : QWidget(screen)
{
    setObjectName(QStringLiteral("volumeBar"));
    resize(barSize);
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    m_hide.setSingleShot(true);
    m_hide.setInterval(shownMs);
    connect(&m_hide, &QTimer::timeout, this, &QWidget::hide);
}

void VolumeBar::showVolume(int percent, bool isMuted)
{
    m_percent = percent;
    m_isMuted = isMuted;
    const QRect view = platform::viewOfCanvas();
    move(view.center().x() + 1 - barSize.width() / 2, view.y() + fromTop);
    raise();
    show();
    update();
    m_hide.start();
}

void VolumeBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient inside(0, 0, 0, height());
    inside.setColorAt(0, QColor(0x3A, 0x21, 0x50));
    inside.setColorAt(1, QColor(0x26, 0x13, 0x38));
    painter.setBrush(inside);
    painter.setPen(QPen(edge, 2));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 18, 18);

    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x12, 0x08, 0x1C));
    painter.drawRoundedRect(track, 5, 5);
    if (m_percent > 0) {
        QRectF filled = track;
        filled.setWidth(std::max(track.height(), track.width() * m_percent / 100));
        painter.setBrush(m_isMuted ? pale : amber);
        painter.drawRoundedRect(filled, 5, 5);
    }
    drawSpeaker(painter, m_isMuted);
    QFont number(QStringLiteral("Arial"));
    number.setPixelSize(24);
    painter.setFont(number);
    painter.setPen(m_isMuted ? pale : QColor(Qt::white));
    painter.drawText(numberPlace, Qt::AlignVCenter | Qt::AlignRight, QString::number(m_percent));
}

} // namespace netcommon
