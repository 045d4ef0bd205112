// Home and the system's services: time zone, USB stick and the services of the house, with services of the test's on a
// bus of its own.
#include "homepage.h"
#include "radioprocess.h"
#include "rowlook.h"
#include "server/http/owncertificate.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVirtualObject>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QProcess>
#include <QSignalSpy>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QStandardPaths>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <sys/prctl.h>

using Interfaces = QMap<QString, QVariantMap>;
using Objects = QMap<QDBusObjectPath, Interfaces>;
Q_DECLARE_METATYPE(Interfaces)
Q_DECLARE_METATYPE(Objects)

// Answers as a service does that is well, with its own certificate.
class HouseService : public QSslServer {
public:
    explicit HouseService(const velmora::server::http::OwnCertificate &own)
    {
        QFile key(QString::fromStdString(own.key.string()));
        QVERIFY(key.open(QIODevice::ReadOnly));
        QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
        tls.setLocalCertificateChain(QSslCertificate::fromPath(QString::fromStdString(own.chain.string())));
        tls.setPrivateKey(QSslKey(&key, QSsl::Ec));
        setSslConfiguration(tls);
        connect(this, &QTcpServer::pendingConnectionAvailable, this, [this] {
            QTcpSocket *socket = nextPendingConnection();
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QTcpSocket::readyRead, socket, [socket] {
                const QByteArray body = R"({"code":0,"data":{"status":"ready"}})";
                if (socket->readAll().startsWith("GET /health "))
                    socket->write("HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" +
                                  body);
            });
        });
        QVERIFY(listen(QHostAddress::Any)); // IPv4 and IPv6
    }
};

// timedated, udisks2 and Avahi.
class FakeSystem : public QDBusVirtualObject {
public:
    QString zone = "Europe/Berlin";
    QString stick;     // where the stick is mounted; empty: nowhere
    QString mountable; // where it will be
    bool isBusy = false;
    QString refusal; // empty: what is asked is done
    QStringList done;
    struct Announced {
        QString name, address;
        int port;
    };
    QList<Announced> announced;
    QStringList freed;

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        const QString member = message.member();
        QDBusMessage reply = message.createReply();
        if (member == "Get") {
            reply << QVariant::fromValue(QDBusVariant(zone));
        } else if (member == "ServiceBrowserNew") {
            reply << QVariant::fromValue(QDBusObjectPath("/browser"));
            for (const Announced &one : announced) { // also before the answer
                auto item = QDBusMessage::createTargetedSignal(message.service(), "/browser",
                                                               "org.freedesktop.Avahi.ServiceBrowser", "ItemNew");
                item << 2 << protocolOf(one) << one.name << QStringLiteral("_velmora._tcp") << QStringLiteral("local")
                     << 0u;
                connection.send(item);
            }
        } else if (member == "ResolveService") {
            const QVariantList asked = message.arguments();
            for (const Announced &one : announced)
                if (one.name == asked.value(2) && protocolOf(one) == asked.value(5))
                    reply << asked.value(0) << asked.value(1) << one.name << asked.value(3) << asked.value(4)
                          << QStringLiteral("no.such.host") << 0 << one.address << QVariant::fromValue(ushort(one.port))
                          << QVariant::fromValue(QList<QByteArray>{"tls=1"}) << 0u;
        } else if (member == "Free") {
            freed += message.path();
        } else if (member == "GetManagedObjects") {
            reply << QVariant::fromValue(objects());
        } else if (!refusal.isEmpty() || (isBusy && member == "Unmount")) {
            reply = message.createErrorReply(QDBusError::AccessDenied, refusal);
        } else if (member == "SetTimezone") {
            zone = message.arguments().value(0).toString();
        } else if (member == "Mount") {
            done += "mount " + message.path();
            reply << (stick = mountable);
        } else if (member == "Unmount") {
            done += "unmount with " + QString::number(QDir(stick).count() - 2); // without . and ..
            stick.clear();
        }
        return connection.send(reply);
    }

