#include "httpdownloadfolder.h"

#include <QFile>
#include <QRandomGenerator>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace netcommon {

namespace {

constexpr char prefix[] = "picture-";
constexpr char partSuffix[] = ".part";
constexpr time_t stalePartSeconds = 600; // left by a process that was killed while it wrote

QString reason(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

struct Descriptor {
    explicit Descriptor(int value)
        : fd(value)
    {
    }
    ~Descriptor()
    {
        if (fd >= 0)
            ::close(fd);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    const int fd;
};

bool writeAll(int fd, const QByteArray &bytes)
{
    const char *at = bytes.constData();
    qsizetype left = bytes.size();
    while (left > 0) {
        const ssize_t written = ::write(fd, at, static_cast<size_t>(left));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        at += written;
        left -= written;
    }
    return true;
}

QByteArray randomName()
{
    quint32 words[4];
    QRandomGenerator::system()->fillRange(words);
    return prefix + QByteArray(reinterpret_cast<const char *>(words), sizeof words).toHex();
}

} // namespace

HttpDownloadFolder::HttpDownloadFolder(const QString &path)
    : m_path(QFile::encodeName(path))
{
    while (m_path.size() > 1 && m_path.endsWith('/'))
        m_path.chop(1);
}

int HttpDownloadFolder::open(QString *why) const
{
    const int fd = m_path.isEmpty() ? -1 : ::open(m_path.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (fd < 0) {
        *why = m_path.isEmpty() ? QStringLiteral("no download folder") : reason(errno);
        return -1;
    }
    struct stat info {};
    if (::fstat(fd, &info) == 0 && info.st_uid == ::geteuid() && !(info.st_mode & (S_IWGRP | S_IWOTH)))
        return fd;
    ::close(fd);
    *why = QStringLiteral("others may write to the download folder");
    return -1;
}

QString HttpDownloadFolder::complaint() const
{
    QString why;
    const Descriptor folder(open(&why));
    return why;
}

QString HttpDownloadFolder::store(const QByteArray &bytes, const QByteArray &suffix, QString *why) const
{
    const Descriptor folder(open(why));
    if (folder.fd < 0)
        return {};
    const QByteArray name = randomName();
    const QByteArray part = name + partSuffix, whole = name + suffix;
    const Descriptor file(
        ::openat(folder.fd, part.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (file.fd < 0) {
        *why = reason(errno);
        return {};
    }
    if (!writeAll(file.fd, bytes) || ::renameat(folder.fd, part.constData(), folder.fd, whole.constData()) != 0) {
        *why = reason(errno);
        ::unlinkat(folder.fd, part.constData(), 0);
        return {};
    }
    removeOld(folder.fd);
    return QFile::decodeName(m_path + '/' + whole);
}

// Only files named by us; the newest maxPictures stay.
void HttpDownloadFolder::removeOld(int folder)
{
    const int own = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR *const listing = own < 0 ? nullptr : ::fdopendir(own);
    if (!listing) {
        if (own >= 0)
            ::close(own);
        return;
    }
    struct Picture {
        timespec when;
        QByteArray name;
    };
    std::vector<Picture> pictures;
    while (const dirent *const entry = ::readdir(listing)) {
        const QByteArray name = entry->d_name;
        struct stat info {};
        if (!name.startsWith(prefix) || ::fstatat(folder, entry->d_name, &info, AT_SYMLINK_NOFOLLOW) != 0 ||
            !S_ISREG(info.st_mode))
            continue;
        if (!name.endsWith(partSuffix))
            pictures.push_back({info.st_mtim, name});
        else if (::time(nullptr) - info.st_mtim.tv_sec > stalePartSeconds)
            ::unlinkat(folder, entry->d_name, 0);
    }
    ::closedir(listing);
    std::sort(pictures.begin(), pictures.end(), [](const Picture &a, const Picture &b) {
        return std::pair(a.when.tv_sec, a.when.tv_nsec) > std::pair(b.when.tv_sec, b.when.tv_nsec);
    });
    for (size_t i = maxPictures; i < pictures.size(); ++i)
        ::unlinkat(folder, pictures[i].name.constData(), 0);
}

} // namespace netcommon
