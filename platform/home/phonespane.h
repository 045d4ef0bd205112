#pragma once

#include "pane.h"
#include "platform/shared/devicesettings.h"

#include <QTcpSocket>

namespace home {

// Where a telephone finds the pages of the service.
class PhonesPane : public Pane {
    Q_OBJECT
public:
    PhonesPane(const platform::DeviceSettingsWatch *settings, QObject *parent);

    void open() override;
    void close() override;

private:
    void show(const QString &address);
    void tryNext();
    // The service answers at the address that is tried. `isPlain`: without TLS.
    void found(bool isPlain);

    const platform::DeviceSettingsWatch *const m_settings;
    // A service on this device is there for telephones only if it listens at an address of the home network, too.
    QTcpSocket m_probe;
    QStringList m_hosts; // own addresses that have not been tried
    QString m_trying;
    QString m_service;
};

} // namespace home
