#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariantList>

#include <functional>

namespace home {

// A call to one of the system's services that nobody waits for. `then` gets the reply, also an error, unless `owner` is
// gone. It has a minute: a service may start first, and a stick may be slow.
void callSystem(const QDBusConnection &bus, const QDBusMessage &message, QObject *owner,
                const std::function<void(const QDBusMessage &)> &then);

} // namespace home
