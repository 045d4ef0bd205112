#include "keygate.h"

#include <QKeyEvent>

namespace netcommon {

KeyGate::KeyGate(QObject *application, Handler handler)
    : QObject(application)
    , m_handler(std::move(handler))
{
    application->installEventFilter(this);
}

bool KeyGate::eventFilter(QObject *watched, QEvent *event)
{
    if (!watched->isWindowType())
        return false;
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        return take(*static_cast<QKeyEvent *>(event), event->type() == QEvent::KeyPress);
    case QEvent::MouseButtonPress:
        return m_handler(0, false);
    default:
        return false;
    }
}

bool KeyGate::take(const QKeyEvent &event, bool isPress)
{
    if (isPress) {
        // A key that was taken and is held stays taken.
        const bool isHeld = event.isAutoRepeat() && event.key() == m_takenKey;
        const bool isTaken = m_handler(event.key(), event.isAutoRepeat()) || isHeld;
        if (isTaken)
            m_takenKey = event.key();
        else if (event.key() == m_takenKey)
            m_takenKey = 0;
        return isTaken;
    }
    if (event.key() != m_takenKey)
        return false;
    if (!event.isAutoRepeat())
        m_takenKey = 0;
    return true;
}

} // namespace netcommon
