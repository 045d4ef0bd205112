#include "servicecheck.h"

#include "serveraddress.h"

#include <QHostInfo>
#include <QNetworkProxy>
#include <QSslConfiguration>
#include <QSslKey>
#include <QUrl>

#include <utility>

namespace home {

namespace {

constexpr int limitMs = 5000;
constexpr int httpsPort = 443;

} // namespace

ServiceCheck::ServiceCheck(QObject *parent)
    : QObject(parent)
    , m_health(this)
{
    m_limit.setSingleShot(true);
    m_limit.setInterval(limitMs);
    connect(&m_limit, &QTimer::timeout, this, [this] { end(ServiceHealth::Result::Unreachable); });
    connect(&m_health, &ServiceHealth::answered, this, &ServiceCheck::take);
}

void ServiceCheck::start(const FoundService &service)
{
    if (service.host.isEmpty()) {
        start(service.url(false));
        return;
    }
    stop();
    m_places = {service.url(false)};
    // Only a system that asks the network for such names can use one later.
    m_lookup = QHostInfo::lookupHost(service.host, this, [this, service](const QHostInfo &info) {
        if (info.lookupId() != m_lookup)
            return;
        m_lookup = -1;
        if (info.addresses().contains(QHostAddress(service.address)))
            m_places.prepend(service.url(true));
        askNext();
    });
}

void ServiceCheck::start(const QString &address)
{
    stop();
    m_places = {address};
    askNext();
}

void ServiceCheck::stop()
{
    if (m_lookup >= 0)
        QHostInfo::abortHostLookup(m_lookup);
    m_lookup = -1;
    m_limit.stop();
    if (m_socket) {
        m_socket->disconnect(this);
        m_socket.release()->deleteLater(); // this may be a slot of it
    }
    m_isAsking = false;
    m_places.clear();
    m_authority.reset();
    m_outcome = Outcome();
}

void ServiceCheck::askNext()
{
    m_isAsking = true;
    m_health.ask({m_places.first(), m_authority ? m_authority->fileName() : netcommon::configuredAuthority()});
}

void ServiceCheck::take(ServiceHealth::Result result)
{
    using Result = ServiceHealth::Result;
    if (!std::exchange(m_isAsking, false)) // stopped
        return;
    if (result == Result::NotTrusted && !m_authority) {
        lookAtCertificate();
        return;
    }
    const bool isWrongName = result == Result::NotTrusted || result == Result::UnknownHost;
    if (isWrongName && m_places.size() > 1) {
        m_places.removeFirst();
        askNext();
        return;
    }
    end(result);
}

void ServiceCheck::lookAtCertificate()
{
    m_socket = std::make_unique<QSslSocket>();
    m_socket->setProxy(QNetworkProxy::NoProxy);
    m_socket->setPeerVerifyMode(QSslSocket::VerifyNone); // this only looks; the next question verifies
    connect(m_socket.get(), &QSslSocket::errorOccurred, this, [this] { end(ServiceHealth::Result::NotTrusted); });
    connect(m_socket.get(), &QSslSocket::encrypted, this, [this] {
        m_limit.stop();
        const QList<QSslCertificate> chain = m_socket->sslConfiguration().peerCertificateChain();
        const QSslCertificate anchor = anchorOf(chain);
        m_socket->disconnect(this);
        m_socket.release()->deleteLater();
        m_authority = std::make_unique<QTemporaryFile>();
        const QByteArray pem = anchor.toPem();
        if (anchor.isNull() || !m_authority->open() || m_authority->write(pem) != pem.size() || !m_authority->flush()) {
            end(ServiceHealth::Result::NotTrusted);
            return;
        }
        m_outcome.fingerprint =
            QString::fromLatin1(chain.first().digest(QCryptographicHash::Sha256).toHex(':').toUpper());
        m_outcome.authority = pem;
        askNext();
    });
    m_limit.start();
    const QUrl place(m_places.last()); // of a found service the one without its name, which may be anybody's
    m_socket->connectToHostEncrypted(place.host(), quint16(place.port(httpsPort)));
}

void ServiceCheck::end(ServiceHealth::Result result)
{
    Outcome outcome = m_outcome;
    outcome.result = result;
    outcome.address = m_places.value(0);
    stop();
    emit done(outcome);
}

QSslCertificate ServiceCheck::anchorOf(const QList<QSslCertificate> &chain)
{
    if (chain.isEmpty() || !chain.last().isSelfSigned())
        return QSslCertificate();
    // The person compares the first certificate, and its signature is to say whose the last one is. That holds where
    // nobody can make another key that fits the same signature: with a key on the named curve P-256, as services make
    // theirs, and not for instance with RSA.
    static const QByteArray p256 = QByteArray::fromHex("3059301306072a8648ce3d020106082a8648ce3d03010703420004");
    if (chain.size() > 1 && (chain.size() != 2 || !chain.last().publicKey().toDer().startsWith(p256)))
        return QSslCertificate();
    return chain.last();
}

} // namespace home
