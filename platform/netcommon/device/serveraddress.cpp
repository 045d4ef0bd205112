#include "serveraddress.h"

#include <QFile>
#include <QSysInfo>
#include <QUrl>

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>

namespace netcommon {

namespace {

// The normalised text of an IP address; empty for a host name.
QString canonical(const QString &host)
{
    unsigned char bytes[sizeof(in6_addr)];
    char text[INET6_ADDRSTRLEN];
    const QByteArray latin = host.toLatin1();
    for (const int family : {AF_INET, AF_INET6})
        if (::inet_pton(family, latin.constData(), bytes) == 1 && ::inet_ntop(family, bytes, text, sizeof text))
            return QString::fromLatin1(text);
    return {};
}

bool isOwnAddress(const QString &address)
{
    ifaddrs *list = nullptr;
    if (::getifaddrs(&list) != 0)
        return false;
    bool isOwn = false;
    for (const ifaddrs *entry = list; entry && !isOwn; entry = entry->ifa_next) {
        if (!entry->ifa_addr)
            continue;
        char text[INET6_ADDRSTRLEN] = "";
        if (entry->ifa_addr->sa_family == AF_INET)
            ::inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in *>(entry->ifa_addr)->sin_addr, text, sizeof text);
        else if (entry->ifa_addr->sa_family == AF_INET6)
            ::inet_ntop(AF_INET6, &reinterpret_cast<const sockaddr_in6 *>(entry->ifa_addr)->sin6_addr, text,
                        sizeof text);
        isOwn = address == QLatin1String(text);
    }
    ::freeifaddrs(list);
    return isOwn;
}

} // namespace

QStringList configurationFiles()
{
    const QString named = qEnvironmentVariable("VELMORA_WS_CONF");
    if (!named.isEmpty())
        return {named};
    return {QStringLiteral("/usr/share/velmora/ws.conf"), QStringLiteral("/etc/velmora/ws.conf")};
}

QString configuredValue(const QString &name, const QStringList &files)
{
    // Read as the library does: one "name = value" on each line; the last line with a name counts.
    QString value;
    for (const QString &path : files) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const auto lines = QString::fromUtf8(file.read(64 * 1024)).split(QLatin1Char('\n'));
        for (const QString &line : lines)
            if (line.section(QLatin1Char('='), 0, 0).trimmed() == name)
                value = line.section(QLatin1Char('='), 1).trimmed();
    }
    return value;
}

QString configuredAuthority()
{
    const QString file = qEnvironmentVariable("VELMORA_WS_CA_FILE");
    return file.isEmpty() ? configuredValue(QStringLiteral("ca_file")) : file;
}

QString serverAddress(const QString &chosen, const QStringList &files)
{
    const QString address = chosen.trimmed();
    return address.isEmpty() ? configuredValue(QStringLiteral("server"), files) : address;
}

bool isOnThisMachine(const QString &address)
{
    const QString host = QUrl(address).host().toLower();
    if (host.isEmpty())
        return false;
    if (host == QLatin1String("localhost") || host.endsWith(QLatin1String(".localhost")))
        return true;
    const QString literal = canonical(host);
    if (literal.isEmpty())
        return host == QSysInfo::machineHostName().toLower();
    return literal == QLatin1String("::1") || literal.startsWith(QLatin1String("127.")) || isOwnAddress(literal);
}

} // namespace netcommon
