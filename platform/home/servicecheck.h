#pragma once

#include "foundservice.h"
#include "servicehealth.h"

#include <QObject>
#include <QSslCertificate>
#include <QSslSocket>
#include <QTemporaryFile>
#include <QTimer>

#include <memory>

namespace home {

// Finds out how a service can be reached and what speaks for it. Decides nothing: a service with a certificate of its
// own is anybody's until a person has compared the fingerprint. GUI thread.
class ServiceCheck : public QObject {
    Q_OBJECT
public:
    struct Outcome {
        ServiceHealth::Result result = ServiceHealth::Result::Unreachable;
        QString address;      // under which it answered
        QString fingerprint;  // SHA-256 of its certificate; empty: the system trusts it, or it has none
        QByteArray authority; // with the fingerprint: what to trust from then on (PEM)
    };
    explicit ServiceCheck(QObject *parent);

    // Replaces a check under way. done() follows.
    void start(const FoundService &service);
    // One whose address was typed: http or https.
    void start(const QString &address);
    void stop();

    // What the chain of a service hangs on, if trust in its first certificate is trust in that: the last one, which has
    // signed itself. Null when the chain has no such end.
    static QSslCertificate anchorOf(const QList<QSslCertificate> &chain);

signals:
    void done(const home::ServiceCheck::Outcome &outcome);

private:
    void askNext();
    void take(ServiceHealth::Result result);
    void lookAtCertificate();
    void end(ServiceHealth::Result result);

    ServiceHealth m_health;
    QTimer m_limit;       // of the look at the certificate
    QStringList m_places; // that have not been tried; the first one is under way
    Outcome m_outcome;
    std::unique_ptr<QSslSocket> m_socket; // while it looks at the certificate
    std::unique_ptr<QTemporaryFile> m_authority;
    bool m_isAsking = false;
    int m_lookup = -1; // of the host's name
};

} // namespace home
