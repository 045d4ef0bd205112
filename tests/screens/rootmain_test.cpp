// The program itself, on the fakes: its first screen, and the order of the steps at its end.
#include "app/velmoraparentwidget.h"
#include "fakes/devicetwin.h"
#include "fakes/fakeipc.h"
#include "fakes/fakeplayback.h"
#include "fakes/fakews.h"
#include "fakes/logcapture.h"
#include "fakes/screentest.h"
#include "service/velmorasettings.h"
#include "service/velmorawebservice.h"
#include "unit/stdoutcapture.h"

#include <QApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <csignal>
#include <functional>

int velmoraMain(int argc, char **argv); // main() of the radio

namespace {

// Runs in the event loop of the radio's application; afterwards the menu system ends the application.
std::function<void()> inTheRadio;

void scheduleActs()
{
    QTimer::singleShot(0, qApp, [] {
        if (inTheRadio)
            inTheRadio();
        FakeIpc::exitFromMenu();
    });
}

int run()
{
    char name[] = "velmora";
    char *arguments[] = {name, nullptr};
    return velmoraMain(1, arguments);
}

} // namespace

class RootMain : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { qAddPreRoutine(scheduleActs); }
    void init()
    {
        m_root = std::make_unique<QTemporaryDir>();
        DeviceTwin::setPrivateRoot(m_root->path());
        FakeWs::instance().reset();
        FakeIpc::reset();
        FakePlayback::reset();
        inTheRadio = nullptr;
        // The test keeps its own handlers of fatal signals.
        for (int i = 0; i < signalCount; ++i)
            sigaction(fatalSignals[i], nullptr, &m_kept[i]);
    }
    void cleanup()
    {
        for (int i = 0; i < signalCount; ++i)
            sigaction(fatalSignals[i], &m_kept[i], nullptr);
        delete qApp;
    }

    void theWelcomeScreenComesFirstUntilItIsDismissed()
    {
        const std::tuple<QString, QString> cases[] = {
            {QString(), "WelcomeDlg"},
            {"1", "LoadingDlg"},
            {"0", "WelcomeDlg"},
            {" 1", "WelcomeDlg"},
        };
        for (const auto &[check, screen] : cases) {
            const Row row(check);
            cleanup(); // a fresh screen for each
            init();
            if (!check.isNull())
                deviceSettings().setWelcomeCheck(check);
            QStringList shown;
            inTheRadio = [&shown] { shown = screentest::visibleWindows(); };
            QCOMPARE(run(), 0);
            QCOMPARE(shown.filter("Dlg").join(u','), screen);
        }
    }

    void theRadioIsSetUpBeforeTheFirstScreen()
    {
        inTheRadio = [] {
            QVERIFY(QCoreApplication::testAttribute(Qt::AA_Use96Dpi));
            QVERIFY(!QApplication::quitOnLastWindowClosed());
            QVERIFY(qApp->styleSheet().contains(QLatin1String("ImageListWidget::item:selected:focus")));
            QVERIFY(QMetaType::fromName("NETWORk_EVENT_T").isValid() && QMetaType::fromName("HANDLE_T").isValid());
            struct sigaction action;
            for (int signo : fatalSignals) {
                sigaction(signo, nullptr, &action);
                QVERIFY(action.sa_flags & SA_SIGINFO);
            }
            QVERIFY(DeviceTwin::shellCommands().first().startsWith(QLatin1String("mkdir ")));
            VelmoraParentWidget::recordHistroyUiType(VELMORA_UI_TYPE_MAIN);
        };
        QCOMPARE(run(), 0);
    }

    void theMenuSystemLearnsOfTheEndLast()
    {
        const LogCapture log; // not on standard output
        StdoutCapture capture;
        const int result = run();
        const QByteArray text = capture.take();
        QCOMPARE(result, 0);
        QCOMPARE(text, QByteArray("Velmora main function emit exit signal...\n\r"
                                  "Velmora main function,delete VelmoraIpc.\n\r"
                                  "Velmora main function exit ok!\n\r"));
        QCOMPARE(FakeIpc::responses, QList<int>{2});
        QCOMPARE(FakeIpc::messages.size(), 1);
        const _NETWORK_MSG_T message = FakeIpc::messages.first();
        QCOMPARE(message.type, 4u);
        QVERIFY(std::all_of(std::begin(message.data), std::end(message.data), [](char c) { return c == 0; }));
        QVERIFY(!qApp);
        QVERIFY(VelmoraParentWidget::m_ui_type_queue.isEmpty());
        QVERIFY(!FakeWs::instance().device().isInitialised);
        const QStringList commands = DeviceTwin::shellCommands();
        QVERIFY2(commands.last().startsWith("rm -rf ") && commands.last().endsWith("/tmp/velmora"),
                 qPrintable(commands.last()));
    }

    void withoutTheIpcThreadNoScreenIsShownButTheEndIsReported()
    {
        FakeIpc::isMissing = true;
        bool isLoopEntered = false;
        inTheRadio = [&isLoopEntered] { isLoopEntered = true; };
        QCOMPARE(run(), 0);
        QVERIFY(!isLoopEntered);
        QCOMPARE(FakeIpc::messages.size(), 1);
        QVERIFY(DeviceTwin::shellCommands().last().startsWith("rm -rf "));
    }

    void aServiceThatCannotStartEndsEverythingAtOnce()
    {
        FakeWs::instance().device().initResult = VLM_WS_ERR_OUT_OF_MEMORY;
        QCOMPARE(run(), 0);
        QVERIFY(FakeIpc::messages.isEmpty());
        QVERIFY(qApp);
        QCOMPARE(screentest::livingScreens(), 0);
        QCOMPARE(DeviceTwin::shellCommands().size(), 1); // the scratch directory stays
        delete VelmoraWebService::getInstance();
    }

private:
    static constexpr int signalCount = 6;
    static constexpr int fatalSignals[signalCount] = {SIGINT, SIGILL, SIGTERM, SIGFPE, SIGABRT, SIGSEGV};

    std::unique_ptr<QTemporaryDir> m_root;
    struct sigaction m_kept[signalCount];
};

QTEST_APPLESS_MAIN(RootMain)
#include "rootmain_test.moc"
