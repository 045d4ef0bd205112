#pragma once

#include "netcommon/netcommon_global.h"

#include <QList>
#include <QStringList>

// Drives the fakes of netcommon::Ipc and netcommon::IpcThread. GUI thread only.
class FakeIpc {
public:
    static void reset(); // exit requests are handed over, but nobody grants them

    // --- what the radio sent
    static QList<_NETWORK_MSG_T> messages;
    static QList<bool> exitRequests; // isNetworkError of each
    static QStringList exitKinds;    // of each: "wish", or "fault"; "unmarked fault" if the box before was no last box
    static QList<int> responses;     // responseParent, repeated ones too

    // --- script
    static bool isHandedOver; // what requestExit returns
    static bool isMissing;    // IpcThread::getInstance() is null

    // --- what the menu system does, at once
    static void exitFromMenu(); // signalExit(true, false)
    static void screenSaver(bool fgEnter);
};
