#pragma once

#include <QHash>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <QTimer>

#include <memory>

class QWidget;

namespace viewcomponent {

class Backdrop;

// Puts every window of the screens onto a canvas of 1280 x 720 that lies in the middle of the real screen. A screen
// moves itself to a place on the canvas and is moved on to the place on the screen; on a screen of just that size both
// are the same. On a smaller screen everything is painted smaller (scaledown.h). With the larger picture a part of the
// canvas is seen, which follows the focus. Windows keep their order, and the uppermost has the focus, whether or not a
// window manager cares. It is installed by the library itself when the application object is made, and lives as long as
// that. GUI thread only.
class Canvas : public QObject {
    Q_OBJECT
public:
    ~Canvas() override;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    friend void installCanvas();
    explicit Canvas(QObject *application);

    struct Place {
        QPoint onCanvas;
        QPoint onScreen; // where place() has put it last
    };

    void begin(); // when the first window is shown: only then is the screen known
    void spread();
    void place(QWidget *window, const QPoint &onCanvas);
    void shrink(QWidget *window) const;
    bool mapMouse(QObject *watched, QEvent *event);
    void fillCorners(QWidget *window) const;
    void settleLater();
    void settle();
    void followLater();
    void follow();
    QRect followed() const; // m_view as it should be

    bool m_hasBegun = false;
    bool m_isPlacing = false;             // the canvas itself moves a window
    bool m_isSettling = false;            // settle() is queued
    bool m_isMapping = false;             // the canvas itself sends a mouse event
    bool m_isLarger = false;              // the larger picture; from begin() on
    bool m_isFollowing = false;           // follow() is queued
    double m_factor = 1;                  // canvas to screen, below 1 on a small screen
    QRect m_canvas;                       // what is seen of the canvas, on the screen
    QRect m_view{0, 0, 1280, 720};        // the same, on the canvas
    QHash<QWidget *, Place> m_places;     // of living windows
    QTimer m_emptyTimer;                  // runs while no window shows
    std::unique_ptr<Backdrop> m_backdrop; // null on platforms that show nothing else
};

} // namespace viewcomponent
