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

int ImageListWidgetItem::bandWidth() const
{
    return fontMetrics().horizontalAdvance(m_text);
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
    if (marquee::advance(m_offset, bandWidth()) == marquee::Step::ShiftAndPause) {
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
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    if (m_bar.isNull())
        painter.fillRect(event->rect(), QColor(0xFF, 0xB9, 0x30)); // the text is black: as readable without the picture
    else
        qDrawBorderPixmap(&painter, m_barPlace, QMargins(), m_bar);

    const int width = bandWidth();
    painter.setPen(palette().color(foregroundRole()));
    for (const int x : marquee::copies(m_offset, width, this->width()))
        if (x <= event->rect().right() && x + width > event->rect().left())
            painter.drawText(QRect(x, 0, width, height()), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                             m_text);
}
