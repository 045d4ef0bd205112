// Ipc and IpcThread inside a program; the test replaces the menu system.
#include "menusocket.h"

#include "netcommon/ipc.h"
#include "netcommon/ipcthread.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/socket.h>
#include <unistd.h>

using namespace netcommon;

namespace {

// A menu system that the test drives.
class MenuEnd {
public:
    MenuEnd()
    {
        const QByteArray path = m_directory.filePath(QStringLiteral("menu.sock")).toLocal8Bit();
        QString reason;
        m_listener = menu::listenAt(path, &reason);
        qputenv(menu::socketVariable, path);
    }
    ~MenuEnd()
    {
        qunsetenv(menu::socketVariable);
        hangUp();
        ::close(m_listener);
    }

    // The next message; type 0 when none comes.
    menu::Packet next()
    {
        menu::Packet packet;
        const bool came = QTest::qWaitFor([&] {
            if (m_peer < 0)
                m_peer = menu::acceptPeer(m_listener);
            return m_peer >= 0 && menu::receive(m_peer, packet) == menu::Received::Packet;
        });
        return came ? packet : menu::Packet{};
    }
    // The radio's IPC thread, started and connected; null when no Hello came.
    IpcThread *startedThread()
    {
        IpcThread *thread = IpcThread::getInstance();
        thread->start();
        return menu::typeOf(next().message) == menu::MessageType::Hello ? thread : nullptr;
    }
    void hangUp()
    {
        if (m_peer >= 0)
            ::close(m_peer);
        m_peer = -1;
    }
    int peer() const { return m_peer; }

private:
    QTemporaryDir m_directory;
    int m_listener = -1;
    int m_peer = -1;
};

} // namespace

class IpcTest : public QObject {
    Q_OBJECT
private slots:
    void cleanup()
    {
        delete IpcThread::getInstance();
        delete Ipc::getInstance();
    }

    void withoutAMenuMessagesAreDroppedAndExitIsGrantedLater()
    {
        _NETWORK_MSG_T message{};
        message.type = 4;
        QCOMPARE(Ipc::getInstance()->sendIpcMsg(&message), 0);
        QCOMPARE(Ipc::getInstance()->sendIpcMsg(nullptr), -1);
        QSignalSpy exits(IpcThread::getInstance(), &IpcThread::signalExit);
        QVERIFY(Ipc::requestExit(true));
        QCOMPARE(exits.size(), 0); // the caller closes its question first
        QTRY_COMPARE(exits.size(), 1);
        QCOMPARE(exits.first(), (QVariantList{true, false}));
    }

    void theThreadReportsItsStartAndEndsAfterResponse2()
    {
        MenuEnd end;
        IpcThread *thread = IpcThread::getInstance();
        QVERIFY(!thread->isStarted());
        thread->start(QThread::InheritPriority);
        QTRY_VERIFY(thread->isStarted());
        QCOMPARE(menu::typeOf(end.next().message), menu::MessageType::Hello);
        thread->responseParent(1); // some other answer: the thread goes on
        QVERIFY(menu::send(end.peer(), menu::makeMessage(menu::MessageType::Ping, 7)));
        QCOMPARE(menu::typeOf(end.next().message), menu::MessageType::Answer);
        thread->responseParent(2);
        thread->responseParent(2);
        QVERIFY(thread->wait(5000));
    }

    void theThreadEndsWhenTheApplicationQuits()
    {
        IpcThread *thread = IpcThread::getInstance();
        thread->start();
        QTimer::singleShot(0, QCoreApplication::instance(), &QCoreApplication::quit);
        QCoreApplication::exec();
        QVERIFY(thread->wait(5000));
    }

    void aMessageArrivesWhole()
    {
        MenuEnd end;
        _NETWORK_MSG_T message{};
        message.type = 99;
        for (int index = 0; index < 64; ++index)
            message.data[index] = char(index);
        QCOMPARE(Ipc::getInstance()->sendIpcMsg(&message), 0);
        QCOMPARE(menu::typeOf(end.next().message), menu::MessageType::Hello);
        const menu::Packet packet = end.next();
        QCOMPARE(std::memcmp(&packet.message, &message, sizeof message), 0);
        QVERIFY(packet.text.isEmpty());
    }

    void aLostMenuSystemGrantsTheExit()
    {
        MenuEnd end;
        IpcThread *thread = end.startedThread();
        QVERIFY(thread);
        end.hangUp();
        QSignalSpy exits(thread, &IpcThread::signalExit);
        QVERIFY(Ipc::requestExit(false));
        QTRY_COMPARE(exits.size(), 1);
        QVERIFY(thread->isRunning());
    }

    void aBrokenMessageEndsTheConnectionOnly()
    {
        MenuEnd end;
        IpcThread *thread = end.startedThread();
        QVERIFY(thread);
        QCOMPARE(::send(end.peer(), "short", 5, MSG_NOSIGNAL), ssize_t(5));
        QSignalSpy exits(thread, &IpcThread::signalExit);
        const auto isGranted = [&] { return Ipc::requestExit(false) && !exits.isEmpty(); };
        QTRY_VERIFY(isGranted());
        QVERIFY(thread->isRunning());
    }

    void anExitOrderIsRepeatedUntilItIsAnswered()
    {
        MenuEnd end;
        IpcThread *thread = end.startedThread();
        QVERIFY(thread);
        QVERIFY(menu::send(end.peer(), menu::makeMessage(menu::MessageType::Exit))); // no screen is there
        QVERIFY(menu::send(end.peer(), menu::makeMessage(menu::MessageType::Ping, 7)));
        QCOMPARE(menu::typeOf(end.next().message), menu::MessageType::Answer); // so the order was read
        {
            QObject leaving; // a screen that is deleted before it hears the order
            connect(thread, &IpcThread::signalExit, &leaving, [] { QFAIL("a deleted receiver was told"); });
        }
        QSignalSpy exits(thread, &IpcThread::signalExit);
        QTRY_VERIFY(!exits.isEmpty());
        QCOMPARE(exits.first(), (QVariantList{true, false}));
        thread->responseParent(2);
        const QSignalSpy late(thread, &IpcThread::signalExit);
        QCoreApplication::processEvents();
        QVERIFY(late.isEmpty());
    }

    void theExitNoticeIsSentAfterTheThreadIsGone()
    {
        MenuEnd end;
        IpcThread *thread = IpcThread::getInstance();
        thread->start();
        thread->responseParent(2);
        QVERIFY(thread->wait(5000));
        delete thread;
        _NETWORK_MSG_T message{};
        message.type = 4;
        QCOMPARE(Ipc::getInstance()->sendIpcMsg(&message), 0);
        delete Ipc::getInstance();
        // One connection from the start to the end.
        QCOMPARE(menu::typeOf(end.next().message), menu::MessageType::Hello);
        QCOMPARE(menu::typeOf(end.next().message), menu::MessageType::ExitResponse);
        QCOMPARE(menu::typeOf(end.next().message), menu::MessageType::Exited);
    }
};

QTEST_GUILESS_MAIN(IpcTest)
#include "ipc_test.moc"
