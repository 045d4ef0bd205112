#include "machine.h"

#include "systemcall.h"

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
    callSystem(QDBusConnection::systemBus(), call, this, [this, permission](const QDBusMessage &reply) {
        *permission =
            reply.type() == QDBusMessage::ReplyMessage && reply.arguments().value(0).toString() == QLatin1String("yes");
        if (++m_answers == 2)
            emit known();
    });
}

} // namespace home
