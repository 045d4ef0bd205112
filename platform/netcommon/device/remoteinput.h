#pragma once

#include "evdevremote.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <map>
#include <memory>

namespace netcommon {

// Reads the remote controls among the kernel's input devices, also those that come later. A remote that is read here is
// read by nobody else, so that no key arrives twice. A device that this user may not read is left out. GUI thread.
class RemoteInput : public QObject {
    Q_OBJECT
public:
    explicit RemoteInput(QObject *parent, const QString &folder = QStringLiteral("/dev/input"));
    ~RemoteInput() override;

signals:
    void stroke(int key, bool isPress, bool isAutoRepeat);

private:
    struct Device {
        int descriptor;
        evdev::Reader reader;
        std::unique_ptr<QSocketNotifier> notifier;
        ~Device();
    };

    void scan();
    void open(const QString &path);
    void read(const QString &path);

    const QString m_folder;
    QFileSystemWatcher m_watcher;
    std::map<QString, Device> m_devices; // by path; those that are read
};

} // namespace netcommon
