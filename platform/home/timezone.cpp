#include "timezone.h"

#include "systemcall.h"

#include <QDBusVariant>
#include <QTimeZone>

namespace home {

namespace {

const QString service = QStringLiteral("org.freedesktop.timedate1");
const QString path = QStringLiteral("/org/freedesktop/timedate1");

} // namespace

TimeZone::TimeZone(const QDBusConnection &bus, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
    , m_name(QString::fromLatin1(QTimeZone::systemTimeZoneId()))
{
}

void TimeZone::ask()
{
    auto message = QDBusMessage::createMethodCall(service, path, QStringLiteral("org.freedesktop.DBus.Properties"),
                                                  QStringLiteral("Get"));
    message << service << QStringLiteral("Timezone");
    callSystem(m_bus, message, this, [this](const QDBusMessage &reply) {
        m_isThere = reply.type() == QDBusMessage::ReplyMessage;
        if (m_isThere)
            m_name = reply.arguments().value(0).value<QDBusVariant>().variant().toString();
        if (m_name == QLatin1String("Etc/UTC"))
            m_name = QStringLiteral("UTC");
        emit changed();
    });
}

void TimeZone::set(const QString &name)
{
    auto message = QDBusMessage::createMethodCall(service, path, service, QStringLiteral("SetTimezone"));
    message << name << false; // nobody is asked for a password
    callSystem(m_bus, message, this, [this, name](const QDBusMessage &reply) {
        if (reply.type() == QDBusMessage::ErrorMessage) {
            emit failed(reply.errorMessage());
            return;
        }
        m_name = name;
        emit changed();
    });
}

QStringList TimeZone::all()
{
    QStringList zones{QStringLiteral("UTC")};
    for (const QByteArray &id : QTimeZone::availableTimeZoneIds()) {
        const QString zone = QString::fromLatin1(id);
        for (const char *area : {"Africa", "America", "Antarctica", "Arctic", "Asia", "Atlantic", "Australia", "Europe",
                                 "Indian", "Pacific"})
            if (areaOf(zone) == QLatin1String(area) && zone.contains(u'/'))
                zones += zone;
    }
    zones.sort();
    return zones;
}

QString TimeZone::areaOf(const QString &name)
{
    return name.section(u'/', 0, 0);
}

QString TimeZone::placeOf(const QString &name)
{
    return name.section(u'/', 1).replace(QStringLiteral("/"), QStringLiteral(", ")).replace(u'_', u' ');
}

} // namespace home