private:
    static int protocolOf(const Announced &one) { return one.address.contains(':') ? 1 : 0; }
    Objects objects() const
    {
        const auto driveAt = [](const char *bus) {
            return Interfaces{{"org.freedesktop.UDisks2.Drive", {{"ConnectionBus", QString(bus)}}}};
        };
        const auto volume = [](const char *drive, const QString &place, const QString &hint, bool isReadOnly = false) {
            QList<QByteArray> places;
            if (!place.isEmpty())
                places += place.toUtf8() + '\0';
            return Interfaces{
                {"org.freedesktop.UDisks2.Block",
                 {{"Drive", QVariant::fromValue(QDBusObjectPath(drive))}, {"ReadOnly", isReadOnly}, {hint, true}}},
                {"org.freedesktop.UDisks2.Filesystem", {{"MountPoints", QVariant::fromValue(places)}}}};
        };
        return {{QDBusObjectPath("/disk"), driveAt("")},
                {QDBusObjectPath("/usb"), driveAt("usb")},
                {QDBusObjectPath("/a1"), volume("/disk", {}, "HintAuto")},
                {QDBusObjectPath("/b1"), volume("/usb", "/", "HintAuto")}, // this system began from a stick
                {QDBusObjectPath("/b2"), volume("/usb", {}, "HintIgnore")},
                {QDBusObjectPath("/b3"), volume("/usb", {}, "HintSystem")},
                {QDBusObjectPath("/b4"), volume("/usb", {}, "HintAuto", true)},
                {QDBusObjectPath("/c1"), volume("/usb", stick, "HintAuto")}};
    }
};

class HomeSystemTest : public QObject {
    Q_OBJECT
    QProcess m_bus;
    QTemporaryDir m_folder;
    FakeSystem m_system;
    std::unique_ptr<home::HomePage> m_page;

    static void keys(std::initializer_list<int> all)
    {
        for (const int key : all)
            for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
                QKeyEvent event(type, key, Qt::NoModifier);
                QCoreApplication::sendEvent(QApplication::focusWidget(), &event);
            }
    }
    QListWidget *list(const char *name) { return m_page->findChild<QListWidget *>(name); }
    QString text() { return m_page->findChild<QLabel *>("paneText")->text(); }
    // The row of the list that has the focus.
    QString row()
    {
        auto *list = qobject_cast<QListWidget *>(QApplication::focusWidget());
        return list && list->currentItem() ? list->currentItem()->text() : QString();
    }
    bool goTo(const QString &wanted)
    {
        auto *list = qobject_cast<QListWidget *>(QApplication::focusWidget());
        for (int tries = 0; list && tries < list->count() && row() != wanted; ++tries)
            keys({tries == 0 ? Qt::Key_Home : Qt::Key_Down});
        return row() == wanted;
    }
    static void startServices()
    {
        for (const char *name : {"org.freedesktop.timedate1", "org.freedesktop.UDisks2", "org.freedesktop.Avahi"})
            QDBusConnection("system").registerService(name);
    }
    QString zoneRow() { return list("paneList")->item(0)->data(Qt::AccessibleTextRole).toString(); }

