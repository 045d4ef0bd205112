#include "servicehealth.h"

#include "serveraddress.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QSslCertificate>
#include <QSslConfiguration>

namespace home {

namespace {

constexpr int answerMs = 5000;
constexpr qint64 maxBodyBytes = 64 * 1024;

} // namespace

ServicePlace configuredService(const platform::DeviceSettings &settings)
{
    ServicePlace place;
    const QString fromEnvironment = qEnvironmentVariable("VELMORA_WS_SERVER").trimmed();
    place.isFixed = !fromEnvironment.isEmpty();
    const QString own = place.isFixed ? QString() : settings.value("service/address").toString();
    place.address = netcommon::serverAddress(place.isFixed ? fromEnvironment : own);
    if (!own.isEmpty())
        place.caFile = settings.value("service/authority").toString();
    if (place.caFile.isEmpty())
        place.caFile = netcommon::configuredAuthority();
    return place;
}

ServiceHealth::ServiceHealth(QObject *parent)
    : QObject(parent)
{
    m_network.setProxy(QNetworkProxy::NoProxy); // nor does the library use one
}

void ServiceHealth::ask(const ServicePlace &place)
{
    if (m_reply) {
        m_reply->disconnect(this);
        m_reply->abort();
        m_reply->deleteLater();
    }
    QUrl url(place.address);
    if (!url.isValid() || url.host().isEmpty() ||
        (url.scheme() != QLatin1String("http") && url.scheme() != QLatin1String("https"))) {
        QMetaObject::invokeMethod(
            this, [this] { emit answered(Result::NoAddress); }, Qt::QueuedConnection);
        return;
    }
    QString path = url.path();
    while (path.endsWith(u'/'))
        path.chop(1);
    url.setPath(path + QStringLiteral("/health"));
    QNetworkRequest request(url);
    request.setTransferTimeout(answerMs);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    if (!place.caFile.isEmpty()) {
        QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
        tls.setCaCertificates(QSslCertificate::fromPath(place.caFile));
        request.setSslConfiguration(tls);
    }
    m_network.clearConnectionCache(); // a kept connection keeps what was trusted when it was made
    m_reply = m_network.get(request);
    connect(m_reply, &QNetworkReply::finished, this, &ServiceHealth::finish);
    connect(m_reply, &QNetworkReply::readyRead, this, [this] {
        if (m_reply->bytesAvailable() > maxBodyBytes)
            m_reply->abort();
    });
}

void ServiceHealth::finish()
{
    QNetworkReply *reply = m_reply;
    m_reply = nullptr;
    reply->deleteLater();
    emit answered(resultOf(reply->error(), reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(),
                           reply->read(maxBodyBytes)));
}

ServiceHealth::Result resultOf(int error, int httpStatus, const QByteArray &body)
{
    using Result = ServiceHealth::Result;
    if (httpStatus == 200) {
        const QJsonObject reply = QJsonDocument::fromJson(body).object();
        const bool isService = reply.value(QStringLiteral("code")).isDouble() &&
                               reply.value(QStringLiteral("data")).toObject().contains(QStringLiteral("status"));
        if (error == QNetworkReply::NoError && isService)
            return reply.value(QStringLiteral("code")).toInt() == 0 ? Result::Healthy : Result::Refused;
        return error == QNetworkReply::NoError ? Result::OtherProgram : Result::Unreachable;
    }
    if (httpStatus >= 500)
        return Result::Refused;
    if (httpStatus != 0)
        return Result::OtherProgram;
    switch (error) {
    case QNetworkReply::HostNotFoundError:
        return Result::UnknownHost;
    case QNetworkReply::SslHandshakeFailedError:
        return Result::NotTrusted;
    case QNetworkReply::ProtocolFailure:
    case QNetworkReply::ProtocolUnknownError:
        return Result::OtherProgram;
    default:
        return Result::Unreachable;
    }
}

QString ServiceHealth::wordsFor(Result result)
{
    switch (result) {
    case Result::Healthy:
        return tr("The service answers.");
    case Result::NoAddress:
        return tr("No service is set up. Choose one under Service.");
    case Result::UnknownHost:
        return tr("Nobody knows the name of the service.");
    case Result::Unreachable:
        return tr("The service does not answer.");
    case Result::NotTrusted:
        return tr("The certificate of the service is not valid.");
    case Result::Refused:
        return tr("The service answers with an error.");
    case Result::OtherProgram:
        return tr("What answers at this address is not the service.");
    }
    return {};
}

} // namespace home
