#pragma once

#include "pane.h"
#include "platform/shared/devicesettings.h"
#include "servicehealth.h"
#include "wifi.h"

#include <QTimer>

namespace home {

// The way to the service: addresses, signal, what is wrong, and the Wi-Fi networks to choose from.
class NetworkPane : public Pane {
    Q_OBJECT
public:
    // bus: where NetworkManager is asked.
    NetworkPane(const platform::DeviceSettingsWatch *settings, const QDBusConnection &bus, QObject *parent);

    void open() override;
    void close() override;

private:
    void refresh();
    void showRows();
    void choose(const Wifi::Network &network);
    void connectTo(const Wifi::Network &network, const QString &password);

    const platform::DeviceSettingsWatch *const m_settings;
    ServiceHealth m_health;
    Wifi m_wifi;
    QTimer m_again;              // while the pane is open
    bool m_isConnecting = false; // the text tells about it
};

} // namespace home
