#include "canvasgeometry.h"

namespace viewcomponent {

QRect canvasOn(const QRect &screen)
{
    QRect canvas(screen.topLeft(), canvasSize);
    if (screen.width() >= canvasSize.width() && screen.height() >= canvasSize.height())
        canvas.translate((screen.width() - canvasSize.width()) / 2, (screen.height() - canvasSize.height()) / 2);
    return canvas;
}

QPoint restingPlace(const QSize &window)
{
    return {(canvasSize.width() - window.width()) / 2, (canvasSize.height() - window.height()) / 2};
}

} // namespace viewcomponent
