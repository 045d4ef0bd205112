#include "service/settingsfile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QThread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace settingsfile {

namespace {

constexpr int openAttempts = 4;
constexpr int retryPauseMs = 25;
constexpr int lockWriteMs = 100; // far more than a process needs to write its lock file

enum class Content { Missing, Sound, Damaged, Unreadable };

Content contentOf(const QString &fileName)
{
    const QFileInfo info(fileName);
    if (!info.exists())
        return Content::Missing;
    if (info.isDir())
        return Content::Damaged;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return Content::Unreadable; // for example too many open files; the content may be sound
    const bool hasNul = file.readAll().contains('\0');
    if (file.error() != QFileDevice::NoError)
        return Content::Unreadable;
    const QSettings probe(fileName, QSettings::IniFormat);
    probe.allKeys(); // QSettings parses sections, and finds errors in them, on first access only
    return hasNul || probe.status() == QSettings::FormatError ? Content::Damaged : Content::Sound;
}

QString asideName(const QString &fileName)
{
    const QString dated = fileName + QStringLiteral(".damaged-") +
                          QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString name = dated;
    for (int i = 2; QFileInfo::exists(name); ++i)
        name = dated + QLatin1Char('-') + QString::number(i);
    return name;
}

// QSettings locks the file while it writes, by files beside it. It waits up to 30 seconds for the end of a process that
// was killed while it made or removed one, so that what nobody holds is removed here.
void removeDeadLocks(const QString &fileName)
{
    const QFileInfo file(fileName);
    const QDir folder = file.dir();
    for (const QString &name : folder.entryList({file.fileName() + QStringLiteral(".lock*")}, QDir::Files)) {
        const QByteArray path = QFile::encodeName(folder.filePath(name));
        bool isDone = false;
        for (int waitedMs = 0; !isDone; waitedMs += retryPauseMs) {
            const int descriptor = ::open(path.constData(), O_RDWR | O_NOFOLLOW | O_CLOEXEC);
            struct stat info {};
            const bool isFree =
                descriptor >= 0 && ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 && ::fstat(descriptor, &info) == 0;
            // An empty one may be a living process's that has just made it.
            const bool isDead = isFree && (info.st_size > 0 || waitedMs >= lockWriteMs);
            if (isDead)
                ::unlink(path.constData());
            if (descriptor >= 0)
                ::close(descriptor);
            isDone = !isFree || isDead;
            if (!isDone)
                QThread::msleep(retryPauseMs);
        }
    }
}

} // namespace

Prepared prepare(const QString &fileName)
{
    const QByteArray path = QFile::encodeName(fileName);
    removeDeadLocks(fileName);
    Content content = contentOf(fileName);
    for (int attempt = 1; content == Content::Unreadable && attempt < openAttempts; ++attempt) {
        QThread::msleep(retryPauseMs);
        content = contentOf(fileName);
    }
    if (content == Content::Unreadable)
        return {false, QString()};
    QString aside;
    if (content == Content::Damaged) {
        aside = asideName(fileName);
        if (::rename(path.constData(), QFile::encodeName(aside).constData()) != 0)
            aside.clear();
    }
    // Made here, because QSettings would open a new file to everybody while it writes it.
    const int descriptor = ::open(path.constData(), O_CREAT | O_RDONLY | O_CLOEXEC | O_NONBLOCK, S_IRUSR | S_IWUSR);
    if (descriptor >= 0) {
        static_cast<void>(::fchmod(descriptor, S_IRUSR | S_IWUSR));
        ::close(descriptor);
    }
    return {true, aside};
}

} // namespace settingsfile
