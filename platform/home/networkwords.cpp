#include "networkwords.h"

#include "networkpane.h"
#include "serveraddress.h"

#include <QFile>
#include <QNetworkInterface>

namespace home {

namespace {

bool hasDefaultRoute()
{
    // The destination is the second column in the one, the first in the other.
    QFile four(QStringLiteral("/proc/net/route"));
    if (four.open(QIODevice::ReadOnly))
        for (const QByteArray &line : four.readAll().split('\n'))
            if (line.split('\t').value(1) == "00000000")
                return true;
    QFile six(QStringLiteral("/proc/net/ipv6_route"));
    if (six.open(QIODevice::ReadOnly))
        for (const QByteArray &line : six.readAll().split('\n'))
            if (line.startsWith(QByteArray(32, '0') + " 00 ") && !line.trimmed().endsWith(" lo"))
                return true;
    return false;
}

} // namespace

QString networkWords(const NetworkFacts &facts)
{
    using Result = ServiceHealth::Result;
    if (facts.service == Result::Healthy)
        return NetworkPane::tr("All is well: the service answers.");
    if (facts.service == Result::NoAddress)
        return ServiceHealth::wordsFor(facts.service);
    if (facts.isServiceHere)
        return NetworkPane::tr("The service runs on this device, without the network. %1")
            .arg(ServiceHealth::wordsFor(facts.service));
    if (!facts.hasCard)
        return NetworkPane::tr("This device has no network card.");
    if (!facts.isConnected)
        return NetworkPane::tr("No cable is plugged in, and no Wi-Fi is connected.");
    if (!facts.hasAddress)
        return NetworkPane::tr(
            "The device is connected, but the router gives it no address. Restarting the router may help.");
    if (!facts.hasRoute)
        return NetworkPane::tr("The router leads to no other network, and the service is not found in this one.");
    if (facts.service == Result::UnknownHost)
        return NetworkPane::tr(
            "The network is there, but nobody knows the name of the service. Either the name is wrong, or the "
            "internet is away.");
    if (facts.service == Result::Unreachable)
        return NetworkPane::tr(
            "The network is there, but the service does not answer. Either it does not run, or the internet is "
            "away.");
    return NetworkPane::tr("The network is there. %1").arg(ServiceHealth::wordsFor(facts.service));
}

NetworkFacts networkFacts(const QString &serviceAddress)
{
    NetworkFacts facts;
    facts.isServiceHere = netcommon::isOnThisMachine(serviceAddress);
    for (const QNetworkInterface &card : QNetworkInterface::allInterfaces()) {
        if (card.flags() & QNetworkInterface::IsLoopBack)
            continue;
        facts.hasCard = true;
        if (!(card.flags() & QNetworkInterface::IsRunning))
            continue;
        facts.isConnected = true;
        for (const QNetworkAddressEntry &entry : card.addressEntries())
            facts.hasAddress |= !entry.ip().isLinkLocal();
    }
    facts.hasRoute = hasDefaultRoute();
    return facts;
}

} // namespace home
