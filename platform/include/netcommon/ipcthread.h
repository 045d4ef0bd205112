#pragma once

#include "netcommon/netcommon_global.h"

#include <QThread>

namespace netcommon {

// Listens to the device's menu system. One instance a process; the object lives in the GUI thread, its run() is the
// IPC thread. It ends by itself after responseParent(2), and when the application is about to quit.
class NETCOMMON_EXPORT IpcThread : public QThread {
    Q_OBJECT
public:
    static IpcThread *getInstance();
    ~IpcThread() override;

    // True once run() has begun to listen. Right after start() the call waits for that, at most 100 ms. Any thread.
    bool isStarted() const;

public slots:
    // The application's answer to an exit request; 2: it exits. Repeated calls are ignored.
    void responseParent(int type);

signals:
    // The menu system ends the application (isFromParent true). Until responseParent(2), receivers that connect after
    // the order get it, too.
    void signalExit(bool isFromParent, bool isSystemError);
    void signalScreenSaver(bool fgEnter);

protected:
    void connectNotify(const QMetaMethod &signal) override;
    void run() override;

private:
    IpcThread();
    struct Private;
    Private *d;
};

} // namespace netcommon
