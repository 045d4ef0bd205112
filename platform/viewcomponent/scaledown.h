#pragma once

#include <QGraphicsEffect>
#include <QRegion>

class QWidget;

namespace viewcomponent {

// Paints a window smaller than it is laid out, for a screen on which the canvas does not fit: Qt takes every scale
// factor below 1 for 1. The window keeps its size, the picture fills its upper left part, and a mask hides the rest.
// Texts are painted at their small size, not shrunk afterwards. Owned by the window. GUI thread only.
class ScaleDown : public QGraphicsEffect {
    Q_OBJECT
public:
    explicit ScaleDown(QWidget *window);

    // Above 0, at most 1.
    void setFactor(double factor);
    // A part of any window, in the window's own coordinates, as it would be painted at factor 1.
    static QPixmap grabUnscaled(QWidget *window, const QRect &part);

protected:
    void draw(QPainter *painter) override;

private:
    void flushLater(const QRegion &painted);
    void flush();

    QWidget *const m_window;
    double m_factor = 1;
    QRegion m_unflushed; // painted and not yet on the screen; empty while no flush is on its way
};

} // namespace viewcomponent
