#pragma once

#include "pane.h"
#include "platform/shared/devicesettings.h"

#include <QDir>

namespace home {

// Versions, licences, and the reports of what went wrong.
class AboutPane : public Pane {
    Q_OBJECT
public:
    AboutPane(const platform::DeviceSettingsWatch *settings, QObject *parent);

    void open() override;

    // The newest first. `velmora/reports` in the user's state folder.
    static QStringList reports();
    // Writes everything that helps to find a fault into a new file in `folder`. Returns its path; empty, with a reason,
    // when it cannot be written whole.
    QString writeReport(const QDir &folder, QString *reason) const;

private:
    void save();

    const platform::DeviceSettingsWatch *const m_settings;
};

} // namespace home
