#include "canvasgeometry.h"

#include <algorithm>

namespace viewcomponent {

namespace {

// A screen that Qt's own scale factor has rounded down to 1279 pixels is large enough.
constexpr double nearlyOne = 0.99;

} // namespace

double shrinkFactor(const QSize &screen)
{
    const double factor =
        std::min(screen.width() / double(canvasSize.width()), screen.height() / double(canvasSize.height()));
    return factor > nearlyOne || screen.isEmpty() ? 1 : factor;
}

QRect canvasOn(const QRect &screen, double factor)
{
    QRect canvas(screen.topLeft(), shrunk(canvasSize, factor));
    if (screen.width() >= canvas.width() && screen.height() >= canvas.height())
        canvas.translate((screen.width() - canvas.width()) / 2, (screen.height() - canvas.height()) / 2);
    return canvas;
}

QSize shrunk(const QSize &size, double factor)
{
    return (QSizeF(size) * factor).toSize();
}

QPoint restingPlace(const QSize &window)
{
    return {(canvasSize.width() - window.width()) / 2, (canvasSize.height() - window.height()) / 2};
}

} // namespace viewcomponent
