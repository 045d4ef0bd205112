#pragma once

#include "netcommon/netcommon_global.h"

#include <QList>

// Drives the fakes of netcommon::Ipc and netcommon::IpcThread. GUI thread only.
class FakeIpc {
public:
    static void reset(); // exit requests are handed over, but nobody grants them

    // --- what the radio sent
    static QList<_NETWORK_MSG_T> messages();
    static QList<bool> exitRequests(); // isNetworkError of each
    static QList<int> responses();     // responseParent, repeated ones too

    // --- script
    static void setRequestResult(bool isHandedOver); // what requestExit returns
    static void setMissing(bool isMissing);          // IpcThread::getInstance() is null
    static void setGranting(bool isGranting);        // requestExit is followed by signalExit(true, false), queued

    // --- what the menu system does, at once
    static void exitFromMenu(bool isSystemError = false); // signalExit(true, isSystemError)
    static void screenSaver(bool fgEnter);
};
