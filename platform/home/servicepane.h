#pragma once

#include "servicehealth.h"
#include "settingpane.h"

namespace home {

// Which service the radio uses.
class ServicePane : public SettingPane {
    Q_OBJECT
public:
    ServicePane(platform::DeviceSettingsWatch *settings, QObject *parent);

    void open() override;
    // What a person types becomes an address: without a scheme it is http in the house and https elsewhere.
    static QString completed(const QString &typed);

protected:
    QList<PaneRow> makeRows() override;

private:
    void test();
    void askForAddress();

    ServiceHealth m_health;
};

} // namespace home
