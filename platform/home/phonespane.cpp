#include "phonespane.h"

#include "serveraddress.h"
#include "servicehealth.h"

#include <QNetworkInterface>
#include <QNetworkProxy>
#include <QUrl>

namespace home {

PhonesPane::PhonesPane(const platform::DeviceSettingsWatch *settings, QObject *parent)
    : Pane(tr("Phones"), {}, parent)
    , m_settings(settings)
{
    m_probe.setProxy(QNetworkProxy::NoProxy);
    // This device may reach the service unencrypted where others must not.
    connect(&m_probe, &QTcpSocket::connected, this, [this] {
        m_probe.write("GET /health HTTP/1.1\r\nHost: " + QUrl(m_service).host().toLatin1() +
                      "\r\nConnection: close\r\n\r\n");
    });
    connect(&m_probe, &QTcpSocket::readyRead, this, [this] { found(m_probe.peek(5) == "HTTP/"); });
    connect(&m_probe, &QTcpSocket::errorOccurred, this, [this](QAbstractSocket::SocketError error) {
        if (error == QAbstractSocket::RemoteHostClosedError) // without an answer: it expects TLS
            found(false);
        else
            tryNext();
    });
}

void PhonesPane::open()
{
    m_service = configuredService(m_settings->settings()).address;
    if (m_service.isEmpty())
        return setText(ServiceHealth::wordsFor(ServiceHealth::Result::NoAddress));
    if (!netcommon::isOnThisMachine(m_service))
        return show(m_service);
    m_hosts.clear();
    for (const QHostAddress &address : QNetworkInterface::allAddresses())
        if (!address.isLoopback() && !address.isLinkLocal())
            m_hosts += address.toString();
    tryNext();
}

void PhonesPane::close()
{
    m_hosts.clear();
    m_probe.abort();
}

void PhonesPane::tryNext()
{
    if (m_hosts.isEmpty()) {
        setRows({});
        return setText(tr("The service runs on this device and only for it. To reach it from a telephone, start it so "
                          "that it listens in the home network; its manual says how."));
    }
    m_trying = m_hosts.takeFirst();
    const QUrl url(m_service);
    m_probe.abort();
    m_probe.connectToHost(m_trying, quint16(url.port(url.scheme() == QLatin1String("https") ? 443 : 80)));
}

void PhonesPane::found(bool isPlain)
{
    m_probe.abort();
    QUrl url(m_service);
    url.setScheme(isPlain ? QStringLiteral("http") : QStringLiteral("https"));
    url.setHost(m_trying);
    show(url.toString());
}

void PhonesPane::show(const QString &address)
{
    setText(tr("Open this address in the browser of a telephone in the same network: to link a radio, to manage your "
               "account, or to use the telephone as a remote control and keyboard."));
    setRows({PaneRow{address}});
}

} // namespace home
