#include "systemcall.h"

#include <QDBusPendingCallWatcher>

namespace home {

namespace {

constexpr int longestMs = 60000;

} // namespace

void callSystem(const QDBusConnection &bus, const QDBusMessage &message, QObject *owner,
                const std::function<void(const QDBusMessage &)> &then)
{
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(message, longestMs), owner);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, owner, [watcher, then] {
        watcher->deleteLater();
        then(watcher->reply());
    });
}

} // namespace home
