#pragma once

#include "netcommon/netcommon_global.h"

namespace netcommon {

// What requestExit() cannot say, in dynamic properties that the radio sets before. The menu system starts the radio
// again after a fault, so a library that does not read them makes every exit a fault. GUI thread only.
//
// Of the application object: true while an exit is requested, or the event loop is about to end, because a person wants
// to leave.
inline constexpr char exitWishProperty[] = "velmoraExitWish";
// Of a message box: true if the radio requests its exit when the box is closed. A menu system that wants to start the
// radio again does not have to wait for somebody who closes it.
inline constexpr char lastBoxProperty[] = "velmoraLastBox";

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
