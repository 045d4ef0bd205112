#include "backdrop.h"

#include "netcommon/ipc.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QScreen>

#if QT_CONFIG(xcb)
#include <xcb/xcb.h>
#endif

namespace viewcomponent {

namespace {

// The X server fills the window itself as soon as it is mapped.
void paintByServer([[maybe_unused]] WId window)
{
#if QT_CONFIG(xcb)
    if (auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()) {
        const quint32 black = xcb_setup_roots_iterator(xcb_get_setup(x11->connection())).data->black_pixel;
        xcb_change_window_attributes(x11->connection(), xcb_window_t(window), XCB_CW_BACK_PIXEL, &black);
    }
#endif
}

} // namespace

bool Backdrop::isNeeded()
{
    return QGuiApplication::platformName() == QLatin1String("xcb");
}

Backdrop::Backdrop(const QSize &window)
    : m_isWindowed(!window.isEmpty())
{
    setObjectName(QStringLiteral("backdrop"));
    setTitle(QStringLiteral("Velmora"));
    if (m_isWindowed) {
        setMinimumSize(window);
        setMaximumSize(window);
        const QRect free = screen()->availableGeometry();
        setGeometry(QRect(free.center() - QRect(QPoint(), window).center(), window));
    } else {
        setFlags(Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
    }
    create();
    paintByServer(winId());
}

void Backdrop::cover(const QRect &screen)
{
    if (m_isWindowed) {
        show();
        return;
    }
    setGeometry(screen);
    setWindowStates(Qt::WindowFullScreen);
    show(); // showFullScreen() would ask for the focus
}

bool Backdrop::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::FocusIn:
        emit focused();
        break;
    case QEvent::Close:
        // The desktop's close button.
        event->ignore();
        qApp->setProperty(netcommon::exitWishProperty, true);
        QCoreApplication::quit();
        return true;
    default:
        break;
    }
    return QWindow::event(event);
}

} // namespace viewcomponent
