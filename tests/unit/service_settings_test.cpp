#include "fakes/devicetwin.h"
#include "fakes/killpoint.h"
#include "fakes/logcapture.h"
#include "fakes/row.h"
#include "service/devicepaths.h"
#include "service/velmorasettings.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

#include <csignal>
#include <sys/resource.h>

class ServiceSettingsTest : public QObject {
    Q_OBJECT
    std::unique_ptr<QTemporaryDir> m_root;
    QString m_file;

    std::unique_ptr<VelmoraSettings> open()
    {
        return std::make_unique<VelmoraSettings>(m_file, QSettings::IniFormat, nullptr);
    }
    QVariant raw(const char *key) { return QSettings(m_file, QSettings::IniFormat).value(QLatin1String(key)); }
    bool holds(const char *key) { return QSettings(m_file, QSettings::IniFormat).contains(QLatin1String(key)); }
    void write(const QByteArray &content)
    {
        QFile file(m_file);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    QStringList beside() { return QFileInfo(m_file).dir().entryList({"*.damaged-*"}, QDir::AllEntries); }
    QStringList names() { return open()->getAllUserName(); }

private slots:
    void init()
    {
        m_root = std::make_unique<QTemporaryDir>();
        DeviceTwin::setPrivateRoot(m_root->path());
        m_file = device::settingsFile();
    }

    void aNewFileHasFiveUnusedSlotsAndBelongsToItsOwnerOnly()
    {
        open();
        QCOMPARE(raw("Slot/size").toInt(), 5);
        for (int i = 1; i <= 5; ++i)
            QCOMPARE(raw(qPrintable(QStringLiteral("Slot/%1/slotValue").arg(i))).toString(), QStringLiteral("0"));
        QCOMPARE(QFileInfo(m_file).permissions() & ~(QFile::ReadUser | QFile::WriteUser),
                 QFile::ReadOwner | QFile::WriteOwner);
        QVERIFY(names().isEmpty());
    }

    void aFileThatOthersCanReadIsMadePrivate()
    {
        write("[Welcome]\nisCheck=1\n");
        QFile::setPermissions(m_file, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
        open()->setLoginState("1");
        QCOMPARE(QFileInfo(m_file).permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
        QCOMPARE(raw("Welcome/isCheck").toString(), QStringLiteral("1"));
    }

    void singleRecordsAreGroupsOfSizeZero()
    {
        open()->setWelcomeCheck("1");
        open()->setLoginState("2");
        open()->setDeviceAccount("dev");
        open()->setLastLogin("ann", "3");
        const std::pair<const char *, const char *> stored[] = {{"Welcome/size", "0"},
                                                                {"LoginState/size", "0"},
                                                                {"deviceaccount/size", "0"},
                                                                {"LastLogin/size", "0"},
                                                                {"Welcome/isCheck", "1"},
                                                                {"LoginState/stateValue", "2"},
                                                                {"deviceaccount/username", "dev"},
                                                                {"LastLogin/userName", "ann"},
                                                                {"LastLogin/password", "3"}};
        for (const auto &[key, value] : stored)
            QVERIFY2(raw(key).toString() == QLatin1String(value), key);
        const auto settings = open();
        QCOMPARE(settings->getWelcomeCheck(), QStringLiteral("1"));
        QCOMPARE(settings->getLoginState(), QStringLiteral("2"));
        QCOMPARE(settings->getDeviceAccount(), QStringLiteral("dev"));
        QCOMPARE(settings->getLastLogin().password, QStringLiteral("3"));
        QCOMPARE(settings->getLastLoginName(), QStringLiteral("ann"));
    }

    void theLastSlotNeverReadsBackWhatWasSet()
    {
        open()->setLastSlot("3");
        QCOMPARE(open()->getLastSlot(), QString());
        QCOMPARE(raw("LastSlot/1/slotValue").toString(), QStringLiteral("3"));
        QCOMPARE(raw("LastSlot/size").toInt(), 1);
        write("[LastSlot]\nslotValue=2\n");
        QCOMPARE(open()->getLastSlot(), QStringLiteral("2"));
    }

    void theFreeSlotIsTheFirstThatNoAccountUses()
    {
        const std::pair<QStringList, QString> cases[] = {
            {{}, "0"},
            {{"0", "1", "3"}, "2"},
            {{"3", "0", "2", "1"}, "4"},
            {{"0", "1", "1", "3", "4"}, "9"}, // five with a slot to spare
            {{"secret", "9"}, "0"},           // real passwords use none
        };
        for (const auto &[slotsInUse, free] : cases) {
            const Row row(slotsInUse.join(u','));
            init(); // afresh
            const auto settings = open();
            for (int i = 0; i < slotsInUse.size(); ++i)
                settings->addAccount(QStringLiteral("user%1").arg(i), slotsInUse.at(i));
            QCOMPARE(settings->getFreeSlot(), free);
        }
    }

    void accountsAreReadBackInFileOrder()
    {
        open()->addAccount("zoe@example.org", "0");
        open()->addAccount("ann, the \"first\"; @x", "1");
        open()->addAccount(QString::fromUtf8("j\xc3\xbcrgen "), "2");
        const QStringList expected{"zoe@example.org", "ann, the \"first\"; @x", QString::fromUtf8("j\xc3\xbcrgen ")};
        QCOMPARE(names(), expected);
        QCOMPARE(open()->getPassword(expected.at(1)), QStringLiteral("1"));
        QCOMPARE(open()->getPassword("ANN"), QString());
        QCOMPARE(raw("Account/size").toInt(), 3);
        QVERIFY(holds("Account/2/laststation"));
    }

    void anExistingNameChangesNothing()
    {
        open()->addAccount("ann", "1");
        open()->setStationInfo("ann", "s1");
        open()->addAccount("ann", "4");
        QCOMPARE(open()->getAllPassword(), QStringList("1"));
        QCOMPARE(raw("Account/1/laststation").toString(), QStringLiteral("s1"));
        open()->addAccount("Ann", "4"); // case counts
        QCOMPARE(names().size(), 2);
    }

    void deletingAnAccountDropsTheOthersLastStations()
    {
        for (const char *name : {"a", "b", "c"})
            open()->addAccount(QString::fromLatin1(name), "1");
        open()->setStationInfo("c", "s9");
        open()->deleteAccount("unknown");
        QVERIFY(holds("Account/3/laststation"));
        open()->deleteAccount("b");
        QCOMPARE(names(), QStringList({"a", "c"}));
        QCOMPARE(raw("Account/size").toInt(), 2);
        for (const char *key : {"Account/1/laststation", "Account/2/laststation", "Account/3/userName"})
            QVERIFY2(!holds(key), key);
    }

    void theStationOfTheLastLoginIsRemembered()
    {
        open()->addAccount("ann", "0");
        open()->addAccount("bob", "1");
        open()->setStationInfo("bob", "s2");
        open()->setStationInfo("nobody", "s3");
        open()->setLastLogin("bob");
        QCOMPARE(open()->getStationInfo(), QStringLiteral("s2"));
        QCOMPARE(open()->getLastLogin().password, QStringLiteral("1"));
        open()->setLastLogin("ann");
        QCOMPARE(open()->getStationInfo(), QString());
        open()->setLastLogin("nobody");
        QCOMPARE(open()->getStationInfo(), QString());
        QCOMPARE(open()->getLastLogin().password, QString());
    }

    void aDamagedFileIsKeptAsideAndReplacedByAnEmptyOne()
    {
        const QByteArray cases[] = {
            QByteArray("[Account]\n1\\userName=a\n\0\0\0\0", 28),      // NUL bytes
            QByteArray("\x7f\x45LF not settings\nneither this\n"),     // no ini at all
            QByteArray("[Account]\nsize=1\n1\\userName=ann\n[LastLo"), // a group cut off
        };
        for (const auto &content : cases) {
            init(); // afresh
            write(content);
            LogCapture log;
            QVERIFY(names().isEmpty());
            QCOMPARE(beside().size(), 1);
            QVERIFY(log.contains(beside().first()));
            QFile kept(QFileInfo(m_file).dir().filePath(beside().first()));
            QVERIFY(kept.open(QIODevice::ReadOnly));
            QCOMPARE(kept.readAll(), content);
            open()->addAccount("ann", "0");
            QCOMPARE(names(), QStringList("ann"));
            QCOMPARE(beside().size(), 1);
        }
    }

    void aDamagedSizeCountsOnlyWhatTheFileHolds()
    {
        for (const char *size : {"3000", "99999999999", "-1", "many", "1"}) {
            const Row row(QString::fromLatin1(size));
            init(); // afresh
            write(QByteArray("[Account]\nsize=%\n1\\userName=ann\n1\\password=2\n[Slot]\nsize=%\n"
                             "[LastLogin]\nsize=%\nuserName=ann\n[LastSlot]\nsize=%\n")
                      .replace("%", size));
            LogCapture log;
            QCOMPARE(names(), QStringList("ann"));
            QVERIFY(log.contains("VelmoraSettings,new.size=1.."));
            QCOMPARE(raw("Slot/size").toInt(), 5); // it held none
            QCOMPARE(open()->getLastLoginName(), QStringLiteral("ann"));
            QVERIFY(beside().isEmpty());
        }
    }

    void aUsedSlotLeavesTheOthers()
    {
        open()->markSlotUsed(1);
        QCOMPARE(raw("Slot/size").toInt(), 5);
        QStringList values;
        for (int i = 1; i <= 5; ++i)
            values += raw(qPrintable(QStringLiteral("Slot/%1/slotValue").arg(i))).toString();
        QCOMPARE(values, QStringList({"0", "1", "0", "0", "0"}));
    }

    void aFileThatCannotBeOpenedIsLeftAlone()
    {
        open()->addAccount("ann", "0");
        LogCapture log;
        struct rlimit old {};
        QCOMPARE(getrlimit(RLIMIT_NOFILE, &old), 0);
        const struct rlimit none {
            0, old.rlim_max
        };
        QCOMPARE(setrlimit(RLIMIT_NOFILE, &none), 0);
        auto settings = open();
        setrlimit(RLIMIT_NOFILE, &old);
        settings->addAccount("bob", "1"); // the file is writable again, but its content was not read
        settings.reset();
        QVERIFY(log.contains("cannot be opened"));
        QVERIFY(beside().isEmpty());
        QCOMPARE(names(), QStringList("ann"));
    }

    void aFolderInThePlaceOfTheFileIsMovedAside()
    {
        LogCapture silent;
        QVERIFY(QDir().mkpath(m_file + QStringLiteral("/inside")));
        open()->addAccount("ann", "0");
        QCOMPARE(names(), QStringList("ann"));
        QCOMPARE(beside().size(), 1);
    }

    void unusualButValidFilesAreNotTreatedAsDamaged()
    {
        for (const QByteArray content : {"", "[deviceaccount]\nusername=J\xfcrgen\nsize=0\n", // Latin-1
                                         "; note\n[Other]\nkey=1\n", "[Welcome]\r\nisCheck=1\r\n"}) {
            const Row row(QString::fromLatin1(content));
            init(); // afresh
            write(content);
            open();
            QVERIFY(beside().isEmpty());
        }
    }

    void aFullDiskLosesNoAccount()
    {
        open()->addAccount("ann", "0");
        QFile file(m_file);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray before = file.readAll();
        file.close();
        {
            LogCapture silent;
            const auto settings = open();
            struct rlimit old {};
            QCOMPARE(getrlimit(RLIMIT_FSIZE, &old), 0);
            const struct rlimit tight {
                16, old.rlim_max
            };
            const auto handler = std::signal(SIGXFSZ, SIG_IGN);
            QCOMPARE(setrlimit(RLIMIT_FSIZE, &tight), 0);
            settings->addAccount("bob", "1");
            settings->sync();
            const QSettings::Status status = settings->status();
            setrlimit(RLIMIT_FSIZE, &old);
            std::signal(SIGXFSZ, handler);
            QCOMPARE(status, QSettings::AccessError);
            QVERIFY(file.open(QIODevice::ReadOnly));
            QCOMPARE(file.readAll(), before);
        }
        QCOMPARE(names().first(), QStringLiteral("ann"));
    }

    // The means is ptrace. A machine without it (an emulator) says so itself.
    void aKillAtAnyWriteLeavesTheOldSettingsOrTheNewOnes()
    {
        if (qEnvironmentVariableIsSet("VELMORA_EMULATOR"))
            QSKIP("the emulator traces no system calls");
        if (qEnvironmentVariableIsSet("VELMORA_NO_PTRACE"))
            QSKIP("VELMORA_NO_PTRACE: no process is traced here");
        using killpoint::Child;
        LogCapture silent;
        open()->addAccount("ann", "0");
        open()->setStationInfo("ann", "s1");
        QFile file(m_file);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray old = file.readAll();
        const auto change = [this] { open()->addAccount("bob", "1"); };
        QMap<qsizetype, int> seen; // number of accounts -> times
        Child child = Child::Killed;
        for (int number = 0; child == Child::Killed; ++number) {
            const Row row(QStringLiteral("call %1").arg(number));
            write(old);
            QDir folder(QFileInfo(m_file).dir());
            for (const QString &left : folder.entryList({"velmora_5.ini.*"})) // every child picks the same random names
                folder.remove(left);
            child = killpoint::killedAt(number, change);
            QVERIFY2(child != Child::NotTraced, "this machine lets no process be traced");
            QVERIFY(child != Child::Crashed);
            ++seen[names().size()];
            QVERIFY2(folder.entryList({"*.lock*"}).isEmpty(), "the next write would wait for a lock that nobody holds");
            QCOMPARE(names(), (QStringList{"ann", "bob"}.mid(0, names().size())));
            QCOMPARE(raw("Account/1/laststation").toString(), QStringLiteral("s1"));
            QCOMPARE(raw("Slot/size").toInt(), 5);
            QVERIFY(beside().isEmpty());
        }
        QVERIFY2(seen.size() == 2 && seen[1] >= 5 && seen[2] >= 1, qPrintable(QString::number(seen[1])));
    }

    void noPasswordIsLogged()
    {
        LogCapture log;
        {
            const auto settings = open();
            settings->addAccount("ann", "s3cret-word");
            settings->setLastLogin("ann");
            settings->getLastLogin();
            settings->getPassword("ann");
            settings->getAllPassword();
        }
        QVERIFY(!log.lines().isEmpty() && !log.contains("s3cret-word"));
    }
};

QTEST_GUILESS_MAIN(ServiceSettingsTest)
#include "service_settings_test.moc"
