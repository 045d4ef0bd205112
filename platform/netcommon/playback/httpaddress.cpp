#include "httpaddress.h"

#include "serveraddress.h"

#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSslCertificate>
#include <QSslConfiguration>

namespace netcommon::httpaddress {

namespace {
QUrl checked(const QUrl &url)
{
    const bool web = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    return url.isValid() && web && !url.host().isEmpty() ? url : QUrl();
}

// Trusts what the client library trusts. Read once: a change of the configuration counts from the next start.
const QSslConfiguration &trusted()
{
    static const QSslConfiguration configuration = [] {
        QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
        const QString authority = configuredAuthority();
        if (!authority.isEmpty())
            tls.setCaCertificates(QSslCertificate::fromPath(authority));
        return tls;
    }();
    return configuration;
}

} // namespace

QUrl parse(const QByteArray &text)
{
    return checked(QUrl::fromEncoded(text.trimmed(), QUrl::TolerantMode));
}

QUrl redirected(const QUrl &from, const QByteArray &location)
{
    if (location.isEmpty())
        return {};
    const QUrl to = checked(from.resolved(QUrl::fromEncoded(location, QUrl::TolerantMode)));
    const bool lessSafe = from.scheme() == QLatin1String("https") && to.scheme() != QLatin1String("https");
    return lessSafe ? QUrl() : to;
}

bool isRedirect(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

QNetworkRequest request(const QUrl &address)
{
    QNetworkRequest request(address);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setRawHeader("Accept-Encoding", "identity"); // or Qt unpacks, and byte counts mean nothing
    request.setRawHeader("User-Agent", "Velmora");
    if (address.scheme() == QLatin1String("https"))
        request.setSslConfiguration(trusted());
    return request;
}

void drop(QNetworkReply *reply, QObject *listener)
{
    reply->disconnect(listener);
    QMetaObject::invokeMethod(
        reply,
        [reply] {
            reply->abort();
            delete reply; // at once: an error that is on its way to it would meet an aborted reply
        },
        Qt::QueuedConnection);
}

} // namespace netcommon::httpaddress
