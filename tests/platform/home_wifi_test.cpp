// The Wi-Fi of Home against a NetworkManager that is played on a private bus.
#include "networkpane.h"
#include "wifi.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServer>
#include <QDBusVirtualObject>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using home::Wifi;
using ConnectionSettings = QMap<QString, QVariantMap>;

class FakeNetworkManager : public QDBusVirtualObject {
public:
    struct Point {
        QByteArray name;
        uint strength;
        uint flags;
    };
    QList<Point> points;
    uint state = 1; // of the connection that is being made: 1 activating, 2 activated, 4 deactivated
    bool isRefused = false;
    ConnectionSettings asked;
    int connections = 0; // that were asked for
    QStringList paths;   // device and access point that were asked for
    bool isProfileDeleted = false;

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        const QString path = message.path();
        const QString member = message.member();
        QDBusMessage reply = message.createReply();
        if (member == "Get") {
            reply << QVariant::fromValue(QDBusVariant(property(path, message.arguments().value(1).toString())));
        } else if (member == "GetAllAccessPoints") {
            QList<QDBusObjectPath> all;
            for (int i = 0; i < points.size(); ++i)
                all += QDBusObjectPath(QStringLiteral("/point/%1").arg(i));
            reply << QVariant::fromValue(all);
        } else if (member == "GetAll") {
            const Point &point = points[path.section('/', 2).toInt()];
            reply << QVariantMap{
                {"Ssid", point.name}, {"Strength", QVariant::fromValue(uchar(point.strength))}, {"Flags", point.flags}};
        } else if (member == "AddAndActivateConnection" && isRefused) {
            reply = message.createErrorReply(QDBusError::InvalidArgs, "no such key");
        } else if (member == "AddAndActivateConnection") {
            ++connections;
            asked = qdbus_cast<ConnectionSettings>(message.arguments().value(0));
            paths = {message.arguments().value(1).value<QDBusObjectPath>().path(),
                     message.arguments().value(2).value<QDBusObjectPath>().path()};
            reply << QVariant::fromValue(QDBusObjectPath("/profile"))
                  << QVariant::fromValue(QDBusObjectPath("/active"));
        } else if (member == "Delete") {
            isProfileDeleted = path == "/profile";
        }
        return connection.send(reply);
    }

private:
    QVariant property(const QString &path, const QString &name) const
    {
        if (name == "Devices")
            return QVariant::fromValue(QList{QDBusObjectPath("/cable"), QDBusObjectPath("/wifi")});
        if (name == "DeviceType")
            return path == "/wifi" ? 2u : 1u;
        if (name == "ActiveAccessPoint")
            return QVariant::fromValue(QDBusObjectPath("/point/3"));
        return state; // State
    }
};

class HomeWifiTest : public QObject {
    Q_OBJECT
    std::unique_ptr<FakeNetworkManager> m_manager;
    std::unique_ptr<QDBusServer> m_server;
    std::unique_ptr<Wifi> m_wifi;

private slots:
    void init()
    {
        m_manager = std::make_unique<FakeNetworkManager>();
        m_server = std::make_unique<QDBusServer>();
        connect(m_server.get(), &QDBusServer::newConnection, this, [this](QDBusConnection connection) {
            connection.registerVirtualObject("/", m_manager.get(), QDBusConnection::SubPath);
        });
        m_wifi = std::make_unique<Wifi>(QDBusConnection::connectToPeer(m_server->address(), "peer"), nullptr);
        m_manager->points = {{"far", 20, 1},  {"near", 40, 1}, {"", 99, 1},
                             {"ours", 50, 1}, {"near", 80, 1}, {"caf\xc3\xa9", 60, 0}};
        m_wifi->look();
        QTRY_COMPARE(m_wifi->networks().size(), 4);
    }
    void cleanup()
    {
        m_wifi.reset();
        QDBusConnection::disconnectFromPeer("peer");
        m_server.reset();
    }

    void networksComeOnceEachTheConnectedAndTheStrongestFirst()
    {
        QByteArrayList names;
        for (const auto &network : m_wifi->networks())
            names += network.name + ' ' + QByteArray::number(network.strength) + (network.isSecured ? "" : " open") +
                     (network.isConnected ? " connected" : "");
        QCOMPARE(names, (QByteArrayList{"ours 50 connected", "near 80", "caf\xc3\xa9 60 open", "far 20"}));
    }

    void aPasswordOfSevenLettersIsNotSent()
    {
        const QTemporaryDir folder;
        const platform::DeviceSettingsWatch settings(folder.filePath("device.conf"));
        home::NetworkPane pane(&settings, QDBusConnection("peer"), nullptr);
        std::function<void(const QString &)> answer;
        connect(&pane, &home::Pane::asks, this,
                [&](const home::TextQuestion &question) { answer = question.answered; });
        pane.open();
        const auto choose = [&pane] {
            for (const home::PaneRow &row : pane.rows())
                if (row.text == "near")
                    row.choose();
        };
        QTRY_VERIFY((choose(), answer));
        answer("1234567");
        QVERIFY2(pane.text().contains("at least 8 "), qPrintable(pane.text()));
        answer("12345678"); // in the order of the calls
        QTRY_COMPARE(m_manager->asked["802-11-wireless-security"]["psk"].toString(), "12345678");
        QCOMPARE(m_manager->connections, 1);
    }

    void aConnectionIsMadeWithThePasswordOrItsProfileIsRemoved()
    {
        QSignalSpy connected(m_wifi.get(), &Wifi::connected);
        QSignalSpy failed(m_wifi.get(), &Wifi::failed);
        m_wifi->connectTo(m_wifi->networks()[1], "letters and 8");
        QTRY_COMPARE(m_manager->paths, (QStringList{"/wifi", "/point/4"}));
        QCOMPARE(m_manager->asked["802-11-wireless"]["ssid"].toByteArray(), "near");
        QCOMPARE(m_manager->asked["802-11-wireless-security"]["psk"].toString(), "letters and 8");
        QVERIFY(connected.isEmpty());
        m_manager->state = 2;
        QTRY_COMPARE(connected.size(), 1);
        QVERIFY(!m_manager->isProfileDeleted);

        m_wifi->connectTo(m_wifi->networks()[2], {}); // an open one
        QTRY_COMPARE(m_manager->paths, (QStringList{"/wifi", "/point/5"}));
        QVERIFY(!m_manager->asked.contains("802-11-wireless-security"));
        m_manager->state = 4;
        QTRY_COMPARE(failed.size(), 1);
        QTRY_VERIFY(m_manager->isProfileDeleted);

        m_manager->isRefused = true;
        m_wifi->connectTo(m_wifi->networks()[1], "12345678");
        QTRY_COMPARE(failed.size(), 2);
        QCOMPARE(failed[1][0].toString(), "no such key");
    }
};

QTEST_GUILESS_MAIN(HomeWifiTest)
#include "home_wifi_test.moc"
