#pragma once

#include "netcommon/netcommon_global.h"

#include <QObject>

namespace netcommon {

// Reports that the network was lost or came back. One instance for each process; it lives in the GUI thread.
class NETCOMMON_EXPORT NetworkNotify : public QObject {
    Q_OBJECT
public:
    static NetworkNotify *getInstance();
    ~NetworkNotify() override;

signals:
    void signalSendNetowrkEvent(NETWORk_EVENT_T event);

private:
    NetworkNotify();
    struct Private;
    Private *d;
};

} // namespace netcommon
