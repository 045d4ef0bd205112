#include "fakes/fakeipc.h"

#include "netcommon/ipc.h"
#include "netcommon/ipcthread.h"

#include <QCoreApplication>
#include <QSemaphore>

#include <atomic>

namespace {

struct State {
    QList<_NETWORK_MSG_T> messages;
    QList<bool> exitRequests;
    QList<int> responses;
    bool isHandedOver = true;
    bool isGranting = false;
    bool isMissing = false;
};

State &state()
{
    static State instance;
    return instance;
}

netcommon::Ipc *ipc = nullptr;
netcommon::IpcThread *ipcThread = nullptr;

} // namespace

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
    state().messages.append(*msg);
    return 0;
}

bool Ipc::requestExit(bool isNetworkError)
{
    state().exitRequests.append(isNetworkError);
    if (state().isHandedOver && state().isGranting)
        QMetaObject::invokeMethod(
            IpcThread::getInstance(), [] { FakeIpc::exitFromMenu(); }, Qt::QueuedConnection);
    return state().isHandedOver;
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
    if (state().isMissing)
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
    state().responses.append(type);
    if (type == 2)
        d->end.release();
}

void IpcThread::run()
{
    d->isStarted = true;
    d->end.acquire();
}

} // namespace netcommon

void FakeIpc::reset()
{
    state() = State();
}

QList<_NETWORK_MSG_T> FakeIpc::messages()
{
    return state().messages;
}
QList<bool> FakeIpc::exitRequests()
{
    return state().exitRequests;
}
QList<int> FakeIpc::responses()
{
    return state().responses;
}
void FakeIpc::setRequestResult(bool isHandedOver)
{
    state().isHandedOver = isHandedOver;
}
void FakeIpc::setMissing(bool isMissing)
{
    state().isMissing = isMissing;
}
void FakeIpc::setGranting(bool isGranting)
{
    state().isGranting = isGranting;
}

void FakeIpc::exitFromMenu(bool isSystemError)
{
    emit netcommon::IpcThread::getInstance()->signalExit(true, isSystemError);
}

void FakeIpc::screenSaver(bool fgEnter)
{
    emit netcommon::IpcThread::getInstance()->signalScreenSaver(fgEnter);
}
