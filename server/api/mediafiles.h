#pragma once

#include "server/api/stationservice.h"

#include <optional>
#include <string>
#include <string_view>

namespace velmora::server {

// ".flac", ".mp3", ".ogg", ".wav"; empty for another type.
std::string audioExtension(const std::string &mediaType);
// "track-1.flac" is "track-1"; nothing when there is no extension or something else than letters, digits, '-' and '_'
// stands before it.
std::optional<std::string> publicIdOf(const std::string &file);

// The file that radios get of a track: its own, or its transcode. Nothing while that is not there; it is begun then.
std::optional<std::filesystem::path> audioFileFor(StationService &service, const Track &track);

// The part of a file that a Range header asks for.
struct ByteRange {
    uint64_t first = 0;
    uint64_t last = 0; // the last byte itself
};
enum class RangeResult { Whole, Part, Unsatisfiable };
// Understands a single range. Several ranges, other units and unreadable headers give the whole file, which HTTP
// allows.
RangeResult parseRange(std::string_view header, uint64_t size, ByteRange *range);

// An open file and the tag of its content. Reading changes no position, so any thread may read.
class MediaFile {
public:
    // Nothing when it is not a regular file that can be read.
    static std::optional<MediaFile> open(const std::filesystem::path &file);
    ~MediaFile();
    MediaFile(MediaFile &&other) noexcept;
    MediaFile(const MediaFile &) = delete;
    MediaFile &operator=(const MediaFile &) = delete;
    MediaFile &operator=(MediaFile &&) = delete;

    uint64_t size() const { return m_size; }
    const std::string &etag() const { return m_etag; }
    // How many bytes were read; 0 at the end or on an error.
    size_t read(uint64_t offset, char *buffer, size_t count) const;

private:
    MediaFile(int fd, uint64_t size, std::string etag);

    int m_fd;
    uint64_t m_size;
    std::string m_etag;
};

} // namespace velmora::server
