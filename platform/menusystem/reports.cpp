#include "reports.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace menusystem::reports {

namespace {

QString failed(QString *reason, const QString &path)
{
    *reason = QStringLiteral("%1: %2").arg(path, QString::fromLocal8Bit(std::strerror(errno)));
    return {};
}

// Names are dates, so their order is the order of time.
void dropOld(const QDir &folder)
{
    QStringList names = folder.entryList({QStringLiteral("2*T*.txt")}, QDir::Files, QDir::Name);
    while (names.size() > keptReports)
        QFile::remove(folder.filePath(names.takeFirst()));
}

} // namespace

QString usualFolder(const QString &stateHome, const QString &home)
{
    return (stateHome.isEmpty() ? home + QStringLiteral("/.local/state") : stateHome) +
           QStringLiteral("/velmora/reports");
}

QString keep(const QString &folder, const QDateTime &when, const QByteArray &report, QString *reason)
{
    QDir().mkpath(QDir(folder).filePath(QStringLiteral("..")));
    const QByteArray path = QFile::encodeName(folder);
    if (::mkdir(path.constData(), 0700) != 0 && errno != EEXIST)
        return failed(reason, folder);
    const int directory = ::open(path.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (directory < 0)
        return failed(reason, folder);
    const bool isClosed = ::fchmod(directory, 0700) == 0;
    const QString name = when.toString(QStringLiteral("yyyy-MM-ddTHH-mm-ss.zzz")) + QStringLiteral(".txt");
    const int file = isClosed ? ::openat(directory, QFile::encodeName(name).constData(),
                                         O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600)
                              : -1;
    const int problem = errno;
    ::close(directory);
    errno = problem;
    const QString fileName = folder + QLatin1Char('/') + name;
    if (file < 0)
        return failed(reason, fileName);
    QFile out;
    out.open(file, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle);
    const bool isWritten = out.write(report) == report.size() && out.flush() && ::fsync(file) == 0;
    dropOld(QDir(folder));
    return isWritten ? fileName : failed(reason, fileName);
}

QByteArray withoutSecrets(const QByteArray &output)
{
    static const QRegularExpression secrets[] = {
        QRegularExpression(QStringLiteral("(?<name>(?:token|key|sig|signature|password|pwd|secret|\\bcode)\"?[=:]\\s*)"
                                          "(?:\"[^\"\\n]*\"|[^\\s,;&\"]+)"),
                           QRegularExpression::CaseInsensitiveOption),
        QRegularExpression(QStringLiteral("(?<name>Bearer\\s+)\\S+"), QRegularExpression::CaseInsensitiveOption),
        QRegularExpression(QStringLiteral("(?<name>https?://)[^/\\s@]+(?=@)")),
        QRegularExpression(QStringLiteral("(?<name>https?://[^\\s?]+\\?)[^\\s\"]+")),
        QRegularExpression(QStringLiteral("(?<name>)[A-Za-z0-9._%+-]+@[A-Za-z0-9.-]+\\.[A-Za-z]+")),
    };
    QString text = QString::fromUtf8(output);
    for (const QRegularExpression &secret : secrets)
        text.replace(secret, QStringLiteral("\\1***"));
    return text.toUtf8();
}

} // namespace menusystem::reports
