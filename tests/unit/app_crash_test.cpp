#include "app/registerdump_arm.h"
#include "fakes/row.h"
#include "unit/stdoutcapture.h"

#include <QtTest>

#include <csignal>

#include <unistd.h>

namespace {

constexpr int reportMs = 20'000;

struct ArmContext {
    unsigned long arm_r0, arm_r1, arm_r2, arm_r3, arm_r4, arm_r5, arm_r6, arm_r7, arm_r8, arm_r9, arm_r10, arm_fp,
        arm_ip, arm_sp, arm_lr, arm_pc, arm_cpsr;
};

// A child that crashes itself; killed with this object.
class CrashChild {
public:
    explicit CrashChild(const char *deed)
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QStringLiteral(CRASH_CHILD), {QString::fromLatin1(deed)});
    }
    ~CrashChild()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    // The output up to the `times`-th appearance of `marker`; shorter when the time is up.
    QByteArray outputUntil(const QByteArray &marker, int times)
    {
        QDeadlineTimer deadline(reportMs);
        while (m_output.count(marker) < times && !deadline.hasExpired()) {
            if (!m_process.waitForReadyRead(100) && m_process.state() == QProcess::NotRunning)
                break;
            m_output += m_process.readAllStandardOutput();
        }
        while (m_process.waitForReadyRead(200)) // the rest of the report, and anything that should not be there
            m_output += m_process.readAllStandardOutput();
        return m_output;
    }
    bool isRunning() { return !m_process.waitForFinished(300) && m_process.state() == QProcess::Running; }
    QProcess m_process;

private:
    QByteArray m_output;
};

const QByteArray defaultHandler = "Using default signal handler.\n";

} // namespace

class AppCrash : public QObject {
    Q_OBJECT
private slots:
    void theArmDumpIsByteForByte()
    {
        const ArmContext context = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 0xdeadbeef, 0x60000010};
        StdoutCapture capture;
        registerdump_arm::print(context);
        std::fflush(stdout);
        const QByteArray text = capture.take();
        QCOMPARE(text, QByteArray("pc : [<deadbeef>]    lr : [<0000000e>]    psr: 60000010\n"
                                  "sp : 0000000d  ip : 0000000c  fp : 0000000b\n"
                                  "r10: 0000000a  r9 : 00000009  r8 : 00000008\n"
                                  "r7 : 00000007  r6 : 00000006  r5 : 00000005  r4 : 00000004\n"
                                  "r3 : 00000003  r2 : 00000002  r1 : 00000001  r0 : 00000000\n"));
        QCOMPARE(registerdump_arm::pc(context), reinterpret_cast<void *>(0xdeadbeefUL));
    }

    // begins the line after the banners
    void aFatalSignalIsReportedAndTheProcessStays()
    {
        struct Case {
            QByteArray deed, words, place;
            bool hasBacktrace;
            int defaultHandlers;
        };
        const Case cases[] = {{"null", "Invalid memory reference", "addr: (nil)\n", false, 2},
                              {"illegal", "Illegal Instruction", "inst: 0x", true, 2},
                              {"division", "Floating point exception", "inst: 0x", true, 1},
                              {"abort", "Abort signal", {}, true, 0}};
        for (const auto &[deed, words, place, hasBacktrace, defaultHandlers] : cases) {
            const Row row(deed);
            CrashChild child(deed.constData());
            const QByteArray text = defaultHandlers > 0 ? child.outputUntil(defaultHandler, defaultHandlers)
                                                        : child.outputUntil("backtrace:", 1);
            QVERIFY(text.startsWith("installed 0\n"));
            const QByteArray banner = "\n" + words + "\n\n";
            QVERIFY2(text.contains("installed 0\n" + banner + banner), text.constData());
            QCOMPARE(text.count(banner), 2);
            QCOMPARE(text.count("\tpc: 0x"), place.isEmpty() ? 0 : 2);
            QVERIFY(place.isEmpty() || text.count(place) == 2);
            const QByteArray who = "\nPid: " + QByteArray::number(child.m_process.processId()) +
                                   ", comm: " + QByteArray(10, ' ') + "crashchild\n";
            QCOMPARE(text.count(who), 1);
            QCOMPARE(text.count("backtrace:\n"), hasBacktrace ? 1 : 0);
            QCOMPARE(text.count(defaultHandler), defaultHandlers);
            QVERIFY(!hasBacktrace || text.mid(text.indexOf("backtrace:\n")).count('\n') > 2);
#if defined(__x86_64__)
            QCOMPARE(text.count("rip: [<"), 1);
            QVERIFY(deed != "illegal" || text.contains("0b0f\n")); // ud2, read back from the faulting address
#elif defined(__arm__)
            QCOMPARE(text.count("pc : [<"), 1);
            QCOMPARE(text.count("r7 : "), 1);
#endif
            QVERIFY2(child.isRunning(), "the process is parked, not gone");
        }
    }

    void anInterruptIsAnnouncedOnceThenActsAsBefore()
    {
        const std::pair<int, QByteArray> cases[] = {{SIGINT, "Interrupt from keyboard"},
                                                    {SIGTERM, "Termination signal"}};
        for (const auto &[signo, words] : cases) {
            const Row row(words);
            CrashChild child("wait");
            QVERIFY(child.outputUntil("installed 0\n", 1).contains("installed"));
            const auto pid = static_cast<pid_t>(child.m_process.processId());
            QCOMPARE(kill(pid, signo), 0);
            const QByteArray banner = "\n" + words + "\n\n";
            QCOMPARE(child.outputUntil(defaultHandler, 2),
                     "installed 0\n" + banner + banner + defaultHandler + defaultHandler);
            QVERIFY2(child.isRunning(), "the first one is announced only");
            QCOMPARE(kill(pid, signo), 0);
            QVERIFY(child.m_process.waitForFinished(reportMs));
            QCOMPARE(child.m_process.exitStatus(), QProcess::CrashExit);
        }
    }
};

QTEST_GUILESS_MAIN(AppCrash)
#include "app_crash_test.moc"
