#include "widgets/imagelistwidgetitem.h"

#include "widgets/marquee.h"

#include <qdrawutil.h>
#include <QPainter>
#include <QPaintEvent>
#include <QTimer>
#include <QTimerEvent>

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
    update();
}

void ImageListWidgetItem::setBar(const QPixmap &bar, const QRect &place)
{
    m_bar = bar;
    m_barPlace = place;
    update();
}

void ImageListWidgetItem::layOut()
{
    m_line.setTextFormat(Qt::PlainText);
    m_line.setText(m_text);
    m_line.prepare({}, font());
    m_bandWidth = fontMetrics().horizontalAdvance(m_text);
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
    // Style sheets switch this off when they polish a label; without it every step would paint the whole label.
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
    scroll(-1, 0);
}

void ImageListWidgetItem::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.setClipRegion(event->region());
    if (m_backdrop.isNull())
        painter.fillRect(event->rect(), Qt::black);
    else
        painter.drawPixmap(0, 0, m_backdrop);
    if (m_bar.isNull()) {
        painter.fillRect(event->rect(), QColor(0xFF, 0xB9, 0x30)); // the text is black: as readable without the picture
    } else if (m_bar.devicePixelRatio() == painter.deviceTransform().m11()) {
        painter.drawPixmap(m_barPlace.topLeft(), m_bar); // many times a second: nothing to scale, nothing to compute
    } else {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        qDrawBorderPixmap(&painter, m_barPlace, QMargins(), m_bar);
    }

    painter.setPen(palette().color(foregroundRole()));
    for (const int x : marquee::copies(m_offset, m_bandWidth, width()))
        if (x <= event->rect().right() && x + m_bandWidth > event->rect().left())
            painter.drawStaticText(x, (height() - fontMetrics().height()) / 2, m_line);
}
