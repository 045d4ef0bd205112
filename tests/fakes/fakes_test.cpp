#include "fakes/devicetwin.h"
#include "fakes/fakedownload.h"
#include "fakes/fakeipc.h"
#include "fakes/fakekeyboard.h"
#include "fakes/fakenetwork.h"
#include "fakes/fakeplayback.h"
#include "fakes/fakews.h"
#include "fakes/screentest.h"
#include "netcommon/httpdownload.h"
#include "netcommon/ipc.h"
#include "netcommon/ipcthread.h"
#include "netcommon/networknotify.h"
#include "netcommon/playback.h"
#include "netcommon/playbackthread.h"
#include "service/devicepaths.h"
#include "virtualkb/qtvirtualkbdlg.h"

#include <QDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

// A box as the message box looks to a test.
class MsgboxDlg : public QDialog {
    Q_OBJECT
public:
    explicit MsgboxDlg(const QString &text, bool isQuestion)
    {
        auto *ok = new QPushButton(QStringLiteral("OK"), this);
        ok->setObjectName(QStringLiteral("okBtn"));
        auto *cancel = new QPushButton(QStringLiteral("Cancel"), this);
        cancel->setObjectName(QStringLiteral("cancelBtn"));
        cancel->setVisible(isQuestion);
        (new QLabel(text, this))->setObjectName(QStringLiteral("contentLabel"));
        (new QLabel(this))->setObjectName(QStringLiteral("infoIconLabel"));
        connect(ok, &QPushButton::clicked, this, &QDialog::accept);
        connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    }
};

namespace {

void ignore(HANDLE_T, VLM_WS_EXT_ERRCODE_T, VOID *)
{
}

} // namespace

// That the stand-ins keep the contracts which the tests of the radio rely on.
class FakesTest : public QObject {
    Q_OBJECT
    QStringList m_reports;

    void watchPlayback(QObject *context)
    {
        using netcommon::Playback;
        Playback *playback = Playback::getInstance();
        m_reports.clear();
        connect(playback, &Playback::signalPlayURLOK, context, [this] { m_reports.append(QStringLiteral("url")); });
        connect(playback, &Playback::signalPlayResult, context,
                [this](int ret) { m_reports.append(QStringLiteral("result %1").arg(ret)); });
        connect(playback, &Playback::signalPlayOk, context, [this] { m_reports.append(QStringLiteral("play")); });
        connect(playback, &Playback::signalPauseOk, context, [this] { m_reports.append(QStringLiteral("pause")); });
        connect(playback, &Playback::signalStopOk, context, [this] { m_reports.append(QStringLiteral("stop")); });
        connect(playback, &Playback::signalNotifyTotalTime, context, [this](int h, int m, int s) {
            m_reports.append(QStringLiteral("total %1:%2:%3").arg(h).arg(m).arg(s));
        });
        connect(playback, &Playback::signalGetFileEOF, context, [this] { m_reports.append(QStringLiteral("eof")); });
        connect(playback, &Playback::signalGotoPlayNextSong, context,
                [this] { m_reports.append(QStringLiteral("next")); });
    }

private slots:
    void init()
    {
        FakePlayback::reset();
        FakeIpc::reset();
        FakeDownload::reset();
        FakeWs::instance().reset();
    }

    void theWebServicesBooksNameEveryLostAndEveryDoubleHandle()
    {
        FakeWs &ws = FakeWs::instance();
        ws.reset(FakeWs::Delivery::OnDemand);
        ws.autoReply(VLM_WS_MSGID_SLEEP_SONG, VLM_WS_ERR_OK);
        HANDLE_T handle = 0;
        QCOMPARE(velmora_ws_sleepSong("t", ignore, nullptr, &handle), VLM_WS_ERR_OK);
        QVERIFY(ws.leftovers().isEmpty()); // not completed yet
        QCOMPARE(ws.deliver(), 1);
        QVERIFY(ws.leftovers().contains(QStringLiteral("command 35")));
        velmora_ws_release_handle(handle);
        QVERIFY(ws.leftovers().isEmpty());
        velmora_ws_release_handle(handle);
        velmora_ws_release_handle(0);
        velmora_ws_release_handle(4711);
        QCOMPARE(ws.doubleReleases(), 1);
        QCOMPARE(ws.zeroReleases(), 1);
        QCOMPARE(ws.unknownReleases(), 1);
    }

    void aRequestWithoutCallbackReleasesItself()
    {
        FakeWs &ws = FakeWs::instance();
        ws.reset(FakeWs::Delivery::OnDemand);
        ws.autoReply(VLM_WS_MSGID_SLEEP_SONG, VLM_WS_ERR_OK);
        HANDLE_T handle = 0;
        velmora_ws_sleepSong("t", nullptr, nullptr, &handle);
        ws.deliver();
        QVERIFY(!ws.isLive(handle));
        QVERIFY(ws.leftovers().isEmpty());
    }