private slots:
    void initTestCase()
    {
        if (QStandardPaths::findExecutable("dbus-daemon").isEmpty())
            QSKIP("dbus-daemon is not installed");
        m_bus.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
        m_bus.start("dbus-daemon", {"--session", "--nofork", "--print-address=1"});
        QVERIFY(m_bus.waitForReadyRead());
        const QByteArray address = m_bus.readAllStandardOutput().trimmed();
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", address); // nothing has used it yet
        qputenv("VELMORA_DEVICE_CONF", m_folder.filePath("device.conf").toLocal8Bit());
        qputenv("XDG_STATE_HOME", m_folder.path().toLocal8Bit());
        qDBusRegisterMetaType<Interfaces>();
        qDBusRegisterMetaType<Objects>();
        qDBusRegisterMetaType<QList<QByteArray>>();
        auto bus = QDBusConnection::connectToBus(QString::fromLatin1(address), "system");
        QVERIFY(bus.registerVirtualObject("/", &m_system, QDBusConnection::SubPath));
    }
    void init()
    {
        m_page = std::make_unique<home::HomePage>(false);
        m_page->show();
        QVERIFY(QTest::qWaitForWindowActive(m_page.get()));
        QVERIFY(!goTo("Quit")); // there is nothing behind it
    }
    void cleanup() { m_page.reset(); }
    void cleanupTestCase()
    {
        m_bus.terminate();
        m_bus.waitForFinished();
    }

    void withoutServicesHomeSaysWhatIsMissing()
    {
        QVERIFY(goTo("Language and region"));
        QTRY_VERIFY(text().contains("The time zone is that of the system."));
        keys({Qt::Key_Right, Qt::Key_Home, Qt::Key_Select});
        QCOMPARE(row(), "Time zone"); // no list behind it
        keys({Qt::Key_Left});
        for (const QStorageInfo &volume : QStorageInfo::mountedVolumes())
            if (!volume.isReadOnly() &&
                (volume.rootPath().contains("/media/") || volume.rootPath().startsWith("/mnt/")))
                QSKIP("a stick of this machine would be written to");
        QVERIFY(goTo("About"));
        keys({Qt::Key_Right, Qt::Key_Select});
        QTRY_VERIFY2(text().contains("udisks2"), qPrintable(text()));
    }

    void theTimeZoneIsChosenByAreaAndPlace()
    {
        startServices();
        QVERIFY(goTo("Language and region"));
        QTRY_COMPARE(zoneRow(), "Time zone Berlin");
        keys({Qt::Key_Right, Qt::Key_Home, Qt::Key_Select});
        QCOMPARE(row(), "Europe");
        keys({Qt::Key_Select});
        QCOMPARE(row(), "Berlin");
        keys({Qt::Key_Back});
        QVERIFY(goTo("America"));
        keys({Qt::Key_Select});
        QVERIFY(goTo("Argentina, Buenos Aires"));
        keys({Qt::Key_Select});
        QTRY_COMPARE(m_system.zone, "America/Argentina/Buenos_Aires");
        QTRY_COMPARE(zoneRow(), "Time zone Argentina, Buenos Aires");
        QCOMPARE(row(), "Time zone");
        m_system.refusal = "not allowed";
        keys({Qt::Key_Select});
        QVERIFY(goTo("UTC"));
        keys({Qt::Key_Select});
        QTRY_VERIFY2(text().contains("not allowed"), qPrintable(text()));
        QCOMPARE(zoneRow(), "Time zone Argentina, Buenos Aires");
        m_system.refusal.clear();
    }

    void aServiceOfTheHouseIsUsedWhenAPersonHasSaidYes()
    {
        const auto setting = [](const char *key) { return platform::DeviceSettings().value(key).toString(); };
        const auto own = velmora::server::http::ownCertificate((m_folder.path() + "/tls").toStdString(), {"localhost"},
                                                               {"127.0.0.1", "::1"});
        const HouseService service(own);
        m_system.announced = {{"Kitchen <b>\u202E", "::1", service.serverPort()},
                              {"Kitchen <b>\u202E", "127.0.0.1", service.serverPort()}, // takes its place
                              {"Outside", "203.0.113.9", 7480},
                              {"Nobody", "127.0.0.1", 1}};
        startServices();
        qputenv("VELMORA_WS_CONF", "/nonexistent/ws.conf");
        m_page = std::make_unique<home::HomePage>(false, true); // the first start
        QSignalSpy finished(m_page.get(), &home::Page::finished);
        m_page->show();
        QVERIFY(QTest::qWaitForWindowActive(m_page.get()));
        QTRY_VERIFY2(text().startsWith("No service is set up"), qPrintable(text()));
        QTRY_VERIFY(goTo("Kitchen <b>"));
        QVERIFY(!goTo("Outside"));
        QVERIFY(goTo("Nobody"));
        keys({Qt::Key_Select});
        QTRY_COMPARE(text(), "The service does not answer.");
        QVERIFY(goTo("Kitchen <b>"));
        for (const char *answer : {"Do not use it", "Use this service"}) {
            keys({Qt::Key_Select});
            QTRY_VERIFY2(text().startsWith("Compare the fingerprint"), qPrintable(text()));
            QString shown;
            for (const int row : {2, 3, 4, 5})
                shown += list("paneList")->item(row)->data(home::RowLook::ValueRole).toString();
            QCOMPARE(shown.remove(':').remove(QChar(0x200E)), QString::fromStdString(own.fingerprint).remove(':'));
            QCOMPARE(setting("service/address"), QString());
            QVERIFY(finished.isEmpty() && goTo(answer));
            if (answer[0] == 'D') {
                keys({Qt::Key_Select});
                QCOMPARE(row(), "Kitchen <b>");
            }
        }
        keys({Qt::Key_Select});
        QCOMPARE(finished.size(), 1);
        QCOMPARE(setting("service/address"), QStringLiteral("https://127.0.0.1:%1").arg(service.serverPort()));
        QFile trusted(setting("service/authority")), authority(QString::fromStdString(own.authority.string()));
        QVERIFY(trusted.open(QIODevice::ReadOnly) && authority.open(QIODevice::ReadOnly));
        QCOMPARE(trusted.readAll().trimmed(), authority.readAll().trimmed());
        QTRY_COMPARE(text(), "The service answers."); // as the radio trusts it
        // What stands in the settings is for this address alone, and the menu system passes both on.
        QProcessEnvironment passed;
        menusystem::addDeviceSettings(passed);
        QCOMPARE(passed.value("VELMORA_WS_CA_FILE"), trusted.fileName());
        QVERIFY(goTo("Use the one of this device"));
        keys({Qt::Key_Select});
        QCOMPARE(setting("service/authority") + setting("service/address"), QString());
        // The same question for an address that was typed.
        const bool hasIpv6 = QTcpServer().listen(QHostAddress::LocalHostIPv6);
        const QString typed = QStringLiteral("https://%1:%2")
                                  .arg(hasIpv6 ? QStringLiteral("[::1]") : QStringLiteral("127.0.0.1"))
                                  .arg(service.serverPort());
        for (const char *answer : {"Do not use it", "Use this service"}) {
            QVERIFY(goTo("Use another one"));
            keys({Qt::Key_Select});
            QTest::keyClicks(QApplication::focusWidget(), typed);
            keys({Qt::Key_Select}); // typing has moved to Done
            QTRY_VERIFY2(text().startsWith("Compare the fingerprint"), qPrintable(text()));
            QCOMPARE(setting("service/address"), QString());
            QVERIFY(goTo(answer));
            keys({Qt::Key_Select});
        }
        QCOMPARE(setting("service/address"), typed);
        QTRY_COMPARE(text(), "The service answers.");
        keys({Qt::Key_Left, Qt::Key_Down});
        QTRY_VERIFY(m_system.freed.contains("/browser"));
    }

    void aStickIsMountedForAReportAndLetGo()
    {
        startServices();
        QVERIFY(QDir(m_folder.path()).mkdir("stick"));
        m_system.mountable = m_folder.filePath("stick");
        QVERIFY(goTo("About"));
        keys({Qt::Key_Right, Qt::Key_Select, Qt::Key_Select}); // twice: once is enough
        QTRY_VERIFY2(text().endsWith("The stick can be taken out."), qPrintable(text()));
        QCOMPARE(m_system.done, (QStringList{"mount /c1", "unmount with 1"}));
        m_system.isBusy = true;
        keys({Qt::Key_Select});
        QTRY_VERIFY2(text().startsWith("The report is saved") && !text().contains("taken out"), qPrintable(text()));
        m_system.refusal = "the stick is damaged";
        m_system.stick.clear();
        keys({Qt::Key_Select});
        QTRY_VERIFY2(text().contains("the stick is damaged"), qPrintable(text()));
        m_system.stick = "/media/of-nobody"; // somebody else's mount is not undone
        m_system.done.clear();
        keys({Qt::Key_Select});
        QTRY_VERIFY2(text().contains("The report cannot be saved"), qPrintable(text()));
        QVERIFY(m_system.done.isEmpty());
    }
};

QTEST_MAIN(HomeSystemTest)
#include "home_system_test.moc"
