#pragma once

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <memory>
#include <string>

namespace velmora::server::http {

// An open regular file and the marks of its content. Reading changes no position, so any thread may read.
class File {
public:
    // Null when it is not a regular file that can be read. Throws std::system_error when the program has no descriptor
    // left.
    static std::shared_ptr<const File> open(const std::filesystem::path &path);
    ~File();
    File(const File &) = delete;
    File &operator=(const File &) = delete;

    int descriptor() const { return m_fd; }
    uint64_t size() const { return m_size; }
    const std::string &etag() const { return m_etag; } // strong, quoted
    std::string lastModified() const;                  // as HTTP writes times
    // How many bytes were read; 0 at the end or on an error. May wait for a disk.
    size_t read(uint64_t offset, char *buffer, size_t count) const;

    // Whether these bytes are in memory, so that sending them does not wait for a disk. False where the file system
    // cannot tell.
    bool isCached(uint64_t offset, uint64_t count) const;
    // Brings them into memory; waits for the disk.
    void readAhead(uint64_t offset, uint64_t count) const;

private:
    File(int fd, uint64_t size, timespec modified);

    const int m_fd;
    const uint64_t m_size;
    const std::time_t m_modified;
    const std::string m_etag;
};

// "Sun, 06 Nov 1994 08:49:37 GMT"
std::string httpTime(std::time_t time);

} // namespace velmora::server::http
