#include "remoteinput.h"

#include <QDebug>
#include <QDir>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <linux/input.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace netcommon {

namespace {

// Taken for this process alone, or -1: no remote, or not ours.
int openRemote(const QByteArray &path)
{
    const int descriptor = ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return -1;
    unsigned char bits[KEY_CNT / 8] = {};
    input_id id{};
    evdev::KeySet keys;
    const bool isKnown =
        ::ioctl(descriptor, EVIOCGBIT(EV_KEY, sizeof bits), bits) >= 0 && ::ioctl(descriptor, EVIOCGID, &id) >= 0;
    for (size_t code = 0; code < keys.size(); ++code)
        keys.set(code, (bits[code / 8] >> (code % 8) & 1) != 0);
    if (isKnown && evdev::isRemote(keys, id.bustype) && ::ioctl(descriptor, EVIOCGRAB, 1) == 0)
        return descriptor;
    ::close(descriptor);
    return -1;
}

} // namespace

RemoteInput::Device::~Device()
{
    notifier.reset();
    ::close(descriptor);
}

RemoteInput::RemoteInput(QObject *parent, const QString &folder)
    : QObject(parent)
    , m_folder(folder)
{
    if (!QFile::exists(folder))
        return;
    m_watcher.addPath(folder);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &RemoteInput::scan);
    scan();
}

RemoteInput::~RemoteInput() = default;

void RemoteInput::scan()
{
    for (const QString &name : QDir(m_folder).entryList({QStringLiteral("event*")}, QDir::System))
        if (const QString path = m_folder + QLatin1Char('/') + name; !m_devices.contains(path))
            open(path);
}

void RemoteInput::open(const QString &path)
{
    const int descriptor = openRemote(QFile::encodeName(path));
    if (descriptor < 0)
        return;
    qDebug("RemoteInput,open,%s", qPrintable(path));
    Device &device = m_devices[path];
    device.descriptor = descriptor;
    device.notifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    connect(device.notifier.get(), &QSocketNotifier::activated, this, [this, path] { read(path); });
}

void RemoteInput::read(const QString &path)
{
    Device &device = m_devices.at(path);
    char bytes[32 * sizeof(input_event)];
    const ssize_t size = ::read(device.descriptor, bytes, sizeof bytes);
    if (size < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    if (size <= 0) {
        // Unplugged. Queued, because this runs inside the notifier that is deleted.
        device.notifier->setEnabled(false);
        QMetaObject::invokeMethod(
            this, [this, path] { m_devices.erase(path); }, Qt::QueuedConnection);
        return;
    }
    for (const auto &[key, isPress, isAutoRepeat] : device.reader.read(QByteArray(bytes, int(size))))
        emit stroke(key, isPress, isAutoRepeat);
}

} // namespace netcommon
