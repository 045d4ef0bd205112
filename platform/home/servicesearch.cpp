#include "servicesearch.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <algorithm>

namespace home {

namespace {

constexpr int mostServices = 20;
constexpr int anyCard = -1, anyProtocol = -1; // of Avahi
const QString avahi = QStringLiteral("org.freedesktop.Avahi");
const QString server = QStringLiteral("org.freedesktop.Avahi.Server");
const QString browserInterface = QStringLiteral("org.freedesktop.Avahi.ServiceBrowser");
const QString announced = QStringLiteral("_velmora._tcp");

} // namespace

ServiceSearch::ServiceSearch(const QDBusConnection &bus, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
{
}

ServiceSearch::~ServiceSearch()
{
    stop();
}

// The signals go to the program that browses only, and the first ones may come before the answer that names the
// browser: hence for every path.
void ServiceSearch::listen(bool isWanted)
{
    for (const auto &[name, slot] : {std::pair("ItemNew", SLOT(add(int, int, QString, QString, QString, uint))),
                                     std::pair("ItemRemove", SLOT(remove(int, int, QString, QString, QString, uint)))})
        if (isWanted)
            m_bus.connect(avahi, {}, browserInterface, QLatin1String(name), this, slot);
        else
            m_bus.disconnect(avahi, {}, browserInterface, QLatin1String(name), this, slot);
}

void ServiceSearch::start()
{
    stop();
    m_isWanted = true;
    listen(true);
    QDBusMessage order =
        QDBusMessage::createMethodCall(avahi, QStringLiteral("/"), server, QStringLiteral("ServiceBrowserNew"));
    order << anyCard << anyProtocol << announced << QStringLiteral("local") << 0u;
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(order), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, round = m_round] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
        if (reply.isError())
            return;
        if (round == m_round)
            m_browser = reply.value().path();
        else
            free(reply.value().path());
    });
}

void ServiceSearch::stop()
{
    ++m_round;
    if (!m_isWanted)
        return;
    m_isWanted = false;
    listen(false);
    if (!m_browser.isEmpty())
        free(m_browser);
    m_browser.clear();
    m_entries.clear();
}

void ServiceSearch::free(const QString &browser)
{
    m_bus.asyncCall(QDBusMessage::createMethodCall(avahi, browser, browserInterface, QStringLiteral("Free")));
}

void ServiceSearch::add(int card, int protocol, const QString &name, const QString &type, const QString &domain,
                        uint /*flags*/)
{
    if (type != announced || (!m_entries.contains(name) && m_entries.size() >= mostServices))
        return;
    m_entries[name].places.insert({card, protocol});
    QDBusMessage order =
        QDBusMessage::createMethodCall(avahi, QStringLiteral("/"), server, QStringLiteral("ResolveService"));
    order << card << protocol << name << type << domain << protocol << 0u; // an address of the same protocol
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(order), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, name, round = m_round] {
        watcher->deleteLater();
        const QDBusMessage reply = watcher->reply();
        const auto entry = m_entries.find(name);
        if (round != m_round || entry == m_entries.end() || reply.type() != QDBusMessage::ReplyMessage)
            return;
        // interface, protocol, name, type, domain, host, its protocol, address, port, TXT, flags
        const QVariantList all = reply.arguments();
        auto service = foundService(name, all.value(5).toString(), all.value(7).toString(), all.value(8).toInt(),
                                    qdbus_cast<QList<QByteArray>>(all.value(9)), ownNetworks());
        // One that is at several places of the network keeps the first, or the one within this machine. IPv4 comes
        // before IPv6: its addresses are short enough to compare and to type.
        const auto isIpv6 = [](const FoundService &found) { return found.address.contains(u':'); };
        if (!service || (entry->service && !service->address.startsWith(QLatin1String("127.")) &&
                         !(isIpv6(*entry->service) && !isIpv6(*service))))
            return;
        entry->service = service;
        emit changed();
    });
}

void ServiceSearch::remove(int card, int protocol, const QString &name, const QString & /*type*/,
                           const QString & /*domain*/, uint /*flags*/)
{
    const auto entry = m_entries.find(name);
    if (entry == m_entries.end() || !entry->places.remove({card, protocol}) || !entry->places.isEmpty())
        return;
    m_entries.erase(entry);
    emit changed();
}

QList<FoundService> ServiceSearch::found() const
{
    QList<FoundService> all;
    for (const Entry &entry : m_entries)
        if (entry.service)
            all += *entry.service;
    std::sort(all.begin(), all.end(), [](const FoundService &a, const FoundService &b) {
        return std::pair(a.name, a.address) < std::pair(b.name, b.address);
    });
    return all;
}

} // namespace home
