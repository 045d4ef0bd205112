#include "server/http/file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <system_error>
#include <unistd.h>

namespace velmora::server::http {

std::string httpTime(std::time_t time)
{
    std::tm parts{};
    ::gmtime_r(&time, &parts);
    std::array<char, 40> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%a, %d %b %Y %H:%M:%S GMT", &parts)};
}

std::shared_ptr<const File> File::open(const std::filesystem::path &path)
{
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0 && (errno == EMFILE || errno == ENFILE || errno == ENOMEM))
        throw std::system_error(errno, std::generic_category(), "a file cannot be opened");
    if (fd < 0)
        return nullptr;
    struct stat status {};
    if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(fd);
        return nullptr;
    }
    return std::shared_ptr<const File>(new File(fd, static_cast<uint64_t>(status.st_size), status.st_mtim));
}

File::File(int fd, uint64_t size, timespec modified)
    : m_fd(fd)
    , m_size(size)
    , m_modified(modified.tv_sec)
    , m_etag("\"" + std::to_string(size) + "-" + std::to_string(modified.tv_sec) + "-" +
             std::to_string(modified.tv_nsec) + "\"")
{
}

File::~File()
{
    ::close(m_fd);
}

std::string File::lastModified() const
{
    return httpTime(m_modified);
}

size_t File::read(uint64_t offset, char *buffer, size_t count) const
{
    const ssize_t result = ::pread(m_fd, buffer, count, static_cast<off_t>(offset));
    return result > 0 ? static_cast<size_t>(result) : 0;
}

bool File::isCached(uint64_t offset, uint64_t count) const
{
    // The kernel reads neighbouring pages together: some of them stand for all.
    constexpr uint64_t step = 16 * 1024;
    char byte = 0;
    iovec target{&byte, 1};
    const auto isThere = [&](uint64_t at) {
        return ::preadv2(m_fd, &target, 1, static_cast<off_t>(at), RWF_NOWAIT) == 1;
    };
    for (uint64_t at = offset; at < offset + count; at += step) {
        if (!isThere(at))
            return false;
    }
    return count == 0 || isThere(offset + count - 1);
}

void File::readAhead(uint64_t offset, uint64_t count) const
{
    // Not readahead(): it does not wait, and some file systems take it for advice.
    std::array<char, 64 * 1024> buffer;
    for (const uint64_t end = offset + count; offset < end;) {
        const size_t got = read(offset, buffer.data(), std::min<uint64_t>(end - offset, buffer.size()));
        if (got == 0)
            return;
        offset += got;
    }
}

} // namespace velmora::server::http
