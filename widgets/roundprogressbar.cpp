#include "widgets/roundprogressbar.h"

#include <QPainter>
#include <QPainterPath>

namespace {

constexpr QColor track(58, 38, 80);
constexpr QColor mintLeft(0x2F, 0xBF, 0x95);
constexpr QColor mintRight(0x7C, 0xEF, 0xCB);

} // namespace

RoundProgressBar::RoundProgressBar(QWidget *parent)
    : QProgressBar(parent)
{
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
    const qreal width = whole.width() * (value() - minimum()) / range;
    // Both ends are round: a short part is the overlap of the track and of a bar that comes in from the left.
    QPainterPath trackPath, litPath;
    trackPath.addRoundedRect(whole, radius, radius);
    const qreal length = qMax(width, whole.height());
    litPath.addRoundedRect(QRectF(width - length, 0, length, whole.height()), radius, radius);
    QLinearGradient mint(0, 0, qMax(width, 1.0), 0);
    mint.setColorAt(0, mintLeft);
    mint.setColorAt(1, mintRight);
    painter.fillPath(trackPath.intersected(litPath), mint);
}