    void nothingIsDeliveredAfterUninit()
    {
        FakeWs &ws = FakeWs::instance();
        ws.reset(FakeWs::Delivery::OnDemand);
        ws.autoReply(VLM_WS_MSGID_SLEEP_SONG, VLM_WS_ERR_OK);
        velmora_ws_sleepSong("t", ignore, nullptr, nullptr);
        velmora_ws_uninit();
        QCOMPARE(ws.deliver(), 0);
        HANDLE_T handle = 99;
        QCOMPARE(velmora_ws_sleepSong("t", ignore, nullptr, &handle), VLM_WS_ERR_NOT_INITIALISED);
        QCOMPARE(handle, HANDLE_T(99)); // left untouched
    }

    void anAddressIsReportedInTheContractsOrder()
    {
        QObject context;
        watchPlayback(&context);
        netcommon::PlaybackThread thread;
        FakePlayback::setAutoPlay(3725);
        char url[] = "http://127.0.0.1/a";
        thread.setType(PLAYBACK_TYPE_START);
        thread.setAudioUrl(url);
        QTRY_COMPARE(m_reports.size(), 4);
        QCOMPARE(netcommon::Playback::getInstance()->getPbcState(), int(PLAYBACK_STATE_PLAYING));
        thread.setType(PLAYBACK_TYPE_PAUSE);
        thread.setType(PLAYBACK_TYPE_PAUSE); // reported once
        QTRY_VERIFY(m_reports.contains(QStringLiteral("pause")));
        thread.setType(PLAYBACK_TYPE_RESUME);
        QTRY_COMPARE(m_reports.count(QStringLiteral("play")), 2);
        FakePlayback::finished();
        const QStringList expected{QStringLiteral("url"),         QStringLiteral("result 0"), QStringLiteral("play"),
                                   QStringLiteral("total 1:2:5"), QStringLiteral("pause"),    QStringLiteral("play"),
                                   QStringLiteral("eof"),         QStringLiteral("next")};
        QCOMPARE(m_reports, expected);
        QCOMPARE(FakePlayback::urls(), QList<QByteArray>({url}));
        QVERIFY(FakePlayback::violations().isEmpty());
    }

    void aReplacedAddressReportsNothing()
    {
        QObject context;
        watchPlayback(&context);
        netcommon::PlaybackThread thread;
        FakePlayback::setAutoPlay(10);
        char url[] = "http://127.0.0.1/a";
        thread.setType(PLAYBACK_TYPE_START);
        thread.setAudioUrl(url);
        thread.setType(PLAYBACK_TYPE_STOP);
        QTRY_COMPARE(m_reports, QStringList(QStringLiteral("stop")));
        thread.setAudioUrl(url); // not armed
        QCOMPARE(FakePlayback::violations().size(), 1);
    }

    void thePlaybackThreadEndsWhenItIsTold()
    {
        netcommon::PlaybackThread thread;
        thread.start();
        QVERIFY(thread.isRunning());
        thread.setType(PLAYBACK_TYPE_END);
        QVERIFY(thread.wait(5000));
    }

    void anExitIsGrantedOnlyWhenTheScriptSaysSo()
    {
        QSignalSpy spy(netcommon::IpcThread::getInstance(), &netcommon::IpcThread::signalExit);
        QVERIFY(netcommon::Ipc::requestExit(true));
        QCoreApplication::processEvents();
        QCOMPARE(spy.count(), 0);
        FakeIpc::setGranting(true);
        QVERIFY(netcommon::Ipc::requestExit(false));
        QTRY_COMPARE(spy.count(), 1);
        QCOMPARE(spy.first(), QVariantList({true, false}));
        QCOMPARE(FakeIpc::exitRequests(), QList<bool>({true, false}));
        FakeIpc::setRequestResult(false);
        QVERIFY(!netcommon::Ipc::requestExit(false));
    }

    void theIpcThreadEndsAfterTheAnswerToAnExit()
    {
        netcommon::IpcThread *thread = netcommon::IpcThread::getInstance();
        thread->start();
        QTRY_VERIFY(thread->isStarted());
        thread->responseParent(1);
        thread->responseParent(2);
        QVERIFY(thread->wait(5000));
        QCOMPARE(FakeIpc::responses(), QList<int>({1, 2}));
        delete thread;
    }

