// Home and the system's services: time zone and USB stick, with services of the test's on a bus of its own.
#include "homepage.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVirtualObject>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QProcess>
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

// timedated and udisks2.
class FakeSystem : public QDBusVirtualObject {
public:
    QString zone = "Europe/Berlin";
    QString stick;     // where the stick is mounted; empty: nowhere
    QString mountable; // where it will be
    bool isBusy = false;
    QString refusal; // empty: what is asked is done
    QStringList done;

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        const QString member = message.member();
        QDBusMessage reply = message.createReply();
        if (member == "Get") {
            reply << QVariant::fromValue(QDBusVariant(zone));
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
        for (const char *name : {"org.freedesktop.timedate1", "org.freedesktop.UDisks2"})
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
