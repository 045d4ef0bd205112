#pragma once

#include "servicehealth.h"
#include "servicewait.h"

#include <QObject>
#include <QTcpSocket>
#include <QTimer>

namespace home {

// Waits for the service: asks it at once, and again after the pauses of ServiceWait. Between the questions it tries
// every second whether the port of a service in the house is open; when it opens, the service is asked at once. GUI
// thread.
class Waiting : public QObject {
    Q_OBJECT
public:
    Waiting(const ServicePlace &place, QObject *parent);

    // Asks now; also the first time.
    void askNow();

signals:
    void healthy();
    // Not healthy; the next question follows by itself.
    void failed(home::ServiceHealth::Result result);

private:
    void answered(ServiceHealth::Result result);
    void probe();

    const ServicePlace m_place;
    const bool m_mayProbe;
    ServiceWait m_wait;
    ServiceHealth m_health;
    QTimer m_next;
    QTimer m_probeTimer;
    QTcpSocket m_probe;
    bool m_isAsking = false;
    // The port was open at the last try: it is not news, and only the pauses decide when to ask.
    bool m_isPortOpen = true;
};

} // namespace home
