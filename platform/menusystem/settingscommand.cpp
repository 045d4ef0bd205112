#include "settingscommand.h"

#include "platform/shared/devicesettings.h"

#include <cstdio>

namespace menusystem {

using platform::DeviceSetting;
using platform::DeviceSettings;

bool isSettingCommand(const QStringList &words)
{
    const QString command = words.value(0);
    return (command == QLatin1String("get") && words.size() == 2) ||
           (command == QLatin1String("set") && words.size() == 3) ||
           (command == QLatin1String("settings") && words.size() == 1);
}

int runSettingsCommand(const QStringList &words)
{
    DeviceSettings settings;
    const QString command = words.value(0);
    const QString key = words.value(1);
    QString reason;
    if (command == QLatin1String("settings")) {
        std::printf("# %s\n", qPrintable(settings.file()));
        for (const DeviceSetting &setting : DeviceSettings::table())
            std::printf("%-22s = %-12s # %s; %s\n", setting.key,
                        qPrintable(DeviceSettings::toText(settings.value(setting.key))), setting.meaning,
                        qPrintable(DeviceSettings::range(setting)));
        return 0;
    }
    if (command == QLatin1String("set") && settings.set(key, words.value(2), &reason))
        return 0;
    const DeviceSetting *setting = DeviceSettings::find(key);
    if (command == QLatin1String("get") && setting) {
        std::printf("%s\n", qPrintable(DeviceSettings::toText(settings.value(setting->key))));
        return 0;
    }
    if (reason.isEmpty())
        reason = QStringLiteral("there is no setting \"%1\"").arg(key);
    std::fprintf(stderr, "velmora-menu: %s\n", qPrintable(reason));
    return 1;
}

} // namespace menusystem
