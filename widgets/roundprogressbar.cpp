#include "widgets/roundprogressbar.h"

#include <QPainter>

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
    // Round at both ends from the first moment: never shorter than a dot.
    const qreal length = qMax(whole.width() * (value() - minimum()) / range, whole.height());
    QLinearGradient mint(0, 0, length, 0);
    mint.setColorAt(0, mintLeft);
    mint.setColorAt(1, mintRight);
    painter.setBrush(mint);
    painter.drawRoundedRect(QRectF(0, 0, length, whole.height()), radius, radius);
}
