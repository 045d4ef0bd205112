#pragma once

#include "pane.h"
#include "platform/shared/devicesettings.h"
#include "usbstick.h"

#include <QDir>

namespace home {

// Versions, licences, and the reports of what went wrong.
class AboutPane : public Pane {
    Q_OBJECT
public:
    AboutPane(const QDBusConnection &bus, const platform::DeviceSettingsWatch *settings, QObject *parent);

    void open() override;

    // The newest first. `velmora/reports` in the user's state folder.
    static QStringList reports();
    // Writes everything that helps to find a fault into a new file in `folder`. Returns its path; empty, with a reason,
    // when it cannot be written whole.
    QString writeReport(const QDir &folder, QString *reason) const;

private:
    void save();
    void saveTo(const QDir &folder);

    const platform::DeviceSettingsWatch *const m_settings;
    UsbStick m_stick;
    QString m_result; // of saving, until the stick is released
    bool m_isSaving = false;
};

} // namespace home
