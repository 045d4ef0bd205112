#include "machine.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace home {

Machine::Machine(QObject *parent)
    : QObject(parent)
{
}

void Machine::ask()
{
    if (!QDBusConnection::systemBus().isConnected())
        return;
    ask("CanReboot", &m_mayRestart);
    ask("CanPowerOff", &m_maySwitchOff);
}

void Machine::ask(const char *method, bool *permission)
{
    const auto call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QLatin1String(method));
    auto *watcher = new QDBusPendingCallWatcher(QDBusConnection::systemBus().asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, permission] {
        const QDBusPendingReply<QString> reply = *watcher;
        watcher->deleteLater();
        *permission = reply.isValid() && reply.value() == QLatin1String("yes");
        if (++m_answers == 2)
            emit known();
    });
}

} // namespace home
