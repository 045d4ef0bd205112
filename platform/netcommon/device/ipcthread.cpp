#include "netcommon/ipcthread.h"

#include "menulink.h"
#include "menurequests.h"
#include "netcommon/ipc.h"

#include <QCoreApplication>
#include <QDebug>
#include <QMetaMethod>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace netcommon {

namespace {

// How long isStarted() waits for a started thread that does not listen yet.
constexpr auto longestStart = std::chrono::milliseconds(100);

} // namespace

struct IpcThread::Private {
    std::shared_ptr<MenuLink> link = MenuLink::shared();
    std::mutex startMutex; // protects isStarted
    std::condition_variable startCondition;
    bool isStarted = false;
    std::atomic<bool> isEnding{false};
    std::atomic<bool> isExitOrdered{false}; // by the menu system
    bool hasResponded = false;              // GUI thread only
    const int wake = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);

    ~Private() { ::close(wake); }

    void end()
    {
        isEnding = true;
        const std::uint64_t one = 1;
        [[maybe_unused]] const auto written = ::write(wake, &one, sizeof one);
    }
};

namespace {

IpcThread *ipcThreadInstance = nullptr; // made by getInstance(), deleted by main after its wait()

} // namespace

IpcThread *IpcThread::getInstance()
{
    if (!ipcThreadInstance)
        ipcThreadInstance = new IpcThread;
    return ipcThreadInstance;
}

IpcThread::IpcThread()
    : d(new Private)
{
    // In case responseParent(2) never comes: main waits for this thread without a limit.
    if (auto *application = QCoreApplication::instance())
        connect(application, &QCoreApplication::aboutToQuit, this, [this, application] {
            // A person closed the window of the desktop: nobody has asked for the exit.
            if (!d->hasResponded && application->property(exitWishProperty).toBool())
                d->link->send(menu::makeMessage(menu::MessageType::ExitRequest, 0, 0, 1));
            d->end();
        });
}

IpcThread::~IpcThread()
{
    d->end();
    wait();
    ipcThreadInstance = nullptr;
    delete d;
}

// A caller that polls pauses after each failed check, so the first check waits for the few microseconds that it takes.
bool IpcThread::isStarted() const
{
    std::unique_lock lock(d->startMutex);
    if (!d->isStarted && isRunning())
        d->startCondition.wait_for(lock, longestStart, [this] { return d->isStarted; });
    return d->isStarted;
}

void IpcThread::responseParent(int type)
{
    qDebug("IpcThread,responseParent,type=%d", type);
    if (type != 2 || d->hasResponded)
        return;
    d->hasResponded = true; // every living screen answers; the menu system is told once
    d->link->send(menu::makeMessage(menu::MessageType::ExitResponse, 0, std::uint32_t(type)));
    d->end();
}

// An order to exit is kept until it is answered: while the program starts there may be no screen yet, and between two
// screens the only receiver may be one that is about to be deleted. So the order is repeated to each new receiver. The
// order is stored before it is emitted, and a connection exists before this function runs, so no receiver is missed.
void IpcThread::connectNotify(const QMetaMethod &signal)
{
    QThread::connectNotify(signal);
    if (signal != QMetaMethod::fromSignal(&IpcThread::signalExit) || !d->isExitOrdered)
        return;
    const auto repeatOrder = [this] {
        if (!d->hasResponded)
            emit signalExit(true, false);
    };
    QMetaObject::invokeMethod(this, repeatOrder, Qt::QueuedConnection); // the receiver is still being constructed
}

// The IPC thread. Screens get its signals queued. Requests that read widgets are queued to the GUI thread.
void IpcThread::run()
{
    {
        const std::scoped_lock lock(d->startMutex);
        d->isStarted = true;
    }
    d->startCondition.notify_all();
    pollfd watched[2] = {{d->wake, POLLIN, 0}, {d->link->isConnected() ? d->link->descriptor() : -1, POLLIN, 0}};
    while (!d->isEnding) {
        if (::poll(watched, 2, -1) < 0) {
            if (errno == EINTR)
                continue;
            qWarning("IpcThread,run,poll failed,errno=%d", errno);
            return;
        }
        if (!watched[1].revents || d->isEnding)
            continue;
        menu::Packet packet;
        switch (d->link->receive(packet)) {
        case menu::Received::Nothing:
            break;
        case menu::Received::Closed:
            // The radio continues without its menu system, as if it had been started without one.
            qDebug("IpcThread,run,menu system has gone");
            watched[1].fd = -1;
            break;
        case menu::Received::Packet:
            switch (menu::typeOf(packet.message)) {
            case menu::MessageType::Exit:
                d->isExitOrdered = true;
                emit signalExit(true, false);
                break;
            case menu::MessageType::ScreenSaver:
                emit signalScreenSaver(menu::field(packet.message, menu::valueOffset) != 0);
                [[fallthrough]]; // answered when the screens have seen it
            default:
                MenuRequests::handleLater(packet, d->link);
            }
        }
    }
}

} // namespace netcommon
