#include "service/settingsfile.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace settingsfile {

namespace {

bool isDamaged(const QString &fileName)
{
    if (QFileInfo(fileName).isDir())
        return true;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly) || file.readAll().contains('\0') || file.error() != QFileDevice::NoError)
        return true;
    const QSettings probe(fileName, QSettings::IniFormat);
    probe.allKeys(); // sections are parsed, and found wrong, only when they are asked for
    return probe.status() == QSettings::FormatError;
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

QString prepare(const QString &fileName)
{
    const QByteArray path = QFile::encodeName(fileName);
    QString aside;
    if (QFileInfo::exists(fileName) && isDamaged(fileName)) {
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
    return aside;
}

} // namespace settingsfile