    void networkAndDownloadsAreDrivenByTheTest()
    {
        QList<NETWORk_EVENT_T> events;
        QObject context;
        connect(netcommon::NetworkNotify::getInstance(), &netcommon::NetworkNotify::signalSendNetowrkEvent, &context,
                [&events](NETWORk_EVENT_T event) { events.append(event); });
        FakeNetwork::lost();
        FakeNetwork::back();
        QCOMPARE(events, QList<NETWORk_EVENT_T>({NETWORK_EVENT_DISCONNECTED, NETWORK_EVENT_CONNECTED}));

        QVERIFY(!FakeDownload::result(0, QString()));
        netcommon::HttpDownload download;
        QSignalSpy spy(&download, &netcommon::HttpDownload::signalDownloadResult);
        char url[] = "http://127.0.0.1/p.png";
        download.resquestDownload(url);
        QVERIFY(FakeDownload::result(0, QStringLiteral("/p.png")));
        QCOMPARE(spy.first(), QVariantList({0, QStringLiteral("/p.png")}));
        QCOMPARE(FakeDownload::urls(), QList<QByteArray>({url}));
    }

    void theKeyboardTypesOverThePromptAndConfirms()
    {
        QWidget dialog;
        QLineEdit field(&dialog);
        field.setObjectName(QStringLiteral("searchEdit"));
        field.setText(QStringLiteral("Artist Or Track"));
        QtVirtualKbDlg keyboard(&dialog);
        keyboard.enableLineEdit(&field, true);
        QSignalSpy firstKey(&keyboard, &QtVirtualKbDlg::signalFirstKey);
        QSignalSpy restored(&keyboard, &QtVirtualKbDlg::signalRestoreInitState);
        QSignalSpy sent(&keyboard, &QtVirtualKbDlg::signalSendContext);
        FakeKeyboard::confirm();
        FakeKeyboard::type(QStringLiteral("tide"));
        FakeKeyboard::confirm();
        QCOMPARE(field.text(), QStringLiteral("tide"));
        QCOMPARE(firstKey.count(), 1);
        QCOMPARE(sent.at(0).first().toString(), QString());
        QCOMPARE(sent.at(1).first().toString(), QStringLiteral("tide"));
        FakeKeyboard::clear();
        QCOMPARE(restored.count(), 1);
        QVERIFY(FakeKeyboard::isPrompt());
        QCOMPARE(FakeKeyboard::operations(), QStringList(QStringLiteral("enableLineEdit searchEdit prompt")));
    }

    void theDevicesTwinStaysUnderItsRootAndRunsNothing()
    {
        QTemporaryDir root;
        DeviceTwin::setPrivateRoot(root.path());
        QVERIFY(device::settingsFile().startsWith(root.path()));
        QVERIFY(device::loginFile().startsWith(root.path()));
        QCOMPARE(device::makeScratchDir(), 0);
        const QFileInfo scratch(device::scratchDir());
        QVERIFY(scratch.isDir());
        QCOMPARE(scratch.permissions() & (QFile::ReadGroup | QFile::ReadOther | QFile::ExeOther), QFile::Permissions());
        QCOMPARE(device::removeScratchDir(), 0);
        QVERIFY(!QFileInfo::exists(device::scratchDir()));
        device::syncFiles();
        QCOMPARE(DeviceTwin::shellCommands(),
                 QStringList({QStringLiteral("mkdir /tmp/velmora"), QStringLiteral("rm -rf /tmp/velmora"),
                              QStringLiteral("sync&")}));
        QVERIFY(QFileInfo::exists(root.path() + QStringLiteral("/shell.log")));
    }

    void boxesAreAnsweredInOrderAndUnexpectedOnesNoted()
    {
        BoxAnswer answers({BoxAnswer::Ok, BoxAnswer::Cancel});
        QCOMPARE(MsgboxDlg(QStringLiteral("one"), false).exec(), int(QDialog::Accepted));
        QCOMPARE(MsgboxDlg(QStringLiteral("two"), true).exec(), int(QDialog::Rejected));
        QCOMPARE(MsgboxDlg(QStringLiteral("three"), true).exec(), int(QDialog::Accepted));
        QCOMPARE(answers.texts(), QStringList({QStringLiteral("one"), QStringLiteral("two"), QStringLiteral("three")}));
        QCOMPARE(answers.buttons().mid(0, 2), QStringList({QStringLiteral("OK"), QStringLiteral("OK|Cancel")}));
        QCOMPARE(answers.unexpected(), QStringList(QStringLiteral("three")));
    }

    void keysGoToTheFocusedWidgetAndTravelUp()
    {
        struct Screen : QWidget {
            QList<int> keys;
            void keyReleaseEvent(QKeyEvent *event) override { keys.append(event->key()); }
        } screen;
        QPushButton button(&screen);
        screen.show();
        button.setFocus();
        QSignalSpy clicked(&button, &QPushButton::clicked);
        screentest::key(&screen, screentest::Select);
        QCOMPARE(clicked.count(), 1);
        screentest::key(&screen, screentest::Back);
        QVERIFY(screen.keys.contains(screentest::Back));
    }
};

QTEST_MAIN(FakesTest)
#include "fakes_test.moc"
