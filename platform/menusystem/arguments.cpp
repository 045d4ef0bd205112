#include "arguments.h"

#include "menumessages.h"
#include "remotekeytable.h"
#include "settingscommand.h"

#include <QDir>

namespace menusystem {

namespace {

namespace menu = netcommon::menu;

std::optional<Arguments> refused(QString *reason, const QString &text)
{
    *reason = text;
    return std::nullopt;
}

bool readSwitch(const QString &word, const char *on, const char *off, std::uint32_t *value)
{
    *value = word == QLatin1String(on) ? 1 : 0;
    return *value || word == QLatin1String(off);
}

// Empty for a word that is not understood.
std::optional<Request> volumeRequest(const QString &word)
{
    using menu::VolumeOrder;
    const auto request = [](VolumeOrder order, std::uint32_t percent = 0) {
        return Request{menu::MessageType::Volume, percent, std::uint32_t(order), {}};
    };
    if (word.isEmpty())
        return request(VolumeOrder::Tell);
    for (const auto &[name, order] : {std::pair("up", VolumeOrder::Up), std::pair("down", VolumeOrder::Down),
                                      std::pair("mute", VolumeOrder::ToggleMute)})
        if (word == QLatin1String(name))
            return request(order);
    bool isNumber = false;
    const uint percent = word.toUInt(&isNumber);
    return isNumber && percent <= 100 ? std::optional(request(VolumeOrder::Set, percent)) : std::nullopt;
}

// The same.
std::optional<Request> sleepRequest(const QString &word)
{
    using menu::SleepOrder;
    const auto request = [](SleepOrder order, std::uint32_t minutes = 0) {
        return Request{menu::MessageType::Sleep, minutes, std::uint32_t(order), {}};
    };
    if (word.isEmpty())
        return request(SleepOrder::Tell);
    if (word == QLatin1String("track"))
        return request(SleepOrder::Track);
    if (word == QLatin1String("off"))
        return request(SleepOrder::Off);
    bool isNumber = false;
    const uint minutes = word.toUInt(&isNumber);
    return isNumber && minutes >= menu::leastSleepMinutes && minutes <= menu::mostSleepMinutes
               ? std::optional(request(SleepOrder::Minutes, minutes))
               : std::nullopt;
}

std::optional<Arguments> parseCommand(Arguments arguments, QStringList words, QString *reason)
{
    const QString command = words.takeFirst();
    const auto one = [&](const Request &request) {
        arguments.requests.push_back(request);
        return arguments;
    };
    std::uint32_t value = 0;
    if (command == QLatin1String("key") && !words.isEmpty()) {
        while (!words.isEmpty()) {
            const QString name = words.takeFirst();
            if (name == QLatin1String("text") && !words.isEmpty()) {
                arguments.requests.push_back({menu::MessageType::Text, 0, 0, words.takeFirst().toUtf8()});
                continue;
            }
            const auto *key = netcommon::keys::keyByName(name);
            if (!key)
                return refused(reason, QStringLiteral("there is no key \"%1\"").arg(name));
            arguments.requests.push_back({menu::MessageType::Key, std::uint32_t(key->key), key->isTyped ? 1u : 0u, {}});
        }
        return arguments;
    }
    if (command == QLatin1String("screensaver") && words.size() == 1 && readSwitch(words[0], "on", "off", &value))
        return one({menu::MessageType::ScreenSaver, value, 0, {}});
    if (command == QLatin1String("network") && words.size() == 1 && readSwitch(words[0], "down", "up", &value))
        return one({menu::MessageType::Network, value, 0, {}});
    if (command == QLatin1String("screenshot") && words.size() == 1 && !words[0].isEmpty())
        return one({menu::MessageType::Screenshot, 0, 0, QDir::current().absoluteFilePath(words[0]).toUtf8()});
    if (command == QLatin1String("volume") && words.size() <= 1)
        if (const auto request = volumeRequest(words.value(0)))
            return one(*request);
    if (command == QLatin1String("sleep") && words.size() <= 1)
        if (const auto request = sleepRequest(words.value(0)))
            return one(*request);
    if (command == QLatin1String("exit") && words.isEmpty())
        return one({menu::MessageType::Exit, 0, 0, {}});
    if (command == QLatin1String("status") && words.isEmpty())
        return one({menu::MessageType::Status, 0, 0, {}});
    const QStringList all = QStringList(command) + words;
    if (isSettingCommand(all)) {
        arguments.mode = Arguments::Mode::Settings;
        arguments.settingWords = all;
        return arguments;
    }
    return refused(reason, QStringLiteral("\"%1\" is not understood").arg(all.join(u' ')));
}

bool readSeconds(const QString &word, int *seconds)
{
    bool isNumber = false;
    *seconds = word.toInt(&isNumber);
    return isNumber && *seconds >= 1 && *seconds <= 3600;
}

} // namespace

std::optional<Arguments> parseArguments(const QStringList &all, QString *reason)
{
    Arguments arguments;
    QStringList words = all;
    while (!words.isEmpty() && words.first().startsWith(u'-')) {
        const QString option = words.takeFirst();
        if (option == QLatin1String("--")) {
            if (words.isEmpty())
                return refused(reason, QStringLiteral("the program is missing"));
            arguments.mode = Arguments::Mode::Run;
            arguments.program = words;
            return arguments;
        }
        if (option == QLatin1String("--help") || option == QLatin1String("-h")) {
            arguments.mode = Arguments::Mode::Help;
            return arguments;
        }
        if (option == QLatin1String("--measure-screen")) {
            arguments.mode = Arguments::Mode::MeasureScreen;
            return arguments;
        }
        if (option == QLatin1String("--windowed")) {
            arguments.isWindowed = true;
            continue;
        }
        if (option == QLatin1String("--supervise") || option == QLatin1String("--kiosk")) {
            arguments.isSupervisor = true;
            arguments.isKiosk = arguments.isKiosk || option == QLatin1String("--kiosk");
            continue;
        }
        const QString value = words.isEmpty() ? QString() : words.takeFirst();
        bool isNumber = true;
        if (option == QLatin1String("--socket") && !value.isEmpty()) {
            arguments.socket = QDir::current().absoluteFilePath(value);
        } else if (option == QLatin1String("--home") && !value.isEmpty()) {
            arguments.home = QDir::current().absoluteFilePath(value);
        } else if (option == QLatin1String("--scale") && !value.isEmpty()) {
            if (value != QLatin1String("auto"))
                arguments.scale = value.toDouble(&isNumber);
            if (!isNumber || arguments.scale.value_or(1) < 1 || arguments.scale.value_or(1) > 8)
                return refused(reason, QStringLiteral("a scale is auto, or a number from 1 to 8"));
        } else if (option == QLatin1String("--hang-after")) {
            if (!readSeconds(value, &arguments.hangSeconds))
                return refused(reason, QStringLiteral("seconds are a number from 1 to 3600"));
        } else if (option == QLatin1String("--insist-after")) {
            if (!readSeconds(value, &arguments.insistSeconds))
                return refused(reason, QStringLiteral("seconds are a number from 1 to 3600"));
        } else {
            return refused(reason, QStringLiteral("\"%1\" is not understood").arg(option));
        }
    }
    if (words.isEmpty())
        return refused(reason, QStringLiteral("a command is missing"));
    return parseCommand(arguments, words, reason);
}

QString usage()
{
    return QStringLiteral(
               "usage: velmora-menu [--supervise|--kiosk] [--home PROGRAM] [--socket PATH] [--windowed]"
               " [--scale auto|FACTOR] [--hang-after SECONDS] [--insist-after SECONDS] -- PROGRAM [ARGUMENT]...\n"
               "       velmora-menu [--socket PATH] key NAME... | screensaver on|off | network down|up |"
               " exit | status | screenshot FILE.png | volume [0..100|up|down|mute] |"
               " sleep [15..120|track|off]\n"
               "       velmora-menu get KEY | set KEY VALUE | settings\n"
               "key names: %1 text \"LETTERS\"\n")
        .arg(netcommon::keys::allKeyNames());
}

} // namespace menusystem
