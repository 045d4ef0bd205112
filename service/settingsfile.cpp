#include "service/settingsfile.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QThread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace settingsfile {

namespace {

constexpr int openAttempts = 4;
constexpr int retryPauseMs = 25;

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

} // namespace

Prepared prepare(const QString &fileName)
{
    const QByteArray path = QFile::encodeName(fileName);
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
