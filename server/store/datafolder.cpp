#include "server/store/datafolder.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora::server {

namespace {

constexpr mode_t othersMask = S_IRWXG | S_IRWXO;

std::string octal(mode_t mode)
{
    char text[8];
    std::snprintf(text, sizeof text, "%04o", static_cast<unsigned>(mode & 07777));
    return text;
}

// Closes what belongs to the service to other users. False when it was closed already. Throws when it cannot be.
bool closeToOthers(const std::filesystem::path &path, mode_t mode)
{
    if ((mode & othersMask) == 0)
        return false;
    if (::chmod(path.c_str(), mode & 07777 & ~othersMask) != 0)
        throw std::runtime_error(path.string() + " is open to other users (mode " + octal(mode) +
                                 ") and cannot be closed to them: " + std::strerror(errno));
    return true;
}

// Whether nothing but the service's data is in it. A new folder may be empty.
bool isOurs(const std::filesystem::path &folder)
{
    std::error_code error;
    return std::filesystem::exists(folder / DataFolder::databaseName, error) ||
           (std::filesystem::is_empty(folder, error) && !error);
}

} // namespace

DataFolder::DataFolder(const std::filesystem::path &folder)
{
    const std::string name = "the data folder " + folder.string();
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::absolute(folder).parent_path(), error);
    struct stat status {};
    const bool isNew = ::mkdir(folder.c_str(), 0700) == 0;
    if ((!isNew && errno != EEXIST) || ::stat(folder.c_str(), &status) != 0)
        throw std::runtime_error("cannot make " + name + ": " + std::strerror(errno));
    if (!S_ISDIR(status.st_mode))
        throw std::runtime_error(name + " is no folder");
    if (status.st_uid != ::geteuid())
        throw std::runtime_error(name + " belongs to another user (id " + std::to_string(status.st_uid) + ")");
    if ((status.st_mode & othersMask) != 0 && !isOurs(folder))
        throw std::runtime_error(name + " is open to other users (mode " + octal(status.st_mode) +
                                 ") and holds other things: name a folder for the service alone");
    if (closeToOthers(folder, status.st_mode))
        m_mended.push_back(name + " was open to other users (mode " + octal(status.st_mode) + "); it is closed now");

    if (isNew)
        syncFolder(std::filesystem::absolute(folder).parent_path());

    const std::filesystem::path lock = folder / lockName;
    m_lock = ::open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (m_lock < 0)
        throw std::runtime_error("cannot write to " + name + ": " + std::strerror(errno));
    if (::flock(m_lock, LOCK_EX | LOCK_NB) != 0) {
        const int problem = errno;
        char owner[16]{};
        const ssize_t length = ::pread(m_lock, owner, sizeof owner - 1, 0);
        ::close(m_lock);
        if (problem != EWOULDBLOCK)
            throw std::runtime_error("cannot lock " + name + ": " + std::strerror(problem));
        const std::string process = length > 0 ? " (process " + std::string(owner, strcspn(owner, "\n")) + ")" : "";
        throw FolderInUse(name + " is used by another velmora-server" + process);
    }
    const std::string process = std::to_string(::getpid()) + "\n";
    if (::ftruncate(m_lock, 0) != 0 || ::pwrite(m_lock, process.data(), process.size(), 0) < 0) {
        // The number is for people only.
    }
    for (const char *file : {databaseName, "velmora.db-wal", "velmora.db-shm", "demo-account.txt"}) {
        if (::stat((folder / file).c_str(), &status) == 0 && closeToOthers(folder / file, status.st_mode))
            m_mended.push_back((folder / file).string() + " was open to other users (mode " + octal(status.st_mode) +
                               "); it is closed now");
    }
}

DataFolder::~DataFolder()
{
    ::close(m_lock);
}

bool syncFolder(const std::filesystem::path &folder)
{
    const int handle = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool isSynced = handle >= 0 && ::fsync(handle) == 0;
    if (handle >= 0)
        ::close(handle);
    return isSynced;
}

std::optional<std::string> secretFileProblem(const std::filesystem::path &file)
{
    const int handle = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    struct stat status {};
    const bool isRead = handle >= 0 && ::fstat(handle, &status) == 0;
    const int problem = errno;
    if (handle >= 0)
        ::close(handle);
    if (!isRead)
        return "cannot read " + file.string() + ": " + std::strerror(problem);
    if (!S_ISREG(status.st_mode))
        return file.string() + " is no file";
    if (status.st_uid != ::geteuid() && status.st_uid != 0)
        return file.string() + " belongs to another user (id " + std::to_string(status.st_uid) + ")";
    const mode_t forbidden = status.st_uid == 0 ? S_IWGRP | S_IXGRP | S_IRWXO : othersMask;
    if ((status.st_mode & forbidden) != 0)
        return "other users can read or change " + file.string() + " (mode " + octal(status.st_mode) +
               "): chmod go= " + file.string();
    return std::nullopt;
}

} // namespace velmora::server
