// What follows the end of the radio: the decisions by table, and velmora-menu as a supervisor of a sample program.
#include "menu_fixture.h"

#include "fakes/row.h"
#include "outputreader.h"
#include "radiowatch.h"
#include "reports.h"
#include "supervisor.h"

#include <QDir>
#include <QFileInfo>
#include <QtTest>

#include <csignal>

using namespace menusystem;

namespace {

// A menu system that supervises the sample, with a shell script in place of velmora-home.
class Supervised {
public:
    bool start(const QStringList &options = {})
    {
        qputenv("XDG_STATE_HOME", QFile::encodeName(m_menu.path("state")));
        // It notes the page and ends with the status in "answer"; without one it shows the page until it is ended.
        write("home", "#!/bin/sh\necho $2 $3 >>${0%home}pages\nread -r status <${0%home}answer || exec sleep 100\n"
                      "rm ${0%home}answer\nexit $status\n");
        QFile::setPermissions(m_menu.path("home"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return m_menu.start(QStringList{"--supervise", "--home", m_menu.path("home"), "--insist-after", "2"} + options);
    }
    ~Supervised() { qunsetenv("XDG_STATE_HOME"); }

    MenuFixture &menu() { return m_menu; }
    void write(const QString &name, const QByteArray &text)
    {
        QFile file(m_menu.path(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
    }
    void pageAnswers(int status) { write("answer", QByteArray::number(status) + '\n'); }
    QStringList pages() { return lines(m_menu.path("pages")); }
    static QStringList lines(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts)
                                              : QStringList();
    }
    pid_t radio()
    {
        const QJsonObject status = m_menu.status();
        return status["screen"].toString() == "SampleDlg" ? status["pid"].toInt() : 0; // and takes keys
    }
    // Another radio answers.
    bool isBack(pid_t before)
    {
        pid_t now = 0;
        return QTest::qWaitFor([&] { return (now = radio()) != 0 && now != before; }, 60000);
    }
    QStringList reports() const
    {
        return QDir(m_menu.path("state/velmora/reports")).entryList(QDir::Files, QDir::Name);
    }
    QString lastReport() const
    {
        return lines(m_menu.path("state/velmora/reports/" + reports().value(reports().size() - 1))).join('\n');
    }

private:
    MenuFixture m_menu;
};

} // namespace

class SupervisorTest : public QObject {
    Q_OBJECT
private slots:
    void theEndDecidesWhatFollows()
    {
        constexpr Next radio{Next::Kind::Radio}, quit{Next::Kind::Quit};
        const auto page = [](Page shown) { return Next{Next::Kind::Page, shown}; };
        const auto pause = [](int ms) { return Next{Next::Kind::Pause, Page::Home, ms}; };
        for (const bool isKiosk : {false, true}) {
            const Row row(isKiosk ? "kiosk" : "command");
            Supervisor ends(isKiosk);
            QCOMPARE(ends.radioEnded(Ending::Wish, true, 5000, 0), isKiosk ? page(Page::Home) : quit);
            QCOMPARE(ends.radioEnded(Ending::House, true, 5000, 0), page(Page::Home));
            QCOMPARE(ends.radioEnded(Ending::NotStarted, false, 0, 0), quit);
            QCOMPARE(ends.pageEnded(Page::Home, Supervisor::startRadio, 9000), radio);
            QCOMPARE(ends.pageEnded(Page::Home, Supervisor::quit, 9000), quit);
            QCOMPARE(ends.pageEnded(Page::Home, Supervisor::restart, 9000), Next{Next::Kind::Restart});
            QCOMPARE(ends.pageEnded(Page::Home, Supervisor::switchOff, 9000), Next{Next::Kind::SwitchOff});
        }
        // Three faults in a row, each with a service that answers at once, need a person.
        Supervisor faults(false);
        const auto fault = [&](bool hasPlayed, std::int64_t waitedMs, std::int64_t ranMs = 100) {
            if (faults.radioEnded(Ending::Fault, hasPlayed, ranMs, 0) != page(Page::Waiting))
                return quit;
            return faults.pageEnded(Page::Waiting, Supervisor::startRadio, waitedMs);
        };
        QCOMPARE(fault(false, 500), radio);
        QCOMPARE(fault(false, 500), radio);
        QCOMPARE(fault(false, 500), page(Page::Again));
        QCOMPARE(faults.pageEnded(Page::Again, Supervisor::startRadio, 500), radio); // the count begins anew
        for (const auto &[hasPlayed, waitedMs, ranMs] :
             {std::tuple(true, 500, 100), std::tuple(false, 3001, 100), std::tuple(false, 500, 120000)}) {
            faults = Supervisor(false);
            QCOMPARE(fault(false, 500), radio);
            QCOMPARE(fault(false, 500), radio);
            QCOMPARE(fault(hasPlayed, waitedMs, ranMs), radio); // music, an outage, or a long run between
        }
        // Five crashes in ten minutes.
        Supervisor crashes(false);
        for (const int minute : {0, 1, 2, 3, 4})
            QCOMPARE(crashes.radioEnded(Ending::Crash, true, 60000, minute * 60000), radio);
        QCOMPARE(crashes.radioEnded(Ending::Crash, true, 60000, 599999), page(Page::Stopped));
        QCOMPARE(crashes.pageEnded(Page::Stopped, std::nullopt, 100), pause(15000));
        QCOMPARE(crashes.radioEnded(Ending::Crash, true, 60000, 660000), radio); // the first two were longer ago
        QCOMPARE(crashes.radioEnded(Ending::Crash, true, 60000, 660001), page(Page::Stopped));
        QCOMPARE(crashes.pageEnded(Page::Stopped, Supervisor::startRadio, 100), radio);
        QCOMPARE(crashes.radioEnded(Ending::Crash, true, 60000, 660002), radio); // a person wants another five
        // A page that does not work is replaced by pauses, until one works or music was heard.
        Supervisor pages(false);
        for (const int ms : {1000, 2000, 5000, 10000, 15000, 15000})
            QCOMPARE(pages.pageEnded(Page::Waiting, std::nullopt, 0), pause(ms));
        pages.radioEnded(Ending::Fault, true, 60000, 0);
        QCOMPARE(pages.pageEnded(Page::Home, 1, 0), pause(1000)); // no status that a page has
    }

    void aHangIsReportedAndALateExitIsForced()
    {
        using Action = RadioWatch::Action;
        constexpr RadioWatch::Limits alone{30000, 10000, false}, supervised{30000, 10000, true};
        RadioWatch watch(0, alone);
        const auto expect = [&watch](std::initializer_list<std::pair<int, Action>> steps) {
            for (const auto &[ms, action] : steps)
                QVERIFY2(watch.step(ms) == action, qPrintable(QString::number(ms)));
        };
        expect({{4999, Action::Nothing}, {5000, Action::Ping}, {5500, Action::Nothing}});
        watch.answered(5600);
        watch.shows(5600, RadioWatch::Box::Last); // somebody will close the box
        expect({{35500, Action::Ping}, {35600, Action::ReportHang}, {35700, Action::Nothing}}); // once
        watch.answered(36000);
        expect({{66000, Action::ReportHang}}); // and anew after an answer
        watch.ending(70000);
        watch.ending(79000); // the first call counts
        expect({{79999, Action::Nothing},
                {80000, Action::ReportStuckExit},
                {80001, Action::Terminate},
                {80500, Action::Nothing},
                {81000, Action::Terminate},
                {83999, Action::Nothing},
                {84000, Action::Kill},
                {99000, Action::Nothing}});
        watch = RadioWatch(0, alone);
        watch.ending(100);
        watch.insist(200);
        expect({{200, Action::ReportStuckExit}});
        // A supervisor ends what hangs, after a dump; what is parked has its dump already.
        watch = RadioWatch(0, supervised);
        expect({{1000, Action::Ping}, {30000, Action::ReportHang}, {30001, Action::Abort}});
        watch.answered(30100); // too late
        expect({{31000, Action::Nothing}, {31001, Action::Kill}, {31500, Action::Nothing}});
        watch = RadioWatch(0, supervised);
        watch.parked(500);
        expect({{799, Action::Nothing}, {800, Action::Kill}});
        watch = RadioWatch(0, supervised);
        watch.stopped(500);
        expect({{500, Action::ReportHang}, {1000, Action::Abort}});
        // It also ends a radio whose message nobody closes, once: soon if it is the last one.
        using Box = RadioWatch::Box;
        for (const auto &[box, limit] : {std::pair(Box::Last, 3000), std::pair(Box::Notice, 60000)}) {
            watch = RadioWatch(0, {90000, 10000, true});
            watch.shows(1000, box);
            watch.shows(2000, Box::None);
            watch.shows(3000, box);
            watch.shows(4000, box);
            watch.answered(4000); // as a command
            expect({{2999 + limit, Action::Ping}, {3000 + limit, Action::LeaveBox}, {3001 + limit, Action::Nothing}});
        }
    }

    void theCrashReporterIsHeardInAnyPieces()
    {
        const QByteArray dump = "\nInvalid memory reference\n\n\nInvalid memory reference\n\n\tpc: 0x1, addr: (nil)\n"
                                "\nPid: 77, comm:              velmora\nrax: 1\n";
        for (const int piece : {1, 7, 4096}) {
            OutputReader reader;
            reader.begin(77);
            reader.read("a song called\nAbort signal\nPid: 78, comm: of another process\n");
            QVERIFY(reader.crash().isEmpty());
            for (int at = 0; at < dump.size(); at += piece)
                reader.read(dump.mid(at, piece));
            QCOMPARE(reader.crash(), QByteArray("Invalid memory reference"));
            QVERIFY(reader.tail().endsWith(dump));
            reader.begin(78);
            reader.read("Termination signal\nPid: 78, comm: x\n"); // is only announced
            QVERIFY(reader.crash().isEmpty());
            for (int i = 0; i < 10000; ++i)
                reader.read("line " + QByteArray::number(i) + '\n');
            QVERIFY(reader.tail().startsWith("line ") && reader.tail().endsWith("line 9999\n"));
            QVERIFY(reader.tail().size() >= OutputReader::keptBytes - 20 &&
                    reader.tail().size() <= 2 * OutputReader::keptBytes);
        }
    }

    void reportsAreTheOwnersAndHaveNoSecrets()
    {
        const QTemporaryDir root;
        const QString folder = root.filePath("velmora/reports");
        QString reason;
        const QDateTime first(QDate(2026, 11, 22), QTime(12, 0));
        QFile foreign(root.filePath("kept"));
        QVERIFY(foreign.open(QIODevice::WriteOnly));
        for (int i = 0; i < 12; ++i) {
            const QString file = reports::keep(folder, first.addSecs(i), "text", &reason);
            QVERIFY2(!file.isEmpty(), qPrintable(reason));
            QCOMPARE(QFileInfo(file).permissions() & ~(QFile::ReadUser | QFile::WriteUser),
                     QFile::ReadOwner | QFile::WriteOwner);
        }
        const QStringList names = QDir(folder).entryList(QDir::Files, QDir::Name);
        QCOMPARE(names.size(), 10);
        QCOMPARE(names.first(), QStringLiteral("2026-11-22T12-00-02.000.txt"));
        QVERIFY(!(QFileInfo(folder).permissions() & (QFile::ReadGroup | QFile::ExeGroup | QFile::ExeOther)));
        QVERIFY(reports::keep(folder, first.addSecs(11), "again", &reason).isEmpty()); // nothing is overwritten
        const std::pair<const char *, const char *> masked[] = {
            {"get http://h:1/media/audio/5?expires=9&sig=Ab-_3 done", "get http://h:1/media/audio/5?*** done"},
            {"open https://ann:pw@host/", "open https://***@host/"},
            {"stationToken=\"s3cr3t\", x=1", "stationToken=***, x=1"},
            {"Authorization: Bearer abc.def", "Authorization: Bearer ***"},
            {"SignInDlg,keyReleaseEvent,event->key=41", "SignInDlg,keyReleaseEvent,event->key=***"},
            {"add userName=ann@example.org", "add userName=***"},
            {"Velmora,ret=-504,exit code 7", "Velmora,ret=-504,exit code 7"},
            {"_ZN7velmora3fooEv+0x12 [0x55]", "_ZN7velmora3fooEv+0x12 [0x55]"}};
        for (const auto &[output, expected] : masked)
            QCOMPARE(reports::withoutSecrets(output), QByteArray(expected));
    }

    void aRadioWithoutAServiceIsAskedForOneFirst()
    {
        Supervised device;
        device.menu().hasService = false;
        device.pageAnswers(0); // a person has chosen
        QVERIFY(device.start() && device.radio() != 0);
        QCOMPARE(device.pages(), QStringList("service"));
    }

    void aRadioThatCrashesOrHangsIsStartedAgainAndReported()
    {
        Supervised device;
        // An emulated radio does not answer so soon.
        QVERIFY(device.start({"--hang-after", qEnvironmentVariableIsSet("VELMORA_EMULATOR") ? "20" : "2"}));
        pid_t radio = device.radio();
        ::kill(radio, SIGSEGV); // parks itself
        QVERIFY(device.isBack(radio));
        QVERIFY2(device.lastReport().contains("crashed: Invalid memory reference") &&
                     device.lastReport().contains(QStringLiteral("Pid: %1").arg(radio)),
                 qPrintable(device.lastReport()));
        radio = device.radio();
        ::kill(radio, SIGSTOP);
        QVERIFY(device.isBack(radio));
        QVERIFY2(device.lastReport().contains("was stopped by a signal"), qPrintable(device.lastReport()));
        radio = device.radio();
        device.menu().command({"key", "yellow"}); // the GUI thread hangs, the IPC thread goes on
        QVERIFY(device.isBack(radio));
        QVERIFY2(device.lastReport().contains("did not answer") && device.lastReport().contains("Abort signal"),
                 qPrintable(device.lastReport()));
        for (int crash = 4; crash <= 6; ++crash) {
            radio = device.radio();
            ::kill(radio, SIGKILL);
            if (crash < 6)
                QVERIFY(device.isBack(radio));
        }
        QTRY_COMPARE(device.pages(), QStringList("stopped")); // too many
        QCOMPARE(device.reports().size(), 6);
        QCOMPARE(device.menu().command({"exit"}).code, 0); // also from a page
        QCOMPARE(device.menu().waitForEnd(), 128 + SIGKILL);
        QVERIFY(!QFile::exists(device.menu().socket()));
    }

    void aFaultWaitsForTheServiceAndAPersonsEndEndsEverything()
    {
        Supervised device;
        QVERIFY(device.start());
        const std::pair<const char *, const char *> ways[] = {
            {"blue", "waiting"}, {"red", "waiting"}, {"home", "home"}}; // red: nobody closes its last box
        QStringList pages;
        for (const auto &[key, page] : ways) {
            const Row row(key);
            const pid_t radio = device.radio();
            device.pageAnswers(Supervisor::startRadio);
            QCOMPARE(device.menu().command({"key", key}).code, 0);
            QVERIFY(device.isBack(radio));
            QCOMPARE(device.pages(), pages += page);
        }
        QVERIFY(device.reports().isEmpty());
        QCOMPARE(device.menu().command({"key", "play"}).code, 0);
        QCOMPARE(device.menu().waitForEnd(), 0);
        QCOMPARE(device.pages(), pages);

        Supervised kiosk; // nothing is behind the radio
        QVERIFY(kiosk.start({"--kiosk"}));
        QCOMPARE(kiosk.menu().command({"key", "play"}).code, 0);
        QTRY_COMPARE(kiosk.pages(), QStringList("home --kiosk"));
        QCOMPARE(kiosk.menu().command({"exit"}).code, 0);
        QCOMPARE(kiosk.menu().waitForEnd(), 0);

        Supervised samples; // on a page the house key is the page's own
        QVERIFY(samples.start({"--home", MENU_SAMPLE}));
        const pid_t before = samples.radio();
        QCOMPARE(samples.menu().command({"key", "home"}).code, 0);
        QVERIFY(samples.isBack(before));
        const pid_t page = samples.radio();
        QCOMPARE(samples.menu().command({"key", "home", "up"}).code, 0);
        QCOMPARE(samples.menu().command({"key", "down"}).code, 0);
        QCOMPARE(samples.menu().output().count("exit 1"), 1);
        QCOMPARE(samples.radio(), page);

        Supervised withoutPages; // plain waiting, then the radio
        QVERIFY(withoutPages.start({"--home", "/nonexistent"}));
        const pid_t radio = withoutPages.radio();
        QCOMPARE(withoutPages.menu().command({"key", "blue"}).code, 0);
        QTRY_VERIFY(withoutPages.menu().errors().contains("the radio starts again in "));
        QVERIFY(withoutPages.isBack(radio));
        ::kill(pid_t(withoutPages.menu().process().processId()), SIGTERM);
        QCOMPARE(withoutPages.menu().waitForEnd(), 0);
    }
};

QTEST_GUILESS_MAIN(SupervisorTest)
#include "supervisor_test.moc"
