#include "fakes/devicetwin.h"
#include "service/devicepaths.h"

#include <QDir>
#include <QFile>
#include <QMutex>
#include <QMutexLocker>
#include <QTemporaryDir>

#include <memory>

#include <sys/stat.h>

namespace {

QMutex mutex;
QString root;
QStringList commands;
std::unique_ptr<QTemporaryDir> ownRoot;

void adopt(const QString &path) // mutex held
{
    root = QDir::cleanPath(path);
    for (const char *folder : {"var/local/misc/velmora", "mnt/sda1", "tmp"})
        QDir(root).mkpath(QLatin1String(folder));
}

QString under(const QString &path)
{
    const QMutexLocker lock(&mutex);
    if (root.isEmpty() && qEnvironmentVariableIsEmpty("VELMORA_PRIVATE_ROOT"))
        ownRoot = std::make_unique<QTemporaryDir>();
    if (root.isEmpty())
        adopt(ownRoot ? ownRoot->path() : qEnvironmentVariable("VELMORA_PRIVATE_ROOT"));
    return root + path;
}

void record(const QString &command)
{
    const QMutexLocker lock(&mutex);
    commands.append(command);
}

} // namespace

void DeviceTwin::setPrivateRoot(const QString &path)
{
    const QMutexLocker lock(&mutex);
    adopt(path);
    commands.clear();
}

QStringList DeviceTwin::shellCommands()
{
    const QMutexLocker lock(&mutex);
    return commands;
}

namespace device {

QString settingsFile()
{
    return under("/var/local/misc/velmora/velmora_5.ini");
}
QString scratchDir()
{
    return under("/tmp/velmora");
}
QString loginFile()
{
    return under("/mnt/sda1/velmora_login.ini");
}

int makeScratchDir()
{
    record("mkdir /tmp/velmora");
    return ::mkdir(QFile::encodeName(scratchDir()).constData(), 0700);
}

int removeScratchDir()
{
    record("rm -rf /tmp/velmora");
    return QDir(scratchDir()).removeRecursively() ? 0 : -1;
}

int syncFiles()
{
    record("sync&");
    return 0;
}

} // namespace device
