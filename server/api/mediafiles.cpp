#include "server/api/mediafiles.h"

#include "server/library/library.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace velmora::server {

namespace {

bool readNumber(std::string_view text, uint64_t *value)
{
    const auto result = std::from_chars(text.data(), text.data() + text.size(), *value);
    return !text.empty() && result.ec == std::errc() && result.ptr == text.data() + text.size();
}

} // namespace

std::string audioExtension(const std::string &mediaType)
{
    constexpr std::array<std::pair<const char *, const char *>, 4> extensions = {
        {{"audio/flac", ".flac"}, {"audio/mpeg", ".mp3"}, {"audio/ogg", ".ogg"}, {"audio/wav", ".wav"}}};
    for (const auto &[type, extension] : extensions) {
        if (mediaType == type)
            return extension;
    }
    return {};
}

std::optional<std::string> publicIdOf(const std::string &file)
{
    const size_t dot = file.find('.');
    if (dot == 0 || dot == std::string::npos)
        return std::nullopt;
    const bool isPlain = std::all_of(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(dot), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-' || c == '_';
    });
    return isPlain ? std::optional(file.substr(0, dot)) : std::nullopt;
}

std::optional<std::filesystem::path> audioFileFor(StationService &service, const Track &track)
{
    if (!track.needsTranscoding)
        return track.audioFile;
    return service.library ? service.library->transcodes().file(track.id) : std::nullopt;
}

RangeResult parseRange(std::string_view header, uint64_t size, ByteRange *range)
{
    constexpr std::string_view unit = "bytes=";
    if (!header.starts_with(unit) || header.find(',') != std::string_view::npos)
        return RangeResult::Whole;
    header.remove_prefix(unit.size());
    const size_t hyphen = header.find('-');
    if (hyphen == std::string_view::npos)
        return RangeResult::Whole;
    const std::string_view from = header.substr(0, hyphen);
    const std::string_view to = header.substr(hyphen + 1);
    uint64_t first = 0;
    uint64_t last = size - 1;
    if (from.empty()) { // the last so many bytes
        uint64_t count = 0;
        if (!readNumber(to, &count))
            return RangeResult::Whole;
        if (count == 0 || size == 0)
            return RangeResult::Unsatisfiable;
        first = size - std::min(count, size);
    } else {
        if (!readNumber(from, &first) || (!to.empty() && !readNumber(to, &last)))
            return RangeResult::Whole;
        if (!to.empty() && last < first)
            return RangeResult::Whole;
        if (first >= size)
            return RangeResult::Unsatisfiable;
        last = std::min(last, size - 1);
    }
    *range = {first, last};
    return RangeResult::Part;
}

std::optional<MediaFile> MediaFile::open(const std::filesystem::path &file)
{
    const int fd = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0)
        return std::nullopt;
    struct stat status {};
    if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(fd);
        return std::nullopt;
    }
    std::string etag = std::to_string(status.st_size);
    etag.append("-").append(std::to_string(status.st_mtim.tv_sec));
    etag.append("-").append(std::to_string(status.st_mtim.tv_nsec));
    etag.insert(0, 1, '"').append("\"");
    return MediaFile(fd, static_cast<uint64_t>(status.st_size), etag);
}

MediaFile::MediaFile(int fd, uint64_t size, std::string etag)
    : m_fd(fd)
    , m_size(size)
    , m_etag(std::move(etag))
{
}

MediaFile::MediaFile(MediaFile &&other) noexcept
    : m_fd(std::exchange(other.m_fd, -1))
    , m_size(other.m_size)
    , m_etag(std::move(other.m_etag))
{
}

MediaFile::~MediaFile()
{
    if (m_fd >= 0)
        ::close(m_fd);
}

size_t MediaFile::read(uint64_t offset, char *buffer, size_t count) const
{
    const ssize_t result = ::pread(m_fd, buffer, count, static_cast<off_t>(offset));
    return result > 0 ? static_cast<size_t>(result) : 0;
}

} // namespace velmora::server
