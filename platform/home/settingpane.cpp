#include "settingpane.h"

namespace home {

using platform::DeviceSettings;

SettingPane::SettingPane(const QString &title, const QString &text, const QList<Choice> &choices,
                         platform::DeviceSettingsWatch *settings, QObject *parent)
    : Pane(title, text, parent)
    , m_usualText(text)
    , m_choices(choices)
    , m_watch(settings)
{
    connect(settings, &platform::DeviceSettingsWatch::changed, this, &SettingPane::refresh);
}

void SettingPane::open()
{
    refresh();
}

bool SettingPane::set(const QString &key, const QString &value)
{
    QString reason;
    const bool isWritten = m_watch->set(key, value, &reason);
    setText(isWritten ? m_usualText : tr("This cannot be changed. %1").arg(reason));
    return isWritten;
}

QList<PaneRow> SettingPane::makeRows()
{
    QList<PaneRow> rows;
    for (const Choice &choice : m_choices) {
        const QString now = DeviceSettings::toText(settings().value(choice.key));
        const QString key = QLatin1String(choice.key);
        if (choice.value.isNull()) {
            const bool isOn = settings().value(choice.key).toBool();
            const QString other = isOn ? QStringLiteral("false") : QStringLiteral("true");
            rows += PaneRow{choice.text, isOn ? tr("on") : tr("off"), false, [=, this] { set(key, other); }};
        } else {
            rows += PaneRow{choice.text, {}, now == choice.value, [=, this] { set(key, choice.value); }};
        }
    }
    return rows;
}

} // namespace home
