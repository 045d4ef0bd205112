#include "remotekeys.h"

#include "menulink.h"
#include "plainrepeat.h"
#include "platform/netcommon/comfort/comfort.h"
#include "platform/netcommon/comfort/language.h"
#include "platform/shared/windowstack.h"
#include "remoteinput.h"
#include "remotekeytable.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QWindow>

namespace netcommon {

namespace {

// A key that already has the remote's code.
class FinalKeyEvent : public QKeyEvent {
public:
    using QKeyEvent::QKeyEvent;
};

// With this property a widget that is not a line edit declares that it, or a field inside it, takes typed text.
constexpr char textEntryProperty[] = "velmoraTextEntry";

bool isTextEntry()
{
    const QWidget *widget = QApplication::focusWidget();
    if (const auto *field = qobject_cast<const QLineEdit *>(widget))
        return !field->isReadOnly();
    for (; widget; widget = widget->isWindow() ? nullptr : widget->parentWidget())
        if (widget->property(textEntryProperty).toBool())
            return true;
    return false;
}

// The window that gets a key. It needs no focus from the display server: the menu system's keys work without it.
QWindow *keyWindow()
{
    if (const QWidget *popup = QApplication::activePopupWidget())
        return popup->windowHandle();
    if (const QWidget *box = QApplication::activeModalWidget(); box && box->isVisible())
        return box->windowHandle();
    const auto *active = QApplication::activeWindow();
    const auto *top = platform::WindowStack::instance().top();
    if (active && active->isVisible())
        return active->windowHandle();
    return top ? top->windowHandle() : nullptr;
}

// An X server reports a held key by releases that carry the time of the next press, which may not have arrived yet. It
// can leave out those releases for this program alone.
void reportHeldKeysPlainly()
{
#if QT_CONFIG(xcb)
    // The offscreen platform has the interface, too, but no connection behind it.
    if (auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>(); x11 && x11->connection())
        netcommonLeaveOutRepeatedReleases(x11->connection());
#endif
}

// The house key belongs to the menu system, whatever the screens do with it.
void reportHouseKey(const QKeyEvent &key)
{
    const Comfort *const comfort = Comfort::instance();
    const bool isForScreens = !comfort || !comfort->hidesScreens();
    if (isForScreens && key.type() == QEvent::KeyPress && key.key() == Qt::Key_TopMenu && !key.isAutoRepeat())
        MenuLink::shared()->send(menu::makeMessage(menu::MessageType::HouseKey));
}

} // namespace

RemoteKeys::RemoteKeys(QObject *application)
    : QObject(application)
{
    platform::WindowStack::instance(); // created now, so that it sees every window
    application->installEventFilter(this);
    QMetaObject::invokeMethod(this, &RemoteKeys::listenToRemotes, Qt::QueuedConnection);
}

bool RemoteKeys::press(int key, bool isTyped)
{
    QWindow *window = keyWindow();
    if (!window)
        return false;
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QCoreApplication::postEvent(window, isTyped ? new QKeyEvent(type, key, Qt::NoModifier)
                                                    : new FinalKeyEvent(type, key, Qt::NoModifier));
    }
    return true;
}

bool RemoteKeys::type(const QString &text)
{
    QWindow *window = keyWindow();
    if (!window)
        return false;
    for (const QChar character : text) {
        const int key = character.toUpper().unicode();
        const auto modifiers = character.isUpper() ? Qt::ShiftModifier : Qt::NoModifier;
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease})
            QCoreApplication::postEvent(window, new QKeyEvent(type, key, modifiers, QString(character)));
    }
    return true;
}

void RemoteKeys::deliver(int key, bool isPress, bool isAutoRepeat)
{
    QWindow *window = keyWindow();
    if (!window)
        return;
    const bool isDigit = key >= Qt::Key_0 && key <= Qt::Key_9;
    QCoreApplication::postEvent(window,
                                new QKeyEvent(isPress ? QEvent::KeyPress : QEvent::KeyRelease, key, Qt::NoModifier,
                                              isDigit ? QString(QChar(key)) : QString(), isAutoRepeat));
}

// A window on a desktop leaves them to the desktop; without a display there is nobody to press a key.
void RemoteKeys::listenToRemotes()
{
    const QString platform = QGuiApplication::platformName();
    if (platform == QLatin1String("offscreen") || platform == QLatin1String("minimal") ||
        qEnvironmentVariableIntValue("VELMORA_WINDOWED") == 1)
        return;
    connect(new RemoteInput(this), &RemoteInput::stroke, this, &RemoteKeys::deliver);
}

bool RemoteKeys::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ApplicationStateChange)
        m_held.forget();
    const bool isPress = event->type() == QEvent::KeyPress;
    if ((!isPress && event->type() != QEvent::KeyRelease) || !watched->isWindowType())
        return false;
    const auto *key = static_cast<QKeyEvent *>(event);
    if (dynamic_cast<FinalKeyEvent *>(event)) {
        reportHouseKey(*key);
        return false;
    }
    if (!m_hasBegun) {
        m_hasBegun = true;
        reportHeldKeysPlainly();
    }
    const keys::Stroke stroke{key->key(), key->modifiers(), key->text(), key->isAutoRepeat(), key->timestamp()};
    const auto deliveries = isPress ? m_held.pressed(stroke, isTextEntry()) : m_held.released(stroke, isTextEntry());
    if (deliveries.size() == 1 &&
        deliveries.front() == keys::HeldKeys::Delivery{isPress, stroke.key, stroke.isAutoRepeat}) {
        reportHouseKey(*key);
        return false; // unchanged
    }
    const QPointer<QObject> receiver(watched);
    for (const auto &delivery : deliveries) {
        // A translated key carries neither text nor modifiers.
        const bool isSame = delivery.key == stroke.key;
        FinalKeyEvent translated(delivery.isPress ? QEvent::KeyPress : QEvent::KeyRelease, delivery.key,
                                 isSame ? stroke.modifiers : Qt::NoModifier, key->nativeScanCode(),
                                 key->nativeVirtualKey(), key->nativeModifiers(), isSame ? stroke.text : QString(),
                                 delivery.isAutoRepeat);
        translated.setTimestamp(stroke.timestamp);
        if (receiver)
            QCoreApplication::sendEvent(receiver, &translated);
    }
    return true;
}

// Runs while the application object is being made. A program without widgets has no keys.
void installRemoteKeys()
{
    if (auto *application = qobject_cast<QApplication *>(QCoreApplication::instance())) {
        Language::install(application);
        Comfort::install(application);
        new RemoteKeys(application);
    }
}

Q_COREAPP_STARTUP_FUNCTION(installRemoteKeys)

} // namespace netcommon
