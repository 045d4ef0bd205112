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
    dir.mkpath("var/local/misc/velmora");
    dir.mkpath("mnt/sda1");
    dir.mkpath("tmp");
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
}

} // namespace

void DeviceTwin::setPrivateRoot(const QString &root)
{
    const QMutexLocker lock(&twin().mutex);
    adopt(root);
    twin().commands.clear();
}

QStringList DeviceTwin::shellCommands()
{
    const QMutexLocker lock(&twin().mutex);
    return twin().commands;
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
