#include "widgets/roundprogressbar.h"

#include <QPainter>

namespace {

constexpr QColor track(58, 38, 80);
constexpr QColor mintLeft(0x2F, 0xBF, 0x95);
constexpr QColor mintRight(0x7C, 0xEF, 0xCB);
constexpr QColor mutedLeft(0x8E, 0x6F, 0xAE);
constexpr QColor mutedRight(0xB5, 0x9D, 0xCC);

} // namespace

RoundProgressBar::RoundProgressBar(QWidget *parent)
    : QProgressBar(parent)
{
}

void RoundProgressBar::setMuted(bool isMuted)
{
    m_isMuted = isMuted;
    update();
}

void RoundProgressBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QRectF whole(rect());
    const qreal radius = whole.height() / 2;
    painter.setBrush(track);
    painter.drawRoundedRect(whole, radius, radius);
    const int range = maximum() - minimum();
    if (range <= 0 || value() <= minimum())
        return;
    // Never shorter than its height, so that both ends are round.
    const qreal length = qMax(whole.width() * (value() - minimum()) / range, whole.height());
    QLinearGradient lit(0, 0, length, 0);
    lit.setColorAt(0, m_isMuted ? mutedLeft : mintLeft);
    lit.setColorAt(1, m_isMuted ? mutedRight : mintRight);
    painter.setBrush(lit);
    painter.drawRoundedRect(QRectF(0, 0, length, whole.height()), radius, radius);
}
