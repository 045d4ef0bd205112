#include "servicewait.h"

#include <QHostAddress>
#include <QUrl>

#include <algorithm>
#include <iterator>

namespace home {

namespace {

constexpr int pausesMs[] = {1000, 2000, 5000, 10000, 15000};
constexpr double jitter = 0.2;

} // namespace

int ServiceWait::nextPause(double chance)
{
    const int pause = pausesMs[std::min(m_asked, int(std::size(pausesMs)) - 1)];
    ++m_asked;
    return int(pause * (1 + jitter * (2 * std::clamp(chance, 0.0, 1.0) - 1)));
}

bool isInTheHouse(const QString &address)
{
    const QString host = QUrl(address).host().toLower();
    const QHostAddress literal(host);
    if (literal.isNull()) {
        for (const char *ending : {".localhost", ".local", ".lan", ".internal", ".home.arpa"})
            if (host.endsWith(QLatin1String(ending)))
                return true;
        return !host.isEmpty() && !host.contains(u'.');
    }
    for (const char *network :
         {"127.0.0.0/8", "10.0.0.0/8", "172.16.0.0/12", "192.168.0.0/16", "169.254.0.0/16", "fc00::/7", "fe80::/10"})
        if (literal.isInSubnet(QHostAddress::parseSubnet(QLatin1String(network))))
            return true;
    return literal.isLoopback();
}

} // namespace home
