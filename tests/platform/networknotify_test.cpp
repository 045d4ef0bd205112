// When the network counts as lost: the rule, what it is made from, and the kernel's own word in a network of our own.
#include "networkdecider.h"
#include "routetable.h"
#include "serveraddress.h"

#include "netcommon/networknotify.h"

#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <linux/rtnetlink.h>
#include <sched.h>
#include <unistd.h>

using namespace netcommon;

namespace {

bool hasOwnNetwork = false; // this process was moved to an empty network of its own

bool configure(const QStringList &words)
{
    return QProcess::execute("ip", words) == 0;
}

// One route as the kernel reports it.
QByteArray routeMessage(unsigned char prefix, unsigned char type, unsigned flags)
{
    struct {
        nlmsghdr header;
        rtmsg route;
    } message{};
    message.header.nlmsg_len = NLMSG_LENGTH(sizeof(rtmsg));
    message.header.nlmsg_type = RTM_NEWROUTE;
    message.route.rtm_dst_len = prefix;
    message.route.rtm_type = type;
    message.route.rtm_flags = flags;
    return {reinterpret_cast<const char *>(&message), int(NLMSG_ALIGN(message.header.nlmsg_len))};
}

} // namespace

class NetworkNotifyTest : public QObject {
    Q_OBJECT
private slots:
    void aLossIsToldWhenItLasts_data()
    {
        // Steps: u/d the routes are read with/without a way out, t the time has passed, L/B the menu system says
        // lost/back. Result, one for each step: 1 lost, 0 back, + the timer starts, - it stops, . nothing.
        QTest::addColumn<bool>("isServerLocal");
        QTest::addColumn<bool>("hasRoute");
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("results");
        QTest::newRow("a loss that lasts") << false << true << "dt"
                                           << "+1";
        QTest::newRow("and its end") << false << true << "dtu"
                                     << "+10";
        QTest::newRow("a short one") << false << true << "duu"
                                     << "+-.";
        QTest::newRow("a time that was stopped") << false << true << "dut"
                                                 << "+-.";
        QTest::newRow("told once") << false << true << "ddtdd"
                                   << "+.1..";
        QTest::newRow("never there") << false << false << "dtd"
                                     << "...";
        QTest::newRow("comes later") << false << false << "uudt"
                                     << "..+1";
        QTest::newRow("again") << false << true << "dtudtu"
                               << "+10+10";
        QTest::newRow("server here") << true << true << "dtudt"
                                     << ".....";
        QTest::newRow("menu") << false << true << "LB"
                              << "10";
        QTest::newRow("menu, server here") << true << true << "LB"
                                           << "10";
        QTest::newRow("menu holds it down") << false << true << "LuduB"
                                            << "1...0";
        QTest::newRow("menu during a short one") << false << true << "dLt"
                                                 << "+1.";
        QTest::newRow("menu says back") << false << true << "dtB"
                                        << "+10";
    }

    void aLossIsToldWhenItLasts()
    {
        QFETCH(const bool, isServerLocal);
        QFETCH(const bool, hasRoute);
        QFETCH(const QString, steps);
        QFETCH(const QString, results);
        NetworkDecider decider(isServerLocal, hasRoute);
        QString seen;
        for (const QChar step : steps) {
            NetworkDecider::Action action;
            switch (step.toLatin1()) {
            case 't':
                action = decider.timePassed();
                break;
            case 'L':
            case 'B':
                action = decider.injected(step == u'L' ? NETWORK_EVENT_DISCONNECTED : NETWORK_EVENT_CONNECTED);
                break;
            default:
                action = decider.routesRead(step == u'u');
            }
            seen += action.event         ? QChar('0' + *action.event)
                    : action.startsTimer ? QChar('+')
                    : action.stopsTimer  ? QChar('-')
                                         : QChar('.');
        }
        QCOMPARE(seen, results);
    }

    void onlyALivingDefaultRouteLeadsOut()
    {
        const std::tuple<QByteArray, bool> cases[] = {
            {routeMessage(0, RTN_UNICAST, 0), true},                                    // default
            {routeMessage(0, RTN_UNICAST, RTNH_F_LINKDOWN), false},                     // cable pulled
            {routeMessage(0, RTN_UNICAST, RTNH_F_DEAD), false},                         // dead
            {routeMessage(24, RTN_UNICAST, 0), false},                                  // a subnet
            {routeMessage(0, RTN_UNREACHABLE, 0), false},                               // unreachable
            {routeMessage(24, RTN_UNICAST, 0) + routeMessage(0, RTN_UNICAST, 0), true}, // second one
            {routeMessage(0, RTN_UNICAST, 0).left(20), false},                          // cut off
            {QByteArray(), false},                                                      // nothing
        };
        for (const auto &[datagram, leadsOut] : cases) {
            RouteDump dump;
            dump.read(datagram);
            QCOMPARE(dump.hasDefaultRoute, leadsOut);
            QVERIFY(!dump.isComplete);
        }
    }

