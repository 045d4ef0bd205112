#include "foundservice.h"

#include "servicewait.h"

#include <QNetworkInterface>
#include <QRegularExpression>

#include <algorithm>

namespace home {

namespace {

constexpr int mostNameLetters = 63; // as in DNS-SD, where they are bytes

// Without what draws nothing, and without what turns the direction of the text around it.
QString readable(const QString &text)
{
    QString kept;
    for (const QChar c : text)
        if (c.isSpace() || c.isPrint() || c.isSurrogate())
            kept += c;
    return kept.simplified().left(mostNameLetters);
}

QString inUrl(const QString &host)
{
    return host.contains(u':') ? u'[' + host + u']' : host;
}

} // namespace

QString FoundService::url(bool isNamed) const
{
    return (isEncrypted ? QStringLiteral("https://") : QStringLiteral("http://")) + inUrl(isNamed ? host : address) +
           u':' + QString::number(port);
}

Networks ownNetworks()
{
    Networks all;
    for (const QNetworkInterface &card : QNetworkInterface::allInterfaces())
        if (!(card.flags() & QNetworkInterface::IsPointToPoint))
            for (const QNetworkAddressEntry &entry : card.addressEntries())
                if (entry.prefixLength() > 0)
                    all += {entry.ip(), entry.prefixLength()};
    return all;
}

std::optional<FoundService> foundService(const QString &name, const QString &host, const QString &address, int port,
                                         const QList<QByteArray> &texts, const Networks &networks)
{
    const bool isEncrypted = texts.contains("tls=1");
    const QHostAddress literal(address);
    const bool isIpv6 = literal.protocol() == QAbstractSocket::IPv6Protocol;
    const bool isUsable = port > 0 && port <= 0xffff && isEncrypted != texts.contains("tls=0") && !literal.isNull() &&
                          !(isIpv6 && literal.isLinkLocal()) &&
                          (isInTheHouse(QStringLiteral("http://") + inUrl(literal.toString())) ||
                           std::any_of(networks.begin(), networks.end(),
                                       [&](const auto &network) { return literal.isInSubnet(network); }));
    if (!isUsable)
        return {};
    static const QRegularExpression localName(QStringLiteral("^[a-z0-9]([a-z0-9-]{0,61}[a-z0-9])?\\.local$"));
    FoundService service{readable(name), host.toLower(), literal.toString(), port, isEncrypted};
    if (!localName.match(service.host).hasMatch())
        service.host.clear();
    if (service.name.isEmpty())
        service.name = service.address;
    return service;
}

} // namespace home
