#include "usbstick.h"

#include "systemcall.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QFile>
#include <QMap>
#include <QStorageInfo>
#include <QVariantMap>

#include <fcntl.h>
#include <unistd.h>

namespace home {

namespace {

// As udisks2 lists everything that it knows: object path, interface, property.
using Interfaces = QMap<QString, QVariantMap>;
using Objects = QMap<QDBusObjectPath, Interfaces>;

const QString udisks = QStringLiteral("org.freedesktop.UDisks2");
const QString blockInterface = QStringLiteral("org.freedesktop.UDisks2.Block");
const QString driveInterface = QStringLiteral("org.freedesktop.UDisks2.Drive");
const QString filesystemInterface = QStringLiteral("org.freedesktop.UDisks2.Filesystem");

// Nobody is asked for a password: there is no window for that.
const QVariantMap silently{{QStringLiteral("auth.no_user_interaction"), true}};

bool isForSticks(const QString &folder)
{
    for (const char *place : {"/media/", "/run/media/", "/mnt/"})
        if (folder.startsWith(QLatin1String(place)))
            return true;
    return false;
}

// Mounted by somebody, where no service says more. Empty: none.
QString mountedStick()
{
    for (const QStorageInfo &volume : QStorageInfo::mountedVolumes())
        if (isForSticks(volume.rootPath()) && volume.isValid() && volume.isReady() && !volume.isReadOnly())
            return volume.rootPath();
    return {};
}

bool isStick(const Objects &all, const Interfaces &candidate)
{
    const QVariantMap block = candidate.value(blockInterface);
    const auto drive = block.value(QStringLiteral("Drive")).value<QDBusObjectPath>();
    return candidate.contains(filesystemInterface) && !block.value(QStringLiteral("HintIgnore")).toBool() &&
           !block.value(QStringLiteral("HintSystem")).toBool() && !block.value(QStringLiteral("ReadOnly")).toBool() &&
           all.value(drive).value(driveInterface).value(QStringLiteral("ConnectionBus")).toString() ==
               QLatin1String("usb");
}

} // namespace

UsbStick::UsbStick(const QDBusConnection &bus, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
{
}

void UsbStick::find()
{
    m_device.clear();
    m_folder.clear();
    m_isMounted = false;
    callSystem(m_bus,
               QDBusMessage::createMethodCall(udisks, QStringLiteral("/org/freedesktop/UDisks2"),
                                              QStringLiteral("org.freedesktop.DBus.ObjectManager"),
                                              QStringLiteral("GetManagedObjects")),
               this, [this](const QDBusMessage &reply) { choose(reply); });
}

void UsbStick::choose(const QDBusMessage &reply)
{
    if (reply.type() == QDBusMessage::ErrorMessage) {
        m_folder = mountedStick();
        if (!m_folder.isEmpty())
            emit ready(m_folder);
        else
            emit failed(tr("No USB stick is mounted, and nothing on this device mounts one (udisks2)."));
        return;
    }
    const auto all = qdbus_cast<Objects>(reply.arguments().value(0));
    for (auto object = all.cbegin(); object != all.cend(); ++object) {
        if (!isStick(all, object.value()))
            continue;
        const auto places = qdbus_cast<QList<QByteArray>>(
            object.value().value(filesystemInterface).value(QStringLiteral("MountPoints")));
        if (places.isEmpty()) {
            m_device = object.key().path();
            mount();
            return;
        }
        m_folder = QFile::decodeName(places.first().constData()); // ends with a zero
        if (isForSticks(m_folder)) {
            m_device = object.key().path();
            emit ready(m_folder);
            return;
        }
    }
    m_folder.clear();
    emit failed(tr("There is no USB stick that can be written to. Put one in and choose this again."));
}

void UsbStick::mount()
{
    auto message = QDBusMessage::createMethodCall(udisks, m_device, filesystemInterface, QStringLiteral("Mount"));
    message << silently;
    callSystem(m_bus, message, this, [this](const QDBusMessage &reply) {
        m_folder = reply.type() == QDBusMessage::ErrorMessage ? QString() : reply.arguments().value(0).toString();
        m_isMounted = !m_folder.isEmpty();
        if (m_isMounted)
            emit ready(m_folder);
        else
            emit failed(tr("The USB stick cannot be used. %1").arg(reply.errorMessage()));
    });
}

void UsbStick::release()
{
    if (!m_isMounted) {
        const int folder = ::open(QFile::encodeName(m_folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (folder >= 0) {
            ::syncfs(folder);
            ::close(folder);
        }
        emit released(false);
        return;
    }
    auto message = QDBusMessage::createMethodCall(udisks, m_device, filesystemInterface, QStringLiteral("Unmount"));
    message << silently;
    callSystem(m_bus, message, this, [this](const QDBusMessage &reply) {
        m_isMounted = false;
        emit released(reply.type() != QDBusMessage::ErrorMessage);
    });
}

} // namespace home
