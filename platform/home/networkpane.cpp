#include "networkpane.h"

#include "networkwords.h"

#include <QFile>
#include <QNetworkInterface>

namespace home {

namespace {

constexpr int againMs = 10000;
constexpr int shortestPassword = 8; // of WPA

} // namespace

NetworkPane::NetworkPane(const platform::DeviceSettingsWatch *settings, const QDBusConnection &bus, QObject *parent)
    : Pane(tr("Network"), {}, parent)
    , m_settings(settings)
    , m_health(this)
    , m_wifi(bus, this)
{
    m_again.setInterval(againMs);
    connect(&m_again, &QTimer::timeout, this, &NetworkPane::refresh);
    connect(&m_wifi, &Wifi::changed, this, &NetworkPane::showRows);
    connect(&m_wifi, &Wifi::connected, this, [this](const QByteArray &name) {
        m_isConnecting = false;
        setText(tr("Connected to %1.").arg(QString::fromUtf8(name)));
        refresh();
    });
    connect(&m_wifi, &Wifi::failed, this, [this](const QString &why) {
        m_isConnecting = false;
        setText(tr("This Wi-Fi cannot be used: the password is wrong, or it is too far away. %1").arg(why));
    });
    connect(&m_health, &ServiceHealth::answered, this, [this](ServiceHealth::Result result) {
        NetworkFacts facts = networkFacts(configuredService(m_settings->settings()).address);
        facts.service = result;
        if (!m_isConnecting)
            setText(networkWords(facts));
    });
}

void NetworkPane::open()
{
    setText(tr("Looking at the network..."));
    refresh();
    m_wifi.look();
    m_again.start();
}

void NetworkPane::close()
{
    m_again.stop();
}

// Asks again: addresses come and go.
void NetworkPane::refresh()
{
    showRows();
    m_health.ask(configuredService(m_settings->settings()));
    if (m_wifi.isThere() && !m_isConnecting)
        m_wifi.look();
}

void NetworkPane::showRows()
{
    QList<PaneRow> rows;
    for (const QNetworkInterface &card : QNetworkInterface::allInterfaces()) {
        const bool isUp = (card.flags() & QNetworkInterface::IsRunning) != 0;
        const bool isReal = QFile::exists(QStringLiteral("/sys/class/net/%1/device").arg(card.name()));
        if ((card.flags() & QNetworkInterface::IsLoopBack) || (!isUp && !isReal))
            continue;
        QStringList addresses;
        for (const QNetworkAddressEntry &entry : card.addressEntries())
            if (!entry.ip().isLinkLocal())
                addresses += entry.ip().toString();
        rows += PaneRow{card.humanReadableName(), !isUp                 ? tr("not connected")
                                                  : addresses.isEmpty() ? tr("no address")
                                                                        : addresses.join(QStringLiteral(", "))};
    }
    for (const Wifi::Network &network : m_wifi.networks())
        rows += PaneRow{QString::fromUtf8(network.name),
                        (network.isSecured ? tr("%1 percent") : tr("%1 percent, open")).arg(network.strength),
                        network.isConnected, [this, network] { choose(network); }};
    setRows(rows);
}

void NetworkPane::choose(const Wifi::Network &network)
{
    if (network.isConnected || m_isConnecting)
        return;
    if (!network.isSecured)
        return connectTo(network, {});
    emit asks(
        {tr("Password of %1").arg(QString::fromUtf8(network.name)), {}, true, [this, network](const QString &password) {
             if (password.size() < shortestPassword)
                 setText(tr("A Wi-Fi password has at least %1 characters.").arg(shortestPassword));
             else
                 connectTo(network, password);
         }});
}

void NetworkPane::connectTo(const Wifi::Network &network, const QString &password)
{
    m_isConnecting = true;
    setText(tr("Connecting to %1...").arg(QString::fromUtf8(network.name)));
    m_wifi.connectTo(network, password);
}

} // namespace home
