#include "canvasgeometry.h"

#include <algorithm>

namespace viewcomponent {

namespace {

// A screen that Qt's own scale factor has rounded down to 1279 pixels is large enough.
constexpr double nearlyOne = 0.99;

// Around what is kept in view: room for a title above it and for the next row.
constexpr int marginX = 80, marginY = 80;

} // namespace

double shrinkFactor(const QSize &screen)
{
    const double factor =
        std::min(screen.width() / double(canvasSize.width()), screen.height() / double(canvasSize.height()));
    return factor > nearlyOne || screen.isEmpty() ? 1 : factor;
}

QRect placedOn(const QRect &screen, const QSize &picture)
{
    QRect place(screen.topLeft(), picture);
    if (screen.width() >= place.width() && screen.height() >= place.height())
        place.translate((screen.width() - place.width()) / 2, (screen.height() - place.height()) / 2);
    return place;
}

QSize shrunk(const QSize &size, double factor)
{
    return (QSizeF(size) * factor).toSize();
}

QSize viewSize(const QSize &screen, double factor)
{
    return (QSizeF(screen) / factor).toSize().boundedTo(canvasSize);
}

QRect revealed(QRect view, const QRect &wanted)
{
    const auto moved = [](int from, int length, int wantedFrom, int wantedLength, int margin, int whole) {
        if (wantedLength > length)
            return from;
        margin = std::min(margin, (length - wantedLength) / 2);
        from = std::max(from, wantedFrom + wantedLength + margin - length);
        from = std::min(from, wantedFrom - margin);
        return std::clamp(from, 0, whole - length);
    };
    view.moveLeft(moved(view.x(), view.width(), wanted.x(), wanted.width(), marginX, canvasSize.width()));
    view.moveTop(moved(view.y(), view.height(), wanted.y(), wanted.height(), marginY, canvasSize.height()));
    return view;
}

QPoint restingPlace(const QSize &window)
{
    return {(canvasSize.width() - window.width()) / 2, (canvasSize.height() - window.height()) / 2};
}

} // namespace viewcomponent
