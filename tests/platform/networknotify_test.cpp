// When the network counts as lost: the rule, its inputs, and real kernel messages in a network namespace of our own.
#include "networkdecider.h"
#include "routetable.h"
#include "serveraddress.h"

#include "fakes/logcapture.h"
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

bool hasOwnNetwork = false; // this process is in an empty network namespace

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
    // Steps: u/d the routes are read with/without a way out, t/s the time has passed without/with sound left to hear,
    // L/B the menu system says lost/back. Result, one for each step: 1 lost, 0 back, + the timer starts with the long
    // delay, ~ with the short one, - it stops, . nothing.
    void onlyALastingLossIsReported()
    {
        const auto row = [](const char *name, const QString &steps, const QString &results, bool hasRoute = true,
                            bool isServerLocal = false) {
            NetworkDecider decider(isServerLocal, hasRoute);
            QString seen;
            for (const QChar step : steps) {
                NetworkDecider::Action action;
                if (step == u't' || step == u's')
                    action = decider.timePassed(step == u's');
                else if (step.isUpper())
                    action = decider.injected(step == u'L' ? NETWORK_EVENT_DISCONNECTED : NETWORK_EVENT_CONNECTED);
                else
                    action = decider.routesRead(step == u'u');
                const int ms = action.timerMs;
                seen += action.event        ? QChar('0' + *action.event)
                        : ms == 30'000      ? QChar('+')
                        : ms > 0            ? QChar('~')
                        : action.stopsTimer ? QChar('-')
                                            : QChar('.');
            }
            QVERIFY2(seen == results, qPrintable(name + (": " + seen)));
        };
        row("a loss that lasts", "dt", "+1");
        row("and its end", "dtu", "+10");
        row("a short one", "duu", "+-.");
        row("music goes on", "dssst", "+~~~1");
        row("music went on, and nothing was noticed", "dssut", "+~~-.");
        row("a time that was stopped", "dut", "+-.");
        row("told once", "ddtdd", "+.1..");
        row("never there", "dtd", "...", false);
        row("comes later", "uudt", "..+1", false);
        row("again", "dtudtu", "+10+10");
        row("server here", "dtudt", ".....", true, true);
        row("menu", "LB", "10");
        row("menu, server here", "LB", "10", true, true);
        row("menu holds it down", "LuduB", "1...0");
        row("menu during a short one", "dLt", "+1.");
        row("menu says back", "dtB", "+10");
    }

    void onlyAnActiveDefaultRouteCounts()
    {
        const std::tuple<const char *, QByteArray, bool> cases[] = {
            {"default", routeMessage(0, RTN_UNICAST, 0), true},
            {"cable pulled", routeMessage(0, RTN_UNICAST, RTNH_F_LINKDOWN), false},
            {"dead", routeMessage(0, RTN_UNICAST, RTNH_F_DEAD), false},
            {"a subnet", routeMessage(24, RTN_UNICAST, 0), false},
            {"unreachable", routeMessage(0, RTN_UNREACHABLE, 0), false},
            {"the second one", routeMessage(24, RTN_UNICAST, 0) + routeMessage(0, RTN_UNICAST, 0), true},
            {"cut off", routeMessage(0, RTN_UNICAST, 0).left(20), false},
            {"nothing", QByteArray(), false},
        };
        for (const auto &[name, datagram, leadsOut] : cases) {
            RouteDump dump;
            dump.read(datagram);
            QVERIFY2(dump.hasDefaultRoute == leadsOut && !dump.isComplete, name);
        }
    }

    void theServersAddressIsReadFromTheLibrarysSettings()
    {
        const QTemporaryDir directory;
        const QString packaged = directory.filePath("packaged"), owners = directory.filePath("ws.conf");
        const auto write = [](const QString &path, const QByteArray &text) {
            QFile file(path);
            return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
        };
        QCOMPARE(serverAddress({}, {packaged, owners}), QString());
        QVERIFY(write(packaged, "server=http://127.0.0.1:7480\n"));
        QCOMPARE(serverAddress({}, {packaged, owners}), "http://127.0.0.1:7480");
        QVERIFY(write(owners, "# server = http://commented.example\nca_file = /a/b\n"));
        QCOMPARE(serverAddress({}, {packaged, owners}), "http://127.0.0.1:7480");
        QVERIFY(write(owners, " server =  https://radio.example:7480/a=b \n"));
        QCOMPARE(serverAddress({}, {packaged, owners}), "https://radio.example:7480/a=b");
        QCOMPARE(serverAddress("http://127.0.0.1:7481", {packaged, owners}), "http://127.0.0.1:7481");
        QVERIFY(write(owners, "server=\n")); // the owner wants another one, which is still to be found
        QCOMPARE(serverAddress({}, {packaged, owners}), QString());
    }

    void serversOnThisMachineAreKnown()
    {
        for (const char *here : {"http://127.0.0.1:7480", "http://127.8.9.10/", "http://[::1]:7480",
                                 "http://[0:0::0:1]:7480", "https://localhost"})
            QVERIFY2(isOnThisMachine(here), here);
        for (const char *elsewhere :
             {"http://203.0.113.7:7480", "http://localhost.example", "http://127.example.org", "", "::"})
            QVERIFY2(!isOnThisMachine(elsewhere), elsewhere);
    }

    void theKernelsRoutesBecomeEventsUnlessTheServerIsOnThisMachine()
    {
        if (!hasOwnNetwork || !configure({"link", "set", "lo", "up"}))
            QSKIP("no network of our own: not allowed here, or no ip command");
        const QStringList route{"route", "add", "default", "dev", "lo"},
            noRoute{"route", "del", "default", "dev", "lo"};
        const auto changes = [&](const QStringList &words, const char *logLine) {
            const LogCapture log;
            return configure(words) && QTest::qWaitFor([&] { return log.contains(logLine); });
        };
        QVERIFY(configure(route));
        // A short loss: the delay begins, then stops.
        qputenv("VELMORA_WS_SERVER", "https://radio.example");
        NetworkNotify *notify = NetworkNotify::getInstance();
        QSignalSpy events(notify, &NetworkNotify::signalSendNetowrkEvent);
        QVERIFY(changes(noRoute, "NetworkNotify,route,0,delay=30000,stop=0"));
        QVERIFY(changes(route, "NetworkNotify,route,1,delay=0,stop=1"));
        QVERIFY(events.isEmpty());
        delete notify;
        // A lasting one, and its end by another protocol.
        qputenv("VELMORA_NETWORK_LOSS_PACE", "0.01");
        notify = NetworkNotify::getInstance();
        QSignalSpy lasting(notify, &NetworkNotify::signalSendNetowrkEvent);
        QElapsedTimer gone;
        gone.start();
        QVERIFY(changes(noRoute, "NetworkNotify,event,1"));
        constexpr int lossMs = NetworkDecider::lossDelayMs / 100;
        QVERIFY(gone.elapsed() >= lossMs - lossMs / 20); // a coarse timer may be early
        QVERIFY(changes(QStringList("-6") + route, "NetworkNotify,event,0"));
        QCOMPARE(lasting.size(), 2);
        QCOMPARE(lasting.at(0).first().value<NETWORk_EVENT_T>(), NETWORK_EVENT_DISCONNECTED);
        QCOMPARE(lasting.at(1).first().value<NETWORk_EVENT_T>(), NETWORK_EVENT_CONNECTED);
        delete notify;
        // A server on this machine: no delay begins, so nothing can follow.
        qputenv("VELMORA_WS_SERVER", "http://127.0.0.1:7480");
        notify = NetworkNotify::getInstance();
        QVERIFY(changes(QStringList("-6") + noRoute, "NetworkNotify,route,0,delay=0,stop=0"));
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
