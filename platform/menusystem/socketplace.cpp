#include "socketplace.h"

#include <QFile>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace menusystem {

namespace {

constexpr char socketName[] = "/velmora-menu.sock";

// A directory (not a link) that is ours and closed to everybody else.
bool isPrivate(const QByteArray &path)
{
    struct stat entry {};
    return ::lstat(path.constData(), &entry) == 0 && S_ISDIR(entry.st_mode) && entry.st_uid == ::geteuid() &&
           (entry.st_mode & 077) == 0;
}

} // namespace

QString usualSocket(const QString &runtimeDirectory, const QString &temporary, bool mayMake, QString *reason)
{
    const QByteArray runtime = QFile::encodeName(runtimeDirectory);
    if (!runtime.isEmpty() && isPrivate(runtime))
        return runtimeDirectory + QLatin1String(socketName);
    // The user's number is in the name, so that commands find the directory.
    QByteArray directory = QFile::encodeName(temporary) + "/velmora-menu-" + QByteArray::number(::geteuid());
    if (mayMake)
        ::mkdir(directory.constData(), 0700);
    if (!isPrivate(directory) && mayMake) {
        directory += "-XXXXXX";
        if (!::mkdtemp(directory.data())) {
            *reason = QStringLiteral("%1: %2").arg(temporary, QString::fromLocal8Bit(std::strerror(errno)));
            return {};
        }
    }
    if (!isPrivate(directory)) {
        *reason = QStringLiteral("there is no private directory for it");
        return {};
    }
    return QFile::decodeName(directory) + QLatin1String(socketName);
}

} // namespace menusystem
