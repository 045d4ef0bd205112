#include "widgets/imagelistwidgetitem.h"

#include "widgets/marquee.h"

#include <qdrawutil.h>
#include <QPainter>
#include <QPaintEvent>
#include <QTimer>
#include <QTimerEvent>

namespace {

constexpr int fadeWidth = 12; // pixels over which the text fades at an edge

} // namespace

ImageListWidgetItem::ImageListWidgetItem(QWidget *parent)
    : QLabel(parent)
{
}

void ImageListWidgetItem::setText(const QString &text)
{
    m_text = text;
    layOut();
    update();
    updateGeometry();
}

void ImageListWidgetItem::setBackdrop(const QPixmap &backdrop)
{
    m_backdrop = backdrop;
    forgetGround();
    update();
}

void ImageListWidgetItem::setBar(const QPixmap &bar, const QRect &place)
{
    m_bar = bar;
    m_barPlace = place;
    forgetGround();
    update();
}

void ImageListWidgetItem::layOut()
{
    QString name = m_text;
    while (name.endsWith(QLatin1Char(' ')))
        name.chop(1);
    m_isRightToLeft = name.isRightToLeft();
    QTextOption option;
    option.setTextDirection(m_isRightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    option.setWrapMode(QTextOption::NoWrap);
    m_line.setTextFormat(Qt::PlainText);
    m_line.setTextOption(option);
    m_line.setText(name);
    m_line.prepare({}, font());
    m_lineHeight = fontMetrics().height();
    m_textWidth = fontMetrics().horizontalAdvance(name);
    m_bandWidth = fontMetrics().horizontalAdvance(m_text);
}

void ImageListWidgetItem::forgetGround()
{
    m_ground = QPixmap();
    m_leftFade = QPixmap();
    m_rightFade = QPixmap();
}

void ImageListWidgetItem::resizeEvent(QResizeEvent *event)
{
    forgetGround();
    QLabel::resizeEvent(event);
}

QRect ImageListWidgetItem::leftEdge() const
{
    return QRect(0, 0, fadeWidth, height());
}

QRect ImageListWidgetItem::rightEdge() const
{
    return QRect(width() - fadeWidth, 0, fadeWidth, height());
}

// A text at rest is whole where it begins, and where it ends if there is room for it.
bool ImageListWidgetItem::isFaded(const QRect &edge) const
{
    const bool isBeginning = (edge.left() == 0) != m_isRightToLeft;
    return m_offset != 0 || (!isBeginning && m_textWidth > width());
}

void ImageListWidgetItem::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        layOut();
    QLabel::changeEvent(event);
}

QSize ImageListWidgetItem::sizeHint() const
{
    return fontMetrics().size(Qt::TextSingleLine, m_text);
}

void ImageListWidgetItem::startScroll()
{
    // Style sheets switch this off when they polish a label; without it every step would also paint what lies under it.
    setAttribute(Qt::WA_OpaquePaintEvent);
    if (!m_delayTimer) {
        m_delayTimer = new QTimer(this);
        m_delayTimer->setSingleShot(true);
        connect(m_delayTimer, &QTimer::timeout, this, &ImageListWidgetItem::startTimerEngine);
    }
    m_delayTimer->start(marquee::pauseMs);
}

void ImageListWidgetItem::startTimerEngine()
{
    if (m_timerId != 0)
        killTimer(m_timerId);
    m_timerId = startTimer(marquee::stepMs, Qt::PreciseTimer);
}

void ImageListWidgetItem::stopScroll()
{
    resetScroll();
    if (m_delayTimer)
        m_delayTimer->stop();
}

void ImageListWidgetItem::resetScroll()
{
    if (m_timerId != 0)
        killTimer(m_timerId);
    m_offset = 0;
    m_timerId = 0;
}

void ImageListWidgetItem::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_timerId) {
        QLabel::timerEvent(event);
        return;
    }
    if (marquee::advance(m_offset, m_bandWidth) == marquee::Step::ShiftAndPause) {
        resetScroll();
        m_delayTimer->stop();
        m_delayTimer->start(marquee::pauseMs);
    }
    // scroll() with an update of both edges would paint fewer pixels but cost more: Qt paints a region of several
    // rectangles span by span, and a hundred spans by a pool of threads, which sleep between two steps.
    update();
}

void ImageListWidgetItem::paintGround(QPainter &painter)
{
    if (m_backdrop.isNull())
        painter.fillRect(rect(), Qt::black);
    else
        painter.drawPixmap(0, 0, m_backdrop);
    if (m_bar.isNull()) {
        painter.fillRect(rect(), QColor(0xFF, 0xB9, 0x30)); // the text is black: as readable without the picture
    } else if (m_bar.devicePixelRatio() == painter.deviceTransform().m11()) {
        painter.drawPixmap(m_barPlace.topLeft(), m_bar);
    } else {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        qDrawBorderPixmap(&painter, m_barPlace, QMargins(), m_bar);
    }
}

QPixmap ImageListWidgetItem::fadedGround(const QRect &edge, bool isLeft)
{
    const qreal ratio = devicePixelRatioF();
    QPixmap faded(edge.size() * ratio);
    faded.setDevicePixelRatio(ratio);
    faded.fill(Qt::transparent);
    QPainter painter(&faded);
    painter.save();
    painter.translate(-edge.topLeft());
    paintGround(painter);
    painter.restore();
    QLinearGradient fade(0, 0, edge.width(), 0);
    fade.setColorAt(isLeft ? 0 : 1, Qt::black);
    fade.setColorAt(isLeft ? 1 : 0, Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(QRect(QPoint(), edge.size()), fade);
    return faded;
}

// The ground is kept in pixels of the screen, so that painting it is a copy at any scale.
void ImageListWidgetItem::drawGround(QPainter &painter)
{
    const QTransform toDevice = painter.deviceTransform();
    const QRect place = toDevice.mapRect(QRectF(rect())).toAlignedRect();
    const QTransform toGround = toDevice * QTransform::fromTranslate(-place.x(), -place.y());
    if (m_ground.size() != place.size() || m_toGround != toGround) {
        m_ground = QPixmap(place.size());
        m_ground.fill(Qt::black);
        m_toGround = toGround;
        QPainter ground(&m_ground);
        ground.setTransform(toGround);
        paintGround(ground);
    }
    painter.save();
    painter.setTransform(toDevice.inverted() * painter.transform());
    painter.drawPixmap(place.topLeft(), m_ground);
    painter.restore();
}

void ImageListWidgetItem::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    drawGround(painter);
    painter.setPen(palette().color(foregroundRole()));
    for (const int x : marquee::copies(m_offset, m_bandWidth, width())) {
        const int left = m_isRightToLeft ? width() - x - m_textWidth : x;
        if (left <= event->rect().right() && left + m_textWidth > event->rect().left())
            painter.drawStaticText(left, (height() - m_lineHeight) / 2, m_line);
    }
    if (isFaded(leftEdge())) {
        if (m_leftFade.isNull())
            m_leftFade = fadedGround(leftEdge(), true);
        painter.drawPixmap(leftEdge().topLeft(), m_leftFade);
    }
    if (isFaded(rightEdge())) {
        if (m_rightFade.isNull())
            m_rightFade = fadedGround(rightEdge(), false);
        painter.drawPixmap(rightEdge().topLeft(), m_rightFade);
    }
}
