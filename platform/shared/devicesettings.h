#pragma once

#include <QByteArray>
#include <QFileSystemWatcher>
#include <QHash>
#include <QObject>
#include <QString>
#include <QVariant>

#include <optional>
#include <vector>

namespace platform {

// One setting of the device: what may stand in the file, and what counts when it is missing or unusable.
struct DeviceSetting {
    enum class Type {
        Flag,    // true or false
        Number,  // whole, from `least` to `most`
        Text,    // one line
        Address, // of a service: http or https with a host, without user, query and fragment; or empty
        Locale   // as "de_DE"; empty: as the system is set up
    };
    const char *key; // "section/name"
    Type type;
    const char *usual; // the default, as it would stand in the file
    const char *meaning;
    int least = 0;
    int most = 0;
};

// The settings of the device in one INI file that people may edit. All programs on the device read it; Home and
// `velmora-menu set` write it. An object is used by one thread; several processes may use the file.
class DeviceSettings {
public:
    // VELMORA_DEVICE_CONF, else /etc/velmora/device.conf if it exists, else velmora/device.conf in the user's
    // configuration folder.
    static QString usualFile();
    static const std::vector<DeviceSetting> &table();
    // Null for an unknown key.
    static const DeviceSetting *find(const QString &key);
    // "true or false", "0 to 100", ...
    static QString range(const DeviceSetting &setting);

    // Reads the file. A missing file is an empty one. Each unusable line is left out with a warning.
    explicit DeviceSettings(const QString &file = usualFile());

    // Reads the file again. True when its contents have changed; only then it warns again.
    bool reload();
    // bool, int or QString, as the type says. The key is one of the table.
    QVariant value(const char *key) const;
    // As in the file.
    static QString toText(const QVariant &value);

    // Replaces one setting in the file. Everything else in it stays, comments and unknown keys too. The new file
    // replaces the old one when it is complete on the disk. A file that is made here is its owner's only. False, with
    // a reason, when the key or the value is not usable or the file cannot be written; then nothing has changed.
    bool set(const QString &key, const QString &value, QString *reason);

    QString file() const { return m_file; }

private:
    void parse(const QByteArray &content);

    QString m_file;
    QByteArray m_content; // as read last
    QHash<QString, QVariant> m_values;
};

// Reports changes of the file by any process. It replaces file and folder watches as files come and go; a missing
// folder of the user's is made. Lives in the thread that made it, which needs an event loop.
class DeviceSettingsWatch : public QObject {
    Q_OBJECT
public:
    explicit DeviceSettingsWatch(const QString &file = DeviceSettings::usualFile(), QObject *parent = nullptr);

    // Up to date in slots of changed().
    const DeviceSettings &settings() const { return m_settings; }
    // DeviceSettings::set(); changed() is emitted before it returns.
    bool set(const QString &key, const QString &value, QString *reason);

signals:
    void changed();

private:
    void look();

    DeviceSettings m_settings;
    QFileSystemWatcher m_watcher;
};

} // namespace platform
