#include "wifi.h"

#include "systemcall.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QMap>
#include <QVariantMap>

#include <algorithm>

using ConnectionSettings = QMap<QString, QVariantMap>; // as NetworkManager takes a connection: a{sa{sv}}
Q_DECLARE_METATYPE(ConnectionSettings)

namespace home {

namespace {

const QString networkManager = QStringLiteral("org.freedesktop.NetworkManager");
const QString root = QStringLiteral("/org/freedesktop/NetworkManager");
constexpr char manager[] = "org.freedesktop.NetworkManager";
constexpr char device[] = "org.freedesktop.NetworkManager.Device";
constexpr char wireless[] = "org.freedesktop.NetworkManager.Device.Wireless";
constexpr char accessPoint[] = "org.freedesktop.NetworkManager.AccessPoint";
constexpr char active[] = "org.freedesktop.NetworkManager.Connection.Active";
constexpr char profile[] = "org.freedesktop.NetworkManager.Settings.Connection";

// NetworkManager's numbers.
constexpr uint wifiType = 2;
constexpr uint privacyFlag = 1;
constexpr uint isActivated = 2;
constexpr uint isDeactivating = 3;

constexpr int searchMs = 4000;
constexpr int followMs = 500;
constexpr int longestFollow = 90; // times followMs

QVariant variantIn(const QDBusMessage &reply)
{
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

QList<QDBusObjectPath> pathsIn(const QVariant &value)
{
    return qdbus_cast<QList<QDBusObjectPath>>(value);
}

} // namespace

Wifi::Wifi(const QDBusConnection &bus, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
{
    qDBusRegisterMetaType<ConnectionSettings>();
    m_again.setSingleShot(true);
    connect(&m_again, &QTimer::timeout, this, &Wifi::readNetworks);
    connect(&m_follow, &QTimer::timeout, this, &Wifi::followConnection);
}

void Wifi::call(const QString &path, const char *interface, const char *method, const QVariantList &arguments,
                const Then &then)
{
    auto message =
        QDBusMessage::createMethodCall(networkManager, path, QLatin1String(interface), QLatin1String(method));
    message.setArguments(arguments);
    callSystem(m_bus, message, this, then);
}

void Wifi::get(const QString &path, const char *interface, const char *property, const Then &then)
{
    call(path, "org.freedesktop.DBus.Properties", "Get", {QLatin1String(interface), QLatin1String(property)}, then);
}

void Wifi::look()
{
    if (!m_bus.isConnected())
        return;
    if (isThere()) {
        call(m_device.path(), wireless, "RequestScan", {QVariantMap()}, [](const QDBusMessage &) {});
        readNetworks();
        m_again.start(searchMs);
        return;
    }
    get(root, manager, "Devices", [this](const QDBusMessage &reply) { findDevice(pathsIn(variantIn(reply))); });
}

void Wifi::findDevice(const QList<QDBusObjectPath> &devices)
{
    for (const QDBusObjectPath &path : devices)
        get(path.path(), device, "DeviceType", [this, path](const QDBusMessage &reply) {
            if (isThere() || variantIn(reply).toUInt() != wifiType)
                return;
            m_device = path;
            look();
        });
}

void Wifi::readNetworks()
{
    const int round = ++m_round;
    get(m_device.path(), wireless, "ActiveAccessPoint", [this, round](const QDBusMessage &reply) {
        if (round != m_round)
            return;
        m_activeAccessPoint = variantIn(reply).value<QDBusObjectPath>().path();
        call(m_device.path(), wireless, "GetAllAccessPoints", {}, [this, round](const QDBusMessage &list) {
            if (round != m_round)
                return;
            const auto paths = pathsIn(list.arguments().value(0));
            m_found.clear();
            m_left = int(paths.size());
            for (const QDBusObjectPath &path : paths)
                readAccessPoint(path, round);
            if (paths.isEmpty()) {
                m_networks.clear();
                emit changed();
            }
        });
    });
}

void Wifi::readAccessPoint(const QDBusObjectPath &path, int round)
{
    call(path.path(), "org.freedesktop.DBus.Properties", "GetAll", {QLatin1String(accessPoint)},
         [this, path, round](const QDBusMessage &reply) {
             if (round != m_round)
                 return;
             const auto all = qdbus_cast<QVariantMap>(reply.arguments().value(0));
             Network network;
             network.name = all.value(QStringLiteral("Ssid")).toByteArray();
             network.strength = all.value(QStringLiteral("Strength")).toInt();
             network.isSecured = (all.value(QStringLiteral("Flags")).toUInt() & privacyFlag) != 0 ||
                                 all.value(QStringLiteral("WpaFlags")).toUInt() != 0 ||
                                 all.value(QStringLiteral("RsnFlags")).toUInt() != 0;
             network.isConnected = path.path() == m_activeAccessPoint;
             network.accessPoint = path;
             const auto same = std::find_if(m_found.begin(), m_found.end(),
                                            [&](const Network &other) { return other.name == network.name; });
             if (network.name.isEmpty()) {
                 // hidden
             } else if (same == m_found.end()) {
                 m_found += network;
             } else if (network.isConnected || (!same->isConnected && network.strength > same->strength)) {
                 *same = network;
             }
             if (--m_left > 0)
                 return;
             std::sort(m_found.begin(), m_found.end(), [](const Network &one, const Network &other) {
                 return std::tuple(one.isConnected, one.strength) > std::tuple(other.isConnected, other.strength);
             });
             m_networks = m_found;
             emit changed();
         });
}

void Wifi::connectTo(const Network &network, const QString &password)
{
    ConnectionSettings settings;
    settings[QStringLiteral("connection")][QStringLiteral("id")] = QString::fromUtf8(network.name);
    settings[QStringLiteral("connection")][QStringLiteral("type")] = QStringLiteral("802-11-wireless");
    settings[QStringLiteral("802-11-wireless")][QStringLiteral("ssid")] = network.name;
    // NetworkManager takes the kind of key from the access point.
    if (!password.isEmpty())
        settings[QStringLiteral("802-11-wireless-security")][QStringLiteral("psk")] = password;
    m_wanted = network.name;
    m_followed = 0;
    call(root, manager, "AddAndActivateConnection",
         {QVariant::fromValue(settings), QVariant::fromValue(m_device), QVariant::fromValue(network.accessPoint)},
         [this](const QDBusMessage &reply) {
             if (reply.type() == QDBusMessage::ErrorMessage) {
                 emit failed(reply.errorMessage());
                 return;
             }
             m_profile = reply.arguments().value(0).value<QDBusObjectPath>();
             m_active = reply.arguments().value(1).value<QDBusObjectPath>();
             m_follow.start(followMs);
         });
}

void Wifi::followConnection()
{
    get(m_active.path(), active, "State", [this](const QDBusMessage &reply) {
        if (!m_follow.isActive())
            return;
        // A connection that has failed is no longer there.
        const uint state = reply.type() == QDBusMessage::ErrorMessage ? isDeactivating : variantIn(reply).toUInt();
        if (state < isActivated && ++m_followed < longestFollow)
            return;
        m_follow.stop();
        if (state == isActivated) {
            emit connected(m_wanted);
        } else {
            call(m_profile.path(), profile, "Delete", {}, [](const QDBusMessage &) {});
            emit failed(QString());
        }
        readNetworks();
    });
}

} // namespace home
