#include "netcommon/ipc.h"

#include "menulink.h"
#include "netcommon/ipcthread.h"

#include <QCoreApplication>
#include <QDebug>
#include <QVariant>

namespace netcommon {

struct Ipc::Private {
    std::shared_ptr<MenuLink> link = MenuLink::shared();
};

namespace {

Ipc *ipcInstance = nullptr; // made by getInstance(), deleted by the end of main

} // namespace

Ipc *Ipc::getInstance()
{
    if (!ipcInstance)
        ipcInstance = new Ipc;
    return ipcInstance;
}

Ipc::Ipc()
    : d(new Private)
{
}

Ipc::~Ipc()
{
    ipcInstance = nullptr;
    delete d;
    MenuLink::forget();
}

int Ipc::sendIpcMsg(_NETWORK_MSG_T *msg)
{
    if (!msg)
        return -1;
    if (!d->link->isConnected())
        return 0;
    return d->link->send(*msg) ? 0 : -1;
}

bool Ipc::requestExit(bool isNetworkError)
{
    IpcThread *thread = IpcThread::getInstance();
    const auto link = MenuLink::shared();
    if (link->isConnected()) {
        const bool isWish = qApp && qApp->property(exitWishProperty).toBool();
        const bool sent =
            link->send(menu::makeMessage(menu::MessageType::ExitRequest, 0, isNetworkError ? 1 : 0, isWish ? 1 : 0));
        qDebug("Ipc,requestExit,isNetworkError=%d,isWish=%d,sent=%d", isNetworkError, isWish, sent);
        if (sent || link->isConnected())
            return sent;
    }
    // No menu system: granted. Queued, so that the caller finishes with its question box first.
    qDebug("Ipc,requestExit,isNetworkError=%d,no menu system,granted", isNetworkError);
    return QMetaObject::invokeMethod(
        thread, [thread] { emit thread->signalExit(true, false); }, Qt::QueuedConnection);
}

} // namespace netcommon
