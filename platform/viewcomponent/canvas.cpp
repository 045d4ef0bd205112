#include "canvas.h"

#include "backdrop.h"
#include "canvasgeometry.h"
#include "platform/shared/canvasproperty.h"
#include "platform/shared/windowstack.h"
#include "scaledown.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QDynamicPropertyChangeEvent>
#include <QMouseEvent>
#include <QMoveEvent>
#include <QPainter>
#include <QPointer>
#include <QScopedValueRollback>
#include <QScreen>
#include <QWidget>

#include <utility>

namespace viewcomponent {

using platform::WindowStack;

namespace {

// Screens hand over without a gap. A canvas stays empty only after the desktop closed a window, which looks like the
// program's own closing; what remains would be a black screen that takes no keys.
constexpr int longestEmptyMs = 3000;

constexpr int largestCorner = 24; // of a box

// Platforms without a display have no stacking order and warn at each attempt to change it.
bool hasOrder()
{
    const QString platform = QGuiApplication::platformName();
    return platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

} // namespace

Canvas::Canvas(QObject *application)
    : QObject(application)
{
    // Event filters run in reverse order of installation: windows are placed before the stack sees them.
    connect(&WindowStack::instance(), &WindowStack::changed, this, &Canvas::settleLater);
    application->installEventFilter(this);
    m_emptyTimer.setSingleShot(true);
    m_emptyTimer.setInterval(longestEmptyMs);
    connect(&m_emptyTimer, &QTimer::timeout, this, [] {
        qDebug("Canvas,empty,quit");
        QCoreApplication::quit();
    });
}

Canvas::~Canvas() = default;

bool Canvas::eventFilter(QObject *watched, QEvent *event)
{
    if (m_factor < 1 && watched->isWindowType())
        return mapMouse(watched, event);
    if (m_isLarger && (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease ||
                       event->type() == QEvent::DynamicPropertyChange))
        followLater(); // when the screen has done what the key asks for
    if ((event->type() != QEvent::Move && event->type() != QEvent::Show) || m_isPlacing || event->spontaneous() ||
        !watched->isWidgetType())
        return false;
    auto *window = static_cast<QWidget *>(watched);
    if (!WindowStack::isScreen(window))
        return false;
    begin();
    const auto known = m_places.constFind(window);
    if (event->type() == QEvent::Move) {
        const QPoint to = static_cast<QMoveEvent *>(event)->pos();
        // Qt reports the move of a hidden window at its next show; that move may be ours, or none at all.
        if (window->testAttribute(Qt::WA_Moved) && (known == m_places.constEnd() || known->onScreen != to))
            place(window, to);
        return false;
    }
    if (known != m_places.constEnd())
        place(window, known->onCanvas);
    else
        place(window, window->testAttribute(Qt::WA_Moved) ? window->pos() : restingPlace(window->size()));
    shrink(window);
    fillCorners(window);
    // A window manager keeps a window above the one that it belongs to.
    if (m_backdrop && !window->parentWidget() && window->windowHandle())
        window->windowHandle()->setTransientParent(m_backdrop.get());
    return false;
}

void Canvas::begin()
{
    if (m_hasBegun)
        return;
    m_hasBegun = true;
    const bool isWindowed = qEnvironmentVariableIntValue("VELMORA_WINDOWED") == 1;
    m_isLarger = !isWindowed && qEnvironmentVariableIntValue("VELMORA_LARGER") == 1;
    if (m_isLarger)
        connect(qApp, &QApplication::focusChanged, this, &Canvas::followLater);
    if (Backdrop::isNeeded()) {
        if (isWindowed) // as large as the desktop leaves room for
            m_factor = shrinkFactor(QGuiApplication::primaryScreen()->availableSize());
        m_backdrop = std::make_unique<Backdrop>(isWindowed ? shrunk(canvasSize, m_factor) : QSize());
        connect(m_backdrop.get(), &Backdrop::focused, this, &Canvas::settleLater);
        if (isWindowed) {
            connect(m_backdrop.get(), &QWindow::xChanged, this, &Canvas::spread);
            connect(m_backdrop.get(), &QWindow::yChanged, this, &Canvas::spread);
        }
    }
    connect(qApp, &QGuiApplication::primaryScreenChanged, this, &Canvas::spread);
    if (QScreen *screen = QGuiApplication::primaryScreen())
        connect(screen, &QScreen::geometryChanged, this, &Canvas::spread);
    spread();
}

// The screen or the window around the canvas has changed.
void Canvas::spread()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    const QRect whole = screen ? screen->geometry() : QRect(QPoint(), canvasSize);
    const bool isWindowed = m_backdrop && !(m_backdrop->flags() & Qt::FramelessWindowHint);
    if (m_backdrop && (!isWindowed || !m_backdrop->isVisible()))
        m_backdrop->cover(whole);
    if (!isWindowed)
        m_factor =
            hasOrder() ? shrinkFactor(m_isLarger ? (QSizeF(whole.size()) * largerFactor).toSize() : whole.size()) : 1;
    if (m_isLarger) {
        m_view.setSize(viewSize(whole.size(), m_factor));
        m_view = followed();
    }
    m_canvas = isWindowed ? m_backdrop->geometry() : placedOn(whole, shrunk(m_view.size(), m_factor));
    qApp->setProperty(platform::canvasProperty, m_canvas);
    qApp->setProperty(platform::viewProperty, m_view);
    for (auto entry = m_places.cbegin(); entry != m_places.cend(); ++entry) {
        place(entry.key(), entry->onCanvas);
        shrink(entry.key());
    }
}

void Canvas::place(QWidget *window, const QPoint &onCanvas)
{
    const QPoint onScreen = m_canvas.topLeft() + (QPointF(onCanvas - m_view.topLeft()) * m_factor).toPoint();
    if (!m_places.contains(window))
        connect(window, &QObject::destroyed, this, [this, window] { m_places.remove(window); });
    m_places[window] = {onCanvas, onScreen};
    // Even if the place is the same: a dialog that was never moved would move itself when it is shown.
    const QScopedValueRollback guard(m_isPlacing, true);
    window->move(onScreen);
}

void Canvas::shrink(QWidget *window) const
{
    auto *effect = qobject_cast<ScaleDown *>(window->graphicsEffect());
    if (m_factor == 1 && !effect)
        return;
    if (!effect)
        window->setGraphicsEffect(effect = new ScaleDown(window)); // the window owns it
    effect->setFactor(m_factor);
    // The native window's mask, because Qt does not repaint a widget outside of its own mask.
    if (QWindow *native = window->windowHandle())
        native->setMask(m_factor == 1 ? QRegion() : QRegion(QRect(QPoint(), shrunk(window->size(), m_factor))));
}

// The widgets do not know that they are painted smaller.
bool Canvas::mapMouse(QObject *watched, QEvent *event)
{
    auto *mouse = event->isPointerEvent() ? dynamic_cast<QMouseEvent *>(event) : nullptr;
    if (!mouse || m_isMapping || watched == m_backdrop.get())
        return false;
    QMouseEvent mapped(mouse->type(), mouse->position() / m_factor, mouse->globalPosition(), mouse->button(),
                       mouse->buttons(), mouse->modifiers(), mouse->pointingDevice());
    const QScopedValueRollback guard(m_isMapping, true);
    QCoreApplication::sendEvent(watched, &mapped);
    return true;
}

// Without a compositing manager transparent pixels are black. So a window with round corners paints what lies behind
// them at the time it is shown. With a compositing manager this makes no difference.
void Canvas::fillCorners(QWidget *window) const
{
    if (!window->testAttribute(Qt::WA_TranslucentBackground) || QGuiApplication::platformName() != QLatin1String("xcb"))
        return;
    QPixmap behind((QSizeF(window->size()) * window->devicePixelRatioF()).toSize());
    behind.setDevicePixelRatio(window->devicePixelRatioF());
    behind.fill(Qt::transparent);
    QPainter painter(&behind);
    const QRect whole = window->rect();
    const auto placeOf = [this](QWidget *shown) { return m_places.value(shown).onCanvas; };
    QRect corner(0, 0, largestCorner, largestCorner);
    for (const QPoint &place :
         {whole.topLeft(), QPoint(whole.width() - largestCorner, 0), QPoint(0, whole.height() - largestCorner),
          QPoint(whole.width() - largestCorner, whole.height() - largestCorner)}) {
        corner.moveTopLeft(place);
        for (QWidget *below : WindowStack::instance().bottomToTop())
            if (below != window)
                painter.drawPixmap(corner.topLeft(),
                                   ScaleDown::grabUnscaled(below, corner.translated(placeOf(window) - placeOf(below))));
    }
    painter.end();
    QPalette palette = window->palette();
    palette.setBrush(QPalette::Window, QBrush(behind));
    window->setPalette(palette);
}

void Canvas::followLater()
{
    if (!std::exchange(m_isFollowing, true))
        QMetaObject::invokeMethod(this, &Canvas::follow, Qt::QueuedConnection);
}

void Canvas::follow()
{
    m_isFollowing = false;
    if (followed() != m_view)
        spread();
}

// The view moved to what has the attention of the uppermost window: a box as a whole; else the focused control or its
// current row, and then the keyboard with its highlighted key.
QRect Canvas::followed() const
{
    QRect view = m_view;
    QWidget *window = WindowStack::instance().top();
    const auto place = m_places.constFind(window);
    if (place == m_places.constEnd())
        return view;
    const auto reveal = [&](const QWidget *widget, const QRect &part) {
        view = revealed(view, QRect(place->onCanvas + widget->mapTo(window, part.topLeft()), part.size()));
    };
    const QWidget *focus = QApplication::focusWidget();
    if (!focus || focus->window() != window || window->width() <= view.width())
        focus = window;
    const auto *list = qobject_cast<const QAbstractItemView *>(focus);
    const QRect row = list ? list->visualRect(list->currentIndex()) & list->viewport()->rect() : QRect();
    if (row.isEmpty())
        reveal(focus, focus->rect());
    else
        reveal(list->viewport(), row);
    for (const auto *widget : window->findChildren<QWidget *>()) {
        const QRect part = widget->property(platform::attentionProperty).toRect();
        if (part.isEmpty() || !widget->isVisible())
            continue;
        reveal(widget, widget->rect());
        reveal(widget, part);
    }
    return view;
}

void Canvas::settleLater()
{
    if (m_isSettling)
        return;
    m_isSettling = true;
    QMetaObject::invokeMethod(this, &Canvas::settle, Qt::QueuedConnection);
}

// Without a window manager a new window does not get the focus, nor does the window below when it closes; and a window
// that is shown again keeps its old place in the stacking order.
void Canvas::settle()
{
    m_isSettling = false;
    if (m_isLarger)
        follow();
    const auto windows = WindowStack::instance().bottomToTop();
    if (!windows.isEmpty())
        m_emptyTimer.stop();
    else if (m_backdrop)
        m_emptyTimer.start();
    if (hasOrder())
        for (QWidget *window : windows)
            window->raise();
    if (!windows.isEmpty() && !windows.last()->testAttribute(Qt::WA_ShowWithoutActivating) &&
        !QApplication::activePopupWidget())
        windows.last()->activateWindow();
}

// Runs while the application object is being made. A program without widgets has no canvas.
void installCanvas()
{
    auto *application = qobject_cast<QApplication *>(QCoreApplication::instance());
    if (!application)
        return;
    // Else linuxfb makes the first window as large as the screen, whatever its size and place.
    if (!qEnvironmentVariableIsSet("QT_QPA_FB_FORCE_FULLSCREEN"))
        qputenv("QT_QPA_FB_FORCE_FULLSCREEN", "0");
    static QPointer<Canvas> canvas;
    canvas = new Canvas(application);
    // The application's children are deleted after its connection to the display server; the backdrop must go before.
    qAddPostRoutine([] { delete canvas; });
}

Q_COREAPP_STARTUP_FUNCTION(installCanvas)

} // namespace viewcomponent
