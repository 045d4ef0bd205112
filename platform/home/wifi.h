#pragma once

#include <QByteArray>
#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QList>
#include <QObject>
#include <QTimer>

#include <functional>

class QDBusMessage;
class QDBusVariant;

namespace home {

// The Wi-Fi of this device as NetworkManager knows it. Without NetworkManager, or without a card, nothing is found.
// Every call is asynchronous. GUI thread.
class Wifi : public QObject {
    Q_OBJECT
public:
    struct Network {
        QByteArray name;  // SSID
        int strength = 0; // percent
        bool isSecured = false;
        bool isConnected = false;
        QDBusObjectPath accessPoint; // the strongest of that name
    };
    Wifi(const QDBusConnection &bus, QObject *parent);

    // Asks for a new search; changed() follows, and again when the search has found more.
    void look();
    bool isThere() const { return !m_device.path().isEmpty(); }
    // Connected first, then the strongest first.
    QList<Network> networks() const { return m_networks; }

    // Connects, with the password when it has one. connected() or failed() follows. What NetworkManager has stored for
    // a connection that failed is removed.
    void connectTo(const Network &network, const QString &password);

signals:
    void changed();
    void connected(const QByteArray &name);
    void failed(const QString &why);

private:
    using Then = std::function<void(const QDBusMessage &)>;
    // `then` gets the reply, also an error.
    void call(const QString &path, const char *interface, const char *method, const QVariantList &arguments,
              const Then &then);
    void get(const QString &path, const char *interface, const char *property, const Then &then);
    void findDevice(const QList<QDBusObjectPath> &devices);
    void readNetworks();
    void readAccessPoint(const QDBusObjectPath &path, int round);
    void followConnection();

    QDBusConnection m_bus;
    QDBusObjectPath m_device;
    QString m_activeAccessPoint;
    QList<Network> m_networks;
    QList<Network> m_found; // of the round under way
    int m_round = 0;
    int m_left = 0; // access points of the round that have not answered
    QTimer m_again; // looks again while a search runs
    // --- a connection that is being made
    QByteArray m_wanted;
    QDBusObjectPath m_profile; // new in NetworkManager
    QDBusObjectPath m_active;
    QTimer m_follow;
    int m_followed = 0;
};

} // namespace home
