#pragma once

#include "netcommon/netcommon_global.h"

namespace netcommon {

// Sends messages to the device's menu system. One instance per process, created on first use and deleted by the
// program's main; GUI thread only.
class NETCOMMON_EXPORT Ipc {
public:
    static Ipc *getInstance();
    ~Ipc();
    Ipc(const Ipc &) = delete;
    Ipc &operator=(const Ipc &) = delete;

    // Sends one message; 0 when it was sent, otherwise -1. Without a menu system the message is dropped and 0 returned.
    int sendIpcMsg(_NETWORK_MSG_T *msg);

    // Asks for permission to exit. True when the request was sent: IpcThread::signalExit(true, false) follows.
    // Without a menu system it is granted at once. `isNetworkError` tells the menu system why.
    static bool requestExit(bool isNetworkError);

private:
    Ipc();
    struct Private;
    Private *d;
};

} // namespace netcommon
