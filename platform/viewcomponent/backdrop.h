#pragma once

#include <QWindow>

namespace viewcomponent {

// The black behind the canvas on a display server. The server itself paints it, so that it costs the program no
// memory. In window mode it is the program's window on the desktop, and the screens lie on it. GUI thread only.
class Backdrop : public QWindow {
    Q_OBJECT
public:
    // Whether the platform has a display server on which other things could be seen behind the canvas.
    static bool isNeeded();

    // `window`: its size in window mode; empty when it covers the screen.
    explicit Backdrop(const QSize &window);

    void cover(const QRect &screen);

signals:
    // The backdrop got the focus, which belongs to the screens.
    void focused();

protected:
    bool event(QEvent *event) override;

private:
    bool m_isWindowed;
};

} // namespace viewcomponent