    void theServersAddressIsFoundWhereTheLibraryFindsIt()
    {
        const QTemporaryDir directory;
        const QString path = directory.filePath("ws.conf");
        QCOMPARE(serverAddress({}, path), QString());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("# server = http://commented.example\nca_file = /a/b\n server =  https://radio.example:7480/a=b \n");
        file.close();
        QCOMPARE(serverAddress({}, path), "https://radio.example:7480/a=b");
        QCOMPARE(serverAddress("http://127.0.0.1:7480", path), "http://127.0.0.1:7480");
    }

    void serversOnThisMachineAreKnown()
    {
        const std::tuple<QString, bool> cases[] = {
            {"http://127.0.0.1:7480", true},     // loopback
            {"http://127.8.9.10/", true},        // all of it
            {"http://[::1]:7480", true},         // version 6
            {"http://[0:0::0:1]:7480", true},    // other spelling
            {"https://localhost", true},         // name
            {"http://203.0.113.7:7480", false},  // elsewhere
            {"http://localhost.example", false}, // named like it
            {"http://127.example.org", false},   // number like it
            {"", false},                         // none
            {"::", false},                       // nonsense
        };
        for (const auto &[address, isHere] : cases)
            QCOMPARE(isOnThisMachine(address), isHere);
    }

    void theKernelsRoutesBecomeEvents()
    {
        if (!hasOwnNetwork || !configure({"link", "set", "lo", "up"}))
            QSKIP("no network of our own: not allowed here, or no ip command");
        QVERIFY(configure({"route", "add", "default", "dev", "lo"}));
        qputenv("VELMORA_WS_SERVER", "https://radio.example");
        NetworkNotify *notify = NetworkNotify::getInstance();
        QSignalSpy events(notify, &NetworkNotify::signalSendNetowrkEvent);
        // Gone and back within the delay: nothing.
        QVERIFY(configure({"route", "del", "default", "dev", "lo"}));
        QTest::qWait(200);
        QVERIFY(configure({"route", "add", "default", "dev", "lo"}));
        QVERIFY(!events.wait(NetworkDecider::lossDelayMs + 500));
        // Gone.
        QElapsedTimer clock;
        clock.start();
        QVERIFY(configure({"route", "del", "default", "dev", "lo"}));
        QVERIFY(events.wait(NetworkDecider::lossDelayMs + 3000));
        QVERIFY(clock.elapsed() >= NetworkDecider::lossDelayMs * 9 / 10);
        QCOMPARE(events.takeFirst().first().value<NETWORk_EVENT_T>(), NETWORK_EVENT_DISCONNECTED);
        // Back, by another protocol.
        QVERIFY(configure({"-6", "route", "add", "default", "dev", "lo"}));
        QVERIFY(events.wait(3000));
        QCOMPARE(events.takeFirst().first().value<NETWORk_EVENT_T>(), NETWORK_EVENT_CONNECTED);
        delete notify;
        configure({"-6", "route", "del", "default", "dev", "lo"});
    }

    void aRadioWithItsServerOnThisMachineLosesNothing()
    {
        if (!hasOwnNetwork || !configure({"link", "set", "lo", "up"}))
            QSKIP("no network of our own: not allowed here, or no ip command");
        QVERIFY(configure({"route", "add", "default", "dev", "lo"}));
        qputenv("VELMORA_WS_SERVER", "http://127.0.0.1:7480");
        NetworkNotify *notify = NetworkNotify::getInstance();
        QSignalSpy events(notify, &NetworkNotify::signalSendNetowrkEvent);
        QVERIFY(configure({"route", "del", "default", "dev", "lo"}));
        QVERIFY(!events.wait(NetworkDecider::lossDelayMs + 500));
        delete notify;
    }
};

int main(int argc, char **argv)
{
    // Before there is a second thread.
    hasOwnNetwork = ::unshare(CLONE_NEWNET) == 0 || ::unshare(CLONE_NEWUSER | CLONE_NEWNET) == 0;
    QCoreApplication application(argc, argv);
    qRegisterMetaType<NETWORk_EVENT_T>("NETWORk_EVENT_T");
    NetworkNotifyTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "networknotify_test.moc"
