#include "netcommon/networknotify.h"

#include "networkdecider.h"
#include "networkinjection.h"
#include "platform/netcommon/playback/playbackstatistics.h"
#include "routetable.h"
#include "serveraddress.h"

#include <QDebug>
#include <QSocketNotifier>
#include <QTimer>

#include <cerrno>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <memory>
#include <sys/socket.h>
#include <unistd.h>

namespace netcommon {

namespace {

NetworkNotify *networkNotifyInstance = nullptr; // made by getInstance(), deleted by the end of main

int listenToKernel()
{
    const int descriptor = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE);
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_groups = RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV6_IFADDR | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_ROUTE;
    if (descriptor >= 0 && ::bind(descriptor, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0)
        return descriptor;
    qDebug("NetworkNotify,listen,failed,errno=%d", errno);
    if (descriptor >= 0)
        ::close(descriptor);
    return -1;
}

bool isServerLocal()
{
    return isOnThisMachine(serverAddress(qEnvironmentVariable("VELMORA_WS_SERVER")));
}

bool readRoute(bool otherwise)
{
    bool isKnown = false;
    const bool found = hasDefaultRoute(&isKnown);
    return isKnown ? found : otherwise;
}

// Factor of all delays; tests make them short.
double lossPace()
{
    bool isNumber = false;
    const double pace = qEnvironmentVariable("VELMORA_NETWORK_LOSS_PACE").toDouble(&isNumber);
    return isNumber && pace > 0 ? pace : 1;
}

// Turns the reports of the kernel and the menu system into events.
class Watch {
public:
    explicit Watch(NetworkNotify *owner)
        : q(owner)
        , m_descriptor(listenToKernel())
        , m_hasRoute(readRoute(false))
        , m_decider(isServerLocal(), m_hasRoute)
    {
        m_lossTimer.setSingleShot(true);
        QObject::connect(&m_lossTimer, &QTimer::timeout, q,
                         [this] { apply(m_decider.timePassed(statistics::isSoundLeft())); });
        if (m_descriptor < 0)
            return;
        m_notifier = std::make_unique<QSocketNotifier>(m_descriptor, QSocketNotifier::Read);
        QObject::connect(m_notifier.get(), &QSocketNotifier::activated, q, [this] { kernelSpoke(); });
    }

    ~Watch()
    {
        m_notifier.reset();
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }

    Watch(const Watch &) = delete;
    Watch &operator=(const Watch &) = delete;

    void injected(NETWORk_EVENT_T event) { apply(m_decider.injected(event)); }

private:
    // The messages are not parsed, because they may be incomplete after an overrun: the whole table is read again.
    void kernelSpoke()
    {
        char ignored[8192];
        ssize_t size = 0;
        do
            size = ::recv(m_descriptor, ignored, sizeof ignored, 0);
        while (size > 0 || (size < 0 && (errno == ENOBUFS || errno == EINTR)));
        const bool hadRoute = m_hasRoute;
        m_hasRoute = readRoute(hadRoute);
        const NetworkDecider::Action action = m_decider.routesRead(m_hasRoute);
        if (m_hasRoute != hadRoute)
            qDebug("NetworkNotify,route,%d,delay=%d,stop=%d", m_hasRoute, action.timerMs, action.stopsTimer);
        apply(action);
    }

    void apply(const NetworkDecider::Action &action)
    {
        if (action.stopsTimer)
            m_lossTimer.stop();
        if (action.timerMs > 0)
            m_lossTimer.start(qRound(action.timerMs * m_pace));
        if (!action.event)
            return;
        qDebug("NetworkNotify,event,%d", *action.event);
        emit q->signalSendNetowrkEvent(*action.event);
    }

    NetworkNotify *const q;
    const int m_descriptor; // netlink socket, -1 when the kernel gives none
    bool m_hasRoute;        // the last answer, kept while the kernel gives none
    NetworkDecider m_decider;
    QTimer m_lossTimer;
    const double m_pace = lossPace();
    std::unique_ptr<QSocketNotifier> m_notifier;
};

Watch *watch = nullptr; // the instance's

} // namespace

struct NetworkNotify::Private {
    explicit Private(NetworkNotify *owner)
        : watch(owner)
    {
    }
    Watch watch;
};

NetworkNotify *NetworkNotify::getInstance()
{
    if (!networkNotifyInstance)
        networkNotifyInstance = new NetworkNotify;
    return networkNotifyInstance;
}

NetworkNotify::NetworkNotify()
    : d(new Private(this))
{
    watch = &d->watch;
}

NetworkNotify::~NetworkNotify()
{
    networkNotifyInstance = nullptr;
    watch = nullptr;
    delete d;
}

void injectNetworkEvent(NETWORk_EVENT_T event)
{
    if (watch)
        watch->injected(event);
}

} // namespace netcommon
