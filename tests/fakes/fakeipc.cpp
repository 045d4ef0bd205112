#include "fakes/fakeipc.h"

#include "netcommon/ipc.h"
#include "netcommon/ipcthread.h"

#include <QCoreApplication>
#include <QSemaphore>

#include <atomic>

QList<_NETWORK_MSG_T> FakeIpc::messages;
QList<bool> FakeIpc::exitRequests;
QStringList FakeIpc::exitKinds;
QList<int> FakeIpc::responses;
bool FakeIpc::isHandedOver = true;
bool FakeIpc::isMissing = false;

static netcommon::Ipc *ipc = nullptr;
static netcommon::IpcThread *ipcThread = nullptr;

namespace netcommon {

struct Ipc::Private {};

Ipc::Ipc()
    : d(nullptr)
{
    static_cast<void>(d);
}

Ipc::~Ipc()
{
    ipc = nullptr;
}

Ipc *Ipc::getInstance()
{
    if (!ipc)
        ipc = new Ipc;
    return ipc;
}

int Ipc::sendIpcMsg(_NETWORK_MSG_T *msg)
{
    if (!msg)
        return -1;
    FakeIpc::messages.append(*msg);
    return 0;
}

bool Ipc::requestExit(bool isNetworkError)
{
    FakeIpc::exitRequests.append(isNetworkError);
    const bool isWish = qApp->property(exitWishProperty).toBool();
    FakeIpc::exitKinds.append(isWish ? "wish" : qApp->property(lastBoxProperty).toBool() ? "fault" : "unmarked fault");
    return FakeIpc::isHandedOver;
}

struct IpcThread::Private {
    QSemaphore end;
    std::atomic_bool isStarted = false;
};

IpcThread::IpcThread()
    : d(new Private)
{
    if (QCoreApplication::instance())
        connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, [this] { d->end.release(); });
}

IpcThread::~IpcThread()
{
    d->end.release();
    wait();
    delete d;
    ipcThread = nullptr;
}

IpcThread *IpcThread::getInstance()
{
    if (FakeIpc::isMissing)
        return nullptr;
    if (!ipcThread)
        ipcThread = new IpcThread;
    return ipcThread;
}

bool IpcThread::isStarted() const
{
    return d->isStarted;
}

void IpcThread::responseParent(int type)
{
    FakeIpc::responses.append(type);
    if (type == 2)
        d->end.release();
}

void IpcThread::connectNotify(const QMetaMethod &signal)
{
    QThread::connectNotify(signal);
}

void IpcThread::run()
{
    d->isStarted = true;
    d->end.acquire();
}

} // namespace netcommon

void FakeIpc::reset()
{
    messages.clear();
    exitRequests.clear();
    exitKinds.clear();
    if (qApp)
        qApp->setProperty(netcommon::lastBoxProperty, false);
    responses.clear();
    isHandedOver = true;
    isMissing = false;
}

void FakeIpc::exitFromMenu()
{
    emit netcommon::IpcThread::getInstance()->signalExit(true, false);
}

void FakeIpc::screenSaver(bool fgEnter)
{
    emit netcommon::IpcThread::getInstance()->signalScreenSaver(fgEnter);
}
