#include "platform/shared/devicesettings.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStandardPaths>
#include <QUrl>

#include <fcntl.h>
#include <unistd.h>

namespace platform {

namespace {

using Type = DeviceSetting::Type;

constexpr char deviceFile[] = "/etc/velmora/device.conf";
constexpr qint64 maxFileBytes = 64 * 1024;
constexpr int maxTextLength = 512;
constexpr int lockMs = 3000; // a writer needs milliseconds

// A file that was renamed is under its new name after a power cut only when its folder is on the disk, too. Not every
// file system can do this.
void syncFolder(const QString &folder)
{
    const int descriptor = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
}

// What one line of the file says.
struct Entry {
    int line;        // from 0
    QString key;     // "section/name"; of a heading: "section/"
    QByteArray text; // behind the equals sign; null without one
    bool isHeading = false;
};

std::vector<Entry> entriesOf(const QByteArrayList &lines)
{
    std::vector<Entry> entries;
    QByteArray section = "/"; // of lines above the first heading, which belong to no setting
    for (int number = 0; number < lines.size(); ++number) {
        const QByteArray line = lines[number].trimmed();
        if (line.isEmpty() || line.startsWith('#') || line.startsWith(';'))
            continue;
        if (line.startsWith('[') && line.endsWith(']')) {
            section = line.mid(1, line.size() - 2).trimmed() + '/';
            entries.push_back({number, QString::fromUtf8(section), {}, true});
            continue;
        }
        const auto equals = line.indexOf('=');
        const QByteArray name = equals < 0 ? line : line.left(equals).trimmed();
        const QByteArray text = equals < 0 ? QByteArray() : "" + line.mid(equals + 1).trimmed();
        entries.push_back({number, QString::fromUtf8(section + name), text});
    }
    return entries;
}

std::optional<bool> flagOf(const QString &text)
{
    const QString word = text.toLower();
    for (const char *yes : {"true", "yes", "on", "1"})
        if (word == QLatin1String(yes))
            return true;
    for (const char *no : {"false", "no", "off", "0"})
        if (word == QLatin1String(no))
            return false;
    return std::nullopt;
}

bool isPlainLine(const QString &text)
{
    const auto isControl = [](QChar character) { return character.category() == QChar::Other_Control; };
    return text.size() <= maxTextLength && std::none_of(text.begin(), text.end(), isControl);
}

bool isAddress(const QString &text)
{
    const QUrl url(text, QUrl::StrictMode);
    return url.isValid() && (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https")) &&
           !url.host().isEmpty() && url.userInfo().isEmpty() && !url.hasQuery() && !url.hasFragment();
}

// Empty for a value that the setting cannot have.
std::optional<QVariant> valueOf(const DeviceSetting &setting, const QString &text)
{
    static const QRegularExpression locale(QStringLiteral("^[a-z]{2,3}(_[A-Z]{2})?$"));
    bool isUsable = isPlainLine(text);
    switch (setting.type) {
    case Type::Flag:
        if (const auto flag = flagOf(text))
            return QVariant(*flag);
        return std::nullopt;
    case Type::Number: {
        const int number = text.toInt(&isUsable);
        if (isUsable && number >= setting.least && number <= setting.most)
            return QVariant(number);
        return std::nullopt;
    }
    case Type::Text:
        break;
    case Type::Address:
        isUsable = isUsable && (text.isEmpty() || isAddress(text));
        break;
    case Type::Locale:
        isUsable = text.isEmpty() || locale.match(text).hasMatch();
        break;
    }
    return isUsable ? std::optional<QVariant>(text) : std::nullopt;
}

// False, with a reason, when there is a file that cannot be read whole.
bool readWhole(const QString &path, QByteArray *content, QString *reason)
{
    content->clear();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *reason = file.errorString();
        return !file.exists();
    }
    *content = file.read(maxFileBytes + 1);
    if (file.error() == QFile::NoError && content->size() <= maxFileBytes)
        return true;
    *reason = file.error() == QFile::NoError
                  ? QCoreApplication::translate("platform::DeviceSettings", "more than 64 KiB")
                  : file.errorString();
    content->clear();
    return false;
}

// The file with the setting in it: instead of its last line, at the end of its section, or in a new section.
QByteArray replaced(const QByteArray &content, const QString &key, const QString &value)
{
    QByteArrayList lines = content.split('\n');
    const QString section = key.section(u'/', 0, 0) + u'/';
    const QByteArray line = (key.section(u'/', 1) + QStringLiteral(" = ") + value).trimmed().toUtf8();
    int endOfSection = -1;
    int present = -1;
    for (const Entry &entry : entriesOf(lines)) {
        if (entry.key.left(entry.key.lastIndexOf(u'/') + 1) == section)
            endOfSection = entry.line;
        if (entry.key == key && !entry.text.isNull())
            present = entry.line;
    }
    if (present >= 0) {
        lines[present] = line;
    } else if (endOfSection >= 0) {
        lines.insert(endOfSection + 1, line);
    } else {
        if (lines.last().isEmpty())
            lines.removeLast();
        if (!lines.isEmpty())
            lines += QByteArray();
        lines += '[' + key.section(u'/', 0, 0).toUtf8() + ']';
        lines += line;
    }
    if (!lines.last().isEmpty())
        lines += QByteArray();
    return lines.join('\n');
}

} // namespace

const std::vector<DeviceSetting> &DeviceSettings::table()
{
    static const std::vector<DeviceSetting> settings = {
        {"sound/volume", Type::Number, "100", "volume in percent", 0, 100},
        {"sound/level-tracks", Type::Flag, "true", "all tracks are played equally loud"},
        {"sound/output", Type::Text, "", "audio sink as gst-launch-1.0 describes it; empty: the usual one"},
        {"sound/key-clicks", Type::Flag, "false", "a key clicks"},
        {"screen/saver-minutes", Type::Number, "10", "minutes without a key until the picture dims; 0: never", 0, 240},
        {"screen/larger", Type::Flag, "false",
         "everything is drawn a quarter larger, and the picture follows the focus"},
        {"speech/enabled", Type::Flag, "false", "the focused control is read aloud"},
        {"phones/remote", Type::Flag, "true", "telephones of the radio's accounts may press its keys"},
        {"service/address", Type::Address, "", "the service; empty: as ws.conf says"},
        {"service/authority", Type::Text, "",
         "file with the certificates to trust at that address; empty: as ws.conf says"},
        {"language/locale", Type::Locale, "", "language and region; empty: as the system is set up"},
    };
    return settings;
}

const DeviceSetting *DeviceSettings::find(const QString &key)
{
    for (const DeviceSetting &setting : table())
        if (key == QLatin1String(setting.key))
            return &setting;
    return nullptr;
}

QString DeviceSettings::range(const DeviceSetting &setting)
{
    switch (setting.type) {
    case Type::Flag:
        return QStringLiteral("true or false");
    case Type::Number:
        return QStringLiteral("%1 to %2").arg(setting.least).arg(setting.most);
    case Type::Text:
        return QStringLiteral("one line of text");
    case Type::Address:
        return QStringLiteral("an http or https address, or empty");
    case Type::Locale:
        return QStringLiteral("a locale such as de_DE, or empty");
    }
    return {};
}

QString DeviceSettings::usualFile()
{
    QString chosen = qEnvironmentVariable("VELMORA_DEVICE_CONF");
    if (!chosen.isEmpty())
        return chosen;
    if (QFile::exists(QLatin1String(deviceFile)))
        return QLatin1String(deviceFile);
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QLatin1String("/velmora/device.conf");
}

DeviceSettings::DeviceSettings(const QString &file)
    : m_file(file)
{
    parse({});
    reload();
}

bool DeviceSettings::reload()
{
    QByteArray content;
    QString reason;
    if (!readWhole(m_file, &content, &reason))
        qWarning("DeviceSettings,%s: %s, the defaults count", qPrintable(m_file), qPrintable(reason));
    if (content == m_content)
        return false;
    m_content = content;
    parse(content);
    return true;
}

void DeviceSettings::parse(const QByteArray &content)
{
    for (const DeviceSetting &setting : table())
        m_values[QLatin1String(setting.key)] = *valueOf(setting, QLatin1String(setting.usual));
    for (const Entry &entry : entriesOf(content.split('\n'))) {
        if (entry.isHeading)
            continue;
        const DeviceSetting *setting = entry.text.isNull() ? nullptr : find(entry.key);
        const auto value = setting ? valueOf(*setting, QString::fromUtf8(entry.text)) : std::nullopt;
        if (value)
            m_values[entry.key] = *value;
        else // without the value, which may be a secret in the wrong place
            qWarning("DeviceSettings,%s:%d: %s, left out", qPrintable(m_file), entry.line + 1,
                     setting ? qPrintable(QStringLiteral("%1 is %2").arg(entry.key, range(*setting)))
                             : "not a known setting");
    }
}

QVariant DeviceSettings::value(const char *key) const
{
    const auto found = m_values.constFind(QLatin1String(key));
    Q_ASSERT(found != m_values.constEnd());
    return found == m_values.constEnd() ? QVariant() : *found;
}

QString DeviceSettings::toText(const QVariant &value)
{
    return value.toString(); // "true" and "false" for flags
}

bool DeviceSettings::set(const QString &key, const QString &value, QString *reason)
{
    const DeviceSetting *setting = find(key);
    if (!setting) {
        *reason = QStringLiteral("there is no setting \"%1\"").arg(key);
        return false;
    }
    const auto usable = valueOf(*setting, value.trimmed());
    if (!usable) {
        *reason = QStringLiteral("%1 is %2").arg(key, range(*setting));
        return false;
    }
    const auto refused = [&](const QString &why) {
        *reason = QStringLiteral("%1: %2").arg(m_file, why);
        return false;
    };
    const QFileInfo place(m_file);
    if (!place.dir().exists() && !QDir().mkpath(place.path()))
        return refused(QCoreApplication::translate("platform::DeviceSettings", "its folder cannot be made"));
    QLockFile lock(m_file + QLatin1String(".lock"));
    if (!lock.tryLock(lockMs))
        return refused(lock.error() == QLockFile::PermissionError
                           ? QCoreApplication::translate("platform::DeviceSettings", "no permission to write")
                           : QCoreApplication::translate("platform::DeviceSettings", "somebody else is writing it"));
    QByteArray content;
    QString why;
    if (!readWhole(m_file, &content, &why)) // never replaced by less than it holds
        return refused(why);
    const QByteArray changed = replaced(content, key, toText(*usable));
    const bool isNew = !place.exists();
    QSaveFile file(m_file);
    if (!file.open(QIODevice::WriteOnly))
        return refused(file.errorString());
    if (isNew)
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    if (file.write(changed) != changed.size() || !file.commit())
        return refused(file.errorString());
    syncFolder(place.path());
    m_content = changed;
    m_values[key] = *usable;
    return true;
}

DeviceSettingsWatch::DeviceSettingsWatch(const QString &file, QObject *parent)
    : QObject(parent)
    , m_settings(file)
{
    const QString folder = QFileInfo(file).path();
    QDir().mkpath(folder);
    m_watcher.addPath(folder);
    if (QFile::exists(file))
        m_watcher.addPath(file);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &DeviceSettingsWatch::look);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &DeviceSettingsWatch::look);
}

bool DeviceSettingsWatch::set(const QString &key, const QString &value, QString *reason)
{
    if (!m_settings.set(key, value, reason))
        return false;
    emit changed();
    return true;
}

void DeviceSettingsWatch::look()
{
    // A file that was replaced is a new one to the kernel.
    if (m_watcher.files().isEmpty() && QFile::exists(m_settings.file()))
        m_watcher.addPath(m_settings.file());
    if (m_settings.reload())
        emit changed();
}

} // namespace platform
