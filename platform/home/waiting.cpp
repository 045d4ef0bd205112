#include "waiting.h"

#include <QNetworkProxy>
#include <QRandomGenerator>
#include <QUrl>

namespace home {

namespace {

constexpr int probeMs = 1000;

} // namespace

Waiting::Waiting(const ServicePlace &place, QObject *parent)
    : QObject(parent)
    , m_place(place)
    , m_mayProbe(isInTheHouse(place.address))
    , m_health(this)
{
    m_next.setSingleShot(true);
    m_probe.setProxy(QNetworkProxy::NoProxy);
    connect(&m_next, &QTimer::timeout, this, &Waiting::askNow);
    connect(&m_probeTimer, &QTimer::timeout, this, &Waiting::probe);
    connect(&m_health, &ServiceHealth::answered, this, &Waiting::answered);
    connect(&m_probe, &QTcpSocket::connected, this, [this] {
        m_probe.abort();
        const bool isNews = !m_isPortOpen;
        m_isPortOpen = true;
        if (!isNews || m_isAsking)
            return;
        m_wait = ServiceWait(); // it may need some seconds more
        askNow();
    });
    connect(&m_probe, &QTcpSocket::errorOccurred, this, [this] { m_isPortOpen = false; });
}

void Waiting::askNow()
{
    m_isAsking = true;
    m_next.stop();
    m_health.ask(m_place);
}

void Waiting::answered(ServiceHealth::Result result)
{
    m_isAsking = false;
    if (result == ServiceHealth::Result::Healthy) {
        m_probeTimer.stop();
        emit healthy();
        return;
    }
    m_next.start(m_wait.nextPause(QRandomGenerator::global()->generateDouble()));
    if (m_mayProbe)
        m_probeTimer.start(probeMs);
    emit failed(result);
}

void Waiting::probe()
{
    if (m_isAsking)
        return;
    if (m_probe.state() != QAbstractSocket::UnconnectedState) // the last try has got no answer in a second
        m_isPortOpen = false;
    m_probe.abort();
    const QUrl url(m_place.address);
    m_probe.connectToHost(url.host(), quint16(url.port(url.scheme() == QLatin1String("https") ? 443 : 80)));
}

} // namespace home
