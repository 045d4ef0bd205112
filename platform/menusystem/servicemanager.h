#pragma once

#include <QTimer>

namespace menusystem {

// Tells systemd, where that started this program (Type=notify), that the radio is being watched: once when it is made,
// and then every two seconds from the event loop that also asks the radio whether it lives (WatchdogSec=). Without
// systemd it does nothing. One thread.
class ServiceManager {
public:
    ServiceManager();
    ~ServiceManager();

private:
    QTimer m_timer;
};

} // namespace menusystem
