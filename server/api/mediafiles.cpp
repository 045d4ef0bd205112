#include "server/api/mediafiles.h"

#include "server/library/library.h"

#include <algorithm>
#include <array>
#include <utility>

namespace velmora::server {

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

} // namespace velmora::server
