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

struct Twin {
    QMutex mutex;
    QString root;
    QStringList commands;
    std::unique_ptr<QTemporaryDir> ownRoot;
};

Twin &twin()
{
    static Twin instance;
    return instance;
}

void adopt(const QString &root)
{
    twin().root = QDir::cleanPath(root);
    const QDir dir(twin().root);
    dir.mkpath(QStringLiteral("var/local/misc/velmora"));
    dir.mkpath(QStringLiteral("mnt/sda1"));
    dir.mkpath(QStringLiteral("tmp"));
}

QString rootLocked()
{
    Twin &t = twin();
    if (t.root.isEmpty()) {
        const QString fromOutside = qEnvironmentVariable("VELMORA_PRIVATE_ROOT");
        if (fromOutside.isEmpty()) {
            t.ownRoot = std::make_unique<QTemporaryDir>();
            adopt(t.ownRoot->path());
        } else {
            adopt(fromOutside);
        }
    }
    return t.root;
}

QString under(const QString &path)
{
    const QMutexLocker lock(&twin().mutex);
    return rootLocked() + path;
}

void record(const QString &command)
{
    const QMutexLocker lock(&twin().mutex);
    twin().commands.append(command);
    QFile log(rootLocked() + QStringLiteral("/shell.log"));
    if (log.open(QIODevice::Append))
        log.write(command.toUtf8() + '\n');
}

} // namespace

void DeviceTwin::setPrivateRoot(const QString &root)
{
    const QMutexLocker lock(&twin().mutex);
    adopt(root);
    twin().commands.clear();
}

QString DeviceTwin::privateRoot()
{
    const QMutexLocker lock(&twin().mutex);
    return rootLocked();
}

QStringList DeviceTwin::shellCommands()
{
    const QMutexLocker lock(&twin().mutex);
    return twin().commands;
}

void DeviceTwin::clearShellCommands()
{
    const QMutexLocker lock(&twin().mutex);
    twin().commands.clear();
}

namespace device {

QString settingsFile()
{
    return under(QStringLiteral("/var/local/misc/velmora/velmora_5.ini"));
}
QString scratchDir()
{
    return under(QStringLiteral("/tmp/velmora"));
}
QString loginFile()
{
    return under(QStringLiteral("/mnt/sda1/velmora_login.ini"));
}

int makeScratchDir()
{
    record(QStringLiteral("mkdir /tmp/velmora"));
    return ::mkdir(QFile::encodeName(scratchDir()).constData(), 0700);
}

int removeScratchDir()
{
    record(QStringLiteral("rm -rf /tmp/velmora"));
    return QDir(scratchDir()).removeRecursively() ? 0 : -1;
}

int syncFiles()
{
    record(QStringLiteral("sync&"));
    return 0;
}

} // namespace device
