#pragma once

#include "settingpane.h"
#include "timezone.h"

namespace home {

// Language and region, with the time zone: first its area, then the place.
class LanguagePane : public SettingPane {
    Q_OBJECT
public:
    LanguagePane(const QDBusConnection &bus, platform::DeviceSettingsWatch *settings, QObject *parent);

    void open() override;
    int depth() const override { return !m_isZoneOpen ? 0 : m_area.isEmpty() ? 1 : 2; }
    bool goBack() override;

protected:
    QList<PaneRow> makeRows() override;

private:
    QList<PaneRow> zoneRows();
    void showZones(bool isOpen, const QString &area);

    TimeZone m_zone;
    bool m_isZoneOpen = false;
    QString m_area; // with m_isZoneOpen; empty: the areas are shown
};

} // namespace home
