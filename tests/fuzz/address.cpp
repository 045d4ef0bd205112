// Addresses of services, media and proxies' callers.
#include "platform/netcommon/device/serveraddress.h"
#include "platform/netcommon/playback/httpaddress.h"
#include "platform/ws/webaddress.h"
#include "scratchfile.h"
#include "server/http/peers.h"

#include <QUrl>

#include <strings.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string text(reinterpret_cast<const char *>(data), size);
    const std::string service = velmora::ws::serviceAddress(text);
    fuzz::require(service.empty() || (::strncasecmp(service.c_str(), "http", 4) == 0 && service.back() != '/'));
    velmora::ws::isWebAddress(text);

    const QByteArray bytes(text.data(), qsizetype(text.size()));
    const QUrl media = netcommon::httpaddress::parse(bytes);
    fuzz::require(!media.isValid() ||
                  ((media.scheme() == QLatin1String("http") || media.scheme() == QLatin1String("https")) &&
                   !media.host().isEmpty()));
    const QUrl from(QStringLiteral("https://radio.example/media/a?b=c"));
    const QUrl target = netcommon::httpaddress::redirected(from, bytes);
    fuzz::require(!target.isValid() || target.scheme() == QLatin1String("https"));
    netcommon::isOnThisMachine(QString::fromUtf8(bytes));

    using namespace velmora::server::http;
    if (const auto address = normalAddress(text)) {
        fuzz::require(normalAddress(*address) == address);
        networkOf(*address);
    }
    const TrustedProxies proxies({"127.0.0.1", "10.0.0.1"});
    fuzz::require(proxies.callerBehind("192.0.2.1", text) == "192.0.2.1"); // not trusted: not believed
    const std::string caller = proxies.callerBehind("127.0.0.1", text);
    fuzz::require(caller == "127.0.0.1" || normalAddress(caller) == caller);
    return 0;
}
