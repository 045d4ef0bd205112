#pragma once

#include <QCoreApplication>
#include <QRect>
#include <QVariant>

namespace platform {

// Properties of the application object by which libViewComponent tells libNetCommon where the canvas is. Both are a
// QRect, set when the canvas is placed or moved. Without libViewComponent they are absent, and the whole 1280 x 720
// area counts. GUI thread only.

// What is seen of the canvas, in the screen's logical coordinates. Screenshots are cut to it.
inline constexpr char canvasProperty[] = "velmoraCanvas";
// The same, in coordinates of the canvas: less than all of it with the larger picture. What lies over every screen
// keeps to it.
inline constexpr char viewProperty[] = "velmoraView";
inline QRect viewOfCanvas()
{
    const QVariant placed = QCoreApplication::instance()->property(viewProperty);
    return placed.isValid() ? placed.toRect() : QRect(0, 0, 1280, 720);
}

// Property of a widget that shows a place of attention itself, such as the highlighted key of a keyboard: a QRect in
// its own coordinates, null while there is none. The larger picture keeps it in view.
inline constexpr char attentionProperty[] = "velmoraAttention";

} // namespace platform
