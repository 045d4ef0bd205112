#pragma once

#include "pane.h"
#include "platform/shared/devicesettings.h"

namespace home {

// A pane of values of the device's settings to choose from. Several settings may share a pane.
class SettingPane : public Pane {
    Q_OBJECT
public:
    struct Choice {
        QString text;
        const char *key;
        QString value = {}; // as in the file; null: the row turns a flag on and off
    };
    // `settings` outlives the pane.
    SettingPane(const QString &title, const QString &text, const QList<Choice> &choices,
                platform::DeviceSettingsWatch *settings, QObject *parent);

    void open() override;

protected:
    // Writes the setting. False on a failure: the pane's text says why.
    bool set(const QString &key, const QString &value);
    const platform::DeviceSettings &settings() const { return m_watch->settings(); }
    virtual QList<PaneRow> makeRows();
    void refresh() { setRows(makeRows()); }
    void showUsualText() { setText(m_usualText); }

    QString file() const { return m_watch->settings().file(); }

private:
    const QString m_usualText;
    const QList<Choice> m_choices;
    platform::DeviceSettingsWatch *const m_watch;
};

} // namespace home
