#pragma once

#include "server/api/stationservice.h"

#include <optional>
#include <string>

namespace velmora::server {

// ".flac", ".mp3", ".ogg", ".wav"; empty for another type.
std::string audioExtension(const std::string &mediaType);
// "track-1.flac" is "track-1"; nothing when there is no extension or something else than letters, digits, '-' and '_'
// stands before it.
std::optional<std::string> publicIdOf(const std::string &file);

// The file that radios get of a track: its own, or its transcode. Nothing while that is not there; it is begun then.
std::optional<std::filesystem::path> audioFileFor(StationService &service, const Track &track);

} // namespace velmora::server
