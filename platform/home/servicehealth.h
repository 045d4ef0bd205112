#pragma once

#include "platform/shared/devicesettings.h"

#include <QNetworkAccessManager>
#include <QObject>
#include <QPointer>
#include <QString>

class QNetworkReply;

namespace home {

// Where the service is and how to reach it, as libvelmora_ws is configured for the radio.
struct ServicePlace {
    QString address = {}; // empty: none is configured
    QString caFile = {};  // empty: the system's certificates
    bool isFixed = false; // the environment names the address: the device's settings do not count
};
ServicePlace configuredService(const platform::DeviceSettings &settings);

// Asks a service's health address. GUI thread.
class ServiceHealth : public QObject {
    Q_OBJECT
public:
    enum class Result {
        Healthy,
        NoAddress,    // none is configured, or it is no address
        UnknownHost,  // no name server knows it
        Unreachable,  // nobody answers, or not in time
        NotTrusted,   // its certificate is not valid
        Refused,      // it answers with an error
        OtherProgram, // what answers is not the service
    };
    explicit ServiceHealth(QObject *parent);

    // Replaces a question under way. answered() always follows, from the event loop.
    void ask(const ServicePlace &place);
    // One sentence for people.
    static QString wordsFor(Result result);

signals:
    void answered(home::ServiceHealth::Result result);

private:
    void finish();

    QNetworkAccessManager m_network;
    QPointer<QNetworkReply> m_reply; // under way
};

// What a finished answer means. Free of the network for tests: `error` as QNetworkReply::error(), `body` its first
// kilobytes.
ServiceHealth::Result resultOf(int error, int httpStatus, const QByteArray &body);

} // namespace home
