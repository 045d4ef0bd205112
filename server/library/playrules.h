#pragma once

#include "server/media/mediafacts.h"

#include <optional>
#include <string>

namespace velmora::server {

struct ReadFile;

// Rules over what was read from a file. Pure functions, any thread.

inline constexpr double shortestSeconds = 20; // what is shorter is no song

// Why a file does not play, a name of `leftout`; empty when it plays.
// `hasFormats`: what radios do not decode is transcoded.
std::string ruleFor(const ReadFile &file, bool hasFormats);
// The value of tracks.kind for a file left out for that reason.
const char *kindFor(const std::string &leftOut);
// The media type of a container; empty for one that nothing decodes.
const char *mediaTypeOf(const std::string &container);
// Of two files of one recording the one with the higher number plays.
int64_t qualityOf(const media::MediaTags &tags);
// The gain that the file's own tags ask for, in dB; nothing when there is none to be believed.
std::optional<double> taggedGain(const media::MediaTags &tags);
// The gain that brings a measured loudness, in LUFS, to the target of -18; in dB, from -15 to 9.
double gainFor(double loudness);

} // namespace velmora::server
